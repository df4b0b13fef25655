// Window-side helpers of the widgets: effects carried out, notifications, strip painting, surfaces.
#include "widgets/widget_window.h"

#include "graphics/himage_draw.h"
#include "graphics/himage_ops.h"
#include "widgets/widget_geometry.h"
#include "widgets/widget_messages.h"
#include "widgets/widget_sounds.h"

namespace qv::widget {

bool PointerOverWindow(HWND window) {
  POINT cursor;
  if (!GetCursorPos(&cursor)) return false;
  return WindowFromPoint(cursor) == window;
}

POINT CursorInClient(HWND window) {
  POINT cursor{0, 0};
  GetCursorPos(&cursor);
  ScreenToClient(window, &cursor);
  return cursor;
}

void NotifyParent(HWND window, int code) {
  HWND parent = GetParent(window);
  if (parent) {
    SendMessageA(parent, MWM_NOTIFY, static_cast<WPARAM>(code), reinterpret_cast<LPARAM>(window));
  }
}

bool RunEffects(HWND window, const Effects& effects, BandInvalidator invalidateBand) {
  for (const EffectStep& step : effects) {
    switch (step.what) {
      case Effect::kRepaint:
        if (step.a != 0 && invalidateBand) {
          invalidateBand(window, step.a);
        } else {
          InvalidateRect(window, nullptr, FALSE);
        }
        break;
      case Effect::kStartTimer:
        SetTimer(window, static_cast<UINT_PTR>(step.a), static_cast<UINT>(step.b), nullptr);
        break;
      case Effect::kKillTimer:
        KillTimer(window, static_cast<UINT_PTR>(step.a));
        break;
      case Effect::kCapture:
        SetCapture(window);
        break;
      case Effect::kReleaseCapture:
        if (GetCapture() == window) ReleaseCapture();
        break;
      case Effect::kNotify:
        NotifyParent(window, step.a);
        // The parent may have destroyed the widget while handling it.
        if (!IsWindow(window)) return false;
        break;
      case Effect::kPlaySound:
        PlayWidgetSound(step.a);
        break;
      case Effect::kMoveCursorY: {
        POINT cursor;
        if (GetCursorPos(&cursor)) SetCursorPos(cursor.x, step.a);
        break;
      }
    }
  }
  return true;
}

void ResizeWindow(HWND window, int width, int height) {
  SetWindowPos(window, nullptr, 0, 0, width, height,
               SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOOWNERZORDER);
}

void FillBlack(HDC dc, const RECT& rect) {
  PatBlt(dc, rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top, BLACKNESS);
}

void PaintStripFrame(HDC dc, const RECT& area, HIMAGE strip, int frameWidth, int frameHeight,
                     int frame) {
  if (!strip || frameWidth < 1 || frameHeight < 1) {
    FillBlack(dc, area);
    return;
  }
  if (area.right > frameWidth || area.bottom > frameHeight || area.left < 0 || area.top < 0) {
    FillBlack(dc, area);
  }
  const CopyRect copy = ClipCopy({area.left, area.top, area.left, area.top,
                                  area.right - area.left, area.bottom - area.top},
                                 frameWidth, frameHeight);
  if (copy.empty()) return;
  ImageDrawToContext(dc, copy.dx, copy.dy, copy.width, copy.height, strip, copy.sx,
                     copy.sy + frame * frameHeight, kRopSrcCopy);
}

MemorySurface::MemorySurface(HDC like, int width, int height) {
  dc_ = CreateCompatibleDC(like);
  if (dc_ && width > 0 && height > 0) bitmap_ = CreateCompatibleBitmap(like, width, height);
  if (bitmap_) previous_ = SelectObject(dc_, bitmap_);
}

MemorySurface::~MemorySurface() {
  if (previous_) SelectObject(dc_, previous_);
  if (bitmap_) DeleteObject(bitmap_);
  if (dc_) DeleteDC(dc_);
}

PixelSurface::PixelSurface(int width, int height) {
  if (width < 1 || height < 1) return;
  BITMAPINFO info{};
  info.bmiHeader.biSize = sizeof(BITMAPINFOHEADER);
  info.bmiHeader.biWidth = width;
  info.bmiHeader.biHeight = -height;
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = 32;
  info.bmiHeader.biCompression = BI_RGB;
  dc_ = CreateCompatibleDC(nullptr);
  if (!dc_) return;
  void* bits = nullptr;
  bitmap_ = CreateDIBSection(dc_, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
  if (!bitmap_) return;
  bits_ = static_cast<std::uint32_t*>(bits);
  previous_ = SelectObject(dc_, bitmap_);
}

PixelSurface::~PixelSurface() {
  if (previous_) SelectObject(dc_, previous_);
  if (bitmap_) DeleteObject(bitmap_);
  if (dc_) DeleteDC(dc_);
}

const std::uint32_t* PixelSurface::pixels() const {
  GdiFlush();
  return bits_;
}

}  // namespace qv::widget
