#!/usr/bin/env bash
# Starts the packed programs under Wine on an archive of samples, counts their lists, leaves a picture of the window, and
# lets a night's work be done. Called by test.sh, which provides Wine's folder and a display.
. "$(dirname "$0")/common.sh"
build=$root/build/windows
packed=$(echo "$build"/quellbox-*-windows)
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
wine "$packed/quellbox.exe" --print-list --screenshot "Z:$picture" 'C:\archive' \
  >"$build/list.txt" 2>"$build/list.log" || fail "it ended with an error: $(cat "$build/list.log")"
messages=$(find "$archive" -iname '*.eml' | wc -l)
[ "$messages" -eq 600 ] || fail "the archive has $messages messages"
[ "$(wc -l <"$build/list.txt")" -eq "$messages" ] || fail "it lists $(wc -l <"$build/list.txt") of $messages messages"
[ -s "$picture" ] || fail 'it left no picture'
echo "program: lists $messages messages, its window is in ${picture#"$root"/}"

version=$(sed -n 's/^CMAKE_PROJECT_VERSION:[A-Z]*=//p' "$build/cmake/CMakeCache.txt")
answer=$(wine "$packed/quellboxctl.exe" --version | tr -d '\r')
[ "$answer" = "quellboxctl $version" ] || fail "quellboxctl is \"$answer\", and not $version"
wine "$packed/quellboxctl.exe" list --json --archive 'C:\archive' >"$build/list.txt" 2>"$build/list.log" ||
  fail "quellboxctl ended with an error: $(cat "$build/list.log")"
[ "$(wc -l <"$build/list.txt")" -eq "$messages" ] || fail "quellboxctl lists $(wc -l <"$build/list.txt") of $messages messages"
echo "program: quellboxctl lists them as well"

# A night's work, with the settings of the account; and the task that does it, as far as Wine knows tasks.
mkdir -p "$WINEPREFIX/drive_c/pickup"
set_value 'HKCU\Software\quellbox\Settings' ArchiveDir REG_SZ 'C:\archive'
set_value 'HKCU\Software\quellbox\Settings' PickupDir REG_SZ 'C:\pickup'
set_value 'HKCU\Software\quellbox\Settings' TolerationLevel REG_SZ 2
recent=$(find "$archive" -iname '*.eml' -newermt "$(date -d '6 days ago' +%F)" | wc -l)
code=0
wine cmd /d /c "$(winepath -w "$packed/quellboxctl-nightly.cmd")" 7 || code=$?
report=$(find "$WINEPREFIX/drive_c/users" -path '*quellbox/nightly.txt' -exec cat {} +)
[ "$code" -eq 0 ] || fail "the night ended with $code: $report"
[ "$(find "$archive" -iname '*.eml' | wc -l)" -eq "$recent" ] || fail "the night left other messages than those of a week: $report"
[[ $report == *'What remains'*domain* ]] || fail "the night told nothing: $report"
timeout 60 wine schtasks /create /tn 'Quellbox nightly' /xml "$(winepath -w "$packed/quellboxctl-nightly.xml")" /f ||
  fail 'the task cannot be read'
timeout 60 wine schtasks /delete /tn 'Quellbox nightly' /f || fail 'the task is not there'
echo "program: a night leaves $recent messages of a week, and tells it"
