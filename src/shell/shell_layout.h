// Where the shell puts things: start-up refusals, the program folder, title bar and edge buttons.
#pragma once

#include <cstddef>
#include <string>

namespace qv {

struct ShellPoint {
  int x = 0;
  int y = 0;
};

// The string base of the refusal for this display, or 0 when the game can run. Colour is tested
// first, so an 8-bit small screen hears about its colours.
int DisplayRefusalBase(int bitsPerPixel, int screenWidth, int screenHeight);

// The folder of a module's file name, with its trailing backslash. A name without a usable
// backslash is kept whole, as the module's own name is the best folder anyone can give then.
std::string FolderOfModulePath(const char* path, std::size_t length);

// The title bar across the top of the screen.
constexpr int kTitleBarHeight = 78;
constexpr int kTitleTileWidth = 76;
constexpr int kClockWidth = 140;
constexpr int kClockTop = 12;
constexpr int kTitleButtonSide = 60;  // the about, language and texture buttons

struct TitleLayout {
  ShellPoint newGame;
  ShellPoint language;
  ShellPoint texture;
  ShellPoint about;
  ShellPoint clock;
  ShellPoint minimise;
  ShellPoint close;
};

// newGameRight: where the new-game button's picture ends. The language and texture buttons
// share the room between it and the about button in three equal gaps, so that the bar keeps its
// balance from 800 to 1920 pixels.
TitleLayout TitleLayoutFor(int screenWidth, int newGameRight);

// HH:MM:SS, two digits each; hours past 99 take more digits.
std::string ClockText(long long hours, int minutes, int seconds);

// The six box buttons half off the right edge, and the information button above them.
ShellPoint BoxButtonPosition(int box, int screenWidth, int screenHeight);
ShellPoint InfoButtonPosition(int screenWidth, int imageWidth);

// The board below the title bar, between the tool strip on the left and the box buttons on the
// right, above the option strip at the bottom.
struct BoardSize {
  int width = 0;
  int height = 0;
};
BoardSize BoardSizeFor(int screenWidth, int screenHeight);

}  // namespace qv
