#!/usr/bin/env bash
# use_windows_package.sh BUILD ZIP OUT: the program for Windows, out of its zip, under Wine in a home of its own: real
# drags, typed addresses and saves, every byte of the files, what each message says, and what a run leaves behind. BUILD
# is one for this machine; its drag_source is what is dragged from. OUT gets screenshots, also of a failure.
set -euo pipefail
build=$(cd "$1" && pwd)
zip=$(realpath "$2")
mkdir -p "$3"
out=$(cd "$3" && pwd)
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=script/desktop/desktop.sh
. "$here/desktop.sh"
patience=60
export WINEPREFIX=$desktop_scratch/wine WINEARCH=win64 WINEDEBUG=-all WINEDLLOVERRIDES='mscoree,mshtml='
trap 'screenshot "$out/end.png" || true; wineserver -k || true; desktop_end' EXIT

folder="$desktop_scratch/Eigene Töne"
programs="$desktop_scratch/Programme für Töne"
mkdir "$folder" "$programs"
unzip -q "$zip" -d "$programs"
programs=$(echo "$programs"/*)
cd "$programs"
diff - <(find . -type f ! -path './licences/*' | LC_ALL=C sort) <<'LIST' || fail "the zip holds other files"
./Qt6Core.dll
./Qt6Gui.dll
./Qt6Widgets.dll
./README.txt
./libgcc_s_seh-1.dll
./libstdc++-6.dll
./libwinpthread-1.dll
./platforms/qwindows.dll
./styles/qwindowsvistastyle.dll
./tonfloss-prepare.exe
./tonfloss-preview.exe
./tonfloss-relocate.exe
./tonfloss-send.exe
./tonfloss-studio.exe
./tonfloss.exe
LIST

# The known file of the tests, but for its title: Größe ü.wav.
expect_image() {
    { head -c 105 "$here/../../tests/support/SOUND.bin"; printf 'Gr\xf6\xdfe \xfc.wav'
      tail -c +117 "$here/../../tests/support/SOUND.bin"; } | cmp - "$1" || fail "$1 is another image"
}

# What the user's profile and registry hold, without the times in it. Waits until all of Wine has ended and written.
profile() {
    wineserver -w
    (cd "$WINEPREFIX" && find drive_c/users -type f -exec sha256sum {} + | LC_ALL=C sort)
    sed -E 's/^(\[.*\]) [0-9]+$/\1/; /^#time=/d' "$WINEPREFIX/user.reg"
}

# message TEXT: a message box says so, and is dismissed. On Windows the toolkit's boxes can be copied as text.
message() {
    local box said
    wait_window Tonfloss
    box=$(window_of Tonfloss)
    xclip -selection clipboard <<<"nothing yet" >/dev/null
    wait_for "the text of a message" copy_message
    said=$(xclip -selection clipboard -o)
    [[ $said == *"$1"* ]] || fail "expected \"$1\", but the message is: $said"
    press Return
    wait_for "the end of the message" box_is_gone "$box" # another one may follow
}

box_is_gone() {
    ! xdotool search --onlyvisible --name '^Tonfloss$' | grep -qx "$1"
}

copy_message() {
    press ctrl+c
    sleep 0.3
    [ "$(xclip -selection clipboard -o)" != "nothing yet" ]
}

# save_over PATH: like save_as, and a yes to the question whether to replace the file.
save_over() {
    wait_window "Title Property"
    local dialog
    dialog=$(window_of "Title Property")
    press ctrl+a
    type_text "$1"
    press Return
    wait_for "the question" question_over "$dialog"
    press alt+y
    wait_gone "Title Property"
}

question_over() {
    local focus
    focus=$(xdotool getwindowfocus)
    [ "$focus" != "$1" ] && [ "$(xdotool getwindowname "$focus")" = "Title Property" ]
}

drop() {
    local answer
    answer=$(drag "$build" "file://$folder/$1")
    [ "$answer" = copy ] || fail "the drag of $1 was answered with $answer"
}

cd "$folder"
make_recording >"Größe ü.wav"
echo "no Wave file" >text.wav
echo "the old file" | tee locked.bin >old.bin
chmod 444 locked.bin
converted="Größe ü.wav / 204 Bytes / 11.025 kHz"
dos_folder="Z:$PWD" # the whole machine is drive Z

desktop_start 1920x1080
setxkbmap de
wineboot -i >/dev/null 2>&1
# Wine has no font of that name, and would take any.
wine reg add 'HKCU\Software\Wine\Fonts\Replacements' /v Tahoma /d 'DejaVu Sans' >/dev/null
program_start wine "$programs/tonfloss.exe"
program_end
before=$(profile)

said=$(wine "$programs/tonfloss.exe" --version)
[[ $said == "tonfloss "[0-9]* ]] || fail "tonfloss.exe answers --version with: $said"

program_start wine "$programs/tonfloss.exe"
drop text.wav
message "Falsches .Wav Format - Kein PCM !"
drop "Größe ü.wav"
message "PC1600 Soundfilegrösse = 152 KB."
wait_window "$converted"
type_text 80C5
screenshot "$out/prompts.png"
press Return
wait_window "Title Property"
screenshot "$out/save.png"
save_over "$dos_folder/locked.bin"
message "PC-1600 Soundfile nicht erstellt!"
message "locked.bin: Diese Datei ist schreibgeschützt."
[ "$(<locked.bin)" = "the old file" ] || fail "the write-protected file is another one now"
wait_window "$converted"
press Return # the address still stands
save_as "$dos_folder/NUL.bin" # a device, whatever stands behind the point
message "PC-1600 Soundfile nicht erstellt!"
message "NUL.bin: "
wait_window "$converted"
press Return
save_as "$dos_folder/Klänge fürs Gerät.bin"
message "PC-1600 Soundfile erfogreich erstellt !"
expect_image "Klänge fürs Gerät.bin"

drop "Größe ü.wav"
message "PC1600 Soundfilegrösse = 152 KB."
wait_window "$converted"
type_text 80C5
press Return
save_over "$dos_folder/old.bin"
message "PC-1600 Soundfile erfogreich erstellt !"
expect_image old.bin
program_end

wine "$programs/tonfloss-preview.exe" "Klänge fürs Gerät.bin" -o "gehört ü.wav" | tr -d '\r' >report
"$build/src/preview/tonfloss-preview" "Klänge fürs Gerät.bin" -o here.wav |
    diff - report || fail "the preview says something else"
cmp here.wav "gehört ü.wav" || fail "the preview sounds different"
wine "$programs/tonfloss-preview.exe" old.bin -o - 2>/dev/null |
    cmp - here.wav || fail "the preview pipes something else"
timeout 60 env SDL_AUDIODRIVER=disk SDL_DISKAUDIOFILE=heard.raw wine "$programs/tonfloss-preview.exe" old.bin \
    --play --volume 100 >report || fail "the preview plays nothing"
hex() { od -An -v -tx1 | tr -d '\n'; }
hex <heard.raw | grep -qF "$(tail -c +45 here.wav | hex)" || fail "the preview plays something else"
rm report here.wav heard.raw "gehört ü.wav"

wine "$programs/tonfloss-relocate.exe" "Klänge fürs Gerät.bin" --address C0C5 | tr -d '\r' >answer
"$build/src/relocate/tonfloss-relocate" "Klänge fürs Gerät.bin" --address C0C5 --force |
    diff - answer || fail "tonfloss-relocate says something else"
wine "$programs/tonfloss-relocate.exe" "Klänge fürs Gerät-C0C5.bin" --address 80C5 -o back.bin >/dev/null
cmp back.bin "Klänge fürs Gerät.bin" || fail "tonfloss-relocate doesn't find back"
rm answer back.bin "Klänge fürs Gerät-C0C5.bin"

# Sounds whose names and formats ask for more than ASCII and a decoder. Rounding may differ between systems, so that the
# recordings are alike, not the same.
sox -n -r 44100 -c 2 "Lied für ü.flac" synth 1 pluck A3 gain -3
sox "Lied für ü.flac" "Lied für ü.mp3"
for kind in flac mp3; do
    timeout 60 wine "$programs/tonfloss-prepare.exe" --for music "Lied für ü.$kind" -o "dort ü.wav" </dev/null |
        tr -d '\r' >answer || fail "tonfloss-prepare can't prepare the $kind"
    "$build/src/prepare/tonfloss-prepare" --for music "Lied für ü.$kind" -o here.wav | head -n 2 |
        diff - <(head -n 2 answer) || fail "tonfloss-prepare has read something else"
    difference=$(($(stat -c %s "dort ü.wav") - $(stat -c %s here.wav)))
    [ "${difference#-}" -le 300 ] || fail "the recording of the $kind differs by $difference bytes"
    rm "dort ü.wav" here.wav answer
done
rm "Lied für ü".*

diff <(cat <<<"$before") <(profile) || fail "the program left something behind in the profile or the registry"
diff - <(find . -type f | LC_ALL=C sort) <<'LIST' || fail "there are other files beside the saved ones"
./Größe ü.wav
./Klänge fürs Gerät.bin
./locked.bin
./old.bin
./text.wav
LIST
echo "Windows:    $(basename "$zip") passed under $(wine --version)"
