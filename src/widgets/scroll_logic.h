// Decisions of the scroll widget (CMWSROLL): value rules, parts, auto-repeat and the endless drag.
#pragma once

#include "widgets/widget_effects.h"

namespace qv {

constexpr int kScrollDelayTimer = 2;   // the wait before auto-repeat
constexpr int kScrollRepeatTimer = 3;  // the auto-repeat tick
constexpr int kScrollMinimumTime = 65;
// Re-entering a held end part restarts the repeat after this wait rather than the full delay.
constexpr int kScrollReenterDelay = 120;

struct ScrollWidget {
  int minimum = 0;
  int maximum = 100;
  int value = 50;
  int step = 5;
  bool enabled = true;
  int mouseCapt = 0;  // the part pressed (1 ... 3) while the mouse is captured
  int anchorY = 0;    // screen y of the last drag step
  int hoverPart = 0;
  bool hasImage = false;
  int partSize[3] = {0, 0, 0};
  int dragThreshold = 5;
  int lastTimer = 0;  // 0 none, 1 hover poll, 2 repeat delay, 3 repeat tick
  bool repeatPhase = false;
  int delay = 400;
  int period = 150;
  int disabledFrame = 0;
  int width = 0;
  int frameHeight = 0;  // height of one whole version of the control
  bool ready = false;
};

// ---- Values ---------------------------------------------------------------------------------
void ScrollSetValue(ScrollWidget& s, int v);
void ScrollSetMaximum(ScrollWidget& s, int m);
void ScrollSetMinimum(ScrollWidget& s, int m);
void ScrollSetStep(ScrollWidget& s, int step);
// One step up or down, clamped; true when the value changed.
bool ScrollStepUp(ScrollWidget& s);
bool ScrollStepDown(ScrollWidget& s);

// ---- Picture and parts ----------------------------------------------------------------------
constexpr int ScrollVersionCount(int disabledFrame) { return 3 + disabledFrame; }
// Takes the picture's size (width, height) and recomputes the version height and readiness.
void ScrollSetPicture(ScrollWidget& s, int pictureWidth, int pictureHeight);
void ScrollSetDisabledFrame(ScrollWidget& s, int disabledFrame, int pictureWidth,
                            int pictureHeight);
// Sets part 1 ... 3; a size below 1 is ignored. Readiness is recomputed.
void ScrollSetPartSize(ScrollWidget& s, int part, int size);
void ScrollUpdateReady(ScrollWidget& s);
int ScrollPartAt(const ScrollWidget& s, int y);
int ScrollBandTop(const ScrollWidget& s, int part);

// Where one band is copied from: the version of the part's block for its present look.
struct ScrollBand {
  int top = 0;      // in the window
  int height = 0;
  int sourceY = 0;  // in the picture
};
int ScrollPartLook(const ScrollWidget& s, int part);  // 0 normal, 1 hover, 2 pressed
ScrollBand ScrollBandSource(const ScrollWidget& s, int part);

bool ScrollDelayValid(int delay);
bool ScrollPeriodValid(int period);

// ---- Mouse and timers -----------------------------------------------------------------------
bool ScrollTakesMouse(const ScrollWidget& s);
Effects ScrollButtonDown(ScrollWidget& s, int clientY, int screenY);
Effects ScrollMouseMove(ScrollWidget& s, int clientX, int clientY);
// The drag of part 2: screenY of the cursor, desktopHeight the height of the desktop's client.
Effects ScrollDragMove(ScrollWidget& s, int screenY, int desktopHeight);
// overOtherWindow: the window under the cursor is not this one; clientY is where it is.
Effects ScrollButtonUp(ScrollWidget& s, bool overOtherWindow, int clientY);
Effects ScrollTimer(ScrollWidget& s, int timerId, bool overOtherWindow);
Effects ScrollSetEnabled(ScrollWidget& s, bool enable);

}  // namespace qv
