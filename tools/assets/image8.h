// In-memory pictures of the asset tool: 8-bit indexed (what ships) and 24-bit (before reduction).
#pragma once

#include <cstdint>
#include <vector>

namespace qv::assets {

struct Rgb {
  std::uint8_t r = 0;
  std::uint8_t g = 0;
  std::uint8_t b = 0;
  bool operator==(const Rgb&) const = default;
};
static_assert(sizeof(Rgb) == 3, "decoders write packed RGB rows straight into Rgb arrays");

// Rows are kept top-down here; the writers turn them bottom-up as DIBs store them.
struct Image8 {
  int width = 0;
  int height = 0;
  std::vector<Rgb> palette;  // at most 256 entries
  std::vector<std::uint8_t> pixels;

  Image8() = default;
  Image8(int w, int h) : width(w), height(h), pixels(static_cast<std::size_t>(w) * h, 0) {}
  std::uint8_t& at(int x, int y) { return pixels[static_cast<std::size_t>(y) * width + x]; }
  std::uint8_t at(int x, int y) const { return pixels[static_cast<std::size_t>(y) * width + x]; }
  Rgb colour(int x, int y) const { return palette[at(x, y)]; }
};

struct RgbImage {
  int width = 0;
  int height = 0;
  std::vector<Rgb> pixels;

  RgbImage() = default;
  RgbImage(int w, int h) : width(w), height(h), pixels(static_cast<std::size_t>(w) * h) {}
  Rgb& at(int x, int y) { return pixels[static_cast<std::size_t>(y) * width + x]; }
  const Rgb& at(int x, int y) const { return pixels[static_cast<std::size_t>(y) * width + x]; }
};

// The pixel rows as a DIB stores them: bottom row first, each padded to a multiple of 4 bytes.
std::vector<std::uint8_t> BottomUpRows(const Image8& image);

// The indexed picture with its palette applied.
RgbImage Expand(const Image8& image);

}  // namespace qv::assets
