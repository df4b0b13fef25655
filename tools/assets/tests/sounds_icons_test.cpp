// The module's sounds, icon and cursor, read back as Windows will read them.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>

#include "assets/sounds.h"
#include "assets/win_icons.h"

namespace qv::assets {
namespace {

std::uint32_t U32(const std::vector<std::uint8_t>& b, std::size_t at) {
  return b[at] | b[at + 1] << 8 | b[at + 2] << 16 | static_cast<std::uint32_t>(b[at + 3]) << 24;
}
std::uint16_t U16(const std::vector<std::uint8_t>& b, std::size_t at) {
  return static_cast<std::uint16_t>(b[at] | b[at + 1] << 8);
}

struct WaveCase {
  const char* name;
  std::vector<double> (*make)();
  double longest;  // seconds
  double loudest;  // of full scale
};

class EachSound : public ::testing::TestWithParam<WaveCase> {};

TEST_P(EachSound, IsAShortSoftMonoPcmWave) {
  const std::vector<std::uint8_t> wav = EncodeWave(GetParam().make());
  ASSERT_GE(wav.size(), 44u);
  EXPECT_EQ(std::memcmp(wav.data(), "RIFF", 4), 0);
  EXPECT_EQ(U32(wav, 4), wav.size() - 8);
  EXPECT_EQ(std::memcmp(wav.data() + 8, "WAVEfmt ", 8), 0);
  EXPECT_EQ(U16(wav, 20), 1);  // PCM
  EXPECT_EQ(U16(wav, 22), 1);  // mono
  EXPECT_EQ(U32(wav, 24), static_cast<std::uint32_t>(kSoundRate));
  EXPECT_EQ(U16(wav, 34), 16);
  EXPECT_EQ(std::memcmp(wav.data() + 36, "data", 4), 0);
  const std::uint32_t bytes = U32(wav, 40);
  ASSERT_EQ(bytes, wav.size() - 44);
  const std::size_t samples = bytes / 2;
  EXPECT_LE(samples, GetParam().longest * kSoundRate);
  EXPECT_GE(samples, 0.02 * kSoundRate);
  int peak = 0;
  for (std::size_t i = 0; i < samples; ++i) peak = std::max(peak, std::abs(static_cast<std::int16_t>(U16(wav, 44 + 2 * i))));
  EXPECT_LE(peak, GetParam().loudest * 32767) << "too loud to be pleasant";
  EXPECT_GE(peak, 0.1 * 32767) << "too quiet to hear";
  // Starting and stopping near silence keeps the speaker from popping.
  EXPECT_LE(std::abs(static_cast<std::int16_t>(U16(wav, 44))), 600);
  EXPECT_LE(std::abs(static_cast<std::int16_t>(U16(wav, 44 + 2 * (samples - 1)))), 600);
}

INSTANTIATE_TEST_SUITE_P(
    ModuleSounds, EachSound,
    ::testing::Values(WaveCase{"hover", HoverSound, 0.06, 0.3}, WaveCase{"click", ClickSound, 0.12, 0.5},
                      WaveCase{"join", JoinSound, 0.2, 0.6}),
    [](const auto& param) { return std::string(param.param.name); });

TEST(Sounds, TheHoverTickIsTheShortestAndSoftest) {
  const auto hover = HoverSound(), click = ClickSound(), join = JoinSound();
  EXPECT_LT(hover.size(), click.size());
  EXPECT_LT(click.size(), join.size());
  auto peak = [](const std::vector<double>& s) {
    double p = 0;
    for (double v : s) p = std::max(p, std::fabs(v));
    return p;
  };
  EXPECT_LT(peak(hover), peak(click));
  EXPECT_NE(hover, click);
}

// Checks an icon or cursor file's directory and images; returns the sizes found.
std::vector<int> CheckIconFile(const std::vector<std::uint8_t>& file, int type) {
  std::vector<int> sizes;
  EXPECT_GE(file.size(), 6u);
  if (file.size() < 6) return sizes;
  EXPECT_EQ(U16(file, 0), 0);
  EXPECT_EQ(U16(file, 2), type);
  const int count = U16(file, 4);
  for (int i = 0; i < count; ++i) {
    const std::size_t entry = 6 + 16 * i;
    const int size = file[entry];
    const std::uint32_t bytes = U32(file, entry + 8), offset = U32(file, entry + 12);
    EXPECT_LE(std::uint64_t{offset} + bytes, file.size());
    if (std::uint64_t{offset} + bytes > file.size()) continue;
    EXPECT_EQ(U32(file, offset), 40u);
    EXPECT_EQ(static_cast<int>(U32(file, offset + 4)), size);
    EXPECT_EQ(static_cast<int>(U32(file, offset + 8)), 2 * size) << "colour and mask halves";
    EXPECT_EQ(U16(file, offset + 14), 32);
    const std::size_t maskStride = (size + 31) / 32 * 4;
    EXPECT_EQ(bytes, 40 + size * size * 4 + maskStride * size);
    // Some pixels are opaque, some clear, and the mask marks exactly the clear ones.
    int opaque = 0, clear = 0, mismatched = 0;
    for (int y = 0; y < size; ++y) {
      for (int x = 0; x < size; ++x) {
        const std::uint8_t alpha = file[offset + 40 + (static_cast<std::size_t>(y) * size + x) * 4 + 3];
        const std::size_t maskAt = offset + 40 + size * size * 4 + y * maskStride + x / 8;
        const bool masked = file[maskAt] & (0x80 >> (x % 8));
        opaque += alpha == 255;
        clear += alpha == 0;
        mismatched += masked != (alpha == 0);
      }
    }
    EXPECT_GT(opaque, size * size / 8);
    EXPECT_GT(clear, size * size / 8);
    EXPECT_EQ(mismatched, 0);
    sizes.push_back(size);
  }
  return sizes;
}

TEST(WindowsIcons, TheIconHoldsThreeSizes) {
  EXPECT_EQ(CheckIconFile(MakeIconFile(), 1), (std::vector<int>{16, 32, 48}));
}

TEST(WindowsIcons, TheDropCursorPointsWithItsArrowTip) {
  const std::vector<std::uint8_t> cursor = MakeDropCursorFile();
  EXPECT_EQ(CheckIconFile(cursor, 2), (std::vector<int>{32}));
  EXPECT_EQ(U16(cursor, 6 + 4), kDropCursorHotX);
  EXPECT_EQ(U16(cursor, 6 + 6), kDropCursorHotY);
}

}  // namespace
}  // namespace qv::assets
