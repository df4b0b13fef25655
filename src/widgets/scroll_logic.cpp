// Scroll-widget decisions: the value rules with their deliberate quirks, parts, timers and drag.
#include "widgets/scroll_logic.h"

#include <cstdint>
#include <cstdlib>
#include <limits>

#include "system/assert.h"
#include "widgets/widget_messages.h"

namespace qv {

namespace {

// A sum of two 32-bit values brought back into range instead of wrapping around.
int ToInt(std::int64_t v) {
  if (v > std::numeric_limits<int>::max()) return std::numeric_limits<int>::max();
  if (v < std::numeric_limits<int>::min()) return std::numeric_limits<int>::min();
  return static_cast<int>(v);
}

// The step follows a range that shrank below it. Setting the range uses "below 1" where
// setting the step uses "more than 1": the two rules mirror each other on purpose and screens
// rely on both as they stand.
void FitStepToRange(ScrollWidget& s) {
  const std::int64_t range = std::int64_t{s.maximum} - s.minimum;
  if (s.step > range) {
    const std::int64_t half = range / 2;
    s.step = half < 1 ? static_cast<int>(half) : 1;
  }
}

}  // namespace

void ScrollSetValue(ScrollWidget& s, int v) {
  if (v > s.maximum) {
    s.value = s.maximum;
  } else if (v < s.minimum) {
    s.value = s.minimum;
  } else if (s.step >= 1) {
    // Snapped toward zero to a multiple of the step counted from 0, not from the minimum, so
    // a minimum that is not a multiple can snap below itself. Kept as it is.
    s.value = v / s.step * s.step;
  } else {
    s.value = v;
  }
}

void ScrollSetMaximum(ScrollWidget& s, int m) {
  s.maximum = m;
  if (s.minimum > m) s.minimum = m;
  FitStepToRange(s);
  if (s.value > m) s.value = m;
}

void ScrollSetMinimum(ScrollWidget& s, int m) {
  s.minimum = m;
  if (s.maximum < m) s.maximum = m;
  FitStepToRange(s);
  if (s.value < m) s.value = m;
}

void ScrollSetStep(ScrollWidget& s, int step) {
  s.step = step;
  const std::int64_t range = std::int64_t{s.maximum} - s.minimum;
  if (step > range) {
    const std::int64_t half = range / 2;
    s.step = half > 1 ? static_cast<int>(half) : 1;
  }
}

bool ScrollStepUp(ScrollWidget& s) {
  const int before = s.value;
  const std::int64_t v = std::int64_t{s.value} + s.step;
  s.value = v > s.maximum ? s.maximum : ToInt(v);
  return s.value != before;
}

bool ScrollStepDown(ScrollWidget& s) {
  const int before = s.value;
  const std::int64_t v = std::int64_t{s.value} - s.step;
  s.value = v < s.minimum ? s.minimum : ToInt(v);
  return s.value != before;
}

// ---- Picture and parts ----------------------------------------------------------------------

void ScrollSetPicture(ScrollWidget& s, int pictureWidth, int pictureHeight) {
  s.width = pictureWidth > 0 ? pictureWidth : 0;
  s.frameHeight =
      pictureHeight > 0 ? pictureHeight / ScrollVersionCount(s.disabledFrame) : 0;
  ScrollUpdateReady(s);
}

void ScrollSetDisabledFrame(ScrollWidget& s, int disabledFrame, int pictureWidth,
                            int pictureHeight) {
  s.disabledFrame = disabledFrame ? 1 : 0;
  if (s.hasImage) {
    ScrollSetPicture(s, pictureWidth, pictureHeight);
  } else {
    ScrollUpdateReady(s);
  }
}

void ScrollSetPartSize(ScrollWidget& s, int part, int size) {
  if (part < 1 || part > 3 || size < 1) return;
  s.partSize[part - 1] = size;
  ScrollUpdateReady(s);
}

void ScrollUpdateReady(ScrollWidget& s) {
  const std::int64_t sum = std::int64_t{s.partSize[0]} + s.partSize[1] + s.partSize[2];
  s.ready = s.hasImage && s.width > 0 && s.frameHeight > 0 && s.partSize[0] > 0 &&
            s.partSize[1] > 0 && s.partSize[2] > 0 && sum == s.frameHeight;
}

int ScrollPartAt(const ScrollWidget& s, int y) {
  if (y < s.partSize[0]) return 1;
  if (y >= s.partSize[0] + s.partSize[1]) return 3;
  return 2;
}

int ScrollBandTop(const ScrollWidget& s, int part) {
  int top = 0;
  for (int i = 1; i < part && i <= 3; ++i) top += s.partSize[i - 1];
  return top;
}

int ScrollPartLook(const ScrollWidget& s, int part) {
  if (!s.enabled || part != s.hoverPart) return 0;
  // During auto-repeat the held part blinks: normal on the ticks that step the value.
  if (s.lastTimer == kScrollRepeatTimer && s.repeatPhase) return 0;
  return s.mouseCapt != 0 ? 2 : 1;
}

ScrollBand ScrollBandSource(const ScrollWidget& s, int part) {
  ScrollBand band;
  if (part < 1 || part > 3) return band;
  const int versions = ScrollVersionCount(s.disabledFrame);
  band.top = ScrollBandTop(s, part);
  band.height = s.partSize[part - 1];
  // A disabled scroll shows version 0: the disabled look when the picture has one.
  const int version = s.enabled ? s.disabledFrame + ScrollPartLook(s, part) : 0;
  band.sourceY = versions * band.top + version * band.height;
  return band;
}

bool ScrollDelayValid(int delay) {
  return QV_CHECK(delay >= kScrollMinimumTime, "Tiempo para el delay demasiado bajo");
}

bool ScrollPeriodValid(int period) {
  return QV_CHECK(period >= kScrollMinimumTime, "Tiempo para el periodo demasiado bajo");
}

// ---- Mouse and timers -----------------------------------------------------------------------

bool ScrollTakesMouse(const ScrollWidget& s) { return s.enabled && s.ready; }

Effects ScrollButtonDown(ScrollWidget& s, int clientY, int screenY) {
  Effects out;
  const int part = ScrollPartAt(s, clientY);
  s.anchorY = screenY;
  s.hoverPart = s.mouseCapt = part;
  out.Repaint(part);
  out.Capture();
  if (s.lastTimer == kHoverTimer) out.KillTimer(kHoverTimer);
  if (part == 2) {
    s.lastTimer = 0;
  } else {
    s.lastTimer = kScrollDelayTimer;
    out.StartTimer(kScrollDelayTimer, s.delay);
  }
  out.Notify(MWN_PRESSED);
  out.Notify(scroll::PressPartCode(part));
  return out;
}

namespace {

Effects MoveWithoutCapture(ScrollWidget& s, int clientY) {
  Effects out;
  const int part = ScrollPartAt(s, clientY);
  const int old = s.hoverPart;
  if (part == old) return out;
  if (old != 0) out.Repaint(old);
  out.Repaint(part);
  s.hoverPart = part;
  if (old != 0) {
    out.Notify(scroll::LeavePartCode(old));
  } else {
    QV_CHECK(s.lastTimer == 0, "Timer habilitado con otro valor");
    s.lastTimer = kHoverTimer;
    out.StartTimer(kHoverTimer, kHoverPollMs);
    out.Notify(MWN_ENTER);
  }
  out.Notify(scroll::EnterPartCode(part));
  return out;
}

Effects MoveHoldingEndPart(ScrollWidget& s, int clientX, int clientY) {
  Effects out;
  const int part = s.mouseCapt;
  const int top = ScrollBandTop(s, part);
  const bool inside = clientX >= 0 && clientX < s.width && clientY >= top &&
                      clientY < top + s.partSize[part - 1];
  if (inside && s.hoverPart == 0) {
    s.hoverPart = part;
    QV_CHECK(s.lastTimer != kHoverTimer, "el valor de data->TimerEnabled es invalido");
    s.lastTimer = kScrollDelayTimer;
    out.StartTimer(kScrollDelayTimer, kScrollReenterDelay);
    out.Repaint(part);
    out.Notify(scroll::EnterPartCode(part));
    out.Notify(MWN_ENTER);
  } else if (!inside && s.hoverPart == part) {
    s.hoverPart = 0;
    if (QV_CHECK(s.lastTimer == kScrollDelayTimer || s.lastTimer == kScrollRepeatTimer,
                 "valor de data->TimerEnabled invalido")) {
      out.KillTimer(s.lastTimer);
    }
    s.lastTimer = 0;
    out.Repaint(part);
    out.Notify(scroll::LeavePartCode(part));
    out.Notify(MWN_LEAVE);
  }
  return out;
}

}  // namespace

Effects ScrollMouseMove(ScrollWidget& s, int clientX, int clientY) {
  if (s.mouseCapt == 0) return MoveWithoutCapture(s, clientY);
  if (s.mouseCapt == 1 || s.mouseCapt == 3) return MoveHoldingEndPart(s, clientX, clientY);
  return Effects{};  // part 2 is dragged by ScrollDragMove, which needs screen coordinates
}

Effects ScrollDragMove(ScrollWidget& s, int screenY, int desktopHeight) {
  Effects out;
  if (!QV_CHECK(s.step >= 1, "este valor es invalido")) return out;
  int y = screenY;
  const int d = std::abs(y - s.anchorY);
  // At a screen edge the pointer jumps to the other edge and the anchor moves with it, so the
  // distance already travelled is kept and the drag never runs out of room.
  if (y == 0) {
    y = desktopHeight - 2;
    s.anchorY = y + d;
    out.MoveCursorY(y);
  } else if (y == desktopHeight - 1) {
    y = 1;
    s.anchorY = 1 - d;
    out.MoveCursorY(y);
  }
  if (d > s.dragThreshold) {
    const bool changed = y > s.anchorY ? ScrollStepDown(s) : ScrollStepUp(s);
    s.anchorY = y;
    if (changed) out.Notify(MWN_CLICKED);
  }
  return out;
}

Effects ScrollButtonUp(ScrollWidget& s, bool overOtherWindow, int clientY) {
  Effects out;
  if (s.mouseCapt == 0) return out;
  const int lastTimer = s.lastTimer;
  const int before = s.value;
  out.Repaint(s.mouseCapt);
  int released = 0;
  bool leftAfterDrag = false;
  if (overOtherWindow) {
    released = s.mouseCapt;
    s.hoverPart = 0;
    // A repeat timer still running is left to fire; its ticks no longer match lastTimer.
    s.lastTimer = 0;
    leftAfterDrag = s.mouseCapt == 2;
  } else {
    s.hoverPart = released = ScrollPartAt(s, clientY);
    out.StartTimer(kHoverTimer, kHoverPollMs);
    s.lastTimer = kHoverTimer;
  }
  // Released before the delay ran out, on the part pressed: a single click steps once.
  if (lastTimer == kScrollDelayTimer && s.hoverPart == s.mouseCapt) {
    if (s.mouseCapt == 1) {
      ScrollStepUp(s);
    } else if (QV_CHECK(s.mouseCapt == 3,
                        "LastTimer == 2 y data->MouseCapt != 3 aqui significa un error en "
                        "mousedown")) {
      ScrollStepDown(s);
    }
  }
  s.mouseCapt = 0;
  out.ReleaseCapture();
  if (s.value != before) out.Notify(MWN_CLICKED);
  if (released != 0) out.Notify(scroll::ReleasePartCode(released));
  out.Notify(MWN_RELEASED);
  if (leftAfterDrag) {
    out.Notify(scroll::LeavePartCode(2));
    out.Notify(MWN_LEAVE);
  }
  return out;
}

namespace {

Effects HoverTick(ScrollWidget& s, bool overOtherWindow) {
  Effects out;
  if (s.mouseCapt != 0 || !overOtherWindow) return out;
  const int old = s.hoverPart;
  if (old != 0) out.Repaint(old);
  s.hoverPart = 0;
  QV_CHECK(s.lastTimer == kHoverTimer, "valor de data->TimerEnabled invalido");
  s.lastTimer = 0;
  out.KillTimer(kHoverTimer);
  if (old != 0) out.Notify(scroll::LeavePartCode(old));
  out.Notify(MWN_LEAVE);
  return out;
}

Effects DelayTick(ScrollWidget& s) {
  Effects out;
  if (!QV_CHECK(s.mouseCapt != 2,
                "aqui data->MouseCapt no puede llegar con un valor de dos, por que es para el "
                "boton del medio")) {
    return out;
  }
  if (!QV_CHECK(s.mouseCapt != 0, "data->MouseCapt = 0 aqui es un error")) return out;
  s.lastTimer = kScrollRepeatTimer;
  s.repeatPhase = true;
  out.KillTimer(kScrollDelayTimer);
  out.StartTimer(kScrollRepeatTimer, s.period);
  return out;
}

// The value moves on every second tick, starting with the first: with the default times the
// first step comes 550 ms after the press and then one every 300 ms.
Effects RepeatTick(ScrollWidget& s) {
  Effects out;
  if (s.mouseCapt == 0) return out;
  if (s.repeatPhase) {
    s.repeatPhase = false;
    const bool changed = s.mouseCapt == 1 ? ScrollStepUp(s) : ScrollStepDown(s);
    if (changed) out.Notify(MWN_CLICKED);
  } else {
    s.repeatPhase = true;
  }
  out.Repaint(s.mouseCapt);
  return out;
}

}  // namespace

Effects ScrollTimer(ScrollWidget& s, int timerId, bool overOtherWindow) {
  if (!s.enabled || timerId != s.lastTimer) return Effects{};
  switch (timerId) {
    case kHoverTimer:
      return HoverTick(s, overOtherWindow);
    case kScrollDelayTimer:
      return DelayTick(s);
    case kScrollRepeatTimer:
      return RepeatTick(s);
    default:
      return Effects{};
  }
}

Effects ScrollSetEnabled(ScrollWidget& s, bool enable) {
  Effects out;
  s.enabled = enable;
  if (enable) {
    out.Repaint();
    return out;
  }
  if (s.lastTimer != 0) {
    // The field is cleared before it names the timer to kill, so the running timer is not
    // stopped; its later ticks are ignored because they no longer match. Kept as it is.
    s.lastTimer = 0;
    out.KillTimer(s.lastTimer);
  }
  s.hoverPart = 0;
  if (s.mouseCapt != 0) {
    s.mouseCapt = 0;
    out.ReleaseCapture();
  }
  out.Repaint();
  return out;
}

}  // namespace qv
