// The video screen's clip paths and the placement of the clip, its frame and the frame's buttons.
#include "screens/video_layout.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace qv {
namespace {

TEST(VideoLayout, EachClipIsADigitInTheVideoFolderAndOthersHaveNoFile) {
  EXPECT_EQ(VideoClipPath("C:\\Games\\Quorvex\\", 0), "C:\\Games\\Quorvex\\Video\\0.avi");
  EXPECT_EQ(VideoClipPath("C:\\Games\\Quorvex\\", 2), "C:\\Games\\Quorvex\\Video\\2.avi");
  EXPECT_EQ(VideoClipPath("", 1), "Video\\1.avi");
  EXPECT_EQ(VideoClipPath("C:\\", 3), "");
  EXPECT_EQ(VideoClipPath("C:\\", -1), "");
}

TEST(VideoLayout, ThePresentationSitsInTheFrameWindowWithTheButtonsBelowItOnEveryScreen) {
  constexpr int kButtonWidth = 70, kButtonHeight = 40;
  for (const auto& [w, h] : {std::pair{800, 600}, {1024, 768}, {1366, 768}, {1920, 1080}}) {
    SCOPED_TRACE(std::to_string(w) + "x" + std::to_string(h));
    const VideoRect clip = CentredClip(w, h, kVideoFrameWindow.width, kVideoFrameWindow.height);
    const VideoPoint frame = VideoFrameOrigin(clip);
    EXPECT_EQ(clip.x - frame.x, kVideoFrameWindow.x);
    EXPECT_EQ(clip.y - frame.y, kVideoFrameWindow.y);
    EXPECT_GE(frame.x, 0);
    EXPECT_GE(frame.y, 0);
    EXPECT_LE(frame.x + kVideoFrameWidth, w);
    EXPECT_LE(frame.y + kVideoFrameHeight, h);
    for (const VideoPoint b : {kVideoCloseAt, kVideoReplayAt, kVideoWebSiteAt}) {
      EXPECT_GT(b.y, kVideoFrameWindow.y + kVideoFrameWindow.height);
      EXPECT_LE(b.x + kButtonWidth, kVideoFrameWidth);
      EXPECT_LE(b.y + kButtonHeight, kVideoFrameHeight);
    }
  }
  // A bare clip is centred as it is, odd sizes rounding towards the top left.
  const VideoRect intro = CentredClip(1024, 768, 320, 240);
  EXPECT_EQ(intro.x, 352);
  EXPECT_EQ(intro.y, 264);
  EXPECT_EQ(CentredClip(801, 601, 320, 240).x, 240);
  EXPECT_EQ(CentredClip(801, 601, 320, 240).y, 180);
}

}  // namespace
}  // namespace qv
