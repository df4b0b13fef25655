// CWNDINFO: the information screen about the picture being played, with its preview
// (CWNDPREVIEWINFO) and the print wait window (CWNDESPEREIMPRIMIENDO).
#pragma once

#include <windows.h>

namespace qv {

constexpr char kInfoClass[] = "CWNDINFO";
constexpr char kInfoPreviewClass[] = "CWNDPREVIEWINFO";
constexpr char kPrintWaitClass[] = "CWNDESPEREIMPRIMIENDO";

// Control identifiers of the screen's buttons.
constexpr int kInfoCloseId = 1, kInfoPrintId = 2, kInfoPresentationId = 3, kInfoHowToPlayId = 4;

bool RegisterInfoClasses(HINSTANCE instance);
// Opens the screen over the main window, centred; null when it cannot be created.
HWND OpenInfoScreen();

}  // namespace qv
