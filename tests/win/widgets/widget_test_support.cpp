// The widget tests' parent window, input driver, snapshots and the process-wide set-up.
#include "widget_test_support.h"

#include <cstdio>
#include <string>

#include "graphics/resource_file.h"
#include "system/debug_output.h"
#include "support/rf_writer.h"
#include "widgets/widget_sounds.h"

namespace qv::test {

PackedDib SolidPicture(int width, int height, int index) {
  PackedDib picture;
  picture.Allocate(width, height);
  DibHeader(picture.get())->biClrUsed = 256;
  for (int i = 0; i < 256; ++i) DibColours(picture.get())[i] = PaletteEntry(i);
  FillRect8(picture.get(), 0, 0, width, height, index);
  return picture;
}

void FillRect8(HIMAGE picture, int x, int y, int width, int height, int index) {
  for (int row = y; row < y + height; ++row) {
    for (int column = x; column < x + width; ++column) {
      *ImagePixel(picture, column, row) = static_cast<std::uint8_t>(index);
    }
  }
}

PackedDib VerticalStrip(int width, int frameHeight, int frames, int base) {
  PackedDib strip = SolidPicture(width, frameHeight * frames, 0);
  for (int k = 0; k < frames; ++k) {
    FillRect8(strip.get(), 0, k * frameHeight, width, frameHeight, base + k);
    *ImagePixel(strip.get(), 1, k * frameHeight + 1) = static_cast<std::uint8_t>(200 + k);
  }
  return strip;
}

// ---- Parent ----------------------------------------------------------------------------------

namespace {

constexpr char kParentClass[] = "QvWidgetTestParent";
constexpr int kParentWidth = 640;
constexpr int kParentHeight = 480;

LRESULT CALLBACK ParentProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case MWM_NOTIFY:
      TestParent::Notes().push_back(
          Note{reinterpret_cast<HWND>(lParam), static_cast<int>(wParam)});
      return 0;
    case WM_ERASEBKGND:
      return 1;
    case WM_PAINT: {
      PAINTSTRUCT ps;
      HDC dc = BeginPaint(window, &ps);
      PatBlt(dc, ps.rcPaint.left, ps.rcPaint.top, ps.rcPaint.right - ps.rcPaint.left,
             ps.rcPaint.bottom - ps.rcPaint.top, WHITENESS);
      EndPaint(window, &ps);
      return 0;
    }
    default:
      return DefWindowProcA(window, message, wParam, lParam);
  }
}

// Writes the message box's pictures into a resource file and opens it, registers the classes,
// and keeps the failed checks of the set-up out of the tests' records.
class WidgetEnvironment : public ::testing::Environment {
 public:
  void SetUp() override {
    InstallDebuggerAssertHandler();
    HINSTANCE module = GetModuleHandleA(nullptr);
    ASSERT_TRUE(RegisterWidgetClasses(module));
    ASSERT_TRUE(RegisterMessageBoxClass(module));
    WNDCLASSA parent{};
    parent.lpfnWndProc = ParentProc;
    parent.hInstance = module;
    parent.hCursor = LoadCursor(nullptr, IDC_ARROW);
    parent.lpszClassName = kParentClass;
    ASSERT_TRUE(RegisterClassA(&parent));

    std::vector<RfPicture> pictures;
    pictures.push_back(AsRfPicture(kMessageBoxFace, SolidPicture(500, 305, 180)));
    pictures.push_back(AsRfPicture(kMessageBoxOk, VerticalStrip(70, 40, 3, 20)));
    pictures.push_back(AsRfPicture(kMessageBoxCancel, VerticalStrip(70, 40, 3, 30)));
    pictures.push_back(AsRfPicture(kMessageBoxIcon, SolidPicture(40, 40, 40)));
    char folder[MAX_PATH];
    GetTempPathA(MAX_PATH, folder);
    const std::string path = std::string(folder) + "qv_widget_tests.rf";
    WriteBytes(path, BuildResourceFile(pictures));
    ASSERT_TRUE(OpenResourceFile(path.c_str()));
  }

 private:
  static RfPicture AsRfPicture(std::uint32_t id, const PackedDib& dib) {
    RfPicture p;
    p.identifier = id;
    p.width = dib.width();
    p.height = dib.height();
    p.bitCount = 8;
    p.colours.assign(DibColours(dib.get()), DibColours(dib.get()) + 256);
    p.pixels.assign(DibPixels(dib.get()),
                    DibPixels(dib.get()) + DibHeader(dib.get())->biSizeImage);
    return p;
  }
};

const auto* const g_environment = ::testing::AddGlobalTestEnvironment(new WidgetEnvironment);

}  // namespace

std::vector<Note>& TestParent::Notes() {
  static std::vector<Note> notes;
  return notes;
}

TestParent::TestParent() {
  // The pointer starts every test away from where widgets appear, so that no widget created
  // under a pointer left there by the test before starts its life hovered.
  MoveTo(kNeutralX, kNeutralY);
  Notes().clear();
  window_ = CreateWindowExA(0, kParentClass, "widget test", WS_POPUP | WS_VISIBLE | WS_CLIPCHILDREN,
                            kLeft, kTop, kParentWidth, kParentHeight, nullptr, nullptr,
                            GetModuleHandleA(nullptr), nullptr);
  SetForegroundWindow(window_);
  Pump(30);
}

TestParent::~TestParent() {
  if (GetCapture()) ReleaseCapture();
  DestroyWindow(window_);
  Pump(10);
}

HWND TestParent::AddChild(const char* className, int x, int y, int width, int height) {
  HWND child = CreateWindowExA(0, className, "", WS_CHILD | WS_VISIBLE, x, y, width, height,
                               window_, nullptr, GetModuleHandleA(nullptr), nullptr);
  EXPECT_NE(child, nullptr) << className;
  return child;
}

std::vector<int> TestParent::CodesFrom(HWND child) const {
  std::vector<int> codes;
  for (const Note& n : Notes()) {
    if (n.from == child) codes.push_back(n.code);
  }
  return codes;
}

void TestParent::Clear() { Notes().clear(); }

// ---- Input -----------------------------------------------------------------------------------

void Pump(int ms) {
  const DWORD end = GetTickCount() + static_cast<DWORD>(ms);
  MSG message;
  do {
    while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
      if (OfferChildChar(message)) continue;
      TranslateMessage(&message);
      DispatchMessageA(&message);
    }
    Sleep(2);
  } while (static_cast<LONG>(end - GetTickCount()) > 0);
}

namespace {

bool UnderWine() {
  HMODULE ntdll = GetModuleHandleA("ntdll.dll");
  return ntdll && GetProcAddress(ntdll, "wine_get_version") != nullptr;
}

// Under Wine the pointer is driven through the X server's test extension, exactly as a real
// mouse drives it: Wine's own warps (SetCursorPos, absolute SendInput) report the pointer's old
// place once more after the new one, which would show widgets a move that no mouse made.
// Starts it without waiting: Wine cannot wait for a Unix process, so callers wait for the
// pointer or the button to change instead.
bool Xdotool(const char* arguments) {
  char command[160];
  std::snprintf(command, sizeof command, "/usr/bin/xdotool %s", arguments);
  STARTUPINFOA startup{};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION process{};
  if (!CreateProcessA(nullptr, command, nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                      &process)) {
    return false;
  }
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  return true;
}

bool UseXdotool() {
  // Wine shows the Unix root as drive Z:.
  static const bool use =
      UnderWine() && GetFileAttributesA("Z:\\usr\\bin\\xdotool") != INVALID_FILE_ATTRIBUTES;
  return use;
}

// Pumps until the condition holds (at most 1.5 s), then a little more for what follows it.
template <class Condition>
bool PumpUntil(Condition&& done) {
  const DWORD start = GetTickCount();
  while (!done()) {
    if (GetTickCount() - start > 1500) return false;
    Pump(5);
  }
  Pump(30);
  return true;
}

bool PointerAt(int x, int y) {
  POINT now{-1, -1};
  return GetCursorPos(&now) && now.x == x && now.y == y;
}

bool LeftHeld() { return (GetAsyncKeyState(VK_LBUTTON) & 0x8000) != 0; }

void SendMouse(DWORD flags) {
  INPUT input{};
  input.type = INPUT_MOUSE;
  input.mi.dwFlags = flags;
  SendInput(1, &input, sizeof input);
}

}  // namespace

bool SettlePointer(int screenX, int screenY) {
  return PumpUntil([&] { return PointerAt(screenX, screenY); });
}

void SendPointerTo(int screenX, int screenY) {
  if (UseXdotool()) {
    char arguments[64];
    std::snprintf(arguments, sizeof arguments, "mousemove %d %d", screenX, screenY);
    Xdotool(arguments);
  } else {
    SetCursorPos(screenX, screenY);
    SendMouse(MOUSEEVENTF_MOVE);
  }
}

void MoveTo(int screenX, int screenY) {
  SendPointerTo(screenX, screenY);
  EXPECT_TRUE(SettlePointer(screenX, screenY))
      << "the pointer did not reach " << screenX << "," << screenY;
}

void MoveToClient(HWND window, int x, int y) {
  POINT p{x, y};
  ClientToScreen(window, &p);
  MoveTo(p.x, p.y);
}

void LeftDown() {
  if (!UseXdotool() || !Xdotool("mousedown 1")) SendMouse(MOUSEEVENTF_LEFTDOWN);
  PumpUntil([] { return LeftHeld(); });
}

void LeftUp() {
  if (!LeftHeld()) return;
  if (!UseXdotool() || !Xdotool("mouseup 1")) SendMouse(MOUSEEVENTF_LEFTUP);
  PumpUntil([] { return !LeftHeld(); });
}

void TypeCharacter(char c) {
  INPUT keys[2]{};
  for (INPUT& key : keys) {
    key.type = INPUT_KEYBOARD;
    key.ki.wScan = static_cast<WORD>(static_cast<unsigned char>(c));
    key.ki.dwFlags = KEYEVENTF_UNICODE;
  }
  keys[1].ki.dwFlags |= KEYEVENTF_KEYUP;
  SendInput(2, keys, sizeof(INPUT));
  Pump(20);
}

// ---- Snapshots -------------------------------------------------------------------------------

SIZE ClientSize(HWND window) {
  RECT client{0, 0, 0, 0};
  GetClientRect(window, &client);
  return SIZE{client.right, client.bottom};
}

RECT RectInParent(HWND window) {
  RECT rect;
  GetWindowRect(window, &rect);
  MapWindowPoints(nullptr, GetParent(window), reinterpret_cast<POINT*>(&rect), 2);
  return rect;
}

Snapshot::Snapshot(HWND window) {
  const SIZE size = ClientSize(window);
  width_ = size.cx;
  height_ = size.cy;
  widget::PixelSurface surface(width_, height_);
  if (!surface.ok()) return;
  SendMessageA(window, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(surface.dc()), PRF_CLIENT);
  const std::uint32_t* pixels = surface.pixels();
  pixels_.assign(pixels, pixels + static_cast<std::size_t>(width_) * height_);
}

std::uint32_t Snapshot::At(int x, int y) const {
  if (x < 0 || y < 0 || x >= width_ || y >= height_ || pixels_.empty()) return 0xFFFFFFFF;
  return pixels_[static_cast<std::size_t>(y) * width_ + x] & 0x00FFFFFF;
}

SoundLog::SoundLog() {
  Played().clear();
  SetWidgetSoundObserver([](int resource) { Played().push_back(resource); });
}
SoundLog::~SoundLog() { SetWidgetSoundObserver(nullptr); }
std::vector<int>& SoundLog::Played() {
  static std::vector<int> played;
  return played;
}

}  // namespace qv::test
