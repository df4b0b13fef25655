// libFuzzer target: any bytes as the start of a photograph, through the EXIF orientation reader
// and the header size check.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>

#include "graphics/photo_decoder.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  // An exactly sized copy, so that AddressSanitizer sees any read past the end.
  const std::size_t bytes = std::min(size, qv::kJpegExifHeadBytes);
  std::unique_ptr<std::uint8_t[]> head(new std::uint8_t[bytes]);
  std::copy(data, data + bytes, head.get());
  const int orientation = qv::JpegExifOrientation(head.get(), bytes);
  if (orientation < 1 || orientation > 8) std::abort();
  if (qv::StatedPhotoPixels(head.get(), bytes) < 0) std::abort();
  return 0;
}
