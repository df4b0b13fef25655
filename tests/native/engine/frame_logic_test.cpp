// Box frame hit rules and resizing, preview and viewer sizes, and the picture reduction.
#include "puzzle/frame_logic.h"

#include <gtest/gtest.h>

#include <cstring>
#include <ostream>
#include <string>

#include "graphics/himage_ops.h"

namespace qv {

// Found by argument-dependent lookup, so beside FrameBox rather than in the unnamed namespace.
static bool operator==(const FrameBox& a, const FrameBox& b) {
  return a.x == b.x && a.y == b.y && a.width == b.width && a.height == b.height;
}
static void PrintTo(const FrameBox& f, std::ostream* os) {
  *os << f.x << "," << f.y << " " << f.width << "x" << f.height;
}

namespace {

constexpr int kTitle = 24;

TEST(BoxFrameDrag, PressPointPicksTheMode) {
  // A 300 x 300 frame: title strip and the band under it move; borders resize.
  EXPECT_EQ(FrameDragAt(150, 0, 300, 300, kTitle), FrameDrag::Move);
  EXPECT_EQ(FrameDragAt(150, kTitle + 5, 300, 300, kTitle), FrameDrag::Move);
  EXPECT_EQ(FrameDragAt(0, kTitle + 6, 300, 300, kTitle), FrameDrag::LeftEdge);
  EXPECT_EQ(FrameDragAt(5, 280, 300, 300, kTitle), FrameDrag::LeftEdge);   // y = h - 20
  EXPECT_EQ(FrameDragAt(5, 281, 300, 300, kTitle), FrameDrag::BottomLeft);
  EXPECT_EQ(FrameDragAt(294, 100, 300, 300, kTitle), FrameDrag::RightEdge);
  EXPECT_EQ(FrameDragAt(299, 281, 300, 300, kTitle), FrameDrag::BottomRight);
  EXPECT_EQ(FrameDragAt(19, 299, 300, 300, kTitle), FrameDrag::BottomLeft);
  EXPECT_EQ(FrameDragAt(20, 294, 300, 300, kTitle), FrameDrag::BottomEdge);
  EXPECT_EQ(FrameDragAt(280, 299, 300, 300, kTitle), FrameDrag::BottomEdge);  // x = w - 20
  EXPECT_EQ(FrameDragAt(281, 299, 300, 300, kTitle), FrameDrag::BottomRight);
  // The right border's lowest six rows belong to the bottom edge's corner rule.
  EXPECT_EQ(FrameDragAt(296, 296, 300, 300, kTitle), FrameDrag::BottomRight);
}

TEST(BoxFrameDrag, InsideOrOutsideSelectsNothing) {
  EXPECT_EQ(FrameDragAt(150, 150, 300, 300, kTitle), FrameDrag::None);
  EXPECT_EQ(FrameDragAt(-1, 100, 300, 300, kTitle), FrameDrag::None);
  EXPECT_EQ(FrameDragAt(100, 300, 300, 300, kTitle), FrameDrag::None);
}

// A 300 x 300 frame at (100, 50): resizing keeps the opposite edges, never going below the minimum.
TEST(BoxFrameDrag, ResizingKeepsTheOppositeEdgeAboveTheMinimum) {
  struct Case {
    FrameDrag drag;
    int dx, dy;
    FrameBox expected;
  };
  const FrameBox start{100, 50, 300, 300};
  const Case cases[] = {
      {FrameDrag::LeftEdge, -40, 25, {60, 50, 340, 300}},
      {FrameDrag::BottomLeft, 30, 40, {130, 50, 270, 340}},
      {FrameDrag::BottomRight, 20, -10, {100, 50, 320, 290}},
      {FrameDrag::BottomEdge, 77, 5, {100, 50, 300, 305}},
      {FrameDrag::Move, -30, 12, {70, 62, 300, 300}},
      {FrameDrag::LeftEdge, 1000, 0, {400 - kBoxMinWidth, 50, kBoxMinWidth, 300}},
      {FrameDrag::BottomRight, -1000, -1000, {100, 50, kBoxMinWidth, kBoxMinHeight}},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(DraggedFrame(c.drag, start, c.dx, c.dy), c.expected)
        << static_cast<int>(c.drag) << " by " << c.dx << "," << c.dy;
  }
}

TEST(BoxFrameLayout, AreaAndButtonsFollowTheSize) {
  const FrameBox area = BoxAreaRect(300, 300, kTitle);
  EXPECT_EQ(area.x, 6);
  EXPECT_EQ(area.y, kTitle + 6);
  EXPECT_EQ(area.width, 288);
  EXPECT_EQ(area.height, 288 - kTitle);
  const FrameBox close = BoxCloseButtonRect(400, 22);
  const FrameBox rename = BoxRenameButtonRect(400, 22);
  EXPECT_EQ(close.x + close.width, 400 - kBoxBorder);
  EXPECT_LT(rename.x + rename.width, close.x);
  EXPECT_LE(close.y + close.height, kTitle);
}

TEST(BoxName, DefaultIsTheWordTheNumberAndOneBlank) {
  EXPECT_EQ(DefaultBoxName("Box", 0), "Box1 ");
  EXPECT_EQ(DefaultBoxName("Box", 5), "Box6 ");
  EXPECT_EQ(DefaultBoxName("Scatola", 2), "Scatola3 ");
  EXPECT_EQ(DefaultBoxName("Box", -1), "");
  EXPECT_EQ(DefaultBoxName("Box", 6), "");
  const std::string tooLong = DefaultBoxName(std::string(60, 'w'), 3);
  EXPECT_EQ(tooLong.size(), kBoxNameMaxLength);
  EXPECT_EQ(tooLong.substr(tooLong.size() - 2), "4 ");
}

TEST(BoxName, OnlyAnUntouchedNameFollowsTheLanguage) {
  EXPECT_EQ(RelabelledBoxName("Box2 ", "Box", "Caja", 1), "Caja2 ");
  EXPECT_EQ(RelabelledBoxName("Caja2 ", "Caja", "Box", 1), "Box2 ");
  // Another box's default name, the name without its blank, and the player's names stay.
  EXPECT_EQ(RelabelledBoxName("Box3 ", "Box", "Caja", 1), "Box3 ");
  EXPECT_EQ(RelabelledBoxName("Box2", "Box", "Caja", 1), "Box2");
  EXPECT_EQ(RelabelledBoxName("Edges", "Box", "Caja", 1), "Edges");
  EXPECT_EQ(RelabelledBoxName("", "Box", "Caja", 1), "");
}

TEST(PreviewSize, FitsTheModelBox) {
  auto is = [](PictureSize s, int w, int h) { return s.width == w && s.height == h; };
  EXPECT_TRUE(is(PreviewSizeFor(480, 360), 240, 180));
  EXPECT_TRUE(is(PreviewSizeFor(300, 300), 180, 180));
  EXPECT_TRUE(is(PreviewSizeFor(800, 200), 240, 60));
  EXPECT_TRUE(is(PreviewSizeFor(100, 400), 45, 180));
  EXPECT_TRUE(is(PreviewSizeFor(120, 90), 240, 180));  // small pictures are enlarged
  EXPECT_TRUE(is(PreviewSizeFor(0, 0), 240, 180));     // no picture
  EXPECT_TRUE(is(PreviewSizeFor(7, 3), 240, 102));     // truncated, not rounded
}

TEST(ViewerSize, FillsTheScreenWidthUnlessTooTall) {
  auto is = [](PictureSize s, int w, int h) { return s.width == w && s.height == h; };
  EXPECT_TRUE(is(ViewerSizeFor(1024, 768, 640, 480), 1024, 768));
  EXPECT_TRUE(is(ViewerSizeFor(1024, 768, 800, 400), 1024, 512));
  EXPECT_TRUE(is(ViewerSizeFor(1024, 768, 400, 800), 384, 768));
  EXPECT_TRUE(is(ViewerSizeFor(1024, 768, 0, 10), 0, 0));
}

TEST(ScalePicture, HalvesAnEightBitPictureKeepingColours) {
  PackedDib source;
  ASSERT_TRUE(source.Allocate(4, 2));
  DibColours(source.get())[7] = RgbQuad{1, 2, 3, 0};
  DibHeader(source.get())->biClrUsed = 256;
  for (int y = 0; y < 2; ++y) {
    for (int x = 0; x < 4; ++x) *ImagePixel(source.get(), x, y) = static_cast<std::uint8_t>(10 * y + x);
  }
  PackedDib small;
  ASSERT_TRUE(ScalePicture(source.get(), 2, 1, small));
  EXPECT_EQ(ImageWidth(small.get()), 2);
  EXPECT_EQ(ImageHeight(small.get()), 1);
  EXPECT_EQ(ImageBitCount(small.get()), 8);
  EXPECT_EQ(*ImagePixel(small.get(), 0, 0), 0);
  EXPECT_EQ(*ImagePixel(small.get(), 1, 0), 2);
  EXPECT_EQ(DibColours(small.get())[7].rgbGreen, 2);
}

TEST(ScalePicture, RefusesBadInputLeavingTheTargetAlone) {
  PackedDib source;
  ASSERT_TRUE(source.Allocate(4, 4));
  PackedDib out;
  ASSERT_TRUE(out.Allocate(3, 3));
  HIMAGE before = out.get();
  EXPECT_FALSE(ScalePicture(nullptr, 2, 2, out));
  EXPECT_FALSE(ScalePicture(source.get(), 0, 2, out));
  DibHeader(source.get())->biBitCount = 4;
  EXPECT_FALSE(ScalePicture(source.get(), 2, 2, out));
  EXPECT_EQ(out.get(), before);
}

}  // namespace
}  // namespace qv
