// Wrapped text: where lines break, which are justified and by how much, and the refusals.
#include "widgets/wrap_logic.h"

#include <gtest/gtest.h>

#include <string>

#include "support/assert_recorder.h"

namespace qv {
namespace {

using test::AssertRecorder;

// A monospaced font: every character 10 pixels wide and 20 high.
TextExtent Mono(const char*, int length) { return TextExtent{10 * length, 20}; }

std::vector<WrappedLine> Wrap(const char* text, int width, int areaHeight = 1000,
                              bool expectOk = true) {
  std::vector<WrappedLine> lines;
  EXPECT_EQ(WrapText(text, width, areaHeight, 15, Mono, lines), expectOk) << text;
  return lines;
}

std::string Text(const char* text, const WrappedLine& line) {
  return std::string(text + line.start, static_cast<std::size_t>(line.length));
}

TEST(WrapBreaks, AMessageThatFitsIsOneUnjustifiedLine) {
  const auto lines = Wrap("hello big world", 460);
  ASSERT_EQ(lines.size(), 1u);
  EXPECT_EQ(lines[0].length, 15);
  EXPECT_FALSE(lines[0].justify);
  EXPECT_EQ(lines[0].extra, 0);
}

TEST(WrapBreaks, LinesBreakAtTheLastGapThatFits) {
  const char* text = "aaa bbb ccc ddd eee";
  const auto lines = Wrap(text, 100);  // at most 9 characters: widths must stay below 100
  ASSERT_EQ(lines.size(), 3u);
  EXPECT_EQ(Text(text, lines[0]), "aaa bbb");
  EXPECT_EQ(Text(text, lines[1]), "ccc ddd");
  EXPECT_EQ(Text(text, lines[2]), "eee");
  EXPECT_EQ(lines[1].y, 20);
  EXPECT_EQ(lines[2].y, 40);
}

TEST(WrapBreaks, AWidthEqualToTheAreaDoesNotFit) {
  const char* text = "aaaa bbbbb";
  const auto lines = Wrap(text, 100);  // the whole text is exactly 100 wide
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_EQ(Text(text, lines[0]), "aaaa");
}

TEST(WrapJustification, WrappedLinesSpreadTheRestOverEveryScannedWord) {
  const auto lines = Wrap("aaa bbb ccc ddd eee", 100);
  EXPECT_TRUE(lines[0].justify);
  EXPECT_EQ(lines[0].extra, 30);
  EXPECT_EQ(lines[0].gaps, 3) << "the word that did not fit is counted too";
  EXPECT_TRUE(lines[1].justify);
  EXPECT_FALSE(lines[2].justify) << "the last line of the text is not justified";
  EXPECT_EQ(lines[2].gaps, 1);
}

TEST(WrapJustification, ALineEndedByALineFeedIsJustifiedLikeAWrappedOne) {
  const char* text = "ab cd\nef";
  const auto lines = Wrap(text, 460);
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_EQ(Text(text, lines[0]), "ab cd");
  EXPECT_TRUE(lines[0].justify);
  EXPECT_EQ(lines[0].extra, 460 - 50);
  EXPECT_EQ(lines[0].gaps, 2);
  EXPECT_EQ(Text(text, lines[1]), "ef");
  EXPECT_FALSE(lines[1].justify);
}

TEST(WrapEmptyLines, TwoLineFeedsLeaveASpacesHeightAndDrawNothing) {
  const char* text = "ab\n\ncd\n\n";
  const auto lines = Wrap(text, 460);
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_EQ(Text(text, lines[0]), "ab");
  EXPECT_EQ(Text(text, lines[1]), "cd");
  EXPECT_EQ(lines[1].y, 20 + 15);
}

TEST(WrapRefusals, AWordWiderThanTheAreaIsReported) {
  AssertRecorder rec;
  const char* text = "ab abcdefghijklmnop xy";
  const auto lines = Wrap(text, 100, 1000, false);
  EXPECT_EQ(rec.only(), "la ultima palabra es mas grande que el area asignada para el texto");
  ASSERT_EQ(lines.size(), 1u) << "the lines before it stay";
  EXPECT_EQ(Text(text, lines[0]), "ab");

  rec.clear();
  Wrap("abcdefghijklmnop", 100, 1000, false);
  EXPECT_EQ(rec.only(), "la ultima palabra es mas grande que el area asignada para el texto")
      << "also when the wide word ends the text";
}

TEST(WrapRefusals, TextTallerThanTheAreaIsReportedBeforeDrawingOutside) {
  AssertRecorder rec;
  const auto lines = Wrap("aaa bbb ccc ddd eee", 100, 50, false);
  EXPECT_EQ(rec.only(), "el texto es mas alto que el area asignada");
  EXPECT_EQ(lines.size(), 2u);
  rec.clear();
  EXPECT_EQ(Wrap("aaa bbb ccc ddd eee", 100, 60).size(), 3u);
  EXPECT_TRUE(rec.empty()) << "three lines of 20 fit exactly in 60";
}

TEST(WrapRefusals, AnOverlongLineIsReportedAndNeverReadFurther) {
  AssertRecorder rec;
  const std::string word(1000, 'x');
  std::vector<WrappedLine> lines;
  EXPECT_FALSE(WrapText(word.c_str(), 1 << 30, 1000, 15, Mono, lines));
  EXPECT_EQ(rec.only(), "text muy largo o no NULL-TERMINATED");
  rec.clear();
  const std::string fits(999, 'x');
  EXPECT_TRUE(WrapText(fits.c_str(), 1 << 30, 1000, 15, Mono, lines));
  EXPECT_TRUE(rec.empty());
}

TEST(WrapRefusals, ALeadingSpaceLeavesNothingToMeasureAndIsRefused) {
  AssertRecorder rec;
  Wrap(" ab", 460, 1000, false);
  EXPECT_EQ(rec.only(), "la ultima palabra es mas grande que el area asignada para el texto");
}

}  // namespace
}  // namespace qv
