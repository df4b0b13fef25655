// Die masks: label pictures that say, pixel by pixel, which piece of a repeating grid owns it.
#include "assets/die_mask.h"

#include <cmath>
#include <vector>

#include "system/random.h"

namespace qv::assets {
namespace {

int Wrap(int value, int period) { return ((value % period) + period) % period; }

struct Edge {
  bool towardsHigher = true;  // the tab reaches into the cell below (or to the right)
  TabMask mask{};
};

// One period of edges: horizontal[r][c] lies on top of cell (r, c), vertical[r][c] on its left.
struct EdgePeriod {
  int rows = 0;
  int cols = 0;
  std::vector<Edge> horizontal;
  std::vector<Edge> vertical;
  const Edge& Top(int r, int c) const {
    return horizontal[Wrap(r, rows) * cols + Wrap(c, cols)];
  }
  const Edge& Left(int r, int c) const { return vertical[Wrap(r, rows) * cols + Wrap(c, cols)]; }
};

EdgePeriod DrawEdges(TabStyle style, int rows, int cols, std::uint64_t seed,
                     std::uint32_t directions) {
  RandomSource random(seed);
  EdgePeriod period{rows, cols, {}, {}};
  int bit = 0;
  auto draw = [&](std::vector<Edge>& edges) {
    for (int i = 0; i < rows * cols; ++i, ++bit) {
      TabVariation variation;
      variation.shift = (random.Uniform() - 0.5) * 0.03;
      variation.width = 0.96 + random.Uniform() * 0.06;
      variation.height = 0.95 + random.Uniform() * 0.06;
      Edge edge;
      edge.towardsHigher = (directions >> bit) & 1;
      edge.mask = RasteriseTab(TabOutline(style, variation));
      edges.push_back(edge);
    }
  };
  draw(period.horizontal);
  draw(period.vertical);
  return period;
}

// The owner of the pixel whose centre lies at (x + 0.5, y + 0.5) in grid pixels, where the
// die's first cell starts at (0, 0). A pixel belongs to the cell it lies in unless the tab of
// one of that cell's four edges reaches over it from the neighbour.
GridCell OwnerAt(const EdgePeriod& edges, int x, int y) {
  const int c = static_cast<int>(std::floor(x / double{kCellPixels}));
  const int r = static_cast<int>(std::floor(y / double{kCellPixels}));
  const int lx = x - c * kCellPixels;
  const int ly = y - r * kCellPixels;
  const int fromBottom = kCellPixels - 1 - ly;
  const int fromRight = kCellPixels - 1 - lx;

  if (const Edge& e = edges.Top(r, c); e.towardsHigher && ly < kMarginPixels && e.mask[ly][lx])
    return {r - 1, c};
  if (const Edge& e = edges.Top(r + 1, c);
      !e.towardsHigher && fromBottom < kMarginPixels && e.mask[fromBottom][lx])
    return {r + 1, c};
  if (const Edge& e = edges.Left(r, c); e.towardsHigher && lx < kMarginPixels && e.mask[lx][ly])
    return {r, c - 1};
  if (const Edge& e = edges.Left(r, c + 1);
      !e.towardsHigher && fromRight < kMarginPixels && e.mask[fromRight][ly])
    return {r, c + 1};
  return {r, c};
}

Rgb LabelColour(int label, int own) {
  if (label == 0) return {40, 40, 40};
  // Hues spaced by the golden angle stay apart however many labels there are.
  const double hue = std::fmod(label * 137.508, 360.0) / 60.0;
  const double light = label <= own ? 0.85 : 0.55;
  const double x = 1 - std::fabs(std::fmod(hue, 2.0) - 1);
  double r = 0, g = 0, b = 0;
  switch (static_cast<int>(hue)) {
    case 0: r = 1; g = x; break;
    case 1: r = x; g = 1; break;
    case 2: g = 1; b = x; break;
    case 3: g = x; b = 1; break;
    case 4: r = x; b = 1; break;
    default: r = 1; b = x; break;
  }
  auto channel = [&](double v) { return static_cast<std::uint8_t>(std::lround(255 * light * (0.25 + 0.75 * v))); };
  return {channel(r), channel(g), channel(b)};
}

}  // namespace

std::uint8_t LabelOfCell(int rows, int cols, GridCell cell) {
  const int base = rows * cols + 1;
  const bool rowInside = cell.row >= 0 && cell.row < rows;
  const bool colInside = cell.col >= 0 && cell.col < cols;
  int label = 0;
  if (rowInside && colInside) {
    label = cell.row * cols + cell.col + 1;
  } else if (cell.row == -1 && colInside) {
    label = base + cell.col;
  } else if (cell.col == cols && rowInside) {
    label = base + cols + cell.row;
  } else if (cell.row == rows && colInside) {
    label = base + cols + rows + cell.col;
  } else if (cell.col == -1 && rowInside) {
    label = base + 2 * cols + rows + cell.row;
  }
  return static_cast<std::uint8_t>(label);
}

bool CellOfLabel(int rows, int cols, int label, GridCell& cell) {
  const int base = rows * cols + 1;
  if (label < 1) return false;
  if (label < base) {
    cell = {(label - 1) / cols, (label - 1) % cols};
  } else if (label < base + cols) {
    cell = {-1, label - base};
  } else if (label < base + cols + rows) {
    cell = {label - base - cols, cols};
  } else if (label < base + 2 * cols + rows) {
    cell = {rows, label - base - cols - rows};
  } else if (label < base + 2 * cols + 2 * rows) {
    cell = {label - base - 2 * cols - rows, -1};
  } else {
    return false;
  }
  return true;
}

Image8 MakeDieMask(TabStyle style, int rows, int cols, std::uint64_t seed,
                   std::uint32_t directions) {
  const EdgePeriod edges = DrawEdges(style, rows, cols, seed, directions);
  const int width = cols * kCellPixels + 2 * kMarginPixels;
  const int height = rows * kCellPixels + 2 * kMarginPixels;
  Image8 die(width, height);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      const bool cornerX = x < kMarginPixels || x >= width - kMarginPixels;
      const bool cornerY = y < kMarginPixels || y >= height - kMarginPixels;
      // The margin's corner squares belong to no one: the cut never claims a diagonal neighbour.
      if (cornerX && cornerY) continue;
      die.at(x, y) = LabelOfCell(rows, cols, OwnerAt(edges, x - kMarginPixels, y - kMarginPixels));
    }
  }
  const int labels = rows * cols + 2 * rows + 2 * cols + 1;
  for (int label = 0; label < labels; ++label) die.palette.push_back(LabelColour(label, rows * cols));
  return die;
}

}  // namespace qv::assets
