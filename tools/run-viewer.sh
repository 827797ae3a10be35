#!/usr/bin/env bash
# The main job: builds the viewer and shows the backup job's options screen. With a
# display it opens a window (answers are printed when OK or Cancel closes it); without
# one it renders the screen to out/backup-options.png under a private X server and
# prints that path. Arguments, when given, are passed to the viewer instead.
# Usage: tools/run-viewer.sh [xcontrols-view arguments...]
set -euo pipefail
cd "$(dirname "$0")/.."
./tools/install-deps.sh
# The same build directory and type as tools/run-tests.sh, so that neither rebuilds
# what the other built.
cmake -S . -B build -DCMAKE_BUILD_TYPE=RelWithDebInfo > /dev/null
cmake --build build -j"$(nproc)" --target xcontrols-view >&2

viewer=build/bin/xcontrols-view
screen=examples/screens/backup-options.json
if [ $# -gt 0 ]; then
  args=("$@")
elif [ -n "${DISPLAY:-}" ]; then
  args=("$screen")
else
  mkdir -p out
  args=(--png "$PWD/out/backup-options.png" "$screen")
fi
if [ -n "${DISPLAY:-}" ]; then
  exec "$viewer" "${args[@]}"
fi
exec xvfb-run -a -s "-screen 0 1280x1024x24" "$viewer" "${args[@]}"
