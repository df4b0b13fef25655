// The shared look of the interface pictures: walnut, brass, parchment, bevels, glow, lettering.
#include "assets/ui_style.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <tuple>

#include "assets/noise.h"

namespace qv::assets {
namespace {

double Frac(double v) { return v - std::floor(v); }
double Smooth(double t) {
  t = std::clamp(t, 0.0, 1.0);
  return t * t * (3 - 2 * t);
}
std::uint8_t Channel(double v) { return static_cast<std::uint8_t>(std::lround(std::clamp(v, 0.0, 1.0) * 255)); }

// Holds an RgbImage as a cairo surface for as long as it is used as a source.
class SurfaceOf {
 public:
  explicit SurfaceOf(const RgbImage& image)
      : surface_(cairo_image_surface_create(CAIRO_FORMAT_RGB24, image.width, image.height)) {
    cairo_surface_flush(surface_);
    unsigned char* data = cairo_image_surface_get_data(surface_);
    const int stride = cairo_image_surface_get_stride(surface_);
    for (int y = 0; y < image.height; ++y) {
      auto* row = reinterpret_cast<std::uint32_t*>(data + static_cast<std::ptrdiff_t>(y) * stride);
      for (int x = 0; x < image.width; ++x) {
        const Rgb c = image.at(x, y);
        row[x] = (std::uint32_t{c.r} << 16) | (std::uint32_t{c.g} << 8) | c.b;
      }
    }
    cairo_surface_mark_dirty(surface_);
  }
  ~SurfaceOf() { cairo_surface_destroy(surface_); }
  SurfaceOf(const SurfaceOf&) = delete;
  SurfaceOf& operator=(const SurfaceOf&) = delete;
  cairo_surface_t* get() const { return surface_; }

 private:
  cairo_surface_t* surface_;
};

// Fills the current path with the picture repeated from the origin.
void FillRepeating(cairo_t* cr, const RgbImage& tile) {
  SurfaceOf surface(tile);
  cairo_pattern_t* pattern = cairo_pattern_create_for_surface(surface.get());
  cairo_pattern_set_extend(pattern, CAIRO_EXTEND_REPEAT);
  cairo_set_source(cr, pattern);
  cairo_fill(cr);
  cairo_pattern_destroy(pattern);
}

// Button bodies and backdrops ask for the same few woods in several lights: the grain is
// computed once per seed and only the light is applied per request.
const RgbImage& CachedWood(std::uint32_t seed, double light, bool alongY) {
  static std::map<std::tuple<std::uint32_t, bool>, RgbImage> grains;
  static std::map<std::tuple<std::uint32_t, long, bool>, RgbImage> lit;
  const auto key = std::make_tuple(seed, std::lround(light * 1000), alongY);
  auto found = lit.find(key);
  if (found != lit.end()) return found->second;
  auto grain = grains.find({seed, alongY});
  if (grain == grains.end()) grain = grains.emplace(std::make_tuple(seed, alongY), WoodTile(128, 128, seed, alongY)).first;
  RgbImage tile = grain->second;
  for (Rgb& c : tile.pixels) {
    c = {Channel(c.r / 255.0 * light), Channel(c.g / 255.0 * light), Channel(c.b / 255.0 * light)};
  }
  return lit.emplace(key, std::move(tile)).first->second;
}

void AddStop(cairo_pattern_t* p, double at, const Shade& s, double alpha = 1.0) {
  cairo_pattern_add_color_stop_rgba(p, at, s.r, s.g, s.b, alpha);
}

}  // namespace

Canvas::Canvas(int width, int height)
    : width_(width),
      height_(height),
      surface_(cairo_image_surface_create(CAIRO_FORMAT_RGB24, width, height)),
      cr_(cairo_create(surface_)) {
  cairo_set_source_rgb(cr_, 0, 0, 0);
  cairo_paint(cr_);
}

Canvas::~Canvas() {
  cairo_destroy(cr_);
  cairo_surface_destroy(surface_);
}

RgbImage Canvas::Pixels() const {
  cairo_surface_flush(surface_);
  const unsigned char* data = cairo_image_surface_get_data(surface_);
  const int stride = cairo_image_surface_get_stride(surface_);
  RgbImage out(width_, height_);
  for (int y = 0; y < height_; ++y) {
    const auto* row = reinterpret_cast<const std::uint32_t*>(data + static_cast<std::ptrdiff_t>(y) * stride);
    for (int x = 0; x < width_; ++x) {
      out.at(x, y) = {static_cast<std::uint8_t>(row[x] >> 16), static_cast<std::uint8_t>(row[x] >> 8),
                      static_cast<std::uint8_t>(row[x])};
    }
  }
  return out;
}

void Canvas::Place(const RgbImage& picture, int x, int y) {
  SurfaceOf surface(picture);
  cairo_save(cr_);
  cairo_set_source_surface(cr_, surface.get(), x, y);
  cairo_rectangle(cr_, x, y, picture.width, picture.height);
  cairo_fill(cr_);
  cairo_restore(cr_);
}

void SetShade(cairo_t* cr, const Shade& s, double alpha) { cairo_set_source_rgba(cr, s.r, s.g, s.b, alpha); }

void RoundedRectPath(cairo_t* cr, const Box& b, double radius) {
  const double r = std::min({radius, b.w / 2, b.h / 2});
  cairo_new_sub_path(cr);
  if (r <= 0) {
    cairo_rectangle(cr, b.x, b.y, b.w, b.h);
    return;
  }
  cairo_arc(cr, b.x + b.w - r, b.y + r, r, -M_PI / 2, 0);
  cairo_arc(cr, b.x + b.w - r, b.y + b.h - r, r, 0, M_PI / 2);
  cairo_arc(cr, b.x + r, b.y + b.h - r, r, M_PI / 2, M_PI);
  cairo_arc(cr, b.x + r, b.y + r, r, M_PI, 3 * M_PI / 2);
  cairo_close_path(cr);
}

RgbImage WoodTile(int width, int height, std::uint32_t seed, bool alongY, double light) {
  RgbImage tile(width, height);
  // Every term repeats over the tile (whole numbers of rings and streaks across it), so the
  // tile meets itself without a seam whatever its size.
  const int across = alongY ? width : height;
  const int rings = std::max(1, static_cast<int>(std::lround(across / 16.0)));
  const Shade dark{0.23, 0.135, 0.07}, bright{0.35, 0.215, 0.115};
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      const double u = (x + 0.5) / width, v = (y + 0.5) / height;
      const double a = alongY ? u : v, b = alongY ? v : u;
      // Broad bands that drift gently, fine pores drawn out along the grain.
      const double warp = 0.30 * PeriodicFractalNoise(u, v, 2, 3, 0.5, seed);
      const double band = Smooth(std::fabs(Frac(a * rings + warp) - 0.5) * 2.0);
      const double pores = PeriodicFractalNoise(b, Frac(a * rings * 6), 3, 3, 0.6, seed + 7);
      const double k = light * (1 + 0.13 * pores);
      tile.at(x, y) = {Channel((dark.r + (bright.r - dark.r) * band) * k),
                       Channel((dark.g + (bright.g - dark.g) * band) * k),
                       Channel((dark.b + (bright.b - dark.b) * band) * k)};
    }
  }
  return tile;
}

RgbImage ParchmentTile(int width, int height, std::uint32_t seed) {
  RgbImage tile(width, height);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      const double u = (x + 0.5) / width, v = (y + 0.5) / height;
      const double cloud = PeriodicFractalNoise(u, v, 3, 4, 0.55, seed);
      const double fibre = PeriodicFractalNoise(u, v, 20, 2, 0.5, seed + 3);
      const double k = 1 + 0.045 * cloud + 0.02 * fibre;
      tile.at(x, y) = {Channel(0.94 * k), Channel(0.88 * k), Channel(0.73 * k)};
    }
  }
  return tile;
}

void FillWood(cairo_t* cr, const Box& box, std::uint32_t seed, double light, bool alongY) {
  cairo_save(cr);
  cairo_rectangle(cr, box.x, box.y, box.w, box.h);
  FillRepeating(cr, CachedWood(seed, light, alongY));
  cairo_restore(cr);
}

static const RgbImage& SharedParchment() {
  static const RgbImage tile = ParchmentTile(160, 160, 301);
  return tile;
}

void FillParchmentGround(cairo_t* cr, const Box& box) {
  cairo_save(cr);
  cairo_rectangle(cr, box.x, box.y, box.w, box.h);
  FillRepeating(cr, SharedParchment());
  cairo_restore(cr);
}

void FillParchment(cairo_t* cr, const Box& box, double radius) {
  cairo_save(cr);
  RoundedRectPath(cr, box, radius);
  cairo_clip_preserve(cr);
  FillRepeating(cr, SharedParchment());
  // Edges darkened as old paper is, softly, then a fine inked line.
  for (int i = 0; i < 3; ++i) {
    RoundedRectPath(cr, box, radius);
    cairo_set_line_width(cr, 4.0 + 6.0 * i);
    SetShade(cr, {0.55, 0.38, 0.18}, 0.10);
    cairo_stroke(cr);
  }
  RoundedRectPath(cr, box, radius);
  cairo_set_line_width(cr, 2);
  SetShade(cr, ui::kInk, 0.7);
  cairo_stroke(cr);
  cairo_restore(cr);
}

void BrassRim(cairo_t* cr, const Box& b, double radius, double t, bool sunk) {
  cairo_save(cr);
  cairo_set_fill_rule(cr, CAIRO_FILL_RULE_EVEN_ODD);
  RoundedRectPath(cr, b, radius);
  RoundedRectPath(cr, {b.x + t, b.y + t, b.w - 2 * t, b.h - 2 * t}, std::max(0.0, radius - t));
  cairo_pattern_t* p = cairo_pattern_create_linear(b.x, b.y, b.x + b.w * 0.6, b.y + b.h);
  AddStop(p, 0, sunk ? ui::kBrassDark : ui::kBrassLight);
  AddStop(p, 0.5, ui::kBrass);
  AddStop(p, 1, sunk ? ui::kBrassLight : ui::kBrassDark);
  cairo_set_source(cr, p);
  cairo_fill(cr);
  cairo_pattern_destroy(p);
  cairo_set_line_width(cr, 1);
  RoundedRectPath(cr, {b.x + 0.5, b.y + 0.5, b.w - 1, b.h - 1}, radius);
  SetShade(cr, ui::kShadow, 0.6);
  cairo_stroke(cr);
  cairo_restore(cr);
}

void ScreenFrame(cairo_t* cr, int width, int height, std::uint32_t seed) {
  const Box all{0, 0, static_cast<double>(width), static_cast<double>(height)};
  FillWood(cr, all, seed);
  BrassRim(cr, all, 0, 3);
  cairo_set_line_width(cr, 1);
  cairo_rectangle(cr, 3.5, 3.5, width - 7, height - 7);
  SetShade(cr, ui::kShadow, 0.5);
  cairo_stroke(cr);
}

Box ButtonBody(cairo_t* cr, const Box& box, double radius, Face face) {
  const bool pressed = face == Face::kPressed, hover = face == Face::kHover;
  const double t = std::max(2.0, std::round(std::min(box.w, box.h) * 0.07));
  const Box inner{box.x + t, box.y + t, box.w - 2 * t, box.h - 2 * t};
  const double innerRadius = std::max(0.0, radius - t);
  cairo_save(cr);
  RoundedRectPath(cr, box, radius);
  SetShade(cr, ui::kShadow);
  cairo_fill(cr);
  BrassRim(cr, box, radius, t, pressed);
  RoundedRectPath(cr, inner, innerRadius);
  cairo_clip(cr);
  FillWood(cr, inner, 3, pressed ? 0.8 : hover ? 1.25 : 1.05);
  cairo_pattern_t* bevel = cairo_pattern_create_linear(0, inner.y, 0, inner.y + inner.h);
  if (pressed) {
    AddStop(bevel, 0, ui::kShadow, 0.55);
    AddStop(bevel, 0.35, ui::kShadow, 0.05);
    AddStop(bevel, 1, ui::kCream, 0.08);
  } else {
    AddStop(bevel, 0, ui::kCream, 0.30);
    AddStop(bevel, 0.45, ui::kCream, 0.0);
    AddStop(bevel, 1, ui::kShadow, 0.40);
  }
  cairo_set_source(cr, bevel);
  cairo_paint(cr);
  cairo_pattern_destroy(bevel);
  if (hover) {
    const double cx = inner.x + inner.w / 2, cy = inner.y + inner.h / 2;
    cairo_pattern_t* glow = cairo_pattern_create_radial(cx, cy, 0, cx, cy, std::max(inner.w, inner.h) * 0.6);
    AddStop(glow, 0, ui::kGlow, 0.55);
    AddStop(glow, 1, ui::kGlow, 0.0);
    cairo_set_source(cr, glow);
    cairo_paint(cr);
    cairo_pattern_destroy(glow);
  }
  cairo_restore(cr);
  if (hover) {
    cairo_save(cr);
    RoundedRectPath(cr, {box.x + t / 2, box.y + t / 2, box.w - t, box.h - t}, std::max(0.0, radius - t / 2));
    cairo_set_line_width(cr, t * 0.8);
    SetShade(cr, ui::kGlow, 0.75);
    cairo_stroke(cr);
    cairo_restore(cr);
  }
  const double shift = pressed ? ButtonSink(box) : 0;
  return {inner.x + 1 + shift, inner.y + 1 + shift, inner.w - 2, inner.h - 2};
}

double ButtonSink(const Box& box) { return std::max(1.0, std::round(box.h * 0.03)); }

namespace {

double ShadowOffset(double size) { return std::max(1.0, std::round(size * 0.07)); }

}  // namespace

FittedText FitText(cairo_t* cr, const std::string& text, const Box& box, double margin, double maxSize) {
  cairo_save(cr);
  cairo_select_font_face(cr, "DejaVu Sans", CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_BOLD);
  FittedText fit;
  const double roomW = box.w - 2 * margin, roomH = box.h - 2 * margin;
  for (double size = maxSize; size >= kSmallestTextSize; size -= 0.5) {
    cairo_set_font_size(cr, size);
    cairo_text_extents_t e;
    cairo_text_extents(cr, text.c_str(), &e);
    const double off = ShadowOffset(size);
    if (e.width + off <= roomW && e.height + off <= roomH) {
      fit.size = size;
      fit.width = e.width;
      fit.height = e.height;
      fit.left = box.x + (box.w - e.width - off) / 2;
      fit.top = box.y + (box.h - e.height - off) / 2;
      fit.originX = fit.left - e.x_bearing;
      fit.originY = fit.top - e.y_bearing;
      break;
    }
  }
  cairo_restore(cr);
  return fit;
}

void DrawFittedText(cairo_t* cr, const std::string& text, const FittedText& fit, const Shade& ink, bool shadow) {
  if (fit.size <= 0) return;
  cairo_save(cr);
  cairo_select_font_face(cr, "DejaVu Sans", CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_BOLD);
  cairo_set_font_size(cr, fit.size);
  const double off = ShadowOffset(fit.size);
  if (shadow) {
    // Dark lettering gets a lighter, fainter shadow: the parchment is already light.
    const bool lightInk = ink.r + ink.g + ink.b > 1.5;
    SetShade(cr, ui::kShadow, lightInk ? 0.85 : 0.25);
    cairo_move_to(cr, fit.originX + off, fit.originY + off);
    cairo_show_text(cr, text.c_str());
  }
  SetShade(cr, ink);
  cairo_move_to(cr, fit.originX, fit.originY);
  cairo_show_text(cr, text.c_str());
  cairo_restore(cr);
}

}  // namespace qv::assets
