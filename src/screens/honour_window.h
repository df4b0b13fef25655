// CWNDHONOR, the honour roll screen, and the entry procedure after a finished game.
#pragma once

#include <windows.h>

namespace qv {

constexpr char kHonourClass[] = "CWNDHONOR";

// Registers CWNDHONOR (arrow cursor, black brush).
bool RegisterHonourClasses(HINSTANCE instance);

// Disables the main window and opens the roll full screen over it, for viewing; the screen
// enables the main window again when it goes. Null when the window cannot be created.
HWND OpenHonourRoll();

// After a finished game: when the game's score earns a place, opens the roll and asks for the
// player's name; a confirmed name enters the roll and the file. Returns once the question is
// answered; the roll stays open for the player to close.
void EnterHonourRoll();

// The answer of the name question (the typed name is the message box's text).
void OnHonourNameEntered(bool accepted);

}  // namespace qv
