// Helpers shared by the engine's own files; not part of its public interface.
#pragma once

#include <cstdint>

#include "puzzle/puzzle_model.h"

namespace qv::engine {

// Hook calls that tolerate missing hooks.
void NotifyArea(int area, int code);
void InvalidateRect(int area, int x, int y, int width, int height);
void ShowClock(std::uint32_t seconds);
void StopClockTimer();
void StartClockTimer();
void SetCursor(EngineCursor cursor);
void PlayJoinSound();
void PreviewChanged();
// Sets PuzzleModificado and calls the game-changed hook.
void MarkModified();

// Recomputes every area's start from the counts (start = sum of the counts before it).
void RecomputeStarts();
bool ValidArea(int area);

// The table texture as 100 x 100 blue-green-red triples, rows from the top; null when unset.
const std::uint8_t* TextureBgr();
void ForgetTexture();

// Drag surfaces (built by the cut for the display format, freed with the puzzle).
bool BuildDragSurfaces();
void FreeDragSurfaces();
void ResetDrag();

// Forgets the pending cut of ShowPuzzle.
void ClearPendingCut();
// Performs the pending cut if one waits (the board's first size).
void RunPendingCut();

// Frees every area surface.
void FreeSurfaces();

}  // namespace qv::engine
