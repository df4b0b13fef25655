// WinMain: the display checks, the sounds, the program folder, the classes, the resource file,
// the introduction (then the main window) and the message loop, in that order.
#include <windows.h>

#include <cstdlib>
#include <string>

#include "graphics/control_dc.h"
#include "graphics/file_list.h"
#include "graphics/resource_file.h"
#include "core/app.h"
#include "system/debug_output.h"
#include "shell/main_window.h"
#include "core/resource_ids.h"
#include "screens/video_layout.h"
#include "screens/video_window.h"
#include "shell/shell_layout.h"
#include "shell/startup_win32.h"
#include "system/random.h"
#include "widgets/widget_sounds.h"

namespace {

// Tests make the scatter reproducible through QUORVEX_SEED; players get the clock.
void SeedRandomSource() {
  const char* seed = std::getenv("QUORVEX_SEED");
  if (seed && *seed) {
    qv::SeedRandom(std::strtoull(seed, nullptr, 10));
  } else {
    qv::SeedRandomFromClock();
  }
}

int DisplayBitsPerPixel() {
  HDC screen = GetDC(nullptr);
  const int bits = GetDeviceCaps(screen, BITSPIXEL);
  ReleaseDC(nullptr, screen);
  return bits;
}

void FindProgramFolder() {
  char path[MAX_PATH] = {};
  const DWORD length = GetModuleFileNameA(nullptr, path, MAX_PATH);
  qv::SetProgramFolder(qv::FolderOfModulePath(path, length));
}

// The table and the title bar cannot be drawn without the resource file; a file that opens but
// lacks them is as broken as a missing one.
bool ResourceFileUsable() {
  if (!qv::OpenResourceFile((qv::ProgramFolder() + "Quorvex.rf").c_str())) return false;
  qv::ControlDC texture;
  qv::ControlDC titleTile;
  return texture.LoadById(6000) && titleTile.LoadById(122);
}

bool EnoughPictures() {
  qv::FileList pictures;
  return pictures.Build((qv::ProgramFolder() + "Image\\*.bmp").c_str()) && pictures.Count() >= 5;
}

// The main window follows the introduction however it ends; a main window that cannot be made
// ends the program rather than leaving it running with no window at all.
void CreateMainWindowOnce() {
  if (qv::MainWindow()) return;
  if (!qv::CreateMainWindow(GetModuleHandleA(nullptr))) PostQuitMessage(1);
}

// What the game can say before any window of its own exists: the refusal dialog, which ends the
// program when it is closed.
int Refuse(HINSTANCE instance, UINT stringBase) {
  if (!qv::ShowMessageDialog(instance, stringBase)) return 1;
  return qv::RunMessageLoop();
}

}  // namespace

int WINAPI WinMain(HINSTANCE instance, HINSTANCE, LPSTR, int) {
  qv::SetCurrentLanguage(1);
  qv::InstallDebuggerAssertHandler();
  SeedRandomSource();
  const int refusal =
      qv::DisplayRefusalBase(DisplayBitsPerPixel(), qv::ScreenWidth(), qv::ScreenHeight());
  if (refusal != 0) return Refuse(instance, static_cast<UINT>(refusal));

  qv::LoadWidgetSounds(instance);
  FindProgramFolder();
  qv::RegisterGameClasses(instance);
  if (!ResourceFileUsable()) return Refuse(instance, IDS_NO_RESOURCE_FILE);
  if (!EnoughPictures()) return Refuse(instance, IDS_TOO_FEW_PICTURES);

  // Without the introduction (no clip, no MCI) the main window comes at once.
  if (!qv::OpenVideoScreen(qv::kIntroductionClip, CreateMainWindowOnce)) {
    if (!qv::CreateMainWindow(instance)) return 1;
  }
  return qv::RunMessageLoop();
}
