// Area surfaces and the composing of piece images from the atlas, the texture and the order.
#pragma once

#include <cstdint>

#include "graphics/dib_layout.h"
#include "puzzle/puzzle_model.h"

namespace qv {

// ---- Areas -------------------------------------------------------------------------------

// A box area's window was created (box 0-5, with the window that stands for the box). Needs a
// table texture. With no puzzle open the area starts empty.
bool CreateBoxArea(int box, std::uintptr_t ownerTag);
// The board's window was created.
bool CreateBoardArea();
// The area's window is gone: its surface is freed.
void DestroyArea(int area);
// The area's window has this size: the surface is reallocated, keeping the part of the old
// picture that still fits and composing the rest. The board's first size performs the cut that
// ShowPuzzle left pending.
bool ResizeArea(int area, std::int32_t width, std::int32_t height);
const AreaSurface* GetAreaSurface(int area);

// ---- Composing ---------------------------------------------------------------------------

// Recomposes a rectangle of an area's surface from the pieces of its slice and the texture.
// show: also ask the window to repaint it. leaveOutFront: leave the topmost piece out (it is
// about to be dragged).
void ComponerArea(int area, std::int32_t x, std::int32_t y, std::int32_t width,
                  std::int32_t height, bool show, bool leaveOutFront);
// The same, leaving out the first `leaveOut` pieces of the slice (the moving set of a drag).
void ComposeAreaLeavingOut(int area, std::int32_t x, std::int32_t y, std::int32_t width,
                           std::int32_t height, bool show, std::int32_t leaveOut);
// The whole surface of one area, or of all seven.
void ComponerAreaEntera(int area, bool show);
void ComposeAllAreas(bool show);

// ---- Display-format images ----------------------------------------------------------------

// How 8-bit channels are packed into a 16- or 32-bit display pixel: value / scale << shift.
struct ChannelPacking {
  int redShift = 0, greenShift = 0, blueShift = 0;
  int redScale = 1, greenScale = 1, blueScale = 1;
};
// False for masks that are empty or wider than 8 bits.
bool PackingForMasks(std::uint32_t red, std::uint32_t green, std::uint32_t blue,
                     ChannelPacking* out);

// A bottom-up picture in a display format, rows padded to 4 bytes; memory owned by the caller.
struct DisplayImage {
  std::uint8_t* bits = nullptr;
  std::int32_t width = 0;
  std::int32_t height = 0;
  std::int32_t stride = 0;
  DisplayFormat format;
};

// Writes piece k's image (membership 1 pixels only, the selection pattern included) into the
// target with the cell's top-left corner at (dx, dy), counted from the target's top, clipped.
bool ComposeDraggedPiece(DisplayImage& target, std::int32_t dx, std::int32_t dy,
                         std::uint32_t piece);
// A bottom-up picture of 32-bit pixels with premultiplied alpha (blue, green, red, alpha from
// the lowest byte), rows of width pixels: what a layered window shows as it is.
struct AlphaImage {
  std::uint32_t* pixels = nullptr;
  std::int32_t width = 0;
  std::int32_t height = 0;
};
// Clears the target to transparent and draws the pieces (the first on top) with their cells at
// their positions less the origin, clipped: membership pixels opaque (the selection pattern
// included), every other pixel transparent.
// spans, when given, is the table of ComputeMemberSpans for the puzzle open now.
bool ComposeAlphaPieces(AlphaImage& target, const std::uint32_t* pieces, std::int32_t count,
                        std::int32_t originX, std::int32_t originY, const std::uint32_t* spans);
// For every piece and cell row: the first column holding a member pixel, and one past the last
// in the top 16 bits (equal for a row without any). Piece k = r NC + c keeps its row cy at
// (r H + cy) NC + c, in the order composing reads them: the spans of one atlas row side by side.
// Composing a large moving set then reads only those parts of the atlas, a fraction of the cells
// with their margins. False (and no table) for cells wider than 16 bits hold.
bool ComputeMemberSpans(EngineArray<std::uint32_t>& spans);
// Copies a rectangle of an area's surface into the target at (dx, dy) in the target's format.
bool CopySurfaceToDisplay(DisplayImage& target, std::int32_t dx, std::int32_t dy, int area,
                          std::int32_t sx, std::int32_t sy, std::int32_t width,
                          std::int32_t height);

}  // namespace qv
