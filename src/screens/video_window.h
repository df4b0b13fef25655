// CWNDVIDEO: the video screen that plays clips 0, 1 and 2 of the Video folder.
#pragma once

#include <windows.h>

namespace qv {

bool RegisterVideoClass(HINSTANCE instance);
// Null when the clip cannot be opened. whenClosed, when given, runs once when the screen goes.
HWND OpenVideoScreen(int clip, void (*whenClosed)() = nullptr);

}  // namespace qv
