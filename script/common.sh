# What the scripts have in common: the Debian packages that each needs, and how they get onto the machine; the usage; a
# build. Sourced.
# shellcheck shell=bash disable=SC2034

packages_build=(g++ cmake ninja-build pkg-config qt6-base-dev librsvg2-bin fonts-dejavu-core libkissfft-dev libcli11-dev
    libsndfile1-dev libmpg123-dev libsoxr-dev libutf8proc-dev libsdl2-dev libserialport-dev)
packages_tests=(libgtest-dev libgmock-dev libz80ex-dev pasmo qt6-translations-l10n)
packages_bench=(libbenchmark-dev libxcb1-dev xauth)
packages_desktop=(xvfb openbox xdotool wmctrl scrot x11-utils)
packages_listening=(python3-numpy python3-scipy sox ffmpeg fluidsynth timgm6mb-soundfont python3-aubio
    asterisk-core-sounds-en-g722 tuxpaint-stamps-default pocketsphinx-testdata)
packages_examples=(python3-matplotlib python3-pil espeak-ng)
packages_pictures=(qt6ct qt6-translations-l10n fonts-liberation2 fonts-noto-core imagemagick)
packages_package=(dpkg-dev file lintian desktop-file-utils appstream)
packages_windows=(g++-mingw-w64-x86-64-posix qt6-base-dev-tools dpkg-dev icoutils wine wine64 fonts-wine unzip xclip sox
    libsox-fmt-mp3)
packages_checks=(clang-14 clang-tidy-14 clang-format-14 libclang-rt-14-dev llvm-14 shellcheck)

# usage: what the script's first comment says, for who calls it with other arguments than it wants.
usage() {
    sed -n '2,/^[^#]/s/^# //p' "$0" >&2
    exit 2
}

# need PACKAGE...: installs those that are missing, and says before what that changes. Does nothing, quickly, when none
# is.
need() {
    local package missing=() as_root=()
    for package; do
        [ "$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null)" = installed ] || missing+=("$package")
    done
    [ ${#missing[@]} -gt 0 ] || return 0
    [ "$(id -u)" = 0 ] || as_root=(sudo)
    echo "Missing: ${missing[*]}"
    "${as_root[@]}" apt-get update -q
    # With all that comes along. Where it can't be had, the call below says why.
    apt-get install -s --no-install-recommends "${missing[@]}" 2>/dev/null |
        awk '$1 == "Inst" { list[$3 ~ /^\[/] = list[$3 ~ /^\[/] " " $2 } $1 == "Remv" { gone = gone " " $2 }
            END { if (list[0]) print "Installing:" list[0]
                  if (list[1]) print "Upgrading:" list[1]
                  if (gone) print "Removing:" gone }' || true
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -q -y --no-install-recommends "${missing[@]}"
}

# build PRESET [-DOPTION=VALUE...] [TARGET...]: quiet while it configures, unless that fails.
build() {
    local preset=$1 options=() said
    shift
    while [[ ${1:-} == -D* ]]; do options+=("$1") && shift; done
    said=$(cmake --preset "$preset" "${options[@]}" 2>&1) || { echo "$said" && return 1; }
    cmake --build --preset "$preset" ${1:+--target "$@"}
}
