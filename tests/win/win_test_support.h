// Helpers of the Windows graphics tests: DIB sections to draw into and packed pictures.
#pragma once

#include <windows.h>

#include <cstdint>
#include <string>
#include <vector>

#include "graphics/himage_ops.h"
#include "graphics/packed_dib.h"

namespace qv::test {

// A top-down 32-bit DIB section selected into its own memory DC, readable pixel by pixel.
class Canvas {
 public:
  Canvas(int width, int height) : width_(width), height_(height) {
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof(BITMAPINFOHEADER);
    info.bmiHeader.biWidth = width;
    info.bmiHeader.biHeight = -height;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    dc_ = CreateCompatibleDC(nullptr);
    bitmap_ = CreateDIBSection(dc_, &info, DIB_RGB_COLORS, reinterpret_cast<void**>(&bits_),
                               nullptr, 0);
    old_ = SelectObject(dc_, bitmap_);
    Clear(0x00123456);
  }
  ~Canvas() {
    SelectObject(dc_, old_);
    DeleteObject(bitmap_);
    DeleteDC(dc_);
  }
  Canvas(const Canvas&) = delete;
  Canvas& operator=(const Canvas&) = delete;

  HDC dc() const { return dc_; }
  void Clear(std::uint32_t colour) {
    GdiFlush();
    for (int i = 0; i < width_ * height_; ++i) bits_[i] = colour;
  }
  // 0x00RRGGBB
  std::uint32_t At(int x, int y) const {
    GdiFlush();
    return bits_[y * width_ + x] & 0x00FFFFFF;
  }

 private:
  int width_;
  int height_;
  HDC dc_ = nullptr;
  HBITMAP bitmap_ = nullptr;
  HGDIOBJ old_ = nullptr;
  std::uint32_t* bits_ = nullptr;
};

inline std::uint32_t Rgb(const RgbQuad& q) {
  return (std::uint32_t{q.rgbRed} << 16) | (std::uint32_t{q.rgbGreen} << 8) | q.rgbBlue;
}

// An 8-bit picture with 256 distinct colours and pixel (x, y) = (x * 16 + y) mod 256.
inline PackedDib IndexedPicture(int width, int height) {
  PackedDib dib;
  dib.Allocate(width, height);
  DibHeader(dib.get())->biClrUsed = 256;
  for (int i = 0; i < 256; ++i) {
    DibColours(dib.get())[i] = RgbQuad{static_cast<std::uint8_t>(i),
                                       static_cast<std::uint8_t>(255 - i),
                                       static_cast<std::uint8_t>((i * 3) & 0xFF), 0};
  }
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x) *ImagePixel(dib.get(), x, y) = static_cast<std::uint8_t>(x * 16 + y);
  return dib;
}

inline std::string TempPath(const char* name) {
  char folder[MAX_PATH];
  GetTempPathA(MAX_PATH, folder);
  return std::string(folder) + name;
}

}  // namespace qv::test
