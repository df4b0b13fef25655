// Files for the photo tests: reading and writing whole files, ImageMagick's reference decodings
// (written by make-test-photos.sh) and a PNG whose header claims any size.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace qv {

inline std::vector<std::uint8_t> ReadBytes(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return std::vector<std::uint8_t>(std::istreambuf_iterator<char>(in), {});
}

inline void WriteBytes(const std::string& path, const std::vector<std::uint8_t>& bytes) {
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

// ImageMagick's decoding as it writes it: "P6\n<w> <h>\n65535\n" then big-endian RGB rows, top
// down. Each channel is rounded to 8 bits here, as the decoder rounds.
struct Reference {
  int width = 0;
  int height = 0;
  std::vector<std::uint8_t> rgb;
};

inline Reference ReadPpm(const std::string& path) {
  Reference ref;
  const std::vector<std::uint8_t> bytes = ReadBytes(path);
  int maxValue = 0;
  int consumed = 0;
  const std::string head(bytes.begin(), bytes.begin() + std::min<std::size_t>(bytes.size(), 32));
  if (std::sscanf(head.c_str(), "P6 %d %d %d%n", &ref.width, &ref.height, &maxValue, &consumed) !=
          3 ||
      maxValue != 65535) {
    return {};
  }
  const std::size_t start = static_cast<std::size_t>(consumed) + 1;
  const std::size_t values = static_cast<std::size_t>(ref.width) * ref.height * 3;
  if (bytes.size() < start + 2 * values) return {};
  for (std::size_t i = 0; i < values; ++i) {
    const unsigned v = bytes[start + 2 * i] << 8 | bytes[start + 2 * i + 1];
    ref.rgb.push_back(static_cast<std::uint8_t>((v * 255 + 32767) / 65535));
  }
  return ref;
}

// The PNG written by the script with its header saying width x height (and a true checksum).
inline std::vector<std::uint8_t> PngClaiming(std::uint32_t width, std::uint32_t height) {
  std::vector<std::uint8_t> png = ReadBytes("photos/rgb8.png");
  if (png.size() < 33) return png;
  for (int i = 0; i < 4; ++i) {
    png[16 + i] = static_cast<std::uint8_t>(width >> (24 - 8 * i));
    png[20 + i] = static_cast<std::uint8_t>(height >> (24 - 8 * i));
  }
  std::uint32_t crc = 0xFFFFFFFFu;
  for (int at = 12; at < 29; ++at) {  // chunk type and data
    crc ^= png[at];
    for (int bit = 0; bit < 8; ++bit) crc = (crc >> 1) ^ (0xEDB88320u & (0u - (crc & 1u)));
  }
  crc = ~crc;
  for (int i = 0; i < 4; ++i) png[29 + i] = static_cast<std::uint8_t>(crc >> (24 - 8 * i));
  return png;
}

}  // namespace qv
