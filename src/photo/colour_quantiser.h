// The game's own reduction of a full-colour picture to at most 256 colours, with dithering.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "graphics/dib_layout.h"
#include "graphics/packed_dib.h"
#include "photo/photo_picture.h"

namespace qv::photo {

struct QuantisedPicture {
  int width = 0;
  int height = 0;
  std::array<RgbQuad, 256> colours{};  // entries past coloursUsed stay black
  int coloursUsed = 0;
  std::vector<std::uint8_t> indices;  // one per pixel, top row first, no row padding
};

// Finds at most 256 colours and maps every pixel to one of them. A picture of 256 colours or
// fewer keeps exactly its own colours. Otherwise the colours come from splitting the colour
// space where that removes the most squared error, refined by a few k-means passes, and the
// pixels are mapped with Floyd-Steinberg error diffusion on serpentine rows; `dithering` scales
// the diffused error from 0 (nearest colour) to 1 (all of it). The same picture always gives the
// same result. False, and `out` unchanged, for an empty or inconsistent picture or one of more
// pixels than a photograph may have.
bool QuantisePicture(const BgrPicture& picture, QuantisedPicture& out, float dithering = 1.0f);

// The result as an 8-bit packed DIB with a full 256-entry colour table, as the .bmp writer takes
// it. False, and `dib` unchanged, when the memory cannot be had.
bool ToPackedDib(const QuantisedPicture& picture, PackedDib& dib);

}  // namespace qv::photo
