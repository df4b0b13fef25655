// The process-wide random source.
#include "system/random.h"

#include <chrono>

namespace qv {

namespace {

std::uint64_t SplitMix64(std::uint64_t& x) {
  std::uint64_t z = (x += 0x9E3779B97F4A7C15ULL);
  z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ULL;
  z = (z ^ (z >> 27)) * 0x94D049BB133111EBULL;
  return z ^ (z >> 31);
}

std::uint64_t RotateLeft(std::uint64_t x, int k) { return (x << k) | (x >> (64 - k)); }

RandomSource& ProcessSource() {
  static RandomSource source(0x51A7C0DEULL);
  return source;
}

}  // namespace

RandomSource::RandomSource(std::uint64_t seed) { Seed(seed); }

void RandomSource::Seed(std::uint64_t seed) {
  for (auto& word : state_) word = SplitMix64(seed);
}

std::uint64_t RandomSource::NextBits() {
  const std::uint64_t result = RotateLeft(state_[1] * 5, 7) * 9;
  const std::uint64_t t = state_[1] << 17;
  state_[2] ^= state_[0];
  state_[3] ^= state_[1];
  state_[1] ^= state_[2];
  state_[0] ^= state_[3];
  state_[2] ^= t;
  state_[3] = RotateLeft(state_[3], 45);
  return result;
}

double RandomSource::Uniform() {
  return static_cast<double>(NextBits() >> 11) * (1.0 / 9007199254740992.0);
}

void SeedRandom(std::uint64_t seed) { ProcessSource().Seed(seed); }

void SeedRandomFromClock() {
  const auto now = std::chrono::steady_clock::now().time_since_epoch().count();
  ProcessSource().Seed(static_cast<std::uint64_t>(now));
}

double RandomUniform() { return ProcessSource().Uniform(); }

}  // namespace qv
