// CWNDCAMBIOIDIOMA: two language names, confirm and cancel; the choice is written to Quorvex.ini.
#include "shell/language_screen.h"

#include <string>

#include "graphics/control_dc.h"
#include "graphics/himage_draw.h"
#include "graphics/himage_ops.h"
#include "core/app.h"
#include "puzzle/puzzle_windows.h"
#include "screens/bars_window.h"
#include "shell/title_bar.h"
#include "widgets/widget_classes.h"
#include "widgets/widget_window.h"

namespace qv {
namespace {

using widget::CreateRecord;
using widget::DestroyRecord;
using widget::RecordOf;

constexpr std::uint32_t kBackground = 214;
constexpr std::uint32_t kConfirmImage = 212;
constexpr std::uint32_t kCancelImage = 213;
constexpr DWORD kScreenStyle = WS_POPUP | WS_VISIBLE | WS_CLIPCHILDREN | WS_DLGFRAME;
constexpr COLORREF kChosenColour = RGB(255, 204, 92);

struct LanguageRecord {
  ControlDC background;
  ControlDC confirmImage;
  ControlDC cancelImage;
  HWND confirm = nullptr;
  HWND cancel = nullptr;
  HWND names[2] = {};  // Spanish, English
  int pending = 1;
  BackgroundDrag drag;
};

// The chosen name is gold and bold, the other cream and plain; both grow bold under the pointer.
void ShowChosen(HWND name, bool chosen) {
  SendMessageA(name, text::MWM_SETTEXTCOLOUR, 0, chosen ? kChosenColour : kInterfaceTextColour);
  SendMessageA(name, text::MWM_SETNORMALWEIGHT, 0, chosen ? 700 : 400);
}

HWND CreateName(HWND screen, LanguageRecord& r, int y, const char* caption) {
  HWND name = CreatePictureChild(screen, kTextClass, 50, y, r.background.Dib());
  SendMessageA(name, text::MWM_SETFACENAME, 0, reinterpret_cast<LPARAM>(kProgramFace));
  SendMessageA(name, text::MWM_SETFONTHEIGHT, 0, 30);
  SendMessageA(name, text::MWM_SETSHADOW, 0, 1);
  SendMessageA(name, text::MWM_SETHOVERWEIGHT, 0, 700);
  SendMessageA(name, text::MWM_SETTEXT, 0, reinterpret_cast<LPARAM>(caption));
  return name;
}

LRESULT OnCreate(HWND screen) {
  LanguageRecord* r = CreateRecord<LanguageRecord>(screen);
  if (!r) return -1;
  r->background.LoadById(kBackground);
  r->confirmImage.LoadById(kConfirmImage);
  r->cancelImage.LoadById(kCancelImage);
  r->confirm = CreatePictureChild(screen, kCommandClass, 0, 256, r->confirmImage.Dib(), IDOK);
  r->cancel = CreatePictureChild(screen, kCommandClass, 177, 256, r->cancelImage.Dib(), IDCANCEL);
  r->names[0] = CreateName(screen, *r, 60, "Espa\xF1ol");
  r->names[1] = CreateName(screen, *r, 90, "English");
  r->pending = CurrentLanguage() == 0 ? 0 : 1;
  for (int i = 0; i < 2; ++i) ShowChosen(r->names[i], i == r->pending);
  return 0;
}

void OnDestroy(HWND screen) {
  DestroyRecord<LanguageRecord>(screen);
  EnableOwnerOnClose(screen);
}

void Choose(LanguageRecord& r, int language) {
  if (r.pending == language) return;
  r.pending = language;
  for (int i = 0; i < 2; ++i) ShowChosen(r.names[i], i == language);
}

// Only a change is applied and written; the key records the choice, start-up ignores it.
void Confirm(const LanguageRecord& r) {
  const int previous = CurrentLanguage();
  if (r.pending == previous) return;
  SetCurrentLanguage(r.pending);
  ReloadTitleWordButtons();
  ReloadBarLabels();
  RelabelDefaultBoxNames(previous);
  const std::string value = std::to_string(r.pending);
  WritePrivateProfileStringA("Quorvex", "Idioma", value.c_str(), "Quorvex.ini");
  if (HWND preview = PreviewWindow()) {
    SetWindowTextA(preview, LocalizedString(120, 90).c_str());
  }
}

void OnNotify(HWND screen, WPARAM code, HWND sender) {
  LanguageRecord* r = RecordOf<LanguageRecord>(screen);
  if (!r || static_cast<int>(code) != MWN_CLICKED) return;
  if (sender == r->names[0]) {
    Choose(*r, 0);
  } else if (sender == r->names[1]) {
    Choose(*r, 1);
  } else {
    if (sender == r->confirm) Confirm(*r);
    PostMessageA(screen, WM_CLOSE, 0, 0);
  }
}

void OnButtonDown(HWND screen) {
  if (LanguageRecord* r = RecordOf<LanguageRecord>(screen)) StartBackgroundDrag(screen, r->drag);
}

void OnMouseMove(HWND screen) {
  if (LanguageRecord* r = RecordOf<LanguageRecord>(screen)) FollowBackgroundDrag(screen, r->drag);
}

void EndDrag(HWND screen) {
  if (LanguageRecord* r = RecordOf<LanguageRecord>(screen)) EndBackgroundDrag(screen, r->drag);
}

// Escape cancels and Enter confirms, as in every dialog of the system.
bool OnChildChar(HWND screen, WPARAM key) {
  if (key == VK_ESCAPE) {
    PostMessageA(screen, WM_CLOSE, 0, 0);
    return true;
  }
  if (key == VK_RETURN) {
    if (LanguageRecord* r = RecordOf<LanguageRecord>(screen)) Confirm(*r);
    PostMessageA(screen, WM_CLOSE, 0, 0);
    return true;
  }
  return false;
}

void OnClose(HWND screen) {
  SetForegroundWindow(MainWindow());
  DestroyWindow(screen);
}

void OnPaint(HWND screen) {
  PAINTSTRUCT paint;
  HDC dc = BeginPaint(screen, &paint);
  if (LanguageRecord* r = RecordOf<LanguageRecord>(screen)) {
    ImageDrawToContext(dc, 0, 0, r->background.Width(), r->background.Height(),
                       r->background.Dib(), 0, 0, kRopSrcCopy);
  }
  EndPaint(screen, &paint);
}

LRESULT CALLBACK LanguageScreenProc(HWND screen, UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_CREATE:
      return OnCreate(screen);
    case WM_DESTROY:
      OnDestroy(screen);
      return 0;
    case MWM_NOTIFY:
      OnNotify(screen, wParam, reinterpret_cast<HWND>(lParam));
      return 0;
    case WM_LBUTTONDOWN:
      OnButtonDown(screen);
      return 0;
    case WM_MOUSEMOVE:
      OnMouseMove(screen);
      return 0;
    case WM_LBUTTONUP:
    case WM_CAPTURECHANGED:
      EndDrag(screen);
      return 0;
    case WM_CHAR:
      OnChildChar(screen, wParam);
      return 0;
    case UM_CHILDCHAR:
      return OnChildChar(screen, wParam) ? 1 : 0;
    case WM_PAINT:
      OnPaint(screen);
      return 0;
    case WM_ERASEBKGND:
      return 1;
    case WM_CLOSE:
      OnClose(screen);
      return 0;
    default:
      return DefWindowProcA(screen, message, wParam, lParam);
  }
}

}  // namespace

bool RegisterLanguageScreenClass(HINSTANCE instance) {
  return RegisterScreenClass(instance, kLanguageScreenClass, LanguageScreenProc, CS_OWNDC);
}

HWND OpenLanguageScreen() {
  HideAllBoxesBut(nullptr);
  ControlDC background;
  if (!background.LoadById(kBackground)) return nullptr;
  return OpenCentredScreen(kLanguageScreenClass, kScreenStyle, background.Width(),
                           background.Height(), MainWindow());
}

}  // namespace qv
