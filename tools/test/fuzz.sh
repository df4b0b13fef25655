#!/usr/bin/env bash
# Runs every fuzz target for longer than the test run does. Usage: fuzz.sh FUZZ_TREE SECONDS
set -euo pipefail
tree=$(cd "$1" && pwd)
seconds=${2:-300}
status=0
for target in "$tree"/tests/fuzz/fuzz_*; do
  [ -x "$target" ] || continue
  name=$(basename "$target")
  corpus="$tree/tests/fuzz/corpus/$name"
  mkdir -p "$corpus"
  echo "== $name for $seconds s"
  "$target" -max_total_time="$seconds" -rss_limit_mb=2048 -timeout=10 "$corpus" || status=1
done
exit $status
