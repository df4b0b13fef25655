// The program's one random source: uniform numbers in [0, 1), seedable for tests.
#pragma once

#include <cstdint>

namespace qv {

// xoshiro256** seeded through splitmix64: the same seed gives the same sequence on every
// compiler and platform, so a scatter recorded natively replays under Windows.
class RandomSource {
 public:
  explicit RandomSource(std::uint64_t seed = 0);
  void Seed(std::uint64_t seed);
  std::uint64_t NextBits();
  double Uniform();  // [0, 1), 53 bits of precision

 private:
  std::uint64_t state_[4];
};

// The process-wide source that the game draws from.
void SeedRandom(std::uint64_t seed);
void SeedRandomFromClock();
double RandomUniform();

}  // namespace qv
