// The built-in pictures: credits from the bundles' READMEs, fitting, and real photographs read
// back through the game's own .bmp reader.
#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>

#include "assets/bmp_file.h"
#include "assets/file_io.h"
#include "assets/photo.h"
#include "assets/picture_set.h"
#include "assets/tests/temp_folder.h"
#include "graphics/bitmap_file.h"

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

}  // namespace
}  // namespace qv::assets
