// BinaryFile: stdio underneath, with the platform's 64-bit seek.
#include "system/binary_file.h"

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <utility>

namespace qv {

namespace {

int SeekTo(std::FILE* f, std::int64_t offset, int origin) {
#ifdef _WIN32
  return _fseeki64(f, offset, origin);
#else
  return fseeko(f, static_cast<off_t>(offset), origin);
#endif
}

std::int64_t TellOf(std::FILE* f) {
#ifdef _WIN32
  return _ftelli64(f);
#else
  return static_cast<std::int64_t>(ftello(f));
#endif
}

}  // namespace

BinaryFile::~BinaryFile() { Close(); }

BinaryFile::BinaryFile(BinaryFile&& other) noexcept
    : file_(std::exchange(other.file_, nullptr)),
      size_(std::exchange(other.size_, 0)),
      memory_(std::exchange(other.memory_, nullptr)),
      position_(std::exchange(other.position_, 0)) {}

BinaryFile& BinaryFile::operator=(BinaryFile&& other) noexcept {
  if (this != &other) {
    Close();
    file_ = std::exchange(other.file_, nullptr);
    size_ = std::exchange(other.size_, 0);
    memory_ = std::exchange(other.memory_, nullptr);
    position_ = std::exchange(other.position_, 0);
  }
  return *this;
}

bool BinaryFile::OpenRead(const char* path) {
  Close();
  if (!path) return false;
  file_ = std::fopen(path, "rb");
  if (!file_) return false;
  if (SeekTo(file_, 0, SEEK_END) != 0) {
    Close();
    return false;
  }
  const std::int64_t end = TellOf(file_);
  if (end < 0 || SeekTo(file_, 0, SEEK_SET) != 0) {
    Close();
    return false;
  }
  size_ = static_cast<std::uint64_t>(end);
  return true;
}

bool BinaryFile::CreateWrite(const char* path) {
  Close();
  if (!path) return false;
  file_ = std::fopen(path, "wb");
  return file_ != nullptr;
}

bool BinaryFile::OpenBytes(std::span<const std::uint8_t> bytes) {
  Close();
  // An empty span still opens, as an empty file does; it just has nothing to read.
  static const std::uint8_t kNothing = 0;
  memory_ = bytes.empty() ? &kNothing : bytes.data();
  size_ = bytes.size();
  position_ = 0;
  return true;
}

void BinaryFile::Close() {
  if (file_) std::fclose(file_);
  file_ = nullptr;
  memory_ = nullptr;
  size_ = 0;
  position_ = 0;
}

std::size_t BinaryFile::Read(void* buffer, std::size_t bytes) {
  if (!buffer || bytes == 0) return 0;
  if (memory_) {
    if (position_ >= size_) return 0;
    const std::uint64_t left = size_ - position_;
    const std::size_t count = left < bytes ? static_cast<std::size_t>(left) : bytes;
    std::memcpy(buffer, memory_ + position_, count);
    position_ += count;
    return count;
  }
  if (!file_) return 0;
  return std::fread(buffer, 1, bytes, file_);
}

const std::uint8_t* BinaryFile::Borrow(std::size_t bytes) {
  if (!memory_ || position_ > size_ || bytes > size_ - position_) return nullptr;
  const std::uint8_t* at = memory_ + position_;
  position_ += bytes;
  return at;
}

bool BinaryFile::Write(const void* buffer, std::size_t bytes) {
  if (!file_) return false;
  if (bytes == 0) return true;
  return buffer && std::fwrite(buffer, 1, bytes, file_) == bytes;
}

bool BinaryFile::Flush() { return file_ && std::fflush(file_) == 0; }

bool BinaryFile::Seek(std::uint64_t position) {
  if (position > static_cast<std::uint64_t>(INT64_MAX)) return false;
  if (memory_) {
    position_ = position;
    return true;
  }
  return file_ && SeekTo(file_, static_cast<std::int64_t>(position), SEEK_SET) == 0;
}

bool BinaryFile::SeekRelative(std::int64_t delta) {
  if (memory_) {
    // Like a file: before the start is refused, past the end is allowed.
    const auto at = static_cast<std::int64_t>(position_);
    if (delta < 0 ? delta < -at : delta > INT64_MAX - at) return false;
    position_ = static_cast<std::uint64_t>(at + delta);
    return true;
  }
  return file_ && SeekTo(file_, delta, SEEK_CUR) == 0;
}

std::uint64_t BinaryFile::Tell() const {
  if (memory_) return position_;
  if (!file_) return 0;
  const std::int64_t at = TellOf(file_);
  return at < 0 ? 0 : static_cast<std::uint64_t>(at);
}

bool ReplaceFileAtomically(const char* temporaryPath, const char* path) {
  if (!temporaryPath || !path) return false;
  std::error_code error;
  // std::filesystem::rename replaces an existing target on both systems (MoveFileEx with
  // MOVEFILE_REPLACE_EXISTING on Windows), so the old file survives until the new one is whole.
  std::filesystem::rename(temporaryPath, path, error);
  return !error;
}

}  // namespace qv
