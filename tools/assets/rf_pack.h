// The packer of Quorvex.rf: picture blocks, then the directory of 16-byte entries, then the count.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "assets/image8.h"

namespace qv::assets {

struct RfPicture {
  std::uint32_t identifier = 0;
  Image8 image;
};

// Each block is a 40-byte information header with biSizeImage and biClrUsed filled in, the
// picture's own colours (1 to 256), then the bottom-up rows. Pictures are written in the order
// given. A repeated identifier, an empty picture or a palette that is empty, too long or too
// short for the indices used is refused with a reason.
bool PackResourceFile(const std::vector<RfPicture>& pictures, std::vector<std::uint8_t>& out,
                      std::string& error);

}  // namespace qv::assets
