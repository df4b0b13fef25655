// The file name under Image\ that a photograph's picture gets.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace qv::photo {

// Names longer than this (before the extension and any number) are cut.
constexpr std::size_t kPictureStemLimit = 64;

// The photograph's file name (a bare name or a whole path) made into a picture file name that
// any Windows file system takes: its extension becomes ".bmp"; characters that file systems
// refuse become '_'; trailing dots and spaces go; reserved device names (CON, NUL, COM1...) and
// names of digits alone get a word in front, the latter because the game takes "k.bmp" for the
// built-in picture k; the name is cut to kPictureStemLimit bytes; and when it equals one of
// `existing` (compared without regard to case) a number is added: "Cat (2).bmp", "Cat (3).bmp".
std::string PictureFileName(std::string_view photo, const std::vector<std::string>& existing);

}  // namespace qv::photo
