// Making a player's own photograph into a picture of the game: read, fitted, reduced to 256
// colours and written as an 8-bit .bmp into the pictures folder.
#pragma once

#include <string>

#include "graphics/dib_layout.h"
#include "setup/pickers.h"

namespace qv {

// The shortest side a photograph may have: the coarsest grid of the smallest pieces at the
// photograph's own size. Anything smaller would be cut from enlarged pixels, down to a 1 x 1
// picture that holds no puzzle at all.
constexpr int kSmallestPhotoSide = kFewestPiecesAlongSide * kSmallestPieceSide;

// Why a photograph did not become a picture. Each has its own localized message, string
// IDS_PHOTO_IMPORT_ERROR + 10 x the value + the language.
enum class PhotoImportError {
  kNone = 0,
  kNotFound = 1,     // the file or its folder is gone
  kLocked = 2,       // another program holds it, or it may not be read
  kEmpty = 3,        // zero bytes
  kNotAPicture = 4,  // no decoder recognises it (a text file renamed .png)
  kDamaged = 5,      // recognised but broken or cut short
  kTooSmall = 6,     // too few pixels to cut into the smallest puzzle
  kTooLarge = 7,     // more pixels than a photograph may have
  kOutOfMemory = 8,
  kNoDecoder = 9,     // the system's imaging component is missing
  kWriteFailed = 10,  // the picture could not be written (disk full, folder read-only)
};

struct PhotoImportResult {
  PhotoImportError error = PhotoImportError::kNoDecoder;
  // On success the new picture's file name inside the folder ("Cat.bmp"), never one that was
  // there before; nothing is left in the folder on failure.
  std::string pictureFile;
};

// Reads the photograph at photoPath (any JPEG, PNG, GIF, TIFF or BMP the system decodes),
// composing transparency over `table`, and writes it into pictureFolder (ending in '\') through
// a temporary file. Safe to call on the interface thread; it takes a moment for a camera photo.
PhotoImportResult ImportPhoto(const std::wstring& photoPath, const std::string& pictureFolder,
                              RgbQuad table);

// The string base of an error's message (add the language index). kNone, and any value outside
// the list, answers the base of kNone, which has no string: there is nothing to tell.
unsigned PhotoImportMessage(PhotoImportError error);

}  // namespace qv
