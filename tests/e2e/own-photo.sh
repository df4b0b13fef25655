#!/usr/bin/env bash
# A player's own photograph played end to end: the real game under Wine on its own Xvfb screen,
# the new-game screen's own-photo tile, the system's Open dialog typed into, the new game
# confirmed, and the board on screen checked for the photograph's colours.
# Usage: own-photo.sh DIST_DIR PLANNER WORK_DIR
set -uo pipefail
dist=$(cd "$1" && pwd)
planner=$2
mkdir -p "$3"
work=$(cd "$3" && pwd)
here=$(cd "$(dirname "$0")/../.." && pwd)
size=1024x768

game="$work/game"
rm -rf "$game" "$work/photos" "$work/shots"
mkdir -p "$game/Image" "$work/photos" "$work/shots"
cp "$dist/Quorvex.exe" "$dist/Quorvex.rf" "$game/"
for k in 1 2 3 4 5; do cp "$dist/Image/$k.bmp" "$game/Image/"; done

# The photograph: bands of magenta and of a sky blue, hues that neither the built-in pictures,
# the table nor the interface have, each shaded from top to bottom so that the colour reduction
# has work to do. A name with a blank, as cameras and players give them.
photo="$work/photos/Harbour at dawn.jpg"
magenta="gradient:#ff30e8-#b000a0" sky="gradient:#40b0ff-#1050c8"
convert-im6.q16 -size 225x600 "$magenta" "$sky" "$magenta" "$sky" +append -quality 92 "$photo"
[ -s "$photo" ] || { echo "ImageMagick could not make the photograph"; exit 1; }
# And a text file that claims to be a picture: refused with a message, nothing added.
printf 'Shopping list: bread, milk, a new jigsaw.\n' >"$work/photos/Notes.png"

places=$("$planner" places "$dist/Quorvex.rf" 1024 768) || { echo "no places from the planner"; exit 1; }
place() { awk -v n="$1" '$1 == n { print $2, $3 }' <<<"$places"; }
read -r bx by bw bh < <(awk '$1 == "board" { print $2, $3, $4, $5 }' <<<"$places")

prefix="$work/prefix"
bash "$here/tools/setup/wine-prefix.sh" "$prefix" "$size" >/dev/null ||
  { echo "FAILED: the Wine prefix could not be prepared"; exit 1; }
export WINEPREFIX=$prefix WINEDEBUG=-all
# The path as the game's Open dialog is given it: Wine shows the Unix root as drive Z:.
wine_photo="Z:${photo//\//\\}"
wine_notes="Z:${work//\//\\}\\photos\\Notes.png"

exec xvfb-run -a -s "-screen 0 ${size}x24" bash -c '
  set -uo pipefail
  game=$1 shots=$2 wine_photo=$3 wine_notes=$4 board=$5
  shift 5
  declare -A at
  while [ $# -gt 1 ]; do at[$1]=$2; shift 2; done
  wineserver -p
  wine cmd.exe /c exit >/dev/null 2>&1 </dev/null || true
  (cd "$game" && exec wine Quorvex.exe >/dev/null 2>&1 </dev/null) &
  # Ready when the title bar is drawn (its wood is not the black of an empty screen).
  for _ in $(seq 1 120); do
    sleep 0.5
    pixel=$(import-im6.q16 -window root -crop 1x1+200+70 -depth 8 txt:- 2>/dev/null | tail -1)
    case $pixel in *"#000000"*|"") ;; *) break ;; esac
  done
  sleep 2
  click() { xdotool mousemove $1 $2; sleep 0.3; xdotool click 1; sleep "${3:-0.6}"; }
  shot() { import-im6.q16 -window root -depth 8 "$shots/$1.png"; }
  failures=0
  fail() { failures=$((failures + 1)); echo "FAILED: $*"; }

  click ${at[newgame]} 2.0
  click ${at[pageon]} 1.0
  shot own-tile
  # Clicks the own-photo tile, waits for the Open dialog and types a path into its file name
  # field, which has the keyboard when the dialog opens.
  open_photo() {
    click ${at[tile4]} 0.5
    local dialog=
    for _ in $(seq 1 40); do
      dialog=$(xdotool search --name "photo" 2>/dev/null | head -1)
      [ -n "$dialog" ] && break
      sleep 0.25
    done
    sleep 1
    shot "$1"
    [ -n "$dialog" ] || fail "no Open dialog appeared ($1)"
    xdotool type --delay 30 "$2"; sleep 0.3
    xdotool key Return
  }
  pictures() { find "$game/Image" -type f | wc -l; }

  open_photo open-dialog "$wine_notes"
  sleep 2.5
  shot refused
  [ "$(pictures)" = 5 ] || fail "a refused file changed Image/: $(ls "$game/Image")"
  # The game'"'"'s message box takes Enter; the screen has the keyboard again after it.
  xdotool key Return
  sleep 1
  open_photo open-dialog-again "$wine_photo"
  sleep 4
  shot imported
  [ -s "$game/Image/Harbour at dawn.bmp" ] || fail "no picture Image/Harbour at dawn.bmp was made"
  # The photograph is chosen: Enter confirms the new game, as on the screen before the dialog.
  xdotool key Return
  sleep 4
  shot board
  wineserver -k || true

  # The board must show the photograph: both of its hues, over a good part of the table.
  read -r bx by bw bh <<<"$board"
  counts=$(convert-im6.q16 "$shots/board.png" -crop "${bw}x${bh}+${bx}+${by}" +repage -depth 8 txt:- |
    awk -F"[()]" "NR > 1 { split(\$2, c, \",\"); r = c[1]; g = c[2]; b = c[3];
                   if (r > 170 && b > 140 && g < 90) m++; if (b > 170 && r < 90 && g > 70 && g < 190) s++; n++ }
                   END { printf \"%d %d %d\", m, s, n }")
  read -r magenta sky total <<<"$counts"
  echo "board: $magenta magenta and $sky sky-blue pixels of $total"
  [ "${total:-0}" -gt 0 ] || fail "no board in the screenshot"
  [ $(( ${magenta:-0} * 50 )) -gt "${total:-1}" ] || fail "the board shows too little of the photograph'"'"'s magenta"
  [ $(( ${sky:-0} * 50 )) -gt "${total:-1}" ] || fail "the board shows too little of the photograph'"'"'s blue"
  echo "own-photo run: $failures failed checks (screenshots in $shots)"
  [ "$failures" -eq 0 ]
' bash "$game" "$work/shots" "$wine_photo" "$wine_notes" "$bx $by $bw $bh" \
  newgame "$(place newgame)" pageon "$(place pageon)" tile4 "$(place tile4)"
