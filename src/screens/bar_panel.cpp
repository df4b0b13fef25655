// The panels of both bars: their tiles, their hidden buttons, the slide-out and the hide timer.
#include "core/app.h"
#include "graphics/control_dc.h"
#include "graphics/himage_draw.h"
#include "graphics/himage_ops.h"
#include "screens/bar_parts.h"
#include "widgets/widget_classes.h"
#include "widgets/widget_window.h"

namespace qv::bars {
namespace {

using widget::CreateRecord;
using widget::DestroyRecord;
using widget::RecordOf;

constexpr UINT kShowFlags = SWP_NOSIZE | SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE |
                            SWP_SHOWWINDOW | SWP_NOOWNERZORDER;

struct PanelRecord {
  Bar* bar = nullptr;
  ControlDC tile;
  ControlDC images[kMaxBarButtons];
};

Bar g_bars[2];

// Each button is an animated widget of ten frames in one row, hidden until the panel is out.
HWND CreatePanelButton(HWND panel, BarPoint at, int index, HIMAGE picture) {
  HWND button = CreateWindowExA(0, kAnimClass, "", WS_CHILD | WS_CLIPSIBLINGS, at.x, at.y, 50,
                                50, panel, reinterpret_cast<HMENU>(static_cast<INT_PTR>(index + 1)),
                                GetModuleHandleA(nullptr), nullptr);
  if (!button) return nullptr;
  SendMessageA(button, anim::MWM_SETROWS, 0, 1);
  SendMessageA(button, anim::MWM_SETCOLUMNS, 0, kBarButtonFrames);
  SendMessageA(button, anim::MWM_SETFRAME, 0, 0);
  if (picture) SendMessageA(button, MWM_SETIMAGE, 0, reinterpret_cast<LPARAM>(picture));
  return button;
}

LRESULT OnCreate(HWND panel, const CREATESTRUCTA* create) {
  auto* bar = static_cast<Bar*>(create->lpCreateParams);
  if (!bar) return -1;
  PanelRecord* r = CreateRecord<PanelRecord>(panel);
  if (!r) return -1;
  r->bar = bar;
  bar->panel = panel;
  bar->slide = BarSlide{};
  const BarLayout& l = bar->layout;
  r->tile.LoadById(static_cast<std::uint32_t>(bar->kind == BarKind::Tool ? kToolPanelTile
                                                                         : kOptionPanelTile));
  for (int i = 0; i < l.buttonCount; ++i) {
    r->images[i].LoadById(static_cast<std::uint32_t>(l.buttonImages[i]));
    bar->buttons[i] = CreatePanelButton(panel, l.buttons[i], i, r->images[i].Dib());
  }
  return 0;
}

void OnDestroy(HWND panel, PanelRecord& r) {
  KillTimer(panel, kHideTimer);
  if (r.bar && r.bar->panel == panel) {
    r.bar->panel = nullptr;
    r.bar->slide = BarSlide{};
    for (HWND& button : r.bar->buttons) button = nullptr;
  }
  DestroyRecord<PanelRecord>(panel);
}

void OnPaint(HWND panel, const PanelRecord& r) {
  PAINTSTRUCT paint;
  HDC dc = BeginPaint(panel, &paint);
  RECT client;
  GetClientRect(panel, &client);
  const BarLayout& l = r.bar->layout;
  DrawTiles(dc, TilesCovering(client.right, client.bottom, l.tileWidth, l.tileHeight),
            r.tile.Dib());
  EndPaint(panel, &paint);
}

// Only the pointer's place counts: over one of the panel's buttons it is still over the panel.
void OnTimer(HWND panel, const PanelRecord& r, WPARAM id) {
  if (id != kHideTimer) return;
  Bar& bar = *r.bar;
  POINT pointer{};
  GetCursorPos(&pointer);
  ScreenToClient(panel, &pointer);
  if (!HideOnTimer(bar.slide, {pointer.x, pointer.y}, bar.layout.panel.width,
                   bar.layout.panel.height)) {
    return;
  }
  KillTimer(panel, kHideTimer);
  HideInPlace(panel);
  for (int i = 0; i < bar.layout.buttonCount; ++i) HideInPlace(bar.buttons[i]);
}

void OnNotify(const PanelRecord& r, WPARAM code, LPARAM lParam, PanelAction action) {
  HWND sender = reinterpret_cast<HWND>(lParam);
  ButtonFeedback(sender, static_cast<int>(code));
  if (static_cast<int>(code) != MWN_CLICKED) return;
  Bar& bar = *r.bar;
  for (int i = 0; i < bar.layout.buttonCount; ++i) {
    if (bar.buttons[i] == sender && sender) {
      action(bar, i);
      return;
    }
  }
}

}  // namespace

void DrawTiles(HDC dc, const TileGrid& grid, HIMAGE tile) {
  if (!tile) return;
  for (int row = 0; row < grid.rows; ++row) {
    for (int column = 0; column < grid.columns; ++column) {
      ImageDrawToContext(dc, grid.firstX + column * grid.stepX, grid.firstY + row * grid.stepY,
                         grid.stepX, grid.stepY, tile, 0, 0, kRopSrcCopy);
    }
  }
}

Bar& BarOf(BarKind kind) { return g_bars[kind == BarKind::Tool ? 0 : 1]; }

void SlideOut(Bar& bar) {
  if (!bar.panel || !BeginSlideOut(bar.slide)) return;
  const PanelRecord* r = RecordOf<PanelRecord>(bar.panel);
  SetWindowPos(bar.panel, nullptr, 0, 0, 0, 0, kShowFlags);
  if (HDC dc = GetDC(bar.panel)) {
    // No pause between frames: the slide lasts as long as the drawing takes.
    const int frames = SlideFrameCount(bar.kind);
    for (int frame = 0; frame < frames && r; ++frame) {
      DrawTiles(dc, SlideFrameTiles(bar.layout, bar.kind, frame), r->tile.Dib());
    }
    for (int i = 0; i < bar.layout.buttonCount; ++i) {
      if (bar.buttons[i]) SetWindowPos(bar.buttons[i], nullptr, 0, 0, 0, 0, kShowFlags);
    }
    ReleaseDC(bar.panel, dc);
  }
  // The option panel is validated whichever bar slid: the tool panel then paints its tiles once
  // more on its own, which shows the same picture the slide left.
  if (HWND option = BarOf(BarKind::Option).panel) ValidateRect(option, nullptr);
  SetTimer(bar.panel, kHideTimer, kHideTimerMs, nullptr);
}

LRESULT PanelProc(HWND panel, UINT message, WPARAM wParam, LPARAM lParam, PanelAction action) {
  if (message == WM_CREATE) return OnCreate(panel, reinterpret_cast<CREATESTRUCTA*>(lParam));
  PanelRecord* r = RecordOf<PanelRecord>(panel);
  if (!r) return DefWindowProcA(panel, message, wParam, lParam);
  switch (message) {
    case WM_DESTROY:
      OnDestroy(panel, *r);
      return 0;
    case WM_PAINT:
      OnPaint(panel, *r);
      return 0;
    case WM_ERASEBKGND:
      return 1;
    case WM_TIMER:
      OnTimer(panel, *r, wParam);
      return 0;
    case WM_QUERYNEWPALETTE:
      RedrawForPalette(panel);
      return 0;
    case MWM_NOTIFY:
      OnNotify(*r, wParam, lParam, action);
      return 0;
    default:
      return DefWindowProcA(panel, message, wParam, lParam);
  }
}

}  // namespace qv::bars
