// Raster operations on packed DIB pictures in memory: copies, clipping, colour tables.
#pragma once

#include <cstdint>

#include "graphics/dib_layout.h"

namespace qv {

// The raster operation codes, with the values the window system gives them.
constexpr std::uint32_t kRopSrcCopy = 0x00CC0020;
constexpr std::uint32_t kRopSrcAnd = 0x008800C6;
constexpr std::uint32_t kRopSrcInvert = 0x00660046;
constexpr std::uint32_t kRopMergeCopy = 0x00C000CA;
constexpr std::uint32_t kRopBlackness = 0x00000042;

struct ImageRect {
  int x;
  int y;
  int width;
  int height;
};

// Accessors of a packed DIB. The copies treat every depth other than 8 as 24 bits.
inline int ImageWidth(HIMAGE image) { return DibHeader(image)->biWidth; }
inline int ImageHeight(HIMAGE image) { return DibHeader(image)->biHeight; }
inline int ImageBitCount(HIMAGE image) { return DibHeader(image)->biBitCount; }
inline int ImageBytesPerPixel(HIMAGE image) { return ImageBitCount(image) == 8 ? 1 : 3; }
inline int ImageStride(HIMAGE image) {
  return static_cast<int>(DibRowBytes(ImageWidth(image), ImageBytesPerPixel(image) * 8));
}
// Pixel (x, y) with y = 0 the top row; rows are stored bottom-up.
inline std::uint8_t* ImagePixel(HIMAGE image, int x, int y) {
  return DibPixels(image) +
         static_cast<std::ptrdiff_t>(ImageHeight(image) - y - 1) * ImageStride(image) +
         static_cast<std::ptrdiff_t>(x) * ImageBytesPerPixel(image);
}

// Classifies a against b and returns whether they overlap (touching counts). Mode 2 gives
// the intersection in *out, mode 1 the bounding rectangle of both, other modes an empty one.
bool ClipRect(const ImageRect& a, const ImageRect& b, int mode, ImageRect* out);

// Copies (width x height) from (sx, sy) of source to (dx, dy) of destination with SRCCOPY,
// SRCAND or SRCINVERT, clipped against both pictures. Returns false on a failed check.
bool ImageRasterCopy(HIMAGE destination, int dx, int dy, int width, int height, HIMAGE source,
                     int sx, int sy, std::uint32_t rop);

// Gives destination the source's depth, colour count and colours (both indexed).
bool ImageCopyColourTable(HIMAGE source, HIMAGE destination);

// Scales the source rectangle onto the destination rectangle, ANDing it in (masks only).
bool ImageStretchMaskCopy(HIMAGE destination, const ImageRect& to, HIMAGE source,
                          const ImageRect& from, std::uint32_t rop);

inline void AndPixel3(std::uint8_t* destination, const std::uint8_t* source) {
  destination[0] &= source[0];
  destination[1] &= source[1];
  destination[2] &= source[2];
}
inline void XorPixel3(std::uint8_t* destination, const std::uint8_t* source) {
  destination[0] ^= source[0];
  destination[1] ^= source[1];
  destination[2] ^= source[2];
}

}  // namespace qv
