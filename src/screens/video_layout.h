// Where the video screen finds its clips and where it puts them: the clip in the middle of the
// screen and, around the presentation, the decorated frame with its three buttons.
#pragma once

#include <string>

namespace qv {

constexpr int kPresentationClip = 0;  // in the frame, with buttons; stays until closed
constexpr int kHowToPlayClip = 1;
constexpr int kIntroductionClip = 2;
constexpr int kVideoClipCount = 3;

struct VideoPoint {
  int x = 0;
  int y = 0;
};

struct VideoRect {
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;
};

// The frame picture and the window in it where the presentation plays, in the frame's own
// coordinates. The asset tool draws the frame from these numbers, so the two cannot drift apart.
constexpr int kVideoFrameWidth = 480;
constexpr int kVideoFrameHeight = 470;
constexpr VideoRect kVideoFrameWindow{60, 70, 360, 270};

// The frame's buttons (close, replay, web site), relative to the frame origin.
constexpr VideoPoint kVideoCloseAt{0, 416};
constexpr VideoPoint kVideoReplayAt{296, 378};
constexpr VideoPoint kVideoWebSiteAt{196, 423};

// The maker's web site, offered by the presentation's web-site button.
constexpr char kMakerWebSite[] = "https://www.marrowind.example/";

// folder + "Video\N.avi" for clip N; "" for a clip that does not exist.
std::string VideoClipPath(const std::string& folder, int clip);

// The clip at its own size in the middle of the screen.
VideoRect CentredClip(int screenWidth, int screenHeight, int clipWidth, int clipHeight);

// The frame origin that puts the clip in the middle of the frame's window: the screen places the
// clip, and the frame follows it.
VideoPoint VideoFrameOrigin(const VideoRect& clip);

// Clips other than the presentation are bare and end at their end, at a key or at a click.
constexpr bool ClipIsFramed(int clip) { return clip == kPresentationClip; }

}  // namespace qv
