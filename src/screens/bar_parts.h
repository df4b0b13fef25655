// What the tool bar and the option bar share between their window files: the process-wide record
// of each bar, the strip's procedure and the panel's mechanics (tiles, slide-out, hide timer).
#pragma once

#include <windows.h>

#include "graphics/dib_layout.h"
#include "screens/bar_layout.h"

namespace qv::bars {

constexpr char kToolStripClass[] = "CWNDBARRAHER";
constexpr char kToolPanelClass[] = "CWNDHerramientas";
constexpr char kOptionStripClass[] = "CWNDBARRAOPC";
constexpr char kOptionPanelClass[] = "CWNDOPCIONES";
constexpr UINT_PTR kHideTimer = 1;
constexpr UINT kHideTimerMs = 100;

// One per bar for the whole process; its windows take it from their creation parameter, and
// their WM_DESTROY handlers clear what they put in it.
struct Bar {
  BarKind kind = BarKind::Tool;
  BarLayout layout;
  BarSlide slide;
  HWND strip = nullptr;
  HWND panel = nullptr;
  HWND label = nullptr;
  HWND buttons[kMaxBarButtons] = {};
};
Bar& BarOf(BarKind kind);

// The strips of both bars are the same window with another tile and label.
LRESULT CALLBACK BarStripProc(HWND strip, UINT message, WPARAM wParam, LPARAM lParam);
// Shows the current language's label on the bar's strip.
void ReloadStripLabel(Bar& bar);

// The panel's click on button `index` of its bar's layout (the bar's own file decides).
using PanelAction = void (*)(Bar& bar, int index);

// The panels' shared procedure; each panel class's procedure passes its action through.
LRESULT PanelProc(HWND panel, UINT message, WPARAM wParam, LPARAM lParam, PanelAction action);

// Copies the tile to every place of the grid (SRCCOPY).
void DrawTiles(HDC dc, const TileGrid& grid, HIMAGE tile);

// Slides the bar's panel out unless it is out already.
void SlideOut(Bar& bar);

}  // namespace qv::bars

namespace qv::bars {

// The two panel classes' procedures (tool_bar_window.cpp, option_bar_window.cpp).
LRESULT CALLBACK ToolPanelProc(HWND panel, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT CALLBACK OptionPanelProc(HWND panel, UINT message, WPARAM wParam, LPARAM lParam);

}  // namespace qv::bars
