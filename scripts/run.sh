#!/usr/bin/env bash
# Starts the program on an archive of samples. Its copy has a name and a settings store of its own, so that nobody's
# settings are touched. Without a display it runs on a virtual one, prints the list and leaves a picture of the window.
set -euo pipefail
cd "$(dirname "$0")/.."
binaries=build/release
home="$PWD/build/run"
mkdir -p "$home/pickup"

if [ ! -d "$home/archive" ]; then
  rm -rf "$home/archive.new" "$home/data"
  "$binaries/quellbox_samples" --count 600 --seed 2003 --days 14 --out "$home/archive.new" --as "$home/archive" \
    --history "$home/data/quellbox-sample/history.sqlite"
  mv "$home/archive.new" "$home/archive"
fi
cp -f "$binaries/quellbox" "$home/quellbox-sample"

export XDG_CONFIG_HOME="$home/config" XDG_DATA_HOME="$home/data"
settings="$XDG_CONFIG_HOME/quellbox-sample/settings.ini"
if [ ! -e "$settings" ]; then
  mkdir -p "${settings%/*}"
  printf '[Settings]\nArchiveDir="%s/archive/"\nPickupDir="%s/pickup/"\nTolerationLevel=1\nWhole=4500\nBottom=3600\n' \
    "$home" "$home" >"$settings"
fi

if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
  exec "$home/quellbox-sample"
fi
picture=build/run/quellbox.png
rm -f "$picture"
QT_QPA_PLATFORM=xcb xvfb-run -a -s '-screen 0 1280x800x24' \
  "$home/quellbox-sample" --print-list --screenshot "$picture" </dev/null
echo "There is no display here. The window's picture is in $picture"
