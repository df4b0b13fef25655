// The main window and its permanent children at the test desktop's size, and the language screen.
#include <gtest/gtest.h>

#include <windows.h>

#include <algorithm>
#include <string>
#include <vector>

#include "graphics/resource_file.h"
#include "puzzle/puzzle_model.h"
#include "core/app.h"
#include "shell/language_screen.h"
#include "shell/main_window.h"
#include "shell/shell_layout.h"
#include "widgets/widget_messages.h"
#include "shell/startup_win32.h"
#include "shell/title_bar.h"
#include "widgets/widget_classes.h"

namespace qv {

std::string DistFolder();  // startup_test.cpp

namespace {

void Pump() {
  MSG message;
  for (int round = 0; round < 3; ++round) {
    while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
      if (message.message == WM_QUIT) continue;
      TranslateMessage(&message);
      DispatchMessageA(&message);
    }
    Sleep(10);
  }
}

RECT ScreenRect(HWND window) {
  RECT r{};
  GetWindowRect(window, &r);
  return r;
}

std::vector<HWND> Children(HWND parent, const char* className) {
  std::vector<HWND> found;
  for (HWND w = FindWindowExA(parent, nullptr, className, nullptr); w;
       w = FindWindowExA(parent, w, className, nullptr)) {
    found.push_back(w);
  }
  return found;
}

class MainWindowTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    SetProgramFolder(DistFolder());
    ASSERT_TRUE(OpenResourceFile((ProgramFolder() + "Quorvex.rf").c_str()));
    RegisterGameClasses(GetModuleHandleA(nullptr));
    ASSERT_NE(CreateMainWindow(GetModuleHandleA(nullptr)), nullptr);
    Pump();
  }
  static void TearDownTestSuite() {
    DestroyWindow(MainWindow());
    Pump();  // the main window's WM_QUIT is dropped here, as no loop runs
  }
};

// The places are the shell layout's (tested natively at two screen sizes); here, that every
// button takes its own.
TEST_F(MainWindowTest, BoxButtonsInformationButtonAndTitleBarTakeTheirPlaces) {
  ASSERT_NE(MainWindow(), nullptr);
  for (int i = 0; i < kBoxCount; ++i) {
    ASSERT_NE(BoxButton(i), nullptr);
    const RECT r = ScreenRect(BoxButton(i));
    const ShellPoint p = BoxButtonPosition(i, ScreenWidth(), ScreenHeight());
    EXPECT_EQ(r.left, p.x) << i;
    EXPECT_EQ(r.top, p.y) << i;
  }
  // The information button's right edge meets the screen's.
  HWND info = WindowFromPoint(POINT{ScreenWidth() - 5, 100});
  char name[32] = {};
  GetClassNameA(info, name, sizeof name);
  EXPECT_STREQ(name, kCommandClass);
  const RECT r = ScreenRect(info);
  EXPECT_EQ(r.right, ScreenWidth());
  EXPECT_EQ(r.top, InfoButtonPosition(ScreenWidth(), r.right - r.left).y);

  const std::vector<HWND> bars = Children(MainWindow(), kTitleBarClass);
  ASSERT_EQ(bars.size(), 1u);
  const RECT bar = ScreenRect(bars[0]);
  EXPECT_EQ(bar.left, 0);
  EXPECT_EQ(bar.top, 0);
  EXPECT_EQ(bar.right, ScreenWidth());
  EXPECT_EQ(bar.bottom, kTitleBarHeight);
  std::vector<LONG> lefts;
  for (HWND button : Children(bars[0], kCommandClass)) lefts.push_back(ScreenRect(button).left);
  ASSERT_EQ(lefts.size(), 6u);
  // The new-game picture's width moves only the buttons between it and the about button.
  const TitleLayout t = TitleLayoutFor(ScreenWidth(), 0);
  for (LONG expected : {t.newGame.x, t.minimise.x, t.close.x}) {
    EXPECT_NE(std::find(lefts.begin(), lefts.end(), expected), lefts.end()) << expected;
  }
  ShowGameTime(3725, 1, 2, 5);  // the text is the shell layout's clock text
  EXPECT_STREQ(GameTimeText(), "01:02:05");
  ShowGameTime(0, 0, 0, 0);
}

TEST_F(MainWindowTest, BoxButtonTogglesItsBox) {
  HWND box = BoxWindow(3);
  ASSERT_NE(box, nullptr);
  EXPECT_FALSE(IsWindowVisible(box));
  SendMessageA(MainWindow(), MWM_NOTIFY, MWN_CLICKED, reinterpret_cast<LPARAM>(BoxButton(3)));
  EXPECT_TRUE(IsWindowVisible(box));
  SendMessageA(MainWindow(), MWM_NOTIFY, MWN_PRESSED, reinterpret_cast<LPARAM>(BoxButton(3)));
  EXPECT_TRUE(IsWindowVisible(box));  // only a click toggles
  SendMessageA(MainWindow(), MWM_NOTIFY, MWN_CLICKED, reinterpret_cast<LPARAM>(BoxButton(3)));
  EXPECT_FALSE(IsWindowVisible(box));
}

RECT ClientOnScreen(HWND window) {
  RECT r{};
  GetClientRect(window, &r);
  MapWindowPoints(window, nullptr, reinterpret_cast<POINT*>(&r), 2);
  return r;
}

// The client area is the screen, before and after a trip to the task bar, which stops the clock.
TEST_F(MainWindowTest, MinimisingPausesTheClockAndRestoringGivesTheScreenBack) {
  const RECT screen{0, 0, ScreenWidth(), ScreenHeight()};
  const RECT first = ClientOnScreen(MainWindow());
  EXPECT_TRUE(EqualRect(&screen, &first));
  ShowWindow(MainWindow(), SW_MINIMIZE);
  Pump();
  EXPECT_EQ(Puzzle().RelojPausado, 1);
  ShowWindow(MainWindow(), SW_RESTORE);
  Pump();
  EXPECT_EQ(Puzzle().RelojPausado, 0);
  const RECT back = ClientOnScreen(MainWindow());
  EXPECT_TRUE(EqualRect(&screen, &back))
      << back.left << "," << back.top << " " << back.right << "," << back.bottom;
  SendMessageA(MainWindow(), WM_SIZE, SIZE_MINIMIZED, 0);
  SendMessageA(MainWindow(), WM_SIZE, SIZE_MAXIMIZED, 0);
  EXPECT_EQ(Puzzle().RelojPausado, 0);
}

// The language screen's two names and two buttons, in creation order.
struct LanguageScreen {
  HWND screen = nullptr;
  HWND confirm = nullptr, cancel = nullptr, spanish = nullptr, english = nullptr;
};

LanguageScreen OpenScreen() {
  LanguageScreen s;
  s.screen = OpenLanguageScreen();
  if (!s.screen) return s;
  const std::vector<HWND> buttons = Children(s.screen, kCommandClass);
  const std::vector<HWND> names = Children(s.screen, kTextClass);
  if (buttons.size() == 2 && names.size() == 2) {
    s.confirm = buttons[0];
    s.cancel = buttons[1];
    s.spanish = names[0];
    s.english = names[1];
  }
  return s;
}

void Click(HWND screen, HWND sender) {
  SendMessageA(screen, MWM_NOTIFY, MWN_CLICKED, reinterpret_cast<LPARAM>(sender));
  Pump();
}

std::string Idioma() {
  char value[16] = {};
  GetPrivateProfileStringA("Quorvex", "Idioma", "", value, sizeof value, "Quorvex.ini");
  return value;
}

TEST_F(MainWindowTest, LanguageScreenWritesOnlyAConfirmedChange) {
  WritePrivateProfileStringA("Quorvex", "Idioma", "untouched", "Quorvex.ini");
  LanguageScreen s = OpenScreen();
  ASSERT_NE(s.screen, nullptr);
  ASSERT_NE(s.confirm, nullptr);
  EXPECT_FALSE(IsWindowEnabled(MainWindow()));
  Click(s.screen, s.english);
  Click(s.screen, s.confirm);  // English was current: nothing to write
  EXPECT_FALSE(IsWindow(s.screen));
  EXPECT_TRUE(IsWindowEnabled(MainWindow()));
  EXPECT_EQ(Idioma(), "untouched");

  s = OpenScreen();
  Click(s.screen, s.spanish);
  Click(s.screen, s.cancel);
  EXPECT_EQ(CurrentLanguage(), 1);
  EXPECT_EQ(Idioma(), "untouched");

  s = OpenScreen();
  Click(s.screen, s.spanish);
  Click(s.screen, s.confirm);
  EXPECT_EQ(CurrentLanguage(), 0);
  EXPECT_EQ(Idioma(), "0");
  char caption[100] = {};
  GetWindowTextA(PreviewWindow(), caption, sizeof caption);
  EXPECT_EQ(std::string(caption), LocalizedString(120, 90));
  EXPECT_NE(std::string(caption), "Preview");

  s = OpenScreen();
  Click(s.screen, s.english);
  Click(s.screen, s.confirm);
  EXPECT_EQ(CurrentLanguage(), 1);
  EXPECT_EQ(Idioma(), "1");
}

std::string BoxName(int box) {
  char name[64] = {};
  GetWindowTextA(BoxWindow(box), name, sizeof name);
  return name;
}

// Untouched boxes follow the language; a box the player named keeps its name.
TEST_F(MainWindowTest, LanguageChangeRenamesOnlyUntouchedBoxes) {
  ASSERT_EQ(CurrentLanguage(), 1);
  ASSERT_EQ(BoxName(0), "Box1 ");
  SetWindowTextA(BoxWindow(2), "Edges");
  LanguageScreen s = OpenScreen();
  Click(s.screen, s.spanish);
  Click(s.screen, s.confirm);
  EXPECT_EQ(BoxName(0), "Caja1 ");
  EXPECT_EQ(BoxName(5), "Caja6 ");
  EXPECT_EQ(BoxName(2), "Edges");
  s = OpenScreen();
  Click(s.screen, s.english);
  Click(s.screen, s.confirm);
  EXPECT_EQ(BoxName(0), "Box1 ");
  EXPECT_EQ(BoxName(2), "Edges");
  SetWindowTextA(BoxWindow(2), "Box3 ");
}

TEST_F(MainWindowTest, LanguageScreenClosesOnEscapeAndConfirmsOnEnter) {
  LanguageScreen s = OpenScreen();
  Click(s.screen, s.spanish);
  SendMessageA(s.screen, WM_CHAR, VK_ESCAPE, 0);
  Pump();
  EXPECT_FALSE(IsWindow(s.screen));
  EXPECT_EQ(CurrentLanguage(), 1);
  // Keys typed while a child has the focus reach the screen through the child-character rule.
  s = OpenScreen();
  Click(s.screen, s.spanish);
  EXPECT_NE(SendMessageA(s.screen, UM_CHILDCHAR, VK_RETURN, 0), 0);
  Pump();
  EXPECT_FALSE(IsWindow(s.screen));
  EXPECT_EQ(CurrentLanguage(), 0);
  EXPECT_TRUE(IsWindowEnabled(MainWindow()));
  s = OpenScreen();
  Click(s.screen, s.english);
  SendMessageA(s.screen, WM_CHAR, VK_RETURN, 0);
  Pump();
  EXPECT_EQ(CurrentLanguage(), 1);
}

}  // namespace
}  // namespace qv
