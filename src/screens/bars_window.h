// The tool bar and the option bar at the edges of the main window.
#pragma once

#include <windows.h>

namespace qv {

bool RegisterBarClasses(HINSTANCE instance);
bool CreateBars(HWND mainWindow);
// Sends 1325 to the hint button: whether hints remain for the running game.
void SetHintButtonAvailable(bool available);

}  // namespace qv
