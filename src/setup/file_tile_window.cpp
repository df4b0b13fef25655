// CWNDPREVFILE: one tile of the file screen, a saved game's stored preview and its name.
#include <windows.h>
#include <vfw.h>

#include <algorithm>
#include <string>

#include "core/look.h"
#include "core/window_helpers.h"
#include "graphics/himage_draw.h"
#include "graphics/packed_dib.h"
#include "setup/file_screen_logic.h"
#include "setup/file_screen_parts.h"
#include "setup/new_game_parts.h"
#include "setup/savegame.h"
#include "widgets/widget_messages.h"
#include "widgets/widget_window.h"

namespace qv {
namespace {

using widget::RecordOf;

constexpr int kCaptionHeight = 24;
constexpr int kFrameInset = 2;

struct TileRecord {
  bool hasFile = false;
  bool pressed = false;
  bool selected = false;
  PackedDib preview;  // empty when the file held none that could be read
  std::string caption;
  HFONT font = nullptr;
  HIMAGE backdrop = nullptr;
};

// One DrawDib context serves every tile: opened with the first, closed with the last.
HDRAWDIB g_drawDib = nullptr;
int g_tiles = 0;

// The preview's place: scaled to fit above the caption, centred.
RECT PreviewRect(const PackedDib& preview, int width, int height) {
  const int boxWidth = width - 2 * (kFrameInset + 1);
  const int boxHeight = height - kCaptionHeight - 2 * (kFrameInset + 1);
  int w = preview.width();
  int h = preview.height();
  if (w < 1 || h < 1 || boxWidth < 1 || boxHeight < 1) return RECT{0, 0, 0, 0};
  if (static_cast<long long>(w) * boxHeight > static_cast<long long>(h) * boxWidth) {
    h = std::max(1, static_cast<int>(static_cast<long long>(h) * boxWidth / w));
    w = boxWidth;
  } else {
    w = std::max(1, static_cast<int>(static_cast<long long>(w) * boxHeight / h));
    h = boxHeight;
  }
  const int x = (width - w) / 2;
  const int y = kFrameInset + 1 + (boxHeight - h) / 2;
  return RECT{x, y, x + w, y + h};
}

void DrawFrame(HDC dc, RECT around, COLORREF colour, int thickness) {
  HPEN pen = CreatePen(PS_SOLID, 1, colour);
  widget::SelectInScope select(dc, pen);
  for (int i = 0; i < thickness; ++i) {
    const POINT corners[5] = {{around.left, around.top},
                              {around.right, around.top},
                              {around.right, around.bottom},
                              {around.left, around.bottom},
                              {around.left, around.top}};
    Polyline(dc, corners, 5);
    InflateRect(&around, 1, 1);
  }
  SelectObject(dc, GetStockObject(BLACK_PEN));
  DeleteObject(pen);
}

void Compose(HWND window, const TileRecord& t, HDC dc, int width, int height) {
  DrawBackdropUnder(dc, window, t.backdrop, width, height);
  if (!t.hasFile) return;
  RECT place = PreviewRect(t.preview, width, height);
  if (t.preview && g_drawDib && place.right > place.left) {
    DrawDibDraw(g_drawDib, dc, place.left, place.top, place.right - place.left,
                place.bottom - place.top, reinterpret_cast<BITMAPINFOHEADER*>(t.preview.get()),
                DibPixels(t.preview.get()), 0, 0, t.preview.width(), t.preview.height(), 0);
  } else {
    // No preview: an empty slot of the preview box's shape.
    place = RECT{width / 2 - 26, kFrameInset + 1, width / 2 + 26,
                 height - kCaptionHeight - kFrameInset - 1};
  }
  InflateRect(&place, 1, 1);
  if (t.selected) {
    DrawFrame(dc, place, RGB(250, 200, 70), 2);
  } else {
    DrawFrame(dc, place, t.pressed ? RGB(200, 150, 70) : RGB(90, 60, 30), 1);
  }
  SetBkMode(dc, TRANSPARENT);
  SetTextColor(dc, t.selected ? RGB(250, 200, 70) : kInterfaceTextColour);
  HGDIOBJ previous = t.font ? SelectObject(dc, t.font) : nullptr;
  RECT text{0, height - kCaptionHeight, width, height};
  DrawTextA(dc, t.caption.c_str(), static_cast<int>(t.caption.size()), &text,
            DT_CENTER | DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX | DT_END_ELLIPSIS);
  if (previous) SelectObject(dc, previous);
}

void OnPaint(HWND window, HDC printDc) {
  TileRecord* t = RecordOf<TileRecord>(window);
  widget::PaintWindow(window, printDc, [&](HDC dc, const RECT&) {
    RECT client;
    GetClientRect(window, &client);
    widget::MemorySurface surface(dc, client.right, client.bottom);
    if (!t || !surface.ok()) return;
    Compose(window, *t, surface.dc(), client.right, client.bottom);
    BitBlt(dc, 0, 0, client.right, client.bottom, surface.dc(), 0, 0, SRCCOPY);
  });
}

LRESULT OnCreate(HWND window) {
  // Counted before the record: a failed creation still gets its WM_DESTROY.
  if (g_tiles++ == 0) g_drawDib = DrawDibOpen();
  return widget::CreateRecord<TileRecord>(window) ? 0 : -1;
}

void OnDestroy(HWND window) {
  widget::DestroyRecord<TileRecord>(window);
  if (--g_tiles == 0 && g_drawDib) {
    DrawDibClose(g_drawDib);
    g_drawDib = nullptr;
  }
}

LRESULT OnSetFile(HWND window, TileRecord& t, const char* caption, const char* path) {
  t.preview.Reset();
  t.hasFile = path != nullptr;
  t.caption = path && caption ? caption : "";
  t.pressed = false;
  if (path) ReadPreview(path, t.preview);
  InvalidateRect(window, nullptr, FALSE);
  return t.preview ? 1 : 0;
}

void OnLButtonDown(HWND window, TileRecord& t) {
  if (!t.hasFile) return;
  t.pressed = true;
  SetCapture(window);
  InvalidateRect(window, nullptr, FALSE);
}

void OnLButtonUp(HWND window, TileRecord& t) {
  if (!t.pressed) return;
  t.pressed = false;
  ReleaseCapture();
  InvalidateRect(window, nullptr, FALSE);
  if (!widget::PointerOverWindow(window)) return;
  // The parent refills the tiles while it handles the click: nothing touches t after it.
  widget::NotifyParent(window, MWN_CLICKED);
}

void OnCaptureChanged(HWND window, TileRecord& t, LPARAM gainer) {
  if (!t.pressed || !widget::CaptureTakenByOther(window, gainer)) return;
  t.pressed = false;
  InvalidateRect(window, nullptr, FALSE);
}

void SetSelected(HWND window, TileRecord& t, bool selected) {
  if (t.selected == selected) return;
  t.selected = selected;
  InvalidateRect(window, nullptr, FALSE);
}

LRESULT TileMessage(HWND window, TileRecord& t, UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case FSM_SETFILE:
      return OnSetFile(window, t, reinterpret_cast<const char*>(wParam),
                       reinterpret_cast<const char*>(lParam));
    case FSM_SETSELECTED:
      SetSelected(window, t, lParam != 0);
      return 1;
    case FSM_SETFONT:
      t.font = reinterpret_cast<HFONT>(lParam);
      return 1;
    case FSM_SETBACKDROP:
      t.backdrop = reinterpret_cast<HIMAGE>(lParam);
      InvalidateRect(window, nullptr, FALSE);
      return 1;
    case FSM_GETSTATE:
      return t.hasFile ? (t.preview ? 2 : 1) : 0;
    case FSM_GETSELECTED:
      return t.selected ? 1 : 0;
    case WM_LBUTTONDOWN:
      OnLButtonDown(window, t);
      return 0;
    case WM_LBUTTONUP:
      OnLButtonUp(window, t);
      return 0;
    case WM_CAPTURECHANGED:
      OnCaptureChanged(window, t, lParam);
      return 0;
    default:
      return DefWindowProcA(window, message, wParam, lParam);
  }
}

LRESULT CALLBACK FileTileProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_CREATE:
      return OnCreate(window);
    case WM_DESTROY:
      OnDestroy(window);
      return 0;
    case WM_ERASEBKGND:
      return 1;
    case WM_PAINT:
      OnPaint(window, nullptr);
      return 0;
    case WM_PRINTCLIENT:
      OnPaint(window, reinterpret_cast<HDC>(wParam));
      return 0;
    default:
      break;
  }
  TileRecord* t = RecordOf<TileRecord>(window);
  if (!t) return DefWindowProcA(window, message, wParam, lParam);
  return TileMessage(window, *t, message, wParam, lParam);
}

}  // namespace

bool RegisterFileTileClass(HINSTANCE instance) {
  return RegisterScreenClass(instance, kFileTileClass, FileTileProc, 0, nullptr, IDC_HAND);
}

}  // namespace qv
