// ResourceFile: reading the directory and the picture blocks, checking every size first.
#include "graphics/resource_file.h"

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <utility>

#include "system/assert.h"

namespace qv {

namespace {

// The lookup index of the directory is 16 bits wide, so no usable file has more entries.
constexpr std::uint64_t kMaxEntries = 0xFFFF;

std::uint64_t EntryOffset(const RfDirectoryEntry& entry) {
  return (static_cast<std::uint64_t>(entry.offsetHigh) << 32) | entry.offsetLow;
}

bool PathExists(const char* path) {
  std::error_code error;
  return std::filesystem::exists(std::filesystem::path(path), error) && !error;
}

// A header the pixel operations can trust: an upright 8- or 24-bit picture whose pixel
// block holds every row it claims.
bool HeaderIsUsable(const BitmapInfoHeader& h) {
  if (h.biSize != 40 || h.biWidth < 1 || h.biHeight < 1) return false;
  if (h.biBitCount != 8 && h.biBitCount != 24) return false;
  if (h.biClrUsed > 256 || h.biSizeImage == 0) return false;
  // Divided rather than multiplied: row bytes times rows of a huge header overflow 64 bits.
  const std::int64_t rowBytes = DibRowBytes(h.biWidth, h.biBitCount);
  return rowBytes <= static_cast<std::int64_t>(h.biSizeImage) / h.biHeight;
}

}  // namespace

bool ResourceFile::Open(const char* path) {
  if (!QV_CHECK(!file_.IsOpen(), "el path debe ser declarado una vez")) return false;
  if (!QV_CHECK(path && PathExists(path), "el archivo especificado no se encontro")) return false;
  BinaryFile file;
  if (!QV_CHECK(file.OpenRead(path), "el archivo especificado no pudo ser abierto")) return false;
  return ReadDirectory(std::move(file));
}

bool ResourceFile::OpenBytes(std::span<const std::uint8_t> bytes) {
  if (!QV_CHECK(!file_.IsOpen(), "el path debe ser declarado una vez")) return false;
  BinaryFile file;
  file.OpenBytes(bytes);
  return ReadDirectory(std::move(file));
}

bool ResourceFile::ReadDirectory(BinaryFile&& file) {
  const std::uint64_t size = file.Size();
  std::uint32_t count = 0;
  if (size < 4 || !file.Seek(size - 4) || !file.ReadExact(&count, 4)) return false;
  const std::uint64_t directoryBytes = std::uint64_t{16} * count;
  if (count > kMaxEntries || directoryBytes + 4 > size) return false;

  std::vector<RfDirectoryEntry> directory(count);
  const std::uint64_t start = size - 4 - directoryBytes;
  if (count > 0 && (!file.Seek(start) ||
                    !file.ReadExact(directory.data(), static_cast<std::size_t>(directoryBytes)))) {
    return false;
  }
  file_ = std::move(file);
  directory_ = std::move(directory);
  directoryStart_ = start;
  return true;
}

const RfDirectoryEntry* ResourceFile::FindEntry(std::uint32_t identifier) const {
  for (const auto& entry : directory_) {
    if (entry.identifier == identifier) return &entry;
  }
  return nullptr;
}

bool ResourceFile::ReadPictureHeader(std::uint32_t identifier, BitmapInfoHeader& header) {
  if (!QV_CHECK(file_.IsOpen(), "no ha sido declarado el .rf")) return false;
  const RfDirectoryEntry* entry = FindEntry(identifier);
  if (!QV_CHECK(entry != nullptr, "este bitmap no esta registrado en el .rf")) return false;

  const std::uint64_t offset = EntryOffset(*entry);
  if (offset + sizeof header > directoryStart_ || !file_.Seek(offset) ||
      !file_.ReadExact(&header, sizeof header) || !HeaderIsUsable(header)) {
    return false;
  }
  const std::uint64_t colourBytes = std::uint64_t{4} * header.biClrUsed;
  return offset + sizeof header + colourBytes + header.biSizeImage <= directoryStart_;
}

bool ResourceFile::LoadPicture(std::uint32_t identifier, PackedDib& into) {
  BitmapInfoHeader header;
  if (!ReadPictureHeader(identifier, header)) return false;
  const std::uint64_t colourBytes = std::uint64_t{4} * header.biClrUsed;

  HIMAGE block = PackedDib::AllocateBlock(header.biSizeImage);
  if (!block) return false;
  std::memcpy(block, &header, sizeof header);
  const bool read =
      (colourBytes == 0 || file_.ReadExact(block + kDibHeaderBytes, colourBytes)) &&
      file_.ReadExact(block + kDibPixelOffset, header.biSizeImage);
  if (!read) {
    std::free(block);
    return false;
  }
  into.Adopt(block, kDibPixelOffset + header.biSizeImage);
  return true;
}

bool ResourceFile::ViewPicture(std::uint32_t identifier, PictureView& view) {
  if (!file_.InMemory()) return false;
  BitmapInfoHeader header;
  if (!ReadPictureHeader(identifier, header)) return false;
  const std::uint8_t* pixels = nullptr;
  if (!file_.SeekRelative(std::int64_t{4} * header.biClrUsed) ||
      (pixels = file_.Borrow(header.biSizeImage)) == nullptr) {
    return false;
  }
  view.header = header;
  view.pixels = pixels;
  return true;
}

ResourceFile& TheResourceFile() {
  static ResourceFile file;
  return file;
}

bool OpenResourceFile(const char* path) { return TheResourceFile().Open(path); }

}  // namespace qv
