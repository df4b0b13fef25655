// The new-game screen's decisions: layout, the tab roll, the picture pages, the count texts, and
// the true-colour pictures the screen composes from the resource file's 8-bit ones.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "graphics/dib_layout.h"
#include "graphics/packed_dib.h"
#include "setup/pickers.h"

namespace qv::newgame {

// ---- Tabs and panels ---------------------------------------------------------------------

constexpr int kTabCount = 4;
constexpr int kFirstTabIdentifier = 300;  // control identifiers 300..303
constexpr int kTabPicture = 0;
constexpr int kTabSize = 1;
constexpr int kTabPieces = 2;
constexpr int kTabShape = 3;

constexpr std::uint32_t kBackgroundImage = 224;
constexpr std::uint32_t kConfirmImage = 223;
constexpr std::uint32_t kCancelImage = 222;
constexpr std::uint32_t kTabImageBase = 1000;      // + 10 x tab + language
constexpr std::uint32_t kHeadingImageBase = 2000;  // + 10 x tab + language
constexpr std::uint32_t kShapeOptionImage = 184;   // 184..186
constexpr std::uint32_t kShapeCyclerImage = 106;
constexpr std::uint32_t kSizeLargerImage = 199;
constexpr std::uint32_t kSizeSmallerImage = 198;
constexpr std::uint32_t kSliderImage = 197;
constexpr std::uint32_t kHelpImage = 187;
constexpr std::uint32_t kPreviewImage = 188;
constexpr std::uint32_t kDieBase = 5000;  // + shape

constexpr int kTabIdBase = 300;
constexpr int kShapeIdBase = 200;

constexpr int kHeadingX = 125;
constexpr int kHeadingY = 1;
constexpr int kHeadingWidth = 228;
constexpr int kHeadingHeight = 48;

// The panel area the tab switch rolls away.
constexpr int kPanelX = 105;
constexpr int kPanelY = 0;
constexpr int kPanelWidth = 500;
constexpr int kPanelHeight = 230;

struct Point {
  int x;
  int y;
};
struct Rect {
  int x;
  int y;
  int width;
  int height;
};

Point TabPosition(int tab);
std::uint32_t TabImage(int tab, int language);
std::uint32_t HeadingImage(int tab, int language);

// The shape options stand in a table of six places of which three are used; an index outside
// it trips the check and answers the first place.
constexpr int kShapeCount = 3;
constexpr int kFirstShapeIdentifier = 200;  // control identifiers 200..202
constexpr int kShapePlaces = 6;
Point ShapeOptionPosition(int index);
int NextShape(int shape);

// ---- The roll of a tab switch --------------------------------------------------------------

// One step of the roll: the old panel, slid up, fills the top `height` rows from its row
// `oldTop`; the new background fills the rows from `height` down.
struct RollStep {
  int height;
  int oldTop;
};
constexpr int kRollStart = 228;
constexpr int kRollStride = 4;
std::vector<RollStep> RollSteps();

// ---- The picture list ------------------------------------------------------------------------

constexpr int kTileCount = 5;

// The tiles page through every picture and, after the last, one tile more: the one that brings
// in a photograph of the player's own, reached with the same arrows. Five tiles are shown at a
// time; paging moves five on, the last page ending at the own-picture tile, so that every tile
// always shows something.
struct PicturePage {
  int count = 0;  // pictures, the own-picture tile not included
  int first = 0;  // the first tile's place in the list
};
int ClampFirst(int first, int count);
PicturePage NextPage(PicturePage page);
PicturePage PreviousPage(PicturePage page);
bool CanPageBack(const PicturePage& page);
bool CanPageOn(const PicturePage& page);
// The picture a tile shows, or -1 (nothing, or the own-picture tile).
int PictureOfTile(const PicturePage& page, int tile);
// The tile that shows the own-picture tile on this page, or -1.
int OwnPictureTile(const PicturePage& page);
// The page that shows `picture`: the same one when it is already in view, else the nearest.
PicturePage PageShowing(PicturePage page, int picture);

Rect TileRect(int tile);
Rect PageArrowRect(bool forward);
// The selected picture's name, centred under the tiles.
constexpr int kNameY = 188;

// Numbered pictures first, by number, then the others by name (ignoring case): the folder's
// own order is whatever the file system keeps.
void SortPictureNames(std::vector<std::string>& names);

// "7.bmp" (any case) gives 7; names that are not a number in 1..99 give 0.
int PictureNumber(const std::string& fileName);

// The largest size of the picture's proportions within the box (at least 1 x 1).
struct Size {
  int width;
  int height;
};
Size FitWithin(int width, int height, int boxWidth, int boxHeight);

// ---- Size and count panels -----------------------------------------------------------------

constexpr Point kSliderPosition{365, 61};
constexpr Point kLargerPosition{452, 44};
constexpr Point kSmallerPosition{452, 134};
constexpr int kSizeButtonStep = 5;
constexpr Rect kPickerRect{122, 56, 230, 168};
constexpr Point kHelpPosition{246, 235};
constexpr Point kPreviewPosition{395, 235};
constexpr Point kConfirmPosition{119, 255};
constexpr Point kCancelPosition{514, 257};
constexpr Point kCyclerPosition{147, 65};

int StepPercentage(int percentage, int delta);

// Rows, columns and pieces as shown beside their labels.
struct CountTexts {
  std::string rows;
  std::string columns;
  std::string pieces;
};
CountTexts CountValueTexts(const PickerState& state);
// Where the three labels stand, and the value beside a label that ends at labelRight.
Point CountLabelPosition(int line);
int CountValueX(int labelRight);

// The size picker shows the board scaled into its window and the picture at the chosen scale
// centred on it; the count picker shows the picture fitted into its window with the grid.
struct SizePreview {
  Rect board;
  Rect picture;  // may reach beyond the board: the picture is then larger than the table
};
SizePreview SizePreviewLayout(int windowWidth, int windowHeight, int boardWidth, int boardHeight,
                              int pictureWidth, int pictureHeight, double scale);
Rect CountPreviewLayout(int windowWidth, int windowHeight, int pictureWidth, int pictureHeight);
// The offset of grid line i (1 .. cells - 1) across an extent cut into `cells` cells.
int GridLine(int i, int cells, int extent);

// ---- True-colour pictures ------------------------------------------------------------------

// A 24-bit copy of an 8- or 24-bit picture (empty on bad input).
PackedDib TrueColourCopy(HIMAGE source);
// Draws an 8- or 24-bit picture onto a 24-bit one at (x, y), clipped; false on bad input.
bool PastePicture(HIMAGE destination, int x, int y, HIMAGE source);
// A push-button strip (normal, hover, pressed, stacked) of a brass page arrow over the part of
// a 24-bit background it will stand on.
PackedDib PageArrowStrip(HIMAGE background, const Rect& place, bool forward);

}  // namespace qv::newgame
