// The random source: reproducible from a seed, uniform in [0, 1), identical on every platform.
#include "system/random.h"

#include <gtest/gtest.h>

#include "support/random_golden.h"

namespace qv {
namespace {

TEST(Random, SameSeedSameSequenceAndTheGoldenValues) {
  SeedRandom(test::kGoldenSeed);
  for (double golden : test::kGoldenValues) EXPECT_DOUBLE_EQ(RandomUniform(), golden);
  RandomSource a(99), b(99), c(100);
  bool differs = false;
  for (int i = 0; i < 100; ++i) {
    const double x = a.Uniform();
    EXPECT_EQ(x, b.Uniform());
    differs = differs || x != c.Uniform();
  }
  EXPECT_TRUE(differs);
}

TEST(Random, UniformStaysInTheHalfOpenIntervalAndFillsIt) {
  RandomSource source(12345);
  int buckets[10] = {};
  for (int i = 0; i < 100000; ++i) {
    const double x = source.Uniform();
    ASSERT_GE(x, 0.0);
    ASSERT_LT(x, 1.0);
    ++buckets[static_cast<int>(x * 10)];
  }
  for (int count : buckets) {
    EXPECT_GT(count, 9500);
    EXPECT_LT(count, 10500);
  }
}

}  // namespace
}  // namespace qv
