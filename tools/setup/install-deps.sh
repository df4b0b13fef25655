#!/usr/bin/env bash
# Installs the Debian packages the build and the tests need; touches apt only when one is missing.
set -euo pipefail

packages=(
  build-essential cmake ninja-build pkg-config
  g++-mingw-w64-x86-64-posix g++-mingw-w64-i686-posix
  googletest libgtest-dev libbenchmark-dev
  clang libclang-rt-14-dev
  wine wine64 xvfb xauth xdotool x11-utils
  pulseaudio pulseaudio-utils
  fonts-wine fonts-liberation
  imagemagick
  fluidsynth fluid-soundfont-gm
  cups printer-driver-cups-pdf poppler-utils
  libcairo2-dev libimagequant-dev libwebp-dev zlib1g-dev gcompris-qt-data
)

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed'; then
    missing+=("$p")
  fi
done

if [ ${#missing[@]} -eq 0 ]; then
  exit 0
fi

echo "Installing: ${missing[*]}"
sudo_cmd=()
if [ "$(id -u)" -ne 0 ]; then sudo_cmd=(sudo); fi
export DEBIAN_FRONTEND=noninteractive
"${sudo_cmd[@]}" apt-get update -qq
"${sudo_cmd[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}"
