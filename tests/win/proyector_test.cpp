// Proyector: frame arithmetic, masked drawing onto pictures and contexts, and erasing.
#include "graphics/proyector.h"

#include <gtest/gtest.h>

#include <vector>

#include "support/assert_recorder.h"
#include "win_test_support.h"

namespace qv {
namespace {

using test::AssertRecorder;

// A masked strip of 3 columns and 2 rows of 30 x 30 frames (90 x 120 in all). In frame f the
// opaque part is the square (10..19, 10..19) in colour 100 + f; the rest is transparent.
PackedDib MakeStrip() {
  PackedDib strip = test::IndexedPicture(90, 120);
  for (int f = 0; f < 6; ++f) {
    const int fx = 30 * (f % 3), fy = 60 * (f / 3);
    for (int y = 0; y < 30; ++y) {
      for (int x = 0; x < 30; ++x) {
        const bool opaque = x >= 10 && x < 20 && y >= 10 && y < 20;
        *ImagePixel(strip.get(), fx + x, fy + y) = opaque ? static_cast<std::uint8_t>(100 + f) : 0;
        *ImagePixel(strip.get(), fx + x, fy + 30 + y) = opaque ? 0x00 : 0xFF;
      }
    }
  }
  return strip;
}

std::vector<std::uint8_t> Pixels(const PackedDib& dib) {
  return {DibPixels(dib.get()), DibPixels(dib.get()) + DibHeader(dib.get())->biSizeImage};
}

TEST(Proyector, FrameGridOfAMaskedStrip) {
  PackedDib strip = MakeStrip();
  Proyector sprite;
  ASSERT_TRUE(sprite.DeclararTiraExterna(strip.get(), true));
  ASSERT_TRUE(sprite.CambiarNumCol(3));
  ASSERT_TRUE(sprite.CambiarNumFil(2));
  EXPECT_EQ(sprite.FrameWidth(), 30);
  EXPECT_EQ(sprite.FrameHeight(), 30);

  AssertRecorder rec;
  EXPECT_FALSE(sprite.CambiarNumCol(0));
  EXPECT_EQ(rec.only(), "Proyector:CambiarNumCol: numero de columnas invalido");
  rec.clear();
  EXPECT_FALSE(sprite.CambiarNumFil(-1));
  EXPECT_EQ(rec.only(), "Proyector:CambiarNumFil: numero de filas invalido");
  EXPECT_EQ(sprite.Columns(), 3);
  EXPECT_EQ(sprite.Rows(), 2);
}

TEST(Proyector, DrawsFrameFourTransparentlyAndErasesExactly) {
  PackedDib strip = MakeStrip();
  PackedDib board = test::IndexedPicture(64, 48);
  const std::vector<std::uint8_t> original = Pixels(board);
  Proyector sprite;
  ASSERT_TRUE(sprite.Destino(board.get()));
  ASSERT_TRUE(sprite.DeclararTiraExterna(strip.get(), true));
  sprite.CambiarNumCol(3);
  sprite.CambiarNumFil(2);

  ASSERT_TRUE(sprite.Transparencia(4, 7, 5, false, false, true));
  for (int y = 0; y < 30; ++y) {
    for (int x = 0; x < 30; ++x) {
      const bool opaque = x >= 10 && x < 20 && y >= 10 && y < 20;
      const std::uint8_t expected =
          opaque ? 104 : *ImagePixel(test::IndexedPicture(64, 48).get(), 7 + x, 5 + y);
      ASSERT_EQ(*ImagePixel(board.get(), 7 + x, 5 + y), expected) << x << "," << y;
    }
  }
  ASSERT_NE(sprite.FondoDC(), nullptr);
  EXPECT_EQ(sprite.FondoDC()->Width(), 30);

  ASSERT_TRUE(sprite.Borrar(false, false));
  EXPECT_EQ(Pixels(board), original) << "erasing restores the background byte for byte";

  // A second erase has nothing saved to put back.
  *ImagePixel(board.get(), 15, 15) = 7;
  ASSERT_TRUE(sprite.Borrar(false, false));
  EXPECT_EQ(*ImagePixel(board.get(), 15, 15), 7);
}

TEST(Proyector, DrawWithoutSavingKeepsThePlaceOfTheLastSavedDraw) {
  PackedDib strip = MakeStrip();
  PackedDib board = test::IndexedPicture(64, 48);
  const std::vector<std::uint8_t> original = Pixels(board);
  Proyector sprite;
  sprite.Destino(board.get());
  sprite.DeclararTiraExterna(strip.get(), true);
  sprite.CambiarNumCol(3);
  sprite.CambiarNumFil(2);
  ASSERT_TRUE(sprite.Transparencia(0, 0, 0, false, false, true));
  ASSERT_TRUE(sprite.Transparencia(1, 0, 0, false, false, false));
  EXPECT_EQ(*ImagePixel(board.get(), 12, 12), 101);
  ASSERT_TRUE(sprite.Borrar(false, false));
  EXPECT_EQ(Pixels(board), original);
}

TEST(Proyector, ReportsMissingPiecesWithTheirMessages) {
  PackedDib strip = MakeStrip();
  PackedDib board = test::IndexedPicture(64, 48);
  AssertRecorder rec;
  Proyector sprite;
  EXPECT_FALSE(sprite.Transparencia(0, 0, 0, false, false, true));
  EXPECT_EQ(rec.only(),
            "Proyector:Transparencia: El Hdc destino es invalido o no ha sido declarado");
  rec.clear();
  EXPECT_FALSE(sprite.Borrar(false, false));
  EXPECT_EQ(rec.only(), "Proyector::Borrar:Hdc Destino no declarado");

  sprite.Destino(board.get());
  sprite.DeclararTiraExterna(strip.get(), true);
  sprite.CambiarNumCol(3);
  sprite.CambiarNumFil(2);
  rec.clear();
  EXPECT_FALSE(sprite.Transparencia(6, 0, 0, false, false, true));
  EXPECT_EQ(rec.only(), "Proyector::Transparencia:el numero de cuadro enviado es invalido");
  rec.clear();
  EXPECT_FALSE(sprite.TransparenciaParcial(-1, 0, 0, false, false, true, kRopSrcCopy));
  EXPECT_EQ(rec.only(), "Proyector::TransparenciaParcial: el numero de cuadro enviado es invalido");
  rec.clear();
  EXPECT_FALSE(sprite.Transparencia(0, 0, 0, true, false, true));
  EXPECT_EQ(rec.only(),
            "Proyector::Transparencia: El Hwnd destino es invalido o no ha sido declarado");

  rec.clear();
  sprite.DeclararTiraExterna(strip.get(), false);
  EXPECT_FALSE(sprite.Transparencia(0, 0, 0, false, false, false));
  EXPECT_EQ(rec.only(),
            "Proyector:Transparencia: esta función no puede ser llamada con una tira incompleta");
  rec.clear();
  EXPECT_FALSE(sprite.Destino(static_cast<HWND>(nullptr)));
  EXPECT_EQ(rec.only(), "Proyector::Destino: Se declaró un Hwnd nulo");
  rec.clear();
  EXPECT_FALSE(sprite.DeclararTiraExterna(static_cast<HIMAGE>(nullptr), true));
  EXPECT_EQ(rec.only(), "Proyector::DeclararTiraExterna: HdcExterno NULO");
}

TEST(Proyector, InvalidatesTheFrameRectangleOfItsWindow) {
  WNDCLASSA windowClass{};
  windowClass.lpfnWndProc = DefWindowProcA;
  windowClass.hInstance = GetModuleHandle(nullptr);
  windowClass.lpszClassName = "QvProyectorTest";
  RegisterClassA(&windowClass);
  HWND window = CreateWindowA("QvProyectorTest", "", WS_POPUP | WS_VISIBLE, 0, 0, 200, 150,
                              nullptr, nullptr, GetModuleHandle(nullptr), nullptr);
  ASSERT_NE(window, nullptr);
  ValidateRect(window, nullptr);

  PackedDib strip = MakeStrip();
  PackedDib board = test::IndexedPicture(200, 150);
  Proyector sprite;
  sprite.Destino(window);
  sprite.Destino(board.get());
  sprite.DeclararTiraExterna(strip.get(), true);
  sprite.CambiarNumCol(3);
  sprite.CambiarNumFil(2);
  ASSERT_TRUE(sprite.Transparencia(2, 40, 50, true, false, true));
  RECT dirty{};
  ASSERT_TRUE(GetUpdateRect(window, &dirty, FALSE));
  EXPECT_EQ(dirty.left, 40);
  EXPECT_EQ(dirty.top, 50);
  EXPECT_EQ(dirty.right, 70);
  EXPECT_EQ(dirty.bottom, 80);
  DestroyWindow(window);
}

// Onto a drawing context, as the animation widgets draw an opaque strip: the whole frame is
// copied. (The game never draws a strip held in a context, nor a masked one onto a context.)
TEST(Proyector, CopiesAFrameOntoADrawingContext) {
  PackedDib strip = MakeStrip();
  test::Canvas target(64, 48);
  target.Clear(0x00405060);
  Proyector sprite;
  sprite.Destino(target.dc());
  ASSERT_TRUE(sprite.DeclararTiraExterna(strip.get(), false));
  sprite.CambiarNumCol(3);
  sprite.CambiarNumFil(2);
  ASSERT_TRUE(sprite.TransparenciaParcial(4, 5, 5, false, false, false, kRopSrcCopy));
  EXPECT_EQ(target.At(5 + 12, 5 + 12), 0x389768u);  // colour 104: red 56, green 151, blue 104
  EXPECT_EQ(target.At(5 + 2, 5 + 2), 0x00FF00u);    // colour 0, copied too
  EXPECT_EQ(target.At(2, 2), 0x405060u);
}

}  // namespace
}  // namespace qv
