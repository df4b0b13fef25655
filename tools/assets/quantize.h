// Reduction of 24-bit pictures to 256 colours (libimagequant; build tool only, never the game).
#pragma once

#include <string>
#include <vector>

#include "assets/image8.h"

namespace qv::assets {

// Finds at most 256 colours for the picture and maps every pixel to one of them. `dithering`
// runs from 0 (nearest colour) to 1 (full error diffusion, which keeps soft backgrounds from
// banding). The result is the same for the same input on every run. Colours in `fixed` are
// kept exactly in the palette (masks need true black and white). `speed` is libimagequant's,
// 1 (slow, best palette) to 10 (fast).
bool ReduceTo256Colours(const RgbImage& picture, double dithering, Image8& out, std::string& error,
                        const std::vector<Rgb>& fixed = {}, int speed = 3);

// One palette for a whole sequence of pictures of the same size (the frames of a clip), found
// from all of them together, and every picture mapped to it. A shared palette keeps colours
// from jumping between frames and lets a player realise it once.
bool ReduceFramesToOnePalette(const std::vector<RgbImage>& frames, double dithering,
                              std::vector<Image8>& out, std::string& error, int speed = 3);

}  // namespace qv::assets
