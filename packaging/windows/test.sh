#!/usr/bin/env bash
# Runs the tests under Wine, on a virtual display and in a Wine folder of their own, then the program and the installer.
. "$(dirname "$0")/common.sh"
build=$root/build/windows
export WINEPREFIX=$build/wine WINEARCH=win64 WINEDEBUG=${WINEDEBUG:--all}
# No questions about what Wine would like to download.
export WINEDLLOVERRIDES="mscoree,mshtml="
unset QT_QPA_PLATFORM
# Wine's drives are one volume as far as they lie on one; the memory disk is another.
export QUELLBOX_OTHER_VOLUME='Z:/dev/shm'

if [ "${1:-}" != displayed ]; then
  exec xvfb-run -a -s '-screen 0 1600x1200x24' "$0" displayed
fi
# Windows are active, minimized and restored only where something manages them.
openbox >"$build/openbox.log" 2>&1 &
manager=$!
# Wine would go on with this display in the next run.
trap 'wineserver -k || true; kill "$manager" || true' EXIT
wineboot -i >"$build/wine.log" 2>&1
wineserver -w
# Windows shares each drive with administrators; in Wine a share is a folder.
mkdir -p "$WINEPREFIX/dosdevices/unc/localhost"
ln -sfn "$WINEPREFIX/drive_c" "$WINEPREFIX/dosdevices/unc/localhost/C\$"
failed=0
ctest --test-dir "$build/cmake" --output-on-failure --timeout 1800 || failed=1
"$recipes/test-program.sh" || failed=1
"$recipes/test-installer.sh" || failed=1
exit $failed
