// DrawWrappedText: justified, word-wrapped text in an area of a drawing context.
#include <vector>

#include "system/assert.h"
#include "widgets/widget_classes.h"
#include "widgets/widget_window.h"
#include "widgets/wrap_logic.h"

namespace qv {

namespace {

void DrawLine(HDC dc, const char* text, const WrappedLine& line, int x, int y, COLORREF colour,
              bool shadow, COLORREF shadowColour, int shadowOffset) {
  if (line.justify) SetTextJustification(dc, line.extra, line.gaps);
  if (shadow) {
    SetTextColor(dc, shadowColour);
    TextOutA(dc, x + shadowOffset, y + line.y + shadowOffset, text + line.start, line.length);
    SetTextColor(dc, colour);
  }
  TextOutA(dc, x, y + line.y, text + line.start, line.length);
  SetTextJustification(dc, 0, 0);
}

}  // namespace

bool DrawWrappedText(HDC dc, const char* text, const char* face, int weight, int height,
                     COLORREF colour, bool shadow, COLORREF shadowColour, int shadowOffset, int x,
                     int y, int width, int areaHeight) {
  const bool valid = dc && text && face && height >= 1 && width >= 1 && areaHeight >= 1 &&
                     (!shadow || shadowOffset != 0);
  if (!QV_CHECK(valid, "")) return false;

  widget::FontHandle font(CreateFontA(height, 0, 0, 0, weight, 0, 0, 0, DEFAULT_CHARSET, 0, 0, 0,
                                      0, face));
  if (!font.get()) return false;
  const int saved = SaveDC(dc);
  bool drawn = false;
  {
    widget::SelectInScope select(dc, font.get());
    SetTextColor(dc, colour);
    SetBkMode(dc, TRANSPARENT);
    SetTextJustification(dc, 0, 0);
    SIZE space{0, 0};
    GetTextExtentPoint32A(dc, " ", 1, &space);

    std::vector<WrappedLine> lines;
    const MeasureText measure = [dc](const char* s, int length) {
      SIZE size{0, 0};
      GetTextExtentPoint32A(dc, s, length, &size);
      return TextExtent{size.cx, size.cy};
    };
    drawn = WrapText(text, width, areaHeight, space.cy, measure, lines);
    for (const WrappedLine& line : lines) {
      DrawLine(dc, text, line, x, y, colour, shadow, shadowColour, shadowOffset);
    }
  }
  RestoreDC(dc, saved);
  return drawn;
}

}  // namespace qv
