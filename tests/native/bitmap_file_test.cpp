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
// A pixel value: a palette index, or 0xRRGGBB at 24 bits.
using PixelFn = std::function<std::uint32_t(int row, int column)>;

void PutPixel(std::uint8_t* row, int bits, int column, std::uint32_t value) {
  if (bits == 24) {
    std::memcpy(row + 3 * column, &value, 3);  // little-endian: blue, green, red
  } else if (bits == 8) {
    row[column] = static_cast<std::uint8_t>(value);
  } else {
    std::uint8_t& byte = row[column / 2];
    value &= 0x0F;
    byte = static_cast<std::uint8_t>(column % 2 ? (byte & 0xF0) | value : (byte & 0x0F) | value << 4);
  }
}

std::uint32_t GetPixel(const std::uint8_t* row, int bits, int column) {
  if (bits == 24) return row[3 * column] | row[3 * column + 1] << 8 | row[3 * column + 2] << 16;
  if (bits == 8) return row[column];
  return column % 2 ? row[column / 2] & 0x0F : row[column / 2] >> 4;
}

Bytes PackRows(int width, int rows, int bits, const PixelFn& pixel) {
  const auto rowBytes = static_cast<std::size_t>(DibRowBytes(width, bits));
  Bytes out(rowBytes * rows);
  for (int r = 0; r < rows; ++r) {
    for (int c = 0; c < width; ++c) PutPixel(&out[r * rowBytes], bits, c, pixel(r, c));
  }
  return out;
}

// Everything needed to write one .bmp; pixels are the rows exactly as stored.
struct BmpImage {
  BitmapInfoHeader header{40, 1, 1, 1, 8, kBiRgb, 0, 0, 0, 0, 0};
  std::vector<RgbQuad> colours;
  Bytes pixels;
};

BmpImage MakeImage(int width, int height, int bits, const PixelFn& pixel) {
  BmpImage image;
  image.header.biWidth = width;
  image.header.biHeight = height;
  image.header.biBitCount = static_cast<std::uint16_t>(bits);
  const int colours = bits == 4 ? 16 : bits == 8 ? 256 : 0;
  for (int i = 0; i < colours; ++i) {
    const auto v = static_cast<std::uint8_t>(i);
    image.colours.push_back({v, static_cast<std::uint8_t>(255 - v), static_cast<std::uint8_t>(v / 2), 0});
  }
  image.pixels = PackRows(width, std::abs(height), bits, pixel);
  image.header.biSizeImage = static_cast<std::uint32_t>(image.pixels.size());
  return image;
}

Bytes Encode(const BmpImage& image) {
  Bytes bytes(14, 0);
  bytes[0] = 'B';
  bytes[1] = 'M';
  const auto offBits = static_cast<std::uint32_t>(54 + 4 * image.colours.size());
  const auto fileSize = static_cast<std::uint32_t>(offBits + image.pixels.size());
  std::memcpy(&bytes[2], &fileSize, 4);
  std::memcpy(&bytes[10], &offBits, 4);
  const auto* header = reinterpret_cast<const std::uint8_t*>(&image.header);
  bytes.insert(bytes.end(), header, header + 40);
  const auto* colours = reinterpret_cast<const std::uint8_t*>(image.colours.data());
  bytes.insert(bytes.end(), colours, colours + 4 * image.colours.size());
  bytes.insert(bytes.end(), image.pixels.begin(), image.pixels.end());
  return bytes;
}

class BitmapFileTest : public ::testing::Test {
 protected:
  void SetUp() override {
    dir_ = fs::temp_directory_path() /
           ("qv_bitmap_file_" + std::to_string(std::random_device{}()));
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
  std::string Write(const BmpImage& image) { return Write(Encode(image)); }

  // ReadScaled into a fresh buffer; the stored value of output row r, column c is then at(r, c).
  struct Scaled {
    bool ok;
    Bytes data;
    std::int64_t rowBytes;
    int bits;
    std::uint32_t at(int r, int c) const { return GetPixel(&data[r * rowBytes], bits, c); }
  };
  Scaled ReadScaled(int width, int height) {
    BitmapInfoHeader header{};
    file_.GetHeader(&header);
    Scaled s{false, {}, DibRowBytes(width, header.biBitCount), header.biBitCount};
    s.data.assign(static_cast<std::size_t>(s.rowBytes * std::abs(height)), 0xEE);
    s.ok = file_.ReadScaled(width, height, s.data.data());
    return s;
  }

  fs::path dir_;
  BitmapFile file_;
};

// Stored row index as the value of every pixel, so output rows name their source row.
std::uint32_t RowLabel(int row, int) { return static_cast<std::uint32_t>(row); }

TEST_F(BitmapFileTest, RowSizeRoundsEachRowUpToFourBytes) {
  BitmapInfoHeader h{40, 5, -3, 1, 8, 0, 0, 0, 0, 0, 0};
  EXPECT_EQ(BitmapFile::ImageSize(h), 8 * 3);
  h.biBitCount = 24;
  EXPECT_EQ(BitmapFile::ImageSize(h), 16 * 3);
  h.biBitCount = 4;
  EXPECT_EQ(BitmapFile::ImageSize(h), 4 * 3);
  h.biWidth = INT32_MAX;
  h.biHeight = INT32_MIN;
  h.biBitCount = 0xFFFF;
  EXPECT_EQ(BitmapFile::ImageSize(h), INT64_MAX);  // saturates instead of overflowing
}

TEST_F(BitmapFileTest, OpenKeepsHeaderPathAndSize) {
  const std::string path = Write(MakeImage(5, -3, 4, RowLabel));
  ASSERT_TRUE(file_.Open(path.c_str()));
  EXPECT_EQ(file_.GetSize().width, 5);
  EXPECT_EQ(file_.GetSize().height, -3);
  EXPECT_EQ(file_.ColourCount(), 16);
  EXPECT_EQ(file_.GetPath(nullptr, 0), path.size() + 1);
  std::vector<char> small(path.size(), 'x');
  EXPECT_EQ(file_.GetPath(small.data(), small.size()), path.size() + 1);
  EXPECT_EQ(small[0], 'x');  // too small: untouched
  std::vector<char> exact(path.size() + 1);
  file_.GetPath(exact.data(), exact.size());
  EXPECT_STREQ(exact.data(), path.c_str());

  file_.Close();
  EXPECT_EQ(file_.GetPath(nullptr, 0), 0u);
  EXPECT_EQ(file_.GetSize().width, 0);
  BitmapInfoHeader h{};
  EXPECT_FALSE(file_.GetHeader(&h));
}

// Each case spoils one thing of an otherwise good 8-bit picture and returns the file's bytes.
TEST_F(BitmapFileTest, OpenRefusesUnsafeOrUnsupportedFilesAndIsLeftClosed) {
  using Spoil = std::function<Bytes(BmpImage)>;
  const auto header = [](std::function<void(BitmapInfoHeader&)> change) -> Spoil {
    return [change](BmpImage image) {
      change(image.header);
      return Encode(image);
    };
  };
  const auto keep = [](std::size_t bytes, std::size_t dropped) -> Spoil {
    return [bytes, dropped](BmpImage image) {
      Bytes encoded = Encode(image);
      encoded.resize(bytes ? bytes : encoded.size() - dropped);
      return encoded;
    };
  };
  const std::vector<std::pair<const char*, Spoil>> cases = {
      {"not BM", [](BmpImage image) { Bytes b = Encode(image); b[1] = 'A'; return b; }},
      {"width 0", header([](BitmapInfoHeader& h) { h.biWidth = 0; })},
      {"height 0", header([](BitmapInfoHeader& h) { h.biHeight = 0; })},
      {"height INT_MIN", header([](BitmapInfoHeader& h) { h.biHeight = INT32_MIN; })},
      {"two planes", header([](BitmapInfoHeader& h) { h.biPlanes = 2; })},
      {"bitfields", header([](BitmapInfoHeader& h) { h.biCompression = kBiBitfields; })},
      {"16 bits, no count", header([](BitmapInfoHeader& h) { h.biBitCount = 16; })},
      {"1 bit, no count", header([](BitmapInfoHeader& h) { h.biBitCount = 1; })},
      {"257 colours", header([](BitmapInfoHeader& h) { h.biClrUsed = 257; })},
      {"negative colours", header([](BitmapInfoHeader& h) { h.biClrUsed = 0xFFFFFFFF; })},
      {"absurd width", header([](BitmapInfoHeader& h) { h.biWidth = INT32_MAX; })},
      {"absurd height", header([](BitmapInfoHeader& h) { h.biHeight = -INT32_MAX; })},
      {"pixels one byte short", keep(0, 1)},
      {"cut inside the header", keep(40, 0)},
      {"cut after the magic", keep(2, 0)},
  };
  const std::string good = Write(Encode(MakeImage(6, 4, 8, RowLabel)), "good.bmp");
  for (const auto& [name, spoil] : cases) {
    SCOPED_TRACE(name);
    ASSERT_TRUE(file_.Open(good.c_str()));
    EXPECT_FALSE(file_.Open(Write(spoil(MakeImage(6, 4, 8, RowLabel))).c_str()));
    EXPECT_FALSE(file_.IsOpen());
    EXPECT_EQ(file_.GetPath(nullptr, 0), 0u);
    Bytes pixels(64);
    EXPECT_FALSE(file_.ReadPixels(pixels.data()));
  }
  EXPECT_FALSE(file_.Open((dir_ / "missing.bmp").string().c_str()));
}

TEST_F(BitmapFileTest, BadPathsAreReportedAndLeaveTheOpenFileAlone) {
  const std::string path = Write(MakeImage(2, 2, 8, RowLabel));
  ASSERT_TRUE(file_.Open(path.c_str()));
  test::AssertRecorder rec;
  EXPECT_FALSE(file_.Open(nullptr));
  EXPECT_TRUE(rec.saw("Nombre de Archivo Invalido"));
  EXPECT_FALSE(file_.Open(std::string(260, 'a').c_str()));
  EXPECT_TRUE(rec.saw("Path Muy Grande"));
  EXPECT_TRUE(file_.IsOpen());
  EXPECT_EQ(file_.GetPath(nullptr, 0), path.size() + 1);
}

TEST_F(BitmapFileTest, ColourTableReads) {
  const BmpImage image = MakeImage(3, 2, 8, RowLabel);
  ASSERT_TRUE(file_.Open(Write(image).c_str()));
  RgbQuad colours[3] = {};
  ASSERT_TRUE(file_.ReadColours(253, 3, colours));
  EXPECT_EQ(std::memcmp(colours, &image.colours[253], sizeof colours), 0);

  Bytes info(40 + 4 * 256);
  ASSERT_TRUE(file_.GetBitmapInfo(info.data()));
  EXPECT_EQ(std::memcmp(info.data(), &image.header, 40), 0);
  EXPECT_EQ(std::memcmp(&info[40], image.colours.data(), 4 * 256), 0);

  test::AssertRecorder rec;
  EXPECT_FALSE(file_.ReadColours(254, 3, colours));
  EXPECT_FALSE(file_.ReadColours(-1, 1, colours));
  EXPECT_EQ(rec.count(), 2u);
  EXPECT_TRUE(rec.saw("Valor invalido"));
  EXPECT_FALSE(file_.ReadColours(0, 1, nullptr));
  EXPECT_TRUE(rec.saw("puntero invalido"));

  rec.clear();  // true-colour files have no table; closed files have nothing: no messages
  ASSERT_TRUE(file_.Open(Write(MakeImage(3, 2, 24, RowLabel)).c_str()));
  EXPECT_FALSE(file_.ReadColours(0, 1, colours));
  file_.Close();
  EXPECT_FALSE(file_.ReadColours(0, 1, colours));
  EXPECT_TRUE(rec.empty());
}

TEST_F(BitmapFileTest, PaletteHasColoursComparesRgbOnly) {
  BmpImage image = MakeImage(2, 2, 4, RowLabel);
  image.header.biClrUsed = 3;
  image.colours.resize(3);
  ASSERT_TRUE(file_.Open(Write(image).c_str()));
  std::vector<PaletteEntry> palette = {{9, 9, 9, 0}};
  for (auto it = image.colours.rbegin(); it != image.colours.rend(); ++it) {
    palette.push_back({it->rgbRed, it->rgbGreen, it->rgbBlue, 0x55});
  }
  EXPECT_TRUE(file_.PaletteHasColours(palette.data(), 4));
  EXPECT_FALSE(file_.PaletteHasColours(palette.data(), 2));  // fewer entries than colours
  palette[2].peGreen ^= 1;
  EXPECT_FALSE(file_.PaletteHasColours(palette.data(), 4));
  test::AssertRecorder rec;
  EXPECT_FALSE(file_.PaletteHasColours(nullptr, 4));
  EXPECT_EQ(rec.only(), "Handle Invalido");
}

TEST_F(BitmapFileTest, OneToOneReadsMatchTheStoredPixels) {
  for (int bits : {4, 8, 24}) {
    for (int height : {7, -7}) {
      SCOPED_TRACE(::testing::Message() << bits << " bits, height " << height);
      const BmpImage image =
          MakeImage(5, height, bits, [](int r, int c) { return (r * 5 + c) * 0x10203u + 7u * r; });
      ASSERT_TRUE(file_.Open(Write(image).c_str()));
      Bytes raw(image.pixels.size());
      ASSERT_TRUE(file_.ReadPixels(raw.data()));
      EXPECT_EQ(raw, image.pixels);
      EXPECT_EQ(ReadScaled(5, height).data, image.pixels);
    }
  }
}

TEST_F(BitmapFileTest, RowOrderFlipsWhenTheSignsDiffer) {
  for (int stored : {4, -4}) {
    ASSERT_TRUE(file_.Open(Write(MakeImage(3, stored, 8, RowLabel)).c_str()));
    for (int requested : {4, -4}) {
      const Scaled out = ReadScaled(3, requested);
      ASSERT_TRUE(out.ok);
      const bool flip = (stored < 0) != (requested < 0);
      for (int r = 0; r < 4; ++r) EXPECT_EQ(out.at(r, 0), flip ? 3u - r : unsigned(r));
    }
  }
}

TEST_F(BitmapFileTest, ReductionKeepsEveryOtherRowAndEnlargementRepeatsRows) {
  ASSERT_TRUE(file_.Open(Write(MakeImage(1, 100, 8, RowLabel)).c_str()));
  const Scaled half = ReadScaled(1, 50);
  ASSERT_TRUE(half.ok);
  for (int r = 0; r < 50; ++r) EXPECT_EQ(half.at(r, 0), 2u * r);

  ASSERT_TRUE(file_.Open(Write(MakeImage(1, 50, 8, RowLabel)).c_str()));
  const Scaled twice = ReadScaled(1, 100);
  ASSERT_TRUE(twice.ok);
  for (int r = 0; r < 100; ++r) EXPECT_EQ(twice.at(r, 0), r / 2u);

  // 6 -> 8 rows: the accumulator ends just short of 8 and asks for a seventh row; the file
  // holds exactly six, so the last one must be reused rather than the read failing.
  ASSERT_TRUE(file_.Open(Write(MakeImage(1, 6, 8, RowLabel)).c_str()));
  const Scaled odd = ReadScaled(1, 8);
  ASSERT_TRUE(odd.ok);
  EXPECT_EQ(odd.at(7, 0), 5u);
}

TEST_F(BitmapFileTest, ColumnsComeFromTruncatedPositions) {
  const auto column = [](int, int c) { return static_cast<std::uint32_t>(c + 1); };
  ASSERT_TRUE(file_.Open(Write(MakeImage(5, 1, 4, column)).c_str()));
  const Scaled wide = ReadScaled(10, 1);
  for (int x = 0; x < 10; ++x) EXPECT_EQ(wide.at(0, x), x / 2u + 1);
  const Scaled narrow = ReadScaled(3, 1);  // columns 0, 1, 3
  EXPECT_EQ(narrow.at(0, 0), 1u);
  EXPECT_EQ(narrow.at(0, 1), 2u);
  EXPECT_EQ(narrow.at(0, 2), 4u);

  ASSERT_TRUE(file_.Open(Write(MakeImage(3, 1, 24, [](int, int c) { return 0x010203u * (c + 1); })).c_str()));
  const Scaled rgb = ReadScaled(7, 1);  // columns 0, 0, 0, 1, 1, 2, 2
  const unsigned expected[7] = {1, 1, 1, 2, 2, 3, 3};
  for (int x = 0; x < 7; ++x) EXPECT_EQ(rgb.at(0, x), 0x010203u * expected[x]);
}

TEST_F(BitmapFileTest, ReadScaledRefusals) {
  ASSERT_TRUE(file_.Open(Write(MakeImage(4, 4, 8, RowLabel)).c_str()));
  test::AssertRecorder rec;
  Bytes out(64);
  EXPECT_FALSE(file_.ReadScaled(4, 4, nullptr));
  EXPECT_TRUE(rec.saw("Puntero Invalido"));
  rec.clear();
  EXPECT_FALSE(file_.ReadScaled(0, 4, out.data()));
  EXPECT_FALSE(file_.ReadScaled(4, 0, out.data()));
  EXPECT_FALSE(file_.ReadScaled(INT32_MAX, INT32_MIN, out.data()));  // far beyond 2 GiB
  EXPECT_EQ(rec.count(), 3u);
  EXPECT_TRUE(rec.saw("Valores Invalidos"));

  BmpImage rle = MakeImage(4, 4, 8, RowLabel);
  rle.header.biCompression = 1;
  rle.pixels = {0, 1};  // end of bitmap: far shorter than the raw image
  ASSERT_TRUE(file_.Open(Write(rle).c_str()));
  rec.clear();
  EXPECT_FALSE(file_.ReadScaled(4, 4, out.data()));
  EXPECT_TRUE(rec.empty());

  BmpImage sixteen = MakeImage(4, 4, 8, RowLabel);
  sixteen.header.biBitCount = 16;
  sixteen.header.biClrUsed = 256;
  sixteen.pixels.resize(32);
  ASSERT_TRUE(file_.Open(Write(sixteen).c_str()));
  EXPECT_FALSE(file_.ReadScaled(4, 4, out.data()));
  EXPECT_TRUE(rec.saw("esta funcion no soporta estos formatos"));
}

TEST_F(BitmapFileTest, ReadsFailCleanlyWhenTheFileShrinksAfterOpen) {
  // Larger than any stdio buffer, so the lost rows must really come from the disk.
  const std::string path = Write(MakeImage(256, 256, 8, RowLabel));
  ASSERT_TRUE(file_.Open(path.c_str()));
  fs::resize_file(path, 54 + 1024 + 256 * 3);
  Bytes out(256 * 256);
  EXPECT_FALSE(file_.ReadPixels(out.data()));
  EXPECT_FALSE(file_.ReadScaled(256, 256, out.data()));
  EXPECT_FALSE(file_.ReadScaled(256, 2, out.data()));  // skips past the end, then reads
}

}  // namespace
}  // namespace qv
