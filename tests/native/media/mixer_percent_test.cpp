#include "media/mixer_percent.h"

#include <gtest/gtest.h>

#include "support/assert_recorder.h"

namespace qv {
namespace {

constexpr FaderRange kCommonFader{0, 65535, 65536};

TEST(MixerPercent, TheCommonFaderIsEitherSilentOrFull) {
  std::uint32_t value = 1;
  ASSERT_TRUE(FaderValueOfPercent(kCommonFader, 50, value));
  EXPECT_EQ(value, 0u);
  ASSERT_TRUE(FaderValueOfPercent(kCommonFader, 99, value));
  EXPECT_EQ(value, 0u);
  ASSERT_TRUE(FaderValueOfPercent(kCommonFader, 100, value));
  EXPECT_EQ(value, 65535u);
  ASSERT_TRUE(FaderValueOfPercent(kCommonFader, 0, value));
  EXPECT_EQ(value, 0u);
}

TEST(MixerPercent, ValuesAreRoundedDownToMultiplesOfTheStepCountLessOne) {
  // 10..110 in 11 steps: raw = percent + 10, rounded down to a multiple of 10.
  const FaderRange fader{10, 110, 11};
  std::uint32_t value = 0;
  ASSERT_TRUE(FaderValueOfPercent(fader, 37, value));
  EXPECT_EQ(value, 40u);
  ASSERT_TRUE(FaderValueOfPercent(fader, 0, value));
  EXPECT_EQ(value, 10u);
  // No step count counts as one step, and one step is refused rather than divided by.
  value = 7;
  EXPECT_FALSE(FaderValueOfPercent(FaderRange{0, 100, 0}, 50, value));
  EXPECT_FALSE(FaderValueOfPercent(FaderRange{0, 100, 1}, 50, value));
  EXPECT_EQ(value, 7u);
}

TEST(MixerPercent, PercentagesOutsideTheScaleAndFadersWithoutSpanCannotBeSet) {
  std::uint32_t value = 7;
  EXPECT_FALSE(FaderValueOfPercent(kCommonFader, -1, value));
  EXPECT_FALSE(FaderValueOfPercent(kCommonFader, 101, value));
  EXPECT_FALSE(FaderValueOfPercent(FaderRange{100, 100, 65536}, 50, value));
  EXPECT_FALSE(FaderValueOfPercent(FaderRange{200, 100, 65536}, 50, value));
  EXPECT_EQ(value, 7u);
}

TEST(MixerPercent, ReadingTruncatesAndAFaderWithoutSpanReadsFifty) {
  EXPECT_EQ(PercentOfFader(kCommonFader, 65535), 100u);
  EXPECT_EQ(PercentOfFader(kCommonFader, 0), 0u);
  EXPECT_EQ(PercentOfFader(kCommonFader, 32767), 49u);
  EXPECT_EQ(PercentOfFader(FaderRange{10, 110, 0}, 60), 50u);
  EXPECT_EQ(PercentOfFader(FaderRange{5, 5, 0}, 5), 50u);
  EXPECT_EQ(PercentOfFader(FaderRange{9, 1, 0}, 0), 50u);
  // A whole 32-bit span does not wrap, and a value beyond the bounds reads as the bound.
  EXPECT_EQ(PercentOfFader(FaderRange{0, 0xFFFFFFFFu, 0}, 0xFFFFFFFFu), 100u);
  EXPECT_EQ(PercentOfFader(FaderRange{10, 110, 0}, 0), 0u);
  EXPECT_EQ(PercentOfFader(FaderRange{10, 110, 0}, 500), 100u);
}

TEST(MixerPercent, AFaderAtItsMaximumIsShownOneShortOfIt) {
  EXPECT_EQ(SliderPositionOfPercent(PercentOfFader(kCommonFader, 65535)), 99);
  EXPECT_EQ(SliderPositionOfPercent(99), 99);
  EXPECT_EQ(SliderPositionOfPercent(0), 0);
}

TEST(MixerPercent, EveryMixerOperationNeedsTheMixerOpenedFirst) {
  test::AssertRecorder recorder;
  EXPECT_TRUE(CheckMixerReady(true));
  EXPECT_TRUE(recorder.empty());
  EXPECT_FALSE(CheckMixerReady(false));
  EXPECT_EQ(recorder.only(), "se debe inicializar el mixer primero");
}

}  // namespace
}  // namespace qv
