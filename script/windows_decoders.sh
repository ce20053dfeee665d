# The libraries that read and play sounds, built for Windows: static, from the sources of Debian's own packages.
# Sourced by package-windows, which has get_sources.
# shellcheck shell=bash

# In the order in which they need each other.
decoders=(libogg libvorbis flac opus lame mpg123 libsndfile libsoxr libsdl2)
packages_decoders=(libogg-dev libvorbis-dev libflac-dev libopus-dev libmp3lame-dev libmpg123-dev libsndfile1-dev
    libsoxr-dev libsdl2-dev)
packages_headers=(libcli11-dev libkissfft-dev) # the same for every system

# The folder for what the machine's packages give; another version or another recipe makes another folder.
decoders_folder() {
    local hash
    hash=$(sha256sum < <(
        cat packaging/windows/toolchain.cmake script/windows_decoders.sh
        dpkg-query -W "${packages_decoders[@]}" "${packages_headers[@]}" g++-mingw-w64-x86-64-posix \
            mingw-w64-x86-64-dev
    ))
    echo "${XDG_CACHE_HOME:-$HOME/.cache}/tonfloss/decoders-windows-${hash:0:12}"
}

# by_cmake PART SOURCE [-DOPTION=VALUE...]
by_cmake() {
    local part=$1 name=$2
    shift 2
    cmake -G Ninja -S "$part/sources/$name" -B "$part/build/$name" \
        --toolchain "$PWD/packaging/windows/toolchain.cmake" -DCMAKE_BUILD_TYPE=Release \
        -DBUILD_SHARED_LIBS=OFF -DBUILD_TESTING=OFF -DBUILD_TESTS=OFF -DBUILD_EXAMPLES=OFF \
        -DBUILD_PROGRAMS=OFF -DCMAKE_INSTALL_PREFIX="$part/decoders" -DCMAKE_PREFIX_PATH="$part/decoders" \
        -DCMAKE_FIND_ROOT_PATH="$part/decoders" "$@" &&
        cmake --build "$part/build/$name" &&
        cmake --install "$part/build/$name"
}

# by_configure PART SOURCE [OPTION...]: makes all of it, with the variables of make in the caller's array `made`.
by_configure() {
    local part=$1 name=$2
    shift 2
    mkdir -p "$part/build/$name"
    (
        cd "$part/build/$name" &&
            "$part/sources/$name/configure" --host=x86_64-w64-mingw32 CC=x86_64-w64-mingw32-gcc-posix \
                --prefix="$part/decoders" --disable-shared "$@" &&
            make -j "$(nproc)" "${made[@]}" && make install "${made[@]}"
    )
}

build_decoder() {
    local part=$1 name=$2 options=() made=()
    case $name in
    flac) options=(-DBUILD_CXXLIBS=OFF -DINSTALL_MANPAGES=OFF -DWITH_STACK_PROTECTOR=OFF -DWITH_FORTIFY_SOURCE=OFF) ;;
    opus) options=(--disable-extra-programs --disable-doc CFLAGS='-O2 -fno-stack-protector -D_FORTIFY_SOURCE=0') ;;
    lame) options=(--disable-frontend --disable-gtktest CFLAGS=-O2) ;;
    mpg123)
        options=(--with-cpu=generic --with-audio=dummy --disable-modules CFLAGS=-O2) # its own assembler hangs
        made=(lib_LTLIBRARIES=src/libmpg123/libmpg123.la noinst_LTLIBRARIES= bin_PROGRAMS=) # no outputs, no players
        ;;
    libsndfile) options=(-DENABLE_MPEG=ON -DENABLE_CPACK=OFF '-DCMAKE_C_FLAGS=-DFLAC__NO_DLL -D_FILE_OFFSET_BITS=64') ;;
    libsoxr) options=(-DWITH_OPENMP=OFF -DWITH_LSR_BINDINGS=OFF) ;;
    libsdl2) # its sounds; without the pictures it couldn't be linked
        options=(-DSDL_{SHARED,TEST,RENDER,JOYSTICK,HAPTIC,SENSOR,HIDAPI,POWER,LOCALE,MISC}'=OFF')
        ;;
    esac
    case $name in
    opus | lame | mpg123) by_configure "$part" "$name" "${options[@]}" ;;
    *) by_cmake "$part" "$name" "${options[@]}" ;;
    esac
}

# build_decoders DIR: DIR is there only when all in it is whole.
build_decoders() {
    local dir=$1 name versions
    mkdir -p "${dir%/*}"
    part=$(mktemp -d "$dir.XXXXXX")
    trap 'rm -rf "$part"' EXIT
    mapfile -t versions < <(dpkg-query -W -f '${source:Package}=${source:Version}\n' "${packages_decoders[@]}")
    get_sources "$part" "${versions[@]}"

    echo "Building the decoders for Windows into $dir"
    for name in "${decoders[@]}"; do
        # The machine's own libraries aren't those for Windows.
        PKG_CONFIG_LIBDIR='' PKG_CONFIG_PATH='' build_decoder "$part" "$name" >"$part/log" 2>&1 || {
            tail -n 40 "$part/log"
            return 1
        }
        install -D -m 644 "$part/sources/$name/debian/copyright" "$part/decoders/licences/$name.txt"
    done
    grep -q 'WITH_MPEG 1' "$part"/decoders/lib/cmake/SndFile/SndFileConfig.cmake || {
        echo "libsndfile was built without MP3." >&2
        return 1
    }
    cp "$part"/sources/libsndfile/COPYING "$part/decoders/licences/LGPL-2.1.txt"
    cp "$part"/sources/lame/COPYING "$part/decoders/licences/LGPL-2.0.txt"
    cp -r /usr/include/CLI "$part/decoders/include"
    install -D -m 644 -t "$part/decoders/share/cmake/CLI11" /usr/share/cmake/CLI11/*.cmake
    install -D -m 644 -t "$part/decoders/include/kissfft" /usr/include/kissfft/kissfft.hh
    for name in kissfft-float soxr; do # libsoxr makes none for Windows
        sed "s|/usr/lib/[^ ]*|$dir/lib|; s|/usr|$dir|" "$(pkg-config --variable=pcfiledir "$name")/$name.pc" \
            >"$part/decoders/lib/pkgconfig/$name.pc"
    done
    sed -i "s|$part/decoders|$dir|" "$part"/decoders/lib/pkgconfig/*.pc # where they will be
    # Else a program would have no console, and another main.
    sed -i 's/-mwindows//g; s/-lSDL2main//g; s/-Dmain=SDL_main//' "$part/decoders/lib/pkgconfig/sdl2.pc"
    for name in "${packages_headers[@]}"; do
        cp "/usr/share/doc/$name/copyright" "$part/decoders/licences/${name%-dev}.txt"
    done
    mv -T "$part/decoders" "$dir"
    rm -rf "$part"
    trap - EXIT
}
