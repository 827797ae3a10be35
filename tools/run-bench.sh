#!/usr/bin/env bash
# Builds the benchmarks optimised and runs each one under a private X server; then counts
# the screen benchmark's client instructions under callgrind, the library's against raw
# Motif's, at 1000 items.
set -euo pipefail
cd "$(dirname "$0")/.."
build="${BENCH_BUILD_DIR:-build-bench}"
./tools/install-deps.sh
cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=Release -DBUILD_TESTING=OFF > /dev/null
cmake --build "$build" -j"$(nproc)"
export KX_HOME="$PWD/$build/share/xcontrols" KX_TRACE=off
display=(xvfb-run -a -s "-screen 0 1280x1024x24")
for bench in "$build"/bin/bench_*; do
  echo "== $(basename "$bench")"
  # The X server on one processor and the benchmark on another, when there are two:
  # neither then waits for the other to be scheduled.
  if [ "$(nproc)" -ge 2 ]; then
    taskset -c 1 "${display[@]}" taskset -c 0 "$bench"
  else
    "${display[@]}" "$bench"
  fi
done

echo "== bench_screen --instructions (callgrind)"
dumps="$(mktemp -d)"
trap 'rm -rf "$dumps"' EXIT
"${display[@]}" valgrind --tool=callgrind --instr-atstart=no --callgrind-out-file="$dumps/cg" \
  "$build/bin/bench_screen" --instructions > "$dumps/log" 2>&1 || { cat "$dumps/log"; exit 1; }
# Prints each callgrind dump's phase name and its count of instructions.
dumpTotals() {
  for f in "$@"; do
    awk '/^desc: Trigger: Client Request: /{sub(/^desc: Trigger: Client Request: /, ""); name=$0}
         /^totals: /{print name, $2}' "$f"
  done
}
# Each dump is one phase: "<screen> <library|motif> <build|teardown>", and its count.
dumpTotals "$dumps"/cg.* | awk '
  { count[$1 " " $2 " " $3] = $4 }
  END {
    ok = 1
    split("blocks mixed", screens, " ")
    for (i = 1; i in screens; ++i) {
      s = screens[i]
      b = count[s " library build"] / count[s " motif build"]
      t = count[s " library teardown"] / count[s " motif teardown"]
      printf "instructions at 1000 items, %s screen, library / motif: build+layout %.2f, teardown %.2f\n", s, b, t
      if (b > 1.15 || t > 1.15) ok = 0
    }
    printf "goal (instruction ratios <= 1.15): %s\n", ok ? "met" : "NOT met"
  }'

echo "== bench_update --instructions (callgrind)"
"${display[@]}" valgrind --tool=callgrind --instr-atstart=no --callgrind-out-file="$dumps/update" \
  "$build/bin/bench_update" --instructions > "$dumps/log" 2>&1 || { cat "$dumps/log"; exit 1; }
# Two dumps: "update library" and "update motif", the same changes made by hand.
dumpTotals "$dumps"/update.* | awk '
  { count[$2] = $3 }
  END {
    r = count["library"] / count["motif"]
    printf "instructions of one update at 4000 items, library / motif: %.2f\n", r
    printf "goal (instruction ratio <= 1.50): %s\n", r <= 1.5 ? "met" : "NOT met"
  }'
