// The puzzle model: the global state, hooks, picture, queries, closing, solving and restoring.
#include "puzzle/puzzle_model.h"

#include <cmath>
#include <cstring>
#include <string>
#include <utility>

#include "graphics/bitmap_file.h"
#include "graphics/himage_ops.h"
#include "puzzle/compose.h"
#include "puzzle/engine_internal.h"
#include "puzzle/texture.h"
#include "system/assert.h"

namespace qv {

namespace {

EstadoPuzzle g_puzzle;
EngineHooks g_hooks;
EngineMemoryStats g_memory;
DisplayFormat g_display;

struct Picture {
  PackedDib dib;
  std::string path;
};
Picture g_picture;

struct PendingCut {
  bool pending = false;
  std::int32_t dieRows = 0;
  std::int32_t dieCols = 0;
  std::uint32_t dieId = 0;
};
PendingCut g_pending;

// Widens a 4-bit bottom-up pixel array to 8 bits, one index per byte.
void Widen4To8(const std::uint8_t* source, std::int64_t sourceStride, std::uint8_t* target,
               std::int64_t targetStride, std::int32_t width, std::int32_t height) {
  for (std::int32_t row = 0; row < height; ++row) {
    const std::uint8_t* in = source + row * sourceStride;
    std::uint8_t* out = target + row * targetStride;
    for (std::int32_t x = 0; x < width; ++x) {
      const std::uint8_t pair = in[x / 2];
      out[x] = (x % 2 == 0) ? static_cast<std::uint8_t>(pair >> 4)
                            : static_cast<std::uint8_t>(pair & 0x0F);
    }
  }
}

}  // namespace

EstadoPuzzle& Puzzle() { return g_puzzle; }

void SetEngineHooks(const EngineHooks& hooks) { g_hooks = hooks; }
const EngineHooks& Hooks() { return g_hooks; }

EngineMemoryStats EngineMemory() { return g_memory; }
void ResetEngineMemoryPeak() { g_memory.peak = g_memory.current; }
void NoteEngineBytes(std::ptrdiff_t delta) {
  g_memory.current = static_cast<std::size_t>(static_cast<std::ptrdiff_t>(g_memory.current) + delta);
  if (g_memory.current > g_memory.peak) g_memory.peak = g_memory.current;
}

namespace engine {

void NotifyArea(int area, int code) {
  if (g_hooks.areaNotify) g_hooks.areaNotify(g_hooks.context, area, code);
}
void InvalidateRect(int area, int x, int y, int width, int height) {
  if (g_hooks.invalidate) g_hooks.invalidate(g_hooks.context, area, x, y, width, height);
}
void ShowClock(std::uint32_t seconds) {
  if (g_hooks.clockDisplay) {
    g_hooks.clockDisplay(g_hooks.context, seconds, static_cast<int>(seconds / 3600),
                         static_cast<int>((seconds / 60) % 60), static_cast<int>(seconds % 60));
  }
}
void StopClockTimer() {
  if (!g_puzzle.clockRunning) return;
  g_puzzle.clockRunning = false;
  if (g_hooks.stopClock) g_hooks.stopClock(g_hooks.context);
}
void StartClockTimer() {
  if (g_puzzle.clockRunning) return;
  g_puzzle.clockRunning = true;
  if (g_hooks.startClock) g_hooks.startClock(g_hooks.context);
}
void SetCursor(EngineCursor cursor) {
  if (g_hooks.setCursor) g_hooks.setCursor(g_hooks.context, cursor);
}
void PlayJoinSound() {
  if (g_hooks.joinSound) g_hooks.joinSound(g_hooks.context);
}
void PreviewChanged() {
  if (g_hooks.previewChanged) g_hooks.previewChanged(g_hooks.context);
}
void MarkModified() {
  g_puzzle.PuzzleModificado = 1;
  if (g_hooks.gameChanged) g_hooks.gameChanged(g_hooks.context);
}

void RecomputeStarts() {
  std::int32_t start = 0;
  for (auto& area : g_puzzle.areas) {
    area.start = start;
    start += area.count;
  }
}

bool ValidArea(int area) { return area >= 0 && area < kAreaCount; }

void ClearPendingCut() { g_pending = PendingCut{}; }

void RunPendingCut() {
  if (!g_pending.pending) return;
  const PendingCut cut = g_pending;
  g_pending.pending = false;
  CrearPuzzle(cut.dieRows, cut.dieCols, cut.dieId, true);
}

}  // namespace engine

// ---- Picture -------------------------------------------------------------------------------

bool LoadPuzzlePicture(const char* path) {
  if (path == nullptr) return false;
  BitmapFile file;
  if (!file.Open(path)) return false;
  BitmapInfoHeader header{};
  if (!file.GetHeader(&header)) return false;
  const int bits = header.biBitCount;
  if (bits != 4 && bits != 8 && bits != 24) return false;
  if (header.biCompression != kBiRgb) return false;
  const std::int32_t width = header.biWidth;
  const bool topDown = header.biHeight < 0;
  const std::int32_t height = topDown ? -header.biHeight : header.biHeight;

  const std::int64_t storedBytes = BitmapFile::ImageSize(header);
  EngineArray<std::uint8_t> stored;
  if (!stored.Allocate(static_cast<std::size_t>(storedBytes))) return false;
  if (!file.ReadPixels(stored.data())) return false;

  const int outBits = bits == 24 ? 24 : 8;
  const std::int64_t storedStride = DibRowBytes(width, bits);
  const std::int64_t outStride = DibRowBytes(width, outBits);
  HIMAGE block = PackedDib::AllocateBlock(static_cast<std::size_t>(outStride * height));
  if (!block) return false;
  PackedDib dib;
  dib.Adopt(block, kDibPixelOffset + static_cast<std::size_t>(outStride * height));

  BitmapInfoHeader out = header;
  out.biHeight = height;
  out.biBitCount = static_cast<std::uint16_t>(outBits);
  out.biSizeImage = static_cast<std::uint32_t>(outStride * height);
  const int colours = file.ColourCount();
  out.biClrUsed = static_cast<std::uint32_t>(colours);
  out.biClrImportant = 0;
  std::memcpy(block, &out, sizeof out);
  if (colours > 0 && !file.ReadColours(0, colours, DibColours(block))) return false;

  // Rows are kept bottom-up, as the packed picture always is. The padding at the end of each
  // row is zeroed rather than left as the allocation or the file had it: whatever writes the
  // whole picture out later copies those bytes too.
  const std::int64_t usedBytes = outBits == 24 ? std::int64_t{width} * 3 : width;
  for (std::int32_t row = 0; row < height; ++row) {
    const std::int32_t from = topDown ? height - 1 - row : row;
    const std::uint8_t* in = stored.data() + from * storedStride;
    std::uint8_t* to = DibPixels(block) + row * outStride;
    if (bits == 4) {
      Widen4To8(in, storedStride, to, outStride, width, 1);
    } else {
      std::memcpy(to, in, static_cast<std::size_t>(usedBytes));
    }
    std::memset(to + usedBytes, 0, static_cast<std::size_t>(outStride - usedBytes));
  }
  return SetPuzzlePicture(std::move(dib), path);
}

bool SetPuzzlePicture(PackedDib&& picture, const char* path) {
  if (!picture) return false;
  const BitmapInfoHeader* header = DibHeader(picture.get());
  if (header->biWidth < 1 || header->biHeight < 1) return false;
  if (header->biBitCount != 8 && header->biBitCount != 24) return false;
  g_picture.dib = std::move(picture);
  g_picture.path = path ? path : "";
  return true;
}

void FreePuzzlePicture() {
  g_picture.dib.Reset();
  g_picture.path.clear();
}

HIMAGE PuzzlePicture() { return g_picture.dib.get(); }
const char* PuzzlePicturePath() { return g_picture.path.c_str(); }

// ---- Set-up values ---------------------------------------------------------------------------

void SetBoardSize(std::int32_t width, std::int32_t height) {
  g_puzzle.boardWidth = width;
  g_puzzle.boardHeight = height;
}

bool SetDisplayFormat(const DisplayFormat& format) {
  if (format.bitCount == 24) {
    g_display = DisplayFormat{};
    return true;
  }
  if (format.bitCount != 16 && format.bitCount != 32) return false;
  ChannelPacking packing;
  if (!PackingForMasks(format.redMask, format.greenMask, format.blueMask, &packing)) return false;
  if (format.bitCount == 16 &&
      ((format.redMask | format.greenMask | format.blueMask) & 0xFFFF0000u) != 0) {
    return false;
  }
  g_display = format;
  return true;
}

const DisplayFormat& CurrentDisplayFormat() { return g_display; }

double FitScaleFor(std::int32_t boardWidth, std::int32_t boardHeight, std::int32_t pictureWidth,
                   std::int32_t pictureHeight) {
  if (pictureWidth < 1 || pictureHeight < 1) return 0.0;
  const double width = boardWidth - 30;
  const double height = boardHeight - 30;
  if (height >= width * pictureHeight / pictureWidth) return width / pictureWidth;
  return height / pictureHeight;
}

double MinScaleFor(std::int32_t pictureWidth, std::int32_t pictureHeight) {
  const std::int32_t shorter = pictureHeight < pictureWidth ? pictureHeight : pictureWidth;
  if (shorter < 1) return 0.0;
  return 1.0 / (static_cast<double>(shorter) / 135.0);
}

// ---- Life of a puzzle ------------------------------------------------------------------------

bool ShowPuzzle(std::int32_t dieRows, std::int32_t dieCols, std::uint32_t dieId) {
  if (!QV_CHECK(HasTableTexture(),
                "se debe llamar la funcion MosaicoPuzzle antes de llamar ShowPuzzle")) {
    return false;
  }
  g_pending.pending = true;
  g_pending.dieRows = dieRows;
  g_pending.dieCols = dieCols;
  g_pending.dieId = dieId;
  if (HIMAGE picture = PuzzlePicture()) {
    const std::int32_t width = ImageWidth(picture);
    const std::int32_t height = ImageHeight(picture);
    g_puzzle.fitScale = FitScaleFor(g_puzzle.boardWidth, g_puzzle.boardHeight, width, height);
    g_puzzle.scale = g_puzzle.fitScale;
    g_puzzle.minScale = MinScaleFor(width, height);
  }
  engine::ShowClock(0);
  return true;
}

bool CutPending() { return g_pending.pending; }

bool NuevoPuzzle(std::int32_t dieRows, std::int32_t dieCols, std::uint32_t dieId) {
  if (!CrearPuzzle(dieRows, dieCols, dieId, true)) return false;
  ComposeAllAreas(true);
  return true;
}

void CerrarPuzzle(bool redraw) {
  EstadoPuzzle& p = g_puzzle;
  engine::ResetDrag();
  engine::FreeDragSurfaces();
  p.atlas.Free();
  p.pieces.Free();
  p.order.Free();
  for (auto& s : p.scratch) s.Free();
  FreePuzzlePicture();
  const bool wasOpen = p.open;
  p.open = false;
  for (int area = 0; area < kAreaCount; ++area) {
    const bool held = p.areas[area].count > 0;
    p.areas[area].count = 0;
    p.areas[area].start = 0;
    if (held && wasOpen) engine::NotifyArea(area, AREA_VACIA);
  }
  if (redraw) {
    ComposeAllAreas(true);
    engine::ShowClock(0);
    engine::PreviewChanged();
  }
  p.PuzzleSinEmpezar = 0;
  // With no game left there is nothing to lose: leaving the empty board asks nothing.
  p.PuzzleModificado = 0;
  engine::StopClockTimer();
  engine::SetCursor(EngineCursor::Arrow);
}

void ResolverPuzzle() {
  EstadoPuzzle& p = g_puzzle;
  if (!p.open || p.PuzzleTerminado) return;
  p.PuzzleTerminado = 1;
  engine::ResetDrag();
  const std::int32_t n = p.NR * p.NC;
  for (auto& area : p.areas) area.count = 0;
  p.areas[AREA_TABLERO].count = n;
  engine::RecomputeStarts();
  // Integer division as the layout has always used; a board smaller than the picture gives a
  // negative origin and the picture hangs off the top-left.
  const std::int32_t ox = (p.boardWidth - p.cw * p.NC) / 2 - p.mx;
  const std::int32_t oy = (p.boardHeight - p.ch * p.NR) / 2 - p.my;
  for (std::int32_t k = 0; k < n; ++k) {
    p.order[static_cast<std::size_t>(k)] = static_cast<std::uint32_t>(k);
    Pieza& piece = p.pieces[static_cast<std::size_t>(k)];
    piece.x = ox + p.cw * (k % p.NC);
    piece.y = oy + p.ch * (k / p.NC);
    piece.group = static_cast<std::uint32_t>(n);
    piece.unselected = 1;
  }
  for (int box = 0; box < kBoxCount; ++box) {
    if (g_hooks.hideBox) g_hooks.hideBox(g_hooks.context, box);
    engine::NotifyArea(box, AREA_VACIA);
  }
  ComposeAllAreas(true);
  p.PuzzleSinEmpezar = 0;
  engine::StopClockTimer();
}

void SolvePuzzleForPlayer() {
  if (!g_puzzle.open || g_puzzle.PuzzleTerminado) return;
  g_puzzle.solutionShown = 1;
  ResolverPuzzle();
  // The assembled picture and its mark differ from any file of this game.
  engine::MarkModified();
}

bool RestorePieces(const std::int32_t counts[kAreaCount], const std::uint32_t* order,
                   const Pieza* pieces) {
  EstadoPuzzle& p = g_puzzle;
  if (!p.open || counts == nullptr || order == nullptr || pieces == nullptr) return false;
  const std::int64_t n = static_cast<std::int64_t>(p.NR) * p.NC;
  std::int64_t total = 0;
  for (int area = 0; area < kAreaCount; ++area) {
    if (counts[area] < 0) return false;
    total += counts[area];
  }
  if (total != n) return false;
  // Each piece exactly once: the first scratch array marks the pieces seen.
  std::uint32_t* seen = p.scratch[0].data();
  std::memset(seen, 0, static_cast<std::size_t>(n) * sizeof(std::uint32_t));
  for (std::int64_t i = 0; i < n; ++i) {
    if (order[i] >= static_cast<std::uint64_t>(n) || seen[order[i]] != 0) return false;
    seen[order[i]] = 1;
  }
  for (std::int64_t k = 0; k < n; ++k) {
    if (pieces[k].x < -kMaxPiecePosition || pieces[k].x > kMaxPiecePosition ||
        pieces[k].y < -kMaxPiecePosition || pieces[k].y > kMaxPiecePosition) {
      return false;
    }
  }
  const bool wasEmpty[kAreaCount] = {
      p.areas[0].count == 0, p.areas[1].count == 0, p.areas[2].count == 0,
      p.areas[3].count == 0, p.areas[4].count == 0, p.areas[5].count == 0,
      p.areas[6].count == 0};
  engine::ResetDrag();
  std::memcpy(p.order.data(), order, static_cast<std::size_t>(n) * sizeof(std::uint32_t));
  std::memcpy(p.pieces.data(), pieces, static_cast<std::size_t>(n) * sizeof(Pieza));
  for (int area = 0; area < kAreaCount; ++area) p.areas[area].count = counts[area];
  engine::RecomputeStarts();
  for (int area = 0; area < kAreaCount; ++area) {
    const bool empty = p.areas[area].count == 0;
    if (empty != wasEmpty[area]) engine::NotifyArea(area, empty ? AREA_VACIA : AREA_OCUPADA);
  }
  return true;
}

// ---- Queries ---------------------------------------------------------------------------------

bool PuzzleAbierto() { return g_puzzle.open; }
std::int32_t PieceCount() { return g_puzzle.PieceCount(); }

const std::uint32_t* AreaSlice(int area) {
  if (!engine::ValidArea(area) || !g_puzzle.open) return nullptr;
  return g_puzzle.order.data() + g_puzzle.areas[area].start;
}

std::int32_t AreaPieceCount(int area) {
  if (!engine::ValidArea(area)) return 0;
  return g_puzzle.areas[area].count;
}

bool FindPiece(std::uint32_t piece, int* area, std::int32_t* indexInSlice) {
  const EstadoPuzzle& p = g_puzzle;
  if (!p.open || piece >= static_cast<std::uint32_t>(p.PieceCount())) return false;
  for (int a = 0; a < kAreaCount; ++a) {
    for (std::int32_t i = 0; i < p.areas[a].count; ++i) {
      if (p.order[static_cast<std::size_t>(p.areas[a].start + i)] == piece) {
        if (area) *area = a;
        if (indexInSlice) *indexInSlice = i;
        return true;
      }
    }
  }
  return false;
}

const std::uint8_t* AtlasPixel(std::uint32_t piece, std::int32_t cx, std::int32_t cy) {
  const EstadoPuzzle& p = g_puzzle;
  if (!p.open || piece >= static_cast<std::uint32_t>(p.PieceCount())) return nullptr;
  if (cx < 0 || cy < 0 || cx >= p.W || cy >= p.H) return nullptr;
  const std::int64_t column = static_cast<std::int64_t>(piece % p.NC) * p.W + cx;
  const std::int64_t rowFromTop = static_cast<std::int64_t>(piece / p.NC) * p.H + cy;
  const std::int64_t row = p.atlasHeightMinus1 - rowFromTop;
  return p.atlas.data() + (row * p.atlasWidth + column) * 4;
}

std::uint8_t AtlasMembership(std::uint32_t piece, std::int32_t cx, std::int32_t cy) {
  const std::uint8_t* pixel = AtlasPixel(piece, cx, cy);
  return pixel ? pixel[3] : 0;
}

void ShutdownEngine() {
  const EngineHooks none;
  g_hooks = none;  // closing quietly: nobody is listening any more
  CerrarPuzzle(false);
  engine::FreeSurfaces();
  for (auto& area : g_puzzle.areas) {
    area.exists = false;
    area.ownerTag = 0;
  }
  engine::ClearPendingCut();
  engine::ForgetTexture();
  g_display = DisplayFormat{};
  EstadoPuzzle& p = g_puzzle;
  p.NC = p.NR = 0;
  p.scale = 1.0;
  p.fitScale = p.minScale = 0.0;
  p.cw = p.ch = p.mx = p.my = p.W = p.H = 0;
  p.atlasWidth = p.atlasHeightMinus1 = 0;
  p.dieId = 0;
  p.dieRows = p.dieCols = 0;
  p.PuzzleSinEmpezar = p.PuzzleTerminado = p.PuzzleModificado = p.RelojPausado = 0;
  p.solutionShown = 0;
  p.SegundosJuego = 0;
  p.hintsUsed = 0;
  p.clockRunning = false;
  p.boardWidth = p.boardHeight = 0;
}

}  // namespace qv
