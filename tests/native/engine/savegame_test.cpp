// Tests of saved games: the byte layout, save-load round trips, previews and refused files.
#include "setup/savegame.h"

#include <sys/stat.h>
#ifdef __GLIBC__
#include <malloc.h>
#endif

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "graphics/resource_file.h"
#include "puzzle/play.h"
#include "support/assert_recorder.h"
#include "support/die_builder.h"
#include "support/rf_writer.h"

namespace qv {
namespace {

namespace fs = std::filesystem;
using Bytes = std::vector<std::uint8_t>;

constexpr std::uint32_t kDie2x2 = 5000, kDie1x1 = 5100;
constexpr int kPicW = 160, kPicH = 120;
constexpr std::size_t kBody = 488 + 28 + 20 * 12;  // a 3 x 4 game without its preview

// Removed first: truncating a file in place makes some file systems flush it, which is slow.
void WriteFile(const fs::path& path, const Bytes& bytes) {
  fs::remove(path);
  std::ofstream(path, std::ios::binary).write(reinterpret_cast<const char*>(bytes.data()),
                                              std::streamsize(bytes.size()));
}
Bytes ReadFile(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}
std::int32_t I32(const Bytes& b, std::size_t at) {
  std::int32_t v;
  std::memcpy(&v, &b[at], 4);
  return v;
}
void SetI32(Bytes& b, std::size_t at, std::int32_t v) { std::memcpy(&b[at], &v, 4); }

// A 24-bit .bmp whose pixel (x, y from the bottom) is blue x, green y, red x + y.
Bytes PictureFile() {
  test::RfPicture p;
  p.width = kPicW, p.height = kPicH, p.bitCount = 24;
  const auto stride = static_cast<std::size_t>(DibRowBytes(kPicW, 24));
  p.pixels.assign(stride * kPicH, 0);
  for (int y = 0; y < kPicH; ++y) {
    for (int x = 0; x < kPicW; ++x) {
      std::uint8_t* px = &p.pixels[y * stride + 3 * x];
      px[0] = std::uint8_t(x), px[1] = std::uint8_t(y), px[2] = std::uint8_t(x + y);
    }
  }
  Bytes out = {'B', 'M'};
  const std::uint32_t fileHeader[3] = {std::uint32_t(54 + p.pixels.size()), 0, 54};
  const BitmapInfoHeader h = test::HeaderOf(p);
  test::AppendBytes(out, fileHeader, sizeof fileHeader);
  test::AppendBytes(out, &h, sizeof h);
  test::AppendBytes(out, p.pixels.data(), p.pixels.size());
  return out;
}

struct Log {
  std::vector<std::pair<int, int>> notes;  // area, code
  std::vector<int> hidden;
  std::vector<int> clock;  // total, hours, minutes, seconds last shown
} g_log;

class SavedGameTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    if (TheResourceFile().IsOpen()) return;
    const std::string rf = test::ProcessTempPath("setup_dies.rf");
    test::WriteBytes(rf, test::BuildResourceFile({test::DieBuilder(2, 2).Picture(kDie2x2),
                                                  test::DieBuilder(1, 1).Picture(kDie1x1)}));
    ASSERT_TRUE(OpenResourceFile(rf.c_str()));
  }
  void SetUp() override {
    ShutdownEngine();
    g_log = Log{};
    EngineHooks hooks;
    hooks.areaNotify = [](void*, int area, int code) { g_log.notes.emplace_back(area, code); };
    hooks.hideBox = [](void*, int box) { g_log.hidden.push_back(box); };
    hooks.clockDisplay = [](void*, std::uint32_t t, int h, int m, int s) {
      g_log.clock = {int(t), h, m, s};
    };
    SetEngineHooks(hooks);
    SetBoardSize(800, 600);
    folder_ = fs::temp_directory_path() / ("qv_saves_" + std::to_string(std::random_device{}()));
    fs::create_directories(folder_);
    picture_ = (folder_ / "pic.bmp").string();
    WriteFile(picture_, PictureFile());
  }
  void TearDown() override {
    ShutdownEngine();
    fs::remove_all(folder_);
  }

  // A 3 x 4 game (12 pieces: at most 2 hints) with pieces in boxes 0 and 3, a group, a selection.
  void StartGame(const std::string& picture = "") {
    CerrarPuzzle(false);
    ASSERT_TRUE(LoadPuzzlePicture((picture.empty() ? picture_ : picture).c_str()));
    EstadoPuzzle& p = Puzzle();
    p.NR = 3, p.NC = 4, p.scale = 1.25;
    ASSERT_TRUE(CrearPuzzle(2, 2, kDie2x2, true));
    const std::int32_t counts[kAreaCount] = {2, 0, 0, 1, 0, 0, 9};
    for (int a = 0, start = 0; a < kAreaCount; start += counts[a++]) {
      p.areas[a].count = counts[a], p.areas[a].start = start;
    }
    p.pieces[5].group = 7, p.pieces[6].group = 7, p.pieces[2].unselected = 0;
    p.hintsUsed = 2, p.SegundosJuego = 3725, p.PuzzleModificado = 1;
  }
  std::string PathOf(const char* name) const { return (folder_ / name).string(); }
  Bytes SaveBytes(bool preview) {
    EXPECT_TRUE(SaveGame(PathOf("game.epf").c_str(), preview, "", names_));
    return ReadFile(PathOf("game.epf"));
  }
  bool Load(const Bytes& bytes) {
    WriteFile(PathOf("in.epf"), bytes);
    LoadedGame loaded;
    return LoadGame(PathOf("in.epf").c_str(), "", loaded);
  }

  fs::path folder_;
  std::string picture_;
  BoxNames names_ = {{"Box1 ", "Spare parts", "Box3 ", "Sky", "Box5 ", "Box6 "}};
};

TEST_F(SavedGameTest, SaveThenLoadRestoresTheWholeGame) {
  StartGame();
  const EstadoPuzzle& p = Puzzle();
  const Bytes atlas(p.atlas.data(), p.atlas.data() + p.atlas.bytes());
  const std::vector<std::uint32_t> order(p.order.data(), p.order.data() + 12);
  const std::vector<Pieza> pieces(p.pieces.data(), p.pieces.data() + 12);
  ASSERT_TRUE(SaveGame(PathOf("round.epf").c_str(), true, "", names_));
  EXPECT_EQ(p.PuzzleModificado, 0);

  g_log = Log{};
  LoadedGame loaded;
  ASSERT_TRUE(LoadGame(PathOf("round.epf").c_str(), "", loaded));
  EXPECT_EQ(Bytes(p.atlas.data(), p.atlas.data() + p.atlas.bytes()), atlas);  // the same cut
  EXPECT_EQ(std::vector<std::uint32_t>(p.order.data(), p.order.data() + 12), order);
  EXPECT_EQ(std::memcmp(p.pieces.data(), pieces.data(), 12 * sizeof(Pieza)), 0);
  for (int a = 0; a < kAreaCount; ++a) {
    EXPECT_EQ(AreaPieceCount(a), (a == 0 ? 2 : a == 3 ? 1 : a == 6 ? 9 : 0));
  }
  EXPECT_EQ(AreaSlice(6) - AreaSlice(0), 3);
  EXPECT_EQ(std::vector<double>({double(p.NR), double(p.NC), p.scale, double(p.dieId),
                                 double(p.hintsUsed)}),
            std::vector<double>({3, 4, 1.25, kDie2x2, 2}));
  EXPECT_EQ(std::string(PuzzlePicturePath()), picture_);
  EXPECT_EQ(std::memcmp(&loaded.names, &names_, sizeof names_), 0);
  EXPECT_FALSE(loaded.hintsAvailable);  // 2 used of trunc(12 / 5) = 2
  EXPECT_EQ(g_log.clock, (std::vector<int>{3725, 1, 2, 5}));
  EXPECT_EQ(g_log.hidden, (std::vector<int>{0, 1, 2, 3, 4, 5}));
  const auto notified = [](int area, int code) {
    return std::count(g_log.notes.begin(), g_log.notes.end(), std::pair(area, code)) > 0;
  };
  EXPECT_TRUE(notified(0, AREA_OCUPADA) && notified(3, AREA_OCUPADA) && notified(1, AREA_VACIA));
  // Not finished: the clock runs again from the first click, from the stored time.
  EXPECT_EQ(p.PuzzleModificado + p.RelojPausado + p.PuzzleTerminado, 0);
  EXPECT_EQ(p.PuzzleSinEmpezar, 1);

  SolvePuzzleForPlayer();
  ASSERT_TRUE(Load(SaveBytes(false)));
  EXPECT_EQ(p.PuzzleTerminado + p.solutionShown, 2);  // a finished game stays finished
  EXPECT_EQ(p.PuzzleSinEmpezar, 0);
}

TEST_F(SavedGameTest, FileIsLaidOutByteForByte) {
  StartGame();
  const Bytes b = SaveBytes(true);
  const PreviewGeometry g = PreviewGeometryFor(kPicW, kPicH);
  ASSERT_EQ(b.size(), kBody + 78 * 208);  // a 104 x 78 preview, rows of 208 bytes
  Bytes magic = {'M', 'W', 'P', 'F', '1', '0'};
  magic.resize(28, 0);  // zeros to 26, the media-folder flag (clear here), the reserved byte
  EXPECT_EQ(Bytes(b.begin(), b.begin() + 28), magic);
  EXPECT_EQ(std::string(reinterpret_cast<const char*>(&b[40])), picture_);
  EXPECT_EQ(std::string(reinterpret_cast<const char*>(&b[300 + 24])), "Spare parts");
  const std::pair<std::size_t, std::int32_t> fields[] = {
      {28, 2}, {32, 2}, {36, 5000}, {444, 3}, {448, 4}, {464, 2}, {468, 3725}, {476, 28 + 20 * 12},
      {480, 104}, {484, 78}, {488, 2}, {488 + 24, 9}, {516 + 48 + 16 * 5, 7},
      {516 + 48 + 16 * 7 + 8, Puzzle().pieces[7].x},
      {516 + 48 + 16 * 7 + 12, Puzzle().pieces[7].y}};
  for (const auto& [at, value] : fields) EXPECT_EQ(I32(b, at), value) << "offset " << at;
  EXPECT_EQ(b[473], 1);
  EXPECT_EQ(b[516 + 48 + 16 * 2 + 4], 0);  // piece 2 selected
  double scale;
  std::memcpy(&scale, &b[456], 8);
  EXPECT_EQ(scale, 1.25);
  // Preview pixel (x, y), rows from the bottom, samples picture (x / scale, y / scale) in 5-5-5.
  for (auto [x, y] : {std::pair{0, 0}, {50, 20}, {103, 77}}) {
    const int sx = int(x / g.scale), sy = int(y / g.scale);
    const int expected = (((sx + sy) & 255) >> 3) << 10 | ((sy >> 3) << 5) | (sx >> 3);
    EXPECT_EQ(b[kBody + y * 208 + 2 * x] | b[kBody + y * 208 + 2 * x + 1] << 8, expected) << x;
  }
  EXPECT_EQ(SaveBytes(false).size(), kBody);
}

TEST_F(SavedGameTest, GroupsOfADropThatJoinsTwiceKeepTheFileAsItWas) {
  StartGame();
  const EstadoPuzzle& p = Puzzle();
  // Piece 1 dropped between 0 and 2 (2 a few pixels off) joins both.
  std::vector<Pieza> pieces(12, Pieza{0, 1, {0, 0, 0}, 600, 450});
  pieces[0] = Pieza{0, 1, {0, 0, 0}, 10, 10};
  pieces[2] = Pieza{0, 1, {0, 0, 0}, 10 + 2 * p.cw + 3, 12};
  const std::uint32_t order[12] = {1, 0, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11};
  const std::int32_t counts[kAreaCount] = {0, 0, 0, 0, 0, 0, 12};
  ASSERT_TRUE(RestorePieces(counts, order, pieces.data()));
  ASSERT_TRUE(SoltarPieza(AREA_TABLERO, AREA_TABLERO, 1, EnginePoint{10 + p.cw - 2, 14}));
  pieces[1] = Pieza{3, 1, {0, 0, 0}, 10 + p.cw, 10};
  pieces[0].group = 3;
  pieces[2] = Pieza{3, 1, {0, 0, 0}, 10 + 2 * p.cw, 10};
  EXPECT_EQ(std::memcmp(p.pieces.data(), pieces.data(), sizeof(Pieza) * 12), 0);
  // The file holds exactly those records, and a loaded game saves the same bytes again.
  const Bytes saved = SaveBytes(false);
  for (std::size_t k = 0; k < 3; ++k) {
    EXPECT_EQ(std::memcmp(&saved[516 + 48 + 16 * k], &pieces[k], sizeof(Pieza)), 0) << k;
  }
  ASSERT_TRUE(Load(saved));
  EXPECT_EQ(SaveBytes(false), saved);
}

TEST(SavedGameRules, PreviewBoxMediaFolderAndHints) {
  EXPECT_EQ(PreviewGeometryFor(100, 100).width, 104);      // 104 rows fit within 123
  EXPECT_EQ(PreviewGeometryFor(300, 600).height, 122);     // 123 / 600 x 600 truncates to 122
  EXPECT_EQ(PreviewGeometryFor(300, 600).width, 61);
  EXPECT_EQ(PictureDriveRoot("C:\\Quorvex\\"), "C:\\");
  EXPECT_EQ(PictureDriveRoot("/opt/quorvex/"), "");
  EXPECT_TRUE(InMediaFolder("C:\\Image\\1.bmp", "C:\\"));
  for (const char* other : {"C:\\Images\\1.bmp", "D:\\Image\\1.bmp", "C:\\image\\1.bmp"}) {
    EXPECT_FALSE(InMediaFolder(other, "C:\\")) << other;
  }
  EXPECT_EQ(ResolveStoredPicturePath("C:\\Image\\1.bmp", true, "E:\\"), "E:\\Image\\1.bmp");
  EXPECT_EQ(ResolveStoredPicturePath("C:\\Image\\1.bmp", false, "E:\\"), "C:\\Image\\1.bmp");
  EXPECT_FALSE(HintsAvailable(20, 10, 10));
  EXPECT_TRUE(HintsAvailable(19, 10, 10));
  // One rule for playing and for saved games, safe for any grid a file can name.
  EXPECT_EQ(HintLimit(2, 2), 0);
  EXPECT_EQ(HintLimit(INT32_MAX, INT32_MAX), std::int64_t{INT32_MAX} * INT32_MAX / 5);
  EXPECT_FALSE(HintsAvailable(1, 2, 2));
}

TEST_F(SavedGameTest, GameInTheMediaFolderOpensAfterTheDriveLetterChanged) {
  // Relative folders named like drives stand in for two drives holding the same pictures.
  const fs::path previous = fs::current_path();
  fs::current_path(folder_);
  for (const char* drive : {"C:", "E:"}) {
    fs::create_directories(folder_ / drive / "Image");
    fs::copy_file(picture_, folder_ / drive / "Image" / "p.bmp");
  }
  StartGame("C:/Image/p.bmp");
  ASSERT_TRUE(SaveGame("moved.epf", false, "C:/Quorvex/", names_));
  EXPECT_EQ(ReadFile(folder_ / "moved.epf")[26], 1);
  fs::remove_all(folder_ / "C:");
  LoadedGame loaded;
  const bool ok = LoadGame("moved.epf", "E:/Quorvex/", loaded);
  const std::string path = PuzzlePicturePath();
  fs::current_path(previous);
  ASSERT_TRUE(ok);
  EXPECT_EQ(path, "E:/Image/p.bmp");
}

TEST_F(SavedGameTest, FailedSaveKeepsThePreviousFile) {
  test::AssertRecorder rec;
  const std::string path = PathOf("keep.epf");
  EXPECT_FALSE(SaveGame(path.c_str(), true, "", names_));
  EXPECT_EQ(rec.only(), "esta funcion no se puede llamar ahora");
  StartGame();
  WriteFile(path, {'o', 'l', 'd'});
  fs::create_directory(path + ".tmp");  // the temporary file cannot be created
  EXPECT_FALSE(SaveGame(path.c_str(), true, "", names_));
  fs::remove(path + ".tmp");
  fs::create_symlink("/dev/full", path + ".tmp");  // every write fails: a full disk
  EXPECT_FALSE(SaveGame(path.c_str(), true, "", names_));
  EXPECT_FALSE(fs::is_symlink(path + ".tmp"));
  PackedDib copy;  // a picture path of 260 characters does not fit the header
  const std::size_t bytes = kDibPixelOffset + std::size_t(DibRowBytes(kPicW, 24)) * kPicH;
  copy.Adopt(PackedDib::AllocateBlock(bytes - kDibPixelOffset), bytes);
  std::memcpy(copy.get(), PuzzlePicture(), bytes);
  ASSERT_TRUE(SetPuzzlePicture(std::move(copy), std::string(260, 'p').c_str()));
  rec.clear();
  EXPECT_FALSE(SaveGame(path.c_str(), true, "", names_));
  EXPECT_EQ(rec.only(), "la ruta de la imagen es demasiado larga");
  EXPECT_EQ(ReadFile(path), (Bytes{'o', 'l', 'd'}));
  EXPECT_EQ(Puzzle().PuzzleModificado, 1);
}

TEST_F(SavedGameTest, EveryTruncationIsRefusedAndLeavesNoPuzzle) {
  StartGame();
  const Bytes whole = SaveBytes(false);
  for (std::size_t size = 0; size < whole.size(); ++size) {
    EXPECT_FALSE(Load(Bytes(whole.begin(), whole.begin() + std::ptrdiff_t(size)))) << size;
    ASSERT_FALSE(PuzzleAbierto() || PuzzlePicture()) << size;
  }
  EXPECT_TRUE(Load(whole));
}

TEST_F(SavedGameTest, CorruptFilesAreRefusedAndCloseTheRunningGame) {
  test::AssertRecorder rec;
  StartGame();
  const Bytes good = SaveBytes(true);
  const std::size_t order = 516, records = 516 + 4 * 12;
  const double nan = std::numeric_limits<double>::quiet_NaN(), huge = 1e300;
  const std::string pipe = PathOf("pipe");
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  const std::vector<std::pair<const char*, std::function<void(Bytes&)>>> cases = {
      {"magic not terminated", [](Bytes& b) { b[6] = 'X'; }},
      {"path not terminated", [](Bytes& b) { std::memset(&b[40], 'a', 260); }},
      {"picture missing", [](Bytes& b) { b[41] ^= 1; }},
      {"picture is a pipe", [&](Bytes& b) { std::memcpy(&b[40], pipe.c_str(), pipe.size() + 1); }},
      {"die rows 0", [](Bytes& b) { SetI32(b, 28, 0); }},
      {"die too many labels", [](Bytes& b) { SetI32(b, 28, 16), SetI32(b, 32, 16); }},
      {"die unknown", [](Bytes& b) { SetI32(b, 36, 4999); }},
      {"die of another grid", [](Bytes& b) { SetI32(b, 36, kDie1x1); }},
      {"rows negative", [](Bytes& b) { SetI32(b, 444, -3); }},
      {"N beyond the file", [](Bytes& b) { SetI32(b, 444, 1 << 20), SetI32(b, 448, 1 << 20); }},
      {"N smaller", [](Bytes& b) { SetI32(b, 444, 2); }},
      {"scale NaN", [&](Bytes& b) { std::memcpy(&b[456], &nan, 8); }},
      {"scale huge", [&](Bytes& b) { std::memcpy(&b[456], &huge, 8); }},
      {"scale zero", [](Bytes& b) { std::memset(&b[456], 0, 8); }},
      // Grids the file cannot hold, including those whose size overflows 32 or 64 bits.
      {"rows near 2^31", [](Bytes& b) { SetI32(b, 444, INT32_MAX); }},
      {"rows and columns near 2^31", [](Bytes& b) { SetI32(b, 444, INT32_MAX), SetI32(b, 448, INT32_MAX); }},
      {"N past 32 bits", [](Bytes& b) { SetI32(b, 444, 1 << 16), SetI32(b, 448, 1 << 16); }},
      {"N wraps to 12 in 32 bits", [](Bytes& b) { SetI32(b, 444, 3), SetI32(b, 448, 0x40000004); }},
      {"both negative", [](Bytes& b) { SetI32(b, 444, -3), SetI32(b, 448, -4); }},
      {"most negative", [](Bytes& b) { SetI32(b, 444, INT32_MIN), SetI32(b, 448, -1); }},
      {"counts short of N", [](Bytes& b) { SetI32(b, 488 + 24, 8); }},
      {"count negative", [](Bytes& b) { SetI32(b, 488, -2), SetI32(b, 488 + 24, 13); }},
      {"piece repeated", [=](Bytes& b) { SetI32(b, order + 4, I32(b, order)); }},
      {"piece out of range", [=](Bytes& b) { SetI32(b, order, 12); }},
      {"position far out", [=](Bytes& b) { SetI32(b, records + 8, 1 << 30); }},
      {"group beyond N", [=](Bytes& b) { SetI32(b, records, 13); }},
  };
  ParsedGame parsed;
  EXPECT_TRUE(ParseSavedGame(good, parsed));
  EXPECT_EQ(parsed.rows * parsed.columns, 12);
  // The body's faults (the last six cases) are found from the file alone, before any cut.
  const std::size_t firstBodyCase = cases.size() - 6;
  for (std::size_t i = 0; i < cases.size(); ++i) {
    const auto& [what, corrupt] = cases[i];
    Bytes bytes = good;
    corrupt(bytes);
    StartGame();
    EXPECT_FALSE(Load(bytes)) << what;
    EXPECT_FALSE(PuzzleAbierto()) << what;
    if (i >= firstBodyCase) {
      EXPECT_FALSE(ParseSavedGame(bytes, parsed)) << what;
    }
  }
  // Bad files are refused quietly; only "N smaller" (8 pieces, 2 hints) trips the debug check
  // on hints before its body is found short.
  EXPECT_EQ(rec.messages(), std::vector<std::string>{"las pistas usadas superan el limite"});
  StartGame();
  LoadedGame loaded;
  EXPECT_FALSE(LoadGame(PathOf("absent.epf").c_str(), "", loaded));
  EXPECT_TRUE(PuzzleAbierto());  // a file that cannot be opened changes nothing
}

TEST_F(SavedGameTest, PreviewIsReadAsFourBytesAPixelFromWhatTheFileHolds) {
  StartGame();
  const Bytes b = SaveBytes(true);
  const auto preview = [this](const Bytes& bytes, PackedDib& dib) {
    WriteFile(PathOf("p.epf"), bytes);
    return ReadPreview(PathOf("p.epf").c_str(), dib);
  };
  PackedDib dib;
  ASSERT_TRUE(preview(b, dib));
  const BitmapInfoHeader* h = DibHeader(dib.get());
  EXPECT_EQ(std::vector<std::int64_t>({h->biSize, h->biWidth, h->biHeight, h->biPlanes,
                                       h->biBitCount, h->biCompression, h->biSizeImage}),
            std::vector<std::int64_t>({40, 104, 78, 1, 16, 0, 104 * 78 * 4}));
  EXPECT_EQ(dib.blockBytes(), kDibPixelOffset + h->biSizeImage);
  EXPECT_TRUE(std::equal(b.begin() + kBody, b.end(), DibPixels(dib.get())));
  EXPECT_TRUE(preview(Bytes(b.begin(), b.begin() + kBody + 1), dib));  // one byte is enough
  Bytes wide = b, before = b, magic = b;
  SetI32(wide, 480, 1 << 30);
  SetI32(before, 476, -1);
  magic[6] = '!';
  for (const Bytes& bad : {Bytes(b.begin(), b.begin() + kBody), SaveBytes(false),
                           Bytes(b.begin(), b.begin() + 487), wide, before, magic}) {
    EXPECT_FALSE(preview(bad, dib));
    EXPECT_FALSE(dib);
  }
}

TEST_F(SavedGameTest, GameWithMoreHintsThanTheLimitStillOpens) {
  // A hint at 2 x 2 joins although the limit is 0; the game saved after it must reopen.
  CerrarPuzzle(false);
  ASSERT_TRUE(LoadPuzzlePicture(picture_.c_str()));
  EstadoPuzzle& p = Puzzle();
  p.NR = 2, p.NC = 2, p.scale = 1.0;
  ASSERT_TRUE(CrearPuzzle(2, 2, kDie2x2, true));
  const std::int32_t counts[kAreaCount] = {0, 0, 0, 0, 0, 0, 4};
  for (int a = 0; a < kAreaCount; ++a) p.areas[a].count = counts[a], p.areas[a].start = 0;
  EXPECT_FALSE(PistaPuzzle());
  ASSERT_EQ(p.hintsUsed, 1);
  Bytes saved = SaveBytes(false);

  test::AssertRecorder rec;
  LoadedGame loaded;
  ASSERT_TRUE(LoadGame(PathOf("game.epf").c_str(), "", loaded));
  EXPECT_EQ(p.hintsUsed, 1);
  EXPECT_FALSE(loaded.hintsAvailable);
  EXPECT_EQ(rec.only(), "las pistas usadas superan el limite");  // a debug build stops here
  SetI32(saved, 464, -5);
  rec.clear();
  ASSERT_TRUE(LoadGameFromBytes(saved, "", loaded));
  EXPECT_EQ(p.hintsUsed, 0);
  EXPECT_FALSE(loaded.hintsAvailable);  // 0 < 0 is false at 2 x 2
  EXPECT_EQ(rec.only(), "las pistas usadas superan el limite");
}

// A picture of `bits` (4, 8 or 24) and width 5, so every row has padding after widening or
// copying; the file's own padding bytes are 0xEE.
Bytes OddWidthPicture(int bits) {
  constexpr int kW = 5, kH = 3;
  const int colours = bits == 24 ? 0 : (1 << bits);
  const auto stride = static_cast<std::size_t>(DibRowBytes(kW, bits));
  const std::size_t used = static_cast<std::size_t>((kW * bits + 7) / 8);
  Bytes pixels(stride * kH, 0xEE);
  for (int y = 0; y < kH; ++y) {
    for (std::size_t i = 0; i < used; ++i) pixels[y * stride + i] = std::uint8_t(0x21 * (i + y));
  }
  BitmapInfoHeader h{};
  h.biSize = 40, h.biWidth = kW, h.biHeight = kH, h.biPlanes = 1;
  h.biBitCount = std::uint16_t(bits), h.biCompression = kBiRgb;
  h.biSizeImage = std::uint32_t(pixels.size()), h.biClrUsed = std::uint32_t(colours);
  const std::uint32_t offset = 54 + 4 * colours;
  Bytes out = {'B', 'M'};
  const std::uint32_t fileHeader[3] = {std::uint32_t(offset + pixels.size()), 0, offset};
  test::AppendBytes(out, fileHeader, sizeof fileHeader);
  test::AppendBytes(out, &h, sizeof h);
  for (int c = 0; c < colours; ++c) {
    const std::uint8_t quad[4] = {std::uint8_t(c), std::uint8_t(2 * c), std::uint8_t(3 * c), 0};
    test::AppendBytes(out, quad, 4);
  }
  test::AppendBytes(out, pixels.data(), pixels.size());
  return out;
}

TEST_F(SavedGameTest, PicturesKeepZeroRowPadding) {
#ifdef __GLIBC__
  // Fresh blocks are filled with non-zero bytes (the sanitizer tree does so by itself), so
  // padding that is never written shows.
  mallopt(M_PERTURB, 0x55);
#endif
  for (int bits : {4, 8, 24}) {
    WriteFile(PathOf("odd.bmp"), OddWidthPicture(bits));
    ASSERT_TRUE(LoadPuzzlePicture(PathOf("odd.bmp").c_str())) << bits;
    const HIMAGE picture = PuzzlePicture();
    const int outBits = bits == 24 ? 24 : 8;
    ASSERT_EQ(DibHeader(picture)->biBitCount, outBits);
    const std::size_t stride = std::size_t(DibRowBytes(5, outBits));
    const std::size_t used = outBits == 24 ? 15 : 5;
    for (int y = 0; y < 3; ++y) {
      const std::uint8_t* row = DibPixels(picture) + y * stride;
      for (std::size_t i = used; i < stride; ++i) {
        EXPECT_EQ(row[i], 0) << bits << " bits, row " << y << ", byte " << i;
      }
    }
    if (bits == 4) {
      EXPECT_EQ(DibPixels(picture)[2], 2);  // the high nibble of 0x21, one index a byte
    }
  }
#ifdef __GLIBC__
  mallopt(M_PERTURB, 0);
#endif
}

}  // namespace
}  // namespace qv
