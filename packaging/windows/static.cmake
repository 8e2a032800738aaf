# Read at the start of the project. Of a library that is there in both forms the static one is taken, and resources are
# compressed as the static Qt can read them, not as the Qt that compresses them could.
set(CMAKE_FIND_LIBRARY_SUFFIXES .a)
set(CMAKE_AUTORCC_OPTIONS --no-zstd)
