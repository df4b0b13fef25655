// Fuzz target: any bytes as a saved game whose preview is read for the file screen.
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <string>

#include "graphics/dib_layout.h"
#include "graphics/packed_dib.h"
#include "setup/savegame.h"
#include "system/assert.h"

namespace {

void Quiet(const char*, const char*, int) {}

// A file of this process's own, removed when the process ends.
struct ScratchFile {
  std::string path;
  ScratchFile() {
    // Memory-backed when there is one: the target rewrites the file at every run.
    path = (std::filesystem::is_directory("/dev/shm") ? "/dev/shm" : "/tmp") +
           std::string("/qv_fuzz_preview_") + std::to_string(getpid()) + ".epf";
  }
  ~ScratchFile() { std::remove(path.c_str()); }
};

const std::string& ScratchPath() {
  static const ScratchFile file;
  return file.path;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  qv::SetAssertHandler(&Quiet);
  if (std::FILE* f = std::fopen(ScratchPath().c_str(), "wb")) {
    if (size) std::fwrite(data, 1, size, f);
    std::fclose(f);
  }
  qv::PackedDib preview;
  if (!qv::ReadPreview(ScratchPath().c_str(), preview)) return 0;
  // The block must hold every pixel its header promises: touch the last byte.
  const qv::BitmapInfoHeader* h = qv::DibHeader(preview.get());
  if (preview.blockBytes() < qv::kDibPixelOffset + h->biSizeImage) __builtin_trap();
  volatile std::uint8_t last = preview.get()[preview.blockBytes() - 1];
  (void)last;
  return 0;
}
