// Reader of Qt resource bundles (.rcc): the files gcompris-qt-data ships its photographs in.
#include "assets/rcc_bundle.h"

#include <zlib.h>

#include "assets/file_io.h"

namespace qv::assets {
namespace {

constexpr std::uint16_t kCompressed = 1;
constexpr std::uint16_t kDirectory = 2;
constexpr std::uint16_t kCompressedZstd = 4;
constexpr int kMaxDepth = 64;
// Far above any photograph; keeps a damaged length field from asking for gigabytes.
constexpr std::uint32_t kMaxFileBytes = 256u << 20;

std::uint16_t Be16(const std::uint8_t* p) { return static_cast<std::uint16_t>(p[0] << 8 | p[1]); }
std::uint32_t Be32(const std::uint8_t* p) {
  return std::uint32_t{p[0]} << 24 | std::uint32_t{p[1]} << 16 | std::uint32_t{p[2]} << 8 | p[3];
}

void AppendUtf8(std::string& out, std::uint32_t c) {
  if (c < 0x80) {
    out += static_cast<char>(c);
  } else if (c < 0x800) {
    out += static_cast<char>(0xC0 | c >> 6);
    out += static_cast<char>(0x80 | (c & 0x3F));
  } else if (c < 0x10000) {
    out += static_cast<char>(0xE0 | c >> 12);
    out += static_cast<char>(0x80 | (c >> 6 & 0x3F));
    out += static_cast<char>(0x80 | (c & 0x3F));
  } else {
    out += static_cast<char>(0xF0 | c >> 18);
    out += static_cast<char>(0x80 | (c >> 12 & 0x3F));
    out += static_cast<char>(0x80 | (c >> 6 & 0x3F));
    out += static_cast<char>(0x80 | (c & 0x3F));
  }
}

std::vector<std::string> SplitPath(const std::string& path) {
  std::vector<std::string> parts;
  std::string part;
  for (char c : path) {
    if (c == '/') {
      if (!part.empty()) parts.push_back(part);
      part.clear();
    } else {
      part += c;
    }
  }
  if (!part.empty()) parts.push_back(part);
  return parts;
}

}  // namespace

bool RccBundle::Load(const std::string& path, std::string& error) {
  std::vector<std::uint8_t> bytes;
  if (!ReadWholeFile(path, bytes, error)) return false;
  if (!Parse(std::move(bytes), error)) {
    error = path + ": " + error;
    return false;
  }
  return true;
}

bool RccBundle::Parse(std::vector<std::uint8_t> bytes, std::string& error) {
  if (bytes.size() < 20 || bytes[0] != 'q' || bytes[1] != 'r' || bytes[2] != 'e' || bytes[3] != 's') {
    error = "not a Qt resource bundle (no \"qres\" header)";
    return false;
  }
  const std::uint32_t version = Be32(&bytes[4]);
  if (version < 1 || version > 3) {
    error = "resource bundle version " + std::to_string(version) + " is not supported";
    return false;
  }
  const std::uint32_t tree = Be32(&bytes[8]), data = Be32(&bytes[12]), names = Be32(&bytes[16]);
  if (tree >= bytes.size() || data >= bytes.size() || names >= bytes.size()) {
    error = "the bundle's tables lie beyond its end";
    return false;
  }
  bytes_ = std::move(bytes);
  version_ = version;
  treeOffset_ = tree;
  dataOffset_ = data;
  namesOffset_ = names;
  Node root;
  if (!ReadNode(0, root, error)) return false;
  if (!(root.flags & kDirectory)) {
    error = "the bundle's first node is not a folder";
    return false;
  }
  return true;
}

bool RccBundle::ReadName(std::uint32_t offset, std::string& name, std::string& error) const {
  const std::uint64_t at = std::uint64_t{namesOffset_} + offset;
  if (at + 6 > bytes_.size()) {
    error = "a name lies beyond the end of the bundle";
    return false;
  }
  const std::uint16_t length = Be16(&bytes_[at]);
  if (at + 6 + 2ull * length > bytes_.size()) {
    error = "a name runs past the end of the bundle";
    return false;
  }
  name.clear();
  for (std::uint16_t i = 0; i < length; ++i) {
    std::uint32_t c = Be16(&bytes_[at + 6 + 2 * i]);
    if (c >= 0xD800 && c < 0xDC00 && i + 1 < length) {
      const std::uint32_t low = Be16(&bytes_[at + 6 + 2 * (i + 1)]);
      if (low >= 0xDC00 && low < 0xE000) {
        c = 0x10000 + ((c - 0xD800) << 10) + (low - 0xDC00);
        ++i;
      }
    }
    AppendUtf8(name, c);
  }
  return true;
}

bool RccBundle::ReadNode(std::uint32_t index, Node& node, std::string& error) const {
  const std::uint64_t size = version_ >= 2 ? 22 : 14;
  const std::uint64_t at = std::uint64_t{treeOffset_} + size * index;
  if (at + size > bytes_.size()) {
    error = "a node of the bundle's tree lies beyond its end";
    return false;
  }
  const std::uint8_t* p = &bytes_[at];
  node.flags = Be16(p + 4);
  if (node.flags & kDirectory) {
    node.childCount = Be32(p + 6);
    node.firstChild = Be32(p + 10);
    // Children always follow their folder; insisting on it keeps a damaged tree from looping.
    if (node.childCount > 0 && node.firstChild <= index) {
      error = "a folder of the bundle points back at an earlier node";
      return false;
    }
  } else {
    node.dataOffset = Be32(p + 10);
  }
  if (index == 0) {
    node.name.clear();
    return true;
  }
  return ReadName(Be32(p), node.name, error);
}

bool RccBundle::ListUnder(std::uint32_t index, const std::string& prefix, int depth,
                          std::vector<std::string>& paths, std::string& error) const {
  if (depth > kMaxDepth) {
    error = "the bundle's folders nest too deeply";
    return false;
  }
  Node folder;
  if (!ReadNode(index, folder, error)) return false;
  for (std::uint32_t i = 0; i < folder.childCount; ++i) {
    Node child;
    const std::uint64_t childIndex = std::uint64_t{folder.firstChild} + i;
    if (childIndex > 0xFFFFFFFFu || !ReadNode(static_cast<std::uint32_t>(childIndex), child, error)) {
      if (error.empty()) error = "a folder of the bundle counts more nodes than there are";
      return false;
    }
    const std::string path = prefix.empty() ? child.name : prefix + "/" + child.name;
    if (child.flags & kDirectory) {
      if (!ListUnder(static_cast<std::uint32_t>(childIndex), path, depth + 1, paths, error)) return false;
    } else {
      paths.push_back(path);
    }
  }
  return true;
}

bool RccBundle::List(std::vector<std::string>& paths, std::string& error) const {
  paths.clear();
  if (bytes_.empty()) {
    error = "no bundle is loaded";
    return false;
  }
  return ListUnder(0, "", 0, paths, error);
}

bool RccBundle::Read(const std::string& path, std::vector<std::uint8_t>& out, std::string& error) const {
  if (bytes_.empty()) {
    error = "no bundle is loaded";
    return false;
  }
  Node node;
  if (!ReadNode(0, node, error)) return false;
  for (const std::string& part : SplitPath(path)) {
    if (!(node.flags & kDirectory)) {
      error = path + ": not found in the bundle";
      return false;
    }
    bool found = false;
    for (std::uint32_t i = 0; i < node.childCount && !found; ++i) {
      Node child;
      const std::uint64_t childIndex = std::uint64_t{node.firstChild} + i;
      if (childIndex > 0xFFFFFFFFu || !ReadNode(static_cast<std::uint32_t>(childIndex), child, error)) {
        if (error.empty()) error = "a folder of the bundle counts more nodes than there are";
        return false;
      }
      if (child.name == part) {
        node = child;
        found = true;
      }
    }
    if (!found) {
      error = path + ": not found in the bundle";
      return false;
    }
  }
  if (node.flags & kDirectory) {
    error = path + ": is a folder, not a file";
    return false;
  }
  if (node.flags & kCompressedZstd) {
    error = path + ": stored with zstd compression, which this tool does not read";
    return false;
  }
  const std::uint64_t at = std::uint64_t{dataOffset_} + node.dataOffset;
  if (at + 4 > bytes_.size()) {
    error = path + ": its data lies beyond the end of the bundle";
    return false;
  }
  const std::uint32_t length = Be32(&bytes_[at]);
  if (at + 4 + length > bytes_.size()) {
    error = path + ": its data runs past the end of the bundle";
    return false;
  }
  const std::uint8_t* data = &bytes_[at + 4];
  if (!(node.flags & kCompressed)) {
    out.assign(data, data + length);
    return true;
  }
  // zlib data carries the inflated length first, as qCompress writes it.
  if (length < 4) {
    error = path + ": compressed data too short";
    return false;
  }
  const std::uint32_t inflated = Be32(data);
  if (inflated > kMaxFileBytes) {
    error = path + ": claims to inflate to " + std::to_string(inflated) + " bytes";
    return false;
  }
  std::vector<std::uint8_t> result(inflated);
  uLongf produced = inflated;
  const int status = uncompress(result.empty() ? nullptr : result.data(), &produced, data + 4, length - 4);
  if (status != Z_OK || produced != inflated) {
    error = path + ": compressed data is damaged";
    return false;
  }
  out = std::move(result);
  return true;
}

}  // namespace qv::assets
