// What a widget's decision asks its window to do, in order: repaint, timers, capture, notify.
#pragma once

#include <array>
#include <cstddef>

namespace qv {

enum class Effect : unsigned char {
  kRepaint,         // a: 0 the whole window, else a band (the scroll's parts 1 ... 3)
  kStartTimer,      // a: timer id, b: period in milliseconds
  kKillTimer,       // a: timer id
  kCapture,         // take the mouse capture
  kReleaseCapture,  // give it back
  kNotify,          // a: the code sent to the parent with MWM_NOTIFY
  kPlaySound,       // a: the WAVE resource (kHoverSound, kClickSound)
  kMoveCursorY,     // a: the new screen y of the cursor, x unchanged (the scroll's wrap-around)
};

struct EffectStep {
  Effect what;
  int a = 0;
  int b = 0;
  bool operator==(const EffectStep&) const = default;
};

// A short, ordered list of steps. The window carries them out after the decision has updated
// its record, so a parent that destroys the widget while handling a notification never sees
// the record used again.
class Effects {
 public:
  static constexpr std::size_t kCapacity = 16;

  void Repaint(int band = 0) { Add({Effect::kRepaint, band, 0}); }
  void StartTimer(int id, int periodMs) { Add({Effect::kStartTimer, id, periodMs}); }
  void KillTimer(int id) { Add({Effect::kKillTimer, id, 0}); }
  void Capture() { Add({Effect::kCapture, 0, 0}); }
  void ReleaseCapture() { Add({Effect::kReleaseCapture, 0, 0}); }
  void Notify(int code) { Add({Effect::kNotify, code, 0}); }
  void PlaySound(int resource) { Add({Effect::kPlaySound, resource, 0}); }
  void MoveCursorY(int y) { Add({Effect::kMoveCursorY, y, 0}); }

  std::size_t size() const { return count_; }
  bool empty() const { return count_ == 0; }
  const EffectStep& operator[](std::size_t i) const { return steps_[i]; }
  const EffectStep* begin() const { return steps_.data(); }
  const EffectStep* end() const { return steps_.data() + count_; }

 private:
  // No decision produces more than a dozen steps; the capacity is a hard bound, not a guess
  // that could overflow, because extra steps are dropped rather than written out of bounds.
  void Add(const EffectStep& step) {
    if (count_ < kCapacity) steps_[count_++] = step;
  }
  std::array<EffectStep, kCapacity> steps_{};
  std::size_t count_ = 0;
};

}  // namespace qv
