// Animated-image decisions: when the widget may draw, which values it accepts, how it reacts.
#include "widgets/anim_logic.h"

#include "system/assert.h"
#include "widgets/widget_messages.h"

namespace qv {

bool AnimIsReady(bool transparent, const AnimLayoutInput& in) {
  if (!in.hasStrip || in.frameWidth < 1 || in.frameHeight < 1 || in.frameCount < 1) return false;
  if (!transparent) return true;
  return in.stripIndexed && in.hasBackground && in.backgroundWidth >= in.frameWidth &&
         in.backgroundHeight >= in.frameHeight;
}

Effects AnimUpdateLayout(AnimWidget& a, const AnimLayoutInput& in) {
  Effects out;
  a.ready = AnimIsReady(a.transparent, in);
  if (a.frame >= in.frameCount) a.frame = 0;
  if (a.ready) {
    a.width = in.frameWidth;
    a.height = in.frameHeight;
  } else {
    if (a.captured) {
      a.captured = false;
      out.ReleaseCapture();
    } else if (a.hover) {
      out.KillTimer(kHoverTimer);
    }
    a.hover = false;
  }
  a.running = false;
  out.KillTimer(kAnimFrameTimer);
  out.Repaint();
  return out;
}

bool AnimFrameValid(int frame, int frameCount) {
  return QV_CHECK(frame >= 0 && frame < frameCount,
                  "Numero de Cuadro enviado al Animation es invalido");
}

bool AnimIntervalValid(int interval) {
  return QV_CHECK(interval >= kAnimMinimumInterval,
                  "tiempo para el intervalo del timer demasiado bajo");
}

bool AnimRowsValid(int rows) { return QV_CHECK(rows >= 1, "numero de filas invalido"); }

bool AnimColumnsValid(int columns) {
  return QV_CHECK(columns >= 1, "numero de columnas invalido");
}

bool AnimTakesMouse(const AnimWidget& a) { return a.enabled && a.ready; }

Effects AnimMouseMove(AnimWidget& a, int x, int y) {
  Effects out;
  if (!a.captured) {
    if (!a.hover) {
      a.hover = true;
      out.StartTimer(kHoverTimer, kHoverPollMs);
      out.Notify(MWN_ENTER);
    }
    return out;
  }
  const bool inside = x >= 0 && x <= a.width && y >= 0 && y <= a.height;
  if (inside && !a.hover) {
    a.hover = true;
    out.Notify(MWN_ENTER);
  } else if (!inside && a.hover) {
    a.hover = false;
    out.Notify(MWN_LEAVE);
  }
  return out;
}

Effects AnimButtonDown(AnimWidget& a) {
  Effects out;
  out.KillTimer(kHoverTimer);
  a.captured = true;
  out.Capture();
  out.Notify(MWN_PRESSED);
  return out;
}

Effects AnimButtonUp(AnimWidget& a, bool pointerOverThis) {
  Effects out;
  const bool click = pointerOverThis && a.captured;
  if (click) out.StartTimer(kHoverTimer, kHoverPollMs);
  a.captured = false;
  out.ReleaseCapture();
  out.Notify(MWN_RELEASED);
  if (click) out.Notify(MWN_CLICKED);
  return out;
}

Effects AnimHoverTimer(AnimWidget& a, bool pointerOverThis) {
  Effects out;
  if (!a.enabled || a.captured || pointerOverThis || !a.hover) return out;
  a.hover = false;
  out.KillTimer(kHoverTimer);
  out.Notify(MWN_LEAVE);
  return out;
}

Effects AnimFrameTimer(const AnimWidget& a) {
  Effects out;
  // The widget never steps by itself: the parent answers the tick with the next frame.
  if (a.running) out.Notify(MWN_CHANGED);
  return out;
}

Effects AnimSetEnabled(AnimWidget& a, bool enable) {
  Effects out;
  if (a.enabled == enable) return out;
  a.enabled = enable;
  if (!enable) {
    if (a.captured) {
      a.captured = false;
      out.ReleaseCapture();
    } else if (a.hover) {
      out.KillTimer(kHoverTimer);
    }
    a.hover = false;
  }
  return out;
}

Effects AnimSetRunning(AnimWidget& a, bool run) {
  Effects out;
  if (!a.ready || a.running == run) return out;
  a.running = run;
  if (run) {
    out.StartTimer(kAnimFrameTimer, a.interval);
  } else {
    out.KillTimer(kAnimFrameTimer);
  }
  return out;
}

}  // namespace qv
