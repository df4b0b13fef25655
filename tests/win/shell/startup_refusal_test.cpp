// The real program refuses to start without its data: a clear message, then a clean exit.
#include <gtest/gtest.h>

#include <windows.h>

#include <fstream>
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
    CopyFileA((DistFolder() + "Quorvex.exe").c_str(), (folder_ + "Quorvex.exe").c_str(), FALSE);
  }
  ~GameFolder() {
    for (const std::string& file : files_) DeleteFileA((folder_ + file).c_str());
    DeleteFileA((folder_ + "Quorvex.exe").c_str());
    RemoveDirectoryA((folder_ + "Image").c_str());
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

// Starts the game, waits for its message dialog, reads it, presses OK and waits for the exit.
Outcome RunGame(const GameFolder& game) {
  Outcome outcome;
  STARTUPINFOA startup{};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION process{};
  std::string command = "\"" + game.path() + "Quorvex.exe\"";
  if (!CreateProcessA(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr,
                      game.path().c_str(), &startup, &process)) {
    return outcome;
  }
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
  if (WaitForSingleObject(process.hProcess, 20000) != WAIT_OBJECT_0) {
    TerminateProcess(process.hProcess, 99);
    WaitForSingleObject(process.hProcess, 5000);
  }
  GetExitCodeProcess(process.hProcess, &outcome.exitCode);
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
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

}  // namespace
}  // namespace qv
