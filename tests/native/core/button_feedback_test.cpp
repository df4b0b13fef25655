// The animated buttons' feedback: press and release, the opening and closing animation.
#include <gtest/gtest.h>

#include "core/button_feedback.h"
#include "support/assert_recorder.h"

namespace qv {
namespace {

FeedbackButton Button(int state, int frame, bool latched = false) {
  FeedbackButton b;
  b.state = state;
  b.frame = frame;
  b.latched = latched;
  return b;
}

// Runs ticks until the timer stops; returns the button and the number of ticks.
int TickUntilStopped(FeedbackButton& b) {
  int ticks = 0;
  for (; ticks < 20; ++ticks) {
    const FeedbackStep s = ButtonFeedbackStep(b, kFeedbackTick);
    b = s.after;
    if (s.timer == FeedbackTimer::Off) return ticks + 1;
  }
  return ticks;
}

TEST(ButtonFeedback, PressShowsTheHoverPictureAndReleaseFallsBack) {
  FeedbackStep s = ButtonFeedbackStep(Button(kFeedbackOpening, 0), kFeedbackPress);
  EXPECT_EQ(s.after.state, kFeedbackHover);
  EXPECT_EQ(s.after.frame, 9);
  EXPECT_EQ(s.timer, FeedbackTimer::Off);
  s = ButtonFeedbackStep(s.after, kFeedbackRelease);
  EXPECT_EQ(s.after.state, kFeedbackOpening);
  EXPECT_EQ(s.after.frame, 0);
  // Still under the pointer: the button stays fully open.
  s = ButtonFeedbackStep(Button(kFeedbackHover, 9, true), kFeedbackRelease);
  EXPECT_EQ(s.after.state, kFeedbackOpen);
  EXPECT_EQ(s.after.frame, 8);
}

TEST(ButtonFeedback, EnteringOpensFrameByFrameAndLeavingClosesAgain) {
  FeedbackStep s = ButtonFeedbackStep(Button(kFeedbackOpening, 0), kFeedbackEnter);
  EXPECT_EQ(s.timer, FeedbackTimer::On);
  EXPECT_EQ(s.sound, FeedbackSound::Press);
  FeedbackButton b = s.after;
  EXPECT_EQ(TickUntilStopped(b), 9);  // eight frames, then the tick that stops the timer
  EXPECT_EQ(b.frame, 8);
  EXPECT_EQ(b.state, kFeedbackOpen);

  s = ButtonFeedbackStep(b, kFeedbackLeave);
  EXPECT_EQ(s.timer, FeedbackTimer::On);
  EXPECT_EQ(s.after.state, kFeedbackClosing);
  b = s.after;
  EXPECT_EQ(TickUntilStopped(b), 9);
  EXPECT_EQ(b.frame, 0);
  EXPECT_EQ(b.state, kFeedbackOpening);
}

TEST(ButtonFeedback, LeavingHalfwayTurnsTheAnimationRound) {
  FeedbackStep s = ButtonFeedbackStep(Button(kFeedbackOpening, 4), kFeedbackLeave);
  EXPECT_EQ(s.after.state, kFeedbackClosing);
  EXPECT_EQ(s.timer, FeedbackTimer::Keep);  // the running timer now closes it
  s = ButtonFeedbackStep(s.after, kFeedbackTick);
  EXPECT_EQ(s.after.frame, 3);
  // Leaving while pressed only shows the open frame.
  s = ButtonFeedbackStep(Button(kFeedbackHover, 9), kFeedbackLeave);
  EXPECT_EQ(s.after.state, kFeedbackHover);
  EXPECT_EQ(s.after.frame, 8);
  EXPECT_EQ(s.timer, FeedbackTimer::Keep);
}

TEST(ButtonFeedback, ClickSoundsAndBrokenStatesAreReported) {
  EXPECT_EQ(ButtonFeedbackStep(Button(kFeedbackOpen, 8), kFeedbackClick).sound,
            FeedbackSound::Click);
  test::AssertRecorder recorder;
  FeedbackStep s = ButtonFeedbackStep(Button(kFeedbackOpen, 8), kFeedbackTick);
  EXPECT_EQ(s.after.frame, 8);
  s = ButtonFeedbackStep(Button(kFeedbackHover, 9), kFeedbackTick);
  s = ButtonFeedbackStep(Button(kFeedbackClosing, 3), kFeedbackLeave);
  EXPECT_EQ(s.after.state, kFeedbackClosing);
  s = ButtonFeedbackStep(Button(kFeedbackOpen, 3), kFeedbackEnter);
  EXPECT_EQ(s.timer, FeedbackTimer::Keep);
  EXPECT_EQ(recorder.messages(),
            (std::vector<std::string>{"no debe llegar aqui", "no debe llegar aqui", "no debe ser",
                                      "no debe ser"}));
}

}  // namespace
}  // namespace qv
