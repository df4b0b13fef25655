// CrearPuzzle: cutting the picture into the piece atlas with the die mask, and dealing a game.
#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>

#include "graphics/himage_ops.h"
#include "graphics/resource_file.h"
#include "puzzle/engine_internal.h"
#include "puzzle/puzzle_model.h"
#include "system/assert.h"
#include "system/random.h"

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define QV_POISON_GAPS 1
#endif
#endif
#if defined(__SANITIZE_ADDRESS__) && !defined(QV_POISON_GAPS)
#define QV_POISON_GAPS 1
#endif
#ifdef QV_POISON_GAPS
#include <sanitizer/asan_interface.h>
#endif

namespace qv {

namespace {

static_assert(std::endian::native == std::endian::little,
              "atlas pixels are written as blue, green, red, membership words");

// Far beyond any picture the pickers offer; a saved game asking for more is refused.
constexpr double kMaxScaledSide = 32768.0;
constexpr std::uint64_t kMaxAtlasBytes = std::uint64_t{1} << 30;
constexpr std::int32_t kDieReach = kDieCell + 2 * kDieMargin - 1;  // 331, last column of a cell

// One of the cut's working maps: a typed part of the block they share.
template <class T>
struct MapSlice {
  T* values = nullptr;
  T* data() const { return values; }
  T& operator[](std::size_t i) const { return values[i]; }
};

// The cut's dozen working maps, each small beside the atlas, in one block instead of a dozen:
// a block costs more to have and to give back than most maps cost to fill. Under
// AddressSanitizer the gap after each map stays poisoned, so running off the end of one is
// still caught as it would be between separate blocks.
class MapBlock {
 public:
  template <class T>
  void Add(MapSlice<T>& slice, std::size_t count) {
    static_assert(alignof(T) <= kAlign, "maps hold plain numbers");
    if (count_ == kMaxParts || count == 0 || count > SIZE_MAX / 2 / sizeof(T)) {
      valid_ = false;
      return;
    }
    parts_[count_] = Part{&slice, &Place<T>, count * sizeof(T)};
    ++count_;
  }
  bool Allocate() {
    std::size_t total = 0;
    for (int i = 0; i < count_ && valid_; ++i) {
      const std::size_t rounded = (parts_[i].bytes + kAlign - 1) / kAlign * kAlign;
      if (rounded > SIZE_MAX - total - kGap) valid_ = false;
      total += rounded + kGap;
    }
    if (!valid_ || !block_.Allocate(total)) return false;
    std::size_t at = 0;
    for (int i = 0; i < count_; ++i) {
      parts_[i].place(parts_[i].slice, block_.data() + at);
      const std::size_t end = at + parts_[i].bytes;  // the first byte past the map
      at += (parts_[i].bytes + kAlign - 1) / kAlign * kAlign + kGap;
#ifdef QV_POISON_GAPS
      __asan_poison_memory_region(block_.data() + end, at - end);
#else
      static_cast<void>(end);
#endif
    }
    return true;
  }

 private:
  struct Part {
    void* slice;
    void (*place)(void* slice, std::uint8_t* at);
    std::size_t bytes;
  };
  template <class T>
  static void Place(void* slice, std::uint8_t* at) {
    static_cast<MapSlice<T>*>(slice)->values = reinterpret_cast<T*>(at);
  }
  static constexpr std::size_t kAlign = 8;  // the sanitizer's granule, and room for any map
  static constexpr std::size_t kGap = 32;
  static constexpr int kMaxParts = 16;
  EngineArray<std::uint8_t> block_;
  Part parts_[kMaxParts] = {};
  int count_ = 0;
  bool valid_ = true;
};

// Everything the pixel loop needs, computed once per cut.
struct CutPlan {
  std::int32_t pw = 0, ph = 0;  // scaled picture
  std::int32_t NC = 0, NR = 0, cw = 0, ch = 0, mx = 0, my = 0, W = 0, H = 0;
  std::int32_t dr = 0, dc = 0;
  std::int32_t firstX = 0, firstY = 0;
  int bits = 8;
  const std::uint8_t* picture = nullptr;  // bottom-up rows
  std::int64_t pictureStride = 0;
  std::int32_t sh = 0;
  const std::uint8_t* die = nullptr;  // bottom-up rows of labels
  std::int32_t dieWidth = 0, dieHeight = 0;
  std::uint32_t palette[256] = {};    // colour table as atlas words, membership set
  MapSlice<std::int32_t> sourceColumn;  // byte offset in a picture row, per picture column
  MapSlice<std::int32_t> sourceRow;     // top-down picture row, per picture row
  MapSlice<std::int32_t> dieColumn;     // die column of each cell column (0 ... 331)
  MapSlice<std::int32_t> dieRow;        // die row of each cell row
  // Die column with the die cell's offset, per die column q and cell column x.
  MapSlice<std::int32_t> dieIndex;
  // Inner pieces take exactly their own label, and die cell (p, q) always cuts the same shape:
  // all ones where the die holds the own label, per (p, q) and cell pixel. The pixel loop then
  // only masks picture words, which the compiler turns into vector code.
  MapSlice<std::uint32_t> ownMask;
  // For pieces on the border: which of the five labels of die cell (p, q) each cell pixel
  // holds (kOwn ... kLeft), or kOther.
  MapSlice<std::uint8_t> labelClass;
  // Without the tables: the same classes as runs, per die cell (p, q) and cell row y (row
  // (p * dc + q) * H + y), for the die cells the grid uses. Row r's runs are classRunFirst[r]
  // up to classRunFirst[r + 1], each ending (exclusive) at classRunEnd. A die row is a few runs
  // long, so the pixel loop copies or clears whole runs instead of reading the die per pixel.
  MapSlice<std::int32_t> classRunFirst;
  MapSlice<std::int32_t> classRunEnd;
  MapSlice<std::uint8_t> classRunClass;
  // Scaled picture rows as atlas words, kept in a ring of ringRows slots (slot py mod ringRows,
  // with the row each slot holds): a row of pieces needs H rows, and the next row of pieces
  // reuses most of them. The ring is kept small beside the atlas for coarse grids.
  MapSlice<std::uint32_t> ring;
  MapSlice<std::int32_t> ringRow;
  std::int32_t ringRows = 0;
  // The scaled row as runs of equal source columns: an enlarged picture repeats each source
  // pixel, which is then looked up once a run.
  MapSlice<std::int32_t> runSource;
  MapSlice<std::int32_t> runLength;
  std::int32_t runs = 0;
  MapBlock maps;  // every map above but the class runs
  MapBlock runMaps;  // the class runs, counted once the other maps are made
  // The per-die-cell tables pay off only when many pieces share each die cell; a coarse grid
  // reads the die pixel by pixel instead, so that the tables never grow beside the atlas.
  bool useTables = false;
};

enum LabelClass : std::uint8_t { kOther, kOwn, kTop, kRight, kBottom, kLeft };

// The die position of cell offset v along an axis with core c and margin m. The core maps onto
// the die cell's 200 pixels and each margin onto the die's 66-pixel margin. Computed exactly in
// integers: the same value as the real-number mapping truncated, so that two neighbours reading
// the die for the same picture pixel always land on the same die pixel.
std::int32_t DiePosition(std::int32_t v, std::int32_t core, std::int32_t margin) {
  const std::int64_t numerator =
      static_cast<std::int64_t>(v - margin) * kDieCell + static_cast<std::int64_t>(kDieMargin) * core;
  std::int64_t position = numerator >= 0 ? numerator / core : -((-numerator + core - 1) / core);
  if (position > kDieReach) position = kDieReach;
  if (position < 0) position = 0;
  return static_cast<std::int32_t>(position);
}

// The labels that piece (i, j) may claim, and where along its cell it may claim them.
struct PieceLabels {
  int own, top, right, bottom, left;
};

PieceLabels LabelsFor(const CutPlan& plan, std::int32_t p, std::int32_t q) {
  const int b = plan.dr * plan.dc + 1;
  PieceLabels l;
  l.own = p * plan.dc + q + 1;
  l.top = p > 0 ? l.own - plan.dc : b + q;
  l.right = q != plan.dc - 1 ? l.own + 1 : b + plan.dc + p;
  l.bottom = p != plan.dr - 1 ? l.own + plan.dc : b + plan.dc + plan.dr + q;
  l.left = q != 0 ? l.own - 1 : b + 2 * plan.dc + plan.dr + p;
  return l;
}

LabelClass ClassOf(int d, const PieceLabels& l) {
  return d == l.own      ? kOwn
         : d == l.top    ? kTop
         : d == l.right  ? kRight
         : d == l.bottom ? kBottom
         : d == l.left   ? kLeft
                         : kOther;
}

const std::uint8_t* DieLine(const CutPlan& plan, std::int32_t dieTop) {
  return plan.die + static_cast<std::int64_t>(plan.dieHeight - 1 - dieTop) * plan.dieWidth;
}

// Counts the runs (fill false) or records them (fill true) for every die cell the grid uses.
std::size_t BuildClassRuns(CutPlan& plan, bool fill) {
  const auto W = static_cast<std::size_t>(plan.W);
  const auto H = static_cast<std::size_t>(plan.H);
  std::size_t runs = 0;
  for (std::int32_t p = 0; p < plan.dr; ++p) {
    for (std::int32_t q = 0; q < plan.dc; ++q) {
      const bool used = p < plan.NR && q < plan.NC;
      const PieceLabels l = LabelsFor(plan, p, q);
      const std::int32_t* dieIndex = plan.dieIndex.data() + q * W;
      for (std::size_t y = 0; y < H; ++y) {
        const std::size_t row = static_cast<std::size_t>(p * plan.dc + q) * H + y;
        if (fill) plan.classRunFirst[row] = static_cast<std::int32_t>(runs);
        if (!used) continue;
        const std::uint8_t* dieLine = DieLine(plan, plan.dieRow[y] + p * kDieCell);
        LabelClass current = ClassOf(dieLine[dieIndex[0]], l);
        for (std::size_t x = 1; x <= W; ++x) {
          const LabelClass next = x < W ? ClassOf(dieLine[dieIndex[x]], l) : kOther;
          if (x < W && next == current) continue;
          if (fill) {
            plan.classRunEnd[runs] = static_cast<std::int32_t>(x);
            plan.classRunClass[runs] = current;
          }
          ++runs;
          current = next;
        }
      }
    }
  }
  if (fill) plan.classRunFirst[static_cast<std::size_t>(plan.dr * plan.dc) * H] = static_cast<std::int32_t>(runs);
  return runs;
}

bool BuildMaps(CutPlan& plan, std::int32_t sw, double scale) {
  const auto W = static_cast<std::size_t>(plan.W);
  const auto H = static_cast<std::size_t>(plan.H);
  const auto cells = static_cast<std::size_t>(plan.dr) * static_cast<std::size_t>(plan.dc);
  plan.maps.Add(plan.sourceColumn, static_cast<std::size_t>(plan.pw));
  plan.maps.Add(plan.sourceRow, static_cast<std::size_t>(plan.ph));
  plan.maps.Add(plan.dieColumn, W);
  plan.maps.Add(plan.dieRow, H);
  plan.maps.Add(plan.dieIndex, static_cast<std::size_t>(plan.dc) * W);
  if (plan.useTables) {
    plan.maps.Add(plan.ownMask, cells * H * W);
    plan.maps.Add(plan.labelClass, cells * H * W);
  }
  plan.maps.Add(plan.ring, static_cast<std::size_t>(plan.ringRows) * static_cast<std::size_t>(plan.pw));
  plan.maps.Add(plan.ringRow, static_cast<std::size_t>(plan.ringRows));
  plan.maps.Add(plan.runSource, static_cast<std::size_t>(plan.pw));
  plan.maps.Add(plan.runLength, static_cast<std::size_t>(plan.pw));
  if (!plan.maps.Allocate()) return false;
  const int bytesPerPixel = plan.bits / 8;
  bool inRange = true;
  for (std::int32_t x = 0; x < plan.pw; ++x) {
    std::int32_t column = static_cast<std::int32_t>(std::trunc(x / scale));
    if (column > sw - 1) column = sw - 1;
    inRange = inRange && column >= 0;
    plan.sourceColumn[static_cast<std::size_t>(x)] = column * bytesPerPixel;
  }
  plan.runs = 0;
  for (std::int32_t x = 0; x < plan.pw; ++x) {
    const std::int32_t offset = plan.sourceColumn[static_cast<std::size_t>(x)];
    if (plan.runs > 0 && plan.runSource[static_cast<std::size_t>(plan.runs - 1)] == offset) {
      ++plan.runLength[static_cast<std::size_t>(plan.runs - 1)];
    } else {
      plan.runSource[static_cast<std::size_t>(plan.runs)] = offset;
      plan.runLength[static_cast<std::size_t>(plan.runs)] = 1;
      ++plan.runs;
    }
  }
  for (std::int32_t y = 0; y < plan.ph; ++y) {
    std::int32_t row = static_cast<std::int32_t>(std::trunc(y / scale));
    if (row > plan.sh - 1) row = plan.sh - 1;
    inRange = inRange && row >= 0;
    plan.sourceRow[static_cast<std::size_t>(y)] = row;
  }
  // firstX keeps the first qualifying column only while the remembered value is still 0, so a
  // cut whose column 0 already qualifies (no margin) remembers column 1. The cut's origin
  // depends on this, and saved games replay it, so the rule stays as it is.
  plan.firstX = 0;
  for (std::int32_t x = 0; x < plan.W; ++x) {
    const std::int32_t d = DiePosition(x, plan.cw, plan.mx);
    plan.dieColumn[static_cast<std::size_t>(x)] = d;
    if (d >= kDieMargin && plan.firstX == 0) plan.firstX = x;
    inRange = inRange && d + (plan.dc - 1) * kDieCell < plan.dieWidth;
  }
  plan.firstY = 0;
  for (std::int32_t y = 0; y < plan.H; ++y) {
    const std::int32_t d = DiePosition(y, plan.ch, plan.my);
    plan.dieRow[static_cast<std::size_t>(y)] = d;
    if (d >= kDieMargin && plan.firstY == 0) plan.firstY = y;
    inRange = inRange && d + (plan.dr - 1) * kDieCell < plan.dieHeight;
  }
  if (!QV_CHECK(inRange, "fuera de intervalo")) return false;

  for (std::int32_t q = 0; q < plan.dc; ++q) {
    for (std::size_t x = 0; x < W; ++x) plan.dieIndex[q * W + x] = plan.dieColumn[x] + q * kDieCell;
  }
  for (std::int32_t p = 0; p < plan.dr && plan.useTables; ++p) {
    for (std::int32_t q = 0; q < plan.dc; ++q) {
      const PieceLabels l = LabelsFor(plan, p, q);
      const std::int32_t* dieIndex = plan.dieIndex.data() + q * W;
      const std::size_t cell = static_cast<std::size_t>(p * plan.dc + q) * H * W;
      std::uint32_t* mask = plan.ownMask.data() + cell;
      std::uint8_t* classes = plan.labelClass.data() + cell;
      for (std::size_t y = 0; y < H; ++y) {
        const std::uint8_t* dieLine = DieLine(plan, plan.dieRow[y] + p * kDieCell);
        for (std::size_t x = 0; x < W; ++x) {
          const int d = dieLine[dieIndex[x]];
          mask[y * W + x] = d == l.own ? ~0u : 0u;
          classes[y * W + x] = ClassOf(d, l);
        }
      }
    }
  }
  if (!plan.useTables) {
    const std::size_t runs = BuildClassRuns(plan, false);
    plan.runMaps.Add(plan.classRunFirst, cells * H + 1);
    plan.runMaps.Add(plan.classRunEnd, runs);
    plan.runMaps.Add(plan.classRunClass, runs);
    if (!plan.runMaps.Allocate()) return false;
    BuildClassRuns(plan, true);
  }
  for (std::int32_t slot = 0; slot < plan.ringRows; ++slot) plan.ringRow[static_cast<std::size_t>(slot)] = -1;
  return true;
}

// Scaled picture row py (its colours as atlas words), made in the ring when it is not there.
// An enlarged picture repeats source rows; a repeated row is a copy of the one before it.
// Kept out of line: the fuzz build names its pixel loops to leave them uncounted, and a copy
// inlined into the caller would be counted under the caller's name.
template <int Bits>
[[gnu::noinline]] const std::uint32_t* ScaledRow(CutPlan& plan, std::int32_t py) {
  const auto width = static_cast<std::size_t>(plan.pw);
  const auto slot = static_cast<std::size_t>(py % plan.ringRows);
  std::uint32_t* out = plan.ring.data() + slot * width;
  if (plan.ringRow[slot] == py) return out;
  const std::int32_t sourceRow = plan.sourceRow[static_cast<std::size_t>(py)];
  const auto previousSlot = static_cast<std::size_t>((py + plan.ringRows - 1) % plan.ringRows);
  if (py > 0 && plan.ringRow[previousSlot] == py - 1 &&
      plan.sourceRow[static_cast<std::size_t>(py - 1)] == sourceRow) {
    const std::uint32_t* previous = plan.ring.data() + previousSlot * width;
    if (previous != out) std::memcpy(out, previous, width * sizeof(std::uint32_t));
    plan.ringRow[slot] = py;
    return out;
  }
  const std::uint8_t* __restrict in =
      plan.picture + static_cast<std::int64_t>(plan.sh - 1 - sourceRow) * plan.pictureStride;
  // Plain pointers rather than the arrays' operator[]: its checks belong to the array, which is
  // instrumented where it is defined, and per pixel they cost more than the conversion.
  const std::int32_t* __restrict runSource = plan.runSource.data();
  const std::int32_t* __restrict runLength = plan.runLength.data();
  std::uint32_t* __restrict write = out;
  for (std::int32_t r = 0; r < plan.runs; ++r) {
    const std::uint8_t* s = in + runSource[r];
    std::uint32_t word;
    if constexpr (Bits == 8) {
      word = plan.palette[*s];
    } else {
      // Blue and green as one 16-bit read, then red.
      std::uint16_t blueGreen;
      std::memcpy(&blueGreen, s, sizeof blueGreen);
      word = blueGreen | (static_cast<std::uint32_t>(s[2]) << 16) | (1u << 24);
    }
    for (std::int32_t n = runLength[r]; n > 0; --n) *write++ = word;
  }
  plan.ringRow[slot] = py;
  return out;
}

void MaskRun(std::uint32_t* __restrict out, const std::uint32_t* __restrict words,
             const std::uint32_t* __restrict mask, std::int32_t x0, std::int32_t x1) {
  for (std::int32_t x = x0; x < x1; ++x) out[x] = words[x] & mask[x];
}

// Picture words or nothing, as the mask says, over [x0, x1).
void MaskSpan(std::uint32_t* __restrict out, const std::uint32_t* __restrict words,
              std::uint32_t mask, std::int32_t x0, std::int32_t x1) {
  for (std::int32_t x = x0; x < x1; ++x) out[x] = words[x] & mask;
}

// The cell columns outside the picture, [0, x0) and [x1, width), are left empty.
void ClearOutside(std::uint32_t* out, std::int32_t x0, std::int32_t x1, std::int32_t width) {
  for (std::int32_t x = 0; x < x0; ++x) out[x] = 0;
  for (std::int32_t x = x1; x < width; ++x) out[x] = 0;
}

// One row of one piece's cell. The claim rules: a piece takes its own label, except where it
// would stick out of the picture; a piece on the border also takes the labels of the missing
// neighbours on that side, which fills the sockets their tabs would have cut. The right and
// bottom bounds (mx + cw, my + ch) are inclusive while the left and top ones are exclusive:
// this one-pixel asymmetry is the program's own and the atlas depends on it.
void CutCellRow(const CutPlan& plan, std::uint32_t* out, const std::uint32_t* scaled,
                std::int32_t p, std::int32_t q, std::int32_t ox,
                bool top, bool bottom, bool left, bool right, std::int32_t y) {
  const std::int32_t W = plan.W;
  std::int32_t x0 = ox < 0 ? -ox : 0;
  std::int32_t x1 = plan.pw - ox < W ? plan.pw - ox : W;
  if (x1 < x0) x1 = x0;
  const std::uint32_t* words = scaled + ox;  // indexed by cell column, valid in [x0, x1)

  const auto tableRow =
      (static_cast<std::size_t>(p * plan.dc + q) * plan.H + static_cast<std::size_t>(y)) * W;
  if (plan.useTables && !left && !right && !top && !bottom) {
    ClearOutside(out, x0, x1, W);
    MaskRun(out, words, plan.ownMask.data() + tableRow, x0, x1);
    return;
  }
  // The labels a piece may take depend on the row and on three column ranges (left of the
  // core, the core with its inclusive right edge, right of it).
  const bool ownRow = !(top && y < plan.my) && !(bottom && y > plan.my + plan.ch);
  const bool topRow = top && y >= plan.my;
  const bool bottomRow = bottom && y <= plan.my + plan.ch;
  const std::int32_t rightEdge = plan.mx + plan.cw;
  // Clamped by hand: std::clamp is a call of its own in the fuzz build, counted every row.
  const auto within = [x0, x1](std::int32_t v) { return v < x0 ? x0 : v > x1 ? x1 : v; };
  const std::int32_t bounds[4] = {x0, within(plan.mx), within(rightEdge + 1), x1};
  std::uint32_t take[3][6] = {};
  for (int range = 0; range < 3; ++range) {
    const bool ownColumn = !(left && range == 0) && !(right && range == 2);
    take[range][kOwn] = ownRow && ownColumn ? ~0u : 0u;
    take[range][kTop] = topRow ? ~0u : 0u;
    take[range][kRight] = right && range != 2 ? ~0u : 0u;
    take[range][kBottom] = bottomRow ? ~0u : 0u;
    take[range][kLeft] = left && range != 0 ? ~0u : 0u;
  }
  if (plan.useTables) {
    ClearOutside(out, x0, x1, W);
    const std::uint8_t* classes = plan.labelClass.data() + tableRow;
    for (int range = 0; range < 3; ++range) {
      for (std::int32_t x = bounds[range]; x < bounds[range + 1]; ++x) {
        out[x] = words[x] & take[range][classes[x]];
      }
    }
    return;
  }
  // Each run of one class, split at the column ranges, is either the picture or nothing.
  // Neighbouring spans of the same kind are written as one, through the same masked loop as
  // the tables' (a handful of spans a row: a call to copy or clear each cost more).
  ClearOutside(out, x0, x1, W);
  const auto row = static_cast<std::size_t>(p * plan.dc + q) * static_cast<std::size_t>(plan.H) +
                   static_cast<std::size_t>(y);
  const std::int32_t last = plan.classRunFirst[row + 1];
  const std::int32_t* runEnd = plan.classRunEnd.data();
  const std::uint8_t* runClass = plan.classRunClass.data();
  std::int32_t spanStart = x0;
  std::uint32_t spanMask = 0;
  std::int32_t start = 0;
  for (std::int32_t r = plan.classRunFirst[row]; r < last; ++r) {
    const std::int32_t end = runEnd[r];
    const std::uint8_t c = runClass[r];
    for (int range = 0; range < 3; ++range) {
      const std::int32_t a = start > bounds[range] ? start : bounds[range];
      const std::int32_t b = end < bounds[range + 1] ? end : bounds[range + 1];
      if (a >= b || take[range][c] == spanMask) continue;
      MaskSpan(out, words, spanMask, spanStart, a);
      spanStart = a;
      spanMask = take[range][c];
    }
    start = end;
  }
  MaskSpan(out, words, spanMask, spanStart, x1);
}

template <int Bits>
bool CutAll(CutPlan& plan, EstadoPuzzle& puzzle) {
  const std::int64_t atlasWidth = puzzle.atlasWidth;
  const std::int64_t atlasHeight = static_cast<std::int64_t>(plan.H) * plan.NR;
  std::uint8_t* atlas = puzzle.atlas.data();
  for (std::int32_t i = 0; i < plan.NR; ++i) {
    const std::int32_t p = i % plan.dr;
    const std::int32_t oy = i * plan.ch - plan.firstY;
    const bool top = i == 0;
    const bool bottom = i == plan.NR - 1;
    for (std::int32_t y = 0; y < plan.H; ++y) {
      const std::int64_t atlasRow = atlasHeight - 1 - (static_cast<std::int64_t>(i) * plan.H + y);
      if (!QV_CHECK(atlasRow >= 0 && atlasRow < atlasHeight, "error")) return false;
      auto* line = reinterpret_cast<std::uint32_t*>(atlas + atlasRow * atlasWidth * 4);
      const std::int32_t py = oy + y;
      if (py < 0 || py >= plan.ph) {
        std::memset(line, 0, static_cast<std::size_t>(atlasWidth) * 4);
        continue;
      }
      const std::int32_t dieTop = plan.dieRow[static_cast<std::size_t>(y)] + p * kDieCell;
      if (!QV_CHECK(dieTop >= 0 && dieTop < plan.dieHeight, "error")) return false;
      const std::uint32_t* scaled = ScaledRow<Bits>(plan, py);
      for (std::int32_t j = 0; j < plan.NC; ++j) {
        const std::int32_t q = j % plan.dc;
        CutCellRow(plan, line + static_cast<std::int64_t>(j) * plan.W, scaled, p, q,
                   j * plan.cw - plan.firstX, top, bottom, j == 0,
                   j == plan.NC - 1, y);
      }
    }
  }
  return true;
}

void FreeCutArrays(EstadoPuzzle& p) {
  engine::FreeDragSurfaces();
  p.atlas.Free();
  p.pieces.Free();
  p.order.Free();
  for (auto& s : p.scratch) s.Free();
}

// Step 13 and 14: a new game on the lower half of the board, in a shuffled stacking order.
void Scatter(EstadoPuzzle& p) {
  const std::int32_t n = p.NR * p.NC;
  p.PuzzleModificado = 0;
  p.PuzzleTerminado = 0;
  p.PuzzleSinEmpezar = 1;
  p.SegundosJuego = 0;
  p.hintsUsed = 0;
  p.solutionShown = 0;
  for (auto& area : p.areas) area.count = 0;
  p.areas[AREA_TABLERO].count = n;
  engine::RecomputeStarts();
  for (std::int32_t k = 0; k < n; ++k) p.order[static_cast<std::size_t>(k)] = static_cast<std::uint32_t>(k);
  // The pieces land in the lower half only, leaving the upper half free for assembling.
  for (std::int32_t k = 0; k < n; ++k) {
    Pieza& piece = p.pieces[static_cast<std::size_t>(k)];
    piece.group = 0;
    piece.unselected = 1;
    const double r1 = RandomUniform();
    const double r2 = RandomUniform();
    piece.y = static_cast<std::int32_t>(std::trunc((r1 + 1.0) * (p.boardHeight - p.H) / 2.0));
    piece.x = static_cast<std::int32_t>(std::trunc(r2 * (p.boardWidth - p.W)));
  }
  for (std::int32_t t = 0; t < n; ++t) {
    const auto a = static_cast<std::size_t>(std::trunc(RandomUniform() * n));
    const auto b = static_cast<std::size_t>(std::trunc(RandomUniform() * n));
    if (a != b) {
      const std::uint32_t swap = p.order[a];
      p.order[a] = p.order[b];
      p.order[b] = swap;
    }
  }
}

}  // namespace

bool CrearPuzzle(std::int32_t dieRows, std::int32_t dieCols, std::uint32_t dieId, bool scatter) {
  EstadoPuzzle& p = Puzzle();
  if (!QV_CHECK(!p.open, "se debe cerrar primero el puzzle anterior")) return false;
  if (!QV_CHECK(dieRows >= 1 && dieCols >= 1, "valor muy bajo")) return false;
  engine::SetCursor(EngineCursor::Wait);
  const auto done = [](bool result) {
    engine::SetCursor(EngineCursor::Arrow);
    return result;
  };

  HIMAGE picture = PuzzlePicture();
  if (picture == nullptr) return done(false);
  const std::int32_t sw = ImageWidth(picture);
  const std::int32_t sh = ImageHeight(picture);
  const double scaledWidth = std::trunc(sw * p.scale);
  const double scaledHeight = std::trunc(sh * p.scale);
  // The negated comparisons also refuse a scale that is not a number.
  if (!(scaledWidth >= kMinPictureSide) || !(scaledHeight >= kMinPictureSide)) return done(false);
  if (!(scaledWidth <= kMaxScaledSide) || !(scaledHeight <= kMaxScaledSide)) return done(false);
  if (p.NC < 1 || p.NR < 1) return done(false);

  CutPlan plan;
  plan.pw = static_cast<std::int32_t>(scaledWidth);
  plan.ph = static_cast<std::int32_t>(scaledHeight);
  plan.NC = p.NC;
  plan.NR = p.NR;
  plan.cw = plan.pw / p.NC;
  plan.ch = plan.ph / p.NR;
  if (plan.cw < 1 || plan.ch < 1) return done(false);
  plan.mx = static_cast<std::int32_t>(std::trunc(plan.cw * 66.0 / 200.0));
  plan.my = static_cast<std::int32_t>(std::trunc(plan.ch * 66.0 / 200.0));
  plan.W = plan.cw + 2 * plan.mx;
  plan.H = plan.ch + 2 * plan.my;
  // A whole row of pieces' worth of scaled rows while that stays within 1/32 of the atlas
  // (fine grids); fewer, remade when needed again, for coarse ones. The die tables cost five
  // bytes a cell pixel per die cell, within 5/128 of the atlas once 32 pieces share each.
  plan.ringRows = static_cast<std::int32_t>(std::clamp<std::int64_t>(
      static_cast<std::int64_t>(plan.W) * plan.NC * plan.H * plan.NR / 32 / plan.pw, 1, plan.H));
  plan.useTables = static_cast<std::int64_t>(plan.NR) * plan.NC >= 32LL * dieRows * dieCols;
  plan.dr = dieRows;
  plan.dc = dieCols;
  plan.sh = sh;
  const std::uint64_t atlasBytes = static_cast<std::uint64_t>(plan.W) * plan.NC *
                                   static_cast<std::uint64_t>(plan.H) * plan.NR * 4;
  const std::size_t n = static_cast<std::size_t>(plan.NR) * static_cast<std::size_t>(plan.NC);

  p.dieId = dieId;
  p.dieRows = dieRows;
  p.dieCols = dieCols;
  p.cw = plan.cw;
  p.ch = plan.ch;
  p.mx = plan.mx;
  p.my = plan.my;
  p.W = plan.W;
  p.H = plan.H;

  // Step 4: the picture's format, then the blocks; a block that cannot be had closes the
  // puzzle as the program always has.
  plan.bits = ImageBitCount(picture);
  if (!QV_CHECK(plan.bits == 8 || plan.bits == 24, "resolucion invalida")) return done(false);
  if (plan.bits == 8) {
    const RgbQuad* colours = DibColours(picture);
    for (int c = 0; c < 256; ++c) {
      plan.palette[c] = static_cast<std::uint32_t>(colours[c].rgbBlue) |
                        (static_cast<std::uint32_t>(colours[c].rgbGreen) << 8) |
                        (static_cast<std::uint32_t>(colours[c].rgbRed) << 16) | (1u << 24);
    }
  }
  plan.picture = DibPixels(picture);
  plan.pictureStride = DibRowBytes(sw, plan.bits);

  bool allocated = atlasBytes <= kMaxAtlasBytes && p.atlas.Allocate(static_cast<std::size_t>(atlasBytes)) &&
                   p.pieces.Allocate(n) && p.order.Allocate(n);
  for (auto& s : p.scratch) allocated = allocated && s.Allocate(n);
  if (!allocated) {
    FreeCutArrays(p);
    CerrarPuzzle(true);
    return done(false);
  }

  // Step 5: the die. A resource file held in memory lends it where it lies; one on disk is
  // read into a block the engine holds until the cut is done.
  ResourceFile& resources = TheResourceFile();
  PackedDib loadedDie;
  PictureView die;
  if (resources.InMemory()) {
    if (!resources.ViewPicture(dieId, die)) {
      FreeCutArrays(p);
      return done(false);
    }
  } else {
    if (!resources.LoadPicture(dieId, loadedDie)) {
      FreeCutArrays(p);
      return done(false);
    }
    die.header = *DibHeader(loadedDie.get());
    die.pixels = DibPixels(loadedDie.get());
  }
  const std::size_t heldDieBytes = loadedDie.blockBytes();
  NoteEngineBytes(static_cast<std::ptrdiff_t>(heldDieBytes));
  const auto dieDone = [heldDieBytes](bool result) {
    NoteEngineBytes(-static_cast<std::ptrdiff_t>(heldDieBytes));
    return result;
  };
  plan.die = die.pixels;
  plan.dieWidth = die.header.biWidth;
  plan.dieHeight = die.header.biHeight;
  if (!QV_CHECK(die.header.biBitCount == 8 && plan.dieWidth == dieCols * kDieCell + 2 * kDieMargin &&
                    plan.dieHeight == dieRows * kDieCell + 2 * kDieMargin,
                "este troquel tiene dimensiones invalidas")) {
    FreeCutArrays(p);
    return done(dieDone(false));
  }

  // Step 6: the surfaces the dragged image is composed in, in the display's format.
  if (!engine::BuildDragSurfaces()) {
    FreeCutArrays(p);
    return done(dieDone(false));
  }

  // Steps 7 to 9: maps, then the cut itself.
  p.atlasWidth = plan.W * plan.NC;
  p.atlasHeightMinus1 = plan.H * plan.NR - 1;
  const bool cut = BuildMaps(plan, sw, p.scale) &&
                   (plan.bits == 8 ? CutAll<8>(plan, p) : CutAll<24>(plan, p));
  dieDone(true);
  loadedDie.Reset();
  if (!cut) {
    FreeCutArrays(p);
    return done(false);
  }

  // Until a game is dealt or restored, every piece lies loose on the board in number order.
  for (std::size_t k = 0; k < n; ++k) {
    p.pieces[k] = Pieza{0, 1, {0, 0, 0}, 0, 0};
    p.order[k] = static_cast<std::uint32_t>(k);
  }
  for (auto& area : p.areas) area.count = 0;
  p.areas[AREA_TABLERO].count = static_cast<std::int32_t>(n);
  engine::RecomputeStarts();
  p.open = true;

  // Steps 11 to 15.
  engine::StopClockTimer();
  engine::PreviewChanged();
  if (!scatter) return done(true);
  Scatter(p);
  engine::ShowClock(0);
  return done(true);
}

}  // namespace qv
