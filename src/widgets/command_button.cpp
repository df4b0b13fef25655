// CMWCOMMAND and CMWBOXSCOMMAND: the push buttons, one window procedure for both classes.
#include "graphics/himage_ops.h"
#include "system/assert.h"
#include "widgets/button_logic.h"
#include "widgets/widget_classes.h"
#include "widgets/widget_window.h"

namespace qv {

namespace {

using widget::RecordOf;
using widget::RunEffects;

struct CommandButton {
  PushButton logic;
  HIMAGE image = nullptr;
};

void ApplyStrip(HWND window, CommandButton& b) {
  PushSetStrip(b.logic, ImageWidth(b.image), ImageHeight(b.image));
  widget::ResizeWindow(window, b.logic.frameWidth, b.logic.frameHeight);
  InvalidateRect(window, nullptr, FALSE);
}

LRESULT OnSetImage(HWND window, CommandButton& b, LPARAM lParam) {
  HIMAGE image = reinterpret_cast<HIMAGE>(lParam);
  if (!QV_CHECK(image != nullptr, "manipulador invalido")) return 0;
  b.image = image;
  b.logic.hasImage = true;
  ApplyStrip(window, b);
  return 1;
}

LRESULT OnSetDisabledFrame(HWND window, CommandButton& b, LPARAM lParam) {
  b.logic.disabledFrame = lParam ? 1 : 0;
  if (b.image) ApplyStrip(window, b);
  return 1;
}

LRESULT OnWidgetMessage(HWND window, CommandButton& b, UINT message, LPARAM lParam) {
  switch (message) {
    case MWM_GETENABLED:
      return b.logic.enabled ? 1 : 0;
    case MWM_SETENABLED:
      RunEffects(window, PushSetEnabled(b.logic, lParam != 0));
      return 1;
    case MWM_GETIMAGE:
      return reinterpret_cast<LRESULT>(b.image);
    case MWM_SETIMAGE:
      return OnSetImage(window, b, lParam);
    case MWM_GETDISABLEDFRAME:
      return b.logic.disabledFrame;
    case MWM_SETDISABLEDFRAME:
      return OnSetDisabledFrame(window, b, lParam);
    default:
      return 1;
  }
}

void OnMouseMove(HWND window, CommandButton& b) {
  if (!PushTakesMouse(b.logic)) return;
  const bool over = b.logic.captured && widget::PointerOverWindow(window);
  RunEffects(window, PushMouseMove(b.logic, over));
}

void OnLButtonDown(HWND window, CommandButton& b) {
  if (PushTakesMouse(b.logic)) RunEffects(window, PushButtonDown(b.logic));
}

void OnLButtonUp(HWND window, CommandButton& b) {
  if (PushTakesMouse(b.logic)) {
    RunEffects(window, PushButtonUp(b.logic, widget::PointerOverWindow(window)));
  }
}

void OnCaptureChanged(HWND window, const CommandButton& b, LPARAM newCapture) {
  if (b.logic.captured && widget::CaptureTakenByOther(window, newCapture)) {
    widget::SendReleaseToSelf(window);
  }
}

void OnTimer(HWND window, CommandButton& b, WPARAM id) {
  if (id == static_cast<WPARAM>(kHoverTimer)) {
    RunEffects(window, PushHoverTimer(b.logic, widget::PointerOverWindow(window)));
  }
}

void OnPaint(HWND window, const CommandButton* b, HDC printDc) {
  widget::PaintWindow(window, printDc, [&](HDC dc, const RECT& area) {
    if (!b || !b->image) {
      widget::FillBlack(dc, area);
      return;
    }
    widget::PaintStripFrame(dc, area, b->image, b->logic.frameWidth, b->logic.frameHeight,
                            PushShownFrame(b->logic));
  });
}

}  // namespace

LRESULT CALLBACK CommandButtonProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  CommandButton* b = RecordOf<CommandButton>(window);
  switch (message) {
    case WM_CREATE:
      return widget::CreateRecord<CommandButton>(window) ? 0 : -1;
    case WM_DESTROY:
      widget::DestroyRecord<CommandButton>(window);
      return 0;
    case WM_CLOSE:
      DestroyWindow(window);
      return 0;
    case WM_ERASEBKGND:
      return 1;
    case WM_PAINT:
    case WM_PRINTCLIENT:
      OnPaint(window, b, message == WM_PRINTCLIENT ? reinterpret_cast<HDC>(wParam) : nullptr);
      return 0;
    default:
      break;
  }
  if (!b) {
    return IsWidgetMessage(message) ? 1 : DefWindowProcA(window, message, wParam, lParam);
  }
  switch (message) {
    case WM_MOUSEMOVE:
      OnMouseMove(window, *b);
      return 0;
    case WM_LBUTTONDOWN:
      OnLButtonDown(window, *b);
      return 0;
    case WM_LBUTTONUP:
      OnLButtonUp(window, *b);
      return 0;
    case WM_CAPTURECHANGED:
      OnCaptureChanged(window, *b, lParam);
      return 0;
    case WM_TIMER:
      OnTimer(window, *b, wParam);
      return 0;
    default:
      if (IsWidgetMessage(message)) return OnWidgetMessage(window, *b, message, lParam);
      return DefWindowProcA(window, message, wParam, lParam);
  }
}

}  // namespace qv
