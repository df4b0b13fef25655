// The file screen driven with the real pointer over saved games of a running puzzle, crafted
// bad files, and the question before a changed game is left.
#include "setup/file_screen_window.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <vector>

#include "core/app.h"
#include "puzzle/engine_internal.h"
#include "puzzle/puzzle_model.h"
#include "setup/file_screen_parts.h"
#include "setup/savegame.h"
#include "widgets/widget_classes.h"
#include "widgets/widget_messages.h"
#include "win/support/real_input.h"

namespace qv {
namespace {

const std::string kDist = test::GameDataFolder();
using Bytes = std::vector<char>;

using test::Click;
using test::Pump;
using test::PumpUntil;

using test::WithAnswers;

// ---- Files ---------------------------------------------------------------------------------

std::string TempFolder() {
  char temp[MAX_PATH];
  GetTempPathA(MAX_PATH, temp);
  return std::string(temp) + "qv-file-screen\\";
}

void EmptySaveFolder(const std::string& program) {
  WIN32_FIND_DATAA data;
  HANDLE find = FindFirstFileA((program + "folder\\*").c_str(), &data);
  if (find != INVALID_HANDLE_VALUE) {
    do {
      DeleteFileA((program + "folder\\" + data.cFileName).c_str());
    } while (FindNextFileA(find, &data));
    FindClose(find);
  }
  RemoveDirectoryA((program + "folder").c_str());
}

Bytes ReadAll(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return Bytes(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

void WriteAll(const std::string& path, const Bytes& bytes) {
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

bool Exists(const std::string& path) {
  return GetFileAttributesA(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

// A running 4 x 4 game of the first picture, cut as a new game is.
bool StartGame() {
  CerrarPuzzle(false);
  if (!LoadPuzzlePicture((kDist + "Image\\1.bmp").c_str())) return false;
  if (!ShowPuzzle(2, 2, 5000)) return false;
  Puzzle().NR = Puzzle().NC = 4;
  engine::RunPendingCut();
  return PuzzleAbierto();
}

// ---- The screen's children -----------------------------------------------------------------

HWND Tile(HWND screen, int tile) { return GetDlgItem(screen, 300 + tile); }
HWND Action(HWND screen) { return GetDlgItem(screen, kFileActionId); }
HWND Erase(HWND screen) { return GetDlgItem(screen, kFileEraseId); }
HWND ScrollBar(HWND screen) { return GetDlgItem(screen, kFileScrollId); }
HWND NameField(HWND screen) { return GetDlgItem(screen, kFileNameId); }

int TileState(HWND screen, int tile) {
  return static_cast<int>(SendMessageA(Tile(screen, tile), FSM_GETSTATE, 0, 0));
}
std::vector<int> TileStates(HWND screen) {
  return {TileState(screen, 0), TileState(screen, 1), TileState(screen, 2), TileState(screen, 3)};
}

// ---- Fixture -------------------------------------------------------------------------------

class FileScreen : public ::testing::Test {
 protected:
  // The widgets, the message box, the resource file and the table texture come from the
  // new-game tests' environment in the same program.
  void SetUp() override {
    ASSERT_TRUE(RegisterFileScreenClasses(GetModuleHandleA(nullptr)));
    program_ = TempFolder();
    CreateDirectoryA(program_.c_str(), nullptr);
    EmptySaveFolder(program_);
    SetProgramFolder(program_);
    SetCurrentLanguage(1);
    main_ = test::CreateGameMainWindow();
    SetMainWindow(main_);
    SetBoardSize(ScreenWidth() - 79, ScreenHeight() - 78);
    ASSERT_TRUE(StartGame());
  }
  void TearDown() override {
    if (screen_ && IsWindow(screen_)) DestroyWindow(screen_);
    DestroyWindow(main_);
    SetMainWindow(nullptr);
    CerrarPuzzle(false);
    Pump(10);
  }
  HWND Open(FileScreenMode mode) {
    screen_ = OpenFileScreen(mode);
    Pump(50);
    return screen_;
  }
  // Scrolls until the saved game is in view and answers its tile (listing order is the folder's).
  int ShowFile(const std::string& name) {
    WIN32_FIND_DATAA data;
    HANDLE find = FindFirstFileA((program_ + "folder\\*.epf").c_str(), &data);
    int index = 0, wanted = -1;
    do {
      if (name + ".epf" == data.cFileName) wanted = index;
      ++index;
    } while (FindNextFileA(find, &data));
    FindClose(find);
    EXPECT_GE(wanted, 0) << name;
    const int first = wanted > 3 ? wanted - 3 : 0;
    if (HWND scroll = ScrollBar(screen_)) {
      SendMessageA(scroll, scroll::MWM_SETVALUE, 0, first);
      SendMessageA(screen_, MWM_NOTIFY, MWN_CLICKED, reinterpret_cast<LPARAM>(scroll));
    }
    return wanted - first;
  }
  std::string Saved(const std::string& name) { return program_ + "folder\\" + name + ".epf"; }
  // Saved games written by the engine itself, before any screen opens.
  void SaveGames(int count) {
    CreateDirectoryA((program_ + "folder").c_str(), nullptr);
    for (int i = 0; i < count; ++i) {
      ASSERT_TRUE(SaveGame(Saved("game" + std::to_string(i)).c_str(), true, program_.c_str(),
                           BoxNames{}));
    }
  }
  void SaveThroughScreen(const char* name) {
    ASSERT_NE(Open(FileScreenMode::Save), nullptr);
    SetWindowTextA(NameField(screen_), name);
    Click(Action(screen_));
  }

  std::string program_;
  HWND main_ = nullptr;
  HWND screen_ = nullptr;
};

TEST_F(FileScreen, FourFilesNeedNoScrollBarAndAFifthGivesItOneStep) {
  SaveGames(4);
  ASSERT_NE(Open(FileScreenMode::Open), nullptr);
  EXPECT_FALSE(IsWindowEnabled(main_));
  EXPECT_EQ(NameField(screen_), nullptr);
  EXPECT_EQ(TileStates(screen_), (std::vector<int>{2, 2, 2, 2}));
  EXPECT_TRUE(ScrollBar(screen_) == nullptr || !IsWindowVisible(ScrollBar(screen_)));
  DestroyWindow(screen_);
  EXPECT_TRUE(IsWindowEnabled(main_));

  SaveGames(5);
  ASSERT_NE(Open(FileScreenMode::Open), nullptr);
  HWND scroll = ScrollBar(screen_);
  ASSERT_NE(scroll, nullptr);
  EXPECT_TRUE(IsWindowVisible(scroll));
  EXPECT_EQ(SendMessageA(scroll, scroll::MWM_GETMAXIMUM, 0, 0), 1);
  EXPECT_EQ(SendMessageA(scroll, scroll::MWM_GETSTEP, 0, 0), 1);
  // One step on: the four tiles show the second to the fifth file.
  SendMessageA(scroll, scroll::MWM_SETVALUE, 0, 1);
  SendMessageA(screen_, MWM_NOTIFY, MWN_CLICKED, reinterpret_cast<LPARAM>(scroll));
  EXPECT_EQ(TileStates(screen_), (std::vector<int>{2, 2, 2, 2}));
}

TEST_F(FileScreen, DeletingTheLastFileOfAPageAsksFirstAndLeavesTheOtherTilesEmpty) {
  SaveGames(2);
  ASSERT_NE(Open(FileScreenMode::Open), nullptr);
  Click(Tile(screen_, 1));
  EXPECT_EQ(SendMessageA(Tile(screen_, 1), FSM_GETSELECTED, 0, 0), 1);
  WithAnswers({{false}}, [&] { Click(Erase(screen_)); });  // no: nothing is deleted
  EXPECT_EQ(TileStates(screen_), (std::vector<int>{2, 2, 0, 0}));
  WithAnswers({{true}}, [&] { Click(Erase(screen_)); });
  PumpUntil([&] { return TileState(screen_, 1) == 0; });
  EXPECT_EQ(TileStates(screen_), (std::vector<int>{2, 0, 0, 0}));
  EXPECT_TRUE(IsWindowEnabled(screen_));
  // A press on an empty tile selects nothing, so the delete button asks nothing.
  Click(Tile(screen_, 2));
  Click(Erase(screen_));
  Pump(100);
  EXPECT_EQ(FindWindowA(kMessageBoxClass, nullptr), nullptr);
}

TEST_F(FileScreen, SavingOverwritesAnExistingNameWithoutAskingAndIgnoresOneCharacter) {
  SaveGames(1);
  WriteAll(Saved("game0"), Bytes{'o', 'l', 'd'});
  Puzzle().PuzzleModificado = 1;
  SaveThroughScreen("g");
  EXPECT_TRUE(IsWindow(screen_));  // ignored: the screen stays open
  EXPECT_FALSE(Exists(Saved("g")));
  SetWindowTextA(NameField(screen_), "game0");
  Click(Action(screen_));
  EXPECT_FALSE(IsWindow(screen_));
  EXPECT_TRUE(IsWindowEnabled(main_));
  EXPECT_GT(ReadAll(Saved("game0")).size(), 488u);
  EXPECT_EQ(Puzzle().PuzzleModificado, 0);
}

TEST_F(FileScreen, ANameWindowsRefusesIsSaidAndWritesNothing) {
  SaveGames(1);
  const Bytes before = ReadAll(Saved("game0"));
  for (const char* name : {"a:b", "CON", "trail.", "game0?"}) {
    EXPECT_EQ(WithAnswers({{true}}, [&] { SaveThroughScreen(name); }).size(), 1u) << name;
    EXPECT_TRUE(IsWindow(screen_)) << name;
    EXPECT_TRUE(IsWindowEnabled(screen_)) << name;
    DestroyWindow(screen_);
  }
  EXPECT_EQ(ReadAll(Saved("game0")), before);
  WIN32_FIND_DATAA data;
  HANDLE find = FindFirstFileA((program_ + "folder\\*").c_str(), &data);
  int files = 0;
  do {
    files += (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
  } while (FindNextFileA(find, &data));
  FindClose(find);
  EXPECT_EQ(files, 1);
}

TEST_F(FileScreen, SavingCreatesTheMissingFolderAndOpeningRestoresTheGame) {
  ASSERT_FALSE(Exists(program_ + "folder"));
  SaveThroughScreen("first game");
  ASSERT_TRUE(Exists(Saved("first game")));
  const int pieces = PieceCount();
  CerrarPuzzle(true);
  ASSERT_NE(Open(FileScreenMode::Open), nullptr);
  Click(Tile(screen_, 0));
  Click(Action(screen_));
  EXPECT_FALSE(IsWindow(screen_));
  EXPECT_TRUE(PuzzleAbierto());
  EXPECT_EQ(PieceCount(), pieces);
  EXPECT_TRUE(IsWindowEnabled(main_));
}

TEST_F(FileScreen, BadFilesShowEmptyTilesAndNeverLeaveAHalfGame) {
  SaveGames(1);
  const Bytes good = ReadAll(Saved("game0"));
  ASSERT_GT(good.size(), 600u);
  Bytes absurd = good;
  std::fill(absurd.begin() + 444, absurd.begin() + 452, '\x7f');  // rows and columns
  Bytes badPreview = good;
  std::fill(badPreview.begin() + 476, badPreview.begin() + 488, '\xff');  // offset and size
  Bytes noPicture = good;
  const std::string gone = "C:\\no such folder\\gone.bmp";
  std::copy(gone.c_str(), gone.c_str() + gone.size() + 1, noPicture.begin() + 40);
  noPicture[26] = 0;
  WriteAll(Saved("short"), Bytes(good.begin(), good.begin() + 300));
  WriteAll(Saved("absurd"), absurd);
  WriteAll(Saved("preview"), badPreview);
  WriteAll(Saved("gone"), noPicture);
  ASSERT_NE(Open(FileScreenMode::Open), nullptr);
  std::map<std::string, int> states;
  for (const char* name : {"game0", "short", "absurd", "preview", "gone"}) {
    states[name] = TileState(screen_, ShowFile(name));
  }
  // The header is all a tile reads: only the cut file and the damaged preview show empty.
  EXPECT_EQ(states, (std::map<std::string, int>{
                        {"game0", 2}, {"short", 1}, {"absurd", 2}, {"preview", 1}, {"gone", 2}}));

  // Each bad file fails to open: the screen closes, no puzzle is left, the window is usable.
  for (const char* name : {"short", "absurd", "gone"}) {
    ASSERT_TRUE(StartGame());
    if (!IsWindow(screen_)) {
      ASSERT_NE(Open(FileScreenMode::Open), nullptr);
    }
    Click(Tile(screen_, ShowFile(name)));
    Click(Action(screen_));
    EXPECT_FALSE(IsWindow(screen_)) << name;
    EXPECT_FALSE(PuzzleAbierto()) << name;
    EXPECT_TRUE(IsWindowEnabled(main_)) << name;
  }
}

TEST_F(FileScreen, AChangedGameIsLeftOnlyAfterTheQuestionAndNoKeepsEverything) {
  EXPECT_TRUE(ConfirmLeavingChangedGame(main_));  // unchanged: nothing is asked
  SaveGames(1);
  Puzzle().PuzzleModificado = 1;
  bool left = true;
  EXPECT_EQ(WithAnswers({{false}}, [&] { left = ConfirmLeavingChangedGame(main_); }).size(), 1u);
  EXPECT_FALSE(left);
  EXPECT_TRUE(IsWindowEnabled(main_));

  ASSERT_NE(Open(FileScreenMode::Open), nullptr);
  Click(Tile(screen_, 0));
  WithAnswers({{false}}, [&] { Click(Action(screen_)); });
  EXPECT_TRUE(IsWindow(screen_));
  EXPECT_TRUE(IsWindowEnabled(screen_));
  EXPECT_EQ(Puzzle().PuzzleModificado, 1);
  EXPECT_EQ(SendMessageA(Tile(screen_, 0), FSM_GETSELECTED, 0, 0), 1);
  WithAnswers({{true}}, [&] { Click(Action(screen_)); });
  PumpUntil([&] { return !IsWindow(screen_); });
  EXPECT_FALSE(IsWindow(screen_));
  EXPECT_TRUE(PuzzleAbierto());
  EXPECT_EQ(Puzzle().PuzzleModificado, 0);
}

}  // namespace
}  // namespace qv
