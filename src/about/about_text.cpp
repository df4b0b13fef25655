// The about text, with the credits file's line ends made CR LF and its control bytes dropped.
#include "about/about_text.h"

namespace qv {
namespace {

std::string WithWindowsLineEnds(const std::string& text) {
  std::string out;
  out.reserve(text.size() + text.size() / 16);
  const std::size_t length = text.size() < kMaxCreditsBytes ? text.size() : kMaxCreditsBytes;
  for (std::size_t i = 0; i < length; ++i) {
    const unsigned char c = static_cast<unsigned char>(text[i]);
    if (c == '\r') continue;
    if (c == '\n') {
      out += "\r\n";
    } else if (c == '\t' || c >= 0x20) {
      out += static_cast<char>(c);
    }
  }
  if (length < text.size()) out += "\r\n...";
  return out;
}

}  // namespace

std::string AboutText(const std::string* credits) {
  std::string text = "Quorvex Puzzle, version ";
  text += kGameVersion;
  text +=
      "\r\n\r\n"
      "A jigsaw-puzzle game: choose a picture, its size and its pieces, then put it together "
      "again on the table.\r\n\r\n"
      "Licence: MIT. Permission is hereby granted, free of charge, to any person obtaining a "
      "copy of this software, to deal in it without restriction, including the rights to use, "
      "copy, modify, merge, publish, distribute, sublicense and sell copies of it, provided "
      "that the copyright notice and this permission notice are included in all copies. The "
      "software is provided \"as is\", without warranty of any kind.\r\n\r\n";
  if (credits) {
    text += WithWindowsLineEnds(*credits);
  } else {
    text += "The credits of the pictures (CREDITS.txt) could not be read.";
  }
  return text;
}

}  // namespace qv
