// The good saved game that the saved-game fuzz targets patch, and how an input patches it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <span>
#include <string>
#include <vector>

#include "graphics/dib_layout.h"
#include "graphics/packed_dib.h"
#include "graphics/resource_file.h"
#include "puzzle/puzzle_model.h"
#include "setup/savegame.h"
#include "support/die_builder.h"
#include "support/rf_writer.h"

#include <unistd.h>

namespace qv::fuzz {

using Bytes = std::vector<std::uint8_t>;

// The smallest picture the cut takes (45 pixels a side at scale 1), 24 bits, kept in memory
// for the whole process: no input ever costs a file read.
inline const PackedDib& TinyPicture() {
  static const PackedDib picture = [] {
    constexpr std::int32_t side = kMinPictureSide;
    const std::int64_t stride = DibRowBytes(side, 24);
    const auto pixelBytes = static_cast<std::size_t>(stride * side);
    PackedDib dib;
    dib.Adopt(PackedDib::AllocateBlock(pixelBytes), kDibPixelOffset + pixelBytes);
    if (!dib) __builtin_trap();
    std::memset(dib.get(), 0, kDibPixelOffset);
    BitmapInfoHeader* h = DibHeader(dib.get());
    h->biSize = sizeof(BitmapInfoHeader);
    h->biWidth = side, h->biHeight = side, h->biPlanes = 1, h->biBitCount = 24;
    h->biCompression = kBiRgb;
    h->biSizeImage = static_cast<std::uint32_t>(pixelBytes);
    for (std::size_t i = 0; i < pixelBytes; ++i) {
      DibPixels(dib.get())[i] = static_cast<std::uint8_t>(i * 31);
    }
    return dib;
  }();
  return picture;
}

// Installs a copy of the tiny picture under whatever path the saved game names.
inline bool InstallTinyPicture(const std::string& path) {
  const PackedDib& source = TinyPicture();
  PackedDib copy;
  copy.Adopt(PackedDib::AllocateBlock(source.blockBytes() - kDibPixelOffset), source.blockBytes());
  if (!copy) return false;
  std::memcpy(copy.get(), source.get(), source.blockBytes());
  return SetPuzzlePicture(std::move(copy), path.c_str());
}

// Built once per process: the dies (in memory, left open as the game's resource file) and a
// good save of a 3 x 4 game with pieces in a box and a group. The game is cut with the 1 x 1
// die, the smallest the cut takes: every load copies its die out of the resource file, and at
// 332 x 332 bytes that copy stays in the sanitizer's reused blocks instead of fresh pages; the
// larger dies stay in the file for inputs that name them. Saving needs a file; it is written
// under an absolute temporary path and removed at once (the working folder is never changed:
// libFuzzer opens the corpus files by the paths it was given).
inline const Bytes& Template() {
  static const Bytes dies = test::BuildResourceFile({test::DieBuilder(2, 2).Picture(5000),
                                                     test::DieBuilder(1, 1).Picture(5001),
                                                     test::DieBuilder(2, 3).Picture(5002)});
  static const Bytes bytes = [] {
    if (!TheResourceFile().OpenBytes(dies)) __builtin_trap();
    SetBoardSize(640, 480);
    if (!InstallTinyPicture("p.bmp")) __builtin_trap();
    EstadoPuzzle& p = Puzzle();
    p.NR = 3, p.NC = 4, p.scale = 1.0;
    if (!CrearPuzzle(1, 1, 5001, true)) __builtin_trap();
    p.areas[0].count = 2, p.areas[6].count = 10, p.areas[6].start = 2;
    for (int a = 1; a < 6; ++a) p.areas[a].start = 2;
    p.pieces[1].group = 2, p.pieces[5].group = 2, p.pieces[3].unselected = 0;
    const std::string path = (std::filesystem::temp_directory_path() /
                              ("qv_fuzz_template_" + std::to_string(getpid()) + ".epf"))
                                 .string();
    BoxNames names;
    if (!SaveGame(path.c_str(), true, "", names)) __builtin_trap();
    CerrarPuzzle(false);
    std::ifstream in(path, std::ios::binary);
    Bytes out{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    in.close();
    std::filesystem::remove(path);
    if (out.empty()) __builtin_trap();
    return out;
  }();
  return bytes;
}

// An odd first byte other than the magic's 'M': the rest is an offset (2 bytes) and bytes
// written over the good save from there; with bit 1 also set the file ends where the patch
// began. Otherwise the input is the file itself, so a whole saved game is a seed as it is.
inline std::span<const std::uint8_t> FileOf(const std::uint8_t* data, std::size_t size) {
  if (size < 3 || (data[0] & 1) == 0 || data[0] == 'M') return {data, size};
  static Bytes file;
  file = Template();
  const std::size_t start = (data[1] | (data[2] << 8)) % file.size();
  for (std::size_t i = 3; i < size && start + i - 3 < file.size(); ++i) {
    file[start + i - 3] = data[i];
  }
  if (data[0] & 2) file.resize(start);
  return file;
}

}  // namespace qv::fuzz
