// CWNDOPCIONES: the option panel that rises from the bottom edge, with help, open, magnifier,
// save and quit.
#include "core/app.h"
#include "puzzle/puzzle_model.h"
#include "puzzle/puzzle_windows.h"
#include "screens/bar_parts.h"
#include "setup/file_screen_window.h"

namespace qv::bars {
namespace {

// The magnifier follows the preview window itself, so that a preview opened elsewhere (the box
// frames, the new-game screen) closes on the first click.
void ToggleMagnifier() {
  HWND preview = PreviewWindow();
  if (!preview) return;
  if (IsWindowVisible(preview)) {
    HideInPlace(preview);
  } else {
    ShowPreview();
  }
}

void Quit() {
  if (ConfirmLeavingChangedGame(MainWindow())) SendMessageA(MainWindow(), WM_CLOSE, 0, 0);
}

void OnOptionClick(Bar&, int index) {
  switch (index) {
    case kHelpButton:
      OpenHelp();
      break;
    case kOpenButton:
      OpenFileScreen(FileScreenMode::Open);
      break;
    case kMagnifierButton:
      ToggleMagnifier();
      break;
    case kSaveButton:
      // Nothing to save without a running puzzle.
      if (PuzzleAbierto()) OpenFileScreen(FileScreenMode::Save);
      break;
    case kQuitButton:
      Quit();
      break;
    default:
      break;
  }
}

}  // namespace

LRESULT CALLBACK OptionPanelProc(HWND panel, UINT message, WPARAM wParam, LPARAM lParam) {
  return PanelProc(panel, message, wParam, lParam, OnOptionClick);
}

}  // namespace qv::bars
