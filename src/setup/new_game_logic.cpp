// The new-game screen's decisions and picture composing, kept free of the window system.
#include "setup/new_game_logic.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstring>

#include "graphics/himage_ops.h"
#include "system/assert.h"

namespace qv::newgame {

Point TabPosition(int tab) {
  constexpr Point kTabs[kTabCount] = {{0, 63}, {0, 109}, {0, 157}, {0, 203}};
  return kTabs[std::clamp(tab, 0, kTabCount - 1)];
}

std::uint32_t TabImage(int tab, int language) {
  return kTabImageBase + 10u * static_cast<std::uint32_t>(tab) +
         static_cast<std::uint32_t>(language);
}

std::uint32_t HeadingImage(int tab, int language) {
  return kHeadingImageBase + 10u * static_cast<std::uint32_t>(tab) +
         static_cast<std::uint32_t>(language);
}

Point ShapeOptionPosition(int index) {
  constexpr Point kPlaces[kShapePlaces] = {{371, 78},  {427, 78},  {482, 78},
                                           {371, 134}, {427, 134}, {482, 134}};
  if (!QV_CHECK(index >= 0 && index < kShapePlaces,
                "ajustar este switch al valor de NUM_PIEZAS")) {
    return kPlaces[0];
  }
  return kPlaces[index];
}

int NextShape(int shape) { return (shape + 1) % kShapeCount; }

std::vector<RollStep> RollSteps() {
  std::vector<RollStep> steps;
  for (int h = kRollStart; h >= 0; h -= kRollStride) steps.push_back(RollStep{h, kRollStart - h});
  return steps;
}

// ---- Pages --------------------------------------------------------------------------------

namespace {

// The pictures and the own-picture tile after them.
int ItemCount(int pictures) { return std::max(0, pictures) + 1; }

}  // namespace

int ClampFirst(int first, int count) {
  return std::clamp(first, 0, std::max(0, ItemCount(count) - kTileCount));
}

PicturePage NextPage(PicturePage page) {
  page.first = ClampFirst(page.first + kTileCount, page.count);
  return page;
}

PicturePage PreviousPage(PicturePage page) {
  page.first = ClampFirst(page.first - kTileCount, page.count);
  return page;
}

bool CanPageBack(const PicturePage& page) { return page.first > 0; }
bool CanPageOn(const PicturePage& page) { return page.first + kTileCount < ItemCount(page.count); }

int PictureOfTile(const PicturePage& page, int tile) {
  if (tile < 0 || tile >= kTileCount) return -1;
  const int picture = page.first + tile;
  return picture >= 0 && picture < page.count ? picture : -1;
}

int OwnPictureTile(const PicturePage& page) {
  const int tile = std::max(0, page.count) - page.first;
  return tile >= 0 && tile < kTileCount ? tile : -1;
}

PicturePage PageShowing(PicturePage page, int picture) {
  if (picture < page.first) {
    page.first = picture;
  } else if (picture >= page.first + kTileCount) {
    page.first = picture - (kTileCount - 1);
  }
  page.first = ClampFirst(page.first, page.count);
  return page;
}

Rect TileRect(int tile) { return Rect{140 + 88 * std::clamp(tile, 0, kTileCount - 1), 84, 80, 80}; }

Rect PageArrowRect(bool forward) { return forward ? Rect{578, 96, 22, 56} : Rect{112, 96, 22, 56}; }

int PictureNumber(const std::string& fileName) {
  const std::size_t dot = fileName.find('.');
  if (dot == std::string::npos || dot == 0 || dot > 2) return 0;
  std::string extension = fileName.substr(dot);
  for (char& c : extension) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  if (extension != ".bmp") return 0;
  int number = 0;
  for (std::size_t i = 0; i < dot; ++i) {
    if (!std::isdigit(static_cast<unsigned char>(fileName[i]))) return 0;
    number = number * 10 + (fileName[i] - '0');
  }
  return number;
}

void SortPictureNames(std::vector<std::string>& names) {
  auto lower = [](std::string text) {
    for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return text;
  };
  std::stable_sort(names.begin(), names.end(), [&](const std::string& a, const std::string& b) {
    const int na = PictureNumber(a);
    const int nb = PictureNumber(b);
    if ((na > 0) != (nb > 0)) return na > 0;
    if (na > 0 && na != nb) return na < nb;
    return lower(a) < lower(b);
  });
}

Size FitWithin(int width, int height, int boxWidth, int boxHeight) {
  if (width < 1 || height < 1 || boxWidth < 1 || boxHeight < 1) return Size{1, 1};
  // Compare the proportions in 64 bits: picture sizes come from files.
  if (std::int64_t{width} * boxHeight >= std::int64_t{height} * boxWidth) {
    const auto h = static_cast<int>(std::int64_t{height} * boxWidth / width);
    return Size{boxWidth, std::max(1, h)};
  }
  const auto w = static_cast<int>(std::int64_t{width} * boxHeight / height);
  return Size{std::max(1, w), boxHeight};
}

// ---- Size and count ---------------------------------------------------------------------------

int StepPercentage(int percentage, int delta) { return std::clamp(percentage + delta, 0, 100); }

CountTexts CountValueTexts(const PickerState& state) {
  if (!PickerHasPicture(state)) return CountTexts{"-", "-", "-"};
  return CountTexts{std::to_string(state.rows), std::to_string(state.columns),
                    std::to_string(PickerPieceCount(state))};
}

Point CountLabelPosition(int line) { return Point{410, 80 + 40 * std::clamp(line, 0, 2)}; }

int CountValueX(int labelRight) { return labelRight + 6; }

namespace {

int Round(double v) { return static_cast<int>(std::lround(v)); }

}  // namespace

SizePreview SizePreviewLayout(int windowWidth, int windowHeight, int boardWidth, int boardHeight,
                              int pictureWidth, int pictureHeight, double scale) {
  SizePreview preview{};
  // A margin of a few pixels keeps the table's edge visible.
  const Size board = FitWithin(boardWidth, boardHeight, windowWidth - 8, windowHeight - 8);
  preview.board = Rect{(windowWidth - board.width) / 2, (windowHeight - board.height) / 2,
                       board.width, board.height};
  if (boardWidth < 1 || pictureWidth < 1 || pictureHeight < 1 || !(scale > 0.0)) {
    preview.picture = Rect{preview.board.x + board.width / 2, preview.board.y + board.height / 2,
                           0, 0};
    return preview;
  }
  const double shrink = static_cast<double>(board.width) / boardWidth;
  const int w = std::max(1, Round(pictureWidth * scale * shrink));
  const int h = std::max(1, Round(pictureHeight * scale * shrink));
  preview.picture = Rect{preview.board.x + (board.width - w) / 2,
                         preview.board.y + (board.height - h) / 2, w, h};
  return preview;
}

Rect CountPreviewLayout(int windowWidth, int windowHeight, int pictureWidth, int pictureHeight) {
  const Size fit = FitWithin(pictureWidth, pictureHeight, windowWidth - 8, windowHeight - 8);
  return Rect{(windowWidth - fit.width) / 2, (windowHeight - fit.height) / 2, fit.width,
              fit.height};
}

int GridLine(int i, int cells, int extent) {
  if (cells < 1) return 0;
  return static_cast<int>(std::int64_t{extent} * i / cells);
}

// ---- True colour ------------------------------------------------------------------------------

namespace {

bool Usable(HIMAGE image) {
  return image && ImageWidth(image) > 0 && ImageHeight(image) > 0 &&
         (ImageBitCount(image) == 8 || ImageBitCount(image) == 24);
}

PackedDib NewTrueColour(int width, int height) {
  PackedDib dib;
  const std::int64_t stride = DibRowBytes(width, 24);
  HIMAGE block = PackedDib::AllocateBlock(static_cast<std::size_t>(stride * height));
  if (!block) return dib;
  BitmapInfoHeader header{};
  header.biSize = 40;
  header.biWidth = width;
  header.biHeight = height;
  header.biPlanes = 1;
  header.biBitCount = 24;
  header.biCompression = kBiRgb;
  header.biSizeImage = static_cast<std::uint32_t>(stride * height);
  std::memcpy(block, &header, sizeof header);
  dib.Adopt(block, kDibPixelOffset + static_cast<std::size_t>(stride * height));
  return dib;
}

// Blue, green, red of a source pixel.
void ReadPixel(HIMAGE source, int x, int y, std::uint8_t out[3]) {
  const std::uint8_t* p = ImagePixel(source, x, y);
  if (ImageBitCount(source) == 24) {
    std::memcpy(out, p, 3);
    return;
  }
  const RgbQuad& q = DibColours(source)[*p];
  out[0] = q.rgbBlue;
  out[1] = q.rgbGreen;
  out[2] = q.rgbRed;
}

}  // namespace

PackedDib TrueColourCopy(HIMAGE source) {
  if (!Usable(source)) return PackedDib();
  PackedDib copy = NewTrueColour(ImageWidth(source), ImageHeight(source));
  if (copy) PastePicture(copy.get(), 0, 0, source);
  return copy;
}

bool PastePicture(HIMAGE destination, int x, int y, HIMAGE source) {
  if (!Usable(source) || !destination || ImageBitCount(destination) != 24) return false;
  const int left = std::max(0, x);
  const int top = std::max(0, y);
  const int right = std::min(ImageWidth(destination), x + ImageWidth(source));
  const int bottom = std::min(ImageHeight(destination), y + ImageHeight(source));
  for (int row = top; row < bottom; ++row) {
    for (int column = left; column < right; ++column) {
      ReadPixel(source, column - x, row - y, ImagePixel(destination, column, row));
    }
  }
  return true;
}

namespace {

struct Colour {
  double blue, green, red;
};

// Whether the point lies inside the arrow: a triangle pointing left or right, centred in the
// frame, drawn with a soft edge one pixel wide.
double ArrowCoverage(double px, double py, int width, int height, bool forward) {
  const double cx = width / 2.0;
  const double cy = height / 2.0;
  const double half = std::min(width * 0.42, height * 0.3);
  // Distance from the triangle's inside, measured along each edge's normal.
  double dx = px - cx;
  if (!forward) dx = -dx;
  const double dy = py - cy;
  // Tip at (+half, 0), base at x = -half from y -half*1.2 to +half*1.2.
  const double baseHalf = half * 1.2;
  const double dBase = -half - dx;  // > 0 outside the base
  const double slope = baseHalf / (2 * half);
  const double norm = std::sqrt(1 + slope * slope);
  const double dTop = (-(dy) - slope * (half - dx)) / norm;  // edges meeting at the tip
  const double dBottom = ((dy) - slope * (half - dx)) / norm;
  const double outside = std::max({dBase, dTop, dBottom});
  return std::clamp(0.5 - outside, 0.0, 1.0);
}

}  // namespace

PackedDib PageArrowStrip(HIMAGE background, const Rect& place, bool forward) {
  if (!background || ImageBitCount(background) != 24 || place.width < 4 || place.height < 4) {
    return PackedDib();
  }
  constexpr int kFrames = 3;
  PackedDib strip = NewTrueColour(place.width, place.height * kFrames);
  if (!strip) return strip;
  // Brass for the normal look, bright gold when hovered, dark bronze when pressed, each with a
  // darker rim so that the arrow reads on parchment.
  const Colour fills[kFrames] = {{40, 110, 160}, {70, 190, 240}, {25, 70, 115}};
  const Colour rim{20, 45, 75};
  for (int frame = 0; frame < kFrames; ++frame) {
    const int shift = frame == 2 ? 1 : 0;  // the pressed arrow sinks a pixel
    for (int y = 0; y < place.height; ++y) {
      for (int x = 0; x < place.width; ++x) {
        std::uint8_t under[3] = {0, 0, 0};
        const int bx = place.x + x;
        const int by = place.y + y;
        if (bx >= 0 && by >= 0 && bx < ImageWidth(background) && by < ImageHeight(background)) {
          std::memcpy(under, ImagePixel(background, bx, by), 3);
        }
        const double px = x + 0.5 - shift;
        const double py = y + 0.5 - shift;
        const double outer = ArrowCoverage(px, py, place.width, place.height, forward);
        // The fill is the same triangle two pixels smaller on each side; the rest is rim.
        const double innerCov =
            ArrowCoverage(px - 2, py - 2, place.width - 4, place.height - 4, forward);
        const Colour& fill = fills[frame];
        std::uint8_t* out = ImagePixel(strip.get(), x, frame * place.height + y);
        const double pick[3] = {rim.blue + (fill.blue - rim.blue) * innerCov,
                                rim.green + (fill.green - rim.green) * innerCov,
                                rim.red + (fill.red - rim.red) * innerCov};
        for (int c = 0; c < 3; ++c) {
          out[c] = static_cast<std::uint8_t>(std::lround(under[c] + (pick[c] - under[c]) * outer));
        }
      }
    }
  }
  return strip;
}

}  // namespace qv::newgame
