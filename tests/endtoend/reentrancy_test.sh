#!/usr/bin/env bash
# reentrancy_test.sh BUILD: a second drop, a radio click, a menu choice and a close request, each while a message box
# stands, while the save dialog stands, and in the middle of a conversion: nothing of it starts. (A key goes to whatever
# has the focus, so a box would take Return for itself; the window tests send one straight to the field.)
set -euo pipefail
build=$1
# shellcheck source=tests/endtoend/desktop.sh
. "$(dirname "$0")/desktop.sh"
cd "$desktop_scratch"
make_recording >tone.wav
make_recording >second.wav
{
    head -c 44 tone.wav
    for _ in {1..10}; do tail -c 160 tone.wav; done
} >long.wav # more samples than lie between two yields

disturb() {
    local answer
    answer=$(drag "$build" "file://$PWD/second.wav")
    [ "$answer" = none ] || fail "a second drop was answered with $answer"
    xdotool mousemove --window "$program_window" 340 440 click 1 # the other radio button
    xdotool mousemove --window "$program_window" 110 8 click 1   # the menu Option
    xdotool mousemove --window "$program_window" 110 45 click 1  # Audio PokEmul
    wmctrl -i -c "$program_window"
    sleep 0.3
}

stands_aside() {
    wait_window "$1"
    xdotool windowmove --sync "$(window_of "$1")" 1600 100
}

expect_title() {
    local title
    title=$(xdotool getwindowname "$program_window")
    [ "$title" = "$1" ] || fail "the title is \"$title\" $2"
}

dismiss_the_only_box() {
    wait_for "the message" window_of Tonfloss
    [ "$(xdotool search --onlyvisible --name '^Tonfloss$' | wc -l)" = 1 ] || fail "more than one box"
    dismiss
}

desktop_start 2400x800 # room beside the window, where boxes and dialogs are moved to
program_start "$build/src/tonfloss"
drag "$build" "file://$PWD/tone.wav"
stands_aside Tonfloss
disturb
expect_title "tone.wav / 204 Bytes / 11.025 kHz" "while the message stands"
dismiss_the_only_box
wait_window "tone.wav / 204 Bytes / 11.025 kHz"
type_text 80C5
press Return
stands_aside "Title Property"
disturb
save_as "$PWD/SOUND.bin"
dismiss_the_only_box
[ "$(stat -c %s SOUND.bin)" = 154 ] || fail "the file has $(stat -c %s SOUND.bin) bytes"
expect_title "tone.wav / 204 Bytes / 11.025 kHz" "after the save"
program_end

program_start "$build/tests/slow_tonfloss"
drag "$build" "file://$PWD/long.wav"
sleep 0.3
window_is_gone Tonfloss || fail "the conversion was over before it could be disturbed"
disturb
window_is_gone Tonfloss || fail "the conversion was over before the disturbance was"
dismiss_the_only_box
expect_title "long.wav / 1644 Bytes / 11.025 kHz" "after the disturbed conversion"
wait_window "long.wav / 1644 Bytes / 11.025 kHz"
program_end
