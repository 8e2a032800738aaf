#!/usr/bin/env bash
# Builds the parser of HTML and the list of public suffixes, static, with what the program uses of them:  html.sh PREFIX
. "$(dirname "$0")/common.sh"
prefix=$1

echo "== libxml2"
# All but the parser of HTML that is fed in pieces: nothing fetches, unpacks or converts.
off=(C14N CATALOG DEBUG DOCB FTP HTTP ICONV ICU ISO8859X LEGACY LZMA MEM_DEBUG MODULES PATTERN PROGRAMS PYTHON READER
  REGEXPS RUN_DEBUG SCHEMAS SCHEMATRON TESTS VALID WRITER XINCLUDE XPATH XPTR ZLIB)
features=()
for feature in "${off[@]}"; do
  features+=("-DLIBXML2_WITH_$feature=OFF")
done
"$recipes/sources.sh" unpack libxml2
PKG_CONFIG_LIBDIR= cmake -S libxml2 -B libxml2-build -G Ninja --toolchain "$recipes/toolchain.cmake" \
  -DCMAKE_BUILD_TYPE=Release -DCMAKE_INSTALL_PREFIX="$prefix" -DCMAKE_INSTALL_LIBDIR=lib -DBUILD_SHARED_LIBS=OFF \
  -DLIBXML2_WITH_HTML=ON -DLIBXML2_WITH_PUSH=ON -DLIBXML2_WITH_SAX1=ON -DLIBXML2_WITH_THREADS=ON "${features[@]}"
cmake --build libxml2-build -j "$jobs"
cmake --install libxml2-build
# What cmake calls the library differs between versions, and no version tells that its functions come from no other file.
[ -e "$prefix/lib/libxml2.a" ] || mv "$prefix"/lib/libxml2*.a "$prefix/lib/libxml2.a"
sed -i -e 's/^Cflags:.*/Cflags: -I${includedir}\/libxml2 -DLIBXML_STATIC/' -e 's/^Libs.private:.*/Libs.private: -lws2_32/' \
  "$prefix/lib/pkgconfig/libxml-2.0.pc"

echo "== libpsl"
# The list is Debian's, as it is on this machine, and becomes a part of the library. Names in other scripts are brought into
# ASCII by the program itself.
"$recipes/sources.sh" unpack libpsl
sed "s|@PREFIX@|$prefix|" "$recipes/mingw.ini" >mingw.ini
sed -i -E "/^subdir\('(tools|tests|fuzz|docs)'\)/d" libpsl/meson.build
meson setup --cross-file mingw.ini --prefix "$prefix" --libdir lib --buildtype release --default-library static \
  -Druntime=no -Dbuiltin=true -Dpsl_file=/usr/share/publicsuffix/public_suffix_list.dat --wrap-mode nodownload \
  libpsl-build libpsl
ninja -C libpsl-build -j "$jobs" install

for source in libxml2 libpsl; do
  install -D -m 644 "$source/debian/copyright" "$prefix/licenses/$source.txt"
done
