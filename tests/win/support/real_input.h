// Window tests' real input: the message loop, the desktop's one pointer, and the game's data and
// main window for the tests of the game's screens.
#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <vector>

namespace qv::test {

// Runs the message loop (with the child-character rule) for about ms milliseconds.
void Pump(int ms);

// Pumps until the condition holds (at most limitMs, 1.5 s unless told), then a little more for
// what follows it.
template <class Condition>
bool PumpUntil(Condition&& done, DWORD limitMs = 1500) {
  const DWORD start = GetTickCount();
  while (!done()) {
    if (GetTickCount() - start > limitMs) return false;
    Pump(5);
  }
  Pump(30);
  return true;
}

// Runs xdotool with these arguments under Wine, where the pointer and keys are driven through
// the X server as a real mouse drives them; false where there is no xdotool.
bool Xdotool(const char* arguments);
// Waits until the pointer is at that point of the screen; false after 6 s.
bool SettlePointer(int screenX, int screenY);
// Moves the real pointer without waiting for it to arrive.
void SendPointerTo(int screenX, int screenY);
// Moves the real pointer and lets the windows see the move.
void MoveTo(int screenX, int screenY);
inline void MoveTo(POINT p) { MoveTo(p.x, p.y); }
void MoveToClient(HWND window, int x, int y);
POINT OnScreen(HWND window, int x, int y);
bool LeftHeld();
void LeftDown();
void LeftUp();  // nothing when the button is not held
void ClickAt(int screenX, int screenY);
void Click(HWND window);  // in the middle of the window
// Presses at one point of the screen, moves there in three steps and releases.
void Drag(POINT from, POINT to);
void TypeCharacter(char c);

// A screen's children of one window class (its own and theirs), where they sit in their parent,
// the one at a place, and a text widget's caption.
std::vector<HWND> ChildrenOf(HWND screen, const char* className);
POINT PlaceOf(HWND child);
HWND ChildAt(HWND screen, const char* className, int x, int y);  // null when none is there
std::string TextOf(HWND caption);

// The game's message boxes run their own loop: a timer inside it answers each box that opens
// with the next answer (Enter or Escape, after typing the name into the box's field when it has
// one and a name is given). Runs the step, waits until every answer is used and no box is left
// open (at most 1.5 s), and returns, box by box, whether it had a field. A box that opens when
// no answer is left stays open.
struct BoxAnswer {
  bool confirm;
  const char* name = nullptr;
};
std::vector<bool> WithAnswers(std::vector<BoxAnswer> answers, const std::function<void()>& step);

// The folder holding the game's Quorvex.rf and Image\ (QV_GAME_DATA_DIR, or the environment's
// QV_PUZZLE_DATA), as Wine names it, ending in a separator.
std::string GameDataFolder();
// A full-screen main window for the game's screens to open over.
HWND CreateGameMainWindow();

}  // namespace qv::test
