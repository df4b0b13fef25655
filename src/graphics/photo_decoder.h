// Decoding a player's own photograph (JPEG, PNG, GIF, TIFF, BMP) into a 24-bit packed DIB.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "graphics/dib_layout.h"
#include "graphics/packed_dib.h"

namespace qv {

// Why a photograph could not be read; the caller turns each into its own message.
enum class PhotoError {
  kNone,
  kNotFound,      // the file or its folder is gone
  kLocked,        // another program holds the file, or it may not be read
  kEmpty,         // zero bytes
  kNotAPicture,   // no decoder recognises the contents (a text file renamed .png)
  kDamaged,       // recognised but broken or cut short
  kTooLarge,      // more pixels than kMaxPhotoPixels
  kOutOfMemory,
  kNoDecoder,     // the system's imaging component is missing or failed to start
};

// The largest photograph accepted, checked from its stated size before any pixels are read.
constexpr std::int64_t kMaxPhotoPixels = 100'000'000;

struct DecodedPhoto {
  PhotoError error = PhotoError::kNoDecoder;
  // On success: a 24-bit bottom-up picture in the game's packed form (header, 256 unused colour
  // slots, then rows of blue-green-red padded to 4 bytes), turned upright as the camera said.
  PackedDib picture;
};

// Reads the first frame of the file at path, composing any transparency over background (the
// table's colour). Initialises COM (apartment-threaded) on the calling thread for the length of
// the call when the thread has not done it already.
DecodedPhoto DecodePhoto(const std::wstring& path, RgbQuad background);

// Where a stored pixel lands once an EXIF orientation (1 to 8) is applied: the upright picture's
// size for a stored width x height, and the upright position of stored pixel (x, y). Values
// outside 1 to 8 mean upright.
struct OrientedSize {
  int width;
  int height;
};
OrientedSize OrientSize(int orientation, int width, int height);
void OrientPoint(int orientation, int width, int height, int x, int y, int* uprightX,
                 int* uprightY);

// The orientation (1 to 8) a JPEG's EXIF block gives, or 1 when there is none or it cannot be
// read; head is the start of the file (a segment is at most 64 KiB, and EXIF comes early).
constexpr std::size_t kJpegExifHeadBytes = 3 * 65536;
int JpegExifOrientation(const std::uint8_t* head, std::size_t bytes);

// The pixels a PNG, GIF or JPEG header claims, or 0 where the start of the file does not say.
// Checked before the system's decoder sees the file: some decoders allocate the whole picture
// as soon as they open it.
std::int64_t StatedPhotoPixels(const std::uint8_t* head, std::size_t bytes);

}  // namespace qv
