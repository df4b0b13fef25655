// CWNDBACK: the title bar, the board, the six box buttons, the information button and the bars.
#include "shell/main_window.h"

#include <mmsystem.h>

#include <memory>
#include <string>

#include "graphics/control_dc.h"
#include "media/music_player.h"
#include "puzzle/play.h"
#include "puzzle/puzzle_windows.h"
#include "core/app.h"
#include "screens/bars_window.h"
#include "screens/info_window.h"
#include "shell/game_hooks.h"
#include "shell/shell_layout.h"
#include "shell/title_bar.h"
#include "widgets/widget_classes.h"
#include "widgets/widget_window.h"

namespace qv {
namespace {

using widget::CreateRecord;
using widget::DestroyRecord;
using widget::RecordOf;

struct MainRecord {
  ControlDC boxImages[kBoxCount];
  ControlDC infoImage;
  HWND infoButton = nullptr;
};

HWND CreateButton(HWND parent, const char* className, ShellPoint at, int id, HIMAGE picture) {
  return CreatePictureChild(parent, className, at.x, at.y, picture, id);
}

void CreateBoxButtons(HWND window, MainRecord& r) {
  for (int i = 0; i < kBoxCount; ++i) {
    r.boxImages[i].LoadById(200 + static_cast<std::uint32_t>(i));
    const ShellPoint at = BoxButtonPosition(i, ScreenWidth(), ScreenHeight());
    SetBoxButton(i, CreateButton(window, kBoxCommandClass, at, kFirstBoxButtonId + i,
                                 r.boxImages[i].Dib()));
  }
}

void CreateInfoButton(HWND window, MainRecord& r) {
  r.infoImage.LoadById(244);
  const ShellPoint at = InfoButtonPosition(ScreenWidth(), r.infoImage.Width());
  r.infoButton = CreateButton(window, kCommandClass, at, kInfoButtonId, r.infoImage.Dib());
}

// The board fills the table under the title bar; its pieces, boxes and preview live as long as
// the main window.
void CreateTable(HWND window) {
  const BoardSize board = BoardSizeFor(ScreenWidth(), ScreenHeight());
  SetBoardSize(board.width, board.height);
  InstallGameHooks();
  SetTableTextureIndex(0);
  CreateTitleBar(window);
  CreatePreviewWindow(window);
  CreateBoardWindow(window);
}

LRESULT OnCreate(HWND window) {
  MainRecord* r = CreateRecord<MainRecord>(window);
  if (!r) return -1;
  SetMainWindow(window);
  SetMusicOwner(window);
  CreateTable(window);
  CreateBoxButtons(window, *r);
  CreateBoxWindows(window);
  CreateInfoButton(window, *r);
  CreateBars(window);
  SetWindowTextA(PreviewWindow(), LocalizedString(120, 60).c_str());
  return 0;
}

void OnDestroy(HWND window) {
  for (int i = 0; i < kBoxCount; ++i) SetBoxButton(i, nullptr);
  DestroyRecord<MainRecord>(window);
  CloseMusic();
  SetMusicOwner(nullptr);
  SetMainWindow(nullptr);
  PostQuitMessage(0);
}

// The window is never maximized (see CreateMainWindow): coming back from the task bar restores
// it, and that counts as the maximize would.
void OnSize(WPARAM kind) {
  if (kind == SIZE_MINIMIZED) Puzzle().RelojPausado = 1;
  if (kind == SIZE_MAXIMIZED || kind == SIZE_RESTORED) Puzzle().RelojPausado = 0;
}

void OnPaint(HWND window) {
  PAINTSTRUCT paint;
  BeginPaint(window, &paint);
  EndPaint(window, &paint);
}

void ToggleBox(int box) {
  HWND frame = BoxWindow(box);
  if (!frame) return;
  if (IsWindowVisible(frame)) {
    HideInPlace(frame);
  } else {
    ShowInPlace(frame);
  }
}

// Open boxes float over the table until they are closed. They are owned by this window, which
// keeps them above it on Windows; under X without a window manager a click on the table raised
// the table's window over them, so every press on a child puts the open boxes back on top.
void KeepOpenBoxesOnTop() {
  for (int box = 0; box < kBoxCount; ++box) {
    HWND frame = BoxWindow(box);
    if (frame && IsWindowVisible(frame)) {
      SetWindowPos(frame, HWND_TOP, 0, 0, 0, 0,
                   SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE | SWP_NOOWNERZORDER);
    }
  }
}

void OnParentNotify(WPARAM wParam) {
  if (LOWORD(wParam) == WM_LBUTTONDOWN) KeepOpenBoxesOnTop();
}

void OnNotify(HWND window, WPARAM code, LPARAM lParam) {
  if (static_cast<int>(code) != MWN_CLICKED) return;
  HWND sender = reinterpret_cast<HWND>(lParam);
  MainRecord* r = RecordOf<MainRecord>(window);
  if (r && sender == r->infoButton) {
    OpenInfoScreen();
    return;
  }
  const int id = GetDlgCtrlID(sender);
  if (id >= kFirstBoxButtonId && id < kFirstBoxButtonId + kBoxCount) {
    ToggleBox(id - kFirstBoxButtonId);
  }
}

LRESULT CALLBACK MainWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_CREATE:
      return OnCreate(window);
    case WM_DESTROY:
      OnDestroy(window);
      return 0;
    case WM_SIZE:
      OnSize(wParam);
      return 0;
    case WM_PAINT:
      OnPaint(window);
      return 0;
    case WM_QUERYNEWPALETTE:
      RedrawForPalette(window);
      return 0;
    case WM_PALETTECHANGED:
      RedrawForPalette(window, reinterpret_cast<HWND>(wParam));
      return 0;
    case MWM_NOTIFY:
      OnNotify(window, wParam, lParam);
      return 0;
    case WM_PARENTNOTIFY:
      OnParentNotify(wParam);
      return 0;
    case MM_MCINOTIFY:
      OnMusicNotify(wParam, lParam);
      return 0;
    default:
      return DefWindowProcA(window, message, wParam, lParam);
  }
}

}  // namespace

bool RegisterMainWindowClass(HINSTANCE instance) {
  return RegisterScreenClass(instance, kMainWindowClass, MainWindowProc, CS_OWNDC,
                             static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH)));
}

// The window is given the whole screen itself, its frame just outside it, instead of being
// created maximized: a maximized window's size is the window manager's to give, and with none
// (or under one that ignores the request) it kept its nominal size. A pop-up that covers the
// screen is shown full screen by window managers and by Windows alike.
HWND CreateMainWindow(HINSTANCE instance) {
  constexpr DWORD kStyle = WS_POPUP | WS_VISIBLE | WS_CLIPCHILDREN | WS_DLGFRAME;
  RECT outer{0, 0, ScreenWidth(), ScreenHeight()};
  AdjustWindowRect(&outer, kStyle, FALSE);
  return CreateWindowExA(0, kMainWindowClass, "Quorvex", kStyle, outer.left, outer.top,
                         outer.right - outer.left, outer.bottom - outer.top, nullptr, nullptr,
                         instance, nullptr);
}

}  // namespace qv
