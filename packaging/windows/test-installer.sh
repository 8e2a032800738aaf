#!/usr/bin/env bash
# Installs and removes the program silently under Wine. Called by test.sh, which provides Wine's folder and a display.
. "$(dirname "$0")/common.sh"
build=$root/build/windows
key='HKLM\Software\Microsoft\Windows\CurrentVersion\Uninstall\Quellbox'
drive=$WINEPREFIX/drive_c
installed="$drive/Program Files/Quellbox"
shortcut="$drive/ProgramData/Microsoft/Windows/Start Menu/Programs/Quellbox.lnk"
fail() { echo "installer: $*"; exit 1; }

rm -rf "$installed"
wine "$(ls "$build"/quellbox-*-setup.exe)" /S || fail 'it ended with an error'
for file in quellbox.exe Quellbox.chm LICENSE.txt uninstall.exe; do
  [ -s "$installed/$file" ] || fail "$file is missing"
done
cmp -s "$installed/quellbox.exe" "$build"/quellbox-*-windows/quellbox.exe || fail 'the program is not the one that was packed'
[ -e "$shortcut" ] || fail 'the shortcut is missing'
wine reg query "$key" /v QuietUninstallString /reg:64 >/dev/null || fail 'Windows does not know what removes it'
# The uninstaller goes on in a copy of itself, for which only Wine's server waits.
wine "$installed/uninstall.exe" /S || fail 'removing ended with an error'
wineserver -w
[ ! -e "$installed" ] || fail "$(ls "$installed") stayed"
[ ! -e "$shortcut" ] || fail 'the shortcut stayed'
! wine reg query "$key" /reg:64 >/dev/null 2>&1 || fail 'the registry entry stayed'
echo 'installer: installs and removes silently'
