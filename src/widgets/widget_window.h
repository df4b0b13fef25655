// Window-side helpers shared by the widget classes: records, effects, notifications, drawing.
#pragma once

#include <windows.h>

#include <new>

#include "graphics/dib_layout.h"
#include "widgets/widget_effects.h"

namespace qv::widget {

// The per-window record lives in GWLP_USERDATA from WM_CREATE to WM_DESTROY.
template <class Record>
Record* RecordOf(HWND window) {
  return reinterpret_cast<Record*>(GetWindowLongPtrA(window, GWLP_USERDATA));
}

template <class Record>
Record* CreateRecord(HWND window) {
  auto* record = new (std::nothrow) Record();
  SetWindowLongPtrA(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(record));
  return record;
}

template <class Record>
void DestroyRecord(HWND window) {
  delete RecordOf<Record>(window);
  SetWindowLongPtrA(window, GWLP_USERDATA, 0);
}

// Signed client coordinates of a mouse message (captured moves may lie left of or above it).
inline int PointX(LPARAM lParam) { return static_cast<short>(LOWORD(lParam)); }
inline int PointY(LPARAM lParam) { return static_cast<short>(HIWORD(lParam)); }

// Whether the window under the cursor is this one.
bool PointerOverWindow(HWND window);
// The cursor in this window's client coordinates.
POINT CursorInClient(HWND window);

void NotifyParent(HWND window, int code);

// Invalidates one band of a window (the scroll's parts); used for Repaint steps with a band.
using BandInvalidator = void (*)(HWND window, int band);

// Carries out the steps in order. False when a notification destroyed the window: the caller
// must not touch its record again.
bool RunEffects(HWND window, const Effects& effects, BandInvalidator invalidateBand = nullptr);

// Resizes a window without moving it, reordering it or activating anything.
void ResizeWindow(HWND window, int width, int height);

// A window that lost the capture to another during a press ends the press as a release judged
// by the cursor position.
inline bool CaptureTakenByOther(HWND window, LPARAM newCapture) {
  return reinterpret_cast<HWND>(newCapture) != window;
}
inline void SendReleaseToSelf(HWND window, LPARAM point = MAKELPARAM(-1, -1)) {
  SendMessageA(window, WM_LBUTTONUP, 0, point);
}

void FillBlack(HDC dc, const RECT& rect);

// Draws frame `frame` of a vertical strip of frames frameWidth x frameHeight into the area of
// the window, clipped to the frame; any part of the area outside the frame is filled black.
void PaintStripFrame(HDC dc, const RECT& area, HIMAGE strip, int frameWidth, int frameHeight,
                     int frame);

// One paint of a window: WM_PAINT paints the invalid rectangle, WM_PRINTCLIENT the whole
// client area into the given context.
template <class PaintFn>
void PaintWindow(HWND window, HDC printDc, PaintFn&& paint) {
  if (printDc) {
    RECT client;
    GetClientRect(window, &client);
    paint(printDc, client);
    return;
  }
  PAINTSTRUCT ps;
  HDC dc = BeginPaint(window, &ps);
  if (dc) paint(dc, ps.rcPaint);
  EndPaint(window, &ps);
}

// A font created and deleted with its owner.
class FontHandle {
 public:
  FontHandle() = default;
  explicit FontHandle(HFONT font) : font_(font) {}
  ~FontHandle() { Reset(); }
  FontHandle(const FontHandle&) = delete;
  FontHandle& operator=(const FontHandle&) = delete;
  void Reset(HFONT font = nullptr) {
    if (font_) DeleteObject(font_);
    font_ = font;
  }
  HFONT get() const { return font_; }

 private:
  HFONT font_ = nullptr;
};

// Selects an object into a context for one scope and puts the previous one back.
class SelectInScope {
 public:
  SelectInScope(HDC dc, HGDIOBJ object) : dc_(dc), previous_(SelectObject(dc, object)) {}
  ~SelectInScope() {
    if (previous_ && previous_ != HGDI_ERROR) SelectObject(dc_, previous_);
  }
  SelectInScope(const SelectInScope&) = delete;
  SelectInScope& operator=(const SelectInScope&) = delete;

 private:
  HDC dc_;
  HGDIOBJ previous_;
};

// A window's drawing context for one scope.
class WindowDc {
 public:
  explicit WindowDc(HWND window) : window_(window), dc_(GetDC(window)) {}
  ~WindowDc() {
    if (dc_) ReleaseDC(window_, dc_);
  }
  WindowDc(const WindowDc&) = delete;
  WindowDc& operator=(const WindowDc&) = delete;
  HDC get() const { return dc_; }

 private:
  HWND window_;
  HDC dc_;
};

// A memory context with a bitmap compatible with another context, to compose a paint off
// screen and copy it in one go.
class MemorySurface {
 public:
  MemorySurface(HDC like, int width, int height);
  ~MemorySurface();
  MemorySurface(const MemorySurface&) = delete;
  MemorySurface& operator=(const MemorySurface&) = delete;
  HDC dc() const { return dc_; }
  bool ok() const { return dc_ && bitmap_; }

 private:
  HDC dc_ = nullptr;
  HBITMAP bitmap_ = nullptr;
  HGDIOBJ previous_ = nullptr;
};

// A top-down 32-bit DIB section in its own context, for reading pixels that GDI drew.
class PixelSurface {
 public:
  PixelSurface(int width, int height);
  ~PixelSurface();
  PixelSurface(const PixelSurface&) = delete;
  PixelSurface& operator=(const PixelSurface&) = delete;
  HDC dc() const { return dc_; }
  bool ok() const { return dc_ && bitmap_ && bits_; }
  // 0x00RRGGBB pixels, row by row from the top.
  const std::uint32_t* pixels() const;

 private:
  HDC dc_ = nullptr;
  HBITMAP bitmap_ = nullptr;
  HGDIOBJ previous_ = nullptr;
  std::uint32_t* bits_ = nullptr;
};

}  // namespace qv::widget
