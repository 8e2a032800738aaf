#!/usr/bin/env bash
# Fetches the Debian sources of what the program is linked with. apt gets a configuration of its own that adds deb-src,
# so that the lists of the system stay as they are.
#   sources.sh versions      writes the versions that Debian has now, newest first, to the cache, if Debian can be reached
#   sources.sh unpack NAME   unpacks a source package into ./NAME
. "$(dirname "$0")/common.sh"
sources=(qt6-base glib2.0 gmime pcre2 libffi)
mirror=${QUELLBOX_DEBIAN_MIRROR:-http://deb.debian.org}
apt="$cache/apt"
mkdir -p "$apt/lists/partial" "$apt/archives/partial" "$cache/sources"

cat >"$apt/debian.sources" <<END
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
options=(-q -o "Dir::Etc::SourceList=/dev/null" -o "Dir::Etc::SourceParts=$apt/" -o "Dir::State::Lists=$apt/lists"
  -o "Dir::Cache=$apt" -o "Dir::Cache::Archives=$apt/archives" -o "APT::Sandbox::User=$(id -un)")

case $1 in
  versions)
    # A look each day is enough, and without a network the last one counts.
    if [ -z "$(find "$cache/versions" -mtime 0 2>/dev/null)" ]; then
      if apt-get "${options[@]}" update >"$apt/update.log" 2>&1; then
        for source in "${sources[@]}"; do
          echo "$source" $(apt-cache "${options[@]}" showsrc --only-source "$source" |
            awk '/^Version:/ { print $2 }' | sort -rV)
        done >"$cache/versions.new"
        cmp -s "$cache/versions.new" "$cache/versions" || cp "$cache/versions.new" "$cache/versions"
        touch "$cache/versions"
      elif [ ! -e "$cache/versions" ]; then
        tail -n 5 "$apt/update.log" >&2
        exit 1
      fi
    fi
    ;;
  unpack)
    # A mirror can name a version whose files it has not got yet, or no more; then the one before it will do.
    for version in $(awk -v name="$2" '$1 == name { $1 = ""; print }' "$cache/versions"); do
      if (cd "$cache/sources" && apt-get "${options[@]}" --download-only source "$2=$version"); then
        dpkg-source --no-check -x "$cache/sources/$2_${version#*:}.dsc" "$2"
        exit
      fi
    done
    exit 1
    ;;
esac
