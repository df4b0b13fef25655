// The tool bar and the option bar on a main window with the game's resource file and a running
// puzzle, driven by the real pointer: geometry, sliding out and hiding, and the buttons' actions.
#include <windows.h>

#include <gtest/gtest.h>

#include <string>

#include "core/app.h"
#include "graphics/resource_file.h"
#include "puzzle/puzzle_model.h"
#include "puzzle/puzzle_windows.h"
#include "screens/bar_layout.h"
#include "screens/bars_window.h"
#include "setup/file_screen_window.h"
#include "screens/honour_window.h"
#include "widgets/widget_classes.h"
#include "widgets/widget_messages.h"
#include "win/support/real_input.h"

namespace qv::test {
namespace {

std::string DataPath(const char* name) { return GameDataFolder() + name; }

bool StartPuzzle() {
  if (!LoadPuzzlePicture(DataPath("Image/1.bmp").c_str())) return false;
  Puzzle().NR = 3;
  Puzzle().NC = 4;  // twelve pieces: two hints
  return ShowPuzzle(2, 2, 5000) && CreateBoardWindow(MainWindow()) != nullptr;
}

class BarsEnvironment : public ::testing::Environment {
 public:
  void SetUp() override {
    HINSTANCE instance = GetModuleHandleA(nullptr);
    ASSERT_TRUE(OpenResourceFile(DataPath("Quorvex.rf").c_str())) << DataPath("Quorvex.rf");
    ASSERT_TRUE(RegisterWidgetClasses(instance));
    ASSERT_TRUE(RegisterPuzzleWindowClasses(instance));
    ASSERT_TRUE(RegisterBarClasses(instance));
    ASSERT_TRUE(RegisterHonourClasses(instance));
    ASSERT_TRUE(RegisterFileScreenClasses(instance));
    ASSERT_TRUE(RegisterMessageBoxClass(instance));
    HWND main = CreateGameMainWindow();
    ASSERT_TRUE(main);
    SetMainWindow(main);
    SetBoardSize(ScreenWidth() - 49 - 25, ScreenHeight() - 78 - 25);
    ASSERT_TRUE(SetTableTextureIndex(0));
    SetEngineHooks(PuzzleWindowHooks());
    ASSERT_TRUE(CreatePreviewWindow(main));
    ASSERT_TRUE(StartPuzzle());
    // As the main window does: the board first, the bars over it.
    ASSERT_TRUE(CreateBars(main));
    Pump(100);
  }
  void TearDown() override {
    if (MainWindow()) DestroyWindow(MainWindow());
    ShutdownEngine();
  }
};

const auto* const g_environment = ::testing::AddGlobalTestEnvironment(new BarsEnvironment);

HWND Child(const char* className) {
  return FindWindowExA(MainWindow(), nullptr, className, nullptr);
}
HWND ToolStrip() { return Child("CWNDBARRAHER"); }
HWND ToolPanel() { return Child("CWNDHerramientas"); }
HWND OptionStrip() { return Child("CWNDBARRAOPC"); }
HWND OptionPanel() { return Child("CWNDOPCIONES"); }
// Buttons carry their order on the panel, from 1.
HWND Button(HWND panel, int order) { return GetDlgItem(panel, order); }

RECT PlaceIn(HWND parent, HWND window) {
  RECT r;
  GetWindowRect(window, &r);
  MapWindowPoints(nullptr, parent, reinterpret_cast<POINT*>(&r), 2);
  return r;
}

void ExpectPlace(HWND parent, HWND window, int x, int y, int width, int height) {
  ASSERT_TRUE(window);
  const RECT r = PlaceIn(parent, window);
  EXPECT_EQ(r.left, x);
  EXPECT_EQ(r.top, y);
  EXPECT_EQ(r.right - r.left, width);
  EXPECT_EQ(r.bottom - r.top, height);
}

POINT Middle(HWND window) {
  RECT r;
  GetWindowRect(window, &r);
  return POINT{(r.left + r.right) / 2, (r.top + r.bottom) / 2};
}

POINT AwayFromTheBars() { return POINT{ScreenWidth() / 2, ScreenHeight() / 2}; }

// Counts the panel's appearances and its timer ticks, as seen by this thread.
struct PanelWatch {
  static inline HWND panel = nullptr;
  static inline int shows = 0;
  static inline int ticks = 0;
  HHOOK calls = nullptr, messages = nullptr;

  static LRESULT CALLBACK OnCall(int code, WPARAM wParam, LPARAM lParam) {
    const auto* c = reinterpret_cast<const CWPSTRUCT*>(lParam);
    if (code == HC_ACTION && c->hwnd == panel && c->message == WM_WINDOWPOSCHANGED &&
        (reinterpret_cast<const WINDOWPOS*>(c->lParam)->flags & SWP_SHOWWINDOW)) {
      ++shows;
    }
    return CallNextHookEx(nullptr, code, wParam, lParam);
  }
  static LRESULT CALLBACK OnMessage(int code, WPARAM wParam, LPARAM lParam) {
    const auto* m = reinterpret_cast<const MSG*>(lParam);
    if (code == HC_ACTION && wParam == PM_REMOVE && m->hwnd == panel && m->message == WM_TIMER) {
      ++ticks;
    }
    return CallNextHookEx(nullptr, code, wParam, lParam);
  }
  explicit PanelWatch(HWND watched) {
    panel = watched;
    shows = ticks = 0;
    calls = SetWindowsHookExA(WH_CALLWNDPROC, OnCall, nullptr, GetCurrentThreadId());
    messages = SetWindowsHookExA(WH_GETMESSAGE, OnMessage, nullptr, GetCurrentThreadId());
  }
  ~PanelWatch() {
    UnhookWindowsHookEx(calls);
    UnhookWindowsHookEx(messages);
    panel = nullptr;
  }
};

class Bars : public ::testing::Test {
 protected:
  void SetUp() override {
    MoveTo(AwayFromTheBars());
    ASSERT_TRUE(PumpUntil([] {
      return !IsWindowVisible(ToolPanel()) && !IsWindowVisible(OptionPanel());
    }));
  }
  // Touches the strip with the pointer (away from its label) and waits for the panel.
  static void SlideOut(HWND strip, HWND panel) {
    MoveToClient(strip, 10, 10);
    ASSERT_TRUE(PumpUntil([&] { return IsWindowVisible(panel) != FALSE; }));
  }
};

TEST_F(Bars, FourWindowsAtTheirPlacesOverTheBoard) {
  // The places are the layout's (checked at two screen sizes natively); here, that every window
  // takes its own.
  HWND main = MainWindow();
  const struct {
    HWND strip, panel;
    BarLayout layout;
  } bars[] = {{ToolStrip(), ToolPanel(), ToolBarLayout(ScreenWidth(), ScreenHeight())},
              {OptionStrip(), OptionPanel(), OptionBarLayout(ScreenWidth(), ScreenHeight())}};
  for (const auto& bar : bars) {
    const BarLayout& l = bar.layout;
    ExpectPlace(main, bar.strip, l.strip.x, l.strip.y, l.strip.width, l.strip.height);
    ExpectPlace(main, bar.panel, l.panel.x, l.panel.y, l.panel.width, l.panel.height);
    EXPECT_TRUE(IsWindowVisible(bar.strip));
    EXPECT_FALSE(IsWindowVisible(bar.panel));
    const RECT label = PlaceIn(bar.strip, FindWindowExA(bar.strip, nullptr, kAnimClass, nullptr));
    EXPECT_EQ(label.left, l.label.x);
    EXPECT_EQ(label.top, l.label.y);
    for (int k = 0; k < l.buttonCount; ++k) {
      const RECT button = PlaceIn(bar.panel, Button(bar.panel, k + 1));
      EXPECT_EQ(button.left, l.buttons[k].x) << k;
      EXPECT_EQ(button.top, l.buttons[k].y) << k;
    }
  }

  // The Z order of the main window's children: panels over strips, everything over the board.
  int place = 0, board = -1, lowestBar = -1, highestStrip = 1 << 30, lowestPanel = -1;
  for (HWND c = GetWindow(main, GW_CHILD); c; c = GetWindow(c, GW_HWNDNEXT), ++place) {
    if (c == BoardWindow()) board = place;
    if (c == ToolStrip() || c == OptionStrip()) highestStrip = std::min(highestStrip, place);
    if (c == ToolPanel() || c == OptionPanel()) lowestPanel = std::max(lowestPanel, place);
    if (c == ToolStrip() || c == OptionStrip() || c == ToolPanel() || c == OptionPanel()) {
      lowestBar = std::max(lowestBar, place);
    }
  }
  EXPECT_GT(board, lowestBar);
  EXPECT_LT(lowestPanel, highestStrip);
}

TEST_F(Bars, PanelSlidesOutOnceAndHidesWhenThePointerLeaves) {
  PanelWatch watch(ToolPanel());
  SlideOut(ToolStrip(), ToolPanel());
  for (int k = 1; k <= 4; ++k) EXPECT_TRUE(IsWindowVisible(Button(ToolPanel(), k))) << k;

  // Back and forth over the strip's place (now under the panel), then moves that the strip
  // itself sees every 50 ms: a slide restarted by each of them would restart the 100 ms timer
  // too, and it would never tick.
  const POINT strip = OnScreen(ToolStrip(), 10, 10);
  for (int i = 0; i < 3; ++i) {
    MoveTo(strip.x + 60, strip.y + 20 * i);
    MoveTo(strip);
  }
  const int ticksBefore = PanelWatch::ticks;
  const DWORD start = GetTickCount();
  for (int i = 0; i < 12; ++i) {
    SendMessageA(ToolStrip(), WM_MOUSEMOVE, 0, MAKELPARAM(10, 10 + 20 * i));
    Pump(50);
  }
  const DWORD elapsed = GetTickCount() - start;
  EXPECT_EQ(PanelWatch::shows, 1);
  EXPECT_GE(PanelWatch::ticks - ticksBefore, 3);
  EXPECT_LE(PanelWatch::ticks - ticksBefore, static_cast<int>(elapsed / 100) + 2);
  EXPECT_TRUE(IsWindowVisible(ToolPanel()));

  MoveTo(AwayFromTheBars());
  ASSERT_TRUE(PumpUntil([] { return !IsWindowVisible(ToolPanel()); }));
  for (int k = 1; k <= 4; ++k) EXPECT_FALSE(IsWindowVisible(Button(ToolPanel(), k))) << k;
  const int ticksAtHide = PanelWatch::ticks;
  Pump(300);
  EXPECT_EQ(PanelWatch::ticks, ticksAtHide);  // the timer went with the panel

  // The label counts as the strip.
  MoveTo(Middle(FindWindowExA(ToolStrip(), nullptr, kAnimClass, nullptr)));
  EXPECT_TRUE(PumpUntil([] { return IsWindowVisible(ToolPanel()) != FALSE; }));
  EXPECT_EQ(PanelWatch::shows, 2);
}

TEST_F(Bars, LeavingThroughAButtonHidesAtTheNextTick) {
  SlideOut(OptionStrip(), OptionPanel());
  HWND quit = Button(OptionPanel(), 5);
  MoveTo(Middle(quit));
  Pump(350);
  EXPECT_TRUE(IsWindowVisible(OptionPanel()));  // over a button is over the panel
  const DWORD left = GetTickCount();
  MoveTo(AwayFromTheBars());
  ASSERT_TRUE(PumpUntil([] { return !IsWindowVisible(OptionPanel()); }));
  EXPECT_LT(GetTickCount() - left, 400u);
}

TEST_F(Bars, HintAnswerReachesItsButtonAndHonourOpensTheRoll) {
  SlideOut(ToolStrip(), ToolPanel());
  HWND hint = Button(ToolPanel(), 2);
  ASSERT_EQ(SendMessageA(hint, MWM_GETENABLED, 0, 0), 1);
  Click(hint);
  EXPECT_EQ(Puzzle().hintsUsed, 1);
  EXPECT_EQ(SendMessageA(hint, MWM_GETENABLED, 0, 0), 1);  // one of two used
  Click(hint);
  EXPECT_EQ(Puzzle().hintsUsed, 2);
  EXPECT_EQ(SendMessageA(hint, MWM_GETENABLED, 0, 0), 0);
  Click(hint);  // a disabled button does nothing
  EXPECT_EQ(Puzzle().hintsUsed, 2);
  SetHintButtonAvailable(true);
  EXPECT_EQ(SendMessageA(hint, MWM_GETENABLED, 0, 0), 1);

  Click(Button(ToolPanel(), 4));
  EXPECT_TRUE(IsWindowVisible(ToolPanel()));  // a click never hides the panel
  HWND roll = FindWindowA(kHonourClass, nullptr);
  ASSERT_TRUE(roll);
  SendMessageA(roll, WM_CLOSE, 0, 0);
  EXPECT_TRUE(PumpUntil([] { return !FindWindowA(kHonourClass, nullptr); }));
  EXPECT_TRUE(IsWindowEnabled(MainWindow()));
}

TEST_F(Bars, MagnifierTogglesWhateverOpenedThePreview) {
  SlideOut(OptionStrip(), OptionPanel());
  HWND magnifier = Button(OptionPanel(), 3);
  HWND preview = PreviewWindow();
  ASSERT_FALSE(IsWindowVisible(preview));
  Click(magnifier);
  EXPECT_TRUE(IsWindowVisible(preview));
  Click(magnifier);
  EXPECT_FALSE(IsWindowVisible(preview));
  ShowPreview();  // as the new-game screen or a box opens it
  ASSERT_TRUE(IsWindowVisible(preview));
  Click(magnifier);
  EXPECT_FALSE(IsWindowVisible(preview));
}

// Last: it closes the puzzle.
// The file screen each button opened, closed again; null when none opened.
bool FileScreenOpened() {
  HWND screen = FindWindowA("CWNDFILE", nullptr);
  if (!screen) return false;
  SendMessageA(screen, WM_CLOSE, 0, 0);
  Pump(50);
  return true;
}

TEST_F(Bars, OpenAndSaveAskForTheFileScreenSaveOnlyWithAPuzzle) {
  SlideOut(OptionStrip(), OptionPanel());
  Click(Button(OptionPanel(), 2));
  EXPECT_TRUE(FileScreenOpened());
  Click(Button(OptionPanel(), 4));
  EXPECT_TRUE(FileScreenOpened());
  CerrarPuzzle(true);
  Click(Button(OptionPanel(), 4));
  EXPECT_FALSE(FileScreenOpened());
  Click(Button(OptionPanel(), 2));
  EXPECT_TRUE(FileScreenOpened());
}

}  // namespace
}  // namespace qv::test
