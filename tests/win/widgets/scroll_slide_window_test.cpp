// The scroll and the slider as real windows: clicks, repeat, the endless drag, knob and track.
#include <gtest/gtest.h>

#include "support/assert_recorder.h"
#include "widget_test_support.h"

namespace qv {
namespace {

using test::ColourOfIndex;
using test::LeftDown;
using test::LeftUp;
using test::MoveToClient;
using test::Pump;
using test::Snapshot;
using test::TestParent;
using V = std::vector<int>;

// Parts of 20, 60 and 20 rows, 30 wide, three versions each: part p version v is index
// 120 + 10 * p + v.
PackedDib ScrollPicture() {
  PackedDib picture = test::SolidPicture(30, 300, 0);
  const int sizes[3] = {20, 60, 20};
  int top = 0;
  for (int p = 0; p < 3; ++p) {
    for (int v = 0; v < 3; ++v) {
      test::FillRect8(picture.get(), 0, top + v * sizes[p], 30, sizes[p], 120 + 10 * (p + 1) + v);
    }
    top += 3 * sizes[p];
  }
  return picture;
}

LRESULT Get(HWND w, UINT m) { return SendMessageA(w, m, 0, 0); }

class ScrollWindow : public ::testing::Test {
 protected:
  void SetUp() override {
    scroll = parent.AddChild(kScrollClass, 300, 100);
    SendMessageA(scroll, MWM_SETIMAGE, 0, reinterpret_cast<LPARAM>(picture.get()));
    SendMessageA(scroll, scroll::MWM_SETPARTSIZE1, 0, 20);
    SendMessageA(scroll, scroll::MWM_SETPARTSIZE2, 0, 60);
    SendMessageA(scroll, scroll::MWM_SETPARTSIZE3, 0, 20);
    MoveToClient(parent.hwnd(), 5, 5);
    parent.Clear();
  }
  void TearDown() override { LeftUp(); }

  TestParent parent;
  PackedDib picture = ScrollPicture();
  HWND scroll = nullptr;
};

TEST_F(ScrollWindow, AClickOnTheTopPartStepsUpAtTheRelease) {
  MoveToClient(scroll, 10, 10);
  LeftDown();
  EXPECT_EQ(Get(scroll, scroll::MWM_GETVALUE), 50) << "nothing before the release";
  EXPECT_EQ(Snapshot(scroll).At(10, 10), ColourOfIndex(132)) << "the pressed look";
  LeftUp();
  EXPECT_EQ(Get(scroll, scroll::MWM_GETVALUE), 55);
  EXPECT_EQ(parent.CodesFrom(scroll),
            (V{MWN_ENTER, scroll::EnterPartCode(1), MWN_PRESSED, scroll::PressPartCode(1),
               MWN_CLICKED, scroll::ReleasePartCode(1), MWN_RELEASED}));
  MoveToClient(scroll, 10, 90);
  LeftDown();
  LeftUp();
  EXPECT_EQ(Get(scroll, scroll::MWM_GETVALUE), 50) << "the bottom part steps down";
}

TEST_F(ScrollWindow, HoldingTheTopPartRepeatsUntilReleased) {
  MoveToClient(scroll, 10, 10);
  LeftDown();
  for (int waited = 0; waited < 3000 && Get(scroll, scroll::MWM_GETVALUE) < 65; waited += 50) {
    Pump(50);
  }
  LeftUp();
  const LRESULT released = Get(scroll, scroll::MWM_GETVALUE);
  EXPECT_GE(released, 65);
  Pump(700);
  EXPECT_EQ(Get(scroll, scroll::MWM_GETVALUE), released) << "no step after the release";
}

TEST_F(ScrollWindow, DraggingTheMiddlePartStepsOncePerMovePastTheThreshold) {
  MoveToClient(scroll, 10, 50);
  LeftDown();
  MoveToClient(scroll, 10, 38);  // 12 pixels up in one move
  EXPECT_EQ(Get(scroll, scroll::MWM_GETVALUE), 55);
  MoveToClient(scroll, 10, 44);
  EXPECT_EQ(Get(scroll, scroll::MWM_GETVALUE), 50);
  LeftUp();
}

TEST_F(ScrollWindow, ThePointerWrapsFromTheTopOfTheScreenToTheBottom) {
  MoveToClient(scroll, 10, 50);
  LeftDown();
  POINT start;
  GetCursorPos(&start);
  RECT desktop;
  GetClientRect(GetDesktopWindow(), &desktop);
  test::SendPointerTo(start.x, 0);  // the scroll sees it at the top edge and sends it down
  EXPECT_TRUE(test::SettlePointer(start.x, desktop.bottom - 2));
  POINT now;
  GetCursorPos(&now);
  EXPECT_EQ(now.y, desktop.bottom - 2);
  EXPECT_EQ(now.x, start.x);
  LeftUp();
}

TEST_F(ScrollWindow, PartsThatDoNotFillThePictureLeaveItBlackAndDeaf) {
  SendMessageA(scroll, scroll::MWM_SETPARTSIZE2, 0, 59);
  EXPECT_EQ(Snapshot(scroll).At(10, 10), 0u);
  MoveToClient(scroll, 10, 10);
  LeftDown();
  LeftUp();
  EXPECT_TRUE(parent.CodesFrom(scroll).empty());
  EXPECT_EQ(Get(scroll, scroll::MWM_GETVALUE), 50);
}

// The value rules are the scroll logic's (tested natively); here, a refusal and the messages the
// widget does not know.
TEST_F(ScrollWindow, ARefusedDelayChangesNothingAndOtherMessagesAnswerOne) {
  test::AssertRecorder rec;
  EXPECT_EQ(SendMessageA(scroll, scroll::MWM_SETDELAY, 0, 64), 0);
  EXPECT_EQ(rec.only(), "Tiempo para el delay demasiado bajo");
  for (UINT m = 1356; m <= 1424; ++m) EXPECT_EQ(SendMessageA(scroll, m, 0, 0), 1) << m;
  EXPECT_EQ(Get(scroll, scroll::MWM_GETDELAY), 400);
}

// ---- Slider ----------------------------------------------------------------------------------

// A knob of one 16 x 10 frame, index 170 on an opaque middle 12 x 6, with its mask below.
PackedDib Knob() {
  PackedDib knob = test::SolidPicture(16, 20, 0);
  test::FillRect8(knob.get(), 0, 10, 16, 10, 255);
  test::FillRect8(knob.get(), 2, 2, 12, 6, 170);
  test::FillRect8(knob.get(), 2, 12, 12, 6, 0);
  return knob;
}

class SlideWindow : public ::testing::Test {
 protected:
  void SetUp() override {
    slide = parent.AddChild(kSlideClass, 0, 0);
    SendMessageA(slide, slide::MWM_SETBACKGROUND, 0, reinterpret_cast<LPARAM>(background.get()));
    SendMessageA(slide, slide::MWM_SETKNOB, 0, reinterpret_cast<LPARAM>(knob.get()));
    MoveToClient(parent.hwnd(), 5, 5);
    parent.Clear();
  }
  void TearDown() override { LeftUp(); }
  void Track(int x0, int y0, int x1, int y1) {
    SendMessageA(slide, slide::MWM_SETSTART, 0, MAKELPARAM(x0, y0));
    SendMessageA(slide, slide::MWM_SETEND, 0, MAKELPARAM(x1, y1));
  }

  TestParent parent;
  PackedDib background = test::SolidPicture(640, 480, 165);
  PackedDib knob = Knob();
  HWND slide = nullptr;
};

TEST_F(SlideWindow, AnUpwardTrackHasTheMinimumAtTheBottom) {
  Track(200, 300, 200, 200);
  const RECT place = test::RectInParent(slide);
  EXPECT_EQ(place.left, 192);
  EXPECT_EQ(place.top, 195) << "the end point less half a knob";
  EXPECT_EQ(place.bottom - place.top, 110);
  SendMessageA(slide, slide::MWM_SETVALUE, 0, 0);
  Snapshot bottom(slide);
  EXPECT_EQ(bottom.At(8, 105), ColourOfIndex(170)) << "the knob at the start";
  EXPECT_EQ(bottom.At(8, 5), ColourOfIndex(165));
  SendMessageA(slide, slide::MWM_SETVALUE, 0, 100);
  Snapshot top(slide);
  EXPECT_EQ(top.At(8, 5), ColourOfIndex(170));
  EXPECT_EQ(top.At(8, 105), ColourOfIndex(165)) << "the old place shows the background again";
  EXPECT_EQ(static_cast<std::uint32_t>(Get(slide, slide::MWM_GETEND)), 0x00C800C8u);
}

TEST_F(SlideWindow, DraggingToTheMiddleGivesHalfAStepMoreThanSettingIt) {
  Track(100, 300, 300, 300);  // knob centre at x = 100 + value * 2
  MoveToClient(parent.hwnd(), 200, 300);
  LeftDown();
  MoveToClient(parent.hwnd(), 202, 300);
  MoveToClient(parent.hwnd(), 200, 300);
  EXPECT_EQ(Get(slide, slide::MWM_GETVALUE), 52) << "trunc(50 + 2.5)";
  SendMessageA(slide, slide::MWM_SETVALUE, 0, 90);
  EXPECT_EQ(Get(slide, slide::MWM_GETVALUE), 52) << "ignored during the drag";
  LeftUp();
  SendMessageA(slide, slide::MWM_SETVALUE, 0, 52);
  EXPECT_EQ(Get(slide, slide::MWM_GETVALUE), 50);
  const V codes = parent.CodesFrom(slide);
  EXPECT_EQ(codes.front(), MWN_ENTER);
  EXPECT_NE(std::find(codes.begin(), codes.end(), MWN_CLICKED), codes.end());
  EXPECT_EQ(codes.back(), MWN_RELEASED) << "released over the knob: no leave";
}

TEST_F(SlideWindow, ANullBackgroundUnlaysItAndMessagesOutsideAnswerOne) {
  Track(100, 300, 300, 300);
  EXPECT_EQ(SendMessageA(slide, slide::MWM_SETBACKGROUND, 0, 0), 0);
  EXPECT_EQ(Snapshot(slide).At(100, 5), 0u);
  test::AssertRecorder rec;
  EXPECT_EQ(SendMessageA(slide, slide::MWM_SETKNOB, 0, 0), 0);
  EXPECT_EQ(rec.only(), "Hdc enviado es nulo");
  for (UINT m = 1328; m <= 1333; ++m) EXPECT_EQ(SendMessageA(slide, m, 0, 0), 1) << m;
  for (UINT m = 1354; m <= 1424; ++m) EXPECT_EQ(SendMessageA(slide, m, 0, 0), 1) << m;
}

}  // namespace
}  // namespace qv
