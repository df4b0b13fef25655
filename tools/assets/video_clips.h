// The game's three video clips, drawn frame by frame: the title forming from flying pieces (2),
// how to play (1) and the presentation shown in the video frame (0).
#pragma once

#include <string>

#include "assets/avi_file.h"
#include "assets/image8.h"

namespace qv::assets {

inline constexpr int kVideoClipCount = 3;

struct ClipFormat {
  int width = 0;
  int height = 0;
  int framesPerSecond = 0;
  int frameCount = 0;
};

// Sizes and lengths are chosen so that the three raw 8-bit files stay under 20 MB together and
// clip 0 fits inside the screen of the video frame picture (162).
ClipFormat VideoClipFormat(int clip);

// Frame `frame` of clip `clip` before the reduction to the clip's palette.
RgbImage DrawVideoFrame(int clip, int frame);

// Every frame drawn and reduced to one palette for the clip.
bool MakeVideoClip(int clip, AviClip& out, std::string& error);

}  // namespace qv::assets
