// The puzzle's windows with the game's resource file and a real picture: dropping pieces into
// boxes, box buttons, frame resizing, the texture screen, the preview and the picture viewer.
#include <windows.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "graphics/control_dc.h"
#include "graphics/himage_ops.h"
#include "graphics/resource_file.h"
#include "puzzle/compose.h"
#include "puzzle/frame_logic.h"
#include "puzzle/play.h"
#include "puzzle/puzzle_model.h"
#include "puzzle/puzzle_windows.h"
#include "puzzle/puzzle_windows_internal.h"
#include "core/app.h"
#include "support/assert_recorder.h"
#include "widgets/widget_classes.h"
#include "widgets/widget_messages.h"
#include "win/support/real_input.h"
#include "win/win_test_support.h"

namespace qv::test {
namespace {

using puzzle_win::DragImageWindow;

std::string DataPath(const char* name) { return GameDataFolder() + name; }

SIZE WindowSize(HWND window) {
  RECT r;
  GetWindowRect(window, &r);
  return SIZE{r.right - r.left, r.bottom - r.top};
}

void ShowFrame(HWND frame) {
  SetWindowPos(frame, HWND_TOP, 0, 0, 0, 0, SWP_NOSIZE | SWP_NOMOVE | SWP_SHOWWINDOW);
  UpdateWindow(frame);
  Pump(50);
}

// ---- The program around the puzzle windows ---------------------------------------------------

ControlDC g_buttonImages[kBoxCount];

class PuzzleEnvironment : public ::testing::Environment {
 public:
  void SetUp() override {
    HINSTANCE instance = GetModuleHandleA(nullptr);
    ASSERT_TRUE(OpenResourceFile(DataPath("Quorvex.rf").c_str())) << DataPath("Quorvex.rf");
    ASSERT_TRUE(RegisterWidgetClasses(instance));
    ASSERT_TRUE(RegisterMessageBoxClass(instance));
    ASSERT_TRUE(RegisterPuzzleWindowClasses(instance));
    HWND main = CreateGameMainWindow();
    ASSERT_TRUE(main);
    SetMainWindow(main);
    for (int i = 0; i < kBoxCount; ++i) {
      ASSERT_TRUE(g_buttonImages[i].LoadById(200 + static_cast<std::uint32_t>(i)));
      HWND button = CreateWindowExA(0, kBoxCommandClass, "", WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS,
                                    ScreenWidth() - 25, ScreenHeight() / 2 - 112 + 46 * i, 50, 50,
                                    main, reinterpret_cast<HMENU>(static_cast<INT_PTR>(100 + i)),
                                    instance, nullptr);
      SendMessageA(button, MWM_SETIMAGE, 0, reinterpret_cast<LPARAM>(g_buttonImages[i].Dib()));
      SetBoxButton(i, button);
    }
    SetBoardSize(ScreenWidth() - 49 - 25, ScreenHeight() - 78 - 25);
    ASSERT_TRUE(SetTableTextureIndex(0));
    SetEngineHooks(PuzzleWindowHooks());
    ASSERT_TRUE(CreateBoxWindows(main));
    ASSERT_TRUE(CreatePreviewWindow(main));
    SetWindowTextA(PreviewWindow(), "Preview");

    ASSERT_TRUE(LoadPuzzlePicture(DataPath("Image/1.bmp").c_str()));
    Puzzle().NR = 3;
    Puzzle().NC = 4;
    ASSERT_TRUE(ShowPuzzle(2, 2, 5000));
    ASSERT_TRUE(CreateBoardWindow(main));
    Pump(100);
  }
  void TearDown() override {
    if (MainWindow()) DestroyWindow(MainWindow());
    ShutdownEngine();
  }
};

const auto* const g_environment = ::testing::AddGlobalTestEnvironment(new PuzzleEnvironment);

HWND BoxArea(int box) { return GetDlgItem(BoxWindow(box), 100 + box); }

// The screen point of a piece of the area that a press there picks (its cell's centre, the
// piece being the topmost there).
bool PickablePiece(int area, HWND window, POINT* screen, std::uint32_t* which = nullptr) {
  const EstadoPuzzle& p = Puzzle();
  const std::uint32_t* slice = AreaSlice(area);
  for (std::int32_t i = 0; i < AreaPieceCount(area); ++i) {
    const Pieza& piece = p.pieces[slice[i]];
    const EnginePoint centre{piece.x + p.W / 2, piece.y + p.H / 2};
    RECT client;
    GetClientRect(window, &client);
    if (centre.x < 2 || centre.y < 2 || centre.x >= client.right - 2 || centre.y >= client.bottom - 2) {
      continue;
    }
    if (HitTest(area, centre) == i) {
      *screen = OnScreen(window, centre.x, centre.y);
      if (which) *which = slice[i];
      if (WindowFromPoint(*screen) == window) return true;
    }
  }
  return false;
}

// Whether a button shows the same picture as resource-file image `id`.
bool ButtonShows(HWND button, std::uint32_t id) {
  HIMAGE shown = reinterpret_cast<HIMAGE>(SendMessageA(button, MWM_GETIMAGE, 0, 0));
  ControlDC expected;
  if (!shown || !expected.LoadById(id)) return false;
  HIMAGE e = expected.Dib();
  if (ImageWidth(shown) != ImageWidth(e) || ImageHeight(shown) != ImageHeight(e)) return false;
  return std::memcmp(DibPixels(shown), DibPixels(e),
                     static_cast<std::size_t>(ImageStride(e) * ImageHeight(e))) == 0;
}

// ---- Tests -------------------------------------------------------------------------------------

TEST(PuzzleBoard, CutsOnItsFirstSizeAtItsPlace) {
  HWND board = BoardWindow();
  ASSERT_TRUE(board);
  EXPECT_TRUE(PuzzleAbierto());
  EXPECT_EQ(AreaPieceCount(AREA_TABLERO), 12);
  RECT r;
  GetWindowRect(board, &r);
  EXPECT_EQ(r.left, kBoardLeft);
  EXPECT_EQ(r.top, kBoardTop);
  EXPECT_EQ(r.right - r.left, ScreenWidth() - 74);
  EXPECT_EQ(GetDlgCtrlID(board), kBoardControlId);
  const AreaSurface* surface = GetAreaSurface(AREA_TABLERO);
  ASSERT_TRUE(surface);
  EXPECT_EQ(surface->width, r.right - r.left);
  EXPECT_EQ(surface->height, r.bottom - r.top);
}

// What the board window shows in a rectangle of its client area.
std::vector<std::uint32_t> Shown(HWND window, const RECT& r) {
  Canvas canvas(r.right - r.left, r.bottom - r.top);
  HDC dc = GetDC(window);
  BitBlt(canvas.dc(), 0, 0, r.right - r.left, r.bottom - r.top, dc, r.left, r.top, SRCCOPY);
  ReleaseDC(window, dc);
  std::vector<std::uint32_t> pixels;
  for (int y = 0; y < r.bottom - r.top; ++y)
    for (int x = 0; x < r.right - r.left; ++x) pixels.push_back(canvas.At(x, y));
  return pixels;
}

// Where the drag image's window lies on the screen, or an empty rectangle.
RECT DragImagePlace() {
  RECT r{};
  if (DragImageWindow() && IsWindowVisible(DragImageWindow())) GetWindowRect(DragImageWindow(), &r);
  return r;
}

// Another window taking the capture in the middle of a drag (as a system dialog would) puts the
// piece back where it was picked up and wipes the frame drawn where it had been dragged to.
TEST(PuzzleBoard, CaptureTakenAwayMidDragPutsThePieceBack) {
  HWND board = BoardWindow();
  POINT from;
  std::uint32_t k = 0;
  ASSERT_TRUE(PickablePiece(AREA_TABLERO, board, &from, &k));
  const Pieza before = Puzzle().pieces[k];
  const int count = AreaPieceCount(AREA_TABLERO);
  RECT client;
  GetClientRect(board, &client);
  const int w = Puzzle().W, h = Puzzle().H;
  const int dx = before.x + 2 * w + 20 < client.right ? w + 20 : -(w + 20);
  const RECT away{before.x + dx, before.y, before.x + dx + w, before.y + h};
  const std::vector<std::uint32_t> table = Shown(board, away);

  MoveTo(from);
  LeftDown();
  MoveTo(from.x + dx / 2, from.y);
  MoveTo(from.x + dx, from.y);
  ASSERT_EQ(DragMode(), 1);
  ASSERT_EQ(GetCapture(), board);
  // The piece rides at the pointer in the drag image, over the table left as it was.
  ASSERT_TRUE(LiveDrag());
  EXPECT_EQ(DragImagePlace().left, OnScreen(board, away.left, away.top).x);
  EXPECT_EQ(Shown(board, away), table);

  SetCapture(MainWindow());
  Pump(30);
  EXPECT_EQ(DragMode(), 0);
  EXPECT_EQ(DragImageWindow(), nullptr);
  const Pieza& now = Puzzle().pieces[k];
  EXPECT_EQ(now.x, before.x);
  EXPECT_EQ(now.y, before.y);
  EXPECT_EQ(AreaPieceCount(AREA_TABLERO), count);
  LeftUp();  // the release goes to the window that took the capture: nothing moves
  ReleaseCapture();
  Pump(60);
  EXPECT_EQ(Puzzle().pieces[k].x, before.x);
  EXPECT_EQ(Puzzle().pieces[k].y, before.y);
  EXPECT_EQ(Shown(board, away), table);
}

// With live drags the piece rides under the pointer in a layered window that lets the pointer
// through to the windows beneath; an arrow key moves it by one pixel against the pointer and
// Escape puts it back where it was taken.
TEST(PuzzleBoard, LiveDragArrowsNudgeAndEscapeCancels) {
  HWND board = BoardWindow();
  POINT from;
  std::uint32_t k = 0;
  ASSERT_TRUE(PickablePiece(AREA_TABLERO, board, &from, &k));
  const Pieza before = Puzzle().pieces[k];
  const bool wasLive = LiveDrag();
  SetLiveDrag(true);
  MoveTo(from);
  LeftDown();
  MoveTo(from.x + 30, from.y + 20);
  ASSERT_EQ(DragMode(), 1);
  const POINT cell = OnScreen(board, before.x + 30, before.y + 20);
  EXPECT_EQ(DragImagePlace().left, cell.x);
  EXPECT_EQ(DragImagePlace().right - DragImagePlace().left, Puzzle().W);
  EXPECT_EQ(WindowFromPoint(POINT{from.x + 30, from.y + 20}), board);
  if (Xdotool("key Right")) {
    EXPECT_TRUE(PumpUntil([&] { return DragImagePlace().left == cell.x + 1; }));
    EXPECT_EQ(DragImagePlace().top, cell.y);
    Xdotool("key Escape");
    EXPECT_TRUE(PumpUntil([] { return DragMode() == 0; }));
    EXPECT_EQ(DragImageWindow(), nullptr);
  }
  LeftUp();
  Pump(30);
  SetLiveDrag(wasLive);
  EXPECT_EQ(Puzzle().pieces[k].x, before.x);
  EXPECT_EQ(Puzzle().pieces[k].y, before.y);
}

// The drag that shows the grabbed piece alone (what a drag falls back to when the system cannot
// show the drag image): Escape still puts it back, and an arrow key moves where it lands by one
// pixel.
TEST(PuzzleBoard, DragKeysWorkInThePieceOnlyDrag) {
  struct PieceOnly {
    bool was = LiveDrag();
    PieceOnly() { SetLiveDrag(false); }
    ~PieceOnly() { SetLiveDrag(was); }
  } pieceOnly;
  HWND board = BoardWindow();
  POINT from;
  std::uint32_t k = 0;
  ASSERT_TRUE(PickablePiece(AREA_TABLERO, board, &from, &k));
  const Pieza before = Puzzle().pieces[k];
  MoveTo(from);
  LeftDown();
  MoveTo(from.x + 40, from.y + 25);
  ASSERT_EQ(DragMode(), 1);
  if (!Xdotool("key Escape")) GTEST_SKIP() << "no xdotool";
  EXPECT_TRUE(PumpUntil([] { return DragMode() == 0; }));
  MoveTo(from.x + 60, from.y + 25);
  LeftUp();
  Pump(30);
  EXPECT_EQ(Puzzle().pieces[k].x, before.x);
  EXPECT_EQ(Puzzle().pieces[k].y, before.y);

  ASSERT_TRUE(PickablePiece(AREA_TABLERO, board, &from, &k));
  const Pieza second = Puzzle().pieces[k];
  MoveTo(from);
  LeftDown();
  MoveTo(from.x + 40, from.y + 25);
  Xdotool("key Right");
  Pump(50);
  MoveTo(from.x + 41, from.y + 25);
  LeftUp();
  Pump(30);
  // Moved by the pointer's 41 pixels and the key's one (unless the drop joined it somewhere).
  if (Puzzle().pieces[k].group == second.group) {
    EXPECT_EQ(Puzzle().pieces[k].x, second.x + 42);
  }
}

TEST(PieceBoxes, DropOnTheBoxButtonFillsTheBoxAndItsPicture) {
  ASSERT_TRUE(ButtonShows(BoxButton(0), 200));
  POINT from;
  ASSERT_TRUE(PickablePiece(AREA_TABLERO, BoardWindow(), &from));
  RECT button;
  GetWindowRect(BoxButton(0), &button);
  Drag(from, POINT{button.left + 12, button.top + 25});
  EXPECT_EQ(DragMode(), 0);
  EXPECT_EQ(AreaPieceCount(0), 1);
  EXPECT_EQ(AreaPieceCount(AREA_TABLERO), 11);
  EXPECT_TRUE(ButtonShows(BoxButton(0), 600));
  // The piece lies at the box's centre.
  const Pieza& piece = Puzzle().pieces[AreaSlice(0)[0]];
  RECT area;
  GetClientRect(BoxArea(0), &area);
  EXPECT_EQ(piece.x, (area.right - Puzzle().W) / 2);
  EXPECT_EQ(piece.y, (area.bottom - Puzzle().H) / 2);
}

// How many of the drag image's opaque pixels the screen shows as they are, and how many there are.
std::pair<int, int> ScreenShowsDragImage() {
  const DragImageView view = DragImage();
  const RECT place = DragImagePlace();
  if (!view.pixels || place.right - place.left != view.width) return {0, 0};
  Canvas canvas(view.width, view.height);
  HDC screen = GetDC(nullptr);
  BitBlt(canvas.dc(), 0, 0, view.width, view.height, screen, place.left, place.top, SRCCOPY);
  ReleaseDC(nullptr, screen);
  int shown = 0, opaque = 0;
  for (int y = 0; y < view.height; ++y) {
    for (int x = 0; x < view.width; ++x) {
      const std::uint32_t px = view.pixels[(view.height - 1 - y) * view.width + x];
      if ((px >> 24) != 255) continue;
      ++opaque;
      if (canvas.At(x, y) == (px & 0x00FFFFFF)) ++shown;
    }
  }
  return {shown, opaque};
}

TEST(PieceBoxes, TakingTheLastPieceOutEmptiesTheButton) {
  ASSERT_EQ(AreaPieceCount(0), 1);
  ShowFrame(BoxWindow(0));
  POINT from;
  ASSERT_TRUE(PickablePiece(0, BoxArea(0), &from));
  // Taken out of the box and held over the board, the piece stays in sight.
  const POINT to = OnScreen(BoardWindow(), 700, 150);
  MoveTo(from);
  LeftDown();
  MoveTo((from.x + to.x) / 2, (from.y + to.y) / 2);
  MoveTo(to);
  const auto [shown, opaque] = ScreenShowsDragImage();
  EXPECT_GT(opaque, Puzzle().W * Puzzle().H / 4);
  EXPECT_EQ(shown, opaque);
  LeftUp();
  Pump(60);
  EXPECT_EQ(AreaPieceCount(0), 0);
  EXPECT_EQ(AreaPieceCount(AREA_TABLERO), 12);
  EXPECT_TRUE(ButtonShows(BoxButton(0), 200));
  SendMessageA(BoxWindow(0), WM_CLOSE, 0, 0);
}

TEST(PieceBoxes, DropOnTheFrameFillsTheBoxAndClosingKeepsIt) {
  HWND frame = BoxWindow(1);
  ShowFrame(frame);
  POINT from;
  ASSERT_TRUE(PickablePiece(AREA_TABLERO, BoardWindow(), &from));
  const POINT to = OnScreen(frame, 100, 10);
  ASSERT_EQ(WindowFromPoint(to), frame);
  Drag(from, to);
  EXPECT_EQ(AreaPieceCount(1), 1);
  EXPECT_TRUE(ButtonShows(BoxButton(1), 601));
  SendMessageA(frame, WM_CLOSE, 0, 0);
  EXPECT_TRUE(IsWindow(frame));
  EXPECT_FALSE(IsWindowVisible(frame));
  EXPECT_EQ(AreaPieceCount(1), 1);
}

TEST(PieceBoxes, NamesAreKeptAndCut) {
  char name[64] = {};
  GetWindowTextA(BoxWindow(2), name, sizeof name);
  EXPECT_STREQ(name, "Box3 ");
  SetWindowTextA(BoxWindow(2), std::string(60, 'x').c_str());
  EXPECT_EQ(GetWindowTextA(BoxWindow(2), name, sizeof name), 39);
  SetWindowTextA(BoxWindow(2), "Box3 ");
}

TEST(PieceBoxes, PressPointChoosesMoveOrResize) {
  HWND frame = BoxWindow(2);
  ShowFrame(frame);
  RECT before;
  GetWindowRect(frame, &before);
  ASSERT_EQ(before.right - before.left, 300);

  Drag(OnScreen(frame, 298, 298), OnScreen(frame, 338, 328));  // bottom-right corner
  EXPECT_EQ(WindowSize(frame).cx, 340);
  EXPECT_EQ(WindowSize(frame).cy, 330);
  RECT area;
  GetClientRect(BoxArea(2), &area);
  EXPECT_EQ(area.right, 340 - 12);
  EXPECT_EQ(area.bottom, 330 - 24 - 12);

  // Which edge a press takes is the frame logic's (tested natively); here, the corner, the
  // title strip and the minimum reach the window.
  RECT resized;
  GetWindowRect(frame, &resized);
  Drag(OnScreen(frame, 120, 8), OnScreen(frame, 140, 23));  // title strip: moves
  RECT moved;
  GetWindowRect(frame, &moved);
  EXPECT_EQ(moved.left, resized.left + 20);
  EXPECT_EQ(moved.top, resized.top + 15);
  EXPECT_EQ(WindowSize(frame).cx, 340);

  Drag(OnScreen(frame, 338, 328), OnScreen(frame, 100, 60));  // far below the minimum
  EXPECT_EQ(WindowSize(frame).cx, kBoxMinWidth);
  EXPECT_EQ(WindowSize(frame).cy, kBoxMinHeight);
  SetWindowPos(frame, nullptr, before.left, before.top, 300, 300, SWP_NOZORDER | SWP_NOACTIVATE);
  SendMessageA(frame, WM_CLOSE, 0, 0);
}

// With QV_PUZZLE_SHOT_MS set, holds the board with an open box on screen for a screenshot.
TEST(BoardWithBox, HoldsForAScreenshotWhenAsked) {
  const char* hold = std::getenv("QV_PUZZLE_SHOT_MS");
  if (!hold) GTEST_SKIP() << "QV_PUZZLE_SHOT_MS not set";
  ShowFrame(BoxWindow(1));
  ShowPreview();
  Pump(std::atoi(hold) / 2);
  // Then a piece held half-way through a drag.
  POINT from;
  ASSERT_TRUE(PickablePiece(AREA_TABLERO, BoardWindow(), &from));
  MoveTo(from);
  LeftDown();
  MoveTo(POINT{from.x + 90, from.y - 150});
  MoveTo(POINT{from.x + 180, from.y - 300});
  Pump(std::atoi(hold) / 2);
  LeftUp();
  SendMessageA(BoxWindow(1), WM_CLOSE, 0, 0);
  HideAllBoxesBut(nullptr);
}

HWND ChildAt(HWND parent, int x, int y) {
  return ChildWindowFromPointEx(parent, POINT{x, y}, CWP_SKIPINVISIBLE);
}

TEST(MosaicScreen, NextFromTheLastTextureWrapsToTheFirst) {
  ASSERT_TRUE(SetTableTextureIndex(9));
  const AreaSurface* board = GetAreaSurface(AREA_TABLERO);
  const AreaSurface* box = GetAreaSurface(3);
  ASSERT_TRUE(board && box);
  // Top rows of the board and of an empty box hold only the table.
  auto topLeft = [](const AreaSurface* s) {
    const std::uint8_t* p = s->bits.data() + static_cast<std::ptrdiff_t>(s->height - 2) * s->stride + 3;
    return std::string(reinterpret_cast<const char*>(p), 30);
  };
  const std::string boardBefore = topLeft(board);
  const std::string boxBefore = topLeft(box);

  HWND screen = OpenMosaicScreen(MainWindow());
  ASSERT_TRUE(screen);
  Pump(50);
  EXPECT_FALSE(IsWindowEnabled(MainWindow()));
  HWND next = ChildAt(screen, 135 + 25, 264 + 25);
  HWND preview = ChildAt(screen, 116 + 10, 110 + 10);
  HWND scrollBar = ChildAt(screen, 236 + 10, 83 + 10);
  ASSERT_TRUE(next && preview && scrollBar);
  ASSERT_NE(next, screen);
  EXPECT_EQ(SendMessageA(scrollBar, scroll::MWM_GETVALUE, 0, 0), -9);
  EXPECT_EQ(SendMessageA(preview, anim::MWM_GETFRAME, 0, 0), 9);

  Click(next);
  EXPECT_EQ(TableTextureIndex(), 0);
  EXPECT_EQ(SendMessageA(scrollBar, scroll::MWM_GETVALUE, 0, 0), 0);
  EXPECT_EQ(SendMessageA(preview, anim::MWM_GETFRAME, 0, 0), 0);
  EXPECT_NE(topLeft(GetAreaSurface(AREA_TABLERO)), boardBefore);
  EXPECT_NE(topLeft(GetAreaSurface(3)), boxBefore);
  if (const char* hold = std::getenv("QV_PUZZLE_SHOT_MS")) Pump(std::atoi(hold));

  SendMessageA(screen, WM_CLOSE, 0, 0);
  Pump(30);
  EXPECT_FALSE(IsWindow(screen));
  EXPECT_TRUE(IsWindowEnabled(MainWindow()));
}

TEST(PictureViewer, RefusesAFileItCannotRead) {
  EXPECT_FALSE(OpenPictureViewer(MainWindow(), "Z:/no/such/picture.bmp"));
  char folder[MAX_PATH];
  GetTempPathA(MAX_PATH, folder);
  const std::string junk = std::string(folder) + "qv_not_a_picture.bmp";
  if (FILE* f = std::fopen(junk.c_str(), "wb")) {
    std::fputs("BM this is not a bitmap at all", f);
    std::fclose(f);
  }
  EXPECT_FALSE(OpenPictureViewer(MainWindow(), junk.c_str()));
  std::remove(junk.c_str());
  EXPECT_TRUE(IsWindowEnabled(MainWindow()));
  EXPECT_FALSE(FindWindowA(puzzle_win::kViewerClass, nullptr));
}

TEST(PictureViewer, ShowsAPictureUntilAKey) {
  ASSERT_TRUE(OpenPictureViewer(MainWindow(), DataPath("Image/2.bmp").c_str()));
  Pump(50);
  HWND viewer = FindWindowA(puzzle_win::kViewerClass, nullptr);
  ASSERT_TRUE(viewer);
  EXPECT_FALSE(IsWindowEnabled(MainWindow()));
  EXPECT_EQ(WindowSize(viewer).cx, ScreenWidth());
  PostMessageA(viewer, WM_CHAR, 'x', 0);
  Pump(50);
  EXPECT_FALSE(IsWindow(viewer));
  EXPECT_TRUE(IsWindowEnabled(MainWindow()));
}

TEST(PicturePreview, SizeFollowsThePictureAndCloseHidesIt) {
  HWND preview = PreviewWindow();
  ASSERT_TRUE(preview);
  HIMAGE picture = PuzzlePicture();
  ASSERT_TRUE(picture);
  const PictureSize fitted = PreviewSizeFor(ImageWidth(picture), ImageHeight(picture));
  EXPECT_EQ(WindowSize(preview).cx, fitted.width + 8);
  EXPECT_EQ(WindowSize(preview).cy, fitted.height + 39);

  // The fitted sizes are the frame logic's; here, that a new picture resizes the hidden window.
  PackedDib square;
  ASSERT_TRUE(square.Allocate(300, 300));
  ASSERT_TRUE(SetPuzzlePicture(std::move(square), nullptr));
  ActualizarPreview();
  EXPECT_EQ(WindowSize(preview).cx, 188);
  EXPECT_EQ(WindowSize(preview).cy, 219);

  ShowPreview();
  Pump(30);
  EXPECT_TRUE(IsWindowVisible(preview));
  HWND close = GetDlgItem(preview, 10);
  ASSERT_TRUE(close);
  RECT r;
  GetWindowRect(close, &r);
  RECT frame;
  GetWindowRect(preview, &frame);
  EXPECT_EQ(r.left - frame.left, 180 - 22);  // the close button follows the picture's width
  Click(close);
  EXPECT_FALSE(IsWindowVisible(preview));

  CerrarPuzzle(true);  // the preview goes back to the empty model box
  EXPECT_EQ(WindowSize(preview).cx, 248);
  EXPECT_EQ(WindowSize(preview).cy, 219);
}

// ---- Manners of the screens ------------------------------------------------------------------

TEST(ScreenManners, BoxFrameReportsAnInvalidAreaAndAPressWithoutAMode) {
  AssertRecorder checks;
  const RECT place{0, 0, 100, 100};
  EXPECT_EQ(puzzle_win::CreateAreaWindow(kAreaCount, MainWindow(), place, nullptr), nullptr);
  EXPECT_TRUE(checks.saw("Valor de Id invalido, supera el numero de boxs especificado"));
  checks.clear();
  // The area covers the frame's inside, so a press there reaches the frame only when sent.
  HWND frame = BoxWindow(2);
  RECT client;
  GetClientRect(frame, &client);
  SendMessageA(frame, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(client.right / 2, client.bottom / 2));
  EXPECT_TRUE(checks.saw("modo de arrastre no reconocido"));
  EXPECT_NE(GetCapture(), frame);
}

TEST(ScreenManners, BoxFrameAConfirmedEmptyNameIsStored) {
  HWND frame = BoxWindow(3);
  ShowFrame(frame);
  SetWindowTextA(frame, "Animals");
  // The rename question, answered with Enter and an empty field.
  test::WithAnswers({{true, ""}}, [&] {
    SendMessageA(frame, MWM_NOTIFY, MWN_CLICKED, reinterpret_cast<LPARAM>(GetDlgItem(frame, 11)));
  });
  char name[40] = "unchanged";
  GetWindowTextA(frame, name, sizeof name);
  EXPECT_STREQ(name, "");
  EXPECT_TRUE(IsWindowEnabled(frame));
  SendMessageA(frame, WM_CLOSE, 0, 0);
}

// The texture screen's children: the animated preview strip at (116, 110).
HWND TexturePreview(HWND screen) {
  HWND preview = ChildWindowFromPoint(screen, POINT{120, 114});
  return preview != screen ? preview : nullptr;
}

TEST(ScreenManners, MosaicThePreviewStripIsNoButtonAndEscapeCloses) {
  ASSERT_TRUE(SetTableTextureIndex(4));
  HWND screen = OpenMosaicScreen(MainWindow());
  ASSERT_TRUE(screen);
  Pump(50);
  HWND preview = TexturePreview(screen);
  ASSERT_TRUE(preview);
  EXPECT_EQ(SendMessageA(preview, anim::MWM_GETFRAME, 0, 0), 4);
  for (int code : {MWN_ENTER, MWN_PRESSED, MWN_RELEASED, MWN_LEAVE}) {
    SendMessageA(screen, MWM_NOTIFY, static_cast<WPARAM>(code), reinterpret_cast<LPARAM>(preview));
    Pump(300);  // long enough for an opening animation to run
    EXPECT_EQ(SendMessageA(preview, anim::MWM_GETFRAME, 0, 0), 4) << "after " << code;
  }
  EXPECT_EQ(TableTextureIndex(), 4);
  EXPECT_FALSE(IsWindowEnabled(MainWindow()));
  SendMessageA(screen, WM_CHAR, VK_ESCAPE, 0);
  Pump(50);
  EXPECT_FALSE(IsWindow(screen));
  EXPECT_TRUE(IsWindowEnabled(MainWindow()));
  ASSERT_TRUE(SetTableTextureIndex(0));
}

TEST(ScreenManners, MosaicDraggedPastTheEdgeItStaysOnTheScreen) {
  HWND screen = OpenMosaicScreen(MainWindow());
  ASSERT_TRUE(screen);
  Pump(50);
  RECT before;
  GetWindowRect(screen, &before);
  // Its background between the title and the preview, to the screen's last row.
  Drag(OnScreen(screen, 20, 60), POINT{before.left + 20 + 100, ScreenHeight() - 1});
  RECT after;
  GetWindowRect(screen, &after);
  EXPECT_LE(after.bottom, ScreenHeight());
  EXPECT_LE(after.right, ScreenWidth());
  EXPECT_GT(after.top, before.top);  // it did move
  SendMessageA(screen, WM_CLOSE, 0, 0);
  Pump(50);
}

}  // namespace
}  // namespace qv::test
