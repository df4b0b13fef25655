// The file name under Image\ that a photograph's picture gets.
#include "photo/picture_name.h"

#include <algorithm>
#include <cctype>

namespace qv::photo {
namespace {

std::string Lower(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return lower;
}

bool Refused(unsigned char c) {
  return c < 32 || c == 127 || std::string_view("<>:\"/\\|?*").find(static_cast<char>(c)) != std::string_view::npos;
}

// Windows treats these as devices in every folder, with or without an extension.
bool ReservedDevice(const std::string& stem) {
  const std::string base = Lower(stem.substr(0, stem.find('.')));
  if (base == "con" || base == "prn" || base == "aux" || base == "nul") return true;
  return base.size() == 4 && (base.compare(0, 3, "com") == 0 || base.compare(0, 3, "lpt") == 0) &&
         base[3] >= '0' && base[3] <= '9';
}

void TrimEnd(std::string& stem) {
  while (!stem.empty() && (stem.back() == '.' || stem.back() == ' ')) stem.pop_back();
}

// Cuts to at most `limit` bytes without splitting a UTF-8 sequence.
void CutTo(std::string& stem, std::size_t limit) {
  if (stem.size() <= limit) return;
  std::size_t end = limit;
  while (end > 0 && (static_cast<unsigned char>(stem[end]) & 0xC0) == 0x80) --end;
  stem.resize(end);
  TrimEnd(stem);
}

}  // namespace

std::string PictureFileName(std::string_view photo, const std::vector<std::string>& existing) {
  const std::size_t slash = photo.find_last_of("/\\");
  std::string_view file = slash == std::string_view::npos ? photo : photo.substr(slash + 1);
  const std::size_t dot = file.rfind('.');
  if (dot != std::string_view::npos && dot > 0) file = file.substr(0, dot);
  std::string stem;
  for (char c : file) stem += Refused(static_cast<unsigned char>(c)) ? '_' : c;
  stem.erase(0, stem.find_first_not_of(' ') == std::string::npos ? stem.size() : stem.find_first_not_of(' '));
  TrimEnd(stem);
  const bool digitsOnly = !stem.empty() && std::all_of(stem.begin(), stem.end(), [](char c) {
    return std::isdigit(static_cast<unsigned char>(c)) != 0;
  });
  if (stem.empty()) stem = "Picture";
  if (digitsOnly || ReservedDevice(stem)) stem = "Picture " + stem;
  CutTo(stem, kPictureStemLimit);

  std::vector<std::string> taken;
  taken.reserve(existing.size());
  for (const std::string& name : existing) taken.push_back(Lower(name));
  std::string name = stem + ".bmp";
  // There are fewer existing names than numbers to try, so this ends.
  for (std::size_t number = 2; std::find(taken.begin(), taken.end(), Lower(name)) != taken.end(); ++number) {
    name = stem + " (" + std::to_string(number) + ").bmp";
  }
  return name;
}

}  // namespace qv::photo
