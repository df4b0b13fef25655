// Every interface picture the tool draws: identifier, strip kind, frame size and screen.
//
// Choices where the layout is open:
// - Push buttons have no disabled frame: the screens never set one, so a disabled button shows
//   its normal frame. Check strips likewise hold the four enabled states only.
// - Scroll bars 197 and 221 are 40 wide with 37-pixel end buttons, like 135; their tracks are
//   76 and 86 high (whole controls 150 and 160).
// - The piece box's frame is 300 x 300: 225 is its 300 x 24 title strip, 227 one 6 x 300 side
//   (the other side is the same picture), 228 the 300 x 6 bottom.
// - 250-256 are the information screen: 250 its 520 x 400 background (parchment for the text
//   on the right half), 251 close (50 x 50), 252 print (70 x 40), 253-255 the three video
//   buttons (70 x 40, numbered), 256 the 236 x 180 frame around the picture. 257-259 are free.
// - 260 is the print wait window's 320 x 140 background, 261 the progress cell strip (44 x 88:
//   pending on top, done below), 262 a 64 x 64 printer emblem for that window.
#include "assets/ui_catalogue.h"

#include "assets/die_shapes.h"
#include "assets/quantize.h"
#include "assets/ui_buttons.h"
#include "assets/ui_panels.h"
#include "assets/ui_words.h"
#include "screens/video_layout.h"

namespace qv::assets {

const char* ScreenName(Screen screen) {
  constexpr const char* names[kScreenCount] = {
      "title-and-boxes", "new-game", "file", "honour-roll", "tool-and-option-bars",
      "music-and-language", "texture", "message-box", "video-and-information", "print"};
  return names[static_cast<int>(screen)];
}

namespace {

UiPicture Push(std::uint32_t id, Screen screen, int w, int h, std::function<RgbImage()> draw) {
  return {id, StripKind::kPush, screen, w, h, 3, {}, false, std::move(draw)};
}
UiPicture Check(std::uint32_t id, Screen screen, int w, int h, std::function<RgbImage()> draw) {
  return {id, StripKind::kCheck, screen, w, h, 4, {}, false, std::move(draw)};
}
UiPicture Anim(std::uint32_t id, Screen screen, int side, int frames, std::function<RgbImage()> draw) {
  return {id, StripKind::kAnim, screen, side, side, frames, {}, false, std::move(draw)};
}
UiPicture Anim10(std::uint32_t id, Screen screen, int side, Icon icon) {
  return Anim(id, screen, side, 10, [=] { return qv::assets::Anim10(side, icon); });
}
UiPicture Plain(std::uint32_t id, Screen screen, int w, int h, std::function<RgbImage()> draw) {
  return {id, StripKind::kPlain, screen, w, h, 1, {}, false, std::move(draw)};
}
UiPicture Tile(std::uint32_t id, Screen screen, int w, int h, std::function<RgbImage()> draw) {
  return {id, StripKind::kPlain, screen, w, h, 1, {}, true, std::move(draw)};
}
UiPicture Scroll(std::uint32_t id, Screen screen, std::array<int, 3> parts) {
  return {id, StripKind::kScroll, screen, 40, parts[0] + parts[1] + parts[2], 3, parts, false,
          [=] { return ScrollBar(40, parts); }};
}
UiPicture Sprite(std::uint32_t id, Screen screen, int w, int h, int frames, std::function<RgbImage()> draw) {
  return {id, StripKind::kSprite, screen, w, h, frames, {}, false, std::move(draw)};
}

Screen WordScreen(std::uint32_t base) {
  if (base == 2060) return Screen::kTitle;
  if (base >= 1000 && base < 2040) return Screen::kNewGame;
  if (base == 2040 || base == 2050) return Screen::kFile;
  if (base == 2090) return Screen::kHonour;
  if (base == 2100) return Screen::kMusic;
  if (base == 2130) return Screen::kTexture;
  return Screen::kBars;
}

void AddWordPictures(std::vector<UiPicture>& out) {
  for (const WordSlot& slot : WordSlots()) {
    for (int language = 0; language < kLanguageCount; ++language) {
      const std::uint32_t id = slot.base + static_cast<std::uint32_t>(language);
      auto draw = [&slot, language] { return DrawWordPicture(slot, language); };
      const Screen screen = WordScreen(slot.base);
      switch (slot.look) {
        case WordLook::kWoodButton: out.push_back(Push(id, screen, slot.width, slot.height, draw)); break;
        case WordLook::kTab: out.push_back(Check(id, screen, slot.width, slot.height, draw)); break;
        default: out.push_back(Plain(id, screen, slot.width, slot.height, draw)); break;
      }
    }
  }
}

std::vector<UiPicture> BuildCatalogue() {
  using S = Screen;
  std::vector<UiPicture> c;
  // Title bar and the right edge of the main screen.
  for (int i = 0; i < 6; ++i) {
    c.push_back(Push(200 + i, S::kTitle, 50, 50, [=] { return BoxPush(i + 1, false); }));
    c.push_back(Push(600 + i, S::kTitle, 50, 50, [=] { return BoxPush(i + 1, true); }));
  }
  c.push_back(Push(244, S::kTitle, 50, 50, [] { return EdgeInfoPush(); }));
  c.push_back(Tile(122, S::kTitle, 76, 78, [] { return TitleBarTile(); }));
  c.push_back(Push(112, S::kTitle, 36, 36, [] { return IconPush(36, 36, Icon::kCross, Backdrop::kTitleBar); }));
  c.push_back(Push(119, S::kTitle, 36, 36, [] { return IconPush(36, 36, Icon::kMinimise, Backdrop::kTitleBar); }));
  c.push_back(Push(129, S::kTitle, 60, 60, [] { return IconPush(60, 60, Icon::kPiece, Backdrop::kTitleBar); }));
  c.push_back(Push(231, S::kTitle, 60, 60, [] { return IconPush(60, 60, Icon::kGlobe, Backdrop::kTitleBar); }));
  c.push_back(Push(232, S::kTitle, 60, 60, [] { return IconPush(60, 60, Icon::kSwatch, Backdrop::kTitleBar); }));
  c.push_back(Plain(225, S::kTitle, 300, 24, [] { return BoxTitleStrip(); }));
  c.push_back(Plain(227, S::kTitle, 6, 300, [] { return BoxSide(); }));
  c.push_back(Plain(228, S::kTitle, 300, 6, [] { return BoxBottom(); }));
  c.push_back(Push(229, S::kTitle, 22, 22, [] { return IconPush(22, 22, Icon::kCross, Backdrop::kWood); }));
  c.push_back(Push(230, S::kTitle, 22, 22, [] { return IconPush(22, 22, Icon::kPencil, Backdrop::kWood); }));
  c.push_back(Push(170, S::kTitle, 20, 20, [] { return IconPush(20, 20, Icon::kCross, Backdrop::kWood); }));
  // Language and music screens.
  c.push_back(Plain(214, S::kMusic, 250, 300, [] { return SmallScreenBackground(); }));
  c.push_back(Push(212, S::kMusic, 70, 40, [] { return IconPush(70, 40, Icon::kCheck, Backdrop::kWood); }));
  c.push_back(Push(213, S::kMusic, 70, 40, [] { return IconPush(70, 40, Icon::kCross, Backdrop::kWood); }));
  c.push_back(Sprite(503, S::kMusic, 60, 40, 2, [] { return VolumeIndicator(Icon::kSpeaker); }));
  c.push_back(Sprite(505, S::kMusic, 60, 40, 2, [] { return VolumeIndicator(Icon::kWave); }));
  c.push_back(Sprite(507, S::kMusic, 30, 18, 1, [] { return SliderKnob(); }));
  for (int i = 0; i < 4; ++i) {
    c.push_back(Push(240 + i, S::kMusic, 40, 30,
                     [=] { return GlyphPush(40, 30, std::to_string(i + 1), Backdrop::kWood); }));
  }
  // Message box.
  c.push_back(Plain(148, S::kMessage, 500, 305, [] { return MessageBoxFace(); }));
  c.push_back(Push(146, S::kMessage, 70, 40, [] { return IconPush(70, 40, Icon::kCheck, Backdrop::kWood); }));
  c.push_back(Push(147, S::kMessage, 70, 40, [] { return IconPush(70, 40, Icon::kCross, Backdrop::kWood); }));
  c.push_back(Plain(149, S::kMessage, 40, 40, [] { return MessageBoxIcon(); }));
  // Table-texture screen.
  c.push_back(Plain(133, S::kTexture, 300, 345, [] { return TextureScreenBackground(); }));
  c.push_back(Push(131, S::kTexture, 50, 50, [] { return IconPush(50, 50, Icon::kCross, Backdrop::kWood); }));
  c.push_back(Anim10(132, S::kTexture, 50, Icon::kNext));
  c.push_back({134, StripKind::kPlain, S::kTexture, 100, 100, 10, {}, false, [] { return TexturePreviews(); }});
  c.push_back(Scroll(135, S::kTexture, {37, 83, 39}));
  // New-game screen.
  c.push_back(Plain(224, S::kNewGame, 610, 300, [] { return NewGameBackground(); }));
  c.push_back(Push(223, S::kNewGame, 90, 40, [] { return IconPush(90, 40, Icon::kCheck, Backdrop::kWood); }));
  c.push_back(Push(222, S::kNewGame, 90, 40, [] { return IconPush(90, 40, Icon::kCross, Backdrop::kWood); }));
  c.push_back(Check(184, S::kNewGame, 50, 50, [] { return ShapeCheck(TabStyle::kKnob); }));
  c.push_back(Check(185, S::kNewGame, 50, 50, [] { return ShapeCheck(TabStyle::kDovetail); }));
  c.push_back(Check(186, S::kNewGame, 50, 50, [] { return ShapeCheck(TabStyle::kDoubleLobe); }));
  c.push_back(Anim(106, S::kNewGame, 60, 6, [] { return ShapeCycler(); }));
  c.push_back(Anim10(198, S::kNewGame, 50, Icon::kMinus));
  c.push_back(Anim10(199, S::kNewGame, 50, Icon::kPlus));
  c.push_back(Scroll(197, S::kNewGame, {37, 76, 37}));
  c.push_back(Anim10(187, S::kNewGame, 50, Icon::kQuestion));
  c.push_back(Anim10(188, S::kNewGame, 50, Icon::kEye));
  // File screens.
  c.push_back(Scroll(221, S::kFile, {37, 86, 37}));
  c.push_back(Anim10(158, S::kFile, 50, Icon::kBin));
  // Honour roll.
  c.push_back(Tile(160, S::kHonour, 80, 80, [] { return HonourTile(); }));
  c.push_back(Anim10(128, S::kHonour, 70, Icon::kExit));
  // Tool and option bars.
  c.push_back(Tile(104, S::kBars, 25, 139, [] { return ToolStripTile(); }));
  c.push_back(Tile(120, S::kBars, 98, 95, [] { return ToolPanelTile(); }));
  c.push_back(Tile(105, S::kBars, 103, 25, [] { return OptionStripTile(); }));
  c.push_back(Tile(123, S::kBars, 103, 103, [] { return OptionPanelTile(); }));
  c.push_back(Anim10(127, S::kBars, 70, Icon::kSolve));
  c.push_back(Anim10(117, S::kBars, 70, Icon::kBulb));
  c.push_back(Anim10(124, S::kBars, 70, Icon::kNote));
  c.push_back(Anim10(113, S::kBars, 70, Icon::kTrophy));
  c.push_back(Anim10(115, S::kBars, 70, Icon::kQuestion));
  c.push_back(Anim10(126, S::kBars, 70, Icon::kMagnifier));
  c.push_back(Anim10(257, S::kBars, 70, Icon::kOpenFolder));
  c.push_back(Anim10(258, S::kBars, 70, Icon::kSaveBox));
  // Video frame and information screen.
  c.push_back(Plain(162, S::kVideoInfo, kVideoFrameWidth, kVideoFrameHeight, [] { return VideoFrame(); }));
  c.push_back(Push(163, S::kVideoInfo, 70, 40, [] { return IconPush(70, 40, Icon::kCross, Backdrop::kWood); }));
  c.push_back(Push(167, S::kVideoInfo, 70, 40, [] { return IconPush(70, 40, Icon::kReplay, Backdrop::kWood); }));
  c.push_back(Push(165, S::kVideoInfo, 70, 40, [] { return IconPush(70, 40, Icon::kGlobe, Backdrop::kWood); }));
  c.push_back(Plain(250, S::kVideoInfo, 520, 400, [] { return InfoBackground(); }));
  c.push_back(Push(251, S::kVideoInfo, 50, 50, [] { return IconPush(50, 50, Icon::kCross, Backdrop::kWood); }));
  c.push_back(Push(252, S::kVideoInfo, 70, 40, [] { return IconPush(70, 40, Icon::kPrinter, Backdrop::kWood); }));
  for (int i = 0; i < 3; ++i) {
    c.push_back(Push(253 + i, S::kVideoInfo, 70, 40,
                     [=] { return GlyphPush(70, 40, "\u25B6" + std::to_string(i + 1), Backdrop::kWood); }));
  }
  c.push_back(Plain(256, S::kVideoInfo, 236, 180, [] { return InfoPictureFrame(); }));
  // Printing.
  c.push_back(Plain(260, S::kPrint, 320, 140, [] { return PrintWaitBackground(); }));
  c.push_back(Plain(261, S::kPrint, 44, 88, [] { return PrintProgressCells(); }));
  c.push_back(Plain(262, S::kPrint, 64, 64, [] { return PrinterEmblem(); }));
  c.push_back(Plain(263, S::kPrint, 1496, 243, [] { return PrintBanner(true); }));
  c.push_back(Plain(264, S::kPrint, 1496, 228, [] { return PrintBanner(false); }));
  AddWordPictures(c);
  return c;
}

}  // namespace

const std::vector<UiPicture>& UiCatalogue() {
  static const std::vector<UiPicture> catalogue = BuildCatalogue();
  return catalogue;
}

int StripWidth(const UiPicture& p) {
  switch (p.kind) {
    case StripKind::kAnim:
    case StripKind::kSprite:
    case StripKind::kPlain: return p.frameWidth * p.frames;
    default: return p.frameWidth;
  }
}

int StripHeight(const UiPicture& p) {
  switch (p.kind) {
    case StripKind::kPush:
    case StripKind::kCheck:
    case StripKind::kScroll: return p.frameHeight * p.frames;
    case StripKind::kSprite: return p.frameHeight * 2;
    default: return p.frameHeight;
  }
}

constexpr int kUiSpeed = 10;

Image8 MakeUiPicture(const UiPicture& p) {
  const RgbImage drawn = p.draw();
  if (drawn.width != StripWidth(p) || drawn.height != StripHeight(p)) return Image8();
  Image8 out;
  std::string error;
  if (p.kind == StripKind::kSprite) {
    // Masks and the transparent parts of frames must be exactly black and white; the nearest
    // colour keeps every such pixel on its fixed entry.
    const Rgb black{0, 0, 0}, white{255, 255, 255};
    if (!ReduceTo256Colours(drawn, 0.0, out, error, {black, white}, kUiSpeed)) return Image8();
    int blackIndex = -1, whiteIndex = -1;
    for (std::size_t i = 0; i < out.palette.size(); ++i) {
      if (out.palette[i] == black && blackIndex < 0) blackIndex = static_cast<int>(i);
      if (out.palette[i] == white && whiteIndex < 0) whiteIndex = static_cast<int>(i);
    }
    if (blackIndex < 0 || whiteIndex < 0) return Image8();
    for (std::size_t i = 0; i < drawn.pixels.size(); ++i) {
      if (drawn.pixels[i] == black) out.pixels[i] = static_cast<std::uint8_t>(blackIndex);
      if (drawn.pixels[i] == white) out.pixels[i] = static_cast<std::uint8_t>(whiteIndex);
    }
    return out;
  }
  // Tiles take the nearest colour, as the table textures do, so their edges stay seamless;
  // the rest is lightly dithered against banding in the gradients. The interface's few
  // materials need no slow palette search, and the tool runs in every build.
  if (!ReduceTo256Colours(drawn, p.seamless ? 0.0 : 0.5, out, error, {}, kUiSpeed)) return Image8();
  return out;
}

}  // namespace qv::assets
