# Read by the other scripts of this folder: where things lie, and how a prefix is built once and kept.
set -euo pipefail
shopt -s inherit_errexit
recipes=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
root=$(cd "$recipes/../.." && pwd)
cache=${QUELLBOX_WINDOWS_CACHE:-${XDG_CACHE_HOME:-$HOME/.cache}/quellbox-windows}
[[ $cache = /* ]] || cache=$PWD/$cache
case $cache in
  *[!A-Za-z0-9/._+@-]*)
    echo "The configure scripts of the libraries cannot do with the characters of $cache; set QUELLBOX_WINDOWS_CACHE." >&2
    exit 2
    ;;
esac
export QUELLBOX_WINDOWS_CACHE=$cache
triple=x86_64-w64-mingw32
jobs=${JOBS:-$(nproc)}
# What the caller has set for builds of this machine would end up in what is kept.
unset CFLAGS CXXFLAGS CPPFLAGS LDFLAGS CC CXX AR DESTDIR MAKEFLAGS MAKELEVEL \
  CPATH C_INCLUDE_PATH CPLUS_INCLUDE_PATH LIBRARY_PATH PKG_CONFIG_PATH CMAKE_PREFIX_PATH
export LC_ALL=C.UTF-8

# changed SOURCE - tells the contents of a library that the caller has changed, in a folder of QUELLBOX_SOURCES.
changed() {
  if [ -d "${QUELLBOX_SOURCES:-}/$1" ]; then
    (cd "$QUELLBOX_SOURCES/$1" && find . -type f -print0 | sort -z | xargs -0 sha256sum)
  fi
}

# prefix NAME SOURCES PACKAGES FILE... - prints the folder of a prefix, whose name tells what it is built from: the
# recipe's files, source packages, and packages of this machine, the compiler among them.
prefix() {
  local name=$1 sources=$2 packages=$3 source key
  shift 3
  key=$(
    {
      cd "$recipes"
      cat -- "$@"
      for source in $sources; do
        grep "^$source " "$cache/versions"
        changed "$source"
      done
      # shellcheck disable=SC2086 # a list
      dpkg-query -W -f '${Package} ${Version}\n' g++-mingw-w64-x86-64-posix mingw-w64-x86-64-dev $packages
    } | sha256sum | cut -c1-16
  )
  printf '%s/%s-%s\n' "$cache" "$name" "$key"
}

# step TEXT COMMAND... - runs a step whose words go to a log, and shows the log's end if the step fails.
step() {
  local text=$1 log="$work/${1//[^a-zA-Z0-9]/-}.log" start=$SECONDS
  shift
  printf '%-58s' "$text"
  if ! "$@" >"$log" 2>&1 </dev/null; then
    printf 'FAILED\n'
    tail -n 40 "$log"
    echo "The whole log is $log"
    return 1
  fi
  printf '%5d s\n' $((SECONDS - start))
}
