#!/usr/bin/env bash
# Fuzzes the BMP reader's decoding and image fill for a bounded time.
#
#   tools/fuzz-bmp.sh [SECONDS]      (default 60)
#
# Builds tests/bmp/fuzz with clang (libFuzzer, AddressSanitizer, UndefinedBehaviorSanitizer)
# in its own build directory ($FUZZ_BUILD_DIR, default build-fuzz-bmp beside the sources),
# starts from the files in tests/bmp/corpus and exits non-zero when it finds an input
# that crashes or misbehaves. Such an input is saved under the build directory's
# artifacts/; it then belongs in tests/bmp/corpus, named <what>.<expected code>.bmp, where
# the test suite reads it.
set -euo pipefail

seconds=${1:-60}
root=$(cd "$(dirname "$0")/.." && pwd)
build=${FUZZ_BUILD_DIR:-$root/build-fuzz-bmp}

mkdir -p "$build/corpus" "$build/artifacts"
cmake -S "$root/tests/bmp/fuzz" -B "$build" -DCMAKE_CXX_COMPILER=clang++ \
      -DCMAKE_BUILD_TYPE=RelWithDebInfo > "$build/configure.log" 2>&1 \
  || { cat "$build/configure.log"; exit 1; }
cmake --build "$build" -j2 > "$build/build.log" 2>&1 || { cat "$build/build.log"; exit 1; }

exec "$build/bmp_fuzz" -max_total_time="$seconds" -max_len=20000 -timeout=10 \
     -rss_limit_mb=2048 -print_final_stats=1 -artifact_prefix="$build/artifacts/" \
     "$build/corpus" "$root/tests/bmp/corpus"
