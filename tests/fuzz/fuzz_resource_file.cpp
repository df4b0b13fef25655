// Fuzz target: any bytes as a resource file; opening and loading must never misbehave.
#include <cstddef>
#include <cstdint>

#include "graphics/himage_ops.h"
#include "graphics/resource_file.h"
#include "system/assert.h"

namespace {

void Quiet(const char*, const char*, int) {}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  qv::SetAssertHandler(&Quiet);
  qv::ResourceFile file;
  if (!file.OpenBytes({data, size})) return 0;
  // Try the identifiers the directory names, plus a few that are likely absent.
  std::uint32_t identifiers[8] = {0, 1, 5000, 0xFFFFFFFF, 0, 0, 0, 0};
  for (std::size_t i = 0; i < 4 && size >= 4 + 16 * (i + 1); ++i) {
    std::uint32_t id;
    __builtin_memcpy(&id, data + size - 4 - 16 * (i + 1), 4);
    identifiers[4 + i] = id;
  }
  qv::PackedDib picture;
  for (std::uint32_t id : identifiers) {
    if (!file.LoadPicture(id, picture)) continue;
    // A loaded picture must be safe for the pixel operations: touch its corners.
    const int w = qv::ImageWidth(picture.get()), h = qv::ImageHeight(picture.get());
    volatile std::uint8_t sink = *qv::ImagePixel(picture.get(), 0, 0);
    sink = *qv::ImagePixel(picture.get(), w - 1, h - 1);
    (void)sink;
    qv::ImageRasterCopy(picture.get(), 1, 1, w, h, picture.get(), 0, 0, qv::kRopSrcInvert);
  }
  return 0;
}
