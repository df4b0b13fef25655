// The music screen and the player with real audio: a PulseAudio server with a null sink, whose
// monitor the test records through waveIn to hear what the player and the master slider do.
// Without a server (MusicWithoutSound) the screen must open and behave all the same.
#include <windows.h>
#include <mmsystem.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

#include "core/app.h"
#include "core/look.h"
#include "graphics/resource_file.h"
#include "media/mixer.h"
#include "media/music_player.h"
#include "screens/music_layout.h"
#include "screens/music_window.h"
#include "support/assert_recorder.h"
#include "widgets/widget_classes.h"
#include "win/support/real_input.h"

namespace qv {
namespace {

using test::Pump;
using test::PumpUntil;

constexpr int kRate = 22050;
constexpr double kTrackSeconds = 1.0;

// A short tone as the game's own track: 16-bit mono PCM.
void WriteTrack(const std::string& path, double frequency) {
  const auto samples = static_cast<std::uint32_t>(kRate * kTrackSeconds);
  std::vector<std::int16_t> pcm(samples);
  for (std::uint32_t i = 0; i < samples; ++i) {
    pcm[i] = static_cast<std::int16_t>(12000 * std::sin(2 * 3.14159265 * frequency * i / kRate));
  }
  const std::uint32_t bytes = samples * 2;
  auto u32 = [](std::ofstream& out, std::uint32_t v) { out.write(reinterpret_cast<char*>(&v), 4); };
  auto u16 = [](std::ofstream& out, std::uint16_t v) { out.write(reinterpret_cast<char*>(&v), 2); };
  std::ofstream out(path, std::ios::binary);
  out.write("RIFF", 4);
  u32(out, 36 + bytes);
  out.write("WAVEfmt ", 8);
  u32(out, 16);
  u16(out, 1);
  u16(out, 1);
  u32(out, kRate);
  u32(out, kRate * 2);
  u16(out, 2);
  u16(out, 16);
  out.write("data", 4);
  u32(out, bytes);
  out.write(reinterpret_cast<const char*>(pcm.data()), bytes);
}

std::string TestFolder() {
  char temp[MAX_PATH];
  GetTempPathA(MAX_PATH, temp);
  const std::string folder = std::string(temp) + "qv_music_test\\";
  CreateDirectoryA(folder.c_str(), nullptr);
  CreateDirectoryA((folder + "Music").c_str(), nullptr);
  return folder;
}

// The main window's part in the music: MM_MCINOTIFY goes to the player, counted here.
int g_notifications = 0;
LRESULT CALLBACK OwnerProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == MM_MCINOTIFY) {
    if (OnMusicNotify(wParam, lParam) && wParam == MCI_NOTIFY_SUCCESSFUL) ++g_notifications;
    return 0;
  }
  return DefWindowProcA(window, message, wParam, lParam);
}

class MusicEnvironment : public ::testing::Environment {
 public:
  void SetUp() override {
    HINSTANCE instance = GetModuleHandleA(nullptr);
    ASSERT_TRUE(OpenResourceFile((test::GameDataFolder() + "Quorvex.rf").c_str()));
    ASSERT_TRUE(RegisterWidgetClasses(instance));
    ASSERT_TRUE(RegisterMusicClass(instance));
    WNDCLASSA owner{};
    owner.lpfnWndProc = OwnerProc;
    owner.hInstance = instance;
    owner.lpszClassName = "QvMusicOwner";
    RegisterClassA(&owner);
    HWND main = test::CreateGameMainWindow();
    ASSERT_TRUE(main);
    SetMainWindow(main);
    // The player's notifications go to a window of the test, standing in for the main window.
    SetMusicOwner(CreateWindowExA(0, "QvMusicOwner", "", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                                  instance, nullptr));
    SetProgramFolder(TestFolder());
    for (int track = 1; track <= 4; ++track) {
      WriteTrack(ProgramFolder() + "Music\\" + std::to_string(track) + ".wav", 220.0 * track);
    }
  }
  void TearDown() override {
    CloseMusic();
    if (MainWindow()) DestroyWindow(MainWindow());
  }
};
const auto* const g_environment = ::testing::AddGlobalTestEnvironment(new MusicEnvironment);

// The music device's mode ("playing" or "other") or position, through MCI's status command.
std::string MciStatus(const char* item) {
  MCI_STATUS_PARMS status{};
  const bool mode = std::string(item) == "mode";
  status.dwItem = mode ? MCI_STATUS_MODE : MCI_STATUS_POSITION;
  if (mciSendCommandA(MusicDevice(), MCI_STATUS, MCI_STATUS_ITEM | MCI_WAIT,
                      reinterpret_cast<DWORD_PTR>(&status)) != 0) {
    return "error";
  }
  if (mode) return status.dwReturn == MCI_MODE_PLAY ? "playing" : "other";
  return std::to_string(status.dwReturn);
}

struct Screen {
  HWND window = nullptr;
  HWND master = nullptr;
  HWND wave = nullptr;
  std::vector<HWND> tracks;  // 1..4 in order
  HWND close = nullptr;
  HWND stop = nullptr;
};

Screen OpenScreen() {
  Screen s;
  s.window = OpenMusicScreen(MainWindow());
  if (!s.window) return s;
  Pump(100);
  const std::vector<HWND> sliders = test::ChildrenOf(s.window, kSlideClass);
  if (sliders.size() == 2) {
    const bool leftFirst = test::PlaceOf(sliders[0]).x < test::PlaceOf(sliders[1]).x;
    s.master = sliders[leftFirst ? 0 : 1];
    s.wave = sliders[leftFirst ? 1 : 0];
  }
  for (int button = 1; button <= kTrackButtons; ++button) {
    const MusicPoint at = TrackButtonAt(button);
    s.tracks.push_back(test::ChildAt(s.window, kCommandClass, at.x, at.y));
  }
  s.close = test::ChildAt(s.window, kCommandClass, kMusicCloseAt.x, kMusicCloseAt.y);
  s.stop = test::ChildAt(s.window, kCommandClass, kMusicStopAt.x, kMusicStopAt.y);
  return s;
}

int SliderValue(HWND slider) {
  return static_cast<int>(SendMessageA(slider, slide::MWM_GETVALUE, 0, 0));
}

// Whether the track button stands in the highlight frame (read from the screen's pixels).
bool Highlighted(const Screen& s, int button) {
  const MusicPoint at = TrackButtonAt(button);
  HDC dc = GetDC(s.window);
  const COLORREF pixel = GetPixel(dc, at.x - 1, at.y + 10);
  ReleaseDC(s.window, dc);
  return pixel == kHighlightColour;
}

void CloseScreen(const Screen& s) {
  if (IsWindow(s.window)) SendMessageA(s.window, WM_CLOSE, 0, 0);
  Pump(50);
}

// ---- Without a sound server ---------------------------------------------------------------------

TEST(MusicWithoutSound, TheScreenOpensWithBothSlidersAtFiftyAndCloses) {
  if (mixerGetNumDevs() != 0) GTEST_SKIP() << "runs where Wine has no sound device";
  test::AssertRecorder recorder;
  WritePrivateProfileStringA("Quorvex", "Track", "2", "Quorvex.INI");
  const Screen s = OpenScreen();
  WritePrivateProfileStringA("Quorvex", "Track", nullptr, "Quorvex.INI");
  ASSERT_TRUE(s.window);
  ASSERT_TRUE(s.master && s.wave && s.close && s.stop);
  EXPECT_EQ(SliderValue(s.master), 50);
  EXPECT_EQ(SliderValue(s.wave), 50);
  EXPECT_FALSE(IsWindowEnabled(MainWindow()));
  // The setting "2" makes the third track the current one, and its button stands out.
  EXPECT_EQ(CurrentTrack(), 2);
  EXPECT_TRUE(Highlighted(s, 3));
  EXPECT_FALSE(Highlighted(s, 1));
  // A track button with no sound device: the choice is kept, nothing plays, nothing fails.
  test::Click(s.tracks[0]);
  Pump(100);
  EXPECT_EQ(CurrentTrack(), 0);
  EXPECT_TRUE(Highlighted(s, 1));
  EXPECT_FALSE(Highlighted(s, 3));
  // Dragging the knob moves the slider; with no mixer nothing else happens.
  test::Drag(test::OnScreen(s.window, kMasterSliderTop.x, 168),
             test::OnScreen(s.window, kMasterSliderTop.x, kMasterSliderBottom.y + 30));
  Pump(100);
  EXPECT_EQ(SliderValue(s.master), 0);
  // The background drags the captionless screen.
  RECT before, after;
  GetWindowRect(s.window, &before);
  test::Drag(test::OnScreen(s.window, 20, 20), test::OnScreen(s.window, 50, 60));
  Pump(100);
  GetWindowRect(s.window, &after);
  EXPECT_EQ(after.left - before.left, 30);
  EXPECT_EQ(after.top - before.top, 40);
  // Escape closes it and gives the main window back.
  SendMessageA(s.window, WM_CHAR, VK_ESCAPE, 0);
  Pump(100);
  EXPECT_FALSE(IsWindow(s.window));
  EXPECT_TRUE(IsWindowEnabled(MainWindow()));
  EXPECT_TRUE(recorder.empty()) << recorder.messages().front();
}

// ---- With the sound server ----------------------------------------------------------------------

// Records the sink's monitor (the default source of a server whose only sink is the null sink)
// and gives the loudness of what was played, as the root mean square of the samples. Recording
// stays open from one measure to the next: its start takes a second or two.
class Monitor {
 public:
  Monitor() {
    UINT device = WAVE_MAPPER;
    for (UINT i = 0; i < waveInGetNumDevs(); ++i) {
      WAVEINCAPSA caps{};
      if (waveInGetDevCapsA(i, &caps, sizeof caps) == MMSYSERR_NOERROR &&
          std::string(caps.szPname).find("Monitor") != std::string::npos) {
        device = i;
      }
    }
    // The sink's own format.
    WAVEFORMATEX format{WAVE_FORMAT_PCM, 2, kRate, kRate * 4, 4, 16, 0};
    if (waveInOpen(&in_, device, &format, 0, 0, CALLBACK_NULL) != MMSYSERR_NOERROR) in_ = nullptr;
    if (in_) waveInStart(in_);
  }
  ~Monitor() {
    if (!in_) return;
    waveInReset(in_);
    waveInClose(in_);
  }
  // The loudness over the next while; the first 200 ms are left out, as what was buffered
  // before the last change may still come through. Negative when nothing could be recorded.
  double Loudness(int ms) {
    if (!in_) return -2;
    constexpr int kSkippedMs = 200;
    std::vector<std::int16_t> samples(static_cast<std::size_t>(kRate) * 2 * (kSkippedMs + ms) /
                                      1000);
    WAVEHDR header{};
    header.lpData = reinterpret_cast<LPSTR>(samples.data());
    header.dwBufferLength = static_cast<DWORD>(samples.size() * 2);
    waveInPrepareHeader(in_, &header, sizeof header);
    waveInAddBuffer(in_, &header, sizeof header);
    const DWORD start = GetTickCount();
    while ((header.dwFlags & WHDR_DONE) == 0 && GetTickCount() - start < 5000) Pump(5);
    if ((header.dwFlags & WHDR_DONE) == 0) return -1;
    waveInUnprepareHeader(in_, &header, sizeof header);
    const std::size_t count = header.dwBytesRecorded / 2;
    const std::size_t first = static_cast<std::size_t>(kRate) * 2 * kSkippedMs / 1000;
    double sum = 0;
    for (std::size_t i = first; i < count; ++i) sum += double(samples[i]) * samples[i];
    return count > first ? std::sqrt(sum / (count - first)) : -1;
  }

 private:
  static constexpr int kRate = 44100;
  HWAVEIN in_ = nullptr;
};

class MusicWithSound : public ::testing::Test {
 protected:
  void SetUp() override {
    if (!std::getenv("PULSE_SERVER")) GTEST_SKIP() << "no sound server for this run";
    ASSERT_GT(waveOutGetNumDevs(), 0u) << "the sound server is there but Wine has no device";
  }
  void TearDown() override { CloseMusic(); }
};

TEST_F(MusicWithSound, ATrackPlaysToItsEndAndLoops) {
  SetCurrentTrack(1);
  g_notifications = 0;
  const DWORD start = GetTickCount();
  OpenAndPlay();
  ASSERT_NE(MusicDevice(), 0u);
  EXPECT_EQ(OwnTrackPlaying(), 2);
  EXPECT_EQ(MciStatus("mode"), "playing");
  // A one-second track and the sound server's latency, with room for a busy machine.
  ASSERT_TRUE(PumpUntil([] { return g_notifications > 0; }, 6000));
  // It ended by playing to the end, not by failing at once, and started again from the start.
  const DWORD first = GetTickCount() - start;
  EXPECT_GE(first, 900u);
  EXPECT_EQ(OwnTrackPlaying(), 2);
  EXPECT_EQ(MciStatus("mode"), "playing");
  EXPECT_LT(std::atoi(MciStatus("position").c_str()), 1000);
  ASSERT_TRUE(PumpUntil([] { return g_notifications > 1; }, 6000));
  const DWORD second = GetTickCount() - start - first;
  EXPECT_GE(second, 900u);
  EXPECT_LE(second, 5000u);
  std::printf("track of 1 s: first end after %lu ms, the loop after %lu ms more\n",
              static_cast<unsigned long>(first), static_cast<unsigned long>(second));

  // Opened while the music plays, the screen shows the track that plays, not the setting's.
  WritePrivateProfileStringA("Quorvex", "Track", "3", "Quorvex.INI");
  const Screen s = OpenScreen();
  WritePrivateProfileStringA("Quorvex", "Track", nullptr, "Quorvex.INI");
  ASSERT_TRUE(s.window);
  EXPECT_EQ(CurrentTrack(), 1);
  EXPECT_TRUE(Highlighted(s, 2));
  EXPECT_FALSE(Highlighted(s, 4));
  CloseScreen(s);
}

// The master fader as another mixer handle sees it and sets it: what another volume control
// shows and does. Gives the fader's raw value before the change, and its control's identifier.
DWORD MasterFromOutside(double fraction = -1, DWORD* controlId = nullptr) {
  HMIXER outside = nullptr;
  if (mixerOpen(&outside, 0, 0, 0, 0) != MMSYSERR_NOERROR) return ~0u;
  auto* object = reinterpret_cast<HMIXEROBJ>(outside);
  MIXERLINEA line{};
  line.cbStruct = sizeof line;
  line.dwComponentType = MIXERLINE_COMPONENTTYPE_DST_SPEAKERS;
  MIXERCONTROLA control{};
  control.cbStruct = sizeof control;
  MIXERLINECONTROLSA controls{};
  controls.cbStruct = sizeof controls;
  controls.dwControlType = MIXERCONTROL_CONTROLTYPE_VOLUME;
  controls.cControls = 1;
  controls.cbmxctrl = sizeof control;
  controls.pamxctrl = &control;
  MIXERCONTROLDETAILS_UNSIGNED value{};
  MIXERCONTROLDETAILS details{};
  details.cbStruct = sizeof details;
  details.cChannels = 1;
  details.cbDetails = sizeof value;
  details.paDetails = &value;
  DWORD before = ~0u;
  if (mixerGetLineInfoA(object, &line, MIXER_GETLINEINFOF_COMPONENTTYPE) == MMSYSERR_NOERROR &&
      (controls.dwLineID = line.dwLineID,
       mixerGetLineControlsA(object, &controls, MIXER_GETLINECONTROLSF_ONEBYTYPE)) ==
          MMSYSERR_NOERROR) {
    details.dwControlID = control.dwControlID;
    if (controlId) *controlId = control.dwControlID;
    if (mixerGetControlDetailsA(object, &details, MIXER_GETCONTROLDETAILSF_VALUE) ==
        MMSYSERR_NOERROR) {
      before = value.dwValue;
    }
    if (fraction >= 0) {
      value.dwValue = static_cast<DWORD>(control.Bounds.dwMaximum * fraction);
      EXPECT_EQ(mixerSetControlDetails(object, &details, MIXER_SETCONTROLDETAILSF_VALUE),
                MMSYSERR_NOERROR);
    }
  }
  mixerClose(outside);
  return before;
}

// Moves the master slider's knob with the mouse from one height to another on the screen.
void DragMaster(const Screen& s, int fromY, int toY) {
  const int x = kMasterSliderTop.x;
  test::Drag(test::OnScreen(s.window, x, fromY), test::OnScreen(s.window, x, toY));
  Pump(50);
}

// The master fader scales the sound on its way to the sink: what the sink's monitor hears.
// Under Wine 8 with PulseAudio the winmm master is this program's own volume, applied to the
// samples: `pactl` reports the sink's and the stream's volumes unchanged, so the test listens to
// the monitor instead. Neither a change through another handle nor one made with `pactl` brings
// MM_MIXM_CONTROL_CHANGE there (and a `pactl` change does not reach the fader at all), so the
// outside change is made through another handle and the screen is told as the system tells a
// mixer window.
TEST_F(MusicWithSound, TheMasterSliderSetsTheVolumeThatReachesTheSinkAndFollowsOutsideChanges) {
  MasterFromOutside(1.0);
  const Screen s = OpenScreen();
  ASSERT_TRUE(s.window && s.master && s.tracks[0]);
  // The fader at full reads 100 %: one short of the slider's top, shown at its step of 5.
  EXPECT_EQ(SliderValue(s.master), 95);
  // A track other than the current one, so that its button starts it.
  const int button = CurrentTrack() == 0 ? 2 : 1;
  test::Click(s.tracks[button - 1]);
  ASSERT_TRUE(PumpUntil([&] { return OwnTrackPlaying() == button; }));
  Monitor monitor;
  const double full = monitor.Loudness(300);
  EXPECT_GT(full, 1000.0);

  // Down to the bottom: the fader at zero and silence at the sink.
  DragMaster(s, kMasterSliderTop.y + 1, kMasterSliderBottom.y + 30);
  EXPECT_EQ(SliderValue(s.master), 0);
  EXPECT_EQ(MasterFromOutside(), 0u);
  const double silent = monitor.Loudness(300);
  EXPECT_LT(silent, full / 20);
  // Half way: the fader at the slider's percentage and about half the amplitude.
  DragMaster(s, kMasterSliderBottom.y, (kMasterSliderTop.y + kMasterSliderBottom.y) / 2);
  const int half = SliderValue(s.master);
  EXPECT_NEAR(half, 50, 3);
  EXPECT_NEAR(MasterFromOutside() * 100.0 / 65535, half, 1);
  const double halfway = monitor.Loudness(300);
  EXPECT_NEAR(halfway / full, half / 100.0, 0.1);

  // A quarter from outside: once the screen is told, the slider follows (the fader reads
  // 24.99 %, truncated to 24 and shown at the step below).
  DWORD master = 0;
  MasterFromOutside(0.25, &master);
  PostMessageA(s.window, MM_MIXM_CONTROL_CHANGE, 0, static_cast<LPARAM>(master));
  EXPECT_TRUE(PumpUntil([&] { return SliderValue(s.master) == 20; })) << SliderValue(s.master);
  const double quarter = monitor.Loudness(300);
  EXPECT_NEAR(quarter / full, 0.25, 0.1);
  std::printf("loudness at the sink: full %.0f, slider at 0 %.0f, at %d %.0f, a quarter %.0f\n",
              full, silent, half, halfway, quarter);

  // Stop closes the music and the screen.
  test::Click(s.stop);
  Pump(100);
  EXPECT_EQ(MusicDevice(), 0u);
  EXPECT_FALSE(IsWindow(s.window));
  CloseScreen(s);
}

}  // namespace
}  // namespace qv
