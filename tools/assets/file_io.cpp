// Whole-file reads and replacing writes for the asset tool.
#include "assets/file_io.h"

#include <filesystem>
#include <system_error>

#include "system/binary_file.h"

namespace qv::assets {

bool ReadWholeFile(const std::string& path, std::vector<std::uint8_t>& bytes, std::string& error) {
  BinaryFile file;
  if (!file.OpenRead(path.c_str())) {
    error = "cannot open " + path;
    return false;
  }
  bytes.resize(static_cast<std::size_t>(file.Size()));
  if (!bytes.empty() && !file.ReadExact(bytes.data(), bytes.size())) {
    error = "cannot read " + path;
    return false;
  }
  return true;
}

bool WriteFileReplacing(const std::string& path, const std::vector<std::uint8_t>& bytes,
                        std::string& error) {
  const std::filesystem::path target(path);
  std::error_code ec;
  if (target.has_parent_path()) std::filesystem::create_directories(target.parent_path(), ec);
  if (ec) {
    error = "cannot create the folder of " + path + ": " + ec.message();
    return false;
  }
  const std::string temporary = path + ".tmp";
  BinaryFile file;
  bool ok = file.CreateWrite(temporary.c_str());
  ok = ok && (bytes.empty() || file.Write(bytes.data(), bytes.size())) && file.Flush();
  file.Close();
  if (!ok || !ReplaceFileAtomically(temporary.c_str(), path.c_str())) {
    std::filesystem::remove(temporary, ec);
    error = "cannot write " + path;
    return false;
  }
  return true;
}

bool WriteFileReplacing(const std::string& path, const std::string& text, std::string& error) {
  return WriteFileReplacing(path, std::vector<std::uint8_t>(text.begin(), text.end()), error);
}

}  // namespace qv::assets
