// The puzzle model: the one process-wide puzzle, its pieces, areas, order and atlas.
#pragma once

#include <cstddef>
#include <cstdint>

#include "graphics/dib_layout.h"
#include "graphics/packed_dib.h"
#include "puzzle/engine_memory.h"

namespace qv {

// Areas 0-5 are the piece boxes, area 6 the board; the order array is sliced in this order.
constexpr int kAreaCount = 7;
constexpr int kBoxCount = 6;
constexpr int AREA_TABLERO = 6;

// Codes the areas send to their parents (MWM_NOTIFY wParam).
constexpr int AREA_VACIA = 1;
constexpr int AREA_OCUPADA = 2;

// The smallest scaled picture side that can be cut.
constexpr int kMinPictureSide = 45;
// A neighbour joins when it lies within this many pixels of its place, both ways.
constexpr int kSnapTolerance = 6;
// Die geometry: cells of 200 pixels framed by a 66-pixel margin.
constexpr int kDieCell = 200;
constexpr int kDieMargin = 66;

// One piece. Saved games store these records as they are, 16 bytes each.
struct Pieza {
  std::uint32_t group;       // 0 = loose; else the number of its group of joined pieces
  std::uint8_t unselected;   // 1 = not selected, 0 = selected by the rubber band
  std::uint8_t reserved[3];  // padding, kept zero by the engine
  std::int32_t x;            // left edge of the piece's W x H cell in its area
  std::int32_t y;            // top edge of the cell
};
static_assert(sizeof(Pieza) == 16, "a piece record is 16 bytes");
static_assert(offsetof(Pieza, unselected) == 4, "the selection flag is byte 4");
static_assert(offsetof(Pieza, x) == 8 && offsetof(Pieza, y) == 12, "positions at bytes 8, 12");

// An area's 24-bit drawing surface: bottom-up rows padded to 4 bytes, the window's size.
// The header is ready for the window layer to hand to DrawDib with the bits.
struct AreaSurface {
  BitmapInfoHeader header{};
  EngineArray<std::uint8_t> bits;
  std::int32_t width = 0;
  std::int32_t height = 0;
  std::int32_t stride = 0;  // bytes per row
};

// One of the seven piece areas: a slice of the order array plus the window's surface.
struct AreaPiezas {
  bool exists = false;          // the area's window has been created
  std::uintptr_t ownerTag = 0;  // boxes: the window that stands for the box (window layer's)
  std::int32_t start = 0;       // index of the slice's first (topmost) entry in the order
  std::int32_t count = 0;       // pieces in the slice
  AreaSurface surface;
};

// The pixel format of the display the dragged image is composed for. 16 and 32 bits carry
// channel masks; 24 bits is blue, green, red.
struct DisplayFormat {
  int bitCount = 24;
  std::uint32_t redMask = 0;
  std::uint32_t greenMask = 0;
  std::uint32_t blueMask = 0;
};

// The process-wide puzzle. Fields follow the model's names; the set-up writes NC, NR and the
// scales before a cut, and the saved-game loader restores the game fields after one.
struct EstadoPuzzle {
  // Grid and scale (set by the set-up before cutting).
  std::int32_t NC = 0;  // columns
  std::int32_t NR = 0;  // rows
  double scale = 1.0;
  double fitScale = 0.0;
  double minScale = 0.0;

  // Cut geometry, filled by CrearPuzzle.
  std::int32_t cw = 0, ch = 0;  // core (grid step)
  std::int32_t mx = 0, my = 0;  // margin a tab can reach beyond the core
  std::int32_t W = 0, H = 0;    // cell: cw + 2 mx by ch + 2 my
  std::int32_t atlasWidth = 0;          // W * NC
  std::int32_t atlasHeightMinus1 = 0;   // H * NR - 1

  // AtlasPiezas: bottom-up, W*NC by H*NR pixels of blue, green, red, membership.
  EngineArray<std::uint8_t> atlas;
  EngineArray<Pieza> pieces;            // N records by piece number
  EngineArray<std::uint32_t> order;     // OrdenPiezas: N piece numbers in seven slices
  EngineArray<std::uint32_t> scratch[4];

  // The die, kept for saving.
  std::uint32_t dieId = 0;
  std::int32_t dieRows = 0;
  std::int32_t dieCols = 0;

  bool open = false;  // a puzzle has been cut and not closed
  std::uint8_t PuzzleSinEmpezar = 0;
  std::uint8_t PuzzleTerminado = 0;
  std::uint8_t PuzzleModificado = 0;
  std::uint8_t RelojPausado = 0;
  std::uint8_t solutionShown = 0;  // the player had the picture assembled for them
  std::uint32_t SegundosJuego = 0;
  std::int32_t hintsUsed = 0;
  bool clockRunning = false;  // the one-second timer is set

  std::int32_t boardWidth = 0;
  std::int32_t boardHeight = 0;

  AreaPiezas areas[kAreaCount];

  std::int32_t PieceCount() const { return open ? NR * NC : 0; }
};

// The one puzzle.
EstadoPuzzle& Puzzle();

// ---- Hooks: how the engine tells the window layer what happened --------------------------

enum class EngineCursor { Arrow, Wait, DropIntoBox };

// Every hook may be null. `context` is handed back to each call.
struct EngineHooks {
  void* context = nullptr;
  // An area became empty (AREA_VACIA) or an empty area received pieces (AREA_OCUPADA).
  void (*areaNotify)(void* context, int area, int code) = nullptr;
  // A rectangle of an area's surface changed and must be repainted.
  void (*invalidate)(void* context, int area, int x, int y, int width, int height) = nullptr;
  // The clock display shows this time.
  void (*clockDisplay)(void* context, std::uint32_t total, int hours, int minutes,
                       int seconds) = nullptr;
  // Start or kill the one-second timer whose routine calls RelojPuzzle.
  void (*startClock)(void* context) = nullptr;
  void (*stopClock)(void* context) = nullptr;
  void (*joinSound)(void* context) = nullptr;
  // The player finished the picture by joining: the game-end sequence runs.
  void (*gameFinished)(void* context) = nullptr;
  // Pieces moved since the last save (the save button may care).
  void (*gameChanged)(void* context) = nullptr;
  // The picture preview must be rebuilt (a puzzle was cut or closed).
  void (*previewChanged)(void* context) = nullptr;
  // The solved picture is laid out: hide this box's frame window.
  void (*hideBox)(void* context, int box) = nullptr;
  void (*setCursor)(void* context, EngineCursor cursor) = nullptr;
};

void SetEngineHooks(const EngineHooks& hooks);
const EngineHooks& Hooks();

// ---- The picture -------------------------------------------------------------------------

// Loads a .bmp (4, 8 or 24 bits; 4-bit pictures are widened to 8) as the puzzle's picture,
// replacing the previous one. False, with the previous picture kept, on any failure.
bool LoadPuzzlePicture(const char* path);
// Takes an 8- or 24-bit packed DIB as the picture; path may be null.
bool SetPuzzlePicture(PackedDib&& picture, const char* path);
void FreePuzzlePicture();
// The picture (null when none) and the path it came from ("" when none).
HIMAGE PuzzlePicture();
const char* PuzzlePicturePath();

// ---- Set-up values -----------------------------------------------------------------------

void SetBoardSize(std::int32_t width, std::int32_t height);
// False (format unchanged) for a depth other than 16, 24, 32 or unusable channel masks.
bool SetDisplayFormat(const DisplayFormat& format);
const DisplayFormat& CurrentDisplayFormat();

// The scale at which a picture just fits a board less 30 pixels each way, and the scale at
// which its shorter side is 135 pixels.
double FitScaleFor(std::int32_t boardWidth, std::int32_t boardHeight, std::int32_t pictureWidth,
                   std::int32_t pictureHeight);
double MinScaleFor(std::int32_t pictureWidth, std::int32_t pictureHeight);

// ---- Life of a puzzle --------------------------------------------------------------------

// The engine side of ShowPuzzle: checks that a table texture is set, stores the pending cut and
// sets scale = fitScale and minScale from the board size and the picture. The window layer then
// creates the board; its first ResizeArea of the board performs the pending cut.
bool ShowPuzzle(std::int32_t dieRows, std::int32_t dieCols, std::uint32_t dieId);
bool CutPending();

// Cuts the picture with the die. With scatter a new game is dealt; without it the caller (the
// saved-game loader) restores pieces, order and areas with RestorePieces.
bool CrearPuzzle(std::int32_t dieRows, std::int32_t dieCols, std::uint32_t dieId, bool scatter);
// CrearPuzzle with scatter, then every area recomposed.
bool NuevoPuzzle(std::int32_t dieRows, std::int32_t dieCols, std::uint32_t dieId);
// Frees the puzzle and the picture (load the picture again before the next cut); with redraw
// every area is recomposed and the clock display and the preview are reset.
void CerrarPuzzle(bool redraw);
void ResolverPuzzle();
// The tool bar's solve button: marks the solution as shown, then lays the picture out.
void SolvePuzzleForPlayer();

// Installs a saved game's areas, order and pieces into the open puzzle. Every value is checked
// first (counts add up to N, the order holds each piece once, positions within reach); on any
// fault nothing changes and the answer is false.
bool RestorePieces(const std::int32_t counts[kAreaCount], const std::uint32_t* order,
                   const Pieza* pieces);
// Positions farther out than this are refused by RestorePieces.
constexpr std::int32_t kMaxPiecePosition = 1 << 20;

// ---- Queries -----------------------------------------------------------------------------

bool PuzzleAbierto();
std::int32_t PieceCount();
// The slice of an area (topmost piece first) and its length; null/0 for a bad area.
const std::uint32_t* AreaSlice(int area);
std::int32_t AreaPieceCount(int area);
// The area holding a piece and its index in that area's slice; false for a bad piece.
bool FindPiece(std::uint32_t piece, int* area, std::int32_t* indexInSlice);
// The membership byte of piece k's atlas pixel at cell column cx, row cy (top-down); 0 outside.
std::uint8_t AtlasMembership(std::uint32_t piece, std::int32_t cx, std::int32_t cy);
// The pixel itself (blue, green, red, membership), or null outside the cell.
const std::uint8_t* AtlasPixel(std::uint32_t piece, std::int32_t cx, std::int32_t cy);

// Frees everything the engine holds: the puzzle, the picture, the surfaces, the pending cut,
// the texture reference and the hooks (program exit, and between tests).
void ShutdownEngine();

}  // namespace qv
