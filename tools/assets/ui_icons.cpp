// The symbols on the interface buttons: bold, one colour, readable at 40 pixels.
#include "assets/ui_icons.h"

#include <algorithm>
#include <cmath>

namespace qv::assets {
namespace {

// Symbols are drawn in a unit square centred on the origin with the current source colour.
void Stroke(cairo_t* cr, double width) {
  cairo_set_line_width(cr, width);
  cairo_set_line_cap(cr, CAIRO_LINE_CAP_ROUND);
  cairo_set_line_join(cr, CAIRO_LINE_JOIN_ROUND);
  cairo_stroke(cr);
}

void Line(cairo_t* cr, double x0, double y0, double x1, double y1) {
  cairo_move_to(cr, x0, y0);
  cairo_line_to(cr, x1, y1);
}

void GlyphPath(cairo_t* cr, const char* text, double height) {
  cairo_select_font_face(cr, "DejaVu Sans", CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_BOLD);
  cairo_set_font_size(cr, height);
  cairo_text_extents_t e;
  cairo_text_extents(cr, text, &e);
  cairo_move_to(cr, -e.width / 2 - e.x_bearing, -e.height / 2 - e.y_bearing);
  cairo_text_path(cr, text);
  cairo_fill(cr);
}

void Speaker(cairo_t* cr) {
  cairo_move_to(cr, -0.40, -0.12);
  cairo_line_to(cr, -0.22, -0.12);
  cairo_line_to(cr, 0.0, -0.32);
  cairo_line_to(cr, 0.0, 0.32);
  cairo_line_to(cr, -0.22, 0.12);
  cairo_line_to(cr, -0.40, 0.12);
  cairo_close_path(cr);
  cairo_fill(cr);
  for (int i = 1; i <= 2; ++i) {
    cairo_new_sub_path(cr);
    cairo_arc(cr, 0.02, 0, 0.14 * i + 0.02, -0.8, 0.8);
    Stroke(cr, 0.07);
  }
}

void RoundedBody(cairo_t* cr) {
  const double x = -0.42, y = -0.16, w = 0.84, h = 0.36, r = 0.07;
  cairo_new_sub_path(cr);
  cairo_arc(cr, x + w - r, y + r, r, -M_PI / 2, 0);
  cairo_arc(cr, x + w - r, y + h - r, r, 0, M_PI / 2);
  cairo_arc(cr, x + r, y + h - r, r, M_PI / 2, M_PI);
  cairo_arc(cr, x + r, y + r, r, M_PI, 3 * M_PI / 2);
  cairo_close_path(cr);
}

void Symbol(cairo_t* cr, Icon icon) {
  switch (icon) {
    case Icon::kCross:
      Line(cr, -0.28, -0.28, 0.28, 0.28);
      Line(cr, 0.28, -0.28, -0.28, 0.28);
      Stroke(cr, 0.16);
      break;
    case Icon::kMinimise:
      Line(cr, -0.28, 0.22, 0.28, 0.22);
      Stroke(cr, 0.16);
      break;
    case Icon::kCheck:
      cairo_move_to(cr, -0.32, 0.0);
      cairo_line_to(cr, -0.10, 0.24);
      cairo_line_to(cr, 0.32, -0.26);
      Stroke(cr, 0.16);
      break;
    case Icon::kPlus:
      Line(cr, -0.3, 0, 0.3, 0);
      Line(cr, 0, -0.3, 0, 0.3);
      Stroke(cr, 0.15);
      break;
    case Icon::kMinus:
      Line(cr, -0.3, 0, 0.3, 0);
      Stroke(cr, 0.15);
      break;
    case Icon::kQuestion: GlyphPath(cr, "?", 0.78); break;
    case Icon::kInfo: GlyphPath(cr, "i", 0.74); break;
    case Icon::kExclaim: GlyphPath(cr, "!", 0.74); break;
    case Icon::kNext:
      Line(cr, -0.32, 0, 0.12, 0);
      Stroke(cr, 0.15);
      cairo_move_to(cr, 0.02, -0.28);
      cairo_line_to(cr, 0.36, 0);
      cairo_line_to(cr, 0.02, 0.28);
      cairo_close_path(cr);
      cairo_fill(cr);
      break;
    case Icon::kPlay:
      cairo_move_to(cr, -0.22, -0.32);
      cairo_line_to(cr, 0.32, 0);
      cairo_line_to(cr, -0.22, 0.32);
      cairo_close_path(cr);
      cairo_fill(cr);
      break;
    case Icon::kReplay:
      cairo_arc(cr, 0, 0.02, 0.27, -M_PI * 0.35, M_PI * 1.35);
      Stroke(cr, 0.12);
      cairo_move_to(cr, 0.30, -0.42);
      cairo_line_to(cr, 0.30, -0.10);
      cairo_line_to(cr, 0.0, -0.22);
      cairo_close_path(cr);
      cairo_fill(cr);
      break;
    case Icon::kGlobe:
      cairo_arc(cr, 0, 0, 0.32, 0, 2 * M_PI);
      Stroke(cr, 0.08);
      cairo_save(cr);
      cairo_scale(cr, 0.45, 1);
      cairo_arc(cr, 0, 0, 0.32, 0, 2 * M_PI);
      cairo_restore(cr);
      Stroke(cr, 0.06);
      Line(cr, -0.32, 0, 0.32, 0);
      Line(cr, 0, -0.32, 0, 0.32);
      Line(cr, -0.27, -0.15, 0.27, -0.15);
      Line(cr, -0.27, 0.15, 0.27, 0.15);
      Stroke(cr, 0.05);
      break;
    case Icon::kPrinter:
      // Paper waiting on top, the body in outline with its slot, the printed sheet below.
      cairo_rectangle(cr, -0.22, -0.40, 0.44, 0.20);
      cairo_fill(cr);
      RoundedBody(cr);
      Stroke(cr, 0.08);
      cairo_arc(cr, 0.26, -0.03, 0.045, 0, 2 * M_PI);
      cairo_fill(cr);
      cairo_rectangle(cr, -0.22, 0.10, 0.44, 0.30);
      cairo_fill(cr);
      break;
    case Icon::kEye:
      cairo_move_to(cr, -0.4, 0);
      cairo_curve_to(cr, -0.2, -0.3, 0.2, -0.3, 0.4, 0);
      cairo_curve_to(cr, 0.2, 0.3, -0.2, 0.3, -0.4, 0);
      cairo_close_path(cr);
      Stroke(cr, 0.07);
      cairo_arc(cr, 0, 0, 0.12, 0, 2 * M_PI);
      cairo_fill(cr);
      break;
    case Icon::kMagnifier:
      cairo_arc(cr, -0.07, -0.07, 0.22, 0, 2 * M_PI);
      Stroke(cr, 0.09);
      Line(cr, 0.10, 0.10, 0.32, 0.32);
      Stroke(cr, 0.15);
      break;
    case Icon::kBulb:
      cairo_arc(cr, 0, -0.09, 0.22, M_PI * 0.75, M_PI * 2.25);
      cairo_line_to(cr, 0.09, 0.17);
      cairo_line_to(cr, -0.09, 0.17);
      cairo_close_path(cr);
      cairo_fill(cr);
      Line(cr, -0.09, 0.25, 0.09, 0.25);
      Line(cr, -0.06, 0.34, 0.06, 0.34);
      Stroke(cr, 0.06);
      break;
    case Icon::kNote:
      cairo_save(cr);
      cairo_translate(cr, -0.19, 0.22);
      cairo_scale(cr, 1.3, 1);
      cairo_arc(cr, 0, 0, 0.09, 0, 2 * M_PI);
      cairo_restore(cr);
      cairo_fill(cr);
      cairo_save(cr);
      cairo_translate(cr, 0.17, 0.14);
      cairo_scale(cr, 1.3, 1);
      cairo_arc(cr, 0, 0, 0.09, 0, 2 * M_PI);
      cairo_restore(cr);
      cairo_fill(cr);
      Line(cr, -0.08, 0.22, -0.08, -0.26);
      Line(cr, 0.28, 0.14, 0.28, -0.34);
      Stroke(cr, 0.06);
      cairo_move_to(cr, -0.08, -0.26);
      cairo_line_to(cr, 0.28, -0.34);
      cairo_line_to(cr, 0.28, -0.22);
      cairo_line_to(cr, -0.08, -0.14);
      cairo_close_path(cr);
      cairo_fill(cr);
      break;
    case Icon::kTrophy:
      cairo_move_to(cr, -0.22, -0.32);
      cairo_line_to(cr, 0.22, -0.32);
      cairo_curve_to(cr, 0.22, 0.0, 0.12, 0.08, 0.0, 0.08);
      cairo_curve_to(cr, -0.12, 0.08, -0.22, 0.0, -0.22, -0.32);
      cairo_fill(cr);
      cairo_arc(cr, -0.22, -0.17, 0.1, M_PI / 2, M_PI * 1.5);
      cairo_new_sub_path(cr);
      cairo_arc(cr, 0.22, -0.17, 0.1, -M_PI / 2, M_PI / 2);
      Stroke(cr, 0.06);
      cairo_rectangle(cr, -0.04, 0.06, 0.08, 0.16);
      cairo_rectangle(cr, -0.18, 0.22, 0.36, 0.1);
      cairo_fill(cr);
      break;
    case Icon::kSolve:
      PiecePath(cr, TabStyle::kKnob, -0.05, 0.02, 0.42);
      cairo_fill(cr);
      cairo_move_to(cr, 0.12, -0.30);
      cairo_line_to(cr, 0.22, -0.20);
      cairo_line_to(cr, 0.42, -0.42);
      Stroke(cr, 0.08);
      break;
    case Icon::kExit:
      cairo_move_to(cr, 0.05, -0.24);
      cairo_line_to(cr, 0.05, -0.36);
      cairo_line_to(cr, -0.34, -0.36);
      cairo_line_to(cr, -0.34, 0.36);
      cairo_line_to(cr, 0.05, 0.36);
      cairo_line_to(cr, 0.05, 0.24);
      Stroke(cr, 0.08);
      Line(cr, -0.14, 0, 0.22, 0);
      Stroke(cr, 0.12);
      cairo_move_to(cr, 0.16, -0.18);
      cairo_line_to(cr, 0.40, 0);
      cairo_line_to(cr, 0.16, 0.18);
      cairo_close_path(cr);
      cairo_fill(cr);
      break;
    case Icon::kOpenFolder:
      // A folder's back with its tab, its front tipped open towards the viewer, and a sheet
      // standing out of it.
      cairo_move_to(cr, -0.40, 0.30);
      cairo_line_to(cr, -0.40, -0.26);
      cairo_line_to(cr, -0.16, -0.26);
      cairo_line_to(cr, -0.10, -0.18);
      cairo_line_to(cr, 0.30, -0.18);
      cairo_line_to(cr, 0.30, -0.04);
      Stroke(cr, 0.07);
      cairo_rectangle(cr, -0.20, -0.32, 0.34, 0.30);
      Stroke(cr, 0.05);
      cairo_move_to(cr, -0.40, 0.32);
      cairo_line_to(cr, -0.24, -0.04);
      cairo_line_to(cr, 0.44, -0.04);
      cairo_line_to(cr, 0.28, 0.32);
      cairo_close_path(cr);
      cairo_fill(cr);
      break;
    case Icon::kSaveBox:
      // A box with its label and shutter, and an arrow pointing into it.
      cairo_move_to(cr, -0.36, -0.16);
      cairo_line_to(cr, 0.24, -0.16);
      cairo_line_to(cr, 0.36, -0.04);
      cairo_line_to(cr, 0.36, 0.40);
      cairo_line_to(cr, -0.36, 0.40);
      cairo_close_path(cr);
      Stroke(cr, 0.07);
      cairo_rectangle(cr, -0.20, 0.14, 0.40, 0.22);
      cairo_fill(cr);
      Line(cr, 0.0, -0.44, 0.0, -0.12);
      Stroke(cr, 0.10);
      cairo_move_to(cr, -0.15, -0.16);
      cairo_line_to(cr, 0.15, -0.16);
      cairo_line_to(cr, 0.0, 0.04);
      cairo_close_path(cr);
      cairo_fill(cr);
      break;
    case Icon::kBin:
      Line(cr, -0.30, -0.24, 0.30, -0.24);
      Line(cr, -0.08, -0.32, 0.08, -0.32);
      Stroke(cr, 0.07);
      cairo_move_to(cr, -0.23, -0.16);
      cairo_line_to(cr, 0.23, -0.16);
      cairo_line_to(cr, 0.18, 0.36);
      cairo_line_to(cr, -0.18, 0.36);
      cairo_close_path(cr);
      cairo_fill(cr);
      break;
    case Icon::kPencil:
      cairo_save(cr);
      cairo_rotate(cr, -M_PI / 4);
      cairo_rectangle(cr, -0.22, -0.09, 0.46, 0.18);
      cairo_fill(cr);
      cairo_move_to(cr, -0.26, -0.09);
      cairo_line_to(cr, -0.42, 0);
      cairo_line_to(cr, -0.26, 0.09);
      cairo_close_path(cr);
      cairo_fill(cr);
      cairo_restore(cr);
      break;
    case Icon::kSpeaker: Speaker(cr); break;
    case Icon::kWave:
      cairo_move_to(cr, -0.40, 0);
      for (int i = 1; i <= 40; ++i) {
        const double x = -0.40 + 0.8 * i / 40;
        cairo_line_to(cr, x, -0.22 * std::sin(x * 2.5 * M_PI) * (1 - std::fabs(x) * 0.8));
      }
      Stroke(cr, 0.09);
      break;
    case Icon::kStop: cairo_rectangle(cr, -0.24, -0.24, 0.48, 0.48); cairo_fill(cr); break;
    case Icon::kPicture:
      cairo_rectangle(cr, -0.36, -0.28, 0.72, 0.56);
      Stroke(cr, 0.07);
      cairo_move_to(cr, -0.30, 0.22);
      cairo_line_to(cr, -0.10, -0.04);
      cairo_line_to(cr, 0.04, 0.10);
      cairo_line_to(cr, 0.14, 0.0);
      cairo_line_to(cr, 0.30, 0.22);
      cairo_close_path(cr);
      cairo_fill(cr);
      cairo_arc(cr, 0.16, -0.13, 0.06, 0, 2 * M_PI);
      cairo_fill(cr);
      break;
    case Icon::kPiece:
      PiecePath(cr, TabStyle::kKnob, 0, 0, 0.5);
      cairo_fill(cr);
      break;
    case Icon::kSwatch:
      // Four table tiles, two filled and two outlined: the table's texture.
      for (int row = 0; row < 2; ++row) {
        for (int col = 0; col < 2; ++col) {
          const double x = -0.34 + col * 0.36;
          const double y = -0.34 + row * 0.36;
          cairo_rectangle(cr, x, y, 0.32, 0.32);
          if ((row + col) % 2 == 0) {
            cairo_fill(cr);
          } else {
            Stroke(cr, 0.06);
          }
        }
      }
      break;
  }
}

template <typename Draw>
void WithShadow(cairo_t* cr, const Box& box, const Shade& ink, Draw draw) {
  const double side = std::min(box.w, box.h);
  const double off = std::max(1.0, std::round(side * 0.05));
  for (int pass = 0; pass < 2; ++pass) {
    cairo_save(cr);
    cairo_translate(cr, box.x + box.w / 2 + (pass == 0 ? off : 0), box.y + box.h / 2 + (pass == 0 ? off : 0));
    cairo_scale(cr, side, side);
    if (pass == 0) {
      SetShade(cr, ui::kShadow, 0.8);
    } else {
      SetShade(cr, ink);
    }
    draw();
    cairo_restore(cr);
  }
}

}  // namespace

void DrawIcon(cairo_t* cr, Icon icon, const Box& box, const Shade& ink) {
  WithShadow(cr, box, ink, [&] { Symbol(cr, icon); });
}

void DrawGlyph(cairo_t* cr, const std::string& glyph, const Box& box, const Shade& ink) {
  WithShadow(cr, box, ink, [&] { GlyphPath(cr, glyph.c_str(), 0.7); });
}

void PiecePath(cairo_t* cr, TabStyle style, double cx, double cy, double side, bool tabsAllRound) {
  const double h = side / 2;
  const double corners[4][2] = {{cx - h, cy - h}, {cx + h, cy - h}, {cx + h, cy + h}, {cx - h, cy + h}};
  const std::vector<Point> outline = TabOutline(style, TabVariation{});
  cairo_new_sub_path(cr);
  cairo_move_to(cr, corners[0][0], corners[0][1]);
  for (int edge = 0; edge < 4; ++edge) {
    const double* p0 = corners[edge];
    const double* p1 = corners[(edge + 1) % 4];
    const double dx = (p1[0] - p0[0]) / side, dy = (p1[1] - p0[1]) / side;
    const double nx = dy, ny = -dx;                  // outward for a clockwise walk
    const double sign = edge % 2 == 0 || tabsAllRound ? 1.0 : -1.0;
    for (const Point& q : outline) {
      cairo_line_to(cr, p0[0] + side * (q.u * dx + sign * q.v * nx), p0[1] + side * (q.u * dy + sign * q.v * ny));
    }
    cairo_line_to(cr, p1[0], p1[1]);
  }
  cairo_close_path(cr);
}

}  // namespace qv::assets
