// BitmapFile behaviour on .bmp files the tests write into a temporary folder.
#include "graphics/bitmap_file.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "support/assert_recorder.h"

namespace qv {
namespace {

namespace fs = std::filesystem;
using Bytes = std::vector<std::uint8_t>;

// Every pixel of stored row r is r, so output rows name the source row they came from.
std::uint8_t RowLabel(int row, int) { return static_cast<std::uint8_t>(row); }

// A .bmp in memory: header, colour table and the rows exactly as stored.
struct BmpImage {
  BitmapInfoHeader header{40, 1, 1, 1, 8, kBiRgb, 0, 0, 0, 0, 0};
  std::vector<RgbQuad> colours;
  Bytes pixels;

  Bytes Encode() const {
    Bytes bytes{'B', 'M'};
    bytes.resize(14);  // the rest of the file header is never read
    const auto* h = reinterpret_cast<const std::uint8_t*>(&header);
    bytes.insert(bytes.end(), h, h + sizeof header);
    const auto* c = reinterpret_cast<const std::uint8_t*>(colours.data());
    bytes.insert(bytes.end(), c, c + 4 * colours.size());
    bytes.insert(bytes.end(), pixels.begin(), pixels.end());
    return bytes;
  }
};

// At 8 bits pixel (r, c) of the stored rows is value(r, c); other depths are left zero. The
// conversions of 4- and 24-bit pixels are checked against ImageMagick's pictures instead.
BmpImage MakeImage(int width, int height, int bits,
                   std::uint8_t (*value)(int, int) = RowLabel) {
  BmpImage image;
  image.header.biWidth = width;
  image.header.biHeight = height;
  image.header.biBitCount = static_cast<std::uint16_t>(bits);
  for (int i = 0; i < (bits == 4 ? 16 : bits == 8 ? 256 : 0); ++i) {
    const auto v = static_cast<std::uint8_t>(i);
    image.colours.push_back({v, static_cast<std::uint8_t>(255 - v), static_cast<std::uint8_t>(v / 3), 0});
  }
  const auto rowBytes = static_cast<std::size_t>(DibRowBytes(width, bits));
  image.pixels.resize(rowBytes * std::abs(height));
  for (int r = 0; bits == 8 && r < std::abs(height); ++r) {
    for (int c = 0; c < width; ++c) image.pixels[r * rowBytes + c] = value(r, c);
  }
  return image;
}

class BitmapFileTest : public ::testing::Test {
 protected:
  void SetUp() override {
    dir_ = fs::temp_directory_path() / ("qv_bitmap_file_" + std::to_string(std::random_device{}()));
    fs::create_directories(dir_);
  }
  void TearDown() override {
    std::error_code ignored;
    fs::remove_all(dir_, ignored);
  }
  std::string Write(const Bytes& bytes, const std::string& name = "picture.bmp") {
    const std::string path = (dir_ / name).string();
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    return path;
  }
  bool OpenImage(const BmpImage& image) { return file_.Open(Write(image.Encode()).c_str()); }

  // ReadScaled of the open 8-bit file; pixel (r, c) of the result is at [r * rowBytes + c].
  Bytes Scaled(int width, int height) {
    Bytes out(static_cast<std::size_t>(DibRowBytes(width, 8) * std::abs(height)), 0xEE);
    EXPECT_TRUE(file_.ReadScaled(width, height, out.data()));
    return out;
  }

  fs::path dir_;
  BitmapFile file_;
};

TEST_F(BitmapFileTest, RowSizeRoundsEachRowUpToFourBytes) {
  BitmapInfoHeader h{40, 5, -3, 1, 8, 0, 0, 0, 0, 0, 0};
  EXPECT_EQ(BitmapFile::ImageSize(h), 8 * 3);
  h.biBitCount = 24;
  EXPECT_EQ(BitmapFile::ImageSize(h), 16 * 3);
  h.biBitCount = 4;
  EXPECT_EQ(BitmapFile::ImageSize(h), 4 * 3);
  h = {40, INT32_MAX, INT32_MIN, 1, 0xFFFF, 0, 0, 0, 0, 0, 0};
  EXPECT_EQ(BitmapFile::ImageSize(h), INT64_MAX);  // saturates instead of overflowing
}

TEST_F(BitmapFileTest, OpenKeepsSizeColoursAndPath) {
  const std::string path = Write(MakeImage(5, -3, 4).Encode());
  ASSERT_TRUE(file_.Open(path.c_str()));
  EXPECT_EQ(file_.GetSize().width, 5);
  EXPECT_EQ(file_.GetSize().height, -3);
  EXPECT_EQ(file_.ColourCount(), 16);
  std::vector<char> buffer(path.size(), 'x');
  EXPECT_EQ(file_.GetPath(nullptr, 0), path.size() + 1);
  EXPECT_EQ(file_.GetPath(buffer.data(), buffer.size()), path.size() + 1);
  EXPECT_EQ(buffer[0], 'x');  // one byte too small: untouched
  buffer.push_back('x');
  file_.GetPath(buffer.data(), buffer.size());
  EXPECT_STREQ(buffer.data(), path.c_str());

  file_.Close();
  BitmapInfoHeader h{};
  EXPECT_EQ(file_.GetPath(nullptr, 0), 0u);
  EXPECT_EQ(file_.GetSize().width, 0);
  EXPECT_FALSE(file_.GetHeader(&h));
}

// Each case spoils one thing of a good 6 x 4 8-bit picture, in its header or its bytes.
TEST_F(BitmapFileTest, OpenRefusesUnsafeOrUnsupportedFilesAndIsLeftClosed) {
  using Spoil = std::function<Bytes(BmpImage)>;
  const auto header = [](std::function<void(BitmapInfoHeader&)> change) -> Spoil {
    return [change](BmpImage image) { change(image.header); return image.Encode(); };
  };
  const auto bytes = [](std::function<void(Bytes&)> change) -> Spoil {
    return [change](BmpImage image) { Bytes file = image.Encode(); change(file); return file; };
  };
  const std::vector<std::pair<const char*, Spoil>> cases = {
      {"not BM", bytes([](Bytes& file) { file[1] = 'A'; })},
      {"width 0", header([](BitmapInfoHeader& h) { h.biWidth = 0; })},
      {"height 0", header([](BitmapInfoHeader& h) { h.biHeight = 0; })},
      {"height INT_MIN", header([](BitmapInfoHeader& h) { h.biHeight = INT32_MIN; })},
      {"two planes", header([](BitmapInfoHeader& h) { h.biPlanes = 2; })},
      {"bitfields", header([](BitmapInfoHeader& h) { h.biCompression = kBiBitfields; })},
      {"16 bits, no count", header([](BitmapInfoHeader& h) { h.biBitCount = 16; })},
      {"1 bit, no count", header([](BitmapInfoHeader& h) { h.biBitCount = 1; })},
      {"257 colours, all present",
       [](BmpImage image) {
         image.header.biClrUsed = 257;
         image.colours.resize(257);
         return image.Encode();
       }},
      {"negative colours", header([](BitmapInfoHeader& h) { h.biClrUsed = 0xFFFFFFFF; })},
      {"absurd width", header([](BitmapInfoHeader& h) { h.biWidth = INT32_MAX; })},
      {"absurd height", header([](BitmapInfoHeader& h) { h.biHeight = -INT32_MAX; })},
      {"pixels one byte short", bytes([](Bytes& file) { file.pop_back(); })},
      {"cut inside the header", bytes([](Bytes& file) { file.resize(40); })},
      {"cut after the magic", bytes([](Bytes& file) { file.resize(2); })},
  };
  const std::string good = Write(MakeImage(6, 4, 8).Encode(), "good.bmp");
  for (const auto& [name, spoil] : cases) {
    SCOPED_TRACE(name);
    ASSERT_TRUE(file_.Open(good.c_str()));
    EXPECT_FALSE(file_.Open(Write(spoil(MakeImage(6, 4, 8))).c_str()));
    EXPECT_FALSE(file_.IsOpen());
    EXPECT_EQ(file_.GetPath(nullptr, 0), 0u);
  }
  EXPECT_FALSE(file_.Open((dir_ / "missing.bmp").string().c_str()));
}

TEST_F(BitmapFileTest, BadPathsAreReportedAndLeaveTheOpenFileAlone) {
  ASSERT_TRUE(OpenImage(MakeImage(2, 2, 8)));
  test::AssertRecorder rec;
  EXPECT_FALSE(file_.Open(nullptr));
  EXPECT_FALSE(file_.Open(std::string(260, 'a').c_str()));
  EXPECT_EQ(rec.messages(), (std::vector<std::string>{"Nombre de Archivo Invalido", "Path Muy Grande"}));
  EXPECT_TRUE(file_.IsOpen());
}

TEST_F(BitmapFileTest, ColourTableReads) {
  const BmpImage image = MakeImage(3, 2, 8);
  ASSERT_TRUE(OpenImage(image));
  RgbQuad colours[3] = {};
  ASSERT_TRUE(file_.ReadColours(253, 3, colours));
  EXPECT_EQ(std::memcmp(colours, &image.colours[253], sizeof colours), 0);
  Bytes info(40 + 4 * 256);
  ASSERT_TRUE(file_.GetBitmapInfo(info.data()));
  const Bytes encoded = image.Encode();
  EXPECT_EQ(info, Bytes(encoded.begin() + 14, encoded.begin() + 54 + 1024));  // header, table

  test::AssertRecorder rec;
  EXPECT_FALSE(file_.ReadColours(254, 3, colours));
  EXPECT_FALSE(file_.ReadColours(-1, 1, colours));
  EXPECT_FALSE(file_.ReadColours(0, 1, nullptr));
  EXPECT_EQ(rec.messages(), (std::vector<std::string>{"Valor invalido", "Valor invalido", "puntero invalido"}));

  rec.clear();  // a true-colour file has no table, a closed one nothing: false, no message
  ASSERT_TRUE(OpenImage(MakeImage(3, 2, 24)));
  EXPECT_FALSE(file_.ReadColours(0, 1, colours));
  file_.Close();
  EXPECT_FALSE(file_.ReadColours(0, 1, colours));
  EXPECT_TRUE(rec.empty());
}

TEST_F(BitmapFileTest, EnlargingPastTheLastRowReusesIt) {
  // 6 -> 8 rows: the accumulator ends a hair short of 8 and asks for a seventh row of a file
  // that holds six; the last row must be reused rather than the read failing.
  ASSERT_TRUE(OpenImage(MakeImage(1, 6, 8)));
  EXPECT_EQ(Scaled(1, 8)[4 * 7], 5);
}

TEST_F(BitmapFileTest, ColumnsComeFromTruncatedPositions) {
  ASSERT_TRUE(OpenImage(MakeImage(5, 1, 8, [](int, int c) { return std::uint8_t(c); })));
  EXPECT_EQ(Scaled(10, 1), (Bytes{0, 0, 1, 1, 2, 2, 3, 3, 4, 4, 0, 0}));
  EXPECT_EQ(Scaled(3, 1), (Bytes{0, 1, 3, 0}));
}

TEST_F(BitmapFileTest, ReadScaledRefusals) {
  ASSERT_TRUE(OpenImage(MakeImage(4, 4, 8)));
  test::AssertRecorder rec;
  Bytes out(64);
  EXPECT_FALSE(file_.ReadScaled(4, 4, nullptr));
  EXPECT_FALSE(file_.ReadScaled(0, 4, out.data()));
  EXPECT_FALSE(file_.ReadScaled(4, 0, out.data()));
  EXPECT_FALSE(file_.ReadScaled(INT32_MAX, INT32_MIN, out.data()));  // far beyond 2 GiB
  EXPECT_EQ(rec.messages(), (std::vector<std::string>{"Puntero Invalido", "Valores Invalidos",
                                                      "Valores Invalidos", "Valores Invalidos"}));

  BmpImage rle = MakeImage(4, 4, 8);
  rle.header.biCompression = 1;
  rle.pixels = {0, 1};  // end of bitmap: far shorter than the raw image, yet it opens
  ASSERT_TRUE(OpenImage(rle));
  rec.clear();
  EXPECT_FALSE(file_.ReadScaled(4, 4, out.data()));
  EXPECT_TRUE(rec.empty());

  BmpImage sixteen = MakeImage(4, 4, 16);
  sixteen.header.biClrUsed = 2;
  sixteen.colours.resize(2);
  ASSERT_TRUE(OpenImage(sixteen));
  EXPECT_FALSE(file_.ReadScaled(4, 4, out.data()));
  EXPECT_EQ(rec.only(), "esta funcion no soporta estos formatos");
}

TEST_F(BitmapFileTest, ReadsFailCleanlyWhenTheFileShrinksAfterOpen) {
  // Larger than any stdio buffer, so the lost rows must really be read from the disk.
  const std::string path = Write(MakeImage(256, 256, 8).Encode());
  ASSERT_TRUE(file_.Open(path.c_str()));
  fs::resize_file(path, 54 + 1024 + 256 * 3);
  Bytes out(256 * 256);
  EXPECT_FALSE(file_.ReadPixels(out.data()));
  EXPECT_FALSE(file_.ReadScaled(256, 256, out.data()));
  EXPECT_FALSE(file_.ReadScaled(256, 2, out.data()));  // skips past the end, then reads
}

}  // namespace
}  // namespace qv
