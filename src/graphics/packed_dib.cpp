// PackedDib: allocation and ownership of packed DIB blocks.
#include "graphics/packed_dib.h"

#include <cstdlib>
#include <cstring>
#include <utility>

namespace qv {

namespace {
// The largest block we ever ask for; anything above is a corrupt size, not a picture.
constexpr std::size_t kMaxPixelBytes = std::size_t{1} << 31;
}  // namespace

PackedDib::~PackedDib() { Reset(); }

PackedDib::PackedDib(PackedDib&& other) noexcept
    : block_(std::exchange(other.block_, nullptr)), bytes_(std::exchange(other.bytes_, 0)) {}

PackedDib& PackedDib::operator=(PackedDib&& other) noexcept {
  if (this != &other) {
    Reset();
    block_ = std::exchange(other.block_, nullptr);
    bytes_ = std::exchange(other.bytes_, 0);
  }
  return *this;
}

HIMAGE PackedDib::AllocateBlock(std::size_t pixelBytes) {
  if (pixelBytes > kMaxPixelBytes) return nullptr;
  auto block = static_cast<HIMAGE>(std::malloc(kDibPixelOffset + pixelBytes));
  // Colour slots past biClrUsed are never meant to be read, but a zeroed table keeps a
  // careless reader from seeing stale heap bytes.
  if (block) std::memset(block + kDibHeaderBytes, 0, kDibPixelOffset - kDibHeaderBytes);
  return block;
}

bool PackedDib::Allocate(int width, int height) {
  if (width < 1 || height < 1) return false;
  const std::int64_t rowBytes = DibRowBytes(width, 8);
  const std::int64_t pixelBytes = rowBytes * height;
  if (pixelBytes > static_cast<std::int64_t>(kMaxPixelBytes)) return false;
  HIMAGE block = AllocateBlock(static_cast<std::size_t>(pixelBytes));
  if (!block) return false;
  BitmapInfoHeader header{};
  header.biSize = 40;
  header.biWidth = width;
  header.biHeight = height;
  header.biPlanes = 1;
  header.biBitCount = 8;
  header.biCompression = kBiRgb;
  header.biSizeImage = static_cast<std::uint32_t>(pixelBytes);
  std::memcpy(block, &header, sizeof header);
  Adopt(block, kDibPixelOffset + static_cast<std::size_t>(pixelBytes));
  return true;
}

void PackedDib::Adopt(HIMAGE block, std::size_t blockBytes) {
  if (block == block_) return;
  Reset();
  block_ = block;
  bytes_ = block ? blockBytes : 0;
}

void PackedDib::Reset() {
  std::free(block_);
  block_ = nullptr;
  bytes_ = 0;
}

}  // namespace qv
