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
# A PulseAudio server with a null sink for the music tests, where this machine can run one.
if bash "$here/tools/test/pulse-server.sh" start "$build/pulse" >/dev/null; then
  export $(bash "$here/tools/test/pulse-server.sh" env "$build/pulse")
fi
# A CUPS-PDF default printer for the printing test, where this machine can run one.
if bash "$here/tools/test/cups-server.sh" start "$build/cups" >/dev/null; then
  export "$(bash "$here/tools/test/cups-server.sh" env "$build/cups")" QV_PRINT_OUTPUT=$HOME/PDF
fi
# A Wine server kept alive for the whole run makes each Windows test start in milliseconds.
status=0
xvfb-run -a -s "-screen 0 1024x768x24" bash -c '
  wineserver -p
  # Start the prefix'"'"'s background services now, outside CTest: started by a test they would
  # inherit its output pipe and CTest would wait for them until the time-out.
  wine cmd.exe /c exit >/dev/null 2>&1 </dev/null || true
  cd "$0"
  ctest --output-on-failure -j 2 2>&1 | tee ctest-output.txt
  status=${PIPESTATUS[0]}
  wineserver -k || true
  exit $status
' "$build" || status=$?
bash "$here/tools/test/pulse-server.sh" stop "$build/pulse"
bash "$here/tools/test/cups-server.sh" stop "$build/cups"

# After CTest's own summary: how long each build tree took (its last build) and each label ran.
echo
echo "== Time per build tree (seconds, last build)"
if [ -f "$build/timings.txt" ]; then
  awk '{ last[$1] = $2 } END { for (t in last) printf "  %-10s %6d\n", t, last[t] }' \
    "$build/timings.txt" | sort
fi
echo "== Time per test label (seconds, summed over its tests)"
sed -n '/^Label Time Summary:/,/^$/p' "$build/ctest-output.txt" | sed '1d;/^$/d;s/^/  /'
# CTest's verdict once more as the last line, so that it closes the output.
awk '/tests passed, [0-9]+ tests? failed out of/ {
       for (i = 1; i <= NF; ++i) { if ($i == "out") total = $(i + 2); if ($i ~ /^tests?$/ && $(i + 1) == "failed") failed = $(i - 1) }
     } END { if (total != "") printf "ctest: %d passed, %d failed\n", total - failed, failed }' \
  "$build/ctest-output.txt"
exit $status
