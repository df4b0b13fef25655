// BitmapFile: reads a .bmp picture straight from disk, optionally resampled while reading.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

#include "graphics/dib_layout.h"
#include "system/binary_file.h"

namespace qv {

// One entry of a window-system palette, laid out like Windows' PALETTEENTRY. The Win32 side
// fetches the entries with GetPaletteEntries and passes the array, so this code stays portable.
struct PaletteEntry {
  std::uint8_t peRed;
  std::uint8_t peGreen;
  std::uint8_t peBlue;
  std::uint8_t peFlags;
};
static_assert(sizeof(PaletteEntry) == 4, "a palette entry is 4 bytes");

// Width and height exactly as the header stores them (a negative height means top-down rows).
struct BitmapSize {
  std::int32_t width;
  std::int32_t height;
};

class BitmapFile {
 public:
  // The largest pixel array Open accepts and the largest output ReadScaled produces: 2 GiB.
  static constexpr std::int64_t kMaxImageBytes = std::int64_t{1} << 31;

  BitmapFile() = default;
  ~BitmapFile() { Close(); }
  BitmapFile(const BitmapFile&) = delete;
  BitmapFile& operator=(const BitmapFile&) = delete;

  // Opens and validates a .bmp file; on failure the object is left closed.
  bool Open(const char* path);
  // The same for a .bmp in memory: the bytes are borrowed and must outlive the object. Such a
  // picture has no path.
  bool OpenBytes(std::span<const std::uint8_t> bytes);
  // Returns the object to its freshly constructed state.
  void Close();
  bool IsOpen() const { return headerValid_ != 0; }

  // Returns the stored path's length + 1 (0 without a path); copies the path and its terminator
  // only when buffer is given and bufferSize is at least that.
  std::size_t GetPath(char* buffer, std::size_t bufferSize) const;
  // (0, 0) when no file is open.
  BitmapSize GetSize() const;
  bool GetHeader(BitmapInfoHeader* header) const;
  // Entries in the file's colour table (0 for true-colour files, or when closed).
  int ColourCount() const { return colourCount_; }

  // Reads count colour-table entries starting at entry first.
  bool ReadColours(int first, int count, RgbQuad* buffer);
  // Writes the header followed by all ColourCount() colours: a BITMAPINFO for the window system.
  // The buffer needs 40 + 4 * ColourCount() bytes.
  bool GetBitmapInfo(void* buffer);
  // Reads the pixel array as stored: ImageSize(header) bytes.
  bool ReadPixels(void* buffer);
  // Reads the pixels resampled to width x |height| at the file's depth (4, 8 or 24 bits), rows
  // padded to 4 bytes; the buffer needs DibRowBytes(width, depth) * |height| bytes. When the
  // signs of height and the file's height differ, the rows come out in the opposite order.
  bool ReadScaled(int width, int height, void* buffer);
  // True when every colour of the file's colour table appears in the given palette (red, green
  // and blue compared; flags ignored). A null entries pointer is an invalid palette handle.
  bool PaletteHasColours(const PaletteEntry* entries, int count);

  // Bytes of the pixel array the header describes: row bytes times |biHeight|. Widths below 1
  // give 0; sizes beyond the 64-bit range saturate at INT64_MAX.
  static std::int64_t ImageSize(const BitmapInfoHeader& header);

 private:
  // Checks the magic and the header of the opened file; false leaves the caller to close.
  bool ReadHeader();
  std::int64_t PixelOffset() const;
  bool ReadAt(std::int64_t position, void* buffer, std::int64_t bytes);

  BinaryFile file_;
  std::unique_ptr<char[]> path_;
  std::int32_t headerValid_ = 0;
  std::int32_t compressed_ = 0;
  std::int32_t colourCount_ = 0;
  std::unique_ptr<BitmapInfoHeader> header_;
};

}  // namespace qv
