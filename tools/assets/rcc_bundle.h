// Reader of Qt resource bundles (.rcc): the files gcompris-qt-data ships its photographs in.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace qv::assets {

// The bundle is read whole and every offset, count and length is checked against the bytes
// really present before it is used, so a damaged bundle gives a clear refusal, never a crash.
class RccBundle {
 public:
  bool Load(const std::string& path, std::string& error);
  bool Parse(std::vector<std::uint8_t> bytes, std::string& error);

  // Every file of the bundle as a path of folder names joined by '/'.
  bool List(std::vector<std::string>& paths, std::string& error) const;

  // The file's bytes, inflated when the bundle stores them compressed.
  bool Read(const std::string& path, std::vector<std::uint8_t>& out, std::string& error) const;

 private:
  struct Node {
    std::string name;
    std::uint16_t flags = 0;
    std::uint32_t childCount = 0;
    std::uint32_t firstChild = 0;
    std::uint32_t dataOffset = 0;
  };
  bool ReadNode(std::uint32_t index, Node& node, std::string& error) const;
  bool ReadName(std::uint32_t offset, std::string& name, std::string& error) const;
  bool ListUnder(std::uint32_t index, const std::string& prefix, int depth,
                 std::vector<std::string>& paths, std::string& error) const;

  std::vector<std::uint8_t> bytes_;
  std::uint32_t version_ = 0;
  std::uint32_t treeOffset_ = 0;
  std::uint32_t dataOffset_ = 0;
  std::uint32_t namesOffset_ = 0;
};

}  // namespace qv::assets
