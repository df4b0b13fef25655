// The die masks, checked by cutting grids with the game's claim rules and measuring the pieces.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <queue>
#include <vector>

#include "assets/catalogue.h"
#include "assets/die_mask.h"

namespace qv::assets {
namespace {

// Which piece claims each picture pixel when an NR x NC grid with cores of cw x ch pixels is
// cut with the die: the game's cut step by step (maps, first column and row, labels, border
// rules, inclusive right and bottom bounds), with every claim counted.
struct Cut {
  int nr = 0, nc = 0, cw = 0, ch = 0, mx = 0, my = 0, w = 0, h = 0, pw = 0, ph = 0;
  std::vector<int> claims;  // per picture pixel
  std::vector<int> owner;   // last claiming piece, -1 for none
  // Per piece, its pixels in cell coordinates (W x H), for shape measurements.
  std::vector<std::vector<bool>> cells;
};

int DieMap(int x, int margin, int core) {
  const int v = static_cast<int>((x - margin) * (200.0 / core) + 66.0);
  return std::clamp(v, 0, 331);
}

int FirstInside(int size, int margin, int core) {
  int first = 0;
  for (int x = 0; x < size; ++x) {
    if (DieMap(x, margin, core) >= 66 && first == 0) first = x;
  }
  return first;
}

Cut CutGrid(const Image8& die, int dr, int dc, int nr, int nc, int cw, int ch) {
  Cut cut;
  cut.nr = nr, cut.nc = nc, cut.cw = cw, cut.ch = ch;
  cut.mx = static_cast<int>(cw * 66.0 / 200.0);
  cut.my = static_cast<int>(ch * 66.0 / 200.0);
  cut.w = cw + 2 * cut.mx, cut.h = ch + 2 * cut.my;
  cut.pw = nc * cw, cut.ph = nr * ch;
  cut.claims.assign(static_cast<std::size_t>(cut.pw) * cut.ph, 0);
  cut.owner.assign(cut.claims.size(), -1);
  const int firstX = FirstInside(cut.w, cut.mx, cw), firstY = FirstInside(cut.h, cut.my, ch);
  const int b = dr * dc + 1;
  for (int i = 0; i < nr; ++i) {
    for (int j = 0; j < nc; ++j) {
      const int p = i % dr, q = j % dc;
      const int oy = i * ch - firstY, ox = j * cw - firstX;
      const int l = p * dc + q + 1;
      const int t = p > 0 ? l - dc : b + q;
      const int rt = q != dc - 1 ? l + 1 : b + dc + p;
      const int bt = p != dr - 1 ? l + dc : b + dc + dr + q;
      const int lf = q != 0 ? l - 1 : b + 2 * dc + dr + p;
      std::vector<bool> cell(static_cast<std::size_t>(cut.w) * cut.h, false);
      for (int y = 0; y < cut.h; ++y) {
        for (int x = 0; x < cut.w; ++x) {
          const int px = ox + x, py = oy + y;
          if (px < 0 || py < 0 || px >= cut.pw || py >= cut.ph) continue;
          const int d = die.at(DieMap(x, cut.mx, cw) + q * 200, DieMap(y, cut.my, ch) + p * 200);
          bool mine = false;
          if (d == l) {
            mine = !((i == 0 && y < cut.my) || (j == 0 && x < cut.mx) ||
                     (i == nr - 1 && y > cut.my + ch) || (j == nc - 1 && x > cut.mx + cw));
          } else if (d == t) {
            mine = i == 0 && y >= cut.my;
          } else if (d == rt) {
            mine = j == nc - 1 && x <= cut.mx + cw;
          } else if (d == bt) {
            mine = i == nr - 1 && y <= cut.my + ch;
          } else if (d == lf) {
            mine = j == 0 && x >= cut.mx;
          }
          if (!mine) continue;
          const std::size_t at = static_cast<std::size_t>(py) * cut.pw + px;
          ++cut.claims[at];
          cut.owner[at] = i * nc + j;
          cell[static_cast<std::size_t>(y) * cut.w + x] = true;
        }
      }
      cut.cells.push_back(std::move(cell));
    }
  }
  return cut;
}

int PiecesWithSeveralParts(const Cut& cut) {
  std::vector<int> parts(static_cast<std::size_t>(cut.nr) * cut.nc, 0);
  std::vector<bool> seen(cut.owner.size(), false);
  for (std::size_t start = 0; start < cut.owner.size(); ++start) {
    if (seen[start] || cut.owner[start] < 0) continue;
    const int piece = cut.owner[start];
    ++parts[piece];
    std::queue<std::size_t> open;
    open.push(start);
    seen[start] = true;
    while (!open.empty()) {
      const std::size_t at = open.front();
      open.pop();
      const int x = static_cast<int>(at % cut.pw), y = static_cast<int>(at / cut.pw);
      const int nx[4] = {x - 1, x + 1, x, x}, ny[4] = {y, y, y - 1, y + 1};
      for (int k = 0; k < 4; ++k) {
        if (nx[k] < 0 || ny[k] < 0 || nx[k] >= cut.pw || ny[k] >= cut.ph) continue;
        const std::size_t next = static_cast<std::size_t>(ny[k]) * cut.pw + nx[k];
        if (!seen[next] && cut.owner[next] == piece) {
          seen[next] = true;
          open.push(next);
        }
      }
    }
  }
  return static_cast<int>(std::count_if(parts.begin(), parts.end(), [](int n) { return n != 1; }));
}

class EachDie : public ::testing::TestWithParam<DieChoice> {
 protected:
  Image8 Die() const { return MakeDieMask(GetParam().style, kDieRows, kDieCols, GetParam().seed, GetParam().directions); }
};

TEST_P(EachDie, HasTheSizeAndLabelsTheCutExpects) {
  const Image8 die = Die();
  EXPECT_EQ(die.width, kDieCols * 200 + 132);
  EXPECT_EQ(die.height, kDieRows * 200 + 132);
  const int labels = kDieRows * kDieCols + 2 * kDieRows + 2 * kDieCols + 1;
  EXPECT_LE(die.palette.size(), 256u);
  for (std::uint8_t label : die.pixels) ASSERT_LT(label, labels);
  // The margin's corner squares belong to no piece.
  for (int y : {0, 65, die.height - 66, die.height - 1}) {
    for (int x : {0, 65, die.width - 66, die.width - 1}) EXPECT_EQ(die.at(x, y), 0) << x << "," << y;
  }
}

TEST_P(EachDie, EveryPixelOfACutGridIsClaimedByExactlyOnePieceInOneConnectedPart) {
  const Image8 die = Die();
  const int grids[][2] = {{4, 4}, {5, 3}, {3, 5}, {7, 6}, {1, 1}, {2, 7}};
  // Full size, halved, and a small uneven core whose maps skip die pixels.
  const int cores[][2] = {{200, 200}, {100, 100}, {40, 25}};
  for (const auto& grid : grids) {
    for (const auto& core : cores) {
      SCOPED_TRACE(std::to_string(grid[0]) + " x " + std::to_string(grid[1]) + " pieces of " +
                   std::to_string(core[0]) + " x " + std::to_string(core[1]));
      const Cut cut = CutGrid(die, kDieRows, kDieCols, grid[0], grid[1], core[0], core[1]);
      const auto unclaimed = std::count(cut.claims.begin(), cut.claims.end(), 0);
      const auto twice = std::count_if(cut.claims.begin(), cut.claims.end(), [](int n) { return n > 1; });
      EXPECT_EQ(unclaimed, 0);
      EXPECT_EQ(twice, 0);
      EXPECT_EQ(PiecesWithSeveralParts(cut), 0);
    }
  }
}

// Squared distance from every pixel to the nearest pixel of `target` (exact, two passes).
std::vector<double> SquaredDistanceTo(const std::vector<bool>& target, int w, int h) {
  const double far = 1e12;
  std::vector<double> d(target.size());
  for (std::size_t i = 0; i < target.size(); ++i) d[i] = target[i] ? 0 : far;
  auto pass = [&](int length, auto index) {
    std::vector<double> f(length), out(length);
    std::vector<int> v(length);
    std::vector<double> z(length + 1);
    for (int i = 0; i < length; ++i) f[i] = d[index(i)];
    int k = 0;
    v[0] = 0;
    z[0] = -far;
    z[1] = far;
    for (int q = 1; q < length; ++q) {
      double s;
      while (true) {
        s = ((f[q] + q * q) - (f[v[k]] + v[k] * v[k])) / (2.0 * q - 2.0 * v[k]);
        if (s > z[k] || k == 0) break;
        --k;
      }
      if (s <= z[k]) {
        v[k] = q;
        z[k + 1] = far;
        continue;
      }
      ++k;
      v[k] = q;
      z[k] = s;
      z[k + 1] = far;
    }
    k = 0;
    for (int q = 0; q < length; ++q) {
      while (z[k + 1] < q) ++k;
      out[q] = (q - v[k]) * (q - v[k]) + f[v[k]];
    }
    for (int i = 0; i < length; ++i) d[index(i)] = out[i];
  };
  for (int y = 0; y < h; ++y) pass(w, [&](int x) { return static_cast<std::size_t>(y) * w + x; });
  for (int x = 0; x < w; ++x) pass(h, [&](int y) { return static_cast<std::size_t>(y) * w + x; });
  return d;
}

TEST_P(EachDie, NoPartOfAWholePieceIsNarrowerThanATenthOfTheCell) {
  // The inner pieces of a 4 x 4 cut have all four tabs or sockets; between them they use every
  // cell of the die. Opening a piece with a disc 19 pixels across removes whatever is thinner
  // than that; only the four square corners of the piece may lose pixels. The disc is allowed
  // a pixel and a half more on the way back, because a rounded tip drawn in pixels is never
  // quite the circle it was drawn from.
  const Cut cut = CutGrid(Die(), kDieRows, kDieCols, 4, 4, 200, 200);
  const double r = 9.5;
  for (int piece : {5, 6, 9, 10}) {
    SCOPED_TRACE("piece " + std::to_string(piece));
    const std::vector<bool>& shape = cut.cells[piece];
    std::vector<bool> outside(shape.size());
    for (std::size_t i = 0; i < shape.size(); ++i) outside[i] = !shape[i];
    const std::vector<double> toOutside = SquaredDistanceTo(outside, cut.w, cut.h);
    std::vector<bool> eroded(shape.size());
    for (std::size_t i = 0; i < shape.size(); ++i) eroded[i] = toOutside[i] > r * r;
    const std::vector<double> toEroded = SquaredDistanceTo(eroded, cut.w, cut.h);
    int lost = 0;
    std::string where;
    for (int y = 0; y < cut.h; ++y) {
      for (int x = 0; x < cut.w; ++x) {
        const std::size_t i = static_cast<std::size_t>(y) * cut.w + x;
        if (!shape[i] || toEroded[i] <= (r + 1.5) * (r + 1.5)) continue;
        const double cx = x < cut.w / 2 ? cut.mx : cut.mx + cut.cw;
        const double cy = y < cut.h / 2 ? cut.my : cut.my + cut.ch;
        if (std::hypot(x + 0.5 - cx, y + 0.5 - cy) > 2 * r && ++lost <= 8) {
          where += " (" + std::to_string(x) + "," + std::to_string(y) + ")";
        }
      }
    }
    EXPECT_EQ(lost, 0) << "thin at" << where;
  }
}

// The piece's pixels beyond one side of its core, seen from that side: widths[depth] counts
// the pixels at that distance past the edge, and along holds their positions along the edge.
struct Tab {
  std::vector<int> widths;
  int nearest = 1 << 30, farthest = -1;
};

Tab TabBeyond(const Cut& cut, int piece, int side) {
  Tab tab;
  tab.widths.assign(67, 0);
  const std::vector<bool>& shape = cut.cells[piece];
  for (int y = 0; y < cut.h; ++y) {
    for (int x = 0; x < cut.w; ++x) {
      if (!shape[static_cast<std::size_t>(y) * cut.w + x]) continue;
      int depth = -1, along = 0;
      if (side == 0 && y < cut.my) depth = cut.my - 1 - y, along = x - cut.mx;
      if (side == 1 && x >= cut.mx + cut.cw) depth = x - cut.mx - cut.cw, along = y - cut.my;
      if (side == 2 && y >= cut.my + cut.ch) depth = y - cut.my - cut.ch, along = x - cut.mx;
      if (side == 3 && x < cut.mx) depth = cut.mx - 1 - x, along = y - cut.my;
      if (depth < 0) continue;
      ++tab.widths[std::min(depth, 66)];
      tab.nearest = std::min(tab.nearest, along);
      tab.farthest = std::max(tab.farthest, along);
    }
  }
  return tab;
}

TEST_P(EachDie, TabsHaveANeckStayInTheMiddleOfTheirEdgeAndInsideTheMargin) {
  const Cut cut = CutGrid(Die(), kDieRows, kDieCols, 4, 4, 200, 200);
  int tabs = 0;
  for (int piece : {5, 6, 9, 10}) {
    for (int side = 0; side < 4; ++side) {
      SCOPED_TRACE("piece " + std::to_string(piece) + " side " + std::to_string(side));
      const Tab tab = TabBeyond(cut, piece, side);
      if (tab.farthest < 0) continue;  // a socket on this side
      ++tabs;
      int reach = 0;
      while (reach < 66 && tab.widths[reach] > 0) ++reach;
      ASSERT_GE(reach, 40) << "a tab that hardly sticks out does not hold";
      EXPECT_LE(reach, 62) << "a tab must stay clear of the end of the 66-pixel margin";
      EXPECT_EQ(tab.widths[66], 0);
      EXPECT_GE(tab.nearest, 50);
      EXPECT_LE(tab.farthest, 150);
      const auto head = std::max_element(tab.widths.begin() + 5, tab.widths.begin() + reach);
      const int neck = *std::min_element(tab.widths.begin() + 1, head);
      EXPECT_GE(neck, 20);
      EXPECT_GE(*head, neck * 13 / 10) << "the head must be wider than the neck";
    }
  }
  // Each inner edge carries exactly one tab, so the four inner pieces show eight of their
  // sixteen sides as tabs.
  EXPECT_EQ(tabs, 8);
}

INSTANTIATE_TEST_SUITE_P(ShippedDies, EachDie, ::testing::ValuesIn(DieChoices()),
                         [](const auto& param) { return "Die" + std::to_string(param.param.identifier); });

TEST(TabStyles, TheThreeHeadsDifferClearly) {
  // The styles share their notch; beyond it, a good part of the heads' area must differ.
  const TabStyle styles[] = {TabStyle::kKnob, TabStyle::kDovetail, TabStyle::kDoubleLobe};
  std::vector<TabMask> masks;
  for (TabStyle s : styles) masks.push_back(RasteriseTab(TabOutline(s, {})));
  for (std::size_t a = 0; a < masks.size(); ++a) {
    for (std::size_t b = a + 1; b < masks.size(); ++b) {
      int both = 0, either = 0;
      for (int v = kMarginPixels / 2; v < kMarginPixels; ++v) {
        for (int u = 0; u < kCellPixels; ++u) {
          both += masks[a][v][u] && masks[b][v][u];
          either += masks[a][v][u] || masks[b][v][u];
        }
      }
      EXPECT_LT(both, either * 9 / 10) << "styles " << a << " and " << b;
    }
  }
}

TEST(DieLabels, EveryRingCellMapsToItsLabelAndBack) {
  for (int rows = 1; rows <= 3; ++rows) {
    for (int cols = 1; cols <= 3; ++cols) {
      for (int r = -1; r <= rows; ++r) {
        for (int c = -1; c <= cols; ++c) {
          const bool diagonal = (r < 0 || r == rows) && (c < 0 || c == cols);
          const int label = LabelOfCell(rows, cols, {r, c});
          GridCell back{};
          EXPECT_EQ(CellOfLabel(rows, cols, label, back), !diagonal);
          if (!diagonal) {
            EXPECT_TRUE(back.row == r && back.col == c) << r << "," << c;
          }
        }
      }
      // The highest label is the left margin's last row.
      EXPECT_EQ(LabelOfCell(rows, cols, {rows - 1, -1}), rows * cols + 2 * cols + 2 * rows);
    }
  }
}

}  // namespace
}  // namespace qv::assets
