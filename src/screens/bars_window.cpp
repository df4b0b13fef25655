// The two bars as the main window sees them: their classes, their four windows, the hint button.
#include "screens/bars_window.h"

#include "core/app.h"
#include "screens/bar_parts.h"
#include "widgets/widget_classes.h"

namespace qv {
namespace {

using bars::Bar;
using bars::BarOf;

constexpr DWORD kStripStyle = WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS | WS_CLIPCHILDREN;
constexpr DWORD kPanelStyle = WS_CHILD | WS_CLIPSIBLINGS | WS_CLIPCHILDREN;

HWND CreateBarWindow(HWND parent, const char* className, DWORD style, const BarRect& place,
                     Bar& bar) {
  return CreateWindowExA(0, className, "", style, place.x, place.y, place.width, place.height,
                         parent, nullptr, GetModuleHandleA(nullptr), &bar);
}

// The bars stand over everything else on the main window, the panels over the strips (the tool
// panel covers the end of the option strip); the board stays at the bottom.
void RaiseOverSiblings(HWND window) {
  SetWindowPos(window, HWND_TOP, 0, 0, 0, 0,
               SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE | SWP_NOOWNERZORDER);
}

bool CreateBar(HWND mainWindow, BarKind kind) {
  Bar& bar = BarOf(kind);
  bar = Bar{};
  bar.kind = kind;
  bar.layout = LayoutOf(kind, ScreenWidth(), ScreenHeight());
  const bool tool = kind == BarKind::Tool;
  HWND strip = CreateBarWindow(mainWindow, tool ? bars::kToolStripClass : bars::kOptionStripClass,
                               kStripStyle, bar.layout.strip, bar);
  HWND panel = CreateBarWindow(mainWindow, tool ? bars::kToolPanelClass : bars::kOptionPanelClass,
                               kPanelStyle, bar.layout.panel, bar);
  return strip && panel;
}

}  // namespace

bool RegisterBarClasses(HINSTANCE instance) {
  return RegisterScreenClass(instance, bars::kToolStripClass, bars::BarStripProc) &&
         RegisterScreenClass(instance, bars::kToolPanelClass, bars::ToolPanelProc) &&
         RegisterScreenClass(instance, bars::kOptionStripClass, bars::BarStripProc) &&
         RegisterScreenClass(instance, bars::kOptionPanelClass, bars::OptionPanelProc);
}

bool CreateBars(HWND mainWindow) {
  const bool tool = CreateBar(mainWindow, BarKind::Tool);
  const bool option = CreateBar(mainWindow, BarKind::Option);
  for (HWND window : {BarOf(BarKind::Tool).strip, BarOf(BarKind::Option).strip,
                      BarOf(BarKind::Tool).panel, BarOf(BarKind::Option).panel}) {
    if (window) RaiseOverSiblings(window);
  }
  return tool && option;
}

void SetHintButtonAvailable(bool available) {
  if (HWND hint = BarOf(BarKind::Tool).buttons[kHintButton]) {
    SendMessageA(hint, MWM_SETENABLED, 0, available ? 1 : 0);
  }
}

void ReloadBarLabels() {
  bars::ReloadStripLabel(BarOf(BarKind::Tool));
  bars::ReloadStripLabel(BarOf(BarKind::Option));
}

}  // namespace qv
