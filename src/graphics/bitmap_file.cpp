// BitmapFile: header validation, colour-table and pixel reads, and one-pass resampling.
#include "graphics/bitmap_file.h"

#include <climits>
#include <cstring>
#include <new>

#include "system/assert.h"

namespace qv {

namespace {

constexpr std::int64_t kInfoHeaderOffset = 14;
// The colour table is taken to follow a 40-byte header at once; bfOffBits is deliberately
// ignored, so files with longer headers or a gap before the pixels are read wrongly.
constexpr std::int64_t kColourTableOffset = kInfoHeaderOffset + 40;
constexpr std::size_t kMaxPathChars = 260;
constexpr int kMaxColours = 256;

std::int64_t Magnitude(std::int32_t value) {
  return value < 0 ? -static_cast<std::int64_t>(value) : value;
}

// Number of colour-table entries the header implies, or -1 when it implies none we accept.
std::int64_t DeriveColourCount(const BitmapInfoHeader& header) {
  if (header.biClrUsed != 0) return header.biClrUsed;
  switch (header.biBitCount) {
    case 4: return 16;
    case 8: return 256;
    case 24:
    case 32: return 0;
    default: return -1;  // 1 and 16 bits need an explicit count
  }
}

std::size_t BoundedLength(const char* text, std::size_t limit) {
  std::size_t length = 0;
  while (length < limit && text[length] != '\0') ++length;
  return length;
}

// The checks that keep every later read inside the file and every buffer a caller sizes from
// the header reasonable. Returns the colour count, or -1 for an unacceptable header.
std::int64_t AcceptHeader(const BitmapInfoHeader& header, std::uint64_t fileBytes) {
  if (header.biWidth < 1) return -1;
  if (header.biHeight == 0 || header.biHeight == INT32_MIN) return -1;
  if (header.biPlanes != 1) return -1;
  if (header.biCompression == kBiBitfields) return -1;
  const std::int64_t colours = DeriveColourCount(header);
  if (colours < 0 || colours > kMaxColours) return -1;

  const std::int64_t imageBytes = BitmapFile::ImageSize(header);
  if (imageBytes > BitmapFile::kMaxImageBytes) return -1;
  if (header.biCompression == kBiRgb) {
    // Compressed data is shorter than the image, so only raw pixels can be measured this way.
    const std::int64_t pixelOffset = kColourTableOffset + 4 * colours;
    const std::int64_t available = static_cast<std::int64_t>(fileBytes) - pixelOffset;
    if (available < imageBytes) return -1;
  }
  return colours;
}

// Output pixel x of a resampled row comes from source column columnMap[x].
using ColumnIndex = std::int32_t;

// Builds the column map and proves once, for every entry, that the bytes the row converters
// touch lie inside the source row; the inner loops then need no checks of their own.
bool BuildColumnMap(ColumnIndex* map, std::int64_t outWidth, std::int64_t sourceWidth, int bits,
                    std::int64_t sourceRowBytes) {
  for (std::int64_t x = 0; x < outWidth; ++x) {
    auto column = static_cast<std::int64_t>(static_cast<double>(x) *
                                            static_cast<double>(sourceWidth) /
                                            static_cast<double>(outWidth));
    if (column > sourceWidth - 1) column = sourceWidth - 1;
    if (column < 0) column = 0;
    const std::int64_t lastByte = bits == 24 ? column * 3 + 2 : column * bits / 8;
    if (!QV_CHECK(lastByte < sourceRowBytes, "error")) return false;
    map[x] = static_cast<ColumnIndex>(column);
  }
  return true;
}

void ConvertRow8(const std::uint8_t* source, const ColumnIndex* map, std::int64_t outWidth,
                 std::uint8_t* out) {
  for (std::int64_t x = 0; x < outWidth; ++x) out[x] = source[map[x]];
}

void ConvertRow24(const std::uint8_t* source, const ColumnIndex* map, std::int64_t outWidth,
                  std::uint8_t* out) {
  for (std::int64_t x = 0; x < outWidth; ++x) {
    const std::uint8_t* pixel = source + 3 * static_cast<std::int64_t>(map[x]);
    out[3 * x] = pixel[0];
    out[3 * x + 1] = pixel[1];
    out[3 * x + 2] = pixel[2];
  }
}

// Each output nibble is written into its byte while the byte's other nibble is kept; this is
// deliberate, so a row is built up nibble by nibble in the reused row buffer.
void ConvertRow4(const std::uint8_t* source, const ColumnIndex* map, std::int64_t outWidth,
                 std::uint8_t* out) {
  for (std::int64_t x = 0; x < outWidth; ++x) {
    const ColumnIndex column = map[x];
    const std::uint8_t packed = source[column / 2];
    const std::uint8_t nibble = (column % 2 == 0) ? (packed >> 4) : (packed & 0x0F);
    std::uint8_t& target = out[x / 2];
    if (x % 2 == 0) {
      target = static_cast<std::uint8_t>((target & 0x0F) | (nibble << 4));
    } else {
      target = static_cast<std::uint8_t>((target & 0xF0) | nibble);
    }
  }
}

using RowConverter = void (*)(const std::uint8_t*, const ColumnIndex*, std::int64_t,
                              std::uint8_t*);

RowConverter ConverterFor(int bits) {
  switch (bits) {
    case 4: return &ConvertRow4;
    case 8: return &ConvertRow8;
    case 24: return &ConvertRow24;
    default: return nullptr;
  }
}

// The row walk of a resampled read, one pass over the larger of the two heights. readRow(skip)
// passes over skip bytes of unread rows, then reads and converts the next source row;
// writeRow(target) stores the converted row as output row target.
//
// A double-precision accumulator decides at which steps a source row is read. Its rounding is
// deliberate and decides which rows are kept, so it must not become exact integer arithmetic.
template <typename ReadRow, typename WriteRow>
bool WalkRows(std::int64_t sourceHeight, std::int64_t outHeight, std::int64_t sourceRowBytes,
              bool flip, ReadRow readRow, WriteRow writeRow) {
  const bool enlarge = sourceHeight < outHeight;
  const std::int64_t steps = enlarge ? outHeight : sourceHeight;
  const double ratio = enlarge
                           ? static_cast<double>(outHeight) / static_cast<double>(sourceHeight)
                           : static_cast<double>(sourceHeight) / static_cast<double>(outHeight);
  double accumulator = 0.0;
  std::int64_t pendingSkip = 0;  // bytes of rows passed over since the last read
  std::int64_t rowsRead = 0;
  std::int64_t rowsWritten = 0;  // reduction only
  bool rowReady = false;
  for (std::int64_t step = 0; step < steps; ++step) {
    if (!enlarge && rowsWritten == outHeight) break;
    // The accumulator can fall a hair short of the last step when enlarging and ask for a row
    // past the image; the last row read stands in for it.
    if (static_cast<std::int64_t>(accumulator) == step && rowsRead < sourceHeight) {
      accumulator += ratio;
      if (!readRow(pendingSkip)) return false;
      pendingSkip = 0;
      ++rowsRead;
      rowReady = true;
    } else if (!enlarge) {
      pendingSkip += sourceRowBytes;
    }
    if (!rowReady) continue;  // nothing read yet in this stretch of a reduction

    std::int64_t target = step;  // enlarging writes every step, repeating the last row read
    if (!enlarge) {
      target = rowsWritten++;
      rowReady = false;  // a reduction writes each row it reads exactly once
    }
    if (flip) target = outHeight - 1 - target;
    if (!QV_CHECK(target >= 0 && target < outHeight, "error")) return false;
    writeRow(target);
  }
  return true;
}

template <typename T>
std::unique_ptr<T[]> AllocateZeroed(std::int64_t count) {
  if (count < 0 || static_cast<std::uint64_t>(count) > SIZE_MAX / sizeof(T)) return nullptr;
  return std::unique_ptr<T[]>(new (std::nothrow) T[static_cast<std::size_t>(count)]());
}

}  // namespace

bool BitmapFile::Open(const char* path) {
  if (!QV_CHECK(path != nullptr, "Nombre de Archivo Invalido")) return false;
  const std::size_t length = BoundedLength(path, kMaxPathChars);
  if (!QV_CHECK(length < kMaxPathChars, "Path Muy Grande")) return false;

  // Copied before Close, which frees the stored path that the caller may have handed back in.
  std::unique_ptr<char[]> newPath(new (std::nothrow) char[length + 1]);
  if (!newPath) return false;
  std::memcpy(newPath.get(), path, length);
  newPath[length] = '\0';

  Close();
  if (!file_.OpenRead(newPath.get()) || !ReadHeader()) {
    Close();
    return false;
  }
  path_ = std::move(newPath);
  return true;
}

bool BitmapFile::OpenBytes(std::span<const std::uint8_t> bytes) {
  Close();
  file_.OpenBytes(bytes);
  if (!ReadHeader()) {
    Close();
    return false;
  }
  return true;
}

bool BitmapFile::ReadHeader() {
  char magic[2] = {};
  if (!file_.ReadExact(magic, sizeof magic) || magic[0] != 'B' || magic[1] != 'M') {
    return false;
  }
  auto header = std::unique_ptr<BitmapInfoHeader>(new (std::nothrow) BitmapInfoHeader());
  if (!header || !file_.Seek(kInfoHeaderOffset) ||
      !file_.ReadExact(header.get(), sizeof(BitmapInfoHeader))) {
    return false;
  }
  const std::int64_t colours = AcceptHeader(*header, file_.Size());
  if (colours < 0) return false;
  headerValid_ = 1;
  compressed_ = header->biCompression != kBiRgb ? 1 : 0;
  colourCount_ = static_cast<std::int32_t>(colours);
  header_ = std::move(header);
  return true;
}

void BitmapFile::Close() {
  file_.Close();
  path_.reset();
  headerValid_ = 0;
  compressed_ = 0;
  colourCount_ = 0;
  header_.reset();
}

std::size_t BitmapFile::GetPath(char* buffer, std::size_t bufferSize) const {
  if (!path_) return 0;
  const std::size_t needed = std::strlen(path_.get()) + 1;
  if (buffer && bufferSize >= needed) std::memcpy(buffer, path_.get(), needed);
  return needed;
}

BitmapSize BitmapFile::GetSize() const {
  if (!IsOpen()) return {0, 0};
  return {header_->biWidth, header_->biHeight};
}

bool BitmapFile::GetHeader(BitmapInfoHeader* header) const {
  if (!IsOpen()) return false;
  if (!QV_CHECK(header != nullptr, "puntero invalido")) return false;
  *header = *header_;
  return true;
}

std::int64_t BitmapFile::PixelOffset() const { return kColourTableOffset + 4 * colourCount_; }

bool BitmapFile::ReadAt(std::int64_t position, void* buffer, std::int64_t bytes) {
  if (bytes < 0 || static_cast<std::uint64_t>(bytes) > SIZE_MAX) return false;
  if (!file_.Seek(static_cast<std::uint64_t>(position))) return false;
  return file_.Read(buffer, static_cast<std::size_t>(bytes)) == static_cast<std::size_t>(bytes);
}

bool BitmapFile::ReadColours(int first, int count, RgbQuad* buffer) {
  if (!IsOpen() || colourCount_ == 0) return false;
  if (!QV_CHECK(buffer != nullptr, "puntero invalido")) return false;
  if (!QV_CHECK(first >= 0 && count >= 0 &&
                    static_cast<std::int64_t>(first) + count <= colourCount_,
                "Valor invalido")) {
    return false;
  }
  // Reading nothing counts as a failed read, as it does for any other short read.
  if (count == 0) return false;
  return ReadAt(kColourTableOffset + 4 * static_cast<std::int64_t>(first), buffer,
                4 * static_cast<std::int64_t>(count));
}

bool BitmapFile::GetBitmapInfo(void* buffer) {
  if (!IsOpen()) return false;
  if (!QV_CHECK(buffer != nullptr, "puntero invalido")) return false;
  auto* bytes = static_cast<std::uint8_t*>(buffer);
  // A true-colour file has no table, and its BITMAPINFO is the header alone.
  if (colourCount_ > 0 &&
      !ReadColours(0, colourCount_, reinterpret_cast<RgbQuad*>(bytes + kDibHeaderBytes))) {
    return false;
  }
  std::memcpy(bytes, header_.get(), kDibHeaderBytes);
  return true;
}

bool BitmapFile::ReadPixels(void* buffer) {
  if (!IsOpen()) return false;
  if (!QV_CHECK(buffer != nullptr, "puntero invalido")) return false;
  return ReadAt(PixelOffset(), buffer, ImageSize(*header_));
}

bool BitmapFile::ReadScaled(int width, int height, void* buffer) {
  if (!IsOpen()) return false;
  if (!QV_CHECK(buffer != nullptr, "Puntero Invalido")) return false;
  if (!QV_CHECK(width >= 1 && height != 0, "Valores Invalidos")) return false;
  const int bits = header_->biBitCount;
  const RowConverter convert = ConverterFor(bits);
  if (!QV_CHECK(convert != nullptr, "esta funcion no soporta estos formatos")) return false;
  if (compressed_) return false;

  const std::int64_t sourceWidth = header_->biWidth;
  const std::int64_t sourceHeight = Magnitude(header_->biHeight);
  const std::int64_t outWidth = width;
  const std::int64_t outHeight = Magnitude(height);
  const std::int64_t sourceRowBytes = DibRowBytes(sourceWidth, bits);
  const std::int64_t outRowBytes = DibRowBytes(outWidth, bits);
  // The caller's buffer and the column map must both stay within the size limit.
  if (!QV_CHECK(outRowBytes <= kMaxImageBytes / outHeight &&
                    outWidth <= kMaxImageBytes / static_cast<std::int64_t>(sizeof(ColumnIndex)),
                "Valores Invalidos")) {
    return false;
  }

  auto sourceRow = AllocateZeroed<std::uint8_t>(sourceRowBytes);
  auto outRow = AllocateZeroed<std::uint8_t>(outRowBytes);
  auto columnMap = AllocateZeroed<ColumnIndex>(outWidth);
  if (!sourceRow || !outRow || !columnMap) return false;
  if (!BuildColumnMap(columnMap.get(), outWidth, sourceWidth, bits, sourceRowBytes)) return false;
  if (!file_.Seek(static_cast<std::uint64_t>(PixelOffset()))) return false;

  auto* output = static_cast<std::uint8_t*>(buffer);
  const auto readRow = [&](std::int64_t skipBytes) {
    if (skipBytes != 0 && !file_.SeekRelative(skipBytes)) return false;
    if (!file_.ReadExact(sourceRow.get(), static_cast<std::size_t>(sourceRowBytes))) return false;
    convert(sourceRow.get(), columnMap.get(), outWidth, outRow.get());
    return true;
  };
  const auto writeRow = [&](std::int64_t target) {
    std::memcpy(output + target * outRowBytes, outRow.get(), static_cast<std::size_t>(outRowBytes));
  };
  const bool flip = (header_->biHeight < 0) != (height < 0);
  return WalkRows(sourceHeight, outHeight, sourceRowBytes, flip, readRow, writeRow);
}

bool BitmapFile::PaletteHasColours(const PaletteEntry* entries, int count) {
  if (!IsOpen() || colourCount_ == 0) return false;
  if (!QV_CHECK(entries != nullptr, "Handle Invalido")) return false;
  if (!QV_CHECK(colourCount_ > 0, "epa que es este valor!")) return false;
  if (count < 1 || count < colourCount_) return false;

  RgbQuad colours[kMaxColours];
  if (!ReadColours(0, colourCount_, colours)) return false;
  for (int c = colourCount_ - 1; c >= 0; --c) {
    bool found = false;
    for (int p = count - 1; p >= 0 && !found; --p) {
      found = entries[p].peRed == colours[c].rgbRed && entries[p].peGreen == colours[c].rgbGreen &&
              entries[p].peBlue == colours[c].rgbBlue;
    }
    if (!found) return false;
  }
  return true;
}

std::int64_t BitmapFile::ImageSize(const BitmapInfoHeader& header) {
  if (header.biWidth < 1) return 0;
  const std::int64_t rowBytes = DibRowBytes(header.biWidth, header.biBitCount);
  const std::int64_t rows = Magnitude(header.biHeight);
  if (rows != 0 && rowBytes > INT64_MAX / rows) return INT64_MAX;
  return rowBytes * rows;
}

}  // namespace qv
