// An owned packed DIB block (the picture a DIB-mode image object holds).
#pragma once

#include <cstddef>
#include <cstdint>

#include "graphics/dib_layout.h"

namespace qv {

class PackedDib {
 public:
  PackedDib() = default;
  ~PackedDib();
  PackedDib(const PackedDib&) = delete;
  PackedDib& operator=(const PackedDib&) = delete;
  PackedDib(PackedDib&& other) noexcept;
  PackedDib& operator=(PackedDib&& other) noexcept;

  // Allocates a block with room for the header, 256 colours and pixelBytes of pixels.
  // Returns null when the allocation fails; the caller owns the result until Adopt.
  static HIMAGE AllocateBlock(std::size_t pixelBytes);

  // Replaces the held picture with an 8-bit one of this size: header filled in, rows padded
  // to 4 bytes, colour table and pixels not cleared. False (and nothing changed) when the
  // size is not positive or the memory cannot be had.
  bool Allocate(int width, int height);

  // Takes ownership of a block made by AllocateBlock, freeing the previous one.
  void Adopt(HIMAGE block, std::size_t blockBytes);
  void Reset();

  HIMAGE get() const { return block_; }
  explicit operator bool() const { return block_ != nullptr; }
  std::size_t blockBytes() const { return bytes_; }
  int width() const { return block_ ? DibHeader(block_)->biWidth : 0; }
  int height() const { return block_ ? DibHeader(block_)->biHeight : 0; }

 private:
  HIMAGE block_ = nullptr;
  std::size_t bytes_ = 0;
};

}  // namespace qv
