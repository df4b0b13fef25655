// CWNDMENSAJE: the program's own modal message and input box, one at a time.
#include <memory>

#include "graphics/control_dc.h"
#include "graphics/himage_draw.h"
#include "graphics/himage_ops.h"
#include "core/window_helpers.h"
#include "system/language.h"
#include "widgets/widget_classes.h"
#include "widgets/widget_geometry.h"
#include "widgets/widget_window.h"

namespace qv {

namespace {

constexpr DWORD kBoxStyle = WS_POPUP | WS_VISIBLE | WS_CLIPCHILDREN | WS_DLGFRAME;
constexpr int kMessageCapacity = 200;

// The box's face pictures and where its parts sit on them.
constexpr RECT kTextArea{20, 60, 480, 250};
constexpr POINT kIconAt{13, 7};
constexpr POINT kOkAt{18, 255};
constexpr POINT kCancelAt{413, 257};
constexpr RECT kInputField{20, 160, 245, 184};
constexpr int kTextHeight = 24;
constexpr int kInputFontHeight = 18;

// A palette made for the box and deleted with it.
class PaletteHandle {
 public:
  PaletteHandle() = default;
  ~PaletteHandle() { Reset(); }
  PaletteHandle(const PaletteHandle&) = delete;
  PaletteHandle& operator=(const PaletteHandle&) = delete;
  void Reset(HPALETTE palette = nullptr) {
    if (palette_) DeleteObject(palette_);
    palette_ = palette;
  }
  HPALETTE get() const { return palette_; }

 private:
  HPALETTE palette_ = nullptr;
};

// The one box's state lives in the process, as the box is a single instance.
struct BoxState {
  HWND window = nullptr;
  char message[kMessageCapacity + 1] = {};
  HWND parent = nullptr;
  bool twoButtons = false;
  bool withInput = false;
  std::unique_ptr<ControlDC> face;
  std::unique_ptr<ControlDC> okPicture;
  std::unique_ptr<ControlDC> cancelPicture;
  HWND edit = nullptr;
  HWND ok = nullptr;
  HWND cancel = nullptr;
  widget::FontHandle font;
  BackgroundDrag drag;
  HPALETTE keptPalette = nullptr;
  bool paletteKept = false;
  PaletteHandle palette;

  // Back to no box: pictures, font and palette released.
  void Clear() {
    window = nullptr;
    message[0] = '\0';
    parent = nullptr;
    twoButtons = withInput = false;
    face.reset();
    okPicture.reset();
    cancelPicture.reset();
    edit = ok = cancel = nullptr;
    font.Reset();
    drag = BackgroundDrag{};
    keptPalette = nullptr;
    paletteKept = false;
    palette.Reset();
  }
};

BoxState& Box() {
  static BoxState state;
  return state;
}

int g_result = 0;
CBuffer& Typed() {
  static CBuffer typed;
  return typed;
}

void SystemFaceName(char (&face)[LF_FACESIZE]) {
  LOGFONTA logFont{};
  GetObjectA(GetStockObject(SYSTEM_FONT), sizeof logFont, &logFont);
  lstrcpynA(face, logFont.lfFaceName, LF_FACESIZE);
}

HPALETTE PaletteOf(HIMAGE picture) {
  const int count = static_cast<int>(DibHeader(picture)->biClrUsed);
  if (ImageBitCount(picture) != 8 || count < 1 || count > 256) return nullptr;
  struct {
    WORD version;
    WORD entries;
    PALETTEENTRY colours[256];
  } logical{0x300, static_cast<WORD>(count), {}};
  for (int i = 0; i < count; ++i) {
    const RgbQuad& c = DibColours(picture)[i];
    logical.colours[i] = PALETTEENTRY{c.rgbRed, c.rgbGreen, c.rgbBlue, 0};
  }
  return CreatePalette(reinterpret_cast<const LOGPALETTE*>(&logical));
}

HWND MakeButton(HWND box, POINT at, std::unique_ptr<ControlDC>& picture, std::uint32_t id) {
  HWND button = CreateWindowExA(0, kCommandClass, "", WS_CHILD | WS_VISIBLE, at.x, at.y, 1, 1, box,
                                nullptr, GetModuleHandleA(nullptr), nullptr);
  picture = std::make_unique<ControlDC>();
  if (button && picture->LoadById(id)) {
    SendMessageA(button, MWM_SETIMAGE, 0, reinterpret_cast<LPARAM>(picture->Dib()));
  }
  return button;
}

void MakeInputField(HWND box, BoxState& b) {
  char face[LF_FACESIZE];
  SystemFaceName(face);
  b.font.Reset(CreateFontA(kInputFontHeight, 0, 0, 0, FW_NORMAL, 0, 0, 0, DEFAULT_CHARSET, 0, 0, 0,
                           0, face));
  b.edit = CreateWindowExA(WS_EX_CLIENTEDGE, "EDIT", "", WS_CHILD | WS_VISIBLE | ES_AUTOHSCROLL,
                           kInputField.left, kInputField.top, kInputField.right - kInputField.left,
                           kInputField.bottom - kInputField.top, box, nullptr,
                           GetModuleHandleA(nullptr), nullptr);
  if (!b.edit) return;
  SendMessageA(b.edit, WM_SETFONT, reinterpret_cast<WPARAM>(b.font.get()), FALSE);
  SendMessageA(b.edit, EM_LIMITTEXT, kMessageBoxInputLimit, 0);
  SetFocus(b.edit);
}

LRESULT OnCreate(HWND box) {
  BoxState& b = Box();
  b.window = box;
  if (b.withInput) MakeInputField(box, b);
  ControlDC icon;
  if (icon.LoadById(kMessageBoxIcon)) {
    ImageRasterCopy(b.face->Dib(), kIconAt.x, kIconAt.y, icon.Width(), icon.Height(), icon.Dib(), 0,
                    0, kRopSrcCopy);
  }
  b.ok = MakeButton(box, kOkAt, b.okPicture, kMessageBoxOk);
  if (b.twoButtons) b.cancel = MakeButton(box, kCancelAt, b.cancelPicture, kMessageBoxCancel);
  b.palette.Reset(PaletteOf(b.face->Dib()));
  return 0;
}

void OnPaint(HWND box) {
  BoxState& b = Box();
  PAINTSTRUCT ps;
  HDC dc = BeginPaint(box, &ps);
  if (dc && b.face) {
    ImageDrawToContext(dc, 0, 0, b.face->Width(), b.face->Height(), b.face->Dib(), 0, 0,
                       kRopSrcCopy);
    char face[LF_FACESIZE];
    SystemFaceName(face);
    DrawWrappedText(dc, b.message, face, FW_NORMAL, kTextHeight, GetSysColor(COLOR_WINDOWTEXT),
                    false, 0, 0, kTextArea.left, kTextArea.top, kTextArea.right - kTextArea.left,
                    kTextArea.bottom - kTextArea.top);
  }
  EndPaint(box, &ps);
}

void Close(HWND box, int result) {
  g_result = result;
  SendMessageA(box, WM_CLOSE, 0, 0);
}

LRESULT OnChildChar(HWND box, WPARAM character) {
  const MessageBoxKey key = MessageBoxChar(static_cast<int>(character));
  if (key.close) Close(box, key.result);
  return key.consumed ? 1 : 0;
}

void OnNotify(HWND box, WPARAM code, LPARAM sender) {
  if (static_cast<int>(code) != MWN_CLICKED) return;
  Close(box, reinterpret_cast<HWND>(sender) == Box().ok ? 1 : 0);
}

// The field keeps the keyboard whenever the box is active, as it had at creation.
bool OnActivate(WPARAM state) {
  if (LOWORD(state) == WA_INACTIVE || !Box().edit) return false;
  SetFocus(Box().edit);
  return true;
}

LRESULT OnPaletteNeeded(HWND box) {
  BoxState& b = Box();
  if (!b.palette.get()) return 0;
  HDC dc = GetDC(box);
  // The first palette replaced is the context's own and goes back at the end; later ones are
  // the box's own and are never deleted here.
  HPALETTE previous = SelectPalette(dc, b.palette.get(), FALSE);
  if (!b.paletteKept) {
    b.keptPalette = previous;
    b.paletteKept = true;
  }
  RealizePalette(dc);
  ReleaseDC(box, dc);
  if (b.ok) SendMessageA(b.ok, WM_QUERYNEWPALETTE, 0, 0);
  if (b.cancel) SendMessageA(b.cancel, WM_QUERYNEWPALETTE, 0, 0);
  InvalidateRect(box, nullptr, FALSE);
  return 1;
}

void OnClose(HWND box) {
  if (Box().parent) SetForegroundWindow(Box().parent);
  DestroyWindow(box);
}

void OnDestroy(HWND box) {
  BoxState& b = Box();
  if (b.withInput && b.edit) {
    const int length = GetWindowTextLengthA(b.edit);
    CBuffer typed(length + 1);
    GetWindowTextA(b.edit, typed.Text(), length + 1);
    typed.RecalculateSize();
    Typed() = typed;
  }
  if (b.paletteKept) {
    HDC dc = GetDC(box);
    SelectPalette(dc, b.keptPalette, FALSE);
    ReleaseDC(box, dc);
  }
}

// The children are gone by now, so the pictures they borrowed can go too.
void OnNcDestroy() { Box().Clear(); }

}  // namespace

LRESULT CALLBACK MessageBoxProc(HWND box, UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_CREATE: return OnCreate(box);
    case WM_PAINT: OnPaint(box); return 0;
    case WM_ERASEBKGND: return 1;
    case MWM_NOTIFY: OnNotify(box, wParam, lParam); return 0;
    case UM_CHILDCHAR: return OnChildChar(box, wParam);
    // A box without a field has the keyboard itself: Enter and Escape reach it directly.
    case WM_CHAR: OnChildChar(box, wParam); return 0;
    case WM_LBUTTONDOWN: StartBackgroundDrag(box, Box().drag); return 0;
    case WM_MOUSEMOVE: FollowBackgroundDrag(box, Box().drag); return 0;
    case WM_LBUTTONUP:
    case WM_CAPTURECHANGED: EndBackgroundDrag(box, Box().drag); return 0;
    case WM_ACTIVATE:
      if (OnActivate(wParam)) return 0;
      break;
    case WM_QUERYNEWPALETTE: return OnPaletteNeeded(box);
    case WM_PALETTECHANGED:
      if (reinterpret_cast<HWND>(wParam) != box) OnPaletteNeeded(box);
      return 0;
    case WM_CLOSE: OnClose(box); return 0;
    case WM_DESTROY: OnDestroy(box); return 0;
    case WM_NCDESTROY: OnNcDestroy(); break;
    default: break;
  }
  return DefWindowProcA(box, message, wParam, lParam);
}

bool RegisterMessageBoxClass(HINSTANCE instance) {
  return RegisterScreenClass(instance, kMessageBoxClass, MessageBoxProc, CS_OWNDC);
}

HWND ShowMessageBox(UINT stringBase, HWND parent, bool twoButtons, bool withInput) {
  BoxState& b = Box();
  if (b.window) return nullptr;
  auto face = std::make_unique<ControlDC>();
  if (!face->LoadById(kMessageBoxFace)) return nullptr;

  const int width = face->Width();
  const int height = face->Height();
  if (LoadStringA(GetModuleHandleA(nullptr), stringBase + static_cast<UINT>(CurrentLanguage()), b.message,
                  kMessageCapacity + 1) <= 0) {
    b.message[0] = '\0';
  }
  b.face = std::move(face);
  b.parent = parent;
  b.twoButtons = twoButtons;
  b.withInput = withInput;
  g_result = 0;
  Typed().Clear();
  HWND box = OpenCentredScreen(kMessageBoxClass, kBoxStyle, width, height, parent);
  if (!box) b.Clear();
  return box;
}

int MessageBoxResult() { return g_result; }
const CBuffer& MessageBoxText() { return Typed(); }

bool OfferChildChar(const MSG& message) {
  if (message.message != WM_CHAR || !message.hwnd) return false;
  if ((GetWindowLongPtrA(message.hwnd, GWL_STYLE) & WS_CHILD) == 0) return false;
  HWND parent = GetParent(message.hwnd);
  return parent && SendMessageA(parent, UM_CHILDCHAR, message.wParam, message.lParam) != 0;
}

int RunMessageBox(HWND box) {
  MSG message;
  while (box && Box().window == box) {
    const BOOL got = GetMessageA(&message, nullptr, 0, 0);
    if (got == 0) {
      PostQuitMessage(static_cast<int>(message.wParam));
      break;
    }
    if (got < 0) break;
    if (OfferChildChar(message)) continue;
    TranslateMessage(&message);
    DispatchMessageA(&message);
  }
  return g_result;
}

}  // namespace qv
