// Fuzz target: any bytes as the honour roll file; loading, placing and entering must hold.
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <string>

#include "screens/records.h"
#include "system/assert.h"

namespace {

void Quiet(const char*, const char*, int) {}

// A program folder of this process's own, removed when the process ends.
struct ScratchFolder {
  std::string path;
  ScratchFolder() {
    // Memory-backed when there is one: the target rewrites the file at every run.
    const std::string base = std::filesystem::is_directory("/dev/shm") ? "/dev/shm" : "/tmp";
    path = base + "/qv_fuzz_records_" + std::to_string(getpid()) + "/";
    std::filesystem::create_directories(path);
  }
  ~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path, ignored);
  }
};

const std::string& Folder() {
  static const ScratchFolder folder;
  return folder.path;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  qv::SetAssertHandler(&Quiet);
  const std::string path = Folder() + qv::kRecordsFileName;
  if (std::FILE* f = std::fopen(path.c_str(), "wb")) {
    if (size) std::fwrite(data, 1, size, f);
    std::fclose(f);
  }
  qv::HonourRoll roll;
  qv::LoadRecords(Folder().c_str(), roll);
  // Names read from the file may lack their zero: they must still be read within the field.
  std::size_t total = 0;
  for (const qv::RecordEntry& entry : roll.entries) total += qv::RecordNameText(entry).size();
  if (total > 10 * qv::kRecordNameBytes) __builtin_trap();

  // Enter a score from the input's last bytes under a name taken from its first.
  std::int32_t score = 0;
  if (size >= 4) __builtin_memcpy(&score, data + size - 4, 4);
  char name[32] = {};
  for (std::size_t i = 0; i < sizeof name - 1 && i < size; ++i) {
    name[i] = static_cast<char>(data[i]);
  }
  qv::HonourEntry pending;
  qv::BeginHonourEntry(Folder().c_str(), score, pending);
  qv::HonourRoll shown;
  qv::FinishHonourEntry(Folder().c_str(), pending, true, name, shown);
  return 0;
}
