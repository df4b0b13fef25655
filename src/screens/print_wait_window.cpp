// CWNDESPEREIMPRIMIENDO: "printing, please wait", with a printer emblem and five progress cells.
#include <string>

#include "core/app.h"
#include "core/resource_ids.h"
#include "graphics/control_dc.h"
#include "graphics/himage_draw.h"
#include "graphics/himage_ops.h"
#include "screens/info_window.h"
#include "screens/print_job.h"
#include "widgets/widget_classes.h"
#include "widgets/widget_window.h"

namespace qv {
namespace {

using widget::CreateRecord;
using widget::DestroyRecord;
using widget::RecordOf;

constexpr std::uint32_t kBackground = 260;
constexpr std::uint32_t kCells = 261;  // 44 x 88: pending on top, done below
constexpr std::uint32_t kEmblem = 262;
constexpr int kCell = 44;
// The art is 320 x 140: the row of five cells, 50 apart, sits along the parchment's foot,
// with the emblem and the line above it.
constexpr int kFirstCellX = 48, kCellStep = 50, kCellY = 81;
constexpr int kEmblemX = 20, kEmblemY = 15;
constexpr RECT kLineBox{100, 38, 300, 78};
constexpr COLORREF kInk = RGB(72, 44, 20);
constexpr DWORD kStyle = WS_POPUP | WS_VISIBLE | WS_DLGFRAME;

struct WaitRecord {
  ControlDC background, cells, emblem;
  std::string line;
  int done = 0;  // cells shown as done
};

LRESULT OnCreate(HWND window) {
  auto* r = CreateRecord<WaitRecord>(window);
  if (!r) return -1;
  r->background.LoadById(kBackground);
  r->cells.LoadById(kCells);
  r->emblem.LoadById(kEmblem);
  r->line = LocalizedString(IDS_PRINTING, 80);
  return 0;
}

void Paint(HDC dc, const WaitRecord& r) {
  ImageDrawToContext(dc, 0, 0, r.background.Width(), r.background.Height(), r.background.Dib(),
                     0, 0, kRopSrcCopy);
  ImageDrawToContext(dc, kEmblemX, kEmblemY, r.emblem.Width(), r.emblem.Height(), r.emblem.Dib(),
                     0, 0, kRopSrcCopy);
  for (int i = 0; i < 5; ++i) {
    ImageDrawToContext(dc, kFirstCellX + kCellStep * i, kCellY, kCell, kCell, r.cells.Dib(), 0,
                       i < r.done ? kCell : 0, kRopSrcCopy);
  }
  if (!r.line.empty()) {
    DrawWrappedText(dc, r.line.c_str(), kProgramFace, 700, 16, kInk, false, 0, 0, kLineBox.left,
                    kLineBox.top, kLineBox.right - kLineBox.left, kLineBox.bottom - kLineBox.top);
  }
}

void OnPaint(HWND window, const WaitRecord& r) {
  PAINTSTRUCT ps;
  HDC dc = BeginPaint(window, &ps);
  if (dc) Paint(dc, r);
  EndPaint(window, &ps);
}

void OnDestroy(HWND window) {
  EnableOwnerOnClose(window);
  DestroyRecord<WaitRecord>(window);
}

LRESULT CALLBACK PrintWaitProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_CREATE) return OnCreate(window);
  WaitRecord* r = RecordOf<WaitRecord>(window);
  if (!r) return DefWindowProcA(window, message, wParam, lParam);
  switch (message) {
    case WM_DESTROY:
      OnDestroy(window);
      return 0;
    case WM_PAINT:
      OnPaint(window, *r);
      return 0;
    case WM_ERASEBKGND:
      return 1;
    case WM_QUERYNEWPALETTE:
      RedrawForPalette(window);
      return 1;
    case WM_PALETTECHANGED:
      RedrawForPalette(window, reinterpret_cast<HWND>(wParam));
      return 0;
    default:
      return DefWindowProcA(window, message, wParam, lParam);
  }
}

}  // namespace

bool RegisterPrintWaitClass(HINSTANCE instance) {
  return RegisterScreenClass(instance, kPrintWaitClass, PrintWaitProc);
}

HWND OpenPrintWait(HWND owner) {
  ControlDC background;
  if (!background.LoadById(kBackground)) return nullptr;
  HWND wait = OpenCentredScreen(kPrintWaitClass, kStyle, background.Width(), background.Height(),
                                owner);
  if (wait) UpdateWindow(wait);
  return wait;
}

// Step i done: its cell turns to the done row and the window is painted at once, as no
// messages are pumped while the printer works.
void ShowPrintProgress(HWND waitWindow, int step) {
  WaitRecord* r = RecordOf<WaitRecord>(waitWindow);
  if (!r || step < 0 || step > 4) return;
  r->done = step + 1;
  const RECT cell{kFirstCellX + kCellStep * step, kCellY, kFirstCellX + kCellStep * step + kCell,
                  kCellY + kCell};
  InvalidateRect(waitWindow, &cell, FALSE);
  UpdateWindow(waitWindow);
}

}  // namespace qv
