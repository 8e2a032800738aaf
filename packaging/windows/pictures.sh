#!/usr/bin/env bash
# Draws the pictures of resources/ in every size that a display asks for, since the program for Windows has no code that
# draws them:  pictures.sh FOLDER
# The resource file that it writes has the names of the drawings; Qt tells by the contents what a picture is.
. "$(dirname "$0")/common.sh"
folder=$1
mkdir -p "$folder/icons"
draw() {
  local source=$1 target=$2 size pictures=()
  shift 2
  [ "$target" -ot "$source" ] || [ "$target" -ot "$recipes/pictures.sh" ] || return 0
  for size in "$@"; do
    rsvg-convert -w "$size" -h "$size" "$source" -o "$folder/$size.png"
    # From 64 pixels on a picture is stored as it is, which only newer programs need to understand.
    if [ "$size" -lt 64 ]; then pictures+=("$folder/$size.png"); else pictures+=("--raw=$folder/$size.png"); fi
  done
  icotool --create --output="$target.new" "${pictures[@]}"
  mv "$target.new" "$target"
}
for drawing in "$root"/resources/icons/*.svg; do
  name=$(basename "$drawing" .svg)
  if [ "$name" = quellbox ]; then
    draw "$drawing" "$folder/icons/$name.ico" 16 20 24 32 40 48 64 128 256
  else
    draw "$drawing" "$folder/icons/$name.ico" 16 20 24 28 32 40 48 64
  fi
done
rm -f "$folder"/*.png
sed 's|>\(icons/[^<]*\)\.svg<|>\1.ico<|' "$root/resources/quellbox.qrc" >"$folder/quellbox.qrc.new"
cmp -s "$folder/quellbox.qrc.new" "$folder/quellbox.qrc" || cp "$folder/quellbox.qrc.new" "$folder/quellbox.qrc"
