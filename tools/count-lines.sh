#!/usr/bin/env bash
# Prints the C/C++ lines of the tests beside those of the code, and their ratio.
set -euo pipefail
cd "$(dirname "$0")/.."
count() {
  find "$@" -type f \( -name '*.c' -o -name '*.cc' -o -name '*.cpp' -o -name '*.h' \
    -o -name '*.hpp' \) -print0 | xargs -0 cat | wc -l
}
tests=$(count tests)
code=$(count library include tools examples bench)
awk -v t="$tests" -v c="$code" \
  'BEGIN { printf "test lines %d / code lines %d = %.2f (goal <= 0.35)\n", t, c, t / c }'
