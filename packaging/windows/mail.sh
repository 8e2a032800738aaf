#!/usr/bin/env bash
# Builds the mail library and what it needs, static:  mail.sh PREFIX
. "$(dirname "$0")/common.sh"
prefix=$1
cc=$triple-gcc-posix
export PKG_CONFIG="pkg-config --static" PKG_CONFIG_LIBDIR="$prefix/lib/pkgconfig:/usr/$triple/lib/pkgconfig"
mkdir -p "$prefix/include" "$prefix/lib"

archive() { "$triple-ar" crs "$prefix/lib/lib$1.a" "$2" && rm "$2"; }

echo "== libintl"
cp "$recipes/intl/libintl.h" "$prefix/include/"
$cc -O2 -c "$recipes/intl/intl.c" -o intl.o
archive intl intl.o

echo "== libiconv"
"$recipes/sources.sh" unpack glib2.0
cp "$recipes/iconv/iconv.h" "$prefix/include/"
$cc -O2 -include "$prefix/include/iconv.h" -c glib2.0/glib/win_iconv.c -o iconv.o
archive iconv iconv.o

echo "== libffi"
"$recipes/sources.sh" unpack libffi
(cd libffi && ./configure --host=$triple CC=$cc --prefix="$prefix" --libdir="$prefix/lib" --enable-static --disable-shared \
  --disable-docs --disable-multi-os-directory && make -j "$jobs" && make install)

echo "== pcre2"
"$recipes/sources.sh" unpack pcre2
cmake -S pcre2 -B pcre2-build -G Ninja --toolchain "$recipes/toolchain.cmake" -DCMAKE_BUILD_TYPE=Release \
  -DCMAKE_INSTALL_PREFIX="$prefix" -DCMAKE_FIND_ROOT_PATH="$prefix" -DBUILD_SHARED_LIBS=OFF -DPCRE2_BUILD_TESTS=OFF \
  -DPCRE2_BUILD_PCRE2GREP=OFF -DPCRE2_SUPPORT_UNICODE=ON
cmake --build pcre2-build -j "$jobs"
cmake --install pcre2-build

echo "== glib"
sed "s|@PREFIX@|$prefix|" "$recipes/mingw.ini" >mingw.ini
sed -i "/^subdir('fuzzing')/d" glib2.0/meson.build
# Meson asks for the program by its bare name, so the wish for static libraries comes from the default_library below.
(unset PKG_CONFIG
  meson setup --cross-file mingw.ini --prefix "$prefix" --libdir lib --buildtype release --default-library static \
    -Dtests=false -Dnls=disabled -Dlibelf=disabled -Dlibmount=disabled -Dselinux=disabled -Dxattr=false \
    --wrap-mode nodownload glib-build glib2.0
  ninja -C glib-build -j "$jobs" install)

echo "== gmime"
"$recipes/sources.sh" unpack gmime
(cd gmime
  cp "$recipes/iconv/iconv-detect.h" .
  touch ChangeLog # automake misses it
  autoreconf -fi
  ./configure --host=$triple CC=$cc CPPFLAGS="-I$prefix/include" LDFLAGS="-L$prefix/lib" --prefix="$prefix" \
    --enable-static --disable-shared --disable-crypto --disable-gtk-doc --disable-introspection --disable-vala \
    --with-libidn=no --with-libiconv=gnu ac_cv_have_iconv_detect_h=yes
  make -j "$jobs" -C util
  make -j "$jobs" -C gmime install
  make install-pkgconfigDATA)

for source in glib2.0 libffi pcre2 gmime; do
  install -D -m 644 "$source/debian/copyright" "$prefix/licenses/$source.txt"
done
