// MosaicoPuzzle: the table texture tile, kept as colours ready for composing.
#include "puzzle/texture.h"

#include "graphics/himage_ops.h"
#include "puzzle/compose.h"
#include "puzzle/engine_internal.h"
#include "system/assert.h"

namespace qv {

namespace {

HIMAGE g_tile = nullptr;  // borrowed from the caller
// The tile's colours looked up once, rows from the top, so composing reads three bytes a pixel.
std::uint8_t g_tileBgr[MOSAICO_TAMX * MOSAICO_TAMY * 3];

}  // namespace

bool MosaicoPuzzle(HIMAGE tile) {
  if (!QV_CHECK(tile != nullptr, "handle al image invalido")) return false;
  if (!QV_CHECK(ImageBitCount(tile) == 8, "solo se soportan mosaicos de paleta indexada")) {
    return false;
  }
  if (!QV_CHECK(ImageWidth(tile) == MOSAICO_TAMX,
                "el ancho del mosaico difiere del declarado en MOSAICO_TAMX")) {
    return false;
  }
  if (!QV_CHECK(ImageHeight(tile) == MOSAICO_TAMY,
                "el alto del mosaico difiere del declarado en MOSAICO_TAMY")) {
    return false;
  }
  g_tile = tile;
  const RgbQuad* colours = DibColours(tile);
  for (int row = 0; row < MOSAICO_TAMY; ++row) {
    for (int column = 0; column < MOSAICO_TAMX; ++column) {
      const RgbQuad& c = colours[*ImagePixel(tile, column, row)];
      std::uint8_t* out = g_tileBgr + (row * MOSAICO_TAMX + column) * 3;
      out[0] = c.rgbBlue;
      out[1] = c.rgbGreen;
      out[2] = c.rgbRed;
    }
  }
  if (Puzzle().areas[AREA_TABLERO].exists) ComposeAllAreas(true);
  return true;
}

bool HasTableTexture() { return g_tile != nullptr; }

RgbQuad TableColour() {
  if (!g_tile) return RgbQuad{40, 60, 90, 0};
  constexpr long kPixels = long{MOSAICO_TAMX} * MOSAICO_TAMY;
  long sums[3] = {0, 0, 0};
  for (long i = 0; i < kPixels; ++i) {
    for (int c = 0; c < 3; ++c) sums[c] += g_tileBgr[i * 3 + c];
  }
  auto mean = [](long sum) { return static_cast<std::uint8_t>((sum + kPixels / 2) / kPixels); };
  return RgbQuad{mean(sums[0]), mean(sums[1]), mean(sums[2]), 0};
}

namespace engine {

const std::uint8_t* TextureBgr() { return g_tile ? g_tileBgr : nullptr; }
void ForgetTexture() { g_tile = nullptr; }

}  // namespace engine

}  // namespace qv
