// CWNDBACK: the full-screen main window, parent of every screen.
#pragma once

#include <windows.h>

namespace qv {

constexpr char kMainWindowClass[] = "CWNDBACK";
constexpr int kInfoButtonId = 0;
constexpr int kFirstBoxButtonId = 100;

bool RegisterMainWindowClass(HINSTANCE instance);

// Creates the main window with its permanent children and stores it with SetMainWindow.
HWND CreateMainWindow(HINSTANCE instance);

}  // namespace qv
