// Push-button and check-button decisions: each mouse event changes the record and lists effects.
#include "widgets/button_logic.h"

#include "widgets/widget_messages.h"

namespace qv {

// ---- Push button ---------------------------------------------------------------------------

void PushSetStrip(PushButton& b, int stripWidth, int stripHeight) {
  b.frameWidth = stripWidth > 0 ? stripWidth : 0;
  b.frameHeight = StripFrameHeight(stripHeight, PushFrameCount(b.disabledFrame));
}

int PushShownFrame(const PushButton& b) { return b.enabled ? b.state + b.disabledFrame : 0; }

bool PushTakesMouse(const PushButton& b) {
  return b.enabled && b.hasImage && b.frameWidth > 0 && b.frameHeight > 0;
}

Effects PushMouseMove(PushButton& b, bool pointerOverThis) {
  Effects out;
  if (!b.captured) {
    if (b.state == kPushNormal) {
      b.state = kPushHover;
      out.Repaint();
      out.StartTimer(kHoverTimer, kHoverPollMs);
      out.PlaySound(kHoverSound);
      out.Notify(MWN_ENTER);
    }
    return out;
  }
  if (!pointerOverThis && b.state == kPushPressed) {
    // Away from the button while held, it is drawn raised, not pressed.
    b.state = kPushHover;
    out.Repaint();
    out.Notify(MWN_LEAVE);
  } else if (pointerOverThis && b.state == kPushHover) {
    b.state = kPushPressed;
    out.Repaint();
    out.PlaySound(kHoverSound);
    out.Notify(MWN_ENTER);
  }
  return out;
}

Effects PushButtonDown(PushButton& b) {
  Effects out;
  b.captured = true;
  b.state = kPushPressed;
  out.Capture();
  out.Repaint();
  out.KillTimer(kHoverTimer);
  out.Notify(MWN_PRESSED);
  return out;
}

Effects PushButtonUp(PushButton& b, bool pointerOverThis) {
  Effects out;
  if (!b.captured) return out;
  b.captured = false;
  if (pointerOverThis) {
    b.state = kPushHover;
    out.StartTimer(kHoverTimer, kHoverPollMs);
  } else {
    b.state = kPushNormal;
  }
  out.ReleaseCapture();
  out.Repaint();
  out.Notify(MWN_RELEASED);
  if (pointerOverThis) {
    out.PlaySound(kClickSound);
    out.Notify(MWN_CLICKED);
  }
  return out;
}

Effects PushHoverTimer(PushButton& b, bool pointerOverThis) {
  Effects out;
  // A tick already queued when the timer stopped finds the button normal and is ignored.
  if (!b.enabled || b.captured || pointerOverThis || b.state != kPushHover) return out;
  out.KillTimer(kHoverTimer);
  b.state = kPushNormal;
  out.Repaint();
  out.Notify(MWN_LEAVE);
  return out;
}

Effects PushSetEnabled(PushButton& b, bool enable) {
  Effects out;
  if (b.enabled == enable) return out;
  b.enabled = enable;
  if (!enable) {
    if (b.captured) {
      b.captured = false;
      out.ReleaseCapture();
    } else if (b.state == kPushHover) {
      out.KillTimer(kHoverTimer);
    }
    b.state = kPushNormal;
  }
  out.Repaint();
  return out;
}

// ---- Check button --------------------------------------------------------------------------

void CheckSetStrip(CheckButton& b, int stripWidth, int stripHeight) {
  b.frameWidth = stripWidth > 0 ? stripWidth : 0;
  b.frameHeight = StripFrameHeight(stripHeight, CheckFrameCount(b.disabledFrame));
}

int CheckShownFrame(const CheckButton& b) { return b.enabled ? b.state + b.disabledFrame : 0; }

bool CheckTakesMouse(const CheckButton& b) {
  return b.enabled && b.hasImage && b.frameWidth > 0 && b.frameHeight > 0;
}

namespace {

bool ApplyLook(CheckButton& b, int newState, bool force, Effects& out) {
  if (newState == b.state && !force) return false;
  b.state = newState;
  out.Repaint();
  return true;
}

}  // namespace

bool CheckPlainLook(CheckButton& b, bool p, bool force, Effects& out) {
  return ApplyLook(b, b.checked != p ? kChecked : kUnchecked, force, out);
}

bool CheckHoverLook(CheckButton& b, bool p, bool force, Effects& out) {
  return ApplyLook(b, b.checked != p ? kCheckedHover : kUncheckedHover, force, out);
}

Effects CheckMouseMove(CheckButton& b, bool pointerOverThis) {
  Effects out;
  if (!b.captured) {
    const bool changed = CheckHoverLook(b, false, false, out);
    out.StartTimer(kHoverTimer, kHoverPollMs);
    if (changed) {
      out.PlaySound(kHoverSound);
      out.Notify(MWN_ENTER);
    }
    return out;
  }
  // While held, the button previews the toggled state over it and the current one away.
  if (CheckPlainLook(b, pointerOverThis, false, out)) {
    if (pointerOverThis) {
      out.PlaySound(kHoverSound);
      out.Notify(MWN_ENTER);
    } else {
      out.Notify(MWN_LEAVE);
    }
  }
  return out;
}

Effects CheckButtonDown(CheckButton& b) {
  Effects out;
  b.captured = true;
  out.Capture();
  CheckPlainLook(b, true, false, out);
  out.KillTimer(kHoverTimer);
  out.Notify(MWN_PRESSED);
  return out;
}

Effects CheckButtonUp(CheckButton& b, bool pointerOverThis) {
  Effects out;
  if (!b.captured) return out;
  b.captured = false;
  bool toggled = false;
  if (pointerOverThis) {
    out.StartTimer(kHoverTimer, kHoverPollMs);
    // A checked radio button stays checked: clicking it again is no action.
    if (!(b.radio && b.checked)) {
      b.checked = !b.checked;
      toggled = true;
    }
    CheckHoverLook(b, false, true, out);
  } else {
    CheckPlainLook(b, false, true, out);
  }
  out.ReleaseCapture();
  out.Notify(MWN_RELEASED);
  if (toggled) {
    out.PlaySound(kClickSound);
    out.Notify(MWN_CLICKED);
  }
  return out;
}

Effects CheckHoverTimer(CheckButton& b, bool pointerOverThis) {
  Effects out;
  const bool hovering = b.state == kUncheckedHover || b.state == kCheckedHover;
  if (!b.enabled || b.captured || pointerOverThis || !hovering) return out;
  out.KillTimer(kHoverTimer);
  CheckPlainLook(b, false, false, out);
  out.Notify(MWN_LEAVE);
  return out;
}

Effects CheckSetEnabled(CheckButton& b, bool enable) {
  Effects out;
  if (b.enabled == enable) return out;
  b.enabled = enable;
  if (enable) {
    CheckPlainLook(b, false, true, out);
    return out;
  }
  if (b.captured) {
    b.captured = false;
    out.ReleaseCapture();
  } else if (b.state == kUncheckedHover || b.state == kCheckedHover) {
    out.KillTimer(kHoverTimer);
  }
  b.state = kUnchecked;
  out.Repaint();
  return out;
}

Effects CheckSetChecked(CheckButton& b, bool check) {
  Effects out;
  if (b.checked == check) return out;
  b.checked = check;
  b.state = check ? kChecked : kUnchecked;
  if (b.captured) {
    b.captured = false;
    out.ReleaseCapture();
  }
  out.Repaint();
  if (!check && b.radio && b.enabled) out.Notify(MWN_CHANGED);
  return out;
}

}  // namespace qv
