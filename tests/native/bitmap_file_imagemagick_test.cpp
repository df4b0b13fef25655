// BitmapFile against ImageMagick: files ImageMagick writes must decode to ImageMagick's pixels.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "graphics/bitmap_file.h"
#include "graphics/bitmap_writer.h"
#include "graphics/packed_dib.h"

namespace qv {
namespace {

namespace fs = std::filesystem;
using Bytes = std::vector<std::uint8_t>;

#ifdef QV_IMAGEMAGICK_CONVERT
const char* const kConvert = QV_IMAGEMAGICK_CONVERT;
#else
const char* const kConvert = nullptr;
#endif

// Top-down RGB triplets, ImageMagick's "rgb:" layout.
struct Picture {
  int width = 0;
  int height = 0;
  Bytes rgb;
};

// Names the first pixel that differs instead of dumping both pictures.
::testing::AssertionResult SamePicture(const Picture& actual, const Picture& expected) {
  if (actual.width != expected.width || actual.height != expected.height ||
      actual.rgb.size() != expected.rgb.size()) {
    return ::testing::AssertionFailure() << "size " << actual.width << "x" << actual.height
                                         << ", expected " << expected.width << "x" << expected.height;
  }
  const auto diff = std::mismatch(actual.rgb.begin(), actual.rgb.end(), expected.rgb.begin());
  if (diff.first == actual.rgb.end()) return ::testing::AssertionSuccess();
  const auto pixel = (diff.first - actual.rgb.begin()) / 3;
  return ::testing::AssertionFailure() << "first difference at x " << pixel % actual.width
                                       << ", y " << pixel / actual.width;
}

Bytes ReadAll(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  return Bytes(std::istreambuf_iterator<char>(in), {});
}

void WriteAll(const fs::path& path, const Bytes& bytes) {
  std::ofstream(path, std::ios::binary)
      .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

// The picture a DIB buffer shows: rows bottom-up for a positive height, colours through the table.
Picture FromDib(const std::uint8_t* dib, int width, int height, int bits,
                const std::vector<RgbQuad>& colours) {
  const int rows = std::abs(height);
  const std::int64_t rowBytes = DibRowBytes(width, bits);
  Picture picture{width, rows, {}};
  for (int y = 0; y < rows; ++y) {
    const std::uint8_t* row = dib + (height < 0 ? y : rows - 1 - y) * rowBytes;
    for (int x = 0; x < width; ++x) {
      RgbQuad q{};
      if (bits == 24) {
        q = {row[3 * x], row[3 * x + 1], row[3 * x + 2], 0};
      } else {
        const unsigned index = bits == 8 ? row[x] : (x % 2 ? row[x / 2] & 0x0F : row[x / 2] >> 4);
        if (index < colours.size()) q = colours[index];
      }
      picture.rgb.insert(picture.rgb.end(), {q.rgbRed, q.rgbGreen, q.rgbBlue});
    }
  }
  return picture;
}

// Which stored source row feeds each output row, in stored order: the accumulator walk.
std::vector<int> WalkRows(int sourceRows, int outRows) {
  const bool enlarge = sourceRows < outRows;
  const double ratio = enlarge ? double(outRows) / sourceRows : double(sourceRows) / outRows;
  std::vector<int> rows;
  double accumulator = 0;
  int reads = 0;
  int last = -1;
  for (int step = 0; step < std::max(sourceRows, outRows) && int(rows.size()) < outRows; ++step) {
    if (static_cast<int>(accumulator) == step && reads < sourceRows) {
      accumulator += ratio;
      last = enlarge ? reads : step;
      ++reads;
      if (!enlarge) rows.push_back(last);
    }
    if (enlarge) rows.push_back(last);
  }
  return rows;
}

// The reference resampling of a top-down picture stored in a file of the given row order.
Picture Resample(const Picture& source, int width, int height, bool storedTopDown) {
  Picture out{width, height, Bytes(std::size_t(width) * height * 3)};
  const std::vector<int> rows = WalkRows(source.height, height);
  for (int k = 0; k < height; ++k) {
    const int from = storedTopDown ? rows[k] : source.height - 1 - rows[k];
    const int to = storedTopDown ? k : height - 1 - k;
    for (int x = 0; x < width; ++x) {
      const auto column = static_cast<int>(double(x) * source.width / width);
      std::memcpy(&out.rgb[(std::size_t(to) * width + x) * 3],
                  &source.rgb[(std::size_t(from) * source.width + column) * 3], 3);
    }
  }
  return out;
}

struct Sample {
  std::string name;
  fs::path path;
  int bits;
  bool topDown;
  Picture reference;  // ImageMagick's decoding of the file
};

class ImageMagickTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    if (!kConvert) return;
    dir_ = fs::temp_directory_path() / ("qv_bmp_magick_" + std::to_string(std::random_device{}()));
    fs::create_directories(dir_);
    struct Source {
      int bits, width, height;
      const char* options;
    };
    // Odd widths leave padding at the end of every row at each depth.
    for (const Source& s : {Source{4, 37, 23, "-colors 16 -type Palette"},
                            Source{8, 41, 29, "-colors 200 -type Palette"},
                            Source{24, 33, 17, "-type TrueColor"}}) {
      const std::string name = std::to_string(s.bits) + "bit";
      const fs::path bottomUp = dir_ / (name + ".bmp");
      const std::string size = std::to_string(s.width) + "x" + std::to_string(s.height);
      if (!Convert("-seed " + std::to_string(s.bits) + " -size " + size + " plasma:fractal " +
                   s.options + " -compress None \"BMP3:" + bottomUp.string() + "\"")) {
        continue;
      }
      const fs::path topDown = dir_ / (name + "_topdown.bmp");
      WriteAll(topDown, ReverseRows(ReadAll(bottomUp)));
      for (bool isTopDown : {false, true}) {
        const fs::path& path = isTopDown ? topDown : bottomUp;
        samples_.push_back({name + (isTopDown ? " top-down" : " bottom-up"), path, s.bits,
                            isTopDown, Decode(path, s.width, s.height)});
      }
    }
  }
  static void TearDownTestSuite() {
    std::error_code ignored;
    if (!dir_.empty()) fs::remove_all(dir_, ignored);
    samples_.clear();
  }
  void SetUp() override {
    if (!kConvert) GTEST_SKIP() << "ImageMagick's convert was not found at build time";
    ASSERT_EQ(samples_.size(), 6u) << "convert failed to write the samples";
  }

  static bool Convert(const std::string& arguments) {
    return std::system(("\"" + std::string(kConvert) + "\" " + arguments).c_str()) == 0;
  }
  static Picture Decode(const fs::path& bmp, int width, int height) {
    const fs::path rgb = fs::path(bmp).replace_extension(".rgb");
    Convert("\"" + bmp.string() + "\" -depth 8 \"rgb:" + rgb.string() + "\"");
    return {width, height, ReadAll(rgb)};
  }
  // The same picture stored top-down: rows in the opposite order and a negative biHeight.
  static Bytes ReverseRows(Bytes file) {
    BitmapInfoHeader header;
    std::memcpy(&header, &file[14], sizeof header);
    std::uint32_t offBits;
    std::memcpy(&offBits, &file[10], 4);
    const auto rowBytes = static_cast<std::size_t>(DibRowBytes(header.biWidth, header.biBitCount));
    const Bytes original = file;
    for (int y = 0; y < header.biHeight; ++y) {
      std::memcpy(&file[offBits + y * rowBytes],
                  &original[offBits + (header.biHeight - 1 - y) * rowBytes], rowBytes);
    }
    header.biHeight = -header.biHeight;
    std::memcpy(&file[14], &header, sizeof header);
    return file;
  }

  // Opens a sample and checks it is laid out as intended; returns its colour table.
  std::vector<RgbQuad> OpenSample(const Sample& sample) {
    EXPECT_TRUE(file_.Open(sample.path.string().c_str()));
    BitmapInfoHeader header{};
    EXPECT_TRUE(file_.GetHeader(&header));
    EXPECT_EQ(header.biBitCount, sample.bits);
    EXPECT_EQ(header.biCompression, kBiRgb);
    EXPECT_EQ(header.biHeight < 0, sample.topDown);
    std::uint32_t offBits = 0;
    std::memcpy(&offBits, &ReadAll(sample.path)[10], 4);
    EXPECT_EQ(offBits, 54u + 4 * file_.ColourCount()) << "pixels must follow the colour table";
    std::vector<RgbQuad> colours(file_.ColourCount());
    if (!colours.empty()) {
      EXPECT_TRUE(file_.ReadColours(0, file_.ColourCount(), colours.data()));
    }
    return colours;
  }
  Picture ReadScaled(const Sample& sample, const std::vector<RgbQuad>& colours, int width,
                     int height) {
    Bytes buffer(static_cast<std::size_t>(DibRowBytes(width, sample.bits) * std::abs(height)));
    EXPECT_TRUE(file_.ReadScaled(width, height, buffer.data()));
    return FromDib(buffer.data(), width, height, sample.bits, colours);
  }

  static inline fs::path dir_;
  static inline std::vector<Sample> samples_;
  BitmapFile file_;
};

TEST_F(ImageMagickTest, WholeReadsDecodeLikeImageMagick) {
  for (const Sample& sample : samples_) {
    SCOPED_TRACE(sample.name);
    const std::vector<RgbQuad> colours = OpenSample(sample);
    const BitmapSize size = file_.GetSize();
    Bytes pixels(static_cast<std::size_t>(DibRowBytes(size.width, sample.bits) * std::abs(size.height)));
    ASSERT_TRUE(file_.ReadPixels(pixels.data()));
    EXPECT_TRUE(SamePicture(FromDib(pixels.data(), size.width, size.height, sample.bits, colours),
                            sample.reference));
    for (int sign : {1, -1}) {
      EXPECT_TRUE(SamePicture(ReadScaled(sample, colours, size.width, sign * std::abs(size.height)),
                              sample.reference));
    }
  }
}

TEST_F(ImageMagickTest, ScaledReadsMatchTheRowAndColumnRule) {
  struct Scale {
    int widthNum, widthDen, heightNum, heightDen;
  };
  const Scale scales[] = {{2, 1, 2, 1}, {1, 2, 1, 2}, {3, 7, 3, 7}, {2, 1, 1, 2}, {3, 7, 2, 1}};
  for (const Sample& sample : samples_) {
    const std::vector<RgbQuad> colours = OpenSample(sample);
    const Picture& source = sample.reference;
    for (const Scale& s : scales) {
      const int width = source.width * s.widthNum / s.widthDen;
      const int height = source.height * s.heightNum / s.heightDen;
      const Picture expected = Resample(source, width, height, sample.topDown);
      for (int sign : {1, -1}) {
        SCOPED_TRACE(::testing::Message() << sample.name << " to " << width << "x" << sign * height);
        EXPECT_TRUE(SamePicture(ReadScaled(sample, colours, width, sign * height), expected));
      }
    }
  }
}

// The writer against ImageMagick: a picture read into memory and written out again decodes to
// the same pixels, at the same depth and with its own colour table.
TEST_F(ImageMagickTest, WrittenPicturesDecodeLikeTheirSources) {
  for (const Sample& sample : samples_) {
    if (sample.topDown || sample.bits == 4) continue;  // the game's pictures in memory: 8 or 24
    SCOPED_TRACE(sample.name);
    const std::vector<RgbQuad> colours = OpenSample(sample);
    BitmapInfoHeader header{};
    ASSERT_TRUE(file_.GetHeader(&header));
    const auto pixelBytes = static_cast<std::size_t>(BitmapFile::ImageSize(header));
    PackedDib picture;
    picture.Adopt(PackedDib::AllocateBlock(pixelBytes), kDibPixelOffset + pixelBytes);
    std::memcpy(picture.get(), &header, sizeof header);
    if (!colours.empty()) std::memcpy(DibColours(picture.get()), colours.data(), 4 * colours.size());
    ASSERT_TRUE(file_.ReadPixels(DibPixels(picture.get())));
    file_.Close();

    const fs::path written = dir_ / ("written_" + std::to_string(sample.bits) + ".bmp");
    ASSERT_TRUE(WriteBitmapFile(written.string().c_str(), picture.get()));
    EXPECT_FALSE(fs::exists(written.string() + ".tmp"));
    EXPECT_TRUE(SamePicture(Decode(written, header.biWidth, header.biHeight), sample.reference));
    BitmapFile back;
    ASSERT_TRUE(back.Open(written.string().c_str()));
    BitmapInfoHeader backHeader{};
    ASSERT_TRUE(back.GetHeader(&backHeader));
    EXPECT_EQ(backHeader.biBitCount, sample.bits);
    EXPECT_EQ(back.ColourCount(), static_cast<int>(colours.size()));
  }
  EXPECT_FALSE(WriteBitmapFile((dir_ / "none.bmp").string().c_str(), nullptr));
  EXPECT_FALSE(fs::exists(dir_ / "none.bmp"));
}

}  // namespace
}  // namespace qv
