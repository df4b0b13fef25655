#!/usr/bin/env bash
# Runs every fuzz target for longer than the test run does, on the corpus the test run left
# behind plus the checked-in seeds. Usage: fuzz.sh FUZZ_TREE SECONDS [WORKERS]
#
# With more than one worker (the default is 2, one a core of the build machine), each target
# runs as that many ordinary libFuzzer processes for SECONDS (-jobs/-workers): they share the
# corpus folder, each picking up what the others add, and each writes its log to
# FUZZ_TREE/tests/fuzz/logs/TARGET/fuzz-N.log. The executions reported are the sum of the
# workers' last status lines (#N), each counted by libFuzzer itself.
set -euo pipefail
tree=$(cd "$1" && pwd)
seconds=${2:-300}
workers=${3:-2}
here=$(cd "$(dirname "$0")/../.." && pwd)
status=0
for target in "$tree"/tests/fuzz/fuzz_*; do
  [ -x "$target" ] || continue
  name=$(basename "$target")
  corpus="$tree/tests/fuzz/corpus/$name"
  seeds="$here/tests/fuzz/seeds/$name"
  mkdir -p "$corpus"
  dirs=("$corpus")
  [ -d "$seeds" ] && dirs+=("$seeds")
  options=(-max_total_time="$seconds" -rss_limit_mb=2048 -timeout=10)
  if [ "$workers" -le 1 ]; then
    echo "== $name for $seconds s"
    "$target" "${options[@]}" "${dirs[@]}" || status=1
    continue
  fi
  echo "== $name for $seconds s, $workers workers"
  logs="$tree/tests/fuzz/logs/$name"
  mkdir -p "$logs"
  rm -f "$logs"/fuzz-*.log
  # libFuzzer writes the workers' logs into the working folder; the corpus paths are absolute.
  (cd "$logs" && "$target" -jobs="$workers" -workers="$workers" "${options[@]}" "${dirs[@]}") ||
    status=1
  total=0
  took=$seconds  # the longest worker's own time, from its last line, when it got that far
  for log in "$logs"/fuzz-*.log; do
    [ -f "$log" ] || continue
    runs=$(grep -aoE '^#[0-9]+' "$log" | tail -n 1 | tr -d '#')
    echo "   $(basename "$log"): ${runs:-0} executions"
    total=$((total + ${runs:-0}))
    time=$(sed -nE 's/^Done [0-9]+ runs in ([0-9]+) second.*/\1/p' "$log" | tail -n 1)
    [ -n "$time" ] && [ "$time" -gt "$took" ] && took=$time
  done
  echo "== $name: $total executions over $workers workers in $took s ($((total / took)) a second)"
done
exit $status
