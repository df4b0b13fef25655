// The engine hooks of the running game.
#include "shell/game_hooks.h"

#include "puzzle/puzzle_windows.h"
#include "shell/title_bar.h"

namespace qv {
namespace {

void ShowClock(void*, std::uint32_t total, int hours, int minutes, int seconds) {
  ShowGameTime(total, hours, minutes, seconds);
}

// The engine has already laid the picture out and stopped the clock. The questions that follow
// a finished game (wallpaper, honour roll) hang on this one hook.
void GameFinished(void*) {}

}  // namespace

void InstallGameHooks() {
  EngineHooks hooks = PuzzleWindowHooks();
  hooks.clockDisplay = ShowClock;
  hooks.gameFinished = GameFinished;
  SetEngineHooks(hooks);
}

}  // namespace qv
