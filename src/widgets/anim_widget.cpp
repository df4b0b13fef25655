// CMWANIM: one frame of a sprite strip, optionally over a background, stepped by its parent.
#include <memory>
#include <vector>

#include "graphics/control_dc.h"
#include "graphics/himage_draw.h"
#include "graphics/himage_ops.h"
#include "graphics/proyector.h"
#include "system/assert.h"
#include "widgets/anim_logic.h"
#include "widgets/widget_classes.h"
#include "widgets/widget_geometry.h"
#include "widgets/widget_window.h"

namespace qv {

namespace {

using widget::RecordOf;
using widget::RunEffects;

constexpr char kBadContext[] = "hdc enviado es invalido";

struct AnimRecord {
  AnimWidget logic;
  HIMAGE strip = nullptr;
  HDC background = nullptr;  // borrowed: the context holding the picture behind the frames
  int backgroundWidth = 0;
  int backgroundHeight = 0;
  Proyector projector;
  std::unique_ptr<ControlDC> proceso;  // DIB mode: background and frame composed here
  HDC ownDc = nullptr;                 // the class keeps one context per window (CS_OWNDC)
};

bool StripIndexed(HIMAGE strip) {
  return strip && ImageBitCount(strip) == 8 && DibHeader(strip)->biClrUsed > 0;
}

AnimLayoutInput LayoutInput(const AnimRecord& a) {
  AnimLayoutInput in;
  in.hasStrip = a.strip != nullptr;
  in.stripIndexed = StripIndexed(a.strip);
  in.frameWidth = a.projector.FrameWidth();
  in.frameHeight = a.projector.FrameHeight();
  in.frameCount = a.projector.Rows() * a.projector.Columns();
  in.hasBackground = a.background != nullptr;
  in.backgroundWidth = a.backgroundWidth;
  in.backgroundHeight = a.backgroundHeight;
  return in;
}

void UpdateLayout(HWND window, AnimRecord& a) {
  const Effects effects = AnimUpdateLayout(a.logic, LayoutInput(a));
  if (a.logic.ready) {
    if (a.logic.transparent) {
      a.projector.Destino(a.proceso->Dib());
    } else {
      a.projector.Destino(a.ownDc);
    }
    widget::ResizeWindow(window, a.logic.width, a.logic.height);
  }
  RunEffects(window, effects);
}

// Copies the part of the background behind the frame into Proceso, in the strip's colours, so
// that the masked frame can be laid over it with the picture operations.
bool CopyBackgroundIntoProceso(const AnimRecord& a) {
  HIMAGE proceso = a.proceso->Dib();
  if (!proceso || !ImageCopyColourTable(a.strip, proceso)) return false;
  const int width = a.logic.width;
  const int height = a.logic.height;
  widget::PixelSurface capture(width, height);
  if (!capture.ok()) return false;
  BitBlt(capture.dc(), 0, 0, width, height, a.background, 0, 0, SRCCOPY);
  const std::uint32_t* pixels = capture.pixels();
  const int colours = static_cast<int>(DibHeader(a.strip)->biClrUsed);
  for (int y = 0; y < height; ++y) {
    MapToColourTable(pixels + static_cast<std::ptrdiff_t>(y) * width, width, DibColours(a.strip),
                     colours, ImagePixel(proceso, 0, y));
  }
  return true;
}

// The transparent path: background into Proceso, the masked frame over it, Proceso shown.
bool ComposeTransparent(AnimRecord& a) {
  if (!QV_CHECK(a.background != nullptr, "Debe haber una imagen de fondo")) return false;
  if (!QV_CHECK(a.proceso != nullptr && a.proceso->Dib() != nullptr,
                "error interno:se debe inicializar data->Proceso con un ControlDC")) {
    return false;
  }
  if (!CopyBackgroundIntoProceso(a)) return false;
  a.projector.Destino(a.proceso->Dib());
  return a.projector.Transparencia(a.logic.frame, 0, 0, false, false, false);
}

void DrawFrame(AnimRecord& a, HDC dc) {
  if (a.logic.transparent) {
    if (ComposeTransparent(a)) {
      ImageDrawToContext(dc, 0, 0, a.logic.width, a.logic.height, a.proceso->Dib(), 0, 0,
                         kRopSrcCopy);
    }
    return;
  }
  a.projector.Destino(dc);
  a.projector.TransparenciaParcial(a.logic.frame, 0, 0, false, false, false, kRopSrcCopy);
  a.projector.Destino(a.ownDc);
}

void OnPaint(HWND window, AnimRecord* a, HDC printDc) {
  widget::PaintWindow(window, printDc, [&](HDC dc, const RECT& area) {
    if (!a || !a->logic.ready) {
      widget::FillBlack(dc, area);
      return;
    }
    if (area.right > a->logic.width || area.bottom > a->logic.height) {
      widget::FillBlack(dc, area);
    }
    DrawFrame(*a, dc);
  });
}

LRESULT OnSetImage(HWND window, AnimRecord& a, LPARAM lParam) {
  HIMAGE strip = reinterpret_cast<HIMAGE>(lParam);
  if (!QV_CHECK(strip != nullptr, kBadContext)) return 0;
  if (!a.projector.DeclararTiraExterna(strip, a.logic.transparent)) {
    a.strip = nullptr;
    UpdateLayout(window, a);
    return 0;
  }
  a.strip = strip;
  UpdateLayout(window, a);
  return 1;
}

bool BitmapSizeOf(HDC dc, int& width, int& height) {
  HGDIOBJ bitmap = GetCurrentObject(dc, OBJ_BITMAP);
  BITMAP info{};
  if (!bitmap || GetObjectA(bitmap, sizeof info, &info) != sizeof info) return false;
  width = info.bmWidth;
  height = info.bmHeight;
  return width > 0 && height > 0;
}

LRESULT OnSetBackground(HWND window, AnimRecord& a, LPARAM lParam) {
  HDC background = reinterpret_cast<HDC>(lParam);
  if (!QV_CHECK(background != nullptr, kBadContext)) return 0;
  int width = 0;
  int height = 0;
  if (!BitmapSizeOf(background, width, height)) {
    a.background = nullptr;
    UpdateLayout(window, a);
    return 0;
  }
  if (!a.proceso) a.proceso = std::make_unique<ControlDC>();
  if (!a.proceso->AjustarTamaño(width, height, false)) return 0;
  a.background = background;
  a.backgroundWidth = width;
  a.backgroundHeight = height;
  UpdateLayout(window, a);
  return 1;
}

LRESULT OnSetTransparent(HWND window, AnimRecord& a, LPARAM lParam) {
  a.logic.transparent = lParam != 0;
  if (a.strip && !a.projector.DeclararTiraExterna(a.strip, a.logic.transparent)) {
    a.strip = nullptr;
  }
  UpdateLayout(window, a);
  return 1;
}

LRESULT OnSetFrame(HWND window, AnimRecord& a, LPARAM lParam) {
  const int frame = static_cast<int>(lParam);
  if (!AnimFrameValid(frame, a.projector.Rows() * a.projector.Columns())) return 0;
  a.logic.frame = frame;
  if (a.logic.ready) {
    DrawFrame(a, a.ownDc);
  } else {
    InvalidateRect(window, nullptr, FALSE);
  }
  return 1;
}

LRESULT OnSetGrid(HWND window, AnimRecord& a, UINT message, LPARAM lParam) {
  const int count = static_cast<int>(lParam);
  if (message == anim::MWM_SETROWS) {
    if (!AnimRowsValid(count) || !a.projector.CambiarNumFil(count)) return 0;
  } else {
    if (!AnimColumnsValid(count) || !a.projector.CambiarNumCol(count)) return 0;
  }
  UpdateLayout(window, a);
  return 1;
}

LRESULT OnWidgetMessage(HWND window, AnimRecord& a, UINT message, LPARAM lParam) {
  const int value = static_cast<int>(lParam);
  switch (message) {
    case MWM_GETENABLED: return a.logic.enabled ? 1 : 0;
    case MWM_SETENABLED:
      RunEffects(window, AnimSetEnabled(a.logic, value != 0));
      return 1;
    case MWM_GETIMAGE: return reinterpret_cast<LRESULT>(a.strip);
    case MWM_SETIMAGE: return OnSetImage(window, a, lParam);
    case anim::MWM_GETBACKGROUND: return reinterpret_cast<LRESULT>(a.background);
    case anim::MWM_SETBACKGROUND: return OnSetBackground(window, a, lParam);
    case anim::MWM_GETTRANSPARENT: return a.logic.transparent ? 1 : 0;
    case anim::MWM_SETTRANSPARENT: return OnSetTransparent(window, a, lParam);
    case anim::MWM_GETFRAME: return a.logic.frame;
    case anim::MWM_SETFRAME: return OnSetFrame(window, a, lParam);
    case anim::MWM_GETROWS: return a.projector.Rows();
    case anim::MWM_GETCOLUMNS: return a.projector.Columns();
    case anim::MWM_SETROWS:
    case anim::MWM_SETCOLUMNS: return OnSetGrid(window, a, message, lParam);
    case anim::MWM_GETINTERVAL: return a.logic.interval;
    case anim::MWM_SETINTERVAL:
      if (!AnimIntervalValid(value)) return 0;
      a.logic.interval = value;  // a running timer keeps its period until restarted
      return 1;
    case anim::MWM_GETRUNNING: return a.logic.running ? 1 : 0;
    case anim::MWM_SETRUNNING:
      RunEffects(window, AnimSetRunning(a.logic, value != 0));
      return 1;
    case anim::MWM_GETUSERVALUE: return a.logic.userValue;
    case anim::MWM_SETUSERVALUE:
      a.logic.userValue = value;
      return 1;
    case anim::MWM_GETHOVER: return a.logic.hover ? 1 : 0;
    default: return 1;
  }
}

void OnMouse(HWND window, AnimRecord& a, UINT message, LPARAM lParam) {
  if (!AnimTakesMouse(a.logic)) return;
  switch (message) {
    case WM_MOUSEMOVE:
      RunEffects(window, AnimMouseMove(a.logic, widget::PointX(lParam), widget::PointY(lParam)));
      break;
    case WM_LBUTTONDOWN:
      RunEffects(window, AnimButtonDown(a.logic));
      break;
    case WM_LBUTTONUP:
      RunEffects(window, AnimButtonUp(a.logic, widget::PointerOverWindow(window)));
      break;
    default:
      break;
  }
}

void OnTimer(HWND window, AnimRecord& a, WPARAM id) {
  if (id == static_cast<WPARAM>(kHoverTimer)) {
    RunEffects(window, AnimHoverTimer(a.logic, widget::PointerOverWindow(window)));
  } else if (id == static_cast<WPARAM>(kAnimFrameTimer)) {
    RunEffects(window, AnimFrameTimer(a.logic));
  }
}

LRESULT OnCreate(HWND window) {
  AnimRecord* a = widget::CreateRecord<AnimRecord>(window);
  if (!a) return -1;
  a->ownDc = GetDC(window);  // CS_OWNDC: the same context for the window's whole life
  a->projector.Destino(window);
  if (a->ownDc) a->projector.Destino(a->ownDc);
  return 0;
}

void OnDestroy(HWND window) {
  AnimRecord* a = RecordOf<AnimRecord>(window);
  if (a && a->ownDc) ReleaseDC(window, a->ownDc);
  widget::DestroyRecord<AnimRecord>(window);
}

}  // namespace

LRESULT CALLBACK AnimWidgetProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  AnimRecord* a = RecordOf<AnimRecord>(window);
  switch (message) {
    case WM_CREATE:
      return OnCreate(window);
    case WM_DESTROY:
      OnDestroy(window);
      return 0;
    case WM_CLOSE:
      DestroyWindow(window);
      return 0;
    case WM_ERASEBKGND:
      return 1;
    case WM_PAINT:
    case WM_PRINTCLIENT:
      OnPaint(window, a, message == WM_PRINTCLIENT ? reinterpret_cast<HDC>(wParam) : nullptr);
      return 0;
    default:
      break;
  }
  if (!a) return IsWidgetMessage(message) ? 1 : DefWindowProcA(window, message, wParam, lParam);
  switch (message) {
    case WM_MOUSEMOVE:
    case WM_LBUTTONDOWN:
    case WM_LBUTTONUP:
      OnMouse(window, *a, message, lParam);
      return 0;
    case WM_CAPTURECHANGED:
      if (a->logic.captured && widget::CaptureTakenByOther(window, lParam)) {
        widget::SendReleaseToSelf(window);
      }
      return 0;
    case WM_TIMER:
      OnTimer(window, *a, wParam);
      return 0;
    default:
      if (IsWidgetMessage(message)) return OnWidgetMessage(window, *a, message, lParam);
      return DefWindowProcA(window, message, wParam, lParam);
  }
}

}  // namespace qv
