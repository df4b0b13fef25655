// Playing: hit test, dragging and dropping, snapping and joining, hints, the clock and the score.
#include "puzzle/play.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <iterator>
#include <limits>

#include "puzzle/compose.h"
#include "puzzle/engine_internal.h"
#include "system/assert.h"

namespace qv {

namespace {

struct Box {
  std::int64_t x0, y0, x1, y1;  // half-open; empty when x0 >= x1
};

Box EmptyBox() {
  return Box{std::numeric_limits<std::int64_t>::max(), std::numeric_limits<std::int64_t>::max(),
             std::numeric_limits<std::int64_t>::min(), std::numeric_limits<std::int64_t>::min()};
}
bool IsEmpty(const Box& b) { return b.x0 >= b.x1 || b.y0 >= b.y1; }
void Extend(Box& b, const Box& c) {
  b.x0 = std::min(b.x0, c.x0);
  b.y0 = std::min(b.y0, c.y0);
  b.x1 = std::max(b.x1, c.x1);
  b.y1 = std::max(b.y1, c.y1);
}
bool Overlap(const Box& a, const Box& b) {
  return a.x0 < b.x1 && b.x0 < a.x1 && a.y0 < b.y1 && b.y0 < a.y1;
}

Box CellOf(const EstadoPuzzle& p, std::uint32_t k) {
  const Pieza& piece = p.pieces[k];
  return Box{piece.x, piece.y, static_cast<std::int64_t>(piece.x) + p.W,
             static_cast<std::int64_t>(piece.y) + p.H};
}

std::int32_t Clamp32(std::int64_t v) {
  return static_cast<std::int32_t>(
      std::clamp<std::int64_t>(v, std::numeric_limits<std::int32_t>::min(),
                               std::numeric_limits<std::int32_t>::max()));
}

void Recompose(int area, const Box& b) {
  if (IsEmpty(b)) return;
  // Boxes come from cells of checked positions, so they fit 32 bits once clamped to the area.
  const std::int64_t x0 = std::max<std::int64_t>(b.x0, -1);
  const std::int64_t y0 = std::max<std::int64_t>(b.y0, -1);
  const std::int64_t x1 = std::min<std::int64_t>(b.x1, std::numeric_limits<std::int32_t>::max() / 2);
  const std::int64_t y1 = std::min<std::int64_t>(b.y1, std::numeric_limits<std::int32_t>::max() / 2);
  if (x0 >= x1 || y0 >= y1) return;
  ComponerArea(area, static_cast<std::int32_t>(x0), static_cast<std::int32_t>(y0),
               static_cast<std::int32_t>(x1 - x0), static_cast<std::int32_t>(y1 - y0), true,
               false);
}

// Recomposes two rectangles of one area, in one piece when they overlap.
void RecomposePair(int area, const Box& a, const Box& b) {
  if (!IsEmpty(a) && !IsEmpty(b) && Overlap(a, b)) {
    Box u = a;
    Extend(u, b);
    Recompose(area, u);
  } else {
    Recompose(area, a);
    Recompose(area, b);
  }
}

// ---- Drag state ----------------------------------------------------------------------------

struct FrameInfo {
  BitmapInfoHeader header;
  std::uint32_t masks[3];
};

struct DragState {
  int mode = 0;
  int area = -1;
  EnginePoint down;
  EnginePoint grab;      // pointer minus piece position
  EnginePoint position;  // where the dragged piece's cell is (start window coordinates)
  PointerTarget under;   // what lay under the pointer at the last step
  bool drawn = false;    // the dragged image is on the start window at `drawnRect`
  EngineRect drawnRect;
  EnginePoint band[5];
  bool bandDrawn = false;
  EngineArray<std::uint8_t> frame;
  DisplayImage frameImage;
  FrameInfo frameInfo{};
  // The whole moving set as one image (live drags): the run at the front of the slice, the
  // union of its cells, and the image of it with its place in the area at button-down.
  bool live = true;       // the setting
  bool showingSet = false;  // this drag shows the whole set as one image
  std::int32_t setRun = 0;
  Box setBox{};
  EngineArray<std::uint32_t> image;
  EngineArray<std::uint32_t> spans;  // member spans of the atlas, made at the first live drag
  AlphaImage alphaImage;
  EngineRect imageRect;
  EnginePoint imageOffset;  // the image's top-left corner less the grabbed piece's position
  BitmapInfoHeader imageInfo{};
};

DragState g_drag;

EstadoPuzzle& P() { return Puzzle(); }

std::uint32_t SliceAt(int area, std::int32_t i) {
  const EstadoPuzzle& p = P();
  return p.order[static_cast<std::size_t>(p.areas[area].start + i)];
}

bool SameGroup(const Pieza& a, const Pieza& b) { return a.group != 0 && a.group == b.group; }

// Stable partition of an area's slice: the front piece, then every other piece that `pick`
// chooses, then the rest, each part in its old order. This is what moving the chosen pieces one
// at a time right behind the front piece gives.
template <class Pick>
std::int32_t GatherBehindFront(int area, Pick pick) {
  EstadoPuzzle& p = P();
  const AreaPiezas& a = p.areas[area];
  if (a.count == 0) return 0;
  std::uint32_t* slice = p.order.data() + a.start;
  std::uint32_t* rest = p.scratch[2].data();
  std::int32_t chosen = 1;
  std::int32_t others = 0;
  for (std::int32_t i = 1; i < a.count; ++i) {
    const std::uint32_t k = slice[i];
    if (pick(k)) {
      slice[chosen++] = k;
    } else {
      rest[others++] = k;
    }
  }
  std::memcpy(slice + chosen, rest, static_cast<std::size_t>(others) * sizeof(std::uint32_t));
  return chosen;
}

// Drop step 1: the selection (when the front piece is selected) or the front piece's group.
std::int32_t GatherMovingSet(int area) {
  EstadoPuzzle& p = P();
  if (p.areas[area].count == 0) return 0;
  const std::uint32_t front = SliceAt(area, 0);
  const Pieza frontPiece = p.pieces[front];
  if (frontPiece.unselected == 0) {
    return GatherBehindFront(area, [&](std::uint32_t k) { return p.pieces[k].unselected == 0; });
  }
  if (frontPiece.group != 0) {
    return GatherBehindFront(area,
                             [&](std::uint32_t k) { return p.pieces[k].group == frontPiece.group; });
  }
  return 1;
}

// Moves the run of `run` entries at the front of area s to the front of area t, keeping the
// slices consecutive, and tells the parents about areas that emptied or filled.
void MoveRunBetweenAreas(int s, int t, std::int32_t run) {
  EstadoPuzzle& p = P();
  if (s == t || run <= 0) return;
  const bool targetWasEmpty = p.areas[t].count == 0;
  const std::int32_t from = p.areas[s].start;
  const std::int32_t to = s < t ? p.areas[t].start - run : p.areas[t].start;
  MoverAlFrente(from, run, to);
  p.areas[s].count -= run;
  p.areas[t].count += run;
  engine::RecomputeStarts();
  if (targetWasEmpty) engine::NotifyArea(t, AREA_OCUPADA);
  if (p.areas[s].count == 0) engine::NotifyArea(s, AREA_VACIA);
}

std::int32_t AreaWidth(int area) { return P().areas[area].surface.width; }
std::int32_t AreaHeight(int area) { return P().areas[area].surface.height; }

// The selection keeps within the area: x from -mx to (width - cw), y from -my to (height - ch).
// The right and bottom limits use the core and not the margin, so a piece can stick out further
// on the right and the bottom than on the left and the top; kept as the program has it.
void ClampSelected(const EstadoPuzzle& p, int area, Pieza& piece) {
  const std::int64_t right = static_cast<std::int64_t>(AreaWidth(area)) - p.cw;
  const std::int64_t bottom = static_cast<std::int64_t>(AreaHeight(area)) - p.ch;
  std::int64_t x = std::min<std::int64_t>(piece.x, right);
  std::int64_t y = std::min<std::int64_t>(piece.y, bottom);
  x = std::max<std::int64_t>(x, -p.mx);
  y = std::max<std::int64_t>(y, -p.my);
  piece.x = Clamp32(x);
  piece.y = Clamp32(y);
}

// Moves the selected run at the front of area s by delta into area t (t may be s).
void MoveSelection(int s, int t, EnginePoint delta) {
  EstadoPuzzle& p = P();
  std::int32_t run = 0;
  while (run < p.areas[s].count && p.pieces[SliceAt(s, run)].unselected == 0) ++run;
  if (run == 0) return;
  if (s != t) {
    // The pieces arriving form the target's selection alone.
    Box deselected = EmptyBox();
    for (std::int32_t i = 0; i < p.areas[t].count; ++i) {
      Pieza& piece = p.pieces[SliceAt(t, i)];
      if (piece.unselected == 0) {
        piece.unselected = 1;
        Extend(deselected, CellOf(p, SliceAt(t, i)));
      }
    }
    Recompose(t, deselected);
  }
  Box before = EmptyBox();
  Box after = EmptyBox();
  for (std::int32_t i = 0; i < run; ++i) {
    const std::uint32_t k = SliceAt(s, i);
    Extend(before, CellOf(p, k));
    Pieza& piece = p.pieces[k];
    piece.x = Clamp32(static_cast<std::int64_t>(piece.x) + delta.x);
    piece.y = Clamp32(static_cast<std::int64_t>(piece.y) + delta.y);
    ClampSelected(p, t, piece);
    Extend(after, CellOf(p, k));
  }
  if (s == t) {
    Box all = before;
    Extend(all, after);
    Recompose(s, all);
  } else {
    MoveRunBetweenAreas(s, t, run);
    Recompose(s, before);
    Recompose(t, after);
  }
  engine::MarkModified();
}

bool FrameFits(const EstadoPuzzle& p, const Box& b) {
  return b.x1 - b.x0 <= 2 * static_cast<std::int64_t>(p.W) &&
         b.y1 - b.y0 <= 2 * static_cast<std::int64_t>(p.H);
}

// Composes the dragged piece over the area's surface into the frame for the rectangle r
// (clipped to the area) and says where to blit it. The surface was composed without the
// dragged piece at button-down, so it already is the background that the image covers.
bool ComposeFrame(int area, const Box& r, EngineRect* out) {
  EstadoPuzzle& p = P();
  const AreaSurface& s = p.areas[area].surface;
  const Box c{std::max<std::int64_t>(r.x0, 0), std::max<std::int64_t>(r.y0, 0),
              std::min<std::int64_t>(r.x1, s.width), std::min<std::int64_t>(r.y1, s.height)};
  if (IsEmpty(c) || !g_drag.frame) return false;
  const auto x = static_cast<std::int32_t>(c.x0);
  const auto y = static_cast<std::int32_t>(c.y0);
  const auto w = static_cast<std::int32_t>(c.x1 - c.x0);
  const auto h = static_cast<std::int32_t>(c.y1 - c.y0);
  CopySurfaceToDisplay(g_drag.frameImage, 0, 0, area, x, y, w, h);
  ComposeDraggedPiece(g_drag.frameImage, g_drag.position.x - x, g_drag.position.y - y,
                      SliceAt(area, 0));
  *out = EngineRect{x, y, w, h};
  return true;
}

EngineRect RectOf(const Box& b) {
  return EngineRect{Clamp32(b.x0), Clamp32(b.y0), Clamp32(b.x1 - b.x0), Clamp32(b.y1 - b.y0)};
}

Box BoxOf(const EngineRect& r) {
  return Box{r.x, r.y, static_cast<std::int64_t>(r.x) + r.width,
             static_cast<std::int64_t>(r.y) + r.height};
}

// Where the drag image's top-left corner goes, in start-window coordinates.
EnginePoint ImagePlace() {
  return EnginePoint{Clamp32(static_cast<std::int64_t>(g_drag.position.x) + g_drag.imageOffset.x),
                     Clamp32(static_cast<std::int64_t>(g_drag.position.y) + g_drag.imageOffset.y)};
}

void DragPiece(int area, EnginePoint pointer, const PointerTarget& under, DragFeedback& fb) {
  EstadoPuzzle& p = P();
  g_drag.under = under;
  g_drag.position = EnginePoint{Clamp32(static_cast<std::int64_t>(pointer.x) - g_drag.grab.x),
                                Clamp32(static_cast<std::int64_t>(pointer.y) - g_drag.grab.y)};
  fb.cursor = under.over == PointerOver::BoxOwner ? EngineCursor::DropIntoBox : EngineCursor::Arrow;
  if (g_drag.showingSet) {
    // The image was composed at button-down; a step only says where it goes, wherever the
    // pointer is, so its cost does not depend on the pieces on the table or in the set.
    fb.moveImage = true;
    fb.imageAt = ImagePlace();
    return;
  }
  const Box cell{g_drag.position.x, g_drag.position.y,
                 static_cast<std::int64_t>(g_drag.position.x) + p.W,
                 static_cast<std::int64_t>(g_drag.position.y) + p.H};
  if (under.over != PointerOver::StartArea) {
    if (g_drag.drawn) {
      fb.erase = true;
      fb.eraseRect = g_drag.drawnRect;
      g_drag.drawn = false;
    }
    return;
  }
  Box target = cell;
  if (g_drag.drawn) {
    Box both = cell;
    Extend(both, BoxOf(g_drag.drawnRect));
    if (FrameFits(p, both)) {
      target = both;
    } else {
      fb.erase = true;
      fb.eraseRect = g_drag.drawnRect;
    }
  }
  EngineRect blit;
  if (ComposeFrame(area, target, &blit)) {
    fb.drawFrame = true;
    fb.frameRect = blit;
    g_drag.drawn = true;
    // What stays on screen is the new cell (clipped); the rest of the frame was background.
    g_drag.drawnRect = RectOf(cell);
  } else {
    g_drag.drawn = false;
  }
}

void SetBand(EnginePoint start, EnginePoint end) {
  g_drag.band[0] = start;
  g_drag.band[1] = EnginePoint{end.x, start.y};
  g_drag.band[2] = end;
  g_drag.band[3] = EnginePoint{start.x, end.y};
  g_drag.band[4] = start;
}

// Drop in mode 2: pieces whose cells meet the rectangle become the selection; joined pieces
// are never selected.
void SelectInBand(int area) {
  EstadoPuzzle& p = P();
  const EnginePoint a = g_drag.band[0];
  const EnginePoint b = g_drag.band[2];
  const Box band{std::min(a.x, b.x), std::min(a.y, b.y), std::max(a.x, b.x), std::max(a.y, b.y)};
  for (std::int32_t i = 0; i < p.areas[area].count; ++i) {
    const std::uint32_t k = SliceAt(area, i);
    Pieza& piece = p.pieces[k];
    const bool meets = !IsEmpty(band) && Overlap(CellOf(p, k), band);
    piece.unselected = (piece.group == 0 && meets) ? 0 : 1;
  }
  ComponerAreaEntera(area, true);
}

void DropPiece(int area, const PointerTarget& under, DragFeedback& fb) {
  EstadoPuzzle& p = P();
  fb.cursor = EngineCursor::Arrow;
  // The last drawn image is repainted from the surface once the drop has recomposed it.
  if (g_drag.drawn) {
    fb.erase = true;
    fb.eraseRect = g_drag.drawnRect;
    g_drag.drawn = false;
  }
  if (p.areas[area].count == 0) return;
  GatherMovingSet(area);
  const std::uint32_t k = SliceAt(area, 0);
  const Pieza piece = p.pieces[k];
  const bool selected = piece.unselected == 0;

  int target = -1;
  EnginePoint drop = g_drag.position;
  switch (under.over) {
    case PointerOver::StartArea:
      target = area;
      break;
    case PointerOver::BoxOwner:
      if (engine::ValidArea(under.area) && under.area != area && P().areas[under.area].exists) {
        target = under.area;
        drop = EnginePoint{(AreaWidth(target) - p.W) / 2, (AreaHeight(target) - p.H) / 2};
      }
      break;
    case PointerOver::OtherArea:
      if (engine::ValidArea(under.area) && P().areas[under.area].exists) {
        target = under.area;
        drop = EnginePoint{Clamp32(static_cast<std::int64_t>(under.point.x) - g_drag.grab.x),
                           Clamp32(static_cast<std::int64_t>(under.point.y) - g_drag.grab.y)};
      }
      break;
    case PointerOver::Outside:
    case PointerOver::OtherWindow:
      break;
  }
  if (target < 0) {
    // Cancelled: the piece (in a live drag, the whole set) shows again where it was.
    Recompose(area, g_drag.showingSet ? g_drag.setBox : CellOf(p, k));
    return;
  }
  if (!selected) {
    SoltarPieza(target, area, k, drop);
    return;
  }
  MoveSelection(area, target,
                EnginePoint{Clamp32(static_cast<std::int64_t>(drop.x) - piece.x),
                            Clamp32(static_cast<std::int64_t>(drop.y) - piece.y)});
}

struct Neighbour {
  bool found = false;
  std::uint32_t piece = 0;
  EnginePoint snapped;
};

// The first piece of area t, from the front, that is a grid neighbour of k lying within the
// tolerance of where it would be with k at q.
Neighbour FindFit(int t, std::uint32_t k, EnginePoint q) {
  const EstadoPuzzle& p = P();
  const auto nc = static_cast<std::uint32_t>(p.NC);
  const auto n = static_cast<std::uint32_t>(p.PieceCount());
  const Pieza& moving = p.pieces[k];
  Neighbour result;
  for (std::int32_t i = 0; i < p.areas[t].count; ++i) {
    const std::uint32_t m = SliceAt(t, i);
    const Pieza& other = p.pieces[m];
    if (m == k || SameGroup(moving, other)) continue;
    std::int64_t ex, ey;      // where m should be
    std::int64_t kx, ky;      // where k goes when m fits
    if (k >= nc && m == k - nc) {
      ex = q.x, ey = static_cast<std::int64_t>(q.y) - p.ch;
      kx = other.x, ky = static_cast<std::int64_t>(other.y) + p.ch;
    } else if (m == k + 1 && k % nc != nc - 1) {
      ex = static_cast<std::int64_t>(q.x) + p.cw, ey = q.y;
      kx = static_cast<std::int64_t>(other.x) - p.cw, ky = other.y;
    } else if (k + nc < n && m == k + nc) {
      ex = q.x, ey = static_cast<std::int64_t>(q.y) + p.ch;
      kx = other.x, ky = static_cast<std::int64_t>(other.y) - p.ch;
    } else if (k % nc != 0 && m == k - 1) {
      ex = static_cast<std::int64_t>(q.x) - p.cw, ey = q.y;
      kx = static_cast<std::int64_t>(other.x) + p.cw, ky = other.y;
    } else {
      continue;
    }
    if (other.x >= ex - kSnapTolerance && other.x <= ex + kSnapTolerance &&
        other.y >= ey - kSnapTolerance && other.y <= ey + kSnapTolerance) {
      result.found = true;
      result.piece = m;
      result.snapped = EnginePoint{Clamp32(kx), Clamp32(ky)};
      return result;
    }
  }
  return result;
}

bool AllInGroup(int area, std::uint32_t group) {
  const EstadoPuzzle& p = P();
  for (std::int32_t i = 0; i < p.areas[area].count; ++i) {
    if (p.pieces[SliceAt(area, i)].group != group) return false;
  }
  return true;
}

// Shifts every piece of area t in `group` (or the loose piece `loose` when group is 0) by
// (dx, dy), numbers it `result` and queues it in `work`; their old and new cells go into `box`.
void ShiftIntoGroup(int t, std::uint32_t group, std::uint32_t loose, std::int64_t dx,
                    std::int64_t dy, std::uint32_t result, std::uint32_t* work,
                    std::int32_t& tail, Box& box) {
  EstadoPuzzle& p = P();
  const auto shift = [&](std::uint32_t m) {
    Pieza& piece = p.pieces[m];
    Extend(box, CellOf(p, m));
    piece.x = Clamp32(piece.x + dx);
    piece.y = Clamp32(piece.y + dy);
    piece.group = result;
    piece.unselected = 1;  // a piece that joins a group leaves the selection
    Extend(box, CellOf(p, m));
    work[tail++] = m;
  };
  if (group == 0) {
    shift(loose);
    return;
  }
  for (std::int32_t i = 0; i < p.areas[t].count; ++i) {
    const std::uint32_t m = SliceAt(t, i);
    if (p.pieces[m].group == group) shift(m);
  }
}

// After a join, the grown group takes in every further grid neighbour in area t that lies
// within the snap tolerance of its place against one of the group's pieces, and the neighbour's
// whole group with it, until none is left. The group that was dropped stays where the join put
// it; each joining group is moved the few pixels onto its exact place so that the picture lies
// straight. Group numbers follow the rule of the first join; `group` is the number the first
// join gave. Every piece is looked at once, when it enters the group. Returns the group number
// at the end; `box` gathers the cells to recompose.
std::uint32_t JoinFurtherNeighbours(int t, std::uint32_t group, Box& box) {
  EstadoPuzzle& p = P();
  const auto n = static_cast<std::uint32_t>(p.PieceCount());
  const auto nc = static_cast<std::uint32_t>(p.NC);
  // Which pieces lie in t, and the queue of group pieces whose neighbours are still to be seen.
  std::uint32_t* inTarget = p.scratch[3].data();
  std::uint32_t* work = p.scratch[1].data();
  std::memset(inTarget, 0, static_cast<std::size_t>(n) * sizeof(std::uint32_t));
  for (std::int32_t i = 0; i < p.areas[t].count; ++i) inTarget[SliceAt(t, i)] = 1;
  std::int32_t tail = 0;
  for (std::int32_t i = 0; i < p.areas[t].count; ++i) {
    if (p.pieces[SliceAt(t, i)].group == group) work[tail++] = SliceAt(t, i);
  }
  struct Side {
    std::int32_t dc, dr;
  };
  static constexpr Side kSides[4] = {{0, -1}, {1, 0}, {0, 1}, {-1, 0}};
  for (std::int32_t head = 0; head < tail; ++head) {
    const std::uint32_t x = work[head];
    for (const Side side : kSides) {
      const std::uint32_t column = x % nc;
      if ((side.dr < 0 && x < nc) || (side.dr > 0 && x + nc >= n) ||
          (side.dc > 0 && column == nc - 1) || (side.dc < 0 && column == 0)) {
        continue;
      }
      const std::uint32_t m = side.dr != 0 ? (side.dr < 0 ? x - nc : x + nc)
                                           : (side.dc < 0 ? x - 1 : x + 1);
      const Pieza& other = p.pieces[m];
      if (!inTarget[m] || other.group == group) continue;
      const std::int64_t ex = p.pieces[x].x + static_cast<std::int64_t>(side.dc) * p.cw;
      const std::int64_t ey = p.pieces[x].y + static_cast<std::int64_t>(side.dr) * p.ch;
      if (other.x < ex - kSnapTolerance || other.x > ex + kSnapTolerance ||
          other.y < ey - kSnapTolerance || other.y > ey + kSnapTolerance) {
        continue;
      }
      const std::uint32_t theirs = other.group != 0 ? other.group : m + 1;
      const std::uint32_t result = std::max(theirs, group);
      ShiftIntoGroup(t, other.group, m, ex - other.x, ey - other.y, result, work, tail, box);
      if (result != group) {
        for (std::int32_t i = 0; i < p.areas[t].count; ++i) {
          Pieza& piece = p.pieces[SliceAt(t, i)];
          if (piece.group == group) piece.group = result;
        }
        group = result;
      }
    }
  }
  return group;
}

// Brings piece k to the front of its area's slice with its group gathered behind it.
bool BringToFront(int area, std::uint32_t k) {
  std::int32_t index = -1;
  int found = -1;
  if (!FindPiece(k, &found, &index) || found != area) return false;
  EstadoPuzzle& p = P();
  if (index != 0) MoverAlFrente(p.areas[area].start + index, 1, p.areas[area].start);
  if (p.pieces[k].group != 0) {
    const std::uint32_t group = p.pieces[k].group;
    GatherBehindFront(area, [&](std::uint32_t m) { return p.pieces[m].group == group; });
  }
  return true;
}

// The image of the moving set at the front of the area: the union of its cells, clipped to the
// area grown by one cell on every side. Pieces lying wholly outside that were not to be seen at
// button-down and stay out of the image; the clip also bounds the image for any saved layout.
bool ComposeSetImage(int area) {
  EstadoPuzzle& p = P();
  const AreaSurface& s = p.areas[area].surface;
  const Box clip{-static_cast<std::int64_t>(p.W), -static_cast<std::int64_t>(p.H),
                 static_cast<std::int64_t>(s.width) + p.W, static_cast<std::int64_t>(s.height) + p.H};
  const Box& set = g_drag.setBox;
  const Box r{std::max(set.x0, clip.x0), std::max(set.y0, clip.y0), std::min(set.x1, clip.x1),
              std::min(set.y1, clip.y1)};
  if (IsEmpty(r)) return false;
  const auto width = static_cast<std::int32_t>(r.x1 - r.x0);
  const auto height = static_cast<std::int32_t>(r.y1 - r.y0);
  const std::size_t count = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
  // Kept from drag to drag: a fresh block for every drag would pay its page faults each time.
  if (g_drag.image.size() < count && !g_drag.image.Allocate(count)) {
    g_drag.alphaImage = AlphaImage{};
    return false;
  }
  g_drag.alphaImage = AlphaImage{g_drag.image.data(), width, height};
  g_drag.imageRect = EngineRect{static_cast<std::int32_t>(r.x0), static_cast<std::int32_t>(r.y0),
                                width, height};
  const Pieza& front = p.pieces[SliceAt(area, 0)];
  g_drag.imageOffset = EnginePoint{Clamp32(r.x0 - front.x), Clamp32(r.y0 - front.y)};
  BitmapInfoHeader& h = g_drag.imageInfo;
  h = BitmapInfoHeader{};
  h.biSize = 40;
  h.biWidth = width;
  h.biHeight = height;
  h.biPlanes = 1;
  h.biBitCount = 32;
  h.biCompression = kBiRgb;
  h.biSizeImage = static_cast<std::uint32_t>(count * 4);
  if (!g_drag.spans && g_drag.setRun > 1) ComputeMemberSpans(g_drag.spans);
  return ComposeAlphaPieces(g_drag.alphaImage, p.order.data() + p.areas[area].start,
                            g_drag.setRun, g_drag.imageRect.x, g_drag.imageRect.y,
                            g_drag.spans ? g_drag.spans.data() : nullptr);
}

// Button-down of a live drag: gathers the moving set behind the grabbed piece (as the drop
// would), composes its image and shows the area without it. False, and the area untouched,
// when there is no image to show (no memory for it): the drag then shows the piece alone.
bool StartLiveDrag(int area) {
  EstadoPuzzle& p = P();
  g_drag.setRun = GatherMovingSet(area);
  Box set = EmptyBox();
  for (std::int32_t i = 0; i < g_drag.setRun; ++i) Extend(set, CellOf(p, SliceAt(area, i)));
  g_drag.setBox = set;
  if (!ComposeSetImage(area)) {
    g_drag.alphaImage = AlphaImage{};
    return false;
  }
  g_drag.showingSet = true;
  const Box& b = g_drag.setBox;
  const AreaSurface& s = p.areas[area].surface;
  const Box r{std::max<std::int64_t>(b.x0, 0), std::max<std::int64_t>(b.y0, 0),
              std::min<std::int64_t>(b.x1, s.width), std::min<std::int64_t>(b.y1, s.height)};
  if (IsEmpty(r)) return true;
  ComposeAreaLeavingOut(area, static_cast<std::int32_t>(r.x0), static_cast<std::int32_t>(r.y0),
                        static_cast<std::int32_t>(r.x1 - r.x0),
                        static_cast<std::int32_t>(r.y1 - r.y0), true, g_drag.setRun);
  return true;
}

}  // namespace

namespace engine {

bool BuildDragSurfaces() {
  const EstadoPuzzle& p = P();
  g_drag.spans.Free();  // a new cut has a new atlas
  const DisplayFormat& format = CurrentDisplayFormat();
  if (format.bitCount != 16 && format.bitCount != 24 && format.bitCount != 32) return false;
  const std::int64_t width = 2 * static_cast<std::int64_t>(p.W);
  const std::int64_t height = 2 * static_cast<std::int64_t>(p.H);
  const std::int64_t stride = DibRowBytes(width, format.bitCount);
  if (!g_drag.frame.Allocate(static_cast<std::size_t>(stride * height))) return false;
  g_drag.frameImage.bits = g_drag.frame.data();
  g_drag.frameImage.width = static_cast<std::int32_t>(width);
  g_drag.frameImage.height = static_cast<std::int32_t>(height);
  g_drag.frameImage.stride = static_cast<std::int32_t>(stride);
  g_drag.frameImage.format = format;
  FrameInfo& info = g_drag.frameInfo;
  info = FrameInfo{};
  info.header.biSize = 40;
  info.header.biWidth = static_cast<std::int32_t>(width);
  info.header.biHeight = static_cast<std::int32_t>(height);
  info.header.biPlanes = 1;
  info.header.biBitCount = static_cast<std::uint16_t>(format.bitCount);
  info.header.biCompression = format.bitCount == 24 ? kBiRgb : kBiBitfields;
  info.header.biSizeImage = static_cast<std::uint32_t>(stride * height);
  info.masks[0] = format.redMask;
  info.masks[1] = format.greenMask;
  info.masks[2] = format.blueMask;
  return true;
}

void FreeDragSurfaces() {
  g_drag.frame.Free();
  g_drag.frameImage = DisplayImage{};
  g_drag.image.Free();
  g_drag.spans.Free();
  g_drag.alphaImage = AlphaImage{};
}

void ResetDrag() {
  g_drag.mode = 0;
  g_drag.area = -1;
  g_drag.drawn = false;
  g_drag.bandDrawn = false;
  g_drag.showingSet = false;
}

}  // namespace engine

// ---- Hit test and mouse --------------------------------------------------------------------

std::int32_t HitTest(int area, EnginePoint pt) {
  const EstadoPuzzle& p = P();
  if (!p.open || !engine::ValidArea(area)) return -1;
  const AreaPiezas& a = p.areas[area];
  for (std::int32_t i = 0; i < a.count; ++i) {
    const std::uint32_t k = p.order[static_cast<std::size_t>(a.start + i)];
    const Pieza& piece = p.pieces[k];
    // Strictly inside the cell; then the membership byte decides, so a transparent corner
    // passes the click on to the pieces below.
    const std::int64_t cx = static_cast<std::int64_t>(pt.x) - piece.x;
    const std::int64_t cy = static_cast<std::int64_t>(pt.y) - piece.y;
    if (cx <= 0 || cy <= 0 || cx >= p.W || cy >= p.H) continue;
    if (AtlasMembership(k, static_cast<std::int32_t>(cx), static_cast<std::int32_t>(cy)) == 1) {
      return i;
    }
  }
  return -1;
}

DragFeedback ButtonDown(int area, EnginePoint pt) {
  DragFeedback fb;
  if (!engine::ValidArea(area)) return fb;
  EstadoPuzzle& p = P();
  engine::ResetDrag();
  g_drag.down = pt;
  g_drag.area = area;
  const std::int32_t hit = HitTest(area, pt);
  if (hit < 0) {
    SetBand(pt, pt);
    g_drag.mode = 2;
    return fb;
  }
  if (p.PuzzleSinEmpezar) {
    p.PuzzleSinEmpezar = 0;
    p.RelojPausado = 0;
    engine::StartClockTimer();
  }
  const std::int32_t start = p.areas[area].start;
  if (hit != 0) MoverAlFrente(start + hit, 1, start);
  const std::uint32_t k = SliceAt(area, 0);
  const Pieza& piece = p.pieces[k];
  g_drag.position = EnginePoint{piece.x, piece.y};
  if (!g_drag.live || !StartLiveDrag(area)) {
    ComponerArea(area, piece.x, piece.y, p.W, p.H, false, true);
  }
  g_drag.grab = EnginePoint{Clamp32(static_cast<std::int64_t>(pt.x) - piece.x),
                            Clamp32(static_cast<std::int64_t>(pt.y) - piece.y)};
  g_drag.mode = 1;
  PointerTarget self;
  self.over = PointerOver::StartArea;
  self.area = area;
  DragPiece(area, pt, self, fb);
  return fb;
}

DragFeedback DragStep(int area, EnginePoint pt, const PointerTarget& under) {
  DragFeedback fb;
  if (g_drag.mode == 0 || area != g_drag.area) return fb;
  if (g_drag.mode == 1) {
    if (!P().open || P().areas[area].count == 0) return fb;
    DragPiece(area, pt, under, fb);
    return fb;
  }
  fb.hadOldBand = true;
  std::copy(std::begin(g_drag.band), std::end(g_drag.band), fb.oldBand);
  SetBand(g_drag.band[0], pt);
  fb.hasNewBand = true;
  std::copy(std::begin(g_drag.band), std::end(g_drag.band), fb.newBand);
  return fb;
}

DragFeedback ButtonUp(int area, EnginePoint pt, const PointerTarget& under) {
  (void)pt;  // the drop uses the last dragged position; the point only found `under`
  DragFeedback fb;
  if (g_drag.mode == 0 || area != g_drag.area) {
    engine::ResetDrag();
    return fb;
  }
  if (g_drag.mode == 1) {
    if (P().open) DropPiece(area, under, fb);
  } else {
    fb.hadOldBand = true;
    std::copy(std::begin(g_drag.band), std::end(g_drag.band), fb.oldBand);
    if (P().open) SelectInBand(area);
  }
  engine::ResetDrag();
  return fb;
}

DragFeedback NudgeDrag(int area, int dx, int dy) {
  DragFeedback fb;
  if (g_drag.mode != 1 || area != g_drag.area || !P().open || P().areas[area].count == 0) {
    return fb;
  }
  const EnginePoint pointer{Clamp32(static_cast<std::int64_t>(g_drag.position.x) + g_drag.grab.x),
                            Clamp32(static_cast<std::int64_t>(g_drag.position.y) + g_drag.grab.y)};
  g_drag.grab = EnginePoint{Clamp32(static_cast<std::int64_t>(g_drag.grab.x) - std::clamp(dx, -1, 1)),
                            Clamp32(static_cast<std::int64_t>(g_drag.grab.y) - std::clamp(dy, -1, 1))};
  const PointerTarget under = g_drag.under;
  DragPiece(area, pointer, under, fb);
  return fb;
}

int DragMode() { return g_drag.mode; }
int DragArea() { return g_drag.area; }
EnginePoint DragPosition() { return g_drag.position; }

void SetLiveDrag(bool on) {
  if (g_drag.mode == 0) g_drag.live = on;
}

bool LiveDrag() { return g_drag.live; }

DragImageView DragImage() {
  DragImageView view;
  if (g_drag.mode != 1 || !g_drag.showingSet || g_drag.alphaImage.pixels == nullptr) return view;
  view.pixels = g_drag.alphaImage.pixels;
  view.width = g_drag.alphaImage.width;
  view.height = g_drag.alphaImage.height;
  view.bitmapInfo = &g_drag.imageInfo;
  view.at = ImagePlace();
  view.fromPointer = EnginePoint{Clamp32(static_cast<std::int64_t>(view.at.x) -
                                         (g_drag.position.x + g_drag.grab.x)),
                                 Clamp32(static_cast<std::int64_t>(view.at.y) -
                                         (g_drag.position.y + g_drag.grab.y))};
  view.pieces = g_drag.setRun;
  return view;
}

bool ComposeDragImage() {
  if (g_drag.mode != 1 || !g_drag.showingSet || !P().open) return false;
  return ComposeSetImage(g_drag.area);
}

DragFeedback ShowPieceInstead() {
  DragFeedback fb;
  if (g_drag.mode != 1 || !g_drag.showingSet || !P().open) return fb;
  g_drag.showingSet = false;
  const int area = g_drag.area;
  Recompose(area, g_drag.setBox);
  // The grabbed piece alone from here on, drawn at the pointer as the next step would.
  const Pieza& piece = P().pieces[SliceAt(area, 0)];
  ComponerArea(area, piece.x, piece.y, P().W, P().H, false, true);
  fb.erase = true;
  const Box& b = g_drag.setBox;
  fb.eraseRect = EngineRect{Clamp32(b.x0), Clamp32(b.y0), Clamp32(b.x1 - b.x0), Clamp32(b.y1 - b.y0)};
  const EnginePoint pointer{Clamp32(static_cast<std::int64_t>(g_drag.position.x) + g_drag.grab.x),
                            Clamp32(static_cast<std::int64_t>(g_drag.position.y) + g_drag.grab.y)};
  DragFeedback step;
  DragPiece(area, pointer, g_drag.under, step);
  if (step.drawFrame) {
    fb.drawFrame = true;
    fb.frameRect = step.frameRect;
  }
  fb.cursor = step.cursor;
  return fb;
}

DragFrameView DragFrame() {
  DragFrameView view;
  if (!g_drag.frame) return view;
  view.bits = g_drag.frame.data();
  view.width = g_drag.frameImage.width;
  view.height = g_drag.frameImage.height;
  view.stride = g_drag.frameImage.stride;
  view.bitmapInfo = &g_drag.frameInfo;
  return view;
}

// ---- Engine operations ---------------------------------------------------------------------

bool MoverAlFrente(std::int32_t source, std::int32_t run, std::int32_t destination) {
  EstadoPuzzle& p = P();
  const std::int64_t n = p.PieceCount();
  if (!QV_CHECK(source >= 0 && source < n && destination >= 0 && destination < n,
                "buffers salen del rango indicado")) {
    return false;
  }
  if (!QV_CHECK(run >= 0 && source + static_cast<std::int64_t>(run) <= n, "sale del rango")) {
    return false;
  }
  if (!QV_CHECK(destination + static_cast<std::int64_t>(run) <= n, "se sale del rango")) {
    return false;
  }
  if (run == 0 || source == destination) return true;
  std::uint32_t* order = p.order.data();
  std::uint32_t* held = p.scratch[0].data();
  const auto bytes = [](std::int64_t count) {
    return static_cast<std::size_t>(count) * sizeof(std::uint32_t);
  };
  std::memcpy(held, order + source, bytes(run));
  if (destination < source) {
    std::memmove(order + destination + run, order + destination, bytes(source - destination));
  } else {
    std::memmove(order + source, order + source + run, bytes(destination - source));
  }
  std::memcpy(order + destination, held, bytes(run));
  return true;
}

namespace {

// SoltarPieza; `cascade` lets the joined group go on to take in every further neighbour that
// fits. A hint makes exactly one join and does not cascade.
bool DropAndJoin(int t, int s, std::uint32_t k, EnginePoint q, bool cascade) {
  EstadoPuzzle& p = P();
  if (!QV_CHECK(p.open, "que hago aqui en estas condiciones")) return false;
  if (!QV_CHECK(engine::ValidArea(t) && engine::ValidArea(s) &&
                    k < static_cast<std::uint32_t>(p.PieceCount()),
                "fuera de intervalo")) {
    return false;
  }
  if (!BringToFront(s, k)) {
    QV_FAIL("que hago aqui en estas condiciones");
    return false;
  }
  const std::uint32_t g = p.pieces[k].group;
  std::int32_t run = 1;
  if (g != 0) {
    while (run < p.areas[s].count && p.pieces[SliceAt(s, run)].group == g) ++run;
  }

  Neighbour fit;
  if (!p.PuzzleTerminado) fit = FindFit(t, k, q);
  EnginePoint place = q;
  std::uint32_t joined = 0;
  if (fit.found) {
    Pieza& neighbour = p.pieces[fit.piece];
    if (neighbour.unselected == 0) {
      neighbour.unselected = 1;
      Recompose(t, CellOf(p, fit.piece));
    }
    place = fit.snapped;
    // Group numbers: the joined group takes the larger of the two numbers, a loose piece
    // counting as its own number + 1. So a group is always numbered one above its highest
    // piece, and the whole picture ends as group N.
    const std::uint32_t theirs = neighbour.group != 0 ? neighbour.group : fit.piece + 1;
    joined = g == 0 ? std::max(theirs, k + 1) : std::max(theirs, g);
    if (neighbour.group != 0) {
      const std::uint32_t old = neighbour.group;
      for (std::int32_t i = 0; i < p.areas[t].count; ++i) {
        Pieza& piece = p.pieces[SliceAt(t, i)];
        if (piece.group == old) piece.group = joined;
      }
    } else {
      neighbour.group = joined;
    }
  }

  const Pieza& moving = p.pieces[k];
  const std::int64_t dx = static_cast<std::int64_t>(place.x) - moving.x;
  const std::int64_t dy = static_cast<std::int64_t>(place.y) - moving.y;
  Box before = EmptyBox();
  Box after = EmptyBox();
  for (std::int32_t i = 0; i < run; ++i) {
    const std::uint32_t m = SliceAt(s, i);
    Extend(before, CellOf(p, m));
    Pieza& piece = p.pieces[m];
    piece.x = Clamp32(piece.x + dx);
    piece.y = Clamp32(piece.y + dy);
    if (fit.found) piece.group = joined;
    Extend(after, CellOf(p, m));
  }
  MoveRunBetweenAreas(s, t, run);
  if (fit.found && cascade) {
    Box further = EmptyBox();
    JoinFurtherNeighbours(t, joined, further);
    if (!IsEmpty(further)) Extend(after, further);
  }
  engine::MarkModified();

  const auto n = static_cast<std::uint32_t>(p.PieceCount());
  if (p.areas[t].count == static_cast<std::int32_t>(n) && !p.PuzzleTerminado && AllInGroup(t, n)) {
    ResolverPuzzle();
    if (Hooks().gameFinished) Hooks().gameFinished(Hooks().context);
    return true;
  }
  if (s == t) {
    RecomposePair(t, before, after);
  } else {
    Recompose(s, before);
    Recompose(t, after);
  }
  if (fit.found) engine::PlayJoinSound();
  return true;
}

}  // namespace

bool SoltarPieza(int t, int s, std::uint32_t k, EnginePoint q) {
  return DropAndJoin(t, s, k, q, true);
}

std::int64_t HintLimit(std::int32_t rows, std::int32_t columns) {
  // trunc(N x 20 / 100) is N / 5 exactly; dividing first keeps any grid from overflowing.
  return static_cast<std::int64_t>(rows) * columns / 5;
}

bool PistaPuzzle() {
  EstadoPuzzle& p = P();
  if (!p.open || p.PuzzleTerminado) return true;
  const AreaPiezas& board = p.areas[AREA_TABLERO];
  const std::int32_t n = p.PieceCount();
  const auto nc = static_cast<std::uint32_t>(p.NC);
  // Where each piece lies in the board's slice (-1: elsewhere), so each piece a only looks at
  // its four possible neighbours instead of every piece behind it.
  auto* where = reinterpret_cast<std::int32_t*>(p.scratch[3].data());
  for (std::int32_t k = 0; k < n; ++k) where[k] = -1;
  for (std::int32_t i = 0; i < board.count; ++i) where[SliceAt(AREA_TABLERO, i)] = i;

  for (std::int32_t i = 0; i < board.count; ++i) {
    const std::uint32_t a = SliceAt(AREA_TABLERO, i);
    const Pieza& pa = p.pieces[a];
    std::int32_t bestIndex = -1;
    std::uint32_t best = 0;
    EnginePoint place;
    const auto consider = [&](bool exists, std::uint32_t b, std::int64_t qx, std::int64_t qy) {
      if (!exists || where[b] <= i || SameGroup(pa, p.pieces[b])) return;
      if (bestIndex < 0 || where[b] < bestIndex) {
        bestIndex = where[b];
        best = b;
        place = EnginePoint{Clamp32(qx), Clamp32(qy)};
      }
    };
    // The place that makes b fit a.
    consider(a >= nc, a - nc, pa.x, static_cast<std::int64_t>(pa.y) - p.ch);
    consider(a % nc != nc - 1, a + 1, static_cast<std::int64_t>(pa.x) + p.cw, pa.y);
    consider(a + nc < static_cast<std::uint32_t>(n), a + nc, pa.x,
             static_cast<std::int64_t>(pa.y) + p.ch);
    consider(a % nc != 0, a - 1, static_cast<std::int64_t>(pa.x) - p.cw, pa.y);
    if (bestIndex < 0) continue;

    Pieza& pb = p.pieces[best];
    if (pb.unselected == 0) {
      pb.unselected = 1;
      Recompose(AREA_TABLERO, CellOf(p, best));
    }
    BringToFront(AREA_TABLERO, best);
    ++p.hintsUsed;
    DropAndJoin(AREA_TABLERO, AREA_TABLERO, best, place, false);
    break;
  }
  return p.hintsUsed < HintLimit(p.NR, p.NC);
}

void RelojPuzzle() {
  EstadoPuzzle& p = P();
  if (!QV_CHECK(!p.PuzzleTerminado, "si ya se termino el puzzle por que sigo contando?")) return;
  if (p.RelojPausado || !p.open) return;
  ++p.SegundosJuego;
  engine::ShowClock(p.SegundosJuego);
}

ResultadoJuego ResultadoPuzzle() {
  const EstadoPuzzle& p = P();
  ResultadoJuego r;
  if (!p.open) return r;
  const std::int32_t n = p.PieceCount();
  r.pieces = n;
  std::int64_t clusters = 0;
  for (std::int32_t k = n - 1; k >= 0; --k) {
    const std::uint32_t group = p.pieces[static_cast<std::size_t>(k)].group;
    if (group == 0 || group == static_cast<std::uint32_t>(k) + 1) ++clusters;
  }
  // A one-piece picture has no joins to make: it counts as whole.
  const double percentage =
      n > 1 ? std::trunc(static_cast<double>(n - clusters) * 100.0 / (n - 1)) : 100.0;
  r.percentage = static_cast<std::int32_t>(percentage);
  const double score = std::trunc(percentage * (static_cast<double>(n) - p.hintsUsed) * n * 10.0 /
                                  static_cast<double>(p.SegundosJuego / 7u + 1u));
  // Far beyond any real game, but a quick solve of a huge grid must not overflow the record.
  r.score = static_cast<std::int32_t>(std::clamp(score, -2147483648.0, 2147483647.0));
  return r;
}

}  // namespace qv
