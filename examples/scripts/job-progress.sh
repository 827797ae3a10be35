#!/bin/sh
# job-progress.sh - a job's progress dialog: xcontrols-view shows it and this script
# counts the job's saved files in it through a named pipe, one update document per step;
# at the end the dialog is retitled and offers Close, whose press prints the answers.
# Usage: examples/scripts/job-progress.sh [FILES]   (needs a display)
#   FILES              how many files the pretend job saves (default 10)
#   XCV=PATH           the viewer (default: build/bin/xcontrols-view)
#   JOB_PROGRESS_PAUSE seconds between two files (default 1)
set -eu
files=${1:-10}
viewer=${XCV:-build/bin/xcontrols-view}
pause=${JOB_PROGRESS_PAUSE:-1}

dir=$(mktemp -d)
trap 'rm -rf "$dir"' EXIT
trap 'exit 1' INT TERM
mkfifo "$dir/updates"
cat > "$dir/progress.json" <<'SCREEN'
{"jobId": 7, "title": "Backup running", "items": [
  {"type": "Label", "id": 1, "data": {"text": "Saved files:"},
   "attach": {"left": {"kind": "position", "position": 0, "offset": 10},
              "top": {"kind": "position", "position": 0, "offset": 10}}},
  {"type": "Label", "id": 2, "data": {"text": "0"},
   "attach": {"left": {"kind": "item", "item": 1, "offset": 8},
              "right": {"kind": "position", "position": 100, "offset": 10},
              "top": {"kind": "position", "position": 0, "offset": 10}}},
  {"type": "PushButton", "id": 3, "hidden": true, "data": {"label": "Close"},
   "actions": [{"kind": "CLOSE", "target": 3}],
   "attach": {"top": {"kind": "item", "item": 2, "offset": 12},
              "left": {"kind": "position", "position": 0, "offset": 10},
              "bottom": {"kind": "position", "position": 100, "offset": 10}}}]}
SCREEN

"$viewer" --updates "$dir/updates" "$dir/progress.json" &
shown=$!
exec 3>"$dir/updates"
saved=0
while [ "$saved" -lt "$files" ]; do
  sleep "$pause"
  saved=$((saved + 1))
  printf '{"update": "items", "items": [{"type": "Label", "id": 2, "data": {"text": "%d of %d"}}]}\n' \
    "$saved" "$files" >&3
done
printf '%s%s\n' '{"update": "items", "title": "Backup done", "items": [' \
  '{"type": "PushButton", "id": 3, "data": {"label": "Close"}, "actions": [{"kind": "CLOSE", "target": 3}]}]}' >&3
exec 3>&-
status=0
wait "$shown" || status=$?
exit "$status"
