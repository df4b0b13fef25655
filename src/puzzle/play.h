// Playing: hit test, the mouse in engine terms, snapping and joining, hints, clock and score.
#pragma once

#include <cstdint>

#include "graphics/dib_layout.h"
#include "puzzle/puzzle_model.h"

namespace qv {

struct EnginePoint {
  std::int32_t x = 0;
  std::int32_t y = 0;
};

struct EngineRect {
  std::int32_t x = 0;
  std::int32_t y = 0;
  std::int32_t width = 0;
  std::int32_t height = 0;
};

// What lies under the pointer, as the window layer found it (WindowFromPoint).
enum class PointerOver {
  Outside,      // not a child window of the program: a drop there is cancelled
  StartArea,    // the area window where the drag started
  OtherArea,    // another area's window; `point` is in that area's coordinates
  BoxOwner,     // the window that stands for another area's box (its button or frame)
  OtherWindow,  // some other child window that takes no pieces
};

struct PointerTarget {
  PointerOver over = PointerOver::Outside;
  int area = -1;        // OtherArea, BoxOwner: the area
  EnginePoint point;    // OtherArea: the pointer in that area's coordinates
};

// What the window layer must draw after a mouse event.
struct DragFeedback {
  EngineCursor cursor = EngineCursor::Arrow;
  // Mode 1: blit the drag frame's top-left frameRect.width x height pixels to frameRect.
  bool drawFrame = false;
  EngineRect frameRect;
  // Mode 1: the dragged image left the start window; repaint this rectangle from the surface.
  bool erase = false;
  EngineRect eraseRect;
  // Mode 2: the rubber band; draw oldBand (to erase it) when hadOldBand, then newBand when
  // hasNewBand, both as 5-point polylines in the inverting mode.
  bool hadOldBand = false;
  bool hasNewBand = false;
  EnginePoint oldBand[5];
  EnginePoint newBand[5];
  // Live drag, mode 1: show the drag image with its top-left corner at imageAt (start-window
  // coordinates, anywhere on the screen).
  bool moveImage = false;
  EnginePoint imageAt;
};

// ---- Hit test and mouse --------------------------------------------------------------------

// The index in the area's slice of the topmost piece whose membership pixel lies under the
// point, or -1.
std::int32_t HitTest(int area, EnginePoint p);

// Button-down, mouse move and button-up on an area window, in that window's coordinates. The
// window layer takes the capture at button-down and releases it after button-up; a lost
// capture is a button-up at (-1, -1) over whatever window lies there.
DragFeedback ButtonDown(int area, EnginePoint p);
DragFeedback DragStep(int area, EnginePoint p, const PointerTarget& under);
DragFeedback ButtonUp(int area, EnginePoint p, const PointerTarget& under);

// An arrow key while a piece is dragged: the piece (or the set) moves one pixel that way
// against the pointer, for fine placement; later steps keep the offset.
DragFeedback NudgeDrag(int area, int dx, int dy);

// 0 idle, 1 dragging a piece, 2 drawing a selection rectangle.
int DragMode();
int DragArea();
EnginePoint DragPosition();

// The drag frame (2W x 2H, display format, bottom-up) that drawFrame refers to, with a header
// (and the three channel masks after it for 16 and 32 bits) for the window layer's blit.
struct DragFrameView {
  const std::uint8_t* bits = nullptr;
  std::int32_t width = 0;
  std::int32_t height = 0;
  std::int32_t stride = 0;
  const void* bitmapInfo = nullptr;  // BITMAPINFOHEADER (+ masks)
};
DragFrameView DragFrame();

// Live drag: from button-down on, the grabbed piece and everything that moves with it on the
// drop (its group or the selection) follow the pointer as one image, which the window layer
// shows in a window of its own over the whole screen; the area is shown without the moving set
// until the drop. Off, only the grabbed piece is drawn, in its own window. Changes only between
// drags.
void SetLiveDrag(bool on);
bool LiveDrag();

// The image of the moving set, composed once at button-down: 32-bit premultiplied pixels
// (blue, green, red, alpha), bottom-up, rows of width pixels, ready for a layered window.
struct DragImageView {
  const std::uint32_t* pixels = nullptr;  // null when no live drag of a piece is under way
  std::int32_t width = 0;
  std::int32_t height = 0;
  const void* bitmapInfo = nullptr;  // BITMAPINFOHEADER, 32 bits, BI_RGB
  EnginePoint at;                    // its top-left corner now, in start-window coordinates
  EnginePoint fromPointer;           // its top-left corner less the pointer
  std::int32_t pieces = 0;           // pieces in the moving set
};
DragImageView DragImage();
// Composes the drag image of the drag under way again (what button-down does).
bool ComposeDragImage();
// The window layer could not show the drag image: the rest of this drag shows the grabbed
// piece alone, drawn in its window, and the set where it lies (the drop is the same).
DragFeedback ShowPieceInstead();

// ---- Engine operations ---------------------------------------------------------------------

// Moves a run of the order array to another position, keeping the order of everything else.
bool MoverAlFrente(std::int32_t source, std::int32_t run, std::int32_t destination);

// Drops piece k (at the front of area s, its group gathered behind it) at q in area t, snapping
// it to a neighbour within the tolerance and joining them. False after a failed check.
bool SoltarPieza(int target, int source, std::uint32_t piece, EnginePoint q);

// Joins one more pair of neighbours on the board. True while hints remain (fewer used than a
// fifth of the pieces).
bool PistaPuzzle();

// The one-second clock tick.
void RelojPuzzle();

struct ResultadoJuego {
  std::int32_t pieces = 0;
  std::int32_t percentage = 0;
  std::int32_t score = 0;
};
ResultadoJuego ResultadoPuzzle();

// The hint limit for a grid: a fifth of the pieces, truncated. The one rule for both playing
// and saved games; in 64 bits, because a saved game's grid comes from a file.
std::int64_t HintLimit(std::int32_t rows, std::int32_t columns);

}  // namespace qv
