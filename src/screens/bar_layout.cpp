// Where the tool bar and the option bar lie, how they slide out and when they hide.
#include "screens/bar_layout.h"

namespace qv {
namespace {

constexpr int kTitleHeight = 78;  // the bars start under the title bar
constexpr int kToolStripWidth = 25;
constexpr int kToolPanelWidth = 98;
constexpr int kOptionStripHeight = 25;
constexpr int kOptionPanelHeight = 103;
constexpr int kToolLabelHeight = 140;
constexpr int kOptionLabelWidth = 104;
constexpr int kButtonHalf = 35;  // the buttons are placed by their middle, about 70 pixels wide
constexpr int kOptionButtonTop = 27;

constexpr int kToolImages[kToolButtonCount] = {127, 117, 124, 113};
constexpr int kOptionImages[kOptionButtonCount] = {115, 257, 126, 258, 128};
// The option buttons' middles in eighths of the width: help, magnifier and quit at a quarter,
// a half and three quarters; open and save between them.
constexpr int kOptionEighths[kOptionButtonCount] = {2, 3, 4, 5, 6};

}  // namespace

// The tool bar depends on the screen's height only.
BarLayout ToolBarLayout(int /*screenWidth*/, int screenHeight) {
  BarLayout l;
  const int panelHeight = screenHeight - kTitleHeight;
  l.strip = {0, kTitleHeight, kToolStripWidth, screenHeight - 103};
  l.panel = {0, kTitleHeight, kToolPanelWidth, panelHeight};
  // The label is centred on the screen's height, not on the strip's.
  l.label = {0, (screenHeight - kToolLabelHeight) / 2 - kTitleHeight};
  l.tileWidth = kToolPanelWidth;
  l.tileHeight = 95;
  l.buttonCount = kToolButtonCount;
  for (int i = 0; i < kToolButtonCount; ++i) {
    // A fifth of the panel's height per button, truncated after multiplying: at 600 pixels the
    // buttons stand at 69, 173, 278 and 382, not on a whole-pixel step.
    const long long middle = static_cast<long long>(i + 1) * panelHeight / 5;
    l.buttons[i] = {0, static_cast<int>(middle) - kButtonHalf};
    l.buttonImages[i] = kToolImages[i];
  }
  return l;
}

BarLayout OptionBarLayout(int screenWidth, int screenHeight) {
  BarLayout l;
  l.strip = {0, screenHeight - kOptionStripHeight, screenWidth, kOptionStripHeight};
  l.panel = {0, screenHeight - kOptionPanelHeight, screenWidth, kOptionPanelHeight};
  l.label = {(screenWidth - kOptionLabelWidth) / 2, 0};
  l.tileWidth = 103;
  l.tileHeight = kOptionPanelHeight;
  l.buttonCount = kOptionButtonCount;
  for (int i = 0; i < kOptionButtonCount; ++i) {
    const long long middle = static_cast<long long>(kOptionEighths[i]) * screenWidth / 8;
    l.buttons[i] = {static_cast<int>(middle) - kButtonHalf, kOptionButtonTop};
    l.buttonImages[i] = kOptionImages[i];
  }
  return l;
}

BarLayout LayoutOf(BarKind kind, int screenWidth, int screenHeight) {
  return kind == BarKind::Tool ? ToolBarLayout(screenWidth, screenHeight)
                               : OptionBarLayout(screenWidth, screenHeight);
}

TileGrid TilesCovering(int areaWidth, int areaHeight, int tileWidth, int tileHeight) {
  TileGrid g;
  if (tileWidth <= 0 || tileHeight <= 0 || areaWidth <= 0 || areaHeight <= 0) return g;
  g.stepX = tileWidth;
  g.stepY = tileHeight;
  g.columns = (areaWidth + tileWidth - 1) / tileWidth;
  g.rows = (areaHeight + tileHeight - 1) / tileHeight;
  return g;
}

int SlideFrameCount(BarKind kind) {
  return kind == BarKind::Tool ? kToolPanelWidth + 1 : kOptionPanelHeight + 1;
}

TileGrid SlideFrameTiles(const BarLayout& layout, BarKind kind, int frame) {
  TileGrid g = TilesCovering(layout.panel.width, layout.panel.height, layout.tileWidth,
                             layout.tileHeight);
  if (frame < 0 || frame >= SlideFrameCount(kind)) return TileGrid{};
  if (kind == BarKind::Tool) {
    g.firstX = frame - kToolPanelWidth;
    g.columns = g.rows > 0 ? 1 : 0;
  } else {
    g.firstY = kOptionPanelHeight - frame;
    g.rows = g.columns > 0 ? 1 : 0;
  }
  return g;
}

bool BeginSlideOut(BarSlide& slide) {
  if (slide.shown) return false;
  slide.shown = true;
  return true;
}

bool HideOnTimer(BarSlide& slide, BarPoint pointer, int panelWidth, int panelHeight) {
  const bool inside =
      pointer.x >= 0 && pointer.y >= 0 && pointer.x < panelWidth && pointer.y < panelHeight;
  if (inside) return false;
  slide.shown = false;
  return true;
}

}  // namespace qv
