// CWNDIMAGECANT: the piece-count picker's miniature, the picture with the chosen grid.
#include "core/window_helpers.h"
#include "puzzle/puzzle_model.h"
#include "setup/new_game_logic.h"
#include "setup/new_game_parts.h"
#include "setup/pickers.h"
#include "widgets/widget_window.h"

namespace qv {
namespace {

using widget::RecordOf;

struct CountPickerRecord {
  HIMAGE backdrop = nullptr;
};

void DrawGrid(HDC dc, const newgame::Rect& area, int columns, int rows) {
  // Thin cream lines: the picture must stay readable even at the finest grid.
  HPEN light = CreatePen(PS_SOLID, 1, RGB(250, 240, 210));
  {
    widget::SelectInScope pen(dc, light);
    for (int c = 1; c < columns; ++c) {
      const int x = area.x + newgame::GridLine(c, columns, area.width);
      MoveToEx(dc, x, area.y, nullptr);
      LineTo(dc, x, area.y + area.height);
    }
    for (int r = 1; r < rows; ++r) {
      const int y = area.y + newgame::GridLine(r, rows, area.height);
      MoveToEx(dc, area.x, y, nullptr);
      LineTo(dc, area.x + area.width, y);
    }
  }
  DeleteObject(light);
}

void Compose(HWND window, const CountPickerRecord& c, HDC dc, int width, int height) {
  DrawBackdropUnder(dc, window, c.backdrop, width, height);
  const PickerState& pickers = ThePickers();
  if (!PickerHasPicture(pickers)) return;
  const newgame::Rect area =
      newgame::CountPreviewLayout(width, height, pickers.pictureWidth, pickers.pictureHeight);
  const RECT rim{area.x - 2, area.y - 2, area.x + area.width + 2, area.y + area.height + 2};
  HBRUSH wood = CreateSolidBrush(RGB(92, 58, 30));
  FillRect(dc, &rim, wood);
  DeleteObject(wood);
  DrawPictureScaled(dc, PuzzlePicture(), area.x, area.y, area.width, area.height);
  DrawGrid(dc, area, pickers.columns, pickers.rows);
}

void OnPaint(HWND window, HDC printDc) {
  CountPickerRecord* c = RecordOf<CountPickerRecord>(window);
  PaintThroughSurface(window, printDc, [&](HDC dc, int width, int height) {
    if (!c) return false;
    Compose(window, *c, dc, width, height);
    return true;
  });
}

LRESULT OnSetBackdrop(HWND window, LPARAM backdrop) {
  if (auto* c = RecordOf<CountPickerRecord>(window)) c->backdrop = reinterpret_cast<HIMAGE>(backdrop);
  InvalidateRect(window, nullptr, FALSE);
  return 1;
}

LRESULT CALLBACK CountPickerProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_CREATE:
      return widget::CreateRecord<CountPickerRecord>(window) ? 0 : -1;
    case WM_DESTROY:
      widget::DestroyRecord<CountPickerRecord>(window);
      return 0;
    case WM_ERASEBKGND:
      return 1;
    case WM_PAINT:
      OnPaint(window, nullptr);
      return 0;
    case WM_PRINTCLIENT:
      OnPaint(window, reinterpret_cast<HDC>(wParam));
      return 0;
    case NGM_SETBACKDROP:
      return OnSetBackdrop(window, lParam);
    default:
      return DefWindowProcA(window, message, wParam, lParam);
  }
}

}  // namespace

bool RegisterCountPickerClass(HINSTANCE instance) {
  return RegisterScreenClass(instance, kCountPickerClass, CountPickerProc);
}

}  // namespace qv
