// The animated image and the text widget as real windows: frames, composing, ticks, captions.
#include <gtest/gtest.h>

#include <string>

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

// Four 24 x 18 frames side by side; frame k is index 90 + k with index 200 + k at (1, 1).
PackedDib RowStrip() {
  PackedDib strip = test::SolidPicture(96, 18, 0);
  for (int k = 0; k < 4; ++k) {
    test::FillRect8(strip.get(), 24 * k, 0, 24, 18, 90 + k);
    *ImagePixel(strip.get(), 24 * k + 1, 1) = static_cast<std::uint8_t>(200 + k);
  }
  return strip;
}

// Two 20 x 20 frames with masks under them: the opaque part of frame k is the square
// (5..14, 5..14) in index 110 + k; masks are index 255 (transparent) and 0 (opaque).
PackedDib MaskedStrip() {
  PackedDib strip = test::SolidPicture(40, 40, 0);
  test::FillRect8(strip.get(), 0, 20, 40, 20, 255);
  for (int k = 0; k < 2; ++k) {
    test::FillRect8(strip.get(), 20 * k + 5, 5, 10, 10, 110 + k);
    test::FillRect8(strip.get(), 20 * k + 5, 25, 10, 10, 0);
  }
  return strip;
}

class AnimWindow : public ::testing::Test {
 protected:
  void SetUp() override {
    anim = parent.AddChild(kAnimClass, 40, 40);
    MoveToClient(parent.hwnd(), 5, 5);
  }
  void TearDown() override { LeftUp(); }

  TestParent parent;
  HWND anim = nullptr;
};

TEST_F(AnimWindow, ShowsTheFrameItIsSetToFromAGridStrip) {
  PackedDib strip = RowStrip();
  ASSERT_EQ(SendMessageA(anim, MWM_SETIMAGE, 0, reinterpret_cast<LPARAM>(strip.get())), 1);
  SendMessageA(anim, anim::MWM_SETCOLUMNS, 0, 4);
  EXPECT_EQ(test::ClientSize(anim).cx, 24);
  EXPECT_EQ(test::ClientSize(anim).cy, 18);
  EXPECT_EQ(SendMessageA(anim, anim::MWM_SETFRAME, 0, 2), 1);
  Snapshot shot(anim);
  EXPECT_EQ(shot.At(10, 10), ColourOfIndex(92));
  EXPECT_EQ(shot.At(1, 1), ColourOfIndex(202));
}

TEST_F(AnimWindow, ATransparentStripIsComposedOverItsBackground) {
  PackedDib strip = MaskedStrip();
  // The background: a GDI bitmap holding colour 150 of the shared palette.
  HDC screen = GetDC(nullptr);
  HDC background = CreateCompatibleDC(screen);
  HBITMAP bitmap = CreateCompatibleBitmap(screen, 30, 30);
  ReleaseDC(nullptr, screen);
  HGDIOBJ old = SelectObject(background, bitmap);
  const std::uint32_t fill = ColourOfIndex(150);
  HBRUSH brush = CreateSolidBrush(RGB(fill >> 16, (fill >> 8) & 0xFF, fill & 0xFF));
  const RECT all{0, 0, 30, 30};
  FillRect(background, &all, brush);
  DeleteObject(brush);

  SendMessageA(anim, anim::MWM_SETTRANSPARENT, 0, 1);
  SendMessageA(anim, MWM_SETIMAGE, 0, reinterpret_cast<LPARAM>(strip.get()));
  SendMessageA(anim, anim::MWM_SETCOLUMNS, 0, 2);
  Snapshot early(anim);
  EXPECT_EQ(early.At(5, 5), 0u) << "no background yet: not ready, black " << early.width();
  EXPECT_EQ(SendMessageA(anim, anim::MWM_SETRUNNING, 0, 1), 1);
  EXPECT_EQ(SendMessageA(anim, anim::MWM_GETRUNNING, 0, 0), 0) << "a widget not ready never runs";

  ASSERT_EQ(SendMessageA(anim, anim::MWM_SETBACKGROUND, 0, reinterpret_cast<LPARAM>(background)),
            1);
  SendMessageA(anim, anim::MWM_SETFRAME, 0, 1);
  Snapshot shot(anim);
  EXPECT_EQ(shot.width(), 20);
  EXPECT_EQ(shot.At(10, 10), ColourOfIndex(111));
  EXPECT_EQ(shot.At(2, 2), fill) << "the background shows where the mask is white";
  EXPECT_EQ(shot.At(17, 12), fill);

  SelectObject(background, old);
  DeleteObject(bitmap);
  DeleteDC(background);
}

TEST_F(AnimWindow, RunningAsksTheParentForFramesUntilTheGridChanges) {
  PackedDib strip = RowStrip();
  SendMessageA(anim, MWM_SETIMAGE, 0, reinterpret_cast<LPARAM>(strip.get()));
  EXPECT_EQ(SendMessageA(anim, anim::MWM_SETINTERVAL, 0, 45), 1);  // the shortest interval
  SendMessageA(anim, anim::MWM_SETRUNNING, 0, 1);
  EXPECT_EQ(SendMessageA(anim, anim::MWM_GETRUNNING, 0, 0), 1);
  Pump(400);
  EXPECT_GE(parent.CodesFrom(anim).size(), 2u);
  for (int code : parent.CodesFrom(anim)) EXPECT_EQ(code, MWN_CHANGED);

  SendMessageA(anim, anim::MWM_SETROWS, 0, 1);
  EXPECT_EQ(SendMessageA(anim, anim::MWM_GETRUNNING, 0, 0), 0);
  parent.Clear();
  Pump(200);
  EXPECT_TRUE(parent.CodesFrom(anim).empty());
}

TEST_F(AnimWindow, AClickedImageReportsLikeAButtonWithoutSounds) {
  PackedDib strip = RowStrip();
  SendMessageA(anim, MWM_SETIMAGE, 0, reinterpret_cast<LPARAM>(strip.get()));
  test::SoundLog sounds;
  parent.Clear();
  MoveToClient(anim, 5, 5);
  EXPECT_EQ(SendMessageA(anim, anim::MWM_GETHOVER, 0, 0), 1);
  LeftDown();
  LeftUp();
  EXPECT_EQ(parent.CodesFrom(anim), (V{MWN_ENTER, MWN_PRESSED, MWN_RELEASED, MWN_CLICKED}));
  EXPECT_TRUE(sounds.Played().empty());
  for (UINT m = 1351; m <= 1424; ++m) EXPECT_EQ(SendMessageA(anim, m, 0, 0), 1) << m;
  EXPECT_EQ(SendMessageA(anim, anim::MWM_SETUSERVALUE, 0, 77), 1);
  EXPECT_EQ(SendMessageA(anim, anim::MWM_GETUSERVALUE, 0, 0), 77);
}

// ---- Text ------------------------------------------------------------------------------------

class TextWindow : public ::testing::Test {
 protected:
  void SetUp() override {
    // The parent's picture: index 160 everywhere, index 161 in the text's corner.
    test::FillRect8(background.get(), 100, 100, 3, 3, 161);
    text = parent.AddChild(kTextClass, 100, 100);
    MoveToClient(parent.hwnd(), 5, 5);
  }
  void TearDown() override { LeftUp(); }
  void MakeReady(const char* caption = "Quorvex") {
    SendMessageA(text, MWM_SETIMAGE, 0, reinterpret_cast<LPARAM>(background.get()));
    SendMessageA(text, text::MWM_SETFONTHEIGHT, 0, 24);
    SendMessageA(text, text::MWM_SETTEXT, 0, reinterpret_cast<LPARAM>(caption));
    SendMessageA(text, text::MWM_SETFACENAME, 0, reinterpret_cast<LPARAM>("Tahoma"));
  }
  // How wide and high the caption is in both fonts, measured the way the widget does.
  SIZE Extent(const char* caption) {
    SIZE best{0, 0};
    for (int weight : {400, 700}) {
      HFONT font = CreateFontA(24, 0, 0, 0, weight, 0, 0, 0, DEFAULT_CHARSET, 0, 0, 0, 0, "Tahoma");
      HDC dc = GetDC(text);
      HGDIOBJ old = SelectObject(dc, font);
      SIZE size;
      GetTextExtentPoint32A(dc, caption, lstrlenA(caption), &size);
      SelectObject(dc, old);
      ReleaseDC(text, dc);
      DeleteObject(font);
      best.cx = std::max(best.cx, size.cx);
      best.cy = std::max(best.cy, size.cy);
    }
    return best;
  }
  // Counts the pixels of one colour in the widget.
  static int Count(const Snapshot& shot, std::uint32_t colour) {
    int n = 0;
    for (int y = 0; y < shot.height(); ++y)
      for (int x = 0; x < shot.width(); ++x) n += shot.At(x, y) == colour ? 1 : 0;
    return n;
  }

  TestParent parent;
  PackedDib background = test::SolidPicture(640, 480, 160);
  HWND text = nullptr;
};

TEST_F(TextWindow, ACaptionBeforeTheFaceNameDrawsNothingUntilTheFaceArrives) {
  SendMessageA(text, MWM_SETIMAGE, 0, reinterpret_cast<LPARAM>(background.get()));
  SendMessageA(text, text::MWM_SETTEXT, 0, reinterpret_cast<LPARAM>("Quorvex"));
  EXPECT_EQ(Snapshot(text).At(2, 2), 0u);
  SendMessageA(text, text::MWM_SETFACENAME, 0, reinterpret_cast<LPARAM>("Tahoma"));
  Snapshot shot(text);
  EXPECT_EQ(shot.At(0, 0), ColourOfIndex(161)) << "the parent's picture at the widget's place";
  EXPECT_EQ(shot.At(shot.width() - 1, shot.height() - 1), ColourOfIndex(160));
}

TEST_F(TextWindow, TheWindowIsTheTextPlusTheShadowOffsetWithTheShadowOff) {
  MakeReady();
  SendMessageA(text, text::MWM_SETSHADOWOFFSET, 0, 5);
  const SIZE extent = Extent("Quorvex");
  EXPECT_EQ(test::ClientSize(text).cx, extent.cx + 5);
  EXPECT_EQ(test::ClientSize(text).cy, extent.cy + 5);
  EXPECT_EQ(SendMessageA(text, text::MWM_GETSHADOW, 0, 0), 0);
}

// Which captions are taken is the text logic's (tested natively); here, what the window keeps.
TEST_F(TextWindow, ARefusedCaptionKeepsTheOldOne) {
  MakeReady();
  const std::string fits(199, 'i');
  const std::string tooLong(200, 'i');
  test::AssertRecorder rec;
  EXPECT_EQ(SendMessageA(text, text::MWM_SETTEXT, 0, reinterpret_cast<LPARAM>(fits.c_str())), 1);
  EXPECT_EQ(SendMessageA(text, text::MWM_SETTEXT, 0, reinterpret_cast<LPARAM>(tooLong.c_str())),
            0);
  char back[300] = {};
  EXPECT_EQ(SendMessageA(text, text::MWM_GETTEXT, sizeof back, reinterpret_cast<LPARAM>(back)),
            200);
  EXPECT_EQ(std::string(back), fits) << "the old caption stays";

  char shortBuffer[4] = {'x', 'x', 'x', 'x'};
  SendMessageA(text, text::MWM_GETTEXT, 3, reinterpret_cast<LPARAM>(shortBuffer));
  EXPECT_EQ(std::string(shortBuffer, 4), "iiix") << "a short buffer gets no terminator";
}

TEST_F(TextWindow, ADisabledCaptionUsesItsColourAndIgnoresTheMouse) {
  MakeReady("WWWW");
  SendMessageA(text, text::MWM_SETTEXTCOLOUR, 0, RGB(250, 10, 10));
  SendMessageA(text, text::MWM_SETDISABLEDCOLOUR, 0, RGB(10, 250, 10));
  EXPECT_GT(Count(Snapshot(text), 0xFA0A0A), 10);
  SendMessageA(text, MWM_SETENABLED, 0, 0);
  Snapshot disabled(text);
  EXPECT_EQ(Count(disabled, 0xFA0A0A), 0);
  EXPECT_GT(Count(disabled, 0x0AFA0A), 10);
  parent.Clear();
  MoveToClient(text, 3, 3);
  LeftDown();
  LeftUp();
  EXPECT_TRUE(parent.CodesFrom(text).empty());
}

TEST_F(TextWindow, AReleaseOverTheCaptionClicksEvenWhenThePressBeganElsewhere) {
  MakeReady();
  parent.Clear();
  MoveToClient(parent.hwnd(), 20, 20);
  LeftDown();  // on the parent, which takes no capture
  MoveToClient(text, 4, 4);
  LeftUp();
  const V codes = parent.CodesFrom(text);
  ASSERT_FALSE(codes.empty());
  EXPECT_EQ(codes.back(), MWN_CLICKED);
  EXPECT_EQ(std::count(codes.begin(), codes.end(), MWN_PRESSED), 0);
}

TEST_F(TextWindow, ThePressedCaptionDropsOntoItsShadow) {
  MakeReady("WWWW");
  SendMessageA(text, text::MWM_SETSHADOW, 0, 1);
  SendMessageA(text, text::MWM_SETSHADOWOFFSET, 0, 4);
  SendMessageA(text, text::MWM_SETTEXTCOLOUR, 0, RGB(250, 10, 10));
  SendMessageA(text, text::MWM_SETSHADOWCOLOUR, 0, RGB(10, 10, 250));
  Snapshot raised(text);
  EXPECT_GT(Count(raised, 0x0A0AFA), 0) << "the shadow shows";
  MoveToClient(text, 3, 3);
  LeftDown();
  Snapshot pressed(text);
  EXPECT_EQ(Count(pressed, 0x0A0AFA), 0) << "pressed, the caption covers its shadow's place";
  EXPECT_GT(Count(pressed, 0xFA0A0A), 0);
  LeftUp();
  for (UINT m = 1353; m <= 1424; ++m) EXPECT_EQ(SendMessageA(text, m, 0, 0), 1) << m;
}

}  // namespace
}  // namespace qv
