// Fitting a photograph to the size of the built-in pictures, with an area-averaging filter.
#include "photo/photo_fit.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <vector>

namespace qv::photo {
namespace {

// Which source pixels one output pixel covers along one axis, and by how much.
struct Span {
  int first = 0;
  int count = 0;
  std::size_t weightAt = 0;  // index of its first weight in the shared weight list
};

struct Spans {
  std::vector<Span> spans;
  std::vector<double> weights;
};

Spans AreaSpans(int sourceSize, int outSize) {
  Spans result;
  result.spans.resize(static_cast<std::size_t>(outSize));
  const double scale = static_cast<double>(sourceSize) / outSize;
  for (int o = 0; o < outSize; ++o) {
    const double low = o * scale;
    // The last span ends exactly at the edge, so no rounding drift loses or invents a sliver.
    const double high = o + 1 == outSize ? sourceSize : (o + 1) * scale;
    Span& span = result.spans[static_cast<std::size_t>(o)];
    span.first = std::min(static_cast<int>(low), sourceSize - 1);
    span.weightAt = result.weights.size();
    for (int i = span.first; i < sourceSize && i < high; ++i) {
      const double covered = std::min(high, i + 1.0) - std::max(low, static_cast<double>(i));
      if (covered <= 0) continue;
      result.weights.push_back(covered / (high - low));
      ++span.count;
    }
  }
  return result;
}

std::uint8_t ToByte(double v) { return static_cast<std::uint8_t>(std::lround(std::clamp(v, 0.0, 255.0))); }

bool Sensible(const PixelRows& rows) {
  return rows.first != nullptr && rows.width > 0 && rows.height > 0 &&
         (rows.bytesPerPixel == 3 || rows.bytesPerPixel == 4) &&
         std::abs(rows.stride) >= static_cast<std::ptrdiff_t>(rows.width) * rows.bytesPerPixel;
}

const std::uint8_t* RowAt(const PixelRows& rows, int y) { return rows.first + y * rows.stride; }

}  // namespace

FitSize FittedPhotoSize(std::int64_t width, std::int64_t height) {
  if (width < 1 || height < 1 || width > kMaxPhotoPixels || height > kMaxPhotoPixels ||
      width * height > kMaxPhotoPixels) {
    return FitSize{};
  }
  const std::int64_t longSide = std::max(width, height);
  if (longSide <= kPhotoLongSide) return FitSize{true, static_cast<int>(width), static_cast<int>(height)};
  // Integer rounding to nearest (halves up): short = round(short * 1024 / long).
  auto scaled = [&](std::int64_t side) {
    return static_cast<int>(std::max<std::int64_t>(1, (side * 2 * kPhotoLongSide + longSide) / (2 * longSide)));
  };
  return FitSize{true, scaled(width), scaled(height)};
}

bool FitPhoto(const PixelRows& source, BgrPicture& out) {
  if (!Sensible(source)) return false;
  const FitSize size = FittedPhotoSize(source.width, source.height);
  if (!size.ok) return false;
  BgrPicture fitted(size.width, size.height);
  const int bpp = source.bytesPerPixel;
  if (size.width == source.width && size.height == source.height) {
    for (int y = 0; y < size.height; ++y) {
      const std::uint8_t* in = RowAt(source, y);
      std::uint8_t* to = fitted.pixel(0, y);
      for (int x = 0; x < size.width; ++x, in += bpp, to += 3) to[0] = in[0], to[1] = in[1], to[2] = in[2];
    }
    out = std::move(fitted);
    return true;
  }
  const Spans across = AreaSpans(source.width, size.width);
  const Spans down = AreaSpans(source.height, size.height);
  // One output row at a time: its source rows are averaged across, then added by their weight,
  // so the memory needed is two output rows whatever the source size.
  std::vector<double> acrossRow(static_cast<std::size_t>(size.width) * 3);
  std::vector<double> sum(acrossRow.size());
  for (int oy = 0; oy < size.height; ++oy) {
    std::fill(sum.begin(), sum.end(), 0.0);
    const Span& rowSpan = down.spans[static_cast<std::size_t>(oy)];
    for (int k = 0; k < rowSpan.count; ++k) {
      const std::uint8_t* in = RowAt(source, rowSpan.first + k);
      for (int ox = 0; ox < size.width; ++ox) {
        const Span& span = across.spans[static_cast<std::size_t>(ox)];
        const double* w = &across.weights[span.weightAt];
        const std::uint8_t* p = in + static_cast<std::ptrdiff_t>(span.first) * bpp;
        double b = 0, g = 0, r = 0;
        for (int i = 0; i < span.count; ++i, p += bpp) b += w[i] * p[0], g += w[i] * p[1], r += w[i] * p[2];
        double* a = &acrossRow[static_cast<std::size_t>(ox) * 3];
        a[0] = b, a[1] = g, a[2] = r;
      }
      const double rowWeight = down.weights[rowSpan.weightAt + static_cast<std::size_t>(k)];
      for (std::size_t i = 0; i < sum.size(); ++i) sum[i] += rowWeight * acrossRow[i];
    }
    std::uint8_t* to = fitted.pixel(0, oy);
    for (std::size_t i = 0; i < sum.size(); ++i) to[i] = ToByte(sum[i]);
  }
  out = std::move(fitted);
  return true;
}

}  // namespace qv::photo
