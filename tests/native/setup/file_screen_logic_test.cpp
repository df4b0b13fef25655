// The file screen's decisions: tiles, scroll range, captions and the names a save accepts.
#include "setup/file_screen_logic.h"

#include <gtest/gtest.h>

#include <string>

namespace qv::filescreen {
namespace {

const std::string kFolder = "C:\\Games\\Quorvex\\";

TEST(FileScreenList, AScrollBarOnlyBeyondFourFilesWithOneStepPerFileThatDoesNotFit) {
  EXPECT_FALSE(ViewOf(0, 0).scrollBar);
  EXPECT_FALSE(ViewOf(4, 0).scrollBar);
  EXPECT_EQ(ViewOf(4, 3).firstVisible, 0);
  const ListView five = ViewOf(5, 0);
  EXPECT_TRUE(five.scrollBar);
  EXPECT_EQ(five.maximum, 1);
  EXPECT_EQ(ViewOf(11, 99).firstVisible, 7);
  EXPECT_EQ(ViewOf(11, -2).firstVisible, 0);
}

TEST(FileScreenList, TilesShowTheFilesFromTheFirstVisibleAndEmptyBeyondTheList) {
  const ListView view = ViewOf(6, 2);
  EXPECT_EQ(FileOfTile(view, 0, 6), 2);
  EXPECT_EQ(FileOfTile(view, 3, 6), 5);
  EXPECT_EQ(FileOfTile(view, 4, 6), -1);
  EXPECT_EQ(FileOfTile(view, -1, 6), -1);
  // Deleting the last file of the page: the view slides back, nothing shows past the end.
  const ListView afterDelete = ViewOf(5, 2);
  EXPECT_EQ(afterDelete.firstVisible, 1);
  EXPECT_EQ(FileOfTile(afterDelete, 3, 5), 4);
  const ListView two = ViewOf(2, 0);
  EXPECT_EQ(FileOfTile(two, 1, 2), 1);
  EXPECT_EQ(FileOfTile(two, 2, 2), -1);
}

TEST(FileScreenNames, CaptionsDropOnlyTheLastExtension) {
  EXPECT_EQ(CaptionOf("Lion.epf"), "Lion");
  EXPECT_EQ(CaptionOf("a.b.epf"), "a.b");
  EXPECT_EQ(CaptionOf("plain"), "plain");
  EXPECT_EQ(SavedGamePath(kFolder, "Lion", true), "C:\\Games\\Quorvex\\folder\\Lion.epf");
  EXPECT_EQ(SavedGamePath(kFolder, "Lion.epf", false), "C:\\Games\\Quorvex\\folder\\Lion.epf");
}

TEST(FileScreenNames, ShortNamesAreIgnoredAndOrdinaryOnesAccepted) {
  EXPECT_EQ(CheckSaveName("", kFolder), NameVerdict::TooShort);
  EXPECT_EQ(CheckSaveName("x", kFolder), NameVerdict::TooShort);
  EXPECT_EQ(CheckSaveName("ab", kFolder), NameVerdict::Accepted);
  EXPECT_EQ(CheckSaveName("My lion, day 2", kFolder), NameVerdict::Accepted);
  EXPECT_EQ(CheckSaveName("Ñandú é", kFolder), NameVerdict::Accepted);
  EXPECT_EQ(CheckSaveName("CONSOLE", kFolder), NameVerdict::Accepted);
  EXPECT_EQ(CheckSaveName("COM", kFolder), NameVerdict::Accepted);
  EXPECT_EQ(CheckSaveName(" lead", kFolder), NameVerdict::Accepted);
}

TEST(FileScreenNames, NamesWindowsRefusesAreRefused) {
  for (const char* name : {"a\\b", "a/b", "c:d", "a*", "what?", "say \"x\"", "<ab", "ab>", "a|b",
                           "tab\there", "dot.", "blank ", "CON", "nul", "Aux.epf", "com1",
                           "LPT9", "prn .txt", "conin$"}) {
    EXPECT_EQ(CheckSaveName(name, kFolder), NameVerdict::Refused) << name;
  }
  EXPECT_EQ(CheckSaveName(std::string("a\x7f", 2), kFolder), NameVerdict::Refused);
  EXPECT_EQ(CheckSaveName(std::string("a\x01", 2), kFolder), NameVerdict::Refused);
}

TEST(FileScreenNames, APathTooLongForTheSystemIsRefused) {
  // folder\ + name + ".epf" and the temporary ".tmp" beside it must stay under 260 characters.
  const std::size_t room = 259 - kFolder.size() - std::string("folder\\.epf.tmp").size();
  EXPECT_EQ(CheckSaveName(std::string(room, 'a'), kFolder), NameVerdict::Accepted);
  EXPECT_EQ(CheckSaveName(std::string(room + 1, 'a'), kFolder), NameVerdict::Refused);
}

}  // namespace
}  // namespace qv::filescreen
