// What the puzzle's window classes share among themselves: class names, procedures, areas.
#pragma once

#include <windows.h>

namespace qv::puzzle_win {

constexpr char kAreaClass[] = "CWNDPUZZLE";
constexpr char kBoxClass[] = "CWNDBOX";
constexpr char kPreviewClass[] = "CWNDPREVLUPA";
constexpr char kViewerClass[] = "CWNDIMGPREV";
constexpr char kMosaicClass[] = "CWNDMOSAIC";
constexpr char kDragImageClass[] = "CWNDDRAGIMAGE";

LRESULT CALLBACK AreaWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT CALLBACK BoxWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT CALLBACK PreviewWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT CALLBACK ViewerWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT CALLBACK MosaicWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT CALLBACK DragImageWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

// Creates the window of piece area `area` (0-5 a box, 6 the board) as a child of parent, with
// control identifier 100 + area. `ownerTag` is the window that stands for a box when pieces
// are dropped on it (ignored for the board). Null when the engine refuses the area.
HWND CreateAreaWindow(int area, HWND parent, const RECT& place, HWND ownerTag);
// The window of an area, or null.
HWND AreaWindow(int area);
// The area a window shows, or -1 when it is not an area window.
int AreaOfWindow(HWND window);

// The engine's drag image of the moving set in a layered pop-up window over every window of
// the game, its top-left corner at a screen point; false (and nothing shown) when it cannot be.
bool ShowDragImage(POINT at);
void MoveDragImage(POINT at);
void HideDragImage();
// The pop-up while it is shown, or null.
HWND DragImageWindow();

// Tells the engine which pixel format the display has (once per process).
void ProbeDisplayFormat();

}  // namespace qv::puzzle_win
