#!/usr/bin/env bash
# Packs the built program, and the sources of it and of its libraries:  pack.sh BUILD
. "$(dirname "$0")/common.sh"
build=$1
cached() { sed -n "s/^$1:[A-Z]*=//p" "$build/cmake/CMakeCache.txt"; }
version=$(cached CMAKE_PROJECT_VERSION)
name=quellbox-$version-windows
folder=$build/$name
sources=$name-sources
rm -rf "$build"/quellbox-*-windows "$build"/quellbox-*.zip "$build"/quellbox-*-setup.exe "$build"/quellbox-*-sources.tar
mkdir -p "$folder/licenses"

# What is no library of Windows itself would be missing where the programs are started.
ours=$("$triple-objdump" -p "$build"/cmake/quellbox{,ctl}.exe | awk '/DLL Name:/ { print tolower($3) }' | grep -vxE \
  '(advapi32|authz|bcrypt|comctl32|comdlg32|crypt32|d3d9|d3d11|dnsapi|dwmapi|dwrite|dxgi|gdi32|imm32|iphlpapi|kernel32|mpr|msvcrt|netapi32|ole32|oleaut32|shcore|shell32|shlwapi|user32|userenv|uxtheme|version|winmm|ws2_32|wtsapi32|api-ms-win-core-[a-z0-9-]*)\.dll' || true)
if [ -n "$ours" ]; then
  echo "The programs want libraries that Windows does not have:" $ours
  exit 1
fi
for program in quellbox quellboxctl; do
  "$triple-strip" -o "$folder/$program.exe" "$build/cmake/$program.exe"
done
cp "$build/cmake/Quellbox.chm" "$folder/"

# text SOURCE TARGET - a text with the line ends that the system's editor understands.
text() { sed 's/$/\r/' "$1" >"$folder/$2"; }
text "$root/LICENSE" LICENSE.txt
# What works at night; tasks are described in the UTF-16 in which Windows exports them.
text "$recipes/quellboxctl-nightly.cmd" quellboxctl-nightly.cmd
{
  printf '\xff\xfe'
  sed -e '1s/?>$/ encoding="UTF-16"?>/' -e 's/$/\r/' "$recipes/quellboxctl-nightly.xml" | iconv -f UTF-8 -t UTF-16LE
} >"$folder/quellboxctl-nightly.xml"
for library in qt mail curl uchardet html; do
  for terms in "$(cat "$build/$library.prefix")"/licenses/*; do
    text "$terms" "licenses/$(basename "$terms")"
  done
done
for package in mingw-w64-common gcc-mingw-w64-x86-64-posix-runtime libz-mingw-w64-dev; do
  text "/usr/share/doc/$package/copyright" "licenses/$package.txt"
done
# What the texts above refer to.
for terms in LGPL-2 LGPL-2.1 LGPL-3 GPL-2 GPL-3 Apache-2.0; do
  text "/usr/share/common-licenses/$terms" "licenses/$terms.txt"
done
{
  cat <<END
Quellbox is free under the terms of LICENSE.txt.

quellbox.exe and quellboxctl.exe also hold these libraries of Debian, each under its own terms, which are in the folder
"licenses":

END
  while read -r library made; do
    printf '  %-10s %s\n' "$library" "$made"
  done <"$cache/versions"
  cat <<END

They also hold parts of zlib and of the runtime libraries of GCC and MinGW-w64.

Qt, GLib, GMime and uchardet are under the GNU Lesser General Public License. The archive $sources.tar, which is
offered beside these programs, holds the sources of the libraries in the list, those of Quellbox, and the scripts that
build the programs of them on Debian. Whoever wants another Qt, say, unpacks it into a folder qt6-base (dpkg-source -x),
changes it there, and builds the programs by QUELLBOX_SOURCES=FOLDER packaging/windows/build.sh, where FOLDER is the
full path of what holds qt6-base.
END
} >"$build/notice.txt"
text "$build/notice.txt" NOTICE.txt

(cd "$build" && zip -q -9 -X -r "$name.zip" "$name")

# The installer removes what it brought, and nothing else that may lie in its folder.
(cd "$folder" && find . -mindepth 1 -type f -printf '%P\n' | tr / '\\' | sed 's|.*|Delete "$INSTDIR\\&"|') >"$build/files.nsh"
makensis -V2 -NOCD -INPUTCHARSET UTF8 -DVERSION="$version" -DCOMPANY="$(cached QUELLBOX_COMPANY)" \
  -DCOPYRIGHT="$(cached QUELLBOX_COPYRIGHT)" -DSOURCE="$folder" -DFILES="$build/files.nsh" \
  -DICON="$build/resources/icons/quellbox.ico" -DOUTPUT="$build/$name-setup.exe" "$recipes/quellbox.nsi"

mkdir -p "$build/$sources/quellbox" "$build/$sources/libraries"
# What is in the folder beside the sources is nobody's concern.
tracked() {
  git -C "$root" ls-files -z 2>/dev/null || (cd "$root" && find . -path ./build -prune -o -type f -print0)
}
tracked | tar -c -C "$root" --null -T - | tar -x -C "$build/$sources/quellbox"
while read -r library _; do
  "$recipes/sources.sh" files "$library" | xargs -d '\n' cp -a -t "$build/$sources/libraries"
done <"$cache/versions"
tar -c -f "$build/$sources.tar" -C "$build" "$sources"
rm -rf "${build:?}/$sources"
