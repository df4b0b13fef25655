#!/usr/bin/env bash
# Prepares a Wine prefix for the game: virtual desktop of the given size, real fonts, no sound
# card noise. Usage: wine-prefix.sh PREFIX WIDTHxHEIGHT
set -euo pipefail
mkdir -p "$1"
prefix=$(cd "$1" && pwd)
size=${2:-1024x768}
export WINEPREFIX=$prefix WINEDEBUG=-all WINEDLLOVERRIDES="mscoree=;mshtml="
mkdir -p "$prefix"

if [ ! -f "$prefix/.quorvex-ready" ]; then
  echo "Preparing the Wine prefix in $prefix"
  wine wineboot -i >/dev/null 2>&1 || true
  wine reg add 'HKCU\Software\Wine\Explorer' /v Desktop /d Default /f >/dev/null 2>&1
  wine reg add 'HKCU\Software\Wine\Drivers' /v Audio /d "" /f >/dev/null 2>&1
  fonts="$prefix/drive_c/windows/Fonts"
  mkdir -p "$fonts"
  cp -f /usr/share/wine/fonts/* "$fonts/" 2>/dev/null || true
  for pair in "Arial:Liberation Sans" "Times New Roman:Liberation Serif" "Courier New:Liberation Mono"; do
    wine reg add 'HKCU\Software\Wine\Fonts\Replacements' /v "${pair%%:*}" /d "${pair#*:}" /f >/dev/null 2>&1
  done
  touch "$prefix/.quorvex-ready"
fi
wine reg add 'HKCU\Software\Wine\Explorer\Desktops' /v Default /d "$size" /f >/dev/null 2>&1
wineserver -w
