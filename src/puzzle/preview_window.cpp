// CWNDPREVLUPA: the movable pop-up that shows the puzzle's picture reduced, as a model.
#include <windows.h>
#include <vfw.h>

#include "graphics/control_dc.h"
#include "graphics/himage_ops.h"
#include "graphics/packed_dib.h"
#include "puzzle/frame_logic.h"
#include "puzzle/puzzle_model.h"
#include "puzzle/puzzle_windows.h"
#include "puzzle/puzzle_windows_internal.h"
#include "core/app.h"
#include "widgets/widget_classes.h"
#include "widgets/widget_window.h"

namespace qv::puzzle_win {
namespace {

using widget::CreateRecord;
using widget::DestroyRecord;
using widget::RecordOf;

constexpr int kCloseId = 10;
constexpr std::uint32_t kCloseImage = 170;
constexpr int kFrame = 4;
constexpr COLORREF kWood = RGB(74, 46, 24);
constexpr COLORREF kRim = RGB(150, 104, 58);

// The reduced picture: rebuilt by ActualizarPreview, shown by the preview window.
PackedDib g_reduced;
PictureSize g_size{kPreviewMaxWidth, kPreviewMaxHeight};
HWND g_preview = nullptr;

struct PreviewRecord {
  HDRAWDIB drawDib = nullptr;
  widget::FontHandle font;
  ControlDC closeImage;
  HWND close = nullptr;
  BackgroundDrag drag;
};

LRESULT OnCreate(HWND window) {
  auto* p = CreateRecord<PreviewRecord>(window);
  if (!p) return -1;
  p->drawDib = DrawDibOpen();
  p->font.Reset(CreateFontA(20, 0, 0, 0, FW_BOLD, FALSE, FALSE, FALSE, ANSI_CHARSET,
                            OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY,
                            DEFAULT_PITCH | FF_SWISS, kProgramFace));
  p->closeImage.LoadById(kCloseImage);
  p->close = CreatePictureChild(window, kCommandClass, g_size.width - 22, 6, p->closeImage.Dib(),
                                kCloseId);
  return 0;
}

void OnDestroy(HWND window, PreviewRecord& p) {
  if (p.drawDib) DrawDibClose(p.drawDib);
  if (g_preview == window) g_preview = nullptr;
  if (PreviewWindow() == window) SetPreviewWindow(nullptr);
  DestroyRecord<PreviewRecord>(window);
}

void PaintPreview(HWND window, HDC dc, PreviewRecord& p) {
  RECT client;
  GetClientRect(window, &client);
  HBRUSH wood = CreateSolidBrush(kWood);
  FillRect(dc, &client, wood);
  DeleteObject(wood);
  HBRUSH rim = CreateSolidBrush(kRim);
  FrameRect(dc, &client, rim);
  DeleteObject(rim);

  char caption[64] = {};
  GetWindowTextA(window, caption, sizeof caption);
  widget::SelectInScope font(dc, p.font.get());
  SetBkMode(dc, TRANSPARENT);
  SetTextColor(dc, RGB(250, 232, 190));
  RECT title{kFrame + 6, 0, g_size.width - 26, kPreviewTitleHeight};
  DrawTextA(dc, caption, -1, &title, DT_SINGLELINE | DT_VCENTER | DT_END_ELLIPSIS | DT_NOPREFIX);

  const RECT picture{kFrame, kPreviewTitleHeight + kFrame, kFrame + g_size.width,
                     kPreviewTitleHeight + kFrame + g_size.height};
  if (g_reduced && p.drawDib) {
    HIMAGE image = g_reduced.get();
    DrawDibDraw(p.drawDib, dc, picture.left, picture.top, g_size.width, g_size.height,
                reinterpret_cast<LPBITMAPINFOHEADER>(image), DibPixels(image), 0, 0,
                ImageWidth(image), ImageHeight(image), 0);
  } else {
    FillRect(dc, &picture, static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH)));
  }
}

void OnPaint(HWND window, PreviewRecord& p) {
  PAINTSTRUCT ps;
  HDC dc = BeginPaint(window, &ps);
  if (dc) PaintPreview(window, dc, p);
  EndPaint(window, &ps);
}

// The caption is painted by the window itself: a new one must be drawn.
LRESULT OnSetText(HWND window, WPARAM wParam, LPARAM lParam) {
  const LRESULT result = DefWindowProcA(window, WM_SETTEXT, wParam, lParam);
  InvalidateRect(window, nullptr, FALSE);
  return result;
}

void OnNotify(HWND window, const PreviewRecord& p, WPARAM code, HWND sender) {
  if (sender == p.close && code == MWN_CLICKED) HideInPlace(window);
}

void OnPalette(HWND window, PreviewRecord& p) {
  HDC dc = GetDC(window);
  if (p.drawDib) DrawDibRealize(p.drawDib, dc, FALSE);
  ReleaseDC(window, dc);
  InvalidateRect(window, nullptr, FALSE);
}

}  // namespace

LRESULT CALLBACK PreviewWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_CREATE) return OnCreate(window);
  PreviewRecord* p = RecordOf<PreviewRecord>(window);
  if (!p) return DefWindowProcA(window, message, wParam, lParam);
  switch (message) {
    case WM_DESTROY:
      OnDestroy(window, *p);
      return 0;
    case WM_PAINT:
      OnPaint(window, *p);
      return 0;
    case WM_ERASEBKGND:
      return 1;
    case WM_SETTEXT:
      return OnSetText(window, wParam, lParam);
    case WM_LBUTTONDOWN:
      StartBackgroundDrag(window, p->drag);
      return 0;
    case WM_MOUSEMOVE:
      FollowBackgroundDrag(window, p->drag);
      return 0;
    case WM_LBUTTONUP:
    case WM_CAPTURECHANGED:
      EndBackgroundDrag(window, p->drag);
      return 0;
    case MWM_NOTIFY:
      OnNotify(window, *p, wParam, reinterpret_cast<HWND>(lParam));
      return 0;
    case WM_QUERYNEWPALETTE:
      OnPalette(window, *p);
      return 1;
    case WM_PALETTECHANGED:
      if (reinterpret_cast<HWND>(wParam) != window) OnPalette(window, *p);
      return 0;
    case WM_CLOSE:
      HideInPlace(window);
      return 0;
    default:
      return DefWindowProcA(window, message, wParam, lParam);
  }
}

}  // namespace qv::puzzle_win

namespace qv {

HWND CreatePreviewWindow(HWND owner) {
  using namespace puzzle_win;
  if (g_preview && IsWindow(g_preview)) return g_preview;
  const std::string caption = LocalizedString(120, 60);
  g_preview = CreateWindowExA(0, kPreviewClass, caption.c_str(), WS_POPUP | WS_CLIPCHILDREN,
                              ScreenWidth() / 4, ScreenHeight() / 2,
                              g_size.width + kPreviewExtraWidth,
                              g_size.height + kPreviewExtraHeight, owner, nullptr,
                              GetModuleHandleA(nullptr), nullptr);
  SetPreviewWindow(g_preview);
  return g_preview;
}

void ActualizarPreview() {
  using namespace puzzle_win;
  HideInPlace(g_preview);
  g_reduced.Reset();
  HIMAGE picture = PuzzlePicture();
  g_size = picture ? PreviewSizeFor(ImageWidth(picture), ImageHeight(picture))
                   : PreviewSizeFor(0, 0);
  if (picture && !ScalePicture(picture, g_size.width, g_size.height, g_reduced)) {
    g_size = PreviewSizeFor(0, 0);  // no memory for it: the empty preview
  }
  if (!g_preview) return;
  SetWindowPos(g_preview, nullptr, 0, 0, g_size.width + kPreviewExtraWidth,
               g_size.height + kPreviewExtraHeight,
               SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOOWNERZORDER);
  if (PreviewRecord* p = widget::RecordOf<PreviewRecord>(g_preview)) {
    SetWindowPos(p->close, nullptr, g_size.width - 22, 6, 0, 0,
                 SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
  }
  InvalidateRect(g_preview, nullptr, FALSE);
}

void ShowPreview() {
  ShowInPlace(puzzle_win::g_preview);
}

}  // namespace qv
