#!/usr/bin/env bash
# end_to_end_test.sh BUILD: a file dragged from another process, an address typed, the real save dialog: every byte of
# the file, which is the one of KnownFile.h. The program ends by its close button, with status 0, and keeps nothing.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
out=$(mktemp -d)
trap 'rm -rf "$out"' EXIT
"$here/../../script/demonstrate" "$1" "$out"
diff <(grep -oE '"[0-9a-f ]+"' "$here/../support/KnownFile.h" | tr -d '"' | tr ' ' '\n' | grep .) \
    <(od -An -v -tx1 -w1 "$out/SOUND.bin" | tr -d ' ')
