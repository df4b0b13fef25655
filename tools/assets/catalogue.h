// What the asset tool puts into Quorvex.rf: the die masks, the table textures and the interface.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "assets/die_shapes.h"
#include "assets/rf_pack.h"

namespace qv::assets {

struct DieChoice {
  std::uint32_t identifier;
  TabStyle style;
  std::uint64_t seed;         // fixes the tabs' small variations for good
  std::uint32_t directions;   // which way each edge's tab points (see MakeDieMask)
};

// The three piece shapes, each a 2 x 2 die: knob, dovetail, double lobe.
constexpr int kDieRows = 2;
constexpr int kDieCols = 2;
const std::vector<DieChoice>& DieChoices();

constexpr std::uint32_t kFirstTextureId = 6000;
constexpr int kTextureCount = 10;

// Every picture the tool draws for the resource file, in identifier order.
std::vector<RfPicture> DrawnPictures();

// Adds the 8-bit pictures named <identifier>.bmp in a folder (pictures drawn by other tools);
// an identifier the tool already draws, or a file that is not a plain 8-bit picture, is refused.
bool AddStagedPictures(const std::string& folder, std::vector<RfPicture>& pictures,
                       std::string& error);

}  // namespace qv::assets
