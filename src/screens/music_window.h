// CWNDMUSICA, the music screen: master and wave volume, the game's four tracks, close and stop.
#pragma once

#include <windows.h>

namespace qv {

constexpr char kMusicClass[] = "CWNDMUSICA";

bool RegisterMusicClass(HINSTANCE instance);

// Disables the owner (the main window, from the tool bar) and opens the screen centred over it;
// the screen enables the owner again when it goes. Null when the window cannot be created.
HWND OpenMusicScreen(HWND owner);

}  // namespace qv
