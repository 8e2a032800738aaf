#!/usr/bin/env bash
# Builds the benchmarks and runs them all on archives of samples, which are made once. Prints a table of figures;
# the last column says what is wanted. Fails when a result is wrong, never because something is slow.
set -euo pipefail
cd "$(dirname "$0")/.."
jobs=${JOBS:-$(nproc)}
binaries=build/release
data=build/bench
# The off-screen window system warns about hints that it does not know.
export QT_QPA_PLATFORM=offscreen QT_LOGGING_RULES='default.warning=false'

mkdir -p build
{
  cmake --preset release -DQUELLBOX_BENCHMARKS=ON &&
    cmake --build --preset release -j "$jobs" --target quellbox_benchmarks quellbox_samples
} >build/bench.log 2>&1 || { tail -n 40 build/bench.log; exit 1; }

archive() {
  local folder="$data/$1-$2"
  if [ ! -d "$folder" ]; then
    rm -rf "$folder.new"
    "$binaries/quellbox_samples" --count "$1" --seed "$2" --days 14 --out "$folder.new"
    mv "$folder.new" "$folder"
  fi
}

mkdir -p "$data"
seed=${SEED:-2003}
archive 32000 "$seed"
archive 2000 "$seed"
many="$data/32000-$seed"
few="$data/2000-$seed"

failed=0
run() {
  echo "== $1"
  "$binaries/$@" || { echo "-- FAILED: $1"; failed=1; }
}
run refresh_bench "$many" "$few"
run work_bench
run share_bench
run action_bench
run mount_bench
run memory_bench "$many"
run responsiveness_bench "$many"
run model_bench
run whitelist_bench "$many"
run cleansing_bench "$data"
run raw_pane_bench
run delivery_bench
run header_bench --benchmark_min_time=0.1
exit "$failed"
