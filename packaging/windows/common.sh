# Read by the other scripts of this folder: where things lie, and how a prefix is built once and kept.
set -euo pipefail
recipes=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
root=$(cd "$recipes/../.." && pwd)
cache=${QUELLBOX_WINDOWS_CACHE:-${XDG_CACHE_HOME:-$HOME/.cache}/quellbox-windows}
triple=x86_64-w64-mingw32
jobs=${JOBS:-$(nproc)}
# Flags of whoever calls would end up in what is kept.
unset CFLAGS CXXFLAGS CPPFLAGS LDFLAGS PKG_CONFIG_PATH

# prefix NAME FILE... - prints the folder of a prefix, whose name tells the recipe and the sources it was built from.
prefix() {
  local name=$1 key
  shift
  key=$( (cd "$recipes" && cat -- "$@") | cat - "$cache/versions" | sha256sum | cut -c1-16)
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
