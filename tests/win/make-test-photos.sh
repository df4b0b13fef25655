#!/usr/bin/env bash
# Writes the photo decoder test's pictures with ImageMagick, each beside ImageMagick's own
# decoding of it (turned upright, transparency over the test's table colour) as a 16-bit .ppm.
# Usage: make-test-photos.sh FOLDER
set -euo pipefail
out=$1
rm -rf "$out"
mkdir -p "$out"
cd "$out"
table='#1e5aa0'  # the table colour the test composes transparency over

# An odd-sized photo-like pattern at 16 bits a channel, so rows need padding and the 16-bit
# files carry real low bytes; a gradient alpha for the transparent ones.
convert -seed 7 -size 61x37 plasma:fractal -depth 16 base.miff
convert -size 61x37 gradient:white-black -rotate 0 alpha.miff
convert base.miff alpha.miff -alpha off -compose CopyOpacity -composite -depth 16 base-alpha.miff

convert base.miff -depth 8 PNG24:rgb8.png
convert base.miff -depth 16 PNG48:rgb16.png
convert base.miff -dither None -colors 40 PNG8:palette.png
convert base.miff -colorspace Gray -depth 8 -define png:color-type=0 grey8.png
convert base.miff -colorspace Gray -depth 16 -define png:color-type=0 grey16.png
convert base-alpha.miff -depth 8 PNG32:alpha8.png
convert base-alpha.miff -depth 16 PNG64:alpha16.png
convert base.miff \( base.miff -flip \) -dither None -colors 64 -delay 20 -loop 0 animated.gif
convert base.miff -depth 8 -compress lzw rgb8.tif
convert base.miff -depth 16 -compress none rgb16.tif
convert base.miff -depth 8 BMP3:rgb24.bmp
convert base.miff -dither None -colors 40 -type Palette BMP3:palette.bmp
convert base.miff -quality 92 photo.jpg
convert base.miff -quality 92 -colorspace CMYK cmyk.jpg
# ImageMagick writes an orientation only into an EXIF block the picture already has: give the
# camera's JPEG a minimal one (orientation 1, top left) first.
{
  printf '\xff\xd8\xff\xe1\x00\x22Exif\x00\x00II*\x00\x08\x00\x00\x00\x01\x00'
  printf '\x12\x01\x03\x00\x01\x00\x00\x00\x01\x00\x00\x00\x00\x00\x00\x00'
  tail -c +3 photo.jpg
} > camera.jpg
for orient in TopRight BottomRight BottomLeft LeftTop RightTop RightBottom LeftBottom; do
  convert camera.jpg -orient $orient "$orient.jpg"
done
rm camera.jpg
convert -size 1x1 xc:'#c08040' -depth 8 PNG24:one.png
# For the import: a camera-sized JPEG that is fitted to 1024 x 768 (its reference is ImageMagick's
# area-averaging reduction), and a small PNG that keeps its size.
convert -seed 11 -size 1280x960 plasma:fractal -blur 0x2 -quality 90 camera.jpg
convert camera.jpg -filter Box -resize 1024x768 -depth 16 ppm:camera.jpg.fit.ppm
convert -seed 5 -size 300x200 plasma:fractal -depth 8 PNG24:small.png
convert -size 89x400 gradient:white-black -depth 8 PNG24:narrow.png  # one pixel too narrow

# The references keep 16 bits a channel: ImageMagick's own 8-bit output truncates, where the
# decoder rounds to the nearest value, so the test does the rounding.
for f in *.png *.gif *.tif *.bmp *.jpg; do
  convert "$f[0]" -auto-orient -background "$table" -alpha remove -colorspace sRGB -depth 16 \
    "ppm:$f.ppm"
done
rm -f ./*.miff
