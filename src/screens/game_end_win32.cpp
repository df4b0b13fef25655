// The end of a finished game: the wallpaper question and SetWallpaper, then the honour roll.
#include "screens/game_end.h"

#include <windows.h>

#include <string>

#include "core/app.h"
#include "graphics/bitmap_writer.h"
#include "puzzle/puzzle_model.h"
#include "screens/honour_window.h"
#include "widgets/widget_classes.h"

namespace qv {
namespace {

constexpr UINT kWallpaperQuestion = 140;
constexpr char kDesktopKey[] = "Control Panel\\desktop";
constexpr UINT kWallpaperFlags = SPIF_UPDATEINIFILE | SPIF_SENDWININICHANGE;

std::string WallpaperPath() {
  char folder[MAX_PATH] = {};
  const UINT length = GetWindowsDirectoryA(folder, MAX_PATH);
  if (length == 0 || length >= MAX_PATH) return std::string();
  std::string path(folder, length);
  if (path.back() != '\\') path += '\\';
  return path + kWallpaperFileName;
}

void SetDesktopWallpaper(const char* path) {
  SystemParametersInfoA(SPI_SETDESKWALLPAPER, 0, const_cast<char*>(path), kWallpaperFlags);
}

// The results of the registry and wallpaper calls are not looked at: a desktop that refuses
// them keeps its wallpaper, and the game goes on to the honour roll all the same.
void MakeWallpaper() {
  SetDesktopWallpaper("");
  const std::string path = WallpaperPath();
  if (path.empty()) return;
  SetFileAttributesA(path.c_str(), FILE_ATTRIBUTE_NORMAL);
  WriteBitmapFile(path.c_str(), PuzzlePicture());
  HKEY key = nullptr;
  if (RegCreateKeyExA(HKEY_CURRENT_USER, kDesktopKey, 0, nullptr, 0, KEY_SET_VALUE, nullptr, &key,
                      nullptr) == ERROR_SUCCESS) {
    static const char kNoTiling[] = "0";
    RegSetValueExA(key, "TileWallpaper", 0, REG_SZ, reinterpret_cast<const BYTE*>(kNoTiling),
                   sizeof kNoTiling);
    RegCloseKey(key);
  }
  SetDesktopWallpaper(path.c_str());
}

}  // namespace

void SetWallpaper(bool answer) {
  if (answer) MakeWallpaper();
  EnterHonourRoll();
}

void RunGameEnd() {
  HWND main = MainWindow();
  HWND box = ShowMessageBox(kWallpaperQuestion, main, true, false);
  const int answer = box ? RunMessageBox(box) : 0;
  // The box leaves its owner disabled.
  if (main) EnableWindow(main, TRUE);
  SetWallpaper(answer != 0);
}

}  // namespace qv
