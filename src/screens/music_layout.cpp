#include "screens/music_layout.h"

namespace qv {

namespace {
constexpr int kTrackColumnX = 105;
constexpr int kTrackTopY = 100;
constexpr int kTrackPitch = 35;  // 30-pixel buttons and room for their frames between them
}  // namespace

MusicPoint TrackButtonAt(int button) {
  if (button < 1 || button > kTrackButtons) return MusicPoint{};
  return MusicPoint{kTrackColumnX, kTrackTopY + (button - 1) * kTrackPitch};
}

int TrackButtonOfIndex(int index) {
  return index >= 0 && index < kTrackButtons ? index + 1 : 0;
}

TrackChoice ChooseTrackButton(int currentIndex, int button) {
  TrackChoice choice;
  choice.index = currentIndex;
  if (button < 1 || button > kTrackButtons) return choice;
  const int index = button - 1;
  if (index == currentIndex) return choice;
  choice.play = true;
  choice.unmark = TrackButtonOfIndex(currentIndex);
  choice.mark = button;
  choice.index = index;
  return choice;
}

}  // namespace qv
