// Photographs: WebP decoding and high-quality resizing before the reduction to 256 colours.
#include "assets/photo.h"

#include <webp/decode.h>

#include <algorithm>
#include <cmath>

namespace qv::assets {
namespace {

double Sinc(double x) {
  if (std::fabs(x) < 1e-9) return 1;
  return std::sin(M_PI * x) / (M_PI * x);
}

double Lanczos3(double x) { return std::fabs(x) < 3 ? Sinc(x) * Sinc(x / 3) : 0; }

struct Tap {
  int first = 0;
  std::vector<double> weights;
};

// For each output position, the input positions it reads and their normalised weights.
std::vector<Tap> Taps(int inSize, int outSize) {
  const double scale = static_cast<double>(inSize) / outSize;
  const double support = 3 * std::max(1.0, scale);
  const double stretch = std::max(1.0, scale);
  std::vector<Tap> taps(outSize);
  for (int o = 0; o < outSize; ++o) {
    const double centre = (o + 0.5) * scale - 0.5;
    const int first = static_cast<int>(std::ceil(centre - support));
    const int last = static_cast<int>(std::floor(centre + support));
    Tap& tap = taps[o];
    tap.first = first;
    double total = 0;
    for (int i = first; i <= last; ++i) {
      const double w = Lanczos3((i - centre) / stretch);
      tap.weights.push_back(w);
      total += w;
    }
    for (double& w : tap.weights) w /= total;
  }
  return taps;
}

std::uint8_t Clamp8(double v) { return static_cast<std::uint8_t>(std::lround(std::clamp(v, 0.0, 255.0))); }

}  // namespace

bool DecodeWebp(const std::vector<std::uint8_t>& bytes, RgbImage& image, std::string& error) {
  int width = 0, height = 0;
  if (bytes.empty() || !WebPGetInfo(bytes.data(), bytes.size(), &width, &height) || width < 1 ||
      height < 1 || width > 16384 || height > 16384) {
    error = "not a WebP picture libwebp can read";
    return false;
  }
  RgbImage decoded(width, height);
  const std::size_t stride = static_cast<std::size_t>(width) * 3;
  if (!WebPDecodeRGBInto(bytes.data(), bytes.size(), reinterpret_cast<std::uint8_t*>(decoded.pixels.data()),
                         decoded.pixels.size() * 3, static_cast<int>(stride))) {
    error = "the WebP picture is damaged";
    return false;
  }
  image = std::move(decoded);
  return true;
}

void FittedSize(int width, int height, int longSide, int& outWidth, int& outHeight) {
  const int longest = std::max(width, height);
  if (longest <= longSide) {
    outWidth = width;
    outHeight = height;
    return;
  }
  const double scale = static_cast<double>(longSide) / longest;
  outWidth = std::max(1, static_cast<int>(std::lround(width * scale)));
  outHeight = std::max(1, static_cast<int>(std::lround(height * scale)));
}

RgbImage Resize(const RgbImage& image, int width, int height) {
  if (width == image.width && height == image.height) return image;
  const std::vector<Tap> across = Taps(image.width, width);
  const std::vector<Tap> down = Taps(image.height, height);
  // Rows first into a floating-point buffer, then columns, so rounding happens once.
  std::vector<double> rows(static_cast<std::size_t>(width) * image.height * 3);
  for (int y = 0; y < image.height; ++y) {
    for (int x = 0; x < width; ++x) {
      double sum[3] = {0, 0, 0};
      const Tap& tap = across[x];
      for (std::size_t k = 0; k < tap.weights.size(); ++k) {
        const int sx = std::clamp(tap.first + static_cast<int>(k), 0, image.width - 1);
        const Rgb& c = image.at(sx, y);
        sum[0] += tap.weights[k] * c.r;
        sum[1] += tap.weights[k] * c.g;
        sum[2] += tap.weights[k] * c.b;
      }
      double* out = &rows[(static_cast<std::size_t>(y) * width + x) * 3];
      out[0] = sum[0], out[1] = sum[1], out[2] = sum[2];
    }
  }
  RgbImage result(width, height);
  for (int y = 0; y < height; ++y) {
    const Tap& tap = down[y];
    for (int x = 0; x < width; ++x) {
      double sum[3] = {0, 0, 0};
      for (std::size_t k = 0; k < tap.weights.size(); ++k) {
        const int sy = std::clamp(tap.first + static_cast<int>(k), 0, image.height - 1);
        const double* in = &rows[(static_cast<std::size_t>(sy) * width + x) * 3];
        sum[0] += tap.weights[k] * in[0];
        sum[1] += tap.weights[k] * in[1];
        sum[2] += tap.weights[k] * in[2];
      }
      result.at(x, y) = {Clamp8(sum[0]), Clamp8(sum[1]), Clamp8(sum[2])};
    }
  }
  return result;
}

}  // namespace qv::assets
