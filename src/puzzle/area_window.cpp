// CWNDPUZZLE: the board and the six box areas, each showing one piece area of the engine.
#include <windows.h>
#include <vfw.h>

#include <cstdint>

#include "puzzle/compose.h"
#include "puzzle/play.h"
#include "puzzle/puzzle_model.h"
#include "puzzle/puzzle_windows.h"
#include "puzzle/puzzle_windows_internal.h"
#include "system/assert.h"
#include "core/app.h"
#include "widgets/widget_window.h"

namespace qv::puzzle_win {
namespace {

using widget::CreateRecord;
using widget::DestroyRecord;
using widget::RecordOf;

struct AreaCreateParams {
  int area = -1;
  HWND ownerTag = nullptr;
};

struct AreaWindowRecord {
  int area = -1;
  HDRAWDIB drawDib = nullptr;
  HPEN bandPen = nullptr;
  HGDIOBJ previousPen = nullptr;
};

HWND g_areaWindows[kAreaCount] = {};

bool ValidArea(int area) { return area >= 0 && area < kAreaCount; }

// Whether a window belongs to the program's own window tree (the main window's children and
// the pop-ups it owns, or this window's top-level window while there is no main window).
bool InProgramTree(HWND self, HWND window) {
  DWORD process = 0;
  GetWindowThreadProcessId(window, &process);
  if (process != GetCurrentProcessId()) return false;
  HWND root = MainWindow() ? MainWindow() : GetAncestor(self, GA_ROOT);
  HWND top = GetAncestor(window, GA_ROOT);
  for (HWND w = top; w; w = GetWindow(w, GW_OWNER)) {
    if (w == root) return true;
  }
  return false;
}

// A box frame or box button that stands for another area.
int BoxOwnedBy(HWND window, int startArea) {
  for (int box = 0; box < kBoxCount; ++box) {
    if (box == startArea || !Puzzle().areas[box].exists) continue;
    if (reinterpret_cast<std::uintptr_t>(window) == Puzzle().areas[box].ownerTag ||
        window == BoxWindow(box) || window == BoxButton(box)) {
      return box;
    }
  }
  return -1;
}

// The window under a screen point. Open boxes float over the table until they are closed; under
// X without a window manager, moving the drag image can lift the main window over them for a
// while (they are put back on top at the next press), so a point over an open box is the box's
// even when the system answers with the table or another part of the main window.
HWND WindowUnder(POINT screen) {
  HWND under = WindowFromPoint(screen);
  if (!under || !MainWindow() || GetAncestor(under, GA_ROOT) != MainWindow()) return under;
  for (HWND top = GetTopWindow(nullptr); top; top = GetWindow(top, GW_HWNDNEXT)) {
    if (top == under || !IsWindowVisible(top)) continue;
    for (int box = 0; box < kBoxCount; ++box) {
      if (top != BoxWindow(box)) continue;
      RECT frame;
      if (!GetWindowRect(top, &frame) || !PtInRect(&frame, screen)) break;
      POINT local = screen;
      ScreenToClient(top, &local);
      HWND child = ChildWindowFromPointEx(top, local, CWP_SKIPINVISIBLE | CWP_SKIPTRANSPARENT);
      return child ? child : top;
    }
  }
  return under;
}

PointerTarget TargetAt(HWND self, int area, int x, int y) {
  PointerTarget target;
  POINT screen{x, y};
  ClientToScreen(self, &screen);
  HWND under = WindowUnder(screen);
  if (!under) return target;
  if (under == self) {
    target.over = PointerOver::StartArea;
    target.area = area;
    return target;
  }
  const int other = AreaOfWindow(under);
  if (other >= 0) {
    POINT local = screen;
    ScreenToClient(under, &local);
    target.over = PointerOver::OtherArea;
    target.area = other;
    target.point = EnginePoint{local.x, local.y};
    return target;
  }
  const int box = BoxOwnedBy(under, area);
  if (box >= 0) {
    target.over = PointerOver::BoxOwner;
    target.area = box;
    return target;
  }
  const bool child = (GetWindowLongPtrA(under, GWL_STYLE) & WS_CHILD) != 0;
  target.over = child && InProgramTree(self, under) ? PointerOver::OtherWindow
                                                    : PointerOver::Outside;
  return target;
}

// Copies a rectangle of the area's surface to the window.
void PaintFromSurface(HDC dc, AreaWindowRecord& r, const RECT& rect) {
  const AreaSurface* surface = GetAreaSurface(r.area);
  if (!surface || !surface->bits || !r.drawDib) return;
  RECT clip = rect;
  RECT whole{0, 0, surface->width, surface->height};
  if (!IntersectRect(&clip, &clip, &whole)) return;
  const int w = clip.right - clip.left;
  const int h = clip.bottom - clip.top;
  DrawDibDraw(r.drawDib, dc, clip.left, clip.top, w, h,
              reinterpret_cast<LPBITMAPINFOHEADER>(const_cast<BitmapInfoHeader*>(&surface->header)),
              const_cast<std::uint8_t*>(surface->bits.data()), clip.left, clip.top, w, h, 0);
}

void DrawBand(HDC dc, const EnginePoint (&band)[5]) {
  POINT points[5];
  for (int i = 0; i < 5; ++i) points[i] = POINT{band[i].x, band[i].y};
  Polyline(dc, points, 5);
}

POINT ToScreen(HWND window, EnginePoint p) {
  POINT screen{p.x, p.y};
  ClientToScreen(window, &screen);
  return screen;
}

void DrawFeedback(HWND window, AreaWindowRecord& r, const DragFeedback& fb) {
  if (fb.moveImage) MoveDragImage(ToScreen(window, fb.imageAt));
  HDC dc = GetDC(window);  // the class's own context keeps the inverting mode and the pen
  if (!dc) return;
  if (fb.erase) {
    const RECT rect{fb.eraseRect.x, fb.eraseRect.y, fb.eraseRect.x + fb.eraseRect.width,
                    fb.eraseRect.y + fb.eraseRect.height};
    PaintFromSurface(dc, r, rect);
  }
  if (fb.drawFrame) {
    const DragFrameView frame = DragFrame();
    if (frame.bits && frame.bitmapInfo) {
      // The frame is bottom-up: its top rows start frameRect.height rows above the last one.
      SetDIBitsToDevice(dc, fb.frameRect.x, fb.frameRect.y,
                        static_cast<DWORD>(fb.frameRect.width),
                        static_cast<DWORD>(fb.frameRect.height), 0,
                        frame.height - fb.frameRect.height, 0, static_cast<UINT>(frame.height),
                        frame.bits, static_cast<const BITMAPINFO*>(frame.bitmapInfo),
                        DIB_RGB_COLORS);
    }
  }
  if (fb.hadOldBand) DrawBand(dc, fb.oldBand);
  if (fb.hasNewBand) DrawBand(dc, fb.newBand);
  ReleaseDC(window, dc);
}

HCURSOR CursorFor(EngineCursor cursor) {
  switch (cursor) {
    case EngineCursor::Wait:
      return LoadCursorA(nullptr, IDC_WAIT);
    case EngineCursor::DropIntoBox: {
      static HCURSOR drop = LoadCursorA(GetModuleHandleA(nullptr), MAKEINTRESOURCEA(301));
      return drop ? drop : LoadCursorA(nullptr, IDC_CROSS);
    }
    case EngineCursor::Arrow:
      break;
  }
  return LoadCursorA(nullptr, IDC_ARROW);
}

// Escape and the arrow keys reach a drag wherever the keyboard focus is (the area windows take
// no focus), through a hook of this thread's keys that lives as long as the drag.
HHOOK g_dragKeys = nullptr;

void StopDragKeys() {
  if (g_dragKeys) UnhookWindowsHookEx(g_dragKeys);
  g_dragKeys = nullptr;
}

LRESULT OnCreate(HWND window, const CREATESTRUCTA* create) {
  const auto* params = static_cast<const AreaCreateParams*>(create->lpCreateParams);
  if (!params || !ValidArea(params->area)) return -1;
  ProbeDisplayFormat();
  const bool made = params->area == AREA_TABLERO
                        ? CreateBoardArea()
                        : CreateBoxArea(params->area,
                                        reinterpret_cast<std::uintptr_t>(params->ownerTag));
  if (!made) return -1;
  auto* r = CreateRecord<AreaWindowRecord>(window);
  if (!r) {
    DestroyArea(params->area);
    return -1;
  }
  r->area = params->area;
  r->drawDib = DrawDibOpen();
  HDC dc = GetDC(window);
  SetROP2(dc, R2_NOT);
  r->bandPen = CreatePen(PS_DASHDOT, 0, RGB(0, 0, 0));
  r->previousPen = SelectObject(dc, r->bandPen);
  ReleaseDC(window, dc);
  g_areaWindows[r->area] = window;
  return 0;
}

void OnDestroy(HWND window, AreaWindowRecord& r) {
  if (GetCapture() == window) ReleaseCapture();
  if (DragArea() == r.area) {
    HideDragImage();
    StopDragKeys();
  }
  DestroyArea(r.area);
  if (g_areaWindows[r.area] == window) g_areaWindows[r.area] = nullptr;
  HDC dc = GetDC(window);
  if (r.previousPen) SelectObject(dc, r.previousPen);
  ReleaseDC(window, dc);
  if (r.bandPen) DeleteObject(r.bandPen);
  if (r.drawDib) DrawDibClose(r.drawDib);
  DestroyRecord<AreaWindowRecord>(window);
}

void OnSize(HWND window, AreaWindowRecord& r, LPARAM lParam) {
  ResizeArea(r.area, LOWORD(lParam), HIWORD(lParam));
  InvalidateRect(window, nullptr, FALSE);
}

void OnPaint(HWND window, AreaWindowRecord& r) {
  PAINTSTRUCT ps;
  HDC dc = BeginPaint(window, &ps);
  if (dc) {
    const AreaSurface* surface = GetAreaSurface(r.area);
    if (surface && surface->bits) {
      PaintFromSurface(dc, r, ps.rcPaint);
    } else {
      FillRect(dc, &ps.rcPaint, static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH)));
    }
  }
  EndPaint(window, &ps);
}

// ---- Keys during a drag ----------------------------------------------------------------------

// Escape: the drag ends as a drop outside the program would, and the set shows where it was.
void CancelDrag() {
  HWND window = AreaWindow(DragArea());
  AreaWindowRecord* r = window ? RecordOf<AreaWindowRecord>(window) : nullptr;
  if (!r) return;
  HideDragImage();
  StopDragKeys();
  DrawFeedback(window, *r, ButtonUp(r->area, EnginePoint{-1, -1}, PointerTarget{}));
  if (GetCapture() == window) ReleaseCapture();
}

// An arrow key moves the dragged piece or set by one pixel against the pointer.
void Nudge(int dx, int dy) {
  HWND window = AreaWindow(DragArea());
  AreaWindowRecord* r = window ? RecordOf<AreaWindowRecord>(window) : nullptr;
  if (r) DrawFeedback(window, *r, NudgeDrag(r->area, dx, dy));
}

LRESULT CALLBACK DragKeyProc(int code, WPARAM key, LPARAM flags) {
  if (code != HC_ACTION || DragMode() != 1) return CallNextHookEx(g_dragKeys, code, key, flags);
  const bool down = (flags & (LPARAM{1} << 31)) == 0;
  switch (key) {
    case VK_ESCAPE:
      if (down) CancelDrag();
      return 1;
    case VK_LEFT:
    case VK_RIGHT:
    case VK_UP:
    case VK_DOWN:
      if (down) {
        Nudge(key == VK_LEFT ? -1 : key == VK_RIGHT ? 1 : 0,
              key == VK_UP ? -1 : key == VK_DOWN ? 1 : 0);
      }
      return 1;
    default:
      return CallNextHookEx(g_dragKeys, code, key, flags);
  }
}

void OnButtonDown(HWND window, AreaWindowRecord& r, LPARAM lParam) {
  SetCapture(window);
  DragFeedback fb = ButtonDown(r.area, EnginePoint{widget::PointX(lParam), widget::PointY(lParam)});
  if (fb.moveImage && !ShowDragImage(ToScreen(window, fb.imageAt))) fb = ShowPieceInstead();
  if (DragMode() == 1 && !g_dragKeys) {
    g_dragKeys = SetWindowsHookExA(WH_KEYBOARD, DragKeyProc, nullptr, GetCurrentThreadId());
  }
  DrawFeedback(window, r, fb);
}

void OnMouseMove(HWND window, AreaWindowRecord& r, LPARAM lParam) {
  if (DragMode() == 0 || DragArea() != r.area) return;
  const int x = widget::PointX(lParam);
  const int y = widget::PointY(lParam);
  const DragFeedback fb = DragStep(r.area, EnginePoint{x, y}, TargetAt(window, r.area, x, y));
  DrawFeedback(window, r, fb);
  if (DragMode() == 1) SetCursor(CursorFor(fb.cursor));
}

void Drop(HWND window, AreaWindowRecord& r, int x, int y) {
  HideDragImage();
  StopDragKeys();
  SetCursor(CursorFor(EngineCursor::Wait));
  const DragFeedback fb = ButtonUp(r.area, EnginePoint{x, y}, TargetAt(window, r.area, x, y));
  DrawFeedback(window, r, fb);
  SetCursor(CursorFor(EngineCursor::Arrow));
}

void OnButtonUp(HWND window, AreaWindowRecord& r, LPARAM lParam) {
  if (DragMode() != 0 && DragArea() == r.area) {
    Drop(window, r, widget::PointX(lParam), widget::PointY(lParam));
  }
  if (GetCapture() == window) ReleaseCapture();
}

void OnCaptureChanged(HWND window, AreaWindowRecord& r, LPARAM lParam) {
  if (reinterpret_cast<HWND>(lParam) == window) return;
  if (DragMode() != 0 && DragArea() == r.area) Drop(window, r, -1, -1);
}

LRESULT OnPaletteChanged(HWND window, AreaWindowRecord& r) {
  HDC dc = GetDC(window);
  if (r.drawDib) DrawDibRealize(r.drawDib, dc, FALSE);
  ReleaseDC(window, dc);
  InvalidateRect(window, nullptr, FALSE);
  return 1;
}

}  // namespace

LRESULT CALLBACK AreaWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_CREATE) return OnCreate(window, reinterpret_cast<CREATESTRUCTA*>(lParam));
  AreaWindowRecord* r = RecordOf<AreaWindowRecord>(window);
  if (!r) return DefWindowProcA(window, message, wParam, lParam);
  switch (message) {
    case WM_DESTROY:
      OnDestroy(window, *r);
      return 0;
    case WM_SIZE:
      OnSize(window, *r, lParam);
      return 0;
    case WM_PAINT:
      OnPaint(window, *r);
      return 0;
    case WM_ERASEBKGND:
      return 1;
    case WM_LBUTTONDOWN:
      OnButtonDown(window, *r, lParam);
      return 0;
    case WM_MOUSEMOVE:
      OnMouseMove(window, *r, lParam);
      return 0;
    case WM_LBUTTONUP:
      OnButtonUp(window, *r, lParam);
      return 0;
    case WM_CAPTURECHANGED:
      OnCaptureChanged(window, *r, lParam);
      return 0;
    case WM_MOUSEACTIVATE:
      // Pieces take no keys: a press leaves the active window (an open box, say) as it is,
      // so that nothing is restacked over the box the piece is about to be dropped in.
      return MA_NOACTIVATE;
    case WM_QUERYNEWPALETTE:
      return OnPaletteChanged(window, *r);
    case WM_PALETTECHANGED:
      if (reinterpret_cast<HWND>(wParam) == window) return 0;
      OnPaletteChanged(window, *r);
      return 0;
    default:
      return DefWindowProcA(window, message, wParam, lParam);
  }
}

HWND CreateAreaWindow(int area, HWND parent, const RECT& place, HWND ownerTag) {
  if (!QV_CHECK(ValidArea(area), "Valor de Id invalido, supera el numero de boxs especificado") ||
      !parent) {
    return nullptr;
  }
  AreaCreateParams params;
  params.area = area;
  params.ownerTag = ownerTag;
  return CreateWindowExA(0, kAreaClass, "",
                         WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS | WS_CLIPCHILDREN, place.left,
                         place.top, place.right - place.left, place.bottom - place.top, parent,
                         reinterpret_cast<HMENU>(static_cast<INT_PTR>(100 + area)),
                         GetModuleHandleA(nullptr), &params);
}

HWND AreaWindow(int area) { return ValidArea(area) ? g_areaWindows[area] : nullptr; }

int AreaOfWindow(HWND window) {
  if (!window) return -1;
  for (int area = 0; area < kAreaCount; ++area) {
    if (g_areaWindows[area] == window) return area;
  }
  return -1;
}

}  // namespace qv::puzzle_win

namespace qv {

HWND CreateBoardWindow(HWND parent) {
  // The engine has one table, so the old window goes before the new one cuts on its first size.
  // The parent draws nothing meanwhile: the old table stays on screen until the new one is cut
  // and composed, instead of the parent's black showing through for the length of the cut.
  if (parent) SendMessageA(parent, WM_SETREDRAW, FALSE, 0);
  if (HWND old = puzzle_win::AreaWindow(AREA_TABLERO)) DestroyWindow(old);
  const EstadoPuzzle& p = Puzzle();
  const RECT place{kBoardLeft, kBoardTop, kBoardLeft + p.boardWidth, kBoardTop + p.boardHeight};
  HWND board = puzzle_win::CreateAreaWindow(AREA_TABLERO, parent, place, nullptr);
  // The table lies under everything else on the main window: the buttons at the right edge
  // stand over its border whenever the board is made.
  if (board) {
    SetWindowPos(board, HWND_BOTTOM, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
  }
  if (parent) {
    SendMessageA(parent, WM_SETREDRAW, TRUE, 0);
    RedrawWindow(parent, nullptr, nullptr, RDW_INVALIDATE | RDW_ALLCHILDREN | RDW_UPDATENOW);
  }
  return board;
}

HWND BoardWindow() { return puzzle_win::AreaWindow(AREA_TABLERO); }

}  // namespace qv
