// WrapText: word scans, the fit test, line ends, justification and empty lines.
#include "widgets/wrap_logic.h"

#include "system/assert.h"

namespace qv {

namespace {

constexpr char kTooLong[] = "text muy largo o no NULL-TERMINATED";
constexpr char kWordTooWide[] = "la ultima palabra es mas grande que el area asignada para el texto";
constexpr char kTooHigh[] = "el texto es mas alto que el area asignada";

enum class Stop { kWord, kEnd, kLineFeed };

bool EndsLine(char c) { return c == '\0' || c == '\n'; }

// One word scan from `from`: the word, then the spaces after it. It stops on the last space
// before the next word, or on a terminator or line feed. False when the line grows too long.
bool ScanWord(const char* text, int lineStart, int from, int& position, Stop& stop) {
  int i = from;
  while (text[i] != ' ' && !EndsLine(text[i])) {
    if (!QV_CHECK(i - lineStart < kWrapLineLimit, kTooLong)) return false;
    ++i;
  }
  while (text[i] == ' ') {
    if (!QV_CHECK(i - lineStart < kWrapLineLimit, kTooLong)) return false;
    ++i;
  }
  if (text[i] == '\0') {
    stop = Stop::kEnd;
    position = i;
  } else if (text[i] == '\n') {
    stop = Stop::kLineFeed;
    position = i;
  } else {
    stop = Stop::kWord;
    position = i - 1;
  }
  return true;
}

}  // namespace

bool WrapText(const char* text, int width, int areaHeight, int spaceHeight,
              const MeasureText& measure, std::vector<WrappedLine>& out) {
  int lineStart = 0;
  int y = 0;
  for (;;) {
    int gaps = 0;
    int lastFit = -1;
    int scanFrom = lineStart;
    int position = lineStart;
    Stop stop = Stop::kEnd;
    TextExtent extent;
    for (;;) {
      if (!ScanWord(text, lineStart, scanFrom, position, stop)) return false;
      ++gaps;
      extent = measure(text + lineStart, position - lineStart);
      if (extent.width != 0 && extent.width < width && stop == Stop::kWord) {
        lastFit = position;
        scanFrom = position + 1;
        continue;
      }
      break;
    }
    const bool wholeFits = extent.width < width;
    if (lastFit < 0 && (stop == Stop::kWord || !wholeFits)) {
      QV_FAIL(kWordTooWide);
      return false;
    }
    int end = position;
    if (stop == Stop::kWord || !wholeFits) {
      end = lastFit;
      extent = measure(text + lineStart, end - lineStart);
    }

    if (extent.width == 0) {
      // Two line feeds in a row: nothing to draw, the space's height to move down.
      y += spaceHeight;
      if (text[end] == '\0') return true;
      lineStart = end + 1;
      continue;
    }
    if (!QV_CHECK(y + extent.height <= areaHeight, kTooHigh)) return false;

    WrappedLine line;
    line.start = lineStart;
    line.length = end - lineStart;
    line.y = y;
    line.width = extent.width;
    line.gaps = gaps;
    // Every line that something follows is justified, one ended by a line feed included; the
    // gap count includes the word that did not fit, as the drawing has always done.
    line.justify = text[end] != '\0';
    line.extra = line.justify ? width - extent.width : 0;
    out.push_back(line);

    if (text[end] == '\0') return true;
    y += extent.height;
    lineStart = end + 1;
  }
}

}  // namespace qv
