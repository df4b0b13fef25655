// How the engine's events reach the shell: the puzzle windows' hooks plus the clock and game end.
#pragma once

namespace qv {

// Installs the engine hooks: those the puzzle windows answer, the title bar's clock, and the
// end of a game.
void InstallGameHooks();

}  // namespace qv
