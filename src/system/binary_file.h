// A small owned file handle for reading and writing binary files with 64-bit positions; it can
// also read borrowed bytes in memory, so that every reader has one entry for files and bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <span>

namespace qv {

class BinaryFile {
 public:
  BinaryFile() = default;
  ~BinaryFile();
  BinaryFile(const BinaryFile&) = delete;
  BinaryFile& operator=(const BinaryFile&) = delete;
  BinaryFile(BinaryFile&& other) noexcept;
  BinaryFile& operator=(BinaryFile&& other) noexcept;

  bool OpenRead(const char* path);
  bool CreateWrite(const char* path);  // creates or truncates
  // Reads the given bytes as if they were a file's. They are borrowed: they must outlive the
  // handle. Writing to such a handle fails.
  bool OpenBytes(std::span<const std::uint8_t> bytes);
  void Close();
  bool IsOpen() const { return file_ != nullptr || memory_ != nullptr; }
  bool InMemory() const { return memory_ != nullptr; }

  // Returns the number of bytes really read (short at the end of the file or on error).
  std::size_t Read(void* buffer, std::size_t bytes);
  bool ReadExact(void* buffer, std::size_t bytes) { return Read(buffer, bytes) == bytes; }
  // For a handle on bytes in memory: the next `bytes` bytes where they lie, without a copy,
  // moving past them as a read would. Null on a file, or when fewer bytes are left.
  const std::uint8_t* Borrow(std::size_t bytes);
  bool Write(const void* buffer, std::size_t bytes);
  bool Flush();

  bool Seek(std::uint64_t position);
  bool SeekRelative(std::int64_t delta);
  std::uint64_t Tell() const;
  // The file's length, measured once when it was opened for reading (0 for writing).
  std::uint64_t Size() const { return size_; }

 private:
  std::FILE* file_ = nullptr;
  std::uint64_t size_ = 0;
  // Memory mode: the borrowed bytes (size_ of them) and the read position, which may lie past
  // the end after a seek, as a file's may.
  const std::uint8_t* memory_ = nullptr;
  std::uint64_t position_ = 0;
};

// Replaces path with temporaryPath (same folder) in one step where the system allows it.
bool ReplaceFileAtomically(const char* temporaryPath, const char* path);

}  // namespace qv
