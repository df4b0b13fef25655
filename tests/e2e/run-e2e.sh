#!/usr/bin/env bash
# Plays the game end to end under Wine on its own Xvfb screen, as a player would with the mouse,
# and checks the board after each step against what the portable engine computes.
# Usage: run-e2e.sh DIST_DIR PLANNER WORK_DIR WIDTHxHEIGHT DEPTH SEED
set -uo pipefail
dist=$(cd "$1" && pwd)
planner=$2
mkdir -p "$3"
work=$(cd "$3" && pwd)
size=$4
depth=$5
seed=$6
here=$(cd "$(dirname "$0")/../.." && pwd)
width=${size%x*}
height=${size#*x}

# The game's folder: every tile of the picture list shows the same picture, so that whichever the
# folder lists first, the planner plays the same one.
game="$work/game"
rm -rf "$game" "$work/plan" "$work/shots"
mkdir -p "$game/Image" "$work/plan" "$work/shots"
cp "$dist/Quorvex.exe" "$dist/Quorvex.rf" "$game/"
for k in 1 2 3 4 5; do cp "$dist/Image/1.bmp" "$game/Image/$k.bmp"; done

"$planner" plan "$dist/Quorvex.rf" "$dist/Image/1.bmp" "$width" "$height" "$seed" "$work/plan" ||
  { echo "the planner could not plan the scenario"; exit 1; }

prefix="$work/prefix"
bash "$here/tools/setup/wine-prefix.sh" "$prefix" "$size" >/dev/null ||
  { echo "FAILED: the Wine prefix could not be prepared"; exit 1; }
export WINEPREFIX=$prefix WINEDEBUG=-all

exec xvfb-run -a -s "-screen 0 ${size}x${depth}" bash -c '
  set -uo pipefail
  game=$1 work=$2 planner=$3 seed=$4 height=$5 width=$6
  wineserver -p
  wine cmd.exe /c exit >/dev/null 2>&1 </dev/null || true
  (cd "$game" && QUORVEX_SEED=$seed exec wine Quorvex.exe >/dev/null 2>&1 </dev/null) &
  # Ready when the title bar is drawn (its wood is not the black of an empty screen).
  for i in $(seq 1 120); do
    sleep 0.5
    pixel=$(import-im6.q16 -window root -crop 1x1+200+70 -depth 8 txt:- 2>/dev/null | tail -1)
    case $pixel in *"#000000"*|"") ;; *) break ;; esac
  done
  sleep 2
  failures=0
  pause() { sleep "${1:-0.3}"; }
  compare() {
    if ! "$planner" compare "$work/plan/$1.ppm" "$work/shots/$1.ppm" 12; then
      failures=$((failures + 1))
      convert-im6.q16 "$work/shots/$1.ppm" "$work/shots/$1-seen.png"
      convert-im6.q16 "$work/plan/$1.ppm" "$work/shots/$1-expected.png"
      echo "FAILED: board after step $1 differs (see $work/shots)"
    fi
  }
  crop() {
    import-im6.q16 -window root -depth 8 "$work/shots/$1-screen.png"
    convert-im6.q16 "$work/shots/$1-screen.png" -crop "${4}x${5}+${2}+${3}" +repage -depth 8 "$work/shots/$1.ppm"
  }
  while read -r step a b c d e f g h i; do
    case $step in
      wait) pause "$a" ;;
      move) xdotool mousemove "$a" "$b"; pause 0.3 ;;
      click)
        xdotool mousemove "$a" "$b"; pause 0.3; xdotool click 1; pause 0.3 ;;
      drag)
        xdotool mousemove "$a" "$b"; pause 0.4
        xdotool mousedown 1; pause 0.4
        xdotool mousemove $(( (a + c) / 2 )) $(( (b + d) / 2 )); pause 0.3
        xdotool mousemove "$c" "$d"; pause 0.4
        xdotool mouseup 1; pause 0.6 ;;
      shot|clockshot|capture)
        # Park the pointer where it covers nothing that is checked: on the title bar between the
        # about button and the clock, away from the edge strips that slide the bars out.
        xdotool mousemove $((width / 2 + 40)) 2; pause 0.5
        crop "$a" "$b" "$c" "$d" "$e"
        [ "$step" = shot ] && compare "$a" ;;
      heldshot)
        # A drag held over its drop point while the screen is taken, then released.
        xdotool mousemove "$f" "$g"; pause 0.4
        xdotool mousedown 1; pause 0.4
        xdotool mousemove $(( (f + h) / 2 )) $(( (g + i) / 2 )); pause 0.3
        xdotool mousemove "$h" "$i"; pause 0.8
        crop "$a" "$b" "$c" "$d" "$e"
        xdotool mouseup 1; pause 0.6
        compare "$a" ;;
      escape)
        # A drag given up with Escape while the button is still held.
        xdotool mousemove "$a" "$b"; pause 0.4
        xdotool mousedown 1; pause 0.4
        xdotool mousemove $(( (a + c) / 2 )) $(( (b + d) / 2 )); pause 0.3
        xdotool mousemove "$c" "$d"; pause 0.4
        xdotool key Escape; pause 0.5
        xdotool mouseup 1; pause 0.6 ;;
      key) xdotool key "$a"; pause 0.5 ;;
      type) xdotool type --delay 120 "$a"; pause 0.5 ;;
      look) import-im6.q16 -window root "$work/shots/$a-screen.png" ;;
      record)
        # The honour roll file: 296 bytes, the typed name first.
        records="$game/Records.mwr"
        if [ "$(stat -c %s "$records" 2>/dev/null)" != 296 ] ||
           [ "$(dd if="$records" bs=1 skip=16 count=${#a} 2>/dev/null)" != "$a" ]; then
          failures=$((failures + 1)); echo "FAILED: Records.mwr does not start with $a"
        fi ;;
      saved)
        if [ ! -s "$game/folder/$a.epf" ]; then
          failures=$((failures + 1)); echo "FAILED: the game was not saved as folder/$a.epf"
        fi ;;
      wallpaper)
        if [ ! -s "$WINEPREFIX/drive_c/windows/Quorvex.bmp" ]; then
          failures=$((failures + 1)); echo "FAILED: the finished picture did not become the wallpaper"
        fi ;;
      same)
        if ! cmp -s "$work/shots/$a.ppm" "$work/shots/$b.ppm"; then
          failures=$((failures + 1)); echo "FAILED: $a and $b differ: the clock did not stop"
        fi ;;
      differ)
        if cmp -s "$work/shots/$a.ppm" "$work/shots/$b.ppm"; then
          failures=$((failures + 1)); echo "FAILED: $a and $b are the same: nothing changed between them"
        fi ;;
    esac
  done < "$work/plan/steps.txt"
  import-im6.q16 -window root "$work/shots/last-screen.png"
  wineserver -k || true
  echo "end-to-end run at $(basename "$work"): $failures failed checks"
  [ "$failures" -eq 0 ]
' bash "$game" "$work" "$planner" "$seed" "$height" "$width"
