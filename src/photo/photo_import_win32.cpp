// ImportPhoto: a photograph decoded, fitted, reduced to 256 colours and written into Image\.
#include <windows.h>

#include <algorithm>
#include <cstdint>
#include <new>
#include <string>
#include <vector>

#include "core/resource_ids.h"
#include "graphics/bitmap_writer.h"
#include "graphics/photo_decoder.h"
#include "photo/colour_quantiser.h"
#include "photo/photo_fit.h"
#include "photo/photo_import.h"
#include "photo/picture_name.h"

namespace qv {
namespace {

// Another program may create the chosen name between the listing and the rename; the next
// name is taken then, a few times over before the import gives up.
constexpr int kRenameAttempts = 8;

PhotoImportError FromPhotoError(PhotoError error) {
  switch (error) {
    case PhotoError::kNone:
      return PhotoImportError::kNone;
    case PhotoError::kNotFound:
      return PhotoImportError::kNotFound;
    case PhotoError::kLocked:
      return PhotoImportError::kLocked;
    case PhotoError::kEmpty:
      return PhotoImportError::kEmpty;
    case PhotoError::kNotAPicture:
      return PhotoImportError::kNotAPicture;
    case PhotoError::kDamaged:
      return PhotoImportError::kDamaged;
    case PhotoError::kTooLarge:
      return PhotoImportError::kTooLarge;
    case PhotoError::kOutOfMemory:
      return PhotoImportError::kOutOfMemory;
    case PhotoError::kNoDecoder:
      return PhotoImportError::kNoDecoder;
  }
  return PhotoImportError::kDamaged;
}

// The photograph's file name without its folder and extension.
std::wstring PhotoStem(const std::wstring& path) {
  const std::size_t slash = path.find_last_of(L"\\/");
  std::wstring name = slash == std::wstring::npos ? path : path.substr(slash + 1);
  const std::size_t dot = name.rfind(L'.');
  if (dot != std::wstring::npos && dot > 0) name.resize(dot);
  return name;
}

// True when a byte of a multi-byte character would read as a character file names refuse: in
// some East Asian code pages the second byte of a character can be '\' or '|'.
bool HasRefusedByte(const char* bytes, int count) {
  for (int i = 0; i < count; ++i) {
    const unsigned char c = static_cast<unsigned char>(bytes[i]);
    if (c < 32 || std::string("<>:\"/\\|?*").find(static_cast<char>(c)) != std::string::npos) {
      return true;
    }
  }
  return false;
}

// The stem in the ANSI code page that the game's file functions use, one character at a time,
// so that a character the code page cannot hold becomes '_' and the stem is cut between
// characters, never inside one, once it reaches the picture name's length limit.
std::string AnsiStem(const std::wstring& stem) {
  const UINT codePage = GetACP();
  // The UTF-8 code page holds every character and takes no default character.
  const bool utf8 = codePage == CP_UTF8;
  std::string ansi;
  for (std::size_t i = 0; i < stem.size();) {
    int units = 1;
    if (IS_HIGH_SURROGATE(stem[i]) && i + 1 < stem.size() && IS_LOW_SURROGATE(stem[i + 1])) {
      units = 2;
    }
    char bytes[8];
    BOOL usedDefault = FALSE;
    const DWORD flags = utf8 ? 0 : WC_NO_BEST_FIT_CHARS;
    const int count = WideCharToMultiByte(codePage, flags, &stem[i], units, bytes, sizeof bytes,
                                          nullptr, utf8 ? nullptr : &usedDefault);
    const bool lone = units == 1 && (IS_HIGH_SURROGATE(stem[i]) || IS_LOW_SURROGATE(stem[i]));
    std::string character;
    if (count <= 0 || usedDefault || lone || (count > 1 && HasRefusedByte(bytes, count))) {
      character = "_";
    } else {
      character.assign(bytes, static_cast<std::size_t>(count));
    }
    if (ansi.size() + character.size() > photo::kPictureStemLimit) break;
    ansi += character;
    i += static_cast<std::size_t>(units);
  }
  return ansi;
}

// The names of the .bmp files the folder holds. False when the folder cannot be listed (gone, or
// not a folder).
bool ListPictures(const std::string& folder, std::vector<std::string>* names) {
  WIN32_FIND_DATAA found{};
  HANDLE search = FindFirstFileA((folder + "*.bmp").c_str(), &found);
  if (search == INVALID_HANDLE_VALUE) return GetLastError() == ERROR_FILE_NOT_FOUND;
  do {
    names->push_back(found.cFileName);
  } while (FindNextFileA(search, &found));
  FindClose(search);
  return true;
}

// Writes the bytes into a new temporary file in the folder. Empty when that fails, with no file
// left behind.
std::string WriteTemporary(const std::string& folder, const std::vector<std::uint8_t>& bytes) {
  char path[MAX_PATH];
  // Creates an empty file of a name no other file has; ".tmp" is never taken for a picture.
  if (GetTempFileNameA(folder.c_str(), "qvp", 0, path) == 0) return {};
  HANDLE file = CreateFileA(path, GENERIC_WRITE, 0, nullptr, TRUNCATE_EXISTING,
                            FILE_ATTRIBUTE_NORMAL, nullptr);
  bool written = file != INVALID_HANDLE_VALUE;
  for (std::size_t at = 0; written && at < bytes.size();) {
    const DWORD chunk = static_cast<DWORD>(std::min<std::size_t>(bytes.size() - at, 1u << 20));
    DWORD done = 0;
    written = WriteFile(file, bytes.data() + at, chunk, &done, nullptr) && done == chunk;
    at += done;
  }
  if (file != INVALID_HANDLE_VALUE) {
    written = FlushFileBuffers(file) && written;
    written = CloseHandle(file) && written;
  }
  if (!written) {
    DeleteFileA(path);
    return {};
  }
  return path;
}

// Gives the temporary file its picture name without ever replacing a file. The name is empty
// when no name could be taken; the temporary file is then still there for the caller to remove.
std::string RenameToPicture(const std::string& temporary, const std::string& folder,
                            const std::string& photoName, std::vector<std::string> existing) {
  for (int attempt = 0; attempt < kRenameAttempts; ++attempt) {
    const std::string name = photo::PictureFileName(photoName, existing);
    if (MoveFileExA(temporary.c_str(), (folder + name).c_str(), MOVEFILE_WRITE_THROUGH)) {
      return name;
    }
    const DWORD error = GetLastError();
    if (error != ERROR_ALREADY_EXISTS && error != ERROR_FILE_EXISTS) break;
    existing.push_back(name);
  }
  return {};
}

// The photograph made into the bytes of an 8-bit .bmp file, or the reason it cannot be.
PhotoImportError MakePictureFile(const std::wstring& photoPath, RgbQuad table,
                                 std::vector<std::uint8_t>* file) {
  photo::BgrPicture fitted;
  {
    DecodedPhoto decoded = DecodePhoto(photoPath, table);
    if (decoded.error != PhotoError::kNone) return FromPhotoError(decoded.error);
    const int width = decoded.picture.width();
    const int height = decoded.picture.height();
    if (width < kSmallestPhotoSide || height < kSmallestPhotoSide) {
      return PhotoImportError::kTooSmall;
    }
    // The decoder's rows run bottom-up; the fitting reads them top row first.
    const std::ptrdiff_t rowBytes = static_cast<std::ptrdiff_t>(DibRowBytes(width, 24));
    photo::PixelRows rows;
    rows.first = DibPixels(decoded.picture.get()) + (height - 1) * rowBytes;
    rows.width = width;
    rows.height = height;
    rows.stride = -rowBytes;
    rows.bytesPerPixel = 3;
    // The decoder has already refused what the fitting would refuse (no size, too many pixels).
    if (!photo::FitPhoto(rows, fitted)) return PhotoImportError::kTooLarge;
  }
  photo::QuantisedPicture quantised;
  if (!photo::QuantisePicture(fitted, quantised, 1.0f)) return PhotoImportError::kOutOfMemory;
  PackedDib dib;
  if (!photo::ToPackedDib(quantised, dib)) return PhotoImportError::kOutOfMemory;
  *file = BitmapFileBytes(dib.get());
  return file->empty() ? PhotoImportError::kOutOfMemory : PhotoImportError::kNone;
}

}  // namespace

PhotoImportResult ImportPhoto(const std::wstring& photoPath, const std::string& pictureFolder,
                              RgbQuad table) {
  PhotoImportResult result;
  std::string folder = pictureFolder;
  if (!folder.empty() && folder.back() != '\\' && folder.back() != '/') folder += '\\';
  std::string temporary;
  try {
    std::vector<std::uint8_t> bytes;
    result.error = MakePictureFile(photoPath, table, &bytes);
    if (result.error != PhotoImportError::kNone) return result;
    std::vector<std::string> existing;
    result.error = PhotoImportError::kWriteFailed;
    if (!ListPictures(folder, &existing)) return result;
    temporary = WriteTemporary(folder, bytes);
    if (temporary.empty()) return result;
    // The extension is only there to be replaced: the stem may hold dots of its own.
    const std::string name =
        RenameToPicture(temporary, folder, AnsiStem(PhotoStem(photoPath)) + ".bmp", existing);
    if (!name.empty()) {
      result.error = PhotoImportError::kNone;
      result.pictureFile = name;
      return result;
    }
  } catch (const std::bad_alloc&) {
    result.error = PhotoImportError::kOutOfMemory;
    result.pictureFile.clear();
  }
  if (!temporary.empty()) DeleteFileA(temporary.c_str());
  return result;
}

unsigned PhotoImportMessage(PhotoImportError error) {
  const int value = static_cast<int>(error);
  if (value < static_cast<int>(PhotoImportError::kNotFound) ||
      value > static_cast<int>(PhotoImportError::kWriteFailed)) {
    return IDS_PHOTO_IMPORT_ERROR;
  }
  return IDS_PHOTO_IMPORT_ERROR + 10u * static_cast<unsigned>(value);
}

}  // namespace qv
