// The video screen's clip paths and placement.
#include "screens/video_layout.h"

namespace qv {

std::string VideoClipPath(const std::string& folder, int clip) {
  if (clip < 0 || clip >= kVideoClipCount) return {};
  // The name is a pattern whose blank, the sixth character from the end counting the
  // terminating zero, takes the clip's digit.
  std::string path = folder + "Video\\ .avi";
  path[path.size() - 5] = static_cast<char>('0' + clip);
  return path;
}

VideoRect CentredClip(int screenWidth, int screenHeight, int clipWidth, int clipHeight) {
  return VideoRect{(screenWidth - clipWidth) / 2, (screenHeight - clipHeight) / 2, clipWidth,
                   clipHeight};
}

VideoPoint VideoFrameOrigin(const VideoRect& clip) {
  const VideoRect& window = kVideoFrameWindow;
  return VideoPoint{clip.x + clip.width / 2 - (window.x + window.width / 2),
                    clip.y + clip.height / 2 - (window.y + window.height / 2)};
}

}  // namespace qv
