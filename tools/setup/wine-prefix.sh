#!/usr/bin/env bash
# Prepares a Wine prefix for the game: virtual desktop of the given size, real fonts, sound through
# PulseAudio, and .htm pages opened by the desktop's browser.
# Usage: wine-prefix.sh PREFIX WIDTHxHEIGHT [--no-desktop]
#   --no-desktop: no virtual desktop, every window straight on the X screen (as on a desktop
#   whose Wine has none configured); tests use it to check the game's own window placement.
set -euo pipefail
mkdir -p "$1"
prefix=$(cd "$1" && pwd)
size=${2:-1024x768}
desktop=yes
[ "${3:-}" = --no-desktop ] && desktop=no
export WINEPREFIX=$prefix WINEDEBUG=-all WINEDLLOVERRIDES="mscoree=;mshtml="
mkdir -p "$prefix"

# Sets a registry value. Wine's reg can fail while a new prefix's services are still starting
# (seen on a loaded machine: the rest of the prefix was then never set up), so it is tried again.
reg_set() {
  local attempt
  for attempt in 1 2 3 4 5; do
    wine reg add "$@" /f >/dev/null 2>&1 && return 0
    sleep "$attempt"
  done
  echo "wine reg add $* failed five times" >&2
  return 1
}

if [ ! -f "$prefix/.quorvex-ready" ]; then
  echo "Preparing the Wine prefix in $prefix"
  wine wineboot -i >/dev/null 2>&1 || true
  fonts="$prefix/drive_c/windows/Fonts"
  mkdir -p "$fonts"
  cp -f /usr/share/wine/fonts/* "$fonts/" 2>/dev/null || true
  for pair in "Arial:Liberation Sans" "Times New Roman:Liberation Serif" "Courier New:Liberation Mono"; do
    reg_set 'HKCU\Software\Wine\Fonts\Replacements' /v "${pair%%:*}" /d "${pair#*:}"
  done
  touch "$prefix/.quorvex-ready"
fi
# Sound through Wine's PulseAudio driver: the test command starts a server with a null sink for
# it, a desktop has its own; with no server to reach Wine simply has no sound device, quietly and
# without delay. Also done for prefixes prepared before, when sound was switched off.
if [ ! -f "$prefix/.quorvex-audio-pulse" ]; then
  reg_set 'HKCU\Software\Wine\Drivers' /v Audio /d pulse
  touch "$prefix/.quorvex-audio-pulse"
fi
# Wine's own HTML viewer is left out above, and with it the registration of .htm pages: without
# it the help page has no program. Wine's browser bridge (htmlfile, which calls xdg-open) hands
# them to the desktop's browser. Also done for prefixes prepared before this was added.
if ! wine reg query 'HKCR\.htm' /ve >/dev/null 2>&1; then
  reg_set 'HKCR\.htm' /ve /d htmlfile
  reg_set 'HKCR\.html' /ve /d htmlfile
  reg_set 'HKCR\htmlfile\shell\open\command' /ve \
    /d '"C:\windows\system32\winebrowser.exe" "%1"'
fi
if [ "$desktop" = yes ]; then
  reg_set 'HKCU\Software\Wine\Explorer' /v Desktop /d Default
  reg_set 'HKCU\Software\Wine\Explorer\Desktops' /v Default /d "$size"
else
  wine reg delete 'HKCU\Software\Wine\Explorer' /v Desktop /f >/dev/null 2>&1 || true
fi
wineserver -w
