// CWNDIMGPREV: a picture file shown over the whole screen until a key or a double-click.
#include <windows.h>
#include <vfw.h>

#include <cstring>
#include <memory>
#include <new>

#include "graphics/bitmap_file.h"
#include "puzzle/frame_logic.h"
#include "puzzle/puzzle_windows.h"
#include "puzzle/puzzle_windows_internal.h"
#include "core/app.h"
#include "widgets/widget_window.h"

namespace qv::puzzle_win {
namespace {

using widget::RecordOf;

// Everything the viewer holds: made before the window, owned by it once it exists.
struct ViewerRecord {
  std::unique_ptr<std::uint8_t[]> info;  // header and colour table of the scaled picture
  std::unique_ptr<std::uint8_t[]> bits;
  int width = 0;
  int height = 0;
  HDRAWDIB drawDib = nullptr;
};

void OnPaint(HWND window, ViewerRecord& v) {
  PAINTSTRUCT ps;
  HDC dc = BeginPaint(window, &ps);
  if (dc) {
    RECT client;
    GetClientRect(window, &client);
    const int x = (client.right - v.width) / 2;
    const int y = (client.bottom - v.height) / 2;
    // Black around the picture, the picture itself in one draw.
    ExcludeClipRect(dc, x, y, x + v.width, y + v.height);
    FillRect(dc, &client, static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH)));
    SelectClipRgn(dc, nullptr);
    if (v.drawDib) {
      DrawDibDraw(v.drawDib, dc, x, y, v.width, v.height,
                  reinterpret_cast<LPBITMAPINFOHEADER>(v.info.get()), v.bits.get(), 0, 0,
                  v.width, v.height, 0);
    }
  }
  EndPaint(window, &ps);
}

void Close(HWND window) {
  EnableOwnerOnClose(window);
  DestroyWindow(window);
}

LRESULT OnCreate(HWND window, const CREATESTRUCTA* create) {
  auto* v = static_cast<ViewerRecord*>(create->lpCreateParams);
  if (!v) return -1;
  SetWindowLongPtrA(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(v));
  v->drawDib = DrawDibOpen();
  return 0;
}

void OnDestroy(HWND window, ViewerRecord* v) {
  EnableOwnerOnClose(window);
  if (v->drawDib) DrawDibClose(v->drawDib);
  delete v;
  SetWindowLongPtrA(window, GWLP_USERDATA, 0);
}

}  // namespace

LRESULT CALLBACK ViewerWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_CREATE) return OnCreate(window, reinterpret_cast<CREATESTRUCTA*>(lParam));
  ViewerRecord* v = RecordOf<ViewerRecord>(window);
  if (!v) return DefWindowProcA(window, message, wParam, lParam);
  switch (message) {
    case WM_PAINT:
      OnPaint(window, *v);
      return 0;
    case WM_ERASEBKGND:
      return 1;
    case WM_CHAR:
    case WM_LBUTTONDBLCLK:
    case WM_CLOSE:
      Close(window);
      return 0;
    case WM_DESTROY:
      OnDestroy(window, v);
      return 0;
    default:
      return DefWindowProcA(window, message, wParam, lParam);
  }
}

namespace {

// Reads the file scaled to fit the screen into a new record; null when it cannot be read.
std::unique_ptr<ViewerRecord> LoadScaledPicture(const char* path) {
  BitmapFile file;
  if (!path || !file.Open(path)) return nullptr;
  BitmapInfoHeader header{};
  if (!file.GetHeader(&header)) return nullptr;
  const int storedHeight = header.biHeight;
  const PictureSize size = ViewerSizeFor(ScreenWidth(), ScreenHeight(), header.biWidth,
                                         storedHeight < 0 ? -storedHeight : storedHeight);
  if (size.width < 1 || size.height < 1) return nullptr;
  auto v = std::make_unique<ViewerRecord>();
  const std::size_t infoBytes = sizeof(BitmapInfoHeader) + 4u * static_cast<std::size_t>(file.ColourCount());
  const std::int64_t rowBytes = DibRowBytes(size.width, header.biBitCount);
  const std::int64_t pixelBytes = rowBytes * size.height;
  v->info.reset(new (std::nothrow) std::uint8_t[infoBytes]);
  v->bits.reset(new (std::nothrow) std::uint8_t[static_cast<std::size_t>(pixelBytes)]);
  if (!v->info || !v->bits || !file.GetBitmapInfo(v->info.get())) return nullptr;
  // The scaled rows come out bottom-up, as the header below says.
  if (!file.ReadScaled(size.width, size.height * (storedHeight < 0 ? -1 : 1), v->bits.get())) {
    return nullptr;
  }
  auto* out = reinterpret_cast<BitmapInfoHeader*>(v->info.get());
  out->biWidth = size.width;
  out->biHeight = storedHeight < 0 ? -size.height : size.height;
  out->biSizeImage = static_cast<std::uint32_t>(pixelBytes);
  v->width = size.width;
  v->height = size.height;
  return v;
}

}  // namespace
}  // namespace qv::puzzle_win

namespace qv {

bool OpenPictureViewer(HWND parent, const char* path) {
  std::unique_ptr<puzzle_win::ViewerRecord> v = puzzle_win::LoadScaledPicture(path);
  if (!v) return false;
  HWND viewer = OpenCentredScreen(puzzle_win::kViewerClass, WS_POPUP | WS_VISIBLE | WS_MAXIMIZE,
                                  ScreenWidth(), ScreenHeight(), parent, v.get());
  if (!viewer) return false;
  v.release();  // the window owns it and frees it when it is destroyed
  return true;
}

}  // namespace qv
