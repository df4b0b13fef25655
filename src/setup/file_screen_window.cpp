// CWNDFILE: the file screen, where the running game is saved under a name or a saved one opened.
#include "setup/file_screen_window.h"

#include <string>
#include <vector>

#include "core/app.h"
#include "core/resource_ids.h"
#include "graphics/control_dc.h"
#include "graphics/file_list.h"
#include "graphics/himage_draw.h"
#include "graphics/himage_ops.h"
#include "puzzle/puzzle_model.h"
#include "screens/bars_window.h"
#include "setup/file_screen_logic.h"
#include "setup/file_screen_parts.h"
#include "setup/savegame.h"
#include "widgets/widget_classes.h"
#include "widgets/widget_messages.h"
#include "widgets/widget_window.h"

namespace qv {
namespace {

namespace fs = filescreen;
using widget::RecordOf;

constexpr DWORD kScreenStyle = WS_POPUP | WS_VISIBLE | WS_CLIPCHILDREN | WS_DLGFRAME;
constexpr DWORD kTileStyle = WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS | WS_CLIPCHILDREN;
constexpr int kNameLimit = 260;
constexpr std::uint32_t kEraseQuestion = 40;
constexpr std::uint32_t kLeaveQuestion = 80;

// The mode the caller chose, for the whole process: the screen is one at a time.
FileScreenMode g_mode = FileScreenMode::Save;

struct FileScreenRecord {
  // Pictures the widgets borrow; they outlive every child (children go first at destruction).
  ControlDC background, actionImage, closeImage, helpImage, deleteImage, scrollImage;
  widget::FontHandle nameFont, captionFont;

  HWND name = nullptr, action = nullptr, close = nullptr, help = nullptr, erase = nullptr,
       scroll = nullptr;
  HWND tiles[fs::kTileCount] = {};

  FileScreenMode mode = FileScreenMode::Save;
  std::vector<std::string> files;
  fs::ListView view;
  int selected = -1;
};

HFONT MakeFont(int height) {
  return CreateFontA(height, 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE, DEFAULT_CHARSET,
                     OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY, DEFAULT_PITCH,
                     kProgramFace);
}

std::uint32_t BackgroundImage(FileScreenMode mode) {
  const std::uint32_t base =
      mode == FileScreenMode::Save ? fs::kSaveBackgroundBase : fs::kOpenBackgroundBase;
  return base + static_cast<std::uint32_t>(CurrentLanguage());
}

HWND Push(HWND parent, ControlDC& image, std::uint32_t id, int x, int y, int identifier) {
  image.LoadById(id);
  return CreatePictureChild(parent, kCommandClass, x, y, image.Dib(), identifier);
}

HWND Anim(HWND parent, ControlDC& image, std::uint32_t id, int x, int y, int identifier) {
  image.LoadById(id);
  // The strip's columns must be known before the picture, which sizes the widget.
  HWND anim = CreatePictureChild(parent, kAnimClass, x, y, nullptr, identifier);
  SendMessageA(anim, anim::MWM_SETCOLUMNS, 0, 10);
  if (image.Dib()) SendMessageA(anim, MWM_SETIMAGE, 0, reinterpret_cast<LPARAM>(image.Dib()));
  return anim;
}

// ---- The list ----------------------------------------------------------------------------------

std::vector<std::string> ReadFileList() {
  FileList list;
  const std::string pattern = fs::SavedGamePath(ProgramFolder(), "*", true);
  if (!list.Build(pattern.c_str())) return {};
  return list.Names();
}

void FillTiles(FileScreenRecord& r) {
  const int count = static_cast<int>(r.files.size());
  for (int tile = 0; tile < fs::kTileCount; ++tile) {
    const int file = fs::FileOfTile(r.view, tile, count);
    if (file < 0) {
      SendMessageA(r.tiles[tile], FSM_SETFILE, 0, 0);
    } else {
      const std::string& name = r.files[static_cast<std::size_t>(file)];
      const std::string caption = fs::CaptionOf(name);
      const std::string path = fs::SavedGamePath(ProgramFolder(), name, false);
      SendMessageA(r.tiles[tile], FSM_SETFILE, reinterpret_cast<WPARAM>(caption.c_str()),
                   reinterpret_cast<LPARAM>(path.c_str()));
    }
    SendMessageA(r.tiles[tile], FSM_SETSELECTED, 0, file >= 0 && file == r.selected);
  }
}

void MakeScrollBar(HWND window, FileScreenRecord& r) {
  r.scrollImage.LoadById(fs::kScrollImage);
  r.scroll = CreateWindowExA(0, kScrollClass, "", WS_CHILD | WS_CLIPSIBLINGS, 455, 75, 10, 10,
                             window, reinterpret_cast<HMENU>(static_cast<INT_PTR>(kFileScrollId)),
                             GetModuleHandleA(nullptr), nullptr);
  for (int part = 0; part < 3; ++part) {
    SendMessageA(r.scroll, scroll::MWM_SETPARTSIZE1 + 2 * static_cast<unsigned>(part), 0,
                 fs::kScrollPartSizes[part]);
  }
  if (r.scrollImage.Dib()) {
    SendMessageA(r.scroll, MWM_SETIMAGE, 0, reinterpret_cast<LPARAM>(r.scrollImage.Dib()));
  }
}

// Reads the folder again and puts the scroll bar and the tiles in step with it.
void RefreshList(HWND window, FileScreenRecord& r, int wantedFirstVisible) {
  r.files = ReadFileList();
  r.view = fs::ViewOf(static_cast<int>(r.files.size()), wantedFirstVisible);
  if (r.view.scrollBar && !r.scroll) MakeScrollBar(window, r);
  if (r.scroll) {
    // The maximum first: it may lower the step, which is then set to one file.
    SendMessageA(r.scroll, scroll::MWM_SETMINIMUM, 0, 0);
    SendMessageA(r.scroll, scroll::MWM_SETMAXIMUM, 0, r.view.maximum);
    SendMessageA(r.scroll, scroll::MWM_SETSTEP, 0, 1);
    SendMessageA(r.scroll, scroll::MWM_SETVALUE, 0, r.view.firstVisible);
    ShowWindow(r.scroll, r.view.scrollBar ? SW_SHOWNA : SW_HIDE);
  }
  FillTiles(r);
}

// ---- Actions ---------------------------------------------------------------------------------

std::string NameText(const FileScreenRecord& r) {
  char text[kNameLimit + 1] = {};
  if (r.name) GetWindowTextA(r.name, text, sizeof text);
  return text;
}

BoxNames CurrentBoxNames() {
  BoxNames names;
  for (int box = 0; box < kBoxCount; ++box) {
    if (HWND frame = BoxWindow(box)) GetWindowTextA(frame, names.text[box], kBoxNameBytes);
    names.text[box][kBoxNameBytes - 1] = '\0';
  }
  return names;
}

// Asks a question or says something through the message box over the screen; true for yes.
bool Ask(HWND window, std::uint32_t stringBase, bool twoButtons) {
  HWND box = ShowMessageBox(stringBase, window, twoButtons, false);
  const bool yes = box && RunMessageBox(box) == 1;
  if (IsWindow(window)) {
    EnableWindow(window, TRUE);
    SetForegroundWindow(window);
    SetActiveWindow(window);
  }
  return yes;
}

void OnSave(HWND window, FileScreenRecord& r) {
  const std::string name = NameText(r);
  switch (fs::CheckSaveName(name, ProgramFolder())) {
    case fs::NameVerdict::TooShort:
      return;
    case fs::NameVerdict::Refused:
      // Nothing is written; the player may correct the name.
      Ask(window, IDS_REFUSED_FILE_NAME, false);
      if (IsWindow(r.name)) SetFocus(r.name);
      return;
    case fs::NameVerdict::Accepted:
      break;
  }
  if (PuzzleAbierto() && PuzzlePicture()) {
    CreateDirectoryA((ProgramFolder() + fs::kSaveFolder).c_str(), nullptr);
    SaveGame(fs::SavedGamePath(ProgramFolder(), name, true).c_str(), true,
             ProgramFolder().c_str(), CurrentBoxNames());
  }
  DestroyWindow(window);
}

void OnOpen(HWND window, FileScreenRecord& r) {
  if (r.selected < 0 || r.selected >= static_cast<int>(r.files.size())) return;
  if (!ConfirmLeavingChangedGame(window)) return;
  const std::string path =
      fs::SavedGamePath(ProgramFolder(), r.files[static_cast<std::size_t>(r.selected)], false);
  LoadedGame loaded;
  const bool opened = LoadGame(path.c_str(), ProgramFolder().c_str(), loaded);
  if (opened) {
    for (int box = 0; box < kBoxCount; ++box) {
      if (HWND frame = BoxWindow(box)) {
        SendMessageA(frame, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(loaded.names.text[box]));
      }
    }
  }
  // A failed load leaves an empty table; the screen closes either way.
  DestroyWindow(window);
  if (opened) SetHintButtonAvailable(loaded.hintsAvailable);
}

void OnAction(HWND window, FileScreenRecord& r) {
  if (r.mode == FileScreenMode::Save) {
    OnSave(window, r);
  } else {
    OnOpen(window, r);
  }
}

void OnErase(HWND window, FileScreenRecord& r) {
  if (r.selected < 0 || r.selected >= static_cast<int>(r.files.size())) return;
  if (!Ask(window, kEraseQuestion, true)) return;
  const std::string path =
      fs::SavedGamePath(ProgramFolder(), r.files[static_cast<std::size_t>(r.selected)], false);
  DeleteFileA(path.c_str());
  r.selected = -1;
  RefreshList(window, r, r.view.firstVisible);
}

void OnTileClicked(FileScreenRecord& r, HWND tile) {
  const int identifier = GetDlgCtrlID(tile) - fs::kFirstTileIdentifier;
  const int file = fs::FileOfTile(r.view, identifier, static_cast<int>(r.files.size()));
  if (file < 0) return;
  r.selected = file;
  FillTiles(r);
  // Saving over a game starts from its name.
  if (r.name) {
    const std::string caption = fs::CaptionOf(r.files[static_cast<std::size_t>(file)]);
    SetWindowTextA(r.name, caption.c_str());
  }
}

bool IsTile(const FileScreenRecord& r, HWND window) {
  for (HWND tile : r.tiles) {
    if (tile == window) return true;
  }
  return false;
}

void OnNotify(HWND window, FileScreenRecord& r, int code, HWND from) {
  ButtonFeedback(from, code);
  if (code != MWN_CLICKED) return;
  if (from == r.close) {
    DestroyWindow(window);
  } else if (from == r.action) {
    OnAction(window, r);
  } else if (from == r.help) {
    OpenHelp();
  } else if (from == r.erase) {
    OnErase(window, r);
  } else if (from == r.scroll) {
    r.view.firstVisible = static_cast<int>(SendMessageA(from, scroll::MWM_GETVALUE, 0, 0));
    r.view = fs::ViewOf(static_cast<int>(r.files.size()), r.view.firstVisible);
    FillTiles(r);
  } else if (IsTile(r, from)) {
    OnTileClicked(r, from);
  }
}

// ---- Creation ----------------------------------------------------------------------------------

void MakeNameField(HWND window, FileScreenRecord& r) {
  r.name = CreateWindowExA(WS_EX_CLIENTEDGE, "EDIT", "", WS_CHILD | WS_VISIBLE | ES_AUTOHSCROLL,
                           10, 61, 212, 24, window,
                           reinterpret_cast<HMENU>(static_cast<INT_PTR>(kFileNameId)),
                           GetModuleHandleA(nullptr), nullptr);
  SendMessageA(r.name, EM_LIMITTEXT, kNameLimit, 0);
  SendMessageA(r.name, WM_SETFONT, reinterpret_cast<WPARAM>(r.nameFont.get()), FALSE);
  SetFocus(r.name);
}

LRESULT OnCreate(HWND window, const CREATESTRUCTA* create) {
  auto* r = widget::CreateRecord<FileScreenRecord>(window);
  const auto* mode = static_cast<const FileScreenMode*>(create->lpCreateParams);
  if (!r || !mode || !r->background.LoadById(BackgroundImage(*mode))) return -1;
  r->mode = *mode;
  r->nameFont.Reset(MakeFont(20));
  r->captionFont.Reset(MakeFont(24));
  if (r->mode == FileScreenMode::Save) MakeNameField(window, *r);
  r->action = Push(window, r->actionImage, fs::kActionImage, 19, 255, kFileActionId);
  r->close = Push(window, r->closeImage, fs::kCloseImage, 414, 257, kFileCloseId);
  r->help = Anim(window, r->helpImage, fs::kHelpImage, 146, 235, kFileHelpId);
  r->erase = Anim(window, r->deleteImage, fs::kDeleteImage, 295, 235, kFileEraseId);
  for (int tile = 0; tile < fs::kTileCount; ++tile) {
    r->tiles[tile] = CreateWindowExA(
        0, kFileTileClass, "", kTileStyle, fs::TileX(tile), fs::kTileY, fs::kTileWidth,
        fs::kTileHeight, window,
        reinterpret_cast<HMENU>(static_cast<INT_PTR>(fs::kFirstTileIdentifier + tile)),
        GetModuleHandleA(nullptr), nullptr);
    SendMessageA(r->tiles[tile], FSM_SETFONT, 0, reinterpret_cast<LPARAM>(r->captionFont.get()));
    SendMessageA(r->tiles[tile], FSM_SETBACKDROP, 0,
                 reinterpret_cast<LPARAM>(r->background.Dib()));
  }
  RefreshList(window, *r, 0);
  return 0;
}

void OnPaint(HWND window, HDC printDc) {
  const FileScreenRecord* r = RecordOf<FileScreenRecord>(window);
  widget::PaintWindow(window, printDc, [&](HDC dc, const RECT& area) {
    ImageFill(dc, area, r ? r->background.Dib() : nullptr, kRopSrcCopy);
  });
}

void OnDestroy(HWND window) {
  // The children are already gone; the pictures they borrowed can go with the record.
  widget::DestroyRecord<FileScreenRecord>(window);
  EnableOwnerOnClose(window);
}

// Escape closes and Enter acts, as in every dialog of the system.
bool OnChar(HWND window, WPARAM key) {
  FileScreenRecord* r = RecordOf<FileScreenRecord>(window);
  if (key == VK_ESCAPE) {
    DestroyWindow(window);
    return true;
  }
  if (key == VK_RETURN && r) {
    OnAction(window, *r);
    return true;
  }
  return false;
}

LRESULT CALLBACK FileScreenProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  FileScreenRecord* r = RecordOf<FileScreenRecord>(window);
  switch (message) {
    case WM_CREATE:
      return OnCreate(window, reinterpret_cast<const CREATESTRUCTA*>(lParam));
    case WM_DESTROY:
      OnDestroy(window);
      return 0;
    case WM_ERASEBKGND:
      return 1;
    case WM_PAINT:
      OnPaint(window, nullptr);
      return 0;
    case WM_PRINTCLIENT:
      OnPaint(window, reinterpret_cast<HDC>(wParam));
      return 0;
    case WM_QUERYNEWPALETTE:
      RedrawForPalette(window);
      return 0;
    case WM_PALETTECHANGED:
      RedrawForPalette(window, reinterpret_cast<HWND>(wParam));
      return 0;
    case WM_CHAR:
      OnChar(window, wParam);
      return 0;
    case UM_CHILDCHAR:
      return OnChar(window, wParam) ? 1 : 0;
    case WM_CLOSE:
      DestroyWindow(window);
      return 0;
    case MWM_NOTIFY:
      if (r) OnNotify(window, *r, static_cast<int>(wParam), reinterpret_cast<HWND>(lParam));
      return 0;
    default:
      return DefWindowProcA(window, message, wParam, lParam);
  }
}

}  // namespace

bool RegisterFileScreenClasses(HINSTANCE instance) {
  return RegisterFileTileClass(instance) &&
         RegisterScreenClass(instance, kFileScreenClass, FileScreenProc, CS_OWNDC);
}

HWND OpenFileScreen(FileScreenMode mode) {
  g_mode = mode;
  ControlDC background;
  if (!background.LoadById(BackgroundImage(mode))) return nullptr;
  HideAllBoxesBut(nullptr);
  return OpenCentredScreen(kFileScreenClass, kScreenStyle, background.Width(),
                           background.Height(), MainWindow(), &g_mode);
}

bool ConfirmLeavingChangedGame(HWND owner) {
  if (!PuzzleAbierto() || !Puzzle().PuzzleModificado) return true;
  const bool ownerWasEnabled = owner && IsWindowEnabled(owner);
  HWND box = ShowMessageBox(kLeaveQuestion, owner, true, false);
  // Without the box no one was asked: the game is kept.
  if (!box) return false;
  const bool leave = RunMessageBox(box) == 1;
  if (ownerWasEnabled && IsWindow(owner)) {
    EnableWindow(owner, TRUE);
    SetForegroundWindow(owner);
    SetActiveWindow(owner);
  }
  return leave;
}

}  // namespace qv
