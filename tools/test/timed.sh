#!/usr/bin/env bash
# Runs a build step and appends "TREE SECONDS" to BUILD_DIR/timings.txt, keeping its exit status.
# Usage: timed.sh BUILD_DIR TREE COMMAND...
set -uo pipefail
build=$1 tree=$2
shift 2
mkdir -p "$build"
start=$(date +%s)
"$@"
status=$?
echo "$tree $(( $(date +%s) - start ))" >> "$build/timings.txt"
exit $status
