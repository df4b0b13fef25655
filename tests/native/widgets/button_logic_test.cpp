// Push and check buttons: frame arithmetic, press gestures, hover polling, enabling and checking.
#include "widgets/button_logic.h"

#include <gtest/gtest.h>

#include "effects_matchers.h"
#include "widgets/widget_messages.h"

namespace qv {
namespace {

using test::Append;
using test::Codes;
using test::Has;
using test::IndexOf;
using V = std::vector<int>;

PushButton ReadyPush() {
  PushButton b;
  b.hasImage = true;
  PushSetStrip(b, 40, 30);
  return b;
}

CheckButton ReadyCheck(bool radio = false, bool checked = false) {
  CheckButton b;
  b.hasImage = true;
  b.radio = radio;
  b.checked = checked;
  b.state = checked ? kChecked : kUnchecked;
  CheckSetStrip(b, 40, 40);
  return b;
}

TEST(ButtonFrames, DisabledFrameChangesTheFrameHeightByIntegerDivision) {
  PushButton b = ReadyPush();
  EXPECT_EQ(b.frameHeight, 10);
  b.disabledFrame = 1;
  PushSetStrip(b, 40, 30);
  EXPECT_EQ(b.frameHeight, 7);
  EXPECT_EQ(b.frameWidth, 40);

  CheckButton c;
  CheckSetStrip(c, 20, 30);
  EXPECT_EQ(c.frameHeight, 7);
  c.disabledFrame = 1;
  CheckSetStrip(c, 20, 30);
  EXPECT_EQ(c.frameHeight, 6);
}

TEST(ButtonFrames, ShownFrameSkipsTheDisabledFrameOnlyWhenEnabled) {
  PushButton b = ReadyPush();
  b.state = kPushPressed;
  EXPECT_EQ(PushShownFrame(b), 2);
  b.disabledFrame = 1;
  EXPECT_EQ(PushShownFrame(b), 3);
  b.enabled = false;
  EXPECT_EQ(PushShownFrame(b), 0) << "a disabled button shows frame 0 whatever its strip";

  CheckButton c = ReadyCheck();
  c.state = kCheckedHover;
  c.disabledFrame = 1;
  EXPECT_EQ(CheckShownFrame(c), 4);
}

TEST(ButtonFrames, AStripTooShortForItsFramesTakesNoMouse) {
  PushButton b;
  b.hasImage = true;
  PushSetStrip(b, 40, 2);
  EXPECT_EQ(b.frameHeight, 0);
  EXPECT_FALSE(PushTakesMouse(b));
  b = ReadyPush();
  EXPECT_TRUE(PushTakesMouse(b));
  b.enabled = false;
  EXPECT_FALSE(PushTakesMouse(b));
}

TEST(PushGestures, HoverPlaysTheSoundWithEnterAndPollsForTheLeave) {
  PushButton b = ReadyPush();
  Effects e = PushMouseMove(b, true);
  EXPECT_EQ(b.state, kPushHover);
  EXPECT_EQ(Codes(e), V{MWN_ENTER});
  EXPECT_TRUE(Has(e, Effect::kStartTimer, kHoverTimer));
  EXPECT_EQ(e[IndexOf(e, Effect::kStartTimer)].b, 120);
  EXPECT_LT(IndexOf(e, Effect::kPlaySound, kHoverSound), IndexOf(e, Effect::kNotify));

  EXPECT_TRUE(PushMouseMove(b, true).empty()) << "moving within the button says nothing";
  EXPECT_TRUE(PushHoverTimer(b, true).empty());
  e = PushHoverTimer(b, false);
  EXPECT_EQ(Codes(e), V{MWN_LEAVE});
  EXPECT_TRUE(Has(e, Effect::kKillTimer, kHoverTimer));
  EXPECT_EQ(b.state, kPushNormal);
  EXPECT_TRUE(PushHoverTimer(b, false).empty()) << "a tick queued before the kill is ignored";
}

TEST(PushEnabling, DisablingDuringAPressDropsTheCaptureAndReturnsToNormal) {
  PushButton b = ReadyPush();
  PushButtonDown(b);
  Effects e = PushSetEnabled(b, false);
  EXPECT_TRUE(Has(e, Effect::kReleaseCapture));
  EXPECT_FALSE(Has(e, Effect::kKillTimer));
  EXPECT_FALSE(b.captured);
  EXPECT_EQ(b.state, kPushNormal);
  EXPECT_TRUE(Codes(e).empty());
  EXPECT_TRUE(PushButtonUp(b, true).empty()) << "the release after disabling is no click";
}

TEST(CheckGestures, AClickTogglesAndThePressPreviewsTheToggledLook) {
  CheckButton b = ReadyCheck();
  EXPECT_EQ(Codes(CheckMouseMove(b, true)), V{MWN_ENTER});
  EXPECT_EQ(b.state, kUncheckedHover);
  EXPECT_EQ(Codes(CheckButtonDown(b)), V{MWN_PRESSED});
  EXPECT_EQ(b.state, kChecked) << "the pressed box shows what a release would give";
  EXPECT_EQ(Codes(CheckMouseMove(b, false)), V{MWN_LEAVE});
  EXPECT_EQ(b.state, kUnchecked);
  EXPECT_EQ(Codes(CheckMouseMove(b, true)), V{MWN_ENTER});
  Effects up = CheckButtonUp(b, true);
  EXPECT_EQ(Codes(up), (V{MWN_RELEASED, MWN_CLICKED}));
  EXPECT_TRUE(Has(up, Effect::kPlaySound, kClickSound));
  EXPECT_TRUE(b.checked);
  EXPECT_EQ(b.state, kCheckedHover);
}

TEST(CheckGestures, ACheckedRadioClickedAgainStaysCheckedWithoutAClick) {
  CheckButton b = ReadyCheck(true, true);
  CheckMouseMove(b, true);
  CheckButtonDown(b);
  Effects up = CheckButtonUp(b, true);
  EXPECT_EQ(Codes(up), V{MWN_RELEASED});
  EXPECT_FALSE(Has(up, Effect::kPlaySound));
  EXPECT_TRUE(b.checked);
  EXPECT_EQ(b.state, kCheckedHover);

  CheckButton off = ReadyCheck(true, false);
  CheckButtonDown(off);
  EXPECT_EQ(Codes(CheckButtonUp(off, true)), (V{MWN_RELEASED, MWN_CLICKED}));
  EXPECT_TRUE(off.checked) << "an unchecked radio button is checked by a click";
}

TEST(CheckGestures, EveryMoveRestartsThePollButOnlyAChangeEnters) {
  CheckButton b = ReadyCheck();
  CheckMouseMove(b, true);
  Effects again = CheckMouseMove(b, true);
  EXPECT_TRUE(Has(again, Effect::kStartTimer, kHoverTimer));
  EXPECT_TRUE(Codes(again).empty());
  EXPECT_FALSE(Has(again, Effect::kRepaint));
  EXPECT_EQ(Codes(CheckHoverTimer(b, false)), V{MWN_LEAVE});
  EXPECT_EQ(b.state, kUnchecked);
  EXPECT_TRUE(CheckHoverTimer(b, false).empty());
}

TEST(CheckSetting, UncheckingAnEnabledRadioReportsChangedWithoutSound) {
  CheckButton b = ReadyCheck(true, true);
  Effects e = CheckSetChecked(b, false);
  EXPECT_EQ(Codes(e), V{MWN_CHANGED});
  EXPECT_FALSE(Has(e, Effect::kPlaySound));
  EXPECT_EQ(b.state, kUnchecked);
  EXPECT_TRUE(CheckSetChecked(b, false).empty());
  EXPECT_TRUE(Codes(CheckSetChecked(b, true)).empty());
  EXPECT_EQ(b.state, kChecked);

  CheckButton plain = ReadyCheck(false, true);
  EXPECT_TRUE(Codes(CheckSetChecked(plain, false)).empty()) << "a check box never reports it";
  CheckButton disabled = ReadyCheck(true, true);
  disabled.enabled = false;
  EXPECT_TRUE(Codes(CheckSetChecked(disabled, false)).empty());
}

TEST(CheckEnabling, EnablingShowsTheValueAndDisablingShowsFrameZero) {
  CheckButton b = ReadyCheck(false, true);
  CheckMouseMove(b, true);
  Effects e = CheckSetEnabled(b, false);
  EXPECT_TRUE(Has(e, Effect::kKillTimer, kHoverTimer));
  EXPECT_EQ(b.state, kUnchecked);
  EXPECT_EQ(CheckShownFrame(b), 0);
  e = CheckSetEnabled(b, true);
  EXPECT_TRUE(Has(e, Effect::kRepaint));
  EXPECT_EQ(b.state, kChecked) << "re-enabled, the box shows its value again";
}

}  // namespace
}  // namespace qv
