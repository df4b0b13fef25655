// The interface sounds, synthesised: short, soft 16-bit PCM clicks stored as WAVE resources.
#include "assets/sounds.h"

#include <algorithm>
#include <cmath>

#include "system/random.h"

namespace qv::assets {
namespace {

struct Mode {
  double frequency;  // Hz
  double decay;      // seconds for the amplitude to fall to 1/e
  double level;
};

// A struck body rings in a few modes that die away at their own rates; a short burst of
// filtered noise gives the strike itself. A one-millisecond attack and a faded tail keep the
// edges free of clicks of their own.
std::vector<double> Strike(double seconds, const std::vector<Mode>& modes, double noiseLevel,
                           double noiseDecay, double peak, std::uint64_t seed) {
  const int count = static_cast<int>(seconds * kSoundRate);
  std::vector<double> out(count, 0.0);
  RandomSource random(seed);
  double lowPassed = 0;
  for (int i = 0; i < count; ++i) {
    const double t = static_cast<double>(i) / kSoundRate;
    double v = 0;
    for (const Mode& m : modes) v += m.level * std::exp(-t / m.decay) * std::sin(2 * M_PI * m.frequency * t);
    lowPassed += 0.35 * ((random.Uniform() * 2 - 1) - lowPassed);
    v += noiseLevel * std::exp(-t / noiseDecay) * lowPassed;
    const double attack = std::min(1.0, t / 0.001);
    const double tail = std::min(1.0, (seconds - t) / 0.010);
    out[i] = v * attack * tail;
  }
  const double loudest = std::max(1e-9, std::fabs(*std::max_element(out.begin(), out.end(), [](double a, double b) {
                                                    return std::fabs(a) < std::fabs(b);
                                                  })));
  for (double& v : out) v *= peak / loudest;
  return out;
}

}  // namespace

std::vector<double> HoverSound() {
  return Strike(0.045, {{2400, 0.005, 1.0}, {3900, 0.003, 0.4}}, 0.3, 0.002, 0.22, 242);
}

std::vector<double> ClickSound() {
  return Strike(0.080, {{1250, 0.010, 1.0}, {620, 0.016, 0.6}, {2900, 0.004, 0.3}}, 0.5, 0.003,
                0.45, 243);
}

std::vector<double> JoinSound() {
  // The modes of a small wooden block: low, inharmonic, quickly damped.
  return Strike(0.140, {{760, 0.028, 1.0}, {1830, 0.014, 0.55}, {3100, 0.007, 0.3}, {420, 0.035, 0.35}},
                0.6, 0.004, 0.55, 244);
}

std::vector<std::uint8_t> EncodeWave(const std::vector<double>& samples) {
  std::vector<std::uint8_t> out;
  auto put16 = [&](std::uint32_t v) {
    out.push_back(static_cast<std::uint8_t>(v));
    out.push_back(static_cast<std::uint8_t>(v >> 8));
  };
  auto put32 = [&](std::uint32_t v) {
    put16(v & 0xFFFF);
    put16(v >> 16);
  };
  auto tag = [&](const char* t) {
    for (int i = 0; i < 4; ++i) out.push_back(static_cast<std::uint8_t>(t[i]));
  };
  const auto dataBytes = static_cast<std::uint32_t>(samples.size() * 2);
  tag("RIFF");
  put32(36 + dataBytes);
  tag("WAVE");
  tag("fmt ");
  put32(16);
  put16(1);  // PCM
  put16(1);  // mono
  put32(kSoundRate);
  put32(kSoundRate * 2);
  put16(2);
  put16(16);
  tag("data");
  put32(dataBytes);
  for (double v : samples) {
    const long s = std::lround(std::clamp(v, -1.0, 1.0) * 32767);
    put16(static_cast<std::uint16_t>(static_cast<std::int16_t>(s)));
  }
  return out;
}

}  // namespace qv::assets
