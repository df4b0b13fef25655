// The message and input box driven by keyboard and mouse, and the wrapped-text drawing.
#include <gtest/gtest.h>

#include <string>

#include "support/assert_recorder.h"
#include "widget_test_support.h"
#include "widget_test_strings.h"

namespace qv {
namespace {

using test::LeftDown;
using test::LeftUp;
using test::MoveToClient;
using test::Pump;
using test::TestParent;
using test::TypeCharacter;

class MessageBoxWindow : public ::testing::Test {
 protected:
  void TearDown() override {
    if (box && IsWindow(box)) DestroyWindow(box);
    EnableWindow(parent.hwnd(), TRUE);
    LeftUp();
  }
  void Open(bool twoButtons, bool withInput) {
    box = ShowMessageBox(IDS_TEST_MESSAGE, parent.hwnd(), twoButtons, withInput);
    ASSERT_NE(box, nullptr);
    SetForegroundWindow(box);
    Pump(50);
  }
  HWND Button(int x, int y) {
    POINT p{x, y};
    return ChildWindowFromPoint(box, p);
  }

  TestParent parent;
  HWND box = nullptr;
};

TEST_F(MessageBoxWindow, OpensCentredOverADisabledParent) {
  Open(true, false);
  RECT place;
  GetWindowRect(box, &place);
  const int width = place.right - place.left;
  EXPECT_EQ(place.left, (GetSystemMetrics(SM_CXSCREEN) - width) / 2);
  RECT client;
  GetClientRect(box, &client);
  EXPECT_EQ(client.right, 500);
  EXPECT_EQ(client.bottom, 305);
  EXPECT_FALSE(IsWindowEnabled(parent.hwnd()));
  EXPECT_EQ(ShowMessageBox(IDS_TEST_MESSAGE, nullptr, false, false), nullptr)
      << "one box at a time";
}

TEST_F(MessageBoxWindow, EnterInTheFieldConfirmsAndKeepsAtMost23Characters) {
  Open(true, true);
  for (char c : std::string("abcdefghijklmnopqrstuvwxyz0123")) TypeCharacter(c);
  TypeCharacter('\r');
  EXPECT_FALSE(IsWindow(box));
  EXPECT_EQ(MessageBoxResult(), 1);
  EXPECT_EQ(std::string(MessageBoxText().Text()), "abcdefghijklmnopqrstuvw");
}

TEST_F(MessageBoxWindow, EscapeInTheFieldCancels) {
  Open(false, true);
  TypeCharacter('x');
  TypeCharacter('\x1b');
  EXPECT_FALSE(IsWindow(box));
  EXPECT_EQ(MessageBoxResult(), 0);
  EXPECT_EQ(std::string(MessageBoxText().Text()), "x");
}

TEST_F(MessageBoxWindow, TheBoxAnswersForwardedCharactersItself) {
  Open(false, false);
  EXPECT_EQ(SendMessageA(box, UM_CHILDCHAR, 'q', 0), 0);
  EXPECT_TRUE(IsWindow(box));
  EXPECT_EQ(SendMessageA(box, UM_CHILDCHAR, 13, 0), 1);
  EXPECT_FALSE(IsWindow(box));
  EXPECT_EQ(MessageBoxResult(), 1);
}

TEST_F(MessageBoxWindow, WithoutAFieldTheKeysOfThePlayerAnswer) {
  Open(true, false);
  TypeCharacter('\x1b');
  EXPECT_FALSE(IsWindow(box));
  EXPECT_EQ(MessageBoxResult(), 0);
  EnableWindow(parent.hwnd(), TRUE);
  Open(true, false);
  TypeCharacter('\r');
  EXPECT_FALSE(IsWindow(box));
  EXPECT_EQ(MessageBoxResult(), 1);
}

TEST_F(MessageBoxWindow, ClickingCancelGivesZeroAndOkGivesOne) {
  Open(true, false);
  HWND cancel = Button(420, 265);
  ASSERT_NE(cancel, box);
  MoveToClient(cancel, 20, 20);
  LeftDown();
  LeftUp();
  EXPECT_FALSE(IsWindow(box));
  EXPECT_EQ(MessageBoxResult(), 0);
  EXPECT_TRUE(IsWindowEnabled(parent.hwnd()) == FALSE) << "enabling the parent is the caller's duty";

  Open(true, false);
  MoveToClient(Button(25, 265), 20, 20);
  LeftDown();
  LeftUp();
  EXPECT_FALSE(IsWindow(box));
  EXPECT_EQ(MessageBoxResult(), 1);
}

TEST_F(MessageBoxWindow, ThePictureTheMessageAndTheButtonsArePainted) {
  Open(true, false);
  test::MoveTo(TestParent::kNeutralX, TestParent::kNeutralY);
  // The box paints through WM_PAINT only, so the screen is read.
  HDC screen = GetDC(nullptr);
  RECT place;
  GetClientRect(box, &place);
  MapWindowPoints(box, nullptr, reinterpret_cast<POINT*>(&place), 2);
  const COLORREF face = GetPixel(screen, place.left + 250, place.top + 30);
  const COLORREF icon = GetPixel(screen, place.left + 20, place.top + 20);
  const COLORREF ok = GetPixel(screen, place.left + 50, place.top + 270);
  ReleaseDC(nullptr, screen);
  const std::uint32_t faceRgb = test::ColourOfIndex(180);
  EXPECT_EQ(face, RGB(faceRgb >> 16, (faceRgb >> 8) & 0xFF, faceRgb & 0xFF));
  const std::uint32_t iconRgb = test::ColourOfIndex(40);
  EXPECT_EQ(icon, RGB(iconRgb >> 16, (iconRgb >> 8) & 0xFF, iconRgb & 0xFF));
  const std::uint32_t okRgb = test::ColourOfIndex(20);
  EXPECT_EQ(ok, RGB(okRgb >> 16, (okRgb >> 8) & 0xFF, okRgb & 0xFF));
}

// ---- DrawWrappedText -------------------------------------------------------------------------

class WrappedTextCanvas : public ::testing::Test {
 protected:
  widget::PixelSurface canvas{300, 200};
  int Inked(int left, int top, int right, int bottom) const {
    int inked = 0;
    for (int y = top; y < bottom; ++y)
      for (int x = left; x < right; ++x) inked += canvas.pixels()[y * 300 + x] != 0 ? 1 : 0;
    return inked;
  }
};

TEST_F(WrappedTextCanvas, DrawsInsideItsAreaOnly) {
  ASSERT_TRUE(canvas.ok());
  EXPECT_TRUE(DrawWrappedText(canvas.dc(), "one two three four five six seven eight", "Tahoma",
                              400, 16, RGB(255, 255, 255), true, RGB(0, 0, 255), 2, 20, 30, 150,
                              150));
  EXPECT_GT(Inked(20, 30, 172, 180), 100);
  EXPECT_EQ(Inked(0, 0, 300, 30), 0);
  EXPECT_EQ(Inked(180, 0, 300, 200), 0);
}

TEST_F(WrappedTextCanvas, ReportsBadArguments) {
  test::AssertRecorder rec;
  EXPECT_FALSE(DrawWrappedText(canvas.dc(), "a", "Tahoma", 400, 24, 0, true, 0, 0, 0, 0, 60, 100));
  EXPECT_EQ(rec.count(), 1u) << "a shadow without an offset";
  EXPECT_EQ(rec.messages()[0], "");
  rec.clear();
  EXPECT_FALSE(DrawWrappedText(canvas.dc(), "a", nullptr, 400, 24, 0, false, 0, 0, 0, 0, 60, 100));
  EXPECT_EQ(rec.count(), 1u);
}

}  // namespace
}  // namespace qv
