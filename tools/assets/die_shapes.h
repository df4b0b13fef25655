// The outlines of the three tab styles and their rasterised masks along one cell edge.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

namespace qv::assets {

enum class TabStyle { kKnob, kDovetail, kDoubleLobe };

// The die's scale: a cell edge is 200 pixels and a tab may reach at most 66 pixels past it.
constexpr int kCellPixels = 200;
constexpr int kMarginPixels = 66;

struct Point {
  double u = 0;  // along the edge, 0..1 of its length
  double v = 0;  // away from the edge, into the neighbouring cell
};

// How one edge's tab differs from the plain style, so that no two edges of a die are copies.
struct TabVariation {
  double shift = 0;   // along the edge, in edge lengths
  double width = 1;   // scale along the edge
  double height = 1;  // scale of the reach
};

// The tab's outline from the point where it leaves the straight edge to the point where it
// returns, flattened finely enough that the raster shows no facets.
std::vector<Point> TabOutline(TabStyle style, const TabVariation& variation);

// Which pixels of the neighbouring cell the tab covers: mask[v][u] for the pixel whose centre
// lies (u + 0.5, v + 0.5) pixels along and away from the edge.
using TabMask = std::array<std::array<bool, kCellPixels>, kMarginPixels>;
TabMask RasteriseTab(const std::vector<Point>& outline);

}  // namespace qv::assets
