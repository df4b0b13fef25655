// Builds resource files in memory for tests, laid out as the game reads them.
#pragma once

#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "graphics/dib_layout.h"

namespace qv::test {

struct RfPicture {
  std::uint32_t identifier = 0;
  int width = 1;
  int height = 1;
  int bitCount = 8;
  std::vector<RgbQuad> colours;      // written as the colour table (biClrUsed = its size)
  std::vector<std::uint8_t> pixels;  // bottom-up rows padded to 4 bytes
};

// A picture whose every byte depends on its identifier, so two loads can be told apart.
inline RfPicture PatternPicture(std::uint32_t identifier, int width, int height, int bitCount,
                                int colours) {
  RfPicture p;
  p.identifier = identifier;
  p.width = width;
  p.height = height;
  p.bitCount = bitCount;
  for (int i = 0; i < colours; ++i) {
    p.colours.push_back(RgbQuad{static_cast<std::uint8_t>(i), static_cast<std::uint8_t>(255 - i),
                                static_cast<std::uint8_t>(identifier + i), 0});
  }
  const auto bytes = DibRowBytes(width, bitCount) * height;
  for (std::int64_t i = 0; i < bytes; ++i) {
    p.pixels.push_back(static_cast<std::uint8_t>(i * 7 + identifier * 13));
  }
  return p;
}

inline void AppendBytes(std::vector<std::uint8_t>& out, const void* data, std::size_t size) {
  const auto* bytes = static_cast<const std::uint8_t*>(data);
  out.insert(out.end(), bytes, bytes + size);
}

inline BitmapInfoHeader HeaderOf(const RfPicture& p) {
  BitmapInfoHeader h{};
  h.biSize = 40;
  h.biWidth = p.width;
  h.biHeight = p.height;
  h.biPlanes = 1;
  h.biBitCount = static_cast<std::uint16_t>(p.bitCount);
  h.biSizeImage = static_cast<std::uint32_t>(p.pixels.size());
  h.biClrUsed = static_cast<std::uint32_t>(p.colours.size());
  return h;
}

// Blocks first (after a small lead-in so that no offset is 0), then the directory, then N.
inline std::vector<std::uint8_t> BuildResourceFile(const std::vector<RfPicture>& pictures) {
  std::vector<std::uint8_t> out = {'Q', 'R', 'F', '1'};
  std::vector<std::uint64_t> offsets;
  for (const auto& p : pictures) {
    offsets.push_back(out.size());
    const BitmapInfoHeader h = HeaderOf(p);
    AppendBytes(out, &h, sizeof h);
    AppendBytes(out, p.colours.data(), p.colours.size() * sizeof(RgbQuad));
    AppendBytes(out, p.pixels.data(), p.pixels.size());
  }
  for (std::size_t i = 0; i < pictures.size(); ++i) {
    const std::uint32_t entry[4] = {pictures[i].identifier, 0xDEADBEEF,
                                    static_cast<std::uint32_t>(offsets[i]),
                                    static_cast<std::uint32_t>(offsets[i] >> 32)};
    AppendBytes(out, entry, sizeof entry);
  }
  const auto count = static_cast<std::uint32_t>(pictures.size());
  AppendBytes(out, &count, sizeof count);
  return out;
}

// A path in the temporary folder that no other test process uses: CTest runs the cases of one
// program as separate processes side by side, and the sanitizer tree runs beside this one. The
// file is removed when the process ends, so repeated runs leave nothing behind.
inline std::string ProcessTempPath(const std::string& name) {
  struct Cleanup {
    std::vector<std::filesystem::path> paths;
    ~Cleanup() {
      std::error_code ignored;
      for (const auto& path : paths) std::filesystem::remove(path, ignored);
    }
  };
  static Cleanup cleanup;
  static const std::string tag = std::to_string(std::random_device{}());
  auto path = std::filesystem::temp_directory_path() / ("qv" + tag + "_" + name);
  cleanup.paths.push_back(path);
  return path.string();
}

inline void WriteBytes(const std::string& path, const std::vector<std::uint8_t>& bytes) {
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file.write(reinterpret_cast<const char*>(bytes.data()),
             static_cast<std::streamsize>(bytes.size()));
}

}  // namespace qv::test
