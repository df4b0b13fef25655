// Placement rules for pop-up screens.
#include "core/screen_fit.h"

#include <algorithm>

namespace qv {
namespace {

int Clamp(int value, int size, int room) {
  const int last = std::max(0, room - size);
  return std::clamp(value, 0, last);
}

}  // namespace

ScreenSpot KeepOnScreen(int x, int y, int width, int height, int screenWidth, int screenHeight) {
  return ScreenSpot{Clamp(x, width, screenWidth), Clamp(y, height, screenHeight)};
}

ScreenSpot CentreOnDisplay(int width, int height, int screenWidth, int screenHeight) {
  return ScreenSpot{std::max(0, (screenWidth - width) / 2), std::max(0, (screenHeight - height) / 2)};
}

}  // namespace qv
