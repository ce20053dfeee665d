# A desktop of our own to run the real program on: Xvfb, a window manager, a scratch home, real drags, keys and clicks.
# Sourced. Everything started here ends with the shell that sourced it.
# shellcheck shell=bash

desktop_scratch=$(mktemp -d)
export HOME=$desktop_scratch/home XDG_RUNTIME_DIR=$desktop_scratch/run LC_ALL=C.UTF-8
export DBUS_SESSION_BUS_ADDRESS=disabled: # where there is none, dbus-x11 would start one, which leaves files in HOME
unset WAYLAND_DISPLAY XDG_CONFIG_HOME XDG_DOCUMENTS_DIR QT_QPA_PLATFORM
mkdir -m 700 "$HOME" "$XDG_RUNTIME_DIR"
trap desktop_end EXIT

desktop_end() {
    local started
    set +e # to the end, which leaves the script's own status
    started=$(jobs -p)
    # shellcheck disable=SC2086
    [ -z "$started" ] || kill $started 2>/dev/null
    wait
    rm -rf "$desktop_scratch"
}

fail() {
    echo "$(basename "$0"): $*" >&2
    exit 1
}

# wait_for WHAT COMMAND...: until the command succeeds, `patience` seconds at most.
patience=30
wait_for() {
    local what=$1 i
    shift
    for ((i = 0; i < 20 * patience; i++)); do
        "$@" >/dev/null 2>&1 && return
        sleep 0.05
    done
    fail "waited in vain for $what"
}

# make_recording: 160 samples at 11025 Hz, 8 bits, mono: twenty times four high ones and four low ones.
make_recording() {
    printf 'RIFF\xc4\0\0\0WAVEfmt \x10\0\0\0\1\0\1\0\x11\x2b\0\0\x11\x2b\0\0\1\0\x08\0data\xa0\0\0\0'
    for _ in {1..20}; do printf '\xc8\xc8\xc8\xc8\x32\x32\x32\x32'; done
}

# desktop_start WIDTHxHEIGHT
desktop_start() {
    local number=$desktop_scratch/display
    Xvfb -displayfd 3 -screen 0 "$1x24" -nolisten tcp 3>"$number" >/dev/null 2>&1 &
    wait_for "the display" grep -q . "$number"
    DISPLAY=:$(cat "$number")
    export DISPLAY
    # With a strip for a panel at the bottom, so that the screen and its usable part aren't the same.
    sed 's#<bottom>0</bottom>#<bottom>80</bottom>#' /etc/xdg/openbox/rc.xml >"$desktop_scratch/openbox.xml"
    openbox --config-file "$desktop_scratch/openbox.xml" >/dev/null 2>&1 &
    wait_for "the window manager" xdotool get_desktop
}

# window_of TITLE: the id of the visible window with exactly that title.
window_of() {
    xdotool search --onlyvisible --name "^$1\$" | tail -n 1 | grep .
}

# wait_window TITLE: waits until it shows and has the focus.
wait_window() {
    wait_for "a window \"$1\"" window_of "$1"
    wait_for "the focus on \"$1\"" focus_is "$1"
}

focus_is() {
    [ "$(xdotool getwindowname "$(xdotool getwindowfocus)")" = "$1" ]
}

wait_gone() {
    wait_for "the end of \"$1\"" window_is_gone "$1"
}

window_is_gone() {
    ! window_of "$1"
}

# program_start COMMAND...: starts the program and waits for its window.
program_locale=C.UTF-8
program_start() {
    LC_ALL=$program_locale "$@" 2>"$desktop_scratch/stderr" &
    program=$!
    wait_window "Tonfloss PC-1600"
    program_window=$(window_of "Tonfloss PC-1600")
}

# program_end: closes the window as its close button does; the program ends well.
program_end() {
    wait_for "the end of the program" program_closes
    wait "$program" || fail "the program ended with status $?: $(cat "$desktop_scratch/stderr")"
}

program_closes() {
    wmctrl -i -c "$program_window" || true
    sleep 0.2
    ! kill -0 "$program"
}

# drag BUILD [--move] URL...: from a window of another process to the point drop_at in the program's window. Prints the
# answer.
drag() {
    drag_over "$@"
    drag_end
}

# drag_over BUILD [--move] URL...: as far as over the window; drag_end lets go.
drop_at=(300 200)
drag_over() {
    local build=$1
    shift
    "$build/script/desktop/drag_source" "$@" >"$desktop_scratch/answer" 2>/dev/null &
    drag_source=$!
    wait_for "the drag source" window_of "Drag source"
    xdotool mousemove --window "$(window_of "Drag source")" 60 30
    sleep 0.1
    xdotool mousedown 1
    sleep 0.2
    xdotool mousemove --window "$program_window" "${drop_at[0]}" $((drop_at[1] - 9))
    sleep 0.1
    xdotool mousemove --window "$program_window" "${drop_at[@]}"
    sleep 0.2
}

drag_end() {
    xdotool mouseup 1
    wait_for "the end of the drag" grep -q . "$desktop_scratch/answer"
    wait "$drag_source"
    cat "$desktop_scratch/answer"
}

# press KEYS...: to the window that has the focus.
press() {
    xdotool key --delay 20 "$@"
}

type_text() {
    xdotool type --delay 20 "$1"
}

# dismiss: closes the message box that stands or is about to.
dismiss() {
    wait_window "Tonfloss"
    press Return
    wait_gone "Tonfloss"
}

# save_as PATH: answers the save dialog.
save_as() {
    wait_window "Title Property"
    press ctrl+a
    type_text "$1"
    press Return
    wait_gone "Title Property"
}

screenshot() {
    scrot - >"$1" # in a name scrot would take %s and $w for its own
}
