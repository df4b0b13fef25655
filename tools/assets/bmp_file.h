// 8-bit .bmp files: the pictures of Image\ and the staged interface pictures the packer reads.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "assets/image8.h"

namespace qv::assets {

// An uncompressed 8-bit bottom-up file with a full 256-entry colour table (unused entries black)
// and biSizeImage filled in: the layout the game's print job reads straight from disk.
std::vector<std::uint8_t> EncodeBmp8(const Image8& image);

// Reads an uncompressed 8-bit file (either row order) with at most 256 colours. Every size and
// offset is checked against the bytes really present; a bad file gives false and a reason.
bool DecodeBmp8(const std::vector<std::uint8_t>& bytes, Image8& image, std::string& error);

}  // namespace qv::assets
