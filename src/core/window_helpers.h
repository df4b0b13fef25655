// Window idioms that every screen shares: showing in place, class registration, picture children,
// centred owned screens and dragging a captionless screen by its background.
#pragma once

#include <windows.h>

namespace qv {

// SetWindowPos flags that show or hide a window where it stands: no move, no resize, no change of
// the Z order, and hiding never activates another window.
constexpr UINT kShowInPlaceFlags =
    SWP_NOSIZE | SWP_NOMOVE | SWP_NOZORDER | SWP_SHOWWINDOW | SWP_NOOWNERZORDER;
constexpr UINT kHideInPlaceFlags = SWP_NOSIZE | SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE |
                                   SWP_HIDEWINDOW | SWP_NOOWNERZORDER;
void ShowInPlace(HWND window);
void HideInPlace(HWND window);

// Palette messages redraw a window without erasing it; a palette change that the window itself
// caused (changer) is ignored.
void RedrawForPalette(HWND window, HWND changer = nullptr);

// Registers a window class of the program with the arrow cursor. A class that is already
// registered (a second call, or tests that register twice) counts as success.
bool RegisterScreenClass(HINSTANCE instance, const char* name, WNDPROC procedure, UINT style = 0,
                         HBRUSH background = nullptr, const char* cursor = IDC_ARROW);

// A child window of a widget class at (x, y) with the given control identifier, showing picture
// when there is one (the widget sizes itself to it). The picture is borrowed.
HWND CreatePictureChild(HWND parent, const char* className, int x, int y, const void* picture,
                        int identifier = 0, bool visible = true);

// Opens an owned pop-up of the given client size, centred on the screen. The owner is disabled
// before the screen exists, so that the screen is modal from its first message, and enabled again
// when the screen cannot be created; otherwise enabling it is the screen's duty (see
// EnableOwnerOnClose).
HWND OpenCentredScreen(const char* className, DWORD style, int clientWidth, int clientHeight,
                       HWND owner, void* createParams = nullptr);

// Enables the screen's owner again, before the screen goes, so that the owner and not another
// program becomes active.
void EnableOwnerOnClose(HWND screen);

// Dragging a captionless screen by its background, kept far enough on the screen to be dragged
// back and closed.
struct BackgroundDrag {
  bool active = false;
  POINT grab{};  // the pointer's offset from the screen's top-left corner
};
void StartBackgroundDrag(HWND screen, BackgroundDrag& drag);   // WM_LBUTTONDOWN
void FollowBackgroundDrag(HWND screen, const BackgroundDrag& drag);  // WM_MOUSEMOVE
void EndBackgroundDrag(HWND screen, BackgroundDrag& drag);     // WM_LBUTTONUP, WM_CAPTURECHANGED

// Moves a screen back inside the display if it lies partly outside.
void KeepWindowOnScreen(HWND screen);

}  // namespace qv
