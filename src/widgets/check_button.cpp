// CMWCHECK: the check box and radio button, drawn from a strip of four looks.
#include "graphics/himage_ops.h"
#include "widgets/button_logic.h"
#include "widgets/widget_classes.h"
#include "widgets/widget_window.h"

namespace qv {

namespace {

using widget::RecordOf;
using widget::RunEffects;

struct CheckRecord {
  CheckButton logic;
  HIMAGE image = nullptr;
};

void ApplyStrip(HWND window, CheckRecord& b) {
  if (b.image) {
    CheckSetStrip(b.logic, ImageWidth(b.image), ImageHeight(b.image));
    widget::ResizeWindow(window, b.logic.frameWidth, b.logic.frameHeight);
  }
  InvalidateRect(window, nullptr, FALSE);
}

// Unlike the push button, a null picture is taken without a report: the box then shows black
// and ignores the mouse until a real strip arrives.
LRESULT OnSetImage(HWND window, CheckRecord& b, LPARAM lParam) {
  b.image = reinterpret_cast<HIMAGE>(lParam);
  b.logic.hasImage = b.image != nullptr;
  if (!b.image) b.logic.frameWidth = b.logic.frameHeight = 0;
  ApplyStrip(window, b);
  return 1;
}

LRESULT OnWidgetMessage(HWND window, CheckRecord& b, UINT message, LPARAM lParam) {
  switch (message) {
    case MWM_GETENABLED:
      return b.logic.enabled ? 1 : 0;
    case MWM_SETENABLED:
      RunEffects(window, CheckSetEnabled(b.logic, lParam != 0));
      return 1;
    case MWM_GETIMAGE:
      return reinterpret_cast<LRESULT>(b.image);
    case MWM_SETIMAGE:
      return OnSetImage(window, b, lParam);
    case MWM_GETDISABLEDFRAME:
      return b.logic.disabledFrame;
    case MWM_SETDISABLEDFRAME:
      b.logic.disabledFrame = lParam ? 1 : 0;
      ApplyStrip(window, b);
      return 1;
    case MWM_GETCHECK:
      return b.logic.checked ? 1 : 0;
    case MWM_SETCHECK:
      RunEffects(window, CheckSetChecked(b.logic, lParam != 0));
      return 1;
    case MWM_GETRADIO:
      return b.logic.radio ? 1 : 0;
    case MWM_SETRADIO:
      b.logic.radio = lParam != 0;
      return 1;
    default:
      return 1;
  }
}

void OnMouseMove(HWND window, CheckRecord& b) {
  if (!CheckTakesMouse(b.logic)) return;
  const bool over = b.logic.captured && widget::PointerOverWindow(window);
  RunEffects(window, CheckMouseMove(b.logic, over));
}

void OnLButtonDown(HWND window, CheckRecord& b) {
  if (CheckTakesMouse(b.logic)) RunEffects(window, CheckButtonDown(b.logic));
}

void OnLButtonUp(HWND window, CheckRecord& b) {
  if (CheckTakesMouse(b.logic)) {
    RunEffects(window, CheckButtonUp(b.logic, widget::PointerOverWindow(window)));
  }
}

void OnCaptureChanged(HWND window, const CheckRecord& b, LPARAM newCapture) {
  if (b.logic.captured && widget::CaptureTakenByOther(window, newCapture)) {
    widget::SendReleaseToSelf(window);
  }
}

void OnTimer(HWND window, CheckRecord& b, WPARAM id) {
  if (id == static_cast<WPARAM>(kHoverTimer)) {
    RunEffects(window, CheckHoverTimer(b.logic, widget::PointerOverWindow(window)));
  }
}

void OnPaint(HWND window, const CheckRecord* b, HDC printDc) {
  widget::PaintWindow(window, printDc, [&](HDC dc, const RECT& area) {
    if (!b || !b->image) {
      widget::FillBlack(dc, area);
      return;
    }
    widget::PaintStripFrame(dc, area, b->image, b->logic.frameWidth, b->logic.frameHeight,
                            CheckShownFrame(b->logic));
  });
}

}  // namespace

LRESULT CALLBACK CheckButtonProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  CheckRecord* b = RecordOf<CheckRecord>(window);
  switch (message) {
    case WM_CREATE:
      return widget::CreateRecord<CheckRecord>(window) ? 0 : -1;
    case WM_DESTROY:
      widget::DestroyRecord<CheckRecord>(window);
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
