// CMWSROLL: three stacked parts that step a value, repeat when held and drag without end.
#include "graphics/himage_draw.h"
#include "graphics/himage_ops.h"
#include "system/assert.h"
#include "widgets/scroll_logic.h"
#include "widgets/widget_classes.h"
#include "widgets/widget_window.h"

namespace qv {

namespace {

using widget::RecordOf;

struct ScrollRecord {
  ScrollWidget logic;
  HIMAGE image = nullptr;
};

void InvalidateBand(HWND window, int part) {
  const ScrollRecord* s = RecordOf<ScrollRecord>(window);
  if (!s || !QV_CHECK(part >= 1 && part <= 3, "Numero de boton invalido")) return;
  const int top = ScrollBandTop(s->logic, part);
  const RECT band{0, top, s->logic.width, top + s->logic.partSize[part - 1]};
  InvalidateRect(window, &band, FALSE);
}

bool Run(HWND window, const Effects& effects) {
  return widget::RunEffects(window, effects, InvalidateBand);
}

void ApplyPicture(HWND window, ScrollRecord& s) {
  widget::ResizeWindow(window, s.logic.width, s.logic.frameHeight);
  if (s.logic.ready) InvalidateRect(window, nullptr, FALSE);
}

LRESULT OnSetImage(HWND window, ScrollRecord& s, LPARAM lParam) {
  HIMAGE image = reinterpret_cast<HIMAGE>(lParam);
  if (!QV_CHECK(image != nullptr, "hdc enviado es nulo")) return 0;
  s.image = image;
  s.logic.hasImage = true;
  ScrollSetPicture(s.logic, ImageWidth(image), ImageHeight(image));
  ApplyPicture(window, s);
  return 1;
}

LRESULT OnSetDisabledFrame(HWND window, ScrollRecord& s, LPARAM lParam) {
  const int width = s.image ? ImageWidth(s.image) : 0;
  const int height = s.image ? ImageHeight(s.image) : 0;
  ScrollSetDisabledFrame(s.logic, lParam ? 1 : 0, width, height);
  ApplyPicture(window, s);
  InvalidateRect(window, nullptr, FALSE);
  return 1;
}

LRESULT OnSetPartSize(HWND window, ScrollRecord& s, int part, int size) {
  ScrollSetPartSize(s.logic, part, size);
  if (s.logic.ready) InvalidateRect(window, nullptr, FALSE);
  return 1;
}

LRESULT OnWidgetMessage(HWND window, ScrollRecord& s, UINT message, LPARAM lParam) {
  const int value = static_cast<int>(lParam);
  ScrollWidget& l = s.logic;
  switch (message) {
    case MWM_GETENABLED: return l.enabled ? 1 : 0;
    case MWM_SETENABLED:
      Run(window, ScrollSetEnabled(l, value != 0));
      return 1;
    case MWM_GETIMAGE: return reinterpret_cast<LRESULT>(s.image);
    case MWM_SETIMAGE: return OnSetImage(window, s, lParam);
    case scroll::MWM_GETPARTSIZE1: return l.partSize[0];
    case scroll::MWM_SETPARTSIZE1: return OnSetPartSize(window, s, 1, value);
    case scroll::MWM_GETPARTSIZE2: return l.partSize[1];
    case scroll::MWM_SETPARTSIZE2: return OnSetPartSize(window, s, 2, value);
    case scroll::MWM_GETPARTSIZE3: return l.partSize[2];
    case scroll::MWM_SETPARTSIZE3: return OnSetPartSize(window, s, 3, value);
    case scroll::MWM_GETMAXIMUM: return l.maximum;
    case scroll::MWM_SETMAXIMUM: ScrollSetMaximum(l, value); return 1;
    case scroll::MWM_GETMINIMUM: return l.minimum;
    case scroll::MWM_SETMINIMUM: ScrollSetMinimum(l, value); return 1;
    case scroll::MWM_GETVALUE: return l.value;
    case scroll::MWM_SETVALUE: ScrollSetValue(l, value); return 1;
    case scroll::MWM_GETSTEP: return l.step;
    case scroll::MWM_SETSTEP: ScrollSetStep(l, value); return 1;
    case scroll::MWM_GETDRAGTHRESHOLD: return l.dragThreshold;
    case scroll::MWM_SETDRAGTHRESHOLD: l.dragThreshold = value; return 1;
    case scroll::MWM_GETDISABLEDFRAME: return l.disabledFrame;
    case scroll::MWM_SETDISABLEDFRAME: return OnSetDisabledFrame(window, s, lParam);
    case scroll::MWM_GETDELAY: return l.delay;
    case scroll::MWM_SETDELAY:
      if (!ScrollDelayValid(value)) return 0;
      l.delay = value;
      return 1;
    case scroll::MWM_GETPERIOD: return l.period;
    case scroll::MWM_SETPERIOD:
      if (!ScrollPeriodValid(value)) return 0;
      l.period = value;
      return 1;
    default: return 1;
  }
}

int DesktopClientHeight() {
  RECT desktop{0, 0, 0, 0};
  GetClientRect(GetDesktopWindow(), &desktop);
  return desktop.bottom - desktop.top;
}

void OnLButtonDown(HWND window, ScrollRecord& s, LPARAM lParam) {
  POINT cursor{0, 0};
  GetCursorPos(&cursor);
  Run(window, ScrollButtonDown(s.logic, widget::PointY(lParam), cursor.y));
}

void OnMouseMove(HWND window, ScrollRecord& s, LPARAM lParam) {
  if (s.logic.mouseCapt == 2) {
    POINT cursor{0, 0};
    GetCursorPos(&cursor);
    Run(window, ScrollDragMove(s.logic, cursor.y, DesktopClientHeight()));
  } else {
    Run(window, ScrollMouseMove(s.logic, widget::PointX(lParam), widget::PointY(lParam)));
  }
}

// Judged by the cursor, not the message's point: the release sent after a lost capture carries
// no point of its own.
void OnLButtonUp(HWND window, ScrollRecord& s) {
  if (s.logic.mouseCapt == 0) return;
  const bool elsewhere = !widget::PointerOverWindow(window);
  Run(window, ScrollButtonUp(s.logic, elsewhere, widget::CursorInClient(window).y));
}

void OnPaint(HWND window, const ScrollRecord* s, HDC printDc) {
  widget::PaintWindow(window, printDc, [&](HDC dc, const RECT& area) {
    if (!s || !s->logic.ready || !s->image) {
      widget::FillBlack(dc, area);
      return;
    }
    const ScrollWidget& l = s->logic;
    if (area.right > l.width || area.bottom > l.frameHeight) widget::FillBlack(dc, area);
    for (int part = 1; part <= 3; ++part) {
      const ScrollBand band = ScrollBandSource(l, part);
      if (band.top >= area.bottom || band.top + band.height <= area.top) continue;
      ImageDrawToContext(dc, 0, band.top, l.width, band.height, s->image, 0, band.sourceY,
                         kRopSrcCopy);
    }
  });
}

}  // namespace

LRESULT CALLBACK ScrollWidgetProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  ScrollRecord* s = RecordOf<ScrollRecord>(window);
  switch (message) {
    case WM_CREATE:
      return widget::CreateRecord<ScrollRecord>(window) ? 0 : -1;
    case WM_DESTROY:
      widget::DestroyRecord<ScrollRecord>(window);
      return 0;
    case WM_CLOSE:
      DestroyWindow(window);
      return 0;
    case WM_ERASEBKGND:
      return 1;
    case WM_PAINT:
    case WM_PRINTCLIENT:
      OnPaint(window, s, message == WM_PRINTCLIENT ? reinterpret_cast<HDC>(wParam) : nullptr);
      return 0;
    default:
      break;
  }
  if (!s) return IsWidgetMessage(message) ? 1 : DefWindowProcA(window, message, wParam, lParam);
  const bool takesMouse = ScrollTakesMouse(s->logic);
  switch (message) {
    case WM_LBUTTONDOWN:
      if (takesMouse) OnLButtonDown(window, *s, lParam);
      return 0;
    case WM_MOUSEMOVE:
      if (takesMouse) OnMouseMove(window, *s, lParam);
      return 0;
    case WM_LBUTTONUP:
      if (takesMouse) OnLButtonUp(window, *s);
      return 0;
    case WM_CAPTURECHANGED:
      if (s->logic.mouseCapt != 0 && widget::CaptureTakenByOther(window, lParam)) {
        widget::SendReleaseToSelf(window);
      }
      return 0;
    case WM_TIMER:
      Run(window, ScrollTimer(s->logic, static_cast<int>(wParam),
                              !widget::PointerOverWindow(window)));
      return 0;
    default:
      if (IsWidgetMessage(message)) return OnWidgetMessage(window, *s, message, lParam);
      return DefWindowProcA(window, message, wParam, lParam);
  }
}

}  // namespace qv
