#!/usr/bin/env bash
# How the game starts on a desktop, on its own Xvfb screen.
# Usage: start-up.sh play SOURCE_DIR WIN64_TREE WORK_DIR
#          the play command's start-up path, on a screen whose description is longer than a pipe
#          holds, ends with the game's main window shown;
#        start-up.sh screen SOURCE_DIR DIST_DIR WORK_DIR WIDTHxHEIGHT DEPTH
#          with no window manager and no virtual desktop, the main window covers the screen.
set -uo pipefail
mode=$1
source_dir=$(cd "$2" && pwd)
tree=$(cd "$3" && pwd)
mkdir -p "$4"
work=$(cd "$4" && pwd)

case $mode in
  play)
    # A build folder of its own, so that the player's prefix is left alone.
    mkdir -p "$work/build"
    ln -sfn "$tree" "$work/build/win64"
    exec xvfb-run -a -s "-screen 0 1024x768x24" bash -c '
      bytes=$(xdpyinfo | wc -c)
      echo "xdpyinfo describes this screen in $bytes bytes"
      [ "$bytes" -gt 65536 ] || echo "note: that fits in a pipe; the long description is not tried"
      QUORVEX_PLAY_EXIT_WHEN_SHOWN=1 bash "$0/tools/play.sh" "$1"
    ' "$source_dir" "$work/build"
    ;;
  screen)
    size=$5
    depth=$6
    bash "$source_dir/tools/setup/wine-prefix.sh" "$work/prefix" "$size" --no-desktop >/dev/null ||
      { echo "FAILED: the Wine prefix could not be prepared"; exit 1; }
    export WINEPREFIX=$work/prefix WINEDEBUG=-all
    exec xvfb-run -a -s "-screen 0 ${size}x${depth}" bash -c '
      dist=$0 width=${1%x*} height=${1#*x}
      wineserver -p
      (cd "$dist" && WINEDEBUG=fixme-all exec wine Quorvex.exe >/dev/null 2>"$2/wine.log" </dev/null) &
      window=
      # The introduction plays first (seven seconds); a loaded machine may take much longer.
      for _ in $(seq 1 240); do
        window=$(xdotool search --name "^Quorvex$" 2>/dev/null | head -1)
        [ -n "$window" ] && break
        sleep 0.5
      done
      # Let any late move or resize of the window land before it is measured.
      sleep 2
      status=1
      if [ -z "$window" ]; then
        echo "FAILED: the main window never appeared"
        # What there is instead, for whoever reads the failure.
        pgrep -fa "Quorvex.exe" || echo "the game is not running"
        xwininfo -root -tree 2>/dev/null | grep -v "has no name" | head -n 30
        import -window root "$2/screen.png" 2>/dev/null && echo "the screen: $2/screen.png"
        tail -n 20 "$2/wine.log"
      else
        eval "$(xdotool getwindowgeometry --shell "$window")"
        echo "main window: ${WIDTH}x${HEIGHT} at ($X, $Y) on a ${width}x${height} screen"
        if [ "$X" -le 0 ] && [ "$Y" -le 0 ] && [ $((X + WIDTH)) -ge "$width" ] &&
           [ $((Y + HEIGHT)) -ge "$height" ]; then
          status=0
        else
          echo "FAILED: the main window does not cover the screen"
        fi
      fi
      wineserver -k || true
      exit $status
    ' "$tree" "$size" "$work"
    ;;
  *)
    echo "unknown mode $mode" >&2
    exit 2
    ;;
esac
