#!/usr/bin/env bash
# Fetches the Debian sources of what the program is linked with. apt gets a configuration of its own that adds deb-src,
# so that the lists of the system stay as they are; it takes nothing but what Debian has signed.
#   sources.sh versions      fetches the newest sources there are and writes their versions to the cache. A look each
#                            day is enough, and without a network the last one counts.
#   sources.sh unpack NAME   unpacks a source package into ./NAME, or copies the one that QUELLBOX_SOURCES has
#   sources.sh files NAME    prints the files of a source package, or the folder of the one that QUELLBOX_SOURCES has
. "$(dirname "$0")/common.sh"
sources=(qt6-base sqlite3 glib2.0 gmime pcre2 libffi curl uchardet libxml2 libpsl)
mirror=${QUELLBOX_DEBIAN_MIRROR:-http://deb.debian.org}
apt="$cache/apt"
mkdir -p "$apt/lists/partial" "$apt/archives/partial" "$cache/sources"

cat >"$apt/debian.sources.new" <<END
Types: deb-src
URIs: $mirror/debian
Suites: bookworm bookworm-updates
Components: main
Signed-By: /usr/share/keyrings/debian-archive-keyring.gpg

Types: deb-src
URIs: $mirror/debian-security
Suites: bookworm-security
Components: main
Signed-By: /usr/share/keyrings/debian-archive-keyring.gpg
END
# Its time tells when another mirror was named.
cmp -s "$apt/debian.sources.new" "$apt/debian.sources" || cp "$apt/debian.sources.new" "$apt/debian.sources"
rm "$apt/debian.sources.new"
options=(-q -o "Dir::Etc::SourceList=/dev/null" -o "Dir::Etc::SourceParts=$apt/" -o "Dir::State::Lists=$apt/lists"
  -o "Dir::Cache=$apt" -o "Dir::Cache::Archives=$apt/archives" -o "APT::Sandbox::User=$(id -un)"
  -o "APT::Update::Error-Mode=any" -o "APT::Get::AllowUnauthenticated=false"
  -o "Acquire::AllowInsecureRepositories=false" -o "Acquire::AllowDowngradeToInsecureRepositories=false")

# Both say by their exit code whether it worked, since errors end no function whose result is asked for.
fetch_newest() {
  local version versions
  versions=$(apt-cache "${options[@]}" showsrc --only-source "$1" | awk '/^Version:/ { print $2 }' | sort -urV) || return
  for version in $versions; do
    if (cd "$cache/sources" && apt-get "${options[@]}" --download-only source "$1=$version") >>"$apt/fetch.log" 2>&1; then
      echo "$1 $version"
      return 0
    fi
    # A mirror can name a version whose files it has not got yet, or no more; then the one before it will do.
    echo "$1 $version cannot be fetched now." >&2
  done
  return 1
}

look() {
  local source
  apt-get "${options[@]}" update >"$apt/fetch.log" 2>&1 || return
  for source in "${sources[@]}"; do
    fetch_newest "$source" || return
  done >"$cache/versions.new"
}

version_of() { awk -v name="$1" '$1 == name { print $2 }' "$cache/versions"; }

# A source may have been added since the last look.
knows_all() {
  local source
  for source in "${sources[@]}"; do
    [ -n "$(version_of "$source")" ] || return
  done
}

description_of() {
  local version
  version=$(version_of "$1")
  printf '%s/%s_%s.dsc\n' "$cache/sources" "$1" "${version#*:}"
}

case $1 in
  versions)
    if [ -n "$(find "$cache/versions" -mtime 0 -newer "$apt/debian.sources" 2>/dev/null)" ] && knows_all; then
      exit
    fi
    if look; then
      mv "$cache/versions.new" "$cache/versions"
    elif [ -e "$cache/versions" ]; then
      echo "Debian's sources cannot be looked at now; the ones of $(date -r "$cache/versions" +%F) are used."
    else
      tail -n 5 "$apt/fetch.log" >&2
      exit 1
    fi
    ;;
  unpack)
    if [ -d "${QUELLBOX_SOURCES:-}/$2" ]; then
      cp -a "$QUELLBOX_SOURCES/$2" "$2"
      exit
    fi
    # apt has verified the files when it fetched them.
    dpkg-source --no-check -x "$(description_of "$2")" "$2"
    ;;
  files)
    if [ -d "${QUELLBOX_SOURCES:-}/$2" ]; then
      echo "$QUELLBOX_SOURCES/$2"
      exit
    fi
    description=$(description_of "$2")
    echo "$description"
    awk -v folder="$cache/sources/" '/^[^ ]/ { listed = /^Checksums-Sha256:/; next } listed { print folder $3 }' \
      "$description"
    ;;
esac
