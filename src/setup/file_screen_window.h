// The file screen (save or open a game) and the question before a changed game is left.
#pragma once

#include <windows.h>

namespace qv {

enum class FileScreenMode { Save, Open };

// Opens the file screen over the main window (disabled until the screen closes). Null when the
// screen cannot open (its background missing).
HWND OpenFileScreen(FileScreenMode mode);

// Registers CWNDFILE and CWNDPREVFILE with the module.
bool RegisterFileScreenClasses(HINSTANCE instance);

// When the running game has changed since it was saved, asks the player through the message box
// (owner is disabled meanwhile) whether to leave it. True when the player may leave: the game is
// unchanged, or the player said yes.
bool ConfirmLeavingChangedGame(HWND owner);

}  // namespace qv
