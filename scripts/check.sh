#!/usr/bin/env bash
# Runs every check, also after one has failed, and ends with the numbers of what passed and what failed: checks, and
# the single tests in them.
set -u
cd "$(dirname "$0")/.." || exit 1
root=$PWD
jobs=$(nproc)
export CTEST_OUTPUT_ON_FAILURE=1 QT_QPA_PLATFORM=offscreen
passed=0
failed=0
failures=()

check() {
  local name=$1 start=$SECONDS
  shift
  echo "== $name"
  if "$@" </dev/null; then
    passed=$((passed + 1))
  else
    failed=$((failed + 1))
    failures+=("$name")
    echo "-- FAILED: $name"
  fi
  echo "-- $((SECONDS - start)) s"
}

# Adds the single tests of a preset's last test run to the numbers.
count_tests() {
  local log=build/$1/Testing/Temporary/LastTest.log
  [ -e "$log" ] || return 0
  passed=$((passed + $(awk '/^\[  PASSED  \]/ { n += $4 } END { print n + 0 }' "$log")))
  failed=$((failed + $(awk '/^\[  FAILED  \] [0-9]+ tests?, listed/ { n += $4 } END { print n + 0 }' "$log")))
}

# What was tried on shares that go wrong, and what became of the messages.
show_faults() { grep -h '^faults: ' "build/$1/Testing/Temporary/LastTest.log" || echo "faults: none tried, see what was skipped"; }

sources() { git ls-files -z -- "$@"; }

format() {
  ! git grep -nE '^(<<<<<<<|>>>>>>>) ' && sources '*.h' '*.cpp' | xargs -0 -r clang-format --dry-run -Werror
}

includes() { python3 scripts/check_includes_test.py && python3 scripts/check_includes.py; }

# passedByValue: clang-tidy judges that with the sizes of the types at hand.
cpp_check() {
  sources '*.cpp' | tr '\0' '\n' >build/cppcheck.files || return 1
  cppcheck --quiet -j "$jobs" --std=c++20 --library=qt --library=googletest --language=c++ --enable=warning,performance,portability \
    --inline-suppr --suppress=missingInclude --suppress=unknownMacro --suppress=internalAstError --suppress=passedByValue -I . \
    -DQT_VERSION_STR= --error-exitcode=1 --file-list=build/cppcheck.files
}

build() { cmake --preset "$1" -DQUELLBOX_FAST_BUILD=ON && cmake --build --preset "$1" -j "$jobs"; }

run_tests() { rm -f "build/$1/Testing/Temporary/LastTest.log"; ctest --preset "$1" -j "$jobs" --timeout 900; }

# A dozen files go as one, because their time is that of the libraries' headers. Two of a folder that give the same name to
# something of their own then clash: it is a copy, or wants a better name.
tidy() {
  cmake --preset tidy -DCMAKE_GLOBAL_AUTOGEN_TARGET=ON -DCMAKE_AUTOGEN_ORIGIN_DEPENDS=OFF >build/tidy.log 2>&1 &&
    cmake --build --preset tidy --target autogen -j "$jobs" >>build/tidy.log 2>&1 || { cat build/tidy.log; return 1; }
  local here
  here=$(printf '%s' "$root" | sed 's/[].[^$*+?(){}|\\]/\\&/g')
  timeout 35m run-clang-tidy -quiet -p build/tidy -j "$jobs" -checks=-bugprone-suspicious-include \
    "^$here/(?!.*(tests|\.rcc|_autogen)/)" >build/tidy.log 2>&1 ||
    { grep -E -A4 '(warning|error):' build/tidy.log || tail -n 30 build/tidy.log; return 1; }
}

mkdir -p build
check 'layout of the code' format
check '#include lines' includes
check 'cppcheck' cpp_check
check 'build' build dev
check 'tests' run_tests dev
count_tests dev
show_faults dev
check 'build with sanitizers' build asan
export LSAN_OPTIONS="suppressions=$root/scripts/lsan.supp:print_suppressions=0"
export UBSAN_OPTIONS=print_stacktrace=1
check 'tests with sanitizers' run_tests asan
count_tests asan
check 'clang-tidy' tidy

for name in "${failures[@]+"${failures[@]}"}"; do
  echo "failed: $name"
done
echo "$passed passed, $failed failed"
[ "$failed" -eq 0 ]
