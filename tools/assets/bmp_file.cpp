// 8-bit .bmp files: the pictures of Image\ and the staged interface pictures the packer reads.
#include "assets/bmp_file.h"

#include <cstring>
#include <limits>

#include "graphics/dib_layout.h"

namespace qv::assets {
namespace {

constexpr std::size_t kFileHeaderBytes = 14;

void Put32(std::vector<std::uint8_t>& out, std::uint32_t v) {
  for (int i = 0; i < 4; ++i) out.push_back(static_cast<std::uint8_t>(v >> (8 * i)));
}
std::uint32_t Get32(const std::uint8_t* p) {
  return p[0] | (p[1] << 8) | (p[2] << 16) | (static_cast<std::uint32_t>(p[3]) << 24);
}

}  // namespace

std::vector<std::uint8_t> EncodeBmp8(const Image8& image) {
  const std::vector<std::uint8_t> rows = BottomUpRows(image);
  const std::uint32_t pixelOffset = kFileHeaderBytes + kDibHeaderBytes + 4 * kDibColourSlots;
  std::vector<std::uint8_t> out;
  out.reserve(pixelOffset + rows.size());
  out.push_back('B');
  out.push_back('M');
  Put32(out, static_cast<std::uint32_t>(pixelOffset + rows.size()));
  Put32(out, 0);
  Put32(out, pixelOffset);

  BitmapInfoHeader header{};
  header.biSize = 40;
  header.biWidth = image.width;
  header.biHeight = image.height;
  header.biPlanes = 1;
  header.biBitCount = 8;
  header.biCompression = kBiRgb;
  header.biSizeImage = static_cast<std::uint32_t>(rows.size());
  header.biXPelsPerMeter = 2835;  // 72 dots per inch
  header.biYPelsPerMeter = 2835;
  header.biClrUsed = 256;
  header.biClrImportant = 0;
  const auto* raw = reinterpret_cast<const std::uint8_t*>(&header);
  out.insert(out.end(), raw, raw + sizeof header);

  for (std::size_t i = 0; i < kDibColourSlots; ++i) {
    const Rgb c = i < image.palette.size() ? image.palette[i] : Rgb{};
    out.push_back(c.b);
    out.push_back(c.g);
    out.push_back(c.r);
    out.push_back(0);
  }
  out.insert(out.end(), rows.begin(), rows.end());
  return out;
}

bool DecodeBmp8(const std::vector<std::uint8_t>& bytes, Image8& image, std::string& error) {
  if (bytes.size() < kFileHeaderBytes + kDibHeaderBytes || bytes[0] != 'B' || bytes[1] != 'M') {
    error = "not a .bmp file";
    return false;
  }
  BitmapInfoHeader h;
  std::memcpy(&h, bytes.data() + kFileHeaderBytes, sizeof h);
  if (h.biSize < 40 || h.biBitCount != 8 || h.biCompression != kBiRgb || h.biPlanes != 1) {
    error = "only uncompressed 8-bit .bmp files can be packed";
    return false;
  }
  if (h.biWidth < 1 || h.biWidth > 32768 || h.biHeight == 0 || h.biHeight > 32768 ||
      h.biHeight < -32768) {
    error = "picture size out of range";
    return false;
  }
  const std::uint32_t colours = h.biClrUsed == 0 ? 256 : h.biClrUsed;
  if (colours > 256) {
    error = "more than 256 colours";
    return false;
  }
  const std::uint64_t tableStart = kFileHeaderBytes + std::uint64_t{h.biSize};
  const std::uint64_t pixelOffset = Get32(bytes.data() + 10);
  const int height = h.biHeight < 0 ? -h.biHeight : h.biHeight;
  const auto stride = static_cast<std::uint64_t>(DibRowBytes(h.biWidth, 8));
  if (tableStart + 4ull * colours > bytes.size() || pixelOffset < tableStart + 4ull * colours ||
      pixelOffset + stride * height > bytes.size()) {
    error = "the file is shorter than its header says";
    return false;
  }
  Image8 result(h.biWidth, height);
  for (std::uint32_t i = 0; i < colours; ++i) {
    const std::uint8_t* q = bytes.data() + tableStart + 4 * i;
    result.palette.push_back(Rgb{q[2], q[1], q[0]});
  }
  for (int y = 0; y < height; ++y) {
    const int storedRow = h.biHeight > 0 ? height - 1 - y : y;
    const std::uint8_t* row = bytes.data() + pixelOffset + stride * storedRow;
    std::memcpy(&result.at(0, y), row, static_cast<std::size_t>(h.biWidth));
  }
  for (std::uint8_t index : result.pixels) {
    if (index >= colours) {
      error = "a pixel names a colour beyond the colour table";
      return false;
    }
  }
  image = std::move(result);
  return true;
}

}  // namespace qv::assets
