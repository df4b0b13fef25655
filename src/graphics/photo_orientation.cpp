// What a photograph's first bytes say: its EXIF orientation and the size its header claims.
#include <algorithm>
#include <cstdint>
#include <cstring>

#include "graphics/photo_decoder.h"

namespace qv {

namespace {
// Orientations 5 to 8 swap the sides: the camera was held on its side.
bool SwapsSides(int orientation) { return orientation >= 5 && orientation <= 8; }
}  // namespace

OrientedSize OrientSize(int orientation, int width, int height) {
  if (SwapsSides(orientation)) return {height, width};
  return {width, height};
}

void OrientPoint(int orientation, int width, int height, int x, int y, int* uprightX,
                 int* uprightY) {
  const int right = width - 1;
  const int bottom = height - 1;
  switch (orientation) {
    case 2: *uprightX = right - x; *uprightY = y; return;           // mirrored left to right
    case 3: *uprightX = right - x; *uprightY = bottom - y; return;  // turned half round
    case 4: *uprightX = x; *uprightY = bottom - y; return;          // mirrored top to bottom
    case 5: *uprightX = y; *uprightY = x; return;                   // mirrored on the diagonal
    case 6: *uprightX = bottom - y; *uprightY = x; return;          // turn 90 clockwise
    case 7: *uprightX = bottom - y; *uprightY = right - x; return;  // the other diagonal
    case 8: *uprightX = y; *uprightY = right - x; return;           // turn 90 anticlockwise
    default: *uprightX = x; *uprightY = y; return;
  }
}

}  // namespace qv

namespace qv {

namespace {

// Reads the EXIF block's TIFF structure: byte order, then the first directory's entries.
int OrientationInTiff(const std::uint8_t* tiff, std::size_t bytes) {
  if (bytes < 8) return 1;
  const bool little = tiff[0] == 'I' && tiff[1] == 'I';
  if (!little && !(tiff[0] == 'M' && tiff[1] == 'M')) return 1;
  auto u16 = [&](std::size_t at) -> std::uint32_t {
    return little ? tiff[at] | tiff[at + 1] << 8 : tiff[at] << 8 | tiff[at + 1];
  };
  auto u32 = [&](std::size_t at) -> std::uint32_t {
    return little ? u16(at) | u16(at + 2) << 16 : u16(at) << 16 | u16(at + 2);
  };
  if (u16(2) != 42) return 1;
  const std::uint32_t directory = u32(4);
  if (directory > bytes - 2) return 1;
  const std::uint32_t entries = u16(directory);
  for (std::uint32_t i = 0; i < entries; ++i) {
    const std::size_t entry = std::size_t{directory} + 2 + std::size_t{i} * 12;
    if (entry + 12 > bytes) return 1;
    constexpr std::uint32_t kOrientationTag = 274;
    constexpr std::uint32_t kShortType = 3;
    if (u16(entry) == kOrientationTag && u16(entry + 2) == kShortType && u32(entry + 4) == 1) {
      const std::uint32_t value = u16(entry + 8);
      return value >= 1 && value <= 8 ? static_cast<int>(value) : 1;
    }
  }
  return 1;
}

}  // namespace

int JpegExifOrientation(const std::uint8_t* head, std::size_t bytes) {
  if (bytes < 4 || head[0] != 0xFF || head[1] != 0xD8) return 1;
  std::size_t at = 2;
  // Walk the marker segments up to the start of the scan; EXIF lives in an APP1 segment.
  while (at + 4 <= bytes && head[at] == 0xFF) {
    const std::uint8_t marker = head[at + 1];
    if (marker == 0xDA || marker == 0xD9) break;
    const std::size_t length = std::size_t{head[at + 2]} << 8 | head[at + 3];
    if (length < 2 || at + 2 + length > bytes) break;
    const std::uint8_t* payload = head + at + 4;
    const std::size_t payloadBytes = length - 2;
    if (marker == 0xE1 && payloadBytes >= 6 && std::memcmp(payload, "Exif\0\0", 6) == 0) {
      return OrientationInTiff(payload + 6, payloadBytes - 6);
    }
    at += 2 + length;
  }
  return 1;
}

std::int64_t StatedPhotoPixels(const std::uint8_t* head, std::size_t bytes) {
  auto be = [&](std::size_t at) { return std::int64_t{head[at]} << 8 | head[at + 1]; };
  auto be32 = [&](std::size_t at) { return be(at) << 16 | be(at + 2); };
  if (bytes >= 24 && std::memcmp(head, "\x89PNG\r\n\x1a\n", 8) == 0) {
    // Each side may be up to 2^32 - 1: multiplied unsigned, the product still fits.
    const std::uint64_t pixels = static_cast<std::uint64_t>(be32(16)) * be32(20);
    return static_cast<std::int64_t>(std::min<std::uint64_t>(pixels, INT64_MAX));
  }
  if (bytes >= 10 && std::memcmp(head, "GIF8", 4) == 0) {
    return (head[6] | head[7] << 8) * std::int64_t{head[8] | head[9] << 8};
  }
  if (bytes < 4 || head[0] != 0xFF || head[1] != 0xD8) return 0;
  // A JPEG states its size in the frame header (SOF0 to SOF15 but for DHT, JPG and DAC).
  for (std::size_t at = 2; at + 4 <= bytes && head[at] == 0xFF;) {
    const std::uint8_t marker = head[at + 1];
    const std::size_t length = static_cast<std::size_t>(be(at + 2));
    if (marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC) {
      return at + 9 <= bytes ? be(at + 5) * be(at + 7) : 0;
    }
    if (marker == 0xDA || length < 2) break;
    at += 2 + length;
  }
  return 0;
}

}  // namespace qv
