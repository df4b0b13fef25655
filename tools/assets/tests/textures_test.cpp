// The table textures: seamless when tiled, calm, and told apart from one another.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <string>

#include "assets/catalogue.h"
#include "assets/textures.h"
#include "graphics/resource_file.h"

namespace qv::assets {
namespace {

int Difference(const Rgb& a, const Rgb& b) {
  return std::abs(a.r - b.r) + std::abs(a.g - b.g) + std::abs(a.b - b.b);
}

double Luma(const Rgb& c) { return 0.299 * c.r + 0.587 * c.g + 0.114 * c.b; }

class EachTexture : public ::testing::TestWithParam<int> {
 protected:
  void SetUp() override {
    image_ = MakeTexture(GetParam());
    ASSERT_EQ(image_.width, 100);
    ASSERT_EQ(image_.height, 100);
    ASSERT_FALSE(image_.palette.empty());
    ASSERT_LE(image_.palette.size(), 256u);
    shown_ = Expand(image_);
  }
  Image8 image_;
  RgbImage shown_;
};

TEST_P(EachTexture, MeetsItselfWithoutASeam) {
  // Across the wrap the step from one pixel to the next must look like any step inside.
  double inside = 0, across = 0;
  int insideCount = 0;
  for (int y = 0; y < 100; ++y) {
    for (int x = 0; x + 1 < 100; ++x) {
      inside += Difference(shown_.at(x, y), shown_.at(x + 1, y));
      inside += Difference(shown_.at(y, x), shown_.at(y, x + 1));
      insideCount += 2;
    }
    across += Difference(shown_.at(99, y), shown_.at(0, y));
    across += Difference(shown_.at(y, 99), shown_.at(y, 0));
  }
  inside /= insideCount;
  across /= 200;
  EXPECT_LE(across, inside * 1.6 + 2) << TextureName(GetParam()) << ": inside " << inside;
}

TEST_P(EachTexture, IsCalmEnoughForPiecesToStandOut) {
  double sum = 0, squares = 0;
  for (const Rgb& c : shown_.pixels) {
    sum += Luma(c);
    squares += Luma(c) * Luma(c);
  }
  const double mean = sum / shown_.pixels.size();
  const double spread = std::sqrt(squares / shown_.pixels.size() - mean * mean);
  EXPECT_LT(spread, 16) << TextureName(GetParam());
  EXPECT_GT(spread, 1) << TextureName(GetParam()) << " has no grain at all";
}

INSTANTIATE_TEST_SUITE_P(AllTen, EachTexture, ::testing::Range(0, kTextureCount));

Rgb MeanColour(const RgbImage& image) {
  double r = 0, g = 0, b = 0;
  for (const Rgb& c : image.pixels) r += c.r, g += c.g, b += c.b;
  const double n = static_cast<double>(image.pixels.size());
  return {static_cast<std::uint8_t>(r / n), static_cast<std::uint8_t>(g / n), static_cast<std::uint8_t>(b / n)};
}

TEST(Textures, TheTenAreDistinctMaterialsAndTheDefaultIsGreenFelt) {
  std::vector<RgbImage> shown;
  for (int i = 0; i < kTextureCount; ++i) shown.push_back(Expand(MakeTexture(i)));
  for (int a = 0; a < kTextureCount; ++a) {
    for (int b = a + 1; b < kTextureCount; ++b) {
      EXPECT_GE(Difference(MeanColour(shown[a]), MeanColour(shown[b])), 20)
          << TextureName(a) << " and " << TextureName(b) << " look alike";
    }
  }
  const Rgb felt = MeanColour(shown[0]);
  EXPECT_GT(felt.g, felt.r + 30);
  EXPECT_GT(felt.g, felt.b + 20);
}

// The build's resource file holds each texture, colours and rows, under its identifier.
TEST(Textures, AreInTheResourceFileUnderTheirIdentifiers) {
  ResourceFile file;
  ASSERT_TRUE(file.Open(QV_BUILT_RF));
  for (int i = 0; i < kTextureCount; ++i) {
    SCOPED_TRACE("texture " + std::to_string(i));
    const Image8 texture = MakeTexture(i);
    PackedDib dib;
    ASSERT_TRUE(file.LoadPicture(kFirstTextureId + static_cast<std::uint32_t>(i), dib));
    const BitmapInfoHeader* h = DibHeader(dib.get());
    ASSERT_EQ(h->biWidth, texture.width);
    ASSERT_EQ(h->biHeight, texture.height);
    ASSERT_EQ(h->biClrUsed, texture.palette.size());
    for (std::size_t c = 0; c < texture.palette.size(); ++c) {
      const RgbQuad q = DibColours(dib.get())[c];
      ASSERT_EQ((Rgb{q.rgbRed, q.rgbGreen, q.rgbBlue}), texture.palette[c]) << "colour " << c;
    }
    const std::vector<std::uint8_t> rows = BottomUpRows(texture);
    ASSERT_EQ(h->biSizeImage, rows.size());
    EXPECT_EQ(std::memcmp(DibPixels(dib.get()), rows.data(), rows.size()), 0);
  }
}

}  // namespace
}  // namespace qv::assets
