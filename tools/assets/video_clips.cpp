// The game's three video clips, drawn frame by frame: the title forming from flying pieces (2),
// how to play (1) and the presentation shown in the video frame (0).
#include "assets/video_clips.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <memory>
#include <vector>

#include "assets/die_shapes.h"
#include "assets/quantize.h"
#include "assets/textures.h"
#include "assets/ui_icons.h"
#include "assets/ui_style.h"

namespace qv::assets {
namespace {

// ---- Timing -------------------------------------------------------------------------------

double Clamp01(double x) { return std::clamp(x, 0.0, 1.0); }
// Progress through the span [from, to] at time t, 0 before and 1 after.
double Span(double t, double from, double to) { return Clamp01((t - from) / (to - from)); }
double EaseOut(double x) { return 1 - std::pow(1 - x, 3); }
double EaseInOut(double x) { return x < 0.5 ? 4 * x * x * x : 1 - std::pow(-2 * x + 2, 3) / 2; }
double Mix(double a, double b, double x) { return a + (b - a) * x; }

// A small fixed generator, so that scattered start positions are the same on every run.
std::uint32_t Hash(std::uint32_t x) {
  x ^= x >> 16;
  x *= 0x7feb352dU;
  x ^= x >> 15;
  x *= 0x846ca68bU;
  x ^= x >> 16;
  return x;
}
double Unit(std::uint32_t seed) { return (Hash(seed) & 0xFFFFFF) / double(0x1000000); }

// ---- Cairo surfaces -----------------------------------------------------------------------

struct SurfaceDeleter {
  void operator()(cairo_surface_t* s) const { cairo_surface_destroy(s); }
};
using Surface = std::unique_ptr<cairo_surface_t, SurfaceDeleter>;

Surface SurfaceFrom(const RgbImage& image) {
  Surface surface(cairo_image_surface_create(CAIRO_FORMAT_RGB24, image.width, image.height));
  cairo_surface_flush(surface.get());
  unsigned char* data = cairo_image_surface_get_data(surface.get());
  const int stride = cairo_image_surface_get_stride(surface.get());
  for (int y = 0; y < image.height; ++y) {
    auto* row = reinterpret_cast<std::uint32_t*>(data + static_cast<std::ptrdiff_t>(y) * stride);
    for (int x = 0; x < image.width; ++x) {
      const Rgb c = image.at(x, y);
      row[x] = (std::uint32_t{c.r} << 16) | (std::uint32_t{c.g} << 8) | c.b;
    }
  }
  cairo_surface_mark_dirty(surface.get());
  return surface;
}

// A picture drawn once and then cut into pieces on every frame.
template <typename Draw>
Surface DrawnSurface(int width, int height, Draw draw) {
  Canvas canvas(width, height);
  draw(canvas.cr());
  return SurfaceFrom(canvas.Pixels());
}

// The green felt of the table, darker towards the corners like a lit table top.
void Table(cairo_t* cr, int width, int height) {
  static const Surface felt = SurfaceFrom(DrawTexture(0));
  cairo_save(cr);
  cairo_pattern_t* pattern = cairo_pattern_create_for_surface(felt.get());
  cairo_pattern_set_extend(pattern, CAIRO_EXTEND_REPEAT);
  cairo_set_source(cr, pattern);
  cairo_paint(cr);
  cairo_pattern_destroy(pattern);
  const double cx = width / 2.0, cy = height / 2.0, r = std::hypot(cx, cy);
  cairo_pattern_t* vignette = cairo_pattern_create_radial(cx, cy, r * 0.35, cx, cy, r);
  cairo_pattern_add_color_stop_rgba(vignette, 0, 0, 0, 0, 0);
  cairo_pattern_add_color_stop_rgba(vignette, 1, 0, 0, 0, 0.55);
  cairo_set_source(cr, vignette);
  cairo_paint(cr);
  cairo_pattern_destroy(vignette);
  cairo_restore(cr);
}

// ---- Pieces -------------------------------------------------------------------------------

// A picture cut into rows x cols square cells; every inner edge carries a tab on one side.
struct Cut {
  int rows = 0, cols = 0;
  double cell = 0;
  TabStyle style = TabStyle::kKnob;
  std::uint32_t seed = 0;

  // +1 when the piece above (or to the left) has the tab, -1 when it has the socket.
  int Below(int r, int c) const { return Hash(seed * 977 + r * 31 + c) & 1 ? 1 : -1; }
  int Right(int r, int c) const { return Hash(seed * 991 + 7 + r * 37 + c * 5) & 1 ? 1 : -1; }
};

// The die's outlines are flattened for 200-pixel edges; pieces of 40 to 50 pixels need a tenth
// of the points, and stroking that many fewer segments keeps drawing a clip quick.
std::vector<Point> Thinned(const std::vector<Point>& outline) {
  std::vector<Point> out;
  for (std::size_t i = 0; i < outline.size(); i += 10) out.push_back(outline[i]);
  if (out.back().u != outline.back().u || out.back().v != outline.back().v) out.push_back(outline.back());
  return out;
}

const std::vector<Point>& OutlineOf(TabStyle style) {
  static const std::vector<Point> outlines[3] = {Thinned(TabOutline(TabStyle::kKnob, {})),
                                                 Thinned(TabOutline(TabStyle::kDovetail, {})),
                                                 Thinned(TabOutline(TabStyle::kDoubleLobe, {}))};
  return outlines[static_cast<int>(style)];
}

// The outline of piece (r, c) with its cell's top-left corner at (0, 0). The tab outlines are
// symmetric along the edge, so the two pieces of an edge trace the same curve and interlock.
void PiecePath(cairo_t* cr, const Cut& cut, int r, int c) {
  const double s = cut.cell;
  const int signs[4] = {r == 0 ? 0 : -cut.Below(r - 1, c), c == cut.cols - 1 ? 0 : cut.Right(r, c),
                        r == cut.rows - 1 ? 0 : cut.Below(r, c), c == 0 ? 0 : -cut.Right(r, c - 1)};
  const double corners[4][2] = {{0, 0}, {s, 0}, {s, s}, {0, s}};
  cairo_new_sub_path(cr);
  cairo_move_to(cr, 0, 0);
  for (int edge = 0; edge < 4; ++edge) {
    const double* p0 = corners[edge];
    const double* p1 = corners[(edge + 1) % 4];
    if (signs[edge] != 0) {
      const double dx = (p1[0] - p0[0]) / s, dy = (p1[1] - p0[1]) / s;
      const double nx = dy, ny = -dx;  // outward for a clockwise walk
      for (const Point& q : OutlineOf(cut.style)) {
        cairo_line_to(cr, p0[0] + s * (q.u * dx + signs[edge] * q.v * nx),
                      p0[1] + s * (q.u * dy + signs[edge] * q.v * ny));
      }
    }
    cairo_line_to(cr, p1[0], p1[1]);
  }
  cairo_close_path(cr);
}

// Where and how a piece is shown on one frame.
struct PiecePose {
  double x = 0, y = 0;  // its cell's top-left corner on the frame
  double angle = 0;     // turned about the cell's centre
  double lift = 0;      // 0 lying on the table; a lifted piece casts a longer shadow
  double edges = 1;     // strength of the cut lines (0 once the puzzle is finished)
  double glow = 0;      // brass light around the outline when it has just snapped
};

void DrawPiece(cairo_t* cr, const Cut& cut, int r, int c, cairo_surface_t* picture, const PiecePose& pose) {
  const double half = cut.cell / 2;
  cairo_save(cr);
  cairo_translate(cr, pose.x + half, pose.y + half);
  cairo_rotate(cr, pose.angle);
  cairo_translate(cr, -half, -half);
  if (pose.lift > 0) {
    cairo_save(cr);
    cairo_translate(cr, 1 + pose.lift, 1 + pose.lift * 1.3);
    PiecePath(cr, cut, r, c);
    SetShade(cr, ui::kShadow, 0.45 * pose.edges);
    cairo_fill(cr);
    cairo_restore(cr);
  }
  PiecePath(cr, cut, r, c);
  cairo_save(cr);
  cairo_clip_preserve(cr);
  cairo_set_source_surface(cr, picture, -c * cut.cell, -r * cut.cell);
  cairo_paint(cr);
  if (pose.edges > 0) {
    // A narrow bevel inside the cut: light on the top-left, shade on the bottom-right.
    cairo_set_line_width(cr, 2.2);
    cairo_save(cr);
    cairo_translate(cr, 1, 1);
    PiecePath(cr, cut, r, c);
    cairo_restore(cr);
    SetShade(cr, ui::kCream, 0.35 * pose.edges);
    cairo_stroke(cr);
    cairo_save(cr);
    cairo_translate(cr, -1, -1);
    PiecePath(cr, cut, r, c);
    cairo_restore(cr);
    SetShade(cr, ui::kShadow, 0.35 * pose.edges);
    cairo_stroke(cr);
  }
  cairo_new_path(cr);  // the clip's path must not reach whatever is filled next
  cairo_restore(cr);
  if (pose.edges > 0) {
    PiecePath(cr, cut, r, c);
    cairo_set_line_width(cr, 0.9);
    SetShade(cr, ui::kShadow, 0.6 * pose.edges);
    cairo_stroke(cr);
  }
  if (pose.glow > 0) {
    PiecePath(cr, cut, r, c);
    cairo_set_line_width(cr, 3.5);
    SetShade(cr, ui::kGlow, 0.8 * pose.glow);
    cairo_stroke(cr);
  }
  cairo_restore(cr);
}

// The uncut picture laid over its pieces: as the cut lines fade, the antialiased seams between
// pieces would otherwise stay as faint lines.
void WholePicture(cairo_t* cr, cairo_surface_t* picture, double x, double y, double alpha) {
  if (alpha <= 0) return;
  cairo_save(cr);
  cairo_set_source_surface(cr, picture, x, y);
  cairo_rectangle(cr, x, y, cairo_image_surface_get_width(picture), cairo_image_surface_get_height(picture));
  cairo_clip(cr);
  cairo_paint_with_alpha(cr, Clamp01(alpha));
  cairo_restore(cr);
}

// ---- Pictures -----------------------------------------------------------------------------

// Lettering filled with a brass gradient over a dark shadow, centred on (cx, baseline).
void BrassLetters(cairo_t* cr, const char* text, double size, double cx, double baseline) {
  cairo_save(cr);
  cairo_select_font_face(cr, "DejaVu Sans", CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_BOLD);
  cairo_set_font_size(cr, size);
  cairo_text_extents_t e;
  cairo_text_extents(cr, text, &e);
  const double x = cx - e.width / 2 - e.x_bearing;
  const double off = std::max(1.0, size * 0.05);
  cairo_move_to(cr, x + off, baseline + off);
  cairo_text_path(cr, text);
  SetShade(cr, ui::kShadow, 0.85);
  cairo_fill(cr);
  cairo_move_to(cr, x, baseline);
  cairo_text_path(cr, text);
  const double top = baseline + e.y_bearing;
  cairo_pattern_t* brass = cairo_pattern_create_linear(0, top, 0, top + e.height);
  cairo_pattern_add_color_stop_rgb(brass, 0.0, ui::kBrassLight.r, ui::kBrassLight.g, ui::kBrassLight.b);
  cairo_pattern_add_color_stop_rgb(brass, 0.5, ui::kBrass.r, ui::kBrass.g, ui::kBrass.b);
  cairo_pattern_add_color_stop_rgb(brass, 1.0, ui::kBrassDark.r, ui::kBrassDark.g, ui::kBrassDark.b);
  cairo_set_source(cr, brass);
  cairo_fill_preserve(cr);
  cairo_pattern_destroy(brass);
  cairo_set_line_width(cr, std::max(0.6, size * 0.02));
  SetShade(cr, ui::kBrassDark, 0.9);
  cairo_stroke(cr);
  cairo_restore(cr);
}

// The title on a walnut plaque: what the pieces of the introduction carry.
void TitlePlaque(cairo_t* cr, double w, double h) {
  FillWood(cr, {0, 0, w, h}, 3, 1.05);
  cairo_rectangle(cr, 0, 0, w, h);
  cairo_pattern_t* sheen = cairo_pattern_create_linear(0, 0, 0, h);
  cairo_pattern_add_color_stop_rgba(sheen, 0, 1, 0.9, 0.7, 0.12);
  cairo_pattern_add_color_stop_rgba(sheen, 1, 0, 0, 0, 0.25);
  cairo_set_source(cr, sheen);
  cairo_fill(cr);
  cairo_pattern_destroy(sheen);
  BrassRim(cr, {4, 4, w - 8, h - 8}, 8, 3);
  cairo_rectangle(cr, 7, 7, w - 14, h - 14);
  SetShade(cr, ui::kWalnutDark, 0.35);
  cairo_fill(cr);
  BrassLetters(cr, "Quorvex", h * 0.40, w / 2, h * 0.56);
  // "Puzzle" in cream between two brass rules.
  cairo_save(cr);
  cairo_select_font_face(cr, "DejaVu Sans", CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_BOLD);
  const double size = h * 0.19;
  cairo_set_font_size(cr, size);
  cairo_text_extents_t e;
  cairo_text_extents(cr, "Puzzle", &e);
  const double baseline = h * 0.83, x = w / 2 - e.width / 2 - e.x_bearing;
  SetShade(cr, ui::kShadow, 0.85);
  cairo_move_to(cr, x + 1.5, baseline + 1.5);
  cairo_show_text(cr, "Puzzle");
  SetShade(cr, ui::kCream);
  cairo_move_to(cr, x, baseline);
  cairo_show_text(cr, "Puzzle");
  const double mid = baseline + e.y_bearing / 2;
  for (int side = -1; side <= 1; side += 2) {
    const double inner = w / 2 + side * (e.width / 2 + 8), outer = w / 2 + side * (w * 0.40);
    cairo_move_to(cr, inner, mid);
    cairo_line_to(cr, outer, mid);
    cairo_set_line_width(cr, 2);
    SetShade(cr, ui::kBrass);
    cairo_stroke(cr);
    cairo_arc(cr, outer, mid, 2.5, 0, 2 * M_PI);
    cairo_fill(cr);
  }
  cairo_restore(cr);
}

// Hills under an evening sky: the picture the demonstration puzzles are cut from.
void Landscape(cairo_t* cr, double w, double h) {
  cairo_pattern_t* sky = cairo_pattern_create_linear(0, 0, 0, h * 0.62);
  cairo_pattern_add_color_stop_rgb(sky, 0, 0.30, 0.48, 0.72);
  cairo_pattern_add_color_stop_rgb(sky, 0.6, 0.80, 0.72, 0.62);
  cairo_pattern_add_color_stop_rgb(sky, 1, 0.99, 0.84, 0.55);
  cairo_set_source(cr, sky);
  cairo_paint(cr);
  cairo_pattern_destroy(sky);
  const double sx = w * 0.70, sy = h * 0.40, sr = h * 0.09;
  cairo_pattern_t* halo = cairo_pattern_create_radial(sx, sy, sr, sx, sy, sr * 4);
  cairo_pattern_add_color_stop_rgba(halo, 0, 1, 0.92, 0.65, 0.6);
  cairo_pattern_add_color_stop_rgba(halo, 1, 1, 0.92, 0.65, 0);
  cairo_set_source(cr, halo);
  cairo_paint(cr);
  cairo_pattern_destroy(halo);
  cairo_arc(cr, sx, sy, sr, 0, 2 * M_PI);
  cairo_set_source_rgb(cr, 1, 0.95, 0.78);
  cairo_fill(cr);
  // Three ridges, paler with distance.
  struct Ridge {
    double level, amplitude, waves, phase;
    Shade near, far;
  };
  const Ridge ridges[3] = {{0.50, 0.07, 1.7, 0.3, {0.42, 0.50, 0.58}, {0.55, 0.60, 0.64}},
                           {0.62, 0.06, 2.3, 1.9, {0.26, 0.46, 0.26}, {0.38, 0.55, 0.33}},
                           {0.78, 0.05, 1.3, 4.0, {0.13, 0.33, 0.15}, {0.22, 0.42, 0.20}}};
  for (const Ridge& ridge : ridges) {
    cairo_move_to(cr, 0, h);
    for (int i = 0; i <= 64; ++i) {
      const double x = w * i / 64.0;
      const double y = h * (ridge.level - ridge.amplitude * std::sin(ridge.waves * 2 * M_PI * i / 64.0 + ridge.phase) -
                            ridge.amplitude * 0.3 * std::sin(ridge.waves * 5.3 * M_PI * i / 64.0));
      cairo_line_to(cr, x, y);
    }
    cairo_line_to(cr, w, h);
    cairo_close_path(cr);
    cairo_pattern_t* fill = cairo_pattern_create_linear(0, h * (ridge.level - ridge.amplitude), 0, h);
    cairo_pattern_add_color_stop_rgb(fill, 0, ridge.far.r, ridge.far.g, ridge.far.b);
    cairo_pattern_add_color_stop_rgb(fill, 1, ridge.near.r, ridge.near.g, ridge.near.b);
    cairo_set_source(cr, fill);
    cairo_fill(cr);
    cairo_pattern_destroy(fill);
  }
  // A cottage on the middle ridge and a few round trees in front.
  const double hx = w * 0.30, hy = h * 0.60, hs = h * 0.07;
  cairo_rectangle(cr, hx, hy, hs * 1.4, hs);
  SetShade(cr, ui::kCream);
  cairo_fill(cr);
  cairo_move_to(cr, hx - hs * 0.2, hy);
  cairo_line_to(cr, hx + hs * 0.7, hy - hs * 0.7);
  cairo_line_to(cr, hx + hs * 1.6, hy);
  cairo_close_path(cr);
  cairo_set_source_rgb(cr, 0.62, 0.22, 0.14);
  cairo_fill(cr);
  cairo_rectangle(cr, hx + hs * 0.55, hy + hs * 0.45, hs * 0.3, hs * 0.55);
  SetShade(cr, ui::kInk);
  cairo_fill(cr);
  const double trees[5][3] = {{0.10, 0.80, 0.075}, {0.17, 0.83, 0.06}, {0.56, 0.86, 0.08},
                              {0.86, 0.76, 0.07}, {0.93, 0.80, 0.055}};
  for (const auto& t : trees) {
    const double tx = w * t[0], ty = h * t[1], tr = h * t[2];
    cairo_rectangle(cr, tx - tr * 0.15, ty, tr * 0.3, tr * 1.2);
    cairo_set_source_rgb(cr, 0.30, 0.18, 0.08);
    cairo_fill(cr);
    cairo_arc(cr, tx, ty - tr * 0.3, tr, 0, 2 * M_PI);
    cairo_set_source_rgb(cr, 0.10, 0.30, 0.12);
    cairo_fill(cr);
    cairo_arc(cr, tx - tr * 0.3, ty - tr * 0.6, tr * 0.45, 0, 2 * M_PI);
    cairo_set_source_rgba(cr, 0.45, 0.62, 0.30, 0.6);
    cairo_fill(cr);
  }
}

// The mouse pointer of the demonstration; `pressed` rings it while a button is held.
void Pointer(cairo_t* cr, double x, double y, double pressed) {
  cairo_save(cr);
  if (pressed > 0) {
    cairo_arc(cr, x, y, 6 + 3 * pressed, 0, 2 * M_PI);
    SetShade(cr, ui::kGlow, 0.7 * pressed);
    cairo_set_line_width(cr, 2);
    cairo_stroke(cr);
  }
  cairo_translate(cr, x, y);
  const double pts[7][2] = {{0, 0}, {0, 17}, {4.2, 13}, {7, 19.5}, {10, 18.2}, {7.3, 12}, {12.5, 12}};
  cairo_move_to(cr, pts[0][0] + 1.5, pts[0][1] + 1.5);
  for (const auto& p : pts) cairo_line_to(cr, p[0] + 1.5, p[1] + 1.5);
  cairo_close_path(cr);
  SetShade(cr, ui::kShadow, 0.4);
  cairo_fill(cr);
  cairo_move_to(cr, pts[0][0], pts[0][1]);
  for (const auto& p : pts) cairo_line_to(cr, p[0], p[1]);
  cairo_close_path(cr);
  cairo_set_source_rgb(cr, 1, 1, 1);
  cairo_fill_preserve(cr);
  cairo_set_line_width(cr, 1);
  cairo_set_source_rgb(cr, 0, 0, 0);
  cairo_stroke(cr);
  cairo_restore(cr);
}

// A round brass badge with a step number.
void StepBadge(cairo_t* cr, double cx, double cy, const char* digit, double shown) {
  if (shown <= 0) return;
  cairo_save(cr);
  cairo_push_group(cr);
  const double r = 12;
  cairo_arc(cr, cx + 1.5, cy + 1.5, r, 0, 2 * M_PI);
  SetShade(cr, ui::kShadow, 0.5);
  cairo_fill(cr);
  BrassRim(cr, {cx - r, cy - r, 2 * r, 2 * r}, r, 3);
  cairo_arc(cr, cx, cy, r - 3, 0, 2 * M_PI);
  SetShade(cr, ui::kWalnutDark);
  cairo_fill(cr);
  DrawGlyph(cr, digit, {cx - r + 3, cy - r + 3, 2 * r - 6, 2 * r - 6}, ui::kBrassLight);
  cairo_pop_group_to_source(cr);
  cairo_paint_with_alpha(cr, shown);
  cairo_restore(cr);
}

void FadeToBlack(cairo_t* cr, double amount) {
  if (amount <= 0) return;
  cairo_set_source_rgba(cr, 0, 0, 0, Clamp01(amount));
  cairo_paint(cr);
}

// A bright band that sweeps once across the box at progress x (0..1), clipped to the box.
void Glint(cairo_t* cr, const Box& box, double x) {
  if (x <= 0 || x >= 1) return;
  cairo_save(cr);
  cairo_rectangle(cr, box.x, box.y, box.w, box.h);
  cairo_clip(cr);
  const double centre = box.x - box.h + (box.w + 2 * box.h) * x;
  cairo_pattern_t* band = cairo_pattern_create_linear(centre - 30, box.y, centre + 30, box.y + box.h * 0.6);
  cairo_pattern_add_color_stop_rgba(band, 0, 1, 0.95, 0.8, 0);
  cairo_pattern_add_color_stop_rgba(band, 0.5, 1, 0.95, 0.8, 0.45);
  cairo_pattern_add_color_stop_rgba(band, 1, 1, 0.95, 0.8, 0);
  cairo_set_source(cr, band);
  cairo_paint(cr);
  cairo_pattern_destroy(band);
  cairo_restore(cr);
}

// ---- Clip 2: the title forming from pieces ------------------------------------------------

constexpr ClipFormat kIntroFormat{320, 240, 12, 84};

void IntroFrame(cairo_t* cr, double t) {
  const int w = kIntroFormat.width, h = kIntroFormat.height;
  static const Cut cut{3, 7, 40, TabStyle::kKnob, 2};
  const double pw = cut.cols * cut.cell, ph = cut.rows * cut.cell;
  const double px = (w - pw) / 2, py = (h - ph) / 2 - 6;
  static const Surface plaque = DrawnSurface(280, 120, [](cairo_t* c) { TitlePlaque(c, 280, 120); });
  Table(cr, w, h);
  const double settle = Span(t, 3.9, 4.6);  // the cut lines fade once every piece is home
  const int count = cut.rows * cut.cols;
  // Pieces arrive in a shuffled order; the later ones are drawn on top.
  std::vector<std::pair<double, int>> order;
  for (int i = 0; i < count; ++i) order.push_back({0.05 + 0.09 * (Hash(i + 101) % count) + 0.02 * i, i});
  std::sort(order.begin(), order.end());
  for (const auto& [start, i] : order) {
    const int r = i / cut.cols, c = i % cut.cols;
    const double x = Span(t, start, start + 1.5), eased = EaseOut(x);
    const double heading = 2 * M_PI * Unit(i * 3 + 1), reach = 190 + 50 * Unit(i * 3 + 2);
    const double homeX = px + c * cut.cell, homeY = py + r * cut.cell;
    PiecePose pose;
    pose.x = homeX + std::cos(heading) * reach * (1 - eased);
    pose.y = homeY + std::sin(heading) * reach * (1 - eased);
    pose.angle = (Unit(i * 3 + 3) - 0.5) * 5 * (1 - eased);
    pose.lift = 6 * (1 - eased);
    pose.edges = 1 - settle;
    pose.glow = x >= 1 ? 1 - Span(t, start + 1.5, start + 2.0) : 0;
    DrawPiece(cr, cut, r, c, plaque.get(), pose);
  }
  WholePicture(cr, plaque.get(), px, py, settle);
  // The finished plaque: a soft glow around it, then a glint across the lettering.
  if (settle > 0) {
    cairo_save(cr);
    cairo_rectangle(cr, px - 4, py - 4, pw + 8, ph + 8);
    cairo_rectangle(cr, px, py, pw, ph);
    cairo_set_fill_rule(cr, CAIRO_FILL_RULE_EVEN_ODD);
    SetShade(cr, ui::kGlow, 0.25 * settle * (1 - Span(t, 5.5, 6.3)));
    cairo_fill(cr);
    cairo_restore(cr);
  }
  Glint(cr, {px, py, pw, ph}, Span(t, 4.6, 5.6));
  FadeToBlack(cr, Span(t, 6.4, 7.0));
}

// ---- Clip 1: how to play ------------------------------------------------------------------

constexpr ClipFormat kHowToFormat{320, 240, 10, 85};

struct Drag {
  int firstCell;     // the pieces moved (one, or a joined pair side by side)
  int cells;
  double fromX, fromY;  // where the first piece's cell lies before the move
  double grab, drop;    // the times the button goes down and the piece snaps home
};

void HowToFrame(cairo_t* cr, double t) {
  const int w = kHowToFormat.width, h = kHowToFormat.height;
  static const Cut cut{3, 4, 44, TabStyle::kKnob, 5};
  const double px = 24, py = 36;
  static const Surface picture = DrawnSurface(176, 132, [](cairo_t* c) { Landscape(c, 176, 132); });
  Table(cr, w, h);
  // Where the picture will lie: a faint recess in the felt.
  cairo_rectangle(cr, px, py, cut.cols * cut.cell, cut.rows * cut.cell);
  SetShade(cr, ui::kShadow, 0.18);
  cairo_fill(cr);

  // A piece box on the right: title strip, wooden sides and a dark inside.
  const Box box{226, 118, 84, 92};
  const double boxShown = 1 - Span(t, 7.4, 8.0);
  cairo_save(cr);
  cairo_push_group(cr);
  cairo_rectangle(cr, box.x + 3, box.y + 4, box.w, box.h);
  SetShade(cr, ui::kShadow, 0.45);
  cairo_fill(cr);
  FillWood(cr, box, 4);
  BrassRim(cr, box, 3, 2);
  cairo_rectangle(cr, box.x + 6, box.y + 20, box.w - 12, box.h - 26);
  SetShade(cr, {0.16, 0.10, 0.05});
  cairo_fill(cr);
  DrawIcon(cr, Icon::kPiece, {box.x + 4, box.y + 3, 14, 14}, ui::kBrassLight);
  cairo_pop_group_to_source(cr);
  cairo_paint_with_alpha(cr, boxShown);
  cairo_restore(cr);

  const Drag drags[3] = {{3, 1, 234, 18, 0.9, 2.3},       // one piece from the table
                         {8, 2, 58, 188, 3.3, 4.9},       // a joined pair, moved as one
                         {11, 1, box.x + 20, box.y + 34, 5.9, 7.3}};  // out of the box
  // Pieces already in place, then the moving ones (in the order they move).
  std::vector<bool> moving(cut.rows * cut.cols, false);
  for (const Drag& d : drags)
    for (int k = 0; k < d.cells; ++k) moving[d.firstCell + k] = true;
  const double done = Span(t, 7.6, 8.2);
  for (int i = 0; i < cut.rows * cut.cols; ++i) {
    if (moving[i]) continue;
    PiecePose pose;
    pose.x = px + (i % cut.cols) * cut.cell;
    pose.y = py + (i / cut.cols) * cut.cell;
    pose.edges = 1 - done;
    DrawPiece(cr, cut, i / cut.cols, i % cut.cols, picture.get(), pose);
  }
  // Where each moved piece lies now: carried by the pointer to just short of its place, where
  // it snaps home.
  auto placeOf = [&](const Drag& d, double& x, double& y) {
    const double homeX = px + (d.firstCell % cut.cols) * cut.cell, homeY = py + (d.firstCell / cut.cols) * cut.cell;
    if (t >= d.drop) {
      x = homeX;
      y = homeY;
      return;
    }
    const double carry = EaseInOut(Span(t, d.grab, d.drop - 0.2));
    x = Mix(d.fromX, homeX + (d.fromX - homeX) * 0.08, carry);
    y = Mix(d.fromY, homeY + (d.fromY - homeY) * 0.08, carry);
  };
  for (const Drag& d : drags) {
    double x = 0, y = 0;
    placeOf(d, x, y);
    const double held = t >= d.grab && t < d.drop ? 1 : 0;
    for (int k = 0; k < d.cells; ++k) {
      const int i = d.firstCell + k;
      PiecePose pose;
      pose.x = x + k * cut.cell;
      pose.y = y - 2 * held;
      pose.lift = 3 * held;
      pose.edges = 1 - done;
      pose.glow = t >= d.drop ? 1 - Span(t, d.drop, d.drop + 0.7) : 0;
      DrawPiece(cr, cut, i / cut.cols, i % cut.cols, picture.get(), pose);
    }
  }
  // Before a grab the pointer travels to the piece; while the button is held it rides on it.
  double pointerX = 150, pointerY = 215, pressed = 0;
  for (const Drag& d : drags) {
    const double grabX = d.fromX + cut.cell * 0.5, grabY = d.fromY + cut.cell * 0.5;
    if (t < d.grab) {
      const double reach = EaseInOut(Span(t, d.grab - 0.8, d.grab - 0.1));
      pointerX = Mix(pointerX, grabX, reach);
      pointerY = Mix(pointerY, grabY, reach);
      pressed = Span(t, d.grab - 0.1, d.grab);
      break;
    }
    double x = 0, y = 0;
    placeOf(d, x, y);
    const bool home = t >= d.drop;
    pointerX = x + cut.cell * 0.5;
    pointerY = y + cut.cell * 0.5 - (home ? 0 : 2);
    pressed = home ? 1 - Span(t, d.drop, d.drop + 0.2) : 1;
  }
  if (t >= drags[2].drop) {
    const double away = EaseInOut(Span(t, 7.5, 8.3));
    pointerX = Mix(pointerX, 300, away);
    pointerY = Mix(pointerY, 250, away);
  }
  WholePicture(cr, picture.get(), px, py, done);
  Glint(cr, {px, py, cut.cols * cut.cell, cut.rows * cut.cell}, Span(t, 7.7, 8.4));
  Pointer(cr, pointerX, pointerY, pressed);
  const char* digits[3] = {"1", "2", "3"};
  for (int k = 0; k < 3; ++k) {
    const double from = k == 0 ? 0.0 : drags[k].grab - 0.8, to = drags[k].drop + 0.6;
    const double shown = Span(t, from, from + 0.3) * (1 - Span(t, to, to + 0.3));
    StepBadge(cr, 18, 18, digits[k], shown);
  }
}

// ---- Clip 0: the presentation -------------------------------------------------------------

constexpr ClipFormat kPresentationFormat{360, 270, 10, 60};

void PresentationFrame(cairo_t* cr, double t) {
  const int w = kPresentationFormat.width, h = kPresentationFormat.height;
  static const Cut cut{4, 6, 48, TabStyle::kDovetail, 9};
  const double pw = cut.cols * cut.cell, ph = cut.rows * cut.cell;
  const double px = (w - pw) / 2, py = 14;
  static const Surface picture = DrawnSurface(288, 192, [](cairo_t* c) { Landscape(c, 288, 192); });
  Table(cr, w, h);
  // Pieces drop into place row by row, from the top left, like a hand laying them down.
  const double settle = Span(t, 2.9, 3.5);
  for (int r = 0; r < cut.rows; ++r) {
    for (int c = 0; c < cut.cols; ++c) {
      const double start = 0.1 + 0.09 * (r * cut.cols + c) + 0.05 * Unit(r * 13 + c);
      const double x = Span(t, start, start + 0.7), eased = EaseOut(x);
      if (x <= 0) continue;
      PiecePose pose;
      pose.x = px + c * cut.cell + (1 - eased) * (c - 2.5) * 14;
      pose.y = py + r * cut.cell - (1 - eased) * 70;
      pose.angle = (Unit(r * 7 + c + 50) - 0.5) * 1.2 * (1 - eased);
      pose.lift = 8 * (1 - eased);
      pose.edges = 1 - settle;
      pose.glow = x >= 1 ? 0.6 * (1 - Span(t, start + 0.7, start + 1.1)) : 0;
      cairo_save(cr);
      cairo_push_group(cr);
      DrawPiece(cr, cut, r, c, picture.get(), pose);
      cairo_pop_group_to_source(cr);
      cairo_paint_with_alpha(cr, Span(t, start, start + 0.2));
      cairo_restore(cr);
    }
  }
  WholePicture(cr, picture.get(), px, py, settle);
  Glint(cr, {px, py, pw, ph}, Span(t, 3.3, 4.2));
  // The name on a walnut banner that rises from the bottom edge.
  const double rise = EaseOut(Span(t, 3.4, 4.3));
  const double bw = 250, bh = 56, bx = (w - bw) / 2, by = Mix(h + 4.0, h - bh - 6.0, rise);
  if (rise > 0) {
    cairo_save(cr);
    cairo_rectangle(cr, bx + 3, by + 4, bw, bh);
    SetShade(cr, ui::kShadow, 0.5);
    cairo_fill(cr);
    FillWood(cr, {bx, by, bw, bh}, 3, 1.05);
    BrassRim(cr, {bx, by, bw, bh}, 6, 3);
    BrassLetters(cr, "Quorvex Puzzle", 27, w / 2.0, by + bh * 0.68);
    Glint(cr, {bx, by, bw, bh}, Span(t, 4.4, 5.3));
    cairo_restore(cr);
  }
}

}  // namespace

ClipFormat VideoClipFormat(int clip) {
  switch (clip) {
    case 0: return kPresentationFormat;
    case 1: return kHowToFormat;
    case 2: return kIntroFormat;
    default: return {};
  }
}

RgbImage DrawVideoFrame(int clip, int frame) {
  const ClipFormat format = VideoClipFormat(clip);
  if (format.width == 0 || frame < 0 || frame >= format.frameCount) return {};
  Canvas canvas(format.width, format.height);
  const double t = static_cast<double>(frame) / format.framesPerSecond;
  switch (clip) {
    case 0: PresentationFrame(canvas.cr(), t); break;
    case 1: HowToFrame(canvas.cr(), t); break;
    default: IntroFrame(canvas.cr(), t); break;
  }
  return canvas.Pixels();
}

bool MakeVideoClip(int clip, AviClip& out, std::string& error) {
  const ClipFormat format = VideoClipFormat(clip);
  if (format.width == 0) {
    error = "there is no clip " + std::to_string(clip);
    return false;
  }
  std::vector<RgbImage> frames;
  for (int i = 0; i < format.frameCount; ++i) frames.push_back(DrawVideoFrame(clip, i));
  // Light dithering: enough to keep the sky and the vignette from banding, little enough that
  // still parts of the picture do not shimmer from frame to frame.
  std::vector<Image8> reduced;
  if (!ReduceFramesToOnePalette(frames, 0.35, reduced, error)) return false;
  AviClip result;
  result.width = format.width;
  result.height = format.height;
  result.framesPerSecond = format.framesPerSecond;
  result.palette = reduced[0].palette;
  for (Image8& frame : reduced) result.frames.push_back(std::move(frame.pixels));
  out = std::move(result);
  return true;
}

}  // namespace qv::assets
