// Builds die masks (label images) for tests and tools, drawn from a periodic tiling with tabs.
#pragma once

#include <cmath>
#include <cstdint>
#include <vector>

#include "graphics/dib_layout.h"
#include "support/rf_writer.h"

namespace qv::test {

// Three tab outlines that are easy to tell apart.
enum class TabStyle {
  Knob,      // a round knob on a narrow neck
  Dovetail,  // a trapezoid widening away from the edge
  Bump,      // a shallow half disc
};

// The die's grid: one period of an endless grid of 200-pixel cells. Every cell edge carries one
// tab that bulges to one side; which side depends only on the edge's place in the period, so
// the margins agree with the opposite edges and the die tiles.
class DieBuilder {
 public:
  static constexpr int kCell = 200;
  static constexpr int kMargin = 66;

  DieBuilder(int rows, int cols, TabStyle style = TabStyle::Knob)
      : rows_(rows), cols_(cols), style_(style) {}

  int Width() const { return cols_ * kCell + 2 * kMargin; }
  int Height() const { return rows_ * kCell + 2 * kMargin; }

  // The label of die pixel (x, y), y counted from the top; 0 in the corner squares.
  int LabelAt(int x, int y) const {
    int row = 0;
    int col = 0;
    CellAt(x - kMargin, y - kMargin, &row, &col);
    const int b = rows_ * cols_ + 1;
    const bool inRows = row >= 0 && row < rows_;
    const bool inCols = col >= 0 && col < cols_;
    if (inRows && inCols) return row * cols_ + col + 1;
    if (row == -1 && inCols) return b + col;
    if (col == cols_ && inRows) return b + cols_ + row;
    if (row == rows_ && inCols) return b + cols_ + rows_ + col;
    if (col == -1 && inRows) return b + 2 * cols_ + rows_ + row;
    return 0;
  }

  // The die as a resource-file picture: 8 bits, bottom-up rows of labels, a grey palette
  // stepped so that neighbouring labels can be told apart when the die is looked at.
  RfPicture Picture(std::uint32_t identifier) const {
    RfPicture p;
    p.identifier = identifier;
    p.width = Width();
    p.height = Height();
    p.bitCount = 8;
    for (int i = 0; i < 256; ++i) {
      const auto v = static_cast<std::uint8_t>((i * 67) % 256);
      p.colours.push_back(RgbQuad{v, static_cast<std::uint8_t>(255 - v), v, 0});
    }
    const auto stride = static_cast<int>(DibRowBytes(p.width, 8));
    p.pixels.assign(static_cast<std::size_t>(stride) * p.height, 0);
    for (int y = 0; y < p.height; ++y) {
      std::uint8_t* row = p.pixels.data() + static_cast<std::size_t>(p.height - 1 - y) * stride;
      for (int x = 0; x < p.width; ++x) row[x] = static_cast<std::uint8_t>(LabelAt(x, y));
    }
    return p;
  }

 private:
  static int FloorDiv(int a, int b) { return (a >= 0) ? a / b : -((-a + b - 1) / b); }
  int Mod(int a, int m) const { return ((a % m) + m) % m; }

  // Horizontal edge above cell (r, c): true when its tab bulges down into (r, c).
  bool TopTabDown(int r, int c) const { return (Mod(r, rows_) + Mod(c, cols_)) % 2 == 0; }
  // Vertical edge left of cell (r, c): true when its tab bulges right into (r, c).
  bool LeftTabRight(int r, int c) const { return (Mod(r, rows_) + Mod(c, cols_) + 1) % 2 == 0; }

  // Whether a point at `along` from the edge's middle and `depth` beyond the edge lies in a tab.
  bool InTab(double along, double depth) const {
    if (depth < 0) return false;
    switch (style_) {
      case TabStyle::Knob:
        return (depth <= 24 && std::fabs(along) <= 13) ||
               (along * along + (depth - 38) * (depth - 38) <= 22.0 * 22.0);
      case TabStyle::Dovetail:
        return depth <= 46 && std::fabs(along) <= 12 + depth * 0.45;
      case TabStyle::Bump:
        return along * along + depth * depth <= 40.0 * 40.0;
    }
    return false;
  }

  // The cell of the endless grid that owns grid point (u, v), tabs included.
  void CellAt(int u, int v, int* row, int* col) const {
    const int r = FloorDiv(v, kCell);
    const int c = FloorDiv(u, kCell);
    const double lx = u - c * kCell + 0.5;
    const double ly = v - r * kCell + 0.5;
    *row = r;
    *col = c;
    if (TopTabDown(r, c) && InTab(lx - kCell / 2.0, ly)) {
      *row = r - 1;
    } else if (!TopTabDown(r + 1, c) && InTab(lx - kCell / 2.0, kCell - ly)) {
      *row = r + 1;
    } else if (LeftTabRight(r, c) && InTab(ly - kCell / 2.0, lx)) {
      *col = c - 1;
    } else if (!LeftTabRight(r, c + 1) && InTab(ly - kCell / 2.0, kCell - lx)) {
      *col = c + 1;
    }
  }

  int rows_;
  int cols_;
  TabStyle style_;
};

}  // namespace qv::test
