// Counted owned arrays for the engine's large blocks, so a cut's memory can be measured.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <new>
#include <type_traits>

namespace qv {

// Bytes the engine holds in its counted blocks now, and the most it held since the last reset.
struct EngineMemoryStats {
  std::size_t current = 0;
  std::size_t peak = 0;
};
EngineMemoryStats EngineMemory();
void ResetEngineMemoryPeak();
// For blocks another library allocates on the engine's behalf (the die picture).
void NoteEngineBytes(std::ptrdiff_t delta);

// An owned array of plain values allocated without exceptions: Allocate answers false when the
// memory cannot be had, and the contents start unset.
template <class T>
class EngineArray {
  static_assert(std::is_trivially_copyable_v<T>, "engine arrays hold plain records");

 public:
  EngineArray() = default;
  ~EngineArray() { Free(); }
  EngineArray(const EngineArray&) = delete;
  EngineArray& operator=(const EngineArray&) = delete;
  EngineArray(EngineArray&& other) noexcept : data_(other.data_), size_(other.size_) {
    other.data_ = nullptr;
    other.size_ = 0;
  }
  EngineArray& operator=(EngineArray&& other) noexcept {
    if (this != &other) {
      Free();
      data_ = other.data_;
      size_ = other.size_;
      other.data_ = nullptr;
      other.size_ = 0;
    }
    return *this;
  }

  bool Allocate(std::size_t count) {
    Free();
    if (count == 0 || count > SIZE_MAX / sizeof(T)) return false;
    data_ = static_cast<T*>(std::malloc(count * sizeof(T)));
    if (!data_) return false;
    size_ = count;
    NoteEngineBytes(static_cast<std::ptrdiff_t>(count * sizeof(T)));
    return true;
  }
  void Free() {
    if (data_) {
      std::free(data_);
      NoteEngineBytes(-static_cast<std::ptrdiff_t>(size_ * sizeof(T)));
    }
    data_ = nullptr;
    size_ = 0;
  }

  T* data() { return data_; }
  const T* data() const { return data_; }
  std::size_t size() const { return size_; }
  std::size_t bytes() const { return size_ * sizeof(T); }
  explicit operator bool() const { return data_ != nullptr; }
  T& operator[](std::size_t i) { return data_[i]; }
  const T& operator[](std::size_t i) const { return data_[i]; }

 private:
  T* data_ = nullptr;
  std::size_t size_ = 0;
};

}  // namespace qv
