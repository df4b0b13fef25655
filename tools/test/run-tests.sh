#!/usr/bin/env bash
# Runs every CTest suite of the build trees in one CTest run, under Xvfb for the Wine tests.
# Usage: run-tests.sh BUILD_DIR
set -euo pipefail
build=$(cd "$1" && pwd)
here=$(cd "$(dirname "$0")/../.." && pwd)

bash "$here/tools/setup/wine-prefix.sh" "$build/wine-test" 1024x768

# One test file over all trees, so that CTest prints one summary for everything.
trees=()
for tree in native asan fuzz win64; do
  [ -f "$build/$tree/CTestTestfile.cmake" ] && trees+=("\"$tree\"")
done
echo "subdirs(${trees[*]})" > "$build/CTestTestfile.cmake"

export WINEPREFIX=$build/wine-test WINEDEBUG=-all
# A Wine server kept alive for the whole run makes each Windows test start in milliseconds.
exec xvfb-run -a -s "-screen 0 1024x768x24" bash -c '
  wineserver -p
  cd "$0"
  ctest --output-on-failure -j 2
  status=$?
  wineserver -k || true
  exit $status
' "$build"
