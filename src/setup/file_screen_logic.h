// The file screen's decisions: which saved game each tile shows, the scroll bar's range, the
// captions, and which names may become a file.
#pragma once

#include <cstdint>
#include <string>

namespace qv::filescreen {

constexpr int kTileCount = 4;
constexpr int kFirstTileIdentifier = 300;  // control identifiers 300..303
constexpr int kTileWidth = 108;
constexpr int kTileHeight = 90;
constexpr int kTileY = 108;
constexpr int TileX(int tile) { return 6 + 111 * tile; }

constexpr std::uint32_t kOpenBackgroundBase = 2040;  // + language
constexpr std::uint32_t kSaveBackgroundBase = 2050;  // + language
constexpr std::uint32_t kActionImage = 223;
constexpr std::uint32_t kCloseImage = 222;
constexpr std::uint32_t kHelpImage = 187;
constexpr std::uint32_t kDeleteImage = 158;
constexpr std::uint32_t kScrollImage = 221;
constexpr int kScrollPartSizes[3] = {37, 86, 37};

// The folder of saved games under the program folder, and the files the screen lists.
constexpr char kSaveFolder[] = "folder";
constexpr char kSaveExtension[] = ".epf";

// Names of fewer characters are ignored without a word.
constexpr int kShortestName = 2;

// The list's view: the scroll bar exists only beyond four files and has one step per file that
// does not fit; the first file shown is the bar's position, kept inside that range.
struct ListView {
  bool scrollBar = false;
  int maximum = 0;       // the bar's range is 0..maximum
  int firstVisible = 0;  // the first file shown in tile 0
};
ListView ViewOf(int fileCount, int wantedFirstVisible);

// The file a tile shows (-1: the tile is empty).
int FileOfTile(const ListView& view, int tile, int fileCount);

// A saved game's caption: its file name without the extension.
std::string CaptionOf(const std::string& fileName);

// What becomes of a typed name when the player saves.
enum class NameVerdict {
  TooShort,  // ignored: the screen stays as it is
  Refused,   // Windows would not take it as a file name, or the path would be too long
  Accepted,
};
// programFolder is the folder with its trailing separator; the file is
// programFolder + "folder\" + name + ".epf", which must stay under 260 characters.
NameVerdict CheckSaveName(const std::string& name, const std::string& programFolder);

// The path of a saved game's file from its name with or without the extension.
std::string SavedGamePath(const std::string& programFolder, const std::string& name,
                          bool addExtension);

}  // namespace qv::filescreen
