// A player's photograph made into a picture: the fitting and the game's own colour reduction,
// beside libimagequant (the build tool's, at the tool's settings) on the same 1024 x 768 picture.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "photo/colour_quantiser.h"
#include "photo/photo_fit.h"

#ifdef QV_WITH_LIBIMAGEQUANT
#include "assets/photo.h"
#include "assets/picture_set.h"
#include "assets/quantize.h"
#include "assets/rcc_bundle.h"
#endif

namespace {

// A seeded photograph-like picture of the given size: gradients, discs and grain.
qv::photo::BgrPicture Synthetic(int width, int height) {
  std::mt19937 random(1234);
  std::normal_distribution<float> grain(0.0f, 5.0f);
  qv::photo::BgrPicture picture(width, height);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      const float u = static_cast<float>(x) / width, v = static_cast<float>(y) / height;
      const bool disc = std::hypot(u - 0.6f, v - 0.4f) < 0.2f || std::hypot(u - 0.2f, v - 0.7f) < 0.1f;
      const float base[3] = {disc ? 40 + 150 * v : 200 * u, disc ? 160 * u : 120 + 100 * v, disc ? 30.0f : 255 * u * v};
      for (int k = 0; k < 3; ++k) {
        picture.pixel(x, y)[k] = static_cast<std::uint8_t>(std::lround(std::clamp(base[k] + grain(random), 0.0f, 255.0f)));
      }
    }
  }
  return picture;
}

// The kitten, one of the built-in photographs, fitted to 1024 x 768 when gcompris-qt-data and
// the tool's code are at hand; the synthetic picture otherwise.
const qv::photo::BgrPicture& Photo1024x768() {
  static const qv::photo::BgrPicture photo = [] {
#ifdef QV_WITH_LIBIMAGEQUANT
    for (const qv::assets::PictureChoice& choice : qv::assets::PictureChoices()) {
      if (std::string(choice.name) != "Kitten") continue;
      qv::assets::RccBundle bundle;
      std::vector<std::uint8_t> webp;
      qv::assets::RgbImage source;
      std::string error;
      if (!bundle.Load(std::string(QV_GCOMPRIS_RCC_DIR) + "/" + choice.bundle, error) ||
          !bundle.Read(choice.path, webp, error) || !qv::assets::DecodeWebp(webp, source, error)) {
        break;
      }
      std::vector<std::uint8_t> bgr(source.pixels.size() * 3);
      for (std::size_t i = 0; i < source.pixels.size(); ++i) {
        bgr[i * 3] = source.pixels[i].b, bgr[i * 3 + 1] = source.pixels[i].g, bgr[i * 3 + 2] = source.pixels[i].r;
      }
      qv::photo::BgrPicture fitted;
      if (qv::photo::FitPhoto({bgr.data(), source.width, source.height, source.width * 3, 3}, fitted) &&
          fitted.width == 1024 && fitted.height == 768) {
        return fitted;
      }
    }
#endif
    return Synthetic(1024, 768);
  }();
  return photo;
}

void BM_OwnQuantiser_1024x768(benchmark::State& state) {
  const qv::photo::BgrPicture& photo = Photo1024x768();
  qv::photo::QuantisedPicture out;
  for (auto _ : state) {
    benchmark::DoNotOptimize(qv::photo::QuantisePicture(photo, out, 1.0f));
  }
}
BENCHMARK(BM_OwnQuantiser_1024x768)->Unit(benchmark::kMillisecond);

#ifdef QV_WITH_LIBIMAGEQUANT
void BM_Libimagequant_1024x768(benchmark::State& state) {
  const qv::photo::BgrPicture& photo = Photo1024x768();
  qv::assets::RgbImage rgb(photo.width, photo.height);
  for (std::size_t i = 0; i < rgb.pixels.size(); ++i) {
    rgb.pixels[i] = {photo.bytes[i * 3 + 2], photo.bytes[i * 3 + 1], photo.bytes[i * 3]};
  }
  qv::assets::Image8 out;
  std::string error;
  for (auto _ : state) {
    benchmark::DoNotOptimize(qv::assets::ReduceTo256Colours(rgb, 1.0, out, error));
  }
}
BENCHMARK(BM_Libimagequant_1024x768)->Unit(benchmark::kMillisecond);
#endif

// A 12-megapixel camera picture fitted to 1024 x 768.
void BM_FitPhoto_4000x3000(benchmark::State& state) {
  static const qv::photo::BgrPicture camera = Synthetic(4000, 3000);
  qv::photo::BgrPicture out;
  for (auto _ : state) {
    benchmark::DoNotOptimize(qv::photo::FitPhoto({camera.bytes.data(), 4000, 3000, 4000 * 3, 3}, out));
  }
}
BENCHMARK(BM_FitPhoto_4000x3000)->Unit(benchmark::kMillisecond);

}  // namespace
