// The refusal dialog, the class registration and the message loop of the main routine.
#include "shell/startup_win32.h"

#include <string>

#include "puzzle/puzzle_windows.h"
#include "setup/file_screen_window.h"
#include "setup/new_game_window.h"
#include "core/app.h"
#include "shell/language_screen.h"
#include "shell/main_window.h"
#include "core/resource_ids.h"
#include "screens/bars_window.h"
#include "screens/honour_window.h"
#include "screens/music_window.h"
#include "screens/video_window.h"
#include "screens/info_window.h"
#include "shell/title_bar.h"
#include "widgets/widget_classes.h"

namespace qv {
namespace {

INT_PTR CALLBACK MessageDialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM) {
  switch (message) {
    case WM_DESTROY:
      PostQuitMessage(0);
      return 0;
    case WM_COMMAND:
      // OK, Enter, Escape and the system menu's close all arrive as a button notification.
      if (HIWORD(wParam) == 0) DestroyWindow(dialog);
      return 1;
    default:
      return 0;
  }
}

}  // namespace

HWND ShowMessageDialog(HINSTANCE instance, UINT stringBase) {
  HWND dialog = CreateDialogParamA(instance, MAKEINTRESOURCEA(IDD_MESSAGE), nullptr,
                                   MessageDialogProc, 0);
  if (!dialog) return nullptr;
  const std::string text = LocalizedString(stringBase, 300);
  SendDlgItemMessageA(dialog, IDC_MESSAGE_TEXT, WM_SETTEXT, 0,
                      reinterpret_cast<LPARAM>(text.c_str()));
  return dialog;
}

void RegisterGameClasses(HINSTANCE instance) {
  RegisterWidgetClasses(instance);
  RegisterLanguageScreenClass(instance);
  RegisterMainWindowClass(instance);
  RegisterMusicClass(instance);
  RegisterPuzzleWindowClasses(instance);
  RegisterTitleBarClass(instance);
  RegisterNewGameClasses(instance);
  RegisterFileScreenClasses(instance);
  RegisterMessageBoxClass(instance);
  RegisterHonourClasses(instance);
  RegisterInfoClasses(instance);
  RegisterBarClasses(instance);
  RegisterVideoClass(instance);
}

int RunMessageLoop() {
  MSG message{};
  while (GetMessageA(&message, nullptr, 0, 0) > 0) {
    if (OfferChildChar(message)) continue;
    TranslateMessage(&message);
    DispatchMessageA(&message);
    MSG paint;
    while (PeekMessageA(&paint, nullptr, WM_PAINT, WM_PAINT, PM_REMOVE)) {
      if (paint.message == WM_QUIT) return static_cast<int>(paint.wParam);
      DispatchMessageA(&paint);
    }
  }
  return static_cast<int>(message.wParam);
}

}  // namespace qv
