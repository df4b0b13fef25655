// A stand-in for the file screen, which the option bar opens, until that screen is built: it
// records what the bar asked for.
#include "bars_test_stubs.h"

#include "setup/file_screen_window.h"

namespace qv {

namespace test {
int g_fileScreenOpened[2] = {};
}  // namespace test

HWND OpenFileScreen(FileScreenMode mode) {
  ++test::g_fileScreenOpened[mode == FileScreenMode::Save ? 1 : 0];
  return nullptr;
}
bool ConfirmLeavingChangedGame(HWND) { return false; }

}  // namespace qv
