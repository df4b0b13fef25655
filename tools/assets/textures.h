// The ten table textures: calm, seamless 100 x 100 materials drawn from periodic noise.
#pragma once

#include "assets/image8.h"

namespace qv::assets {

constexpr int kTextureSize = 100;

// Texture `index` (0..9) before and after the reduction to 256 colours. Texture 0, green felt,
// is the default table.
RgbImage DrawTexture(int index);
Image8 MakeTexture(int index);
const char* TextureName(int index);

}  // namespace qv::assets
