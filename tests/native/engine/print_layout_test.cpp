// The printed page's arithmetic, the picture file's checks and the built-in picture's index.
#include "screens/print_layout.h"

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

namespace qv {
namespace {

constexpr int kA4Width = 2479, kA4Height = 3508;  // A4 at 300 dpi, as the spooler gives it

TEST(PrintLayout, A4PortraitGivesFullWidthBannersAndTheBandsOfTheArithmetic) {
  PrintLayout l;
  ASSERT_TRUE(ComputePrintLayout(kA4Width, kA4Height, 640, 480, l));
  EXPECT_EQ(l.topBanner.width, kA4Width);
  EXPECT_EQ(l.topBanner.height, 402);
  EXPECT_EQ(l.bottomBanner.width, kA4Width);
  EXPECT_EQ(l.bottomBanner.height, 377);
  EXPECT_EQ(l.bottomBanner.y, kA4Height - 377);
  // Free height 2327 >= 2479 x 480 / 640: scale by the width, halved.
  for (int i = 0; i < kPrintBands; ++i) {
    EXPECT_EQ(l.band[i].x, 134) << i;
    EXPECT_EQ(l.band[i].width, 1239) << i;
    EXPECT_EQ(l.band[i].height, 185) << i;
    EXPECT_EQ(l.band[i].y, 829 + 185 * (4 - i)) << i;
  }
  EXPECT_EQ(l.band[0].y + l.band[0].height, kA4Height / 2);  // ends at the page's middle
  EXPECT_EQ(l.title.x, 1487);
  EXPECT_EQ(l.title.y, 804);
  EXPECT_EQ(l.titleHeight, 100);
  EXPECT_EQ(l.description.x, 134);
  EXPECT_EQ(l.description.y, 1955);
  EXPECT_EQ(l.description.width, 2231);
  EXPECT_EQ(l.descriptionHeight, 67);
}

TEST(PrintLayout, FiveWholeBandsAndTheRestDropped) {
  PrintLayout l;
  ASSERT_TRUE(ComputePrintLayout(kA4Width, kA4Height, 700, 500, l));
  EXPECT_EQ(l.rowsPerBand, 100);
  EXPECT_EQ(l.droppedRows, 0);
  ASSERT_TRUE(ComputePrintLayout(kA4Width, kA4Height, 700, 503, l));
  EXPECT_EQ(l.rowsPerBand, 100);
  EXPECT_EQ(l.droppedRows, 3);
  // A tall picture is scaled by the free height instead: 2327 / 2000 halved.
  ASSERT_TRUE(ComputePrintLayout(kA4Width, kA4Height, 500, 2000, l));
  EXPECT_EQ(l.band[0].width, 500 * 2327 / 4000);
  EXPECT_EQ(l.band[0].height, 2000 * 2327 / 20000);
}

TEST(PrintLayout, LandscapeKeepsFullWidthBannersAndPagesWithNoRoomRefuse) {
  PrintLayout l;
  ASSERT_TRUE(ComputePrintLayout(kA4Height, kA4Width, 640, 480, l));
  EXPECT_EQ(l.topBanner.width, kA4Height);
  EXPECT_EQ(l.topBanner.height, 569);
  // Free height 2479 - 1138 - 534 = 807 < 3508 x 480 / 640: scaled by it, halved.
  EXPECT_EQ(l.band[0].height, 807 / 10);
  // Two top banners and a bottom one leave nothing on a wide strip of paper.
  EXPECT_FALSE(ComputePrintLayout(3000, 1000, 400, 300, l));
  EXPECT_FALSE(ComputePrintLayout(0, kA4Height, 400, 300, l));
  EXPECT_FALSE(ComputePrintLayout(kA4Width, kA4Height, 400, 4, l));  // no whole band
  EXPECT_FALSE(ComputePrintLayout(kA4Width, kA4Height, 0, 300, l));
}

std::vector<std::uint8_t> PictureFile(int width, int height, int bits = 8, std::uint32_t used = 0) {
  const std::size_t stride = (static_cast<std::size_t>(width) * bits + 31) / 32 * 4;
  const int rows = height < 0 ? -height : height;
  std::vector<std::uint8_t> file(kPrintHeadBytes + stride * static_cast<std::size_t>(rows));
  auto put32 = [&](std::size_t at, std::uint32_t v) { std::memcpy(&file[at], &v, 4); };
  auto put16 = [&](std::size_t at, std::uint16_t v) { std::memcpy(&file[at], &v, 2); };
  file[0] = 'B';
  file[1] = 'M';
  put32(2, static_cast<std::uint32_t>(file.size()));
  put32(10, kPrintHeadBytes);
  put32(14, 40);
  put32(18, static_cast<std::uint32_t>(width));
  put32(22, static_cast<std::uint32_t>(height));
  put16(26, 1);
  put16(28, static_cast<std::uint16_t>(bits));
  put32(46, used);
  return file;
}

bool Check(const std::vector<std::uint8_t>& file, PrintablePicture& out, std::size_t cut = 0) {
  return CheckPrintablePicture(file.data(), file.size(), file.size() - cut, out);
}

TEST(PrintablePicture, AcceptsWholeBottomUp256ColourPicturesOnly) {
  PrintablePicture p;
  ASSERT_TRUE(Check(PictureFile(101, 503), p));
  EXPECT_EQ(p.width, 101);
  EXPECT_EQ(p.height, 503);
  EXPECT_EQ(p.stride, 104u);
  EXPECT_EQ(p.pixelOffset, kPrintHeadBytes);
  // The three dropped rows may be missing; one byte of a printed row may not.
  EXPECT_TRUE(Check(PictureFile(101, 503), p, 3 * 104));
  EXPECT_FALSE(Check(PictureFile(101, 503), p, 3 * 104 + 1));

  EXPECT_FALSE(Check(PictureFile(100, 500, 24), p));
  EXPECT_FALSE(Check(PictureFile(100, 500, 8, 16), p));  // short palette: rows would be read as colours
  EXPECT_FALSE(Check(PictureFile(100, -500), p));        // top-down
  EXPECT_FALSE(Check(PictureFile(100, 4), p));
  std::vector<std::uint8_t> bad = PictureFile(100, 500);
  bad[0] = 'X';
  EXPECT_FALSE(Check(bad, p));
  bad = PictureFile(100, 500);
  bad[30] = 1;  // run-length compressed
  EXPECT_FALSE(Check(bad, p));
  bad = PictureFile(100, 500);
  bad[13] = 0x7f;  // pixels far beyond the file
  EXPECT_FALSE(Check(bad, p));
  EXPECT_FALSE(CheckPrintablePicture(bad.data(), kPrintHeadBytes - 1, bad.size(), p));
}

TEST(BuiltInPicture, IndexFromThePathUnderTheProgramFolder) {
  const std::string folder = "C:\\Games\\Quorvex\\";
  EXPECT_EQ(BuiltInPictureIndex(folder, folder + "Image\\1.bmp"), 0);
  EXPECT_EQ(BuiltInPictureIndex(folder, folder + "Image\\15.bmp"), 14);
  EXPECT_EQ(BuiltInPictureIndex(folder, "c:/games/quorvex/IMAGE/7.BMP"), 6);
  for (const char* other : {"Image\\0.bmp", "Image\\16.bmp", "Image\\01.bmp", "Image\\1a.bmp",
                            "Image\\.bmp", "Image\\1.bmpx", "Image\\x\\1.bmp", "1.bmp"}) {
    EXPECT_EQ(BuiltInPictureIndex(folder, folder + other), -1) << other;
  }
  EXPECT_EQ(BuiltInPictureIndex(folder, "D:\\Other\\Image\\3.bmp"), -1);
  EXPECT_EQ(BuiltInPictureIndex(folder, ""), -1);
}

TEST(OwnPicture, NamedAfterItsFileWithoutFolderOrExtension) {
  EXPECT_EQ(OwnPictureName("C:\\Games\\Quorvex\\Image\\Cat (2).bmp"), "Cat (2)");
  EXPECT_EQ(OwnPictureName("c:/games/quorvex/image/Harbour.at.dawn.BMP"), "Harbour.at.dawn");
  EXPECT_EQ(OwnPictureName("Image\\Mixed/Sea.bmp"), "Sea");
  EXPECT_EQ(OwnPictureName("Image\\Lake.bmpx"), "Lake.bmpx");
  EXPECT_EQ(OwnPictureName("Bare"), "Bare");
  EXPECT_EQ(OwnPictureName("Image\\"), "");
  EXPECT_EQ(OwnPictureName(".bmp"), "");
  EXPECT_EQ(OwnPictureName(""), "");
}

TEST(BuiltInPicture, PreviewFitsTheBoxKeepingProportions) {
  const PrintRect wide = FitPicture(216, 160, 1024, 576);
  EXPECT_EQ(wide.width, 216);
  EXPECT_EQ(wide.height, 121);
  EXPECT_EQ(wide.y, 19);
  const PrintRect tall = FitPicture(216, 160, 300, 600);
  EXPECT_EQ(tall.width, 80);
  EXPECT_EQ(tall.x, 68);
  EXPECT_EQ(FitPicture(216, 160, 0, 10).width, 0);
}

}  // namespace
}  // namespace qv
