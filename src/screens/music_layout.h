// The music screen's layout and its track buttons' rule, apart from the window.
#pragma once

namespace qv {

struct MusicPoint {
  int x = 0;
  int y = 0;
};

// Placed on the background (image 214); the slider tracks run from the bottom point to the top.
inline constexpr MusicPoint kMusicTitleAt{77, 0};
inline constexpr MusicPoint kMusicCloseAt{0, 256};
inline constexpr MusicPoint kMusicStopAt{180, 256};
inline constexpr MusicPoint kMasterSliderBottom{69, 236};
inline constexpr MusicPoint kMasterSliderTop{69, 100};
inline constexpr MusicPoint kWaveSliderBottom{181, 236};
inline constexpr MusicPoint kWaveSliderTop{181, 100};
inline constexpr MusicPoint kMasterIndicatorAt{35, 51};
inline constexpr MusicPoint kWaveIndicatorAt{155, 53};

// The four track buttons, numbered 1 to 4, stand in a column in the free band between the two
// sliders, each highlighted by a frame of this width when its track is the current one.
inline constexpr int kTrackButtons = 4;
inline constexpr int kTrackFrame = 2;
MusicPoint TrackButtonAt(int button);

// The button numbered k plays the game's track k (current index k - 1); index 4, which the
// "Track" setting can still give, has no button.
int TrackButtonOfIndex(int index);  // 1..4, or 0 for none

// What pressing a track button does: nothing when its track is already the current one;
// otherwise the previous track's button (0 for none) loses its highlight, the pressed one gains
// it, the current index becomes the button's track and the music starts again on it.
struct TrackChoice {
  bool play = false;
  int unmark = 0;
  int mark = 0;
  int index = 0;
};
TrackChoice ChooseTrackButton(int currentIndex, int button);

}  // namespace qv
