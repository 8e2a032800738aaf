#!/usr/bin/env bash
# Builds the Debian package, checks it with lintian and leaves it in build/package. Installs what that needs.
set -euo pipefail
cd "$(dirname "$0")/.."
jobs=${JOBS:-$(nproc)}
scripts/install-packages.sh package

# Debian's own flags, with all of its hardening; the symbols for debugging would be stripped anyway.
export DEB_BUILD_MAINT_OPTIONS=hardening=+all
CXXFLAGS="$(dpkg-buildflags --get CPPFLAGS) $(dpkg-buildflags --get CXXFLAGS) -g0"
LDFLAGS="$(dpkg-buildflags --get LDFLAGS) ${LDFLAGS:-}"
export CXXFLAGS LDFLAGS
# The time of the last change stands in the package, so that the same sources give the same bytes.
SOURCE_DATE_EPOCH=$(date -d "$(sed -n 's/^ -- .*>  //p' packaging/changelog | head -n 1)" +%s)
export SOURCE_DATE_EPOCH
umask 022

cmake --fresh --preset package
cmake --build --preset package -j "$jobs"
rm -f build/package/*.deb
(cd build/package && cpack -G DEB)
package=$(echo build/package/*.deb)
dpkg-deb --info "$package"
lintian --fail-on error,warning --tag-display-limit 0 "$package"
echo "The package is $package"
