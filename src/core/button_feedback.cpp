// The animated buttons' feedback: hover picture on press, open animation on entering.
#include "core/button_feedback.h"

#include "system/assert.h"

namespace qv {
namespace {

void SetFrame(FeedbackStep& s, int frame) {
  s.frameChanged = s.frameChanged || s.after.frame != frame;
  s.after.frame = frame;
}

void SetState(FeedbackStep& s, int state) {
  s.stateChanged = s.stateChanged || s.after.state != state;
  s.after.state = state;
}

void OnRelease(FeedbackStep& s) {
  s.timer = FeedbackTimer::Off;
  if (s.after.latched) {
    SetState(s, kFeedbackOpen);
    SetFrame(s, kFeedbackOpenFrame);
  } else {
    SetState(s, kFeedbackOpening);
    SetFrame(s, 0);
  }
}

void OnEnter(FeedbackStep& s) {
  if (s.after.state == kFeedbackHover) {
    SetFrame(s, kFeedbackHoverFrame);
  } else if (s.after.frame >= kFeedbackOpenFrame) {
    if (!QV_CHECK(s.after.frame != kFeedbackHoverFrame, "no debe ser")) return;
    s.timer = FeedbackTimer::Off;
    SetState(s, kFeedbackOpen);
  } else {
    if (!QV_CHECK(s.after.state != kFeedbackOpen, "no debe ser")) return;
    s.timer = FeedbackTimer::On;
    SetState(s, kFeedbackOpening);
    s.sound = FeedbackSound::Press;
  }
}

void OnLeave(FeedbackStep& s) {
  if (!QV_CHECK(s.after.state != kFeedbackClosing, "no debe ser")) return;
  switch (s.after.state) {
    case kFeedbackOpening:
      SetState(s, kFeedbackClosing);
      break;
    case kFeedbackOpen:
      s.timer = FeedbackTimer::On;
      SetState(s, kFeedbackClosing);
      break;
    case kFeedbackHover:
      SetFrame(s, kFeedbackOpenFrame);
      break;
    default:
      break;
  }
}

void OnTick(FeedbackStep& s) {
  switch (s.after.state) {
    case kFeedbackOpening:
      if (s.after.frame >= kFeedbackOpenFrame) {
        s.timer = FeedbackTimer::Off;
        SetState(s, kFeedbackOpen);
      } else {
        SetFrame(s, s.after.frame + 1);
      }
      break;
    case kFeedbackClosing:
      if (s.after.frame < 1) {
        s.timer = FeedbackTimer::Off;
        SetState(s, kFeedbackOpening);
      } else {
        SetFrame(s, s.after.frame - 1);
      }
      break;
    default:
      QV_CHECK(false, "no debe llegar aqui");
      break;
  }
}

}  // namespace

FeedbackStep ButtonFeedbackStep(const FeedbackButton& before, int event) {
  FeedbackStep s;
  s.after = before;
  switch (event) {
    case kFeedbackPress:
      s.timer = FeedbackTimer::Off;
      SetState(s, kFeedbackHover);
      SetFrame(s, kFeedbackHoverFrame);
      break;
    case kFeedbackRelease:
      OnRelease(s);
      break;
    case kFeedbackEnter:
      OnEnter(s);
      break;
    case kFeedbackLeave:
      OnLeave(s);
      break;
    case kFeedbackClick:
      s.sound = FeedbackSound::Click;
      break;
    case kFeedbackTick:
      OnTick(s);
      break;
    default:
      break;
  }
  return s;
}

}  // namespace qv
