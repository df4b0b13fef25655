// Decisions of the push buttons and of the check/radio button: frames, states and mouse handling.
#pragma once

#include "widgets/widget_effects.h"

namespace qv {

// Height of one frame of a vertical strip: integer division, the rows left over are unused.
constexpr int StripFrameHeight(int stripHeight, int frameCount) {
  return frameCount > 0 && stripHeight > 0 ? stripHeight / frameCount : 0;
}

// ---- Push button (CMWCOMMAND, CMWBOXSCOMMAND) -----------------------------------------------

enum PushState { kPushNormal = 0, kPushHover = 1, kPushPressed = 2 };

struct PushButton {
  int disabledFrame = 0;  // 1 when the strip starts with a disabled frame
  bool enabled = true;
  bool hasImage = false;
  int frameWidth = 0;
  int frameHeight = 0;
  int state = kPushNormal;
  bool captured = false;
};

constexpr int PushFrameCount(int disabledFrame) { return 3 + disabledFrame; }

// Takes a new strip size (or the same strip under a new disabled-frame flag).
void PushSetStrip(PushButton& b, int stripWidth, int stripHeight);
// The frame to show: the state's frame when enabled, frame 0 when disabled.
int PushShownFrame(const PushButton& b);
// Mouse input counts only when enabled and a whole frame can be shown.
bool PushTakesMouse(const PushButton& b);

Effects PushMouseMove(PushButton& b, bool pointerOverThis);
Effects PushButtonDown(PushButton& b);
Effects PushButtonUp(PushButton& b, bool pointerOverThis);
Effects PushHoverTimer(PushButton& b, bool pointerOverThis);
Effects PushSetEnabled(PushButton& b, bool enable);

// ---- Check and radio button (CMWCHECK) ------------------------------------------------------

enum CheckState {
  kUnchecked = 0,
  kUncheckedHover = 1,
  kChecked = 2,
  kCheckedHover = 3,
};

struct CheckButton {
  int disabledFrame = 0;
  bool enabled = true;
  bool hasImage = false;
  int frameWidth = 0;
  int frameHeight = 0;
  int state = kUnchecked;
  bool captured = false;
  bool checked = false;
  bool radio = false;
};

constexpr int CheckFrameCount(int disabledFrame) { return 4 + disabledFrame; }

void CheckSetStrip(CheckButton& b, int stripWidth, int stripHeight);
int CheckShownFrame(const CheckButton& b);
bool CheckTakesMouse(const CheckButton& b);

// The two look rules. With p = 1 the look previews the toggled state. Each repaints and
// answers true when the state changed, or always when forced.
bool CheckPlainLook(CheckButton& b, bool p, bool force, Effects& out);
bool CheckHoverLook(CheckButton& b, bool p, bool force, Effects& out);

Effects CheckMouseMove(CheckButton& b, bool pointerOverThis);
Effects CheckButtonDown(CheckButton& b);
Effects CheckButtonUp(CheckButton& b, bool pointerOverThis);
Effects CheckHoverTimer(CheckButton& b, bool pointerOverThis);
Effects CheckSetEnabled(CheckButton& b, bool enable);
Effects CheckSetChecked(CheckButton& b, bool check);

}  // namespace qv
