// Source clipping, nearest-colour matching and the message box's keys and placement.
#include "widgets/widget_geometry.h"

#include <algorithm>
#include <array>

namespace qv {

CopyRect ClipCopy(const CopyRect& copy, int sourceWidth, int sourceHeight, int limitWidth,
                  int limitHeight) {
  CopyRect c = copy;
  // Trim the left and top edges against both the source and the destination limit.
  const int cutX = std::max({0, -c.sx, limitWidth >= 0 ? -c.dx : 0});
  const int cutY = std::max({0, -c.sy, limitHeight >= 0 ? -c.dy : 0});
  c.sx += cutX;
  c.dx += cutX;
  c.width -= cutX;
  c.sy += cutY;
  c.dy += cutY;
  c.height -= cutY;
  c.width = std::min(c.width, sourceWidth - c.sx);
  c.height = std::min(c.height, sourceHeight - c.sy);
  if (limitWidth >= 0) c.width = std::min(c.width, limitWidth - c.dx);
  if (limitHeight >= 0) c.height = std::min(c.height, limitHeight - c.dy);
  if (c.width < 0) c.width = 0;
  if (c.height < 0) c.height = 0;
  return c;
}

int NearestColourIndex(const RgbQuad* colours, int colourCount, std::uint32_t rgb) {
  const int r = static_cast<int>((rgb >> 16) & 0xFF);
  const int g = static_cast<int>((rgb >> 8) & 0xFF);
  const int b = static_cast<int>(rgb & 0xFF);
  int best = 0;
  int bestDistance = 1 << 30;
  for (int i = 0; i < colourCount; ++i) {
    const int dr = colours[i].rgbRed - r;
    const int dg = colours[i].rgbGreen - g;
    const int db = colours[i].rgbBlue - b;
    const int distance = dr * dr + dg * dg + db * db;
    if (distance < bestDistance) {
      bestDistance = distance;
      best = i;
      if (distance == 0) break;
    }
  }
  return best;
}

void MapToColourTable(const std::uint32_t* pixels, int count, const RgbQuad* colours,
                      int colourCount, std::uint8_t* out) {
  // A small direct-mapped memo: pictures of the interface repeat few colours.
  struct Slot {
    std::uint32_t rgb = 0xFFFFFFFF;  // no 0x00RRGGBB colour has these top bits
    std::uint8_t index = 0;
  };
  std::array<Slot, 1024> memo{};
  colourCount = std::clamp(colourCount, 1, 256);
  for (int i = 0; i < count; ++i) {
    const std::uint32_t rgb = pixels[i] & 0x00FFFFFF;
    Slot& slot = memo[(rgb ^ (rgb >> 10) ^ (rgb >> 20)) & 1023];
    if (slot.rgb != rgb) {
      slot.rgb = rgb;
      slot.index = static_cast<std::uint8_t>(NearestColourIndex(colours, colourCount, rgb));
    }
    out[i] = slot.index;
  }
}

MessageBoxKey MessageBoxChar(int character) {
  MessageBoxKey key;
  if (character == 13) {
    key = MessageBoxKey{true, true, 1};
  } else if (character == 27) {
    key = MessageBoxKey{true, true, 0};
  }
  return key;
}


}  // namespace qv
