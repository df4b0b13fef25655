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
// Copies a rectangle of an area's surface into the target at (dx, dy) in the target's format.
bool CopySurfaceToDisplay(DisplayImage& target, std::int32_t dx, std::int32_t dy, int area,
                          std::int32_t sx, std::int32_t sy, std::int32_t width,
                          std::int32_t height);

}  // namespace qv
