// Slide-widget decisions: the value rules, the layout of the track and the knob, the drag value.
#include "widgets/slide_logic.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>

#include "system/assert.h"
#include "widgets/widget_messages.h"

namespace qv {

namespace {

int ToInt(std::int64_t v) {
  return static_cast<int>(std::clamp<std::int64_t>(v, std::numeric_limits<int>::min(),
                                                   std::numeric_limits<int>::max()));
}

// A step below 1 (an empty or one-wide range halves to 0) snaps nothing rather than dividing
// by zero.
int UsableStep(const SlideWidget& s) { return s.step >= 1 ? s.step : 1; }

void FitStepToRange(SlideWidget& s) {
  const std::int64_t range = std::int64_t{s.maximum} - s.minimum;
  if (s.step > range) s.step = ToInt(range / 2);
}

void UpdateSquaredLength(SlideWidget& s) {
  const double dx = s.vector.x;
  const double dy = s.vector.y;
  s.squaredLength = static_cast<float>(dx * dx + dy * dy);
}

}  // namespace

void SlideSetMaximum(SlideWidget& s, int v) {
  s.maximum = v;
  if (s.minimum > v) {
    s.minimum = v;
    s.value = v;
  }
  FitStepToRange(s);
  if (s.value > v) s.value = v;
}

void SlideSetMinimum(SlideWidget& s, int v) {
  s.minimum = v;
  if (s.maximum < v) {
    s.maximum = v;
    s.value = v;
  }
  FitStepToRange(s);
  if (s.value < v) s.value = v;
}

void SlideSetStep(SlideWidget& s, int v) {
  s.step = v;
  const std::int64_t range = std::int64_t{s.maximum} - s.minimum;
  if (v > range || v < 1) s.step = ToInt(range / 2);
}

bool SlideSetValue(SlideWidget& s, int v) {
  if (s.dragging) return false;
  const int step = UsableStep(s);
  s.value = std::clamp(v / step * step, s.minimum, s.maximum);
  return true;
}

int SlideDragValue(const SlideWidget& s, double t) {
  if (t >= 1.0) return s.maximum;
  if (!(t >= 0.0)) return s.minimum;  // also a NaN from a track of no length
  const double step = UsableStep(s);
  const double x = (static_cast<double>(s.maximum) - s.minimum) * t + s.minimum;
  // Half a step is added before multiplying back, so the value is x + step / 2 truncated and
  // not a multiple of the step, unlike a value set by message. Required as it stands.
  const double v = std::trunc(step * (x / step + 0.5));
  return static_cast<int>(std::clamp(v, static_cast<double>(s.minimum),
                                     static_cast<double>(s.maximum)));
}

// ---- Track ----------------------------------------------------------------------------------

std::uint32_t PackSlidePoint(SlidePoint p) {
  return static_cast<std::uint16_t>(p.x) |
         (static_cast<std::uint32_t>(static_cast<std::uint16_t>(p.y)) << 16);
}

SlidePoint UnpackSlidePoint(std::uint32_t packed) {
  return SlidePoint{static_cast<std::int16_t>(packed & 0xFFFF),
                    static_cast<std::int16_t>(packed >> 16)};
}

SlidePoint SlideEndPoint(const SlideWidget& s) {
  return SlidePoint{s.start.x + s.vector.x, s.start.y + s.vector.y};
}

void SlideSetStart(SlideWidget& s, SlidePoint p) {
  const SlidePoint end = SlideEndPoint(s);
  s.start = p;
  s.vector = SlidePoint{end.x - p.x, end.y - p.y};
  UpdateSquaredLength(s);
}

void SlideSetEnd(SlideWidget& s, SlidePoint p) {
  s.vector = SlidePoint{p.x - s.start.x, p.y - s.start.y};
  UpdateSquaredLength(s);
}

Effects SlideLayout(SlideWidget& s, bool hasBackground, bool hasKnob, int knobWidth,
                    int knobHeight) {
  Effects out;
  const bool hasTrack = s.vector.x != 0 || s.vector.y != 0;
  if (hasBackground && hasKnob && hasTrack && knobWidth > 0 && knobHeight > 0) {
    s.laidOut = true;
    s.knobWidth = knobWidth;
    s.knobHeight = knobHeight;
    s.halfKnob = SlidePoint{knobWidth / 2, knobHeight / 2};
    s.windowOrigin = SlidePoint{s.start.x + std::min(s.vector.x, 0) - s.halfKnob.x,
                                s.start.y + std::min(s.vector.y, 0) - s.halfKnob.y};
    s.windowWidth = std::abs(s.vector.x) + knobWidth;
    s.windowHeight = std::abs(s.vector.y) + knobHeight;
    s.knobOrigin = SlidePoint{s.start.x - s.windowOrigin.x, s.start.y - s.windowOrigin.y};
    SlidePlaceKnob(s);
    return out;
  }
  s.laidOut = false;
  s.windowOrigin = s.start;
  s.windowWidth = 50;
  s.windowHeight = 50;
  if (s.hovering && !s.dragging) {
    out.KillTimer(kHoverTimer);
    s.hovering = false;
  }
  out.Repaint();
  return out;
}

void SlidePlaceKnob(SlideWidget& s) {
  double ox;
  double oy;
  if (s.maximum == s.minimum) {
    ox = s.vector.x / 2.0;
    oy = s.vector.y / 2.0;
  } else {
    const double f = (static_cast<double>(s.value) - s.minimum) /
                     (static_cast<double>(s.maximum) - s.minimum);
    ox = s.vector.x * f;
    oy = s.vector.y * f;
  }
  s.knobPosition = SlidePoint{static_cast<int>(ox) + s.knobOrigin.x - s.halfKnob.x,
                              static_cast<int>(oy) + s.knobOrigin.y - s.halfKnob.y};
}

bool SlideFrameValid(int frame, int frameCount) {
  return QV_CHECK(frame >= 0 && frame < frameCount,
                  "Numero de Cuadro enviado al slide es invalido");
}

bool SlideRowsValid(int rows) {
  return QV_CHECK(rows >= 1, "Numero de filas enviado es invalido");
}

bool SlideColumnsValid(int columns) {
  return QV_CHECK(columns >= 1, "Numero de columnas enviado es invalido");
}

// ---- Mouse ----------------------------------------------------------------------------------

bool SlideTakesMouse(const SlideWidget& s) { return s.enabled && s.laidOut; }

bool SlideOverKnob(const SlideWidget& s, int x, int y) {
  return x >= s.knobPosition.x && x < s.knobPosition.x + s.knobWidth &&
         y >= s.knobPosition.y && y < s.knobPosition.y + s.knobHeight;
}

Effects SlideButtonDown(SlideWidget& s, int x, int y) {
  Effects out;
  if (!SlideOverKnob(s, x, y)) return out;
  s.dragging = true;
  s.grab = SlidePoint{x - s.knobPosition.x, y - s.knobPosition.y};
  out.Capture();
  out.KillTimer(kHoverTimer);
  out.Notify(MWN_PRESSED);
  return out;
}

Effects SlideDragTo(SlideWidget& s, int x, int y, bool& changed) {
  Effects out;
  changed = false;
  if (!s.dragging) return out;
  // Where the knob's centre would be if it kept the grab point under the pointer, relative to
  // the track's start, projected onto the track as a fraction of its length.
  const double px = static_cast<double>(x) - s.grab.x + s.halfKnob.x - s.knobOrigin.x;
  const double py = static_cast<double>(y) - s.grab.y + s.halfKnob.y - s.knobOrigin.y;
  const double t = (px * s.vector.x + py * s.vector.y) / s.squaredLength;
  const int v = SlideDragValue(s, t);
  if (v == s.value) return out;
  s.value = v;
  SlidePlaceKnob(s);
  changed = true;
  out.Notify(MWN_CLICKED);
  return out;
}

Effects SlideHoverMove(SlideWidget& s, int x, int y) {
  Effects out;
  if (s.dragging || s.hovering || !SlideOverKnob(s, x, y)) return out;
  s.hovering = true;
  out.StartTimer(kHoverTimer, kHoverPollMs);
  out.Notify(MWN_ENTER);
  return out;
}

Effects SlideButtonUp(SlideWidget& s, bool pointerOverKnob) {
  Effects out;
  if (!s.dragging) return out;
  s.dragging = false;
  s.hovering = pointerOverKnob;
  if (pointerOverKnob) out.StartTimer(kHoverTimer, kHoverPollMs);
  out.ReleaseCapture();
  out.Notify(MWN_RELEASED);
  if (!pointerOverKnob) out.Notify(MWN_LEAVE);
  return out;
}

Effects SlideHoverTimer(SlideWidget& s, bool pointerOverThis, bool pointerOverKnob) {
  Effects out;
  if (!s.enabled || s.dragging || !s.hovering) return out;
  if (pointerOverThis && pointerOverKnob) return out;
  s.hovering = false;
  out.KillTimer(kHoverTimer);
  out.Notify(MWN_LEAVE);
  return out;
}

Effects SlideSetEnabled(SlideWidget& s, bool enable) {
  Effects out;
  if (s.enabled == enable) return out;
  s.enabled = enable;
  if (!enable) {
    if (s.dragging) {
      s.dragging = false;
      out.ReleaseCapture();
    } else if (s.hovering) {
      out.KillTimer(kHoverTimer);
    }
    s.hovering = false;
  }
  out.Repaint();
  return out;
}

}  // namespace qv
