// Push and check buttons as real windows: mouse gestures, capture loss, messages and painting.
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

class PushButtonWindow : public ::testing::Test {
 protected:
  void SetUp() override {
    button = parent.AddChild(kCommandClass, 40, 40);
    SendMessageA(button, MWM_SETIMAGE, 0, reinterpret_cast<LPARAM>(strip.get()));
    MoveToClient(parent.hwnd(), 5, 5);
    parent.Clear();
  }
  void TearDown() override { LeftUp(); }

  TestParent parent;
  PackedDib strip = test::VerticalStrip(60, 20, 4, 50);  // disabled, normal, hover, pressed
  HWND button = nullptr;
};

TEST_F(PushButtonWindow, PressDragOffAndReleaseIsNoClick) {
  test::SoundLog sounds;
  MoveToClient(button, 10, 10);
  LeftDown();
  MoveToClient(parent.hwnd(), 300, 300);
  LeftUp();
  EXPECT_EQ(parent.CodesFrom(button), (V{MWN_ENTER, MWN_PRESSED, MWN_LEAVE, MWN_RELEASED}));
  EXPECT_EQ(sounds.Played(), V{kHoverSound});
  EXPECT_EQ(GetCapture(), nullptr);
}

TEST_F(PushButtonWindow, DraggingBackOnBeforeReleasingClicks) {
  test::SoundLog sounds;
  MoveToClient(button, 10, 10);
  LeftDown();
  MoveToClient(parent.hwnd(), 300, 300);
  MoveToClient(button, 12, 12);
  LeftUp();
  EXPECT_EQ(parent.CodesFrom(button),
            (V{MWN_ENTER, MWN_PRESSED, MWN_LEAVE, MWN_ENTER, MWN_RELEASED, MWN_CLICKED}));
  EXPECT_EQ(sounds.Played(), (V{kHoverSound, kHoverSound, kClickSound}));
}

TEST_F(PushButtonWindow, TheHoverTimerNoticesThePointerLeaving) {
  MoveToClient(button, 10, 10);
  EXPECT_EQ(parent.CodesFrom(button), V{MWN_ENTER});
  MoveToClient(parent.hwnd(), 300, 300);
  Pump(300);
  EXPECT_EQ(parent.CodesFrom(button), (V{MWN_ENTER, MWN_LEAVE}));
}

TEST_F(PushButtonWindow, CaptureTakenAwayEndsThePressAsAReleaseWhereTheCursorIs) {
  MoveToClient(button, 10, 10);
  LeftDown();
  SetCapture(parent.hwnd());
  Pump(20);
  EXPECT_EQ(parent.CodesFrom(button), (V{MWN_ENTER, MWN_PRESSED, MWN_RELEASED, MWN_CLICKED}))
      << "the cursor is still over the button, so the release clicks";
  ReleaseCapture();
  LeftUp();
  EXPECT_EQ(parent.CodesFrom(button).size(), 4u) << "the real release comes to nothing";
}

TEST_F(PushButtonWindow, SettingThePictureSizesTheWindowToOneFrame) {
  const SIZE size = test::ClientSize(button);
  EXPECT_EQ(size.cx, 60);
  EXPECT_EQ(size.cy, 80 / 3);
  PackedDib thirty = test::VerticalStrip(20, 10, 3, 60);
  SendMessageA(button, MWM_SETIMAGE, 0, reinterpret_cast<LPARAM>(thirty.get()));
  EXPECT_EQ(test::ClientSize(button).cy, 10);
  EXPECT_EQ(SendMessageA(button, MWM_SETDISABLEDFRAME, 0, 1), 1);
  EXPECT_EQ(test::ClientSize(button).cy, 7) << "30 / 4 by integer division";
  EXPECT_EQ(SendMessageA(button, MWM_GETDISABLEDFRAME, 0, 0), 1);
}

TEST_F(PushButtonWindow, PaintsTheFrameOfItsLook) {
  SendMessageA(button, MWM_SETDISABLEDFRAME, 0, 1);  // 4 frames of 20
  Snapshot normal(button);
  EXPECT_EQ(normal.At(10, 10), ColourOfIndex(51));
  EXPECT_EQ(normal.At(1, 1), ColourOfIndex(201)) << "the frame starts on its first row";
  EXPECT_EQ(normal.At(59, 19), ColourOfIndex(51));

  MoveToClient(button, 10, 10);
  EXPECT_EQ(Snapshot(button).At(30, 5), ColourOfIndex(52));
  LeftDown();
  EXPECT_EQ(Snapshot(button).At(30, 5), ColourOfIndex(53));
  LeftUp();
  SendMessageA(button, MWM_SETENABLED, 0, 0);
  EXPECT_EQ(Snapshot(button).At(30, 5), ColourOfIndex(50));
  EXPECT_EQ(SendMessageA(button, MWM_GETENABLED, 0, 0), 0);
}

TEST_F(PushButtonWindow, MessagesOutsideItsSetAnswerOneAndChangeNothing) {
  for (UINT m = 1328; m <= 1333; ++m) EXPECT_EQ(SendMessageA(button, m, 0, 0), 1) << m;
  for (UINT m = 1340; m <= 1424; ++m) EXPECT_EQ(SendMessageA(button, m, 0, 0), 1) << m;
  EXPECT_EQ(SendMessageA(button, MWM_GETENABLED, 0, 0), 1);
  EXPECT_EQ(SendMessageA(button, MWM_GETIMAGE, 0, 0), reinterpret_cast<LRESULT>(strip.get()));
  EXPECT_EQ(SendMessageA(button, MWM_GETDISABLEDFRAME, 0, 0), 0);
}

TEST_F(PushButtonWindow, ANullPictureIsRefusedAndABareButtonIsBlack) {
  test::AssertRecorder rec;
  EXPECT_EQ(SendMessageA(button, MWM_SETIMAGE, 0, 0), 0);
  EXPECT_EQ(rec.only(), "manipulador invalido");
  EXPECT_EQ(SendMessageA(button, MWM_GETIMAGE, 0, 0), reinterpret_cast<LRESULT>(strip.get()));

  HWND bare = parent.AddChild(kBoxCommandClass, 200, 40, 30, 30);
  EXPECT_EQ(Snapshot(bare).At(15, 15), 0u);
  MoveToClient(bare, 15, 15);
  LeftDown();
  LeftUp();
  EXPECT_TRUE(parent.CodesFrom(bare).empty()) << "no picture, no mouse";
}

class CheckButtonWindow : public ::testing::Test {
 protected:
  void SetUp() override {
    box = parent.AddChild(kCheckClass, 40, 40);
    SendMessageA(box, MWM_SETIMAGE, 0, reinterpret_cast<LPARAM>(strip.get()));
    MoveToClient(parent.hwnd(), 5, 5);
    parent.Clear();
  }
  void TearDown() override { LeftUp(); }
  void Click() {
    MoveToClient(box, 8, 8);
    LeftDown();
    LeftUp();
  }

  TestParent parent;
  PackedDib strip = test::VerticalStrip(30, 16, 4, 70);
  HWND box = nullptr;
};

TEST_F(CheckButtonWindow, AClickTogglesTheBoxAndShowsTheCheckedHoverLook) {
  Click();
  EXPECT_EQ(parent.CodesFrom(box), (V{MWN_ENTER, MWN_PRESSED, MWN_RELEASED, MWN_CLICKED}));
  EXPECT_EQ(SendMessageA(box, MWM_GETCHECK, 0, 0), 1);
  EXPECT_EQ(Snapshot(box).At(10, 10), ColourOfIndex(73));
  Click();
  EXPECT_EQ(SendMessageA(box, MWM_GETCHECK, 0, 0), 0);
}

TEST_F(CheckButtonWindow, MessagesOutsideItsSetAnswerOne) {
  for (UINT m = 1328; m <= 1333; ++m) EXPECT_EQ(SendMessageA(box, m, 0, 0), 1) << m;
  for (UINT m = 1340; m <= 1424; ++m) EXPECT_EQ(SendMessageA(box, m, 0, 0), 1) << m;
  EXPECT_EQ(SendMessageA(box, MWM_GETCHECK, 0, 0), 0);
  EXPECT_EQ(SendMessageA(box, MWM_GETRADIO, 0, 0), 0);
}

}  // namespace
}  // namespace qv
