// CMWSLIDE: a knob dragged along a track in any direction over a background picture.
#include <cstring>

#include "graphics/control_dc.h"
#include "graphics/himage_draw.h"
#include "graphics/himage_ops.h"
#include "graphics/proyector.h"
#include "system/assert.h"
#include "widgets/slide_logic.h"
#include "widgets/widget_classes.h"
#include "widgets/widget_geometry.h"
#include "widgets/widget_window.h"

namespace qv {

namespace {

using widget::RecordOf;
using widget::RunEffects;

struct SlideRecord {
  SlideWidget logic;
  HIMAGE background = nullptr;  // borrowed
  HIMAGE knob = nullptr;        // borrowed: frames with a row of masks under each row
  Proyector projector;
  ControlDC surface;            // DIB mode: the background of the window with the knob on it
};

// The knob is laid over the background with the picture operations, so the background must be
// an indexed picture whose colours the surface can take.
bool BackgroundUsable(HIMAGE background) {
  return background && ImageBitCount(background) == 8 && DibHeader(background)->biClrUsed > 0;
}

void DrawKnob(SlideRecord& s) {
  s.projector.Transparencia(s.logic.frame, s.logic.knobPosition.x, s.logic.knobPosition.y,
                            false, false, true);
}

// The knob update: the background under the window into the surface, the knob at its place.
void UpdateKnob(HWND window, SlideRecord& s) {
  if (s.logic.laidOut) {
    HIMAGE surface = s.surface.Dib();
    ImageCopyColourTable(s.background, surface);
    // Where the background does not reach under the window, its darkest colour shows.
    const std::uint32_t black = 0;
    const int dark = NearestColourIndex(DibColours(s.background),
                                        static_cast<int>(DibHeader(s.background)->biClrUsed),
                                        black);
    std::memset(DibPixels(surface), dark, DibHeader(surface)->biSizeImage);
    ImageRasterCopy(surface, 0, 0, s.logic.windowWidth, s.logic.windowHeight, s.background,
                    s.logic.windowOrigin.x, s.logic.windowOrigin.y, kRopSrcCopy);
    SlidePlaceKnob(s.logic);
    s.projector.Destino(surface);
    DrawKnob(s);
  }
  InvalidateRect(window, nullptr, FALSE);
}

void Layout(HWND window, SlideRecord& s) {
  const Effects effects =
      SlideLayout(s.logic, BackgroundUsable(s.background), s.knob != nullptr,
                  s.projector.FrameWidth(), s.projector.FrameHeight());
  if (s.logic.laidOut && !s.surface.AjustarTamaño(s.logic.windowWidth, s.logic.windowHeight,
                                                  false)) {
    s.logic.laidOut = false;
  }
  const SlideWidget& l = s.logic;
  SetWindowPos(window, nullptr, l.windowOrigin.x, l.windowOrigin.y, l.windowWidth,
               l.windowHeight, SWP_NOZORDER | SWP_NOOWNERZORDER | SWP_NOACTIVATE);
  if (l.laidOut) UpdateKnob(window, s);
  RunEffects(window, effects);
}

LRESULT OnSetKnob(HWND window, SlideRecord& s, LPARAM lParam) {
  HIMAGE knob = reinterpret_cast<HIMAGE>(lParam);
  if (!QV_CHECK(knob != nullptr, "Hdc enviado es nulo")) return 0;
  if (!s.projector.DeclararTiraExterna(knob, true)) {
    s.knob = nullptr;
    s.logic.laidOut = false;
    InvalidateRect(window, nullptr, FALSE);
    return 0;
  }
  s.knob = knob;
  Layout(window, s);
  return 1;
}

LRESULT OnSetBackground(HWND window, SlideRecord& s, LPARAM lParam) {
  s.background = reinterpret_cast<HIMAGE>(lParam);
  if (!s.background) {
    s.logic.laidOut = false;
    InvalidateRect(window, nullptr, FALSE);
    return 0;
  }
  Layout(window, s);
  return 1;
}

LRESULT OnSetFrame(HWND window, SlideRecord& s, int frame) {
  if (!SlideFrameValid(frame, s.projector.Rows() * s.projector.Columns())) return 0;
  s.logic.frame = frame;
  if (s.logic.laidOut) {
    s.projector.Borrar(false, false);
    DrawKnob(s);
    InvalidateRect(window, nullptr, FALSE);
  }
  return 1;
}

LRESULT OnSetGrid(HWND window, SlideRecord& s, UINT message, int count) {
  if (message == slide::MWM_SETROWS) {
    if (!SlideRowsValid(count) || !s.projector.CambiarNumFil(count)) return 0;
  } else {
    if (!SlideColumnsValid(count) || !s.projector.CambiarNumCol(count)) return 0;
  }
  s.logic.frame = 0;
  Layout(window, s);
  return 1;
}

LRESULT OnSetPoint(HWND window, SlideRecord& s, UINT message, LPARAM lParam) {
  const SlidePoint p = UnpackSlidePoint(static_cast<std::uint32_t>(lParam));
  if (message == slide::MWM_SETSTART) {
    SlideSetStart(s.logic, p);
  } else {
    SlideSetEnd(s.logic, p);
  }
  Layout(window, s);
  return 1;
}

LRESULT OnWidgetMessage(HWND window, SlideRecord& s, UINT message, LPARAM lParam) {
  const int value = static_cast<int>(lParam);
  SlideWidget& l = s.logic;
  switch (message) {
    case MWM_GETENABLED: return l.enabled ? 1 : 0;
    case MWM_SETENABLED:
      RunEffects(window, SlideSetEnabled(l, value != 0));
      return 1;
    case slide::MWM_GETKNOB: return reinterpret_cast<LRESULT>(s.knob);
    case slide::MWM_SETKNOB: return OnSetKnob(window, s, lParam);
    case slide::MWM_GETBACKGROUND: return reinterpret_cast<LRESULT>(s.background);
    case slide::MWM_SETBACKGROUND: return OnSetBackground(window, s, lParam);
    case slide::MWM_GETFRAME: return l.frame;
    case slide::MWM_SETFRAME: return OnSetFrame(window, s, value);
    case slide::MWM_GETROWS: return s.projector.Rows();
    case slide::MWM_GETCOLUMNS: return s.projector.Columns();
    case slide::MWM_SETROWS:
    case slide::MWM_SETCOLUMNS: return OnSetGrid(window, s, message, value);
    case slide::MWM_GETMAXIMUM: return l.maximum;
    case slide::MWM_SETMAXIMUM:
      SlideSetMaximum(l, value);
      UpdateKnob(window, s);
      return 1;
    case slide::MWM_GETMINIMUM: return l.minimum;
    case slide::MWM_SETMINIMUM:
      SlideSetMinimum(l, value);
      UpdateKnob(window, s);
      return 1;
    case slide::MWM_GETVALUE: return l.value;
    case slide::MWM_SETVALUE:
      if (SlideSetValue(l, value)) UpdateKnob(window, s);
      return 1;
    case slide::MWM_GETSTEP: return l.step;
    case slide::MWM_SETSTEP: SlideSetStep(l, value); return 1;
    case slide::MWM_GETSTART: return static_cast<LRESULT>(PackSlidePoint(l.start));
    case slide::MWM_GETEND: return static_cast<LRESULT>(PackSlidePoint(SlideEndPoint(l)));
    case slide::MWM_SETSTART:
    case slide::MWM_SETEND: return OnSetPoint(window, s, message, lParam);
    default: return 1;
  }
}

void OnMouseMove(HWND window, SlideRecord& s, LPARAM lParam) {
  const int x = widget::PointX(lParam);
  const int y = widget::PointY(lParam);
  if (!s.logic.dragging) {
    RunEffects(window, SlideHoverMove(s.logic, x, y));
    return;
  }
  bool changed = false;
  const Effects effects = SlideDragTo(s.logic, x, y, changed);
  if (changed) {
    s.projector.Borrar(false, false);
    DrawKnob(s);
    InvalidateRect(window, nullptr, FALSE);
  }
  RunEffects(window, effects);
}

void OnTimer(HWND window, SlideRecord& s, WPARAM id) {
  if (id != static_cast<WPARAM>(kHoverTimer)) return;
  const POINT p = widget::CursorInClient(window);
  RunEffects(window, SlideHoverTimer(s.logic, widget::PointerOverWindow(window),
                                     SlideOverKnob(s.logic, p.x, p.y)));
}

void OnPaint(HWND window, SlideRecord* s, HDC printDc) {
  widget::PaintWindow(window, printDc, [&](HDC dc, const RECT& area) {
    if (!s || !s->logic.laidOut || !s->surface.Dib()) {
      widget::FillBlack(dc, area);
      return;
    }
    const CopyRect copy = ClipCopy({area.left, area.top, area.left, area.top,
                                    area.right - area.left, area.bottom - area.top},
                                   s->surface.Width(), s->surface.Height());
    if (!copy.empty()) {
      ImageDrawToContext(dc, copy.dx, copy.dy, copy.width, copy.height, s->surface.Dib(),
                         copy.sx, copy.sy, kRopSrcCopy);
    }
  });
}

LRESULT OnCreate(HWND window) {
  SlideRecord* s = widget::CreateRecord<SlideRecord>(window);
  if (!s) return -1;
  s->projector.Destino(window);
  return 0;
}

}  // namespace

LRESULT CALLBACK SlideWidgetProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  SlideRecord* s = RecordOf<SlideRecord>(window);
  switch (message) {
    case WM_CREATE:
      return OnCreate(window);
    case WM_DESTROY:
      widget::DestroyRecord<SlideRecord>(window);
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
  const bool takesMouse = SlideTakesMouse(s->logic);
  switch (message) {
    case WM_LBUTTONDOWN:
      if (takesMouse) {
        RunEffects(window, SlideButtonDown(s->logic, widget::PointX(lParam),
                                           widget::PointY(lParam)));
      }
      return 0;
    case WM_MOUSEMOVE:
      if (takesMouse) OnMouseMove(window, *s, lParam);
      return 0;
    case WM_LBUTTONUP: {
      const bool overKnob = SlideOverKnob(s->logic, widget::PointX(lParam), widget::PointY(lParam));
      RunEffects(window, SlideButtonUp(s->logic, overKnob));
      return 0;
    }
    case WM_CAPTURECHANGED:
      if (s->logic.dragging && takesMouse && widget::CaptureTakenByOther(window, lParam)) {
        widget::SendReleaseToSelf(window, static_cast<LPARAM>(-1));
      }
      return 0;
    case WM_TIMER:
      OnTimer(window, *s, wParam);
      return 0;
    case WM_QUERYNEWPALETTE:
      if (s->logic.laidOut) InvalidateRect(window, nullptr, FALSE);
      return 0;
    default:
      if (IsWidgetMessage(message)) return OnWidgetMessage(window, *s, message, lParam);
      return DefWindowProcA(window, message, wParam, lParam);
  }
}

}  // namespace qv
