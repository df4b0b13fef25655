// The size and piece-count pickers: the arithmetic behind the two sliders of the new-game screen.
#include "setup/pickers.h"

#include <cmath>

#include "puzzle/puzzle_model.h"
#include "system/assert.h"

namespace qv {

namespace {

constexpr double kSmallestPiece = kSmallestPieceSide;
constexpr double kLargestPiece = 150.0;
constexpr std::int32_t kFewestAlongAxis = kFewestPiecesAlongSide;

// Grid bounds only leave a sane range for pictures that can be cut at all; a degenerate picture
// could give values past int32, so truncation saturates well inside it and sums of four bounds
// still fit.
constexpr double kBoundLimit = 1 << 28;

std::int32_t TruncateBound(double value) {
  if (std::isnan(value)) return 0;
  if (value >= kBoundLimit) return static_cast<std::int32_t>(kBoundLimit);
  if (value <= -kBoundLimit) return -static_cast<std::int32_t>(kBoundLimit);
  return static_cast<std::int32_t>(value);
}

std::int32_t RaiseToTwo(std::int32_t bound) { return bound < 3 ? kFewestAlongAxis : bound; }

void NotifyRangesChanged(const PickerState& state) {
  if (state.onRangesChanged) state.onRangesChanged(state.hookContext);
}

}  // namespace

PickerState& ThePickers() {
  static PickerState state;
  return state;
}

bool PickerHasPicture(const PickerState& state) {
  return state.pictureWidth > 0 && state.pictureHeight > 0;
}

void PickerPictureChosen(PickerState& state, std::int32_t pictureWidth,
                         std::int32_t pictureHeight, std::int32_t boardWidth,
                         std::int32_t boardHeight) {
  if (pictureWidth <= 0 || pictureHeight <= 0) {
    PickerPictureClosed(state);
    return;
  }
  state.pictureWidth = pictureWidth;
  state.pictureHeight = pictureHeight;
  state.fitScale = FitScaleFor(boardWidth, boardHeight, pictureWidth, pictureHeight);
  state.minScale = MinScaleFor(pictureWidth, pictureHeight);
  state.scale = state.fitScale;
  RecomputePickerRanges(state);
}

void PickerPictureClosed(PickerState& state) {
  const PickerRedrawHook hook = state.onRangesChanged;
  void* const context = state.hookContext;
  state = PickerState{};
  state.onRangesChanged = hook;
  state.hookContext = context;
  NotifyRangesChanged(state);
}

std::int32_t GetSizePercentage(const PickerState& state) {
  if (!PickerHasPicture(state)) return 1;
  if (!QV_CHECK(state.fitScale != 0.0, "division por cero (en la proxima linea)")) return 0;
  const double span = 2.0 * state.fitScale - state.minScale;
  // Twice the fit scale equal to the minimum leaves the slider nothing to choose between.
  if (span == 0.0) return 0;
  return TruncateBound((state.scale - state.minScale) * 100.0 / span);
}

void SetSizePercentage(PickerState& state, std::int32_t percentage) {
  if (!PickerHasPicture(state)) return;
  if (!QV_CHECK(percentage >= 0 && percentage <= 100, "porcentaje invalido")) return;
  state.scale =
      (2.0 * state.fitScale - state.minScale) * percentage / 100.0 + state.minScale;
  RecomputePickerRanges(state);
}

void RecomputePickerRanges(PickerState& state) {
  if (!PickerHasPicture(state)) return;
  NotifyRangesChanged(state);
  const double scaledWidth = state.pictureWidth * state.scale;
  const double scaledHeight = state.pictureHeight * state.scale;
  state.mostColumns = RaiseToTwo(TruncateBound(scaledWidth / kSmallestPiece));
  state.mostRows = RaiseToTwo(TruncateBound(scaledHeight / kSmallestPiece));
  state.fewestColumns = RaiseToTwo(TruncateBound(scaledWidth / kLargestPiece));
  state.fewestRows = RaiseToTwo(TruncateBound(scaledHeight / kLargestPiece));
  state.countSteps =
      state.mostColumns + state.mostRows - state.fewestColumns - state.fewestRows;
  // A picture too small for more than one grid keeps the check; the slider then has the one
  // position 0 with steps of 0, so no division by zero follows.
  if (QV_CHECK(state.countSteps > 0, "el numero de pasos del deslizador debe ser mayor a cero")) {
    state.rowStep = static_cast<double>(state.mostRows - state.fewestRows) / state.countSteps;
    state.columnStep =
        static_cast<double>(state.mostColumns - state.fewestColumns) / state.countSteps;
  } else {
    state.rowStep = 0.0;
    state.columnStep = 0.0;
  }
  state.columns = state.mostColumns;
  state.rows = state.mostRows;
  state.pieceSize = static_cast<std::int32_t>(kSmallestPiece);
}

std::int32_t MenuNuevoScrollCantidadGetMax(const PickerState& state) {
  if (!PickerHasPicture(state)) return 1;
  return state.countSteps;
}

std::int32_t GetCountPosition(const PickerState& state) {
  if (!PickerHasPicture(state)) return 1;
  return state.columns + state.rows - (state.fewestColumns + state.fewestRows);
}

void SetCountPosition(PickerState& state, std::int32_t value) {
  if (!PickerHasPicture(state)) return;
  if (!QV_CHECK(value >= 0 && value <= state.countSteps,
                "el valor del parametro NewValue no puede ser mayor al valor de la funcion "
                "MenuNuevoScrollCantidadGetMax()")) {
    return;
  }
  state.columns = TruncateBound(value * state.columnStep + state.fewestColumns);
  state.rows = TruncateBound(value * state.rowStep + state.fewestRows);
}

std::int64_t PickerPieceCount(const PickerState& state) {
  return std::int64_t{state.columns} * state.rows;
}

}  // namespace qv
