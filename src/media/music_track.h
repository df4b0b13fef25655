// Which tracks one play of the background music covers. The music comes from the audio tracks of
// a compact disc, or, when no disc can be played, from the game's own tracks Music\1.wav ...
// beside the program; both follow the same rules.
#pragma once

namespace qv {

// The game ships this many tracks of its own.
inline constexpr int kOwnTrackCount = 4;

// The current-track index kept by the "Track" setting: the digit of its first character, 0..4;
// anything else (missing, a letter, a larger digit) is 0.
int TrackIndexFromSetting(const char* text);

// One play: the tracks from `from` up to, not including, `to`; `to` 0 plays on to the last
// track. The first three indices each play their own track alone; from index 3 on the music
// plays on through every later track.
struct TrackSpan {
  int from = 1;
  int to = 0;
};
TrackSpan TrackSpanOf(int index);

// The game's own tracks within a span: the first one played (a span that starts beyond the
// last track plays the last one, so that every index has music), and the one that follows
// `track` (0 when the span ends there).
int FirstOwnTrack(TrackSpan span);
int NextOwnTrack(TrackSpan span, int track);

}  // namespace qv
