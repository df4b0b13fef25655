// CWNDIMAGETAM: the size picker's miniature, the table with the picture at the chosen scale.
#include <cstdio>
#include <string>

#include "puzzle/puzzle_model.h"
#include "setup/new_game_logic.h"
#include "setup/new_game_parts.h"
#include "setup/pickers.h"
#include "core/app.h"
#include "widgets/widget_window.h"

namespace qv {
namespace {

using widget::RecordOf;

constexpr int kTextBand = 22;  // the percentage line under the table

struct SizePickerRecord {
  HIMAGE backdrop = nullptr;
  widget::FontHandle font;
};

void DrawTable(HDC dc, const newgame::Rect& board) {
  const RECT table{board.x, board.y, board.x + board.width, board.y + board.height};
  HBRUSH felt = CreateSolidBrush(RGB(22, 78, 46));
  FillRect(dc, &table, felt);
  DeleteObject(felt);
  const RECT rim{table.left - 2, table.top - 2, table.right + 2, table.bottom + 2};
  HBRUSH wood = CreateSolidBrush(RGB(92, 58, 30));
  FrameRect(dc, &rim, wood);
  const RECT rim2{table.left - 1, table.top - 1, table.right + 1, table.bottom + 1};
  FrameRect(dc, &rim2, wood);
  DeleteObject(wood);
}

void DrawPercentage(HDC dc, SizePickerRecord& s, int width, int height) {
  if (!s.font.get()) {
    s.font.Reset(CreateFontA(16, 0, 0, 0, FW_BOLD, 0, 0, 0, DEFAULT_CHARSET, 0, 0, 0, 0,
                             kProgramFace));
  }
  const PickerState& pickers = ThePickers();
  if (!PickerHasPicture(pickers)) return;
  const std::string text =
      LocalizedString(100, 90) + std::to_string(GetSizePercentage(pickers)) + " %";
  widget::SelectInScope font(dc, s.font.get());
  SetBkMode(dc, TRANSPARENT);
  SetTextColor(dc, RGB(74, 44, 20));
  RECT band{0, height - kTextBand, width, height};
  DrawTextA(dc, text.c_str(), -1, &band, DT_CENTER | DT_VCENTER | DT_SINGLELINE);
}

void Compose(HWND window, SizePickerRecord& s, HDC dc, int width, int height) {
  DrawBackdropUnder(dc, window, s.backdrop, width, height);
  const PickerState& pickers = ThePickers();
  const EstadoPuzzle& puzzle = Puzzle();
  const newgame::SizePreview preview = newgame::SizePreviewLayout(
      width, height - kTextBand, puzzle.boardWidth, puzzle.boardHeight, pickers.pictureWidth,
      pickers.pictureHeight, pickers.scale);
  DrawTable(dc, preview.board);
  if (PickerHasPicture(pickers)) {
    // The table is what the player will see: the picture is cut off at its edges.
    HRGN clip = CreateRectRgn(preview.board.x, preview.board.y,
                              preview.board.x + preview.board.width,
                              preview.board.y + preview.board.height);
    SelectClipRgn(dc, clip);
    DrawPictureScaled(dc, PuzzlePicture(), preview.picture.x, preview.picture.y,
                      preview.picture.width, preview.picture.height);
    SelectClipRgn(dc, nullptr);
    DeleteObject(clip);
  }
  DrawPercentage(dc, s, width, height);
}

void OnPaint(HWND window, HDC printDc) {
  SizePickerRecord* s = RecordOf<SizePickerRecord>(window);
  PaintThroughSurface(window, printDc, [&](HDC dc, int width, int height) {
    if (!s) return false;
    Compose(window, *s, dc, width, height);
    return true;
  });
}

LRESULT OnSetBackdrop(HWND window, LPARAM backdrop) {
  if (auto* s = RecordOf<SizePickerRecord>(window)) s->backdrop = reinterpret_cast<HIMAGE>(backdrop);
  InvalidateRect(window, nullptr, FALSE);
  return 1;
}

LRESULT CALLBACK SizePickerProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_CREATE:
      return widget::CreateRecord<SizePickerRecord>(window) ? 0 : -1;
    case WM_DESTROY:
      widget::DestroyRecord<SizePickerRecord>(window);
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

bool RegisterSizePickerClass(HINSTANCE instance) {
  return RegisterScreenClass(instance, kSizePickerClass, SizePickerProc);
}

}  // namespace qv
