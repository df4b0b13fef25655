// The first numbers of the random source for one seed; native and Windows tests both check
// them, so a scatter recorded on one platform replays on the other.
#pragma once

#include <cstdint>

namespace qv::test {
constexpr std::uint64_t kGoldenSeed = 20261121;
constexpr double kGoldenValues[] = {0.84987822076751129, 0.37899944718974465,
                                    0.33420343838212696, 0.18624642606961994};
}  // namespace qv::test
