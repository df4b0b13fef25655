// The puzzle windows' side of the engine hooks, class registration and the display probe.
#include <windows.h>
#include <mmsystem.h>

#include <cstdint>

#include "puzzle/play.h"
#include "puzzle/puzzle_model.h"
#include "puzzle/puzzle_windows.h"
#include "puzzle/puzzle_windows_internal.h"
#include "core/app.h"
#include "core/resource_ids.h"
#include "widgets/widget_messages.h"
#include "widgets/widget_sounds.h"

namespace qv::puzzle_win {
namespace {

UINT_PTR g_clockTimer = 0;

void CALLBACK ClockTick(HWND, UINT, UINT_PTR, DWORD) { RelojPuzzle(); }

void OnAreaNotify(void*, int area, int code) {
  HWND window = AreaWindow(area);
  if (!window) return;
  if (HWND parent = GetParent(window)) {
    SendMessageA(parent, MWM_NOTIFY, static_cast<WPARAM>(code), reinterpret_cast<LPARAM>(window));
  }
}

void OnInvalidate(void*, int area, int x, int y, int width, int height) {
  HWND window = AreaWindow(area);
  if (!window || width <= 0 || height <= 0) return;
  const RECT rect{x, y, x + width, y + height};
  InvalidateRect(window, &rect, FALSE);
}

void OnStartClock(void*) {
  if (g_clockTimer) KillTimer(nullptr, g_clockTimer);
  g_clockTimer = SetTimer(nullptr, 0, 1000, ClockTick);
}

void OnStopClock(void*) {
  if (g_clockTimer) KillTimer(nullptr, g_clockTimer);
  g_clockTimer = 0;
}

// The join sound stays locked in the module for the whole run.
const void* JoinSound() {
  static const void* sound = LockWaveResource(GetModuleHandleA(nullptr), IDW_JOIN);
  return sound;
}

void OnJoinSound(void*) {
  if (const void* sound = JoinSound()) {
    PlaySoundA(static_cast<LPCSTR>(sound), nullptr,
               SND_MEMORY | SND_ASYNC | SND_NODEFAULT | SND_NOSTOP);
  }
}

void OnPreviewChanged(void*) { ActualizarPreview(); }

void OnHideBox(void*, int box) {
  HideInPlace(BoxWindow(box));
}

void OnSetCursor(void*, EngineCursor cursor) {
  LPCSTR name = IDC_ARROW;
  if (cursor == EngineCursor::Wait) name = IDC_WAIT;
  if (cursor == EngineCursor::DropIntoBox) {
    if (HCURSOR drop = LoadCursorA(GetModuleHandleA(nullptr), MAKEINTRESOURCEA(IDCUR_DROP_INTO_BOX))) {
      SetCursor(drop);
      return;
    }
    name = IDC_CROSS;
  }
  SetCursor(LoadCursorA(nullptr, name));
}

}  // namespace

void ProbeDisplayFormat() {
  static bool probed = false;
  if (probed) return;
  probed = true;
  HDC screen = GetDC(nullptr);
  if (!screen) return;
  HBITMAP bitmap = CreateCompatibleBitmap(screen, 1, 1);
  struct {
    BITMAPINFOHEADER header;
    DWORD masks[256];
  } info{};
  info.header.biSize = sizeof(BITMAPINFOHEADER);
  // The first call fills in the depth and compression, the second the channel masks.
  const bool ok = bitmap &&
                  GetDIBits(screen, bitmap, 0, 1, nullptr, reinterpret_cast<BITMAPINFO*>(&info),
                            DIB_RGB_COLORS) != 0 &&
                  GetDIBits(screen, bitmap, 0, 1, nullptr, reinterpret_cast<BITMAPINFO*>(&info),
                            DIB_RGB_COLORS) != 0;
  if (bitmap) DeleteObject(bitmap);
  ReleaseDC(nullptr, screen);
  if (!ok) return;
  DisplayFormat format;
  format.bitCount = info.header.biBitCount;
  if (info.header.biCompression == BI_BITFIELDS) {
    format.redMask = info.masks[0];
    format.greenMask = info.masks[1];
    format.blueMask = info.masks[2];
  } else if (format.bitCount == 16) {
    format.redMask = 0x7c00;
    format.greenMask = 0x03e0;
    format.blueMask = 0x001f;
  } else if (format.bitCount == 32) {
    format.redMask = 0xff0000;
    format.greenMask = 0x00ff00;
    format.blueMask = 0x0000ff;
  }
  // A palette display keeps the engine's 24-bit default, which every device can take.
  SetDisplayFormat(format);
}

}  // namespace qv::puzzle_win

namespace qv {

bool RegisterPuzzleWindowClasses(HINSTANCE instance) {
  using namespace puzzle_win;
  HBRUSH black = static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH));
  bool ok = RegisterScreenClass(instance, kAreaClass, AreaWindowProc, CS_OWNDC);
  ok = RegisterScreenClass(instance, kPreviewClass, PreviewWindowProc) && ok;
  ok = RegisterScreenClass(instance, kBoxClass, BoxWindowProc) && ok;
  ok = RegisterScreenClass(instance, kViewerClass, ViewerWindowProc, CS_DBLCLKS, black) && ok;
  ok = RegisterScreenClass(instance, kMosaicClass, MosaicWindowProc) && ok;
  // The drag image's window, for live drags (the whole moving set following the pointer). They
  // stay off for now: under Wine, moving the image's window lifts the main window over the box
  // frames it owns, so a set could not be dropped into an open box there.
  return RegisterScreenClass(instance, kDragImageClass, DragImageWindowProc) && ok;
}

EngineHooks PuzzleWindowHooks() {
  using namespace puzzle_win;
  EngineHooks hooks;
  hooks.areaNotify = OnAreaNotify;
  hooks.invalidate = OnInvalidate;
  hooks.startClock = OnStartClock;
  hooks.stopClock = OnStopClock;
  hooks.joinSound = OnJoinSound;
  hooks.previewChanged = OnPreviewChanged;
  hooks.hideBox = OnHideBox;
  hooks.setCursor = OnSetCursor;
  return hooks;
}

}  // namespace qv
