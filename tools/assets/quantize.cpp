// Reduction of 24-bit pictures to 256 colours (libimagequant; build tool only, never the game).
#include "assets/quantize.h"

#include <libimagequant.h>

#include <memory>
#include <vector>

// libimagequant spreads work over OpenMP threads; one thread keeps its sums in a fixed order, so
// the same picture always gets the same palette (and the shared build machine stays free).
extern "C" void omp_set_num_threads(int);

namespace qv::assets {
namespace {

struct AttrDeleter {
  void operator()(liq_attr* a) const { liq_attr_destroy(a); }
};
struct ImageDeleter {
  void operator()(liq_image* i) const { liq_image_destroy(i); }
};
struct HistogramDeleter {
  void operator()(liq_histogram* h) const { liq_histogram_destroy(h); }
};
struct ResultDeleter {
  void operator()(liq_result* r) const { liq_result_destroy(r); }
};

}  // namespace

bool ReduceTo256Colours(const RgbImage& picture, double dithering, Image8& out, std::string& error,
                        const std::vector<Rgb>& fixed, int speed) {
  omp_set_num_threads(1);
  if (picture.width < 1 || picture.height < 1) {
    error = "an empty picture cannot be reduced";
    return false;
  }
  std::vector<std::uint8_t> rgba;
  rgba.reserve(picture.pixels.size() * 4);
  for (const Rgb& c : picture.pixels) {
    rgba.insert(rgba.end(), {c.r, c.g, c.b, 255});
  }
  std::unique_ptr<liq_attr, AttrDeleter> attr(liq_attr_create());
  if (!attr || liq_set_max_colors(attr.get(), 256) != LIQ_OK || liq_set_speed(attr.get(), speed) != LIQ_OK) {
    error = "libimagequant could not be set up";
    return false;
  }
  std::unique_ptr<liq_image, ImageDeleter> image(
      liq_image_create_rgba(attr.get(), rgba.data(), picture.width, picture.height, 0));
  for (const Rgb& c : fixed) {
    if (image && liq_image_add_fixed_color(image.get(), liq_color{c.r, c.g, c.b, 255}) != LIQ_OK) {
      error = "libimagequant refused a fixed colour";
      return false;
    }
  }
  liq_result* raw = nullptr;
  if (!image || liq_image_quantize(image.get(), attr.get(), &raw) != LIQ_OK) {
    error = "libimagequant could not find a palette";
    return false;
  }
  std::unique_ptr<liq_result, ResultDeleter> result(raw);
  liq_set_dithering_level(result.get(), static_cast<float>(dithering));
  Image8 reduced(picture.width, picture.height);
  if (liq_write_remapped_image(result.get(), image.get(), reduced.pixels.data(), reduced.pixels.size()) !=
      LIQ_OK) {
    error = "libimagequant could not map the picture";
    return false;
  }
  const liq_palette* palette = liq_get_palette(result.get());
  for (unsigned i = 0; i < palette->count; ++i) {
    reduced.palette.push_back({palette->entries[i].r, palette->entries[i].g, palette->entries[i].b});
  }
  out = std::move(reduced);
  return true;
}

bool ReduceFramesToOnePalette(const std::vector<RgbImage>& frames, double dithering,
                              std::vector<Image8>& out, std::string& error, int speed) {
  omp_set_num_threads(1);
  if (frames.empty() || frames[0].width < 1 || frames[0].height < 1) {
    error = "there are no frames to reduce";
    return false;
  }
  const int width = frames[0].width, height = frames[0].height;
  std::unique_ptr<liq_attr, AttrDeleter> attr(liq_attr_create());
  if (!attr || liq_set_max_colors(attr.get(), 256) != LIQ_OK || liq_set_speed(attr.get(), speed) != LIQ_OK) {
    error = "libimagequant could not be set up";
    return false;
  }
  std::unique_ptr<liq_histogram, HistogramDeleter> histogram(liq_histogram_create(attr.get()));
  // libimagequant reads the pixels when they are used, so every frame's copy lives until the end.
  std::vector<std::vector<std::uint8_t>> rgba(frames.size());
  std::vector<std::unique_ptr<liq_image, ImageDeleter>> images;
  for (std::size_t i = 0; i < frames.size(); ++i) {
    if (frames[i].width != width || frames[i].height != height) {
      error = "the frames are not all the same size";
      return false;
    }
    rgba[i].reserve(frames[i].pixels.size() * 4);
    for (const Rgb& c : frames[i].pixels) rgba[i].insert(rgba[i].end(), {c.r, c.g, c.b, 255});
    images.emplace_back(liq_image_create_rgba(attr.get(), rgba[i].data(), width, height, 0));
    if (!histogram || !images.back() ||
        liq_histogram_add_image(histogram.get(), attr.get(), images.back().get()) != LIQ_OK) {
      error = "libimagequant could not read frame " + std::to_string(i);
      return false;
    }
  }
  liq_result* raw = nullptr;
  if (liq_histogram_quantize(histogram.get(), attr.get(), &raw) != LIQ_OK) {
    error = "libimagequant could not find a palette";
    return false;
  }
  std::unique_ptr<liq_result, ResultDeleter> result(raw);
  liq_set_dithering_level(result.get(), static_cast<float>(dithering));
  std::vector<Image8> reduced;
  for (std::size_t i = 0; i < frames.size(); ++i) {
    Image8 frame(width, height);
    if (liq_write_remapped_image(result.get(), images[i].get(), frame.pixels.data(), frame.pixels.size()) !=
        LIQ_OK) {
      error = "libimagequant could not map frame " + std::to_string(i);
      return false;
    }
    reduced.push_back(std::move(frame));
  }
  const liq_palette* palette = liq_get_palette(result.get());
  for (Image8& frame : reduced) {
    for (unsigned i = 0; i < palette->count; ++i) {
      frame.palette.push_back({palette->entries[i].r, palette->entries[i].g, palette->entries[i].b});
    }
  }
  out = std::move(reduced);
  return true;
}

}  // namespace qv::assets
