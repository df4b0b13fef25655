// The puzzle windows' entry points for the set-up tests: they record their calls.
#include "setup_test_doubles.h"

#include "puzzle/engine_internal.h"
#include "puzzle/puzzle_windows.h"

namespace qv {

namespace test {
PuzzleWindowCalls& Calls() {
  static PuzzleWindowCalls calls;
  return calls;
}
}  // namespace test

HWND CreateBoardWindow(HWND parent) {
  test::Calls().boardParents.push_back(parent);
  if (test::Calls().cutOnCreate) {
    engine::RunPendingCut();
    test::Calls().cutSucceeded = Puzzle().open;
  }
  return nullptr;
}

bool OpenPictureViewer(HWND, const char* path) {
  test::Calls().viewerPaths.emplace_back(path ? path : "");
  return true;
}

}  // namespace qv
