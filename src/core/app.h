// The application core: process-wide values and services that every screen may use. It includes
// no screen; the shell assembles the screens on top of it.
#pragma once

#include <windows.h>

#include <cstdint>
#include <string>

#include "core/look.h"
#include "core/window_helpers.h"
#include "system/language.h"

namespace qv {

// The primary screen's size, read once before the main routine runs.
int ScreenWidth();
int ScreenHeight();

// The folder of the program file with its trailing backslash ("" until the main routine sets it).
const std::string& ProgramFolder();
void SetProgramFolder(const std::string& folder);

// The module's string base + current language, at most maxLength - 1 characters ("" when absent).
std::string LocalizedString(std::uint32_t base, int maxLength);
// A string of the module by its own identifier.
std::string ModuleString(std::uint32_t identifier, int maxLength);

// The main window (null before it exists), the six box frames and buttons, the preview window.
HWND MainWindow();
void SetMainWindow(HWND window);
HWND BoxWindow(int box);
void SetBoxWindow(int box, HWND window);
HWND BoxButton(int box);
void SetBoxButton(int box, HWND window);
HWND PreviewWindow();
void SetPreviewWindow(HWND window);

// Hides every box frame except `keep` (null: all), then the preview window. Screens call it with
// null before they open, so that nothing floats over them.
void HideAllBoxesBut(HWND keep);

// Opens the help page of the current language in the system's browser.
void OpenHelp();

// The shared feedback of the animated buttons: every screen calls it first from its MWM_NOTIFY
// handler with the sender and the code, before acting on a click. Senders that are not animated
// buttons are ignored.
void ButtonFeedback(HWND button, int event);

}  // namespace qv
