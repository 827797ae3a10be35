#!/usr/bin/env bash
# Runs the whole test suite on an instrumented build and reports the line and branch
# coverage of library/; fails when a test fails or line coverage drops below the floor.
# Usage: tools/coverage.sh [ctest arguments...]   (report: build-coverage/coverage/)
set -euo pipefail
cd "$(dirname "$0")/.."
./tools/install-deps.sh
build=build-coverage
floor=$(cat tools/coverage-floor.txt)

flags="--coverage -O0"
cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=Debug \
  -DCMAKE_C_FLAGS="$flags" -DCMAKE_CXX_FLAGS="$flags" > /dev/null
# Every target but the sanitizer variants: they compile the library a second time, and
# instrumented twice it would be counted twice.
sanitized='.*_(asan|sanitized)'
targets=$(cmake --build "$build" --target help | sed -n 's/^\.\.\. \([a-z][^ ]*\)$/\1/p' |
  grep -vxE "all|clean|depend|test|install.*|list_install_components|.*_cache|$sanitized")
cmake --build "$build" -j"$(nproc)" --target $targets

find "$build" -name '*.gcda' -delete
tests_failed=0
# The valgrind runs repeat programs that run plainly too: they add time, not coverage.
xvfb-run -a -s "-screen 0 1280x1024x24" ctest --test-dir "$build" --output-on-failure \
  -E "^${sanitized}\$" -LE valgrind "$@" || tests_failed=1

mkdir -p "$build/coverage"
summary=$(gcovr -r . -f 'library/' -j"$(nproc)" --exclude-throw-branches \
  --exclude-unreachable-branches --html-details "$build/coverage/index.html" \
  --print-summary "$build")
percent() { sed -n "s/^$1: \([0-9.]*\)%.*/\1/p" <<< "$summary"; }
lines=$(percent lines) branches=$(percent branches)

status=0
[ "$tests_failed" -eq 0 ] || { echo "FAILED: tests failed in the coverage run (see above)"; status=1; }
if awk -v l="$lines" -v f="$floor" 'BEGIN { exit !(l < f) }'; then
  echo "FAILED: line coverage of library/ ${lines}% is below the floor of ${floor}%"
  status=1
fi
echo "line coverage of library/: ${lines}%"
echo "branch coverage of library/: ${branches}%"
exit $status
