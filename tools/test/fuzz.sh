#!/usr/bin/env bash
# Runs every fuzz target for longer than the test run does, on the corpus the test run left
# behind plus the checked-in seeds. Usage: fuzz.sh FUZZ_TREE SECONDS
set -euo pipefail
tree=$(cd "$1" && pwd)
seconds=${2:-300}
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
  echo "== $name for $seconds s"
  "$target" -max_total_time="$seconds" -rss_limit_mb=2048 -timeout=10 "${dirs[@]}" || status=1
done
exit $status
