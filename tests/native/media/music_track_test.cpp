#include "media/music_track.h"

#include <gtest/gtest.h>

namespace qv {
namespace {

TEST(MusicTrack, SettingGivesTheDigitOfItsFirstCharacterWithinZeroToFour) {
  EXPECT_EQ(TrackIndexFromSetting(nullptr), 0);
  EXPECT_EQ(TrackIndexFromSetting(""), 0);
  EXPECT_EQ(TrackIndexFromSetting("3"), 3);
  EXPECT_EQ(TrackIndexFromSetting("4x"), 4);
  EXPECT_EQ(TrackIndexFromSetting("7"), 0);
  EXPECT_EQ(TrackIndexFromSetting("x"), 0);
  EXPECT_EQ(TrackIndexFromSetting("/"), 0);  // the character just below '0'
}

TEST(MusicTrack, TheFirstThreeTracksPlayAloneAndTheLaterOnesPlayOnToTheEnd) {
  for (int index = 0; index < 3; ++index) {
    const TrackSpan span = TrackSpanOf(index);
    EXPECT_EQ(span.from, index + 1);
    EXPECT_EQ(span.to, index + 2);
    // The game's own tracks: the track alone, then the span ends and the owner loops it.
    EXPECT_EQ(FirstOwnTrack(span), index + 1);
    EXPECT_EQ(NextOwnTrack(span, index + 1), 0);
  }
  const TrackSpan fourth = TrackSpanOf(3);
  EXPECT_EQ(fourth.from, 4);
  EXPECT_EQ(fourth.to, 0);
  EXPECT_EQ(FirstOwnTrack(fourth), 4);
  EXPECT_EQ(NextOwnTrack(fourth, 4), 0);  // the game's tracks end with the fourth
}

TEST(MusicTrack, ASpanBeyondTheGamesOwnTracksStillPlaysTheLastOne) {
  const TrackSpan fifth = TrackSpanOf(4);
  EXPECT_EQ(fifth.from, 5);
  EXPECT_EQ(FirstOwnTrack(fifth), kOwnTrackCount);
  // Playing on through later tracks: from the second own track of an open span, every later one.
  const TrackSpan open{2, 0};
  EXPECT_EQ(NextOwnTrack(open, 2), 3);
  EXPECT_EQ(NextOwnTrack(open, 3), 4);
  EXPECT_EQ(NextOwnTrack(open, 4), 0);
}

}  // namespace
}  // namespace qv
