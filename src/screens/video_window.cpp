// CWNDVIDEO: plays one clip through MCI in the middle of a black screen. The presentation stays
// in its decorated frame with close, replay and web-site buttons until it is closed; the other
// clips are bare and end at their end, at a key or at a click.
#include "screens/video_window.h"

#include <mmsystem.h>
#include <digitalv.h>
#include <shellapi.h>

#include <string>

#include "core/app.h"
#include "graphics/control_dc.h"
#include "graphics/himage_draw.h"
#include "graphics/himage_ops.h"
#include "media/music_player.h"
#include "screens/video_layout.h"
#include "widgets/widget_classes.h"
#include "widgets/widget_window.h"

namespace qv {
namespace {

using widget::CreateRecord;
using widget::DestroyRecord;
using widget::RecordOf;

constexpr std::uint32_t kFrameImage = 162;
constexpr std::uint32_t kCloseImage = 163;
constexpr std::uint32_t kWebSiteImage = 165;
constexpr std::uint32_t kReplayImage = 167;
constexpr UINT kWebSiteQuestion = 90;
constexpr DWORD kScreenStyle = WS_POPUP | WS_VISIBLE | WS_CLIPCHILDREN;
// A clip that never reports its end must not keep the game waiting behind a black screen: the
// bare clips close this long after their length at the latest.
constexpr UINT_PTR kOverdueTimer = 1;
constexpr DWORD kOverdueMarginMs = 5000;

struct OpenRequest {
  int clip;
  void (*whenClosed)();
};

struct VideoRecord {
  int clip = kPresentationClip;
  void (*whenClosed)() = nullptr;
  bool opened = false;  // creation succeeded, so whenClosed is owed
  MCIDEVICEID device = 0;
  VideoRect picture{};
  VideoPoint frameOrigin{};
  ControlDC frame;
  ControlDC closeImage, replayImage, webSiteImage;
  HWND close = nullptr;
  HWND replay = nullptr;
  HWND webSite = nullptr;
};

// ---- The clip's device ----------------------------------------------------------------------------

MCIERROR Send(MCIDEVICEID device, UINT command, DWORD flags, void* parameters) {
  return mciSendCommandA(device, command, flags, reinterpret_cast<DWORD_PTR>(parameters));
}

MCIDEVICEID OpenClip(const std::string& path) {
  std::string element = path;  // MCI only reads it, but the field is not const
  MCI_DGV_OPEN_PARMSA open{};
  open.lpstrElementName = element.data();
  if (Send(0, MCI_OPEN, MCI_OPEN_ELEMENT | MCI_WAIT, &open) != 0) return 0;
  return open.wDeviceID;
}

void CloseClip(VideoRecord& r) {
  if (r.device == 0) return;
  Send(r.device, MCI_CLOSE, MCI_WAIT, nullptr);
  r.device = 0;
}

DWORD_PTR ClipMode(MCIDEVICEID device) {
  MCI_STATUS_PARMS status{};
  status.dwItem = MCI_STATUS_MODE;
  if (Send(device, MCI_STATUS, MCI_STATUS_ITEM | MCI_WAIT, &status) != 0) return 0;
  return status.dwReturn;
}

DWORD ClipLengthMs(MCIDEVICEID device) {
  MCI_SET_PARMS set{};
  set.dwTimeFormat = MCI_FORMAT_MILLISECONDS;
  MCI_STATUS_PARMS status{};
  status.dwItem = MCI_STATUS_LENGTH;
  if (Send(device, MCI_SET, MCI_SET_TIME_FORMAT | MCI_WAIT, &set) != 0 ||
      Send(device, MCI_STATUS, MCI_STATUS_ITEM | MCI_WAIT, &status) != 0) {
    return 0;
  }
  return static_cast<DWORD>(status.dwReturn);
}

bool PlayClip(HWND screen, MCIDEVICEID device) {
  MCI_PLAY_PARMS play{};
  play.dwCallback = reinterpret_cast<DWORD_PTR>(screen);
  return Send(device, MCI_PLAY, MCI_NOTIFY, &play) == 0;
}

// Places the picture in the middle of the screen at its own size and makes the screen its window.
bool PlaceClip(HWND screen, VideoRecord& r) {
  MCI_DGV_RECT_PARMS where{};
  if (Send(r.device, MCI_WHERE, MCI_DGV_WHERE_SOURCE | MCI_WAIT, &where) != 0) return false;
  // MCI gives the source's width and height as the rectangle's right and bottom.
  r.picture = CentredClip(ScreenWidth(), ScreenHeight(), where.rc.right, where.rc.bottom);
  MCI_DGV_PUT_PARMS put{};
  put.rc = RECT{r.picture.x, r.picture.y, r.picture.width, r.picture.height};
  if (Send(r.device, MCI_PUT, MCI_DGV_PUT_DESTINATION | MCI_DGV_RECT | MCI_WAIT, &put) != 0) {
    return false;
  }
  MCI_DGV_WINDOW_PARMSA window{};
  window.hWnd = screen;
  return Send(r.device, MCI_WINDOW,
              MCI_DGV_WINDOW_HWND | MCI_ANIM_WINDOW_ENABLE_STRETCH | MCI_WAIT, &window) == 0;
}

// The music pauses only once the clip is about to play, and plays on if the clip then refuses.
bool StartClip(HWND screen, VideoRecord& r) {
  if (!PlaceClip(screen, r)) return false;
  PauseMusic();
  PlaySoundA(nullptr, nullptr, 0);
  if (PlayClip(screen, r.device)) return true;
  ResumeMusic();
  return false;
}

// ---- The presentation's frame ---------------------------------------------------------------------

HWND CreateFrameButton(HWND screen, const VideoRecord& r, VideoPoint at, ControlDC& image,
                       std::uint32_t id) {
  image.LoadById(id);
  return CreatePictureChild(screen, kCommandClass, r.frameOrigin.x + at.x, r.frameOrigin.y + at.y,
                            image.Dib());
}

void BuildFrame(HWND screen, VideoRecord& r) {
  r.frameOrigin = VideoFrameOrigin(r.picture);
  r.frame.LoadById(kFrameImage);
  r.close = CreateFrameButton(screen, r, kVideoCloseAt, r.closeImage, kCloseImage);
  r.replay = CreateFrameButton(screen, r, kVideoReplayAt, r.replayImage, kReplayImage);
  r.webSite = CreateFrameButton(screen, r, kVideoWebSiteAt, r.webSiteImage, kWebSiteImage);
}

void OpenMakerWebSite() {
  SHELLEXECUTEINFOA run{};
  run.cbSize = sizeof run;
  run.fMask = SEE_MASK_NOCLOSEPROCESS;
  run.hwnd = MainWindow();
  run.lpVerb = "open";
  run.lpFile = kMakerWebSite;
  run.nShow = SW_SHOWNORMAL;
  if (ShellExecuteExA(&run) && run.hProcess) CloseHandle(run.hProcess);
}

// Replays only a clip that has stopped: one still playing or paused is left alone.
void Replay(HWND screen, const VideoRecord& r) {
  if (r.device == 0 || ClipMode(r.device) != MCI_MODE_STOP) return;
  MCI_SEEK_PARMS seek{};
  Send(r.device, MCI_SEEK, MCI_SEEK_TO_START | MCI_WAIT, &seek);
  PlaySoundA(nullptr, nullptr, 0);
  PlayClip(screen, r.device);
}

void AskForWebSite(HWND screen, const VideoRecord& r) {
  if (r.device != 0 && ClipMode(r.device) != MCI_MODE_STOP) {
    Send(r.device, MCI_STOP, MCI_WAIT, nullptr);
  }
  InvalidateRect(screen, nullptr, FALSE);
  HWND box = ShowMessageBox(kWebSiteQuestion, screen, true, false);
  if (!box) return;
  const int answer = RunMessageBox(box);
  // The box leaves its owner disabled.
  if (IsWindow(screen)) EnableWindow(screen, TRUE);
  if (answer != 0) OpenMakerWebSite();
}

// ---- Handlers -------------------------------------------------------------------------------------

LRESULT OnCreate(HWND screen, const CREATESTRUCTA& create) {
  const auto* request = static_cast<const OpenRequest*>(create.lpCreateParams);
  if (!request) return -1;
  VideoRecord* r = CreateRecord<VideoRecord>(screen);
  if (!r) return -1;
  r->clip = request->clip;
  const std::string path = VideoClipPath(ProgramFolder(), r->clip);
  if (path.empty()) return -1;
  r->device = OpenClip(path);
  if (r->device == 0) return -1;
  if (!StartClip(screen, *r)) {
    CloseClip(*r);
    return -1;
  }
  if (ClipIsFramed(r->clip)) {
    BuildFrame(screen, *r);
  } else if (const DWORD length = ClipLengthMs(r->device)) {
    SetTimer(screen, kOverdueTimer, length + kOverdueMarginMs, nullptr);
  }
  r->whenClosed = request->whenClosed;
  r->opened = true;
  return 0;
}

void OnPaint(HWND screen, const VideoRecord& r) {
  PAINTSTRUCT ps;
  HDC dc = BeginPaint(screen, &ps);
  if (dc) {
    // The clip draws its own picture; the frame is drawn around it, not over it.
    ExcludeClipRect(dc, r.picture.x, r.picture.y, r.picture.x + r.picture.width,
                    r.picture.y + r.picture.height);
    FillRect(dc, &ps.rcPaint, static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH)));
    if (ClipIsFramed(r.clip) && r.frame.Dib()) {
      ImageDrawToContext(dc, r.frameOrigin.x, r.frameOrigin.y, r.frame.Width(), r.frame.Height(),
                         r.frame.Dib(), 0, 0, kRopSrcCopy);
    }
  }
  EndPaint(screen, &ps);
  if (r.device != 0 && ClipMode(r.device) != MCI_MODE_PLAY) {
    // A clip that is not playing shows its picture again; a playing one draws the next frame.
    MCI_DGV_UPDATE_PARMS update{};
    update.hDC = GetDC(screen);
    update.rc = RECT{r.picture.x, r.picture.y, r.picture.x + r.picture.width,
                     r.picture.y + r.picture.height};
    Send(r.device, MCI_UPDATE, MCI_DGV_UPDATE_HDC | MCI_DGV_RECT | MCI_WAIT, &update);
    ReleaseDC(screen, update.hDC);
  }
}

void OnNotify(HWND screen, VideoRecord& r, WPARAM code, LPARAM lParam) {
  HWND sender = reinterpret_cast<HWND>(lParam);
  ButtonFeedback(sender, static_cast<int>(code));
  if (static_cast<int>(code) != MWN_CLICKED) return;
  if (sender == r.close) {
    PostMessageA(screen, WM_CLOSE, 0, 0);
  } else if (sender == r.replay) {
    Replay(screen, r);
  } else if (sender == r.webSite) {
    AskForWebSite(screen, r);
  }
}

// The end of play, a key or a click ends a bare clip; the presentation waits for its buttons.
void EndBareClip(HWND screen, const VideoRecord& r) {
  if (!ClipIsFramed(r.clip)) PostMessageA(screen, WM_CLOSE, 0, 0);
}

// Any key ends a bare clip. The framed presentation is a screen like the others: Escape closes it,
// and so does Enter, as it has nothing to confirm; other keys do nothing.
bool OnKey(HWND screen, const VideoRecord& r, WPARAM key) {
  if (ClipIsFramed(r.clip) && key != VK_ESCAPE && key != VK_RETURN) return false;
  PostMessageA(screen, WM_CLOSE, 0, 0);
  return true;
}

void OnPalette(HWND screen, const VideoRecord& r, HWND changer) {
  if (changer == screen) return;
  RedrawForPalette(screen);
  if (r.device != 0) Send(r.device, MCI_REALIZE, MCI_DGV_REALIZE_BKGD | MCI_WAIT, nullptr);
}

// Closing gives the music back and the foreground to the window the screen covered.
void OnClose(HWND screen, VideoRecord& r) {
  if (r.device != 0) {
    CloseClip(r);
    ResumeMusic();
  }
  EnableOwnerOnClose(screen);
  HWND owner = GetWindow(screen, GW_OWNER);
  if (HWND next = owner ? owner : MainWindow()) SetForegroundWindow(next);
  DestroyWindow(screen);
}

void OnDestroy(HWND screen) {
  VideoRecord* r = RecordOf<VideoRecord>(screen);
  EnableOwnerOnClose(screen);
  if (!r) return;
  KillTimer(screen, kOverdueTimer);
  // Destroyed without closing (the program ending): the device still goes.
  if (r->device != 0) {
    CloseClip(*r);
    ResumeMusic();
  }
  void (*whenClosed)() = r->opened ? r->whenClosed : nullptr;
  DestroyRecord<VideoRecord>(screen);
  if (whenClosed) whenClosed();
}

LRESULT CALLBACK VideoWindowProc(HWND screen, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_CREATE) return OnCreate(screen, *reinterpret_cast<CREATESTRUCTA*>(lParam));
  if (message == WM_DESTROY) {
    OnDestroy(screen);
    return 0;
  }
  VideoRecord* r = RecordOf<VideoRecord>(screen);
  if (!r) return DefWindowProcA(screen, message, wParam, lParam);
  switch (message) {
    case WM_PAINT:
      OnPaint(screen, *r);
      return 0;
    case WM_ERASEBKGND:
      return 1;
    case MWM_NOTIFY:
      OnNotify(screen, *r, wParam, lParam);
      return 0;
    case MM_MCINOTIFY:
    case WM_LBUTTONUP:
      EndBareClip(screen, *r);
      return 0;
    case WM_TIMER:
      if (wParam == kOverdueTimer) EndBareClip(screen, *r);
      return 0;
    case WM_CHAR:
      OnKey(screen, *r, wParam);
      return 0;
    case UM_CHILDCHAR:
      return OnKey(screen, *r, wParam) ? 1 : 0;
    case WM_QUERYNEWPALETTE:
      OnPalette(screen, *r, nullptr);
      return 1;
    case WM_PALETTECHANGED:
      OnPalette(screen, *r, reinterpret_cast<HWND>(wParam));
      return 0;
    case WM_CLOSE:
      OnClose(screen, *r);
      return 0;
    default:
      return DefWindowProcA(screen, message, wParam, lParam);
  }
}

}  // namespace

bool RegisterVideoClass(HINSTANCE instance) {
  return RegisterScreenClass(instance, kVideoClass, VideoWindowProc, 0,
                             static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH)));
}

// The screen is modal over the window that was active when it opened (the main window, or the
// screen whose button opened it); at start-up there is none yet.
HWND OpenVideoScreen(int clip, void (*whenClosed)()) {
  if (clip < 0 || clip >= kVideoClipCount) return nullptr;
  HWND owner = GetActiveWindow();
  if (!owner) owner = MainWindow();
  OpenRequest request{clip, whenClosed};
  HWND screen = OpenCentredScreen(kVideoClass, kScreenStyle, ScreenWidth(), ScreenHeight(), owner,
                                  &request);
  // Disabling the owner does not hand the keyboard over: the clip takes it, so that a key ends a
  // bare clip and Escape closes the presentation.
  if (screen) {
    SetForegroundWindow(screen);
    SetFocus(screen);
  }
  return screen;
}

}  // namespace qv
