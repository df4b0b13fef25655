// Where the shell puts things, the start-up refusals, the clock text and the about text.
#include <gtest/gtest.h>

#include <string>

#include "about/about_text.h"
#include "shell/shell_layout.h"

namespace qv {
namespace {

TEST(StartupRules, ColourIsCheckedBeforeTheScreenSize) {
  EXPECT_EQ(DisplayRefusalBase(16, 800, 600), 0);
  EXPECT_EQ(DisplayRefusalBase(32, 1920, 1080), 0);
  EXPECT_EQ(DisplayRefusalBase(16, 799, 600), 200);
  EXPECT_EQ(DisplayRefusalBase(16, 800, 599), 200);
  EXPECT_EQ(DisplayRefusalBase(8, 640, 480), 160);
  EXPECT_EQ(DisplayRefusalBase(15, 1024, 768), 160);
}

TEST(StartupRules, ProgramFolderKeepsItsBackslash) {
  const std::string path = "C:\\Games\\Quorvex\\Quorvex.exe";
  EXPECT_EQ(FolderOfModulePath(path.c_str(), path.size()), "C:\\Games\\Quorvex\\");
  // Only the returned length counts, whatever follows it in the buffer.
  EXPECT_EQ(FolderOfModulePath(path.c_str(), 8), "C:\\");
  // No backslash, or one in the very first place: the name is kept whole.
  EXPECT_EQ(FolderOfModulePath("Quorvex.exe", 11), "Quorvex.exe");
  EXPECT_EQ(FolderOfModulePath("\\Quorvex.exe", 12), "\\Quorvex.exe");
  EXPECT_EQ(FolderOfModulePath(nullptr, 3), "");
}

TEST(TitleLayout, AboutAndClockFollowTheScreenWidth) {
  TitleLayout t = TitleLayoutFor(800, 178);
  EXPECT_EQ(t.about.x, 348);
  EXPECT_EQ(t.about.y, -1);
  EXPECT_EQ(t.clock.x, 570);
  EXPECT_EQ(t.minimise.x, 725);
  EXPECT_EQ(t.close.x, 764);
  EXPECT_EQ(t.newGame.x, -2);
  EXPECT_EQ(t.newGame.y, 10);
  t = TitleLayoutFor(1024, 178);
  EXPECT_EQ(t.about.x, 423);
  EXPECT_EQ(t.clock.x, 720);
}

TEST(TitleLayout, LanguageAndTextureButtonsSplitTheRoomEvenly) {
  for (int width : {800, 1024, 1280, 1920}) {
    const TitleLayout t = TitleLayoutFor(width, 178);
    const int gap1 = t.language.x - 178;
    const int gap2 = t.texture.x - (t.language.x + kTitleButtonSide);
    const int gap3 = t.about.x - (t.texture.x + kTitleButtonSide);
    EXPECT_GT(gap1, 0) << width;
    EXPECT_EQ(gap1, gap2) << width;
    EXPECT_NEAR(gap3, gap1, 2) << width;
    EXPECT_EQ(t.language.y + kTitleButtonSide / 2, kTitleBarHeight / 2);
  }
}

TEST(ClockText, TwoDigitsEachAndLongHours) {
  EXPECT_EQ(ClockText(0, 0, 0), "00:00:00");
  EXPECT_EQ(ClockText(1, 2, 5), "01:02:05");
  EXPECT_EQ(ClockText(100, 0, 0), "100:00:00");
  EXPECT_EQ(ClockText(12, 34, 56), "12:34:56");
}

TEST(EdgeButtons, BoxButtonsStandInAColumnHalfOffTheEdge) {
  const int expected[] = {272, 318, 364, 410, 456, 502};
  for (int i = 0; i < 6; ++i) {
    const ShellPoint p = BoxButtonPosition(i, 1024, 768);
    EXPECT_EQ(p.x, 999);
    EXPECT_EQ(p.y, expected[i]);
  }
  EXPECT_EQ(BoxButtonPosition(0, 800, 600).y, 188);
  EXPECT_EQ(InfoButtonPosition(800, 50).x, 750);
  EXPECT_EQ(InfoButtonPosition(800, 50).y, 80);
}

TEST(AboutText, CreditsGetWindowsLineEndsAndNoControlBytes) {
  const std::string credits = "Line one\nLine two\r\n\x01\x07Tab\there";
  const std::string text = AboutText(kAboutEnglish, &credits);
  EXPECT_EQ(text.rfind("Quorvex Puzzle, version 0.1.0\r\n", 0), 0u);
  EXPECT_NE(text.find("Licence: MIT. Permission is hereby granted"), std::string::npos);
  EXPECT_NE(text.find("Line one\r\nLine two\r\nTab\there"), std::string::npos);
  EXPECT_EQ(text.find('\x01'), std::string::npos);
  EXPECT_NE(AboutText(kAboutEnglish, nullptr).find("could not be read"), std::string::npos);
  const std::string huge(kMaxCreditsBytes * 2, 'x');
  EXPECT_LT(AboutText(kAboutEnglish, &huge).size(), kMaxCreditsBytes + 2048);
}

TEST(AboutText, EveryLanguageHasItsOwnWordsAndTheEnglishLicence) {
  EXPECT_STREQ(AboutWordsFor(0).close, "Cerrar");
  EXPECT_STREQ(AboutWordsFor(5).windowTitle, "\xC3\x9C" "ber Quorvex Puzzle");  // UTF-8
  const std::string spanish = AboutText(0, nullptr);
  EXPECT_EQ(spanish.rfind("Quorvex Puzzle, versi\xC3\xB3n 0.1.0", 0), 0u);
  EXPECT_NE(spanish.find("Licencia: MIT."), std::string::npos);
  EXPECT_NE(spanish.find("Permission is hereby granted"), std::string::npos);
  EXPECT_NE(spanish.find(AboutWordsFor(0).noCredits), std::string::npos);
  EXPECT_EQ(spanish.find("could not be read"), std::string::npos);
  for (int a = 0; a < kAboutLanguageCount; ++a) {
    for (int b = a + 1; b < kAboutLanguageCount; ++b) {
      EXPECT_STRNE(AboutWordsFor(a).description, AboutWordsFor(b).description) << a << b;
      EXPECT_STRNE(AboutWordsFor(a).close, AboutWordsFor(b).close) << a << b;
    }
  }
  // A language out of range is English.
  EXPECT_EQ(&AboutWordsFor(-1), &AboutWordsFor(kAboutEnglish));
  EXPECT_EQ(&AboutWordsFor(6), &AboutWordsFor(kAboutEnglish));
  EXPECT_EQ(AboutText(99, nullptr), AboutText(kAboutEnglish, nullptr));
}

TEST(AboutText, CommandLineNamesOneLanguageOrElseEnglish) {
  EXPECT_EQ(AboutLanguageFromCommandLine("0"), 0);
  EXPECT_EQ(AboutLanguageFromCommandLine("5"), 5);
  EXPECT_EQ(AboutLanguageFromCommandLine(" \t4 "), 4);
  for (const char* bad : {"", " ", "6", "9", "-1", "+0", "x", "00", "1 2", "0x1", "\xB3"}) {
    EXPECT_EQ(AboutLanguageFromCommandLine(bad), kAboutEnglish) << bad;
  }
  EXPECT_EQ(AboutLanguageFromCommandLine(std::string_view("0\0", 2)), kAboutEnglish);
  EXPECT_EQ(AboutLanguageFromCommandLine(std::string(100000, '0')), kAboutEnglish);
}

}  // namespace
}  // namespace qv
