// CWNDVORBETITULO: new game, language, table texture, about, clock, minimise and close.
#include "shell/title_bar.h"

#include <shellapi.h>

#include <memory>
#include <string>

#include "graphics/control_dc.h"
#include "graphics/himage_draw.h"
#include "graphics/himage_ops.h"
#include "puzzle/puzzle_model.h"
#include "puzzle/puzzle_windows.h"
#include "setup/file_screen_window.h"
#include "setup/new_game_window.h"
#include "core/app.h"
#include "shell/language_screen.h"
#include "shell/shell_layout.h"
#include "widgets/widget_classes.h"
#include "widgets/widget_window.h"

namespace qv {
namespace {

using widget::CreateRecord;
using widget::DestroyRecord;
using widget::RecordOf;

enum TitleButton { kMinimise, kClose, kAbout, kNewGame, kLanguage, kTexture, kTitleButtonCount };

constexpr std::uint32_t kButtonImages[kTitleButtonCount] = {119, 112, 129, 2060, 231, 232};
constexpr std::uint32_t kTileImage = 122;
constexpr std::uint32_t kNewGameImageBase = 2060;

struct TitleRecord {
  ControlDC tile;
  ControlDC images[kTitleButtonCount];
  HWND buttons[kTitleButtonCount] = {};
  // The word picture the new-game button shows now; a new language loads the next one before
  // the button lets go of this one.
  std::unique_ptr<ControlDC> newGameWords;
  HFONT font = nullptr;
  TitleLayout layout;
};

HWND g_titleBar = nullptr;
std::string g_clockText = ClockText(0, 0, 0);

HWND CreateTitleButton(HWND bar, ShellPoint at, HIMAGE picture) {
  return CreatePictureChild(bar, kCommandClass, at.x, at.y, picture);
}

LRESULT OnCreate(HWND bar) {
  TitleRecord* r = CreateRecord<TitleRecord>(bar);
  if (!r) return -1;
  g_titleBar = bar;
  r->tile.LoadById(kTileImage);
  for (int b = 0; b < kTitleButtonCount; ++b) {
    const std::uint32_t base = kButtonImages[b];
    r->images[b].LoadById(b == kNewGame ? base + static_cast<std::uint32_t>(CurrentLanguage())
                                        : base);
  }
  const int newGameRight = -2 + r->images[kNewGame].Width();
  r->layout = TitleLayoutFor(ScreenWidth(), newGameRight);
  const ShellPoint places[kTitleButtonCount] = {r->layout.minimise, r->layout.close,
                                                r->layout.about,    r->layout.newGame,
                                                r->layout.language, r->layout.texture};
  for (int b = 0; b < kTitleButtonCount; ++b) {
    r->buttons[b] = CreateTitleButton(bar, places[b], r->images[b].Dib());
  }
  r->font = CreateFontA(35, 0, 0, 0, 600, FALSE, FALSE, FALSE, DEFAULT_CHARSET,
                        OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY,
                        DEFAULT_PITCH, kProgramFace);
  return 0;
}

void OnDestroy(HWND bar) {
  if (TitleRecord* r = RecordOf<TitleRecord>(bar)) {
    if (r->font) DeleteObject(r->font);
  }
  DestroyRecord<TitleRecord>(bar);
  if (g_titleBar == bar) g_titleBar = nullptr;
}

void PaintBar(HDC dc, const TitleRecord& r, int width) {
  const int tileWidth = r.tile.Width() > 1 ? r.tile.Width() : kTitleTileWidth;
  for (int x = 0; x < width; x += tileWidth) {
    ImageDrawToContext(dc, x, 0, tileWidth, kTitleBarHeight, r.tile.Dib(), 0, 0, kRopSrcCopy);
  }
  SetBkMode(dc, TRANSPARENT);
  SetTextColor(dc, kInterfaceTextColour);
  HGDIOBJ previous = SelectObject(dc, r.font);
  TextOutA(dc, r.layout.clock.x, r.layout.clock.y, g_clockText.c_str(),
           static_cast<int>(g_clockText.size()));
  SelectObject(dc, previous);
}

void OnPaint(HWND bar) {
  PAINTSTRUCT paint;
  HDC dc = BeginPaint(bar, &paint);
  TitleRecord* r = RecordOf<TitleRecord>(bar);
  RECT client;
  GetClientRect(bar, &client);
  widget::MemorySurface surface(dc, client.right, client.bottom);
  if (r && surface.ok()) {
    PaintBar(surface.dc(), *r, client.right);
    const RECT& area = paint.rcPaint;
    BitBlt(dc, area.left, area.top, area.right - area.left, area.bottom - area.top,
           surface.dc(), area.left, area.top, SRCCOPY);
  }
  EndPaint(bar, &paint);
}

void StartNewGame() {
  if (!ConfirmLeavingChangedGame(MainWindow())) return;
  CerrarPuzzle(true);
  OpenNewGameScreen(MainWindow());
}

void OnClicked(HWND bar, HWND sender) {
  TitleRecord* r = RecordOf<TitleRecord>(bar);
  if (!r) return;
  if (sender == r->buttons[kMinimise]) {
    CloseWindow(MainWindow());
  } else if (sender == r->buttons[kClose]) {
    if (ConfirmLeavingChangedGame(MainWindow())) SendMessageA(MainWindow(), WM_CLOSE, 0, 0);
  } else if (sender == r->buttons[kAbout]) {
    LaunchAbout();
  } else if (sender == r->buttons[kNewGame]) {
    StartNewGame();
  } else if (sender == r->buttons[kLanguage]) {
    OpenLanguageScreen();
  } else if (sender == r->buttons[kTexture]) {
    HideAllBoxesBut(nullptr);
    OpenMosaicScreen(MainWindow());
  }
}

LRESULT CALLBACK TitleBarProc(HWND bar, UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_CREATE:
      return OnCreate(bar);
    case WM_DESTROY:
      OnDestroy(bar);
      return 0;
    case WM_PAINT:
      OnPaint(bar);
      return 0;
    case WM_ERASEBKGND:
      return 1;
    case WM_QUERYNEWPALETTE:
      RedrawForPalette(bar);
      return 0;
    case MWM_NOTIFY:
      if (static_cast<int>(wParam) == MWN_CLICKED) OnClicked(bar, reinterpret_cast<HWND>(lParam));
      return 0;
    default:
      return DefWindowProcA(bar, message, wParam, lParam);
  }
}

}  // namespace

bool RegisterTitleBarClass(HINSTANCE instance) {
  return RegisterScreenClass(instance, kTitleBarClass, TitleBarProc);
}

HWND CreateTitleBar(HWND mainWindow) {
  return CreateWindowExA(0, kTitleBarClass, "",
                         WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS | WS_CLIPCHILDREN, 0, 0,
                         ScreenWidth(), kTitleBarHeight, mainWindow, nullptr,
                         GetModuleHandleA(nullptr), nullptr);
}

void ShowGameTime(std::uint32_t, int hours, int minutes, int seconds) {
  g_clockText = ClockText(hours, minutes, seconds);
  TitleRecord* r = g_titleBar ? RecordOf<TitleRecord>(g_titleBar) : nullptr;
  if (!r) return;
  RECT clock{r->layout.clock.x, 0, r->layout.clock.x + kClockWidth, kTitleBarHeight};
  InvalidateRect(g_titleBar, &clock, FALSE);
}

const char* GameTimeText() { return g_clockText.c_str(); }

void ReloadTitleWordButtons() {
  TitleRecord* r = g_titleBar ? RecordOf<TitleRecord>(g_titleBar) : nullptr;
  if (!r) return;
  auto words = std::make_unique<ControlDC>();
  if (!words->LoadById(kNewGameImageBase + static_cast<std::uint32_t>(CurrentLanguage()))) return;
  SendMessageA(r->buttons[kNewGame], MWM_SETIMAGE, 0, reinterpret_cast<LPARAM>(words->Dib()));
  r->newGameWords = std::move(words);
}

void LaunchAbout() {
  const std::string program = ProgramFolder() + "about.exe";
  WIN32_FIND_DATAA found;
  HANDLE search = FindFirstFileA(program.c_str(), &found);
  if (search == INVALID_HANDLE_VALUE) return;
  FindClose(search);
  SHELLEXECUTEINFOA info{};
  info.cbSize = sizeof info;
  info.hwnd = MainWindow();
  info.lpVerb = "open";
  info.lpFile = program.c_str();
  // The about program shows its texts in the language given as its only argument.
  const std::string language = std::to_string(CurrentLanguage());
  info.lpParameters = language.c_str();
  info.lpDirectory = ProgramFolder().c_str();
  info.nShow = SW_SHOWNORMAL;
  ShellExecuteExA(&info);
}

}  // namespace qv
