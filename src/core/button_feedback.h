// The shared hover/open/close animation of the animated buttons, as a portable state machine.
#pragma once

namespace qv {

// The button's state, kept in its user value.
constexpr int kFeedbackOpening = 0;
constexpr int kFeedbackClosing = 1;
constexpr int kFeedbackOpen = 2;
constexpr int kFeedbackHover = 3;

// Frames of an animated button's strip: 0 closed ... 8 fully open, 9 the hover picture.
constexpr int kFeedbackOpenFrame = 8;
constexpr int kFeedbackHoverFrame = 9;

// The events are the widget's notification codes, read in the order the animated buttons send
// them: a press shows the hover picture, a release falls back, entering opens the button with an
// animation and leaving closes it again; a click sounds and each frame tick steps the animation.
constexpr int kFeedbackPress = 0;
constexpr int kFeedbackRelease = 1;
constexpr int kFeedbackEnter = 2;
constexpr int kFeedbackLeave = 3;
constexpr int kFeedbackClick = 4;
constexpr int kFeedbackTick = 5;

// What the button looks like and does now, as read from the widget.
struct FeedbackButton {
  int state = kFeedbackOpening;
  int frame = 0;
  bool latched = false;  // the pointer is still over the button
};

enum class FeedbackTimer { Keep, On, Off };
enum class FeedbackSound { None, Press, Click };

struct FeedbackStep {
  FeedbackButton after;
  FeedbackTimer timer = FeedbackTimer::Keep;
  FeedbackSound sound = FeedbackSound::None;
  bool frameChanged = false;
  bool stateChanged = false;
};

// One event. A broken invariant ("no debe ser", "no debe llegar aqui") is reported and leaves
// the button as it was.
FeedbackStep ButtonFeedbackStep(const FeedbackButton& before, int event);

}  // namespace qv
