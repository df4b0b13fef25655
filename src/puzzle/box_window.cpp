// CWNDBOX: a piece box's movable, resizable frame around one box area.
#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>

#include "graphics/control_dc.h"
#include "graphics/himage_draw.h"
#include "graphics/himage_ops.h"
#include "puzzle/frame_logic.h"
#include "puzzle/puzzle_model.h"
#include "puzzle/puzzle_windows.h"
#include "puzzle/puzzle_windows_internal.h"
#include "system/assert.h"
#include "core/app.h"
#include "core/resource_ids.h"
#include "widgets/widget_classes.h"
#include "widgets/widget_window.h"

namespace qv::puzzle_win {
namespace {

using widget::CreateRecord;
using widget::DestroyRecord;
using widget::RecordOf;

constexpr int kCloseId = 10;
constexpr int kRenameId = 11;
constexpr int kButtonSide = 22;
constexpr int kNameBytes = 40;
constexpr UINT kRenamePrompt = 20;
constexpr std::uint32_t kTitleImage = 225;
constexpr int kTitleEndWidth = 8;  // the title strip's rim and rounded corner at each end
constexpr std::uint32_t kSideImage = 227;
constexpr std::uint32_t kBottomImage = 228;
constexpr std::uint32_t kCloseImage = 229;
constexpr std::uint32_t kRenameImage = 230;
constexpr std::uint32_t kEmptyBoxImage = 200;
constexpr std::uint32_t kFullBoxImage = 600;

// Pictures and drawing objects shared by the six frames; the button pictures are lent to the
// widgets and so live as long as the process.
struct BoxArt {
  ControlDC title, side, bottom, close, rename;
  ControlDC emptyButton[kBoxCount], fullButton[kBoxCount];
  widget::FontHandle nameFont;
  bool loaded = false;
};

BoxArt& Art() {
  static BoxArt* art = new BoxArt();
  if (!art->loaded) {
    art->loaded = true;
    art->title.LoadById(kTitleImage);
    art->side.LoadById(kSideImage);
    art->bottom.LoadById(kBottomImage);
    art->close.LoadById(kCloseImage);
    art->rename.LoadById(kRenameImage);
    art->nameFont.Reset(CreateFontA(20, 0, 0, 0, FW_BOLD, FALSE, FALSE, FALSE, ANSI_CHARSET,
                                    OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY,
                                    DEFAULT_PITCH | FF_SWISS, kProgramFace));
  }
  return *art;
}

int TitleHeight() {
  HIMAGE title = Art().title.Dib();
  return title ? ImageHeight(title) : 24;
}

struct BoxRecord {
  int box = -1;
  HWND area = nullptr;
  HWND closeButton = nullptr;
  HWND renameButton = nullptr;
  char name[kNameBytes] = {};
  FrameDrag drag = FrameDrag::None;
  POINT pressScreen{};
  FrameBox pressFrame;
};

HCURSOR CursorForDrag(FrameDrag mode) {
  LPCSTR name = IDC_ARROW;
  switch (mode) {
    case FrameDrag::Move: name = IDC_SIZEALL; break;
    case FrameDrag::LeftEdge:
    case FrameDrag::RightEdge: name = IDC_SIZEWE; break;
    case FrameDrag::BottomEdge: name = IDC_SIZENS; break;
    case FrameDrag::BottomLeft: name = IDC_SIZENESW; break;
    case FrameDrag::BottomRight: name = IDC_SIZENWSE; break;
    case FrameDrag::None: break;
  }
  return LoadCursorA(nullptr, name);
}

SIZE ClientSize(HWND window) {
  RECT client;
  GetClientRect(window, &client);
  return SIZE{client.right, client.bottom};
}

HWND TitleButton(HWND frame, int id, const ControlDC& picture, const FrameBox& place) {
  return CreatePictureChild(frame, kCommandClass, place.x, place.y, picture.Dib(), id);
}

void SetName(BoxRecord& b, const char* text) {
  std::snprintf(b.name, sizeof b.name, "%s", text ? text : "");
}

LRESULT OnCreate(HWND window, const CREATESTRUCTA* create) {
  auto* b = CreateRecord<BoxRecord>(window);
  if (!b) return -1;
  b->box = static_cast<int>(reinterpret_cast<INT_PTR>(create->lpCreateParams));
  SetName(*b, create->lpszName);
  BoxArt& art = Art();
  const int t = TitleHeight();
  const FrameBox area = BoxAreaRect(create->cx, create->cy, t);
  HWND owner = BoxButton(b->box) ? BoxButton(b->box) : window;
  b->area = CreateAreaWindow(b->box, window,
                             RECT{area.x, area.y, area.x + area.width, area.y + area.height},
                             owner);
  b->closeButton = TitleButton(window, kCloseId, art.close, BoxCloseButtonRect(create->cx, kButtonSide));
  b->renameButton =
      TitleButton(window, kRenameId, art.rename, BoxRenameButtonRect(create->cx, kButtonSide));
  return 0;
}

// Repeats a picture along a strip of the frame, clipped to its length.
void TileAcross(HDC dc, HIMAGE picture, int x, int y, int width, int height) {
  if (!picture || width <= 0 || height <= 0) return;
  const int step = ImageWidth(picture);
  for (int at = 0; at < width; at += step) {
    ImageDrawToContext(dc, x + at, y, std::min(step, width - at), std::min(height, ImageHeight(picture)),
                       picture, 0, 0, kRopSrcCopy);
  }
}

// Draws a strip with bordered ends at any width: both ends as they are and the middle stretched
// between them, so that a widened title keeps one rim at each end and its light runs evenly.
void StripAcross(HDC dc, HIMAGE picture, int width, int height) {
  if (!picture || width <= 0 || height <= 0) return;
  const int pictureWidth = ImageWidth(picture);
  const int end = std::min(kTitleEndWidth, pictureWidth / 3);
  const int rows = std::min(height, ImageHeight(picture));
  const int left = std::min(end, width / 2);
  const int right = std::min(end, width - left);
  ImageDrawToContext(dc, 0, 0, left, rows, picture, 0, 0, kRopSrcCopy);
  ImageDrawToContext(dc, width - right, 0, right, rows, picture, pictureWidth - right, 0,
                     kRopSrcCopy);
  const int middle = width - left - right;
  if (middle <= 0) return;
  const int stretchMode = SetStretchBltMode(dc, COLORONCOLOR);
  StretchDIBits(dc, left, 0, middle, rows, end, ImageHeight(picture) - rows,
                pictureWidth - 2 * end, rows, DibPixels(picture),
                reinterpret_cast<const BITMAPINFO*>(picture), DIB_RGB_COLORS, SRCCOPY);
  SetStretchBltMode(dc, stretchMode);
}

void TileDown(HDC dc, HIMAGE picture, int x, int y, int width, int height) {
  if (!picture || width <= 0 || height <= 0) return;
  const int step = ImageHeight(picture);
  for (int at = 0; at < height; at += step) {
    ImageDrawToContext(dc, x, y + at, std::min(width, ImageWidth(picture)),
                       std::min(step, height - at), picture, 0, 0, kRopSrcCopy);
  }
}

void PaintFrame(HDC dc, const BoxRecord& b, SIZE size) {
  BoxArt& art = Art();
  const int t = TitleHeight();
  const RECT all{0, 0, size.cx, size.cy};
  FillRect(dc, &all, static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH)));
  StripAcross(dc, art.title.Dib(), size.cx, t);
  TileDown(dc, art.side.Dib(), 0, t, kBoxBorder, size.cy - t);
  TileDown(dc, art.side.Dib(), size.cx - kBoxBorder, t, kBoxBorder, size.cy - t);
  TileAcross(dc, art.bottom.Dib(), kBoxBorder, t, size.cx - 2 * kBoxBorder, kBoxBorder);
  TileAcross(dc, art.bottom.Dib(), 0, size.cy - kBoxBorder, size.cx, kBoxBorder);
  widget::SelectInScope font(dc, art.nameFont.get());
  SetBkMode(dc, TRANSPARENT);
  RECT text{10, 0, BoxRenameButtonRect(size.cx, kButtonSide).x - 4, t};
  SetTextColor(dc, RGB(20, 10, 0));
  OffsetRect(&text, 1, 1);
  DrawTextA(dc, b.name, -1, &text, DT_SINGLELINE | DT_VCENTER | DT_LEFT | DT_END_ELLIPSIS | DT_NOPREFIX);
  OffsetRect(&text, -1, -1);
  SetTextColor(dc, RGB(250, 232, 190));
  DrawTextA(dc, b.name, -1, &text, DT_SINGLELINE | DT_VCENTER | DT_LEFT | DT_END_ELLIPSIS | DT_NOPREFIX);
}

void OnPaint(HWND window, const BoxRecord& b) {
  PAINTSTRUCT ps;
  HDC dc = BeginPaint(window, &ps);
  if (dc) {
    const SIZE size = ClientSize(window);
    widget::MemorySurface memory(dc, size.cx, size.cy);
    if (memory.ok()) {
      PaintFrame(memory.dc(), b, size);
      BitBlt(dc, 0, 0, size.cx, size.cy, memory.dc(), 0, 0, SRCCOPY);
    } else {
      PaintFrame(dc, b, size);
    }
  }
  EndPaint(window, &ps);
}

void OnSize(HWND window, BoxRecord& b) {
  const SIZE size = ClientSize(window);
  const FrameBox area = BoxAreaRect(size.cx, size.cy, TitleHeight());
  if (b.area) MoveWindow(b.area, area.x, area.y, area.width, area.height, TRUE);
  const FrameBox close = BoxCloseButtonRect(size.cx, kButtonSide);
  const FrameBox rename = BoxRenameButtonRect(size.cx, kButtonSide);
  if (b.closeButton) SetWindowPos(b.closeButton, nullptr, close.x, close.y, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
  if (b.renameButton) SetWindowPos(b.renameButton, nullptr, rename.x, rename.y, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
  InvalidateRect(window, nullptr, FALSE);
}

void OnButtonDown(HWND window, BoxRecord& b, LPARAM lParam) {
  const SIZE size = ClientSize(window);
  const FrameDrag mode = FrameDragAt(widget::PointX(lParam), widget::PointY(lParam), size.cx,
                                     size.cy, TitleHeight());
  // The area covers the inside of the frame, so every press the frame itself gets is on a strip.
  if (!QV_CHECK(mode != FrameDrag::None, "modo de arrastre no reconocido")) return;
  RECT place;
  GetWindowRect(window, &place);
  b.drag = mode;
  b.pressFrame = FrameBox{place.left, place.top, place.right - place.left, place.bottom - place.top};
  GetCursorPos(&b.pressScreen);
  SetCapture(window);
  SetCursor(CursorForDrag(mode));
}

void OnMouseMove(HWND window, BoxRecord& b) {
  if (b.drag == FrameDrag::None) return;
  POINT now;
  GetCursorPos(&now);
  const FrameBox to =
      DraggedFrame(b.drag, b.pressFrame, now.x - b.pressScreen.x, now.y - b.pressScreen.y);
  const UINT flags = SWP_NOZORDER | SWP_NOACTIVATE | (b.drag == FrameDrag::Move ? SWP_NOSIZE : 0);
  SetWindowPos(window, nullptr, to.x, to.y, to.width, to.height, flags);
  SetCursor(CursorForDrag(b.drag));
}

void EndDrag(HWND window, BoxRecord& b) {
  if (b.drag == FrameDrag::None) return;
  b.drag = FrameDrag::None;
  SetCursor(LoadCursorA(nullptr, IDC_ARROW));
  if (GetCapture() == window) ReleaseCapture();
}

LRESULT OnSetCursor(HWND window, const BoxRecord& b, WPARAM wParam, LPARAM lParam) {
  // Children choose their own cursors.
  if (reinterpret_cast<HWND>(wParam) != window || LOWORD(lParam) != HTCLIENT) return FALSE;
  FrameDrag mode = b.drag;
  if (mode == FrameDrag::None) {
    POINT p;
    GetCursorPos(&p);
    ScreenToClient(window, &p);
    const SIZE size = ClientSize(window);
    mode = FrameDragAt(p.x, p.y, size.cx, size.cy, TitleHeight());
  }
  SetCursor(CursorForDrag(mode));
  return TRUE;
}

void Rename(HWND window) {
  EnableWindow(window, FALSE);
  HWND box = ShowMessageBox(kRenamePrompt, window, true, true);
  // A confirmed empty name is a name too: the box then shows no title.
  if (box && RunMessageBox(box) == 1) {
    const char* name = MessageBoxText().Text();
    SendMessageA(window, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(name ? name : ""));
  }
  EnableWindow(window, TRUE);
}

void ShowAreaState(const BoxRecord& b, int code) {
  HWND button = BoxButton(b.box);
  if (!button) return;
  BoxArt& art = Art();
  ControlDC& picture = code == AREA_OCUPADA ? art.fullButton[b.box] : art.emptyButton[b.box];
  if (!picture.Dib()) {
    picture.LoadById((code == AREA_OCUPADA ? kFullBoxImage : kEmptyBoxImage) +
                     static_cast<std::uint32_t>(b.box));
  }
  if (!picture.Dib()) return;
  SendMessageA(button, MWM_SETIMAGE, 0, reinterpret_cast<LPARAM>(picture.Dib()));
  InvalidateRect(button, nullptr, FALSE);
}

void OnNotify(HWND window, BoxRecord& b, WPARAM code, LPARAM lParam) {
  HWND sender = reinterpret_cast<HWND>(lParam);
  if (sender == b.closeButton && code == MWN_CLICKED) {
    SendMessageA(window, WM_CLOSE, 0, 0);
  } else if (sender == b.renameButton && code == MWN_CLICKED) {
    Rename(window);
  } else if (sender == b.area && (code == AREA_VACIA || code == AREA_OCUPADA)) {
    ShowAreaState(b, static_cast<int>(code));
  }
}

LRESULT OnGetText(const BoxRecord& b, WPARAM size, LPARAM lParam) {
  char* out = reinterpret_cast<char*>(lParam);
  if (!out || size == 0) return 0;
  std::snprintf(out, size, "%s", b.name);
  return static_cast<LRESULT>(std::strlen(out));
}

}  // namespace

void OnDestroy(HWND window, const BoxRecord& b) {
  if (BoxWindow(b.box) == window) SetBoxWindow(b.box, nullptr);
  DestroyRecord<BoxRecord>(window);
}

void OnCaptureChanged(HWND window, BoxRecord& b, LPARAM gainer) {
  if (reinterpret_cast<HWND>(gainer) != window) EndDrag(window, b);
}

LRESULT CALLBACK BoxWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_CREATE) return OnCreate(window, reinterpret_cast<CREATESTRUCTA*>(lParam));
  BoxRecord* b = RecordOf<BoxRecord>(window);
  if (!b) return DefWindowProcA(window, message, wParam, lParam);
  switch (message) {
    case WM_DESTROY:
      OnDestroy(window, *b);
      return 0;
    case WM_PAINT:
      OnPaint(window, *b);
      return 0;
    case WM_ERASEBKGND:
      return 1;
    case WM_SIZE:
      OnSize(window, *b);
      return 0;
    case WM_LBUTTONDOWN:
      OnButtonDown(window, *b, lParam);
      return 0;
    case WM_MOUSEMOVE:
      OnMouseMove(window, *b);
      return 0;
    case WM_LBUTTONUP:
      EndDrag(window, *b);
      return 0;
    case WM_CAPTURECHANGED:
      OnCaptureChanged(window, *b, lParam);
      return 0;
    case WM_SETCURSOR:
      return OnSetCursor(window, *b, wParam, lParam);
    case WM_SETTEXT:
      SetName(*b, reinterpret_cast<const char*>(lParam));
      DefWindowProcA(window, message, wParam, reinterpret_cast<LPARAM>(b->name));
      InvalidateRect(window, nullptr, FALSE);
      return TRUE;
    case WM_GETTEXT:
      return OnGetText(*b, wParam, lParam);
    case WM_GETTEXTLENGTH:
      return static_cast<LRESULT>(std::strlen(b->name));
    case WM_CLOSE:
      HideInPlace(window);
      return 0;
    case MWM_NOTIFY:
      OnNotify(window, *b, wParam, lParam);
      return 0;
    default:
      return DefWindowProcA(window, message, wParam, lParam);
  }
}

}  // namespace qv::puzzle_win

namespace qv {

namespace {

// The word of the default box names in a language; English's when the module lacks it, so that a
// box never starts without a name.
std::string BoxWord(int language) {
  std::string word =
      ModuleString(IDS_BOX_WORD + static_cast<std::uint32_t>(language), kBoxNameMaxLength + 1);
  return word.empty() ? std::string("Box") : word;
}

}  // namespace

bool CreateBoxWindows(HWND mainWindow) {
  bool ok = true;
  const std::string word = BoxWord(CurrentLanguage());
  for (int box = 0; box < kBoxCount; ++box) {
    if (HWND old = BoxWindow(box)) DestroyWindow(old);
    const std::string name = DefaultBoxName(word, box);
    HWND frame = CreateWindowExA(0, puzzle_win::kBoxClass, name.c_str(),
                                 WS_POPUP | WS_CLIPCHILDREN | WS_CLIPSIBLINGS, 60 + 10 * box,
                                 78 + 10 * box, 300, 300, mainWindow, nullptr,
                                 GetModuleHandleA(nullptr),
                                 reinterpret_cast<void*>(static_cast<INT_PTR>(box)));
    SetBoxWindow(box, frame);
    ok = ok && frame && puzzle_win::AreaWindow(box);
  }
  return ok;
}

void RelabelDefaultBoxNames(int oldLanguage) {
  const std::string oldWord = BoxWord(oldLanguage);
  const std::string newWord = BoxWord(CurrentLanguage());
  for (int box = 0; box < kBoxCount; ++box) {
    HWND frame = BoxWindow(box);
    if (!frame) continue;
    char name[kBoxNameMaxLength + 1] = {};
    GetWindowTextA(frame, name, sizeof name);
    const std::string relabelled = RelabelledBoxName(name, oldWord, newWord, box);
    if (relabelled != name) SetWindowTextA(frame, relabelled.c_str());
  }
}

}  // namespace qv
