#include "media/mixer_percent.h"

#include "system/assert.h"

namespace qv {

bool CheckMixerReady(bool ready) {
  return QV_CHECK(ready, "se debe inicializar el mixer primero");
}

std::uint32_t PercentOfFader(const FaderRange& fader, std::uint32_t value) {
  if (fader.minimum >= fader.maximum) return 50;
  if (value < fader.minimum) value = fader.minimum;
  if (value > fader.maximum) value = fader.maximum;
  // In 64 bits: a fader spanning the whole 32-bit range must not wrap when multiplied by 100.
  const std::uint64_t travelled = value - fader.minimum;
  return static_cast<std::uint32_t>(travelled * 100 / (fader.maximum - fader.minimum));
}

bool FaderValueOfPercent(const FaderRange& fader, int percent, std::uint32_t& value) {
  if (percent < 0 || percent > 100) return false;
  if (fader.minimum >= fader.maximum) return false;
  const std::uint32_t steps = fader.steps == 0 ? 1 : fader.steps;
  // A single step leaves nothing to divide by below.
  if (steps == 1) return false;
  const double span = static_cast<double>(fader.maximum - fader.minimum);
  const auto raw = static_cast<std::uint32_t>(percent * span / 100.0 + fader.minimum);
  // Deliberately rounded down to a multiple of steps - 1, not of the step's width: the common
  // fader of 0..65535 in 65536 steps is thereby either silent or at full volume. The sliders
  // and the outside mixer changes are tested against this exact quantisation.
  value = raw / (steps - 1) * (steps - 1);
  return true;
}

int SliderPositionOfPercent(std::uint32_t percent) {
  return percent > static_cast<std::uint32_t>(kVolumeSliderMaximum)
             ? kVolumeSliderMaximum
             : static_cast<int>(percent);
}

}  // namespace qv
