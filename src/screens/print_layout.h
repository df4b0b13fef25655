// Where a printed page puts its banners, the picture's five bands and the two texts, and the
// checks on the picture file before a document is started. Portable: the print job measures the
// page and reads the file, this only does the arithmetic.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace qv {

constexpr int kTopBannerWidth = 1496, kTopBannerHeight = 243;
constexpr int kBottomBannerWidth = 1496, kBottomBannerHeight = 228;
constexpr int kPrintBands = 5;

struct PrintRect {
  int x = 0, y = 0, width = 0, height = 0;
};

struct PrintLayout {
  PrintRect topBanner;     // at (0, 0)
  PrintRect bottomBanner;  // at the page's bottom edge
  int rowsPerBand = 0;     // rows of the file per band: height / 5
  int droppedRows = 0;     // the rows beyond five whole bands, never printed
  PrintRect band[kPrintBands];  // band 0 is the file's first (bottom) rows, printed lowest
  PrintRect title;
  PrintRect description;
  int titleHeight = 0;
  int descriptionHeight = 0;
};

// The page of W x H device pixels and a picture of pw x ph. False for a page or picture with no
// room for a band (nothing may be printed then).
bool ComputePrintLayout(int pageWidth, int pageHeight, int pictureWidth, int pictureHeight,
                        PrintLayout& out);

// The 14-byte file header and 1064 bytes at offset 14 (information header and palette), as a
// 256-colour picture file must begin.
constexpr std::size_t kPrintHeadBytes = 14 + 1064;

struct PrintablePicture {
  int width = 0, height = 0;
  std::size_t stride = 0;          // bytes per row, rounded up to four
  std::uint64_t pixelOffset = 0;   // where the bottom row starts
};

// Accepts only a bottom-up, uncompressed 256-colour picture whose five bands of rows all lie
// inside the file of fileSize bytes. `head` holds the file's first kPrintHeadBytes bytes.
bool CheckPrintablePicture(const std::uint8_t* head, std::size_t headSize, std::uint64_t fileSize,
                           PrintablePicture& out);

// The built-in picture that `picturePath` names: 0 for programFolder + "Image\1.bmp" up to 14 for
// "Image\15.bmp" (letters in any case, either slash), -1 for any other path.
int BuiltInPictureIndex(const std::string& programFolder, const std::string& picturePath);

// What any other picture (a photograph of the player's own) is called wherever the built-in ones
// show their names: its file name without the folder and without ".bmp" (in any case).
std::string OwnPictureName(const std::string& picturePath);

// A picture of pw x ph shrunk (or grown) to fit a box, proportions kept, centred in it.
PrintRect FitPicture(int boxWidth, int boxHeight, int pictureWidth, int pictureHeight);

}  // namespace qv
