// The honour screen's layout, row texts and composed background.
#include "screens/honour_logic.h"

#include <algorithm>
#include <cstring>

#include "graphics/himage_ops.h"
#include "screens/true_colour.h"

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
  if (!AllocateTrueColour(screenWidth, screenHeight, background)) return false;
  HIMAGE block = background.get();

  // Each tile is copied 80 x 80 whatever the picture's size: a larger one is cut, a smaller one
  // leaves black between its copies.
  if (UsablePicture(tile)) {
    for (int y = 0; y < screenHeight; y += kTileStep) {
      for (int x = 0; x < screenWidth; x += kTileStep) ExpandInto(block, x, y, tile, kTileStep, kTileStep);
    }
  }
  if (UsablePicture(title)) {
    ExpandInto(block, (screenWidth - ImageWidth(title)) / 2, 0, title, ImageWidth(title),
               ImageHeight(title));
  }
  return true;
}

}  // namespace qv
