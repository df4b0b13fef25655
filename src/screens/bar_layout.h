// Where the tool bar and the option bar lie, how they slide out and when they hide: plain
// arithmetic over the screen size and the pointer, shared by both bars' windows.
#pragma once

namespace qv {

struct BarRect {
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;
};

struct BarPoint {
  int x = 0;
  int y = 0;
};

enum class BarKind { Tool, Option };

// The tool bar's buttons, top to bottom, and the option bar's, left to right.
enum ToolButton { kSolveButton, kHintButton, kMusicButton, kHonourButton, kToolButtonCount };
enum OptionButton {
  kHelpButton,
  kOpenButton,
  kMagnifierButton,
  kSaveButton,
  kQuitButton,
  kOptionButtonCount
};
constexpr int kMaxBarButtons = kOptionButtonCount;

// The tile the strip and the panel repeat, and the label on the strip.
constexpr int kToolStripTile = 104;
constexpr int kToolPanelTile = 120;
constexpr int kOptionStripTile = 105;
constexpr int kOptionPanelTile = 123;
constexpr int kToolLabelBase = 2110;    // + language index
constexpr int kOptionLabelBase = 2120;  // + language index
constexpr int kBarButtonFrames = 10;

// Everything of one bar at one screen size, in the main window's client coordinates except the
// label (in the strip) and the buttons (in the panel).
struct BarLayout {
  BarRect strip;
  BarRect panel;
  BarPoint label;
  int tileWidth = 0;
  int tileHeight = 0;
  int buttonCount = 0;
  BarPoint buttons[kMaxBarButtons];
  int buttonImages[kMaxBarButtons] = {};
};

BarLayout ToolBarLayout(int screenWidth, int screenHeight);
BarLayout OptionBarLayout(int screenWidth, int screenHeight);
BarLayout LayoutOf(BarKind kind, int screenWidth, int screenHeight);

// Where the copies of a tile go: columns x rows copies, the first at (firstX, firstY), each the
// tile's size from the last. A degenerate tile or area gives none.
struct TileGrid {
  int firstX = 0, firstY = 0;
  int stepX = 0, stepY = 0;
  int columns = 0, rows = 0;
};
// The copies that cover an area from its top-left corner (how strips and panels paint).
TileGrid TilesCovering(int areaWidth, int areaHeight, int tileWidth, int tileHeight);

// The slide-out draws the panel's tile frame after frame, without delay, from just outside the
// screen's edge to its resting place: the tool panel's one column from x = -98 to 0, the option
// panel's one row from y = 103 to 0. Frame f is 0 .. SlideFrameCount - 1.
int SlideFrameCount(BarKind kind);
TileGrid SlideFrameTiles(const BarLayout& layout, BarKind kind, int frame);

// A bar's panel is out or in; the pointer moving over the strip slides it out once, the panel's
// timer hides it once the pointer has left the panel's rectangle.
struct BarSlide {
  bool shown = false;
};

// True when the panel must slide out now (and marks it out); false while it is already out, so
// that moving over the strip again neither restarts the slide nor starts another timer.
bool BeginSlideOut(BarSlide& slide);

// The timer's decision, from the pointer in the panel's client coordinates and the panel's size:
// true hides the panel (and marks it in). Which window lies under the pointer does not count: the
// pointer over one of the panel's buttons is inside the panel.
bool HideOnTimer(BarSlide& slide, BarPoint pointer, int panelWidth, int panelHeight);

}  // namespace qv
