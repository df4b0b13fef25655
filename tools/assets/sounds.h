// The interface sounds, synthesised: short, soft 16-bit PCM clicks stored as WAVE resources.
#pragma once

#include <cstdint>
#include <vector>

namespace qv::assets {

constexpr int kSoundRate = 22050;

// Mono samples in [-1, 1] for the pointer entering a button (a soft tick), a click, and two
// pieces snapping together (a short wooden knock).
std::vector<double> HoverSound();
std::vector<double> ClickSound();
std::vector<double> JoinSound();

// A RIFF WAVE file: PCM, one channel, 16 bits, kSoundRate samples a second.
std::vector<std::uint8_t> EncodeWave(const std::vector<double>& samples);

}  // namespace qv::assets
