#!/usr/bin/env bash
# Builds GoogleTest of the sources that Debian installs:  googletest.sh PREFIX
. "$(dirname "$0")/common.sh"
cmake -S /usr/src/googletest -B build -G Ninja --toolchain "$recipes/toolchain.cmake" -DCMAKE_BUILD_TYPE=Release \
  -DCMAKE_INSTALL_PREFIX="$1" -DBUILD_GMOCK=OFF -DBUILD_SHARED_LIBS=OFF
cmake --build build -j "$jobs"
cmake --install build
