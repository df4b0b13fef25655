// CWNDHerramientas: the tool panel that slides out of the left edge, with solve, hint, music and
// the honour roll.
#include "core/app.h"
#include "puzzle/play.h"
#include "puzzle/puzzle_model.h"
#include "screens/bar_parts.h"
#include "screens/honour_window.h"
#include "screens/music_window.h"
#include "widgets/widget_classes.h"

namespace qv::bars {
namespace {

// The hint button shows whether a hint remains: the engine's answer goes straight to it.
void GiveHint(Bar& bar) {
  const bool more = PistaPuzzle();
  SendMessageA(bar.buttons[kHintButton], MWM_SETENABLED, 0, more ? 1 : 0);
}

void OnToolClick(Bar& bar, int index) {
  switch (index) {
    case kSolveButton:
      SolvePuzzleForPlayer();
      break;
    case kHintButton:
      GiveHint(bar);
      break;
    case kMusicButton:
      OpenMusicScreen(MainWindow());
      break;
    case kHonourButton:
      OpenHonourRoll();
      break;
    default:
      break;
  }
}

}  // namespace

LRESULT CALLBACK ToolPanelProc(HWND panel, UINT message, WPARAM wParam, LPARAM lParam) {
  return PanelProc(panel, message, wParam, lParam, OnToolClick);
}

}  // namespace qv::bars
