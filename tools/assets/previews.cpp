// Contact prints of the generated assets, written as PNG files for people to look at.
#include "assets/previews.h"

#include <cairo.h>

#include <algorithm>
#include <filesystem>

#include "assets/die_mask.h"

namespace qv::assets {

bool WritePng(const RgbImage& image, const std::string& path, std::string& error) {
  std::error_code ec;
  const std::filesystem::path target(path);
  if (target.has_parent_path()) std::filesystem::create_directories(target.parent_path(), ec);
  cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_RGB24, image.width, image.height);
  if (cairo_surface_status(surface) != CAIRO_STATUS_SUCCESS) {
    cairo_surface_destroy(surface);
    error = "cannot make a surface for " + path;
    return false;
  }
  cairo_surface_flush(surface);
  unsigned char* data = cairo_image_surface_get_data(surface);
  const int stride = cairo_image_surface_get_stride(surface);
  for (int y = 0; y < image.height; ++y) {
    auto* row = reinterpret_cast<std::uint32_t*>(data + static_cast<std::ptrdiff_t>(y) * stride);
    for (int x = 0; x < image.width; ++x) {
      const Rgb c = image.at(x, y);
      row[x] = (std::uint32_t{c.r} << 16) | (std::uint32_t{c.g} << 8) | c.b;
    }
  }
  cairo_surface_mark_dirty(surface);
  const cairo_status_t status = cairo_surface_write_to_png(surface, path.c_str());
  cairo_surface_destroy(surface);
  if (status != CAIRO_STATUS_SUCCESS) {
    error = "cannot write " + path;
    return false;
  }
  return true;
}

RgbImage ContactSheet(const std::vector<RgbImage>& pictures, int columns, int gap) {
  int cellW = 0, cellH = 0;
  for (const RgbImage& p : pictures) {
    cellW = std::max(cellW, p.width);
    cellH = std::max(cellH, p.height);
  }
  const int count = static_cast<int>(pictures.size());
  const int rows = (count + columns - 1) / columns;
  const int shown = std::min(count, columns);
  RgbImage sheet(gap + shown * (cellW + gap), gap + rows * (cellH + gap));
  std::fill(sheet.pixels.begin(), sheet.pixels.end(), Rgb{96, 96, 96});
  for (int i = 0; i < count; ++i) {
    const int ox = gap + (i % columns) * (cellW + gap);
    const int oy = gap + (i / columns) * (cellH + gap);
    for (int y = 0; y < pictures[i].height; ++y) {
      for (int x = 0; x < pictures[i].width; ++x) sheet.at(ox + x, oy + y) = pictures[i].at(x, y);
    }
  }
  return sheet;
}

RgbImage Tiled(const RgbImage& picture, int times) {
  RgbImage out(picture.width * times, picture.height * times);
  for (int y = 0; y < out.height; ++y) {
    for (int x = 0; x < out.width; ++x) out.at(x, y) = picture.at(x % picture.width, y % picture.height);
  }
  return out;
}

RgbImage Reduced(const RgbImage& picture, int times) {
  RgbImage current = picture;
  for (int t = 0; t < times && current.width >= 2 && current.height >= 2; ++t) {
    RgbImage half(current.width / 2, current.height / 2);
    for (int y = 0; y < half.height; ++y) {
      for (int x = 0; x < half.width; ++x) {
        int r = 0, g = 0, b = 0;
        for (int dy = 0; dy < 2; ++dy) {
          for (int dx = 0; dx < 2; ++dx) {
            const Rgb c = current.at(2 * x + dx, 2 * y + dy);
            r += c.r;
            g += c.g;
            b += c.b;
          }
        }
        half.at(x, y) = {static_cast<std::uint8_t>((r + 2) / 4), static_cast<std::uint8_t>((g + 2) / 4),
                         static_cast<std::uint8_t>((b + 2) / 4)};
      }
    }
    current = std::move(half);
  }
  return current;
}

}  // namespace qv::assets

namespace qv::assets {

RgbImage PiecesView(const Image8& die, int rows, int cols, int periods) {
  const int periodW = cols * kCellPixels, periodH = rows * kCellPixels;
  RgbImage view(periodW * periods, periodH * periods);
  // The absolute cell of every pixel: the die's interior gives the owner relative to the die.
  std::vector<int> owner(static_cast<std::size_t>(view.width) * view.height);
  const int cellsAcross = cols * periods;
  for (int y = 0; y < view.height; ++y) {
    for (int x = 0; x < view.width; ++x) {
      const int label = die.at(kMarginPixels + x % periodW, kMarginPixels + y % periodH);
      GridCell cell{};
      if (!CellOfLabel(rows, cols, label, cell)) cell = {0, 0};
      const int r = (y / periodH) * rows + cell.row, c = (x / periodW) * cols + cell.col;
      owner[static_cast<std::size_t>(y) * view.width + x] = (r + 1) * (cellsAcross + 2) + (c + 1);
    }
  }
  for (int y = 0; y < view.height; ++y) {
    for (int x = 0; x < view.width; ++x) {
      const int o = owner[static_cast<std::size_t>(y) * view.width + x];
      bool border = false;
      if (x + 1 < view.width && owner[static_cast<std::size_t>(y) * view.width + x + 1] != o) border = true;
      if (y + 1 < view.height && owner[static_cast<std::size_t>(y + 1) * view.width + x] != o) border = true;
      const std::uint8_t shade = static_cast<std::uint8_t>(150 + (o * 53) % 90);
      view.at(x, y) = border ? Rgb{30, 20, 10}
                             : Rgb{shade, static_cast<std::uint8_t>(120 + (o * 31) % 100),
                                   static_cast<std::uint8_t>(90 + (o * 71) % 80)};
    }
  }
  return view;
}

}  // namespace qv::assets
