// Shared set-up of the engine tests: dies in a resource file, pictures, a texture, hook records.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <string>
#include <utility>
#include <vector>

#include "graphics/packed_dib.h"
#include "graphics/resource_file.h"
#include "puzzle/compose.h"
#include "puzzle/play.h"
#include "puzzle/puzzle_model.h"
#include "puzzle/texture.h"
#include "support/die_builder.h"
#include "support/rf_writer.h"
#include "system/random.h"

namespace qv::test {

// Die identifiers of the test resource file.
constexpr std::uint32_t kKnob2x2 = 5000;
constexpr std::uint32_t kDovetail2x2 = 5001;
constexpr std::uint32_t kBump2x2 = 5002;
constexpr std::uint32_t kKnob1x1 = 5100;
constexpr std::uint32_t kKnob3x2 = 5101;     // 3 rows, 2 columns
constexpr std::uint32_t kOffByOne = 5102;   // a 2 x 2 die one pixel too wide
constexpr std::uint32_t kPictureNotDie = 5103;  // right size, 24 bits

inline const std::string& TestResourcePath() {
  static const std::string path = [] {
    std::vector<RfPicture> pictures = {
        DieBuilder(2, 2, TabStyle::Knob).Picture(kKnob2x2),
        DieBuilder(2, 2, TabStyle::Dovetail).Picture(kDovetail2x2),
        DieBuilder(2, 2, TabStyle::Bump).Picture(kBump2x2),
        DieBuilder(1, 1, TabStyle::Knob).Picture(kKnob1x1),
        DieBuilder(3, 2, TabStyle::Knob).Picture(kKnob3x2),
        PatternPicture(kOffByOne, 2 * 200 + 133, 2 * 200 + 132, 8, 256),
        PatternPicture(kPictureNotDie, 2 * 200 + 132, 2 * 200 + 132, 24, 0),
    };
    const std::string file = ProcessTempPath("engine_dies.rf");
    WriteBytes(file, BuildResourceFile(pictures));
    return file;
  }();
  return path;
}

// A picture whose every pixel has its own colour, so a pixel of the atlas names its source.
inline PackedDib MakeUniquePicture24(int width, int height) {
  PackedDib dib;
  const auto stride = DibRowBytes(width, 24);
  HIMAGE block = PackedDib::AllocateBlock(static_cast<std::size_t>(stride * height));
  dib.Adopt(block, kDibPixelOffset + static_cast<std::size_t>(stride * height));
  BitmapInfoHeader h{};
  h.biSize = 40;
  h.biWidth = width;
  h.biHeight = height;
  h.biPlanes = 1;
  h.biBitCount = 24;
  h.biSizeImage = static_cast<std::uint32_t>(stride * height);
  *DibHeader(block) = h;
  for (int y = 0; y < height; ++y) {  // y from the top
    std::uint8_t* row = DibPixels(block) + (height - 1 - y) * stride;
    for (int x = 0; x < width; ++x) {
      row[x * 3 + 0] = static_cast<std::uint8_t>(x);
      row[x * 3 + 1] = static_cast<std::uint8_t>(y);
      row[x * 3 + 2] = static_cast<std::uint8_t>((x >> 8) | ((y >> 8) << 4));
    }
  }
  return dib;
}

inline PackedDib MakePicture8(int width, int height) {
  PackedDib dib;
  dib.Allocate(width, height);
  HIMAGE block = dib.get();
  DibHeader(block)->biClrUsed = 256;
  for (int c = 0; c < 256; ++c) {
    DibColours(block)[c] = RgbQuad{static_cast<std::uint8_t>(c), static_cast<std::uint8_t>(c / 2),
                                   static_cast<std::uint8_t>(255 - c), 0};
  }
  const auto stride = DibRowBytes(width, 8);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      DibPixels(block)[(height - 1 - y) * stride + x] = static_cast<std::uint8_t>(x * 3 + y * 7);
    }
  }
  return dib;
}

// A 100 x 100 tile: index (column + 2 row) % 256 (row from the top), colour (i, i, 200), so a
// composed pixel tells which tile pixel it came from.
inline PackedDib MakeTexture() {
  PackedDib dib;
  dib.Allocate(100, 100);
  HIMAGE block = dib.get();
  DibHeader(block)->biClrUsed = 256;
  for (int c = 0; c < 256; ++c) {
    DibColours(block)[c] = RgbQuad{static_cast<std::uint8_t>(c), static_cast<std::uint8_t>(c), 200, 0};
  }
  const auto stride = DibRowBytes(100, 8);
  for (int y = 0; y < 100; ++y) {
    for (int x = 0; x < 100; ++x) {
      DibPixels(block)[(99 - y) * stride + x] = static_cast<std::uint8_t>((x + 2 * y) % 256);
    }
  }
  return dib;
}

// The colour the texture gives surface pixel (x, y).
inline void TextureColour(int x, int y, std::uint8_t bgr[3]) {
  const auto i = static_cast<std::uint8_t>(((x % 100) + 2 * (y % 100)) % 256);
  bgr[0] = i;
  bgr[1] = i;
  bgr[2] = 200;
}

struct HookLog {
  std::vector<std::pair<int, int>> notifications;  // area, code
  std::vector<std::vector<int>> invalidated;       // area, x, y, w, h
  std::vector<std::uint32_t> clock;
  int clockStarts = 0;
  int clockStops = 0;
  int sounds = 0;
  int finished = 0;
  int changed = 0;
  int previews = 0;
  std::vector<int> hiddenBoxes;

  static HookLog& Current() {
    static HookLog log;
    return log;
  }
  static EngineHooks Hooks() {
    EngineHooks h;
    h.areaNotify = [](void*, int area, int code) { Current().notifications.emplace_back(area, code); };
    h.invalidate = [](void*, int area, int x, int y, int w, int hgt) {
      Current().invalidated.push_back({area, x, y, w, hgt});
    };
    h.clockDisplay = [](void*, std::uint32_t total, int, int, int) { Current().clock.push_back(total); };
    h.startClock = [](void*) { ++Current().clockStarts; };
    h.stopClock = [](void*) { ++Current().clockStops; };
    h.joinSound = [](void*) { ++Current().sounds; };
    h.gameFinished = [](void*) { ++Current().finished; };
    h.gameChanged = [](void*) { ++Current().changed; };
    h.previewChanged = [](void*) { ++Current().previews; };
    h.hideBox = [](void*, int box) { Current().hiddenBoxes.push_back(box); };
    return h;
  }
};

// Every engine test starts from a shut-down engine with the test dies open and a texture set.
class EngineTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ShutdownEngine();
    if (!TheResourceFile().IsOpen()) {
      ASSERT_TRUE(OpenResourceFile(TestResourcePath().c_str()));
    }
    texture_ = MakeTexture();
    ASSERT_TRUE(MosaicoPuzzle(texture_.get()));
    HookLog::Current() = HookLog{};
    SetEngineHooks(HookLog::Hooks());
    SeedRandom(20240611);
  }
  void TearDown() override { ShutdownEngine(); }

  HookLog& log() { return HookLog::Current(); }

  // Creates all seven areas (boxes 300 x 300, the board at the given size) and cuts a
  // unique-colour picture into rows x columns with the die.
  bool StartGame(int pictureWidth, int pictureHeight, int rows, int columns,
                 std::uint32_t die = kKnob2x2, int dieRows = 2, int dieCols = 2,
                 int boardWidth = 900, int boardHeight = 700, bool scatter = true) {
    for (int box = 0; box < kBoxCount; ++box) {
      if (!CreateBoxArea(box, static_cast<std::uintptr_t>(1000 + box))) return false;
      if (!ResizeArea(box, 300, 300)) return false;
    }
    if (!CreateBoardArea()) return false;
    SetBoardSize(boardWidth, boardHeight);
    if (!ResizeArea(AREA_TABLERO, boardWidth, boardHeight)) return false;
    if (!SetPuzzlePicture(MakeUniquePicture24(pictureWidth, pictureHeight), "C:\\Image\\t.bmp")) {
      return false;
    }
    Puzzle().NR = rows;
    Puzzle().NC = columns;
    Puzzle().scale = 1.0;
    if (!CrearPuzzle(dieRows, dieCols, die, scatter)) return false;
    ComposeAllAreas(false);
    return true;
  }

  PackedDib texture_;
};

}  // namespace qv::test
