// The end-to-end scenario: new game, a join, a group moved, a piece joining two groups at once, a
// box used, a rubber band, the game saved, changed, left for another and opened again, a new table
// texture and the rest of the picture put together by hand. Every mouse step is played in the
// engine exactly as the game's windows hand it over, so the boards written here are what the
// screen must show.
#include "e2e/scenario.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

#include "e2e/ppm.h"
#include "graphics/himage_ops.h"
#include "graphics/packed_dib.h"
#include "graphics/resource_file.h"
#include "puzzle/compose.h"
#include "puzzle/play.h"
#include "puzzle/puzzle_model.h"
#include "puzzle/texture.h"
#include "screens/bar_layout.h"
#include "setup/file_screen_logic.h"
#include "setup/new_game_logic.h"
#include "setup/pickers.h"
#include "setup/savegame.h"
#include "shell/shell_layout.h"
#include "system/language.h"
#include "system/random.h"

namespace qv::e2e {
namespace {

// Where the game puts its windows (the shell's and the screens' layouts).
constexpr int kBoardX = 49;
constexpr int kBoardY = 78;
constexpr int kBoxAreaWidth = 288;
constexpr int kBoxTitleHeight = 24;
constexpr int kDialogFrame = 3;  // the border of the pop-up screens

struct ScreenPoint {
  int x = 0;
  int y = 0;
};

class Scenario {
 public:
  explicit Scenario(const ScenarioSetup& setup) : s_(setup) {}
  bool Run();
  bool PrintPlaces();

 private:
  bool SetUp();
  bool NewGame();
  bool JoinAndMoveGroup();
  bool JoinTwoGroups();
  bool UseBox();
  bool RubberBand();
  bool SaveAndReopen();
  bool ChangeTexture();
  bool Finish();

  // Steps and checks.
  void Click(ScreenPoint p) { steps_ << "click " << p.x << ' ' << p.y << '\n'; }
  void Wait(double seconds) { steps_ << "wait " << seconds << '\n'; }
  void Move(ScreenPoint p) { steps_ << "move " << p.x << ' ' << p.y << '\n'; }
  void Drag(ScreenPoint a, ScreenPoint b) {
    steps_ << "drag " << a.x << ' ' << a.y << ' ' << b.x << ' ' << b.y << '\n';
  }
  bool Shot(const std::string& name, int area);
  void ClockShot(const std::string& name);

  // Geometry.
  ScreenPoint AreaOrigin(int area) const;
  ScreenPoint ToScreen(int area, EnginePoint p) const {
    const ScreenPoint o = AreaOrigin(area);
    return {o.x + p.x, o.y + p.y};
  }
  ScreenPoint BoxButton(int box) const {
    const ShellPoint p = BoxButtonPosition(box, s_.screenWidth, s_.screenHeight);
    return {p.x + 12, p.y + 25};
  }
  bool Covered(ScreenPoint p) const;
  bool InsideArea(int area, EnginePoint p) const;
  ScreenPoint DialogClient(std::uint32_t background) const;
  // Slides the option bar out over its strip and presses one of its buttons.
  void OptionButton(int button);
  ScreenPoint FileScreenAction() const;

  // Pieces.
  bool GrabPoint(int area, std::uint32_t piece, EnginePoint& grab) const;
  bool EmptyPoint(int area, EnginePoint near, EnginePoint& found) const;
  // Where to take a piece of `area` and where to let go of it so that its cell lands at `to`;
  // false, with a message, when it cannot be taken or the drop point is not on the open board.
  bool PointsFor(int area, std::uint32_t piece, EnginePoint to, EnginePoint& grab,
                 EnginePoint& drop) const;
  // Drags a piece of `area` so that its cell lands at `to` in the same area; with a shot name,
  // the screen is also checked while the button is still held over the drop point.
  bool MovePiece(int area, std::uint32_t piece, EnginePoint to, const std::string& heldShot = "");
  // The board as the screen shows it in the middle of a drag: the area without the moving set,
  // and the drag image over it, wherever it is.
  bool HeldShot(const std::string& name, int area, ScreenPoint from, ScreenPoint to);
  // Drags a piece towards `to` and presses Escape before letting go: it stays where it was.
  bool CancelledDrag(int area, std::uint32_t piece, EnginePoint to);
  std::uint32_t GroupOf(std::uint32_t piece) const { return Puzzle().pieces[piece].group; }

  ScenarioSetup s_;
  std::ofstream steps_;
  PackedDib texture_;
  BoardSize board_;
  int titleNewGameWidth_ = 0;
  int titleNewGameHeight_ = 0;
};

ScreenPoint Scenario::AreaOrigin(int area) const {
  if (area == AREA_TABLERO) return {kBoardX, kBoardY};
  return {60 + 10 * area + 6, 78 + 10 * area + kBoxTitleHeight + 6};
}

// The information button and the box buttons stand over the board's right edge.
bool Scenario::Covered(ScreenPoint p) const {
  if (p.x >= s_.screenWidth - 50 && p.y >= 80 && p.y < 130) return true;
  return p.x >= s_.screenWidth - 25;
}

bool Scenario::InsideArea(int area, EnginePoint p) const {
  const AreaSurface* surface = GetAreaSurface(area);
  return surface && p.x > 2 && p.y > 2 && p.x < surface->width - 3 && p.y < surface->height - 3;
}

ScreenPoint Scenario::DialogClient(std::uint32_t background) const {
  PackedDib image;
  if (!TheResourceFile().LoadPicture(background, image)) return {0, 0};
  const int width = ImageWidth(image.get()) + 2 * kDialogFrame;
  const int height = ImageHeight(image.get()) + 2 * kDialogFrame;
  return {(s_.screenWidth - width) / 2 + kDialogFrame, (s_.screenHeight - height) / 2 + kDialogFrame};
}

void Scenario::OptionButton(int button) {
  const BarLayout bar = OptionBarLayout(s_.screenWidth, s_.screenHeight);
  Move({bar.strip.x + bar.strip.width / 4, bar.strip.y + bar.strip.height / 2});
  Wait(0.5);
  Click({bar.panel.x + bar.buttons[button].x + 35, bar.panel.y + bar.buttons[button].y + 35});
  Wait(1.5);
}

// The save and open screens are the same size and hold their action button at the same place.
ScreenPoint Scenario::FileScreenAction() const {
  const ScreenPoint screen = DialogClient(filescreen::kOpenBackgroundBase + CurrentLanguage());
  PackedDib button;
  if (!TheResourceFile().LoadPicture(filescreen::kActionImage, button)) return {0, 0};
  return {screen.x + 19 + ImageWidth(button.get()) / 2,
          screen.y + 255 + ImageHeight(button.get()) / 6};
}

// A point of the piece that the hit test gives to it, as near its middle as can be.
bool Scenario::GrabPoint(int area, std::uint32_t piece, EnginePoint& grab) const {
  const EstadoPuzzle& p = Puzzle();
  const Pieza& k = p.pieces[piece];
  const int cx = p.mx + p.cw / 2;
  const int cy = p.my + p.ch / 2;
  for (int radius = 0; radius < p.W; ++radius) {
    for (int dy = -radius; dy <= radius; ++dy) {
      for (int dx = -radius; dx <= radius; ++dx) {
        if (std::max(std::abs(dx), std::abs(dy)) != radius) continue;
        const EnginePoint at{k.x + cx + dx, k.y + cy + dy};
        if (!InsideArea(area, at) || Covered(ToScreen(area, at))) continue;
        const std::int32_t hit = HitTest(area, at);
        if (hit >= 0 && AreaSlice(area)[hit] == piece) {
          grab = at;
          return true;
        }
      }
    }
  }
  return false;
}

bool Scenario::EmptyPoint(int area, EnginePoint near, EnginePoint& found) const {
  for (int radius = 0; radius < 200; radius += 2) {
    for (int dy = -radius; dy <= radius; dy += 2) {
      for (int dx = -radius; dx <= radius; dx += 2) {
        const EnginePoint at{near.x + dx, near.y + dy};
        if (!InsideArea(area, at) || Covered(ToScreen(area, at))) continue;
        if (HitTest(area, at) < 0) {
          found = at;
          return true;
        }
      }
    }
  }
  return false;
}

bool Scenario::PointsFor(int area, std::uint32_t piece, EnginePoint to, EnginePoint& grab,
                         EnginePoint& drop) const {
  if (!GrabPoint(area, piece, grab)) {
    std::fprintf(stderr, "piece %u cannot be taken\n", piece);
    return false;
  }
  const Pieza& k = Puzzle().pieces[piece];
  drop = EnginePoint{grab.x + to.x - k.x, grab.y + to.y - k.y};
  if (!InsideArea(area, drop) || Covered(ToScreen(area, drop))) {
    std::fprintf(stderr, "piece %u cannot be dropped at %d,%d\n", piece, to.x, to.y);
    return false;
  }
  return true;
}

bool Scenario::MovePiece(int area, std::uint32_t piece, EnginePoint to,
                         const std::string& heldShot) {
  EnginePoint grab, drop;
  if (!PointsFor(area, piece, to, grab, drop)) return false;
  const PointerTarget here{PointerOver::StartArea, area, drop};
  ButtonDown(area, grab);
  DragStep(area, drop, here);
  if (!heldShot.empty() && !HeldShot(heldShot, area, ToScreen(area, grab), ToScreen(area, drop))) {
    return false;
  }
  ButtonUp(area, drop, here);
  if (heldShot.empty()) Drag(ToScreen(area, grab), ToScreen(area, drop));
  return true;
}

bool Scenario::CancelledDrag(int area, std::uint32_t piece, EnginePoint to) {
  EnginePoint grab, drop;
  if (!PointsFor(area, piece, to, grab, drop)) return false;
  // As the window does on Escape: a drop over no window of the program.
  ButtonDown(area, grab);
  DragStep(area, drop, PointerTarget{PointerOver::StartArea, area, drop});
  ButtonUp(area, EnginePoint{-1, -1}, PointerTarget{});
  const ScreenPoint from = ToScreen(area, grab), at = ToScreen(area, drop);
  steps_ << "escape " << from.x << ' ' << from.y << ' ' << at.x << ' ' << at.y << '\n';
  return true;
}

bool Scenario::HeldShot(const std::string& name, int area, ScreenPoint from, ScreenPoint to) {
  const AreaSurface* surface = GetAreaSurface(area);
  const DragImageView drag = DragImage();
  if (!surface || surface->width <= 0 || !drag.pixels) {
    std::fprintf(stderr, "no drag image to check at %s\n", name.c_str());
    return false;
  }
  Rgb24 image;
  image.width = surface->width;
  image.height = surface->height;
  image.pixels.resize(static_cast<std::size_t>(image.width) * image.height * 3);
  const ScreenPoint o = AreaOrigin(area);
  for (int y = 0; y < image.height; ++y) {
    const std::uint8_t* row = surface->bits.data() + (image.height - 1 - y) * surface->stride;
    for (int x = 0; x < image.width; ++x) {
      std::uint8_t* out = &image.pixels[(static_cast<std::size_t>(y) * image.width + x) * 3];
      for (int c = 0; c < 3; ++c) out[c] = row[x * 3 + 2 - c];
      // The drag image's pixels are premultiplied blue, green, red and alpha, bottom-up.
      const int ix = x - drag.at.x;
      const int iy = y - drag.at.y;
      if (ix >= 0 && iy >= 0 && ix < drag.width && iy < drag.height) {
        const std::uint32_t px =
            drag.pixels[static_cast<std::size_t>(drag.height - 1 - iy) * drag.width + ix];
        const int alpha = static_cast<int>(px >> 24);
        for (int c = 0; c < 3; ++c) {
          const int over = static_cast<int>((px >> (16 - 8 * c)) & 0xff);
          out[c] = static_cast<std::uint8_t>(std::min(255, over + out[c] * (255 - alpha) / 255));
        }
      }
      if (Covered({o.x + x, o.y + y})) std::copy(kUnchecked, kUnchecked + 3, out);
    }
  }
  if (!WritePpm(s_.outDir + "/" + name + ".ppm", image)) return false;
  steps_ << "heldshot " << name << ' ' << o.x << ' ' << o.y << ' ' << image.width << ' '
         << image.height << ' ' << from.x << ' ' << from.y << ' ' << to.x << ' ' << to.y << '\n';
  return true;
}

bool Scenario::Shot(const std::string& name, int area) {
  const AreaSurface* surface = GetAreaSurface(area);
  if (!surface || surface->width <= 0) return false;
  Rgb24 image;
  image.width = surface->width;
  image.height = surface->height;
  image.pixels.resize(static_cast<std::size_t>(image.width) * image.height * 3);
  for (int y = 0; y < image.height; ++y) {
    const std::uint8_t* row = surface->bits.data() + (image.height - 1 - y) * surface->stride;
    for (int x = 0; x < image.width; ++x) {
      std::uint8_t* out = &image.pixels[(static_cast<std::size_t>(y) * image.width + x) * 3];
      out[0] = row[x * 3 + 2];
      out[1] = row[x * 3 + 1];
      out[2] = row[x * 3 + 0];
    }
  }
  const ScreenPoint o = AreaOrigin(area);
  for (int y = 0; y < image.height; ++y) {
    for (int x = 0; x < image.width; ++x) {
      if (!Covered({o.x + x, o.y + y})) continue;
      std::uint8_t* out = &image.pixels[(static_cast<std::size_t>(y) * image.width + x) * 3];
      for (int c = 0; c < 3; ++c) out[c] = kUnchecked[c];
    }
  }
  if (!WritePpm(s_.outDir + "/" + name + ".ppm", image)) return false;
  Wait(1.0);
  steps_ << "shot " << name << ' ' << o.x << ' ' << o.y << ' ' << image.width << ' '
         << image.height << '\n';
  return true;
}

void Scenario::ClockShot(const std::string& name) {
  const TitleLayout t = TitleLayoutFor(s_.screenWidth, -2 + titleNewGameWidth_);
  steps_ << "clockshot " << name << ' ' << t.clock.x << ' ' << t.clock.y << ' ' << kClockWidth
         << ' ' << 40 << '\n';
}

bool Scenario::SetUp() {
  if (!OpenResourceFile(s_.resourceFile.c_str()) ||
      !TheResourceFile().LoadPicture(6000, texture_) || !MosaicoPuzzle(texture_.get())) {
    std::fprintf(stderr, "cannot read the table texture from %s\n", s_.resourceFile.c_str());
    return false;
  }
  PackedDib words;
  if (!TheResourceFile().LoadPicture(2061, words)) return false;
  titleNewGameWidth_ = ImageWidth(words.get());
  titleNewGameHeight_ = ImageHeight(words.get()) / 3;  // a push strip: normal, hover, pressed
  board_ = BoardSizeFor(s_.screenWidth, s_.screenHeight);
  SetBoardSize(board_.width, board_.height);
  // The main window makes the board and the six boxes before any game exists.
  if (!CreateBoardArea() || !ResizeArea(AREA_TABLERO, board_.width, board_.height)) return false;
  for (int box = 0; box < kBoxCount; ++box) {
    if (!CreateBoxArea(box, static_cast<std::uintptr_t>(box + 1)) ||
        !ResizeArea(box, kBoxAreaWidth, kBoxAreaWidth - kBoxTitleHeight)) {
      return false;
    }
  }
  steps_.open(s_.outDir + "/steps.txt");
  return static_cast<bool>(steps_);
}

// The smallest picture: every press of the size picker's "smaller" button lowers the size until
// it reaches 0 per cent; the grid then resets to the finest one for that size.
bool Scenario::NewGame() {
  ClockShot("clock-before");
  Click({-2 + titleNewGameWidth_ / 2, 10 + titleNewGameHeight_ / 2});
  Wait(2.0);
  const ScreenPoint dialog = DialogClient(224);
  Click({dialog.x + 30, dialog.y + 109 + 20});  // the size tab
  Wait(1.5);
  for (int i = 0; i < 25; ++i) {
    Click({dialog.x + 452 + 25, dialog.y + 134 + 25});
    Wait(0.2);
  }
  Click({dialog.x + 119 + 40, dialog.y + 255 + 18});  // confirm
  Wait(3.0);

  if (!LoadPuzzlePicture(s_.picture.c_str())) {
    std::fprintf(stderr, "cannot read %s\n", s_.picture.c_str());
    return false;
  }
  PickerState& pickers = ThePickers();
  HIMAGE picture = PuzzlePicture();
  PickerPictureChosen(pickers, ImageWidth(picture), ImageHeight(picture), board_.width,
                      board_.height);
  SetSizePercentage(pickers, 0);
  if (!ShowPuzzle(2, 2, 5000)) return false;
  EstadoPuzzle& p = Puzzle();
  p.scale = pickers.scale;
  p.NC = pickers.columns;
  p.NR = pickers.rows;
  // The new-game screen makes a new board window; its first size cuts the picture.
  DestroyArea(AREA_TABLERO);
  SeedRandom(s_.seed);
  if (!CreateBoardArea() || !ResizeArea(AREA_TABLERO, board_.width, board_.height) ||
      !PuzzleAbierto()) {
    std::fprintf(stderr, "the cut failed\n");
    return false;
  }
  std::fprintf(stderr, "puzzle: %d x %d pieces, cell %d x %d\n", p.NC, p.NR, p.W, p.H);
  return Shot("start", AREA_TABLERO);
}

bool Scenario::JoinAndMoveGroup() {
  const EstadoPuzzle& p = Puzzle();
  if (!MovePiece(AREA_TABLERO, 0, {10, 10})) return false;
  if (!MovePiece(AREA_TABLERO, 1, {10 + p.cw, 10})) return false;
  if (GroupOf(0) == 0 || GroupOf(0) != GroupOf(1)) {
    std::fprintf(stderr, "the first two pieces did not join\n");
    return false;
  }
  if (!Shot("joined", AREA_TABLERO)) return false;
  // Held half-way, the whole group rides under the pointer and its old place shows the table.
  if (!MovePiece(AREA_TABLERO, 0, {40, 30}, "group-held")) return false;
  // Escape before the release puts the group back where it was taken.
  if (!CancelledDrag(AREA_TABLERO, 1, {300, 200})) return false;
  return Shot("group-moved", AREA_TABLERO);
}

// A second group is built two rows below the first, a few pixels off its exact place but within
// the snap tolerance, and the middle row's first piece is dropped into the gap against the first
// group. The piece fits both: it snaps to one of them and the other is pulled onto its exact
// place, so a game that joined only one would show that group where it was left.
bool Scenario::JoinTwoGroups() {
  const EstadoPuzzle& p = Puzzle();
  if (p.NR < 3 || p.NC < 2) {
    std::fprintf(stderr, "the grid has no room for a piece between two groups\n");
    return false;
  }
  const auto nc = static_cast<std::uint32_t>(p.NC);
  const std::uint32_t middle = nc;
  const std::uint32_t below = 2 * nc;
  const EnginePoint top{p.pieces[0].x, p.pieces[0].y};
  constexpr int kOffX = 4, kOffY = 3;
  static_assert(kOffX < kSnapTolerance && kOffY < kSnapTolerance);
  if (!MovePiece(AREA_TABLERO, below, {top.x + kOffX, top.y + 2 * p.ch + kOffY})) return false;
  if (!MovePiece(AREA_TABLERO, below + 1, {top.x + kOffX + p.cw, top.y + 2 * p.ch + kOffY})) {
    return false;
  }
  if (GroupOf(below) == 0 || GroupOf(below) != GroupOf(below + 1) ||
      GroupOf(below) == GroupOf(0)) {
    std::fprintf(stderr, "the second group was not built apart from the first\n");
    return false;
  }
  if (!MovePiece(AREA_TABLERO, middle, {top.x, top.y + p.ch})) return false;
  for (const std::uint32_t k : {0u, 1u, middle, below, below + 1}) {
    if (GroupOf(k) == 0 || GroupOf(k) != GroupOf(middle)) {
      std::fprintf(stderr, "the piece dropped between two groups did not join both (piece %u)\n",
                   k);
      return false;
    }
  }
  const Pieza& a = p.pieces[0];
  const Pieza& b = p.pieces[below];
  if (b.x != a.x || b.y != a.y + 2 * p.ch) {
    std::fprintf(stderr, "the joined groups do not lie straight\n");
    return false;
  }
  return Shot("joined-both", AREA_TABLERO);
}

bool Scenario::UseBox() {
  const std::uint32_t piece = 2 % static_cast<std::uint32_t>(PieceCount());
  EnginePoint grab;
  if (!GrabPoint(AREA_TABLERO, piece, grab)) return false;
  const ScreenPoint button = BoxButton(0);
  const ScreenPoint board = AreaOrigin(AREA_TABLERO);
  const EnginePoint overButton{button.x - board.x, button.y - board.y};
  ButtonDown(AREA_TABLERO, grab);
  const PointerTarget onButton{PointerOver::BoxOwner, 0, {}};
  DragStep(AREA_TABLERO, overButton, onButton);
  ButtonUp(AREA_TABLERO, overButton, onButton);
  Drag(ToScreen(AREA_TABLERO, grab), button);
  if (AreaPieceCount(0) == 0) {
    std::fprintf(stderr, "the piece did not go into the box\n");
    return false;
  }
  if (!Shot("boxed", AREA_TABLERO)) return false;
  Click(button);  // opens the box
  Wait(1.0);
  if (!Shot("box-open", 0)) return false;

  // Out of the box again, onto free table right of the open box.
  EnginePoint inBox;
  if (!GrabPoint(0, piece, inBox)) return false;
  const EnginePoint onBoard{std::min(board_.width - 80, 420), 60};
  const ScreenPoint target = ToScreen(AREA_TABLERO, onBoard);
  const ScreenPoint box = AreaOrigin(0);
  const EnginePoint inBoxCoords{target.x - box.x, target.y - box.y};
  ButtonDown(0, inBox);
  const PointerTarget overBoard{PointerOver::OtherArea, AREA_TABLERO, onBoard};
  DragStep(0, inBoxCoords, overBoard);
  ButtonUp(0, inBoxCoords, overBoard);
  Drag(ToScreen(0, inBox), target);
  if (AreaPieceCount(0) != 0) return false;
  Click(button);  // closes it
  Wait(1.0);
  return Shot("unboxed", AREA_TABLERO);
}

bool Scenario::RubberBand() {
  // Two loose pieces of the scattered half, framed from an empty corner of the table.
  std::vector<std::uint32_t> loose;
  const std::uint32_t* slice = AreaSlice(AREA_TABLERO);
  for (std::int32_t i = 0; i < AreaPieceCount(AREA_TABLERO); ++i) {
    if (GroupOf(slice[i]) == 0) loose.push_back(slice[i]);
  }
  if (loose.size() < 2) return false;
  const EstadoPuzzle& p = Puzzle();
  const Pieza& a = p.pieces[loose[0]];
  const Pieza& b = p.pieces[loose[1]];
  EnginePoint start;
  if (!EmptyPoint(AREA_TABLERO, {std::min(a.x, b.x) - 5, std::min(a.y, b.y) - 5}, start)) {
    return false;
  }
  const EnginePoint end{std::max(a.x, b.x) + p.W / 2, std::max(a.y, b.y) + p.H / 2};
  const PointerTarget here{PointerOver::StartArea, AREA_TABLERO, end};
  ButtonDown(AREA_TABLERO, start);
  DragStep(AREA_TABLERO, end, here);
  ButtonUp(AREA_TABLERO, end, here);
  Drag(ToScreen(AREA_TABLERO, start), ToScreen(AREA_TABLERO, end));
  if (p.pieces[loose[0]].unselected != 0) {
    std::fprintf(stderr, "the rubber band selected nothing\n");
    return false;
  }
  if (!Shot("selected", AREA_TABLERO)) return false;
  const Pieza& first = p.pieces[loose[0]];
  if (!MovePiece(AREA_TABLERO, loose[0], {first.x, first.y - 40})) return false;
  if (!Shot("selection-moved", AREA_TABLERO)) return false;
  // A click on empty table clears the selection.
  EnginePoint empty;
  if (!EmptyPoint(AREA_TABLERO, {board_.width / 2, 20}, empty)) return false;
  ButtonDown(AREA_TABLERO, empty);
  ButtonUp(AREA_TABLERO, empty, {PointerOver::StartArea, AREA_TABLERO, empty});
  Click(ToScreen(AREA_TABLERO, empty));
  return Shot("deselected", AREA_TABLERO);
}

// The game is saved through the option bar and the file screen, changed, left for a new game
// (yes to the question about the changed game), and opened again from its tile: the board must be
// the one saved, which the engine's own save and load give here.
bool Scenario::SaveAndReopen() {
  const std::string saved = s_.outDir + "/saved.epf";
  if (!SaveGame(saved.c_str(), false, "", BoxNames{})) return false;
  OptionButton(kSaveButton);
  steps_ << "type Halfway\n";
  Click(FileScreenAction());
  Wait(1.5);
  steps_ << "saved Halfway\n";

  // A change after the save, so that leaving the game asks first.
  std::uint32_t piece = 0;
  const std::uint32_t* slice = AreaSlice(AREA_TABLERO);
  for (std::int32_t i = 0; i < AreaPieceCount(AREA_TABLERO); ++i) {
    if (GroupOf(slice[i]) == 0) piece = slice[i];
  }
  const Pieza& k = Puzzle().pieces[piece];
  if (!MovePiece(AREA_TABLERO, piece, {k.x, k.y + 30})) return false;
  if (!Puzzle().PuzzleModificado || !Shot("changed", AREA_TABLERO)) return false;

  Click({-2 + titleNewGameWidth_ / 2, 10 + titleNewGameHeight_ / 2});
  Wait(1.5);
  steps_ << "key Return\n";  // leave the changed game
  Wait(2.0);
  steps_ << "key Return\n";  // a new game as the screen offers it
  Wait(3.0);
  // Its cut is the game's own, so only its being another board is checked.
  const ScreenPoint board = AreaOrigin(AREA_TABLERO);
  steps_ << "capture other-game " << board.x << ' ' << board.y << ' ' << board_.width << ' '
         << board_.height << '\n';
  steps_ << "differ changed other-game\n";

  OptionButton(kOpenButton);
  const ScreenPoint screen = DialogClient(filescreen::kOpenBackgroundBase + CurrentLanguage());
  Click({screen.x + filescreen::TileX(0) + filescreen::kTileWidth / 2,
         screen.y + filescreen::kTileY + filescreen::kTileHeight / 2});
  Wait(0.5);
  Click(FileScreenAction());
  Wait(3.0);
  LoadedGame loaded;
  if (!LoadGame(saved.c_str(), "", loaded)) {
    std::fprintf(stderr, "the engine cannot load its own saved game\n");
    return false;
  }
  return Shot("reopened", AREA_TABLERO);
}

bool Scenario::ChangeTexture() {
  const TitleLayout t = TitleLayoutFor(s_.screenWidth, -2 + titleNewGameWidth_);
  Click({t.texture.x + kTitleButtonSide / 2, t.texture.y + kTitleButtonSide / 2});
  Wait(1.5);
  const ScreenPoint dialog = DialogClient(133);
  Click({dialog.x + 135 + 25, dialog.y + 264 + 25});  // next texture
  Wait(1.0);
  Click({dialog.x + 25, dialog.y + 290 + 25});  // close
  Wait(1.0);
  if (!TheResourceFile().LoadPicture(6001, texture_) || !MosaicoPuzzle(texture_.get())) {
    return false;
  }
  return Shot("texture", AREA_TABLERO);
}

// Each remaining piece is laid against a piece of the growing picture it borders.
bool Scenario::Finish() {
  const EstadoPuzzle& p = Puzzle();
  const std::int32_t n = PieceCount();
  for (int guard = 0; guard < 4 * n && !p.PuzzleTerminado; ++guard) {
    const std::uint32_t main = GroupOf(0);
    bool moved = false;
    for (std::uint32_t k = 0; k < static_cast<std::uint32_t>(n) && !moved; ++k) {
      if (GroupOf(k) != 0 && GroupOf(k) == main) continue;
      const int row = static_cast<int>(k) / p.NC;
      const int col = static_cast<int>(k) % p.NC;
      const struct {
        int dr, dc;
      } sides[] = {{0, -1}, {-1, 0}, {0, 1}, {1, 0}};
      for (const auto& side : sides) {
        const int r = row + side.dr;
        const int c = col + side.dc;
        if (r < 0 || c < 0 || r >= p.NR || c >= p.NC) continue;
        const std::uint32_t neighbour = static_cast<std::uint32_t>(r * p.NC + c);
        if (GroupOf(neighbour) != main) continue;
        const Pieza& at = p.pieces[neighbour];
        const EnginePoint to{at.x - side.dc * p.cw, at.y - side.dr * p.ch};
        EnginePoint grab;
        if (!GrabPoint(AREA_TABLERO, k, grab)) break;
        if (!MovePiece(AREA_TABLERO, k, to)) return false;
        moved = true;
        break;
      }
    }
    if (!moved) {
      std::fprintf(stderr, "no piece can be laid against the picture\n");
      return false;
    }
  }
  if (!p.PuzzleTerminado) return false;
  // The end of the game: yes to the wallpaper question (its OK button, as that box has no field
  // to take the keyboard), a name for the empty honour roll, then the roll is closed.
  constexpr int kBoxWidth = 500, kBoxHeight = 305;
  const int boxLeft = (s_.screenWidth - kBoxWidth) / 2;
  const int boxTop = (s_.screenHeight - kBoxHeight) / 2;
  Wait(1.5);
  Click({boxLeft + 60, boxTop + 285});
  Wait(2.0);
  steps_ << "type Ana\n";
  steps_ << "key Return\n";
  Wait(1.5);
  steps_ << "look honour\n";
  steps_ << "record Ana\n";
  steps_ << "wallpaper\n";
  steps_ << "key Escape\n";
  Wait(1.5);
  if (!Shot("finished", AREA_TABLERO)) return false;
  ClockShot("clock-finished");
  Wait(2.5);
  ClockShot("clock-later");
  steps_ << "same clock-finished clock-later\n";
  steps_ << "differ clock-before clock-finished\n";
  return true;
}

bool Scenario::Run() {
  return SetUp() && NewGame() && JoinAndMoveGroup() && JoinTwoGroups() && UseBox() &&
         RubberBand() && SaveAndReopen() && ChangeTexture() && Finish();
}

bool Scenario::PrintPlaces() {
  PackedDib words;
  if (!OpenResourceFile(s_.resourceFile.c_str()) ||
      !TheResourceFile().LoadPicture(2061, words)) {
    std::fprintf(stderr, "cannot read the title bar's pictures from %s\n", s_.resourceFile.c_str());
    return false;
  }
  std::printf("newgame %d %d\n", -2 + ImageWidth(words.get()) / 2,
              10 + ImageHeight(words.get()) / 3 / 2);
  const ScreenPoint dialog = DialogClient(224);
  for (int tile = 0; tile < newgame::kTileCount; ++tile) {
    const newgame::Rect r = newgame::TileRect(tile);
    std::printf("tile%d %d %d\n", tile, dialog.x + r.x + r.width / 2, dialog.y + r.y + r.height / 2);
  }
  const newgame::Rect on = newgame::PageArrowRect(true);
  std::printf("pageon %d %d\n", dialog.x + on.x + on.width / 2, dialog.y + on.y + on.height / 2);
  std::printf("confirm %d %d\n", dialog.x + newgame::kConfirmPosition.x + 40,
              dialog.y + newgame::kConfirmPosition.y + 18);
  const BoardSize board = BoardSizeFor(s_.screenWidth, s_.screenHeight);
  std::printf("board %d %d %d %d\n", kBoardX, kBoardY, board.width, board.height);
  return true;
}

}  // namespace

bool PrintPlaces(const ScenarioSetup& setup) {
  Scenario scenario(setup);
  const bool ok = scenario.PrintPlaces();
  ShutdownEngine();
  return ok;
}

bool PlanScenario(const ScenarioSetup& setup) {
  Scenario scenario(setup);
  const bool ok = scenario.Run();
  ShutdownEngine();
  return ok;
}

}  // namespace qv::e2e
