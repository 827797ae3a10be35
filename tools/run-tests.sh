#!/usr/bin/env bash
# Builds xcontrols and runs the whole test suite under a private X server (Xvfb).
# Usage: tools/run-tests.sh [ctest arguments...]
set -euo pipefail
cd "$(dirname "$0")/.."
./tools/install-deps.sh
cmake -S . -B build -DCMAKE_BUILD_TYPE=RelWithDebInfo > /dev/null
cmake --build build -j"$(nproc)"
xvfb-run -a -s "-screen 0 1280x1024x24" ctest --test-dir build --output-on-failure "$@"
