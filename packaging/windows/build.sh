#!/usr/bin/env bash
# Builds the program for 64-bit Windows, and from it a portable zip and an installer, all into build/windows/. What the
# program is linked with is built from Debian's sources and kept in the cache; the names of its folders there tell what
# they were built from, so that a changed recipe or source builds anew.
#   build.sh [tests] [-DNAME=VALUE...]
# With "tests" the test programs are built too. What begins with -D goes to cmake: who makes the program, say.
. "$(dirname "$0")/common.sh"
build=$root/build/windows
mkdir -p "$cache" "$build"
begin=$SECONDS
tests=OFF
if [ "${1:-}" = tests ]; then
  tests=ON
  shift
fi

# Another clone may use the same cache.
exec 9>"$cache/lock"
flock 9
"$recipes/sources.sh" versions

# kept NAME SOURCES PACKAGES FILE... - the prefix NAME from the script NAME.sh, which together with the other FILEs, the
# source packages and the packages of this machine decides what it holds.
kept() {
  local name=$1 sources=$2 packages=$3 folder
  shift 3
  folder=$(prefix "$name" "$sources" "$packages" common.sh toolchain.cmake "$name.sh" "$@")
  # A configured build would go on with the libraries that it has found.
  [ "$(cat "$build/$name.prefix" 2>/dev/null)" = "$folder" ] || rm -rf "$build/cmake"
  if [ ! -e "$folder/complete" ]; then
    rm -rf "$folder" "$folder.work"
    mkdir -p "$folder.work"
    # The work folder stays when a step fails, to be looked at.
    (cd "$folder.work" && work=$folder.work step "$name, once" "$recipes/$name.sh" "$folder")
    rm -rf "$folder.work"
    touch "$folder/complete"
  fi
  echo "$folder" >"$build/$name.prefix"
}
kept mail 'glib2.0 gmime pcre2 libffi' libz-mingw-w64-dev mingw.ini intl/libintl.h intl/intl.c iconv/iconv.h iconv/iconv-detect.h
kept curl curl ''
kept uchardet uchardet ''
kept html 'libxml2 libpsl' publicsuffix mingw.ini
kept qt 'qt6-base sqlite3' qt6-base-dev
prefixes="$(cat "$build/mail.prefix");$(cat "$build/curl.prefix");$(cat "$build/uchardet.prefix");$(cat "$build/html.prefix");$(cat "$build/qt.prefix")"
if [ $tests = ON ]; then
  kept googletest '' googletest
  prefixes+=";$(cat "$build/googletest.prefix")"
fi
exec 9>&-

work=$build
PKG_CONFIG_LIBDIR=/usr/$triple/lib/pkgconfig
for name in html uchardet curl mail; do
  PKG_CONFIG_LIBDIR=$(cat "$build/$name.prefix")/lib/pkgconfig:$PKG_CONFIG_LIBDIR
done
export PKG_CONFIG_LIBDIR
step 'pictures' "$recipes/pictures.sh" "$build/resources"
host=/usr/lib/$(gcc -print-multiarch)/cmake
step 'configuration' cmake -S "$root" -B "$build/cmake" -G Ninja --toolchain "$recipes/toolchain.cmake" \
  -DCMAKE_BUILD_TYPE=Release -DCMAKE_FIND_ROOT_PATH="$prefixes" -DQT_HOST_PATH=/usr \
  -DQT_HOST_PATH_CMAKE_DIR="$host" -DQt6LinguistTools_DIR="$host/Qt6LinguistTools" \
  -DQUELLBOX_RESOURCES="$build/resources/quellbox.qrc" -DQUELLBOX_ICON="$build/resources/icons/quellbox.ico" \
  -DCMAKE_PROJECT_INCLUDE="$recipes/static.cmake" -DQUELLBOX_QT_TRANSLATIONS=/usr/share/qt6/translations \
  -DQUELLBOX_TESTS=$tests -DQUELLBOX_BENCHMARKS=OFF -DCMAKE_CROSSCOMPILING_EMULATOR=wine "$@"
targets=(quellbox quellboxctl help_chm)
[ $tests = OFF ] || targets+=(all)
step 'program' cmake --build "$build/cmake" -j "$jobs" --target "${targets[@]}"
step 'zip and installer' "$recipes/pack.sh" "$build"
printf '%-58s%5d s\n' 'in all' $((SECONDS - begin))
ls -l "$build"/*.zip "$build"/*.exe
