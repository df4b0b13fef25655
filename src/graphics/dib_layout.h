// The packed device-independent bitmap that HIMAGE points to, and the layout structs it uses.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace qv {

// The 40-byte information header exactly as a .bmp file and the Windows DIB functions lay it
// out; the Win32 side checks at compile time that it matches BITMAPINFOHEADER.
struct BitmapInfoHeader {
  std::uint32_t biSize;
  std::int32_t biWidth;
  std::int32_t biHeight;
  std::uint16_t biPlanes;
  std::uint16_t biBitCount;
  std::uint32_t biCompression;
  std::uint32_t biSizeImage;
  std::int32_t biXPelsPerMeter;
  std::int32_t biYPelsPerMeter;
  std::uint32_t biClrUsed;
  std::uint32_t biClrImportant;
};
static_assert(sizeof(BitmapInfoHeader) == 40, "the information header is 40 bytes");

struct RgbQuad {
  std::uint8_t rgbBlue;
  std::uint8_t rgbGreen;
  std::uint8_t rgbRed;
  std::uint8_t rgbReserved;
};
static_assert(sizeof(RgbQuad) == 4, "a colour entry is 4 bytes");

constexpr std::size_t kDibHeaderBytes = 40;
constexpr std::size_t kDibColourSlots = 256;
// Packed DIBs in memory always keep room for 256 colours, so the pixels sit at a fixed place.
constexpr std::size_t kDibPixelOffset = kDibHeaderBytes + 4 * kDibColourSlots;  // 1,064
constexpr std::uint32_t kBiRgb = 0;
constexpr std::uint32_t kBiBitfields = 3;

// A packed DIB: header, 256 colour slots, then bottom-up rows padded to 4 bytes. Blocks are
// allocated with malloc, which creates the header object the accessors below read.
using HIMAGE = std::uint8_t*;

// Bytes in one row of a bitmap of this width and depth, padded to a multiple of 4.
constexpr std::int64_t DibRowBytes(std::int64_t width, int bitCount) {
  return ((width * bitCount + 31) / 32) * 4;
}

inline BitmapInfoHeader* DibHeader(HIMAGE image) {
  return reinterpret_cast<BitmapInfoHeader*>(image);
}
inline RgbQuad* DibColours(HIMAGE image) {
  return reinterpret_cast<RgbQuad*>(image + kDibHeaderBytes);
}
inline std::uint8_t* DibPixels(HIMAGE image) { return image + kDibPixelOffset; }

}  // namespace qv
