// Geometry of the piece-box frames and the picture previews: hit rules and sizes, no windows.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "graphics/dib_layout.h"
#include "graphics/packed_dib.h"

namespace qv {

// ---- Box frames ------------------------------------------------------------------------------

// The frame's border width and the corner reach of its resize grips.
constexpr int kBoxBorder = 6;
constexpr int kBoxCornerReach = 20;
// Below this a frame would hide its buttons and leave no room to drop a piece.
constexpr int kBoxMinWidth = 160;
constexpr int kBoxMinHeight = 120;

enum class FrameDrag { None, Move, LeftEdge, RightEdge, BottomEdge, BottomLeft, BottomRight };

// What a press at (x, y) of a width x height frame does, the title strip being titleHeight high.
FrameDrag FrameDragAt(int x, int y, int width, int height, int titleHeight);

struct FrameBox {
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;
};

// The frame's place after the pointer moved (dx, dy) since the press, starting from `start`.
// Resizing keeps the opposite edge in place and never goes below the minimum size.
FrameBox DraggedFrame(FrameDrag mode, const FrameBox& start, int dx, int dy);

// The piece area inside a frame of that size: the border all round and a border's width below
// the title strip.
FrameBox BoxAreaRect(int width, int height, int titleHeight);

// The title strip's buttons, right-aligned inside the border: close outermost, rename beside it.
FrameBox BoxCloseButtonRect(int width, int buttonSide);
FrameBox BoxRenameButtonRect(int width, int buttonSide);

// A box name holds at most this many characters (40 bytes with the terminator).
constexpr std::size_t kBoxNameMaxLength = 39;

// The default name of box 0..5: the language's word for a box, the box number 1..6 and one
// trailing blank ("Box1 " in English; the blank is part of the name and is kept). A word too long
// for the name is cut so that the number and the blank always fit; "" for a box out of range.
std::string DefaultBoxName(std::string_view word, int box);

// The name a box takes when the language's word changes from oldWord to newWord: the new default
// name while the box still has the old default one, else the player's own name, unchanged.
std::string RelabelledBoxName(std::string_view name, std::string_view oldWord,
                              std::string_view newWord, int box);

// ---- Previews --------------------------------------------------------------------------------

constexpr int kPreviewMaxWidth = 240;
constexpr int kPreviewMaxHeight = 180;
// The preview window adds a frame of 4 pixels each side and a 31-pixel title strip (+ 4).
constexpr int kPreviewExtraWidth = 8;
constexpr int kPreviewExtraHeight = 39;
constexpr int kPreviewTitleHeight = 31;

struct PictureSize {
  int width = 0;
  int height = 0;
};

// A picture reduced to fit 240 x 180 keeping its proportions; no picture (or a degenerate one)
// gives the empty 240 x 180 preview.
PictureSize PreviewSizeFor(int pictureWidth, int pictureHeight);

// A picture scaled to fill the screen's width, or its height when the width would make it too
// tall. {0, 0} for a degenerate picture or screen.
PictureSize ViewerSizeFor(int screenWidth, int screenHeight, int pictureWidth, int pictureHeight);

// A copy of an 8- or 24-bit picture at another size (nearest pixel, colours kept). False, with
// `out` untouched, for a bad picture or size or when memory runs out.
bool ScalePicture(HIMAGE source, int width, int height, PackedDib& out);

}  // namespace qv
