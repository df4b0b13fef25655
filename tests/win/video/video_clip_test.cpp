// The three clips of the distribution folder open, report their size and play to their end
// through the Media Control Interface, as the video screen plays them.
#include <windows.h>
#include <mmsystem.h>
#include <digitalv.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

namespace {

struct ClipExpectation {
  int index;
  int width, height;
  int frames;
  int framesPerSecond;
};

// The sizes and lengths the asset tool draws the clips at: clip 0 fits the screen of the
// decorated video frame, the other two play bare in the middle of the screen.
constexpr ClipExpectation kClips[] = {{0, 360, 270, 60, 10}, {1, 320, 240, 85, 10}, {2, 320, 240, 84, 12}};

std::string ClipPath(int index) {
  std::string folder = QV_DIST_FOLDER;
  for (char& c : folder) {
    if (c == '/') c = '\\';
  }
  return folder + "\\Video\\" + std::to_string(index) + ".avi";
}

// The window the clip plays into, which also receives the end-of-play notification.
class PlayWindow {
 public:
  PlayWindow(int width, int height) {
    WNDCLASSA wc{};
    wc.lpfnWndProc = Proc;
    wc.hInstance = GetModuleHandleA(nullptr);
    wc.hCursor = LoadCursorA(nullptr, reinterpret_cast<LPCSTR>(IDC_ARROW));
    wc.hbrBackground = static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH));
    wc.lpszClassName = "QvVideoTestWindow";
    RegisterClassA(&wc);
    // Shown without taking the focus from the window tests that run beside this one.
    window_ = CreateWindowExA(WS_EX_NOACTIVATE, wc.lpszClassName, "clip", WS_POPUP,
                              (GetSystemMetrics(SM_CXSCREEN) - width) / 2,
                              (GetSystemMetrics(SM_CYSCREEN) - height) / 2, width, height, nullptr, nullptr,
                              wc.hInstance, nullptr);
    ShowWindow(window_, SW_SHOWNOACTIVATE);
    notified_ = false;
  }
  ~PlayWindow() { DestroyWindow(window_); }
  PlayWindow(const PlayWindow&) = delete;
  PlayWindow& operator=(const PlayWindow&) = delete;

  HWND hwnd() const { return window_; }
  // Pumps messages until the notification arrives or the time runs out; true when it arrived.
  static bool WaitForNotify(DWORD timeoutMs, WPARAM& flags, LPARAM& device) {
    const DWORD start = GetTickCount();
    while (!notified_ && GetTickCount() - start < timeoutMs) {
      MSG msg;
      while (PeekMessageA(&msg, nullptr, 0, 0, PM_REMOVE)) {
        TranslateMessage(&msg);
        DispatchMessageA(&msg);
      }
      if (!notified_) MsgWaitForMultipleObjects(0, nullptr, FALSE, 20, QS_ALLINPUT);
    }
    flags = flags_;
    device = device_;
    return notified_;
  }

 private:
  static LRESULT CALLBACK Proc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == MM_MCINOTIFY) {
      notified_ = true;
      flags_ = wParam;
      device_ = lParam;
      return 0;
    }
    return DefWindowProcA(hwnd, message, wParam, lParam);
  }

  HWND window_ = nullptr;
  static inline bool notified_ = false;
  static inline WPARAM flags_ = 0;
  static inline LPARAM device_ = 0;
};

// Closes the device on every path out of a test.
class OpenClip {
 public:
  explicit OpenClip(const std::string& path) {
    // The structure's strings are not const, but MCI only reads them.
    char type[] = "avivideo";
    std::string element = path;
    MCI_DGV_OPEN_PARMSA open{};
    open.lpstrDeviceType = type;
    open.lpstrElementName = element.data();
    error_ = mciSendCommandA(0, MCI_OPEN, MCI_OPEN_TYPE | MCI_OPEN_ELEMENT | MCI_WAIT,
                             reinterpret_cast<DWORD_PTR>(&open));
    if (error_ == 0) device_ = open.wDeviceID;
  }
  ~OpenClip() {
    if (device_ != 0) mciSendCommandA(device_, MCI_CLOSE, MCI_WAIT, 0);
  }
  OpenClip(const OpenClip&) = delete;
  OpenClip& operator=(const OpenClip&) = delete;

  MCIDEVICEID id() const { return device_; }
  MCIERROR error() const { return error_; }

 private:
  MCIDEVICEID device_ = 0;
  MCIERROR error_ = 0;
};

std::string MciText(MCIERROR error) {
  char text[256] = "";
  mciGetErrorStringA(error, text, sizeof text);
  return std::to_string(error) + " " + text;
}

TEST(VideoClips, EachOpensReportsItsSizeAndLengthAndPlaysToItsEnd) {
  for (const ClipExpectation& clip : kClips) {
    SCOPED_TRACE("clip " + std::to_string(clip.index));
    const std::string path = ClipPath(clip.index);
    ASSERT_NE(GetFileAttributesA(path.c_str()), INVALID_FILE_ATTRIBUTES) << path << " is missing";
    OpenClip device(path);
    ASSERT_EQ(device.error(), 0u) << MciText(device.error());

    MCI_DGV_RECT_PARMS where{};
    ASSERT_EQ(mciSendCommandA(device.id(), MCI_WHERE, MCI_DGV_WHERE_SOURCE | MCI_WAIT,
                              reinterpret_cast<DWORD_PTR>(&where)), 0u);
    EXPECT_EQ(where.rc.left, 0);
    EXPECT_EQ(where.rc.top, 0);
    EXPECT_EQ(where.rc.right, clip.width);  // MCI gives width and height in right and bottom
    EXPECT_EQ(where.rc.bottom, clip.height);

    MCI_SET_PARMS set{};
    set.dwTimeFormat = MCI_FORMAT_FRAMES;
    ASSERT_EQ(mciSendCommandA(device.id(), MCI_SET, MCI_SET_TIME_FORMAT | MCI_WAIT,
                              reinterpret_cast<DWORD_PTR>(&set)), 0u);
    MCI_STATUS_PARMS status{};
    status.dwItem = MCI_STATUS_LENGTH;
    ASSERT_EQ(mciSendCommandA(device.id(), MCI_STATUS, MCI_STATUS_ITEM | MCI_WAIT,
                              reinterpret_cast<DWORD_PTR>(&status)), 0u);
    EXPECT_EQ(status.dwReturn, static_cast<DWORD_PTR>(clip.frames));

    PlayWindow window(clip.width, clip.height);
    MCI_DGV_WINDOW_PARMSA target{};
    target.hWnd = window.hwnd();
    ASSERT_EQ(mciSendCommandA(device.id(), MCI_WINDOW, MCI_DGV_WINDOW_HWND | MCI_WAIT,
                              reinterpret_cast<DWORD_PTR>(&target)), 0u);
    MCI_DGV_PUT_PARMS put{};
    put.rc = {0, 0, clip.width, clip.height};
    ASSERT_EQ(mciSendCommandA(device.id(), MCI_PUT, MCI_DGV_PUT_DESTINATION | MCI_DGV_RECT | MCI_WAIT,
                              reinterpret_cast<DWORD_PTR>(&put)), 0u);

    MCI_PLAY_PARMS play{};
    play.dwCallback = reinterpret_cast<DWORD_PTR>(window.hwnd());
    const DWORD start = GetTickCount();
    ASSERT_EQ(mciSendCommandA(device.id(), MCI_PLAY, MCI_NOTIFY, reinterpret_cast<DWORD_PTR>(&play)), 0u);
    WPARAM flags = 0;
    LPARAM from = 0;
    const DWORD lengthMs = 1000u * clip.frames / clip.framesPerSecond;
    ASSERT_TRUE(PlayWindow::WaitForNotify(lengthMs * 4 + 20000, flags, from)) << "no end of play";
    EXPECT_EQ(flags, static_cast<WPARAM>(MCI_NOTIFY_SUCCESSFUL));
    EXPECT_EQ(from, static_cast<LPARAM>(device.id()));
    // The clip really ran for about its length instead of ending at once.
    const DWORD played = GetTickCount() - start;
    EXPECT_GE(played, lengthMs * 8 / 10);
    std::printf("clip %d: %lu ms of play for %lu ms of frames\n", clip.index, static_cast<unsigned long>(played),
                static_cast<unsigned long>(lengthMs));
  }
}

TEST(VideoClips, AMissingClipIsRefusedCleanly) {
  OpenClip device(ClipPath(7));
  EXPECT_NE(device.error(), 0u);
  EXPECT_EQ(device.id(), 0u);
}

}  // namespace
