// Saved games: the 488-byte header, box counts, order, piece records and the 16-bit preview.
#include "setup/savegame.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <new>
#include <system_error>
#include <vector>

#include "graphics/himage_ops.h"
#include "graphics/resource_file.h"
#include "puzzle/compose.h"
#include "puzzle/engine_internal.h"
#include "puzzle/play.h"
#include "system/assert.h"
#include "system/binary_file.h"

namespace qv {

namespace {

// Header offsets.
constexpr std::size_t kMagicOffset = 0;
constexpr std::size_t kMediaFlagOffset = 26;
constexpr std::size_t kDieRowsOffset = 28;
constexpr std::size_t kDieColsOffset = 32;
constexpr std::size_t kDieIdOffset = 36;
constexpr std::size_t kPathOffset = 40;
constexpr std::size_t kBoxNamesOffset = 300;
constexpr std::size_t kRowsOffset = 444;
constexpr std::size_t kColumnsOffset = 448;
constexpr std::size_t kScaleOffset = 456;
constexpr std::size_t kHintsOffset = 464;
constexpr std::size_t kSecondsOffset = 468;
constexpr std::size_t kSolutionShownOffset = 472;
constexpr std::size_t kPreviewPresentOffset = 473;
constexpr std::size_t kPreviewOffsetOffset = 476;
constexpr std::size_t kPreviewWidthOffset = 480;
constexpr std::size_t kPreviewHeightOffset = 484;

constexpr char kMagic[] = "MWPF10";
constexpr char kMediaFolder[] = "Image";
constexpr std::size_t kDriveRootLength = 3;
constexpr std::size_t kBoxCountsBytes = 4 * kAreaCount;
// Per piece: its entry in the order and its record.
constexpr std::int64_t kBytesPerPiece = 4 + kSavePieceRecordBytes;

// Labels are single bytes, so no die can have more cells and border labels than this.
constexpr std::int64_t kMaxDieLabel = 255;
// A preview larger than twice the box the writer fits it in was not written by this program.
constexpr std::int32_t kMaxPreviewWidth = 2 * kPreviewBoxWidth;
constexpr std::int32_t kMaxPreviewHeight = 2 * kPreviewBoxHeight;

using Header = std::uint8_t[kSaveHeaderBytes];

void PutI32(std::uint8_t* at, std::int32_t value) {
  const auto v = static_cast<std::uint32_t>(value);
  at[0] = static_cast<std::uint8_t>(v);
  at[1] = static_cast<std::uint8_t>(v >> 8);
  at[2] = static_cast<std::uint8_t>(v >> 16);
  at[3] = static_cast<std::uint8_t>(v >> 24);
}

std::int32_t GetI32(const std::uint8_t* at) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(at[0]) |
                                   (static_cast<std::uint32_t>(at[1]) << 8) |
                                   (static_cast<std::uint32_t>(at[2]) << 16) |
                                   (static_cast<std::uint32_t>(at[3]) << 24));
}

void PutF64(std::uint8_t* at, double value) {
  std::uint64_t bits = 0;
  std::memcpy(&bits, &value, sizeof bits);
  for (int i = 0; i < 8; ++i) at[i] = static_cast<std::uint8_t>(bits >> (8 * i));
}

double GetF64(const std::uint8_t* at) {
  std::uint64_t bits = 0;
  for (int i = 0; i < 8; ++i) bits |= static_cast<std::uint64_t>(at[i]) << (8 * i);
  double value = 0.0;
  std::memcpy(&value, &bits, sizeof value);
  return value;
}

bool IsSeparator(char c) { return c == '\\' || c == '/'; }

// Length of a zero-terminated text inside a field, or -1 when the field holds no zero.
std::int64_t FieldTextLength(const std::uint8_t* field, std::size_t bytes) {
  const void* zero = std::memchr(field, 0, bytes);
  return zero ? static_cast<const std::uint8_t*>(zero) - field : -1;
}

std::string TemporaryPathFor(const char* path) { return std::string(path) + ".tmp"; }

// The file and byte entries share these; the handle is opened on a file or on bytes.
bool LoadGameFrom(BinaryFile& file, const char* programFolder, LoadedGame& loaded,
                  SavedPictureLoader loadPicture);
bool ReadPreviewFrom(BinaryFile& file, PackedDib& preview);

// ---- Saving ----------------------------------------------------------------------------------

void FillHeader(Header header, const char* picturePath, std::size_t pathLength,
                const std::string& driveRoot, const BoxNames& names) {
  const EstadoPuzzle& p = Puzzle();
  std::memset(header, 0, kSaveHeaderBytes);
  std::memcpy(header + kMagicOffset, kMagic, sizeof kMagic - 1);
  header[kMediaFlagOffset] = InMediaFolder(picturePath, driveRoot) ? 1 : 0;
  PutI32(header + kDieRowsOffset, p.dieRows);
  PutI32(header + kDieColsOffset, p.dieCols);
  PutI32(header + kDieIdOffset, static_cast<std::int32_t>(p.dieId));
  std::memcpy(header + kPathOffset, picturePath, pathLength + 1);
  for (int box = 0; box < kBoxCount; ++box) {
    std::uint8_t* slot = header + kBoxNamesOffset + kBoxNameBytes * static_cast<std::size_t>(box);
    const std::int64_t length = FieldTextLength(
        reinterpret_cast<const std::uint8_t*>(names.text[box]), kBoxNameBytes);
    const std::size_t copy = length < 0 ? kBoxNameBytes : static_cast<std::size_t>(length);
    std::memcpy(slot, names.text[box], copy);
    slot[kBoxNameBytes - 1] = 0;
  }
  PutI32(header + kRowsOffset, p.NR);
  PutI32(header + kColumnsOffset, p.NC);
  PutF64(header + kScaleOffset, p.scale);
  PutI32(header + kHintsOffset, p.hintsUsed);
  PutI32(header + kSecondsOffset, static_cast<std::int32_t>(p.SegundosJuego));
  header[kSolutionShownOffset] = p.solutionShown;
}

std::uint16_t Rgb555(std::uint8_t red, std::uint8_t green, std::uint8_t blue) {
  return static_cast<std::uint16_t>(((red >> 3) << 10) | ((green >> 3) << 5) | (blue >> 3));
}

// The preview's pixel rows, bottom row first, each padded to 4 bytes.
std::vector<std::uint8_t> BuildPreview(HIMAGE picture, const PreviewGeometry& geometry) {
  const std::int32_t pictureWidth = ImageWidth(picture);
  const std::int32_t pictureHeight = ImageHeight(picture);
  const int bits = ImageBitCount(picture);
  const std::int64_t pictureStride = DibRowBytes(pictureWidth, bits);
  const std::int64_t stride = DibRowBytes(geometry.width, 16);
  std::vector<std::uint8_t> rows(static_cast<std::size_t>(stride * geometry.height), 0);
  const RgbQuad* colours = DibColours(picture);
  for (std::int32_t y = 0; y < geometry.height; ++y) {
    // The row bound is the picture's height, not height - 1: the program's own rule, kept. A
    // row that reaches it is read as the last row so that nothing outside the picture is read.
    std::int32_t row = static_cast<std::int32_t>(y / geometry.scale);
    if (row > pictureHeight) row = pictureHeight;
    if (row > pictureHeight - 1) row = pictureHeight - 1;
    const std::uint8_t* line = DibPixels(picture) + row * pictureStride;
    std::uint8_t* out = rows.data() + y * stride;
    for (std::int32_t x = 0; x < geometry.width; ++x) {
      std::int32_t column = static_cast<std::int32_t>(x / geometry.scale);
      if (column > pictureWidth - 1) column = pictureWidth - 1;
      std::uint8_t red, green, blue;
      if (bits == 8) {
        const RgbQuad& c = colours[line[column]];
        red = c.rgbRed;
        green = c.rgbGreen;
        blue = c.rgbBlue;
      } else {
        const std::uint8_t* px = line + static_cast<std::int64_t>(column) * 3;
        blue = px[0];
        green = px[1];
        red = px[2];
      }
      const std::uint16_t value = Rgb555(red, green, blue);
      out[2 * x] = static_cast<std::uint8_t>(value);
      out[2 * x + 1] = static_cast<std::uint8_t>(value >> 8);
    }
  }
  return rows;
}

bool WriteSavedGame(BinaryFile& file, const Header header,
                    const std::vector<std::uint8_t>& preview) try {
  const EstadoPuzzle& p = Puzzle();
  const std::size_t n = static_cast<std::size_t>(p.PieceCount());
  std::uint8_t counts[kBoxCountsBytes];
  for (int area = 0; area < kAreaCount; ++area) {
    PutI32(counts + 4 * area, p.areas[area].count);
  }
  std::vector<std::uint8_t> order(4 * n);
  for (std::size_t i = 0; i < n; ++i) {
    PutI32(order.data() + 4 * i, static_cast<std::int32_t>(p.order[i]));
  }
  std::vector<std::uint8_t> records(kSavePieceRecordBytes * n);
  for (std::size_t k = 0; k < n; ++k) {
    const Pieza& piece = p.pieces[k];
    std::uint8_t* record = records.data() + kSavePieceRecordBytes * k;
    PutI32(record, static_cast<std::int32_t>(piece.group));
    record[4] = piece.unselected;
    std::memcpy(record + 5, piece.reserved, sizeof piece.reserved);
    PutI32(record + 8, piece.x);
    PutI32(record + 12, piece.y);
  }
  return file.Write(header, kSaveHeaderBytes) && file.Write(counts, sizeof counts) &&
         file.Write(order.data(), order.size()) && file.Write(records.data(), records.size()) &&
         file.Write(preview.data(), preview.size()) && file.Flush();
} catch (const std::bad_alloc&) {
  return false;  // the buffers of a huge puzzle could not be had: the old file stays
}

// ---- Loading ---------------------------------------------------------------------------------

bool MagicMatches(const Header header) {
  // Compared as a zero-terminated text: "MWPF10" followed by anything but a zero is refused.
  return std::memcmp(header + kMagicOffset, kMagic, sizeof kMagic) == 0;
}

bool ParseHeader(const Header header, std::uint64_t fileSize, ParsedGame& out) {
  if (!MagicMatches(header)) return false;
  const std::int64_t pathLength = FieldTextLength(header + kPathOffset, kSavePathBytes);
  if (pathLength < 0) return false;
  out.storedPath.assign(reinterpret_cast<const char*>(header + kPathOffset),
                        static_cast<std::size_t>(pathLength));
  out.inMediaFolder = header[kMediaFlagOffset] != 0;
  out.dieRows = GetI32(header + kDieRowsOffset);
  out.dieCols = GetI32(header + kDieColsOffset);
  out.dieId = static_cast<std::uint32_t>(GetI32(header + kDieIdOffset));
  for (int box = 0; box < kBoxCount; ++box) {
    std::memcpy(out.names.text[box],
                header + kBoxNamesOffset + kBoxNameBytes * static_cast<std::size_t>(box),
                kBoxNameBytes);
    // A name field without its zero is cut to 23 characters, as the window would show it.
    out.names.text[box][kBoxNameBytes - 1] = '\0';
  }
  out.rows = GetI32(header + kRowsOffset);
  out.columns = GetI32(header + kColumnsOffset);
  out.scale = GetF64(header + kScaleOffset);
  out.hintsUsed = GetI32(header + kHintsOffset);
  out.seconds = static_cast<std::uint32_t>(GetI32(header + kSecondsOffset));
  out.solutionShown = header[kSolutionShownOffset] != 0 ? 1 : 0;

  if (out.dieRows < 1 || out.dieCols < 1) return false;
  const std::int64_t dieRows = out.dieRows;
  const std::int64_t dieCols = out.dieCols;
  if (dieRows > kMaxDieLabel || dieCols > kMaxDieLabel ||
      dieRows * dieCols + 2 * dieCols + 2 * dieRows + 1 > kMaxDieLabel) {
    return false;
  }
  if (out.rows < 1 || out.columns < 1) return false;
  // The body must really be there. The pieces the file can hold are counted first, so that
  // neither the grid nor the body's size is ever computed from counts the file cannot back;
  // this also keeps any count in the header from asking for more memory than the file fills.
  if (fileSize < kSaveHeaderBytes + kBoxCountsBytes) return false;
  const std::uint64_t room = (fileSize - kSaveHeaderBytes - kBoxCountsBytes) / kBytesPerPiece;
  const std::uint64_t maxPieces = std::min<std::uint64_t>(room, INT32_MAX);
  if (static_cast<std::uint64_t>(out.rows) > maxPieces ||
      static_cast<std::uint64_t>(out.columns) > maxPieces) {
    return false;
  }
  out.pieces = static_cast<std::int64_t>(out.rows) * out.columns;  // both below 2^31: no overflow
  if (static_cast<std::uint64_t>(out.pieces) > maxPieces) return false;
  if (!std::isfinite(out.scale) || out.scale <= 0.0) return false;
  // A hint that joins counts even when none remain (a 2 x 2 game allows none), so a game saved
  // after it holds more than the limit. Such a file is still the player's game: it loads, and
  // only a debug build stops here to say so.
  QV_CHECK(out.hintsUsed >= 0 && out.hintsUsed <= HintLimit(out.rows, out.columns),
           "las pistas usadas superan el limite");
  if (out.hintsUsed < 0) out.hintsUsed = 0;
  return true;
}

// The die must be in the resource file with the size its grid gives; checked here so that a
// bad file is refused quietly instead of tripping the cut's checks.
bool DieFits(std::uint32_t dieId, std::int32_t dieRows, std::int32_t dieCols) {
  // The header is enough: the cut loads the die itself, with the same checks.
  ResourceFile& resources = TheResourceFile();
  if (!resources.IsOpen() || resources.FindEntry(dieId) == nullptr) return false;
  BitmapInfoHeader die{};
  if (!resources.ReadPictureHeader(dieId, die)) return false;
  return die.biBitCount == 8 && die.biWidth == dieCols * kDieCell + 2 * kDieMargin &&
         die.biHeight == dieRows * kDieCell + 2 * kDieMargin;
}

bool ReadBody(BinaryFile& file, std::int64_t n, ParsedGame& body) try {
  std::uint8_t counts[kBoxCountsBytes];
  if (!file.ReadExact(counts, sizeof counts)) return false;
  std::int64_t total = 0;
  for (int area = 0; area < kAreaCount; ++area) {
    body.counts[area] = GetI32(counts + 4 * area);
    if (body.counts[area] < 0) return false;
    total += body.counts[area];
  }
  if (total != n) return false;

  const auto pieces = static_cast<std::size_t>(n);
  std::vector<std::uint8_t> raw(pieces * kSavePieceRecordBytes);
  if (!file.ReadExact(raw.data(), 4 * pieces)) return false;
  body.order.resize(pieces);
  // Each piece exactly once.
  std::vector<bool> seen(pieces);
  for (std::size_t i = 0; i < pieces; ++i) {
    const auto piece = static_cast<std::uint32_t>(GetI32(raw.data() + 4 * i));
    if (piece >= pieces || seen[piece]) return false;
    seen[piece] = true;
    body.order[i] = piece;
  }
  if (!file.ReadExact(raw.data(), raw.size())) return false;
  body.records.resize(pieces);
  for (std::size_t k = 0; k < pieces; ++k) {
    const std::uint8_t* record = raw.data() + kSavePieceRecordBytes * k;
    Pieza& piece = body.records[k];
    piece.group = static_cast<std::uint32_t>(GetI32(record));
    // Only "not selected" (1) and "selected" (0) exist; the padding stays zero in the engine.
    piece.unselected = record[4] != 0 ? 1 : 0;
    piece.reserved[0] = piece.reserved[1] = piece.reserved[2] = 0;
    piece.x = GetI32(record + 8);
    piece.y = GetI32(record + 12);
    // Groups are numbered 1 ... N (a group takes the number of one of its pieces + 1).
    if (piece.group > static_cast<std::uint64_t>(n)) return false;
    if (piece.x < -kMaxPiecePosition || piece.x > kMaxPiecePosition ||
        piece.y < -kMaxPiecePosition || piece.y > kMaxPiecePosition) {
      return false;
    }
  }
  return true;
} catch (const std::bad_alloc&) {
  return false;  // N fits the file but not memory
}

bool EveryPieceInGroup(std::uint32_t group) {
  const EstadoPuzzle& p = Puzzle();
  const std::size_t n = static_cast<std::size_t>(p.PieceCount());
  for (std::size_t k = 0; k < n; ++k) {
    if (p.pieces[k].group != group) return false;
  }
  return true;
}

// Steps after the pieces are in: boxes, redraw, clock and flags.
void FinishLoad(const ParsedGame& fields) {
  EstadoPuzzle& p = Puzzle();
  const EngineHooks& hooks = Hooks();
  for (int box = 0; box < kBoxCount; ++box) {
    if (hooks.hideBox) hooks.hideBox(hooks.context, box);
    engine::NotifyArea(box, p.areas[box].count > 0 ? AREA_OCUPADA : AREA_VACIA);
  }
  ComposeAllAreas(true);
  engine::StopClockTimer();
  p.RelojPausado = 0;
  p.PuzzleModificado = 0;
  p.solutionShown = fields.solutionShown;
  // A game saved whole stays finished. Any other game waits, like a new one, for the first
  // click on a piece to set its clock running again from the stored time.
  p.PuzzleTerminado = EveryPieceInGroup(static_cast<std::uint32_t>(p.PieceCount())) ? 1 : 0;
  p.PuzzleSinEmpezar = p.PuzzleTerminado ? 0 : 1;
  engine::ShowClock(p.SegundosJuego);
}

bool ParseOpenedGame(BinaryFile& file, ParsedGame& parsed) {
  Header header;
  return file.ReadExact(header, kSaveHeaderBytes) && ParseHeader(header, file.Size(), parsed) &&
         ReadBody(file, parsed.pieces, parsed);
}

bool LoadPictureFile(const std::string& path) {
  // Only a plain file: a path naming a device or a pipe could block the read forever.
  std::error_code error;
  if (!std::filesystem::is_regular_file(path, error) || error) return false;
  return LoadPuzzlePicture(path.c_str());
}

// The whole file is read and checked before the picture is loaded and cut: a bad body costs
// no cut.
bool LoadOpenedGame(BinaryFile& file, const char* programFolder, LoadedGame& loaded,
                    SavedPictureLoader loadPicture) {
  ParsedGame fields;
  if (!ParseOpenedGame(file, fields)) return false;
  file.Close();
  if (!DieFits(fields.dieId, fields.dieRows, fields.dieCols)) return false;

  const std::string root = PictureDriveRoot(programFolder);
  const std::string picturePath =
      ResolveStoredPicturePath(fields.storedPath.c_str(), fields.inMediaFolder, root);
  if (!(loadPicture ? loadPicture : &LoadPictureFile)(picturePath)) return false;

  EstadoPuzzle& p = Puzzle();
  p.scale = fields.scale;
  p.NR = fields.rows;
  p.NC = fields.columns;
  p.hintsUsed = fields.hintsUsed;
  p.SegundosJuego = fields.seconds;
  p.solutionShown = fields.solutionShown;
  if (!CrearPuzzle(fields.dieRows, fields.dieCols, fields.dieId, false)) return false;

  if (!RestorePieces(fields.counts, fields.order.data(), fields.records.data())) return false;

  FinishLoad(fields);
  loaded.names = fields.names;
  loaded.hintsAvailable = HintsAvailable(fields.hintsUsed, fields.rows, fields.columns);
  return true;
}

}  // namespace

std::string PictureDriveRoot(const char* programFolder) {
  if (programFolder == nullptr) return {};
  const char letter = programFolder[0];
  const bool isLetter = (letter >= 'A' && letter <= 'Z') || (letter >= 'a' && letter <= 'z');
  if (!isLetter || programFolder[1] != ':' || !IsSeparator(programFolder[2])) return {};
  return std::string(programFolder, kDriveRootLength);
}

bool InMediaFolder(const char* picturePath, const std::string& driveRoot) {
  if (picturePath == nullptr || driveRoot.size() != kDriveRootLength) return false;
  const std::size_t folderLength = sizeof kMediaFolder - 1;
  const std::size_t needed = kDriveRootLength + folderLength + 1;  // nine characters
  if (std::strlen(picturePath) < needed) return false;
  // The folder's separator may be either slash; nothing the program writes uses "/", so
  // accepting it changes no file the program has written.
  return std::memcmp(picturePath, driveRoot.data(), kDriveRootLength) == 0 &&
         std::memcmp(picturePath + kDriveRootLength, kMediaFolder, folderLength) == 0 &&
         IsSeparator(picturePath[kDriveRootLength + folderLength]);
}

std::string ResolveStoredPicturePath(const char* storedPath, bool inMediaFolder,
                                     const std::string& driveRoot) {
  if (storedPath == nullptr) return {};
  if (!inMediaFolder || driveRoot.empty() || storedPath[0] == '\0') return storedPath;
  return driveRoot[0] + std::string(storedPath + 1);
}

PreviewGeometry PreviewGeometryFor(std::int32_t pictureWidth, std::int32_t pictureHeight) {
  PreviewGeometry g;
  if (pictureWidth < 1 || pictureHeight < 1) return g;
  // Integer division first, then compared as a real number, as the writer always has.
  const std::int64_t ratio = std::int64_t{pictureHeight} * kPreviewBoxWidth / pictureWidth;
  g.scale = ratio > kPreviewBoxHeight ? static_cast<double>(kPreviewBoxHeight) / pictureHeight
                                      : static_cast<double>(kPreviewBoxWidth) / pictureWidth;
  g.width = static_cast<std::int32_t>(pictureWidth * g.scale);
  g.height = static_cast<std::int32_t>(pictureHeight * g.scale);
  return g;
}

bool HintsAvailable(std::int32_t hintsUsed, std::int32_t rows, std::int32_t columns) {
  return hintsUsed < HintLimit(rows, columns);
}

bool SaveGame(const char* path, bool withPreview, const char* programFolder,
              const BoxNames& names) {
  HIMAGE picture = PuzzlePicture();
  if (!QV_CHECK(PuzzleAbierto() && picture != nullptr, "esta funcion no se puede llamar ahora")) {
    return false;
  }
  if (path == nullptr || path[0] == '\0') return false;
  const char* picturePath = PuzzlePicturePath();
  const std::size_t pathLength = std::strlen(picturePath);
  if (!QV_CHECK(pathLength < kSavePathBytes, "la ruta de la imagen es demasiado larga")) {
    return false;
  }

  Header header;
  FillHeader(header, picturePath, pathLength, PictureDriveRoot(programFolder), names);
  std::vector<std::uint8_t> preview;
  if (withPreview) {
    const PreviewGeometry geometry = PreviewGeometryFor(ImageWidth(picture), ImageHeight(picture));
    header[kPreviewPresentOffset] = 1;
    PutI32(header + kPreviewOffsetOffset,
           static_cast<std::int32_t>(kBoxCountsBytes + kBytesPerPiece * PieceCount()));
    PutI32(header + kPreviewWidthOffset, geometry.width);
    PutI32(header + kPreviewHeightOffset, geometry.height);
    preview = BuildPreview(picture, geometry);
  }

  const std::string temporary = TemporaryPathFor(path);
  BinaryFile file;
  if (!file.CreateWrite(temporary.c_str())) return false;
  const bool written = WriteSavedGame(file, header, preview);
  file.Close();
  if (!written || !ReplaceFileAtomically(temporary.c_str(), path)) {
    std::remove(temporary.c_str());
    return false;
  }
  Puzzle().PuzzleModificado = 0;
  return true;
}

bool LoadGame(const char* path, const char* programFolder, LoadedGame& loaded) {
  BinaryFile file;
  if (path == nullptr || !file.OpenRead(path)) return false;
  return LoadGameFrom(file, programFolder, loaded, nullptr);
}

bool LoadGameFromBytes(std::span<const std::uint8_t> bytes, const char* programFolder,
                       LoadedGame& loaded, SavedPictureLoader loadPicture) {
  BinaryFile file;
  file.OpenBytes(bytes);
  return LoadGameFrom(file, programFolder, loaded, loadPicture);
}

bool ParseSavedGame(std::span<const std::uint8_t> bytes, ParsedGame& parsed) {
  BinaryFile file;
  file.OpenBytes(bytes);
  return ParseOpenedGame(file, parsed);
}

bool ReadPreview(const char* path, PackedDib& preview) {
  preview.Reset();
  BinaryFile file;
  if (path == nullptr || !file.OpenRead(path)) return false;
  return ReadPreviewFrom(file, preview);
}

bool ReadPreviewFromBytes(std::span<const std::uint8_t> bytes, PackedDib& preview) {
  preview.Reset();
  BinaryFile file;
  file.OpenBytes(bytes);
  return ReadPreviewFrom(file, preview);
}

namespace {

bool LoadGameFrom(BinaryFile& file, const char* programFolder, LoadedGame& loaded,
                  SavedPictureLoader loadPicture) {
  CerrarPuzzle(true);
  if (LoadOpenedGame(file, programFolder, loaded, loadPicture)) return true;
  file.Close();
  CerrarPuzzle(true);
  return false;
}

bool ReadPreviewFrom(BinaryFile& file, PackedDib& preview) {
  Header header;
  if (!file.ReadExact(header, kSaveHeaderBytes) || !MagicMatches(header)) return false;
  const std::int32_t offset = GetI32(header + kPreviewOffsetOffset);
  const std::int32_t width = GetI32(header + kPreviewWidthOffset);
  const std::int32_t height = GetI32(header + kPreviewHeightOffset);
  if (offset < 0 || width < 0 || height < 0 || width > kMaxPreviewWidth ||
      height > kMaxPreviewHeight) {
    return false;
  }
  // Four bytes a pixel are asked for, twice what the writer stores: the read takes the shorter
  // preview at the end of the file, and the block stays large enough for the header's size.
  const std::size_t imageBytes =
      static_cast<std::size_t>(height) * static_cast<std::size_t>((4 * width + 3) / 4 * 4);
  if (!file.Seek(kSaveHeaderBytes + static_cast<std::uint64_t>(offset))) return false;
  HIMAGE block = PackedDib::AllocateBlock(imageBytes);
  if (block == nullptr) return false;
  PackedDib dib;
  dib.Adopt(block, kDibPixelOffset + imageBytes);
  std::memset(block, 0, kDibPixelOffset + imageBytes);
  if (file.Read(DibPixels(block), imageBytes) == 0) return false;

  BitmapInfoHeader* info = DibHeader(block);
  info->biSize = sizeof(BitmapInfoHeader);
  info->biWidth = width;
  info->biHeight = height;
  info->biPlanes = 1;
  info->biBitCount = 16;
  info->biCompression = kBiRgb;
  info->biSizeImage = static_cast<std::uint32_t>(imageBytes);
  preview = std::move(dib);
  return true;
}

}  // namespace

}  // namespace qv
