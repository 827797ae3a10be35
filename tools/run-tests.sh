#!/usr/bin/env bash
# Builds xcontrols and runs the whole test suite under a private X server (Xvfb).
# Usage: tools/run-tests.sh [ctest arguments...]
# Without arguments it runs everything but the valgrind runs (-L valgrind runs those).
set -euo pipefail
cd "$(dirname "$0")/.."
./tools/install-deps.sh
cmake -S . -B build -DCMAKE_BUILD_TYPE=RelWithDebInfo > /dev/null
cmake --build build -j"$(nproc)"
[ $# -eq 0 ] && set -- -LE valgrind
trap ./tools/count-lines.sh EXIT
xvfb-run -a -s "-screen 0 1280x1024x24" ctest --test-dir build --output-on-failure "$@"
