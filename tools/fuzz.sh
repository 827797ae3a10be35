#!/usr/bin/env bash
# Fuzzes one of the project's libFuzzer targets for a bounded time.
#
#   tools/fuzz.sh TARGET [SECONDS]      (default 60)
#
# TARGET is "screenfile" (the screen file loader and its answers, tests/viewer/fuzz,
# starting from examples/screens) or "bmp" (the picture decoder, tests/bmp/fuzz, starting
# from tests/bmp/corpus). Builds the target with clang (libFuzzer, AddressSanitizer,
# UndefinedBehaviorSanitizer) in its own build directory ($FUZZ_BUILD_DIR, default
# build-fuzz-TARGET beside the sources) and exits non-zero when it finds an input that
# crashes, leaks pool blocks or breaks the target's checks. Such an input is saved under
# the build directory's artifacts/; make it a case of the target's tests.
set -euo pipefail

target=${1:?usage: tools/fuzz.sh screenfile|bmp [SECONDS]}
seconds=${2:-60}
root=$(cd "$(dirname "$0")/.." && pwd)
case $target in
  screenfile) sources=tests/viewer/fuzz; seeds=examples/screens; max_len=65536 ;;
  bmp) sources=tests/bmp/fuzz; seeds=tests/bmp/corpus; max_len=20000 ;;
  *) echo "tools/fuzz.sh: unknown target $target (screenfile or bmp)" >&2; exit 2 ;;
esac
build=${FUZZ_BUILD_DIR:-$root/build-fuzz-$target}

mkdir -p "$build/corpus" "$build/artifacts"
cmake -S "$root/$sources" -B "$build" -DCMAKE_CXX_COMPILER=clang++ \
      -DCMAKE_BUILD_TYPE=RelWithDebInfo > "$build/configure.log" 2>&1 \
  || { cat "$build/configure.log"; exit 1; }
cmake --build "$build" -j2 > "$build/build.log" 2>&1 || { cat "$build/build.log"; exit 1; }

exec "$build/${target}_fuzz" -max_total_time="$seconds" -max_len="$max_len" -timeout=10 \
     -rss_limit_mb=2048 -print_final_stats=1 -artifact_prefix="$build/artifacts/" \
     "$build/corpus" "$root/$seeds"
