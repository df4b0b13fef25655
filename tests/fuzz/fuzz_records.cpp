// Fuzz target: any bytes as the honour roll file; loading, placing and entering must hold.
#include <cstddef>
#include <cstdint>

#include "screens/records.h"
#include "system/assert.h"

namespace {

void Quiet(const char*, const char*, int) {}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  qv::SetAssertHandler(&Quiet);
  qv::HonourRoll roll;
  qv::LoadRecordsFromBytes({data, size}, roll);
  // Names read from the file may lack their zero: they must still be read within the field.
  std::size_t total = 0;
  for (const qv::RecordEntry& entry : roll.entries) total += qv::RecordNameText(entry).size();
  if (total > 10 * qv::kRecordNameBytes) __builtin_trap();

  // Enter a score from the input's last bytes under a name taken from its first, as the end of
  // a game does once the roll is read (writing the file back is not the parser's business).
  std::int32_t score = 0;
  if (size >= 4) __builtin_memcpy(&score, data + size - 4, 4);
  char name[32] = {};
  for (std::size_t i = 0; i < sizeof name - 1 && i < size; ++i) {
    name[i] = static_cast<char>(data[i]);
  }
  const std::int32_t place = qv::HonourPlace(roll, score);
  if (place < 0 || place > qv::kHonourPlaces) __builtin_trap();
  if (place < qv::kHonourPlaces && qv::InsertRecord(roll, place, score, name) &&
      roll.entries[place].score != score) {
    __builtin_trap();
  }
  return 0;
}
