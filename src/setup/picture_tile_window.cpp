// CWNDPREVFS: one picture tile of the new-game screen: a thumbnail of a picture file, or the
// tile that brings in a photograph of the player's own.
#include <string>
#include <vector>

#include "core/look.h"
#include "core/window_helpers.h"
#include "graphics/bitmap_file.h"
#include "graphics/himage_draw.h"
#include "graphics/himage_ops.h"
#include "setup/new_game_logic.h"
#include "setup/new_game_parts.h"
#include "widgets/widget_messages.h"
#include "widgets/widget_window.h"

namespace qv {
namespace {

using widget::RecordOf;

constexpr int kInset = 4;  // frame around the thumbnail

// A thumbnail as the file stores it (4, 8 or 24 bits), ready for StretchDIBits.
struct Thumbnail {
  std::vector<std::uint8_t> info;  // header and colours
  std::vector<std::uint8_t> bits;
  int width = 0;
  int height = 0;
};

struct TileRecord {
  int picture = -1;  // or kOwnPictureTile
  std::string caption;  // the own-picture tile's
  bool available = false;
  bool selected = false;
  bool pressed = false;
  bool hover = false;
  HIMAGE backdrop = nullptr;
  Thumbnail thumbnail;
};

bool ReadThumbnail(const char* path, int boxWidth, int boxHeight, Thumbnail* out) {
  BitmapFile file;
  if (!file.Open(path)) return false;
  BitmapInfoHeader header{};
  if (!file.GetHeader(&header)) return false;
  const BitmapSize size = file.GetSize();
  const int storedHeight = size.height < 0 ? -size.height : size.height;
  const newgame::Size fit = newgame::FitWithin(size.width, storedHeight, boxWidth, boxHeight);
  const int bitCount = header.biBitCount;
  if (bitCount != 4 && bitCount != 8 && bitCount != 24) return false;
  // Keep the file's row order: a negative height reads top-down rows.
  const int signedHeight = size.height < 0 ? -fit.height : fit.height;
  out->bits.assign(static_cast<std::size_t>(DibRowBytes(fit.width, bitCount) * fit.height), 0);
  if (!file.ReadScaled(fit.width, signedHeight, out->bits.data())) return false;
  const int colours = file.ColourCount();
  out->info.assign(sizeof(BITMAPINFOHEADER) + 4 * static_cast<std::size_t>(colours), 0);
  auto* info = reinterpret_cast<BITMAPINFOHEADER*>(out->info.data());
  info->biSize = sizeof(BITMAPINFOHEADER);
  info->biWidth = fit.width;
  info->biHeight = signedHeight;
  info->biPlanes = 1;
  info->biBitCount = static_cast<WORD>(bitCount);
  info->biCompression = BI_RGB;
  info->biClrUsed = static_cast<DWORD>(colours);
  if (colours > 0 &&
      !file.ReadColours(0, colours,
                        reinterpret_cast<RgbQuad*>(out->info.data() + sizeof(BITMAPINFOHEADER)))) {
    return false;
  }
  out->width = fit.width;
  out->height = fit.height;
  return true;
}

void FillColour(HDC dc, const RECT& rect, COLORREF colour) {
  HBRUSH brush = CreateSolidBrush(colour);
  FillRect(dc, &rect, brush);
  DeleteObject(brush);
}

void Frame(HDC dc, RECT rect, int thickness, COLORREF colour) {
  for (int i = 0; i < thickness; ++i) {
    HBRUSH brush = CreateSolidBrush(colour);
    FrameRect(dc, &rect, brush);
    DeleteObject(brush);
    InflateRect(&rect, -1, -1);
  }
}

// An unreadable file: a dark slot crossed out.
void DrawUnavailable(HDC dc, const RECT& box) {
  FillColour(dc, box, RGB(70, 52, 38));
  HPEN pen = CreatePen(PS_SOLID, 3, RGB(170, 60, 40));
  widget::SelectInScope select(dc, pen);
  const int cx = (box.left + box.right) / 2;
  const int cy = (box.top + box.bottom) / 2;
  MoveToEx(dc, cx - 12, cy - 12, nullptr);
  LineTo(dc, cx + 12, cy + 12);
  MoveToEx(dc, cx + 12, cy - 12, nullptr);
  LineTo(dc, cx - 12, cy + 12);
  SelectObject(dc, GetStockObject(BLACK_PEN));
  DeleteObject(pen);
}

// The own-picture tile: a camera in the interface's cream over its caption, lit gold under the
// pointer like the chosen picture's frame.
void DrawOwnPicture(HDC dc, const RECT& box, const std::string& caption, bool lit) {
  const COLORREF ink = lit ? kHighlightColour : kInterfaceTextColour;
  const COLORREF recess = RGB(58, 40, 28);
  const int cx = (box.left + box.right) / 2;
  const int top = box.top + 6;
  HPEN pen = CreatePen(PS_SOLID, 1, ink);
  HBRUSH body = CreateSolidBrush(ink);
  HBRUSH dark = CreateSolidBrush(recess);
  {
    widget::SelectInScope usePen(dc, pen);
    widget::SelectInScope useBrush(dc, body);
    // The viewfinder's hump, then the body with rounded corners.
    RoundRect(dc, cx - 8, top, cx + 8, top + 8, 3, 3);
    RoundRect(dc, cx - 20, top + 5, cx + 20, top + 31, 7, 7);
    // The lens: a dark ring, a cream ring and a dark glass with a highlight.
    SelectObject(dc, dark);
    Ellipse(dc, cx - 10, top + 8, cx + 10, top + 28);
    SelectObject(dc, body);
    Ellipse(dc, cx - 7, top + 11, cx + 7, top + 25);
    SelectObject(dc, dark);
    Ellipse(dc, cx - 5, top + 13, cx + 5, top + 23);
    SelectObject(dc, body);
    Ellipse(dc, cx - 3, top + 14, cx, top + 17);
    // The flash window.
    SelectObject(dc, dark);
    Rectangle(dc, cx + 12, top + 8, cx + 17, top + 12);
  }
  DeleteObject(dark);
  DeleteObject(body);
  DeleteObject(pen);

  widget::FontHandle font(CreateFontA(12, 0, 0, 0, FW_BOLD, 0, 0, 0, DEFAULT_CHARSET, 0, 0,
                                      ANTIALIASED_QUALITY, 0, kProgramFace));
  widget::SelectInScope useFont(dc, font.get());
  SetBkMode(dc, TRANSPARENT);
  SetTextColor(dc, ink);
  RECT text{box.left + 1, top + 35, box.right - 1, box.bottom};
  DrawTextA(dc, caption.c_str(), -1, &text, DT_CENTER | DT_WORDBREAK | DT_NOPREFIX);
}

void Compose(HWND window, const TileRecord& t, HDC dc, int width, int height) {
  DrawBackdropUnder(dc, window, t.backdrop, width, height);
  if (t.picture == -1) return;
  const RECT whole{0, 0, width, height};
  const RECT box{kInset, kInset, width - kInset, height - kInset};
  // The slot: a dark recess, the thumbnail centred in it.
  FillColour(dc, RECT{2, 2, width - 2, height - 2}, RGB(58, 40, 28));
  if (t.picture == kOwnPictureTile) {
    DrawOwnPicture(dc, box, t.caption, t.hover);
  } else if (t.available) {
    const int x = box.left + (box.right - box.left - t.thumbnail.width) / 2;
    const int y = box.top + (box.bottom - box.top - t.thumbnail.height) / 2;
    StretchDIBits(dc, x, y, t.thumbnail.width, t.thumbnail.height, 0, 0, t.thumbnail.width,
                  t.thumbnail.height, t.thumbnail.bits.data(),
                  reinterpret_cast<const BITMAPINFO*>(t.thumbnail.info.data()), DIB_RGB_COLORS,
                  SRCCOPY);
  } else {
    DrawUnavailable(dc, box);
  }
  if (t.selected) {
    Frame(dc, whole, 1, RGB(90, 50, 10));
    RECT inner{1, 1, width - 1, height - 1};
    Frame(dc, inner, 3, RGB(250, 200, 70));
  } else if (t.hover) {
    RECT inner{1, 1, width - 1, height - 1};
    Frame(dc, inner, 2, RGB(200, 150, 70));
  } else {
    RECT inner{1, 1, width - 1, height - 1};
    Frame(dc, inner, 1, RGB(120, 85, 45));
  }
}

void OnPaint(HWND window, HDC printDc) {
  TileRecord* t = RecordOf<TileRecord>(window);
  widget::PaintWindow(window, printDc, [&](HDC dc, const RECT&) {
    RECT client;
    GetClientRect(window, &client);
    widget::MemorySurface surface(dc, client.right, client.bottom);
    if (!t || !surface.ok()) return;
    Compose(window, *t, surface.dc(), client.right, client.bottom);
    BitBlt(dc, 0, 0, client.right, client.bottom, surface.dc(), 0, 0, SRCCOPY);
  });
}

LRESULT OnSetOwnPicture(HWND window, TileRecord& t, const char* caption) {
  t.thumbnail = Thumbnail{};
  t.picture = kOwnPictureTile;
  t.available = true;
  t.selected = false;
  t.caption = caption ? caption : "";
  InvalidateRect(window, nullptr, FALSE);
  return 1;
}

LRESULT OnSetPicture(HWND window, TileRecord& t, WPARAM index, const char* path) {
  t.thumbnail = Thumbnail{};
  t.caption.clear();
  t.available = false;
  t.picture = path ? static_cast<int>(index) : -1;
  if (path) {
    RECT client;
    GetClientRect(window, &client);
    t.available = ReadThumbnail(path, client.right - 2 * kInset, client.bottom - 2 * kInset,
                                &t.thumbnail);
  }
  InvalidateRect(window, nullptr, FALSE);
  return t.available ? 1 : 0;
}

void SetFlag(HWND window, bool& flag, bool value) {
  if (flag == value) return;
  flag = value;
  InvalidateRect(window, nullptr, FALSE);
}

void OnMouseMove(HWND window, TileRecord& t) {
  if (t.hover || t.picture == -1) return;
  TRACKMOUSEEVENT track{};
  track.cbSize = sizeof track;
  track.dwFlags = TME_LEAVE;
  track.hwndTrack = window;
  TrackMouseEvent(&track);
  SetFlag(window, t.hover, true);
}

void OnLButtonDown(HWND window, TileRecord& t) {
  if (t.picture == -1) return;
  t.pressed = true;
  SetCapture(window);
}

void OnLButtonUp(HWND window, TileRecord& t) {
  if (!t.pressed) return;
  t.pressed = false;
  ReleaseCapture();
  if (!widget::PointerOverWindow(window)) return;
  // The parent may rebuild the tile while it handles the click: nothing touches t after it.
  widget::NotifyParent(window, MWN_CLICKED);
}

LRESULT OnSetBackdrop(HWND window, TileRecord& t, LPARAM backdrop) {
  t.backdrop = reinterpret_cast<HIMAGE>(backdrop);
  InvalidateRect(window, nullptr, FALSE);
  return 1;
}

void OnCaptureChanged(HWND window, TileRecord& t, LPARAM gainer) {
  if (t.pressed && widget::CaptureTakenByOther(window, gainer)) t.pressed = false;
}

LRESULT CALLBACK PictureTileProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  TileRecord* t = RecordOf<TileRecord>(window);
  switch (message) {
    case WM_CREATE:
      return widget::CreateRecord<TileRecord>(window) ? 0 : -1;
    case WM_DESTROY:
      widget::DestroyRecord<TileRecord>(window);
      return 0;
    case WM_ERASEBKGND:
      return 1;
    case WM_PAINT:
      OnPaint(window, nullptr);
      return 0;
    case WM_PRINTCLIENT:
      OnPaint(window, reinterpret_cast<HDC>(wParam));
      return 0;
    default:
      break;
  }
  if (!t) return DefWindowProcA(window, message, wParam, lParam);
  switch (message) {
    case NGM_SETBACKDROP:
      return OnSetBackdrop(window, *t, lParam);
    case NGM_SETPICTURE:
      return OnSetPicture(window, *t, wParam, reinterpret_cast<const char*>(lParam));
    case NGM_SETOWNPICTURE:
      return OnSetOwnPicture(window, *t, reinterpret_cast<const char*>(lParam));
    case NGM_SETSELECTED:
      SetFlag(window, t->selected, lParam != 0);
      return 1;
    case NGM_GETPICTURE:
      return t->picture;
    case NGM_GETAVAILABLE:
      return t->available ? 1 : 0;
    case NGM_SETUNAVAILABLE:
      SetFlag(window, t->available, false);
      return 1;
    case NGM_GETSELECTED:
      return t->selected ? 1 : 0;
    case WM_MOUSEMOVE:
      OnMouseMove(window, *t);
      return 0;
    case WM_MOUSELEAVE:
      SetFlag(window, t->hover, false);
      return 0;
    case WM_LBUTTONDOWN:
      OnLButtonDown(window, *t);
      return 0;
    case WM_LBUTTONUP:
      OnLButtonUp(window, *t);
      return 0;
    case WM_CAPTURECHANGED:
      OnCaptureChanged(window, *t, lParam);
      return 0;
    default:
      return DefWindowProcA(window, message, wParam, lParam);
  }
}

}  // namespace

bool RegisterPictureTileClass(HINSTANCE instance) {
  return RegisterScreenClass(instance, kPictureTileClass, PictureTileProc, 0, nullptr, IDC_HAND);
}

void DrawBackdropUnder(HDC dc, HWND child, HIMAGE backdrop, int width, int height) {
  if (!backdrop) {
    widget::FillBlack(dc, RECT{0, 0, width, height});
    return;
  }
  POINT origin{0, 0};
  MapWindowPoints(child, GetParent(child), &origin, 1);
  ImageDrawToContext(dc, 0, 0, width, height, backdrop, origin.x, origin.y, kRopSrcCopy);
}

void DrawPictureScaled(HDC dc, HIMAGE picture, int x, int y, int width, int height) {
  if (!picture || width < 1 || height < 1) return;
  const auto* header = DibHeader(picture);
  SetStretchBltMode(dc, HALFTONE);
  SetBrushOrgEx(dc, 0, 0, nullptr);
  StretchDIBits(dc, x, y, width, height, 0, 0, header->biWidth, header->biHeight,
                DibPixels(picture), reinterpret_cast<const BITMAPINFO*>(picture), DIB_RGB_COLORS,
                SRCCOPY);
}

}  // namespace qv
