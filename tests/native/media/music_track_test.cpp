#include "media/music_track.h"

#include <gtest/gtest.h>

#include "screens/music_layout.h"

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

TEST(MusicTrack, ATrackButtonPlaysItsOwnTrackAndMovesTheHighlight) {
  // The button numbered k plays track k: index k - 1.
  TrackChoice choice = ChooseTrackButton(0, 3);
  EXPECT_TRUE(choice.play);
  EXPECT_EQ(choice.index, 2);
  EXPECT_EQ(choice.unmark, 1);  // the first track's button too loses its highlight
  EXPECT_EQ(choice.mark, 3);
  // The current track's own button does nothing.
  choice = ChooseTrackButton(2, 3);
  EXPECT_FALSE(choice.play);
  EXPECT_EQ(choice.index, 2);
  EXPECT_EQ(choice.mark, 0);
  // Index 4 (the setting "4") has no button to unmark; unknown buttons do nothing.
  choice = ChooseTrackButton(4, 4);
  EXPECT_TRUE(choice.play);
  EXPECT_EQ(choice.unmark, 0);
  EXPECT_EQ(choice.index, 3);
  EXPECT_FALSE(ChooseTrackButton(1, 0).play);
  EXPECT_FALSE(ChooseTrackButton(1, 5).play);
  EXPECT_EQ(TrackButtonOfIndex(TrackIndexFromSetting("3")), 4);
  EXPECT_EQ(TrackButtonOfIndex(-1), 0);
}

TEST(MusicTrack, TheTrackButtonsStandBetweenTheSlidersWithRoomForTheirFrames) {
  constexpr int kButtonWidth = 40, kButtonHeight = 30, kKnobHalfWidth = 15;
  for (int button = 1; button <= kTrackButtons; ++button) {
    const MusicPoint at = TrackButtonAt(button);
    EXPECT_GE(at.x - kTrackFrame, kMasterSliderTop.x + kKnobHalfWidth);
    EXPECT_LE(at.x + kButtonWidth + kTrackFrame, kWaveSliderTop.x - kKnobHalfWidth);
    EXPECT_GE(at.y, kMasterSliderTop.y);
    EXPECT_LE(at.y + kButtonHeight, kMasterSliderBottom.y);
    if (button > 1) {
      EXPECT_GT(at.y - kTrackFrame, TrackButtonAt(button - 1).y + kButtonHeight + kTrackFrame);
    }
  }
}

}  // namespace
}  // namespace qv
