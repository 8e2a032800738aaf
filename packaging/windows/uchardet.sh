#!/usr/bin/env bash
# Builds the library that tells the character set of a text, static and without its program:  uchardet.sh PREFIX
. "$(dirname "$0")/common.sh"
prefix=$1

"$recipes/sources.sh" unpack uchardet
# Its tests are programs, which nobody here runs.
sed -i '/^add_subdirectory(test)/d' uchardet/CMakeLists.txt
cmake -S uchardet -B build -G Ninja --toolchain "$recipes/toolchain.cmake" -DCMAKE_BUILD_TYPE=Release \
  -DCMAKE_INSTALL_PREFIX="$prefix" -DCMAKE_INSTALL_LIBDIR=lib -DBUILD_SHARED_LIBS=OFF -DBUILD_BINARY=OFF
cmake --build build -j "$jobs"
cmake --install build
# Whoever links C++ has the compiler's own library already, the static one.
sed -i '/^Libs.private:/d' "$prefix/lib/pkgconfig/uchardet.pc"
install -D -m 644 uchardet/debian/copyright "$prefix/licenses/uchardet.txt"
