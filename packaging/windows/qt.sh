#!/usr/bin/env bash
# Builds Qt's base library, static, with what the program uses of it:  qt.sh PREFIX
. "$(dirname "$0")/common.sh"
prefix=$1
# Every format and font library is Qt's own copy, since Debian has none for Windows.
off=(pkg_config dbus network printsupport xml vulkan direct2d1_1 tabletevent icu glib zstd system_zlib system_png
  system_pcre2 system_doubleconversion system_harfbuzz system_sqlite)
# What the program does not use, and what only takes time to build.
off+=(jpeg gif pdf freetype graphicsview textodfwriter textmarkdownreader textmarkdownwriter syntaxhighlighter
  splashscreen mdiarea wizard calendarwidget columnview fontcombobox lcdnumber dial keysequenceedit undocommand
  sql_db2 sql_ibase sql_mysql sql_oci sql_odbc sql_psql sqlmodel)
features=()
for feature in "${off[@]}"; do
  features+=("-DFEATURE_$feature=OFF")
done

"$recipes/sources.sh" unpack qt6-base
# Debian leaves the copy of SQLite out of Qt's sources. That of SQLite's own is put together from many files.
"$recipes/sources.sh" unpack sqlite3
(cd sqlite3 && ./configure --disable-tcl --disable-readline && make sqlite3.c sqlite3.h)
mkdir -p qt6-base/src/3rdparty/sqlite
cp sqlite3/sqlite3.c sqlite3/sqlite3.h qt6-base/src/3rdparty/sqlite
PKG_CONFIG_LIBDIR= cmake -S qt6-base -B build -G Ninja --toolchain "$recipes/toolchain.cmake" -DCMAKE_BUILD_TYPE=Release \
  -DCMAKE_INSTALL_PREFIX="$prefix" -DBUILD_SHARED_LIBS=OFF -DQT_QMAKE_TARGET_MKSPEC=win32-g++ -DQT_HOST_PATH=/usr \
  -DQT_HOST_PATH_CMAKE_DIR="/usr/lib/$(gcc -print-multiarch)/cmake" -DQT_BUILD_EXAMPLES=OFF -DQT_BUILD_TESTS=OFF \
  -DINPUT_opengl=no "${features[@]}"
cmake --build build -j "$jobs"
cmake --install build
install -D -m 644 qt6-base/debian/copyright "$prefix/licenses/qt6-base.txt"
install -D -m 644 sqlite3/debian/copyright "$prefix/licenses/sqlite3.txt"
