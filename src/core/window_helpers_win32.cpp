// The window idioms shared by every screen.
#include "core/window_helpers.h"

#include "core/screen_fit.h"
#include "widgets/widget_messages.h"

namespace qv {
namespace {

ScreenSpot ScreenSize() {
  return ScreenSpot{GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)};
}

void MoveTo(HWND screen, int x, int y) {
  RECT frame;
  if (!GetWindowRect(screen, &frame)) return;
  const ScreenSpot size = ScreenSize();
  const ScreenSpot spot = KeepOnScreen(x, y, frame.right - frame.left, frame.bottom - frame.top,
                                       size.x, size.y);
  if (spot.x == frame.left && spot.y == frame.top) return;
  SetWindowPos(screen, nullptr, spot.x, spot.y, 0, 0,
               SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOOWNERZORDER);
}

}  // namespace

void ShowInPlace(HWND window) {
  if (window) SetWindowPos(window, nullptr, 0, 0, 0, 0, kShowInPlaceFlags);
}

void HideInPlace(HWND window) {
  if (window) SetWindowPos(window, nullptr, 0, 0, 0, 0, kHideInPlaceFlags);
}

void RedrawForPalette(HWND window, HWND changer) {
  if (changer != window) InvalidateRect(window, nullptr, FALSE);
}

bool RegisterScreenClass(HINSTANCE instance, const char* name, WNDPROC procedure, UINT style,
                         HBRUSH background, const char* cursor) {
  WNDCLASSA c{};
  c.style = style;
  c.lpfnWndProc = procedure;
  c.hInstance = instance;
  c.hCursor = LoadCursorA(nullptr, cursor);
  c.hbrBackground = background;
  c.lpszClassName = name;
  return RegisterClassA(&c) != 0 || GetLastError() == ERROR_CLASS_ALREADY_EXISTS;
}

HWND CreatePictureChild(HWND parent, const char* className, int x, int y, const void* picture,
                        int identifier, bool visible) {
  const DWORD style = WS_CHILD | WS_CLIPSIBLINGS | (visible ? WS_VISIBLE : 0);
  HWND child = CreateWindowExA(0, className, "", style, x, y, 50, 50, parent, reinterpret_cast<HMENU>(static_cast<INT_PTR>(identifier)),
                               GetModuleHandleA(nullptr), nullptr);
  if (child && picture) {
    SendMessageA(child, MWM_SETIMAGE, 0, reinterpret_cast<LPARAM>(picture));
  }
  return child;
}

HWND OpenCentredScreen(const char* className, DWORD style, int clientWidth, int clientHeight,
                       HWND owner, void* createParams) {
  RECT frame{0, 0, clientWidth, clientHeight};
  AdjustWindowRect(&frame, style, FALSE);
  const int width = frame.right - frame.left;
  const int height = frame.bottom - frame.top;
  const ScreenSpot size = ScreenSize();
  const ScreenSpot at = CentreOnDisplay(width, height, size.x, size.y);
  if (owner) EnableWindow(owner, FALSE);
  HWND screen = CreateWindowExA(0, className, "", style, at.x, at.y, width, height, owner, nullptr,
                                GetModuleHandleA(nullptr), createParams);
  if (!screen && owner) EnableWindow(owner, TRUE);
  return screen;
}

void EnableOwnerOnClose(HWND screen) {
  HWND owner = GetWindow(screen, GW_OWNER);
  if (!owner) return;
  EnableWindow(owner, TRUE);
  // The keyboard goes back to the owner with the activation. Under Wine the owner of a screen
  // destroyed while it was active did not always become active again, and keys then reached no
  // window of the game (Escape during a drag among them).
  // Only while the game has the foreground: another program the player went to keeps it.
  HWND active = GetActiveWindow();
  HWND foreground = GetForegroundWindow();
  DWORD process = 0;
  if (foreground) GetWindowThreadProcessId(foreground, &process);
  const bool ours = !foreground || process == GetCurrentProcessId();
  if (ours && (!active || active == screen)) {
    SetForegroundWindow(owner);
    SetActiveWindow(owner);
  }
}

void StartBackgroundDrag(HWND screen, BackgroundDrag& drag) {
  POINT cursor;
  RECT frame;
  if (!GetCursorPos(&cursor) || !GetWindowRect(screen, &frame)) return;
  drag.active = true;
  drag.grab = POINT{cursor.x - frame.left, cursor.y - frame.top};
  SetCapture(screen);
}

void FollowBackgroundDrag(HWND screen, const BackgroundDrag& drag) {
  POINT cursor;
  if (!drag.active || !GetCursorPos(&cursor)) return;
  MoveTo(screen, cursor.x - drag.grab.x, cursor.y - drag.grab.y);
}

void EndBackgroundDrag(HWND screen, BackgroundDrag& drag) {
  if (!drag.active) return;
  drag.active = false;
  if (GetCapture() == screen) ReleaseCapture();
}

void KeepWindowOnScreen(HWND screen) {
  RECT frame;
  if (GetWindowRect(screen, &frame)) MoveTo(screen, frame.left, frame.top);
}

}  // namespace qv
