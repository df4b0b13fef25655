// Drawing packed DIB pictures onto window-system drawing contexts, and filling rectangles.
#pragma once

#include <windows.h>

#include <cstdint>

#include "graphics/dib_layout.h"

namespace qv {

// Draws the source rectangle (sx, sy, width, height) unscaled at (x, y) through DrawDib.
// Only SRCCOPY is supported; another operation is reported and drawn as a plain copy.
bool ImageDrawToContext(HDC dc, int x, int y, int width, int height, HIMAGE source, int sx,
                        int sy, std::uint32_t rop);

// With a picture: draws the rectangle of the picture to the same place of the context.
// Without: fills the rectangle with the raster operation (BLACKNESS for not-ready widgets).
bool ImageFill(HDC dc, const RECT& rect, HIMAGE picture, std::uint32_t rop);

}  // namespace qv
