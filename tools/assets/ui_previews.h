// Contact sheets of the interface pictures, one PNG per screen, for people to look at.
#pragma once

#include <string>
#include <vector>

#include "assets/image8.h"
#include "assets/ui_catalogue.h"

namespace qv::assets {

// The strip cut into what a screen shows at one time: one picture per frame (a scroll bar's
// version assembled from its three parts; a sprite with its mask beside it).
std::vector<RgbImage> FramesOf(const UiPicture& picture, const RgbImage& strip);

// Writes <folder>/ui-<screen>.png for every screen, each picture labelled with its identifier.
bool WriteUiContactSheets(const std::string& folder, std::string& error);

}  // namespace qv::assets
