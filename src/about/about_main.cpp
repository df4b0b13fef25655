// about.exe: a small window with the game's name, version, licence and the pictures' credits, in
// the language given as its argument (the game's language index; English without one).
#include <windows.h>

#include <fstream>
#include <iterator>
#include <optional>
#include <string>

#include "about/about_text.h"
#include "core/look.h"

namespace {

constexpr wchar_t kAboutClass[] = L"QuorvexAbout";
constexpr int kWidth = 600;
constexpr int kHeight = 480;
constexpr int kTextId = 10;
constexpr int kCloseId = IDOK;
constexpr COLORREF kWalnut = RGB(74, 46, 28);
constexpr COLORREF kCream = RGB(250, 240, 210);

struct AboutWindow {
  HFONT titleFont = nullptr;
  HFONT textFont = nullptr;
  HBRUSH walnut = nullptr;
  int language = qv::kAboutEnglish;
};

AboutWindow g_about;

std::string ProgramFolder() {
  char path[MAX_PATH] = {};
  const DWORD length = GetModuleFileNameA(nullptr, path, MAX_PATH);
  std::string folder(path, length);
  const auto slash = folder.find_last_of('\\');
  return slash == std::string::npos ? std::string() : folder.substr(0, slash + 1);
}

std::optional<std::string> ReadCredits() {
  std::ifstream file(ProgramFolder() + "CREDITS.txt", std::ios::binary);
  if (!file) return std::nullopt;
  std::string text;
  text.resize(qv::kMaxCreditsBytes + 1);
  file.read(text.data(), static_cast<std::streamsize>(text.size()));
  text.resize(static_cast<std::size_t>(file.gcount()));
  return text;
}

// The texts are UTF-8; the wide functions show them whatever the system's code page. Bytes that
// are not UTF-8 (a damaged credits file) become replacement characters.
std::wstring Wide(const std::string& text) {
  if (text.empty()) return std::wstring();
  const int size = static_cast<int>(text.size());
  const int length = MultiByteToWideChar(CP_UTF8, 0, text.data(), size, nullptr, 0);
  if (length <= 0) return std::wstring();
  std::wstring wide(static_cast<std::size_t>(length), L'\0');
  MultiByteToWideChar(CP_UTF8, 0, text.data(), size, wide.data(), length);
  return wide;
}

HFONT Font(int height, int weight) {
  return CreateFontA(height, 0, 0, 0, weight, FALSE, FALSE, FALSE, DEFAULT_CHARSET,
                     OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY, DEFAULT_PITCH,
                     qv::kProgramFace);
}

void OnCreate(HWND window) {
  g_about.titleFont = Font(34, 700);
  g_about.textFont = Font(15, 400);
  g_about.walnut = CreateSolidBrush(kWalnut);
  RECT client;
  GetClientRect(window, &client);
  const auto credits = ReadCredits();
  const qv::AboutWords& words = qv::AboutWordsFor(g_about.language);
  const std::wstring text = Wide(qv::AboutText(g_about.language, credits ? &*credits : nullptr));
  HWND edit = CreateWindowExW(WS_EX_CLIENTEDGE, L"EDIT", text.c_str(),
                              WS_CHILD | WS_VISIBLE | WS_VSCROLL | ES_MULTILINE | ES_READONLY |
                                  ES_AUTOVSCROLL,
                              16, 64, client.right - 32, client.bottom - 120, window,
                              reinterpret_cast<HMENU>(static_cast<INT_PTR>(kTextId)),
                              GetModuleHandleW(nullptr), nullptr);
  SendMessageW(edit, WM_SETFONT, reinterpret_cast<WPARAM>(g_about.textFont), TRUE);
  HWND close = CreateWindowExW(0, L"BUTTON", Wide(words.close).c_str(),
                               WS_CHILD | WS_VISIBLE | WS_TABSTOP | BS_DEFPUSHBUTTON,
                               client.right - 116, client.bottom - 44, 100, 30, window,
                               reinterpret_cast<HMENU>(static_cast<INT_PTR>(kCloseId)),
                               GetModuleHandleW(nullptr), nullptr);
  SendMessageW(close, WM_SETFONT, reinterpret_cast<WPARAM>(g_about.textFont), TRUE);
  SetFocus(close);
}

void OnPaint(HWND window) {
  PAINTSTRUCT paint;
  HDC dc = BeginPaint(window, &paint);
  RECT client;
  GetClientRect(window, &client);
  FillRect(dc, &client, g_about.walnut);
  SetBkMode(dc, TRANSPARENT);
  HGDIOBJ previous = SelectObject(dc, g_about.titleFont);
  SetTextColor(dc, RGB(0, 0, 0));
  TextOutA(dc, 18, 14, "Quorvex Puzzle", 14);
  SetTextColor(dc, kCream);
  TextOutA(dc, 16, 12, "Quorvex Puzzle", 14);
  SelectObject(dc, previous);
  EndPaint(window, &paint);
}

void OnDestroy() {
  DeleteObject(g_about.titleFont);
  DeleteObject(g_about.textFont);
  DeleteObject(g_about.walnut);
  PostQuitMessage(0);
}

LRESULT CALLBACK AboutProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_CREATE:
      OnCreate(window);
      return 0;
    case WM_PAINT:
      OnPaint(window);
      return 0;
    case WM_COMMAND:
      if (LOWORD(wParam) == kCloseId || LOWORD(wParam) == IDCANCEL) DestroyWindow(window);
      return 0;
    case WM_DESTROY:
      OnDestroy();
      return 0;
    default:
      return DefWindowProcW(window, message, wParam, lParam);
  }
}

}  // namespace

int WINAPI WinMain(HINSTANCE instance, HINSTANCE, LPSTR commandLine, int show) {
  g_about.language = qv::AboutLanguageFromCommandLine(commandLine ? commandLine : "");
  WNDCLASSW windowClass{};
  windowClass.lpfnWndProc = AboutProc;
  windowClass.hInstance = instance;
  windowClass.hCursor = LoadCursor(nullptr, IDC_ARROW);
  windowClass.hIcon = LoadIcon(instance, MAKEINTRESOURCE(1));
  windowClass.lpszClassName = kAboutClass;
  if (!RegisterClassW(&windowClass)) return 1;
  const DWORD style = WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU;
  RECT frame{0, 0, kWidth, kHeight};
  AdjustWindowRect(&frame, style, FALSE);
  const int width = frame.right - frame.left;
  const int height = frame.bottom - frame.top;
  const std::wstring title = Wide(qv::AboutWordsFor(g_about.language).windowTitle);
  HWND window = CreateWindowExW(0, kAboutClass, title.c_str(), style,
                                (GetSystemMetrics(SM_CXSCREEN) - width) / 2,
                                (GetSystemMetrics(SM_CYSCREEN) - height) / 2, width, height,
                                nullptr, nullptr, instance, nullptr);
  if (!window) return 1;
  ShowWindow(window, show);
  MSG message;
  while (GetMessageW(&message, nullptr, 0, 0) > 0) {
    if (IsDialogMessageW(window, &message)) continue;
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
  return static_cast<int>(message.wParam);
}
