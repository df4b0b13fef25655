// CWNDMUSICA: two volume sliders over the system mixer's master and wave faders, with an
// indicator each (lit while its slider is held), the four track buttons, and close and stop. It has no caption and moves by
// its background.
#include "screens/music_window.h"

#include <mmsystem.h>

#include <cstdint>

#include "core/app.h"
#include "core/look.h"
#include "core/window_helpers.h"
#include "graphics/control_dc.h"
#include "graphics/himage_draw.h"
#include "graphics/himage_ops.h"
#include "graphics/packed_dib.h"
#include "media/mixer.h"
#include "media/mixer_percent.h"
#include "media/music_player.h"
#include "media/music_track.h"
#include "screens/music_layout.h"
#include "screens/true_colour.h"
#include "system/language.h"
#include "widgets/widget_classes.h"
#include "widgets/widget_messages.h"
#include "widgets/widget_window.h"

namespace qv {
namespace {

using widget::CreateRecord;
using widget::DestroyRecord;
using widget::RecordOf;

constexpr std::uint32_t kBackgroundImage = 214;
constexpr std::uint32_t kCloseImage = 212;
constexpr std::uint32_t kStopImage = 213;
constexpr std::uint32_t kKnobImage = 507;
constexpr std::uint32_t kMasterStrip = 503;
constexpr std::uint32_t kWaveStrip = 505;
constexpr std::uint32_t kTitleBase = 2100;
constexpr std::uint32_t kFirstTrackImage = 240;
constexpr DWORD kScreenStyle = WS_POPUP | WS_VISIBLE | WS_CLIPCHILDREN | WS_DLGFRAME;
constexpr int kSliderStartValue = 50;

struct Fader {
  bool found = false;
  DWORD control = 0;
};

struct Indicator {
  ControlDC strip;  // two frames over their masks
  MusicPoint at;
};

struct MusicRecord {
  ControlDC background;  // as loaded: the sliders draw their knobs over it
  // The pictures have colour tables of their own, so the screen's face is composed in 24 bits:
  // the background with the title (base), and with the indicators over it (face).
  PackedDib base;
  PackedDib face;
  ControlDC closeImage;
  ControlDC stopImage;
  PackedDib knob;  // the knob in the background's colours
  ControlDC trackImages[kTrackButtons];
  Indicator master;
  Indicator wave;
  Fader masterFader;
  Fader waveFader;
  Fader discFader;  // found with the others, though no slider sets it
  HWND close = nullptr;
  HWND stop = nullptr;
  HWND masterSlider = nullptr;
  HWND waveSlider = nullptr;
  HWND tracks[kTrackButtons] = {};
  int markedButton = 0;  // the track button drawn with the highlight frame, 0 for none
  bool overSlider = false;
  BackgroundDrag drag;
};

Fader FindFader(DWORD componentType) {
  Fader fader;
  MIXERLINEA line;
  if (MixerFindLine(componentType, line)) {
    fader.found = MixerFindControl(line.dwLineID, MIXERCONTROL_CONTROLTYPE_VOLUME, fader.control);
  }
  return fader;
}

// Opens the mixer with the screen as its window, so that changes made elsewhere arrive here.
// Without a mixer (a machine without sound) no fader is looked for, and the sliders stay at 50.
void FindFaders(HWND screen, MusicRecord& r) {
  if (!MixerInit(screen)) return;
  r.masterFader = FindFader(MIXERLINE_COMPONENTTYPE_DST_SPEAKERS);
  r.waveFader = FindFader(MIXERLINE_COMPONENTTYPE_SRC_WAVEOUT);
  r.discFader = FindFader(MIXERLINE_COMPONENTTYPE_SRC_COMPACTDISC);
}

bool ReadFader(const Fader& fader, int& position) {
  DWORD percent = 0;
  if (!fader.found || !MixerGetPercent(fader.control, percent)) return false;
  position = SliderPositionOfPercent(percent);
  return true;
}

void ShowIndicator(HWND screen, MusicRecord& r, Indicator& indicator, int frame) {
  const int width = indicator.strip.Width() / 2;
  const int height = indicator.strip.Height() / 2;
  ImageRasterCopy(r.face.get(), indicator.at.x, indicator.at.y, width, height, r.base.get(),
                  indicator.at.x, indicator.at.y, kRopSrcCopy);
  ExpandSpriteInto(r.face.get(), indicator.at.x, indicator.at.y, indicator.strip.Dib(), 2, frame);
  const RECT area{indicator.at.x, indicator.at.y, indicator.at.x + width, indicator.at.y + height};
  InvalidateRect(screen, &area, FALSE);
}

struct Rgb {
  int red, green, blue;
};

// Writes one pixel of the loaded background, in whatever colour of its table comes nearest when
// the picture has one.
void PutBackgroundPixel(HIMAGE image, int x, int y, Rgb colour) {
  if (x < 0 || y < 0 || x >= ImageWidth(image) || y >= ImageHeight(image)) return;
  std::uint8_t* pixel = ImagePixel(image, x, y);
  if (ImageBytesPerPixel(image) == 3) {
    pixel[0] = static_cast<std::uint8_t>(colour.blue);
    pixel[1] = static_cast<std::uint8_t>(colour.green);
    pixel[2] = static_cast<std::uint8_t>(colour.red);
    return;
  }
  const RgbQuad* table = DibColours(image);
  const int used = DibHeader(image)->biClrUsed ? static_cast<int>(DibHeader(image)->biClrUsed) : 256;
  int best = 0, bestDistance = 1 << 30;
  for (int i = 0; i < used && i < 256; ++i) {
    const int dr = table[i].rgbRed - colour.red, dg = table[i].rgbGreen - colour.green,
              db = table[i].rgbBlue - colour.blue;
    const int distance = dr * dr + dg * dg + db * db;
    if (distance < bestDistance) best = i, bestDistance = distance;
  }
  *pixel = static_cast<std::uint8_t>(best);
}

// The background shares its picture with the language screen and has no slots for the sliders;
// without one a knob floats on the parchment. A sunken groove along each slider's run shows
// where it moves. It goes into the loaded picture, which the sliders repaint from.
void CarveSliderGroove(HIMAGE image, MusicPoint top, MusicPoint bottom) {
  constexpr Rgb kShadow{84, 56, 30}, kFloor{150, 118, 80}, kLight{250, 240, 218};
  const int y0 = top.y - 6, y1 = bottom.y + 6;
  for (int y = y0; y <= y1; ++y) {
    const bool edge = y == y0 || y == y1;
    PutBackgroundPixel(image, top.x - 3, y, kShadow);
    for (int x = top.x - 2; x <= top.x + 2; ++x) {
      PutBackgroundPixel(image, x, y, edge ? (y == y0 ? kShadow : kLight) : kFloor);
    }
    PutBackgroundPixel(image, top.x + 3, y, kLight);
  }
}

bool ComposeFace(MusicRecord& r) {
  if (!ExpandToTrueColour(r.background.Dib(), r.base)) return false;
  ControlDC title;
  if (title.LoadById(kTitleBase + static_cast<std::uint32_t>(CurrentLanguage()))) {
    ExpandInto(r.base.get(), kMusicTitleAt.x, kMusicTitleAt.y, title.Dib(), title.Width(),
               title.Height());
  }
  return ExpandToTrueColour(r.base.get(), r.face);
}

HWND CreateButton(HWND screen, ControlDC& image, std::uint32_t id, MusicPoint at) {
  image.LoadById(id);
  return CreatePictureChild(screen, kCommandClass, at.x, at.y, image.Dib());
}

HWND CreateSlider(HWND screen, MusicRecord& r, MusicPoint bottom, MusicPoint top,
                  const Fader& fader) {
  HWND slider = CreatePictureChild(screen, kSlideClass, bottom.x, bottom.y, nullptr);
  if (!slider) return nullptr;
  SendMessageA(slider, slide::MWM_SETROWS, 0, 1);
  SendMessageA(slider, slide::MWM_SETCOLUMNS, 0, 1);
  SendMessageA(slider, slide::MWM_SETSTART, 0, MAKELPARAM(bottom.x, bottom.y));
  SendMessageA(slider, slide::MWM_SETEND, 0, MAKELPARAM(top.x, top.y));
  SendMessageA(slider, slide::MWM_SETBACKGROUND, 0, reinterpret_cast<LPARAM>(r.background.Dib()));
  if (r.knob) SendMessageA(slider, slide::MWM_SETKNOB, 0, reinterpret_cast<LPARAM>(r.knob.get()));
  SendMessageA(slider, slide::MWM_SETMAXIMUM, 0, kVolumeSliderMaximum);
  SendMessageA(slider, slide::MWM_SETVALUE, 0, kSliderStartValue);
  SendMessageA(slider, slide::MWM_SETFRAME, 0, 0);
  int position = 0;
  if (ReadFader(fader, position)) SendMessageA(slider, slide::MWM_SETVALUE, 0, position);
  return slider;
}

// The frame around a track button, in the screen's client area (empty without the button).
RECT TrackFrame(HWND screen, const MusicRecord& r, int button) {
  RECT frame{};
  HWND child = r.tracks[button - 1];
  if (!child || !GetWindowRect(child, &frame)) return RECT{};
  MapWindowPoints(nullptr, screen, reinterpret_cast<POINT*>(&frame), 2);
  InflateRect(&frame, kTrackFrame, kTrackFrame);
  return frame;
}

// The current track's button stands in a frame of the highlight colour, the others in none.
void MarkTrackButton(HWND screen, MusicRecord& r, int button) {
  for (int which : {r.markedButton, button}) {
    if (which < 1 || which > kTrackButtons) continue;
    const RECT frame = TrackFrame(screen, r, which);
    InvalidateRect(screen, &frame, FALSE);
  }
  r.markedButton = button;
}

void CreateTrackButtons(HWND screen, MusicRecord& r) {
  for (int button = 1; button <= kTrackButtons; ++button) {
    r.tracks[button - 1] = CreateButton(screen, r.trackImages[button - 1],
                                        kFirstTrackImage + static_cast<std::uint32_t>(button - 1),
                                        TrackButtonAt(button));
  }
}

// The setting gives the track the screen starts from. While music is open the current track is
// the one the player chose and hears, so the screen shows that one instead.
void ReadTrackSetting() {
  if (MusicDevice() != 0) return;
  char text[6] = {};
  GetPrivateProfileStringA("Quorvex", "Track", "0", text, sizeof text, "Quorvex.INI");
  SetCurrentTrack(TrackIndexFromSetting(text));
}

LRESULT OnCreate(HWND screen) {
  MusicRecord* r = CreateRecord<MusicRecord>(screen);
  if (!r) return -1;
  // Without its background the screen cannot be shown; WM_DESTROY frees the record.
  if (!r->background.LoadById(kBackgroundImage)) return -1;
  CarveSliderGroove(r->background.Dib(), kMasterSliderTop, kMasterSliderBottom);
  CarveSliderGroove(r->background.Dib(), kWaveSliderTop, kWaveSliderBottom);
  if (!ComposeFace(*r)) return -1;
  FindFaders(screen, *r);
  r->master.strip.LoadById(kMasterStrip);
  r->master.at = kMasterIndicatorAt;
  r->wave.strip.LoadById(kWaveStrip);
  r->wave.at = kWaveIndicatorAt;
  r->close = CreateButton(screen, r->closeImage, kCloseImage, kMusicCloseAt);
  r->stop = CreateButton(screen, r->stopImage, kStopImage, kMusicStopAt);
  ControlDC knob;
  if (knob.LoadById(kKnobImage)) RemapSpriteToColourTable(knob.Dib(), r->background.Dib(), r->knob);
  r->masterSlider = CreateSlider(screen, *r, kMasterSliderBottom, kMasterSliderTop, r->masterFader);
  r->waveSlider = CreateSlider(screen, *r, kWaveSliderBottom, kWaveSliderTop, r->waveFader);
  CreateTrackButtons(screen, *r);
  ReadTrackSetting();
  r->markedButton = TrackButtonOfIndex(CurrentTrack());
  ShowIndicator(screen, *r, r->master, 0);
  ShowIndicator(screen, *r, r->wave, 0);
  r->overSlider = false;
  return 0;
}

void OnSliderNotify(HWND screen, MusicRecord& r, HWND slider, Indicator& indicator,
                    const Fader& fader, WPARAM code) {
  if (code == MWN_PRESSED) {
    r.overSlider = true;
    ShowIndicator(screen, r, indicator, 1);
  } else if (code == MWN_RELEASED) {
    r.overSlider = false;
    ShowIndicator(screen, r, indicator, 0);
  } else if (code == MWN_CLICKED) {
    const int position = static_cast<int>(SendMessageA(slider, slide::MWM_GETVALUE, 0, 0));
    SendMessageA(slider, slide::MWM_SETFRAME, 0, 0);
    if (fader.found) MixerSetPercent(fader.control, position);
  }
}

void OnTrackButton(HWND screen, MusicRecord& r, int button) {
  const TrackChoice choice = ChooseTrackButton(CurrentTrack(), button);
  if (!choice.play) return;
  SetCurrentTrack(choice.index);
  MarkTrackButton(screen, r, choice.mark);
  OpenAndPlay();
}

void OnNotify(HWND screen, MusicRecord& r, WPARAM code, HWND sender) {
  if (!sender) return;
  if (sender == r.masterSlider) {
    OnSliderNotify(screen, r, sender, r.master, r.masterFader, code);
    return;
  }
  if (sender == r.waveSlider) {
    OnSliderNotify(screen, r, sender, r.wave, r.waveFader, code);
    return;
  }
  if (code != MWN_CLICKED) return;
  if (sender == r.close) {
    PostMessageA(screen, WM_CLOSE, 0, 0);
  } else if (sender == r.stop) {
    CloseMusic();
    PostMessageA(screen, WM_CLOSE, 0, 0);
  } else {
    for (int button = 1; button <= kTrackButtons; ++button) {
      if (sender == r.tracks[button - 1]) OnTrackButton(screen, r, button);
    }
  }
}

// A fader moved by another program (or another mixer window) moves its slider, unless the
// player is holding one of the sliders.
void OnMixerChange(MusicRecord& r, DWORD control) {
  if (r.overSlider) return;
  HWND slider = nullptr;
  const Fader* fader = nullptr;
  if (r.masterFader.found && control == r.masterFader.control) {
    slider = r.masterSlider;
    fader = &r.masterFader;
  } else if (r.waveFader.found && control == r.waveFader.control) {
    slider = r.waveSlider;
    fader = &r.waveFader;
  }
  int position = 0;
  if (!slider || !ReadFader(*fader, position)) return;
  if (position == static_cast<int>(SendMessageA(slider, slide::MWM_GETVALUE, 0, 0))) return;
  SendMessageA(slider, slide::MWM_SETVALUE, 0, position);
  SendMessageA(slider, slide::MWM_SETFRAME, 0, 0);
}

void PaintTrackFrame(HWND screen, HDC dc, const MusicRecord& r) {
  if (r.markedButton < 1 || r.markedButton > kTrackButtons) return;
  HBRUSH brush = CreateSolidBrush(kHighlightColour);
  if (!brush) return;
  RECT frame = TrackFrame(screen, r, r.markedButton);
  for (int i = 0; i < kTrackFrame; ++i) {
    FrameRect(dc, &frame, brush);
    InflateRect(&frame, -1, -1);
  }
  DeleteObject(brush);
}

void OnPaint(HWND screen, const MusicRecord& r) {
  PAINTSTRUCT paint;
  HDC dc = BeginPaint(screen, &paint);
  if (dc) {
    ImageDrawToContext(dc, 0, 0, r.face.width(), r.face.height(), r.face.get(), 0, 0,
                       kRopSrcCopy);
    PaintTrackFrame(screen, dc, r);
  }
  EndPaint(screen, &paint);
}

// Escape closes; Enter closes too, as the screen has nothing to confirm. The music goes on.
bool OnKey(HWND screen, WPARAM key) {
  if (key != VK_ESCAPE && key != VK_RETURN) return false;
  PostMessageA(screen, WM_CLOSE, 0, 0);
  return true;
}

void OnClose(HWND screen) {
  EnableOwnerOnClose(screen);
  if (HWND owner = GetWindow(screen, GW_OWNER)) SetForegroundWindow(owner);
  DestroyWindow(screen);
}

void OnDestroy(HWND screen) {
  MixerClose();
  DestroyRecord<MusicRecord>(screen);
  EnableOwnerOnClose(screen);
}

LRESULT Dispatch(HWND screen, MusicRecord& r, UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_PAINT:
      OnPaint(screen, r);
      return 0;
    case WM_ERASEBKGND:
      return 1;
    case MWM_NOTIFY:
      OnNotify(screen, r, wParam, reinterpret_cast<HWND>(lParam));
      return 0;
    case MM_MIXM_CONTROL_CHANGE:
      OnMixerChange(r, static_cast<DWORD>(lParam));
      return 0;
    case WM_LBUTTONDOWN:
      StartBackgroundDrag(screen, r.drag);
      return 0;
    case WM_MOUSEMOVE:
      FollowBackgroundDrag(screen, r.drag);
      return 0;
    case WM_LBUTTONUP:
      EndBackgroundDrag(screen, r.drag);
      KeepWindowOnScreen(screen);
      return 0;
    case WM_CAPTURECHANGED:
      if (reinterpret_cast<HWND>(lParam) != screen) EndBackgroundDrag(screen, r.drag);
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

LRESULT CALLBACK MusicWindowProc(HWND screen, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_CREATE) return OnCreate(screen);
  MusicRecord* r = RecordOf<MusicRecord>(screen);
  if (message == WM_DESTROY) {
    if (r) OnDestroy(screen);
    return 0;
  }
  if (!r) return DefWindowProcA(screen, message, wParam, lParam);
  return Dispatch(screen, *r, message, wParam, lParam);
}

}  // namespace

bool RegisterMusicClass(HINSTANCE instance) {
  return RegisterScreenClass(instance, kMusicClass, MusicWindowProc);
}

HWND OpenMusicScreen(HWND owner) {
  ControlDC background;
  if (!background.LoadById(kBackgroundImage)) return nullptr;
  return OpenCentredScreen(kMusicClass, kScreenStyle, background.Width(), background.Height(),
                           owner);
}

}  // namespace qv
