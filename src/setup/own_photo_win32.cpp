// The new-game screen's own-photo tile: the system's Open dialog, the photograph made into a
// picture of Image\, and the game's own message when it cannot be.
#include <windows.h>
#include <commdlg.h>
#include <shlobj.h>

#include <string>
#include <vector>

#include "core/app.h"
#include "core/resource_ids.h"
#include "photo/photo_import.h"
#include "puzzle/texture.h"
#include "setup/new_game_parts.h"
#include "widgets/widget_classes.h"

namespace qv {
namespace {

// The formats the imaging component reads; the same list for every language.
constexpr wchar_t kPhotoPatterns[] = L"*.jpg;*.jpeg;*.png;*.gif;*.tif;*.tiff;*.bmp";
// Room for a long path picked in the dialog (the dialog refuses what does not fit).
constexpr DWORD kPathRoom = 4096;

std::wstring LocalizedWide(UINT base) {
  wchar_t text[256] = {};
  const int length = LoadStringW(GetModuleHandleW(nullptr),
                                 base + static_cast<UINT>(CurrentLanguage()), text, 256);
  return std::wstring(text, length > 0 ? static_cast<std::size_t>(length) : 0);
}

// "Pictures (*.jpg;...)", then the patterns, each ending in a null, the list in two.
std::vector<wchar_t> PhotoFilter() {
  std::wstring label = LocalizedWide(IDS_OWN_PICTURE_FILTER);
  if (label.empty()) label = L"Pictures";
  const std::wstring filter = label + L" (" + kPhotoPatterns + L")" + L'\0' + kPhotoPatterns;
  std::vector<wchar_t> block(filter.begin(), filter.end());
  block.push_back(L'\0');
  block.push_back(L'\0');
  return block;
}

// The player's Pictures folder, else Documents; empty lets the dialog choose.
std::wstring StartFolder() {
  for (const int folder : {CSIDL_MYPICTURES, CSIDL_PERSONAL}) {
    wchar_t path[MAX_PATH] = {};
    if (SUCCEEDED(SHGetFolderPathW(nullptr, folder, nullptr, SHGFP_TYPE_CURRENT, path))) {
      const DWORD attributes = GetFileAttributesW(path);
      if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY)) {
        return path;
      }
    }
  }
  return std::wstring();
}

// The photograph's path, or empty when the player cancels.
std::wstring AskForPhoto(HWND screen) {
  const std::vector<wchar_t> filter = PhotoFilter();
  const std::wstring folder = StartFolder();
  const std::wstring title = LocalizedWide(IDS_OWN_PICTURE_DIALOG_TITLE);
  std::vector<wchar_t> path(kPathRoom, L'\0');
  OPENFILENAMEW open{};
  open.lStructSize = sizeof open;
  open.hwndOwner = screen;
  open.lpstrFilter = filter.data();
  open.nFilterIndex = 1;
  open.lpstrFile = path.data();
  open.nMaxFile = kPathRoom;
  open.lpstrInitialDir = folder.empty() ? nullptr : folder.c_str();
  open.lpstrTitle = title.empty() ? nullptr : title.c_str();
  // The game's files are found from its own folder, never from the current one; the dialog is
  // still told to leave the current folder alone.
  open.Flags = OFN_EXPLORER | OFN_FILEMUSTEXIST | OFN_PATHMUSTEXIST | OFN_HIDEREADONLY |
               OFN_NOCHANGEDIR | OFN_DONTADDTORECENT;
  if (!GetOpenFileNameW(&open)) return std::wstring();
  return std::wstring(path.data());
}

// The dialog and the message box each take the keyboard away from the screen: it gets it back,
// so that Escape and Enter still close and confirm.
void GiveBackKeyboard(HWND screen) {
  if (!IsWindow(screen)) return;
  EnableWindow(screen, TRUE);
  SetForegroundWindow(screen);
  SetActiveWindow(screen);
  SetFocus(screen);
}

}  // namespace

std::string ChooseOwnPhoto(HWND screen) {
  const std::wstring photo = AskForPhoto(screen);
  GiveBackKeyboard(screen);
  if (photo.empty()) return std::string();
  // Reading a camera photograph takes a moment: the screen is drawn again where the dialog
  // stood, and the pointer says that the game is busy.
  UpdateWindow(screen);
  const HCURSOR previous = SetCursor(LoadCursor(nullptr, IDC_WAIT));
  const PhotoImportResult result =
      ImportPhoto(photo, ProgramFolder() + "Image\\", TableColour());
  SetCursor(previous);
  if (result.error == PhotoImportError::kNone) return result.pictureFile;
  if (HWND box = ShowMessageBox(PhotoImportMessage(result.error), screen, false, false)) {
    RunMessageBox(box);
  }
  GiveBackKeyboard(screen);
  return std::string();
}

}  // namespace qv
