// The module's application icon (.ico) and drop-into-box cursor (.cur), drawn with cairo.
#include "assets/win_icons.h"

#include <cairo.h>

#include <algorithm>
#include <cstring>
#include <functional>

#include "assets/die_shapes.h"

namespace qv::assets {
namespace {

// One square picture in straight (not premultiplied) BGRA, top row first.
struct Bgra {
  int size = 0;
  std::vector<std::uint8_t> pixels;
};

Bgra Draw(int size, const std::function<void(cairo_t*, double)>& paint) {
  cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, size, size);
  cairo_t* cr = cairo_create(surface);
  paint(cr, size);
  cairo_destroy(cr);
  cairo_surface_flush(surface);
  Bgra out{size, std::vector<std::uint8_t>(static_cast<std::size_t>(size) * size * 4)};
  const unsigned char* data = cairo_image_surface_get_data(surface);
  const int stride = cairo_image_surface_get_stride(surface);
  for (int y = 0; y < size; ++y) {
    for (int x = 0; x < size; ++x) {
      std::uint32_t argb;
      std::memcpy(&argb, data + static_cast<std::ptrdiff_t>(y) * stride + 4 * x, 4);
      const unsigned a = argb >> 24;
      auto straight = [&](unsigned premultiplied) {
        return static_cast<std::uint8_t>(a == 0 ? 0 : std::min(255u, (premultiplied * 255 + a / 2) / a));
      };
      std::uint8_t* p = &out.pixels[(static_cast<std::size_t>(y) * size + x) * 4];
      p[0] = straight(argb & 0xFF);
      p[1] = straight(argb >> 8 & 0xFF);
      p[2] = straight(argb >> 16 & 0xFF);
      p[3] = static_cast<std::uint8_t>(a);
    }
  }
  cairo_surface_destroy(surface);
  return out;
}

// The outline of one piece of the knob style, in a box from (x, y) with edge length e: tabs
// on the right and at the bottom, sockets on the left and at the top.
void PiecePath(cairo_t* cr, double x, double y, double e) {
  const std::vector<Point> tab = TabOutline(TabStyle::kKnob, {});
  cairo_move_to(cr, x, y);
  for (const Point& p : tab) cairo_line_to(cr, x + p.u * e, y + p.v * e);  // top: socket
  cairo_line_to(cr, x + e, y);
  for (const Point& p : tab) cairo_line_to(cr, x + e + p.v * e, y + p.u * e);  // right: tab
  cairo_line_to(cr, x + e, y + e);
  for (auto it = tab.rbegin(); it != tab.rend(); ++it) cairo_line_to(cr, x + it->u * e, y + e + it->v * e);
  cairo_line_to(cr, x, y + e);
  for (auto it = tab.rbegin(); it != tab.rend(); ++it) cairo_line_to(cr, x + it->v * e, y + it->u * e);
  cairo_close_path(cr);
}

void PaintPiece(cairo_t* cr, double size) {
  const double e = size * 0.70, x = size * 0.06, y = size * 0.06;
  PiecePath(cr, x, y, e);
  cairo_pattern_t* gold = cairo_pattern_create_linear(0, 0, size, size);
  cairo_pattern_add_color_stop_rgb(gold, 0, 0.98, 0.84, 0.42);
  cairo_pattern_add_color_stop_rgb(gold, 1, 0.78, 0.52, 0.16);
  cairo_set_source(cr, gold);
  cairo_fill_preserve(cr);
  cairo_pattern_destroy(gold);
  cairo_set_source_rgb(cr, 0.30, 0.17, 0.06);
  cairo_set_line_width(cr, std::max(1.0, size / 24));
  cairo_set_line_join(cr, CAIRO_LINE_JOIN_ROUND);
  cairo_stroke(cr);
}

void PaintDropCursor(cairo_t* cr, double) {
  // The box: an open tray at the bottom right.
  cairo_rectangle(cr, 13.5, 20.5, 16, 9);
  cairo_set_source_rgb(cr, 0.55, 0.33, 0.13);
  cairo_fill_preserve(cr);
  cairo_set_source_rgb(cr, 0.15, 0.08, 0.02);
  cairo_set_line_width(cr, 1);
  cairo_stroke(cr);
  // A small piece dropping into it.
  PiecePath(cr, 17.5, 10.5, 7);
  cairo_set_source_rgb(cr, 0.98, 0.80, 0.35);
  cairo_fill_preserve(cr);
  cairo_set_source_rgb(cr, 0.15, 0.08, 0.02);
  cairo_stroke(cr);
  // The arrow, white with a black rim as pointers are.
  cairo_move_to(cr, 1, 1);
  cairo_line_to(cr, 1, 17);
  cairo_line_to(cr, 5, 13);
  cairo_line_to(cr, 8, 19.5);
  cairo_line_to(cr, 10.5, 18.5);
  cairo_line_to(cr, 7.5, 12);
  cairo_line_to(cr, 12.5, 12);
  cairo_close_path(cr);
  cairo_set_source_rgb(cr, 1, 1, 1);
  cairo_fill_preserve(cr);
  cairo_set_source_rgb(cr, 0, 0, 0);
  cairo_stroke(cr);
}

void Put16(std::vector<std::uint8_t>& out, unsigned v) {
  out.push_back(static_cast<std::uint8_t>(v));
  out.push_back(static_cast<std::uint8_t>(v >> 8));
}
void Put32(std::vector<std::uint8_t>& out, std::uint32_t v) {
  Put16(out, v & 0xFFFF);
  Put16(out, v >> 16);
}

// The image as an icon file stores it: a header of doubled height, bottom-up BGRA rows, then
// the 1-bit mask (set where the picture is fully transparent) with rows padded to 32 bits.
std::vector<std::uint8_t> IconImage(const Bgra& image) {
  std::vector<std::uint8_t> out;
  const int n = image.size;
  Put32(out, 40);
  Put32(out, static_cast<std::uint32_t>(n));
  Put32(out, static_cast<std::uint32_t>(2 * n));
  Put16(out, 1);
  Put16(out, 32);
  const int maskStride = (n + 31) / 32 * 4;
  Put32(out, 0);
  Put32(out, static_cast<std::uint32_t>(n * n * 4 + maskStride * n));
  for (int i = 0; i < 4; ++i) Put32(out, 0);
  for (int y = n - 1; y >= 0; --y) {
    const std::uint8_t* row = &image.pixels[static_cast<std::size_t>(y) * n * 4];
    out.insert(out.end(), row, row + n * 4);
  }
  for (int y = n - 1; y >= 0; --y) {
    std::vector<std::uint8_t> mask(maskStride, 0);
    for (int x = 0; x < n; ++x) {
      if (image.pixels[(static_cast<std::size_t>(y) * n + x) * 4 + 3] == 0) mask[x / 8] |= 0x80 >> (x % 8);
    }
    out.insert(out.end(), mask.begin(), mask.end());
  }
  return out;
}

// An icon (type 1) or cursor (type 2) file; for cursors the two fields that hold planes and
// depth in an icon hold the hot spot.
std::vector<std::uint8_t> IconFile(int type, const std::vector<Bgra>& images, int hotX, int hotY) {
  std::vector<std::uint8_t> out;
  Put16(out, 0);
  Put16(out, static_cast<unsigned>(type));
  Put16(out, static_cast<unsigned>(images.size()));
  std::vector<std::vector<std::uint8_t>> bodies;
  for (const Bgra& image : images) bodies.push_back(IconImage(image));
  std::uint32_t offset = static_cast<std::uint32_t>(6 + 16 * images.size());
  for (std::size_t i = 0; i < images.size(); ++i) {
    out.push_back(static_cast<std::uint8_t>(images[i].size >= 256 ? 0 : images[i].size));
    out.push_back(static_cast<std::uint8_t>(images[i].size >= 256 ? 0 : images[i].size));
    out.push_back(0);  // colour count: 0 for true colour
    out.push_back(0);
    Put16(out, type == 2 ? static_cast<unsigned>(hotX) : 1u);
    Put16(out, type == 2 ? static_cast<unsigned>(hotY) : 32u);
    Put32(out, static_cast<std::uint32_t>(bodies[i].size()));
    Put32(out, offset);
    offset += static_cast<std::uint32_t>(bodies[i].size());
  }
  for (const auto& body : bodies) out.insert(out.end(), body.begin(), body.end());
  return out;
}

}  // namespace

std::vector<std::uint8_t> MakeIconFile() {
  return IconFile(1, {Draw(16, PaintPiece), Draw(32, PaintPiece), Draw(48, PaintPiece)}, 0, 0);
}

std::vector<std::uint8_t> MakeDropCursorFile() {
  return IconFile(2, {Draw(32, PaintDropCursor)}, kDropCursorHotX, kDropCursorHotY);
}

}  // namespace qv::assets
