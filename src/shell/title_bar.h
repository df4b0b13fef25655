// CWNDVORBETITULO: the title bar with its buttons and the game clock.
#pragma once

#include <windows.h>

#include <cstdint>

namespace qv {

constexpr char kTitleBarClass[] = "CWNDVORBETITULO";

bool RegisterTitleBarClass(HINSTANCE instance);
HWND CreateTitleBar(HWND mainWindow);

// The clock shows this time (hours, minutes and seconds of the total).
void ShowGameTime(std::uint32_t total, int hours, int minutes, int seconds);
// The text the clock shows now.
const char* GameTimeText();

// The language changed: the new-game button takes the word picture of the new language.
void ReloadTitleWordButtons();

// Starts about.exe from the program folder when it is there; does nothing otherwise.
void LaunchAbout();

}  // namespace qv
