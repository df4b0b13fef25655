// Scroll widget: the value rules, parts and bands, the click, auto-repeat timing and the drag.
#include "widgets/scroll_logic.h"

#include <gtest/gtest.h>

#include <map>

#include "effects_matchers.h"
#include "support/assert_recorder.h"
#include "widgets/widget_messages.h"

namespace qv {
namespace {

using test::AssertRecorder;
using test::Codes;
using test::Has;
using V = std::vector<int>;

// A ready scroll 40 wide with parts 10 + 30 + 12 high, from a picture of 3 versions.
ScrollWidget ReadyScroll() {
  ScrollWidget s;
  s.hasImage = true;
  ScrollSetPicture(s, 40, 3 * 52);
  ScrollSetPartSize(s, 1, 10);
  ScrollSetPartSize(s, 2, 30);
  ScrollSetPartSize(s, 3, 12);
  return s;
}

TEST(ScrollValues, SetValueClampsAndSnapsTowardZeroFromZero) {
  ScrollWidget s;
  ScrollSetValue(s, 47);
  EXPECT_EQ(s.value, 45);
  ScrollSetValue(s, 150);
  EXPECT_EQ(s.value, 100);
  ScrollSetValue(s, -3);
  EXPECT_EQ(s.value, 0);
  ScrollSetMinimum(s, 3);
  ScrollSetValue(s, 9);
  EXPECT_EQ(s.value, 5) << "multiples of the step are counted from 0, not from the minimum";
  ScrollSetValue(s, 4);
  EXPECT_EQ(s.value, 0) << "so a value just above the minimum can snap below it";
  s.step = 0;
  ScrollSetValue(s, 47);
  EXPECT_EQ(s.value, 47);
}

TEST(ScrollValues, RangeAndStepRulesMirrorEachOther) {
  ScrollWidget s;  // 0 ... 100, step 5, value 50
  ScrollSetStep(s, 300);
  EXPECT_EQ(s.step, 50) << "a step above the range becomes half of it when that is above 1";
  ScrollSetMaximum(s, 40);
  EXPECT_EQ(s.step, 1) << "shrinking the range under the step gives 1 when half is at least 1";
  EXPECT_EQ(s.value, 40);

  ScrollSetStep(s, 100);
  EXPECT_EQ(s.step, 20);
  ScrollSetMinimum(s, 40);  // range 0: half of it is below 1 and becomes the step
  EXPECT_EQ(s.step, 0);
  EXPECT_EQ(s.minimum, 40);
  ScrollSetStep(s, 7);
  EXPECT_EQ(s.step, 1) << "half of an empty range is not above 1";
}

TEST(ScrollValues, MovingOneBoundPastTheOtherDragsItAlong) {
  ScrollWidget s;
  ScrollSetMaximum(s, -10);
  EXPECT_EQ(s.minimum, -10);
  EXPECT_EQ(s.value, -10);
  ScrollSetMinimum(s, 20);
  EXPECT_EQ(s.maximum, 20);
  EXPECT_EQ(s.value, 20);
}

TEST(ScrollValues, StepsClampAndNeverOverflow) {
  ScrollWidget s;
  s.value = 98;
  EXPECT_TRUE(ScrollStepUp(s));
  EXPECT_EQ(s.value, 100);
  EXPECT_FALSE(ScrollStepUp(s));
  s.minimum = -2147483647 - 1;
  s.maximum = 2147483647;
  s.value = 2147483640;
  s.step = 100;
  EXPECT_TRUE(ScrollStepUp(s));
  EXPECT_EQ(s.value, 2147483647);
}

TEST(ScrollParts, ThePartsMustFillTheVersionHeight) {
  ScrollWidget s = ReadyScroll();
  EXPECT_TRUE(s.ready);
  ScrollSetPartSize(s, 2, 0);
  EXPECT_TRUE(s.ready) << "a size below 1 is ignored";
  ScrollSetPartSize(s, 2, 29);
  EXPECT_FALSE(s.ready);
  EXPECT_FALSE(ScrollTakesMouse(s));
  ScrollSetPartSize(s, 2, 30);
  ScrollSetDisabledFrame(s, 1, 40, 3 * 52);
  EXPECT_EQ(s.frameHeight, 39);
  EXPECT_FALSE(s.ready) << "re-dividing the picture by 4 breaks the sum";
  ScrollSetDisabledFrame(s, 1, 40, 4 * 52);
  EXPECT_TRUE(s.ready);
}

TEST(ScrollParts, PointsAndBandsFollowThePartSizes) {
  ScrollWidget s = ReadyScroll();
  EXPECT_EQ(ScrollPartAt(s, 9), 1);
  EXPECT_EQ(ScrollPartAt(s, 10), 2);
  EXPECT_EQ(ScrollPartAt(s, 39), 2);
  EXPECT_EQ(ScrollPartAt(s, 40), 3);

  // Blocks: part 1 rows 0..29 (3 versions of 10), part 2 rows 30..119, part 3 rows 120..155.
  EXPECT_EQ(ScrollBandSource(s, 2).sourceY, 30);
  s.hoverPart = 3;
  ScrollBand band = ScrollBandSource(s, 3);
  EXPECT_EQ(band.top, 40);
  EXPECT_EQ(band.height, 12);
  EXPECT_EQ(band.sourceY, 120 + 12) << "hover version";
  s.mouseCapt = 3;
  EXPECT_EQ(ScrollBandSource(s, 3).sourceY, 120 + 24) << "pressed version";
  s.enabled = false;
  s.disabledFrame = 1;
  EXPECT_EQ(ScrollBandSource(s, 3).sourceY, 4 * 40) << "disabled shows version 0";
}

TEST(ScrollClick, ReleasedOnAnotherPartOrWindowIsNoStep) {
  ScrollWidget s = ReadyScroll();
  ScrollButtonDown(s, 5, 300);
  ScrollMouseMove(s, 5, 20);  // out of part 1's band
  EXPECT_EQ(s.hoverPart, 0);
  EXPECT_EQ(Codes(ScrollButtonUp(s, false, 20)), (V{scroll::ReleasePartCode(2), MWN_RELEASED}));
  EXPECT_EQ(s.value, 50);

  ScrollButtonDown(s, 5, 300);
  Effects up = ScrollButtonUp(s, true, 5);
  EXPECT_EQ(s.value, 50);
  EXPECT_EQ(Codes(up), (V{scroll::ReleasePartCode(1), MWN_RELEASED}));
  EXPECT_EQ(s.lastTimer, 0);
}

// Runs the scroll's timers on a simulated clock and records when the value changes.
class TimerClock {
 public:
  explicit TimerClock(ScrollWidget& s) : s_(s) {}
  void Apply(const Effects& effects) {
    for (const auto& step : effects) {
      if (step.what == Effect::kStartTimer) timers_[step.a] = {step.b, now_ + step.b};
      if (step.what == Effect::kKillTimer) timers_.erase(step.a);
      if (step.what == Effect::kNotify && step.a == MWN_CLICKED) changes_.push_back(now_);
    }
  }
  void RunUntil(int end) {
    for (; now_ <= end; ++now_) {
      for (int id = 1; id <= 3; ++id) {
        auto it = timers_.find(id);
        if (it != timers_.end() && it->second.due == now_) {
          it->second.due += it->second.period;
          Apply(ScrollTimer(s_, id, false));
        }
      }
    }
    now_ = end;
  }
  const std::vector<int>& changes() const { return changes_; }

 private:
  struct Timer {
    int period;
    int due;
  };
  ScrollWidget& s_;
  std::map<int, Timer> timers_;
  std::vector<int> changes_;
  int now_ = 0;
};

TEST(ScrollRepeat, HoldingStepsAt550MsAndThenEvery300Ms) {
  ScrollWidget s = ReadyScroll();
  s.value = 0;
  TimerClock clock(s);
  clock.Apply(ScrollButtonDown(s, 5, 300));
  clock.RunUntil(1500);
  EXPECT_EQ(clock.changes(), (std::vector<int>{550, 850, 1150, 1450}));
  EXPECT_EQ(s.value, 20);
  clock.Apply(ScrollButtonUp(s, false, 5));
  EXPECT_EQ(s.value, 20) << "a release after the delay adds no step";
}

TEST(ScrollRepeat, TheHeldPartBlinksInStepWithTheValue) {
  ScrollWidget s = ReadyScroll();
  ScrollButtonDown(s, 5, 300);
  EXPECT_EQ(ScrollPartLook(s, 1), 2);
  ScrollTimer(s, kScrollDelayTimer, false);
  EXPECT_EQ(ScrollPartLook(s, 1), 0) << "the tick that steps shows the normal look";
  Effects tick = ScrollTimer(s, kScrollRepeatTimer, false);
  EXPECT_TRUE(Has(tick, Effect::kRepaint, 1));
  EXPECT_EQ(ScrollPartLook(s, 1), 2);
  ScrollTimer(s, kScrollRepeatTimer, false);
  EXPECT_EQ(ScrollPartLook(s, 1), 0);
}

TEST(ScrollRepeat, LeavingTheHeldPartStopsTheRepeatAndComingBackRestartsItSooner) {
  ScrollWidget s = ReadyScroll();
  ScrollButtonDown(s, 45, 300);
  ScrollTimer(s, kScrollDelayTimer, false);
  Effects out = ScrollMouseMove(s, 5, 20);
  EXPECT_TRUE(Has(out, Effect::kKillTimer, kScrollRepeatTimer));
  EXPECT_EQ(Codes(out), (V{scroll::LeavePartCode(3), MWN_LEAVE}));
  EXPECT_TRUE(ScrollTimer(s, kScrollRepeatTimer, false).empty()) << "ticks no longer match";
  Effects back = ScrollMouseMove(s, 5, 45);
  EXPECT_EQ(Codes(back), (V{scroll::EnterPartCode(3), MWN_ENTER}));
  ASSERT_TRUE(Has(back, Effect::kStartTimer, kScrollDelayTimer));
  EXPECT_EQ(back[static_cast<std::size_t>(test::IndexOf(back, Effect::kStartTimer))].b, 120);
}

TEST(ScrollHover, EnteringTheWidgetPollsAndMovingBetweenPartsReportsBoth) {
  ScrollWidget s = ReadyScroll();
  Effects in = ScrollMouseMove(s, 5, 5);
  EXPECT_EQ(Codes(in), (V{MWN_ENTER, scroll::EnterPartCode(1)}));
  EXPECT_EQ(s.lastTimer, kHoverTimer);
  Effects across = ScrollMouseMove(s, 5, 25);
  EXPECT_EQ(Codes(across), (V{scroll::LeavePartCode(1), scroll::EnterPartCode(2)}));
  EXPECT_TRUE(Has(across, Effect::kRepaint, 1));
  EXPECT_TRUE(Has(across, Effect::kRepaint, 2));
  EXPECT_TRUE(ScrollTimer(s, kHoverTimer, false).empty());
  EXPECT_EQ(Codes(ScrollTimer(s, kHoverTimer, true)), (V{scroll::LeavePartCode(2), MWN_LEAVE}));
  EXPECT_EQ(s.lastTimer, 0);
}

TEST(ScrollDrag, ThePointerWrapsAtTheScreenEdgesKeepingTheDistance) {
  ScrollWidget s = ReadyScroll();
  ScrollButtonDown(s, 20, 4);
  Effects wrap = ScrollDragMove(s, 0, 768);
  ASSERT_TRUE(Has(wrap, Effect::kMoveCursorY));
  EXPECT_EQ(wrap[0].a, 766);
  EXPECT_EQ(s.anchorY, 770);
  EXPECT_EQ(s.value, 50);
  ScrollDragMove(s, 764, 768);  // 6 further up in all
  EXPECT_EQ(s.value, 55);

  ScrollWidget t = ReadyScroll();
  ScrollButtonDown(t, 20, 760);
  wrap = ScrollDragMove(t, 767, 768);
  EXPECT_EQ(wrap[0].a, 1);
  EXPECT_EQ(t.value, 45) << "7 pixels down, stepped in the same event after the wrap";
  EXPECT_EQ(t.anchorY, 1);
}

TEST(ScrollDrag, ADragReleasedOverAnotherWindowAlsoLeaves) {
  ScrollWidget s = ReadyScroll();
  ScrollButtonDown(s, 20, 400);
  EXPECT_EQ(Codes(ScrollButtonUp(s, true, 0)),
            (V{scroll::ReleasePartCode(2), MWN_RELEASED, scroll::LeavePartCode(2), MWN_LEAVE}));
  AssertRecorder rec;
  ScrollButtonDown(s, 20, 400);
  s.step = 0;
  EXPECT_TRUE(ScrollDragMove(s, 300, 768).empty());
  EXPECT_EQ(rec.only(), "este valor es invalido");
}

TEST(ScrollEnabling, DisablingLeavesTheRunningTimerToTickUnheard) {
  ScrollWidget s = ReadyScroll();
  ScrollButtonDown(s, 5, 300);
  Effects off = ScrollSetEnabled(s, false);
  EXPECT_TRUE(Has(off, Effect::kKillTimer, 0)) << "the cleared field names timer 0";
  EXPECT_FALSE(Has(off, Effect::kKillTimer, kScrollDelayTimer));
  EXPECT_TRUE(Has(off, Effect::kReleaseCapture));
  EXPECT_TRUE(ScrollTimer(s, kScrollDelayTimer, false).empty());
  s.enabled = true;
  EXPECT_TRUE(ScrollTimer(s, kScrollDelayTimer, false).empty()) << "the tick matches nothing";
  EXPECT_EQ(s.value, 50);
}

}  // namespace
}  // namespace qv
