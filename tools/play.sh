#!/usr/bin/env bash
# Starts the game under Wine on the user's desktop, in a virtual desktop of the screen's size.
# Usage: play.sh BUILD_DIR [widget-demo]   (the second form starts the widget demo instead)
# QUORVEX_PLAY_EXIT_WHEN_SHOWN=1 makes it end, successfully, as soon as the game's main window
# exists (and fail if it never appears): the tests use it to run the start-up path unattended.
set -euo pipefail
build=$(cd "$1" && pwd)
here=$(cd "$(dirname "$0")/.." && pwd)
if [ -z "${DISPLAY:-}" ]; then
  echo "make play needs a desktop to show the game on: DISPLAY is not set." >&2
  exit 1
fi

# The whole description is read before it is searched: stopping at the first match would close
# the pipe under xdpyinfo, which on most desktops writes more than a pipe holds and would die of
# SIGPIPE, taking this script with it.
screen_size() {
  local info line
  info=$(xdpyinfo 2>/dev/null) || true
  while IFS= read -r line; do
    if [[ $line =~ dimensions:[[:space:]]+([0-9]+x[0-9]+) ]]; then
      echo "${BASH_REMATCH[1]}"
      return
    fi
  done <<<"$info"
  echo 1024x768
}

size=$(screen_size)
bash "$here/tools/setup/wine-prefix.sh" "$build/wine-play" "$size"
export WINEPREFIX=$build/wine-play WINEDEBUG=-all
if [ "${2:-}" = widget-demo ]; then
  cd "$build/win64/tests/win/widgets"
  exec wine widget_demo.exe
fi
echo "Game built: $build/win64/dist/Quorvex.exe (64-bit), $build/win32/dist/Quorvex.exe (32-bit)"
cd "$build/win64/dist"
if [ "${QUORVEX_PLAY_EXIT_WHEN_SHOWN:-}" != 1 ]; then
  exec wine Quorvex.exe
fi

wine Quorvex.exe >/dev/null 2>&1 </dev/null &
for _ in $(seq 1 120); do
  if xdotool search --name '^Quorvex$' >/dev/null 2>&1; then
    echo "The game's main window is shown."
    wineserver -k || true
    exit 0
  fi
  sleep 0.5
done
echo "The game's main window never appeared." >&2
wineserver -k || true
exit 1
