// The size and piece-count pickers: picture scale, size percentage and piece-grid ranges.
#pragma once

#include <cstdint>

namespace qv {

// The coarsest grid has this many pieces along each side, and the finest grid's pieces are about
// this many pixels wide at the chosen scale.
constexpr std::int32_t kFewestPiecesAlongSide = 2;
constexpr std::int32_t kSmallestPieceSide = 45;

// Called after every change of scale so that the two picker windows redraw.
using PickerRedrawHook = void (*)(void* context);

// The choice being prepared on the new-game screen. The scale and the grid chosen here are what
// the cut uses and what a saved game stores.
struct PickerState {
  // The chosen picture's size in pixels; 0 x 0 while no picture is loaded.
  std::int32_t pictureWidth = 0;
  std::int32_t pictureHeight = 0;

  double scale = 0.0;
  double fitScale = 0.0;
  double minScale = 0.0;

  std::int32_t columns = 0;
  std::int32_t rows = 0;
  std::int32_t mostColumns = 0;   // a piece about 45 pixels wide
  std::int32_t mostRows = 0;
  std::int32_t fewestColumns = 0;  // a piece about 150 pixels wide
  std::int32_t fewestRows = 0;
  std::int32_t countSteps = 0;  // the piece-count slider's maximum
  double columnStep = 0.0;
  double rowStep = 0.0;
  std::int32_t pieceSize = 0;

  PickerRedrawHook onRangesChanged = nullptr;
  void* hookContext = nullptr;
};

// The pickers of the one game being prepared.
PickerState& ThePickers();

bool PickerHasPicture(const PickerState& state);

// A picture was chosen: fit and minimum scale (the same rule the board uses to show a puzzle),
// scale := fit scale, ranges recomputed. A picture
// without a positive size is taken as no picture (the getters then answer 1).
void PickerPictureChosen(PickerState& state, std::int32_t pictureWidth,
                         std::int32_t pictureHeight, std::int32_t boardWidth,
                         std::int32_t boardHeight);
// The picture was given up: the pickers answer as with no picture.
void PickerPictureClosed(PickerState& state);

// Percentage 0..100 between the minimum scale (0) and twice the fit scale (100).
std::int32_t GetSizePercentage(const PickerState& state);
void SetSizePercentage(PickerState& state, std::int32_t percentage);

// Recomputes the grid ranges for the current scale and resets the grid to the finest one.
void RecomputePickerRanges(PickerState& state);

// The piece-count slider's maximum, or 1 with no picture.
std::int32_t MenuNuevoScrollCantidadGetMax(const PickerState& state);
std::int32_t GetCountPosition(const PickerState& state);
void SetCountPosition(PickerState& state, std::int32_t value);

// Columns x rows, in 64 bits so that no grid the bounds allow can overflow it.
std::int64_t PickerPieceCount(const PickerState& state);

}  // namespace qv
