// The fifteen built-in pictures: which photograph each one is and how it becomes Image\k.bmp.
#pragma once

#include <string>
#include <vector>

#include "assets/image8.h"

namespace qv::assets {

struct PictureChoice {
  int number;          // k of Image\k.bmp
  const char* name;    // the animal, as string 5000 + k names it
  const char* bundle;  // file name in gcompris-qt-data's rcc folder
  const char* path;    // the photograph inside the bundle
};

const std::vector<PictureChoice>& PictureChoices();

constexpr int kPictureLongSide = 1024;
constexpr const char* kPicturePackage = "gcompris-qt-data";

// Author, licence, source and changes of one photograph, from the README beside it.
struct PictureCredit {
  std::string author;
  std::string licence;
  std::string source;
  std::string changes;
};

// Finds the README block that lists `file` (blocks are separated by blank lines; "Files:" may
// name the files on its own line or on the lines after it).
bool FindCredit(const std::string& readme, const std::string& file, PictureCredit& credit);

// Decodes, fits and reduces one photograph; the error names the bundle and the package.
bool MakePicture(const std::string& rccFolder, const PictureChoice& choice, Image8& picture,
                 PictureCredit& credit, std::string& error);

// The CREDITS.txt text for the pictures, with Windows line ends.
std::string CreditsText(const std::vector<PictureChoice>& choices,
                        const std::vector<PictureCredit>& credits,
                        const std::vector<Image8>& pictures);

}  // namespace qv::assets
