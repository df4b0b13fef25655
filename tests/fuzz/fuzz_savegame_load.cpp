// Fuzz target: any bytes as a saved game to load whole (die, picture, cut, pieces), either raw
// or as a patch over a good save. The picture comes from memory; the parser alone has its own,
// faster target.
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "puzzle/play.h"
#include "puzzle/puzzle_model.h"
#include "savegame_template.h"
#include "setup/savegame.h"
#include "system/assert.h"

namespace {

void Quiet(const char*, const char*, int) {}

// The file's scale enlarges the picture before the cut: at 300 the cut is a gigabyte and takes
// seconds. Past this scale an input is only parsed (the cut's own limits are tested natively).
constexpr double kMaxLoadedScale = 2.0;

}  // namespace

// libFuzzer's entropic schedule updates a frequency per covered feature on every execution; a
// load covers some fifteen hundred, and that bookkeeping took more of each execution than the
// load's own checks. This target uses the plain schedule unless the command line asks for the
// entropic one (options given later win, so the default goes right after the program's name).
extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
  static std::vector<char*> args;
  static char plain[] = "-entropic=0";
  args.assign(*argv, *argv + *argc);
  args.insert(args.begin() + 1, plain);
  args.push_back(nullptr);
  *argc += 1;
  *argv = args.data();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  qv::SetAssertHandler(&Quiet);
  qv::fuzz::Template();
  const std::span<const std::uint8_t> file = qv::fuzz::FileOf(data, size);
  qv::ParsedGame parsed;
  const bool parses = qv::ParseSavedGame(file, parsed);
  if (parses && parsed.scale > kMaxLoadedScale) return 0;

  qv::LoadedGame loaded;
  const char* folder = (size > 0 && (data[0] & 4)) ? "C:\\Q\\" : "";
  const bool ok = qv::LoadGameFromBytes(file, folder, loaded, &qv::fuzz::InstallTinyPicture);
  if (ok != qv::PuzzleAbierto()) __builtin_trap();
  // The load checks no less than the parser: a file the parser refuses never opens.
  if (ok && !parses) __builtin_trap();
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
