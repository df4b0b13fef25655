// CWNDHONOR: the ten best scores over a tiled background, with clear and close buttons; and the
// entry procedure that asks a finished game's player for a name.
#include "screens/honour_window.h"

#include <memory>

#include "core/app.h"
#include "graphics/control_dc.h"
#include "graphics/himage_draw.h"
#include "graphics/himage_ops.h"
#include "puzzle/play.h"
#include "puzzle/puzzle_model.h"
#include "screens/honour_logic.h"
#include "screens/records.h"
#include "widgets/widget_classes.h"
#include "widgets/widget_window.h"

namespace qv {
namespace {

using widget::CreateRecord;
using widget::DestroyRecord;
using widget::RecordOf;

constexpr std::uint32_t kTileImage = 160;
constexpr std::uint32_t kTitleBase = 2090;
constexpr std::uint32_t kClearImage = 158;
constexpr std::uint32_t kExitImage = 128;  // the shared exit button, as the option bar's quit
constexpr UINT kNamePrompt = 130;
constexpr int kButtonFrames = 10;
constexpr int kRowFontHeight = 30;
constexpr int kRowWeight = 400;
constexpr DWORD kScreenStyle = WS_POPUP | WS_VISIBLE | WS_CLIPCHILDREN | WS_MAXIMIZE;
// Asked for as a child of the screen and never registered: the request yields no window, and
// nothing depends on it. It is kept so that the screen asks for what it always asked for.
constexpr char kCupClass[] = "CWNDCOPAHONOR";

struct HonourRecord {
  PackedDib background;  // screen-sized, composed once
  ControlDC clearImage;
  ControlDC exitImage;
  HWND rows[kHonourPlaces][3] = {};  // place, name, score
  HWND clear = nullptr;
  HWND close = nullptr;
};

// The one honour screen while it is open: the name question updates its rows.
HWND g_screen = nullptr;

HWND CreateRowText(HWND screen, const HonourRecord& r, int x, int y, const std::string& text) {
  HWND caption = CreatePictureChild(screen, kTextClass, x, y, nullptr);
  if (!caption) return nullptr;
  // Disabled, so the rows never react to the pointer and show the program's text colour.
  SendMessageA(caption, MWM_SETENABLED, 0, 0);
  SendMessageA(caption, text::MWM_SETSHADOW, 0, 1);
  SendMessageA(caption, text::MWM_SETSHADOWOFFSET, 0, 1);
  SendMessageA(caption, text::MWM_SETSHADOWCOLOUR, 0, 0);
  SendMessageA(caption, text::MWM_SETDISABLEDCOLOUR, 0, kInterfaceTextColour);
  SendMessageA(caption, text::MWM_SETHOVERWEIGHT, 0, kRowWeight);
  SendMessageA(caption, text::MWM_SETFONTHEIGHT, 0, kRowFontHeight);
  SendMessageA(caption, text::MWM_SETFACENAME, 0, reinterpret_cast<LPARAM>(kProgramFace));
  SendMessageA(caption, text::MWM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str()));
  SendMessageA(caption, MWM_SETIMAGE, 0, reinterpret_cast<LPARAM>(r.background.get()));
  return caption;
}

void SetText(HWND caption, const std::string& text) {
  SendMessageA(caption, text::MWM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str()));
}

// Rows whose place stays the same keep their place text; names and scores follow the roll.
void ShowRoll(HonourRecord& r, const HonourRoll& roll) {
  for (int row = 0; row < kHonourPlaces; ++row) {
    const HonourRowText text = HonourRow(roll, row);
    SetText(r.rows[row][1], text.name);
    SetText(r.rows[row][2], text.score);
  }
}

HWND CreateButton(HWND screen, HonourPoint at, const ControlDC& picture) {
  HWND button = CreatePictureChild(screen, kAnimClass, at.x, at.y, nullptr);
  if (!button) return nullptr;
  SendMessageA(button, anim::MWM_SETCOLUMNS, 0, kButtonFrames);
  SendMessageA(button, MWM_SETIMAGE, 0, reinterpret_cast<LPARAM>(picture.Dib()));
  return button;
}

void BuildChildren(HWND screen, HonourRecord& r) {
  const HonourLayout layout = HonourScreenLayout(ScreenWidth(), ScreenHeight());
  HonourRoll roll;
  LoadRecords(ProgramFolder().c_str(), roll);
  for (int row = 0; row < kHonourPlaces; ++row) {
    const HonourRowText text = HonourRow(roll, row);
    const int y = layout.rowY[row];
    r.rows[row][0] = CreateRowText(screen, r, layout.placeX, y, text.place);
    r.rows[row][1] = CreateRowText(screen, r, layout.nameX, y, text.name);
    r.rows[row][2] = CreateRowText(screen, r, layout.scoreX, y, text.score);
  }
  r.clearImage.LoadById(kClearImage);
  r.exitImage.LoadById(kExitImage);
  r.clear = CreateButton(screen, layout.clearButton, r.clearImage);
  r.close = CreateButton(screen, layout.closeButton, r.exitImage);
  CreateWindowExA(0, kCupClass, "", WS_CHILD | WS_VISIBLE, layout.area.x, layout.area.y, 640,
                  480, screen, nullptr, GetModuleHandleA(nullptr), nullptr);
}

LRESULT OnCreate(HWND screen) {
  auto* r = CreateRecord<HonourRecord>(screen);
  if (!r) return -1;
  ControlDC tile, title;
  tile.LoadById(kTileImage);
  title.LoadById(kTitleBase + static_cast<std::uint32_t>(CurrentLanguage()));
  if (!ComposeHonourBackground(ScreenWidth(), ScreenHeight(), tile.Dib(), title.Dib(),
                               r->background)) {
    return -1;  // WM_DESTROY frees the record
  }
  BuildChildren(screen, *r);
  g_screen = screen;
  return 0;
}

void OnPaint(HWND screen, const HonourRecord& r) {
  PAINTSTRUCT ps;
  HDC dc = BeginPaint(screen, &ps);
  if (dc) ImageFill(dc, ps.rcPaint, r.background.get(), kRopSrcCopy);
  EndPaint(screen, &ps);
}

void OnNotify(HWND screen, HonourRecord& r, WPARAM code, LPARAM lParam) {
  HWND sender = reinterpret_cast<HWND>(lParam);
  ButtonFeedback(sender, static_cast<int>(code));
  if (code != MWN_CLICKED) return;
  if (sender == r.close) {
    PostMessageA(screen, WM_CLOSE, 0, 0);
  } else if (sender == r.clear) {
    // No question: the roll is cleared at once, and the file stays absent until the next entry.
    HonourRoll roll;
    ClearRecords(ProgramFolder().c_str(), roll);
    ShowRoll(r, roll);
  }
}

void OnClose(HWND screen) {
  EnableOwnerOnClose(screen);
  if (HWND main = MainWindow()) SetForegroundWindow(main);
  DestroyWindow(screen);
}

void OnDestroy(HWND screen) {
  EnableOwnerOnClose(screen);
  if (g_screen == screen) g_screen = nullptr;
  DestroyRecord<HonourRecord>(screen);
}

// Escape closes; Enter closes too, as the screen has nothing to confirm.
bool OnKey(HWND screen, WPARAM key) {
  if (key != VK_ESCAPE && key != VK_RETURN) return false;
  PostMessageA(screen, WM_CLOSE, 0, 0);
  return true;
}

LRESULT CALLBACK HonourWindowProc(HWND screen, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_CREATE) return OnCreate(screen);
  HonourRecord* r = RecordOf<HonourRecord>(screen);
  if (message == WM_DESTROY) {
    if (r) OnDestroy(screen);
    return 0;
  }
  if (!r) return DefWindowProcA(screen, message, wParam, lParam);
  switch (message) {
    case WM_PAINT:
      OnPaint(screen, *r);
      return 0;
    case WM_ERASEBKGND:
      return 1;
    case MWM_NOTIFY:
      OnNotify(screen, *r, wParam, lParam);
      return 0;
    case WM_CHAR:
      OnKey(screen, wParam);
      return 0;
    case UM_CHILDCHAR:
      return OnKey(screen, wParam) ? 1 : 0;
    case WM_QUERYNEWPALETTE:
      RedrawForPalette(screen);
      return 1;
    case WM_PALETTECHANGED:
      RedrawForPalette(screen, reinterpret_cast<HWND>(wParam));
      return 0;
    case WM_CLOSE:
      OnClose(screen);
      return 0;
    default:
      return DefWindowProcA(screen, message, wParam, lParam);
  }
}

}  // namespace

bool RegisterHonourClasses(HINSTANCE instance) {
  return RegisterScreenClass(instance, kHonourClass, HonourWindowProc, 0,
                             static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH)));
}

HWND OpenHonourRoll() {
  HWND main = MainWindow();
  HideAllBoxesBut(nullptr);
  if (main) EnableWindow(main, FALSE);
  HWND screen = CreateWindowExA(0, kHonourClass, "", kScreenStyle, 0, 0, 100, 100, main, nullptr,
                                GetModuleHandleA(nullptr), nullptr);
  if (!screen && main) EnableWindow(main, TRUE);
  return screen;
}

void EnterHonourRoll() {
  HonourEntry& pending = ThePendingHonourEntry();
  const bool counts = Puzzle().solutionShown == 0;
  if (BeginHonourEntry(ProgramFolder().c_str(), ResultadoPuzzle().score, pending, counts) >=
      kHonourPlaces) {
    return;
  }
  HWND screen = OpenHonourRoll();
  if (!screen) return;
  HWND box = ShowMessageBox(kNamePrompt, screen, true, true);
  if (!box) return;
  const int answer = RunMessageBox(box);
  // The box leaves its owner disabled; the screen stays for the player to close.
  if (IsWindow(screen)) EnableWindow(screen, TRUE);
  OnHonourNameEntered(answer != 0);
}

void OnHonourNameEntered(bool accepted) {
  HonourRoll shown;
  const HonourNameResult result =
      FinishHonourEntry(ProgramFolder().c_str(), ThePendingHonourEntry(), accepted,
                        MessageBoxText().Text(), shown);
  if (result == HonourNameResult::kNothingRecorded || !g_screen) return;
  if (HonourRecord* r = RecordOf<HonourRecord>(g_screen)) ShowRoll(*r, shown);
}

}  // namespace qv
