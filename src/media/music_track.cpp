#include "media/music_track.h"

#include <algorithm>

namespace qv {

int TrackIndexFromSetting(const char* text) {
  if (text == nullptr) return 0;
  const int index = text[0] - '0';
  return index < 0 || index > 4 ? 0 : index;
}

TrackSpan TrackSpanOf(int index) {
  index = std::clamp(index, 0, 4);
  TrackSpan span;
  span.from = index + 1;
  span.to = index < 3 ? index + 2 : 0;
  return span;
}

int FirstOwnTrack(TrackSpan span) { return std::clamp(span.from, 1, kOwnTrackCount); }

int NextOwnTrack(TrackSpan span, int track) {
  const int next = track + 1;
  if (next > kOwnTrackCount) return 0;
  if (span.to != 0 && next >= span.to) return 0;
  return next;
}

}  // namespace qv
