// Placement rules of the shell: pure arithmetic on the screen size.
#include "shell/shell_layout.h"

#include <algorithm>
#include <cstdio>

namespace qv {

int DisplayRefusalBase(int bitsPerPixel, int screenWidth, int screenHeight) {
  if (bitsPerPixel < 16) return 160;
  if (screenWidth < 800 || screenHeight < 600) return 200;
  return 0;
}

std::string FolderOfModulePath(const char* path, std::size_t length) {
  if (!path) return std::string();
  std::string name(path, length);
  const std::size_t slash = name.find_last_of('\\');
  if (slash == std::string::npos || slash < 1 || slash >= 260) return name;
  return name.substr(0, slash + 1);
}

TitleLayout TitleLayoutFor(int screenWidth, int newGameRight) {
  TitleLayout t;
  const int third = (screenWidth - 703) / 3;
  t.newGame = {-2, 10};
  t.about = {third + 316, -1};
  t.clock = {2 * third + 506, kClockTop};
  t.minimise = {screenWidth - 75, 0};
  t.close = {screenWidth - 36, 0};
  const int gap = std::max(0, (t.about.x - newGameRight - 2 * kTitleButtonSide) / 3);
  const int top = (kTitleBarHeight - kTitleButtonSide) / 2;
  t.language = {newGameRight + gap, top};
  t.texture = {newGameRight + 2 * gap + kTitleButtonSide, top};
  return t;
}

std::string ClockText(long long hours, int minutes, int seconds) {
  char text[32];
  std::snprintf(text, sizeof text, "%02lld:%02d:%02d", hours, minutes, seconds);
  return text;
}

ShellPoint BoxButtonPosition(int box, int screenWidth, int screenHeight) {
  return {screenWidth - 25, screenHeight / 2 - 112 + 46 * box};
}

ShellPoint InfoButtonPosition(int screenWidth, int imageWidth) {
  return {screenWidth - imageWidth, 80};
}

BoardSize BoardSizeFor(int screenWidth, int screenHeight) {
  return {screenWidth - 49 - 25, screenHeight - kTitleBarHeight - 25};
}

}  // namespace qv
