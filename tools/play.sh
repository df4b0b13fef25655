#!/usr/bin/env bash
# Starts the game under Wine on the user's desktop, in a virtual desktop of the screen's size.
# Usage: play.sh BUILD_DIR [widget-demo]   (the second form starts the widget demo instead)
set -euo pipefail
build=$(cd "$1" && pwd)
here=$(cd "$(dirname "$0")/.." && pwd)
if [ -z "${DISPLAY:-}" ]; then
  echo "make play needs a desktop to show the game on: DISPLAY is not set." >&2
  exit 1
fi
size=$(xdpyinfo 2>/dev/null | awk '/dimensions:/ {print $2; exit}')
size=${size:-1024x768}
bash "$here/tools/setup/wine-prefix.sh" "$build/wine-play" "$size"
export WINEPREFIX=$build/wine-play WINEDEBUG=-all
if [ "${2:-}" = widget-demo ]; then
  cd "$build/win64/tests/win/widgets"
  exec wine widget_demo.exe
fi
echo "Game built: $build/win64/dist/Quorvex.exe (64-bit), $build/win32/dist/Quorvex.exe (32-bit)"
cd "$build/win64/dist"
exec wine Quorvex.exe
