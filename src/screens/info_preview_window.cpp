// CWNDPREVIEWINFO: the picture being played, fitted into the information screen's frame.
#include "core/app.h"
#include "graphics/himage_ops.h"
#include "puzzle/puzzle_model.h"
#include "screens/info_window.h"
#include "screens/print_layout.h"
#include "widgets/widget_window.h"

namespace qv {
namespace {

void Paint(HWND window, HDC dc) {
  RECT client;
  GetClientRect(window, &client);
  FillRect(dc, &client, static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH)));
  HIMAGE picture = PuzzlePicture();
  if (!picture) return;
  const PrintRect fit = FitPicture(client.right, client.bottom, ImageWidth(picture),
                                   ImageHeight(picture));
  if (fit.width < 1) return;
  SetStretchBltMode(dc, HALFTONE);
  SetBrushOrgEx(dc, 0, 0, nullptr);
  StretchDIBits(dc, fit.x, fit.y, fit.width, fit.height, 0, 0, ImageWidth(picture),
                ImageHeight(picture), DibPixels(picture), reinterpret_cast<BITMAPINFO*>(picture),
                DIB_RGB_COLORS, SRCCOPY);
}

LRESULT CALLBACK InfoPreviewProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_PAINT:
    case WM_PRINTCLIENT:
      widget::PaintWindow(window, message == WM_PRINTCLIENT ? reinterpret_cast<HDC>(wParam) : nullptr,
                          [window](HDC dc, const RECT&) { Paint(window, dc); });
      return 0;
    case WM_ERASEBKGND:
      return 1;
    case WM_NCHITTEST:
      return HTTRANSPARENT;  // the screen underneath is dragged through the picture too
    default:
      return DefWindowProcA(window, message, wParam, lParam);
  }
}

}  // namespace

bool RegisterInfoPreviewClass(HINSTANCE instance) {
  return RegisterScreenClass(instance, kInfoPreviewClass, InfoPreviewProc);
}

}  // namespace qv
