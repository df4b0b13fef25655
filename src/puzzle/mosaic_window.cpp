// CWNDMOSAIC: the table-texture screen, and the texture the table shows.
#include <windows.h>

#include <memory>

#include "graphics/control_dc.h"
#include "graphics/himage_draw.h"
#include "graphics/himage_ops.h"
#include "puzzle/puzzle_windows.h"
#include "puzzle/puzzle_windows_internal.h"
#include "puzzle/texture.h"
#include "core/app.h"
#include "widgets/widget_classes.h"
#include "widgets/widget_window.h"

namespace qv {
namespace {

constexpr int kTextureCount = 10;
constexpr std::uint32_t kTextureBase = 6000;

int g_textureIndex = 0;
std::unique_ptr<ControlDC> g_texture;  // lent to the engine while it is the table's tile

}  // namespace

bool SetTableTextureIndex(int index) {
  if (index < 0 || index >= kTextureCount) return false;
  auto tile = std::make_unique<ControlDC>();
  if (!tile->LoadById(kTextureBase + static_cast<std::uint32_t>(index))) return false;
  if (!MosaicoPuzzle(tile->Dib())) return false;
  g_texture = std::move(tile);  // the old tile is freed only now that the engine let it go
  g_textureIndex = index;
  return true;
}

int TableTextureIndex() { return g_textureIndex; }

}  // namespace qv

namespace qv::puzzle_win {
namespace {

using widget::CreateRecord;
using widget::DestroyRecord;
using widget::RecordOf;

constexpr std::uint32_t kBackgroundImage = 133;
constexpr std::uint32_t kCloseImage = 131;
constexpr std::uint32_t kNextImage = 132;
constexpr std::uint32_t kStripImage = 134;
constexpr std::uint32_t kScrollImage = 135;
constexpr std::uint32_t kTitleBase = 2130;
constexpr int kStripFrames = 10;
constexpr int kTitleX = 17;
constexpr int kTitleY = 10;

struct MosaicRecord {
  std::unique_ptr<ControlDC> background;  // handed over by OpenMosaicScreen
  // The localized title over the background at (17, 10). It is drawn over the background when
  // painting rather than copied into it, as the two pictures need not share one colour table.
  ControlDC title;
  ControlDC closeImage, nextImage, stripImage, scrollImage;
  HWND close = nullptr, next = nullptr, preview = nullptr, scroll = nullptr;
  BackgroundDrag drag;
};

HWND Child(HWND parent, const char* className, int x, int y, const ControlDC& picture) {
  return CreatePictureChild(parent, className, x, y, picture.Dib());
}

void BuildChildren(HWND window, MosaicRecord& m) {
  m.closeImage.LoadById(kCloseImage);
  m.nextImage.LoadById(kNextImage);
  m.stripImage.LoadById(kStripImage);
  m.scrollImage.LoadById(kScrollImage);
  const int index = TableTextureIndex();

  m.close = Child(window, kCommandClass, 0, 290, m.closeImage);
  m.next = Child(window, kAnimClass, 135, 264, m.nextImage);
  SendMessageA(m.next, anim::MWM_SETCOLUMNS, 0, kStripFrames);
  SendMessageA(m.next, anim::MWM_SETFRAME, 0, 0);
  m.preview = Child(window, kAnimClass, 116, 110, m.stripImage);
  SendMessageA(m.preview, anim::MWM_SETCOLUMNS, 0, kStripFrames);
  SendMessageA(m.preview, anim::MWM_SETFRAME, 0, index);
  m.scroll = Child(window, kScrollClass, 236, 83, m.scrollImage);
  SendMessageA(m.scroll, scroll::MWM_SETPARTSIZE1, 0, 37);
  SendMessageA(m.scroll, scroll::MWM_SETPARTSIZE2, 0, 83);
  SendMessageA(m.scroll, scroll::MWM_SETPARTSIZE3, 0, 39);
  SendMessageA(m.scroll, scroll::MWM_SETMINIMUM, 0, -9);
  SendMessageA(m.scroll, scroll::MWM_SETMAXIMUM, 0, 0);
  SendMessageA(m.scroll, scroll::MWM_SETSTEP, 0, 1);
  SendMessageA(m.scroll, scroll::MWM_SETDRAGTHRESHOLD, 0, 40);
  // The top of the scroll is texture 0.
  SendMessageA(m.scroll, scroll::MWM_SETVALUE, 0, -index);
}

LRESULT OnCreate(HWND window, const CREATESTRUCTA* create) {
  auto* background = static_cast<ControlDC*>(create->lpCreateParams);
  if (!background) return -1;
  auto* m = CreateRecord<MosaicRecord>(window);
  if (!m) return -1;
  m->background.reset(background);
  m->title.LoadById(kTitleBase + static_cast<std::uint32_t>(CurrentLanguage()));
  BuildChildren(window, *m);
  return 0;
}

void ShowTexture(MosaicRecord& m, int index) {
  SendMessageA(m.preview, anim::MWM_SETFRAME, 0, index);
  SetTableTextureIndex(index);
}

void OnNotify(HWND window, MosaicRecord& m, WPARAM code, LPARAM lParam) {
  HWND sender = reinterpret_cast<HWND>(lParam);
  // The texture preview is an animated widget too, but its frame is the texture shown: only the
  // next button takes the buttons' opening animation.
  if (sender == m.next) ButtonFeedback(sender, static_cast<int>(code));
  if (code != MWN_CLICKED) return;
  if (sender == m.close) {
    PostMessageA(window, WM_CLOSE, 0, 0);
  } else if (sender == m.scroll) {
    const int value = static_cast<int>(SendMessageA(m.scroll, scroll::MWM_GETVALUE, 0, 0));
    ShowTexture(m, -value);
  } else if (sender == m.next) {
    const int index = (TableTextureIndex() + 1) % kStripFrames;
    SendMessageA(m.scroll, scroll::MWM_SETVALUE, 0, -index);
    ShowTexture(m, index);
  }
}

void OnPaint(HWND window, const MosaicRecord& m) {
  PAINTSTRUCT ps;
  HDC dc = BeginPaint(window, &ps);
  if (dc && m.background->Dib()) ImageFill(dc, ps.rcPaint, m.background->Dib(), kRopSrcCopy);
  if (dc && m.title.Dib()) {
    const RECT title{kTitleX, kTitleY, kTitleX + ImageWidth(m.title.Dib()),
                     kTitleY + ImageHeight(m.title.Dib())};
    RECT part;
    if (IntersectRect(&part, &title, &ps.rcPaint)) {
      ImageDrawToContext(dc, part.left, part.top, part.right - part.left, part.bottom - part.top,
                         m.title.Dib(), part.left - kTitleX, part.top - kTitleY, kRopSrcCopy);
    }
  }
  EndPaint(window, &ps);
}

void OnClose(HWND window) {
  EnableOwnerOnClose(window);
  DestroyWindow(window);
}

void OnDestroy(HWND window) {
  EnableOwnerOnClose(window);
  DestroyRecord<MosaicRecord>(window);
}

// Escape and Enter both close: the texture is applied as it is chosen.
bool OnKey(HWND window, WPARAM key) {
  if (key != VK_ESCAPE && key != VK_RETURN) return false;
  PostMessageA(window, WM_CLOSE, 0, 0);
  return true;
}

}  // namespace

LRESULT CALLBACK MosaicWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_CREATE) return OnCreate(window, reinterpret_cast<CREATESTRUCTA*>(lParam));
  MosaicRecord* m = RecordOf<MosaicRecord>(window);
  if (!m) return DefWindowProcA(window, message, wParam, lParam);
  switch (message) {
    case WM_PAINT:
      OnPaint(window, *m);
      return 0;
    case WM_ERASEBKGND:
      return 1;
    case MWM_NOTIFY:
      OnNotify(window, *m, wParam, lParam);
      return 0;
    case WM_LBUTTONDOWN:
      StartBackgroundDrag(window, m->drag);
      return 0;
    case WM_MOUSEMOVE:
      FollowBackgroundDrag(window, m->drag);
      return 0;
    case WM_LBUTTONUP:
    case WM_CAPTURECHANGED:
      EndBackgroundDrag(window, m->drag);
      return 0;
    case WM_CHAR:
      OnKey(window, wParam);
      return 0;
    case UM_CHILDCHAR:
      return OnKey(window, wParam) ? 1 : 0;
    case WM_QUERYNEWPALETTE:
      RedrawForPalette(window);
      return 1;
    case WM_PALETTECHANGED:
      RedrawForPalette(window, reinterpret_cast<HWND>(wParam));
      return 0;
    case WM_CLOSE:
      OnClose(window);
      return 0;
    case WM_DESTROY:
      OnDestroy(window);
      return 0;
    default:
      return DefWindowProcA(window, message, wParam, lParam);
  }
}

}  // namespace qv::puzzle_win

namespace qv {

HWND OpenMosaicScreen(HWND parent) {
  auto background = std::make_unique<ControlDC>();
  if (!background->LoadById(puzzle_win::kBackgroundImage)) return nullptr;
  HideAllBoxesBut(nullptr);
  HWND screen = OpenCentredScreen(puzzle_win::kMosaicClass, WS_POPUP | WS_VISIBLE | WS_CLIPCHILDREN,
                                  background->Width(), background->Height(), parent,
                                  background.get());
  if (!screen) return nullptr;
  background.release();  // the screen's record owns it now
  return screen;
}

}  // namespace qv
