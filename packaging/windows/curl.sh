#!/usr/bin/env bash
# Builds the library that speaks with mail servers, static, with Windows' own TLS and few protocols:  curl.sh PREFIX
. "$(dirname "$0")/common.sh"
prefix=$1
# Everything but SMTP, and HTTP: Debian's correction of CVE-2023-38039 calls a function of that for every protocol.
off=(ALTSVC COOKIES DICT DOH FILE FTP GETOPTIONS GOPHER HSTS IMAP LDAP LDAPS LIBCURL_OPTION MIME MQTT NETRC PARSEDATE
  POP3 RTSP SMB TELNET TFTP)
features=()
for feature in "${off[@]}"; do
  features+=("-DCURL_DISABLE_$feature=ON")
done

"$recipes/sources.sh" unpack curl
PKG_CONFIG_LIBDIR= cmake -S curl -B build -G Ninja --toolchain "$recipes/toolchain.cmake" -DCMAKE_BUILD_TYPE=Release \
  -DCMAKE_INSTALL_PREFIX="$prefix" -DCMAKE_INSTALL_LIBDIR=lib -DBUILD_SHARED_LIBS=OFF -DBUILD_CURL_EXE=OFF \
  -DBUILD_TESTING=OFF -DENABLE_MANUAL=OFF -DENABLE_UNIX_SOCKETS=OFF -DCURL_USE_SCHANNEL=ON -DCURL_USE_OPENSSL=OFF \
  -DCURL_USE_LIBPSL=OFF -DCURL_USE_LIBSSH2=OFF -DCURL_ZLIB=OFF -DUSE_LIBIDN2=OFF -DUSE_WIN32_LDAP=OFF "${features[@]}"
cmake --build build -j "$jobs"
cmake --install build
# It tells neither that its functions come from no other file, nor Windows' libraries without those of the compiler.
sed -i -e 's/^Cflags:.*/& -DCURL_STATICLIB/' -e 's/^\(Libs: [^@]*-lcurl\).*/\1/' \
  -e 's/^Libs.private:.*/Libs.private: -lws2_32 -lbcrypt -lcrypt32 -ladvapi32/' "$prefix/lib/pkgconfig/libcurl.pc"
install -D -m 644 curl/debian/copyright "$prefix/licenses/curl.txt"
