// Line breaking and justification of the wrapped-text drawing, measured through a callback.
#pragma once

#include <functional>
#include <vector>

#include "widgets/text_logic.h"

namespace qv {

// Measures length characters of text in the font being drawn.
using MeasureText = std::function<TextExtent(const char* text, int length)>;

struct WrappedLine {
  int start = 0;   // first character
  int length = 0;  // characters drawn
  int y = 0;       // top, relative to the area's top
  int width = 0;   // measured width of those characters
  bool justify = false;
  int extra = 0;   // pixels spread over the gaps when justified: area width - width
  int gaps = 0;    // words scanned for the line, the one that ended it included
};

constexpr int kWrapLineLimit = 999;  // characters from a line's start

// Breaks text into lines no wider than width, each moved down by the height of the line before
// it; an empty line (two line feeds in a row) takes spaceHeight and draws nothing. A word too
// wide for a line, a line of more than 999 characters, or a line that would reach below
// areaHeight reports its message and stops with false; the lines before it stay in out.
bool WrapText(const char* text, int width, int areaHeight, int spaceHeight,
              const MeasureText& measure, std::vector<WrappedLine>& out);

}  // namespace qv
