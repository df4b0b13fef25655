// The .bmp writer: a packed DIB laid out as a file and written through a temporary file.
#include "graphics/bitmap_writer.h"

#include <cstdio>
#include <cstring>
#include <string>

#include "system/binary_file.h"

namespace qv {
namespace {

constexpr std::uint32_t kFileHeaderBytes = 14;
// The largest file this writer makes; a bigger header is a damaged picture, not one to save.
constexpr std::int64_t kMaxFileBytes = std::int64_t{1} << 31;

void PutLittleEndian(std::uint8_t* at, std::uint32_t value, int bytes) {
  for (int i = 0; i < bytes; ++i) at[i] = static_cast<std::uint8_t>(value >> (8 * i));
}

}  // namespace

std::vector<std::uint8_t> BitmapFileBytes(HIMAGE picture) {
  if (!picture) return {};
  BitmapInfoHeader header;
  std::memcpy(&header, picture, sizeof header);
  if ((header.biBitCount != 8 && header.biBitCount != 24) || header.biWidth < 1 ||
      header.biHeight < 1 || header.biCompression != kBiRgb) {
    return {};
  }
  std::uint32_t colours = 0;
  if (header.biBitCount == 8) {
    colours = header.biClrUsed == 0 ? kDibColourSlots : header.biClrUsed;
    if (colours > kDibColourSlots) return {};
  }
  const std::int64_t pixelBytes = DibRowBytes(header.biWidth, header.biBitCount) * header.biHeight;
  const std::int64_t offset = kFileHeaderBytes + kDibHeaderBytes + 4 * std::int64_t{colours};
  if (offset + pixelBytes > kMaxFileBytes) return {};

  std::vector<std::uint8_t> bytes(static_cast<std::size_t>(offset + pixelBytes));
  bytes[0] = 'B';
  bytes[1] = 'M';
  PutLittleEndian(&bytes[2], static_cast<std::uint32_t>(bytes.size()), 4);
  PutLittleEndian(&bytes[10], static_cast<std::uint32_t>(offset), 4);
  header.biSize = kDibHeaderBytes;
  header.biPlanes = 1;
  header.biSizeImage = static_cast<std::uint32_t>(pixelBytes);
  header.biClrUsed = colours;
  if (header.biClrImportant > colours) header.biClrImportant = 0;
  std::memcpy(&bytes[kFileHeaderBytes], &header, sizeof header);
  std::memcpy(&bytes[kFileHeaderBytes + kDibHeaderBytes], DibColours(picture), 4 * std::size_t{colours});
  std::memcpy(&bytes[static_cast<std::size_t>(offset)], DibPixels(picture),
              static_cast<std::size_t>(pixelBytes));
  return bytes;
}

bool WriteBitmapFile(const char* path, HIMAGE picture) {
  if (!path || !*path) return false;
  const std::vector<std::uint8_t> bytes = BitmapFileBytes(picture);
  if (bytes.empty()) return false;
  const std::string temporary = std::string(path) + ".tmp";
  BinaryFile file;
  if (!file.CreateWrite(temporary.c_str())) return false;
  const bool written = file.Write(bytes.data(), bytes.size()) && file.Flush();
  file.Close();
  if (!written || !ReplaceFileAtomically(temporary.c_str(), path)) {
    std::remove(temporary.c_str());
    return false;
  }
  return true;
}

}  // namespace qv
