// Saved games (.epf): saving the running puzzle, loading it back, and reading the preview.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "graphics/packed_dib.h"
#include "puzzle/puzzle_model.h"

namespace qv {

// The file's fixed layout.
constexpr std::size_t kSaveHeaderBytes = 488;
constexpr std::size_t kSavePathBytes = 260;
constexpr std::size_t kBoxNameBytes = 24;
constexpr std::size_t kSavePieceRecordBytes = 16;
// The preview fits a box this size.
constexpr std::int32_t kPreviewBoxWidth = 104;
constexpr std::int32_t kPreviewBoxHeight = 123;

// The six piece-box names as the box windows hold them, each zero-terminated in 24 bytes.
struct BoxNames {
  char text[kBoxCount][kBoxNameBytes] = {};
};

// The three-character root ("C:\") of the drive that holds the program's Image folder, taken
// from the program folder; "" when the folder has no drive letter (no picture is then ever
// taken as lying in the media folder).
std::string PictureDriveRoot(const char* programFolder);

// True when the path starts with the drive root followed by "Image\": exactly the drive and
// the folder, nine characters.
bool InMediaFolder(const char* picturePath, const std::string& driveRoot);

// The path a stored picture path stands for now: with the media-folder flag the stored drive
// letter is replaced by the current drive root's; otherwise the stored path as it is.
std::string ResolveStoredPicturePath(const char* storedPath, bool inMediaFolder,
                                     const std::string& driveRoot);

// The preview's size for a picture: it fits 104 x 123 pixels.
struct PreviewGeometry {
  std::int32_t width = 0;
  std::int32_t height = 0;
  double scale = 0.0;
};
PreviewGeometry PreviewGeometryFor(std::int32_t pictureWidth, std::int32_t pictureHeight);

// Hints remain while fewer were used than a fifth of the pieces.
bool HintsAvailable(std::int32_t hintsUsed, std::int32_t rows, std::int32_t columns);

// Saves the open puzzle. The file is written whole to a temporary file in the same folder and
// then moved over `path`, so a failed save leaves the previous file as it was. On success the
// game-changed flag (PuzzleModificado) is cleared. Checks: a puzzle with a picture must be
// open, and the picture path must be shorter than 260 characters.
bool SaveGame(const char* path, bool withPreview, const char* programFolder,
              const BoxNames& names);

// What a successful load gives the window layer besides the restored engine state.
struct LoadedGame {
  BoxNames names;
  bool hintsAvailable = false;
};

// Everything a saved game holds apart from its preview, read and checked against the file
// alone: the header's fields, then the body's box counts (each at least zero, adding up to
// rows x columns), the order (each piece once) and the piece records (groups 1 ... N, positions
// within reach). Nothing here needs the die, the picture or the engine.
struct ParsedGame {
  bool inMediaFolder = false;
  std::int32_t dieRows = 0;
  std::int32_t dieCols = 0;
  std::uint32_t dieId = 0;
  std::string storedPath;
  BoxNames names;
  std::int32_t rows = 0;
  std::int32_t columns = 0;
  double scale = 0.0;
  std::int32_t hintsUsed = 0;
  std::uint32_t seconds = 0;
  std::uint8_t solutionShown = 0;
  std::int64_t pieces = 0;
  std::int32_t counts[kAreaCount] = {};
  std::vector<std::uint32_t> order;
  std::vector<Pieza> records;
};
// False for any fault; `parsed` is then unspecified.
bool ParseSavedGame(std::span<const std::uint8_t> bytes, ParsedGame& parsed);

// How a load gets the picture a saved game names, once the path is resolved: installs it as the
// puzzle's picture (LoadPuzzlePicture or SetPuzzlePicture) or answers false. Null means the file
// at that path, which must be a plain file.
using SavedPictureLoader = bool (*)(const std::string& path);

// Loads a saved game into the engine. The running puzzle is closed first (a missing file
// changes nothing). Every count, size and index of the file is checked against what the file
// really holds before anything is installed; on any failure the answer is false and no puzzle
// is left open. On success the boxes are told whether they hold pieces (and hidden) through
// the engine's hooks, every area is recomposed, the clock shows the stored time and waits for
// the first click on a piece to run again.
bool LoadGame(const char* path, const char* programFolder, LoadedGame& loaded);
// The same for a saved game already in memory (the bytes are only read during the call).
bool LoadGameFromBytes(std::span<const std::uint8_t> bytes, const char* programFolder,
                       LoadedGame& loaded, SavedPictureLoader loadPicture = nullptr);

// Reads only the header and the preview of a saved game into a packed 16-bit picture (pixels at
// byte 1064). False, with `preview` emptied, for any fault or when no preview bytes follow.
bool ReadPreview(const char* path, PackedDib& preview);
bool ReadPreviewFromBytes(std::span<const std::uint8_t> bytes, PackedDib& preview);

}  // namespace qv
