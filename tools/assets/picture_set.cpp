// The fifteen built-in pictures: which photograph each one is and how it becomes Image\k.bmp.
#include "assets/picture_set.h"

#include <filesystem>
#include <sstream>

#include "assets/photo.h"
#include "assets/quantize.h"
#include "assets/rcc_bundle.h"

namespace qv::assets {
namespace {

constexpr const char* kWorld = "explore_world_animals.rcc";
constexpr const char* kFarm = "explore_farm_animals.rcc";
constexpr const char* kErase = "erase.rcc";
#define QV_WORLD "gcompris/src/activities/explore_world_animals/resource/animals/"
#define QV_FARM "gcompris/src/activities/explore_farm_animals/resource/animals/"
#define QV_ERASE "gcompris/src/activities/erase/resource/"

std::string Trim(const std::string& s) {
  const auto first = s.find_first_not_of(" \t\r");
  if (first == std::string::npos) return "";
  const auto last = s.find_last_not_of(" \t\r");
  return s.substr(first, last - first + 1);
}

std::string FolderOf(const std::string& path) {
  const auto slash = path.rfind('/');
  return slash == std::string::npos ? "" : path.substr(0, slash + 1);
}

std::string FileOf(const std::string& path) {
  const auto slash = path.rfind('/');
  return slash == std::string::npos ? path : path.substr(slash + 1);
}

}  // namespace

const std::vector<PictureChoice>& PictureChoices() {
  static const std::vector<PictureChoice> choices = {
      {1, "Scarlet macaw", kWorld, QV_WORLD "scarlet_macaw.webp"},
      {2, "Kingfisher", kErase, QV_ERASE "kingfisher.webp"},
      {3, "Red panda", kErase, QV_ERASE "red_panda.webp"},
      {4, "Jaguar", kWorld, QV_WORLD "jaguar.webp"},
      {5, "Ring-tailed lemur", kWorld, QV_WORLD "lemur.webp"},
      {6, "Giraffe", kWorld, QV_WORLD "giraffe.webp"},
      {7, "American bison", kWorld, QV_WORLD "bison.webp"},
      {8, "Giant panda", kWorld, QV_WORLD "panda.webp"},
      {9, "Polar bear", kWorld, QV_WORLD "polar_bear.webp"},
      {10, "Hedgehog", kWorld, QV_WORLD "hedgehog.webp"},
      {11, "Horses", kFarm, QV_FARM "horse.webp"},
      {12, "Kitten", kFarm, QV_FARM "cat.webp"},
      {13, "Chameleon", kWorld, QV_WORLD "chameleon.webp"},
      {14, "Sally Lightfoot crab", kErase, QV_ERASE "crab.webp"},
      {15, "German shepherd", kFarm, QV_FARM "dog.webp"},
  };
  return choices;
}

bool FindCredit(const std::string& readme, const std::string& file, PictureCredit& credit) {
  std::istringstream in(readme + "\n\n");
  std::string line;
  PictureCredit block;
  bool listsFile = false, inFiles = false;
  while (std::getline(in, line)) {
    line = Trim(line);
    if (line.empty()) {
      if (listsFile) {
        credit = block;
        return true;
      }
      block = PictureCredit();
      inFiles = false;
      continue;
    }
    const auto colon = line.find(':');
    const std::string key = colon == std::string::npos ? "" : line.substr(0, colon);
    const bool isField = key == "Copyright" || key == "License" || key == "Source" ||
                         key == "Comments" || key == "Files";
    if (!isField) {
      if (inFiles) {
        std::istringstream names(line);
        std::string name;
        while (names >> name) listsFile = listsFile || name == file;
      }
      continue;
    }
    const std::string value = Trim(line.substr(colon + 1));
    inFiles = key == "Files";
    if (key == "Copyright") block.author = value;
    if (key == "License") block.licence = value;
    if (key == "Source") block.source = value;
    if (key == "Comments") block.changes = value;
    if (inFiles) {
      std::istringstream names(value);
      std::string name;
      while (names >> name) listsFile = listsFile || name == file;
    }
  }
  return false;
}

bool MakePicture(const std::string& rccFolder, const PictureChoice& choice, Image8& picture,
                 PictureCredit& credit, std::string& error) {
  const std::string bundlePath = rccFolder + "/" + choice.bundle;
  std::error_code ec;
  if (!std::filesystem::exists(bundlePath, ec)) {
    error = std::string("the built-in pictures come from Debian's ") + kPicturePackage +
            " package, but " + bundlePath + " is missing; install it with: apt-get install " +
            kPicturePackage;
    return false;
  }
  RccBundle bundle;
  std::vector<std::uint8_t> webp, readme;
  if (!bundle.Load(bundlePath, error) || !bundle.Read(choice.path, webp, error) ||
      !bundle.Read(FolderOf(choice.path) + "README", readme, error)) {
    error = bundlePath + ": " + error;
    return false;
  }
  if (!FindCredit(std::string(readme.begin(), readme.end()), FileOf(choice.path), credit)) {
    error = bundlePath + ": the README does not credit " + FileOf(choice.path);
    return false;
  }
  RgbImage photo;
  if (!DecodeWebp(webp, photo, error)) {
    error = choice.path + (": " + error);
    return false;
  }
  int width = 0, height = 0;
  FittedSize(photo.width, photo.height, kPictureLongSide, width, height);
  // Full dithering: without it the blurred backgrounds of these photographs band visibly.
  return ReduceTo256Colours(Resize(photo, width, height), 1.0, picture, error);
}

std::string CreditsText(const std::vector<PictureChoice>& choices,
                        const std::vector<PictureCredit>& credits,
                        const std::vector<Image8>& pictures) {
  std::ostringstream out;
  out << "Quorvex Puzzle: the fifteen built-in pictures\r\n\r\n"
         "The photographs are in the public domain or under CC0. They come from Wikimedia Commons\r\n"
         "by way of Debian's gcompris-qt-data package (GCompris), whose changes are listed below;\r\n"
         "for this game each was then fitted to at most 1024 pixels and reduced to 256 colours.\r\n"
         "No credit is required by these licences; we give it gladly.\r\n";
  for (std::size_t i = 0; i < choices.size(); ++i) {
    out << "\r\nImage\\" << choices[i].number << ".bmp: " << choices[i].name << " (" << pictures[i].width
        << " x " << pictures[i].height << ")\r\n"
        << "  Author:  " << credits[i].author << "\r\n"
        << "  Licence: " << credits[i].licence << "\r\n"
        << "  Source:  " << credits[i].source << "\r\n";
    if (!credits[i].changes.empty()) out << "  Changes: " << credits[i].changes << "\r\n";
  }
  return out.str();
}

}  // namespace qv::assets
