// Drawing packed pictures onto drawing contexts through DrawDib, and filling rectangles.
#include "graphics/himage_draw.h"

#include <gtest/gtest.h>

#include "support/assert_recorder.h"
#include "support/random_golden.h"
#include "system/random.h"
#include "win_test_support.h"

namespace qv {
namespace {

using test::Canvas;

std::uint32_t ColourOf(HIMAGE picture, int x, int y) {
  return test::Rgb(DibColours(picture)[*ImagePixel(picture, x, y)]);
}

TEST(ImageDrawToContext, DrawsTheSourceRectangleCountedFromTheTop) {
  PackedDib picture = test::IndexedPicture(16, 12);
  Canvas canvas(40, 30);
  ASSERT_TRUE(ImageDrawToContext(canvas.dc(), 3, 4, 6, 5, picture.get(), 2, 1, kRopSrcCopy));
  for (int y = 0; y < 5; ++y) {
    for (int x = 0; x < 6; ++x) {
      ASSERT_EQ(canvas.At(3 + x, 4 + y), ColourOf(picture.get(), 2 + x, 1 + y)) << x << "," << y;
    }
  }
  EXPECT_EQ(canvas.At(2, 4), 0x123456u) << "nothing drawn outside the rectangle";
  EXPECT_EQ(canvas.At(9, 9), 0x123456u);
}

TEST(ImageDrawToContext, OtherOperationsAreReportedAndDrawnAsCopies) {
  PackedDib picture = test::IndexedPicture(8, 8);
  Canvas canvas(8, 8);
  test::AssertRecorder rec;
  ImageDrawToContext(canvas.dc(), 0, 0, 8, 8, picture.get(), 0, 0, kRopSrcAnd);
  EXPECT_EQ(rec.only(), "otro rop distinto a este no es soportado en el modo no gdi");
  EXPECT_EQ(canvas.At(5, 6), ColourOf(picture.get(), 5, 6));
}

TEST(ImageFill, DrawsThePictureInPlaceOrFillsWithTheOperation) {
  PackedDib picture = test::IndexedPicture(20, 20);
  Canvas canvas(20, 20);
  const RECT rect{4, 5, 10, 12};
  ASSERT_TRUE(ImageFill(canvas.dc(), rect, picture.get(), kRopSrcCopy));
  EXPECT_EQ(canvas.At(4, 5), ColourOf(picture.get(), 4, 5));
  EXPECT_EQ(canvas.At(9, 11), ColourOf(picture.get(), 9, 11));
  EXPECT_EQ(canvas.At(10, 11), 0x123456u);

  ASSERT_TRUE(ImageFill(canvas.dc(), RECT{0, 0, 3, 3}, nullptr, BLACKNESS));
  EXPECT_EQ(canvas.At(2, 2), 0u);
  EXPECT_EQ(canvas.At(3, 3), 0x123456u);
}

// The random source gives the same numbers here as in the native build.
TEST(RandomSourceOnWindows, MatchesTheNativeGoldenValues) {
  SeedRandom(test::kGoldenSeed);
  for (double golden : test::kGoldenValues) EXPECT_DOUBLE_EQ(RandomUniform(), golden);
}

}  // namespace
}  // namespace qv
