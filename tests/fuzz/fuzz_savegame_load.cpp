// Fuzz target: any bytes as a saved game to load, either raw or as a patch over a good save.
// The saved game and the dies are read from memory; only the (tiny) picture is a file, because
// the saved game names it by path.
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <span>
#include <string>
#include <vector>

#include "graphics/resource_file.h"
#include "puzzle/play.h"
#include "puzzle/puzzle_model.h"
#include "setup/savegame.h"
#include "support/die_builder.h"
#include "support/rf_writer.h"
#include "system/assert.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

void Quiet(const char*, const char*, int) {}

// A tiny 24-bit .bmp, so that every cut the fuzzer reaches stays quick.
Bytes PictureFile(int width, int height) {
  qv::test::RfPicture p;
  p.width = width, p.height = height, p.bitCount = 24;
  const auto stride = static_cast<std::uint32_t>(qv::DibRowBytes(width, 24));
  for (std::uint32_t i = 0; i < stride * static_cast<std::uint32_t>(height); ++i) {
    p.pixels.push_back(static_cast<std::uint8_t>(i * 31));
  }
  Bytes out = {'B', 'M'};
  const std::uint32_t fileHeader[3] = {14 + 40 + static_cast<std::uint32_t>(p.pixels.size()), 0,
                                       14 + 40};
  qv::test::AppendBytes(out, fileHeader, sizeof fileHeader);
  const qv::BitmapInfoHeader h = qv::test::HeaderOf(p);
  qv::test::AppendBytes(out, &h, sizeof h);
  qv::test::AppendBytes(out, p.pixels.data(), p.pixels.size());
  return out;
}

Bytes ReadAll(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

// A folder of this process's own, removed when the process ends.
struct ScratchFolder {
  std::string path;
  ScratchFolder() {
    // Memory-backed when there is one: the target rewrites a file at every run.
    const std::string base = std::filesystem::is_directory("/dev/shm") ? "/dev/shm" : "/tmp";
    path = base + "/qv_fuzz_load_" + std::to_string(getpid());
    std::filesystem::create_directories(path);
  }
  ~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path, ignored);
  }
};

// Built once per process: the dies (in memory), the picture, and a good save of a 3 x 4 game with
// pieces in a box and a group, to patch. The scratch folder becomes the working folder, so that
// the picture path "p.bmp" that inputs carry is found.
const Bytes& Template() {
  static const ScratchFolder folder;
  static const Bytes dies = qv::test::BuildResourceFile({qv::test::DieBuilder(2, 2).Picture(5000),
                                                         qv::test::DieBuilder(1, 1).Picture(5001),
                                                         qv::test::DieBuilder(2, 3).Picture(5002)});
  static const Bytes bytes = [] {
    std::filesystem::current_path(folder.path);
    qv::test::WriteBytes("p.bmp", PictureFile(96, 72));
    if (!qv::TheResourceFile().OpenBytes(dies)) __builtin_trap();
    qv::SetBoardSize(640, 480);
    qv::LoadPuzzlePicture("p.bmp");
    qv::EstadoPuzzle& p = qv::Puzzle();
    p.NR = 3, p.NC = 4, p.scale = 1.0;
    if (!qv::CrearPuzzle(2, 2, 5000, true)) __builtin_trap();
    p.areas[0].count = 2, p.areas[6].count = 10, p.areas[6].start = 2;
    for (int a = 1; a < 6; ++a) p.areas[a].start = 2;
    p.pieces[1].group = 2, p.pieces[5].group = 2, p.pieces[3].unselected = 0;
    qv::BoxNames names;
    if (!qv::SaveGame("template.epf", true, "", names)) __builtin_trap();
    qv::CerrarPuzzle(false);
    return ReadAll("template.epf");
  }();
  return bytes;
}

// An odd first byte other than the magic's 'M': the rest is an offset (2 bytes) and bytes
// written over the good save from there; with bit 1 also set the file ends where the patch
// began. Otherwise the input is the file itself, so a whole saved game is a seed as it is.
bool IsPatch(const std::uint8_t* data, std::size_t size) {
  return size >= 3 && (data[0] & 1) != 0 && data[0] != 'M';
}

const Bytes& Patched(const std::uint8_t* data, std::size_t size) {
  static Bytes file;
  file = Template();
  const std::size_t start = (data[1] | (data[2] << 8)) % file.size();
  for (std::size_t i = 3; i < size && start + i - 3 < file.size(); ++i) {
    file[start + i - 3] = data[i];
  }
  if (data[0] & 2) file.resize(start);
  return file;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  qv::SetAssertHandler(&Quiet);
  Template();
  std::span<const std::uint8_t> file(data, size);
  if (IsPatch(data, size)) file = Patched(data, size);
  qv::LoadedGame loaded;
  const char* folder = (size > 0 && (data[0] & 4)) ? "C:\\Q\\" : "";
  const bool ok = qv::LoadGameFromBytes(file, folder, loaded);
  if (ok != qv::PuzzleAbierto()) __builtin_trap();
  if (ok) {
    // A loaded game must be playable: every piece in one slice, the score computable.
    std::int64_t total = 0;
    for (int a = 0; a < qv::kAreaCount; ++a) total += qv::AreaPieceCount(a);
    if (total != qv::PieceCount()) __builtin_trap();
    qv::ResultadoPuzzle();
    qv::HitTest(qv::AREA_TABLERO, qv::EnginePoint{40, 300});
    qv::CerrarPuzzle(false);
  }
  return 0;
}
