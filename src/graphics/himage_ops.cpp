// The raster copies and clipping of packed DIB pictures, working on the pixel memory directly.
#include "graphics/himage_ops.h"

#include <algorithm>
#include <cstring>

#include "system/assert.h"

namespace qv {

namespace {

// Where an edge lies against a span: before it, inside it (ends included) or after it.
enum EdgeClass { kBefore = 0, kInside = 1, kAfter = 2 };

EdgeClass ClassOf(long long edge, long long start, long long end) {
  if (edge < start) return kBefore;
  if (edge > end) return kAfter;
  return kInside;
}

// Eight bytes at a time: a byte loop of read-modify-write costs many times a copy.
template <typename Op>
void CombineWords(std::uint8_t* __restrict to, const std::uint8_t* __restrict from, int bytes,
                  Op op) {
  int i = 0;
  for (; i + 8 <= bytes; i += 8) {
    std::uint64_t a, b;
    std::memcpy(&a, to + i, 8);
    std::memcpy(&b, from + i, 8);
    a = op(a, b);
    std::memcpy(to + i, &a, 8);
  }
  for (; i < bytes; ++i) {
    to[i] = static_cast<std::uint8_t>(op(to[i], from[i]));
  }
}

// Distinct pictures never overlap, which lets the compiler vectorise these loops.
void CombineRow(std::uint8_t* __restrict to, const std::uint8_t* __restrict from, int bytes,
                std::uint32_t rop) {
  switch (rop) {
    case kRopSrcCopy:
      std::memcpy(to, from, static_cast<std::size_t>(bytes));
      break;
    case kRopSrcAnd:
      CombineWords(to, from, bytes, [](std::uint64_t a, std::uint64_t b) { return a & b; });
      break;
    case kRopSrcInvert:
      CombineWords(to, from, bytes, [](std::uint64_t a, std::uint64_t b) { return a ^ b; });
      break;
    default:
      break;
  }
}

// Within one picture the walk goes from the last byte to the first, as the copy is defined;
// that order decides the result when the two rectangles overlap.
void CombineRowBackwards(std::uint8_t* to, const std::uint8_t* from, int bytes,
                         std::uint32_t rop) {
  for (int i = bytes - 1; i >= 0; --i) {
    switch (rop) {
      case kRopSrcCopy: to[i] = from[i]; break;
      case kRopSrcAnd: to[i] &= from[i]; break;
      case kRopSrcInvert: to[i] ^= from[i]; break;
      default: return;
    }
  }
}

}  // namespace

bool ClipRect(const ImageRect& a, const ImageRect& b, int mode, ImageRect* out) {
  if (out) *out = ImageRect{0, 0, 0, 0};
  const bool negative = a.width < 0 || a.height < 0 || b.width < 0 || b.height < 0;
  const bool flat = (a.width == 0 && b.width == 0) || (a.height == 0 && b.height == 0);
  if (!QV_CHECK(!negative && !flat, "valores de tamaño invalidos")) return false;

  const long long bRight = static_cast<long long>(b.x) + b.width;
  const long long bBottom = static_cast<long long>(b.y) + b.height;
  const long long aRight = static_cast<long long>(a.x) + a.width;
  const long long aBottom = static_cast<long long>(a.y) + a.height;
  const bool overlap = ClassOf(aRight, b.x, bRight) != kBefore &&
                       ClassOf(a.x, b.x, bRight) != kAfter &&
                       ClassOf(aBottom, b.y, bBottom) != kBefore &&
                       ClassOf(a.y, b.y, bBottom) != kAfter;
  if (!out) return overlap;
  if (mode == 2 && overlap) {
    const long long left = std::max<long long>(a.x, b.x);
    const long long top = std::max<long long>(a.y, b.y);
    *out = ImageRect{static_cast<int>(left), static_cast<int>(top),
                     static_cast<int>(std::min(aRight, bRight) - left),
                     static_cast<int>(std::min(aBottom, bBottom) - top)};
  } else if (mode == 1) {
    const long long left = std::min<long long>(a.x, b.x);
    const long long top = std::min<long long>(a.y, b.y);
    *out = ImageRect{static_cast<int>(left), static_cast<int>(top),
                     static_cast<int>(std::max(aRight, bRight) - left),
                     static_cast<int>(std::max(aBottom, bBottom) - top)};
  }
  return overlap;
}

bool ImageRasterCopy(HIMAGE destination, int dx, int dy, int width, int height, HIMAGE source,
                     int sx, int sy, std::uint32_t rop) {
  if (!QV_CHECK(destination && source, "manipuladores invalidos")) return false;
  if (!QV_CHECK(ImageBytesPerPixel(destination) == ImageBytesPerPixel(source),
                "para llamar esta funcion es necesario que los HIMAGE refieran a dos bitmaps "
                "con el mismo conteo de bits por pixel")) {
    return false;
  }
  // Palettes are compared by their entry counts only, not their colours: pictures of one
  // screen share a table, and the copy itself never looks at colours.
  if (!QV_CHECK(DibHeader(destination)->biClrUsed == DibHeader(source)->biClrUsed,
                "para llamar esta funcion es necesario que los HIMAGE refieran a dos bitmaps "
                "con la misma paleta")) {
    return false;
  }
  if (width == 0 || height == 0) return true;

  ImageRect target;
  const ImageRect wanted{dx, dy, width, height};
  const ImageRect destinationArea{0, 0, ImageWidth(destination), ImageHeight(destination)};
  if (!ClipRect(wanted, destinationArea, 2, &target) || target.width <= 0 ||
      target.height <= 0) {
    return true;
  }
  const ImageRect moved{sx + (target.x - dx), sy + (target.y - dy), target.width,
                        target.height};
  ImageRect from;
  const ImageRect sourceArea{0, 0, ImageWidth(source), ImageHeight(source)};
  if (!ClipRect(moved, sourceArea, 2, &from) || from.width <= 0 || from.height <= 0) {
    return true;
  }
  const int toX = target.x + (from.x - moved.x);
  const int toY = target.y + (from.y - moved.y);
  const int rowBytes = from.width * ImageBytesPerPixel(source);

  if (destination == source) {
    for (int row = from.height - 1; row >= 0; --row) {
      CombineRowBackwards(ImagePixel(destination, toX, toY + row),
                          ImagePixel(source, from.x, from.y + row), rowBytes, rop);
    }
  } else {
    for (int row = from.height - 1; row >= 0; --row) {
      CombineRow(ImagePixel(destination, toX, toY + row),
                 ImagePixel(source, from.x, from.y + row), rowBytes, rop);
    }
  }
  return true;
}

bool ImageCopyColourTable(HIMAGE source, HIMAGE destination) {
  if (!QV_CHECK(source && destination, "manipuladores invalidos")) return false;
  if (!QV_CHECK(ImageBitCount(source) <= 8 && ImageBitCount(destination) <= 8,
                "los bitmaps deben ser indexados")) {
    return false;
  }
  const std::uint32_t colours = DibHeader(source)->biClrUsed;
  if (!QV_CHECK(colours != 0, "valor invalido")) return false;
  if (!QV_CHECK(colours <= kDibColourSlots, "valor invalido")) return false;
  DibHeader(destination)->biBitCount = DibHeader(source)->biBitCount;
  DibHeader(destination)->biClrUsed = colours;
  std::memcpy(DibColours(destination), DibColours(source), 4 * std::size_t{colours});
  return true;
}

bool ImageStretchMaskCopy(HIMAGE destination, const ImageRect& to, HIMAGE source,
                          const ImageRect& from, std::uint32_t rop) {
  if (!QV_CHECK(destination && source, "manipuladores invalidos")) return false;
  if (!QV_CHECK(rop == kRopSrcAnd, "otro rop distinto a este no es soportado en el modo no gdi")) {
    return false;
  }
  if (!QV_CHECK(ImageBytesPerPixel(destination) == ImageBytesPerPixel(source),
                "para llamar esta funcion es necesario que los HIMAGE refieran a dos bitmaps "
                "con el mismo conteo de bits por pixel")) {
    return false;
  }
  if (to.width <= 0 || to.height <= 0 || from.width <= 0 || from.height <= 0) return true;

  const int bytesPerPixel = ImageBytesPerPixel(source);
  const double xRatio = static_cast<double>(from.width) / to.width;
  const double yRatio = static_cast<double>(from.height) / to.height;
  const int left = std::max(to.x, 0);
  const int top = std::max(to.y, 0);
  const int right = std::min<long long>(static_cast<long long>(to.x) + to.width,
                                        ImageWidth(destination));
  const int bottom = std::min<long long>(static_cast<long long>(to.y) + to.height,
                                         ImageHeight(destination));
  for (int y = top; y < bottom; ++y) {
    const int fromY = from.y + static_cast<int>((y - to.y) * yRatio);
    if (fromY < 0 || fromY >= ImageHeight(source)) continue;
    for (int x = left; x < right; ++x) {
      const int fromX = from.x + static_cast<int>((x - to.x) * xRatio);
      if (fromX < 0 || fromX >= ImageWidth(source)) continue;
      std::uint8_t* pixel = ImagePixel(destination, x, y);
      const std::uint8_t* mask = ImagePixel(source, fromX, fromY);
      for (int b = 0; b < bytesPerPixel; ++b) pixel[b] &= mask[b];
    }
  }
  return true;
}

}  // namespace qv
