// The end of a finished game: the wallpaper question, then the honour roll.
#pragma once

namespace qv {

// The name the finished picture gets in the Windows folder when it becomes the wallpaper.
constexpr char kWallpaperFileName[] = "Quorvex.bmp";

// Asks whether the finished picture shall become the desktop wallpaper, answers it with
// SetWallpaper, then runs the honour-roll entry whatever the answer. Returns when both
// questions are answered.
void RunGameEnd();

// The wallpaper question's answer: yes writes the puzzle's picture to the Windows folder and
// makes it the (untiled) desktop wallpaper; either answer goes on to the honour roll.
void SetWallpaper(bool answer);

}  // namespace qv
