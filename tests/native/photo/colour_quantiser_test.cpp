// The colour reduction: its limits, exactness on few colours, determinism and the DIB it gives.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <random>
#include <set>

#include "photo/colour_quantiser.h"

namespace qv::photo {
namespace {

// A seeded stand-in for a photograph: smooth gradients, a few discs and grain, far more than
// 256 colours.
BgrPicture SyntheticPhoto(int width, int height, unsigned seed) {
  std::mt19937 random(seed);
  std::normal_distribution<float> grain(0.0f, 6.0f);
  BgrPicture picture(width, height);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      const float u = static_cast<float>(x) / width, v = static_cast<float>(y) / height;
      const bool disc = std::hypot(u - 0.6f, v - 0.4f) < 0.2f;
      const float base[3] = {disc ? 40 + 150 * v : 200 * u, disc ? 160.0f : 120 + 100 * v, disc ? 30.0f : 255 * u * v};
      for (int k = 0; k < 3; ++k) {
        picture.pixel(x, y)[k] = static_cast<std::uint8_t>(std::lround(std::clamp(base[k] + grain(random), 0.0f, 255.0f)));
      }
    }
  }
  return picture;
}

double Psnr(const BgrPicture& original, const QuantisedPicture& reduced) {
  double sum = 0;
  for (std::size_t i = 0; i < reduced.indices.size(); ++i) {
    const RgbQuad& c = reduced.colours[reduced.indices[i]];
    const int d[3] = {original.bytes[i * 3] - c.rgbBlue, original.bytes[i * 3 + 1] - c.rgbGreen,
                      original.bytes[i * 3 + 2] - c.rgbRed};
    sum += d[0] * d[0] + d[1] * d[1] + d[2] * d[2];
  }
  const double mse = sum / (reduced.indices.size() * 3.0);
  return mse == 0 ? 99 : 10 * std::log10(255.0 * 255.0 / mse);
}

bool SameResult(const QuantisedPicture& a, const QuantisedPicture& b) {
  return a.width == b.width && a.height == b.height && a.coloursUsed == b.coloursUsed && a.indices == b.indices &&
         std::memcmp(a.colours.data(), b.colours.data(), sizeof(RgbQuad) * a.colours.size()) == 0;
}

TEST(ColourQuantiser, APhotographGetsAtMost256ColoursTheSameEveryTime) {
  const unsigned seed = std::random_device{}();
  SCOPED_TRACE("seed " + std::to_string(seed));
  const BgrPicture photo = SyntheticPhoto(331, 217, seed);
  QuantisedPicture first, second;
  ASSERT_TRUE(QuantisePicture(photo, first));
  ASSERT_TRUE(QuantisePicture(photo, second));
  EXPECT_TRUE(SameResult(first, second));
  EXPECT_EQ(first.width, 331);
  EXPECT_EQ(first.height, 217);
  ASSERT_EQ(first.indices.size(), 331u * 217u);
  EXPECT_GT(first.coloursUsed, 200) << "a photograph should get most of the table";
  EXPECT_LE(first.coloursUsed, 256);
  for (std::uint8_t index : first.indices) ASSERT_LT(index, first.coloursUsed);
  for (int i = first.coloursUsed; i < 256; ++i) {
    EXPECT_EQ(first.colours[i].rgbRed | first.colours[i].rgbGreen | first.colours[i].rgbBlue, 0) << i;
  }
  // Grain of 6 levels alone would allow about 32 dB; a poor palette falls far below.
  EXPECT_GT(Psnr(photo, first), 34.0);
  QuantisedPicture plain;
  ASSERT_TRUE(QuantisePicture(photo, plain, 0.0f));
  EXPECT_FALSE(SameResult(first, plain)) << "the dithering level must change the mapping";
}

TEST(ColourQuantiser, PicturesOfFewColoursKeepThemExactly) {
  BgrPicture flat(40, 30);
  for (std::size_t i = 0; i < flat.bytes.size(); i += 3) flat.bytes[i] = 12, flat.bytes[i + 1] = 200, flat.bytes[i + 2] = 77;
  QuantisedPicture out;
  ASSERT_TRUE(QuantisePicture(flat, out));
  EXPECT_EQ(out.coloursUsed, 1);
  EXPECT_EQ(Psnr(flat, out), 99) << "every pixel keeps its colour exactly";

  // Two colours so close that a coarse histogram would merge them, in a checkerboard that error
  // diffusion would otherwise mix.
  BgrPicture two(41, 29);
  for (int y = 0; y < two.height; ++y) {
    for (int x = 0; x < two.width; ++x) {
      const std::uint8_t v = (x + y) % 2 ? 10 : 11;
      two.pixel(x, y)[0] = v, two.pixel(x, y)[1] = v, two.pixel(x, y)[2] = static_cast<std::uint8_t>(v + 1);
    }
  }
  ASSERT_TRUE(QuantisePicture(two, out));
  EXPECT_EQ(out.coloursUsed, 2);
  EXPECT_EQ(Psnr(two, out), 99);

  // 256 distinct colours still fit exactly; the 257th sends the picture through the reduction.
  BgrPicture many(257, 1);
  for (int x = 0; x < 257; ++x) many.pixel(x, 0)[0] = static_cast<std::uint8_t>(x), many.pixel(x, 0)[1] = x == 256 ? 1 : 0;
  BgrPicture exact = many;
  exact.width = 256;
  exact.bytes.resize(256 * 3);
  ASSERT_TRUE(QuantisePicture(exact, out));
  EXPECT_EQ(out.coloursUsed, 256);
  EXPECT_EQ(Psnr(exact, out), 99);
  ASSERT_TRUE(QuantisePicture(many, out));
  EXPECT_LE(out.coloursUsed, 256);
  EXPECT_GT(Psnr(many, out), 45.0);
}

TEST(ColourQuantiser, RefusesEmptyAndInconsistentPictures) {
  QuantisedPicture out;
  out.width = 5;
  BgrPicture empty, torn(4, 4), lying(1, 1);
  torn.bytes.resize(40);
  lying.width = 20000, lying.height = 20000;
  for (const BgrPicture* bad : {&empty, &torn, &lying}) EXPECT_FALSE(QuantisePicture(*bad, out));
  EXPECT_EQ(out.width, 5) << "a refusal leaves the output as it was";
}

TEST(ColourQuantiser, GivesAnEightBitDibWithAFullTableAndBottomUpPaddedRows) {
  BgrPicture picture(3, 2);
  const std::uint8_t colours[6][3] = {{0, 0, 255}, {0, 255, 0}, {255, 0, 0}, {9, 9, 9}, {0, 0, 255}, {1, 2, 3}};
  for (int i = 0; i < 6; ++i) std::memcpy(&picture.bytes[static_cast<std::size_t>(i) * 3], colours[i], 3);
  QuantisedPicture out;
  ASSERT_TRUE(QuantisePicture(picture, out));
  PackedDib dib;
  ASSERT_TRUE(ToPackedDib(out, dib));
  const BitmapInfoHeader* header = DibHeader(dib.get());
  EXPECT_EQ(header->biWidth, 3);
  EXPECT_EQ(header->biHeight, 2);
  EXPECT_EQ(header->biBitCount, 8);
  EXPECT_EQ(header->biClrUsed, 0u) << "the whole 256-entry table";
  const std::uint8_t* rows = DibPixels(dib.get());
  for (int y = 0; y < 2; ++y) {
    for (int x = 0; x < 3; ++x) {
      const RgbQuad& c = DibColours(dib.get())[rows[(1 - y) * 4 + x]];
      const std::uint8_t* want = colours[y * 3 + x];
      EXPECT_EQ(c.rgbBlue, want[0]);
      EXPECT_EQ(c.rgbGreen, want[1]);
      EXPECT_EQ(c.rgbRed, want[2]);
    }
    EXPECT_EQ(rows[(1 - y) * 4 + 3], 0) << "row padding is zero";
  }
}

}  // namespace
}  // namespace qv::photo
