// Where dragged and centred screens may stand.
#include <gtest/gtest.h>

#include "core/screen_fit.h"

namespace qv {
namespace {

struct Case {
  int x, y, width, height;
  int expectedX, expectedY;
};

TEST(ScreenFit, ADraggedScreenStaysWhollyOnTheDisplay) {
  // A 300 x 200 screen on 800 x 600: the last allowed corner is (500, 400).
  const Case cases[] = {
      {100, 100, 300, 200, 100, 100},   // inside: unchanged
      {700, 590, 300, 200, 500, 400},   // dragged below and right: stops at the edges
      {-50, -9999, 300, 200, 0, 0},     // above and left
      {500, 400, 300, 200, 500, 400},   // exactly at the edge
      {10, 10, 900, 700, 0, 0},         // larger than the display: top-left corner stays on it
      {-10, 300, 900, 100, 0, 300},
  };
  for (const Case& c : cases) {
    const ScreenSpot spot = KeepOnScreen(c.x, c.y, c.width, c.height, 800, 600);
    EXPECT_EQ(spot.x, c.expectedX) << c.x << "," << c.y;
    EXPECT_EQ(spot.y, c.expectedY) << c.x << "," << c.y;
  }
}

TEST(ScreenFit, CentringNeverPutsTheCornerOffTheDisplay) {
  EXPECT_EQ(CentreOnDisplay(300, 200, 800, 600).x, 250);
  EXPECT_EQ(CentreOnDisplay(300, 200, 800, 600).y, 200);
  EXPECT_EQ(CentreOnDisplay(1000, 700, 800, 600).x, 0);
  EXPECT_EQ(CentreOnDisplay(1000, 700, 800, 600).y, 0);
}

}  // namespace
}  // namespace qv
