// What the asset tool puts into Quorvex.rf: the die masks, the table textures and the interface.
#include "assets/catalogue.h"

#include <algorithm>
#include <filesystem>
#include <set>

#include "assets/bmp_file.h"
#include "assets/die_mask.h"
#include "assets/file_io.h"
#include "assets/textures.h"
#include "assets/ui_catalogue.h"

namespace qv::assets {

const std::vector<DieChoice>& DieChoices() {
  static const std::vector<DieChoice> choices = {
      // Directions chosen by eye so that the die's four pieces differ: the classic alternation
      // of two tabs and two sockets for the knob, mixed pieces for the other two.
      {5000, TabStyle::kKnob, 0x5eed5000, 0b1001'0110},
      {5001, TabStyle::kDovetail, 0x5eed5001, 0b0011'1010},
      {5002, TabStyle::kDoubleLobe, 0x5eed5002, 0b1100'1110},
  };
  return choices;
}

std::vector<RfPicture> DrawnPictures() {
  std::vector<RfPicture> pictures;
  for (const DieChoice& die : DieChoices()) {
    pictures.push_back({die.identifier, MakeDieMask(die.style, kDieRows, kDieCols, die.seed, die.directions)});
  }
  for (int i = 0; i < kTextureCount; ++i) {
    pictures.push_back({kFirstTextureId + static_cast<std::uint32_t>(i), MakeTexture(i)});
  }
  for (const UiPicture& ui : UiCatalogue()) pictures.push_back({ui.identifier, MakeUiPicture(ui)});
  std::sort(pictures.begin(), pictures.end(),
            [](const RfPicture& a, const RfPicture& b) { return a.identifier < b.identifier; });
  return pictures;
}

bool AddStagedPictures(const std::string& folder, std::vector<RfPicture>& pictures,
                       std::string& error) {
  std::error_code ec;
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::directory_iterator(folder, ec)) {
    if (entry.path().extension() == ".bmp") files.push_back(entry.path());
  }
  if (ec) {
    error = "cannot list " + folder + ": " + ec.message();
    return false;
  }
  // Directory order differs between machines; sorting keeps the output the same everywhere.
  std::sort(files.begin(), files.end());
  std::set<std::uint32_t> taken;
  for (const RfPicture& p : pictures) taken.insert(p.identifier);
  for (const auto& path : files) {
    const std::string stem = path.stem().string();
    if (stem.empty() || stem.size() > 9 ||
        !std::all_of(stem.begin(), stem.end(), [](char c) { return c >= '0' && c <= '9'; })) {
      error = path.string() + ": a staged picture is named by its identifier, as in 212.bmp";
      return false;
    }
    const auto identifier = static_cast<std::uint32_t>(std::stoul(stem));
    if (!taken.insert(identifier).second) {
      error = path.string() + ": identifier " + stem + " is already in the resource file";
      return false;
    }
    std::vector<std::uint8_t> bytes;
    RfPicture picture{identifier, {}};
    std::string reason;
    if (!ReadWholeFile(path.string(), bytes, error)) return false;
    if (!DecodeBmp8(bytes, picture.image, reason)) {
      error = path.string() + ": " + reason;
      return false;
    }
    pictures.push_back(std::move(picture));
  }
  std::sort(pictures.begin(), pictures.end(),
            [](const RfPicture& a, const RfPicture& b) { return a.identifier < b.identifier; });
  return true;
}

}  // namespace qv::assets
