// The resource-file reader: directory lookup, byte-exact loads, and refusal of broken files.
#include "graphics/resource_file.h"

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <random>

#include "support/assert_recorder.h"
#include "support/rf_writer.h"

namespace qv {
namespace {

using test::AssertRecorder;
using test::BuildResourceFile;
using test::PatternPicture;
using test::RfPicture;

class ResourceFileTest : public ::testing::Test {
 protected:
  std::string Write(const std::vector<std::uint8_t>& bytes, const char* name = "test.rf") {
    const auto dir = std::filesystem::temp_directory_path() /
                     ("qv_rf_" + std::to_string(::testing::UnitTest::GetInstance()->random_seed()) +
                      "_" + ::testing::UnitTest::GetInstance()->current_test_info()->name());
    std::filesystem::create_directories(dir);
    const std::string path = (dir / name).string();
    test::WriteBytes(path, bytes);
    return path;
  }
  void TearDown() override {
    std::filesystem::remove_all(std::filesystem::temp_directory_path() /
                                ("qv_rf_" +
                                 std::to_string(::testing::UnitTest::GetInstance()->random_seed()) +
                                 "_" +
                                 ::testing::UnitTest::GetInstance()->current_test_info()->name()));
  }
};

void ExpectLoadedExactly(const PackedDib& dib, const RfPicture& p) {
  ASSERT_TRUE(dib);
  const BitmapInfoHeader expected = test::HeaderOf(p);
  EXPECT_EQ(0, std::memcmp(dib.get(), &expected, sizeof expected));
  if (!p.colours.empty()) {
    EXPECT_EQ(0, std::memcmp(dib.get() + kDibHeaderBytes, p.colours.data(), p.colours.size() * 4));
  }
  EXPECT_EQ(0, std::memcmp(dib.get() + kDibPixelOffset, p.pixels.data(), p.pixels.size()));
  EXPECT_EQ(dib.width(), p.width);
  EXPECT_EQ(dib.height(), p.height);
}

TEST_F(ResourceFileTest, LoadsEveryPictureByteForByte) {
  const std::vector<RfPicture> pictures = {PatternPicture(5000, 17, 9, 8, 256),
                                           PatternPicture(212, 3, 4, 8, 7),
                                           PatternPicture(6000, 5, 5, 24, 0)};
  const std::vector<std::uint8_t> bytes = BuildResourceFile(pictures);
  ResourceFile file;
  ASSERT_TRUE(file.Open(Write(bytes).c_str()));
  EXPECT_EQ(file.EntryCount(), 3u);
  ResourceFile memory;
  ASSERT_TRUE(memory.OpenBytes(bytes));
  for (const auto& p : pictures) {
    PackedDib dib;
    ASSERT_TRUE(file.LoadPicture(p.identifier, dib)) << p.identifier;
    ExpectLoadedExactly(dib, p);
    // In memory the same picture is seen where it lies; a file on disk has to be loaded.
    PictureView view;
    EXPECT_FALSE(file.ViewPicture(p.identifier, view));
    ASSERT_TRUE(memory.ViewPicture(p.identifier, view)) << p.identifier;
    EXPECT_EQ(0, std::memcmp(&view.header, dib.get(), sizeof view.header));
    EXPECT_EQ(0, std::memcmp(view.pixels, p.pixels.data(), p.pixels.size()));
    EXPECT_EQ(view.header.biSizeImage, p.pixels.size());
  }
}

TEST_F(ResourceFileTest, FirstEntryOfARepeatedIdentifierWins) {
  RfPicture first = PatternPicture(7, 4, 4, 8, 2);
  RfPicture second = PatternPicture(7, 8, 2, 8, 2);
  second.pixels.assign(second.pixels.size(), 0xAB);
  ResourceFile file;
  ASSERT_TRUE(file.Open(Write(BuildResourceFile({first, second})).c_str()));
  PackedDib dib;
  ASSERT_TRUE(file.LoadPicture(7, dib));
  ExpectLoadedExactly(dib, first);
}

TEST_F(ResourceFileTest, PictureWithoutColourTableLeavesSlotsUntouchedByTheFile) {
  ResourceFile file;
  const RfPicture p = PatternPicture(9, 6, 3, 8, 0);
  ASSERT_TRUE(file.Open(Write(BuildResourceFile({p})).c_str()));
  PackedDib dib;
  ASSERT_TRUE(file.LoadPicture(9, dib));
  EXPECT_EQ(test::HeaderOf(p).biClrUsed, 0u);
  EXPECT_EQ(0, std::memcmp(dib.get() + kDibPixelOffset, p.pixels.data(), p.pixels.size()));
}

TEST_F(ResourceFileTest, ReportsMisuseWithItsMessages) {
  const std::string path = Write(BuildResourceFile({PatternPicture(1, 2, 2, 8, 1)}));
  AssertRecorder rec;
  ResourceFile file;
  PackedDib dib;
  EXPECT_FALSE(file.LoadPicture(1, dib));
  EXPECT_EQ(rec.only(), "no ha sido declarado el .rf");

  rec.clear();
  EXPECT_FALSE(file.Open((path + ".missing").c_str()));
  EXPECT_EQ(rec.only(), "el archivo especificado no se encontro");

  rec.clear();
  ASSERT_TRUE(file.Open(path.c_str()));
  EXPECT_FALSE(file.Open(path.c_str()));
  EXPECT_EQ(rec.only(), "el path debe ser declarado una vez");

  rec.clear();
  ASSERT_TRUE(file.LoadPicture(1, dib));
  const HIMAGE before = dib.get();
  EXPECT_FALSE(file.LoadPicture(2, dib));
  EXPECT_EQ(rec.only(), "este bitmap no esta registrado en el .rf");
  EXPECT_EQ(dib.get(), before) << "a failed load keeps the previous picture";
}

// Every way the sizes of a file can lie: the load fails, the previous picture stays.
TEST_F(ResourceFileTest, RefusesBlocksThatDoNotFitOrCannotBeTrusted) {
  const RfPicture good = PatternPicture(1, 8, 4, 8, 4);
  const std::vector<std::uint8_t> base = BuildResourceFile({good, PatternPicture(2, 8, 4, 8, 4)});
  const std::size_t second = 4 + 40 + 16 + 32;  // where picture 2's block starts
  const std::size_t directory = base.size() - 4 - 32;

  struct Corruption {
    const char* what;
    std::size_t at;
    std::uint32_t value;
    std::size_t alsoAt = 0;  // a second field, when one alone would not do
    std::uint32_t alsoValue = 0;
  };
  const Corruption cases[] = {
      {"offset past the end", directory + 16 + 8, 0x7FFFFFF0},
      {"offset high word", directory + 16 + 12, 1},
      {"biSizeImage past the directory", second + 20, 0x10000},
      {"biSizeImage smaller than the rows", second + 20, 8},
      {"biSizeImage zero", second + 20, 0},
      {"more than 256 colours", second + 32, 300},
      {"colour table past the directory", second + 32, 256},
      {"negative height", second + 8, 0xFFFFFFFC},
      {"zero width", second + 4, 0},
      {"absurd width", second + 4, 0x7FFFFFFF},
      {"row bytes times rows past 64 bits", second + 4, 0x77000041, second + 8, 0x77777777},
      {"4-bit depth", second + 14, 4},
      {"header size", second + 0, 124},
  };
  for (const auto& c : cases) {
    std::vector<std::uint8_t> bytes = base;
    if (c.what == std::string("4-bit depth")) {
      bytes[c.at] = 4;
      bytes[c.at + 1] = 0;
    } else {
      std::memcpy(&bytes[c.at], &c.value, 4);
    }
    if (c.alsoAt != 0) std::memcpy(&bytes[c.alsoAt], &c.alsoValue, 4);
    ResourceFile file;  // read from memory: the same reader as for files
    ASSERT_TRUE(file.OpenBytes(bytes)) << c.what;
    PackedDib dib;
    ASSERT_TRUE(file.LoadPicture(1, dib));
    const HIMAGE before = dib.get();
    EXPECT_FALSE(file.LoadPicture(2, dib)) << c.what;
    PictureView view;
    EXPECT_FALSE(file.ViewPicture(2, view)) << c.what;
    EXPECT_EQ(dib.get(), before) << c.what;
    ExpectLoadedExactly(dib, good);
  }
}

TEST_F(ResourceFileTest, RefusesDirectoriesThatDoNotFit) {
  std::vector<std::uint8_t> bytes = BuildResourceFile({PatternPicture(1, 2, 2, 8, 1)});
  const std::uint32_t counts[] = {1000, 0xFFFFFFFF, 0x10000000};
  for (std::uint32_t count : counts) {
    std::memcpy(&bytes[bytes.size() - 4], &count, 4);
    ResourceFile file;
    EXPECT_FALSE(file.Open(Write(bytes).c_str())) << count;
  }
  ResourceFile tiny;
  EXPECT_FALSE(tiny.Open(Write({1, 2}).c_str()));
}

// Cutting a valid file anywhere, or scribbling over it, never crashes or reads out of bounds.
TEST_F(ResourceFileTest, SurvivesTruncationAndRandomDamage) {
  const std::vector<std::uint8_t> base =
      BuildResourceFile({PatternPicture(1, 9, 5, 8, 16), PatternPicture(2, 3, 3, 24, 0)});
  for (std::size_t length = 0; length < base.size(); ++length) {
    ResourceFile file;
    if (!file.Open(Write({base.begin(), base.begin() + static_cast<long>(length)}).c_str())) {
      continue;
    }
    PackedDib dib;
    file.LoadPicture(1, dib);
    file.LoadPicture(2, dib);
  }
  const unsigned seed = static_cast<unsigned>(::testing::UnitTest::GetInstance()->random_seed());
  std::mt19937 random(seed);
  SCOPED_TRACE("seed " + std::to_string(seed));
  AssertRecorder quiet;
  for (int round = 0; round < 300; ++round) {
    std::vector<std::uint8_t> bytes = base;
    const int flips = 1 + static_cast<int>(random() % 6);
    for (int i = 0; i < flips; ++i) bytes[random() % bytes.size()] = static_cast<std::uint8_t>(random());
    ResourceFile file;
    if (!file.Open(Write(bytes).c_str())) continue;
    PackedDib dib;
    for (std::uint32_t id : {1u, 2u, bytes[0] + 0u}) {
      if (file.LoadPicture(id, dib)) {
        const auto* h = DibHeader(dib.get());
        EXPECT_LE(DibRowBytes(h->biWidth, h->biBitCount) * h->biHeight,
                  static_cast<std::int64_t>(h->biSizeImage));
      }
    }
  }
}

}  // namespace
}  // namespace qv
