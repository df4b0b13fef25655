// CWNDINFO: the name and description of the picture being played (built-in or the player's own
// photograph) beside its preview, with close, print and the presentation and how-to-play clips.
#include "screens/info_window.h"

#include <string>

#include "core/app.h"
#include "core/resource_ids.h"
#include "graphics/control_dc.h"
#include "graphics/himage_draw.h"
#include "graphics/himage_ops.h"
#include "media/music_player.h"
#include "puzzle/puzzle_model.h"
#include "screens/print_job.h"
#include "screens/print_layout.h"
#include "screens/video_window.h"
#include "widgets/widget_classes.h"
#include "widgets/widget_window.h"

namespace qv {

bool RegisterInfoPreviewClass(HINSTANCE instance);  // info_preview_window.cpp

namespace {

using widget::CreateRecord;
using widget::DestroyRecord;
using widget::RecordOf;

constexpr std::uint32_t kBackground = 250;
constexpr std::uint32_t kCloseImage = 251, kPrintImage = 252;
constexpr std::uint32_t kPresentationImage = 253, kHowToPlayImage = 254;
constexpr std::uint32_t kFrameImage = 256;
constexpr DWORD kScreenStyle = WS_POPUP | WS_VISIBLE | WS_CLIPCHILDREN | WS_DLGFRAME;

// The 520 x 400 art: the frame and the video buttons on the wood of the left half, the texts on
// the parchment of the right half (260, 20, 244 x 300), print and close below it.
constexpr int kFrameX = 12, kFrameY = 20, kFrameInset = 10;
constexpr int kVideoButtonY = 222, kPresentationX = 34, kHowToPlayX = 152;
constexpr int kCaptionY = 266, kCaptionWidth = 110;
constexpr int kPrintX = 300, kPrintY = 340, kCloseX = 440, kCloseY = 335;
constexpr RECT kTextArea{274, 32, 490, 310};
constexpr int kNameHeight = 22, kNameAreaHeight = 56;
constexpr int kLargestText = 16, kSmallestText = 10;
constexpr COLORREF kInk = RGB(72, 44, 20);  // dark brown on the parchment
constexpr int kNameLength = 70, kDescriptionLength = 1000;

struct InfoRecord {
  ControlDC background, frame;
  ControlDC closeImage, printImage, presentationImage, howToPlayImage;
  HWND close = nullptr, print = nullptr, presentation = nullptr, howToPlay = nullptr;
  HWND preview = nullptr;
  std::string path;  // the picture being played, "" for none
  std::string name, description, captions[2];
  int textHeight = kSmallestText;
  BackgroundDrag drag;
};


// The largest text height at which the whole description fits under the name, measured with the
// system's own word breaking (the justified routine breaks lines the same greedy way), with one
// line to spare for the difference in spacing.
int FittingTextHeight(const std::string& text, int width, int height) {
  HDC scratch = CreateCompatibleDC(nullptr);
  if (!scratch) return kSmallestText;
  int chosen = kSmallestText;
  for (int size = kLargestText; size > kSmallestText; --size) {
    widget::FontHandle font(CreateFontA(size, 0, 0, 0, 400, 0, 0, 0, DEFAULT_CHARSET, 0, 0, 0, 0,
                                        kProgramFace));
    widget::SelectInScope select(scratch, font.get());
    RECT box{0, 0, width, 0};
    DrawTextA(scratch, text.c_str(), -1, &box, DT_CALCRECT | DT_WORDBREAK | DT_NOPREFIX);
    if (box.bottom + size <= height && box.right <= width) {
      chosen = size;
      break;
    }
  }
  DeleteDC(scratch);
  return chosen;
}

void LoadTexts(InfoRecord& r) {
  r.path = PuzzlePicture() ? PuzzlePicturePath() : "";
  const int builtIn = r.path.empty() ? -1 : BuiltInPictureIndex(ProgramFolder(), r.path);
  if (builtIn >= 0) {
    const auto id = static_cast<std::uint32_t>(builtIn);
    r.name = ModuleString(IDS_PICTURE_NAME + 1 + id, kNameLength + 1);
    r.description = ModuleString(IDS_PICTURE_DESCRIPTION + 1 + id, kDescriptionLength + 1);
  } else if (!r.path.empty()) {
    // A photograph of the player's own is called by its file name, as the new-game screen
    // showed it.
    r.name = OwnPictureName(r.path).substr(0, kNameLength);
    r.description = LocalizedString(IDS_OWN_PICTURE_DESCRIPTION, kDescriptionLength + 1);
  } else {
    r.description = LocalizedString(IDS_INFO_NO_PICTURE, 200);
  }
  r.captions[0] = LocalizedString(IDS_INFO_PRESENTATION, 40);
  r.captions[1] = LocalizedString(IDS_INFO_HOW_TO_PLAY, 40);
  r.textHeight = FittingTextHeight(r.description, kTextArea.right - kTextArea.left,
                                   kTextArea.bottom - kTextArea.top - kNameAreaHeight);
}

void CreateButtons(HWND screen, InfoRecord& r) {
  r.closeImage.LoadById(kCloseImage);
  r.printImage.LoadById(kPrintImage);
  r.presentationImage.LoadById(kPresentationImage);
  r.howToPlayImage.LoadById(kHowToPlayImage);
  r.close = CreatePictureChild(screen, kCommandClass, kCloseX, kCloseY, r.closeImage.Dib(),
                               kInfoCloseId);
  r.print = CreatePictureChild(screen, kCommandClass, kPrintX, kPrintY, r.printImage.Dib(),
                               kInfoPrintId);
  r.presentation = CreatePictureChild(screen, kCommandClass, kPresentationX, kVideoButtonY,
                                      r.presentationImage.Dib(), kInfoPresentationId);
  r.howToPlay = CreatePictureChild(screen, kCommandClass, kHowToPlayX, kVideoButtonY,
                                   r.howToPlayImage.Dib(), kInfoHowToPlayId);
  // With no picture there is nothing to print.
  if (r.path.empty() && r.print) SendMessageA(r.print, MWM_SETENABLED, 0, 0);
}

LRESULT OnCreate(HWND screen) {
  auto* r = CreateRecord<InfoRecord>(screen);
  if (!r) return -1;
  r->background.LoadById(kBackground);
  r->frame.LoadById(kFrameImage);
  LoadTexts(*r);
  CreateButtons(screen, *r);
  r->preview = CreateWindowExA(0, kInfoPreviewClass, "", WS_CHILD | WS_VISIBLE,
                               kFrameX + kFrameInset, kFrameY + kFrameInset,
                               r->frame.Width() - 2 * kFrameInset,
                               r->frame.Height() - 2 * kFrameInset, screen, nullptr,
                               GetModuleHandleA(nullptr), nullptr);
  return 0;
}

void DrawCaption(HDC dc, const std::string& text, int centreX) {
  RECT box{centreX - kCaptionWidth / 2, kCaptionY, centreX + kCaptionWidth / 2, kCaptionY + 40};
  widget::FontHandle font(CreateFontA(15, 0, 0, 0, 700, 0, 0, 0, DEFAULT_CHARSET, 0, 0, 0, 0,
                                      kProgramFace));
  widget::SelectInScope select(dc, font.get());
  SetBkMode(dc, TRANSPARENT);
  SetTextColor(dc, kInterfaceTextColour);
  DrawTextA(dc, text.c_str(), -1, &box, DT_CENTER | DT_WORDBREAK | DT_NOPREFIX);
}

void Paint(HDC dc, const InfoRecord& r) {
  ImageDrawToContext(dc, 0, 0, r.background.Width(), r.background.Height(), r.background.Dib(),
                     0, 0, kRopSrcCopy);
  ImageDrawToContext(dc, kFrameX, kFrameY, r.frame.Width(), r.frame.Height(), r.frame.Dib(), 0, 0,
                     kRopSrcCopy);
  const int width = kTextArea.right - kTextArea.left;
  int y = kTextArea.top;
  if (!r.name.empty()) {
    DrawWrappedText(dc, r.name.c_str(), kProgramFace, 700, kNameHeight, kInk, false, 0, 0,
                    kTextArea.left, y, width, kNameAreaHeight);
  }
  y += kNameAreaHeight;
  if (!r.description.empty()) {
    DrawWrappedText(dc, r.description.c_str(), kProgramFace, 400, r.textHeight, kInk, false, 0, 0,
                    kTextArea.left, y, width, kTextArea.bottom - y);
  }
  DrawCaption(dc, r.captions[0], kPresentationX + 35);
  DrawCaption(dc, r.captions[1], kHowToPlayX + 35);
}

void OnPaint(HWND screen, const InfoRecord& r) {
  PAINTSTRUCT ps;
  HDC dc = BeginPaint(screen, &ps);
  if (dc) Paint(dc, r);
  EndPaint(screen, &ps);
}

// Printing runs here to its end behind the wait window, with the music paused meanwhile.
void PrintCurrentPicture(HWND screen, const InfoRecord& r) {
  if (r.path.empty()) return;
  HWND wait = OpenPrintWait(screen);
  PauseMusic();
  PrintPicture(wait, r.path.c_str(), r.name, r.description);
  ResumeMusic();
  if (wait) SendMessageA(wait, WM_CLOSE, 0, 0);
}

void OnNotify(HWND screen, InfoRecord& r, WPARAM code, HWND sender) {
  ButtonFeedback(sender, static_cast<int>(code));
  if (static_cast<int>(code) != MWN_CLICKED) return;
  if (sender == r.close) {
    PostMessageA(screen, WM_CLOSE, 0, 0);
  } else if (sender == r.print) {
    PrintCurrentPicture(screen, r);
  } else if (sender == r.presentation) {
    OpenVideoScreen(0);
  } else if (sender == r.howToPlay) {
    OpenVideoScreen(1);
  }
}

// Escape closes; Enter closes too, as there is nothing to confirm.
bool OnKey(HWND screen, WPARAM key) {
  if (key != VK_ESCAPE && key != VK_RETURN) return false;
  PostMessageA(screen, WM_CLOSE, 0, 0);
  return true;
}

void OnClose(HWND screen) {
  EnableOwnerOnClose(screen);
  if (HWND main = MainWindow()) SetForegroundWindow(main);
  DestroyWindow(screen);
}

void OnDestroy(HWND screen) {
  EnableOwnerOnClose(screen);
  DestroyRecord<InfoRecord>(screen);
}

LRESULT CALLBACK InfoWindowProc(HWND screen, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_CREATE) return OnCreate(screen);
  InfoRecord* r = RecordOf<InfoRecord>(screen);
  if (!r) return DefWindowProcA(screen, message, wParam, lParam);
  switch (message) {
    case WM_DESTROY:
      OnDestroy(screen);
      return 0;
    case WM_PAINT:
      OnPaint(screen, *r);
      return 0;
    case WM_ERASEBKGND:
      return 1;
    case MWM_NOTIFY:
      OnNotify(screen, *r, wParam, reinterpret_cast<HWND>(lParam));
      return 0;
    case WM_LBUTTONDOWN:
      StartBackgroundDrag(screen, r->drag);
      return 0;
    case WM_MOUSEMOVE:
      FollowBackgroundDrag(screen, r->drag);
      return 0;
    case WM_LBUTTONUP:
    case WM_CAPTURECHANGED:
      EndBackgroundDrag(screen, r->drag);
      return 0;
    case WM_CHAR:
      OnKey(screen, wParam);
      return 0;
    case UM_CHILDCHAR:
      return OnKey(screen, wParam) ? 1 : 0;
    case WM_QUERYNEWPALETTE:
      RedrawForPalette(screen);
      return 1;
    case WM_PALETTECHANGED:
      RedrawForPalette(screen, reinterpret_cast<HWND>(wParam));
      return 0;
    case WM_CLOSE:
      OnClose(screen);
      return 0;
    default:
      return DefWindowProcA(screen, message, wParam, lParam);
  }
}

}  // namespace

bool RegisterInfoClasses(HINSTANCE instance) {
  const bool preview = RegisterInfoPreviewClass(instance);
  const bool info = RegisterScreenClass(instance, kInfoClass, InfoWindowProc);
  const bool wait = RegisterPrintWaitClass(instance);
  return preview && info && wait;
}

HWND OpenInfoScreen() {
  HideAllBoxesBut(nullptr);
  ControlDC background;
  if (!background.LoadById(kBackground)) return nullptr;
  return OpenCentredScreen(kInfoClass, kScreenStyle, background.Width(), background.Height(),
                           MainWindow());
}

}  // namespace qv
