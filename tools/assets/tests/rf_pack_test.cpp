// The resource-file packer, checked through the game's own reader.
#include <gtest/gtest.h>

#include <cstring>

#include "assets/bmp_file.h"
#include "assets/catalogue.h"
#include "assets/file_io.h"
#include "assets/rf_pack.h"
#include "assets/tests/temp_folder.h"
#include "graphics/resource_file.h"

namespace qv::assets {
namespace {

Image8 Gradient(int width, int height, int colours) {
  Image8 image(width, height);
  for (int i = 0; i < colours; ++i) {
    image.palette.push_back({static_cast<std::uint8_t>(i), static_cast<std::uint8_t>(3 * i),
                             static_cast<std::uint8_t>(255 - i)});
  }
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) image.at(x, y) = static_cast<std::uint8_t>((x * 7 + y * 3) % colours);
  }
  return image;
}

// Loads every picture back with the game's reader and compares header, colours and rows.
void ExpectReadsBack(const std::string& path, const std::vector<RfPicture>& pictures) {
  ResourceFile file;
  ASSERT_TRUE(file.Open(path.c_str()));
  EXPECT_EQ(file.EntryCount(), pictures.size());
  for (const RfPicture& p : pictures) {
    SCOPED_TRACE("picture " + std::to_string(p.identifier));
    PackedDib dib;
    ASSERT_TRUE(file.LoadPicture(p.identifier, dib));
    const BitmapInfoHeader* h = DibHeader(dib.get());
    EXPECT_EQ(h->biSize, 40u);
    EXPECT_EQ(h->biWidth, p.image.width);
    EXPECT_EQ(h->biHeight, p.image.height);
    EXPECT_EQ(h->biBitCount, 8);
    EXPECT_EQ(h->biCompression, kBiRgb);
    EXPECT_EQ(h->biClrUsed, p.image.palette.size());
    const std::vector<std::uint8_t> rows = BottomUpRows(p.image);
    ASSERT_EQ(h->biSizeImage, rows.size());
    for (std::size_t i = 0; i < p.image.palette.size(); ++i) {
      const RgbQuad q = DibColours(dib.get())[i];
      ASSERT_EQ((Rgb{q.rgbRed, q.rgbGreen, q.rgbBlue}), p.image.palette[i]) << "colour " << i;
    }
    EXPECT_EQ(std::memcmp(DibPixels(dib.get()), rows.data(), rows.size()), 0);
  }
}

TEST(ResourceFilePacker, EveryDrawnPictureReadsBackByteForByteThroughTheGamesReader) {
  test::TempFolder folder;
  const std::vector<RfPicture> pictures = DrawnPictures();
  std::vector<std::uint8_t> bytes;
  std::string error;
  ASSERT_TRUE(PackResourceFile(pictures, bytes, error)) << error;
  ASSERT_TRUE(WriteFileReplacing(folder / "Quorvex.rf", bytes, error)) << error;
  ExpectReadsBack(folder / "Quorvex.rf", pictures);
}

TEST(ResourceFilePacker, OddWidthsAndSmallPalettesKeepTheirPaddingAndColourCount) {
  test::TempFolder folder;
  const std::vector<RfPicture> pictures = {
      {7, Gradient(5, 3, 2)}, {70000, Gradient(1, 1, 1)}, {3, Gradient(33, 17, 256)}};
  std::vector<std::uint8_t> bytes;
  std::string error;
  ASSERT_TRUE(PackResourceFile(pictures, bytes, error)) << error;
  ASSERT_TRUE(WriteFileReplacing(folder / "small.rf", bytes, error)) << error;
  ExpectReadsBack(folder / "small.rf", pictures);
}

TEST(ResourceFilePacker, EndsWithTheCountAfterSixteenByteEntries) {
  std::vector<std::uint8_t> bytes;
  std::string error;
  ASSERT_TRUE(PackResourceFile({{42, Gradient(4, 2, 3)}, {43, Gradient(2, 2, 2)}}, bytes, error));
  std::uint32_t count = 0;
  std::memcpy(&count, bytes.data() + bytes.size() - 4, 4);
  ASSERT_EQ(count, 2u);
  std::uint32_t entry[4];
  std::memcpy(entry, bytes.data() + bytes.size() - 4 - 32, 16);
  EXPECT_EQ(entry[0], 42u);
  EXPECT_EQ(entry[3], 0u);  // high half of the offset
  std::uint32_t biSize = 0;
  std::memcpy(&biSize, bytes.data() + entry[2], 4);
  EXPECT_EQ(biSize, 40u);
}

TEST(ResourceFilePacker, RefusesPicturesTheReaderCouldNotTrust) {
  std::vector<std::uint8_t> bytes = {1, 2, 3};
  std::string error;
  Image8 beyond = Gradient(4, 4, 3);
  beyond.palette.resize(2);  // index 2 is used but has no colour
  Image8 tooMany = Gradient(2, 2, 2);
  tooMany.palette.resize(257);
  EXPECT_FALSE(PackResourceFile({{1, beyond}}, bytes, error));
  EXPECT_FALSE(PackResourceFile({{1, tooMany}}, bytes, error));
  EXPECT_FALSE(PackResourceFile({{1, Image8()}}, bytes, error));
  EXPECT_FALSE(PackResourceFile({{9, Gradient(2, 2, 2)}, {9, Gradient(3, 3, 2)}}, bytes, error));
  EXPECT_NE(error.find("9"), std::string::npos) << error;
  EXPECT_EQ(bytes, (std::vector<std::uint8_t>{1, 2, 3})) << "a refusal leaves the output alone";
}

TEST(StagedPictures, JoinTheDrawnOnesInIdentifierOrder) {
  test::TempFolder folder;
  std::string error;
  ASSERT_TRUE(WriteFileReplacing(folder / "212.bmp", EncodeBmp8(Gradient(70, 40, 200)), error));
  ASSERT_TRUE(WriteFileReplacing(folder / "2060.bmp", EncodeBmp8(Gradient(9, 5, 16)), error));
  std::vector<RfPicture> pictures = {{6000, Gradient(3, 3, 3)}};
  ASSERT_TRUE(AddStagedPictures(folder.str(), pictures, error)) << error;
  ASSERT_EQ(pictures.size(), 3u);
  EXPECT_EQ(pictures[0].identifier, 212u);
  EXPECT_EQ(pictures[1].identifier, 2060u);
  EXPECT_EQ(pictures[2].identifier, 6000u);
  // A staged .bmp always carries 256 table entries; the picture keeps them all.
  EXPECT_EQ(pictures[0].image.pixels, Gradient(70, 40, 200).pixels);
}

TEST(StagedPictures, AClashOrABadNameIsRefusedWithTheFileNamed) {
  test::TempFolder folder;
  std::string error;
  ASSERT_TRUE(WriteFileReplacing(folder / "6000.bmp", EncodeBmp8(Gradient(2, 2, 2)), error));
  std::vector<RfPicture> pictures = {{6000, Gradient(3, 3, 3)}};
  EXPECT_FALSE(AddStagedPictures(folder.str(), pictures, error));
  EXPECT_NE(error.find("6000.bmp"), std::string::npos) << error;

  test::TempFolder other;
  ASSERT_TRUE(WriteFileReplacing(other / "button.bmp", EncodeBmp8(Gradient(2, 2, 2)), error));
  std::vector<RfPicture> none;
  EXPECT_FALSE(AddStagedPictures(other.str(), none, error));
  EXPECT_NE(error.find("button.bmp"), std::string::npos) << error;
}

TEST(BmpFiles, EveryTruncationOfAFileIsRefusedCleanly) {
  const std::vector<std::uint8_t> whole = EncodeBmp8(Gradient(13, 7, 40));
  Image8 image;
  std::string error;
  ASSERT_TRUE(DecodeBmp8(whole, image, error)) << error;
  EXPECT_EQ(image.pixels, Gradient(13, 7, 40).pixels);
  for (std::size_t size = 0; size < whole.size(); ++size) {
    const std::vector<std::uint8_t> cut(whole.begin(), whole.begin() + static_cast<long>(size));
    EXPECT_FALSE(DecodeBmp8(cut, image, error)) << "length " << size;
  }
}

TEST(BmpFiles, PicturesWithDeeperColourOrCompressionAreRefused) {
  std::vector<std::uint8_t> bytes = EncodeBmp8(Gradient(4, 4, 4));
  Image8 image;
  std::string error;
  std::vector<std::uint8_t> deep = bytes;
  deep[28] = 24;  // biBitCount
  EXPECT_FALSE(DecodeBmp8(deep, image, error));
  std::vector<std::uint8_t> packed = bytes;
  packed[30] = 1;  // biCompression: run-length encoded
  EXPECT_FALSE(DecodeBmp8(packed, image, error));
  std::vector<std::uint8_t> colours = bytes;
  colours[46] = 0x01;
  colours[47] = 0x01;  // biClrUsed = 257
  EXPECT_FALSE(DecodeBmp8(colours, image, error));
}

}  // namespace
}  // namespace qv::assets
