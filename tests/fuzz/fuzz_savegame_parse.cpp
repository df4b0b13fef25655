// Fuzz target: any bytes as a saved game through the parser alone (header, box counts, order,
// piece records), raw or as a patch over a good save; what it accepts must be consistent.
#include <cstddef>
#include <cstdint>
#include <vector>

#include "savegame_template.h"
#include "setup/savegame.h"
#include "system/assert.h"

namespace {

void Quiet(const char*, const char*, int) {}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  qv::SetAssertHandler(&Quiet);
  qv::fuzz::Template();
  qv::ParsedGame parsed;
  if (!qv::ParseSavedGame(qv::fuzz::FileOf(data, size), parsed)) return 0;
  const std::int64_t n = parsed.pieces;
  if (n != std::int64_t{parsed.rows} * parsed.columns || n < 1) __builtin_trap();
  if (parsed.order.size() != static_cast<std::size_t>(n) || parsed.records.size() != parsed.order.size()) {
    __builtin_trap();
  }
  std::int64_t total = 0;
  for (std::int32_t count : parsed.counts) total += count;
  if (total != n) __builtin_trap();
  std::vector<bool> seen(parsed.order.size());
  for (std::uint32_t piece : parsed.order) {
    if (piece >= seen.size() || seen[piece]) __builtin_trap();
    seen[piece] = true;
  }
  for (const qv::Pieza& record : parsed.records) {
    if (record.group > static_cast<std::uint64_t>(n) || record.unselected > 1) __builtin_trap();
  }
  if (parsed.storedPath.size() >= qv::kSavePathBytes || parsed.hintsUsed < 0) __builtin_trap();
  return 0;
}
