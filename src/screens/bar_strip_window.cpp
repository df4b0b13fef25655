// CWNDBARRAHER and CWNDBARRAOPC: the thin strips at the left and bottom edges whose touch slides
// their bar's panel out. Both are one window with their own tile and label.
#include <memory>

#include "core/app.h"
#include "graphics/control_dc.h"
#include "screens/bar_parts.h"
#include "system/language.h"
#include "widgets/widget_classes.h"
#include "widgets/widget_window.h"

namespace qv::bars {
namespace {

using widget::CreateRecord;
using widget::DestroyRecord;
using widget::RecordOf;

struct StripRecord {
  Bar* bar = nullptr;
  ControlDC tile;
  // The word picture the label shows now; a new language loads the next one before the label
  // lets go of this one.
  std::unique_ptr<ControlDC> label = std::make_unique<ControlDC>();
};

std::uint32_t LabelImage(BarKind kind) {
  const int base = kind == BarKind::Tool ? kToolLabelBase : kOptionLabelBase;
  return static_cast<std::uint32_t>(base + CurrentLanguage());
}

LRESULT OnCreate(HWND strip, const CREATESTRUCTA* create) {
  auto* bar = static_cast<Bar*>(create->lpCreateParams);
  if (!bar) return -1;
  StripRecord* r = CreateRecord<StripRecord>(strip);
  if (!r) return -1;
  r->bar = bar;
  bar->strip = strip;
  r->tile.LoadById(static_cast<std::uint32_t>(bar->kind == BarKind::Tool ? kToolStripTile
                                                                         : kOptionStripTile));
  r->label->LoadById(LabelImage(bar->kind));
  bar->label = CreatePictureChild(strip, kAnimClass, bar->layout.label.x, bar->layout.label.y,
                                  r->label->Dib());
  return 0;
}

void OnDestroy(HWND strip, StripRecord& r) {
  if (r.bar && r.bar->strip == strip) {
    r.bar->strip = nullptr;
    r.bar->label = nullptr;
  }
  DestroyRecord<StripRecord>(strip);
}

void OnPaint(HWND strip, const StripRecord& r) {
  PAINTSTRUCT paint;
  HDC dc = BeginPaint(strip, &paint);
  RECT client;
  GetClientRect(strip, &client);
  DrawTiles(dc, TilesCovering(client.right, client.bottom, r.tile.Width(), r.tile.Height()),
            r.tile.Dib());
  EndPaint(strip, &paint);
}

// The pointer entering the label counts as touching the strip.
void OnNotify(const StripRecord& r, WPARAM code, LPARAM lParam) {
  if (static_cast<int>(code) == MWN_ENTER && reinterpret_cast<HWND>(lParam) == r.bar->label) {
    SlideOut(*r.bar);
  }
}

}  // namespace

void ReloadStripLabel(Bar& bar) {
  StripRecord* r = bar.strip ? RecordOf<StripRecord>(bar.strip) : nullptr;
  if (!r || !bar.label) return;
  auto words = std::make_unique<ControlDC>();
  if (!words->LoadById(LabelImage(bar.kind))) return;
  SendMessageA(bar.label, MWM_SETIMAGE, 0, reinterpret_cast<LPARAM>(words->Dib()));
  r->label = std::move(words);
}

LRESULT CALLBACK BarStripProc(HWND strip, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_CREATE) return OnCreate(strip, reinterpret_cast<CREATESTRUCTA*>(lParam));
  StripRecord* r = RecordOf<StripRecord>(strip);
  if (!r) return DefWindowProcA(strip, message, wParam, lParam);
  switch (message) {
    case WM_DESTROY:
      OnDestroy(strip, *r);
      return 0;
    case WM_PAINT:
      OnPaint(strip, *r);
      return 0;
    case WM_ERASEBKGND:
      return 1;
    case WM_MOUSEMOVE:
      SlideOut(*r->bar);
      return 0;
    case WM_QUERYNEWPALETTE:
      RedrawForPalette(strip);
      return 0;
    case MWM_NOTIFY:
      OnNotify(*r, wParam, lParam);
      return 0;
    default:
      return DefWindowProcA(strip, message, wParam, lParam);
  }
}

}  // namespace qv::bars
