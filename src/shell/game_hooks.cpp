// The engine hooks of the running game.
#include "shell/game_hooks.h"

#include <windows.h>

#include "puzzle/puzzle_windows.h"
#include "screens/bars_window.h"
#include "screens/game_end.h"
#include "shell/title_bar.h"

namespace qv {
namespace {

void ShowClock(void*, std::uint32_t total, int hours, int minutes, int seconds) {
  ShowGameTime(total, hours, minutes, seconds);
}

UINT_PTR g_gameEndTimer = 0;

void CALLBACK RunGameEndOnce(HWND, UINT, UINT_PTR, DWORD) {
  KillTimer(nullptr, g_gameEndTimer);
  g_gameEndTimer = 0;
  RunGameEnd();
}

// The engine has already laid the picture out and stopped the clock. The questions that follow
// (wallpaper, honour roll) wait for the message loop: the hook is called from inside the drop
// that completed the picture, and the questions must not run their own loops in the middle of
// it.
void GameFinished(void*) {
  if (g_gameEndTimer == 0) g_gameEndTimer = SetTimer(nullptr, 0, 0, RunGameEndOnce);
}

void (*g_puzzlePreviewChanged)(void*) = nullptr;

// A puzzle was cut or closed: a new game starts with its hints, whatever the last one used up
// (a saved game, once restored, says itself whether any remain).
void PuzzleCutOrClosed(void* context) {
  if (g_puzzlePreviewChanged) g_puzzlePreviewChanged(context);
  SetHintButtonAvailable(true);
}

}  // namespace

void InstallGameHooks() {
  EngineHooks hooks = PuzzleWindowHooks();
  hooks.clockDisplay = ShowClock;
  hooks.gameFinished = GameFinished;
  g_puzzlePreviewChanged = hooks.previewChanged;
  hooks.previewChanged = PuzzleCutOrClosed;
  SetEngineHooks(hooks);
}

}  // namespace qv
