// The module's application icon (.ico) and drop-into-box cursor (.cur), drawn with cairo.
#pragma once

#include <cstdint>
#include <vector>

namespace qv::assets {

// Hot spot of the drop-into-box cursor: the tip of its arrow.
constexpr int kDropCursorHotX = 1;
constexpr int kDropCursorHotY = 1;

// A gold jigsaw piece on a transparent ground, at 16, 32 and 48 pixels, 32-bit with masks.
std::vector<std::uint8_t> MakeIconFile();

// A 32 x 32 arrow with a small open box under it and a piece dropping in.
std::vector<std::uint8_t> MakeDropCursorFile();

}  // namespace qv::assets
