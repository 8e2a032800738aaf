# Builds for 64-bit Windows with Debian's mingw-w64 compilers. The variant "posix" has the threads of the C++ library.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

# Headers, libraries and packages come from the prefixes of CMAKE_FIND_ROOT_PATH alone, programs from this computer.
list(APPEND CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# One file without libraries of its own beside it: what pkg-config tells is what static linking needs.
set(CMAKE_EXE_LINKER_FLAGS_INIT -static)
set(PKG_CONFIG_ARGN --static CACHE STRING "" FORCE)
