// Source clipping and colour matching.
#include "widgets/widget_geometry.h"

#include <gtest/gtest.h>

#include <vector>

namespace qv {
namespace {

TEST(ClipCopy, AWindowLargerThanItsPictureReadsOnlyWhatExists) {
  // A 30 x 20 window over a 25 x 40 picture, copied from (5, 30).
  const CopyRect c = ClipCopy({0, 0, 5, 30, 30, 20}, 25, 40);
  EXPECT_EQ(c.width, 20);
  EXPECT_EQ(c.height, 10);
  EXPECT_EQ(c.sx, 5);
  EXPECT_EQ(c.dx, 0);
}

TEST(ClipCopy, NegativeSourceOriginsShiftTheDestinationToo) {
  const CopyRect c = ClipCopy({0, 0, -4, -6, 10, 10}, 100, 100);
  EXPECT_EQ(c.dx, 4);
  EXPECT_EQ(c.dy, 6);
  EXPECT_EQ(c.sx, 0);
  EXPECT_EQ(c.sy, 0);
  EXPECT_EQ(c.width, 6);
  EXPECT_EQ(c.height, 4);
}

TEST(ClipCopy, TheDestinationLimitKeepsTheCopyInsideTheWindow) {
  const CopyRect c = ClipCopy({-3, 8, 10, 10, 20, 20}, 100, 100, 12, 15);
  EXPECT_EQ(c.dx, 0);
  EXPECT_EQ(c.sx, 13);
  EXPECT_EQ(c.width, 12);
  EXPECT_EQ(c.height, 7);
  EXPECT_TRUE(ClipCopy({0, 0, 200, 0, 10, 10}, 100, 100).empty());
}

TEST(ColourMatch, ExactColoursFindTheirIndexAndOthersTheNearest) {
  const RgbQuad table[4] = {{0, 0, 0, 0}, {0, 0, 255, 0}, {255, 0, 0, 0}, {0, 0, 255, 0}};
  EXPECT_EQ(NearestColourIndex(table, 4, 0xFF0000), 1) << "the first of two equal entries";
  EXPECT_EQ(NearestColourIndex(table, 4, 0x0000F0), 2);
  EXPECT_EQ(NearestColourIndex(table, 4, 0x101010), 0);

  const std::vector<std::uint32_t> pixels = {0xFF0000, 0x0000FF, 0xFF0000, 0xFE0101};
  std::vector<std::uint8_t> out(pixels.size());
  MapToColourTable(pixels.data(), 4, table, 4, out.data());
  EXPECT_EQ(out, (std::vector<std::uint8_t>{1, 2, 1, 1}));
}

}  // namespace
}  // namespace qv
