// A full-colour picture in memory: three bytes per pixel in the B, G, R order of DIBs, top row first.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace qv::photo {

struct BgrPicture {
  int width = 0;
  int height = 0;
  std::vector<std::uint8_t> bytes;  // width * height * 3, no row padding

  BgrPicture() = default;
  BgrPicture(int w, int h) : width(w), height(h), bytes(static_cast<std::size_t>(w) * h * 3, 0) {}
  std::uint8_t* pixel(int x, int y) { return &bytes[(static_cast<std::size_t>(y) * width + x) * 3]; }
  const std::uint8_t* pixel(int x, int y) const {
    return &bytes[(static_cast<std::size_t>(y) * width + x) * 3];
  }
};

// Rows as a decoder hands them over: B, G, R (and a fourth byte that is ignored, the alpha having
// been composed already), each row `stride` bytes after the previous one.
struct PixelRows {
  const std::uint8_t* first = nullptr;
  int width = 0;
  int height = 0;
  std::ptrdiff_t stride = 0;
  int bytesPerPixel = 3;  // 3 or 4
};

}  // namespace qv::photo
