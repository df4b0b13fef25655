// WinMain: start-up checks, the program folder, the resource file and the message loop.
#include <windows.h>

#include <cstdlib>
#include <string>

#include "graphics/resource_file.h"
#include "shell/debug_output.h"
#include "system/random.h"

namespace {

constexpr char kMainClass[] = "CWNDBACK";

std::string ProgramFolder() {
  char path[MAX_PATH] = {};
  const DWORD length = GetModuleFileNameA(nullptr, path, MAX_PATH);
  std::string folder(path, length);
  const auto slash = folder.find_last_of("\\/");
  return slash == std::string::npos ? std::string() : folder.substr(0, slash + 1);
}

// Tests make the scatter reproducible through QUORVEX_SEED; players get the clock.
void SeedRandomSource() {
  const char* seed = std::getenv("QUORVEX_SEED");
  if (seed && *seed) {
    qv::SeedRandom(std::strtoull(seed, nullptr, 10));
  } else {
    qv::SeedRandomFromClock();
  }
}

bool DisplayIsUsable() {
  HDC screen = GetDC(nullptr);
  const int bits = GetDeviceCaps(screen, BITSPIXEL) * GetDeviceCaps(screen, PLANES);
  ReleaseDC(nullptr, screen);
  return GetSystemMetrics(SM_CXSCREEN) >= 800 && GetSystemMetrics(SM_CYSCREEN) >= 600 &&
         bits >= 16;
}

void OnPaint(HWND window) {
  PAINTSTRUCT paint;
  HDC dc = BeginPaint(window, &paint);
  RECT client;
  GetClientRect(window, &client);
  HBRUSH felt = CreateSolidBrush(RGB(22, 78, 46));
  FillRect(dc, &client, felt);
  DeleteObject(felt);
  SetBkMode(dc, TRANSPARENT);
  SetTextColor(dc, RGB(240, 228, 196));
  // DT_VCENTER works on single lines only, so measure the block and centre it by hand.
  const char* text = "Quorvex Puzzle\n\nEsc: quit";
  RECT block = client;
  DrawTextA(dc, text, -1, &block, DT_CENTER | DT_CALCRECT);
  const int height = block.bottom - block.top;
  RECT centred{client.left, (client.bottom - height) / 2, client.right,
               (client.bottom + height) / 2};
  DrawTextA(dc, text, -1, &centred, DT_CENTER | DT_NOCLIP);
  EndPaint(window, &paint);
}

LRESULT CALLBACK MainWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_PAINT:
      OnPaint(window);
      return 0;
    case WM_KEYDOWN:
      if (wParam == VK_ESCAPE) DestroyWindow(window);
      return 0;
    case WM_DESTROY:
      PostQuitMessage(0);
      return 0;
    default:
      return DefWindowProcA(window, message, wParam, lParam);
  }
}

}  // namespace

int WINAPI WinMain(HINSTANCE instance, HINSTANCE, LPSTR, int) {
  qv::InstallDebuggerAssertHandler();
  SeedRandomSource();
  if (!DisplayIsUsable()) {
    MessageBoxA(nullptr,
                "Quorvex Puzzle needs a display of at least 800 x 600 pixels with 16 bits of "
                "colour or more.",
                "Quorvex Puzzle", MB_OK | MB_ICONSTOP);
    return 1;
  }
  const std::string folder = ProgramFolder();
  qv::OpenResourceFile((folder + "Quorvex.rf").c_str());

  WNDCLASSA windowClass{};
  windowClass.lpfnWndProc = MainWindowProc;
  windowClass.hInstance = instance;
  windowClass.hCursor = LoadCursor(nullptr, IDC_ARROW);
  windowClass.lpszClassName = kMainClass;
  if (!RegisterClassA(&windowClass)) return 1;

  HWND window = CreateWindowExA(0, kMainClass, "Quorvex Puzzle", WS_POPUP | WS_VISIBLE, 0, 0,
                                GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN),
                                nullptr, nullptr, instance, nullptr);
  if (!window) return 1;

  MSG message;
  while (GetMessageA(&message, nullptr, 0, 0) > 0) {
    TranslateMessage(&message);
    DispatchMessageA(&message);
  }
  return static_cast<int>(message.wParam);
}
