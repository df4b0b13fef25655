// Row layout and palette expansion of the tool's in-memory pictures.
#include "assets/image8.h"

#include "graphics/dib_layout.h"

namespace qv::assets {

std::vector<std::uint8_t> BottomUpRows(const Image8& image) {
  const auto stride = static_cast<std::size_t>(DibRowBytes(image.width, 8));
  std::vector<std::uint8_t> rows(stride * image.height, 0);
  for (int y = 0; y < image.height; ++y) {
    const std::uint8_t* source = &image.pixels[static_cast<std::size_t>(y) * image.width];
    std::uint8_t* target = &rows[stride * (image.height - 1 - y)];
    std::copy(source, source + image.width, target);
  }
  return rows;
}

RgbImage Expand(const Image8& image) {
  RgbImage out(image.width, image.height);
  for (std::size_t i = 0; i < image.pixels.size(); ++i) {
    const std::uint8_t index = image.pixels[i];
    out.pixels[i] = index < image.palette.size() ? image.palette[index] : Rgb{};
  }
  return out;
}

}  // namespace qv::assets
