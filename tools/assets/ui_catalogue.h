// Every interface picture the tool draws: identifier, strip kind, frame size and screen.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <vector>

#include "assets/image8.h"

namespace qv::assets {

enum class StripKind {
  kPush,    // frames stacked: normal, hover, pressed
  kCheck,   // frames stacked: unchecked, unchecked + hover, checked, checked + hover
  kAnim,    // frames side by side in one row
  kScroll,  // three part blocks stacked, each with normal, hover and pressed versions
  kSprite,  // frames in a row, then their masks in a row below
  kPlain,   // one picture, or (frames > 1) plain pictures side by side
};

// The screens, for the contact sheets: each sheet shows the pictures of one screen.
enum class Screen { kTitle, kNewGame, kFile, kHonour, kBars, kMusic, kTexture, kMessage, kVideoInfo, kPrint };
inline constexpr int kScreenCount = 10;
const char* ScreenName(Screen screen);

struct UiPicture {
  std::uint32_t identifier;
  StripKind kind;
  Screen screen;
  int frameWidth, frameHeight;  // one frame; for a scroll bar, the whole control
  int frames;                   // frames in the strip (3 push, 4 check, the row's length)
  std::array<int, 3> parts;     // scroll bars: the heights of the top, middle and bottom parts
  bool seamless;                // a tile that the screen repeats
  std::function<RgbImage()> draw;
};

const std::vector<UiPicture>& UiCatalogue();

// Draws the picture and reduces it to 256 colours (sprites keep exact black and white).
Image8 MakeUiPicture(const UiPicture& picture);

// The size the strip must have, from its kind, frame size and frame count.
int StripWidth(const UiPicture& picture);
int StripHeight(const UiPicture& picture);

}  // namespace qv::assets
