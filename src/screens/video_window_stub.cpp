// Stand-in for the video screen until it lands: no clip opens.
#include "screens/video_window.h"

namespace qv {

bool RegisterVideoClass(HINSTANCE) { return true; }

HWND OpenVideoScreen(int, void (*whenClosed)()) {
  if (whenClosed) whenClosed();
  return nullptr;
}

}  // namespace qv
