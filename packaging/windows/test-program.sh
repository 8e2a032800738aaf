#!/usr/bin/env bash
# Starts the packed program under Wine on an archive of samples, counts its list, and leaves a picture
# of its window. Called by test.sh, which provides Wine's folder and a display.
. "$(dirname "$0")/common.sh"
build=$root/build/windows
archive="$WINEPREFIX/drive_c/archive"
picture=$build/quellbox.png
fail() { echo "program: $*"; exit 1; }

# Wine's own fonts are rough ones, and it has none of fixed width. A font is described as in LOGFONTW: 12 pixels, normal
# weight, smooth, and the name.
font=$(printf 'f4ffffff%024d9001000000000001000005%02d%s' 0 0 "$(printf 'DejaVu Sans' | iconv -t UTF-16LE | od -An -v -tx1 | tr -d ' \n')")
set_value() { wine reg add "$1" /v "$2" /t "$3" /d "$4" /f >/dev/null; }
for part in IconFont MessageFont MenuFont StatusFont; do
  set_value 'HKCU\Control Panel\Desktop\WindowMetrics' $part REG_BINARY "$font$(printf "%0$((184 - ${#font}))d" 0)"
done
set_value 'HKCU\Control Panel\Desktop' FontSmoothing REG_SZ 2
set_value 'HKCU\Control Panel\Desktop' FontSmoothingType REG_DWORD 2
set_value 'HKCU\Software\Wine\Fonts\Replacements' 'Courier New' REG_SZ 'DejaVu Sans Mono'
# Shares of the window that show all its parts.
set_value 'HKCU\Software\quellbox\Settings' Whole REG_SZ 4500
set_value 'HKCU\Software\quellbox\Settings' Bottom REG_SZ 3600

rm -rf "$archive" "$picture"
wine "$build/cmake/quellbox_samples.exe" --count 600 --seed 2003 --days 14 --out 'C:\archive' >/dev/null
wine "$(ls "$build"/quellbox-*-windows/quellbox.exe)" --print-list --screenshot "Z:$picture" 'C:\archive' \
  >"$build/list.txt" 2>"$build/list.log" || fail "it ended with an error: $(cat "$build/list.log")"
messages=$(find "$archive" -iname '*.eml' | wc -l)
[ "$messages" -eq 600 ] || fail "the archive has $messages messages"
[ "$(wc -l <"$build/list.txt")" -eq "$messages" ] || fail "it lists $(wc -l <"$build/list.txt") of $messages messages"
[ -s "$picture" ] || fail 'it left no picture'
echo "program: lists $messages messages, its window is in ${picture#"$root"/}"
