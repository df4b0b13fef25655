// Fitting photographs: the fitted size and the area-averaging filter.
#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "photo/photo_fit.h"

namespace qv::photo {
namespace {

void ExpectSize(std::int64_t w, std::int64_t h, int fw, int fh, const char* why = "") {
  const FitSize size = FittedPhotoSize(w, h);
  EXPECT_TRUE(size.ok) << w << " x " << h << " " << why;
  EXPECT_EQ(size.width, fw) << w << " x " << h << " " << why;
  EXPECT_EQ(size.height, fh) << w << " x " << h << " " << why;
}

TEST(PhotoFitSize, TheLongSideBecomes1024SmallerPicturesKeepTheirSizeHugeOnesAreRefused) {
  ExpectSize(1920, 1080, 1024, 576);
  ExpectSize(1080, 1920, 576, 1024);
  ExpectSize(3000, 1000, 1024, 341);  // 341.33 rounds down
  ExpectSize(2048, 1023, 1024, 512);  // 511.5 rounds up
  ExpectSize(1025, 1025, 1024, 1024);
  ExpectSize(1024, 793, 1024, 793);
  ExpectSize(300, 200, 300, 200);
  ExpectSize(1, 1, 1, 1);
  ExpectSize(1, 50000, 1, 1024, "a thin strip keeps at least one pixel");
  ExpectSize(90000000, 1, 1024, 1);
  ExpectSize(10000, 10000, 1024, 1024, "exactly 100 megapixels is still taken");
  // Empty sizes and sizes over 100 megapixels are refused, and huge ones do not overflow.
  for (auto [w, h] : std::vector<std::pair<std::int64_t, std::int64_t>>{
           {0, 10}, {10, 0}, {-5, 10}, {10001, 10000}, {100000001, 1}, {std::int64_t{1} << 40, std::int64_t{1} << 40},
           {INT64_MAX, 2}}) {
    EXPECT_FALSE(FittedPhotoSize(w, h).ok) << w << " x " << h;
  }
}

TEST(PhotoFit, AveragesTheAreaEachOutputPixelCoversNotTheNearestPixel) {
  // 1536 x 3 columns alternating black and white, shrunk by 1.5 to 1024 x 2: the first output
  // pixel covers a black pixel and half a white one, the third a white one and half a black one.
  const int w = 1536, h = 3;
  std::vector<std::uint8_t> rows(static_cast<std::size_t>(w) * h * 3);
  for (int y = 0; y < h; ++y) {
    for (int x = 0; x < w; ++x) {
      for (int k = 0; k < 3; ++k) rows[(static_cast<std::size_t>(y) * w + x) * 3 + k] = x % 2 ? 255 : 0;
    }
  }
  BgrPicture out;
  ASSERT_TRUE(FitPhoto(PixelRows{rows.data(), w, h, w * 3, 3}, out));
  ASSERT_EQ(out.width, 1024);
  ASSERT_EQ(out.height, 2);
  for (int y = 0; y < 2; ++y) {
    EXPECT_EQ(out.pixel(0, y)[0], 85);
    EXPECT_EQ(out.pixel(1, y)[1], 85);
    EXPECT_EQ(out.pixel(2, y)[2], 170);
    EXPECT_EQ(out.pixel(1023, y)[0], 170);
  }
}

TEST(PhotoFit, ReadsFourBytePixelsAndPaddedOrBottomUpRows) {
  // 2 x 2 pixels of B, G, R, alpha, rows 12 bytes apart; a picture that small is only copied.
  std::vector<std::uint8_t> rows = {1, 2, 3, 99, 4, 5, 6, 99, 0, 0, 0, 0,
                                    7, 8, 9, 99, 10, 11, 12, 99, 0, 0, 0, 0};
  BgrPicture out;
  ASSERT_TRUE(FitPhoto(PixelRows{rows.data(), 2, 2, 12, 4}, out));
  EXPECT_EQ(out.bytes, (std::vector<std::uint8_t>{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}));
  ASSERT_TRUE(FitPhoto(PixelRows{rows.data() + 12, 2, 2, -12, 4}, out));
  EXPECT_EQ(out.bytes, (std::vector<std::uint8_t>{7, 8, 9, 10, 11, 12, 1, 2, 3, 4, 5, 6}));
}

TEST(PhotoFit, RefusesBadRowsAndHugeSizesBeforeReadingOrAllocating) {
  std::vector<std::uint8_t> small(64, 7);
  BgrPicture out(1, 1);
  // The sizes claim far more than the buffer holds: only the refusal keeps this from reading it.
  EXPECT_FALSE(FitPhoto(PixelRows{small.data(), 20000, 10000, 60000, 3}, out));
  EXPECT_FALSE(FitPhoto(PixelRows{nullptr, 2, 2, 6, 3}, out));
  EXPECT_FALSE(FitPhoto(PixelRows{small.data(), 2, 2, 5, 3}, out)) << "rows overlap";
  EXPECT_FALSE(FitPhoto(PixelRows{small.data(), 2, 2, 8, 2}, out)) << "two bytes a pixel";
  EXPECT_FALSE(FitPhoto(PixelRows{small.data(), 0, 2, 8, 4}, out));
  EXPECT_EQ(out.width, 1) << "a refusal leaves the output as it was";
}

}  // namespace
}  // namespace qv::photo
