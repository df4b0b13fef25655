// Fitting a photograph to the size of the built-in pictures, with an area-averaging filter.
#pragma once

#include <cstdint>

#include "photo/photo_picture.h"

namespace qv::photo {

// The built-in pictures' long side; a photograph is shrunk to it, never enlarged.
constexpr int kPhotoLongSide = 1024;
// Larger sources are refused before anything is allocated for them, whatever else they claim.
constexpr std::int64_t kMaxPhotoPixels = 100'000'000;

struct FitSize {
  bool ok = false;  // false: no positive size, or more than kMaxPhotoPixels
  int width = 0;
  int height = 0;
};

// The fitted size: the long side becomes kPhotoLongSide and the short side keeps the proportion,
// rounded to the nearest pixel and never below 1; a picture whose long side is already at most
// kPhotoLongSide keeps its size.
FitSize FittedPhotoSize(std::int64_t width, std::int64_t height);

// Scales the rows to their fitted size, each output pixel the exact average of the source area
// it covers (partly covered source pixels count by their covered fraction). False, and `out`
// unchanged, when the size is refused or the rows are not described sensibly.
bool FitPhoto(const PixelRows& source, BgrPicture& out);

}  // namespace qv::photo
