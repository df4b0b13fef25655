// The honour roll store (Records.mwr): loading with repair, the place rule, names, writing.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "system/cbuffer.h"

namespace qv {

constexpr std::int32_t kHonourPlaces = 10;
constexpr std::int32_t kRecordNameBytes = 24;
constexpr const char* kRecordsFileName = "Records.mwr";

// The file's first 16 bytes.
struct RecordsHeader {
  char magic[9];            // "MwRecords", no terminator
  std::uint8_t unset[3];    // carried through as read, never compared
  std::int32_t count;       // always 10 in a good file
};
static_assert(sizeof(RecordsHeader) == 16, "the records header is 16 bytes");

struct RecordEntry {
  // Zero-terminated when written by this program, but a file may hold 24 characters without a
  // zero; read it through RecordNameText. Bytes behind the terminator are kept as they were.
  char name[kRecordNameBytes];
  std::int32_t score;
};
static_assert(sizeof(RecordEntry) == 28, "a record entry is 28 bytes");

// The whole file as it lies on disk: header, then the ten entries, best first.
struct HonourRoll {
  RecordsHeader header;
  RecordEntry entries[kHonourPlaces];
};
static_assert(sizeof(HonourRoll) == 296, "the records file is 296 bytes");

// Program folder (ending with a backslash or slash) + "Records.mwr".
CBuffer RecordsPath(const char* programFolder);

// The empty roll: ten names of 23 '-' with score 0.
void ResetRecords(HonourRoll& roll);

// Reads the roll. A missing, unreadable or malformed file (count other than 10, nothing after
// the header) is deleted and the empty roll is given instead, without writing it back; the
// answer is then false. The magic is not compared and a short entry block is taken as far as
// it goes (the rest keeps the empty roll's entries); both leniencies are intended.
bool LoadRecords(const char* programFolder, HonourRoll& roll);
// The same reading rules for the file's bytes already in memory (nothing is deleted).
bool LoadRecordsFromBytes(std::span<const std::uint8_t> bytes, HonourRoll& roll);

// Writes all 296 bytes through a temporary file, replacing the old file only when the new one
// was written whole.
bool SaveRecords(const char* programFolder, const HonourRoll& roll);

// The clear button: the file is deleted and the roll reloaded (which gives the empty roll).
void ClearRecords(const char* programFolder, HonourRoll& roll);

// The name as shown: up to the first zero, never past the 24-byte field.
std::string_view RecordNameText(const RecordEntry& entry);

// The place a score would take, 0..9, or 10 when it earns none. A score equal to an entry's
// goes below it: the older entry keeps the better place.
std::int32_t HonourPlace(const HonourRoll& roll, std::int32_t score);

// Moves entries place..8 down one (all 24 name bytes with them; the old tenth falls off) and
// writes the score and the name with its terminator over the start of entry place's field, so
// the tail of a longer old name stays behind the terminator. Refused (with a check) for a place
// outside 0..9 or a name that does not fit with its terminator in 24 bytes.
bool InsertRecord(HonourRoll& roll, std::int32_t place, std::int32_t score, const char* name);

// The entry procedure keeps the place and the score between the question and the answer.
struct HonourEntry {
  std::int32_t place = kHonourPlaces;
  std::int32_t score = 0;
};
HonourEntry& ThePendingHonourEntry();

// The decision of a finished game: reloads the roll and remembers the place the score would
// take. Returns that place; below 10 the caller opens the honour screen and asks for a name. A
// game that does not count (the program assembled the picture for the player) takes none.
std::int32_t BeginHonourEntry(const char* programFolder, std::int32_t score,
                              HonourEntry& pending, bool countsForHonour = true);

// What happened to a name given for the pending entry.
enum class HonourNameResult {
  kRecordedAndWritten,  // the roll holds the name and the file was written
  kRecordedNotWritten,  // the roll holds the name but writing the file failed; it is lost
  kNothingRecorded,     // cancelled, empty, or refused by a check
};

// The answer of the name box: with a confirmed, non-empty name the roll is reloaded, the name
// entered at the pending place, and the file written. `shown` receives the roll that the honour
// screen should show (unchanged when nothing was recorded).
HonourNameResult FinishHonourEntry(const char* programFolder, const HonourEntry& pending,
                                   bool accepted, const char* name, HonourRoll& shown);

}  // namespace qv
