// Small pixel helpers of the widgets: source clipping, colour matching, the message box's place.
#pragma once

#include <cstdint>

#include "graphics/dib_layout.h"

namespace qv {

// A copy of width x height from (sx, sy) of a source to (dx, dy) of a destination.
struct CopyRect {
  int dx = 0;
  int dy = 0;
  int sx = 0;
  int sy = 0;
  int width = 0;
  int height = 0;
  bool empty() const { return width <= 0 || height <= 0; }
};

// The part of a copy whose source lies inside a picture of that size (and, when limitWidth and
// limitHeight are given, whose destination lies inside 0 ... limit), so that a window larger
// than its picture never reads pixels that do not exist.
CopyRect ClipCopy(const CopyRect& copy, int sourceWidth, int sourceHeight, int limitWidth = -1,
                  int limitHeight = -1);

// The index of the colour table entry nearest to colour 0x00RRGGBB (the first on a tie).
int NearestColourIndex(const RgbQuad* colours, int colourCount, std::uint32_t rgb);

// Maps count 0x00RRGGBB pixels to indices of a colour table; repeated colours are looked up once.
void MapToColourTable(const std::uint32_t* pixels, int count, const RgbQuad* colours,
                      int colourCount, std::uint8_t* out);

// What the message box does with a character offered by the message loop.
struct MessageBoxKey {
  bool consumed = false;  // the answer to UM_CHILDCHAR
  bool close = false;
  int result = 0;
};
MessageBoxKey MessageBoxChar(int character);

}  // namespace qv
