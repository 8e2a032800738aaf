#!/usr/bin/env bash
# Packs the built program:  pack.sh BUILD
. "$(dirname "$0")/common.sh"
build=$1
version=$(sed -n 's/^CMAKE_PROJECT_VERSION:STATIC=//p' "$build/cmake/CMakeCache.txt")
company=$(sed -n 's/^QUELLBOX_COMPANY:STRING=//p' "$build/cmake/CMakeCache.txt")
name=quellbox-$version-windows
rm -rf "${build:?}/$name" "$build"/quellbox-*.zip "$build"/quellbox-*-setup.exe
mkdir "$build/$name"
"$triple-strip" -o "$build/$name/quellbox.exe" "$build/cmake/quellbox.exe"
# A line end that the system's editor understands.
sed 's/$/\r/' "$root/LICENSE" >"$build/$name/LICENSE.txt"
# The terms of what the program is linked with, beside its own.
mkdir "$build/$name/licenses"
for text in "$(cat "$build/qt.prefix")"/licenses/* "$(cat "$build/mail.prefix")"/licenses/*; do
  sed 's/$/\r/' "$text" >"$build/$name/licenses/$(basename "$text")"
done
cp "$build/cmake/Quellbox.chm" "$build/$name/"
(cd "$build" && zip -q -9 -r "$name.zip" "$name")
makensis -V2 -NOCD -INPUTCHARSET UTF8 -DVERSION="$version" -DCOMPANY="$company" -DSOURCE="$build/$name" \
  -DICON="$build/resources/icons/quellbox.ico" -DOUTPUT="$build/$name-setup.exe" "$recipes/quellbox.nsi"
