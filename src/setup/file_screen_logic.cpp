// The file screen's decisions, without a window.
#include "setup/file_screen_logic.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstring>

namespace qv::filescreen {
namespace {

constexpr std::size_t kMaxPath = 260;  // the system's path limit, its terminating zero included
constexpr std::size_t kTemporarySuffix = 4;  // ".tmp"

// Characters no Windows file name may hold besides the control characters.
constexpr char kForbidden[] = "\\/:*?\"<>|";

bool ReservedDeviceName(const std::string& name) {
  // The device names are reserved whatever follows the first dot, and trailing blanks before
  // the dot do not make them ordinary names.
  std::string stem = name.substr(0, name.find('.'));
  while (!stem.empty() && stem.back() == ' ') stem.pop_back();
  std::transform(stem.begin(), stem.end(), stem.begin(),
                 [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
  static constexpr std::array<const char*, 4> kPlain = {"CON", "PRN", "AUX", "NUL"};
  for (const char* device : kPlain) {
    if (stem == device) return true;
  }
  if (stem.size() == 4 && (stem.compare(0, 3, "COM") == 0 || stem.compare(0, 3, "LPT") == 0)) {
    return stem[3] >= '0' && stem[3] <= '9';
  }
  return stem == "CONIN$" || stem == "CONOUT$";
}

}  // namespace

ListView ViewOf(int fileCount, int wantedFirstVisible) {
  ListView view;
  view.scrollBar = fileCount > kTileCount;
  view.maximum = view.scrollBar ? fileCount - kTileCount : 0;
  view.firstVisible = std::clamp(wantedFirstVisible, 0, view.maximum);
  return view;
}

int FileOfTile(const ListView& view, int tile, int fileCount) {
  if (tile < 0 || tile >= kTileCount) return -1;
  const int file = view.firstVisible + tile;
  return file >= 0 && file < fileCount ? file : -1;
}

std::string CaptionOf(const std::string& fileName) {
  const std::size_t dot = fileName.rfind('.');
  return dot == std::string::npos ? fileName : fileName.substr(0, dot);
}

NameVerdict CheckSaveName(const std::string& name, const std::string& programFolder) {
  if (static_cast<int>(name.size()) < kShortestName) return NameVerdict::TooShort;
  for (const char c : name) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 32 || byte == 127 || std::strchr(kForbidden, c) != nullptr) {
      return NameVerdict::Refused;
    }
  }
  // Windows strips a trailing dot or blank: the file would not be the one the player named.
  if (name.back() == '.' || name.back() == ' ') return NameVerdict::Refused;
  if (ReservedDeviceName(name)) return NameVerdict::Refused;
  // The save is written beside the file under a longer name first.
  if (SavedGamePath(programFolder, name, true).size() + kTemporarySuffix >= kMaxPath) {
    return NameVerdict::Refused;
  }
  return NameVerdict::Accepted;
}

std::string SavedGamePath(const std::string& programFolder, const std::string& name,
                          bool addExtension) {
  return programFolder + kSaveFolder + "\\" + name + (addExtension ? kSaveExtension : "");
}

}  // namespace qv::filescreen
