// Tests of the cut: which picture pixels each piece claims, the size floor, the die checks, the deal.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <set>
#include <utility>
#include <vector>

#include "engine_fixture.h"
#include "support/assert_recorder.h"

namespace qv::test {
namespace {

// The picture point an atlas pixel shows: the unique-colour picture at scale 1 encodes it.
struct Point {
  int x, y;
};
Point Source(const std::uint8_t* pixel) {
  return Point{pixel[0] | ((pixel[2] & 0x0F) << 8), pixel[1] | ((pixel[2] >> 4) << 8)};
}

struct CutCase {
  const char* name;
  int width, height, rows, columns;
  std::uint32_t die;
  int dieRows, dieCols;
};

void PrintTo(const CutCase& c, std::ostream* os) { *os << c.name; }

class ClaimTest : public EngineTest, public ::testing::WithParamInterface<CutCase> {};

// Counts, for every picture pixel, how many pieces claim it.
std::vector<int> ClaimCounts(int width, int height) {
  const EstadoPuzzle& p = Puzzle();
  std::vector<int> claims(static_cast<std::size_t>(width) * height, 0);
  for (int k = 0; k < p.NR * p.NC; ++k) {
    for (int cy = 0; cy < p.H; ++cy) {
      for (int cx = 0; cx < p.W; ++cx) {
        const std::uint8_t* px = AtlasPixel(static_cast<std::uint32_t>(k), cx, cy);
        if (px[3] == 0) continue;
        EXPECT_EQ(px[3], 1);
        const Point s = Source(px);
        // The cell sits on the grid with its core at (column cw, row ch).
        EXPECT_EQ(s.x, (k % p.NC) * p.cw + cx - p.mx);
        EXPECT_EQ(s.y, (k / p.NC) * p.ch + cy - p.my);
        if (s.x >= 0 && s.y >= 0 && s.x < width && s.y < height) {
          ++claims[static_cast<std::size_t>(s.y) * width + s.x];
        }
      }
    }
  }
  return claims;
}

TEST_P(ClaimTest, EveryPicturePixelOfTheGridBelongsToExactlyOnePiece) {
  const CutCase c = GetParam();
  ASSERT_TRUE(StartGame(c.width, c.height, c.rows, c.columns, c.die, c.dieRows, c.dieCols));
  const EstadoPuzzle& p = Puzzle();
  const std::vector<int> claims = ClaimCounts(c.width, c.height);
  int holes = 0, doubles = 0, outside = 0;
  for (int y = 0; y < c.height; ++y) {
    for (int x = 0; x < c.width; ++x) {
      const int n = claims[static_cast<std::size_t>(y) * c.width + x];
      const bool inGrid = x < p.NC * p.cw && y < p.NR * p.ch;
      // The right and bottom claims are inclusive: one more column and row may be claimed.
      const bool inReach = x <= p.NC * p.cw && y <= p.NR * p.ch;
      if (inGrid && n == 0) ++holes;
      if (n > 1) ++doubles;
      if (!inReach && n > 0) ++outside;
    }
  }
  EXPECT_EQ(holes, 0);
  EXPECT_EQ(doubles, 0);
  EXPECT_EQ(outside, 0);
}

TEST_P(ClaimTest, PiecesOnTheBorderHaveStraightOuterEdges) {
  const CutCase c = GetParam();
  ASSERT_TRUE(StartGame(c.width, c.height, c.rows, c.columns, c.die, c.dieRows, c.dieCols));
  const EstadoPuzzle& p = Puzzle();
  for (int k = 0; k < p.NR * p.NC; ++k) {
    const int i = k / p.NC, j = k % p.NC;
    int outside = 0;
    for (int cy = 0; cy < p.H; ++cy) {
      for (int cx = 0; cx < p.W; ++cx) {
        if (AtlasMembership(static_cast<std::uint32_t>(k), cx, cy) == 0) continue;
        const bool out = (i == 0 && cy < p.my) || (j == 0 && cx < p.mx) ||
                         (i == p.NR - 1 && cy > p.my + p.ch) || (j == p.NC - 1 && cx > p.mx + p.cw);
        if (out) ++outside;
      }
    }
    EXPECT_EQ(outside, 0) << "piece " << k << " sticks out of the picture's border";
    // No socket on an outer edge: the core's border line is the piece's own all along.
    int sockets = 0;
    for (int t = 0; t < p.cw; ++t) {
      if (i == 0 && AtlasMembership(k, p.mx + t, p.my) != 1) ++sockets;
      if (i == p.NR - 1 && AtlasMembership(k, p.mx + t, p.my + p.ch - 1) != 1) ++sockets;
    }
    for (int t = 0; t < p.ch; ++t) {
      if (j == 0 && AtlasMembership(k, p.mx, p.my + t) != 1) ++sockets;
      if (j == p.NC - 1 && AtlasMembership(k, p.mx + p.cw - 1, p.my + t) != 1) ++sockets;
    }
    EXPECT_EQ(sockets, 0) << "piece " << k << " has a socket on the border";
  }
}

INSTANTIATE_TEST_SUITE_P(
    Grids, ClaimTest,
    ::testing::Values(CutCase{"Knob4x4", 400, 400, 4, 4, kKnob2x2, 2, 2},
                      CutCase{"Dovetail4x4", 400, 400, 4, 4, kDovetail2x2, 2, 2},
                      CutCase{"Bump4x4", 400, 400, 4, 4, kBump2x2, 2, 2},
                      // The die does not divide these grids; the sizes leave spare pixels.
                      CutCase{"Knob5x3", 333, 251, 5, 3, kKnob2x2, 2, 2},
                      CutCase{"Dovetail5x3", 333, 251, 5, 3, kDovetail2x2, 2, 2},
                      CutCase{"Bump7x6", 431, 500, 7, 6, kBump2x2, 2, 2},
                      CutCase{"Knob7x6With3x2Die", 431, 500, 7, 6, kKnob3x2, 3, 2},
                      CutCase{"OneByOneDie", 300, 260, 4, 5, kKnob1x1, 1, 1},
                      // A core of 44 pixels, where the die position lands exactly on integers.
                      CutCase{"Core44", 176, 176, 4, 4, kKnob2x2, 2, 2},
                      // Fine enough grids for the cut to work from per-die-cell tables.
                      CutCase{"Knob12x12", 600, 600, 12, 12, kKnob2x2, 2, 2},
                      CutCase{"OneByOneDie6x7", 350, 300, 6, 7, kKnob1x1, 1, 1}),
    [](const ::testing::TestParamInfo<CutCase>& param) { return std::string(param.param.name); });

std::vector<std::uint8_t> Mask(std::uint32_t piece) {
  const EstadoPuzzle& p = Puzzle();
  std::vector<std::uint8_t> mask;
  for (int cy = 0; cy < p.H; ++cy) {
    for (int cx = 0; cx < p.W; ++cx) mask.push_back(AtlasMembership(piece, cx, cy));
  }
  return mask;
}

TEST_F(EngineTest, OneByOneDieCutsEveryInnerPieceWithTheSameShape) {
  ASSERT_TRUE(StartGame(500, 500, 5, 5, kKnob1x1, 1, 1));
  const auto reference = Mask(6);
  for (std::uint32_t k : {7u, 8u, 11u, 12u, 13u, 16u, 17u, 18u}) EXPECT_EQ(Mask(k), reference) << k;
}

TEST_F(EngineTest, TwoByTwoDieRepeatsEveryTwoPiecesEachWay) {
  ASSERT_TRUE(StartGame(600, 600, 6, 6, kKnob2x2, 2, 2));
  // Inner pieces two rows or two columns apart use the same die cell.
  EXPECT_EQ(Mask(7), Mask(9));
  EXPECT_EQ(Mask(7), Mask(19));
  EXPECT_EQ(Mask(14), Mask(28));
  EXPECT_NE(Mask(7), Mask(8));
}

TEST_F(EngineTest, EightBitPicturesTakeTheirColoursFromTheColourTable) {
  ASSERT_TRUE(StartGame(200, 200, 2, 2));
  CerrarPuzzle(false);
  ASSERT_TRUE(SetPuzzlePicture(MakePicture8(200, 200), "p.bmp"));
  ASSERT_TRUE(CrearPuzzle(2, 2, kKnob2x2, true));
  const EstadoPuzzle& p = Puzzle();
  // Piece 3's core pixel (mx + 5, my + 9) is picture pixel (cw + 5, ch + 9).
  const std::uint8_t* px = AtlasPixel(3, p.mx + 5, p.my + 9);
  const int index = ((p.cw + 5) * 3 + (p.ch + 9) * 7) % 256;
  EXPECT_EQ(px[0], index);
  EXPECT_EQ(px[1], index / 2);
  EXPECT_EQ(px[2], 255 - index);
  EXPECT_EQ(px[3], 1);
}

TEST_F(EngineTest, ScaleMapsPicturePixelsBackToSourcePixels) {
  ASSERT_TRUE(StartGame(100, 80, 2, 2));
  for (const double scale : {2.5, 0.7, 1.37}) {
    CerrarPuzzle(false);
    ASSERT_TRUE(SetPuzzlePicture(MakeUniquePicture24(100, 80), "p.bmp"));
    Puzzle().scale = scale;
    Puzzle().NR = 3;
    Puzzle().NC = 4;
    ASSERT_TRUE(CrearPuzzle(2, 2, kKnob2x2, false));
    const EstadoPuzzle& p = Puzzle();
    // Every piece pixel shows the source pixel its scaled position truncates to.
    int wrong = 0, seen = 0;
    for (std::uint32_t k = 0; k < 12; ++k) {
      for (int cy = 0; cy < p.H; ++cy) {
        for (int cx = 0; cx < p.W; ++cx) {
          const std::uint8_t* px = AtlasPixel(k, cx, cy);
          if (px[3] == 0) continue;
          ++seen;
          const int sx = (static_cast<int>(k) % 4) * p.cw + cx - p.mx;
          const int sy = (static_cast<int>(k) / 4) * p.ch + cy - p.my;
          const Point s = Source(px);
          if (s.x != std::min(static_cast<int>(sx / scale), 99) ||
              s.y != std::min(static_cast<int>(sy / scale), 79)) {
            ++wrong;
          }
        }
      }
    }
    EXPECT_GT(seen, static_cast<int>(100 * scale * 80 * scale * 0.9)) << scale;
    EXPECT_EQ(wrong, 0) << scale;
  }
  EXPECT_EQ(Puzzle().cw, static_cast<int>(100 * 1.37) / 4);
}

TEST_F(EngineTest, WithoutMarginTheCutStartsOneColumnLate) {
  // A 3-pixel core has no margin; the first qualifying column is then remembered as 1.
  ASSERT_TRUE(StartGame(45, 45, 15, 15, kKnob2x2, 2, 2));
  const EstadoPuzzle& p = Puzzle();
  ASSERT_EQ(p.cw, 3);
  ASSERT_EQ(p.mx, 0);
  EXPECT_EQ(AtlasMembership(0, 0, 1), 0);  // picture column -1
  ASSERT_EQ(AtlasMembership(0, 1, 1), 1);
  EXPECT_EQ(Source(AtlasPixel(0, 1, 1)).x, 0);
  EXPECT_EQ(Source(AtlasPixel(0, 1, 1)).y, 0);
}

// Apart from the drag frame (two cells each way, which a coarse grid makes large), a cut needs
// little beyond its atlas; the picture's size is the allowance for its working tables.
TEST_F(EngineTest, CutNeedsLittleMoreMemoryThanTheAtlasAndThePicture) {
  ASSERT_TRUE(StartGame(200, 200, 2, 2));
  struct Grid {
    int width, height, rows, columns;
  };
  for (const Grid g : {Grid{600, 500, 2, 2}, Grid{900, 300, 1, 9}, Grid{600, 600, 12, 12},
                       Grid{700, 500, 15, 20}}) {
    CerrarPuzzle(false);
    PackedDib picture = MakeUniquePicture24(g.width, g.height);
    const std::size_t pictureBytes = picture.blockBytes();
    ASSERT_TRUE(SetPuzzlePicture(std::move(picture), "p.bmp"));
    Puzzle().NR = g.rows;
    Puzzle().NC = g.columns;
    const std::size_t before = EngineMemory().current;
    ResetEngineMemoryPeak();
    ASSERT_TRUE(CrearPuzzle(2, 2, kKnob2x2, true));
    const DragFrameView frame = DragFrame();
    const double peak = static_cast<double>(EngineMemory().peak - before) -
                        static_cast<double>(frame.stride) * frame.height;
    EXPECT_LE(peak, 1.1 * static_cast<double>(Puzzle().atlas.bytes() + pictureBytes))
        << g.columns << "x" << g.rows;
  }
}

// ---- Refusals -------------------------------------------------------------------------------

TEST_F(EngineTest, PictureOf45PixelsIsCutAnd44IsRefused) {
  ASSERT_TRUE(StartGame(45, 120, 2, 2));
  CerrarPuzzle(false);
  AssertRecorder rec;
  ASSERT_TRUE(SetPuzzlePicture(MakeUniquePicture24(120, 44), "p.bmp"));
  EXPECT_FALSE(CrearPuzzle(2, 2, kKnob2x2, true));
  EXPECT_FALSE(PuzzleAbierto());
  // The floor applies to the scaled size: 90 pixels at half scale is 45, at 0.49 it is 44.
  ASSERT_TRUE(SetPuzzlePicture(MakeUniquePicture24(90, 200), "p.bmp"));
  Puzzle().scale = 0.49;
  EXPECT_FALSE(CrearPuzzle(2, 2, kKnob2x2, true));
  Puzzle().scale = 0.5;
  EXPECT_TRUE(CrearPuzzle(2, 2, kKnob2x2, true));
  EXPECT_TRUE(rec.empty());
}

TEST_F(EngineTest, DieOfTheWrongSizeOrDepthStopsTheCut) {
  ASSERT_TRUE(StartGame(200, 200, 2, 2));
  CerrarPuzzle(false);
  for (std::uint32_t die : {kOffByOne, kPictureNotDie}) {
    ASSERT_TRUE(SetPuzzlePicture(MakeUniquePicture24(200, 200), "p.bmp"));
    AssertRecorder rec;
    EXPECT_FALSE(CrearPuzzle(2, 2, die, true));
    EXPECT_EQ(rec.only(), "este troquel tiene dimensiones invalidas");
    EXPECT_FALSE(PuzzleAbierto());
  }
  // The die's declared grid must match its size too.
  AssertRecorder rec;
  EXPECT_FALSE(CrearPuzzle(2, 3, kKnob2x2, true));
  EXPECT_EQ(rec.only(), "este troquel tiene dimensiones invalidas");
}

TEST_F(EngineTest, CutNeedsAClosedPuzzleAPositiveDieAndAPicture) {
  ASSERT_TRUE(StartGame(200, 200, 2, 2));
  {
    AssertRecorder rec;
    EXPECT_FALSE(CrearPuzzle(2, 2, kKnob2x2, true));
    EXPECT_EQ(rec.only(), "se debe cerrar primero el puzzle anterior");
    EXPECT_TRUE(PuzzleAbierto());
  }
  CerrarPuzzle(false);
  {
    AssertRecorder rec;
    EXPECT_FALSE(CrearPuzzle(0, 2, kKnob2x2, true));
    EXPECT_EQ(rec.only(), "valor muy bajo");
    rec.clear();
    EXPECT_FALSE(CrearPuzzle(2, 2, kKnob2x2, true));  // CerrarPuzzle freed the picture
    EXPECT_TRUE(rec.empty());
    EXPECT_FALSE(PuzzleAbierto());
  }
}

TEST_F(EngineTest, AbsurdScalesAndGridsAreRefusedWithoutHarm) {
  ASSERT_TRUE(StartGame(200, 200, 2, 2));
  CerrarPuzzle(false);
  AssertRecorder rec;
  struct Setting {
    double scale;
    int rows, columns;
  };
  for (const Setting s : {Setting{1e12, 2, 2}, Setting{std::nan(""), 2, 2}, Setting{-3.0, 2, 2},
                          Setting{1.0, 0, 2}, Setting{1.0, 2, -5}, Setting{1.0, 201, 2},
                          Setting{150.0, 1, 1}}) {
    ASSERT_TRUE(SetPuzzlePicture(MakeUniquePicture24(200, 200), "p.bmp"));
    Puzzle().scale = s.scale;
    Puzzle().NR = s.rows;
    Puzzle().NC = s.columns;
    EXPECT_FALSE(CrearPuzzle(2, 2, kKnob2x2, true)) << s.scale << " " << s.rows << "x" << s.columns;
    EXPECT_FALSE(PuzzleAbierto());
  }
  EXPECT_TRUE(rec.empty());
  EXPECT_EQ(EngineMemory().current, Puzzle().areas[0].surface.bits.bytes() * 6 +
                                        Puzzle().areas[AREA_TABLERO].surface.bits.bytes());
}

// ---- The deal -------------------------------------------------------------------------------

TEST_F(EngineTest, NewGameScattersOverTheLowerHalfInAShuffledOrder) {
  ASSERT_TRUE(StartGame(400, 300, 6, 8, kKnob2x2, 2, 2, 900, 700));
  const EstadoPuzzle& p = Puzzle();
  const int n = 48;
  std::set<std::uint32_t> seen;
  bool shuffled = false;
  for (int i = 0; i < n; ++i) {
    const std::uint32_t k = AreaSlice(AREA_TABLERO)[i];
    seen.insert(k);
    shuffled = shuffled || k != static_cast<std::uint32_t>(i);
    const Pieza& piece = p.pieces[k];
    EXPECT_GE(piece.y, (700 - p.H) / 2);
    EXPECT_LE(piece.y, 700 - p.H);
    EXPECT_GE(piece.x, 0);
    EXPECT_LE(piece.x, 900 - p.W);
    EXPECT_EQ(piece.group, 0u);
    EXPECT_EQ(piece.unselected, 1);
  }
  EXPECT_EQ(seen.size(), 48u);
  EXPECT_TRUE(shuffled);
  EXPECT_EQ(AreaPieceCount(AREA_TABLERO), n);
  for (int box = 0; box < kBoxCount; ++box) EXPECT_EQ(AreaPieceCount(box), 0);
  EXPECT_EQ(p.PuzzleSinEmpezar, 1);
  EXPECT_EQ(p.PuzzleTerminado, 0);
  EXPECT_EQ(p.SegundosJuego, 0u);
  EXPECT_EQ(p.hintsUsed, 0);
  EXPECT_EQ(log().clock.back(), 0u);
}

TEST_F(EngineTest, CutWithoutScatterKeepsTheGameValuesForTheLoader) {
  ASSERT_TRUE(StartGame(400, 300, 4, 4));
  CerrarPuzzle(false);
  Puzzle().SegundosJuego = 321;
  Puzzle().hintsUsed = 2;
  ASSERT_TRUE(SetPuzzlePicture(MakeUniquePicture24(400, 300), "p.bmp"));
  ASSERT_TRUE(CrearPuzzle(2, 2, kKnob2x2, false));
  EXPECT_EQ(Puzzle().SegundosJuego, 321u);
  EXPECT_EQ(Puzzle().hintsUsed, 2);
}

}  // namespace
}  // namespace qv::test
