// The real program at start-up: without its data it refuses with a clear message and exits
// cleanly; with it, the introduction plays and the main window follows it, or comes at once when
// there is no introduction to play.
#include <gtest/gtest.h>

#include <windows.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace qv {

// The game's distribution folder as Wine names it; the main window's tests use it too.
std::string DistFolder() {
  std::string folder = std::string("Z:") + QV_DIST_DIR + "/";
  for (char& c : folder) {
    if (c == '/') c = '\\';
  }
  return folder;
}

namespace {

std::string ModuleString(UINT id) {
  char text[400] = {};
  LoadStringA(GetModuleHandleA(nullptr), id, text, sizeof text);
  return text;
}

// A folder of its own holding a copy of the game and whatever the case gives it.
class GameFolder {
 public:
  explicit GameFolder(const char* name) {
    char temp[MAX_PATH] = {};
    GetTempPathA(MAX_PATH, temp);
    folder_ = std::string(temp) + "quorvex-refusal-" + std::to_string(GetCurrentProcessId()) +
              "-" + name + "\\";
    CreateDirectoryA(folder_.c_str(), nullptr);
    CreateDirectoryA((folder_ + "Image").c_str(), nullptr);
    CreateDirectoryA((folder_ + "Video").c_str(), nullptr);
    CopyFileA((DistFolder() + "Quorvex.exe").c_str(), (folder_ + "Quorvex.exe").c_str(), FALSE);
  }
  ~GameFolder() {
    for (const std::string& file : files_) DeleteFileA((folder_ + file).c_str());
    DeleteFileA((folder_ + "Quorvex.exe").c_str());
    RemoveDirectoryA((folder_ + "Image").c_str());
    RemoveDirectoryA((folder_ + "Video").c_str());
    RemoveDirectoryA(folder_.c_str());
  }
  void Copy(const std::string& from, const std::string& to) {
    CopyFileA((DistFolder() + from).c_str(), (folder_ + to).c_str(), FALSE);
    files_.push_back(to);
  }
  void Write(const std::string& name, const std::string& bytes) {
    std::ofstream(folder_ + name, std::ios::binary) << bytes;
    files_.push_back(name);
  }
  const std::string& path() const { return folder_; }

 private:
  std::string folder_;
  std::vector<std::string> files_;
};

struct Outcome {
  std::string message;  // the dialog's text; empty when no dialog came
  DWORD exitCode = 1234;
};

bool StartGame(const GameFolder& game, PROCESS_INFORMATION& process) {
  STARTUPINFOA startup{};
  startup.cb = sizeof startup;
  std::string command = "\"" + game.path() + "Quorvex.exe\"";
  return CreateProcessA(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr,
                        game.path().c_str(), &startup, &process) != 0;
}

// Ends the game however it stands and gives its exit code.
DWORD EndGame(PROCESS_INFORMATION& process) {
  if (WaitForSingleObject(process.hProcess, 20000) != WAIT_OBJECT_0) {
    TerminateProcess(process.hProcess, 99);
    WaitForSingleObject(process.hProcess, 5000);
  }
  DWORD code = 1234;
  GetExitCodeProcess(process.hProcess, &code);
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  return code;
}

// Starts the game, waits for its message dialog, reads it, presses OK and waits for the exit.
Outcome RunGame(const GameFolder& game) {
  Outcome outcome;
  PROCESS_INFORMATION process{};
  if (!StartGame(game, process)) return outcome;
  HWND dialog = nullptr;
  for (int i = 0; i < 600 && !dialog; ++i) {  // a loaded machine starts Wine slowly
    Sleep(50);
    HWND candidate = FindWindowA("#32770", "Quorvex Puzzle");
    DWORD owner = 0;
    if (candidate) GetWindowThreadProcessId(candidate, &owner);
    if (owner == process.dwProcessId) dialog = candidate;
  }
  if (dialog) {
    // The dialog shows before the game puts its text in: read once the text has arrived.
    for (int i = 0; i < 100 && outcome.message.empty(); ++i) {
      char text[400] = {};
      GetDlgItemTextA(dialog, 1000, text, sizeof text);
      outcome.message = text;
      if (outcome.message.empty()) Sleep(50);
    }
    PostMessageA(dialog, WM_COMMAND, MAKEWPARAM(IDOK, BN_CLICKED), 0);
  }
  outcome.exitCode = EndGame(process);
  return outcome;
}

TEST(StartupRefusal, MissingOrBrokenResourceFile) {
  GameFolder missing("missing-rf");
  for (int k = 1; k <= 5; ++k) {
    missing.Copy("Image\\1.bmp", "Image\\" + std::to_string(k) + ".bmp");
  }
  Outcome outcome = RunGame(missing);
  EXPECT_EQ(outcome.message, ModuleString(221));
  EXPECT_EQ(outcome.exitCode, 0u);

  GameFolder broken("broken-rf");
  for (int k = 1; k <= 5; ++k) broken.Copy("Image\\1.bmp", "Image\\" + std::to_string(k) + ".bmp");
  broken.Write("Quorvex.rf", std::string(5000, '\x7f'));
  outcome = RunGame(broken);
  EXPECT_EQ(outcome.message, ModuleString(221));
  EXPECT_EQ(outcome.exitCode, 0u);
}

TEST(StartupRefusal, FewerThanFivePictures) {
  GameFolder game("four-pictures");
  game.Copy("Quorvex.rf", "Quorvex.rf");
  for (int k = 1; k <= 4; ++k) game.Copy("Image\\1.bmp", "Image\\" + std::to_string(k) + ".bmp");
  const Outcome outcome = RunGame(game);
  EXPECT_EQ(outcome.message, ModuleString(231));
  EXPECT_EQ(outcome.exitCode, 0u);
}

// ---- The introduction ----------------------------------------------------------------------------

struct Search {
  DWORD process;
  const char* className;
  HWND found;
};
BOOL CALLBACK MatchWindow(HWND window, LPARAM param) {
  auto* search = reinterpret_cast<Search*>(param);
  DWORD owner = 0;
  GetWindowThreadProcessId(window, &owner);
  char name[32] = {};
  GetClassNameA(window, name, sizeof name);
  if (owner != search->process || std::string(name) != search->className) return TRUE;
  search->found = window;
  return FALSE;
}

// The game's top-level window of that class, waiting at most ms for it.
HWND WaitForWindow(const PROCESS_INFORMATION& process, const char* className, int ms) {
  for (int waited = 0;; waited += 50) {
    Search search{process.dwProcessId, className, nullptr};
    EnumWindows(MatchWindow, reinterpret_cast<LPARAM>(&search));
    if (search.found || waited >= ms) return search.found;
    Sleep(50);
  }
}

// The colours of an uncompressed 8-bit AVI: the table after the stream format's header.
std::vector<COLORREF> ClipPalette(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  const std::string bytes{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
  std::vector<COLORREF> colours;
  const std::size_t format = bytes.find("strf");
  if (format == std::string::npos || format + 8 + 40 > bytes.size()) return colours;
  const auto byte = [&](std::size_t at) { return static_cast<unsigned char>(bytes[at]); };
  const std::size_t table = format + 8 + 40;
  for (std::size_t at = table; at + 4 <= bytes.size() && colours.size() < 256; at += 4) {
    colours.push_back(RGB(byte(at + 2), byte(at + 1), byte(at)));
  }
  return colours;
}

// The screen's pixels in a rectangle, as the player sees them.
std::vector<COLORREF> ScreenPixels(int x, int y, int width, int height) {
  std::vector<COLORREF> pixels;
  HDC screen = GetDC(nullptr);
  HDC memory = CreateCompatibleDC(screen);
  BITMAPINFO info{};
  info.bmiHeader = {sizeof(BITMAPINFOHEADER), width, -height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
  void* bits = nullptr;
  HBITMAP shot = CreateDIBSection(screen, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
  if (shot && bits) {
    HGDIOBJ old = SelectObject(memory, shot);
    BitBlt(memory, 0, 0, width, height, screen, x, y, SRCCOPY);
    GdiFlush();
    const auto* p = static_cast<const std::uint32_t*>(bits);
    for (int i = 0; i < width * height; ++i) {
      pixels.push_back(RGB((p[i] >> 16) & 255, (p[i] >> 8) & 255, p[i] & 255));
    }
    SelectObject(memory, old);
    DeleteObject(shot);
  }
  DeleteDC(memory);
  ReleaseDC(nullptr, screen);
  return pixels;
}

int Distance(COLORREF a, COLORREF b) {
  return std::abs(GetRValue(a) - GetRValue(b)) + std::abs(GetGValue(a) - GetGValue(b)) +
         std::abs(GetBValue(a) - GetBValue(b));
}

void MakePlayable(GameFolder& game) {
  game.Copy("Quorvex.rf", "Quorvex.rf");
  for (int k = 1; k <= 5; ++k) game.Copy("Image\\1.bmp", "Image\\" + std::to_string(k) + ".bmp");
}

TEST(StartupIntroduction, PlaysTheClipThenTheMainWindowFollowsWhenItEnds) {
  GameFolder game("introduction");
  MakePlayable(game);
  game.Copy("Video\\2.avi", "Video\\2.avi");
  PROCESS_INFORMATION process{};
  ASSERT_TRUE(StartGame(game, process));
  HWND video = WaitForWindow(process, "CWNDVIDEO", 30000);
  EXPECT_TRUE(video) << "the introduction did not open";
  EXPECT_FALSE(WaitForWindow(process, "CWNDBACK", 0)) << "the main window came before the clip ended";
  if (video) {
    // A frame of the clip in the middle of the screen: lit, and drawn in the clip's own colours.
    Sleep(1500);
    const std::vector<COLORREF> palette = ClipPalette(DistFolder() + "Video\\2.avi");
    ASSERT_EQ(palette.size(), 256u);
    constexpr int kWidth = 320, kHeight = 240;
    const int x = (GetSystemMetrics(SM_CXSCREEN) - kWidth) / 2;
    const int y = (GetSystemMetrics(SM_CYSCREEN) - kHeight) / 2;
    int lit = 0, inPalette = 0, sampled = 0;
    const std::vector<COLORREF> shot = ScreenPixels(x, y, kWidth, kHeight);
    for (std::size_t i = 0; i < shot.size(); i += 37) {
      ++sampled;
      if (Distance(shot[i], RGB(0, 0, 0)) > 30) ++lit;
      int nearest = 999;
      for (COLORREF c : palette) nearest = std::min(nearest, Distance(shot[i], c));
      if (nearest <= 12) ++inPalette;
    }
    EXPECT_GT(lit, sampled / 2) << "the clip's rectangle is dark";
    EXPECT_GT(inPalette, sampled * 9 / 10) << "the clip's rectangle does not show the clip";
    // A click ends the introduction early, as its end would.
    PostMessageA(video, WM_LBUTTONUP, 0, MAKELPARAM(x, y));
  }
  HWND main = WaitForWindow(process, "CWNDBACK", 20000);
  EXPECT_TRUE(main) << "no main window after the introduction";
  // The main window is made while the clip's screen is being destroyed: let it finish going.
  for (int i = 0; i < 40 && WaitForWindow(process, "CWNDVIDEO", 0); ++i) Sleep(50);
  EXPECT_FALSE(WaitForWindow(process, "CWNDVIDEO", 0));
  if (main) PostMessageA(main, WM_CLOSE, 0, 0);
  EXPECT_EQ(EndGame(process), 0u);
}

TEST(StartupIntroduction, WithoutTheClipTheMainWindowComesAtOnce) {
  GameFolder game("no-introduction");
  MakePlayable(game);
  PROCESS_INFORMATION process{};
  ASSERT_TRUE(StartGame(game, process));
  HWND main = WaitForWindow(process, "CWNDBACK", 30000);
  EXPECT_TRUE(main) << "no main window without the introduction";
  EXPECT_FALSE(WaitForWindow(process, "CWNDVIDEO", 0));
  if (main) PostMessageA(main, WM_CLOSE, 0, 0);
  EXPECT_EQ(EndGame(process), 0u);
}

}  // namespace
}  // namespace qv
