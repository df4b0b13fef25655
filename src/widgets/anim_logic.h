// Decisions of the animated-image widget (CMWANIM): readiness, frame and interval rules, mouse.
#pragma once

#include "widgets/widget_effects.h"

namespace qv {

constexpr int kAnimFrameTimer = 2;
constexpr int kAnimDefaultInterval = 75;
constexpr int kAnimMinimumInterval = 45;

struct AnimWidget {
  int userValue = 0;
  bool enabled = true;
  bool hover = false;
  bool captured = false;
  int interval = kAnimDefaultInterval;
  bool running = false;
  int frame = 0;
  bool transparent = false;
  bool ready = false;
  int width = 0;   // the widget's size, one frame
  int height = 0;
};

// What the layout rule looks at, gathered by the window from its strip and background.
struct AnimLayoutInput {
  bool hasStrip = false;
  bool stripIndexed = false;  // 8 bits with a colour table: needed to compose over a background
  int frameWidth = 0;
  int frameHeight = 0;
  int frameCount = 0;  // rows x columns
  bool hasBackground = false;
  int backgroundWidth = 0;
  int backgroundHeight = 0;
};

// Whether the widget can draw: a strip with frames of some size; when transparent, also an
// indexed strip and a background at least as large as one frame.
bool AnimIsReady(bool transparent, const AnimLayoutInput& in);

// The layout step after every change of strip, background, transparency or grid: readiness,
// the size, and in every case the animation stops and the window is invalidated. A frame
// beyond the new grid falls back to frame 0, so a shown frame always exists.
Effects AnimUpdateLayout(AnimWidget& a, const AnimLayoutInput& in);

// Message checks; each reports its message and answers false.
bool AnimFrameValid(int frame, int frameCount);
bool AnimIntervalValid(int interval);
bool AnimRowsValid(int rows);
bool AnimColumnsValid(int columns);

bool AnimTakesMouse(const AnimWidget& a);
// x and y are the client point of the message; the rectangle test counts its edges as inside.
Effects AnimMouseMove(AnimWidget& a, int x, int y);
Effects AnimButtonDown(AnimWidget& a);
Effects AnimButtonUp(AnimWidget& a, bool pointerOverThis);
Effects AnimHoverTimer(AnimWidget& a, bool pointerOverThis);
Effects AnimFrameTimer(const AnimWidget& a);
Effects AnimSetEnabled(AnimWidget& a, bool enable);
Effects AnimSetRunning(AnimWidget& a, bool run);

}  // namespace qv
