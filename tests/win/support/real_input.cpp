// The window tests' input driver: the message loop, the real pointer and the game's data.
#include "real_input.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <deque>

#include "widgets/widget_classes.h"
#include "widgets/widget_messages.h"

namespace qv::test {

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

void SendMouse(DWORD flags) {
  INPUT input{};
  input.type = INPUT_MOUSE;
  input.mi.dwFlags = flags;
  SendInput(1, &input, sizeof input);
}

}  // namespace

// Under Wine the pointer is driven through the X server's test extension, exactly as a real
// mouse drives it: Wine's own warps (SetCursorPos, absolute SendInput) report the pointer's old
// place once more after the new one, which would show the windows a move that no mouse made.
// Starts it without waiting: Wine cannot wait for a Unix process, so callers wait for the
// pointer or the button to change instead.
bool Xdotool(const char* arguments) {
  // Wine shows the Unix root as drive Z:.
  static const bool available =
      UnderWine() && GetFileAttributesA("Z:\\usr\\bin\\xdotool") != INVALID_FILE_ATTRIBUTES;
  if (!available) return false;
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

bool SettlePointer(int screenX, int screenY) {
  return PumpUntil(
      [&] {
        POINT now{-1, -1};
        return GetCursorPos(&now) && now.x == screenX && now.y == screenY;
      },
      6000);
}

void SendPointerTo(int screenX, int screenY) {
  char arguments[64];
  std::snprintf(arguments, sizeof arguments, "mousemove %d %d", screenX, screenY);
  if (!Xdotool(arguments)) {
    SetCursorPos(screenX, screenY);
    SendMouse(MOUSEEVENTF_MOVE);
  }
}

void MoveTo(int screenX, int screenY) {
  SendPointerTo(screenX, screenY);
  EXPECT_TRUE(SettlePointer(screenX, screenY))
      << "the pointer did not reach " << screenX << "," << screenY;
}

POINT OnScreen(HWND window, int x, int y) {
  POINT p{x, y};
  ClientToScreen(window, &p);
  return p;
}

void MoveToClient(HWND window, int x, int y) { MoveTo(OnScreen(window, x, y)); }

bool LeftHeld() { return (GetAsyncKeyState(VK_LBUTTON) & 0x8000) != 0; }

// xdotool is a process of its own: on a busy machine it can take longer than the usual wait to
// start, and a release sent before its press arrived would leave the button held.
constexpr DWORD kButtonWaitMs = 6000;

void LeftDown() {
  if (!Xdotool("mousedown 1")) SendMouse(MOUSEEVENTF_LEFTDOWN);
  PumpUntil([] { return LeftHeld(); }, kButtonWaitMs);
}

void LeftUp() {
  if (!LeftHeld()) return;
  if (!Xdotool("mouseup 1")) SendMouse(MOUSEEVENTF_LEFTUP);
  PumpUntil([] { return !LeftHeld(); }, kButtonWaitMs);
}

void ClickAt(int screenX, int screenY) {
  MoveTo(screenX, screenY);
  LeftDown();
  LeftUp();
  Pump(60);
}

void Click(HWND window) {
  RECT rect;
  GetWindowRect(window, &rect);
  ClickAt((rect.left + rect.right) / 2, (rect.top + rect.bottom) / 2);
}

void Drag(POINT from, POINT to) {
  MoveTo(from);
  LeftDown();
  for (int step = 1; step <= 3; ++step) {
    MoveTo(from.x + (to.x - from.x) * step / 3, from.y + (to.y - from.y) * step / 3);
  }
  LeftUp();
  Pump(60);
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

namespace {
struct Found {
  const char* className;
  std::vector<HWND> windows;
};
BOOL CALLBACK Collect(HWND child, LPARAM param) {
  auto* found = reinterpret_cast<Found*>(param);
  char name[32] = {};
  GetClassNameA(child, name, sizeof name);
  if (std::strcmp(name, found->className) == 0) found->windows.push_back(child);
  return TRUE;
}
}  // namespace

std::vector<HWND> ChildrenOf(HWND screen, const char* className) {
  Found found{className, {}};
  EnumChildWindows(screen, Collect, reinterpret_cast<LPARAM>(&found));
  return found.windows;
}

POINT PlaceOf(HWND child) {
  RECT rect;
  GetWindowRect(child, &rect);
  MapWindowPoints(nullptr, GetParent(child), reinterpret_cast<POINT*>(&rect), 2);
  return POINT{rect.left, rect.top};
}

HWND ChildAt(HWND screen, const char* className, int x, int y) {
  for (HWND w : ChildrenOf(screen, className)) {
    const POINT p = PlaceOf(w);
    if (p.x == x && p.y == y) return w;
  }
  return nullptr;
}

std::string TextOf(HWND caption) {
  char buffer[200] = {};
  SendMessageA(caption, text::MWM_GETTEXT, sizeof buffer, reinterpret_cast<LPARAM>(buffer));
  return buffer;
}

namespace {

std::deque<BoxAnswer> g_script;
std::vector<bool> g_asked;

void CALLBACK AnswerBox(HWND, UINT, UINT_PTR, DWORD) {
  HWND box = FindWindowA(kMessageBoxClass, nullptr);
  if (!box || !IsWindowVisible(box) || g_script.empty()) return;
  const BoxAnswer answer = g_script.front();
  g_script.pop_front();
  HWND field = FindWindowExA(box, nullptr, "EDIT", nullptr);
  g_asked.push_back(field != nullptr);
  if (field && answer.name) SetWindowTextA(field, answer.name);
  SendMessageA(box, UM_CHILDCHAR, answer.confirm ? VK_RETURN : VK_ESCAPE, 0);
}

}  // namespace

std::vector<bool> WithAnswers(std::vector<BoxAnswer> answers, const std::function<void()>& step) {
  g_script.assign(answers.begin(), answers.end());
  g_asked.clear();
  const UINT_PTR timer = SetTimer(nullptr, 0, 30, AnswerBox);
  step();
  const bool answered = PumpUntil([] {
    return g_script.empty() && (g_asked.empty() || !FindWindowA(kMessageBoxClass, nullptr));
  });
  KillTimer(nullptr, timer);
  EXPECT_TRUE(answered) << g_script.size() << " answer(s) not used";
  return g_asked;
}

// Only the tests of the game's screens, which link the shell, name a data folder.
#ifdef QV_GAME_DATA_DIR
}  // namespace qv::test

#include "core/app.h"

namespace qv::test {
namespace {

LRESULT CALLBACK MainProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  return DefWindowProcA(window, message, wParam, lParam);
}

}  // namespace

std::string GameDataFolder() {
  std::string folder = QV_GAME_DATA_DIR;
  if (const char* custom = std::getenv("QV_PUZZLE_DATA")) folder = custom;
  if (!folder.empty() && folder[0] == '/') folder = "Z:" + folder;  // Wine's view of the Unix root
  if (!folder.empty() && folder.back() != '/' && folder.back() != '\\') folder += '/';
  return folder;
}

HWND CreateGameMainWindow() {
  static const bool registered = [] {
    WNDCLASSA c{};
    c.lpfnWndProc = MainProc;
    c.hInstance = GetModuleHandleA(nullptr);
    c.hCursor = LoadCursorA(nullptr, IDC_ARROW);
    c.hbrBackground = static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH));
    c.lpszClassName = "QvTestGameMain";
    return RegisterClassA(&c) != 0;
  }();
  if (!registered) return nullptr;
  return CreateWindowExA(0, "QvTestGameMain", "Quorvex", WS_POPUP | WS_VISIBLE | WS_CLIPCHILDREN,
                         0, 0, ScreenWidth(), ScreenHeight(), nullptr, nullptr,
                         GetModuleHandleA(nullptr), nullptr);
}
#endif

}  // namespace qv::test
