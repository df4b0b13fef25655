// The text of the about program: name, version, licence and the pictures' credits.
#pragma once

#include <cstddef>
#include <string>

namespace qv {

constexpr char kGameVersion[] = "0.1.0";
// More than this of a credits file is not shown: the file is ours, but it is read from disk.
constexpr std::size_t kMaxCreditsBytes = 64 * 1024;

// The whole text for a multi-line edit control (CR LF line ends). `credits` is the credits
// file as read, or null when it could not be read.
std::string AboutText(const std::string* credits);

}  // namespace qv
