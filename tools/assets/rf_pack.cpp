// The packer of Quorvex.rf: picture blocks, then the directory of 16-byte entries, then the count.
#include "assets/rf_pack.h"

#include <algorithm>
#include <set>

#include "graphics/dib_layout.h"
#include "graphics/resource_file.h"

namespace qv::assets {
namespace {

void Append(std::vector<std::uint8_t>& out, const void* data, std::size_t size) {
  const auto* bytes = static_cast<const std::uint8_t*>(data);
  out.insert(out.end(), bytes, bytes + size);
}

bool CheckPicture(const RfPicture& p, std::string& error) {
  const std::string name = "picture " + std::to_string(p.identifier);
  if (p.image.width < 1 || p.image.height < 1 ||
      p.image.pixels.size() != static_cast<std::size_t>(p.image.width) * p.image.height) {
    error = name + " is empty or its pixels do not match its size";
    return false;
  }
  if (p.image.palette.empty() || p.image.palette.size() > 256) {
    error = name + " needs 1 to 256 colours";
    return false;
  }
  const std::uint8_t highest = *std::max_element(p.image.pixels.begin(), p.image.pixels.end());
  if (highest >= p.image.palette.size()) {
    error = name + " uses a colour beyond its palette";
    return false;
  }
  return true;
}

}  // namespace

bool PackResourceFile(const std::vector<RfPicture>& pictures, std::vector<std::uint8_t>& out,
                      std::string& error) {
  std::set<std::uint32_t> seen;
  for (const RfPicture& p : pictures) {
    if (!CheckPicture(p, error)) return false;
    if (!seen.insert(p.identifier).second) {
      error = "picture " + std::to_string(p.identifier) + " is given twice";
      return false;
    }
  }

  std::vector<std::uint8_t> file = {'Q', 'V', 'R', 'F'};
  std::vector<RfDirectoryEntry> directory;
  for (const RfPicture& p : pictures) {
    const std::vector<std::uint8_t> rows = BottomUpRows(p.image);
    BitmapInfoHeader header{};
    header.biSize = 40;
    header.biWidth = p.image.width;
    header.biHeight = p.image.height;
    header.biPlanes = 1;
    header.biBitCount = 8;
    header.biCompression = kBiRgb;
    header.biSizeImage = static_cast<std::uint32_t>(rows.size());
    header.biClrUsed = static_cast<std::uint32_t>(p.image.palette.size());

    const std::uint64_t offset = file.size();
    directory.push_back(RfDirectoryEntry{p.identifier, 0, static_cast<std::uint32_t>(offset),
                                         static_cast<std::uint32_t>(offset >> 32)});
    Append(file, &header, sizeof header);
    for (const Rgb& c : p.image.palette) {
      const RgbQuad quad{c.b, c.g, c.r, 0};
      Append(file, &quad, sizeof quad);
    }
    Append(file, rows.data(), rows.size());
  }
  Append(file, directory.data(), directory.size() * sizeof(RfDirectoryEntry));
  const auto count = static_cast<std::uint32_t>(directory.size());
  Append(file, &count, sizeof count);
  out = std::move(file);
  return true;
}

}  // namespace qv::assets
