#!/usr/bin/env bash
# Tries the Debian package out in a fresh minimal Debian 12: installs it with what it depends on, starts the program
# there over an archive of samples, removes and purges it, and looks for what was left behind. Needs root. The system is
# a folder below /tmp (or TMPDIR), and gone at the end.
set -euo pipefail
cd "$(dirname "$0")/.."
suite=bookworm
count=200

if [ "$(id -u)" -ne 0 ]; then
  exec sudo "$0" "$@"
fi
# In a mount namespace of its own, so that no mount can outlive the script, however it ends.
if [ -z "${QUELLBOX_UNSHARED:-}" ]; then
  exec env QUELLBOX_UNSHARED=1 unshare --mount --propagation private "$0" "$@"
fi
scripts/install-packages.sh package

package=$(realpath -e "${1:-$(echo build/package/quellbox_*.deb)}")
samples=build/package/quellbox_samples
[ -x "$samples" ] || { echo "Build the package first: make package" >&2; exit 1; }

# The mirror from which this machine gets its packages.
# shellcheck disable=SC2016 # apt fills these in
mirror=$(apt-get indextargets --format '$(SUITE) $(CODENAME) $(COMPONENT) $(REPO_URI)' 'Created-By: Packages' |
  awk -v suite="$suite" '($1 == suite || $2 == suite) && $3 == "main" { print $4; exit }')
mirror=${mirror:-http://deb.debian.org/debian}

work=$(mktemp -d)
root=$work/root
chmod 755 "$work"
cleanup() {
  if mountpoint -q "$root/proc"; then umount -l "$root/proc"; fi
  rm -rf --one-file-system "$work"
}
trap cleanup EXIT

step() { echo "== $* ($SECONDS s)"; }
fail() { echo "-- FAILED: $*" >&2; exit 1; }
inside() { chroot "$root" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin LC_ALL=C.UTF-8 DEBIAN_FRONTEND=noninteractive "$@"; }
# Every file but what the package manager writes for itself.
list_files() {
  find "$root" -xdev \( -path "$root/proc" -o -path "$root/dev" -o -path "$root/tmp" -o -path "$root/var/lib/dpkg" \
    -o -path "$root/var/lib/apt" -o -path "$root/var/cache" -o -path "$root/var/log" \) -prune -o -printf '/%P\n' | sort
}

step "a fresh $suite from $mirror"
debootstrap --variant=minbase "$suite" "$root" "$mirror" >"$work/debootstrap.log" ||
  { tail -n 20 "$work/debootstrap.log"; fail debootstrap; }
# No service starts in there.
printf '#!/bin/sh\nexit 101\n' >"$root/usr/sbin/policy-rc.d"
chmod 755 "$root/usr/sbin/policy-rc.d"
mount -t proc proc "$root/proc"

step 'install'
cp "$package" "$root/tmp/quellbox.deb"
inside apt-get -q update >"$work/apt.log"
inside apt-get -q -y --no-install-recommends install /tmp/quellbox.deb </dev/null >>"$work/apt.log" 2>&1 ||
  { tail -n 30 "$work/apt.log"; fail install; }
inside dpkg -s quellbox | grep -E '^(Status|Version|Depends):'
inside dpkg --verify quellbox | { ! grep .; } || fail 'installed files differ from the package'
inside dpkg -L quellbox | sort >"$work/owned"
list_files >"$work/installed"

step "start over $count samples"
"$samples" --count "$count" --seed 12 --days 14 --out "$root/srv/archive"
mkdir -p "$root/srv/home"
chmod 700 "$root/srv/home"
chown -R 1000:1000 "$root/srv/archive" "$root/srv/home"
as_user() {
  chroot --userspec=1000:1000 "$root" env -i PATH=/usr/bin:/bin HOME=/srv/home LC_ALL="${language:-C.UTF-8}" TZ=UTC \
    QT_QPA_PLATFORM=offscreen XDG_RUNTIME_DIR=/srv/home timeout 120 "$@"
}
start() { as_user quellbox "$@"; }
rows=$(start --print-list /srv/archive 2>"$work/errors" | wc -l)
cat "$work/errors"
[ "$rows" -eq "$count" ] || fail "$count messages, and $rows rows"
echo "$rows rows"
[ ! -e "$root/srv/home/.config/quellbox/settings.ini" ] || fail 'printing the list has stored settings'
language=de_DE.UTF-8 start --help >"$work/help" 2>&1
grep -q Verzeichnis "$work/help" || { cat "$work/help"; fail 'the help is not German'; }
rows=$(as_user quellboxctl list --names --archive /srv/archive | wc -l)
[ "$rows" -eq "$count" ] || fail "$count messages, and quellboxctl lists $rows"
# Nothing works at night unless somebody switches it on.
[ -z "$(find "$root/etc/systemd" -name '*quellbox*')" ] || fail 'a unit is switched on'
# Qt loads the plugins that draw the icons by itself, and is silent when they are missing.
for plugin in imageformats/libqsvg.so iconengines/libqsvgicon.so; do
  [ -n "$(find "$root/usr/lib" -path "*/qt6/plugins/$plugin")" ] || fail "$plugin is missing"
done
# The same goes for what reaches the passwords that the desktop keeps.
[ -n "$(find "$root/usr/lib" -name libsecret-1.so.0)" ] || fail 'libsecret is missing'
rm -r "$root/srv/archive" "$root/srv/home"

step 'remove and purge'
inside apt-get -q -y remove quellbox >>"$work/apt.log" 2>&1 || { tail -n 30 "$work/apt.log"; fail remove; }
# apt does not know it any more, unless there is something to purge.
inside dpkg --purge quellbox >>"$work/apt.log" 2>&1 || { tail -n 30 "$work/apt.log"; fail purge; }
if inside dpkg -s quellbox >/dev/null 2>&1; then fail 'the package is still known'; fi
rm "$root/tmp/quellbox.deb"

step 'what is left'
list_files >"$work/purged"
comm -13 "$work/installed" "$work/purged" >"$work/new"
[ ! -s "$work/new" ] || { cat "$work/new"; fail 'files that were not there before'; }
# All that went, and nothing else, belonged to the package; its folders stay where others use them.
comm -23 "$work/installed" "$work/purged" >"$work/gone"
comm -23 "$work/gone" "$work/owned" >"$work/foreign"
[ ! -s "$work/foreign" ] || { cat "$work/foreign"; fail 'files of others are gone'; }
comm -12 "$work/owned" "$work/purged" | while read -r path; do
  [ -d "$root$path" ] && { [ "$path" = / ] || inside dpkg -S "$path" >/dev/null 2>&1; } || echo "$path"
done >"$work/left"
[ ! -s "$work/left" ] || { cat "$work/left"; fail 'files of the package are left'; }
find "$root" -xdev -path "$root/proc" -prune -o -path "$root/dev" -prune -o -iname '*quellbox*' -print \
  | grep -v -E "^$root/var/(log|cache/apt)/" >"$work/named" || true
[ ! -s "$work/named" ] || { cat "$work/named"; fail 'files of its name are left'; }
step 'passed'
