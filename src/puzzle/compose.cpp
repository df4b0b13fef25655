// ComponerArea and the area surfaces; converting surface and piece pixels to display formats.
#include "puzzle/compose.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "puzzle/engine_internal.h"
#include "puzzle/play.h"
#include "puzzle/texture.h"
#include "system/assert.h"

namespace qv {

namespace {

struct Span {
  std::int64_t x0, y0, x1, y1;  // half-open
};

Span Intersect(const Span& a, const Span& b) {
  return Span{std::max(a.x0, b.x0), std::max(a.y0, b.y0), std::min(a.x1, b.x1),
              std::min(a.y1, b.y1)};
}
bool Empty(const Span& s) { return s.x0 >= s.x1 || s.y0 >= s.y1; }

std::uint8_t* SurfaceRow(AreaSurface& surface, std::int64_t y) {
  return surface.bits.data() + (surface.height - 1 - y) * static_cast<std::int64_t>(surface.stride);
}

const std::uint8_t* AtlasRow(const EstadoPuzzle& p, std::uint32_t piece, std::int64_t cy) {
  const std::int64_t rowFromTop = static_cast<std::int64_t>(piece / static_cast<std::uint32_t>(p.NC)) * p.H + cy;
  const std::int64_t column = static_cast<std::int64_t>(piece % static_cast<std::uint32_t>(p.NC)) * p.W;
  return p.atlas.data() + ((p.atlasHeightMinus1 - rowFromTop) * p.atlasWidth + column) * 4;
}

// A selected piece shows its colour inverted on even cell rows at every third cell column: a
// sparse dotted pattern, the same on the board and while dragged.
inline bool SelectionDot(std::int64_t cx, std::int64_t cy) { return cy % 2 == 0 && cx % 3 == 0; }

void FillTexture(AreaSurface& surface, const Span& r) {
  const std::uint8_t* tile = engine::TextureBgr();
  const std::int64_t width = r.x1 - r.x0;
  for (std::int64_t y = r.y0; y < r.y1; ++y) {
    std::uint8_t* out = SurfaceRow(surface, y) + r.x0 * 3;
    if (!tile) {
      std::memset(out, 0, static_cast<std::size_t>(width * 3));
      continue;
    }
    const std::uint8_t* tileRow = tile + (y % MOSAICO_TAMY) * MOSAICO_TAMX * 3;
    std::int64_t x = r.x0;
    while (x < r.x1) {
      const std::int64_t column = x % MOSAICO_TAMX;
      const std::int64_t run = std::min<std::int64_t>(MOSAICO_TAMX - column, r.x1 - x);
      std::memcpy(out, tileRow + column * 3, static_cast<std::size_t>(run * 3));
      out += run * 3;
      x += run;
    }
  }
}

// Draws one piece's membership pixels over the surface within r.
void DrawPiece(const EstadoPuzzle& p, AreaSurface& surface, std::uint32_t k, const Span& r) {
  const Pieza& piece = p.pieces[k];
  const Span cell{piece.x, piece.y, static_cast<std::int64_t>(piece.x) + p.W,
                  static_cast<std::int64_t>(piece.y) + p.H};
  const Span s = Intersect(cell, r);
  if (Empty(s)) return;
  const bool selected = piece.unselected == 0;
  for (std::int64_t y = s.y0; y < s.y1; ++y) {
    const std::int64_t cy = y - piece.y;
    const std::uint8_t* in = AtlasRow(p, k, cy) + (s.x0 - piece.x) * 4;
    std::uint8_t* out = SurfaceRow(surface, y) + s.x0 * 3;
    for (std::int64_t x = s.x0; x < s.x1; ++x, in += 4, out += 3) {
      if (in[3] != 1) continue;
      if (selected && SelectionDot(x - piece.x, cy)) {
        out[0] = static_cast<std::uint8_t>(255 - in[0]);
        out[1] = static_cast<std::uint8_t>(255 - in[1]);
        out[2] = static_cast<std::uint8_t>(255 - in[2]);
      } else {
        out[0] = in[0];
        out[1] = in[1];
        out[2] = in[2];
      }
    }
  }
}

// Composes one rectangle (inside the surface). The front piece wins wherever its membership
// byte is 1; painting from the back to the front gives exactly that.
void ComposeRect(int area, const Span& r, std::int32_t leaveOut) {
  EstadoPuzzle& p = Puzzle();
  AreaSurface& surface = p.areas[area].surface;
  FillTexture(surface, r);
  if (!p.open) return;
  const AreaPiezas& a = p.areas[area];
  std::uint32_t* met = p.scratch[1].data();
  std::int32_t count = 0;
  for (std::int32_t i = std::max(leaveOut, 0); i < a.count; ++i) {
    const std::uint32_t k = p.order[static_cast<std::size_t>(a.start + i)];
    const Pieza& piece = p.pieces[k];
    const Span cell{piece.x, piece.y, static_cast<std::int64_t>(piece.x) + p.W,
                    static_cast<std::int64_t>(piece.y) + p.H};
    if (!Empty(Intersect(cell, r))) met[count++] = k;
  }
  for (std::int32_t i = count - 1; i >= 0; --i) DrawPiece(p, surface, met[i], r);
}

void WritePixel(std::uint8_t* out, const DisplayFormat& format, const ChannelPacking& packing,
                std::uint8_t blue, std::uint8_t green, std::uint8_t red) {
  if (format.bitCount == 24) {
    out[0] = blue;
    out[1] = green;
    out[2] = red;
    return;
  }
  const std::uint32_t value =
      (static_cast<std::uint32_t>(red / packing.redScale) << packing.redShift) |
      (static_cast<std::uint32_t>(green / packing.greenScale) << packing.greenShift) |
      (static_cast<std::uint32_t>(blue / packing.blueScale) << packing.blueShift);
  out[0] = static_cast<std::uint8_t>(value);
  out[1] = static_cast<std::uint8_t>(value >> 8);
  if (format.bitCount == 32) {
    out[2] = static_cast<std::uint8_t>(value >> 16);
    out[3] = static_cast<std::uint8_t>(value >> 24);
  }
}

bool UsableTarget(const DisplayImage& target, ChannelPacking* packing) {
  if (target.bits == nullptr || target.width < 1 || target.height < 1) return false;
  const int bits = target.format.bitCount;
  if (bits == 24) return target.stride >= target.width * 3;
  if (bits != 16 && bits != 32) return false;
  if (!PackingForMasks(target.format.redMask, target.format.greenMask, target.format.blueMask,
                       packing)) {
    return false;
  }
  return target.stride >= target.width * (bits / 8);
}

std::uint8_t* TargetPixel(DisplayImage& target, std::int64_t x, std::int64_t y) {
  return target.bits + (target.height - 1 - y) * static_cast<std::int64_t>(target.stride) +
         x * (target.format.bitCount / 8);
}

bool ReadyArea(int area) {
  if (!QV_CHECK(engine::ValidArea(area), "fuera de intervalo")) return false;
  return true;
}

bool CreateArea(int area, std::uintptr_t ownerTag) {
  if (!QV_CHECK(HasTableTexture(),
                "se debe llamar la funcion MosaicoPuzzle antes de llamar ShowPuzzle")) {
    return false;
  }
  EstadoPuzzle& p = Puzzle();
  AreaPiezas& a = p.areas[area];
  a.exists = true;
  a.ownerTag = ownerTag;
  // A new window starts empty; with a puzzle open its pieces stay where the order keeps them.
  if (!p.open) {
    a.count = 0;
    engine::RecomputeStarts();
  }
  engine::ResetDrag();
  return true;
}

}  // namespace

bool PackingForMasks(std::uint32_t red, std::uint32_t green, std::uint32_t blue,
                     ChannelPacking* out) {
  const std::uint32_t masks[3] = {red, green, blue};
  int shifts[3];
  int scales[3];
  for (int c = 0; c < 3; ++c) {
    if (masks[c] == 0) return false;
    shifts[c] = std::countr_zero(masks[c]);
    const std::uint32_t levels = (masks[c] >> shifts[c]) + 1;
    // Contiguous channels of at most 8 bits; anything else is not a display format.
    if ((levels & (levels - 1)) != 0 || levels > 256) return false;
    scales[c] = static_cast<int>(256 / levels);
  }
  ChannelPacking packing;
  packing.redShift = shifts[0];
  packing.greenShift = shifts[1];
  packing.blueShift = shifts[2];
  packing.redScale = scales[0];
  packing.greenScale = scales[1];
  packing.blueScale = scales[2];
  if (out) *out = packing;
  return true;
}

// ---- Areas -------------------------------------------------------------------------------

bool CreateBoxArea(int box, std::uintptr_t ownerTag) {
  if (!QV_CHECK(box >= 0 && box < kBoxCount,
                "Valor de Id invalido, supera el numero de boxs especificado")) {
    return false;
  }
  return CreateArea(box, ownerTag);
}

bool CreateBoardArea() { return CreateArea(AREA_TABLERO, 0); }

void DestroyArea(int area) {
  if (!ReadyArea(area)) return;
  EstadoPuzzle& p = Puzzle();
  if (DragMode() != 0 && DragArea() == area) engine::ResetDrag();
  AreaSurface& s = p.areas[area].surface;
  s.bits.Free();
  s.width = s.height = s.stride = 0;
  s.header = BitmapInfoHeader{};
  p.areas[area].exists = false;
}

bool ResizeArea(int area, std::int32_t width, std::int32_t height) {
  if (!ReadyArea(area)) return false;
  EstadoPuzzle& p = Puzzle();
  AreaSurface& s = p.areas[area].surface;
  if (width < 1 || height < 1) {
    s.bits.Free();
    s.width = s.height = s.stride = 0;
    s.header = BitmapInfoHeader{};
    if (area == AREA_TABLERO) engine::RunPendingCut();
    return true;
  }
  const std::int64_t stride = DibRowBytes(width, 24);
  EngineArray<std::uint8_t> bits;
  if (!bits.Allocate(static_cast<std::size_t>(stride * height))) return false;

  // Later sizes keep the part of the old picture that still fits.
  const std::int32_t keptWidth = (s.width >= 2 && s.height >= 2) ? std::min(s.width, width) : 0;
  const std::int32_t keptHeight = keptWidth > 0 ? std::min(s.height, height) : 0;
  for (std::int32_t y = 0; y < keptHeight; ++y) {
    std::memcpy(bits.data() + (height - 1 - y) * stride,
                s.bits.data() + static_cast<std::int64_t>(s.height - 1 - y) * s.stride,
                static_cast<std::size_t>(keptWidth) * 3);
  }
  s.bits = std::move(bits);
  s.width = width;
  s.height = height;
  s.stride = static_cast<std::int32_t>(stride);
  s.header = BitmapInfoHeader{};
  s.header.biSize = 40;
  s.header.biWidth = width;
  s.header.biHeight = height;
  s.header.biPlanes = 1;
  s.header.biBitCount = 24;
  s.header.biCompression = kBiRgb;
  s.header.biSizeImage = static_cast<std::uint32_t>(stride * height);

  const bool wasOpen = p.open;
  if (area == AREA_TABLERO) engine::RunPendingCut();
  if (p.open != wasOpen || keptWidth == 0) {
    ComponerAreaEntera(area, false);
  } else {
    if (keptWidth < width) ComponerArea(area, keptWidth, 0, width - keptWidth, height, false, false);
    if (keptHeight < height) ComponerArea(area, 0, keptHeight, width, height - keptHeight, false, false);
  }
  return true;
}

const AreaSurface* GetAreaSurface(int area) {
  if (!engine::ValidArea(area)) return nullptr;
  return &Puzzle().areas[area].surface;
}

// ---- Composing -------------------------------------------------------------------------------

void ComponerArea(int area, std::int32_t x, std::int32_t y, std::int32_t width,
                  std::int32_t height, bool show, bool leaveOutFront) {
  ComposeAreaLeavingOut(area, x, y, width, height, show, leaveOutFront ? 1 : 0);
}

void ComposeAreaLeavingOut(int area, std::int32_t x, std::int32_t y, std::int32_t width,
                           std::int32_t height, bool show, std::int32_t leaveOut) {
  if (!ReadyArea(area)) return;
  EstadoPuzzle& p = Puzzle();
  AreaSurface& surface = p.areas[area].surface;
  if (!surface.bits) return;
  const Span asked{x, y, static_cast<std::int64_t>(x) + width, static_cast<std::int64_t>(y) + height};
  const Span r = Intersect(asked, Span{0, 0, surface.width, surface.height});
  if (Empty(r)) return;
  const std::int64_t w = r.x1 - r.x0;
  const std::int64_t h = r.y1 - r.y0;
  if (p.open && w > p.W && h > p.H) {
    // Large rectangles go in 5 x 5 tiles so that each tile only walks the pieces meeting it.
    // The tiles are laid from the area's origin, not the rectangle's: a rectangle away from
    // 0, 0 is covered with more than was asked. Kept as the program has always done it.
    const std::int64_t tw = w / 5;
    const std::int64_t th = h / 5;
    for (int j = 0; j < 5; ++j) {
      const std::int64_t ty = j * th;
      const std::int64_t tileHeight = j < 4 ? th : r.y0 + h - 4 * th;
      for (int i = 0; i < 5; ++i) {
        const std::int64_t tx = i * tw;
        const std::int64_t tileWidth = i < 4 ? tw : r.x0 + w - 4 * tw;
        const Span tile{tx, ty, tx + tileWidth, ty + tileHeight};
        if (!Empty(tile)) ComposeRect(area, tile, leaveOut);
      }
    }
  } else {
    ComposeRect(area, r, leaveOut);
  }
  if (show) {
    engine::InvalidateRect(area, static_cast<int>(r.x0), static_cast<int>(r.y0),
                           static_cast<int>(w), static_cast<int>(h));
  }
}

void ComponerAreaEntera(int area, bool show) {
  if (!ReadyArea(area)) return;
  const AreaSurface& s = Puzzle().areas[area].surface;
  ComponerArea(area, 0, 0, s.width, s.height, show, false);
}

void ComposeAllAreas(bool show) {
  for (int area = 0; area < kAreaCount; ++area) ComponerAreaEntera(area, show);
}

// ---- Display-format images ---------------------------------------------------------------

bool ComposeDraggedPiece(DisplayImage& target, std::int32_t dx, std::int32_t dy,
                         std::uint32_t piece) {
  const EstadoPuzzle& p = Puzzle();
  if (!p.open || piece >= static_cast<std::uint32_t>(p.PieceCount())) return false;
  ChannelPacking packing;
  if (!UsableTarget(target, &packing)) return false;
  const Span cell{dx, dy, static_cast<std::int64_t>(dx) + p.W, static_cast<std::int64_t>(dy) + p.H};
  const Span s = Intersect(cell, Span{0, 0, target.width, target.height});
  if (Empty(s)) return true;
  const bool selected = p.pieces[piece].unselected == 0;
  const int bytes = target.format.bitCount / 8;
  for (std::int64_t y = s.y0; y < s.y1; ++y) {
    const std::int64_t cy = y - dy;
    const std::uint8_t* in = AtlasRow(p, piece, cy) + (s.x0 - dx) * 4;
    std::uint8_t* out = TargetPixel(target, s.x0, y);
    for (std::int64_t x = s.x0; x < s.x1; ++x, in += 4, out += bytes) {
      if (in[3] != 1) continue;
      if (selected && SelectionDot(x - dx, cy)) {
        WritePixel(out, target.format, packing, static_cast<std::uint8_t>(255 - in[0]),
                   static_cast<std::uint8_t>(255 - in[1]), static_cast<std::uint8_t>(255 - in[2]));
      } else {
        WritePixel(out, target.format, packing, in[0], in[1], in[2]);
      }
    }
  }
  return true;
}

namespace {

// Copies one cell row of piece k (cell at cx0, cy0 in the target; target row y) into the
// target, clipped to columns x0 ... x1.
inline void AlphaRow(const EstadoPuzzle& p, AlphaImage& target, std::uint32_t k, std::int64_t cx0,
                     std::int64_t cy0, std::int64_t y, std::int64_t x0, std::int64_t x1,
                     bool selected) {
  const std::int64_t cy = y - cy0;
  const std::uint8_t* in = AtlasRow(p, k, cy) + (x0 - cx0) * 4;
  std::uint32_t* out = target.pixels + (target.height - 1 - y) * static_cast<std::int64_t>(target.width) + x0;
  const std::int64_t run = x1 - x0;
  if (!selected) {
    // Branch-free so that the compiler can take several pixels at a time.
    for (std::int64_t x = 0; x < run; ++x) {
      std::uint32_t v;
      std::memcpy(&v, in + x * 4, 4);
      const std::uint32_t keep = (v >> 24) == 1 ? 0xFFFFFFFFu : 0u;
      out[x] = ((v | 0xFF000000u) & keep) | (out[x] & ~keep);
    }
    return;
  }
  for (std::int64_t x = 0; x < run; ++x) {
    const std::uint8_t* px = in + x * 4;
    if (px[3] != 1) continue;
    std::uint32_t v = static_cast<std::uint32_t>(px[0]) | static_cast<std::uint32_t>(px[1]) << 8 |
                      static_cast<std::uint32_t>(px[2]) << 16;
    if (SelectionDot(x0 + x - cx0, cy)) v ^= 0x00FFFFFFu;
    out[x] = v | 0xFF000000u;
  }
}

// Whether the pieces lie as they do in the picture, each (column x cw, row x ch) from one
// origin, and none is selected: then their membership pixels never overlap (the die shares
// every pixel out to exactly one piece), so the order of drawing does not matter. A joined
// group always lies so.
bool LiesAsInThePicture(const EstadoPuzzle& p, const std::uint32_t* pieces, std::int32_t count) {
  if (count < 1) return false;
  const auto nc = static_cast<std::uint32_t>(p.NC);
  const auto originOf = [&](std::uint32_t k, std::int64_t* ox, std::int64_t* oy) {
    *ox = p.pieces[k].x - static_cast<std::int64_t>(k % nc) * p.cw;
    *oy = p.pieces[k].y - static_cast<std::int64_t>(k / nc) * p.ch;
  };
  std::int64_t x0, y0;
  originOf(pieces[0], &x0, &y0);
  for (std::int32_t i = 0; i < count; ++i) {
    std::int64_t x, y;
    originOf(pieces[i], &x, &y);
    if (x != x0 || y != y0 || p.pieces[pieces[i]].unselected == 0) return false;
  }
  return true;
}

}  // namespace

bool ComputeMemberSpans(EngineArray<std::uint32_t>& spans) {
  const EstadoPuzzle& p = Puzzle();
  if (!p.open || p.W < 1 || p.H < 1) return false;
  if (p.W > 0xFFFF || p.NC < 1) return false;
  const std::size_t rows = static_cast<std::size_t>(p.PieceCount()) * static_cast<std::size_t>(p.H);
  if (!spans.Allocate(rows)) return false;
  const auto nc = static_cast<std::uint32_t>(p.NC);
  for (std::int32_t k = 0; k < p.PieceCount(); ++k) {
    const std::uint32_t r = static_cast<std::uint32_t>(k) / nc, c = static_cast<std::uint32_t>(k) % nc;
    for (std::int32_t cy = 0; cy < p.H; ++cy) {
      const std::uint8_t* in = AtlasRow(p, static_cast<std::uint32_t>(k), cy);
      std::int32_t first = 0;
      while (first < p.W && in[first * 4 + 3] != 1) ++first;
      std::int32_t end = p.W;
      while (end > first && in[(end - 1) * 4 + 3] != 1) --end;
      const std::size_t at = (static_cast<std::size_t>(r) * p.H + cy) * nc + c;
      spans[at] = static_cast<std::uint32_t>(first) | static_cast<std::uint32_t>(end) << 16;
    }
  }
  return true;
}

// How many image rows ahead composing the drag image asks for the atlas rows it will read.
constexpr std::int64_t kPrefetchRows = 2;

bool ComposeAlphaPieces(AlphaImage& target, const std::uint32_t* pieces, std::int32_t count,
                        std::int32_t originX, std::int32_t originY, const std::uint32_t* spans) {
  // The atlas holds blue, green, red and membership bytes, so on a little-endian machine (every
  // target of the game) a membership pixel becomes an opaque layered-window pixel by setting
  // its top byte.
  static_assert(std::endian::native == std::endian::little, "pixels are read as words");
  const EstadoPuzzle& p = Puzzle();
  if (!p.open || target.pixels == nullptr || target.width < 1 || target.height < 1 ||
      count < 0 || count > p.PieceCount()) {
    return false;
  }
  const std::int64_t width = target.width;
  for (std::int32_t i = 0; i < count; ++i) {
    if (pieces[i] >= static_cast<std::uint32_t>(p.PieceCount())) return false;
  }
  const Span whole{0, 0, target.width, target.height};
  if (LiesAsInThePicture(p, pieces, count)) {
    // One image row at a time, cleared and filled while it is in the cache, from the atlas
    // rows of the (at most two) rows of pieces whose cells meet it; the atlas holds the cells
    // of a row of pieces side by side, so it is read in order.
    const auto nc = static_cast<std::uint32_t>(p.NC);
    std::uint32_t* present = Puzzle().scratch[3].data();
    std::memset(present, 0, static_cast<std::size_t>(p.PieceCount()) * sizeof(std::uint32_t));
    std::int64_t firstRow = pieces[0] / nc, lastRow = firstRow;
    std::uint32_t firstColumn = pieces[0] % nc, lastColumn = firstColumn;
    for (std::int32_t i = 0; i < count; ++i) {
      present[pieces[i]] = 1;
      firstRow = std::min<std::int64_t>(firstRow, pieces[i] / nc);
      lastRow = std::max<std::int64_t>(lastRow, pieces[i] / nc);
      firstColumn = std::min(firstColumn, pieces[i] % nc);
      lastColumn = std::max(lastColumn, pieces[i] % nc);
    }
    const Pieza& first = p.pieces[pieces[0]];
    const std::int64_t gx = first.x - static_cast<std::int64_t>(pieces[0] % nc) * p.cw - originX;
    const std::int64_t gy = first.y - static_cast<std::int64_t>(pieces[0] / nc) * p.ch - originY;
    const auto floorDiv = [](std::int64_t a, std::int64_t b) {
      return a >= 0 ? a / b : -((-a + b - 1) / b);
    };
    for (std::int64_t y = 0; y < target.height; ++y) {
      std::uint32_t* outRow = target.pixels + (target.height - 1 - y) * width;
      std::memset(outRow, 0, static_cast<std::size_t>(width) * 4);
      // Rows r of pieces with gy + r ch <= y < gy + r ch + H.
      const std::int64_t rFrom = std::max(firstRow, floorDiv(y - gy - p.H, p.ch) + 1);
      const std::int64_t rTo = std::min(lastRow, floorDiv(y - gy, p.ch));
      for (std::int64_t r = rFrom; r <= rTo; ++r) {
        const std::int64_t cy = y - (gy + r * p.ch);
        const std::uint32_t* atlasRow = reinterpret_cast<const std::uint32_t*>(
            p.atlas.data() + (p.atlasHeightMinus1 - (r * p.H + cy)) * p.atlasWidth * 4);
        for (std::uint32_t c = firstColumn; c <= lastColumn; ++c) {
          const std::int64_t k = r * nc + c;
          if (!present[k]) continue;
          const std::int64_t cx0 = gx + static_cast<std::int64_t>(c) * p.cw;
          // Only the part of the cell row that holds member pixels needs reading.
          std::int64_t spanStart = 0, spanEnd = p.W;
          if (spans) {
            const std::uint32_t span = spans[(r * p.H + cy) * nc + c];
            spanStart = span & 0xFFFF;
            spanEnd = span >> 16;
          }
          const std::int64_t x0 = std::max<std::int64_t>(cx0 + spanStart, 0);
          const std::int64_t x1 = std::min<std::int64_t>(cx0 + spanEnd, target.width);
          if (x0 >= x1) continue;
          const std::uint32_t* __restrict in = atlasRow + static_cast<std::int64_t>(c) * p.W + (x0 - cx0);
          std::uint32_t* __restrict out = outRow + x0;
          // The image's rows jump between two rows of pieces and from cell to cell, which the
          // processor's own prefetching follows poorly: ask for this span two rows on now.
          if (cy + kPrefetchRows < p.H) {
            const std::uint32_t* ahead = in - kPrefetchRows * p.atlasWidth;
            for (std::int64_t x = 0; x < x1 - x0; x += 16) __builtin_prefetch(ahead + x);
          }
          // The pieces' pixels never overlap here and the row starts clear, so or-ing in the
          // opaque member pixels is enough.
          for (std::int64_t x = 0; x < x1 - x0; ++x) {
            const std::uint32_t v = in[x];
            out[x] |= (v >> 24) == 1 ? (v | 0xFF000000u) : 0u;
          }
        }
      }
    }
    return true;
  }
  std::memset(target.pixels, 0, static_cast<std::size_t>(width * target.height) * 4);
  // From the back of the run to its front, so the first piece wins where cells overlap.
  for (std::int32_t i = count - 1; i >= 0; --i) {
    const std::uint32_t k = pieces[i];
    const Pieza& piece = p.pieces[k];
    const std::int64_t cx0 = static_cast<std::int64_t>(piece.x) - originX;
    const std::int64_t cy0 = static_cast<std::int64_t>(piece.y) - originY;
    const Span s = Intersect(Span{cx0, cy0, cx0 + p.W, cy0 + p.H}, whole);
    for (std::int64_t y = s.y0; y < s.y1; ++y) {
      AlphaRow(p, target, k, cx0, cy0, y, s.x0, s.x1, piece.unselected == 0);
    }
  }
  return true;
}

bool CopySurfaceToDisplay(DisplayImage& target, std::int32_t dx, std::int32_t dy, int area,
                          std::int32_t sx, std::int32_t sy, std::int32_t width,
                          std::int32_t height) {
  if (!engine::ValidArea(area)) return false;
  ChannelPacking packing;
  if (!UsableTarget(target, &packing)) return false;
  AreaSurface& surface = Puzzle().areas[area].surface;
  if (!surface.bits) return false;
  // Clip in source coordinates against both pictures.
  Span src{sx, sy, static_cast<std::int64_t>(sx) + width, static_cast<std::int64_t>(sy) + height};
  src = Intersect(src, Span{0, 0, surface.width, surface.height});
  const std::int64_t shiftX = static_cast<std::int64_t>(dx) - sx;
  const std::int64_t shiftY = static_cast<std::int64_t>(dy) - sy;
  src = Intersect(src, Span{-shiftX, -shiftY, target.width - shiftX, target.height - shiftY});
  if (Empty(src)) return true;
  const int bytes = target.format.bitCount / 8;
  for (std::int64_t y = src.y0; y < src.y1; ++y) {
    const std::uint8_t* in = SurfaceRow(surface, y) + src.x0 * 3;
    std::uint8_t* out = TargetPixel(target, src.x0 + shiftX, y + shiftY);
    if (bytes == 3) {
      std::memcpy(out, in, static_cast<std::size_t>((src.x1 - src.x0) * 3));
      continue;
    }
    for (std::int64_t x = src.x0; x < src.x1; ++x, in += 3, out += bytes) {
      WritePixel(out, target.format, packing, in[0], in[1], in[2]);
    }
  }
  return true;
}

namespace engine {

void FreeSurfaces() {
  for (auto& area : Puzzle().areas) {
    area.surface.bits.Free();
    area.surface.width = area.surface.height = area.surface.stride = 0;
    area.surface.header = BitmapInfoHeader{};
  }
}

}  // namespace engine

}  // namespace qv
