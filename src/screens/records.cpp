// The honour roll store: Records.mwr read with repair, the place rule, entering a name, writing.
#include "screens/records.h"

#include <bit>
#include <cstdio>
#include <cstring>

#include "system/assert.h"
#include "system/binary_file.h"

namespace qv {

static_assert(std::endian::native == std::endian::little,
              "the records file is little-endian and is read and written as it lies in memory");

namespace {

constexpr char kMagic[9] = {'M', 'w', 'R', 'e', 'c', 'o', 'r', 'd', 's'};
constexpr std::int32_t kGoodCount = kHonourPlaces;
constexpr char kEmptyNameCharacter = '-';

CBuffer TemporaryPathFor(const CBuffer& path) { return path + ".tmp"; }

void DeleteFileAt(const CBuffer& path) {
  if (path.Length() > 1) std::remove(path.Text());
}

// Characters of name before its terminator, or -1 when there is none within limit bytes.
std::int32_t BoundedLength(const char* name, std::int32_t limit) {
  for (std::int32_t i = 0; i < limit; ++i) {
    if (name[i] == '\0') return i;
  }
  return -1;
}

}  // namespace

CBuffer RecordsPath(const char* programFolder) {
  return CBuffer(programFolder ? programFolder : "") + kRecordsFileName;
}

void ResetRecords(HonourRoll& roll) {
  std::memcpy(roll.header.magic, kMagic, sizeof kMagic);
  std::memset(roll.header.unset, 0, sizeof roll.header.unset);
  roll.header.count = kGoodCount;
  for (RecordEntry& entry : roll.entries) {
    std::memset(entry.name, kEmptyNameCharacter, kRecordNameBytes - 1);
    entry.name[kRecordNameBytes - 1] = '\0';
    entry.score = 0;
  }
}

namespace {

// The roll an opened file or byte block holds; the empty roll and false when it is malformed.
bool ReadRecordsFrom(BinaryFile& file, HonourRoll& roll) {
  // The entries that a short read leaves untouched are those of the empty roll, never stale
  // memory.
  HonourRoll read;
  ResetRecords(read);
  const std::size_t headerBytes = file.Read(&read.header, sizeof read.header);
  // A file that ends right after its header gives nothing here and is repaired.
  if (headerBytes > 0 && read.header.count == kGoodCount &&
      file.Read(read.entries, sizeof read.entries) > 0) {
    roll = read;
    return true;
  }
  ResetRecords(roll);
  return false;
}

}  // namespace

bool LoadRecords(const char* programFolder, HonourRoll& roll) {
  const CBuffer path = RecordsPath(programFolder);
  BinaryFile file;
  if (path.Length() > 1 && file.OpenRead(path.Text()) && ReadRecordsFrom(file, roll)) {
    return true;
  }
  file.Close();
  DeleteFileAt(path);
  ResetRecords(roll);
  return false;
}

bool LoadRecordsFromBytes(std::span<const std::uint8_t> bytes, HonourRoll& roll) {
  BinaryFile file;
  file.OpenBytes(bytes);
  return ReadRecordsFrom(file, roll);
}

bool SaveRecords(const char* programFolder, const HonourRoll& roll) {
  const CBuffer path = RecordsPath(programFolder);
  if (path.Length() <= 1) return false;
  const CBuffer temporary = TemporaryPathFor(path);
  if (temporary.Length() <= 1) return false;
  BinaryFile file;
  if (!file.CreateWrite(temporary.Text())) return false;
  const bool written = file.Write(&roll.header, sizeof roll.header) &&
                       file.Write(roll.entries, sizeof roll.entries) && file.Flush();
  file.Close();
  if (!written || !ReplaceFileAtomically(temporary.Text(), path.Text())) {
    DeleteFileAt(temporary);
    return false;
  }
  return true;
}

void ClearRecords(const char* programFolder, HonourRoll& roll) {
  DeleteFileAt(RecordsPath(programFolder));
  LoadRecords(programFolder, roll);
}

std::string_view RecordNameText(const RecordEntry& entry) {
  const std::int32_t length = BoundedLength(entry.name, kRecordNameBytes);
  return std::string_view(entry.name, length < 0 ? kRecordNameBytes
                                                 : static_cast<std::size_t>(length));
}

std::int32_t HonourPlace(const HonourRoll& roll, std::int32_t score) {
  std::int32_t place = kHonourPlaces;
  while (place > 0 && score > roll.entries[place - 1].score) --place;
  return place;
}

bool InsertRecord(HonourRoll& roll, std::int32_t place, std::int32_t score, const char* name) {
  if (!QV_CHECK(place >= 0 && place < kHonourPlaces, "esta posicion en este caso es invalida")) {
    return false;
  }
  const std::int32_t length = name ? BoundedLength(name, kRecordNameBytes) : 0;
  if (!QV_CHECK(length >= 0, "esta entrada del inputbox es mas grande de lo esperado")) {
    return false;
  }
  for (std::int32_t i = kHonourPlaces - 1; i > place; --i) roll.entries[i] = roll.entries[i - 1];
  RecordEntry& entry = roll.entries[place];
  entry.score = score;
  if (name) std::memcpy(entry.name, name, static_cast<std::size_t>(length) + 1);
  else entry.name[0] = '\0';
  return true;
}

HonourEntry& ThePendingHonourEntry() {
  static HonourEntry pending;
  return pending;
}

std::int32_t BeginHonourEntry(const char* programFolder, std::int32_t score,
                              HonourEntry& pending, bool countsForHonour) {
  HonourRoll roll;
  LoadRecords(programFolder, roll);
  pending.place = countsForHonour ? HonourPlace(roll, score) : kHonourPlaces;
  pending.score = score;
  return pending.place;
}

HonourNameResult FinishHonourEntry(const char* programFolder, const HonourEntry& pending,
                                   bool accepted, const char* name, HonourRoll& shown) {
  // The checks come first, as in the name box's callback, so a refused name changes nothing.
  const std::int32_t length = name ? BoundedLength(name, kRecordNameBytes) : 0;
  if (!QV_CHECK(length >= 0, "esta entrada del inputbox es mas grande de lo esperado")) {
    return HonourNameResult::kNothingRecorded;
  }
  if (!QV_CHECK(pending.place >= 0 && pending.place <= kHonourPlaces - 1,
                "esta posicion en este caso es invalida")) {
    return HonourNameResult::kNothingRecorded;
  }
  if (!accepted || length < 1) return HonourNameResult::kNothingRecorded;

  HonourRoll roll;
  LoadRecords(programFolder, roll);
  if (!InsertRecord(roll, pending.place, pending.score, name)) {
    return HonourNameResult::kNothingRecorded;
  }
  shown = roll;
  return SaveRecords(programFolder, roll) ? HonourNameResult::kRecordedAndWritten
                                          : HonourNameResult::kRecordedNotWritten;
}

}  // namespace qv
