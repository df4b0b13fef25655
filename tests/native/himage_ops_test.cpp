// Raster copies, clipping and colour tables of packed DIB pictures.
#include "graphics/himage_ops.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "graphics/packed_dib.h"
#include "support/assert_recorder.h"

namespace qv {
namespace {

using test::AssertRecorder;

constexpr char kBitCountMessage[] =
    "para llamar esta funcion es necesario que los HIMAGE refieran a dos bitmaps con el mismo "
    "conteo de bits por pixel";
constexpr char kPaletteMessage[] =
    "para llamar esta funcion es necesario que los HIMAGE refieran a dos bitmaps con la misma "
    "paleta";

// A picture of the given depth whose bytes (padding included) come from the generator.
PackedDib MakePicture(int width, int height, int bitCount, std::uint32_t colours,
                      std::mt19937& random) {
  const auto rowBytes = DibRowBytes(width, bitCount);
  PackedDib dib;
  dib.Adopt(PackedDib::AllocateBlock(static_cast<std::size_t>(rowBytes * height)),
            kDibPixelOffset + static_cast<std::size_t>(rowBytes * height));
  BitmapInfoHeader h{};
  h.biSize = 40;
  h.biWidth = width;
  h.biHeight = height;
  h.biPlanes = 1;
  h.biBitCount = static_cast<std::uint16_t>(bitCount);
  h.biSizeImage = static_cast<std::uint32_t>(rowBytes * height);
  h.biClrUsed = colours;
  std::memcpy(dib.get(), &h, sizeof h);
  for (std::size_t i = kDibHeaderBytes; i < dib.blockBytes(); ++i) {
    dib.get()[i] = static_cast<std::uint8_t>(random());
  }
  return dib;
}

std::vector<std::uint8_t> Bytes(const PackedDib& dib) {
  return {dib.get(), dib.get() + dib.blockBytes()};
}

// The obvious per-pixel definition: every pixel of the rectangle whose source and destination
// both lie inside their pictures, walked from the last row and column to the first.
void ReferenceCopy(HIMAGE to, int dx, int dy, int w, int h, HIMAGE from, int sx, int sy,
                   std::uint32_t rop) {
  const int bpp = ImageBytesPerPixel(from);
  for (int y = h - 1; y >= 0; --y) {
    for (int x = w - 1; x >= 0; --x) {
      const int tx = dx + x, ty = dy + y, fx = sx + x, fy = sy + y;
      if (tx < 0 || ty < 0 || tx >= ImageWidth(to) || ty >= ImageHeight(to)) continue;
      if (fx < 0 || fy < 0 || fx >= ImageWidth(from) || fy >= ImageHeight(from)) continue;
      for (int b = bpp - 1; b >= 0; --b) {
        std::uint8_t& d = ImagePixel(to, tx, ty)[b];
        const std::uint8_t s = ImagePixel(from, fx, fy)[b];
        if (rop == kRopSrcCopy) d = s;
        if (rop == kRopSrcAnd) d &= s;
        if (rop == kRopSrcInvert) d ^= s;
      }
    }
  }
}

TEST(ClipRect, RejectsNegativeAndDoublyFlatRectangles) {
  AssertRecorder rec;
  ImageRect out;
  EXPECT_FALSE(ClipRect({0, 0, -1, 5}, {0, 0, 10, 10}, 2, &out));
  EXPECT_FALSE(ClipRect({0, 0, 0, 5}, {0, 0, 0, 10}, 2, &out));
  EXPECT_FALSE(ClipRect({0, 0, 5, 0}, {0, 0, 5, 0}, 2, &out));
  EXPECT_EQ(rec.count(), 3u);
  EXPECT_TRUE(rec.saw("valores de tamaño invalidos"));
}

// Random rectangles around, inside and across both pictures, at both depths and all three
// operations, against the per-pixel definition: any clipping slip shows up as a difference
// (and under AddressSanitizer as an out-of-bounds access).
TEST(ImageRasterCopy, MatchesThePerPixelDefinitionWithClipping) {
  const unsigned seed = static_cast<unsigned>(::testing::UnitTest::GetInstance()->random_seed());
  SCOPED_TRACE("seed " + std::to_string(seed));
  std::mt19937 random(seed);
  for (int round = 0; round < 400; ++round) {
    const int bitCount = round % 2 ? 24 : 8;
    const std::uint32_t rops[] = {kRopSrcCopy, kRopSrcAnd, kRopSrcInvert};
    const std::uint32_t rop = rops[round % 3];
    PackedDib to = MakePicture(1 + random() % 23, 1 + random() % 17, bitCount, 16, random);
    PackedDib from = MakePicture(1 + random() % 19, 1 + random() % 21, bitCount, 16, random);
    PackedDib expected = MakePicture(ImageWidth(to.get()), ImageHeight(to.get()), bitCount, 16,
                                     random);
    std::memcpy(expected.get(), to.get(), to.blockBytes());
    auto coordinate = [&] { return static_cast<int>(random() % 40) - 15; };
    const int dx = coordinate(), dy = coordinate(), sx = coordinate(), sy = coordinate();
    const int w = static_cast<int>(random() % 30), h = static_cast<int>(random() % 30);
    ASSERT_TRUE(ImageRasterCopy(to.get(), dx, dy, w, h, from.get(), sx, sy, rop));
    ReferenceCopy(expected.get(), dx, dy, w, h, from.get(), sx, sy, rop);
    ASSERT_EQ(Bytes(to), Bytes(expected))
        << "round " << round << " rect " << dx << "," << dy << " " << w << "x" << h << " from "
        << sx << "," << sy;
  }
}

TEST(ImageRasterCopy, OverlappingCopyWithinOnePictureWalksBackwards) {
  std::mt19937 random(7);
  PackedDib image = MakePicture(12, 9, 8, 4, random);
  PackedDib expected = MakePicture(12, 9, 8, 4, random);
  std::memcpy(expected.get(), image.get(), image.blockBytes());
  ASSERT_TRUE(ImageRasterCopy(image.get(), 1, 1, 8, 6, image.get(), 3, 2, kRopSrcCopy));
  ReferenceCopy(expected.get(), 1, 1, 8, 6, expected.get(), 3, 2, kRopSrcCopy);
  EXPECT_EQ(Bytes(image), Bytes(expected));
}

TEST(ImageRasterCopy, ChecksDepthAndColourCountButNotColours) {
  std::mt19937 random(3);
  PackedDib eight = MakePicture(4, 4, 8, 256, random);
  PackedDib otherColours = MakePicture(4, 4, 8, 256, random);
  PackedDib fewer = MakePicture(4, 4, 8, 16, random);
  PackedDib deep = MakePicture(4, 4, 24, 0, random);
  AssertRecorder rec;

  EXPECT_FALSE(ImageRasterCopy(deep.get(), 0, 0, 4, 4, eight.get(), 0, 0, kRopSrcCopy));
  EXPECT_EQ(rec.only(), kBitCountMessage);
  rec.clear();
  EXPECT_FALSE(ImageRasterCopy(eight.get(), 0, 0, 4, 4, fewer.get(), 0, 0, kRopSrcCopy));
  EXPECT_EQ(rec.only(), kPaletteMessage);
  rec.clear();
  EXPECT_FALSE(ImageRasterCopy(nullptr, 0, 0, 4, 4, fewer.get(), 0, 0, kRopSrcCopy));
  EXPECT_EQ(rec.only(), "manipuladores invalidos");
  rec.clear();

  EXPECT_TRUE(ImageRasterCopy(eight.get(), 0, 0, 4, 4, otherColours.get(), 0, 0, kRopSrcCopy));
  EXPECT_TRUE(rec.empty()) << "equal colour counts pass whatever the colours";
  EXPECT_EQ(0, std::memcmp(DibPixels(eight.get()), DibPixels(otherColours.get()), 16));

  const std::vector<std::uint8_t> before = Bytes(eight);
  PackedDib same = MakePicture(4, 4, 8, 256, random);
  EXPECT_TRUE(ImageRasterCopy(eight.get(), 0, 0, 4, 4, same.get(), 0, 0, kRopMergeCopy));
  EXPECT_EQ(Bytes(eight), before) << "an unsupported operation changes nothing";
}

TEST(ImageCopyColourTable, CopiesDepthCountAndEntries) {
  std::mt19937 random(5);
  PackedDib from = MakePicture(2, 2, 8, 37, random);
  PackedDib to = MakePicture(2, 2, 8, 256, random);
  ASSERT_TRUE(ImageCopyColourTable(from.get(), to.get()));
  EXPECT_EQ(DibHeader(to.get())->biClrUsed, 37u);
  EXPECT_EQ(0, std::memcmp(DibColours(to.get()), DibColours(from.get()), 37 * 4));

  AssertRecorder rec;
  PackedDib deep = MakePicture(2, 2, 24, 0, random);
  EXPECT_FALSE(ImageCopyColourTable(from.get(), deep.get()));
  EXPECT_EQ(rec.only(), "los bitmaps deben ser indexados");
  rec.clear();
  PackedDib none = MakePicture(2, 2, 8, 0, random);
  EXPECT_FALSE(ImageCopyColourTable(none.get(), to.get()));
  EXPECT_EQ(rec.only(), "valor invalido");
}

}  // namespace
}  // namespace qv
