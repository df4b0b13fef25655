// Stand-ins for the puzzle windows the new-game screen calls, recording what it asked for.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace qv::test {

struct PuzzleWindowCalls {
  std::vector<HWND> boardParents;      // CreateBoardWindow
  std::vector<std::string> viewerPaths;  // OpenPictureViewer
  // Run the pending cut inside CreateBoardWindow, as the real board's first size message does.
  bool cutOnCreate = false;
  bool cutSucceeded = false;
};

PuzzleWindowCalls& Calls();

}  // namespace qv::test
