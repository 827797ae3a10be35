#!/usr/bin/env bash
# Builds the benchmarks optimised and runs each one under a private X server.
set -euo pipefail
cd "$(dirname "$0")/.."
./tools/install-deps.sh
cmake -S . -B build-bench -DCMAKE_BUILD_TYPE=Release -DBUILD_TESTING=OFF > /dev/null
cmake --build build-bench -j"$(nproc)"
for bench in build-bench/bin/bench_*; do
  echo "== $(basename "$bench")"
  # The X server on one processor and the benchmark on another, when there are two:
  # neither then waits for the other to be scheduled.
  if [ "$(nproc)" -ge 2 ]; then
    KX_HOME="$PWD/build-bench/share/xcontrols" taskset -c 1 xvfb-run -a -s "-screen 0 1280x1024x24" taskset -c 0 "$bench"
  else
    KX_HOME="$PWD/build-bench/share/xcontrols" xvfb-run -a -s "-screen 0 1280x1024x24" "$bench"
  fi
done
