// widget_demo: every widget of the library on one screen, to be tried by hand (not shipped).
#include <windows.h>

#include <cstdio>
#include <string>
#include <vector>

#include "graphics/himage_draw.h"
#include "graphics/himage_ops.h"
#include "graphics/resource_file.h"
#include "system/debug_output.h"
#include "support/rf_writer.h"
#include "widgets/demo/demo_art.h"
#include "widgets/widget_classes.h"

namespace {

using qv::PackedDib;

constexpr char kDemoClass[] = "QvWidgetDemo";
constexpr int kWidth = 900;
constexpr int kHeight = 600;
constexpr UINT kDemoMessage = 700;  // string base of the box's text in the demo's string table

// Everything the demo window owns: the pictures it lends to its widgets and the widgets.
struct Demo {
  PackedDib background = qv::demo::Background(kWidth, kHeight);
  PackedDib play = qv::demo::PushStrip(130, 38, "Play");
  PackedDib locked = qv::demo::PushStrip(130, 38, "Locked");
  PackedDib box = qv::demo::PushStrip(50, 50, "1");
  PackedDib message = qv::demo::PushStrip(130, 38, "Message...");
  PackedDib sound = qv::demo::CheckStrip(190, 30, "Sound effects", false);
  PackedDib disableAll = qv::demo::CheckStrip(190, 30, "Disable widgets", false);
  PackedDib radios[3] = {qv::demo::CheckStrip(190, 30, "Small pieces", true),
                         qv::demo::CheckStrip(190, 30, "Medium pieces", true),
                         qv::demo::CheckStrip(190, 30, "Large pieces", true)};
  PackedDib dial = qv::demo::DialStrip(70);
  PackedDib ball = qv::demo::BallStrip(70);
  PackedDib scrollPicture = qv::demo::ScrollPicture(40, 34, 90, 34);
  PackedDib knob = qv::demo::KnobStrip(26, 18);

  // The picture behind the transparent animation, held in a drawing context as it asks.
  HDC ballBackground = nullptr;
  HBITMAP ballBitmap = nullptr;
  HGDIOBJ ballPrevious = nullptr;

  HWND playButton, lockedButton, boxButton, messageButton, soundCheck, disableCheck;
  HWND radio[3];
  HWND dialAnim, ballAnim, scroll, scrollValue, across, up, acrossValue, upValue, title, caption,
      status;
  int dialFrame = 0;
  int ballFrame = 0;
};

Demo* DemoOf(HWND window) {
  return reinterpret_cast<Demo*>(GetWindowLongPtrA(window, GWLP_USERDATA));
}

LPARAM Picture(const PackedDib& p) { return reinterpret_cast<LPARAM>(p.get()); }

HWND Child(HWND parent, const char* className, int x, int y) {
  return CreateWindowExA(0, className, "", WS_CHILD | WS_VISIBLE, x, y, 10, 10, parent, nullptr,
                         GetModuleHandleA(nullptr), nullptr);
}

HWND Button(HWND parent, const char* className, int x, int y, const PackedDib& strip) {
  HWND button = Child(parent, className, x, y);
  SendMessageA(button, qv::MWM_SETDISABLEDFRAME, 0, 1);
  SendMessageA(button, qv::MWM_SETIMAGE, 0, Picture(strip));
  return button;
}

HWND Caption(HWND parent, Demo& d, int x, int y, const char* text, int height, bool shadow) {
  HWND caption = Child(parent, qv::kTextClass, x, y);
  SendMessageA(caption, qv::MWM_SETIMAGE, 0, Picture(d.background));
  SendMessageA(caption, qv::text::MWM_SETFONTHEIGHT, 0, height);
  SendMessageA(caption, qv::text::MWM_SETSHADOW, 0, shadow ? 1 : 0);
  SendMessageA(caption, qv::text::MWM_SETTEXTCOLOUR, 0, RGB(250, 240, 210));
  SendMessageA(caption, qv::text::MWM_SETTEXT, 0, reinterpret_cast<LPARAM>(text));
  SendMessageA(caption, qv::text::MWM_SETFACENAME, 0, reinterpret_cast<LPARAM>("Tahoma"));
  return caption;
}

void SetCaption(HWND caption, const std::string& text) {
  SendMessageA(caption, qv::text::MWM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str()));
}

void ShowValue(HWND caption, const char* label, LRESULT value) {
  char text[64];
  std::snprintf(text, sizeof text, "%s %ld", label, static_cast<long>(value));
  SetCaption(caption, text);
}

void MakeBallBackground(Demo& d, int x, int y) {
  HDC screen = GetDC(nullptr);
  d.ballBackground = CreateCompatibleDC(screen);
  d.ballBitmap = CreateCompatibleBitmap(screen, 70, 70);
  ReleaseDC(nullptr, screen);
  d.ballPrevious = SelectObject(d.ballBackground, d.ballBitmap);
  qv::ImageDrawToContext(d.ballBackground, 0, 0, 70, 70, d.background.get(), x, y, qv::kRopSrcCopy);
}

void MakeAnimations(HWND window, Demo& d) {
  d.dialAnim = Child(window, qv::kAnimClass, 470, 120);
  SendMessageA(d.dialAnim, qv::MWM_SETIMAGE, 0, Picture(d.dial));
  SendMessageA(d.dialAnim, qv::anim::MWM_SETCOLUMNS, 0, 10);
  SendMessageA(d.dialAnim, qv::anim::MWM_SETINTERVAL, 0, 120);
  SendMessageA(d.dialAnim, qv::anim::MWM_SETRUNNING, 0, 1);

  MakeBallBackground(d, 570, 120);
  d.ballAnim = Child(window, qv::kAnimClass, 570, 120);
  SendMessageA(d.ballAnim, qv::anim::MWM_SETTRANSPARENT, 0, 1);
  SendMessageA(d.ballAnim, qv::MWM_SETIMAGE, 0, Picture(d.ball));
  SendMessageA(d.ballAnim, qv::anim::MWM_SETCOLUMNS, 0, 8);
  SendMessageA(d.ballAnim, qv::anim::MWM_SETBACKGROUND, 0,
               reinterpret_cast<LPARAM>(d.ballBackground));
  SendMessageA(d.ballAnim, qv::anim::MWM_SETRUNNING, 0, 1);
}

HWND Slider(HWND window, Demo& d, POINT start, POINT end) {
  qv::demo::DrawGroove(d.background, start, end);
  HWND slider = Child(window, qv::kSlideClass, start.x, start.y);
  SendMessageA(slider, qv::slide::MWM_SETBACKGROUND, 0, Picture(d.background));
  SendMessageA(slider, qv::slide::MWM_SETKNOB, 0, Picture(d.knob));
  SendMessageA(slider, qv::slide::MWM_SETSTART, 0, MAKELPARAM(start.x, start.y));
  SendMessageA(slider, qv::slide::MWM_SETEND, 0, MAKELPARAM(end.x, end.y));
  return slider;
}

void MakeValueWidgets(HWND window, Demo& d) {
  d.scroll = Child(window, qv::kScrollClass, 720, 120);
  SendMessageA(d.scroll, qv::MWM_SETIMAGE, 0, Picture(d.scrollPicture));
  SendMessageA(d.scroll, qv::scroll::MWM_SETPARTSIZE1, 0, 34);
  SendMessageA(d.scroll, qv::scroll::MWM_SETPARTSIZE2, 0, 90);
  SendMessageA(d.scroll, qv::scroll::MWM_SETPARTSIZE3, 0, 34);
  d.scrollValue = Caption(window, d, 700, 290, "Scroll 50", 20, true);

  d.across = Slider(window, d, POINT{480, 360}, POINT{680, 360});
  d.acrossValue = Caption(window, d, 480, 385, "Slider 50", 20, true);
  d.up = Slider(window, d, POINT{800, 500}, POINT{800, 340});
  SendMessageA(d.up, qv::slide::MWM_SETSTEP, 0, 10);
  d.upValue = Caption(window, d, 730, 510, "Volume 50", 20, true);
}

void MakeWidgets(HWND window, Demo& d) {
  d.title = Caption(window, d, 60, 28, "Quorvex widgets", 40, true);
  d.playButton = Button(window, qv::kCommandClass, 70, 120, d.play);
  d.lockedButton = Button(window, qv::kCommandClass, 70, 170, d.locked);
  SendMessageA(d.lockedButton, qv::MWM_SETENABLED, 0, 0);
  d.boxButton = Button(window, qv::kBoxCommandClass, 70, 225, d.box);
  d.messageButton = Button(window, qv::kCommandClass, 70, 300, d.message);

  d.soundCheck = Child(window, qv::kCheckClass, 250, 120);
  SendMessageA(d.soundCheck, qv::MWM_SETIMAGE, 0, Picture(d.sound));
  SendMessageA(d.soundCheck, qv::MWM_SETCHECK, 0, 1);
  d.disableCheck = Child(window, qv::kCheckClass, 250, 160);
  SendMessageA(d.disableCheck, qv::MWM_SETIMAGE, 0, Picture(d.disableAll));
  for (int i = 0; i < 3; ++i) {
    d.radio[i] = Child(window, qv::kCheckClass, 250, 215 + 36 * i);
    SendMessageA(d.radio[i], qv::MWM_SETIMAGE, 0, Picture(d.radios[i]));
    SendMessageA(d.radio[i], qv::MWM_SETRADIO, 0, 1);
  }
  SendMessageA(d.radio[1], qv::MWM_SETCHECK, 0, 1);

  MakeAnimations(window, d);
  MakeValueWidgets(window, d);
  d.caption = Caption(window, d, 70, 400, "Click this caption", 28, true);
  d.status = Caption(window, d, 70, 510, "Try every widget: events are shown here.", 20, false);
}

const char* CodeName(int code) {
  static const char* const names[] = {"pressed",        "released",       "enter",
                                      "leave",          "clicked",        "changed"};
  return code >= 0 && code < 6 ? names[code] : "part event";
}

void OpenMessageBox(HWND window, Demo& d) {
  HWND box = qv::ShowMessageBox(kDemoMessage, window, true, true);
  if (!box) return;
  const int result = qv::RunMessageBox(box);
  EnableWindow(window, TRUE);  // the caller's duty once the box is gone
  SetCaption(d.status, std::string("Message box: ") + (result ? "OK" : "Cancel") + ", typed \"" +
                           qv::MessageBoxText().Text() + "\"");
}

void OnRadio(Demo& d, HWND from) {
  for (HWND r : d.radio) {
    if (r != from) SendMessageA(r, qv::MWM_SETCHECK, 0, 0);
  }
}

void OnDisableAll(Demo& d) {
  const LPARAM enable = SendMessageA(d.disableCheck, qv::MWM_GETCHECK, 0, 0) ? 0 : 1;
  for (HWND w : {d.playButton, d.boxButton, d.soundCheck, d.radio[0], d.radio[1], d.radio[2],
                 d.dialAnim, d.scroll, d.across, d.up, d.caption}) {
    SendMessageA(w, qv::MWM_SETENABLED, 0, enable);
    // Some widgets change only their state when disabled; the caller shows the new look.
    InvalidateRect(w, nullptr, FALSE);
  }
}

// The parent's side of the notification scheme: frames for the animations, values, actions.
void OnNotify(HWND window, Demo& d, int code, HWND from) {
  if (from == d.dialAnim && code == qv::MWN_CHANGED) {
    d.dialFrame = (d.dialFrame + 1) % 10;
    SendMessageA(from, qv::anim::MWM_SETFRAME, 0, d.dialFrame);
    return;
  }
  if (from == d.ballAnim && code == qv::MWN_CHANGED) {
    d.ballFrame = (d.ballFrame + 1) % 8;
    SendMessageA(from, qv::anim::MWM_SETFRAME, 0, d.ballFrame);
    return;
  }
  if (from == d.scroll && code == qv::MWN_CLICKED) {
    ShowValue(d.scrollValue, "Scroll", SendMessageA(from, qv::scroll::MWM_GETVALUE, 0, 0));
  } else if (from == d.across && code == qv::MWN_CLICKED) {
    ShowValue(d.acrossValue, "Slider", SendMessageA(from, qv::slide::MWM_GETVALUE, 0, 0));
  } else if (from == d.up && code == qv::MWN_CLICKED) {
    ShowValue(d.upValue, "Volume", SendMessageA(from, qv::slide::MWM_GETVALUE, 0, 0));
  } else if (code == qv::MWN_CLICKED && from == d.messageButton) {
    OpenMessageBox(window, d);
    return;
  } else if (code == qv::MWN_CLICKED && from == d.disableCheck) {
    OnDisableAll(d);
  } else if (code == qv::MWN_CLICKED && (from == d.radio[0] || from == d.radio[1] ||
                                         from == d.radio[2])) {
    OnRadio(d, from);
  }
  if (from != d.status && code != qv::MWN_ENTER && code != qv::MWN_LEAVE) {
    char name[32] = {};
    GetClassNameA(from, name, sizeof name);
    SetCaption(d.status, std::string(name) + ": " + CodeName(code) + " (" +
                             std::to_string(code) + ")");
  }
}

void OnPaint(HWND window, const Demo& d) {
  PAINTSTRUCT ps;
  HDC dc = BeginPaint(window, &ps);
  qv::ImageFill(dc, ps.rcPaint, d.background.get(), qv::kRopSrcCopy);
  EndPaint(window, &ps);
}

void OnDestroy(HWND window) {
  Demo* d = DemoOf(window);
  SetWindowLongPtrA(window, GWLP_USERDATA, 0);
  if (d && d->ballBackground) {
    SelectObject(d->ballBackground, d->ballPrevious);
    DeleteObject(d->ballBitmap);
    DeleteDC(d->ballBackground);
  }
  delete d;
  PostQuitMessage(0);
}

LRESULT CALLBACK DemoProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  Demo* d = DemoOf(window);
  switch (message) {
    case WM_CREATE: {
      auto* demo = new Demo();
      SetWindowLongPtrA(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(demo));
      MakeWidgets(window, *demo);
      return 0;
    }
    case WM_ERASEBKGND:
      return 1;
    case WM_PAINT:
      if (d) OnPaint(window, *d);
      return 0;
    case qv::MWM_NOTIFY:
      if (d) OnNotify(window, *d, static_cast<int>(wParam), reinterpret_cast<HWND>(lParam));
      return 0;
    case WM_KEYDOWN:
      if (wParam == VK_ESCAPE) DestroyWindow(window);
      return 0;
    case WM_DESTROY:
      OnDestroy(window);
      return 0;
    default:
      return DefWindowProcA(window, message, wParam, lParam);
  }
}

qv::test::RfPicture AsRfPicture(std::uint32_t id, const PackedDib& dib) {
  qv::test::RfPicture p;
  p.identifier = id;
  p.width = dib.width();
  p.height = dib.height();
  p.colours.assign(qv::DibColours(dib.get()), qv::DibColours(dib.get()) + 256);
  p.pixels.assign(qv::DibPixels(dib.get()),
                  qv::DibPixels(dib.get()) + qv::DibHeader(dib.get())->biSizeImage);
  return p;
}

// The message box takes its pictures from the resource file by identifier; until the real
// interface art exists the demo writes a small file of its own.
bool OpenDemoResourceFile() {
  const PackedDib ok = qv::demo::PushStrip(70, 40, "OK");
  const PackedDib cancel = qv::demo::PushStrip(70, 40, "Cancel");
  // The box's buttons have no disabled frame: drop the first of the four.
  auto withoutDisabled = [](const PackedDib& strip) {
    qv::test::RfPicture p = AsRfPicture(0, strip);
    p.height = strip.height() * 3 / 4;
    p.pixels.resize(static_cast<std::size_t>(qv::DibRowBytes(p.width, 8) * p.height));
    return p;
  };
  std::vector<qv::test::RfPicture> pictures = {
      AsRfPicture(qv::kMessageBoxFace, qv::demo::MessageFace()),
      AsRfPicture(qv::kMessageBoxIcon, qv::demo::MessageIcon())};
  pictures.push_back(withoutDisabled(ok));
  pictures.back().identifier = qv::kMessageBoxOk;
  pictures.push_back(withoutDisabled(cancel));
  pictures.back().identifier = qv::kMessageBoxCancel;
  char folder[MAX_PATH];
  GetTempPathA(MAX_PATH, folder);
  const std::string path = std::string(folder) + "qv_widget_demo.rf";
  qv::test::WriteBytes(path, qv::test::BuildResourceFile(pictures));
  return qv::OpenResourceFile(path.c_str());
}

}  // namespace

int WINAPI WinMain(HINSTANCE instance, HINSTANCE, LPSTR, int) {
  qv::InstallDebuggerAssertHandler();
  if (!qv::RegisterWidgetClasses(instance) || !qv::RegisterMessageBoxClass(instance)) return 1;
  OpenDemoResourceFile();

  WNDCLASSA windowClass{};
  windowClass.lpfnWndProc = DemoProc;
  windowClass.hInstance = instance;
  windowClass.hCursor = LoadCursor(nullptr, IDC_ARROW);
  windowClass.lpszClassName = kDemoClass;
  if (!RegisterClassA(&windowClass)) return 1;

  RECT outer{0, 0, kWidth, kHeight};
  const DWORD style = WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU | WS_MINIMIZEBOX | WS_CLIPCHILDREN;
  AdjustWindowRect(&outer, style, FALSE);
  const int width = outer.right - outer.left;
  const int height = outer.bottom - outer.top;
  HWND window = CreateWindowExA(0, kDemoClass, "Quorvex widget demo", style | WS_VISIBLE,
                                (GetSystemMetrics(SM_CXSCREEN) - width) / 2,
                                (GetSystemMetrics(SM_CYSCREEN) - height) / 2, width, height,
                                nullptr, nullptr, instance, nullptr);
  if (!window) return 1;
  SetForegroundWindow(window);

  MSG message;
  while (GetMessageA(&message, nullptr, 0, 0) > 0) {
    if (qv::OfferChildChar(message)) continue;
    TranslateMessage(&message);
    DispatchMessageA(&message);
  }
  return static_cast<int>(message.wParam);
}
