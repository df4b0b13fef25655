// The new-game screen and its picture tiles and picker windows.
#pragma once

#include <windows.h>

namespace qv {

// Registers CWNDIMAGECANT, CWNDIMAGETAM, CWNDPREVFS and CWNDNEW with the module.
bool RegisterNewGameClasses(HINSTANCE instance);

// Opens the new-game screen over the main window (disabled until the screen closes). Null when
// the screen cannot open (its background missing, fewer pictures than tiles).
HWND OpenNewGameScreen(HWND mainWindow);

}  // namespace qv
