#!/usr/bin/env bash
# end_to_end_test.sh BUILD: a file dragged from another process, an address typed, the real save dialog: every byte of
# the file, which is the known one of tests/support. The program ends by its close button, with status 0, and keeps
# nothing.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
out=$(mktemp -d)
trap 'rm -rf "$out"' EXIT
"$here/../../script/demonstrate" "$1" "$out"
cmp "$here/../support/SOUND.bin" "$out/SOUND.bin"
