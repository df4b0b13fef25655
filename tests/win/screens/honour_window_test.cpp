// The honour roll screen and the end of a game, with the game's resource file and a finished
// 2 x 2 puzzle; the questions are answered from a timer while the program waits on them.
#include "screens/honour_window.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "core/app.h"
#include "graphics/bitmap_file.h"
#include "graphics/control_dc.h"
#include "graphics/himage_ops.h"
#include "graphics/resource_file.h"
#include "puzzle/compose.h"
#include "puzzle/play.h"
#include "puzzle/puzzle_model.h"
#include "puzzle/texture.h"
#include "screens/game_end.h"
#include "screens/honour_logic.h"
#include "screens/records.h"
#include "widgets/widget_classes.h"
#include "win/support/real_input.h"

namespace qv {
namespace {

const std::string kDist = test::GameDataFolder();
using Bytes = std::vector<char>;
const std::string kEmptyName(23, '-');
// A whole 2 x 2 picture in no time without hints: 100 x 4 x 4 x 10.
constexpr std::int32_t kFinishedScore = 16000;

using test::Pump;
using test::BoxAnswer;
using test::WithAnswers;

// ---- The program around the screen --------------------------------------------------------------

std::string TempFolder() {
  char temp[MAX_PATH];
  GetTempPathA(MAX_PATH, temp);
  const std::string folder = std::string(temp) + "qv_honour_test\\";
  CreateDirectoryA(folder.c_str(), nullptr);
  return folder;
}

class HonourEnvironment : public ::testing::Environment {
 public:
  void SetUp() override {
    HINSTANCE instance = GetModuleHandleA(nullptr);
    ASSERT_TRUE(OpenResourceFile((kDist + "Quorvex.rf").c_str())) << kDist;
    ASSERT_TRUE(RegisterWidgetClasses(instance));
    ASSERT_TRUE(RegisterMessageBoxClass(instance));
    ASSERT_TRUE(RegisterHonourClasses(instance));
    HWND main = test::CreateGameMainWindow();
    ASSERT_TRUE(main);
    SetMainWindow(main);
    SetProgramFolder(TempFolder());

    // A finished game, put together by joining (not by the solve button).
    ASSERT_TRUE(texture_.LoadById(6000));
    ASSERT_TRUE(MosaicoPuzzle(texture_.Dib()));
    for (int box = 0; box < 6; ++box) {
      ASSERT_TRUE(CreateBoxArea(box, static_cast<std::uintptr_t>(1000 + box)));
      ASSERT_TRUE(ResizeArea(box, 300, 300));
    }
    ASSERT_TRUE(CreateBoardArea());
    SetBoardSize(900, 700);
    ASSERT_TRUE(ResizeArea(AREA_TABLERO, 900, 700));
    ASSERT_TRUE(LoadPuzzlePicture((kDist + "Image\\1.bmp").c_str()));
    Puzzle().NR = 2;
    Puzzle().NC = 2;
    Puzzle().scale = 0.5;
    ASSERT_TRUE(CrearPuzzle(2, 2, 5000, true));
    ResolverPuzzle();
    ASSERT_EQ(ResultadoPuzzle().score, kFinishedScore);
  }
  void TearDown() override {
    ShutdownEngine();
    if (MainWindow()) DestroyWindow(MainWindow());
  }

 private:
  ControlDC texture_;
};

const auto* const g_environment = ::testing::AddGlobalTestEnvironment(new HonourEnvironment);

// ---- The file and the screen ----------------------------------------------------------------------

std::string RecordsFile() { return ProgramFolder() + kRecordsFileName; }

Bytes ReadFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}
void WriteFile(const Bytes& bytes) {
  std::ofstream(RecordsFile(), std::ios::binary)
      .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}
bool Exists(const std::string& path) { return GetFileAttributesA(path.c_str()) != INVALID_FILE_ATTRIBUTES; }

// A good file with these scores; names "p0" ... "p9".
Bytes RollFile(const std::vector<std::int32_t>& scores, std::int32_t count = 10) {
  HonourRoll roll;
  ResetRecords(roll);
  roll.header.count = count;
  for (int i = 0; i < 10; ++i) {
    std::snprintf(roll.entries[i].name, kRecordNameBytes, "p%d", i);
    roll.entries[i].score = scores[static_cast<std::size_t>(i)];
  }
  const char* bytes = reinterpret_cast<const char*>(&roll);
  return {bytes, bytes + sizeof roll};
}

HWND Screen() { return FindWindowA(kHonourClass, nullptr); }

using test::ChildAt;
using test::TextOf;

// The ten rows as the screen shows them: "place|name|score".
std::vector<std::string> ShownRows() {
  const HonourLayout layout = HonourScreenLayout(ScreenWidth(), ScreenHeight());
  std::vector<std::string> rows;
  for (int row = 0; row < kHonourPlaces; ++row) {
    const int y = layout.rowY[row];
    rows.push_back(TextOf(ChildAt(Screen(), kTextClass, layout.placeX, y)) + "|" +
                   TextOf(ChildAt(Screen(), kTextClass, layout.nameX, y)) + "|" +
                   TextOf(ChildAt(Screen(), kTextClass, layout.scoreX, y)));
  }
  return rows;
}

std::vector<std::string> RowsOf(const Bytes& file) {
  HonourRoll roll;
  LoadRecordsFromBytes({reinterpret_cast<const std::uint8_t*>(file.data()), file.size()}, roll);
  std::vector<std::string> rows;
  for (int row = 0; row < kHonourPlaces; ++row) {
    const HonourRowText text = HonourRow(roll, row);
    rows.push_back(text.place + "|" + text.name + "|" + text.score);
  }
  return rows;
}

class HonourScreen : public ::testing::Test {
 protected:
  void SetUp() override { DeleteFileA(RecordsFile().c_str()); }
  void TearDown() override {
    if (HWND screen = Screen()) SendMessageA(screen, WM_CLOSE, 0, 0);
    Pump(20);
    EXPECT_TRUE(IsWindowEnabled(MainWindow())) << "the main window is enabled again";
  }
};

TEST_F(HonourScreen, WithoutAFileShowsTenEmptyRowsAndItsButtons) {
  HWND screen = OpenHonourRoll();
  ASSERT_TRUE(screen);
  EXPECT_FALSE(IsWindowEnabled(MainWindow()));
  RECT client;
  GetClientRect(screen, &client);
  EXPECT_EQ(client.right, ScreenWidth());
  const std::vector<std::string> rows = ShownRows();
  for (int row = 0; row < kHonourPlaces; ++row) {
    EXPECT_EQ(rows[static_cast<std::size_t>(row)], std::to_string(row + 1) + "|" + kEmptyName + "|0");
  }
  const HonourLayout layout = HonourScreenLayout(ScreenWidth(), ScreenHeight());
  EXPECT_TRUE(ChildAt(screen, kAnimClass, layout.clearButton.x, layout.clearButton.y));
  EXPECT_TRUE(ChildAt(screen, kAnimClass, layout.closeButton.x, layout.closeButton.y));
  EXPECT_FALSE(Exists(RecordsFile())) << "the empty roll is not written";
  EXPECT_EQ(SendMessageA(screen, UM_CHILDCHAR, VK_ESCAPE, 0), 1);
  Pump(50);
  EXPECT_FALSE(IsWindow(screen));
}

TEST_F(HonourScreen, MalformedFilesAreDeletedAndTheClearButtonLeavesNoFile) {
  // Which files count as malformed is the store's business; here one shows as the empty roll.
  const Bytes good = RollFile({9, 8, 7, 6, 5, 4, 3, 2, 1, 0});
  WriteFile(RollFile({9, 8, 7, 6, 5, 4, 3, 2, 1, 0}, 9));
  ASSERT_TRUE(OpenHonourRoll());
  EXPECT_EQ(ShownRows()[0], "1|" + kEmptyName + "|0");
  EXPECT_FALSE(Exists(RecordsFile()));
  SendMessageA(Screen(), WM_CLOSE, 0, 0);

  WriteFile(good);
  HWND screen = OpenHonourRoll();
  ASSERT_TRUE(screen);
  EXPECT_EQ(ShownRows(), RowsOf(good));
  const HonourLayout layout = HonourScreenLayout(ScreenWidth(), ScreenHeight());
  HWND clear = ChildAt(screen, kAnimClass, layout.clearButton.x, layout.clearButton.y);
  SendMessageA(screen, MWM_NOTIFY, MWN_CLICKED, reinterpret_cast<LPARAM>(clear));
  EXPECT_FALSE(Exists(RecordsFile()));
  EXPECT_EQ(ShownRows()[9], "10|" + kEmptyName + "|0");
  EXPECT_TRUE(IsWindow(screen));
}

TEST_F(HonourScreen, AnEqualScoreGoesBelowItsEqualsAndANameKeepsTheTailBehindIt) {
  // Rows 3 to 5 hold the finished game's score.
  Bytes file = RollFile({30000, 20000, kFinishedScore, kFinishedScore, kFinishedScore, 900, 800,
                         700, 600, 500});
  std::memcpy(file.data() + 16 + 28 * 5 + 3, "Maximiliana", 12);  // "p5" becomes a long name
  std::memcpy(file.data() + 16 + 28 * 5, "Max", 3);
  WriteFile(file);
  EXPECT_EQ(WithAnswers({{true, "Eve"}}, [] { EnterHonourRoll(); }), std::vector<bool>({true}));
  const Bytes after = ReadFile(RecordsFile());
  ASSERT_EQ(after.size(), 296u);
  // Row 6 (place 5): "Eve" over the start of the old name, whose tail stays in the file.
  EXPECT_EQ(std::string(after.data() + 16 + 28 * 5, 14), std::string("Eve\0aximiliana", 14));
  EXPECT_EQ(std::string(after.data() + 16 + 28 * 6), "MaxMaximiliana");
  const std::vector<std::string> rows = ShownRows();
  EXPECT_EQ(rows, RowsOf(after));
  EXPECT_EQ(rows[5], "6|Eve|16000");
  EXPECT_EQ(rows[4], "5|p4|16000");
  EXPECT_EQ(rows[6], "7|MaxMaximiliana|900");
  // Held on screen for that many milliseconds when asked, for screenshots.
  if (const char* hold = std::getenv("QV_HONOUR_SHOT_MS")) Pump(std::atoi(hold));
  EXPECT_EQ(rows[9], "10|p8|600");
}

TEST_F(HonourScreen, CancellingOrConfirmingEmptyChangesNothing) {
  const Bytes file = RollFile({900, 800, 700, 600, 500, 400, 300, 200, 100, 0});
  WriteFile(file);
  for (const BoxAnswer& answer : {BoxAnswer{false, "Eve"}, BoxAnswer{true, ""}}) {
    WithAnswers({answer}, [] { EnterHonourRoll(); });
    EXPECT_EQ(ReadFile(RecordsFile()), file);
    ASSERT_TRUE(Screen()) << "the roll stays open to be closed";
    EXPECT_EQ(ShownRows(), RowsOf(file));
    SendMessageA(Screen(), WM_CLOSE, 0, 0);
  }
  // A game the program solved for the player asks nothing and opens nothing.
  Puzzle().solutionShown = 1;
  WithAnswers({}, [] { EnterHonourRoll(); });
  Puzzle().solutionShown = 0;
  EXPECT_FALSE(Screen());
}

// ---- The end of a game ---------------------------------------------------------------------------

std::string WallpaperPath() {
  char folder[MAX_PATH] = {};
  GetWindowsDirectoryA(folder, MAX_PATH);
  return std::string(folder) + "\\" + kWallpaperFileName;
}

std::string DesktopValue(const char* name) {
  char value[MAX_PATH] = {};
  DWORD size = sizeof value;
  HKEY key = nullptr;
  if (RegOpenKeyExA(HKEY_CURRENT_USER, "Control Panel\\Desktop", 0, KEY_QUERY_VALUE, &key) != ERROR_SUCCESS) {
    return "(no key)";
  }
  const LONG read = RegQueryValueExA(key, name, nullptr, nullptr, reinterpret_cast<BYTE*>(value), &size);
  RegCloseKey(key);
  return read == ERROR_SUCCESS ? std::string(value) : "(none)";
}

void SetDesktopValue(const char* name, const char* value) {
  HKEY key = nullptr;
  ASSERT_EQ(RegCreateKeyExA(HKEY_CURRENT_USER, "Control Panel\\Desktop", 0, nullptr, 0, KEY_SET_VALUE,
                            nullptr, &key, nullptr),
            ERROR_SUCCESS);
  RegSetValueExA(key, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(value),
                 static_cast<DWORD>(std::strlen(value) + 1));
  RegCloseKey(key);
}

TEST_F(HonourScreen, WallpaperYesWritesThePictureAndTheDesktopValuesThenAsksForTheName) {
  DeleteFileA(WallpaperPath().c_str());
  SetDesktopValue("TileWallpaper", "1");
  EXPECT_EQ(WithAnswers({{true}, {false}}, [] { RunGameEnd(); }), std::vector<bool>({false, true}));
  EXPECT_TRUE(Screen()) << "an empty roll takes any finished game";
  EXPECT_TRUE(IsWindowEnabled(Screen()));

  EXPECT_EQ(DesktopValue("TileWallpaper"), "0");
  EXPECT_EQ(DesktopValue("Wallpaper"), WallpaperPath());
  BitmapFile written;
  ASSERT_TRUE(written.Open(WallpaperPath().c_str()));
  BitmapInfoHeader header{};
  ASSERT_TRUE(written.GetHeader(&header));
  HIMAGE picture = PuzzlePicture();
  ASSERT_TRUE(picture);
  EXPECT_EQ(header.biBitCount, 8);
  EXPECT_EQ(header.biWidth, ImageWidth(picture));
  EXPECT_EQ(header.biHeight, ImageHeight(picture));
  std::vector<RgbQuad> colours(static_cast<std::size_t>(written.ColourCount()));
  ASSERT_EQ(colours.size(), 256u);
  ASSERT_TRUE(written.ReadColours(0, 256, colours.data()));
  EXPECT_EQ(std::memcmp(colours.data(), DibColours(picture), 4 * colours.size()), 0);
  std::vector<std::uint8_t> pixels(static_cast<std::size_t>(BitmapFile::ImageSize(header)));
  ASSERT_TRUE(written.ReadPixels(pixels.data()));
  EXPECT_EQ(std::memcmp(pixels.data(), DibPixels(picture), pixels.size()), 0);
}

TEST_F(HonourScreen, WallpaperNoTouchesNothingAndStillAsksForTheName) {
  DeleteFileA(WallpaperPath().c_str());
  SetDesktopValue("TileWallpaper", "1");
  SetDesktopValue("Wallpaper", "");
  WriteFile(RollFile({900, 800, 700, 600, 500, 400, 300, 200, 100, 0}));
  EXPECT_EQ(WithAnswers({{false}, {true, "Ana"}}, [] { RunGameEnd(); }),
            std::vector<bool>({false, true}));
  EXPECT_FALSE(Exists(WallpaperPath()));
  EXPECT_EQ(DesktopValue("TileWallpaper"), "1");
  EXPECT_EQ(DesktopValue("Wallpaper"), "");
  ASSERT_TRUE(Screen());
  EXPECT_EQ(ShownRows()[0], "1|Ana|16000");
  EXPECT_TRUE(IsWindowEnabled(MainWindow()) == FALSE) << "the roll is still open over the game";
}

}  // namespace
}  // namespace qv
