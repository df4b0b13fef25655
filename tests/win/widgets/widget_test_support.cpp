// The widget tests' parent window, input driver, snapshots and the process-wide set-up.
#include "widget_test_support.h"

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
