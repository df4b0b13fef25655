// The application core's process-wide values: screen size, program folder, the shared windows.
#include "core/app.h"

#include <shellapi.h>

#include <cstring>

#include "core/button_feedback.h"
#include "core/resource_ids.h"
#include "widgets/widget_classes.h"
#include "widgets/widget_messages.h"
#include "widgets/widget_sounds.h"

namespace qv {
namespace {

// Read before the main routine runs, as every layout of the program assumes a fixed screen.
const int g_screenWidth = GetSystemMetrics(SM_CXSCREEN);
const int g_screenHeight = GetSystemMetrics(SM_CYSCREEN);

std::string g_programFolder;
HWND g_mainWindow = nullptr;
HWND g_boxWindows[6] = {};
HWND g_boxButtons[6] = {};
HWND g_previewWindow = nullptr;

bool ValidBox(int box) { return box >= 0 && box < 6; }

bool IsAnimatedButton(HWND window) {
  char name[16] = {};
  return window && GetClassNameA(window, name, sizeof name) > 0 &&
         std::strcmp(name, kAnimClass) == 0;
}

}  // namespace

int ScreenWidth() { return g_screenWidth; }
int ScreenHeight() { return g_screenHeight; }

const std::string& ProgramFolder() { return g_programFolder; }
void SetProgramFolder(const std::string& folder) { g_programFolder = folder; }

std::string ModuleString(std::uint32_t identifier, int maxLength) {
  if (maxLength < 2) return std::string();
  std::string text(static_cast<std::size_t>(maxLength), '\0');
  const int length =
      LoadStringA(GetModuleHandleA(nullptr), identifier, text.data(), maxLength);
  text.resize(length > 0 ? static_cast<std::size_t>(length) : 0);
  return text;
}

std::string LocalizedString(std::uint32_t base, int maxLength) {
  return ModuleString(base + static_cast<std::uint32_t>(CurrentLanguage()), maxLength);
}

HWND MainWindow() { return g_mainWindow; }
void SetMainWindow(HWND window) { g_mainWindow = window; }
HWND BoxWindow(int box) { return ValidBox(box) ? g_boxWindows[box] : nullptr; }
void SetBoxWindow(int box, HWND window) {
  if (ValidBox(box)) g_boxWindows[box] = window;
}
HWND BoxButton(int box) { return ValidBox(box) ? g_boxButtons[box] : nullptr; }
void SetBoxButton(int box, HWND window) {
  if (ValidBox(box)) g_boxButtons[box] = window;
}
HWND PreviewWindow() { return g_previewWindow; }
void SetPreviewWindow(HWND window) { g_previewWindow = window; }

void HideAllBoxesBut(HWND keep) {
  for (HWND box : g_boxWindows) {
    if (box && box != keep) HideInPlace(box);
  }
  HideInPlace(g_previewWindow);
}

// The shell is told to show no dialog of its own: its dialog is owned by the main window, and
// closing it enables and activates the main window while the screen that asked for help is still
// open, so that screen loses the keyboard and the main window takes clicks meant to wait for it.
// The game says it in its own box over that screen, and gives the screen its keyboard back.
void OpenHelp() {
  const std::string page =
      g_programFolder + "Help\\" + std::to_string(CurrentLanguage()) + "\\Index.htm";
  SHELLEXECUTEINFOA info{};
  info.cbSize = sizeof info;
  info.fMask = SEE_MASK_NOASYNC | SEE_MASK_FLAG_NO_UI;
  info.hwnd = g_mainWindow;
  info.lpVerb = "open";
  info.lpFile = page.c_str();
  info.nShow = SW_SHOWNORMAL;
  if (ShellExecuteExA(&info)) return;

  HWND screen = GetActiveWindow();
  if (!screen) screen = g_mainWindow;
  if (HWND box = ShowMessageBox(IDS_NO_HELP_PROGRAM, screen, false, false)) RunMessageBox(box);
  if (!screen || !IsWindow(screen)) return;
  EnableWindow(screen, TRUE);
  SetForegroundWindow(screen);
  SetActiveWindow(screen);
  SetFocus(screen);
}

void ButtonFeedback(HWND button, int event) {
  if (!IsAnimatedButton(button)) return;
  FeedbackButton now;
  now.state = static_cast<int>(SendMessageA(button, anim::MWM_GETUSERVALUE, 0, 0));
  now.frame = static_cast<int>(SendMessageA(button, anim::MWM_GETFRAME, 0, 0));
  now.latched = SendMessageA(button, anim::MWM_GETHOVER, 0, 0) != 0;
  const FeedbackStep step = ButtonFeedbackStep(now, event);
  if (step.timer != FeedbackTimer::Keep) {
    SendMessageA(button, anim::MWM_SETRUNNING, 0, step.timer == FeedbackTimer::On ? 1 : 0);
  }
  if (step.stateChanged) SendMessageA(button, anim::MWM_SETUSERVALUE, 0, step.after.state);
  if (step.frameChanged) SendMessageA(button, anim::MWM_SETFRAME, 0, step.after.frame);
  if (step.sound == FeedbackSound::Press) PlayWidgetSound(kHoverSound);
  if (step.sound == FeedbackSound::Click) PlayWidgetSound(kClickSound);
}

}  // namespace qv
