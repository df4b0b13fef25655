// The new-game screen driven with the real pointer, the game's resource file and pictures.
#include "setup/new_game_window.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "graphics/control_dc.h"
#include "graphics/resource_file.h"
#include "puzzle/puzzle_model.h"
#include "puzzle/texture.h"
#include "setup/new_game_parts.h"
#include "setup/pickers.h"
#include "setup_test_doubles.h"
#include "core/app.h"
#include "support/assert_recorder.h"
#include "widgets/widget_classes.h"
#include "widgets/widget_messages.h"
#include "win/support/real_input.h"

namespace qv {
namespace {

using namespace test;

const std::string kDist = GameDataFolder();
constexpr char kMainClass[] = "QvSetupTestMain";

void MoveAway() { MoveTo(1010, 750); }

// ---- The screen's children -----------------------------------------------------------------

HWND Tab(HWND screen, int tab) {
  const int ys[4] = {63, 109, 157, 203};
  return ChildAt(screen, kCheckClass, 0, ys[tab]);
}
HWND ShapeOption(HWND screen, int s) { return ChildAt(screen, kCheckClass, 371 + (s == 0 ? 0 : s == 1 ? 56 : 111), 78); }
HWND Cycler(HWND screen) { return ChildAt(screen, kAnimClass, 147, 65); }
HWND Confirm(HWND screen) { return ChildAt(screen, kCommandClass, 119, 255); }
HWND Cancel(HWND screen) { return ChildAt(screen, kCommandClass, 514, 257); }
HWND Help(HWND screen) { return ChildAt(screen, kAnimClass, 246, 235); }
HWND Larger(HWND screen) { return ChildAt(screen, kAnimClass, 452, 44); }

// The two sliders share a place; the one shown belongs to the current tab.
HWND VisibleSlider(HWND screen) {
  for (HWND w : ChildrenOf(screen, kScrollClass)) {
    if (IsWindowVisible(w)) return w;
  }
  return nullptr;
}

std::vector<HWND> Tiles(HWND screen) {
  std::vector<HWND> tiles = ChildrenOf(screen, kPictureTileClass);
  std::sort(tiles.begin(), tiles.end(), [](HWND a, HWND b) { return PlaceOf(a).x < PlaceOf(b).x; });
  return tiles;
}

// The value beside a count label: the caption right of x = 410 on that line.
std::string CountValue(HWND screen, int line) {
  for (HWND w : ChildrenOf(screen, kTextClass)) {
    const POINT p = PlaceOf(w);
    if (p.y == 80 + 40 * line && p.x > 410) return TextOf(w);
  }
  return "";
}

bool Checked(HWND check) { return SendMessageA(check, MWM_GETCHECK, 0, 0) != 0; }

// ---- Fixture -------------------------------------------------------------------------------

class SetupEnvironment : public ::testing::Environment {
 public:
  void SetUp() override {
    HINSTANCE module = GetModuleHandleA(nullptr);
    ASSERT_TRUE(RegisterWidgetClasses(module));
    ASSERT_TRUE(RegisterNewGameClasses(module));
    ASSERT_TRUE(RegisterMessageBoxClass(module));
    // A main window of the screen's own: with the shared game main window, the shell's help test
    // run after the no-program one hangs under Wine (cause not yet found).
    WNDCLASSA main{};
    main.lpfnWndProc = DefWindowProcA;
    main.hInstance = module;
    main.hCursor = LoadCursor(nullptr, IDC_ARROW);
    main.lpszClassName = kMainClass;
    ASSERT_TRUE(RegisterClassA(&main));
    ASSERT_TRUE(OpenResourceFile((kDist + "Quorvex.rf").c_str())) << kDist;
    ASSERT_TRUE(texture_.LoadById(6000));
    ASSERT_TRUE(MosaicoPuzzle(texture_.Dib()));
  }

 private:
  ControlDC texture_;
};

const auto* const g_environment = ::testing::AddGlobalTestEnvironment(new SetupEnvironment);

std::string TempFolder(const char* name) {
  char temp[MAX_PATH];
  GetTempPathA(MAX_PATH, temp);
  const std::string folder = std::string(temp) + name + "\\";
  CreateDirectoryA(folder.c_str(), nullptr);
  CreateDirectoryA((folder + "Image").c_str(), nullptr);
  // Start empty: earlier runs may have left pictures.
  WIN32_FIND_DATAA data;
  HANDLE find = FindFirstFileA((folder + "Image\\*.bmp").c_str(), &data);
  if (find != INVALID_HANDLE_VALUE) {
    do {
      DeleteFileA((folder + "Image\\" + data.cFileName).c_str());
    } while (FindNextFileA(find, &data));
    FindClose(find);
  }
  return folder;
}

void CopyPicture(int from, const std::string& folder, const std::string& as) {
  ASSERT_TRUE(CopyFileA((kDist + "Image\\" + std::to_string(from) + ".bmp").c_str(),
                        (folder + "Image\\" + as).c_str(), FALSE));
}

class NewGameScreen : public ::testing::Test {
 protected:
  void SetUp() override {
    MoveAway();
    test::Calls() = test::PuzzleWindowCalls{};
    SetProgramFolder(kDist);
    SetCurrentLanguage(1);
    main_ = CreateWindowExA(0, kMainClass, "main", WS_POPUP | WS_VISIBLE, 0, 0, ScreenWidth(),
                            ScreenHeight(), nullptr, nullptr, GetModuleHandleA(nullptr), nullptr);
    SetMainWindow(main_);
    SetBoardSize(ScreenWidth() - 49 - 30, ScreenHeight() - 78);
    Pump(20);
  }
  void TearDown() override {
    if (screen_ && IsWindow(screen_)) DestroyWindow(screen_);
    DestroyWindow(main_);
    SetMainWindow(nullptr);
    CerrarPuzzle(false);
    Pump(10);
  }
  HWND Open() {
    screen_ = OpenNewGameScreen(main_);
    Pump(50);
    return screen_;
  }

  HWND main_ = nullptr;
  HWND screen_ = nullptr;
};

TEST_F(NewGameScreen, OpensCentredOverTheDisabledMainWindowWithTheFirstPictureChosen) {
  ASSERT_NE(Open(), nullptr);
  EXPECT_FALSE(IsWindowEnabled(main_));
  RECT client;
  GetClientRect(screen_, &client);
  EXPECT_EQ(client.right, 610);
  EXPECT_EQ(client.bottom, 300);
  const std::vector<HWND> tiles = Tiles(screen_);
  ASSERT_EQ(tiles.size(), 5u);
  EXPECT_EQ(SendMessageA(tiles[0], NGM_GETSELECTED, 0, 0), 1);
  EXPECT_EQ(SendMessageA(tiles[1], NGM_GETSELECTED, 0, 0), 0);
  for (HWND tile : tiles) EXPECT_EQ(SendMessageA(tile, NGM_GETAVAILABLE, 0, 0), 1);
  EXPECT_NE(std::string(PuzzlePicturePath()).find("1.bmp"), std::string::npos);
  EXPECT_TRUE(PickerHasPicture(ThePickers()));
  EXPECT_TRUE(Checked(Tab(screen_, 0)));

  Click(tiles[2]);
  EXPECT_EQ(SendMessageA(tiles[2], NGM_GETSELECTED, 0, 0), 1);
  EXPECT_EQ(SendMessageA(tiles[0], NGM_GETSELECTED, 0, 0), 0);
  EXPECT_NE(std::string(PuzzlePicturePath()).find("3.bmp"), std::string::npos);

  Click(Cancel(screen_));
  EXPECT_FALSE(IsWindow(screen_));
  EXPECT_TRUE(IsWindowEnabled(main_));
  EXPECT_TRUE(test::Calls().boardParents.empty());
  EXPECT_FALSE(CutPending());
}

TEST_F(NewGameScreen, ConfirmingAtOnceCutsShapeZeroAtTheFinestGridAndFitScale) {
  ASSERT_NE(Open(), nullptr);
  const PickerState chosen = ThePickers();
  test::Calls().cutOnCreate = true;
  Click(Confirm(screen_));
  ASSERT_EQ(test::Calls().boardParents.size(), 1u);
  EXPECT_EQ(test::Calls().boardParents[0], main_);
  EXPECT_FALSE(IsWindow(screen_));
  EXPECT_TRUE(IsWindowEnabled(main_));
  EXPECT_TRUE(test::Calls().cutSucceeded);
  EXPECT_EQ(Puzzle().dieId, 5000u);
  EXPECT_EQ(Puzzle().dieRows, 2);
  EXPECT_EQ(Puzzle().dieCols, 2);
  EXPECT_EQ(Puzzle().NC, chosen.mostColumns);
  EXPECT_EQ(Puzzle().NR, chosen.mostRows);
  EXPECT_DOUBLE_EQ(Puzzle().scale, chosen.fitScale);
}

TEST_F(NewGameScreen, EnterConfirmsAndTabsAndShapesCarryTheirIdentifiers) {
  ASSERT_NE(Open(), nullptr);
  for (int tab = 0; tab < 4; ++tab) EXPECT_EQ(GetDlgItem(screen_, 300 + tab), Tab(screen_, tab));
  for (int s = 0; s < 3; ++s) EXPECT_EQ(GetDlgItem(screen_, 200 + s), ShapeOption(screen_, s));
  test::Calls().cutOnCreate = true;
  SendMessageA(screen_, WM_KEYDOWN, VK_RETURN, 0);
  Pump(30);
  EXPECT_EQ(test::Calls().boardParents.size(), 1u);
  EXPECT_FALSE(IsWindow(screen_));
  EXPECT_TRUE(IsWindowEnabled(main_));
}

TEST_F(NewGameScreen, TabsSwitchPanelsAndTheCurrentTabDoesNothing) {
  ASSERT_NE(Open(), nullptr);
  const std::vector<HWND> tiles = Tiles(screen_);
  EXPECT_EQ(VisibleSlider(screen_), nullptr);

  Click(Tab(screen_, 1));
  EXPECT_TRUE(Checked(Tab(screen_, 1)));
  EXPECT_FALSE(Checked(Tab(screen_, 0)));
  EXPECT_FALSE(IsWindowVisible(tiles[0]));
  HWND sizeSlider = VisibleSlider(screen_);
  ASSERT_NE(sizeSlider, nullptr);
  EXPECT_EQ(SendMessageA(sizeSlider, scroll::MWM_GETMAXIMUM, 0, 0), 100);
  EXPECT_EQ(SendMessageA(sizeSlider, scroll::MWM_GETVALUE, 0, 0), GetSizePercentage(ThePickers()));

  Click(Tab(screen_, 1));  // already current
  EXPECT_TRUE(Checked(Tab(screen_, 1)));
  EXPECT_EQ(VisibleSlider(screen_), sizeSlider);

  Click(Tab(screen_, 2));
  HWND countSlider = VisibleSlider(screen_);
  ASSERT_NE(countSlider, nullptr);
  EXPECT_NE(countSlider, sizeSlider);
  EXPECT_EQ(SendMessageA(countSlider, scroll::MWM_GETMAXIMUM, 0, 0), ThePickers().countSteps);
  EXPECT_EQ(CountValue(screen_, 2), std::to_string(PickerPieceCount(ThePickers())));

  Click(Tab(screen_, 3));
  EXPECT_EQ(VisibleSlider(screen_), nullptr);
  EXPECT_TRUE(IsWindowVisible(ShapeOption(screen_, 0)));
  EXPECT_TRUE(Checked(ShapeOption(screen_, 0)));
  EXPECT_FALSE(Checked(Tab(screen_, 2)));
}

TEST_F(NewGameScreen, TheShapeCyclerGoesRoundTheThreeShapesAndTheChoiceIsCut) {
  ASSERT_NE(Open(), nullptr);
  Click(Tab(screen_, 3));
  HWND cycler = Cycler(screen_);
  ASSERT_NE(cycler, nullptr);
  for (int expected : {1, 2, 0}) {
    Click(cycler);
    for (int s = 0; s < 3; ++s) EXPECT_EQ(Checked(ShapeOption(screen_, s)), s == expected) << s;
  }
  Click(ShapeOption(screen_, 1));
  test::Calls().cutOnCreate = true;
  Click(Confirm(screen_));
  EXPECT_TRUE(test::Calls().cutSucceeded);
  EXPECT_EQ(Puzzle().dieId, 5001u);
}

TEST_F(NewGameScreen, SizeChangesUpdateTheCountSliderAndTexts) {
  ASSERT_NE(Open(), nullptr);
  Click(Tab(screen_, 1));
  HWND slider = VisibleSlider(screen_);
  ASSERT_NE(slider, nullptr);
  const int before = static_cast<int>(SendMessageA(slider, scroll::MWM_GETVALUE, 0, 0));
  const std::int64_t piecesBefore = PickerPieceCount(ThePickers());

  Click(Larger(screen_));
  EXPECT_EQ(SendMessageA(slider, scroll::MWM_GETVALUE, 0, 0), before + 5);
  // The pickers truncate the percentage they give back from the scale.
  EXPECT_NEAR(GetSizePercentage(ThePickers()), before + 5, 1);
  EXPECT_GT(PickerPieceCount(ThePickers()), piecesBefore);

  // The slider's lower part steps the size down (held long on a busy machine, it repeats).
  RECT rect;
  GetWindowRect(slider, &rect);
  ClickAt((rect.left + rect.right) / 2, rect.bottom - 10);
  const int now = static_cast<int>(SendMessageA(slider, scroll::MWM_GETVALUE, 0, 0));
  EXPECT_LT(now, before + 5);
  EXPECT_NEAR(GetSizePercentage(ThePickers()), now, 1);

  Click(Tab(screen_, 2));
  EXPECT_EQ(CountValue(screen_, 0), std::to_string(ThePickers().rows));
  EXPECT_EQ(CountValue(screen_, 1), std::to_string(ThePickers().columns));
  EXPECT_EQ(CountValue(screen_, 2), std::to_string(PickerPieceCount(ThePickers())));
  // The count slider reports a new value: the pickers take it and the texts follow.
  HWND count = VisibleSlider(screen_);
  SendMessageA(count, scroll::MWM_SETVALUE, 0, 0);
  SendMessageA(screen_, MWM_NOTIFY, MWN_CLICKED, reinterpret_cast<LPARAM>(count));
  EXPECT_EQ(GetCountPosition(ThePickers()), 0);
  EXPECT_EQ(CountValue(screen_, 2), std::to_string(PickerPieceCount(ThePickers())));
}

TEST_F(NewGameScreen, PagesByFivesAndThePreviewShowsTheChosenPicture) {
  ASSERT_NE(Open(), nullptr);
  const std::vector<HWND> tiles = Tiles(screen_);
  std::vector<HWND> arrows;
  for (HWND w : ChildrenOf(screen_, kCommandClass)) {
    if (w != Confirm(screen_) && w != Cancel(screen_)) arrows.push_back(w);
  }
  ASSERT_EQ(arrows.size(), 2u);
  std::sort(arrows.begin(), arrows.end(), [](HWND a, HWND b) { return PlaceOf(a).x < PlaceOf(b).x; });
  EXPECT_FALSE(IsWindowVisible(arrows[0]));
  ASSERT_TRUE(IsWindowVisible(arrows[1]));
  Click(arrows[1]);
  EXPECT_EQ(SendMessageA(tiles[0], NGM_GETPICTURE, 0, 0), 5);
  EXPECT_EQ(SendMessageA(tiles[0], NGM_GETSELECTED, 0, 0), 0);  // picture 0 stays chosen
  EXPECT_TRUE(IsWindowVisible(arrows[0]));
  Click(tiles[4]);
  EXPECT_NE(std::string(PuzzlePicturePath()).find("10.bmp"), std::string::npos);
  // The last page ends with the tile for a photograph of the player's own.
  for (int turns = 0; turns < 5 && IsWindowVisible(arrows[1]); ++turns) Click(arrows[1]);
  EXPECT_FALSE(IsWindowVisible(arrows[1]));
  EXPECT_EQ(SendMessageA(tiles[4], NGM_GETPICTURE, 0, 0), kOwnPictureTile);
  EXPECT_EQ(SendMessageA(tiles[3], NGM_GETPICTURE, 0, 0), 14);
  for (int turns = 0; turns < 5 && IsWindowVisible(arrows[0]); ++turns) Click(arrows[0]);
  EXPECT_EQ(SendMessageA(tiles[0], NGM_GETPICTURE, 0, 0), 0);
  EXPECT_EQ(SendMessageA(tiles[4], NGM_GETPICTURE, 0, 0), 4);

  Click(ChildAt(screen_, kAnimClass, 395, 235));
  ASSERT_EQ(test::Calls().viewerPaths.size(), 1u);
  EXPECT_EQ(test::Calls().viewerPaths[0], kDist + "Image\\10.bmp");
}

TEST_F(NewGameScreen, FewerPicturesThanTilesIsRefusedAndTheMainWindowStaysEnabled) {
  const std::string folder = TempFolder("qv_newgame_few");
  for (int k = 1; k <= 4; ++k) CopyPicture(k, folder, std::to_string(k) + ".bmp");
  SetProgramFolder(folder);
  test::AssertRecorder asserts;
  EXPECT_EQ(Open(), nullptr);
  EXPECT_TRUE(asserts.saw(
      "este codigo no soporta menos imagenes que el numero declarado en NUM_PREVIEW_FS"));
  EXPECT_TRUE(IsWindowEnabled(main_));
}

TEST_F(NewGameScreen, AnUnreadablePictureIsShownUnavailableAndNeverChosen) {
  const std::string folder = TempFolder("qv_newgame_bad");
  for (int k = 2; k <= 6; ++k) CopyPicture(k, folder, std::to_string(k) + ".bmp");
  if (FILE* bad = std::fopen((folder + "Image\\1.bmp").c_str(), "wb")) {
    std::fputs("BM this is not a picture", bad);
    std::fclose(bad);
  }
  SetProgramFolder(folder);
  ASSERT_NE(Open(), nullptr);
  const std::vector<HWND> tiles = Tiles(screen_);
  EXPECT_EQ(SendMessageA(tiles[0], NGM_GETAVAILABLE, 0, 0), 0);
  // The first readable picture was chosen instead.
  EXPECT_EQ(SendMessageA(tiles[1], NGM_GETSELECTED, 0, 0), 1);
  Click(tiles[0]);
  EXPECT_EQ(SendMessageA(tiles[0], NGM_GETSELECTED, 0, 0), 0);
  EXPECT_EQ(SendMessageA(tiles[1], NGM_GETSELECTED, 0, 0), 1);
  EXPECT_NE(std::string(PuzzlePicturePath()).find("2.bmp"), std::string::npos);
}


// ---- The help button -----------------------------------------------------------------------

// Makes .htm pages open with `command` (none: no program) for one test, as the prefix had them.
class HtmAssociation {
 public:
  explicit HtmAssociation(const std::string& command) {
    LONG size = sizeof saved_;
    had_ = RegQueryValueA(HKEY_CLASSES_ROOT, ".htm", saved_, &size) == ERROR_SUCCESS;
    RegSetValueA(HKEY_CLASSES_ROOT, ".htm", REG_SZ, kProgId, 0);
    RegDeleteTreeA(HKEY_CLASSES_ROOT, kProgId);
    if (!command.empty()) {
      RegSetValueA(HKEY_CLASSES_ROOT, (std::string(kProgId) + "\\shell\\open\\command").c_str(),
                   REG_SZ, command.c_str(), 0);
    }
  }
  ~HtmAssociation() {
    RegDeleteTreeA(HKEY_CLASSES_ROOT, kProgId);
    if (had_) {
      RegSetValueA(HKEY_CLASSES_ROOT, ".htm", REG_SZ, saved_, 0);
    } else {
      RegDeleteTreeA(HKEY_CLASSES_ROOT, ".htm");
    }
  }
  HtmAssociation(const HtmAssociation&) = delete;
  HtmAssociation& operator=(const HtmAssociation&) = delete;

 private:
  static constexpr char kProgId[] = "QuorvexTestPage";
  char saved_[MAX_PATH] = {};
  bool had_ = false;
};

// What the game's box showed while it was open, seen from a timer of its modal loop, which
// then presses its OK button as a player would.
struct BoxSeen {
  bool shown = false;
  bool screenShown = false;
  bool shellDialog = false;
  HWND owner = nullptr;
};
BoxSeen g_boxSeen;
HWND g_helpScreen = nullptr;

void CALLBACK LookAtBoxAndPressOk(HWND, UINT, UINT_PTR timer, DWORD) {
  // A dialog of the shell's own is a failure; it is answered so that the test goes on.
  if (HWND dialog = FindWindowA("#32770", nullptr)) {
    g_boxSeen.shellDialog = true;
    PostMessageA(dialog, WM_COMMAND, IDOK, 0);
    return;
  }
  HWND box = FindWindowA(kMessageBoxClass, nullptr);
  if (!box || !IsWindowVisible(box)) return;
  KillTimer(nullptr, timer);
  g_boxSeen.shown = true;
  g_boxSeen.owner = GetWindow(box, GW_OWNER);
  g_boxSeen.screenShown = IsWindow(g_helpScreen) && IsWindowVisible(g_helpScreen);
  HWND ok = FindWindowExA(box, nullptr, kCommandClass, nullptr);
  RECT place{};
  GetWindowRect(ok, &place);
  char arguments[80];
  std::snprintf(arguments, sizeof arguments, "mousemove %ld %ld click 1",
                (place.left + place.right) / 2, (place.top + place.bottom) / 2);
  if (!Xdotool(arguments)) PostMessageA(box, WM_CLOSE, 0, 0);
}

TEST_F(NewGameScreen, HelpWithNoProgramForPagesIsSaidInTheGamesBoxAndTheScreenKeepsItsState) {
  HtmAssociation none("");
  ASSERT_NE(Open(), nullptr);
  const std::vector<HWND> tiles = Tiles(screen_);
  ASSERT_EQ(tiles.size(), 5u);
  Click(tiles[2]);
  ASSERT_EQ(SendMessageA(tiles[2], NGM_GETSELECTED, 0, 0), 1);
  ASSERT_NE(Help(screen_), nullptr);

  g_boxSeen = BoxSeen{};
  g_helpScreen = screen_;
  const UINT_PTR timer = SetTimer(nullptr, 0, 100, LookAtBoxAndPressOk);
  Click(Help(screen_));  // returns once the box is closed
  KillTimer(nullptr, timer);
  EXPECT_TRUE(g_boxSeen.shown) << "the game's own box never showed";
  EXPECT_EQ(g_boxSeen.owner, screen_);
  EXPECT_TRUE(g_boxSeen.screenShown);
  EXPECT_EQ(FindWindowA(kMessageBoxClass, nullptr), nullptr);
  EXPECT_FALSE(g_boxSeen.shellDialog) << "the shell showed a dialog of its own";

  // The screen is as the player left it, above its still disabled owner, with the keyboard.
  ASSERT_TRUE(IsWindow(screen_));
  EXPECT_TRUE(IsWindowVisible(screen_));
  EXPECT_TRUE(IsWindowEnabled(screen_));
  EXPECT_FALSE(IsWindowEnabled(main_));
  EXPECT_EQ(GetActiveWindow(), screen_);
  EXPECT_EQ(SendMessageA(tiles[2], NGM_GETSELECTED, 0, 0), 1);
  EXPECT_NE(std::string(PuzzlePicturePath()).find("3.bmp"), std::string::npos);

  // Escape closes it and changes nothing else.
  if (!Xdotool("key Escape")) return;
  EXPECT_TRUE(PumpUntil([&] { return !IsWindow(screen_); })) << "Escape did not close the screen";
  EXPECT_NE(std::string(PuzzlePicturePath()).find("3.bmp"), std::string::npos);
  EXPECT_TRUE(IsWindowEnabled(main_));
}

TEST_F(NewGameScreen, HelpAsksTheShellToOpenTheCurrentLanguagesIndexPage) {
  char temp[MAX_PATH];
  GetTempPathA(MAX_PATH, temp);
  const std::string opened = std::string(temp) + "quorvex-help-opened.txt";
  DeleteFileA(opened.c_str());
  HtmAssociation test("C:\\windows\\system32\\cmd.exe /c echo %1> \"" + opened + "\"");
  SetCurrentLanguage(0);
  ASSERT_NE(Open(), nullptr);
  Click(Help(screen_));
  const DWORD start = GetTickCount();
  while (GetFileAttributesA(opened.c_str()) == INVALID_FILE_ATTRIBUTES &&
         GetTickCount() - start < 8000) {
    Pump(50);
  }
  Pump(300);  // the file exists before its line is written
  SetCurrentLanguage(1);
  std::string line;
  if (FILE* file = std::fopen(opened.c_str(), "rb")) {
    char buffer[MAX_PATH * 2] = {};
    line.assign(buffer, std::fread(buffer, 1, sizeof buffer - 1, file));
    std::fclose(file);
  }
  ASSERT_FALSE(line.empty()) << "the shell never ran the page's program";
  std::replace(line.begin(), line.end(), '/', '\\');
  while (!line.empty() && (line.back() == '\n' || line.back() == '\r' || line.back() == ' ' ||
                           line.back() == '"')) {
    line.pop_back();
  }
  const std::string page = "dist\\Help\\0\\Index.htm";
  ASSERT_GE(line.size(), page.size()) << line;
  EXPECT_EQ(line.substr(line.size() - page.size()), page) << line;
  EXPECT_EQ(FindWindowA(kMessageBoxClass, nullptr), nullptr);
  EXPECT_TRUE(IsWindow(screen_));
  DeleteFileA(opened.c_str());
}

}  // namespace
}  // namespace qv
