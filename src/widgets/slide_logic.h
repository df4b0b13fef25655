// Decisions of the slide widget (CMWSLIDE): value rules, track layout, knob placement and drag.
#pragma once

#include <cstdint>

#include "widgets/widget_effects.h"

namespace qv {

struct SlidePoint {
  int x = 0;
  int y = 0;
  bool operator==(const SlidePoint&) const = default;
};

struct SlideWidget {
  bool laidOut = false;
  int minimum = 0;
  int maximum = 100;
  int value = 50;
  int step = 5;
  bool hovering = false;
  bool enabled = true;
  int frame = 0;
  bool dragging = false;
  SlidePoint windowOrigin;   // in the parent
  int windowWidth = 0;
  int windowHeight = 0;
  SlidePoint start;          // the track's start, in the parent
  SlidePoint vector;         // from the start to the end point
  SlidePoint knobOrigin;     // start - window origin
  SlidePoint knobPosition;   // where the knob frame is drawn, in the window
  SlidePoint halfKnob;
  int knobWidth = 0;         // one frame of the knob strip
  int knobHeight = 0;
  float squaredLength = 0;
  SlidePoint grab;           // pointer - knob position at the press
};

// ---- Values ---------------------------------------------------------------------------------
void SlideSetMaximum(SlideWidget& s, int v);
void SlideSetMinimum(SlideWidget& s, int v);
void SlideSetStep(SlideWidget& s, int v);
// Ignored while dragging (false); snapped toward zero to a multiple of the step, then clamped.
bool SlideSetValue(SlideWidget& s, int v);
// The value a drag gives at fraction t of the track.
int SlideDragValue(const SlideWidget& s, double t);

// ---- Track ----------------------------------------------------------------------------------
// Points travel in one 32-bit value: x in the low word, y in the high word, both signed.
std::uint32_t PackSlidePoint(SlidePoint p);
SlidePoint UnpackSlidePoint(std::uint32_t packed);
SlidePoint SlideEndPoint(const SlideWidget& s);
void SlideSetStart(SlideWidget& s, SlidePoint p);  // the end point stays where it was
void SlideSetEnd(SlideWidget& s, SlidePoint p);

// Lays the widget out: with a background, a knob strip and a track of some length, the window
// covers the track plus half a knob on every side; otherwise it becomes a 50 x 50 square at the
// start point. The window must then be moved to windowOrigin, windowWidth x windowHeight.
Effects SlideLayout(SlideWidget& s, bool hasBackground, bool hasKnob, int knobWidth,
                    int knobHeight);
// Places the knob for the present value: the minimum at the track's start, the maximum at its end.
void SlidePlaceKnob(SlideWidget& s);

bool SlideFrameValid(int frame, int frameCount);
bool SlideRowsValid(int rows);
bool SlideColumnsValid(int columns);

// ---- Mouse ----------------------------------------------------------------------------------
bool SlideTakesMouse(const SlideWidget& s);
bool SlideOverKnob(const SlideWidget& s, int x, int y);
Effects SlideButtonDown(SlideWidget& s, int x, int y);
// During a drag: true in changed when the value moved (the knob must then be redrawn).
Effects SlideDragTo(SlideWidget& s, int x, int y, bool& changed);
Effects SlideHoverMove(SlideWidget& s, int x, int y);
Effects SlideButtonUp(SlideWidget& s, bool pointerOverKnob);
Effects SlideHoverTimer(SlideWidget& s, bool pointerOverThis, bool pointerOverKnob);
Effects SlideSetEnabled(SlideWidget& s, bool enable);

}  // namespace qv
