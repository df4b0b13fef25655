// The built-in pictures: credits from the bundles' READMEs, fitting, real photographs read
// back through the game's own .bmp reader, and the game's own colour reduction measured against
// the tool's on the same photographs.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstring>
#include <filesystem>

#include "assets/bmp_file.h"
#include "assets/file_io.h"
#include "assets/photo.h"
#include "assets/picture_set.h"
#include "assets/quantize.h"
#include "assets/rcc_bundle.h"
#include "assets/tests/temp_folder.h"
#include "graphics/bitmap_file.h"
#include "photo/colour_quantiser.h"
#include "photo/photo_fit.h"

namespace qv::assets {
namespace {

constexpr const char* kReadme =
    "Copyright: Timothee Giet, 2018\n"
    "License: CC-BY-SA 4.0\n"
    "Files:\n"
    "question.svg\n"
    "\n"
    "Copyright: Frank-2.0\n"
    "Source: https://example.org/kingfisher.jpg\n"
    "License: CC0-1.0\n"
    "Comments: cropping, sharpening\n"
    "Files: kingfisher.webp heron.webp\n"
    "\n"
    "Copyright: Kurt Kaiser\r\n"
    "License: CC0-1.0\r\n"
    "Source: https://example.org/bison.jpg\r\n"
    "Files:\r\n"
    "bison.webp\r\n";

TEST(PictureCredits, AreFoundWhereverTheReadmeListsTheFile) {
  PictureCredit credit;
  ASSERT_TRUE(FindCredit(kReadme, "heron.webp", credit));
  EXPECT_EQ(credit.author, "Frank-2.0");
  EXPECT_EQ(credit.licence, "CC0-1.0");
  EXPECT_EQ(credit.source, "https://example.org/kingfisher.jpg");
  EXPECT_EQ(credit.changes, "cropping, sharpening");
  ASSERT_TRUE(FindCredit(kReadme, "bison.webp", credit)) << "last block, Windows line ends";
  EXPECT_EQ(credit.author, "Kurt Kaiser");
  EXPECT_EQ(credit.changes, "");
  EXPECT_FALSE(FindCredit(kReadme, "zebra.webp", credit));
  EXPECT_FALSE(FindCredit(kReadme, "bison", credit)) << "names match whole";
}

TEST(PictureFitting, KeepsTheAspectRatioAtAboutTheLongSide) {
  int w = 0, h = 0;
  FittedSize(1920, 1080, 1024, w, h);
  EXPECT_EQ(w, 1024);
  EXPECT_EQ(h, 576);
  FittedSize(1024, 793, 1024, w, h);
  EXPECT_EQ(w, 1024);
  EXPECT_EQ(h, 793);
  FittedSize(600, 2000, 1024, w, h);
  EXPECT_EQ(w, 307);
  EXPECT_EQ(h, 1024);
  FittedSize(300, 200, 1024, w, h);
  EXPECT_EQ(w, 300) << "small pictures are not blown up";
}

TEST(PictureSet, NamesFifteenDistinctPhotographsInOrder) {
  const auto& choices = PictureChoices();
  ASSERT_EQ(choices.size(), 15u);
  for (std::size_t i = 0; i < choices.size(); ++i) {
    EXPECT_EQ(choices[i].number, static_cast<int>(i) + 1);
    for (std::size_t j = i + 1; j < choices.size(); ++j) EXPECT_STRNE(choices[i].path, choices[j].path);
  }
}

TEST(PictureSet, AMissingPackageIsNamedInTheMessage) {
  test::TempFolder empty;
  Image8 picture;
  PictureCredit credit;
  std::string error;
  EXPECT_FALSE(MakePicture(empty.str(), PictureChoices()[0], picture, credit, error));
  EXPECT_NE(error.find("gcompris-qt-data"), std::string::npos) << error;
  EXPECT_NE(error.find("apt-get install"), std::string::npos) << error;
}

bool BundlesInstalled() {
  return std::filesystem::exists(std::string(QV_GCOMPRIS_RCC_DIR) + "/erase.rcc");
}

TEST(PictureSet, APhotographBecomesAnEightBitFileTheGameReadsBackExactly) {
  if (!BundlesInstalled()) GTEST_SKIP() << "gcompris-qt-data is not installed";
  test::TempFolder folder;
  Image8 picture;
  PictureCredit credit;
  std::string error;
  // The red panda is 1920 x 1080 in the bundle, so it is also resized.
  ASSERT_TRUE(MakePicture(QV_GCOMPRIS_RCC_DIR, PictureChoices()[2], picture, credit, error)) << error;
  EXPECT_EQ(credit.author, "Mathias Appel");
  EXPECT_EQ(credit.licence, "CC0-1.0");
  ASSERT_TRUE(WriteFileReplacing(folder / "3.bmp", EncodeBmp8(picture), error)) << error;

  BitmapFile file;
  ASSERT_TRUE(file.Open((folder / "3.bmp").c_str()));
  BitmapInfoHeader header{};
  ASSERT_TRUE(file.GetHeader(&header));
  EXPECT_EQ(header.biWidth, 1024);
  EXPECT_EQ(header.biHeight, 576);
  EXPECT_EQ(header.biBitCount, 8);
  EXPECT_EQ(header.biCompression, kBiRgb);
  EXPECT_EQ(file.ColourCount(), 256);
  const std::vector<std::uint8_t> rows = BottomUpRows(picture);
  EXPECT_EQ(header.biSizeImage, rows.size());
  std::vector<std::uint8_t> read(rows.size());
  ASSERT_TRUE(file.ReadPixels(read.data()));
  EXPECT_EQ(read, rows);
  // The print job reads the header and the whole colour table as one block at offset 14.
  std::vector<std::uint8_t> bytes;
  ASSERT_TRUE(ReadWholeFile(folder / "3.bmp", bytes, error));
  EXPECT_EQ(bytes[10] | bytes[11] << 8, 14 + 40 + 1024);
}

TEST(PictureSet, TheSamePhotographGivesTheSameBytesTwice) {
  if (!BundlesInstalled()) GTEST_SKIP() << "gcompris-qt-data is not installed";
  Image8 first, second;
  PictureCredit credit;
  std::string error;
  ASSERT_TRUE(MakePicture(QV_GCOMPRIS_RCC_DIR, PictureChoices()[0], first, credit, error)) << error;
  ASSERT_TRUE(MakePicture(QV_GCOMPRIS_RCC_DIR, PictureChoices()[0], second, credit, error)) << error;
  EXPECT_EQ(EncodeBmp8(first), EncodeBmp8(second));
  EXPECT_GT(first.palette.size(), 200u) << "a photograph should use most of its 256 colours";
}

double Psnr(const photo::BgrPicture& original, const RgbImage& reduced) {
  double sum = 0;
  for (std::size_t i = 0; i < reduced.pixels.size(); ++i) {
    const Rgb& c = reduced.pixels[i];
    const int d[3] = {original.bytes[i * 3] - c.b, original.bytes[i * 3 + 1] - c.g, original.bytes[i * 3 + 2] - c.r};
    sum += d[0] * d[0] + d[1] * d[1] + d[2] * d[2];
  }
  return 10 * std::log10(255.0 * 255.0 * reduced.pixels.size() * 3 / std::max(sum, 1.0));
}

// The game reduces players' photographs itself (libimagequant may not go into it); on the
// fifteen built-in photographs, fitted by the game's own filter, it must come within 1 dB of
// libimagequant at the tool's settings and the same (full) dithering.
TEST(OwnColourReduction, ComesWithinOneDecibelOfLibimagequantOnTheBuiltInPhotographs) {
  if (!BundlesInstalled()) GTEST_SKIP() << "gcompris-qt-data is not installed";
  std::printf("%-22s %11s %10s %10s %7s\n", "picture", "size", "ours dB", "liq dB", "diff");
  for (const PictureChoice& choice : PictureChoices()) {
    SCOPED_TRACE(choice.name);
    RccBundle bundle;
    std::vector<std::uint8_t> webp;
    RgbImage source;
    std::string error;
    ASSERT_TRUE(bundle.Load(std::string(QV_GCOMPRIS_RCC_DIR) + "/" + choice.bundle, error)) << error;
    ASSERT_TRUE(bundle.Read(choice.path, webp, error)) << error;
    ASSERT_TRUE(DecodeWebp(webp, source, error)) << error;
    std::vector<std::uint8_t> bgr(source.pixels.size() * 3);
    for (std::size_t i = 0; i < source.pixels.size(); ++i) {
      bgr[i * 3] = source.pixels[i].b, bgr[i * 3 + 1] = source.pixels[i].g, bgr[i * 3 + 2] = source.pixels[i].r;
    }
    photo::BgrPicture fitted;
    ASSERT_TRUE(photo::FitPhoto(photo::PixelRows{bgr.data(), source.width, source.height, source.width * 3, 3}, fitted));

    photo::QuantisedPicture ours;
    ASSERT_TRUE(photo::QuantisePicture(fitted, ours, 1.0f));
    RgbImage oursExpanded(fitted.width, fitted.height);
    for (std::size_t i = 0; i < ours.indices.size(); ++i) {
      const RgbQuad& c = ours.colours[ours.indices[i]];
      oursExpanded.pixels[i] = Rgb{c.rgbRed, c.rgbGreen, c.rgbBlue};
    }
    RgbImage fittedRgb(fitted.width, fitted.height);
    for (std::size_t i = 0; i < fittedRgb.pixels.size(); ++i) {
      fittedRgb.pixels[i] = Rgb{fitted.bytes[i * 3 + 2], fitted.bytes[i * 3 + 1], fitted.bytes[i * 3]};
    }
    Image8 theirs;
    ASSERT_TRUE(ReduceTo256Colours(fittedRgb, 1.0, theirs, error)) << error;

    const double oursDb = Psnr(fitted, oursExpanded), theirsDb = Psnr(fitted, Expand(theirs));
    std::printf("%-22s %5d x %-4d %10.2f %10.2f %+7.2f\n", choice.name, fitted.width, fitted.height, oursDb,
                theirsDb, oursDb - theirsDb);
    EXPECT_GT(oursDb, theirsDb - 1.0);
  }
}

}  // namespace
}  // namespace qv::assets
