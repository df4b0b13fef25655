// quorvex-cutview: cuts a picture with a die and writes an exploded view and a dealt board.
//
// Usage: quorvex-cutview <picture.bmp> <resource.rf> <die-id> <rows> <cols> <scale> <out-prefix>
// Writes <out-prefix>-exploded.bmp (every piece apart, outlined, on grey) and
// <out-prefix>-board.bmp (the board as a new game deals it), both 24-bit, so that the cut can be
// looked at without Windows.
#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "graphics/packed_dib.h"
#include "graphics/resource_file.h"
#include "puzzle/compose.h"
#include "puzzle/puzzle_model.h"
#include "puzzle/texture.h"
#include "system/binary_file.h"
#include "system/random.h"

namespace {

constexpr std::uint32_t kDefaultTexture = 6000;

bool ParseInt(const char* text, long low, long high, long* out) {
  errno = 0;
  char* end = nullptr;
  const long value = std::strtol(text, &end, 10);
  if (errno != 0 || end == text || *end != '\0' || value < low || value > high) return false;
  *out = value;
  return true;
}

bool ParseScale(const char* text, double* out) {
  errno = 0;
  char* end = nullptr;
  const double value = std::strtod(text, &end);
  if (errno != 0 || end == text || *end != '\0' || !(value > 0.0) || !(value <= 100.0)) return false;
  *out = value;
  return true;
}

// A 24-bit picture in memory, rows from the top.
struct Canvas {
  int width = 0, height = 0;
  std::vector<std::uint8_t> bgr;
  Canvas(int w, int h, std::uint8_t grey) : width(w), height(h), bgr(std::size_t(w) * h * 3, grey) {}
  std::uint8_t* At(int x, int y) { return bgr.data() + (std::size_t(y) * width + x) * 3; }
};

void Put16(std::vector<std::uint8_t>& out, std::uint32_t v) {
  out.push_back(static_cast<std::uint8_t>(v));
  out.push_back(static_cast<std::uint8_t>(v >> 8));
}
void Put32(std::vector<std::uint8_t>& out, std::uint32_t v) {
  Put16(out, v & 0xFFFF);
  Put16(out, v >> 16);
}

// Writes a bottom-up 24-bit .bmp through a temporary file, so an old file is replaced whole or
// not at all.
bool WriteBmp(const std::string& path, int width, int height, const std::uint8_t* rowsFromTop,
              std::size_t sourceStride) {
  const std::uint32_t stride = static_cast<std::uint32_t>(qv::DibRowBytes(width, 24));
  const std::uint32_t imageBytes = stride * static_cast<std::uint32_t>(height);
  std::vector<std::uint8_t> out;
  out.push_back('B');
  out.push_back('M');
  Put32(out, 54 + imageBytes);
  Put32(out, 0);
  Put32(out, 54);
  Put32(out, 40);
  Put32(out, static_cast<std::uint32_t>(width));
  Put32(out, static_cast<std::uint32_t>(height));
  Put16(out, 1);
  Put16(out, 24);
  Put32(out, 0);
  Put32(out, imageBytes);
  Put32(out, 2835);
  Put32(out, 2835);
  Put32(out, 0);
  Put32(out, 0);
  const std::size_t header = out.size();
  out.resize(header + imageBytes, 0);
  for (int y = 0; y < height; ++y) {
    std::memcpy(out.data() + header + std::size_t(height - 1 - y) * stride,
                rowsFromTop + std::size_t(y) * sourceStride, std::size_t(width) * 3);
  }
  const std::string temporary = path + ".tmp";
  qv::BinaryFile file;
  if (!file.CreateWrite(temporary.c_str())) return false;
  const bool written = file.Write(out.data(), out.size()) && file.Flush();
  file.Close();
  if (!written || !qv::ReplaceFileAtomically(temporary.c_str(), path.c_str())) {
    std::remove(temporary.c_str());
    return false;
  }
  return true;
}

// A felt-green tile for when the resource file has no table texture.
qv::PackedDib FeltTile() {
  qv::PackedDib tile;
  tile.Allocate(100, 100);
  qv::DibHeader(tile.get())->biClrUsed = 256;
  for (int c = 0; c < 256; ++c) {
    qv::DibColours(tile.get())[c] = qv::RgbQuad{static_cast<std::uint8_t>(30 + c / 16),
                                                static_cast<std::uint8_t>(90 + c / 6),
                                                static_cast<std::uint8_t>(30 + c / 16), 0};
  }
  qv::RandomSource noise(7);
  for (int i = 0; i < 100 * 100; ++i) {
    qv::DibPixels(tile.get())[i] = static_cast<std::uint8_t>(noise.Uniform() * 256);
  }
  return tile;
}

// Every piece in its grid place but spread apart, drawn over grey with a dark outline where a
// piece pixel meets a pixel of no piece.
Canvas Exploded() {
  const qv::EstadoPuzzle& p = qv::Puzzle();
  const int gap = std::max(8, p.W / 4);
  Canvas canvas(p.NC * (p.W + gap) + gap, p.NR * (p.H + gap) + gap, 0xB4);
  for (int k = 0; k < p.NR * p.NC; ++k) {
    const int left = gap + (k % p.NC) * (p.W + gap);
    const int top = gap + (k / p.NC) * (p.H + gap);
    const auto piece = static_cast<std::uint32_t>(k);
    for (int cy = 0; cy < p.H; ++cy) {
      for (int cx = 0; cx < p.W; ++cx) {
        const std::uint8_t* px = qv::AtlasPixel(piece, cx, cy);
        if (px[3] != 1) continue;
        const bool edge = !qv::AtlasMembership(piece, cx - 1, cy) ||
                          !qv::AtlasMembership(piece, cx + 1, cy) ||
                          !qv::AtlasMembership(piece, cx, cy - 1) ||
                          !qv::AtlasMembership(piece, cx, cy + 1);
        std::uint8_t* out = canvas.At(left + cx, top + cy);
        if (edge) {
          out[0] = out[1] = out[2] = 24;
        } else {
          std::memcpy(out, px, 3);
        }
      }
    }
  }
  return canvas;
}

int Fail(const char* what) {
  std::fprintf(stderr, "quorvex-cutview: %s\n", what);
  return 2;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 8) {
    std::fprintf(stderr,
                 "usage: quorvex-cutview <picture.bmp> <resource.rf> <die-id> <rows> <cols> "
                 "<scale> <out-prefix>\n");
    return 1;
  }
  long dieId = 0, rows = 0, columns = 0;
  double scale = 0;
  if (!ParseInt(argv[3], 0, 0xFFFFFFFFL, &dieId)) return Fail("the die identifier is not a number");
  if (!ParseInt(argv[4], 1, 1000, &rows) || !ParseInt(argv[5], 1, 1000, &columns)) {
    return Fail("rows and columns must be whole numbers from 1 to 1000");
  }
  if (!ParseScale(argv[6], &scale)) return Fail("the scale must be a number above 0 and at most 100");
  const std::string prefix = argv[7];

  if (!qv::OpenResourceFile(argv[2])) return Fail("cannot read the resource file");
  if (!qv::LoadPuzzlePicture(argv[1])) {
    return Fail("cannot read the picture (a 4-, 8- or 24-bit uncompressed .bmp is needed)");
  }
  qv::PackedDib die;
  if (qv::TheResourceFile().FindEntry(static_cast<std::uint32_t>(dieId)) == nullptr ||
      !qv::TheResourceFile().LoadPicture(static_cast<std::uint32_t>(dieId), die)) {
    return Fail("the resource file has no picture with that die identifier");
  }
  const int dieCols = (die.width() - 132) / 200;
  const int dieRows = (die.height() - 132) / 200;
  if (dieCols < 1 || dieRows < 1 || die.width() != dieCols * 200 + 132 ||
      die.height() != dieRows * 200 + 132) {
    return Fail("that picture is not a die: its size is not a grid of 200-pixel cells plus margins");
  }
  die.Reset();

  qv::PackedDib tile;
  if (qv::TheResourceFile().FindEntry(kDefaultTexture) == nullptr ||
      !qv::TheResourceFile().LoadPicture(kDefaultTexture, tile) || tile.width() != 100 ||
      tile.height() != 100 || qv::DibHeader(tile.get())->biBitCount != 8) {
    tile = FeltTile();
  }
  qv::MosaicoPuzzle(tile.get());

  const qv::HIMAGE picture = qv::PuzzlePicture();
  const int pw = static_cast<int>(qv::DibHeader(picture)->biWidth * scale);
  const int ph = static_cast<int>(qv::DibHeader(picture)->biHeight * scale);
  const int boardWidth = std::max(800, 2 * pw);
  const int boardHeight = std::max(600, 2 * ph);
  qv::SeedRandomFromClock();
  qv::CreateBoardArea();
  qv::SetBoardSize(boardWidth, boardHeight);
  if (!qv::ResizeArea(qv::AREA_TABLERO, boardWidth, boardHeight)) return Fail("out of memory");
  qv::Puzzle().NR = static_cast<std::int32_t>(rows);
  qv::Puzzle().NC = static_cast<std::int32_t>(columns);
  qv::Puzzle().scale = scale;
  if (!qv::CrearPuzzle(dieRows, dieCols, static_cast<std::uint32_t>(dieId), true)) {
    return Fail("the cut failed: the scaled picture must be at least 45 pixels each way and "
                "the grid no finer than one pixel a piece");
  }
  qv::ComponerAreaEntera(qv::AREA_TABLERO, false);

  const Canvas exploded = Exploded();
  if (!WriteBmp(prefix + "-exploded.bmp", exploded.width, exploded.height, exploded.bgr.data(),
                std::size_t(exploded.width) * 3)) {
    std::fprintf(stderr, "quorvex-cutview: cannot write %s-exploded.bmp\n", prefix.c_str());
    return 3;
  }
  // The board surface is bottom-up; hand its rows over from the top.
  const qv::AreaSurface* board = qv::GetAreaSurface(qv::AREA_TABLERO);
  std::vector<std::uint8_t> rows24(std::size_t(board->width) * board->height * 3);
  for (int y = 0; y < board->height; ++y) {
    std::memcpy(rows24.data() + std::size_t(y) * board->width * 3,
                board->bits.data() + std::size_t(board->height - 1 - y) * board->stride,
                std::size_t(board->width) * 3);
  }
  if (!WriteBmp(prefix + "-board.bmp", board->width, board->height, rows24.data(),
                std::size_t(board->width) * 3)) {
    std::fprintf(stderr, "quorvex-cutview: cannot write %s-board.bmp\n", prefix.c_str());
    return 3;
  }
  std::printf("%s: %d x %d pieces of %d x %d (core %d x %d), die %dx%d\n", argv[1],
              static_cast<int>(columns), static_cast<int>(rows), qv::Puzzle().W, qv::Puzzle().H,
              qv::Puzzle().cw, qv::Puzzle().ch, dieCols, dieRows);
  qv::ShutdownEngine();
  return 0;
}
