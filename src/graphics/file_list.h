// FileExists and FileList: wildcard lookups of file names in one folder.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace qv {

// A pattern is a folder path and a file-name pattern, e.g. "C:\Game\folder\*.epf" or
// "/tmp/x/*.bmp". Either '\' or '/' separates folders; without a separator the current folder is
// searched. '*' matches any run of characters and '?' any one character, ignoring case.

// True when at least one entry of the folder matches the pattern.
bool FileExists(const char* pattern);

// The names matching a pattern, packed into one block of records:
//   [length byte = name length + 2][name characters][0] ... [0]
// Walk it from Block() by the length bytes until a zero length byte. Names keep the order in
// which the system lists the folder; folders that match are listed too.
class FileList {
 public:
  // Names this long or longer cannot be recorded (their length byte would overflow).
  static constexpr int kMaxNameChars = 254;

  FileList() = default;
  ~FileList();
  FileList(const FileList&) = delete;
  FileList& operator=(const FileList&) = delete;

  // Lists the matches of pattern, replacing the previous listing. False when nothing matches,
  // memory runs out, or a name is too long; the block is then not to be walked.
  bool Build(const char* pattern);

  int Count() const { return count_; }
  bool IsValid() const { return valid_ != 0; }
  // The block of records (nullptr before the first match); walk it only while IsValid().
  const std::uint8_t* Block() const { return block_; }
  // The names of a valid listing, in block order; empty otherwise.
  std::vector<std::string> Names() const;

 private:
  bool AppendRecord(std::int64_t& position, const std::string& name);
  bool EnsureCapacity(std::int64_t needed);

  std::int32_t count_ = 0;
  std::int32_t capacity_ = 0;
  std::uint8_t valid_ = 0;
  std::uint8_t* block_ = nullptr;
};

}  // namespace qv
