#include "screens/true_colour.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "graphics/himage_ops.h"

namespace qv {

bool UsablePicture(HIMAGE picture) {
  return picture && (ImageBitCount(picture) == 8 || ImageBitCount(picture) == 24) &&
         ImageWidth(picture) > 0 && ImageHeight(picture) > 0;
}

bool AllocateTrueColour(int width, int height, PackedDib& out) {
  if (width < 1 || height < 1) return false;
  const std::int64_t pixelBytes = DibRowBytes(width, 24) * height;
  HIMAGE block = PackedDib::AllocateBlock(static_cast<std::size_t>(pixelBytes));
  if (!block) return false;
  BitmapInfoHeader header{};
  header.biSize = kDibHeaderBytes;
  header.biWidth = width;
  header.biHeight = height;
  header.biPlanes = 1;
  header.biBitCount = 24;
  header.biCompression = kBiRgb;
  header.biSizeImage = static_cast<std::uint32_t>(pixelBytes);
  std::memcpy(block, &header, sizeof header);
  std::memset(DibPixels(block), 0, static_cast<std::size_t>(pixelBytes));
  out.Adopt(block, kDibPixelOffset + static_cast<std::size_t>(pixelBytes));
  return true;
}

void ExpandInto(HIMAGE surface, int x, int y, HIMAGE picture, int width, int height) {
  if (!UsablePicture(picture)) return;
  const int left = std::max(0, -x);
  const int top = std::max(0, -y);
  const int right = std::min({width, ImageWidth(picture), ImageWidth(surface) - x});
  const int bottom = std::min({height, ImageHeight(picture), ImageHeight(surface) - y});
  const bool indexed = ImageBitCount(picture) == 8;
  const RgbQuad* colours = DibColours(picture);
  for (int row = top; row < bottom; ++row) {
    std::uint8_t* to = ImagePixel(surface, x + left, y + row);
    const std::uint8_t* from = ImagePixel(picture, left, row);
    for (int column = left; column < right; ++column, to += 3) {
      if (indexed) {
        const RgbQuad& c = colours[*from++];
        to[0] = c.rgbBlue;
        to[1] = c.rgbGreen;
        to[2] = c.rgbRed;
      } else {
        std::memcpy(to, from, 3);
        from += 3;
      }
    }
  }
}

bool ExpandToTrueColour(HIMAGE picture, PackedDib& out) {
  if (!UsablePicture(picture)) return false;
  if (!AllocateTrueColour(ImageWidth(picture), ImageHeight(picture), out)) return false;
  ExpandInto(out.get(), 0, 0, picture, ImageWidth(picture), ImageHeight(picture));
  return true;
}

}  // namespace qv

namespace qv {

void ExpandSpriteInto(HIMAGE surface, int x, int y, HIMAGE strip, int columns, int frame) {
  if (!UsablePicture(strip) || columns < 1 || frame < 0 || frame >= columns) return;
  const int width = ImageWidth(strip) / columns;
  const int height = ImageHeight(strip) / 2;
  const bool indexed = ImageBitCount(strip) == 8;
  const RgbQuad* colours = DibColours(strip);
  auto colourAt = [&](int sx, int sy, std::uint8_t bgr[3]) {
    const std::uint8_t* p = ImagePixel(strip, sx, sy);
    if (indexed) {
      bgr[0] = colours[*p].rgbBlue;
      bgr[1] = colours[*p].rgbGreen;
      bgr[2] = colours[*p].rgbRed;
    } else {
      std::memcpy(bgr, p, 3);
    }
  };
  for (int row = std::max(0, -y); row < height && y + row < ImageHeight(surface); ++row) {
    for (int column = std::max(0, -x); column < width && x + column < ImageWidth(surface);
         ++column) {
      std::uint8_t mask[3], colour[3];
      colourAt(frame * width + column, height + row, mask);
      if (mask[0] != 0 || mask[1] != 0 || mask[2] != 0) continue;
      colourAt(frame * width + column, row, colour);
      std::memcpy(ImagePixel(surface, x + column, y + row), colour, 3);
    }
  }
}

}  // namespace qv

namespace qv {

namespace {

void ColourAt(HIMAGE picture, int x, int y, std::uint8_t bgr[3]) {
  const std::uint8_t* p = ImagePixel(picture, x, y);
  if (ImageBitCount(picture) == 8) {
    const RgbQuad& c = DibColours(picture)[*p];
    bgr[0] = c.rgbBlue;
    bgr[1] = c.rgbGreen;
    bgr[2] = c.rgbRed;
  } else {
    std::memcpy(bgr, p, 3);
  }
}

std::uint8_t NearestIndex(const RgbQuad* colours, std::uint32_t count, const std::uint8_t bgr[3]) {
  std::uint32_t best = 0;
  int bestDistance = 1 << 30;
  for (std::uint32_t i = 0; i < count; ++i) {
    const int db = colours[i].rgbBlue - bgr[0];
    const int dg = colours[i].rgbGreen - bgr[1];
    const int dr = colours[i].rgbRed - bgr[2];
    const int distance = dr * dr + dg * dg + db * db;
    if (distance < bestDistance) {
      bestDistance = distance;
      best = i;
    }
  }
  return static_cast<std::uint8_t>(best);
}

}  // namespace

bool RemapSpriteToColourTable(HIMAGE strip, HIMAGE table, PackedDib& out) {
  if (!UsablePicture(strip) || !UsablePicture(table) || ImageBitCount(table) != 8) return false;
  const std::uint32_t count = DibHeader(table)->biClrUsed;
  const int width = ImageWidth(strip);
  const int height = ImageHeight(strip) / 2;
  if (count == 0 || count > kDibColourSlots || height < 1) return false;
  PackedDib remapped;
  if (!remapped.Allocate(width, height * 2)) return false;
  HIMAGE to = remapped.get();
  DibHeader(to)->biClrUsed = count;
  std::memcpy(DibColours(to), DibColours(table), 4 * std::size_t{count});
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      std::uint8_t mask[3], colour[3];
      ColourAt(strip, x, y + height, mask);
      const bool opaque = mask[0] == 0 && mask[1] == 0 && mask[2] == 0;
      ColourAt(strip, x, y, colour);
      *ImagePixel(to, x, y) = opaque ? NearestIndex(DibColours(table), count, colour) : 0;
      *ImagePixel(to, x, y + height) = opaque ? 0 : 0xFF;
    }
  }
  out = std::move(remapped);
  return true;
}

}  // namespace qv
