// Slide widget: value rules, the drag value against the set value, layout and knob placement.
#include "widgets/slide_logic.h"

#include <gtest/gtest.h>

#include "effects_matchers.h"
#include "support/assert_recorder.h"
#include "widgets/widget_messages.h"

namespace qv {
namespace {

using test::Codes;
using test::Has;
using V = std::vector<int>;

// A horizontal track from (100, 50) to (300, 50) with a 20 x 10 knob.
SlideWidget HorizontalSlide() {
  SlideWidget s;
  SlideSetStart(s, {100, 50});
  SlideSetEnd(s, {300, 50});
  SlideLayout(s, true, true, 20, 10);
  return s;
}

TEST(SlideValues, StepRulesGiveHalfTheRange) {
  SlideWidget s;
  SlideSetStep(s, 0);
  EXPECT_EQ(s.step, 50);
  SlideSetStep(s, 101);
  EXPECT_EQ(s.step, 50);
  SlideSetStep(s, 100);
  EXPECT_EQ(s.step, 100) << "a step equal to the range is kept";
  SlideSetMaximum(s, 30);
  EXPECT_EQ(s.step, 15);
  EXPECT_EQ(s.value, 30);
}

TEST(SlideValues, AMaximumBelowTheMinimumMovesTheMinimumAndTheValueToIt) {
  SlideWidget s;
  s.minimum = 20;
  SlideSetMaximum(s, 10);
  EXPECT_EQ(s.minimum, 10);
  EXPECT_EQ(s.value, 10);
  EXPECT_EQ(s.step, 0);
  EXPECT_TRUE(SlideSetValue(s, 37)) << "a zero step must not divide by zero";
  EXPECT_EQ(s.value, 10);
  SlideSetMinimum(s, 40);
  EXPECT_EQ(s.maximum, 40);
  EXPECT_EQ(s.value, 40);
}

TEST(SlideValues, TheDragAddsHalfAStepWhereTheMessageSnaps) {
  SlideWidget s;
  EXPECT_EQ(SlideDragValue(s, 0.5), 52);
  SlideSetValue(s, 52);
  EXPECT_EQ(s.value, 50);
  SlideSetValue(s, -7);
  EXPECT_EQ(s.value, 0);
  EXPECT_EQ(SlideDragValue(s, 1.0), 100);
  EXPECT_EQ(SlideDragValue(s, 0.99), 100) << "99 + 2.5 truncated, clamped to the maximum";
  EXPECT_EQ(SlideDragValue(s, -0.1), 0);
  EXPECT_EQ(SlideDragValue(s, 0.0), 2);
}

TEST(SlideTrack, PointsTravelAsSignedWords) {
  const SlidePoint p{-5, 300};
  EXPECT_EQ(PackSlidePoint(p), 0x012CFFFBu);
  EXPECT_EQ(UnpackSlidePoint(0x012CFFFBu), p);
  SlideWidget s;
  SlideSetEnd(s, {10, 20});
  SlideSetStart(s, {4, 6});
  EXPECT_EQ(SlideEndPoint(s), (SlidePoint{10, 20})) << "moving the start keeps the end";
  EXPECT_EQ(s.vector, (SlidePoint{6, 14}));
  EXPECT_FLOAT_EQ(s.squaredLength, 36 + 196);
}

TEST(SlideTrack, AnUpwardTrackPutsTheWindowTopAtTheEndPoint) {
  SlideWidget s;
  SlideSetStart(s, {69, 236});
  SlideSetEnd(s, {69, 100});
  SlideLayout(s, true, true, 30, 18);
  ASSERT_TRUE(s.laidOut);
  EXPECT_EQ(s.windowOrigin, (SlidePoint{54, 91}));
  EXPECT_EQ(s.windowWidth, 30);
  EXPECT_EQ(s.windowHeight, 136 + 18);
  EXPECT_EQ(s.knobOrigin, (SlidePoint{15, 145}));
  // The value 50 of 0 ... 100 sits halfway; the minimum at the start (bottom).
  EXPECT_EQ(s.knobPosition, (SlidePoint{0, 145 - 68 - 9}));
  s.value = 0;
  SlidePlaceKnob(s);
  EXPECT_EQ(s.knobPosition.y, 145 - 9);
  s.value = 100;
  SlidePlaceKnob(s);
  EXPECT_EQ(s.knobPosition.y, 0) << "the maximum at the end (top)";
}

TEST(SlideTrack, WithoutATrackOrPicturesItIsABlack50SquareAtTheStart) {
  SlideWidget s;
  SlideSetStart(s, {30, 40});
  SlideSetEnd(s, {30, 40});
  Effects e = SlideLayout(s, true, true, 20, 10);
  EXPECT_FALSE(s.laidOut);
  EXPECT_EQ(s.windowOrigin, (SlidePoint{30, 40}));
  EXPECT_EQ(s.windowWidth, 50);
  EXPECT_TRUE(Has(e, Effect::kRepaint));

  SlideWidget h = HorizontalSlide();
  h.hovering = true;
  e = SlideLayout(h, false, true, 20, 10);
  EXPECT_FALSE(h.laidOut);
  EXPECT_FALSE(h.hovering);
  EXPECT_TRUE(Has(e, Effect::kKillTimer, kHoverTimer));
  EXPECT_FALSE(SlideTakesMouse(h));
}

TEST(SlideDrag, OnlyAPressOnTheKnobStartsADragThatFollowsThePointer) {
  SlideWidget s = HorizontalSlide();  // window at (90, 45), knob origin (10, 5)
  EXPECT_EQ(s.knobPosition, (SlidePoint{100, 0}));
  EXPECT_TRUE(SlideButtonDown(s, 99, 5).empty());
  Effects down = SlideButtonDown(s, 103, 4);  // 7 pixels left of the knob's centre
  EXPECT_EQ(Codes(down), V{MWN_PRESSED});
  EXPECT_TRUE(Has(down, Effect::kCapture));
  EXPECT_EQ(s.grab, (SlidePoint{3, 4}));

  bool changed = false;
  Effects move = SlideDragTo(s, 103 + 50, 30, changed);  // a quarter of the track further
  EXPECT_TRUE(changed);
  EXPECT_EQ(Codes(move), V{MWN_CLICKED});
  EXPECT_EQ(s.value, 77) << "75 + half a step, truncated";
  EXPECT_EQ(s.knobPosition.x, 10 + 154 - 10);
  SlideDragTo(s, 103 + 50, 0, changed);
  EXPECT_FALSE(changed) << "moving across the track changes nothing";
  SlideDragTo(s, 5000, 5, changed);
  EXPECT_EQ(s.value, 100);

  Effects up = SlideButtonUp(s, false);
  EXPECT_EQ(Codes(up), (V{MWN_RELEASED, MWN_LEAVE}));
  EXPECT_FALSE(s.dragging);
  EXPECT_FALSE(s.hovering);
}

TEST(SlideHover, TheKnobNotTheWindowIsWhatThePointerHovers) {
  SlideWidget s = HorizontalSlide();
  EXPECT_TRUE(SlideHoverMove(s, 50, 5).empty());
  Effects in = SlideHoverMove(s, 105, 5);
  EXPECT_EQ(Codes(in), V{MWN_ENTER});
  EXPECT_TRUE(Has(in, Effect::kStartTimer, kHoverTimer));
  EXPECT_TRUE(SlideHoverTimer(s, true, true).empty());
  EXPECT_EQ(Codes(SlideHoverTimer(s, true, false)), V{MWN_LEAVE});
  EXPECT_TRUE(SlideHoverTimer(s, true, false).empty());
}

TEST(SlideChecks, FrameRowsAndColumnsReportTheirMessages) {
  test::AssertRecorder rec;
  EXPECT_FALSE(SlideFrameValid(2, 2));
  EXPECT_EQ(rec.only(), "Numero de Cuadro enviado al slide es invalido");
  rec.clear();
  EXPECT_FALSE(SlideRowsValid(0));
  EXPECT_EQ(rec.only(), "Numero de filas enviado es invalido");
  rec.clear();
  EXPECT_FALSE(SlideColumnsValid(-2));
  EXPECT_EQ(rec.only(), "Numero de columnas enviado es invalido");
}

}  // namespace
}  // namespace qv
