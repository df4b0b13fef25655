// The honour screen's layout, row texts and composed background.
#include "screens/honour_logic.h"

#include <algorithm>
#include <cstring>

#include "graphics/himage_ops.h"

namespace qv {
namespace {

constexpr int kAreaWidth = 640;
constexpr int kAreaHeight = 480;
constexpr int kFirstRowY = 63;
constexpr int kRowStep = 30;
constexpr int kTileStep = 80;
// The buttons' places are fractions of the screen, truncated: at 800 x 600 (593, 501), (691, 501).
constexpr double kClearXDivisor = 1.34737;
constexpr double kCloseXDivisor = 1.15732;
constexpr double kButtonYDivisor = 1.197;

bool Usable(HIMAGE picture) {
  return picture && (ImageBitCount(picture) == 8 || ImageBitCount(picture) == 24) &&
         ImageWidth(picture) > 0 && ImageHeight(picture) > 0;
}

// Copies at most width x height of the picture's top-left to (x, y) of a 24-bit surface, its
// colours looked up in its own table, clipped to the surface.
void ExpandInto(HIMAGE surface, int x, int y, HIMAGE picture, int width, int height) {
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

}  // namespace

HonourLayout HonourScreenLayout(int screenWidth, int screenHeight) {
  HonourLayout layout;
  layout.area = {(screenWidth - kAreaWidth) / 2, (screenHeight - kAreaHeight) / 2};
  layout.placeX = layout.area.x + 30;
  layout.nameX = layout.area.x + 60;
  layout.scoreX = layout.area.x + 420;
  for (int row = 0; row < kHonourPlaces; ++row) {
    layout.rowY[row] = layout.area.y + kFirstRowY + kRowStep * row;
  }
  const int buttonY = static_cast<int>(screenHeight / kButtonYDivisor);
  layout.clearButton = {static_cast<int>(screenWidth / kClearXDivisor), buttonY};
  layout.closeButton = {static_cast<int>(screenWidth / kCloseXDivisor), buttonY};
  return layout;
}

HonourRowText HonourRow(const HonourRoll& roll, int row) {
  if (row < 0 || row >= kHonourPlaces) return {};
  const RecordEntry& entry = roll.entries[row];
  return HonourRowText{std::to_string(row + 1), std::string(RecordNameText(entry)),
                       std::to_string(entry.score)};
}

bool ComposeHonourBackground(int screenWidth, int screenHeight, HIMAGE tile, HIMAGE title,
                             PackedDib& background) {
  if (screenWidth < 1 || screenHeight < 1) return false;
  const std::int64_t pixelBytes = DibRowBytes(screenWidth, 24) * screenHeight;
  HIMAGE block = PackedDib::AllocateBlock(static_cast<std::size_t>(pixelBytes));
  if (!block) return false;
  BitmapInfoHeader header{};
  header.biSize = kDibHeaderBytes;
  header.biWidth = screenWidth;
  header.biHeight = screenHeight;
  header.biPlanes = 1;
  header.biBitCount = 24;
  header.biCompression = kBiRgb;
  header.biSizeImage = static_cast<std::uint32_t>(pixelBytes);
  std::memcpy(block, &header, sizeof header);
  std::memset(DibPixels(block), 0, static_cast<std::size_t>(pixelBytes));
  background.Adopt(block, kDibPixelOffset + static_cast<std::size_t>(pixelBytes));

  // Each tile is copied 80 x 80 whatever the picture's size: a larger one is cut, a smaller one
  // leaves black between its copies.
  if (Usable(tile)) {
    for (int y = 0; y < screenHeight; y += kTileStep) {
      for (int x = 0; x < screenWidth; x += kTileStep) ExpandInto(block, x, y, tile, kTileStep, kTileStep);
    }
  }
  if (Usable(title)) {
    ExpandInto(block, (screenWidth - ImageWidth(title)) / 2, 0, title, ImageWidth(title),
               ImageHeight(title));
  }
  return true;
}

}  // namespace qv
