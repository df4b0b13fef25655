// The video screen over a stand-in main window, with the game's clips and resource file: the
// presentation in its frame with its buttons, a bare clip ending at a key, a click or its own end
// and giving the music back, and clips that cannot be played refused cleanly.
#include "screens/video_window.h"

#include <windows.h>
#include <mmsystem.h>
#include <digitalv.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

#include "core/app.h"
#include "graphics/resource_file.h"
#include "media/music_player.h"
#include "screens/video_layout.h"
#include "widgets/widget_classes.h"
#include "win/support/real_input.h"

namespace qv {
namespace {

using test::Pump;
using test::PumpUntil;

const std::string kDist = test::GameDataFolder();

// Ten seconds of a quiet 8-bit tone: long enough to be paused and resumed under a clip.
void WriteTrack(const std::string& path) {
  constexpr std::uint32_t kRate = 8000, kBytes = kRate * 10;
  std::vector<char> wav(44 + kBytes);
  auto put32 = [&](std::size_t at, std::uint32_t v) {
    for (int i = 0; i < 4; ++i) wav[at + i] = static_cast<char>(v >> (8 * i));
  };
  auto put16 = [&](std::size_t at, std::uint16_t v) {
    wav[at] = static_cast<char>(v);
    wav[at + 1] = static_cast<char>(v >> 8);
  };
  std::copy_n("RIFF", 4, wav.begin());
  put32(4, 36 + kBytes);
  std::copy_n("WAVEfmt ", 8, wav.begin() + 8);
  put32(16, 16);
  put16(20, 1);  // PCM
  put16(22, 1);  // mono
  put32(24, kRate);
  put32(28, kRate);
  put16(32, 1);
  put16(34, 8);
  std::copy_n("data", 4, wav.begin() + 36);
  put32(40, kBytes);
  for (std::uint32_t i = 0; i < kBytes; ++i) wav[44 + i] = static_cast<char>((i / 20) % 2 ? 0x90 : 0x70);
  std::ofstream(path, std::ios::binary).write(wav.data(), static_cast<std::streamsize>(wav.size()));
}

// A game folder with the presentation and the how-to-play clip, a track of music, and no
// introduction.
std::string MakeGameFolder() {
  char temp[MAX_PATH];
  GetTempPathA(MAX_PATH, temp);
  const std::string folder = std::string(temp) + "qv_video_test\\";
  CreateDirectoryA(folder.c_str(), nullptr);
  CreateDirectoryA((folder + "Video").c_str(), nullptr);
  CreateDirectoryA((folder + "Music").c_str(), nullptr);
  for (const char* clip : {"Video\\0.avi", "Video\\1.avi"}) {
    CopyFileA((kDist + clip).c_str(), (folder + clip).c_str(), FALSE);
  }
  DeleteFileA((folder + "Video\\2.avi").c_str());
  WriteTrack(folder + "Music\\1.wav");
  return folder;
}

class VideoEnvironment : public ::testing::Environment {
 public:
  void SetUp() override {
    HINSTANCE instance = GetModuleHandleA(nullptr);
    SetCurrentLanguage(1);
    ASSERT_TRUE(OpenResourceFile((kDist + "Quorvex.rf").c_str())) << kDist;
    ASSERT_TRUE(RegisterWidgetClasses(instance));
    ASSERT_TRUE(RegisterMessageBoxClass(instance));
    ASSERT_TRUE(RegisterVideoClass(instance));
    HWND main = test::CreateGameMainWindow();
    ASSERT_TRUE(main);
    SetMainWindow(main);
    SetMusicOwner(main);
    SetProgramFolder(MakeGameFolder());
  }
  void TearDown() override {
    CloseMusic();
    if (MainWindow()) DestroyWindow(MainWindow());
  }
};

const auto* const g_environment = ::testing::AddGlobalTestEnvironment(new VideoEnvironment);

int g_closed = 0;
void CountClose() { ++g_closed; }

// The screen's device, found by its file as MCI names a device opened by its element.
MCIDEVICEID ClipDevice(int clip) {
  return mciGetDeviceIDA(VideoClipPath(ProgramFolder(), clip).c_str());
}

DWORD_PTR Status(MCIDEVICEID device, DWORD item) {
  MCI_STATUS_PARMS status{};
  status.dwItem = item;
  if (mciSendCommandA(device, MCI_STATUS, MCI_STATUS_ITEM | MCI_WAIT,
                      reinterpret_cast<DWORD_PTR>(&status)) != 0) {
    return 0;
  }
  return status.dwReturn;
}
DWORD_PTR Mode(MCIDEVICEID device) { return Status(device, MCI_STATUS_MODE); }

DWORD_PTR PositionMs(MCIDEVICEID device) {
  MCI_SET_PARMS set{};
  set.dwTimeFormat = MCI_FORMAT_MILLISECONDS;
  mciSendCommandA(device, MCI_SET, MCI_SET_TIME_FORMAT | MCI_WAIT, reinterpret_cast<DWORD_PTR>(&set));
  return Status(device, MCI_STATUS_POSITION);
}

// The music's device when the game's own track really plays; 0 where there is no sound device to
// play it on (the file then opens but stays stopped), and the music's state says nothing.
MCIDEVICEID PlayingMusic() {
  const MCIDEVICEID music = MusicDevice();
  if (music != 0 && Mode(music) == MCI_MODE_PLAY) return music;
  std::printf("the music does not play here (no sound device): its pause is not observed\n");
  return 0;
}

// The share of a grid of points in the rectangle whose screen pixel is not black.
double LitShare(HWND window, int x, int y, int width, int height) {
  HDC dc = GetDC(window);
  int lit = 0, all = 0;
  for (int py = y + 4; py < y + height; py += 8) {
    for (int px = x + 4; px < x + width; px += 8) {
      const COLORREF c = GetPixel(dc, px, py);
      ++all;
      if (c != CLR_INVALID && GetRValue(c) + GetGValue(c) + GetBValue(c) > 30) ++lit;
    }
  }
  ReleaseDC(window, dc);
  return all ? static_cast<double>(lit) / all : 0;
}

// What the web-site question found while it was open; it is answered no.
struct Question {
  bool asked = false;
  bool screenDisabled = false;
  DWORD_PTR clipMode = 0;
  HWND screen = nullptr;
};
Question g_question;

void CALLBACK AnswerNo(HWND, UINT, UINT_PTR, DWORD) {
  HWND box = FindWindowA(kMessageBoxClass, nullptr);
  if (!box || !IsWindowVisible(box) || g_question.asked) return;
  g_question.asked = true;
  g_question.screenDisabled = !IsWindowEnabled(g_question.screen);
  g_question.clipMode = Mode(ClipDevice(kPresentationClip));
  SendMessageA(box, UM_CHILDCHAR, VK_ESCAPE, 0);
}

TEST(VideoScreen, PresentationPlaysInItsFrameAndAnswersOnlyItsButtonsAndEscape) {
  g_closed = 0;
  HWND main = MainWindow();
  HWND screen = OpenVideoScreen(kPresentationClip, CountClose);
  ASSERT_TRUE(screen);
  EXPECT_FALSE(IsWindowEnabled(main));
  const MCIDEVICEID device = ClipDevice(kPresentationClip);
  ASSERT_NE(device, 0u);

  const VideoRect clip = CentredClip(ScreenWidth(), ScreenHeight(), kVideoFrameWindow.width,
                                     kVideoFrameWindow.height);
  const VideoPoint origin = VideoFrameOrigin(clip);
  HWND close = test::ChildAt(screen, kCommandClass, origin.x + kVideoCloseAt.x, origin.y + kVideoCloseAt.y);
  HWND replay = test::ChildAt(screen, kCommandClass, origin.x + kVideoReplayAt.x, origin.y + kVideoReplayAt.y);
  HWND web = test::ChildAt(screen, kCommandClass, origin.x + kVideoWebSiteAt.x, origin.y + kVideoWebSiteAt.y);
  ASSERT_TRUE(close && replay && web);
  // The buttons lie on the frame and below its window, where the clip plays.
  for (HWND button : {close, replay, web}) {
    RECT r;
    GetWindowRect(button, &r);
    EXPECT_GE(r.top, clip.y + clip.height) << "a button covers the clip";
    EXPECT_LE(r.bottom, origin.y + kVideoFrameHeight);
  }

  Pump(700);
  // The frame's wood around the window, and the clip playing inside it.
  EXPECT_GT(LitShare(screen, origin.x + 8, origin.y + 8, kVideoFrameWidth - 16, 40), 0.9);
  EXPECT_GT(LitShare(screen, clip.x, clip.y, clip.width, clip.height), 0.3);
  EXPECT_EQ(Mode(device), static_cast<DWORD_PTR>(MCI_MODE_PLAY));

  // A key or a click on the picture does not end the presentation.
  SetForegroundWindow(screen);
  test::TypeCharacter('a');
  test::ClickAt(clip.x + clip.width / 2, clip.y + clip.height / 2);
  Pump(100);
  EXPECT_TRUE(IsWindow(screen));

  // Replay does nothing while the clip plays: it goes on from where it was.
  const DWORD_PTR before = PositionMs(device);
  test::Click(replay);
  EXPECT_GE(PositionMs(device), before);
  EXPECT_EQ(Mode(device), static_cast<DWORD_PTR>(MCI_MODE_PLAY));

  // The web-site button stops the clip and asks; no leaves the clip stopped and the screen usable.
  g_question = Question{};
  g_question.screen = screen;
  const UINT_PTR timer = SetTimer(nullptr, 0, 30, AnswerNo);
  test::Click(web);
  KillTimer(nullptr, timer);
  EXPECT_TRUE(g_question.asked);
  EXPECT_TRUE(g_question.screenDisabled);
  EXPECT_EQ(g_question.clipMode, static_cast<DWORD_PTR>(MCI_MODE_STOP));
  EXPECT_TRUE(IsWindowEnabled(screen));
  EXPECT_EQ(Mode(device), static_cast<DWORD_PTR>(MCI_MODE_STOP));

  // Stopped, replay plays it again from the start.
  test::Click(replay);
  EXPECT_EQ(Mode(device), static_cast<DWORD_PTR>(MCI_MODE_PLAY));
  EXPECT_LT(PositionMs(device), 1500u);

  SetForegroundWindow(screen);
  test::TypeCharacter('\x1b');
  EXPECT_TRUE(PumpUntil([&] { return !IsWindow(screen); })) << "Escape did not close it";
  EXPECT_EQ(ClipDevice(kPresentationClip), 0u);
  EXPECT_TRUE(IsWindowEnabled(main));
  EXPECT_EQ(g_closed, 1);
}

TEST(VideoScreen, ABareClipEndsAtOnceAtAKeyOrAClickAndGivesTheMusicBack) {
  g_closed = 0;
  SetCurrentTrack(0);
  OpenAndPlay();
  const MCIDEVICEID music = PlayingMusic();

  // Opened from another of the game's windows, the clip takes the keyboard from it.
  if (MainWindow()) SetForegroundWindow(MainWindow());
  Pump(100);
  HWND screen = OpenVideoScreen(kHowToPlayClip, CountClose);
  ASSERT_TRUE(screen);
  if (music) {
    EXPECT_EQ(Mode(music), static_cast<DWORD_PTR>(MCI_MODE_PAUSE));
  }
  Pump(300);
  EXPECT_EQ(GetForegroundWindow(), screen);
  const DWORD pressed = GetTickCount();
  test::TypeCharacter('a');
  EXPECT_TRUE(PumpUntil([&] { return !IsWindow(screen); })) << "a key did not end the clip";
  EXPECT_LT(GetTickCount() - pressed, 1000u);
  EXPECT_EQ(g_closed, 1);
  EXPECT_EQ(ClipDevice(kHowToPlayClip), 0u);
  if (music) {
    EXPECT_EQ(Mode(music), static_cast<DWORD_PTR>(MCI_MODE_PLAY));
  }

  screen = OpenVideoScreen(kHowToPlayClip);
  ASSERT_TRUE(screen);
  Pump(200);
  test::ClickAt(ScreenWidth() / 2, ScreenHeight() / 2);
  EXPECT_TRUE(PumpUntil([&] { return !IsWindow(screen); })) << "a click did not end the clip";
  EXPECT_TRUE(IsWindowEnabled(MainWindow()));
  EXPECT_EQ(g_closed, 1);
  CloseMusic();
}

TEST(VideoScreen, TheIntroductionPlaysInTheMiddleOfTheScreenAndEndsByItselfAtItsEnd) {
  g_closed = 0;
  const std::string intro = ProgramFolder() + "Video\\2.avi";
  ASSERT_TRUE(CopyFileA((kDist + "Video\\2.avi").c_str(), intro.c_str(), FALSE));
  const DWORD start = GetTickCount();
  HWND screen = OpenVideoScreen(kIntroductionClip, CountClose);
  ASSERT_TRUE(screen);
  MCI_DGV_RECT_PARMS where{};
  EXPECT_EQ(mciSendCommandA(ClipDevice(kIntroductionClip), MCI_WHERE,
                            MCI_DGV_WHERE_DESTINATION | MCI_WAIT, reinterpret_cast<DWORD_PTR>(&where)), 0u);
  const VideoRect centred = CentredClip(ScreenWidth(), ScreenHeight(), 320, 240);
  EXPECT_EQ(where.rc.left, centred.x);
  EXPECT_EQ(where.rc.top, centred.y);
  EXPECT_EQ(where.rc.right, 320);  // MCI's rectangles hold the width and height there
  EXPECT_EQ(where.rc.bottom, 240);
  // 84 frames at 12 a second.
  while (IsWindow(screen) && GetTickCount() - start < 30000) Pump(50);
  EXPECT_FALSE(IsWindow(screen));
  EXPECT_GE(GetTickCount() - start, 7000u * 8 / 10) << "the clip ended early";
  EXPECT_EQ(g_closed, 1);
  DeleteFileA(intro.c_str());
}

TEST(VideoScreen, AClipThatCannotPlayOpensNothingAndLeavesTheMusicPlaying) {
  g_closed = 0;
  SetCurrentTrack(0);
  OpenAndPlay();
  const MCIDEVICEID music = PlayingMusic();
  const std::string broken = ProgramFolder() + "Video\\2.avi";
  for (const bool present : {false, true}) {
    SCOPED_TRACE(present ? "a broken file" : "no file");
    if (present) std::ofstream(broken, std::ios::binary) << std::string(3000, 'R');
    EXPECT_EQ(OpenVideoScreen(kIntroductionClip, CountClose), nullptr);
    EXPECT_EQ(FindWindowA(kVideoClass, nullptr), nullptr);
    EXPECT_TRUE(IsWindowEnabled(MainWindow()));
    if (music) {
    EXPECT_EQ(Mode(music), static_cast<DWORD_PTR>(MCI_MODE_PLAY));
  }
  }
  DeleteFileA(broken.c_str());
  EXPECT_EQ(OpenVideoScreen(3), nullptr);
  EXPECT_EQ(OpenVideoScreen(-1), nullptr);
  EXPECT_EQ(g_closed, 0);
  CloseMusic();
}

}  // namespace
}  // namespace qv
