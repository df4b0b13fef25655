// Tests of playing: hit test, order moves, snapping and groups, completion, the mouse, hints,
// the clock, the score, solving, closing and restoring.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <set>
#include <utility>
#include <vector>

#include "engine_fixture.h"
#include "support/assert_recorder.h"

namespace qv::test {
namespace {

struct Placed {
  std::uint32_t piece;
  int x, y;
  std::uint32_t group = 0;
  std::uint8_t unselected = 1;
};

// Lays pieces out area by area (front first); every piece not named goes to the back of the
// board, far from where the test works.
void Arrange(const std::map<int, std::vector<Placed>>& layout) {
  const EstadoPuzzle& p = Puzzle();
  const int n = p.PieceCount();
  std::vector<Pieza> pieces(static_cast<std::size_t>(n), Pieza{0, 1, {0, 0, 0}, 5000, 5000});
  std::vector<bool> named(static_cast<std::size_t>(n), false);
  std::vector<std::uint32_t> order;
  std::int32_t counts[kAreaCount] = {};
  for (int area = 0; area < kAreaCount; ++area) {
    auto it = layout.find(area);
    if (it != layout.end()) {
      for (const Placed& pl : it->second) {
        pieces[pl.piece] = Pieza{pl.group, pl.unselected, {0, 0, 0}, pl.x, pl.y};
        named[pl.piece] = true;
        order.push_back(pl.piece);
        ++counts[area];
      }
    }
    if (area == AREA_TABLERO) {
      for (int k = 0; k < n; ++k) {
        if (!named[static_cast<std::size_t>(k)]) {
          order.push_back(static_cast<std::uint32_t>(k));
          ++counts[area];
        }
      }
    }
  }
  ASSERT_TRUE(RestorePieces(counts, order.data(), pieces.data()));
}

std::vector<std::uint32_t> Slice(int area) {
  return std::vector<std::uint32_t>(AreaSlice(area), AreaSlice(area) + AreaPieceCount(area));
}

const Pieza& Piece(std::uint32_t k) { return Puzzle().pieces[k]; }

std::size_t Clusters();

PointerTarget Over(PointerOver over, int area = -1, EnginePoint point = {}) {
  PointerTarget t;
  t.over = over;
  t.area = area;
  t.point = point;
  return t;
}

// A point on piece k's core, in its area's coordinates.
EnginePoint OnCore(std::uint32_t k) {
  return EnginePoint{Piece(k).x + Puzzle().mx + Puzzle().cw / 2,
                     Piece(k).y + Puzzle().my + Puzzle().ch / 2};
}

class PlayTest : public EngineTest {
 protected:
  // 4 x 4 pieces with a 100-pixel core on a 900 x 700 board.
  void SetUp() override {
    EngineTest::SetUp();
    SetLiveDrag(true);
    ASSERT_TRUE(StartGame(400, 400, 4, 4));
    ASSERT_EQ(Puzzle().cw, 100);
  }
};

// ---- Hit test and the order -----------------------------------------------------------------

TEST_F(PlayTest, ClickOnATransparentCornerPicksThePieceBelow) {
  Arrange({{AREA_TABLERO, {{5, 100, 100}, {6, 100, 100}}}});
  const EstadoPuzzle& p = Puzzle();
  EnginePoint corner{-1, -1};
  for (int cy = 1; cy < p.H && corner.x < 0; ++cy) {
    for (int cx = 1; cx < p.W; ++cx) {
      if (!AtlasMembership(5, cx, cy) && AtlasMembership(6, cx, cy)) {
        corner = EnginePoint{100 + cx, 100 + cy};
        break;
      }
    }
  }
  ASSERT_GE(corner.x, 0);
  EXPECT_EQ(HitTest(AREA_TABLERO, corner), 1);
  EXPECT_EQ(HitTest(AREA_TABLERO, OnCore(5)), 0);
  EXPECT_EQ(HitTest(AREA_TABLERO, EnginePoint{101, 101}), -1);  // neither piece reaches there
}

TEST_F(PlayTest, MoverAlFrenteMovesARunEitherWayKeepingTheRestInOrder) {
  Arrange({});
  std::vector<std::uint32_t> order(Puzzle().order.data(), Puzzle().order.data() + 16);
  ASSERT_TRUE(MoverAlFrente(10, 3, 2));
  EXPECT_EQ(Slice(AREA_TABLERO),
            (std::vector<std::uint32_t>{0, 1, 10, 11, 12, 2, 3, 4, 5, 6, 7, 8, 9, 13, 14, 15}));
  ASSERT_TRUE(MoverAlFrente(2, 3, 10));
  EXPECT_EQ(Slice(AREA_TABLERO), order);

  AssertRecorder rec;
  EXPECT_FALSE(MoverAlFrente(16, 1, 0));
  EXPECT_EQ(rec.only(), "buffers salen del rango indicado");
  rec.clear();
  EXPECT_FALSE(MoverAlFrente(14, 3, 0));
  EXPECT_EQ(rec.only(), "sale del rango");
  rec.clear();
  EXPECT_FALSE(MoverAlFrente(0, 3, 14));
  EXPECT_EQ(rec.only(), "se sale del rango");
  EXPECT_EQ(Slice(AREA_TABLERO), order);
}

// ---- Snapping and joining -------------------------------------------------------------------

TEST_F(PlayTest, NeighbourSixPixelsOffJoinsAndSevenDoesNot) {
  struct Offset {
    int dx, dy;
    bool joins;
  };
  for (const Offset o : {Offset{6, 6, true}, Offset{-6, -6, true}, Offset{6, -6, true},
                         Offset{7, 0, false}, Offset{0, -7, false}, Offset{-7, 3, false}}) {
    // Piece 6 is dropped beside its left neighbour 5, off by (dx, dy) from the exact place.
    Arrange({{AREA_TABLERO, {{6, 50, 50}, {5, 300, 300}}}});
    const int sounds = log().sounds;
    ASSERT_TRUE(SoltarPieza(AREA_TABLERO, AREA_TABLERO, 6, EnginePoint{400 + o.dx, 300 + o.dy}));
    const Pieza& moved = Piece(6);
    if (o.joins) {
      EXPECT_EQ(moved.x, 400) << o.dx << "," << o.dy;
      EXPECT_EQ(moved.y, 300) << o.dx << "," << o.dy;
      EXPECT_EQ(moved.group, 7u);
      EXPECT_EQ(Piece(5).group, 7u);
      EXPECT_EQ(log().sounds, sounds + 1);
    } else {
      EXPECT_EQ(moved.x, 400 + o.dx) << o.dx << "," << o.dy;
      EXPECT_EQ(moved.y, 300 + o.dy);
      EXPECT_EQ(moved.group, 0u);
      EXPECT_EQ(log().sounds, sounds);
    }
  }
}

TEST_F(PlayTest, LastColumnNeverJoinsTheNextRowsFirstPiece) {
  // Piece 3 ends row 0 and piece 4 starts row 1: side by side they are not neighbours.
  Arrange({{AREA_TABLERO, {{3, 50, 50}, {4, 300, 300}}}});
  ASSERT_TRUE(SoltarPieza(AREA_TABLERO, AREA_TABLERO, 3, EnginePoint{200, 300}));
  EXPECT_EQ(Piece(3).group, 0u);
  Arrange({{AREA_TABLERO, {{4, 50, 50}, {3, 300, 300}}}});
  ASSERT_TRUE(SoltarPieza(AREA_TABLERO, AREA_TABLERO, 4, EnginePoint{400, 300}));
  EXPECT_EQ(Piece(4).group, 0u);
  EXPECT_EQ(Piece(4).x, 400);
}

TEST_F(PlayTest, GroupsTakeTheLargerNumberAndMoveTogether) {
  Arrange({{AREA_TABLERO, {{1, 10, 10}, {0, 200, 100}, {5, 40, 400}, {2, 600, 500, 4}, {3, 700, 500, 4}}}});
  ASSERT_TRUE(SoltarPieza(AREA_TABLERO, AREA_TABLERO, 1, EnginePoint{300, 100}));
  EXPECT_EQ(Piece(0).group, 2u);
  EXPECT_EQ(Piece(1).group, 2u);
  // Piece 5 below piece 1: a loose piece numbers itself 6, the larger.
  ASSERT_TRUE(SoltarPieza(AREA_TABLERO, AREA_TABLERO, 5, EnginePoint{302, 197}));
  for (std::uint32_t k : {0u, 1u, 5u}) EXPECT_EQ(Piece(k).group, 6u) << k;
  EXPECT_EQ(Piece(5).x, 300);
  EXPECT_EQ(Piece(5).y, 200);
  // The group {2, 3} (number 4) joins to the right of piece 1 and takes 6; piece 3 follows 2.
  ASSERT_TRUE(SoltarPieza(AREA_TABLERO, AREA_TABLERO, 2, EnginePoint{398, 103}));
  for (std::uint32_t k : {0u, 1u, 2u, 3u, 5u}) EXPECT_EQ(Piece(k).group, 6u) << k;
  EXPECT_EQ(Piece(2).x, 400);
  EXPECT_EQ(Piece(3).x, 500);
  EXPECT_EQ(Piece(3).y, 100);
  EXPECT_EQ(Puzzle().PuzzleModificado, 1);
}

// ---- Joining every neighbour that fits ---------------------------------------------------------

TEST_F(PlayTest, PieceDroppedBetweenTwoGroupsJoinsBothAndSnapsTheSecondStraight) {
  // {0, 1} left of piece 2's place, {3, 7} a few pixels off on its right; 6 is 7 pixels off
  // below and stays loose.
  Arrange({{AREA_TABLERO, {{2, 50, 500}, {0, 100, 100, 2}, {1, 200, 100, 2}, {3, 404, 97, 8},
                           {7, 404, 197, 8}, {6, 307, 200}}}});
  ASSERT_TRUE(SoltarPieza(AREA_TABLERO, AREA_TABLERO, 2, EnginePoint{302, 103}));
  for (std::uint32_t k : {0u, 1u, 2u, 3u, 7u}) EXPECT_EQ(Piece(k).group, 8u) << k;
  EXPECT_EQ(Piece(2).x, 300);
  EXPECT_EQ(Piece(2).y, 100);
  EXPECT_EQ(Piece(3).x, 400);
  EXPECT_EQ(Piece(3).y, 100);
  EXPECT_EQ(Piece(7).x, 400);
  EXPECT_EQ(Piece(7).y, 200);
  EXPECT_EQ(Piece(6).group, 0u);
  EXPECT_EQ(Piece(6).x, 307);
  EXPECT_EQ(log().sounds, 1);
  // Three joins of fifteen: the score counts the clusters the cascade left.
  EXPECT_EQ(ResultadoPuzzle().percentage, (16 - 12) * 100 / 15);
  // The shifted group shows at its new place.
  const AreaSurface* board = GetAreaSurface(AREA_TABLERO);
  const EnginePoint at{400 + Puzzle().mx + 50, 100 + Puzzle().my + 50};
  const std::uint8_t* px = board->bits.data() + (board->height - 1 - at.y) * board->stride + at.x * 3;
  const std::uint8_t* own = AtlasPixel(3, Puzzle().mx + 50, Puzzle().my + 50);
  EXPECT_TRUE(px[0] == own[0] && px[1] == own[1] && px[2] == own[2]);
}

TEST_F(PlayTest, CascadeRunsThroughThreeGroupsInARowAndOnlyInTheTargetArea) {
  // Piece 8 joins 12 below it; 13's right neighbour 14 fits, and 15 (with 11) fits 14 in turn.
  Arrange({{AREA_TABLERO, {{8, 600, 50}, {12, 100, 400, 14}, {13, 200, 400, 14}, {14, 303, 395},
                           {15, 405, 404, 16}, {11, 405, 304, 16}}}});
  ASSERT_TRUE(SoltarPieza(AREA_TABLERO, AREA_TABLERO, 8, EnginePoint{101, 302}));
  for (std::uint32_t k : {8u, 11u, 12u, 13u, 14u, 15u}) EXPECT_EQ(Piece(k).group, 16u) << k;
  EXPECT_EQ(std::vector<int>({Piece(14).x, Piece(14).y, Piece(15).x, Piece(15).y, Piece(11).x,
                              Piece(11).y}),
            std::vector<int>({300, 400, 400, 400, 400, 300}));
  EXPECT_EQ(log().sounds, 1);
  EXPECT_EQ(Clusters(), 11u);  // three joins at one drop

  // In a box: piece 1 from the board joins 0 and then 2 in box 2; piece 5 lies on the board
  // where it would fit below 1 and stays out of it.
  Arrange({{2, {{0, 10, 10}, {2, 212, 12}}}, {AREA_TABLERO, {{1, 600, 50}, {5, 110, 110}}}});
  ASSERT_TRUE(SoltarPieza(2, AREA_TABLERO, 1, EnginePoint{108, 14}));
  EXPECT_EQ(Slice(2), (std::vector<std::uint32_t>{1, 0, 2}));
  for (std::uint32_t k : {0u, 1u, 2u}) EXPECT_EQ(Piece(k).group, 3u) << k;
  EXPECT_EQ(Piece(1).x, 110);
  EXPECT_EQ(Piece(2).x, 210);
  EXPECT_EQ(Piece(2).y, 10);
  EXPECT_EQ(Piece(5).group, 0u);
}

TEST_F(PlayTest, HintMakesOneJoinEvenWhereMoreWouldFit) {
  // The hint puts 1 against 0; 2 lies where it would fit 1 but the hint joins one pair only.
  Arrange({{AREA_TABLERO, {{0, 100, 100}, {1, 600, 400}, {2, 302, 101}}}});
  const int limit = static_cast<int>(HintLimit(4, 4));
  EXPECT_EQ(PistaPuzzle(), 1 < limit);
  EXPECT_EQ(Puzzle().hintsUsed, 1);
  EXPECT_EQ(Piece(1).group, 2u);
  EXPECT_EQ(Piece(2).group, 0u);
  EXPECT_EQ(Clusters(), 15u);
}

// ---- Completion -----------------------------------------------------------------------------

class SmallPuzzleTest : public EngineTest {
 protected:
  void SetUp() override {
    EngineTest::SetUp();
    ASSERT_TRUE(StartGame(400, 400, 2, 2));  // core 200
  }
};

TEST_F(SmallPuzzleTest, JoiningTheLastTwoGroupsFinishesAndStopsTheClock) {
  Arrange({{AREA_TABLERO, {{0, 100, 50, 2}, {1, 300, 50, 2}, {2, 150, 400, 4}, {3, 350, 400, 4}}}});
  // The first click starts the clock; a cancelled drag leaves everything else as it was.
  ButtonDown(AREA_TABLERO, OnCore(2));
  ButtonUp(AREA_TABLERO, EnginePoint{-1, -1}, Over(PointerOver::Outside));
  ASSERT_TRUE(Puzzle().clockRunning);
  ASSERT_EQ(log().clockStarts, 1);
  ASSERT_TRUE(SoltarPieza(AREA_TABLERO, AREA_TABLERO, 2, EnginePoint{103, 254}));
  const EstadoPuzzle& p = Puzzle();
  EXPECT_EQ(p.PuzzleTerminado, 1);
  EXPECT_FALSE(p.clockRunning);
  EXPECT_EQ(log().clockStops, 1);
  EXPECT_EQ(log().finished, 1);
  // Laid out straight in the middle of the board.
  const int ox = (900 - 400) / 2 - p.mx, oy = (700 - 400) / 2 - p.my;
  EXPECT_EQ(Piece(3).x, ox + 200);
  EXPECT_EQ(Piece(3).y, oy + 200);
  EXPECT_EQ(Slice(AREA_TABLERO), (std::vector<std::uint32_t>{0, 1, 2, 3}));
  EXPECT_EQ(log().hiddenBoxes.size(), 6u);
  {
    AssertRecorder rec;
    RelojPuzzle();
    EXPECT_EQ(rec.only(), "si ya se termino el puzzle por que sigo contando?");
  }
}

TEST_F(SmallPuzzleTest, DropThatTouchesTheLastTwoGroupsAtOnceFinishes) {
  // Piece 3 fits 1 above it and 2 on its left: the first join alone leaves 2 apart.
  Arrange({{AREA_TABLERO, {{3, 600, 400}, {0, 100, 50, 2}, {1, 300, 50, 2}, {2, 103, 248}}}});
  ASSERT_TRUE(SoltarPieza(AREA_TABLERO, AREA_TABLERO, 3, EnginePoint{302, 252}));
  EXPECT_EQ(Puzzle().PuzzleTerminado, 1);
  EXPECT_EQ(log().finished, 1);
  EXPECT_EQ(ResultadoPuzzle().percentage, 100);
}

TEST_F(SmallPuzzleTest, WholePictureInABoxAlsoFinishes) {
  Arrange({{3, {{0, 10, 10, 2}, {1, 210, 10, 2}, {2, 14, 250, 4}, {3, 214, 250, 4}}}});
  ASSERT_TRUE(SoltarPieza(3, 3, 2, EnginePoint{14, 205}));
  EXPECT_EQ(Puzzle().PuzzleTerminado, 1);
  EXPECT_EQ(AreaPieceCount(AREA_TABLERO), 4);
  EXPECT_EQ(AreaPieceCount(3), 0);
}

TEST_F(SmallPuzzleTest, SolvingTwiceChangesNothingTheSecondTime) {
  ASSERT_EQ(Puzzle().PuzzleModificado, 0);
  SolvePuzzleForPlayer();
  EXPECT_EQ(Puzzle().solutionShown, 1);
  EXPECT_EQ(Puzzle().PuzzleModificado, 1);  // the game now differs from its file
  std::vector<Pieza> before(Puzzle().pieces.data(), Puzzle().pieces.data() + 4);
  const std::size_t notes = log().notifications.size();
  ResolverPuzzle();
  EXPECT_EQ(log().notifications.size(), notes);
  EXPECT_EQ(std::memcmp(before.data(), Puzzle().pieces.data(), sizeof(Pieza) * 4), 0);
  EXPECT_EQ(log().finished, 0);  // the solve button is not a finished game
  CerrarPuzzle(false);
  EXPECT_EQ(Puzzle().PuzzleModificado, 0);  // no game is left to lose
}

// ---- The mouse ------------------------------------------------------------------------------

// The drag that shows the grabbed piece alone, drawn in its window (what a drag falls back to
// when the system cannot show the drag image).
TEST_F(PlayTest, DraggingDrawsThePieceInTheFrameAndDropsWhereItWasDragged) {
  SetLiveDrag(false);
  Arrange({{AREA_TABLERO, {{9, 470, 300}, {3, 380, 290}}}});
  const EstadoPuzzle& p = Puzzle();
  const EnginePoint down{380 + p.mx + 10, 290 + p.my + 10};
  DragFeedback fb = ButtonDown(AREA_TABLERO, down);
  EXPECT_EQ(DragMode(), 1);
  EXPECT_EQ(AreaSlice(AREA_TABLERO)[0], 3u);  // brought to the front
  EXPECT_EQ(p.PuzzleSinEmpezar, 0);
  EXPECT_TRUE(p.clockRunning);
  EXPECT_TRUE(fb.drawFrame);

  fb = DragStep(AREA_TABLERO, EnginePoint{down.x + 30, down.y + 20}, Over(PointerOver::StartArea));
  ASSERT_TRUE(fb.drawFrame);
  // One blit covers the old and the new place.
  EXPECT_EQ(fb.frameRect.x, 380);
  EXPECT_EQ(fb.frameRect.y, 290);
  EXPECT_EQ(fb.frameRect.width, p.W + 30);
  EXPECT_EQ(fb.frameRect.height, p.H + 20);
  const DragFrameView frame = DragFrame();
  const int fx = 30 + p.mx + 10, fy = 20 + p.my + 10;  // a core pixel at the new place
  const std::uint8_t* px = frame.bits + (frame.height - 1 - fy) * frame.stride + fx * 3;
  const std::uint8_t* own = AtlasPixel(3, p.mx + 10, p.my + 10);
  EXPECT_TRUE(px[0] == own[0] && px[1] == own[1] && px[2] == own[2]);

  fb = DragStep(AREA_TABLERO, EnginePoint{down.x + 40, down.y + 20}, Over(PointerOver::OtherWindow));
  EXPECT_TRUE(fb.erase);  // left the start window
  EXPECT_FALSE(fb.drawFrame);
  fb = DragStep(AREA_TABLERO, EnginePoint{down.x + 40, down.y + 20}, Over(PointerOver::BoxOwner, 1));
  EXPECT_EQ(fb.cursor, EngineCursor::DropIntoBox);
  DragStep(AREA_TABLERO, EnginePoint{down.x + 40, down.y + 25}, Over(PointerOver::StartArea));
  ButtonUp(AREA_TABLERO, EnginePoint{down.x + 40, down.y + 25}, Over(PointerOver::StartArea));
  EXPECT_EQ(DragMode(), 0);
  EXPECT_EQ(Piece(3).x, 420);
  EXPECT_EQ(Piece(3).y, 315);
  EXPECT_EQ(log().clockStarts, 1);
}

// The board surface's pixel at (x, y), and whether it shows piece k's own pixel there.
bool BoardShowsPiece(std::uint32_t k, int x, int y) {
  const AreaSurface* board = GetAreaSurface(AREA_TABLERO);
  const std::uint8_t* px = board->bits.data() + (board->height - 1 - y) * board->stride + x * 3;
  const std::uint8_t* own = AtlasPixel(k, x - Piece(k).x, y - Piece(k).y);
  return px[0] == own[0] && px[1] == own[1] && px[2] == own[2];
}

TEST_F(PlayTest, LiveDragShowsTheWholeGroupAsOneImageAndDropsItWhereItWasShown) {
  // The group {0, 1, 4} lies over piece 9; the drag takes it by piece 1.
  Arrange({{AREA_TABLERO, {{1, 300, 100, 5}, {0, 200, 100, 5}, {4, 200, 200, 5}, {9, 200, 200}}}});
  const EstadoPuzzle& p = Puzzle();
  SetLiveDrag(true);
  const EnginePoint down = OnCore(1);
  DragFeedback fb = ButtonDown(AREA_TABLERO, down);
  SetLiveDrag(false);  // ignored during a drag
  EXPECT_TRUE(LiveDrag());
  EXPECT_TRUE(fb.moveImage);
  EXPECT_FALSE(fb.drawFrame);
  DragImageView image = DragImage();
  ASSERT_NE(image.pixels, nullptr);
  EXPECT_EQ(image.pieces, 3);
  EXPECT_EQ(image.width, 100 + p.W);
  EXPECT_EQ(image.height, 100 + p.H);
  EXPECT_EQ(image.at.x, 200);
  EXPECT_EQ(image.at.y, 100);
  EXPECT_EQ(image.fromPointer.x, 200 - down.x);
  // Every piece of the set is in the image, opaque; what lies outside every piece is clear.
  const auto pixel = [&](int x, int y) { return image.pixels[(image.height - 1 - y) * image.width + x]; };
  for (std::uint32_t k : {0u, 1u, 4u}) {
    const int cx = p.mx + 7, cy = p.my + 9;
    const std::uint8_t* own = AtlasPixel(k, cx, cy);
    const std::uint32_t want = own[0] | own[1] << 8 | own[2] << 16 | 0xFF000000u;
    EXPECT_EQ(pixel(Piece(k).x - 200 + cx, Piece(k).y - 100 + cy), want) << k;
  }
  EXPECT_EQ(pixel(image.width - 2, image.height - 2), 0u);  // beside piece 4, below piece 1
  // The board shows the table and piece 9 where the set was.
  EXPECT_FALSE(BoardShowsPiece(0, OnCore(0).x, OnCore(0).y));
  EXPECT_TRUE(BoardShowsPiece(9, OnCore(4).x, OnCore(4).y));

  fb = DragStep(AREA_TABLERO, EnginePoint{down.x + 250, down.y + 170}, Over(PointerOver::OtherWindow));
  EXPECT_TRUE(fb.moveImage);  // over any window
  EXPECT_FALSE(fb.erase);
  fb = DragStep(AREA_TABLERO, EnginePoint{down.x + 250, down.y + 171}, Over(PointerOver::StartArea));
  EXPECT_EQ(fb.imageAt.x, 450);
  EXPECT_EQ(fb.imageAt.y, 271);
  // An arrow key moves the set one pixel against the pointer, and the next step keeps that.
  fb = NudgeDrag(AREA_TABLERO, 1, -5);
  EXPECT_EQ(fb.imageAt.x, 451);
  EXPECT_EQ(fb.imageAt.y, 270);
  fb = DragStep(AREA_TABLERO, EnginePoint{down.x + 250, down.y + 172}, Over(PointerOver::StartArea));
  EXPECT_EQ(fb.imageAt.y, 271);
  ButtonUp(AREA_TABLERO, EnginePoint{down.x + 250, down.y + 172}, Over(PointerOver::StartArea));
  // Nothing jumps: the set lies where its image was.
  EXPECT_EQ(std::vector<int>({Piece(0).x, Piece(0).y, Piece(1).x, Piece(4).y}),
            std::vector<int>({451, 271, 551, 371}));
  EXPECT_TRUE(BoardShowsPiece(0, OnCore(0).x, OnCore(0).y));
  EXPECT_TRUE(BoardShowsPiece(9, 200 + p.mx + 50, 200 + p.my + 50));
  EXPECT_EQ(DragImage().pixels, nullptr);

  // A cancelled drag of a selection shows it again where it was; the image carries its dots.
  Arrange({{AREA_TABLERO, {{2, 500, 400, 0, 0}, {3, 100, 400, 0, 0}}}});
  ButtonDown(AREA_TABLERO, OnCore(3));
  image = DragImage();
  EXPECT_EQ(image.pieces, 2);
  const int dx = (p.mx + 5) / 3 * 3, dy = (p.my + 5) / 2 * 2;  // a dot of the pattern
  const std::uint8_t* own = AtlasPixel(3, dx, dy);
  EXPECT_EQ(pixel(dx, dy) & 0xFFFFFFu, (255u - own[0]) | (255u - own[1]) << 8 | (255u - own[2]) << 16);
  EXPECT_FALSE(BoardShowsPiece(2, OnCore(2).x, OnCore(2).y));
  ButtonUp(AREA_TABLERO, EnginePoint{-1, -1}, Over(PointerOver::Outside));
  EXPECT_TRUE(BoardShowsPiece(2, OnCore(2).x, OnCore(2).y));
  EXPECT_EQ(Piece(2).x, 500);

  // With no image to show, the rest of the drag shows the grabbed piece alone, the set where
  // it lies, and the drop is the same.
  ButtonDown(AREA_TABLERO, OnCore(3));
  fb = ShowPieceInstead();
  EXPECT_TRUE(fb.erase);
  EXPECT_EQ(DragImage().pixels, nullptr);
  EXPECT_TRUE(BoardShowsPiece(2, OnCore(2).x, OnCore(2).y));
  fb = DragStep(AREA_TABLERO, EnginePoint{OnCore(3).x + 30, OnCore(3).y}, Over(PointerOver::StartArea));
  EXPECT_FALSE(fb.moveImage);
  EXPECT_TRUE(fb.drawFrame);
  ButtonUp(AREA_TABLERO, EnginePoint{OnCore(3).x + 30, OnCore(3).y}, Over(PointerOver::StartArea));
  EXPECT_EQ(Piece(2).x, 530);
  EXPECT_EQ(Piece(3).x, 130);
}

TEST_F(PlayTest, DropOutsideTheProgramOrALostCaptureCancels) {
  Arrange({{AREA_TABLERO, {{3, 380, 290}}}});
  const EnginePoint down = OnCore(3);
  ButtonDown(AREA_TABLERO, down);
  DragStep(AREA_TABLERO, EnginePoint{down.x + 60, down.y}, Over(PointerOver::StartArea));
  ButtonUp(AREA_TABLERO, EnginePoint{-1, -1}, Over(PointerOver::Outside));
  EXPECT_EQ(Piece(3).x, 380);
  EXPECT_EQ(Piece(3).y, 290);
  EXPECT_EQ(DragMode(), 0);
  EXPECT_EQ(log().invalidated.back(), (std::vector<int>{AREA_TABLERO, 380, 290, Puzzle().W, Puzzle().H}));
}

TEST_F(PlayTest, DropOnABoxOwnerPutsThePieceAtTheBoxCentre) {
  Arrange({{AREA_TABLERO, {{7, 380, 290}}}});
  ButtonDown(AREA_TABLERO, OnCore(7));
  ButtonUp(AREA_TABLERO, EnginePoint{0, 0}, Over(PointerOver::BoxOwner, 2));
  EXPECT_EQ(Slice(2), std::vector<std::uint32_t>{7});
  EXPECT_EQ(Piece(7).x, (300 - Puzzle().W) / 2);
  EXPECT_EQ(Piece(7).y, (300 - Puzzle().H) / 2);
  EXPECT_EQ(log().notifications.back(), (std::pair<int, int>{2, AREA_OCUPADA}));
  EXPECT_EQ(AreaPieceCount(AREA_TABLERO), 15);
  // And back onto the board through its window: the box is empty again.
  ButtonDown(2, OnCore(7));
  ButtonUp(2, EnginePoint{0, 0}, Over(PointerOver::OtherArea, AREA_TABLERO, EnginePoint{500, 100}));
  EXPECT_EQ(AreaPieceCount(2), 0);
  EXPECT_EQ(log().notifications.back(), (std::pair<int, int>{2, AREA_VACIA}));
  EXPECT_EQ(AreaSlice(AREA_TABLERO)[0], 7u);
  EXPECT_EQ(Piece(7).x, 500 - (OnCore(7).x - Piece(7).x));
}

TEST_F(PlayTest, RubberBandSelectsLoosePiecesAndTheSelectionMovesClamped) {
  Arrange({{AREA_TABLERO, {{0, 100, 100}, {1, 200, 100}, {2, 700, 100, 4}, {3, 800, 400}}}});
  ButtonDown(AREA_TABLERO, EnginePoint{90, 20});  // empty table
  EXPECT_EQ(DragMode(), 2);
  DragFeedback fb = DragStep(AREA_TABLERO, EnginePoint{800, 150}, Over(PointerOver::StartArea));
  EXPECT_TRUE(fb.hadOldBand && fb.hasNewBand);
  EXPECT_EQ(fb.newBand[2].x, 800);
  ButtonUp(AREA_TABLERO, EnginePoint{800, 150}, Over(PointerOver::StartArea));
  EXPECT_EQ(Piece(0).unselected, 0);
  EXPECT_EQ(Piece(1).unselected, 0);
  EXPECT_EQ(Piece(2).unselected, 1);  // grouped pieces are never selected
  EXPECT_EQ(Piece(3).unselected, 1);  // outside the band

  // Dragging one selected piece moves the whole selection; the right limit is width - cw.
  const int changed = log().changed;
  const EnginePoint down = OnCore(1);
  ButtonDown(AREA_TABLERO, down);
  DragStep(AREA_TABLERO, EnginePoint{down.x + 700, down.y - 150}, Over(PointerOver::StartArea));
  ButtonUp(AREA_TABLERO, EnginePoint{down.x + 700, down.y - 150}, Over(PointerOver::StartArea));
  EXPECT_EQ(Piece(0).x, 800);
  EXPECT_EQ(Piece(1).x, 900 - 100);
  EXPECT_EQ(Piece(0).y, -Puzzle().my);
  EXPECT_EQ(Piece(1).unselected, 0);
  EXPECT_GT(log().changed, changed);
}

TEST_F(PlayTest, SelectionDroppedInABoxReplacesTheBoxSelection) {
  Arrange({{1, {{10, 20, 20, 0, 0}}}, {AREA_TABLERO, {{0, 20, 100, 0, 0}, {1, 150, 120, 0, 0}}}});
  ButtonDown(AREA_TABLERO, OnCore(1));
  ButtonUp(AREA_TABLERO, EnginePoint{0, 0}, Over(PointerOver::OtherArea, 1, OnCore(1)));
  EXPECT_EQ(Slice(1), (std::vector<std::uint32_t>{1, 0, 10}));
  EXPECT_EQ(Piece(10).unselected, 1);
  EXPECT_EQ(Piece(0).unselected, 0);
  EXPECT_EQ(Piece(1).x, 150);  // dropped over the same spot of the box
  EXPECT_EQ(Piece(0).x, 20);
  EXPECT_EQ(Piece(0).y, 100);
}

// ---- Hints, clock and score -------------------------------------------------------------------

// Loose pieces and groups, counted from the pieces themselves.
std::size_t Clusters() {
  std::set<std::uint32_t> groups;
  std::size_t loose = 0;
  for (int k = 0; k < Puzzle().PieceCount(); ++k) {
    const std::uint32_t g = Piece(static_cast<std::uint32_t>(k)).group;
    if (g == 0) ++loose;
    else groups.insert(g);
  }
  return loose + groups.size();
}

// Whether piece k lies exactly where it belongs against a grid neighbour of its own group.
bool FitsANeighbour(std::uint32_t k) {
  const EstadoPuzzle& p = Puzzle();
  const int row = static_cast<int>(k) / p.NC, column = static_cast<int>(k) % p.NC;
  for (const auto& [dr, dc] : {std::pair{-1, 0}, std::pair{1, 0}, std::pair{0, -1}, std::pair{0, 1}}) {
    if (row + dr < 0 || row + dr >= p.NR || column + dc < 0 || column + dc >= p.NC) continue;
    const Pieza& n = Piece(static_cast<std::uint32_t>((row + dr) * p.NC + column + dc));
    if (n.group != 0 && n.group == Piece(k).group && n.x == Piece(k).x + dc * p.cw &&
        n.y == Piece(k).y + dr * p.ch) {
      return true;
    }
  }
  return false;
}

TEST_F(EngineTest, EachHintMakesExactlyOneJoinUntilAFifthOfThePiecesIsUsed) {
  ASSERT_TRUE(StartGame(500, 500, 5, 5));
  EXPECT_EQ(HintLimit(5, 5), 5);
  ASSERT_EQ(Puzzle().PuzzleModificado, 0);
  for (int hint = 1; hint <= 5; ++hint) {
    const std::size_t clusters = Clusters();
    const int sounds = log().sounds;
    EXPECT_EQ(PistaPuzzle(), hint < 5) << hint;
    EXPECT_EQ(Puzzle().hintsUsed, hint);
    EXPECT_EQ(Puzzle().PuzzleModificado, 1);
    EXPECT_EQ(Clusters(), clusters - 1) << hint;
    EXPECT_EQ(log().sounds, sounds + 1) << hint;
    // The piece the hint moved comes to the front, placed against its neighbour.
    EXPECT_TRUE(FitsANeighbour(AreaSlice(AREA_TABLERO)[0])) << hint;
  }
  EXPECT_EQ(HintLimit(10, 10), 20);
}

TEST_F(SmallPuzzleTest, HintPlacesTheNeighbourBehindAgainstTheOneInFront) {
  Arrange({{AREA_TABLERO, {{2, 100, 300}, {3, 500, 50}, {0, 600, 600}}}});
  EXPECT_TRUE(PistaPuzzle() == (1 < HintLimit(2, 2)));
  // Piece 2's first neighbour behind it is 3 (right of it): 3 comes to sit against 2.
  EXPECT_EQ(Piece(3).x, 300);
  EXPECT_EQ(Piece(3).y, 300);
  EXPECT_EQ(Piece(3).group, 4u);
  EXPECT_EQ(AreaSlice(AREA_TABLERO)[0], 3u);
}

TEST_F(SmallPuzzleTest, ClockCountsUnlessPaused) {
  RelojPuzzle();
  RelojPuzzle();
  EXPECT_EQ(Puzzle().SegundosJuego, 2u);
  EXPECT_EQ(log().clock.back(), 2u);
  Puzzle().RelojPausado = 1;
  RelojPuzzle();
  EXPECT_EQ(Puzzle().SegundosJuego, 2u);
}

TEST_F(SmallPuzzleTest, ResultCountsClustersAndScoresTimeAndHints) {
  EXPECT_EQ(ResultadoPuzzle().percentage, 0);
  Arrange({{AREA_TABLERO, {{0, 100, 50, 2}, {1, 300, 50, 2}}}});
  ResultadoJuego r = ResultadoPuzzle();
  EXPECT_EQ(r.pieces, 4);
  EXPECT_EQ(r.percentage, 33);  // one join of three
  ResolverPuzzle();
  Puzzle().hintsUsed = 1;
  Puzzle().SegundosJuego = 20;  // 20 div 7 + 1 = 3
  r = ResultadoPuzzle();
  EXPECT_EQ(r.percentage, 100);
  EXPECT_EQ(r.score, 100 * 3 * 4 * 10 / 3);
  CerrarPuzzle(false);
  r = ResultadoPuzzle();
  EXPECT_EQ(r.pieces + r.percentage + r.score, 0);
}

// ---- Closing and restoring --------------------------------------------------------------------

TEST_F(SmallPuzzleTest, ClosingEmptiesTheAreasThatHeldPiecesAndFreesThePicture) {
  Arrange({{4, {{1, 0, 0}}}});
  log().notifications.clear();
  CerrarPuzzle(true);
  EXPECT_EQ(log().notifications,
            (std::vector<std::pair<int, int>>{{4, AREA_VACIA}, {AREA_TABLERO, AREA_VACIA}}));
  EXPECT_EQ(PuzzlePicture(), nullptr);
  EXPECT_FALSE(PuzzleAbierto());
  EXPECT_EQ(log().clock.back(), 0u);
  EXPECT_EQ(AreaPieceCount(AREA_TABLERO), 0);
}

TEST_F(SmallPuzzleTest, RestoringRefusesInconsistentGamesAndChangesNothing) {
  const std::vector<std::uint32_t> before = Slice(AREA_TABLERO);
  std::vector<Pieza> pieces(Puzzle().pieces.data(), Puzzle().pieces.data() + 4);
  const std::uint32_t order[4] = {0, 1, 2, 3};
  const std::uint32_t repeated[4] = {0, 1, 1, 3};
  const std::uint32_t outOfRange[4] = {0, 1, 2, 4};
  const std::int32_t counts[kAreaCount] = {1, 0, 0, 0, 0, 0, 3};
  const std::int32_t tooMany[kAreaCount] = {1, 0, 0, 0, 0, 0, 4};
  const std::int32_t negative[kAreaCount] = {-1, 0, 0, 0, 0, 0, 5};
  EXPECT_FALSE(RestorePieces(tooMany, order, pieces.data()));
  EXPECT_FALSE(RestorePieces(negative, order, pieces.data()));
  EXPECT_FALSE(RestorePieces(counts, repeated, pieces.data()));
  EXPECT_FALSE(RestorePieces(counts, outOfRange, pieces.data()));
  pieces[2].x = kMaxPiecePosition + 1;
  EXPECT_FALSE(RestorePieces(counts, order, pieces.data()));
  EXPECT_EQ(Slice(AREA_TABLERO), before);
  EXPECT_EQ(AreaPieceCount(0), 0);
  pieces[2].x = -kMaxPiecePosition;
  EXPECT_TRUE(RestorePieces(counts, order, pieces.data()));
  EXPECT_EQ(Slice(0), std::vector<std::uint32_t>{0});
  EXPECT_EQ(log().notifications.back(), (std::pair<int, int>{0, AREA_OCUPADA}));
}

}  // namespace
}  // namespace qv::test
