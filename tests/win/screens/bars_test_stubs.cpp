// Stand-ins for the honour roll and the file screen, which the bars open, until those screens
// are built: they record what the bars asked for.
#include "bars_test_stubs.h"

#include "screens/honour_window.h"
#include "setup/file_screen_window.h"

namespace qv {

namespace test {
int g_honourRollOpened = 0;
int g_fileScreenOpened[2] = {};
}  // namespace test

HWND OpenHonourRoll() {
  ++test::g_honourRollOpened;
  return nullptr;
}
HWND OpenFileScreen(FileScreenMode mode) {
  ++test::g_fileScreenOpened[mode == FileScreenMode::Save ? 1 : 0];
  return nullptr;
}
bool ConfirmLeavingChangedGame(HWND) { return false; }

}  // namespace qv
