// The volume faders of the system mixer as percentages: reading a fader's value as a percentage,
// the value that a percentage sets, and what a slider of 0..99 shows.
#pragma once

#include <cstdint>

namespace qv {

// A fader as the mixer describes it: its bounds and its step count (0 when the mixer gives none).
struct FaderRange {
  std::uint32_t minimum = 0;
  std::uint32_t maximum = 0;
  std::uint32_t steps = 0;
};

// Every mixer operation needs the mixer opened first; false (after reporting it) otherwise.
bool CheckMixerReady(bool ready);

// The percentage of a value read from the fader, truncated. A fader whose minimum is not below
// its maximum reads as 50; a value outside the bounds counts as the nearer bound.
std::uint32_t PercentOfFader(const FaderRange& fader, std::uint32_t value);

// The value that sets the fader to a percentage, or false when the percentage is outside 0..100,
// the fader has no span, or it has a single step.
bool FaderValueOfPercent(const FaderRange& fader, int percent, std::uint32_t& value);

// The volume sliders run from 0 to 99: a fader at its maximum is shown one short of it.
constexpr int kVolumeSliderMaximum = 99;
int SliderPositionOfPercent(std::uint32_t percent);

}  // namespace qv
