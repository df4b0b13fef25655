// Tests of CBuffer: limits, exact growth, the overrun checks, joins, sub-texts and parsing.
#include "system/cbuffer.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <string>

#include "support/assert_recorder.h"

namespace qv {
namespace {

const char* const kTooSmall =
    "este buffer es invalido, probablemente se uso este buffer para llamar un api, y fue muy "
    "pequeño de tamaño\n";
const char* const kNotRecalculated =
    "este buffer es invalido, probablemente se uso este buffer para llamar un api, y no se llamo "
    "RecalculateSize para recalcular su tamaño\n";

TEST(CBufferAssign, TakesUpTo999CharactersAndCutsToN) {
  const std::string longest(999, 'a');
  CBuffer b(longest.c_str());
  EXPECT_EQ(b.Length(), 1000);
  EXPECT_EQ(b.Capacity(), 1000);
  b.Assign(std::string(1000, 'b').c_str());
  EXPECT_TRUE(b.Equals(longest.c_str()));

  EXPECT_TRUE(CBuffer("abcdef", 3).Equals("abc"));
  EXPECT_TRUE(CBuffer("ab", 3).Equals("ab"));

  test::AssertRecorder rec;
  b.Assign(nullptr);
  b.AssignN("abc", 0);
  EXPECT_EQ(rec.count(), 2u);
  EXPECT_TRUE(b.Equals(longest.c_str()));
}

TEST(CBufferAppend, GrowsToExactlyTheNewLength) {
  CBuffer path("C:\\Juegos\\");
  path += "Image\\";
  EXPECT_STREQ(path.Text(), "C:\\Juegos\\Image\\");
  EXPECT_EQ(path.Capacity(), path.Length());
  path += path;  // appending itself must read the text before the old block goes
  EXPECT_STREQ(path.Text(), "C:\\Juegos\\Image\\C:\\Juegos\\Image\\");
  EXPECT_EQ(path.Capacity(), 33);

  CBuffer number;
  number += -45;
  number += 0;
  EXPECT_STREQ(number.Text(), "-450");
  number.AssignInt(INT_MIN);
  EXPECT_STREQ(number.Text(), "-2147483648");

  CBuffer nearLimit(std::string(998, 'x').c_str());
  nearLimit += "yz";
  nearLimit += nullptr;
  EXPECT_EQ(nearLimit.Length(), 999);

  CBuffer reserved("abc");
  reserved.Reserve(10);  // the old text is dropped when the block grows
  EXPECT_EQ(reserved.Length(), 10);
  EXPECT_EQ(reserved.Capacity(), 10);
  EXPECT_STREQ(reserved.Text(), "");
}

TEST(CBufferValidate, CatchesSystemCallsThatOverranOrLengthened) {
  CBuffer folder(260);
  std::strcpy(folder.Text(), "C:\\");
  folder.RecalculateSize();
  EXPECT_EQ(folder.Length(), 4);
  std::strcpy(folder.Text(), "C:\\Juegos\\");

  test::AssertRecorder rec;
  folder += "Image\\";
  EXPECT_EQ(rec.only(), kNotRecalculated);
  EXPECT_EQ(folder.Length(), 4);
  EXPECT_STREQ(folder.Text(), "C:\\Juegos\\");

  rec.clear();
  CBuffer small(4);
  std::memset(small.Text(), 'x', 4);
  small.RecalculateSize();
  EXPECT_EQ(small.Length(), 4);
  EXPECT_EQ(small.Left(2).Text(), nullptr);
  EXPECT_EQ(rec.only(), kTooSmall);

  rec.clear();
  CBuffer zeroLength("abc");
  zeroLength.Reserve(0);
  zeroLength += 5;
  EXPECT_EQ(rec.only(), "este valor aqui es invalido\n");
}

TEST(CBufferJoin, EmptySidesGiveCopiesAndEmptyStaysNull) {
  EXPECT_EQ((CBuffer() + CBuffer()).Text(), nullptr);
  EXPECT_EQ((CBuffer("") + "").Text(), nullptr);
  EXPECT_TRUE((CBuffer("ab") + "").Equals("ab"));
  EXPECT_TRUE(("" + CBuffer("ab")).Equals("ab"));

  const CBuffer joined = "Video\\" + CBuffer("2") + ".avi";
  EXPECT_TRUE(joined.Equals("Video\\2.avi"));
  EXPECT_EQ(joined.Capacity(), 12);
  EXPECT_TRUE((CBuffer("Help\\") + 3).Equals("Help\\3"));
}

TEST(CBufferCopy, IsDeepAndMoveLeavesTheSourceEmpty) {
  CBuffer original("abc");
  CBuffer copy(original);
  *copy.At(0) = 'x';
  EXPECT_STREQ(original.Text(), "abc");
  copy = original;
  EXPECT_TRUE(copy.Equals(original));

  CBuffer moved(std::move(original));
  EXPECT_EQ(original.Text(), nullptr);  // NOLINT(bugprone-use-after-move)
  EXPECT_STREQ(moved.Text(), "abc");
}

TEST(ParseInt, ReadsSignsAndAtMostTenDigits) {
  EXPECT_EQ(ParseInt("  --12a"), 12);
  EXPECT_EQ(ParseInt("+-7"), -7);
  EXPECT_EQ(ParseInt("12345678901"), 1234567890);
  EXPECT_EQ(ParseInt(""), 0);
  EXPECT_EQ(ParseInt(nullptr), 0);
}

}  // namespace
}  // namespace qv
