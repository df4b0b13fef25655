// Fuzz target: any bytes as a saved game whose preview is read for the file screen.
#include <cstddef>
#include <cstdint>

#include "graphics/dib_layout.h"
#include "graphics/packed_dib.h"
#include "setup/savegame.h"
#include "system/assert.h"

namespace {

void Quiet(const char*, const char*, int) {}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  qv::SetAssertHandler(&Quiet);
  qv::PackedDib preview;
  if (!qv::ReadPreviewFromBytes({data, size}, preview)) return 0;
  // The block must hold every pixel its header promises: touch the last byte.
  const qv::BitmapInfoHeader* h = qv::DibHeader(preview.get());
  if (preview.blockBytes() < qv::kDibPixelOffset + h->biSizeImage) __builtin_trap();
  volatile std::uint8_t last = preview.get()[preview.blockBytes() - 1];
  (void)last;
  return 0;
}
