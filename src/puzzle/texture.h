// The table texture: an 8-bit 100 x 100 tile repeated under the pieces.
#pragma once

#include "graphics/dib_layout.h"

namespace qv {

constexpr int MOSAICO_TAMX = 100;
constexpr int MOSAICO_TAMY = 100;

// Sets the tile (borrowed: the caller keeps it alive; its colours are read now) and, when the
// board exists, recomposes every area with it. False after a failed check.
bool MosaicoPuzzle(HIMAGE tile);
bool HasTableTexture();

// The tile's average colour: what a photograph's transparent parts become, so that they look
// like the table they will lie on. A dark wood brown while no tile is set.
RgbQuad TableColour();

}  // namespace qv
