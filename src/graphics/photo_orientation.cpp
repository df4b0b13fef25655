// Where the pixels of a camera picture go once its EXIF orientation is applied.
#include "graphics/photo_decoder.h"

namespace qv {

namespace {
// Orientations 5 to 8 swap the sides: the camera was held on its side.
bool SwapsSides(int orientation) { return orientation >= 5 && orientation <= 8; }
}  // namespace

OrientedSize OrientSize(int orientation, int width, int height) {
  if (SwapsSides(orientation)) return {height, width};
  return {width, height};
}

void OrientPoint(int orientation, int width, int height, int x, int y, int* uprightX,
                 int* uprightY) {
  const int right = width - 1;
  const int bottom = height - 1;
  switch (orientation) {
    case 2: *uprightX = right - x; *uprightY = y; return;           // mirrored left to right
    case 3: *uprightX = right - x; *uprightY = bottom - y; return;  // turned half round
    case 4: *uprightX = x; *uprightY = bottom - y; return;          // mirrored top to bottom
    case 5: *uprightX = y; *uprightY = x; return;                   // mirrored on the diagonal
    case 6: *uprightX = bottom - y; *uprightY = x; return;          // turn 90 clockwise
    case 7: *uprightX = bottom - y; *uprightY = right - x; return;  // the other diagonal
    case 8: *uprightX = y; *uprightY = right - x; return;           // turn 90 anticlockwise
    default: *uprightX = x; *uprightY = y; return;
  }
}

}  // namespace qv
