// CWNDCAMBIOIDIOMA: the screen on which the player switches between Spanish and English.
#pragma once

#include <windows.h>

namespace qv {

constexpr char kLanguageScreenClass[] = "CWNDCAMBIOIDIOMA";

bool RegisterLanguageScreenClass(HINSTANCE instance);

// Hides the boxes and the preview, disables the main window and opens the screen centred.
HWND OpenLanguageScreen();

}  // namespace qv
