// CWNDDRAGIMAGE: the layered pop-up that carries the engine's drag image under the pointer.
#include <windows.h>

#include <cstring>

#include "core/app.h"
#include "puzzle/play.h"
#include "puzzle/puzzle_model.h"
#include "puzzle/puzzle_windows_internal.h"

namespace qv::puzzle_win {
namespace {

HWND g_window = nullptr;

// Selects a bitmap into a memory context for as long as it lives.
class SelectedBitmap {
 public:
  SelectedBitmap(HDC dc, HBITMAP bitmap) : dc_(dc), previous_(SelectObject(dc, bitmap)) {}
  ~SelectedBitmap() { SelectObject(dc_, previous_); }
  SelectedBitmap(const SelectedBitmap&) = delete;
  SelectedBitmap& operator=(const SelectedBitmap&) = delete;

 private:
  HDC dc_;
  HGDIOBJ previous_;
};

bool Create() {
  if (g_window) return true;
  // Layered and transparent: the pointer, WindowFromPoint and the drop see through it to the
  // windows beneath. Topmost and owned by no window: showing an owned pop-up on top lifts its
  // owner, the main window, over the box frames that it owns too (under Wine at least).
  g_window = CreateWindowExA(WS_EX_LAYERED | WS_EX_TRANSPARENT | WS_EX_TOOLWINDOW |
                                 WS_EX_NOACTIVATE | WS_EX_TOPMOST,
                             kDragImageClass, "", WS_POPUP, 0, 0, 1, 1, nullptr, nullptr,
                             GetModuleHandleA(nullptr), nullptr);
  return g_window != nullptr;
}

// Hands the engine's image to the layered window at the given screen point.
bool Upload(const DragImageView& view, POINT at) {
  BITMAPINFO info{};
  std::memcpy(&info.bmiHeader, view.bitmapInfo, sizeof(BITMAPINFOHEADER));
  HDC screen = GetDC(nullptr);
  if (!screen) return false;
  void* bits = nullptr;
  HBITMAP dib = CreateDIBSection(screen, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
  bool shown = false;
  if (dib && bits) {
    std::memcpy(bits, view.pixels,
                static_cast<std::size_t>(view.width) * static_cast<std::size_t>(view.height) * 4);
    HDC memory = CreateCompatibleDC(screen);
    if (memory) {
      {
        SelectedBitmap selected(memory, dib);
        SIZE size{view.width, view.height};
        POINT origin{0, 0};
        BLENDFUNCTION blend{AC_SRC_OVER, 0, 255, AC_SRC_ALPHA};
        shown = UpdateLayeredWindow(g_window, screen, &at, &size, memory, &origin, 0, &blend,
                                    ULW_ALPHA) != FALSE;
      }
      DeleteDC(memory);
    }
  }
  if (dib) DeleteObject(dib);
  ReleaseDC(nullptr, screen);
  return shown;
}

}  // namespace

LRESULT CALLBACK DragImageWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_NCHITTEST:
      return HTTRANSPARENT;
    case WM_MOUSEACTIVATE:
      return MA_NOACTIVATE;
    case WM_DESTROY:
      if (g_window == window) g_window = nullptr;
      return 0;
    default:
      return DefWindowProcA(window, message, wParam, lParam);
  }
}

bool ShowDragImage(POINT at) {
  const DragImageView view = DragImage();
  if (!view.pixels || !view.bitmapInfo || view.width < 1 || view.height < 1) return false;
  if (!Create()) return false;
  // Shown before its pixels are handed over: under Wine, pixels given to a layered window that
  // is not yet shown were sometimes never seen once it was.
  ShowWindow(g_window, SW_SHOWNOACTIVATE);
  if (!Upload(view, at)) {
    HideDragImage();
    return false;
  }
  return true;
}

void MoveDragImage(POINT at) {
  if (!g_window) return;
  SetWindowPos(g_window, nullptr, at.x, at.y, 0, 0,
               SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOREDRAW);
}

void HideDragImage() {
  if (!g_window) return;
  // Destroyed rather than hidden: the next drag's set has another size, and the window's
  // surface would hold the whole picture's pixels until then.
  DestroyWindow(g_window);
  g_window = nullptr;
  // Under X without a window manager the image's moves can lift the main window over the open
  // boxes; they float over the table again once the drag ends.
  for (int box = 0; box < kBoxCount; ++box) {
    HWND frame = BoxWindow(box);
    if (frame && IsWindowVisible(frame)) {
      SetWindowPos(frame, HWND_TOP, 0, 0, 0, 0,
                   SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE | SWP_NOOWNERZORDER);
    }
  }
}

HWND DragImageWindow() { return g_window; }

}  // namespace qv::puzzle_win
