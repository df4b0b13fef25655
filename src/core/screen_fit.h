// Where a screen that the player drags may go: always far enough on the screen to be dragged back.
#pragma once

namespace qv {

struct ScreenSpot {
  int x = 0;
  int y = 0;
};

// The top-left corner nearest to (x, y) that keeps a width x height screen wholly inside a
// screenWidth x screenHeight display. A screen larger than the display keeps its top-left corner
// on it, so that its title and close button (which sit at the top) stay reachable.
ScreenSpot KeepOnScreen(int x, int y, int width, int height, int screenWidth, int screenHeight);

// The top-left corner that centres a width x height screen on the display (never negative).
ScreenSpot CentreOnDisplay(int width, int height, int screenWidth, int screenHeight);

}  // namespace qv
