// Printing one picture on the default printer, and the wait window that shows its progress.
#pragma once

#include <windows.h>

#include <string>

namespace qv {

// The picture of file bmpPath on one page of the default printer, with its name as the title
// and its description under it; the wait window, when there is one, shows a step per band.
// False when nothing was printed: no printer, a file that is missing or not a whole 256-colour
// picture, or a page with no room.
bool PrintPicture(HWND waitWindow, const char* bmpPath, const std::string& title,
                  const std::string& description);

// The wait window over `owner` (disabled until it closes), and its progress: step 0..4 done.
HWND OpenPrintWait(HWND owner);
void ShowPrintProgress(HWND waitWindow, int step);
bool RegisterPrintWaitClass(HINSTANCE instance);

}  // namespace qv
