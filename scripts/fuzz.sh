#!/usr/bin/env bash
# Builds the fuzz targets and runs each for SECONDS_PER_TARGET seconds (60), also after one has found something. What is
# learnt stays in build/fuzz-corpus/, an input that breaks a rule in build/fuzz-findings/. Fails when there is one.
set -euo pipefail
cd "$(dirname "$0")/.."
jobs=${JOBS:-$(nproc)}
seconds=${SECONDS_PER_TARGET:-60}

cmake --preset fuzz
cmake --build --preset fuzz -j "$jobs" --target quellbox_fuzz
export UBSAN_OPTIONS=print_stacktrace=1

failed=0
for source in fuzz/*.cpp; do
  name=$(basename "$source" .cpp)
  [ "$name" != Replay ] || continue
  corpus=build/fuzz-corpus/$name
  findings=build/fuzz-findings/$name
  mkdir -p "$corpus" "$findings"
  seeds=(tests/data)
  [ ! -d "fuzz/seeds/$name" ] || seeds+=("fuzz/seeds/$name")
  echo "== $name"
  # The first folder takes what is new; the others are only read. Inputs of 64 KiB reach every rule.
  if "build/fuzz/quellbox_fuzz_$name" -max_total_time="$seconds" -max_len=65536 -timeout=10 -print_final_stats=1 \
    -verbosity=0 -artifact_prefix="$findings/" "$corpus" "${seeds[@]}" </dev/null >"$findings.log" 2>&1; then
    grep '^stat::' "$findings.log"
  else
    tail -n 60 "$findings.log"
    echo "-- FAILED: $name, see $findings"
    failed=1
  fi
done
exit "$failed"
