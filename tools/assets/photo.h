// Photographs: WebP decoding and high-quality resizing before the reduction to 256 colours.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "assets/image8.h"

namespace qv::assets {

bool DecodeWebp(const std::vector<std::uint8_t>& bytes, RgbImage& image, std::string& error);

// The size that fits the long side to `longSide` and keeps the aspect ratio (rounded to the
// nearest pixel); pictures already that size or smaller keep theirs.
void FittedSize(int width, int height, int longSide, int& outWidth, int& outHeight);

// Resamples with a Lanczos filter of three lobes, widened when shrinking so that fine detail
// is averaged instead of aliased.
RgbImage Resize(const RgbImage& image, int width, int height);

}  // namespace qv::assets
