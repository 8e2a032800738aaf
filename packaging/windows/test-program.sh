#!/usr/bin/env bash
# Starts the packed program under Wine on an archive of samples, compares its list with the folder, and leaves a picture
# of its window. Called by test.sh, which provides Wine's folder and a display.
. "$(dirname "$0")/common.sh"
build=$root/build/windows
archive="$WINEPREFIX/drive_c/archive"
picture=$build/quellbox.png
fail() { echo "program: $*"; exit 1; }

rm -rf "$archive" "$picture"
wine "$build/cmake/quellbox_samples.exe" --count 600 --seed 2003 --days 14 --out 'C:\archive' >/dev/null
wine "$(ls "$build"/quellbox-*-windows/quellbox.exe)" --print-list --screenshot "Z:$picture" 'C:\archive' \
  >"$build/list.txt" 2>"$build/list.log" || fail "it ended with an error: $(cat "$build/list.log")"
messages=$(find "$archive" -iname '*.eml' | wc -l)
[ "$messages" -eq 600 ] || fail "the archive has $messages messages"
[ "$(wc -l <"$build/list.txt")" -eq "$messages" ] || fail "it lists $(wc -l <"$build/list.txt") of $messages messages"
[ -s "$picture" ] || fail 'it left no picture'
echo "program: lists $messages messages, its window is in ${picture#"$root"/}"
