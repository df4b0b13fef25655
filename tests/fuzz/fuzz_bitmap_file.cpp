// libFuzzer target: any bytes as a .bmp file, through every BitmapFile read and the print job's
// check of a picture to print.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <vector>

#include "graphics/bitmap_file.h"
#include "screens/print_layout.h"
#include "system/assert.h"

namespace {

// Buffers the harness is willing to allocate; larger requests are skipped, not failed.
constexpr std::int64_t kMaxBufferBytes = 4 << 20;

void IgnoreAssert(const char*, const char*, int) {}

// Exactly sized buffers, so that AddressSanitizer sees any write past the end. They are left
// uninitialised: a compressed file may declare megabytes it does not hold, and zeroing them
// for every such input took most of the target's time; untouched pages cost nothing.
std::unique_ptr<std::uint8_t[]> Buffer(std::int64_t bytes) {
  return std::unique_ptr<std::uint8_t[]>(new std::uint8_t[static_cast<std::size_t>(bytes)]);
}

void ReadScaledAt(qv::BitmapFile& file, int bits, int width, int height) {
  const std::int64_t bytes = qv::DibRowBytes(width, bits) * std::abs(std::int64_t{height});
  if (width < 1 || height == 0 || bytes > kMaxBufferBytes) return;
  file.ReadScaled(width, height, Buffer(bytes).get());
}

void Exercise(qv::BitmapFile& file) {
  qv::BitmapInfoHeader header{};
  file.GetHeader(&header);
  const qv::BitmapSize size = file.GetSize();
  std::vector<char> path(file.GetPath(nullptr, 0));
  file.GetPath(path.data(), path.size());

  const int colours = file.ColourCount();
  std::vector<qv::RgbQuad> table(static_cast<std::size_t>(colours) + 1);
  file.ReadColours(0, colours, table.data());
  file.ReadColours(colours / 2, colours - colours / 2, table.data());
  file.ReadColours(colours, 1, table.data());  // one past the end: refused
  std::vector<std::uint8_t> info(qv::kDibHeaderBytes + 4 * static_cast<std::size_t>(colours));
  file.GetBitmapInfo(info.data());

  const std::int64_t imageBytes = qv::BitmapFile::ImageSize(header);
  if (imageBytes <= kMaxBufferBytes) {
    file.ReadPixels(Buffer(std::max<std::int64_t>(imageBytes, 1)).get());
  }

  const int bits = header.biBitCount;
  const int height = size.height == INT32_MIN ? 1 : std::abs(size.height);
  ReadScaledAt(file, bits, 1, 1);
  ReadScaledAt(file, bits, 7, -5);
  ReadScaledAt(file, bits, 64, 64);
  ReadScaledAt(file, bits, std::min(size.width, 1024) * 2, std::min(height, 256));
  ReadScaledAt(file, bits, std::min(size.width, 2048), -std::min(height, 512));

  std::vector<qv::PaletteEntry> palette(16);
  for (std::size_t i = 0; i < palette.size() && i < table.size(); ++i) {
    palette[i] = {table[i].rgbRed, table[i].rgbGreen, table[i].rgbBlue, 0};
  }
  file.PaletteHasColours(palette.data(), static_cast<int>(palette.size()));
  file.PaletteHasColours(nullptr, 0);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const bool quiet = (qv::SetAssertHandler(&IgnoreAssert), true);
  (void)quiet;
  // The bytes are read in place, through the same reader the game gives its files to.
  qv::BitmapFile file;
  if (file.OpenBytes({data, size})) Exercise(file);
  file.Close();
  // An accepted picture's bands must lie inside the bytes, as the job reads them from the file.
  qv::PrintablePicture picture;
  if (qv::CheckPrintablePicture(data, size, size, picture)) {
    const std::uint64_t rows = static_cast<std::uint64_t>(picture.height) / 5 * 5;
    if (picture.pixelOffset + picture.stride * rows > size) std::abort();
  }
  return 0;
}
