// Pictures expanded to 24 bits, so that a screen can compose pictures whose colour tables differ.
#pragma once

#include "graphics/packed_dib.h"

namespace qv {

// An 8- or 24-bit picture of positive size.
bool UsablePicture(HIMAGE picture);

// A blank (black) 24-bit picture of this size; false when the size is not positive or there is
// no memory.
bool AllocateTrueColour(int width, int height, PackedDib& out);

// Copies at most width x height of the picture's top-left to (x, y) of a 24-bit surface, its
// colours looked up in its own table, clipped to the surface.
void ExpandInto(HIMAGE surface, int x, int y, HIMAGE picture, int width, int height);

// The whole picture as a 24-bit one.
bool ExpandToTrueColour(HIMAGE picture, PackedDib& out);

}  // namespace qv

namespace qv {

// Lays one frame of a masked sprite strip (a row of frames over a row of their masks, black where
// the sprite is opaque) onto a 24-bit surface at (x, y): the frame where its mask is black, the
// surface elsewhere.
void ExpandSpriteInto(HIMAGE surface, int x, int y, HIMAGE strip, int columns, int frame);

}  // namespace qv

namespace qv {

// A masked sprite strip (a row of frames over a row of their masks) redrawn in the colours of an
// indexed picture, so that it can be laid over that picture with the raster operations: each
// opaque pixel takes the nearest colour of the table, and the masks and the transparent parts
// become the all-ones and all-zeros indices that the AND and XOR of the drawing need.
bool RemapSpriteToColourTable(HIMAGE strip, HIMAGE table, PackedDib& out);

}  // namespace qv
