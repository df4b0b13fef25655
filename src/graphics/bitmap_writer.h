// Writing a packed DIB picture to disk as a .bmp file.
#pragma once

#include <cstdint>
#include <vector>

#include "graphics/dib_layout.h"

namespace qv {

// The whole .bmp file of a packed DIB: the 14-byte file header, the 40-byte information header,
// the colour table (an 8-bit picture keeps its own colours, 256 when it names none) and the
// rows bottom-up. Empty for a picture that is null, not 8 or 24 bits, or of no positive size.
std::vector<std::uint8_t> BitmapFileBytes(HIMAGE picture);

// Writes those bytes through a temporary file beside path, which replaces path only once it is
// whole; a failed write leaves path as it was.
bool WriteBitmapFile(const char* path, HIMAGE picture);

}  // namespace qv
