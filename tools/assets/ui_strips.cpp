// Cutting a widget's states into one strip: each frame is drawn on its own canvas and placed.
#include "assets/ui_strips.h"

namespace qv::assets {
namespace {

RgbImage DrawFrame(int width, int height, int frame, const FrameDraw& draw) {
  Canvas canvas(width, height);
  draw(canvas.cr(), width, height, frame);
  return canvas.Pixels();
}

void Copy(const RgbImage& from, RgbImage& to, int x0, int y0) {
  for (int y = 0; y < from.height; ++y) {
    for (int x = 0; x < from.width; ++x) to.at(x0 + x, y0 + y) = from.at(x, y);
  }
}

}  // namespace

RgbImage ColumnStrip(int width, int height, int frames, const FrameDraw& draw) {
  RgbImage strip(width, height * frames);
  for (int f = 0; f < frames; ++f) Copy(DrawFrame(width, height, f, draw), strip, 0, f * height);
  return strip;
}

RgbImage RowStrip(int width, int height, int frames, const FrameDraw& draw) {
  RgbImage strip(width * frames, height);
  for (int f = 0; f < frames; ++f) Copy(DrawFrame(width, height, f, draw), strip, f * width, 0);
  return strip;
}

RgbImage ScrollStrip(int width, const std::array<int, 3>& parts, const FrameDraw& draw) {
  RgbImage strip(width, 3 * (parts[0] + parts[1] + parts[2]));
  int y = 0;
  for (int part = 0; part < 3; ++part) {
    for (int version = 0; version < 3; ++version) {
      Copy(DrawFrame(width, parts[part], part * 3 + version, draw), strip, 0, y);
      y += parts[part];
    }
  }
  return strip;
}

RgbImage SpriteStrip(int width, int height, int frames, const FrameDraw& draw, const FrameDraw& shape) {
  RgbImage strip(width * frames, height * 2);
  for (int f = 0; f < frames; ++f) {
    const RgbImage art = DrawFrame(width, height, f, draw);
    const RgbImage coverage = DrawFrame(width, height, f, [&](cairo_t* cr, int w, int h, int frame) {
      cairo_set_source_rgb(cr, 1, 1, 1);
      shape(cr, w, h, frame);
    });
    for (int y = 0; y < height; ++y) {
      for (int x = 0; x < width; ++x) {
        // Half coverage decides: the masks are two-coloured, so edges cannot be soft.
        const bool opaque = coverage.at(x, y).g >= 128;
        strip.at(f * width + x, y) = opaque ? art.at(x, y) : Rgb{0, 0, 0};
        strip.at(f * width + x, height + y) = opaque ? Rgb{0, 0, 0} : Rgb{255, 255, 255};
      }
    }
  }
  return strip;
}

}  // namespace qv::assets
