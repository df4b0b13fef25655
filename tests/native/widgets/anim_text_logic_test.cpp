// Animated-image and text widgets: readiness, accepted values, sizing, paint plans and clicks.
#include <gtest/gtest.h>

#include <string>

#include "effects_matchers.h"
#include "support/assert_recorder.h"
#include "widgets/anim_logic.h"
#include "widgets/text_logic.h"
#include "widgets/widget_messages.h"

namespace qv {
namespace {

using test::AssertRecorder;
using test::Codes;
using test::Has;
using V = std::vector<int>;

AnimLayoutInput Strip(int frameWidth, int frameHeight, int frames) {
  AnimLayoutInput in;
  in.hasStrip = true;
  in.stripIndexed = true;
  in.frameWidth = frameWidth;
  in.frameHeight = frameHeight;
  in.frameCount = frames;
  return in;
}

TEST(AnimReadiness, ATransparentStripWaitsForABackgroundAsLargeAsAFrame) {
  AnimLayoutInput in = Strip(30, 20, 4);
  EXPECT_TRUE(AnimIsReady(false, in));
  EXPECT_FALSE(AnimIsReady(true, in));
  in.hasBackground = true;
  in.backgroundWidth = 30;
  in.backgroundHeight = 19;
  EXPECT_FALSE(AnimIsReady(true, in));
  in.backgroundHeight = 20;
  EXPECT_TRUE(AnimIsReady(true, in));
  in.stripIndexed = false;
  EXPECT_FALSE(AnimIsReady(true, in)) << "composing needs the strip's colour table";
  EXPECT_FALSE(AnimIsReady(false, Strip(0, 20, 4))) << "a strip narrower than its columns";
  EXPECT_FALSE(AnimIsReady(false, AnimLayoutInput{}));
}

TEST(AnimReadiness, ALayoutChangeStopsTheAnimationAndEndsHover) {
  AnimWidget a;
  AnimUpdateLayout(a, Strip(30, 20, 4));
  ASSERT_TRUE(a.ready);
  EXPECT_EQ(a.width, 30);
  EXPECT_EQ(a.height, 20);
  EXPECT_TRUE(Has(AnimSetRunning(a, true), Effect::kStartTimer, kAnimFrameTimer));
  a.frame = 3;
  AnimMouseMove(a, 5, 5);
  ASSERT_TRUE(a.hover);

  Effects e = AnimUpdateLayout(a, Strip(30, 20, 2));  // the rows changed while running
  EXPECT_FALSE(a.running);
  EXPECT_TRUE(Has(e, Effect::kKillTimer, kAnimFrameTimer));
  EXPECT_EQ(a.frame, 0) << "a frame beyond the new grid falls back to the first";
  EXPECT_TRUE(a.hover) << "still ready: the pointer is still over it";

  a.transparent = true;
  e = AnimUpdateLayout(a, Strip(30, 20, 2));
  EXPECT_FALSE(a.ready);
  EXPECT_FALSE(a.hover);
  EXPECT_TRUE(Has(e, Effect::kKillTimer, kHoverTimer));
  EXPECT_FALSE(AnimTakesMouse(a));
  EXPECT_TRUE(AnimSetRunning(a, true).empty()) << "a widget that cannot draw does not run";
}

TEST(AnimValues, IntervalFramesAndGridAreChecked) {
  AssertRecorder rec;
  EXPECT_FALSE(AnimIntervalValid(44));
  EXPECT_EQ(rec.only(), "tiempo para el intervalo del timer demasiado bajo");
  rec.clear();
  EXPECT_TRUE(AnimIntervalValid(45));
  EXPECT_FALSE(AnimFrameValid(6, 2 * 3));
  EXPECT_EQ(rec.only(), "Numero de Cuadro enviado al Animation es invalido");
  rec.clear();
  EXPECT_FALSE(AnimFrameValid(-1, 6));
  EXPECT_TRUE(AnimFrameValid(5, 6));
  rec.clear();
  EXPECT_FALSE(AnimRowsValid(0));
  EXPECT_EQ(rec.only(), "numero de filas invalido");
  rec.clear();
  EXPECT_FALSE(AnimColumnsValid(0));
  EXPECT_EQ(rec.only(), "numero de columnas invalido");
}

TEST(AnimMouse, TheCapturedRectangleCountsItsEdgesAsInside) {
  AnimWidget a;
  AnimUpdateLayout(a, Strip(30, 20, 1));
  EXPECT_EQ(Codes(AnimMouseMove(a, 1, 1)), V{MWN_ENTER});
  EXPECT_EQ(Codes(AnimButtonDown(a)), V{MWN_PRESSED});
  EXPECT_TRUE(AnimMouseMove(a, 30, 20).empty()) << "the far corner is still inside";
  EXPECT_EQ(Codes(AnimMouseMove(a, 31, 20)), V{MWN_LEAVE});
  EXPECT_EQ(Codes(AnimMouseMove(a, 0, 0)), V{MWN_ENTER});
  Effects up = AnimButtonUp(a, true);
  EXPECT_EQ(Codes(up), (V{MWN_RELEASED, MWN_CLICKED}));
  EXPECT_TRUE(Has(up, Effect::kStartTimer, kHoverTimer));
  EXPECT_FALSE(Has(up, Effect::kPlaySound)) << "the animated image plays no sounds";
}

TEST(AnimMouse, AReleaseWithoutAPressIsNoClickAndTicksAskForFrames) {
  AnimWidget a;
  AnimUpdateLayout(a, Strip(30, 20, 1));
  EXPECT_EQ(Codes(AnimButtonUp(a, true)), V{MWN_RELEASED});
  EXPECT_TRUE(AnimFrameTimer(a).empty());
  AnimSetRunning(a, true);
  EXPECT_EQ(Codes(AnimFrameTimer(a)), V{MWN_CHANGED});
  EXPECT_EQ(a.frame, 0) << "the widget never steps by itself";
}

TEST(TextValues, CaptionsMustBeTerminatedWithin200Characters) {
  AssertRecorder rec;
  EXPECT_TRUE(CaptionValid(std::string(199, 'a').c_str()));
  EXPECT_FALSE(CaptionValid(std::string(200, 'a').c_str()));
  EXPECT_EQ(rec.only(), "Este buffer probablemente es invalido (¿no es NULL terminated?)");
  rec.clear();
  EXPECT_FALSE(CaptionValid(""));
  EXPECT_EQ(rec.only(), "Este buffer probablemente es invalido (¿no es NULL terminated?)");
  rec.clear();
  EXPECT_FALSE(CaptionValid(nullptr));
  EXPECT_EQ(rec.only(), "Puntero al buffer de texto invalido");
  rec.clear();

  EXPECT_TRUE(FaceNameValid(std::string(99, 'f').c_str()));
  EXPECT_FALSE(FaceNameValid(std::string(100, 'f').c_str()));
  EXPECT_EQ(rec.only(), "Este buffer probablemente es invalido (no es NULL terminated)");

  const char unterminated[4] = {'a', 'b', 'c', 'd'};
  EXPECT_EQ(BoundedLength(unterminated, 4), 4) << "never reads past the limit";
}

TEST(TextValues, OffsetsHeightsAndWeightsHaveTheirRanges) {
  AssertRecorder rec;
  EXPECT_FALSE(ShadowOffsetValid(0));
  EXPECT_EQ(rec.only(), "delay de la sombra fuera de rango");
  rec.clear();
  EXPECT_FALSE(ShadowOffsetValid(21));
  EXPECT_EQ(rec.only(), "delay de la sombra fuera de rango");
  EXPECT_TRUE(ShadowOffsetValid(1) && ShadowOffsetValid(20));
  rec.clear();
  EXPECT_FALSE(FontHeightValid(401));
  EXPECT_EQ(rec.only(), "Tamaño de fuente sale del rango permitido");
  EXPECT_TRUE(FontHeightValid(0) && FontHeightValid(400));
  rec.clear();
  EXPECT_FALSE(FontWeightValid(1001));
  EXPECT_FALSE(FontWeightValid(-1));
  EXPECT_EQ(rec.count(), 2u);
  EXPECT_EQ(rec.messages()[0], "tamaño de fuente invalido");
}

TEST(TextSizing, TheWindowKeepsRoomForTheShadowEvenWithoutOne) {
  const TextSizing s = TextWindowSize({40, 12}, {46, 13}, 3, true);
  EXPECT_TRUE(s.ready);
  EXPECT_EQ(s.windowWidth, 49);
  EXPECT_EQ(s.windowHeight, 16);
  EXPECT_FALSE(TextWindowSize({40, 12}, {46, 13}, 3, false).ready) << "no background yet";
  EXPECT_FALSE(TextWindowSize({1, 12}, {1, 13}, 3, true).ready);
}

TEST(TextPainting, ThePressedCaptionDropsOntoItsShadow) {
  TextWidget t;
  t.shadow = true;
  t.shadowOffset = 4;
  TextPaintPlan p = PlanTextPaint(t);
  EXPECT_TRUE(p.drawShadow);
  EXPECT_EQ(p.shadowX, 4);
  EXPECT_EQ(p.textX, 0);
  EXPECT_FALSE(p.hoverFont);

  t.hover = true;
  t.captured = true;
  p = PlanTextPaint(t);
  EXPECT_FALSE(p.drawShadow);
  EXPECT_EQ(p.textX, 4);
  EXPECT_EQ(p.textY, 4);
  EXPECT_TRUE(p.hoverFont);

  t.hover = false;  // held, pointer away: raised again, shadow back
  p = PlanTextPaint(t);
  EXPECT_TRUE(p.drawShadow);
  EXPECT_EQ(p.textX, 0);
  EXPECT_EQ(p.textColour, t.textColour);
  t.enabled = false;
  EXPECT_EQ(PlanTextPaint(t).textColour, ColourRgb(160, 160, 164));
}

}  // namespace
}  // namespace qv
