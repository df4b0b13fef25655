// Contact prints of the generated assets, written as PNG files for people to look at.
#pragma once

#include <string>
#include <vector>

#include "assets/image8.h"

namespace qv::assets {

bool WritePng(const RgbImage& image, const std::string& path, std::string& error);

// The pictures side by side in rows of `columns`, `gap` pixels apart on a neutral ground.
RgbImage ContactSheet(const std::vector<RgbImage>& pictures, int columns, int gap);

// The picture repeated `times` x `times`, to show whether its edges meet without a seam.
RgbImage Tiled(const RgbImage& picture, int times);

// Halves the picture `times` times by averaging, so that large sheets stay easy to view.
RgbImage Reduced(const RgbImage& picture, int times);

}  // namespace qv::assets

namespace qv::assets {

// Several periods of the endless grid a die is drawn from, each piece in its own colour with a
// dark outline: what the pieces will look like once the die is repeated over a picture.
RgbImage PiecesView(const Image8& die, int rows, int cols, int periods);

}  // namespace qv::assets
