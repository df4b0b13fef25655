// CWNDVIDEO: one of the game's three clips played through MCI in the middle of the screen.
#pragma once

#include <windows.h>

namespace qv {

constexpr char kVideoClass[] = "CWNDVIDEO";

bool RegisterVideoClass(HINSTANCE instance);

// Opens the screen playing clip 0 (the presentation, in its frame with close, replay and web-site
// buttons), 1 (how to play) or 2 (the introduction). Null when the clip cannot be opened: the
// file is missing, MCI refuses it, or the clip does not exist. whenClosed, when given, runs once
// when a screen that did open is destroyed.
HWND OpenVideoScreen(int clip, void (*whenClosed)() = nullptr);

}  // namespace qv
