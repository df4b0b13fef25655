// Whole-file reads and replacing writes for the asset tool.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace qv::assets {

bool ReadWholeFile(const std::string& path, std::vector<std::uint8_t>& bytes, std::string& error);

// Writes through a temporary file beside the target and a rename, so that a failed run never
// leaves a half-written file where the game looks for one. Creates missing parent folders.
bool WriteFileReplacing(const std::string& path, const std::vector<std::uint8_t>& bytes,
                        std::string& error);
bool WriteFileReplacing(const std::string& path, const std::string& text, std::string& error);

}  // namespace qv::assets
