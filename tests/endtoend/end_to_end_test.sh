#!/usr/bin/env bash
# end_to_end_test.sh BUILD: a file dragged from another process, an address typed, the real save dialog: every byte of
# the file. The program then ends by its close button, with status 0.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
out=$(mktemp -d)
trap 'rm -rf "$out"' EXIT

expected='
ff 10 00 00 10 88 00 00 c5 80 00 c5 80 00 00 0f
cd 0f 81 f3 21 38 81 7e fe ff ca f3 80 47 3e c0
d3 18 cd f5 80 10 fb 7e 47 fe fe 20 04 3e c0 18
02 3e 40 d3 18 cd f5 80 10 fb 23 c3 cc 80 fb c9
c5 e5 21 0e 81 7e 06 0c fe 06 28 08 06 05 fe 08
28 02 06 01 10 fe e1 c1 c9 0b cd 12 01 cd 09 01
3e 0d 11 1e 81 cd eb 00 c9 74 6f 6e 65 2e 77 61
76 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00
00 00 0d 05 08 08 08 08 08 08 08 08 08 08 08 08
08 08 08 08 08 08 08 ff 00 00'

"$here/../../script/demonstrate" "$1" "$out"
diff <(tr ' ' '\n' <<<"$expected" | grep .) <(od -An -v -tx1 -w1 "$out/SOUND.bin" | tr -d ' ')
