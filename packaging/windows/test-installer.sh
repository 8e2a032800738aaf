#!/usr/bin/env bash
# Installs and removes the program silently under Wine, also while it runs. Called by test.sh, which provides Wine's
# folder and a display.
. "$(dirname "$0")/common.sh"
build=$root/build/windows
setup=$(ls "$build"/quellbox-*-setup.exe)
key='HKLM\Software\Microsoft\Windows\CurrentVersion\Uninstall\Quellbox'
drive=$WINEPREFIX/drive_c
shortcut="$drive/ProgramData/Microsoft/Windows/Start Menu/Programs/Quellbox.lnk"
fail() { echo "installer: $*"; exit 1; }

# is_whole FOLDER - fails unless everything is there.
is_whole() {
  local file
  for file in quellbox.exe quellboxctl.exe quellboxctl-nightly.cmd quellboxctl-nightly.xml Quellbox.chm LICENSE.txt NOTICE.txt \
    uninstall.exe licenses/LGPL-3.txt; do
    [ -s "$1/$file" ] || fail "$file is missing"
  done
  wine "$1/quellboxctl.exe" --version | grep -q '^quellboxctl [0-9]' || fail 'quellboxctl does not tell its version'
  cmp -s "$1/quellbox.exe" "$build"/quellbox-*-windows/quellbox.exe || fail 'the program is not the one that was packed'
  [ -e "$shortcut" ] || fail 'the shortcut is missing'
  wine reg query "$key" /v QuietUninstallString /reg:64 >/dev/null || fail 'Windows does not know what removes it'
}

# remove FOLDER - removes the program, and fails when something stays.
remove() {
  wine "$1/uninstall.exe" /S || fail 'removing ended with an error'
  # The uninstaller goes on in a copy of itself, for which only Wine's server waits.
  wineserver -w
  [ ! -e "$1" ] || fail "$(ls "$1") stayed"
  [ ! -e "$shortcut" ] || fail 'the shortcut stayed'
  ! wine reg query "$key" /reg:64 >/dev/null 2>&1 || fail 'the registry entry stayed'
}

rm -rf "$drive/Program Files/Quellbox" "$drive/elsewhere"
wine "$setup" /S || fail 'it ended with an error'
is_whole "$drive/Program Files/Quellbox"
remove "$drive/Program Files/Quellbox"

# A program that runs stays whole. Told its folder by "_?=", the uninstaller works in place and says how it ended.
wine "$setup" /S '/D=C:\elsewhere' || fail 'it ended with an error in a folder of choice'
is_whole "$drive/elsewhere"
wine "$drive/elsewhere/quellbox.exe" >/dev/null 2>&1 &
program=$!
for _ in {1..150}; do
  grep -qs 'quellbox\.exe' "/proc/$program/maps" && break
  sleep 0.2
done
code=0
wine "$drive/elsewhere/uninstall.exe" /S '_?=C:\elsewhere' || code=$?
[ "$code" -eq 2 ] || fail "removing a program that runs ended with $code"
is_whole "$drive/elsewhere"
code=0
wine "$setup" /S '/D=C:\elsewhere' || code=$?
[ "$code" -eq 2 ] || fail "replacing a program that runs ended with $code"
kill "$program" || fail 'the program did not run'
wait "$program" || true
remove "$drive/elsewhere"
echo 'installer: installs and removes silently, and leaves alone what runs'
