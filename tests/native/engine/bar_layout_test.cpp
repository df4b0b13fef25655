// The bars' geometry at two screen sizes, their slide-out frames and the hide decision.
#include <gtest/gtest.h>

#include "screens/bar_layout.h"

namespace qv {
namespace {

TEST(BarLayout, ToolBarAt800x600And1920x1080) {
  BarLayout t = ToolBarLayout(800, 600);
  EXPECT_EQ(t.strip.x, 0);
  EXPECT_EQ(t.strip.y, 78);
  EXPECT_EQ(t.strip.width, 25);
  EXPECT_EQ(t.strip.height, 497);
  EXPECT_EQ(t.panel.width, 98);
  EXPECT_EQ(t.panel.height, 522);
  EXPECT_EQ(t.label.y, 230 - 78);  // centred on the screen, in the strip's coordinates
  const int at600[] = {69, 173, 278, 382};  // not evenly spaced: truncated after multiplying
  ASSERT_EQ(t.buttonCount, 4);
  for (int i = 0; i < 4; ++i) {
    EXPECT_EQ(t.buttons[i].x, 0);
    EXPECT_EQ(t.buttons[i].y, at600[i]) << i;
  }
  EXPECT_EQ(t.buttonImages[kSolveButton], 127);
  EXPECT_EQ(t.buttonImages[kHonourButton], 113);

  t = ToolBarLayout(1920, 1080);
  EXPECT_EQ(t.strip.height, 977);
  EXPECT_EQ(t.panel.height, 1002);
  EXPECT_EQ(t.label.y, 470 - 78);
  const int at1080[] = {165, 365, 566, 766};
  for (int i = 0; i < 4; ++i) EXPECT_EQ(t.buttons[i].y, at1080[i]) << i;
}

TEST(BarLayout, OptionBarKeepsHelpMagnifierAndQuitAtTheQuarters) {
  BarLayout o = OptionBarLayout(800, 600);
  EXPECT_EQ(o.strip.y, 575);
  EXPECT_EQ(o.strip.width, 800);
  EXPECT_EQ(o.strip.height, 25);
  EXPECT_EQ(o.panel.y, 497);
  EXPECT_EQ(o.panel.height, 103);
  EXPECT_EQ(o.label.x, 348);
  EXPECT_EQ(o.label.y, 0);
  const int at800[] = {165, 265, 365, 465, 565};
  const int images[] = {115, 257, 126, 258, 128};
  ASSERT_EQ(o.buttonCount, 5);
  for (int i = 0; i < 5; ++i) {
    EXPECT_EQ(o.buttons[i].x, at800[i]) << i;
    EXPECT_EQ(o.buttons[i].y, 27);
    EXPECT_EQ(o.buttonImages[i], images[i]);
  }
  o = OptionBarLayout(1920, 1080);
  EXPECT_EQ(o.panel.y, 977);
  EXPECT_EQ(o.label.x, 908);
  const int at1920[] = {445, 685, 925, 1165, 1405};
  for (int i = 0; i < 5; ++i) EXPECT_EQ(o.buttons[i].x, at1920[i]) << i;
}

TEST(BarSlide, FramesRunFromOutsideTheEdgeToRest) {
  const BarLayout t = ToolBarLayout(800, 600);
  ASSERT_EQ(SlideFrameCount(BarKind::Tool), 99);
  TileGrid first = SlideFrameTiles(t, BarKind::Tool, 0);
  TileGrid last = SlideFrameTiles(t, BarKind::Tool, 98);
  EXPECT_EQ(first.firstX, -98);
  EXPECT_EQ(last.firstX, 0);
  // One column of 95-pixel tiles down the panel: 0, 95, ..., 475 < 522.
  EXPECT_EQ(last.columns, 1);
  EXPECT_EQ(last.rows, 6);
  EXPECT_EQ(last.stepY, 95);

  const BarLayout o = OptionBarLayout(800, 600);
  ASSERT_EQ(SlideFrameCount(BarKind::Option), 104);
  EXPECT_EQ(SlideFrameTiles(o, BarKind::Option, 0).firstY, 103);
  last = SlideFrameTiles(o, BarKind::Option, 103);
  EXPECT_EQ(last.firstY, 0);
  EXPECT_EQ(last.rows, 1);
  EXPECT_EQ(last.columns, 8);  // 0, 103, ..., 721 < 800
  EXPECT_EQ(SlideFrameTiles(o, BarKind::Option, 104).columns, 0);
  EXPECT_EQ(SlideFrameTiles(o, BarKind::Option, -1).columns, 0);

  EXPECT_EQ(TilesCovering(0, 600, 25, 139).rows, 0);
  EXPECT_EQ(TilesCovering(25, 600, 0, 139).columns, 0);
}

TEST(BarSlide, OutOnceThenHiddenOnlyWhenThePointerLeavesThePanel) {
  BarSlide s;
  EXPECT_TRUE(BeginSlideOut(s));
  EXPECT_FALSE(BeginSlideOut(s));  // moving over the strip again changes nothing
  EXPECT_FALSE(HideOnTimer(s, {0, 0}, 98, 522));
  EXPECT_FALSE(HideOnTimer(s, {97, 521}, 98, 522));
  EXPECT_TRUE(s.shown);
  EXPECT_TRUE(HideOnTimer(s, {98, 100}, 98, 522));
  EXPECT_FALSE(s.shown);
  EXPECT_TRUE(BeginSlideOut(s));
  EXPECT_TRUE(HideOnTimer(s, {10, -1}, 800, 103));
  EXPECT_TRUE(BeginSlideOut(s));
  EXPECT_TRUE(HideOnTimer(s, {-1, 10}, 800, 103));
}

}  // namespace
}  // namespace qv
