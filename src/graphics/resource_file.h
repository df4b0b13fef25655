// The packed resource file of interface pictures: directory at the end, pictures by identifier.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "graphics/packed_dib.h"
#include "system/binary_file.h"

namespace qv {

struct RfDirectoryEntry {
  std::uint32_t identifier;
  std::uint32_t reserved;
  std::uint32_t offsetLow;
  std::uint32_t offsetHigh;
};
static_assert(sizeof(RfDirectoryEntry) == 16, "a directory entry is 16 bytes");

// A picture of a resource file held in memory, where it lies in those bytes.
struct PictureView {
  BitmapInfoHeader header{};
  const std::uint8_t* pixels = nullptr;  // header.biSizeImage bytes, rows from the bottom
};

class ResourceFile {
 public:
  // Reads the directory; the file stays open for later loads. A file whose directory does
  // not fit inside it is refused.
  bool Open(const char* path);
  // The same for a resource file in memory; the bytes are borrowed and must outlive the object.
  bool OpenBytes(std::span<const std::uint8_t> bytes);
  bool IsOpen() const { return file_.IsOpen(); }
  // Opened on bytes: its pictures can be viewed in place instead of loaded.
  bool InMemory() const { return file_.InMemory(); }
  std::size_t EntryCount() const { return directory_.size(); }

  // The first entry with this identifier, or null.
  const RfDirectoryEntry* FindEntry(std::uint32_t identifier) const;

  // Loads the picture into a packed DIB laid out with room for 256 colours, replacing what
  // `into` held. On any failure `into` keeps its previous picture.
  bool LoadPicture(std::uint32_t identifier, PackedDib& into);
  // Only the picture's header, checked as LoadPicture checks it, with every byte the picture
  // needs inside the file: what a caller needs to know the size before loading it.
  bool ReadPictureHeader(std::uint32_t identifier, BitmapInfoHeader& header);
  // For a file in memory: the picture with the checks LoadPicture makes, without a copy; valid
  // while the bytes are. False for a file on disk (load the picture instead) or a bad picture.
  bool ViewPicture(std::uint32_t identifier, PictureView& view);

 private:
  bool ReadDirectory(BinaryFile&& file);

  BinaryFile file_;
  std::vector<RfDirectoryEntry> directory_;
  std::uint64_t directoryStart_ = 0;  // picture blocks must end before this
};

// The process-wide resource file that the game opens once at start-up.
ResourceFile& TheResourceFile();
bool OpenResourceFile(const char* path);

}  // namespace qv
