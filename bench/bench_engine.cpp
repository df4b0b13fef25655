// Benchmarks of the puzzle engine's hot paths, each reported beside its reference in one run.
#include <benchmark/benchmark.h>

#include <chrono>
#include <ctime>
#include <cstdlib>
#include <cstring>
#include <malloc.h>
#include <sys/resource.h>
#include <string>
#include <utility>
#include <vector>

#include "graphics/packed_dib.h"
#include "graphics/resource_file.h"
#include "puzzle/compose.h"
#include "puzzle/play.h"
#include "puzzle/puzzle_model.h"
#include "puzzle/texture.h"
#include "support/die_builder.h"
#include "support/rf_writer.h"
#include "system/random.h"

namespace {

// The machine is shared, so the ratios are taken in this thread's processor time: another
// program taking the processor does not count against either side of a ratio.
struct Clock {
  using duration = std::chrono::duration<double>;
  using time_point = std::chrono::time_point<Clock, duration>;
  static time_point now() {
    timespec t{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
    return time_point(duration(static_cast<double>(t.tv_sec) + t.tv_nsec * 1e-9));
  }
};

constexpr std::uint32_t kDie = 5000;

// The screens measured; the board leaves room for the bars and the box buttons around it.
struct Screen {
  int width, height;
  int BoardWidth() const { return width - 98; }
  int BoardHeight() const { return height - 128; }
};
constexpr Screen kScreens[] = {{1920, 1080}, {800, 600}};

qv::PackedDib MakePicture(int width, int height) {
  qv::PackedDib dib;
  dib.Allocate(width, height);
  qv::HIMAGE block = dib.get();
  qv::DibHeader(block)->biClrUsed = 256;
  for (int c = 0; c < 256; ++c) {
    qv::DibColours(block)[c] = qv::RgbQuad{static_cast<std::uint8_t>(c),
                                           static_cast<std::uint8_t>(c * 3),
                                           static_cast<std::uint8_t>(255 - c), 0};
  }
  const auto stride = qv::DibRowBytes(width, 8);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      qv::DibPixels(block)[y * stride + x] = static_cast<std::uint8_t>((x * x + y * 3) >> 4);
    }
  }
  return dib;
}

qv::PackedDib CopyOf(const qv::PackedDib& dib) {
  qv::PackedDib copy;
  qv::HIMAGE block = qv::PackedDib::AllocateBlock(dib.blockBytes() - qv::kDibPixelOffset);
  std::memcpy(block, dib.get(), dib.blockBytes());
  copy.Adopt(block, dib.blockBytes());
  return copy;
}

struct World {
  qv::PackedDib tile;
  qv::PackedDib picture;  // 1024 x 768, the largest built-in picture size
  World() {
    const std::string path = "/tmp/quorvex_engine_bench.rf";
    qv::test::WriteBytes(path, qv::test::BuildResourceFile(
                                   {qv::test::DieBuilder(2, 2).Picture(kDie)}));
    qv::OpenResourceFile(path.c_str());
    tile.Allocate(100, 100);
    qv::DibHeader(tile.get())->biClrUsed = 256;
    for (int i = 0; i < 100 * 100; ++i) qv::DibPixels(tile.get())[i] = static_cast<std::uint8_t>(i % 7);
    picture = MakePicture(1024, 768);
  }
};

World& TheWorld() {
  static World world;
  return world;
}

// The finest grid the piece-count picker offers for a picture at 100 per cent size.
struct Grid {
  double scale;
  int rows, columns;
};
Grid FinestGrid(const Screen& screen, int width, int height) {
  const double fit = qv::FitScaleFor(screen.BoardWidth(), screen.BoardHeight(), width, height);
  const double scale = 2 * fit;
  auto most = [](double side) {
    const int n = static_cast<int>(side / 45);
    return n < 3 ? 2 : n;
  };
  return Grid{scale, most(height * scale), most(width * scale)};
}

// A scattered game on a board of the screen's size.
bool StartGame(const Screen& screen, const qv::PackedDib& picture, const Grid& grid) {
  qv::ShutdownEngine();
  World& world = TheWorld();
  qv::MosaicoPuzzle(world.tile.get());
  qv::SeedRandom(42);
  qv::CreateBoardArea();
  qv::SetBoardSize(screen.BoardWidth(), screen.BoardHeight());
  qv::ResizeArea(qv::AREA_TABLERO, screen.BoardWidth(), screen.BoardHeight());
  qv::SetPuzzlePicture(CopyOf(picture), "Image\\1.bmp");
  qv::Puzzle().scale = grid.scale;
  qv::Puzzle().NR = grid.rows;
  qv::Puzzle().NC = grid.columns;
  if (!qv::CrearPuzzle(2, 2, kDie, true)) return false;
  qv::ComponerAreaEntera(qv::AREA_TABLERO, false);
  return true;
}

double Seconds(Clock::duration d) { return std::chrono::duration<double>(d).count(); }

long PageFaults() {
  rusage usage{};
  getrusage(RUSAGE_THREAD, &usage);
  return usage.ru_minflt + usage.ru_majflt;
}

// ---- The cut against a memset of the atlas ------------------------------------------------

// Argument 1 set: the allocator keeps freed blocks (no mmap, no trim), so each cut reuses the
// pages of the last one and the figure shows the cut's own work without the page faults of a
// fresh atlas. It changes the process's allocator for good, so those runs come last.
void BM_Cut(benchmark::State& state) {
  const Screen screen = kScreens[state.range(0)];
  const bool warmHeap = state.range(1) != 0;
  if (warmHeap) {
    mallopt(M_MMAP_MAX, 0);
    mallopt(M_TRIM_THRESHOLD, 1 << 30);
  }
  World& world = TheWorld();
  const Grid grid = FinestGrid(screen, 1024, 768);
  if (!StartGame(screen, world.picture, grid)) {
    state.SkipWithError("cut failed");
    return;
  }
  const std::size_t atlasBytes = qv::Puzzle().atlas.bytes();
  const std::size_t pictureBytes = world.picture.blockBytes() - qv::kDibPixelOffset;
  std::vector<std::uint8_t> warm(atlasBytes, 1);
  if (warmHeap) {
    // One untimed round, so the blocks of the timed rounds are ones the heap already holds.
    for (int round = 0; round < 2; ++round) {
      qv::PackedDib next = CopyOf(world.picture);
      qv::CerrarPuzzle(false);
      qv::SetPuzzlePicture(std::move(next), "Image\\1.bmp");
      qv::CrearPuzzle(2, 2, kDie, true);
      void* block = std::malloc(atlasBytes);
      std::memset(block, 1, atlasBytes);
      std::free(block);
    }
  }
  double cutSeconds = 0, memsetSeconds = 0, freshSeconds = 0;
  std::size_t cutPeak = 0;
  long faults = 0;
  for (auto _ : state) {
    state.PauseTiming();
    // The next picture is copied while the atlas is still held, so that freeing the atlas
    // leaves one whole block for the next cut to take again.
    qv::PackedDib next = CopyOf(world.picture);
    qv::CerrarPuzzle(false);
    qv::SetPuzzlePicture(std::move(next), "Image\\1.bmp");
    const std::size_t before = qv::EngineMemory().current;
    qv::ResetEngineMemoryPeak();
    state.ResumeTiming();
    const long faultsBefore = PageFaults();
    const auto t0 = Clock::now();
    benchmark::DoNotOptimize(qv::CrearPuzzle(2, 2, kDie, true));
    const auto t1 = Clock::now();
    state.PauseTiming();
    faults += PageFaults() - faultsBefore;
    cutPeak = qv::EngineMemory().peak - before;
    // The references, timed in the same run: into memory already touched, and into a fresh
    // block as the cut's own atlas is.
    const auto m0 = Clock::now();
    std::memset(warm.data(), static_cast<int>(cutSeconds * 1000) & 0xFF, atlasBytes);
    benchmark::ClobberMemory();
    const auto m1 = Clock::now();
    auto* fresh = static_cast<std::uint8_t*>(std::malloc(atlasBytes));
    // Not zero: a zeroing memset of a fresh block may be turned into calloc, which never
    // touches the pages.
    std::memset(fresh, 0x5A, atlasBytes);
    benchmark::DoNotOptimize(fresh);
    std::free(fresh);
    const auto m2 = Clock::now();
    cutSeconds += Seconds(t1 - t0);
    memsetSeconds += Seconds(m1 - m0);
    freshSeconds += Seconds(m2 - m1);
    state.ResumeTiming();
  }
  state.counters["pieces"] = grid.rows * grid.columns;
  state.counters["atlas_MB"] = atlasBytes / 1e6;
  state.counters["x_memset"] = cutSeconds / memsetSeconds;
  state.counters["x_fresh_memset"] = cutSeconds / freshSeconds;
  state.counters["peak_MB"] = cutPeak / 1e6;
  state.counters["faults"] = static_cast<double>(faults) / static_cast<double>(state.iterations());
  state.counters["peak_of_budget"] =
      static_cast<double>(cutPeak) / (1.1 * static_cast<double>(atlasBytes + pictureBytes));
  state.SetLabel(std::to_string(screen.width) + "x" + std::to_string(screen.height) + " " +
                 std::to_string(grid.columns) + "x" + std::to_string(grid.rows) +
                 (warmHeap ? " reused pages" : " fresh pages"));
  qv::ShutdownEngine();
}
BENCHMARK(BM_Cut)->Args({0, 0})->Args({1, 0})->Unit(benchmark::kMillisecond)->Iterations(8);

// ---- A full recompose of the board against a memcpy of its surface ---------------------------

void BM_FullRecompose(benchmark::State& state) {
  const Screen screen = kScreens[state.range(0)];
  if (!StartGame(screen, TheWorld().picture, FinestGrid(screen, 1024, 768))) {
    state.SkipWithError("cut failed");
    return;
  }
  const qv::AreaSurface* surface = qv::GetAreaSurface(qv::AREA_TABLERO);
  const std::size_t bytes = surface->bits.bytes();
  std::vector<std::uint8_t> copy(bytes);
  double composeSeconds = 0, copySeconds = 0;
  for (auto _ : state) {
    const auto t0 = Clock::now();
    qv::ComponerAreaEntera(qv::AREA_TABLERO, false);
    const auto t1 = Clock::now();
    std::memcpy(copy.data(), surface->bits.data(), bytes);
    benchmark::ClobberMemory();
    const auto t2 = Clock::now();
    composeSeconds += Seconds(t1 - t0);
    copySeconds += Seconds(t2 - t1);
  }
  state.counters["x_memcpy"] = composeSeconds / copySeconds;
  state.counters["pieces"] = qv::PieceCount();
  state.SetLabel(std::to_string(screen.width) + "x" + std::to_string(screen.height));
  qv::ShutdownEngine();
}
BENCHMARK(BM_FullRecompose)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

// ---- One drag step: finest grid against 12 pieces of the same size ---------------------------

// Starts a drag on the topmost piece whose cell lies wholly on the board (so that no clipping
// makes one case cheaper than the other) and returns the point it was taken at.
qv::EnginePoint GrabFront() {
  const qv::EstadoPuzzle& p = qv::Puzzle();
  const qv::AreaSurface* board = qv::GetAreaSurface(qv::AREA_TABLERO);
  for (std::int32_t i = 0; i < qv::AreaPieceCount(qv::AREA_TABLERO); ++i) {
    const qv::Pieza& piece = p.pieces[qv::AreaSlice(qv::AREA_TABLERO)[i]];
    if (piece.x < 8 || piece.y < 8 || piece.x + p.W + 16 > board->width ||
        piece.y + p.H + 16 > board->height) {
      continue;
    }
    const qv::EnginePoint core{piece.x + p.W / 2, piece.y + p.H / 2};
    if (qv::HitTest(qv::AREA_TABLERO, core) == i) {
      qv::ButtonDown(qv::AREA_TABLERO, core);
      return core;
    }
  }
  return qv::EnginePoint{};
}

// Starts a game of twelve pieces of the finest grid's piece size: a picture that the same scale
// cuts 4 x 3. False, with the benchmark skipped, when either cut fails.
bool StartTwelvePieces(benchmark::State& state, const Screen& screen, const Grid& finest) {
  if (!StartGame(screen, TheWorld().picture, finest)) {
    state.SkipWithError("cut failed");
    return false;
  }
  const int cw = qv::Puzzle().cw, ch = qv::Puzzle().ch;
  const qv::PackedDib small = MakePicture(static_cast<int>((4 * cw + 0.5) / finest.scale) + 1,
                                          static_cast<int>((3 * ch + 0.5) / finest.scale) + 1);
  if (!StartGame(screen, small, Grid{finest.scale, 3, 4}) || qv::Puzzle().cw != cw ||
      qv::Puzzle().ch != ch) {
    state.SkipWithError("12-piece cut failed");
    return false;
  }
  return true;
}

double TimeDragSteps(qv::EnginePoint at, int steps) {
  qv::PointerTarget over;
  over.over = qv::PointerOver::StartArea;
  const auto t0 = Clock::now();
  for (int i = 0; i < steps; ++i) {
    const qv::DragFeedback fb =
        qv::DragStep(qv::AREA_TABLERO, qv::EnginePoint{at.x + (i % 8), at.y + (i % 5)}, over);
    benchmark::DoNotOptimize(fb.frameRect.width);
  }
  return Seconds(Clock::now() - t0) / steps;
}

// The drag that shows the grabbed piece alone in its window (what a drag falls back to when the
// system cannot show the drag image).
void BM_DragStep(benchmark::State& state) {
  qv::SetLiveDrag(false);
  const Screen screen = kScreens[state.range(0)];
  const Grid finest = FinestGrid(screen, 1024, 768);
  if (!StartTwelvePieces(state, screen, finest)) return;
  const double smallStep = TimeDragSteps(GrabFront(), 4000);
  StartGame(screen, TheWorld().picture, finest);
  const qv::EnginePoint at = GrabFront();
  qv::PointerTarget over;
  over.over = qv::PointerOver::StartArea;
  int i = 0;
  const auto t0 = Clock::now();
  for (auto _ : state) {
    const qv::DragFeedback fb =
        qv::DragStep(qv::AREA_TABLERO, qv::EnginePoint{at.x + (i % 8), at.y + (i % 5)}, over);
    benchmark::DoNotOptimize(fb.frameRect.width);
    ++i;
  }
  const double finestStep = Seconds(Clock::now() - t0) / static_cast<double>(state.iterations());
  state.counters["pieces"] = qv::PieceCount();
  state.counters["step_us"] = finestStep * 1e6;
  state.counters["x_12_pieces"] = finestStep / smallStep;
  state.SetLabel(std::to_string(screen.width) + "x" + std::to_string(screen.height));
  qv::ShutdownEngine();
  qv::SetLiveDrag(true);
}
BENCHMARK(BM_DragStep)->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);

// ---- The live drag: the image of the moving set and one step of it ---------------------------

// Starts a live drag of the whole picture, laid out straight as one group, by a piece in its
// middle; returns the point it was taken at.
qv::EnginePoint GrabWholePicture() {
  qv::ResolverPuzzle();
  const qv::EstadoPuzzle& p = qv::Puzzle();
  const std::uint32_t middle =
      static_cast<std::uint32_t>((p.NR / 2) * p.NC + p.NC / 2);
  const qv::EnginePoint at{p.pieces[middle].x + p.mx + p.cw / 2,
                           p.pieces[middle].y + p.my + p.ch / 2};
  qv::SetLiveDrag(true);
  qv::ButtonDown(qv::AREA_TABLERO, at);
  return at;
}

// Composing the image of the whole picture (what button-down does for it) against a memcpy of
// the image's bytes.
void BM_DragImage(benchmark::State& state) {
  const Screen screen = kScreens[state.range(0)];
  if (!StartGame(screen, TheWorld().picture, FinestGrid(screen, 1024, 768))) {
    state.SkipWithError("cut failed");
    return;
  }
  GrabWholePicture();
  const qv::DragImageView image = qv::DragImage();
  if (image.pixels == nullptr || image.pieces != qv::PieceCount()) {
    state.SkipWithError("no drag image of the whole picture");
    return;
  }
  const std::size_t bytes = static_cast<std::size_t>(image.width) * image.height * 4;
  std::vector<std::uint8_t> copy(bytes);
  double composeSeconds = 0, copySeconds = 0;
  for (auto _ : state) {
    const auto t0 = Clock::now();
    benchmark::DoNotOptimize(qv::ComposeDragImage());
    const auto t1 = Clock::now();
    std::memcpy(copy.data(), image.pixels, bytes);
    benchmark::ClobberMemory();
    const auto t2 = Clock::now();
    composeSeconds += Seconds(t1 - t0);
    copySeconds += Seconds(t2 - t1);
  }
  state.counters["pieces"] = image.pieces;
  state.counters["image_MB"] = bytes / 1e6;
  state.counters["x_memcpy"] = composeSeconds / copySeconds;
  state.SetLabel(std::to_string(screen.width) + "x" + std::to_string(screen.height) + " " +
                 std::to_string(image.width) + "x" + std::to_string(image.height));
  qv::ShutdownEngine();
}
BENCHMARK(BM_DragImage)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

// One live drag step with the whole picture as the moving set, and with one piece of it, each
// against one piece of a 12-piece picture of the same piece size. A live step composes nothing:
// it moves the drag position and says where the image goes (the window layer then moves its
// window), so this measures the engine's share of a step.
void BM_LiveDragStep(benchmark::State& state) {
  const Screen screen = kScreens[state.range(0)];
  const bool wholePicture = state.range(1) != 0;
  const Grid finest = FinestGrid(screen, 1024, 768);
  if (!StartTwelvePieces(state, screen, finest)) return;
  qv::SetLiveDrag(true);
  const double smallStep = TimeDragSteps(GrabFront(), 20000);
  qv::ButtonUp(qv::AREA_TABLERO, qv::EnginePoint{-1, -1}, qv::PointerTarget{});
  StartGame(screen, TheWorld().picture, finest);
  qv::EnginePoint at;
  if (wholePicture) {
    at = GrabWholePicture();
  } else {
    qv::SetLiveDrag(true);
    at = GrabFront();
  }
  const std::int32_t moving = qv::DragImage().pieces;
  qv::PointerTarget over;
  over.over = qv::PointerOver::StartArea;
  int i = 0;
  const auto t0 = Clock::now();
  for (auto _ : state) {
    const qv::DragFeedback fb =
        qv::DragStep(qv::AREA_TABLERO, qv::EnginePoint{at.x + (i % 8), at.y + (i % 5)}, over);
    benchmark::DoNotOptimize(fb.imageAt);
    ++i;
  }
  const double step = Seconds(Clock::now() - t0) / static_cast<double>(state.iterations());
  state.counters["pieces"] = qv::PieceCount();
  state.counters["moving"] = moving;
  state.counters["step_ns"] = step * 1e9;
  state.counters["x_12_pieces"] = step / smallStep;
  state.SetLabel(std::to_string(screen.width) + "x" + std::to_string(screen.height) +
                 (wholePicture ? " whole picture" : " one piece"));
  qv::ShutdownEngine();
}
BENCHMARK(BM_LiveDragStep)->Args({0, 1})->Args({0, 0})->Unit(benchmark::kNanosecond);

// ---- SoltarPieza and the hit test at the finest grid -------------------------------------------

void BM_SoltarPieza(benchmark::State& state) {
  const Screen screen = kScreens[state.range(0)];
  if (!StartGame(screen, TheWorld().picture, FinestGrid(screen, 1024, 768))) {
    state.SkipWithError("cut failed");
    return;
  }
  // A drop on the empty upper half: the whole board is searched for a neighbour, none fits.
  const std::uint32_t k = qv::AreaSlice(qv::AREA_TABLERO)[0];
  qv::SoltarPieza(qv::AREA_TABLERO, qv::AREA_TABLERO, k, qv::EnginePoint{300, 40});
  for (auto _ : state) {
    qv::SoltarPieza(qv::AREA_TABLERO, qv::AREA_TABLERO, k, qv::EnginePoint{300, 40});
  }
  state.counters["pieces"] = qv::PieceCount();
  qv::ShutdownEngine();
}
BENCHMARK(BM_SoltarPieza)->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);

void BM_HitTest(benchmark::State& state) {
  const Screen screen = kScreens[state.range(0)];
  if (!StartGame(screen, TheWorld().picture, FinestGrid(screen, 1024, 768))) {
    state.SkipWithError("cut failed");
    return;
  }
  // Half the clicks miss everything (the upper half), so the walk covers the whole slice.
  const qv::EnginePoint points[2] = {{screen.BoardWidth() / 2, 20},
                                     {screen.BoardWidth() / 2, screen.BoardHeight() * 3 / 4}};
  int i = 0;
  for (auto _ : state) benchmark::DoNotOptimize(qv::HitTest(qv::AREA_TABLERO, points[i++ & 1]));
  state.counters["pieces"] = qv::PieceCount();
  qv::ShutdownEngine();
}
BENCHMARK(BM_HitTest)->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);

BENCHMARK(BM_Cut)->Args({0, 1})->Args({1, 1})->Unit(benchmark::kMillisecond)->Iterations(8);

}  // namespace
