// The interface's buttons and knobs, as finished strips ready for reduction.
#include "assets/ui_buttons.h"

#include <algorithm>
#include <cmath>

#include "assets/ui_strips.h"

namespace qv::assets {
namespace {

Box Whole(int w, int h) { return {0, 0, static_cast<double>(w), static_cast<double>(h)}; }

void FillBackdrop(cairo_t* cr, int w, int h, Backdrop backdrop) {
  switch (backdrop) {
    case Backdrop::kWood: FillWood(cr, Whole(w, h), 1); break;
    case Backdrop::kTitleBar: FillWood(cr, Whole(w, h), 5); break;
    case Backdrop::kBars: FillWood(cr, Whole(w, h), 2, 1.1); break;
  }
}

Shade InkFor(Face face) { return face == Face::kHover ? ui::kBrassLight : ui::kCream; }

Shade Mix(const Shade& a, const Shade& b, double t) {
  return {a.r + (b.r - a.r) * t, a.g + (b.g - a.g) * t, a.b + (b.b - a.b) * t};
}

Box Inset(const Box& b, double k) {
  const double dx = b.w * k, dy = b.h * k;
  return {b.x + dx, b.y + dy, b.w - 2 * dx, b.h - 2 * dy};
}

double PushRadius(int w, int h) { return std::min(w, h) * 0.22; }

// The first box is a knob, the rest alternate shapes, so that the six boxes differ at a glance.
TabStyle BoxPieceStyle(int number) {
  constexpr TabStyle styles[3] = {TabStyle::kKnob, TabStyle::kDovetail, TabStyle::kDoubleLobe};
  return styles[(number - 1) % 3];
}

}  // namespace

RgbImage IconPush(int width, int height, Icon icon, Backdrop backdrop) {
  return ColumnStrip(width, height, 3, [&](cairo_t* cr, int w, int h, int frame) {
    FillBackdrop(cr, w, h, backdrop);
    const Face face = kPushFaces[frame];
    const Box inside = ButtonBody(cr, Whole(w, h), PushRadius(w, h), face);
    const double side = std::min(inside.w, inside.h) * 0.9;
    DrawIcon(cr, icon, {inside.x + (inside.w - side) / 2, inside.y + (inside.h - side) / 2, side, side},
             InkFor(face));
  });
}

RgbImage GlyphPush(int width, int height, const std::string& glyph, Backdrop backdrop) {
  return ColumnStrip(width, height, 3, [&](cairo_t* cr, int w, int h, int frame) {
    FillBackdrop(cr, w, h, backdrop);
    const Face face = kPushFaces[frame];
    const Box inside = ButtonBody(cr, Whole(w, h), PushRadius(w, h), face);
    DrawGlyph(cr, glyph, Inset(inside, 0.05), InkFor(face));
  });
}

RgbImage BoxPush(int number, bool full) {
  return ColumnStrip(50, 50, 3, [&](cairo_t* cr, int w, int h, int frame) {
    const Face face = kPushFaces[frame];
    const Box inside = ButtonBody(cr, Whole(w, h), 4, face);
    // Crate slats across the whole box; the symbol sits in the left half.
    cairo_set_line_width(cr, 1);
    for (double y = inside.y + 11; y < inside.y + inside.h - 4; y += 11) {
      cairo_move_to(cr, inside.x, y + 0.5);
      cairo_line_to(cr, inside.x + inside.w, y + 0.5);
      SetShade(cr, ui::kShadow, 0.45);
      cairo_stroke(cr);
    }
    // A full box shows a brass piece behind its number; an empty one only the piece's outline.
    const double cx = inside.x + 11, cy = inside.y + inside.h / 2;
    const Shade ink = InkFor(face);
    PiecePath(cr, BoxPieceStyle(number), cx + 1, cy + 1, 20);
    SetShade(cr, ui::kShadow, 0.8);
    cairo_fill(cr);
    PiecePath(cr, BoxPieceStyle(number), cx, cy, 20);
    if (full) {
      SetShade(cr, face == Face::kHover ? ui::kBrassLight : ui::kBrass);
      cairo_fill_preserve(cr);
      SetShade(cr, ui::kShadow, 0.9);
      cairo_set_line_width(cr, 1);
      cairo_stroke(cr);
    } else {
      SetShade(cr, ui::kShadow, 0.5);
      cairo_fill_preserve(cr);
      SetShade(cr, ink);
      cairo_set_line_width(cr, 1.2);
      const double dash[] = {2.5, 1.5};
      cairo_set_dash(cr, dash, 2, 0);
      cairo_stroke(cr);
      cairo_set_dash(cr, nullptr, 0, 0);
    }
    cairo_select_font_face(cr, "DejaVu Sans", CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_BOLD);
    cairo_set_font_size(cr, 17);
    const std::string text = std::to_string(number);
    cairo_text_extents_t e;
    cairo_text_extents(cr, text.c_str(), &e);
    const double x = cx - e.width / 2 - e.x_bearing, y = cy - e.height / 2 - e.y_bearing;
    if (!full) {
      cairo_move_to(cr, x + 1, y + 1);
      SetShade(cr, ui::kShadow, 0.9);
      cairo_show_text(cr, text.c_str());
    }
    cairo_move_to(cr, x, y);
    SetShade(cr, full ? ui::kInk : ink);
    cairo_show_text(cr, text.c_str());
  });
}

RgbImage EdgeInfoPush() {
  return ColumnStrip(50, 50, 3, [&](cairo_t* cr, int w, int h, int frame) {
    const Face face = kPushFaces[frame];
    const Box inside = ButtonBody(cr, Whole(w, h), 4, face);
    // A brass medallion in the left half, which is all that shows at the screen's edge.
    const double cx = inside.x + 11, cy = inside.y + inside.h / 2;
    BrassRim(cr, {cx - 11, cy - 11, 22, 22}, 11, 11, face == Face::kPressed);
    cairo_arc(cr, cx, cy, 8, 0, 2 * M_PI);
    SetShade(cr, face == Face::kHover ? ui::kGlow : ui::kCream);
    cairo_fill(cr);
    DrawGlyph(cr, "i", {cx - 10, cy - 10, 20, 20}, ui::kInk);
  });
}

RgbImage Anim10(int side, Icon icon) {
  return RowStrip(side, side, 10, [&](cairo_t* cr, int w, int h, int frame) {
    FillBackdrop(cr, w, h, Backdrop::kBars);
    const bool hover = frame == 9;
    const double open = hover ? 1.0 : frame / 8.0;
    const Box disc{1, 1, w - 2.0, h - 2.0};
    // Opening sinks the button step by step and lights a brass ring around it; hover lifts
    // it and glows.
    const Face face = hover ? Face::kHover : frame >= 4 ? Face::kPressed : Face::kNormal;
    const Box inside = ButtonBody(cr, disc, w, face);
    if (!hover && frame > 0) {
      const double cx = w / 2.0, cy = h / 2.0, r = w / 2.0 - 3;
      cairo_new_sub_path(cr);
      cairo_arc(cr, cx, cy, r, -M_PI / 2, -M_PI / 2 + 2 * M_PI * open);
      cairo_set_line_width(cr, std::max(2.0, w * 0.07));
      cairo_set_line_cap(cr, CAIRO_LINE_CAP_ROUND);
      SetShade(cr, ui::kGlow, 0.9);
      cairo_stroke(cr);
    }
    const double size = std::min(inside.w, inside.h) * (0.78 + 0.06 * open);
    const Shade ink = hover ? ui::kBrassLight : Mix(ui::kCream, ui::kGlow, open);
    DrawIcon(cr, icon, {inside.x + (inside.w - size) / 2, inside.y + (inside.h - size) / 2, size, size}, ink);
  });
}

RgbImage ShapeCheck(TabStyle style) {
  return ColumnStrip(50, 50, 4, [&](cairo_t* cr, int w, int h, int frame) {
    FillBackdrop(cr, w, h, Backdrop::kWood);
    const bool checked = frame >= 2, hover = frame % 2 == 1;
    const Face face = hover ? Face::kHover : checked ? Face::kPressed : Face::kNormal;
    const Box inside = ButtonBody(cr, Whole(w, h), 8, face);
    const double cx = inside.x + inside.w / 2, cy = inside.y + inside.h / 2;
    PiecePath(cr, style, cx + 1.5, cy + 1.5, inside.w * 0.52, true);
    SetShade(cr, ui::kShadow, 0.8);
    cairo_fill(cr);
    PiecePath(cr, style, cx, cy, inside.w * 0.52, true);
    SetShade(cr, checked ? ui::kGlow : ui::kCream);
    cairo_fill(cr);
  });
}

RgbImage ShapeCycler() {
  constexpr TabStyle styles[3] = {TabStyle::kKnob, TabStyle::kDovetail, TabStyle::kDoubleLobe};
  return RowStrip(60, 60, 6, [&](cairo_t* cr, int w, int h, int frame) {
    FillBackdrop(cr, w, h, Backdrop::kWood);
    const bool lit = frame >= 3;
    const Box inside = ButtonBody(cr, Whole(w, h), 10, lit ? Face::kHover : Face::kNormal);
    const double cx = inside.x + inside.w / 2, cy = inside.y + inside.h / 2;
    PiecePath(cr, styles[frame % 3], cx + 1.5, cy + 1.5, inside.w * 0.52, true);
    SetShade(cr, ui::kShadow, 0.8);
    cairo_fill(cr);
    PiecePath(cr, styles[frame % 3], cx, cy, inside.w * 0.52, true);
    SetShade(cr, lit ? ui::kBrassLight : ui::kCream);
    cairo_fill(cr);
  });
}

RgbImage ScrollBar(int width, const std::array<int, 3>& parts) {
  return ScrollStrip(width, parts, [&](cairo_t* cr, int w, int h, int frame) {
    const int part = frame / 3;
    const Face face = kPushFaces[frame % 3];
    FillBackdrop(cr, w, h, Backdrop::kWood);
    if (part == 1) {
      // The track: a recessed brass-lined groove that warms up under the pointer.
      const Box groove{w * 0.3, 0, w * 0.4, static_cast<double>(h)};
      cairo_rectangle(cr, groove.x, groove.y, groove.w, groove.h);
      SetShade(cr, ui::kShadow, face == Face::kPressed ? 0.9 : 0.75);
      cairo_fill(cr);
      cairo_set_line_width(cr, 2);
      cairo_move_to(cr, groove.x + groove.w - 1, 0);
      cairo_line_to(cr, groove.x + groove.w - 1, h);
      SetShade(cr, ui::kBrass, 0.8);
      cairo_stroke(cr);
      if (face == Face::kHover) {
        cairo_rectangle(cr, groove.x + 2, 0, groove.w - 4, h);
        SetShade(cr, ui::kGlow, 0.35);
        cairo_fill(cr);
      }
      return;
    }
    const Box inside = ButtonBody(cr, {2, 2, w - 4.0, h - 4.0}, 8, face);
    const double cx = inside.x + inside.w / 2, cy = inside.y + inside.h / 2, s = std::min(inside.w, inside.h) * 0.32;
    const double dir = part == 0 ? -1 : 1;
    for (int pass = 0; pass < 2; ++pass) {
      const double o = pass == 0 ? 1.5 : 0;
      cairo_move_to(cr, cx - s + o, cy - dir * s * 0.5 + o);
      cairo_line_to(cr, cx + s + o, cy - dir * s * 0.5 + o);
      cairo_line_to(cr, cx + o, cy + dir * s * 0.7 + o);
      cairo_close_path(cr);
      if (pass == 0) {
        SetShade(cr, ui::kShadow, 0.8);
      } else {
        SetShade(cr, InkFor(face));
      }
      cairo_fill(cr);
    }
  });
}

RgbImage VolumeIndicator(Icon icon) {
  const FrameDraw plaque = [](cairo_t* cr, int w, int h, int) {
    RoundedRectPath(cr, Whole(w, h), 12);
    cairo_fill(cr);
  };
  return SpriteStrip(60, 40, 2, [&](cairo_t* cr, int w, int h, int frame) {
    const bool on = frame == 1;
    const Box inside = ButtonBody(cr, Whole(w, h), 12, on ? Face::kHover : Face::kPressed);
    const double side = inside.h * 0.95;
    DrawIcon(cr, icon, {inside.x + (inside.w - side) / 2, inside.y + (inside.h - side) / 2, side, side},
             on ? ui::kBrassLight : Shade{0.55, 0.45, 0.33});
    if (!on) {
      cairo_move_to(cr, inside.x + 6, inside.y + inside.h - 4);
      cairo_line_to(cr, inside.x + inside.w - 6, inside.y + 4);
      cairo_set_line_width(cr, 3);
      SetShade(cr, {0.70, 0.18, 0.10});
      cairo_stroke(cr);
    }
  }, plaque);
}

RgbImage SliderKnob() {
  const FrameDraw pill = [](cairo_t* cr, int w, int h, int) {
    RoundedRectPath(cr, Whole(w, h), h / 2.0);
    cairo_fill(cr);
  };
  return SpriteStrip(30, 18, 1, [&](cairo_t* cr, int w, int h, int) {
    BrassRim(cr, Whole(w, h), h / 2.0, h / 2.0);
    cairo_move_to(cr, 6, h / 2.0);
    cairo_line_to(cr, w - 6, h / 2.0);
    cairo_set_line_width(cr, 2);
    SetShade(cr, ui::kBrassDark);
    cairo_stroke(cr);
  }, pill);
}

}  // namespace qv::assets
