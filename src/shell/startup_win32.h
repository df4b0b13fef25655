// The start-up pieces of the main routine: the refusal dialog, class registration, the loop.
#pragma once

#include <windows.h>

namespace qv {

// Shows dialog 564 with the module string base + language; modeless, it posts WM_QUIT (exit
// code 0) when it is closed. Null when the dialog cannot be made.
HWND ShowMessageDialog(HINSTANCE instance, UINT stringBase);

// Registers every window class of the game, widgets first; a failed registration is ignored, as
// the screen that needs the class simply does not open.
void RegisterGameClasses(HINSTANCE instance);

// Runs until WM_QUIT and returns its exit code. A character meant for a child window is offered
// to its parent first; after each message the pending paints are handled, so that drags and
// animations never leave stale areas behind.
int RunMessageLoop();

}  // namespace qv
