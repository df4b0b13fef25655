// Die masks: label pictures that say, pixel by pixel, which piece of a repeating grid owns it.
#pragma once

#include <cstdint>

#include "assets/die_shapes.h"
#include "assets/image8.h"

namespace qv::assets {

// A cell of the endless grid relative to the die: rows -1..rows and columns -1..cols, where the
// outer ring stands for the neighbours whose tabs reach into the die's margin.
struct GridCell {
  int row = 0;
  int col = 0;
};

// The label the cut expects for a cell of that ring (own cells 1..rows*cols, then the margin
// labels above, right, below and left); 0 for a diagonal neighbour, which owns nothing the
// cut can claim.
std::uint8_t LabelOfCell(int rows, int cols, GridCell cell);

// The cell a label stands for; false for 0 and for labels beyond the die's last margin label.
bool CellOfLabel(int rows, int cols, int label, GridCell& cell);

// A rows x cols die of 200-pixel cells with a 66-pixel margin, drawn from one period of an
// endless grid in which every edge carries one tab of the style. The palette colours the
// labels so that a person can look at the die; the game reads only the indices. The seed picks
// the tabs' small variations. Bit r * cols + c of `directions` makes the tab on top of cell
// (r, c) reach down into it, and bit rows * cols + r * cols + c makes the tab on its left side
// reach right into it; a clear bit turns the tab the other way.
Image8 MakeDieMask(TabStyle style, int rows, int cols, std::uint64_t seed, std::uint32_t directions);

}  // namespace qv::assets
