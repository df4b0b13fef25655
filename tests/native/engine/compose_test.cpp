// Tests of composing: texture tiling, stacking through transparent corners, selection dots,
// display formats, surfaces that resize, and the table texture's checks.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <set>
#include <vector>

#include "engine_fixture.h"
#include "support/assert_recorder.h"

namespace qv::test {
namespace {

const std::uint8_t* SurfacePixel(int area, int x, int y) {
  const AreaSurface* s = GetAreaSurface(area);
  return s->bits.data() + static_cast<std::size_t>(s->height - 1 - y) * s->stride + x * 3;
}

void ExpectColour(const std::uint8_t* got, const std::uint8_t* want, const char* what) {
  EXPECT_TRUE(got[0] == want[0] && got[1] == want[1] && got[2] == want[2])
      << what << ": got " << int(got[0]) << "," << int(got[1]) << "," << int(got[2]) << " want "
      << int(want[0]) << "," << int(want[1]) << "," << int(want[2]);
}

// Puts the given pieces (front first) into box 0 at the given places; the rest stay on the board.
void PlaceInBox(const std::vector<std::uint32_t>& front, const std::vector<EnginePoint>& at) {
  const EstadoPuzzle& p = Puzzle();
  const int n = p.PieceCount();
  std::vector<std::uint32_t> order(front);
  for (std::uint32_t k = 0; k < static_cast<std::uint32_t>(n); ++k) {
    if (std::find(front.begin(), front.end(), k) == front.end()) order.push_back(k);
  }
  std::int32_t counts[kAreaCount] = {static_cast<std::int32_t>(front.size()), 0, 0, 0, 0, 0,
                                     n - static_cast<std::int32_t>(front.size())};
  std::vector<Pieza> pieces(p.pieces.data(), p.pieces.data() + n);
  for (std::size_t i = 0; i < front.size(); ++i) {
    pieces[front[i]].x = at[i].x;
    pieces[front[i]].y = at[i].y;
  }
  ASSERT_TRUE(RestorePieces(counts, order.data(), pieces.data()));
  ComponerAreaEntera(0, false);
}

TEST_F(EngineTest, TextureRepeatsEveryHundredPixelsFromTheAreaCorner) {
  ASSERT_TRUE(CreateBoardArea());
  ASSERT_TRUE(ResizeArea(AREA_TABLERO, 330, 250));
  std::uint8_t want[3];
  for (const auto& [x, y] : {std::pair{0, 0}, {99, 0}, {100, 0}, {0, 100}, {257, 199}, {329, 249}}) {
    TextureColour(x, y, want);
    ExpectColour(SurfacePixel(AREA_TABLERO, x, y), want, "texture");
  }
}

TEST_F(EngineTest, FrontPieceWinsOnlyWhereItsMembershipIsOne) {
  ASSERT_TRUE(StartGame(400, 400, 4, 4));
  const EstadoPuzzle& p = Puzzle();
  // Piece 5 in front of piece 6, both with their cells at the same place.
  PlaceInBox({5, 6}, {{20, 20}, {20, 20}});
  int frontSeen = 0, behindSeen = 0, tableSeen = 0;
  for (int cy = 0; cy < p.H; ++cy) {
    for (int cx = 0; cx < p.W; ++cx) {
      const std::uint8_t* got = SurfacePixel(0, 20 + cx, 20 + cy);
      std::uint8_t want[3];
      if (AtlasMembership(5, cx, cy)) {
        std::copy_n(AtlasPixel(5, cx, cy), 3, want);
        ++frontSeen;
      } else if (AtlasMembership(6, cx, cy)) {
        std::copy_n(AtlasPixel(6, cx, cy), 3, want);
        ++behindSeen;
      } else {
        TextureColour(20 + cx, 20 + cy, want);
        ++tableSeen;
      }
      ASSERT_TRUE(got[0] == want[0] && got[1] == want[1] && got[2] == want[2]) << cx << "," << cy;
    }
  }
  EXPECT_GT(frontSeen, 0);
  EXPECT_GT(behindSeen, 0);  // through the front piece's transparent corners
  EXPECT_GT(tableSeen, 0);
}

TEST_F(EngineTest, SelectedPieceShowsInvertedDotsOnBoardAndWhileDragged) {
  ASSERT_TRUE(StartGame(400, 400, 4, 4));
  const EstadoPuzzle& p = Puzzle();
  Puzzle().pieces[5].unselected = 0;
  PlaceInBox({5}, {{10, 10}});
  std::vector<std::uint8_t> frame(static_cast<std::size_t>(DibRowBytes(p.W, 24)) * p.H, 0);
  DisplayImage image{frame.data(), p.W, p.H, static_cast<std::int32_t>(DibRowBytes(p.W, 24)), {}};
  ASSERT_TRUE(ComposeDraggedPiece(image, 0, 0, 5));
  // Core pixels (always the piece's own) on even and odd rows, at and off multiples of 3.
  for (const auto& [cx, cy] : {std::pair{p.mx + 3 - p.mx % 3, p.my + (p.my % 2)},
                              {p.mx + 4 - p.mx % 3, p.my + (p.my % 2)},
                              {p.mx + 3 - p.mx % 3, p.my + 1 - (p.my % 2)}}) {
    const std::uint8_t* own = AtlasPixel(5, cx, cy);
    const bool dot = cy % 2 == 0 && cx % 3 == 0;
    const std::uint8_t want[3] = {
        static_cast<std::uint8_t>(dot ? 255 - own[0] : own[0]),
        static_cast<std::uint8_t>(dot ? 255 - own[1] : own[1]),
        static_cast<std::uint8_t>(dot ? 255 - own[2] : own[2])};
    ExpectColour(SurfacePixel(0, 10 + cx, 10 + cy), want, dot ? "board dot" : "board plain");
    const std::uint8_t* dragged = frame.data() + (p.H - 1 - cy) * image.stride + cx * 3;
    ExpectColour(dragged, want, dot ? "dragged dot" : "dragged plain");
  }
}

TEST_F(EngineTest, DraggedImageIsPackedForSixteenAndThirtyTwoBitDisplays) {
  ASSERT_TRUE(StartGame(400, 400, 4, 4));
  const EstadoPuzzle& p = Puzzle();
  const int cx = p.mx + 5, cy = p.my + 7;
  const std::uint8_t* own = AtlasPixel(9, cx, cy);
  struct Case {
    DisplayFormat format;
    std::uint32_t want;
  };
  const Case cases[] = {
      {{16, 0x7C00, 0x03E0, 0x001F}, std::uint32_t((own[2] / 8) << 10 | (own[1] / 8) << 5 | own[0] / 8)},
      {{16, 0xF800, 0x07E0, 0x001F}, std::uint32_t((own[2] / 8) << 11 | (own[1] / 4) << 5 | own[0] / 8)},
      {{32, 0xFF0000, 0x00FF00, 0x0000FF}, std::uint32_t(own[2] << 16 | own[1] << 8 | own[0])},
  };
  for (const Case& c : cases) {
    const int bytes = c.format.bitCount / 8;
    const auto stride = static_cast<std::int32_t>(DibRowBytes(p.W, c.format.bitCount));
    std::vector<std::uint8_t> bits(static_cast<std::size_t>(stride) * p.H, 0);
    DisplayImage image{bits.data(), p.W, p.H, stride, c.format};
    ASSERT_TRUE(ComposeDraggedPiece(image, 0, 0, 9));
    std::uint32_t got = 0;
    std::memcpy(&got, bits.data() + (p.H - 1 - cy) * stride + cx * bytes, static_cast<std::size_t>(bytes));
    EXPECT_EQ(got, c.want) << c.format.bitCount << " bits, red mask " << c.format.redMask;
  }
  ChannelPacking packing;
  EXPECT_FALSE(PackingForMasks(0, 0x3E0, 0x1F, &packing));        // no red
  EXPECT_FALSE(PackingForMasks(0x1FF00, 0xF0, 0xF, &packing));    // 9-bit red
  EXPECT_FALSE(PackingForMasks(0x5000, 0x3E0, 0x1F, &packing));   // red with a hole
  EXPECT_FALSE(SetDisplayFormat(DisplayFormat{8, 0, 0, 0}));
  EXPECT_FALSE(SetDisplayFormat(DisplayFormat{16, 0xFF0000, 0xFF00, 0xFF}));  // masks beyond 16 bits
}

TEST_F(EngineTest, LargeRectanglesAreComposedInTilesFromTheAreaOrigin) {
  ASSERT_TRUE(StartGame(400, 400, 4, 4, kKnob2x2, 2, 2, 900, 700));
  AreaSurface& s = Puzzle().areas[AREA_TABLERO].surface;
  std::memset(s.bits.data(), 0, s.bits.bytes());
  // Wider than W and higher than H: the five columns of tiles start at 0, so everything from
  // the origin to the rectangle's far corner is recomposed.
  ComponerArea(AREA_TABLERO, 300, 200, 400, 300, true, false);
  std::uint8_t want[3];
  TextureColour(699, 499, want);
  const std::uint8_t zero[3] = {0, 0, 0};
  bool cornerComposed = false;
  for (int y = 0; y < 20 && !cornerComposed; ++y) {
    for (int x = 0; x < 20; ++x) cornerComposed = cornerComposed || SurfacePixel(AREA_TABLERO, x, y)[2] != 0;
  }
  EXPECT_TRUE(cornerComposed);
  ExpectColour(SurfacePixel(AREA_TABLERO, 700, 200), zero, "right of the rectangle");
  ExpectColour(SurfacePixel(AREA_TABLERO, 300, 500), zero, "below the rectangle");
  // Only the asked rectangle is repainted.
  EXPECT_EQ(log().invalidated.back(), (std::vector<int>{AREA_TABLERO, 300, 200, 400, 300}));

  // A small rectangle is composed alone, and without show nothing is repainted.
  std::memset(s.bits.data(), 0, s.bits.bytes());
  const std::size_t repaints = log().invalidated.size();
  ComponerArea(AREA_TABLERO, 300, 200, 20, 500, false, false);
  ExpectColour(SurfacePixel(AREA_TABLERO, 299, 200), zero, "left of a narrow rectangle");
  EXPECT_NE(SurfacePixel(AREA_TABLERO, 300, 200)[2], 0);
  EXPECT_EQ(log().invalidated.size(), repaints);
}

TEST_F(EngineTest, ResizingKeepsTheOldPictureAndComposesTheNewPart) {
  ASSERT_TRUE(CreateBoxArea(2, 7));
  ASSERT_TRUE(ResizeArea(2, 120, 90));
  AreaSurface& s = Puzzle().areas[2].surface;
  std::uint8_t* marked = s.bits.data() + (90 - 1 - 5) * s.stride + 5 * 3;
  marked[0] = 1, marked[1] = 2, marked[2] = 3;
  ASSERT_TRUE(ResizeArea(2, 250, 180));
  const std::uint8_t kept[3] = {1, 2, 3};
  ExpectColour(SurfacePixel(2, 5, 5), kept, "kept pixel");
  std::uint8_t want[3];
  TextureColour(200, 150, want);
  ExpectColour(SurfacePixel(2, 200, 150), want, "new part");
  EXPECT_EQ(GetAreaSurface(2)->header.biWidth, 250);
  EXPECT_EQ(GetAreaSurface(2)->header.biBitCount, 24);
}

// ---- Table texture --------------------------------------------------------------------------

TEST_F(EngineTest, TextureTileMustBeAnEightBitHundredByHundredImage) {
  AssertRecorder rec;
  EXPECT_FALSE(MosaicoPuzzle(nullptr));
  EXPECT_EQ(rec.only(), "handle al image invalido");
  rec.clear();
  PackedDib tall;
  tall.Allocate(100, 101);
  EXPECT_FALSE(MosaicoPuzzle(tall.get()));
  EXPECT_EQ(rec.only(), "el alto del mosaico difiere del declarado en MOSAICO_TAMY");
  rec.clear();
  PackedDib wide;
  wide.Allocate(99, 100);
  EXPECT_FALSE(MosaicoPuzzle(wide.get()));
  EXPECT_EQ(rec.only(), "el ancho del mosaico difiere del declarado en MOSAICO_TAMX");
  rec.clear();
  PackedDib deep = MakeUniquePicture24(100, 100);
  EXPECT_FALSE(MosaicoPuzzle(deep.get()));
  EXPECT_EQ(rec.only(), "solo se soportan mosaicos de paleta indexada");
}

TEST_F(EngineTest, ChangingTheTextureDuringAGameRedrawsEveryArea) {
  ASSERT_TRUE(StartGame(300, 300, 3, 3));
  log().invalidated.clear();
  PackedDib plain;
  plain.Allocate(100, 100);
  DibColours(plain.get())[0] = RgbQuad{9, 8, 7, 0};
  std::memset(DibPixels(plain.get()), 0, 100 * 100);
  ASSERT_TRUE(MosaicoPuzzle(plain.get()));
  std::set<int> repainted;
  for (const auto& r : log().invalidated) repainted.insert(r[0]);
  EXPECT_EQ(repainted.size(), 7u);
  const std::uint8_t want[3] = {9, 8, 7};
  ExpectColour(SurfacePixel(3, 150, 150), want, "box with the new texture");
}

TEST_F(EngineTest, BoardNeedsATextureAndItsFirstSizeCutsThePendingPuzzle) {
  ShutdownEngine();
  {
    AssertRecorder rec;
    EXPECT_FALSE(ShowPuzzle(2, 2, kKnob2x2));
    EXPECT_EQ(rec.only(), "se debe llamar la funcion MosaicoPuzzle antes de llamar ShowPuzzle");
    rec.clear();
    EXPECT_FALSE(CreateBoardArea());
    EXPECT_EQ(rec.only(), "se debe llamar la funcion MosaicoPuzzle antes de llamar ShowPuzzle");
    rec.clear();
    ASSERT_TRUE(MosaicoPuzzle(texture_.get()));
    EXPECT_FALSE(CreateBoxArea(6, 0));
    EXPECT_EQ(rec.only(), "Valor de Id invalido, supera el numero de boxs especificado");
  }
  SetEngineHooks(HookLog::Hooks());
  SetBoardSize(830, 630);
  ASSERT_TRUE(SetPuzzlePicture(MakeUniquePicture24(400, 300), "p.bmp"));
  Puzzle().NR = 3;
  Puzzle().NC = 4;
  ASSERT_TRUE(ShowPuzzle(2, 2, kKnob2x2));
  // (630 - 30) >= (830 - 30) x 300 / 400, so the width decides: 800 / 400.
  EXPECT_DOUBLE_EQ(Puzzle().fitScale, 2.0);
  EXPECT_DOUBLE_EQ(Puzzle().scale, 2.0);
  EXPECT_DOUBLE_EQ(Puzzle().minScale, 0.45);
  EXPECT_TRUE(CutPending());
  EXPECT_FALSE(PuzzleAbierto());
  ASSERT_TRUE(CreateBoardArea());
  ASSERT_TRUE(ResizeArea(AREA_TABLERO, 830, 630));
  EXPECT_TRUE(PuzzleAbierto());
  EXPECT_FALSE(CutPending());
  EXPECT_EQ(Puzzle().cw, 200);
  // The new game is on the surface at once: a scattered piece's core shows its picture.
  const Pieza& piece = Puzzle().pieces[AreaSlice(AREA_TABLERO)[0]];
  const std::uint32_t front = AreaSlice(AREA_TABLERO)[0];
  ExpectColour(SurfacePixel(AREA_TABLERO, piece.x + Puzzle().mx + 50, piece.y + Puzzle().my + 50),
               AtlasPixel(front, Puzzle().mx + 50, Puzzle().my + 50), "front piece");
  // A taller board: the height decides.
  EXPECT_DOUBLE_EQ(FitScaleFor(830, 330, 400, 300), 1.0);
}

}  // namespace
}  // namespace qv::test
