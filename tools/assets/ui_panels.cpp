// The interface's backgrounds, frames, tiles and banners (pictures that carry no words).
#include "assets/ui_panels.h"

#include <algorithm>
#include <cmath>
#include <functional>

#include "assets/textures.h"
#include "assets/ui_icons.h"
#include "screens/video_layout.h"

namespace qv::assets {
namespace {

Box Whole(int w, int h) { return {0, 0, static_cast<double>(w), static_cast<double>(h)}; }

// A recessed area: dark inner shadow lines on the top and left, a light line bottom and right.
void Recess(cairo_t* cr, const Box& b) {
  cairo_save(cr);
  cairo_set_line_width(cr, 2);
  cairo_move_to(cr, b.x - 1, b.y + b.h);
  cairo_line_to(cr, b.x - 1, b.y - 1);
  cairo_line_to(cr, b.x + b.w, b.y - 1);
  SetShade(cr, ui::kShadow, 0.8);
  cairo_stroke(cr);
  cairo_move_to(cr, b.x + b.w + 1, b.y - 1);
  cairo_line_to(cr, b.x + b.w + 1, b.y + b.h + 1);
  cairo_line_to(cr, b.x - 1, b.y + b.h + 1);
  SetShade(cr, ui::kBrassLight, 0.6);
  cairo_stroke(cr);
  cairo_restore(cr);
}

RgbImage Draw(int w, int h, const std::function<void(cairo_t*)>& draw) {
  Canvas canvas(w, h);
  draw(canvas.cr());
  return canvas.Pixels();
}

// A parchment panel set into a brass moulding.
void FramedParchment(cairo_t* cr, const Box& b) {
  BrassRim(cr, {b.x - 4, b.y - 4, b.w + 8, b.h + 8}, 9, 4);
  FillParchment(cr, b, 6);
}

}  // namespace

RgbImage TitleBarTile() { return WoodTile(76, 78, 5); }
RgbImage ToolStripTile() { return WoodTile(25, 139, 2, true, 1.1); }
RgbImage ToolPanelTile() { return WoodTile(98, 95, 2, false, 1.1); }
RgbImage OptionStripTile() { return WoodTile(103, 25, 2, false, 1.1); }
RgbImage OptionPanelTile() { return WoodTile(103, 103, 2, false, 1.1); }

RgbImage HonourTile() {
  Canvas canvas(80, 80);
  // Dark walnut: the rows are written in the program's cream text colour straight onto it.
  canvas.Place(WoodTile(80, 80, 160, false, 0.8), 0, 0);
  cairo_t* cr = canvas.cr();
  // A faint lattice of diamonds and dots; the diamonds on the edges are drawn whole on both
  // sides, so the tile repeats without a seam.
  for (int cy = 0; cy <= 80; cy += 40) {
    for (int cx = 0; cx <= 80; cx += 40) {
      cairo_move_to(cr, cx, cy - 7);
      cairo_line_to(cr, cx + 7, cy);
      cairo_line_to(cr, cx, cy + 7);
      cairo_line_to(cr, cx - 7, cy);
      cairo_close_path(cr);
      SetShade(cr, ui::kBrass, 0.22);
      cairo_fill(cr);
    }
  }
  for (int cy = 20; cy <= 60; cy += 40) {
    for (int cx = 20; cx <= 60; cx += 40) {
      cairo_arc(cr, cx, cy, 2.5, 0, 2 * M_PI);
      SetShade(cr, ui::kBrassDark, 0.3);
      cairo_fill(cr);
    }
  }
  return canvas.Pixels();
}

RgbImage SmallScreenBackground() {
  return Draw(250, 300, [](cairo_t* cr) {
    ScreenFrame(cr, 250, 300, 1);
    FramedParchment(cr, {14, 50, 222, 196});
  });
}

RgbImage MessageBoxFace() {
  return Draw(500, 305, [](cairo_t* cr) {
    ScreenFrame(cr, 500, 305, 1);
    // The icon is copied over this socket at (13, 7).
    BrassRim(cr, {10, 4, 46, 46}, 23, 3, true);
    FramedParchment(cr, {16, 56, 468, 198});
  });
}

RgbImage MessageBoxIcon() {
  return Draw(40, 40, [](cairo_t* cr) {
    FillWood(cr, Whole(40, 40), 1);
    BrassRim(cr, {0, 0, 40, 40}, 20, 20);
    cairo_arc(cr, 20, 20, 15, 0, 2 * M_PI);
    SetShade(cr, ui::kInk);
    cairo_fill(cr);
    DrawIcon(cr, Icon::kExclaim, {6, 6, 28, 28}, ui::kBrassLight);
  });
}

RgbImage TextureScreenBackground() {
  return Draw(300, 345, [](cairo_t* cr) {
    ScreenFrame(cr, 300, 345, 1);
    FramedParchment(cr, {14, 52, 272, 228});
  });
}

RgbImage NewGameBackground() {
  return Draw(610, 300, [](cairo_t* cr) {
    ScreenFrame(cr, 610, 300, 1);
    // The tabs hang in the dark column on the left and open onto the parchment panel.
    cairo_rectangle(cr, 4, 4, 101, 292);
    SetShade(cr, ui::kShadow, 0.35);
    cairo_fill(cr);
    BrassRim(cr, {105, 4, 501, 228}, 6, 3);
    FillParchment(cr, {108, 7, 495, 222}, 4);
  });
}

// The presentation plays in the frame's window; the three buttons sit in sockets below it, where
// the video screen puts them (both take the places from the screen's own layout).
RgbImage VideoFrame() {
  return Draw(kVideoFrameWidth, kVideoFrameHeight, [](cairo_t* cr) {
    ScreenFrame(cr, kVideoFrameWidth, kVideoFrameHeight, 1);
    const Box window{static_cast<double>(kVideoFrameWindow.x),
                     static_cast<double>(kVideoFrameWindow.y),
                     static_cast<double>(kVideoFrameWindow.width),
                     static_cast<double>(kVideoFrameWindow.height)};
    const std::string title = "Quorvex Puzzle";
    const FittedText fit = FitText(cr, title, {window.x, 12, window.w, window.y - 24}, 0, 30);
    if (fit.size > 0) DrawFittedText(cr, title, fit, ui::kBrassLight, true);
    BrassRim(cr, {window.x - 5, window.y - 5, window.w + 10, window.h + 10}, 6, 5);
    cairo_rectangle(cr, window.x, window.y, window.w, window.h);
    SetShade(cr, {0.02, 0.02, 0.02});
    cairo_fill(cr);
    Recess(cr, window);
    const double rule = window.y + window.h + 18;
    cairo_rectangle(cr, 16, rule, kVideoFrameWidth - 32, 2);
    SetShade(cr, ui::kBrassDark, 0.8);
    cairo_fill(cr);
    for (const VideoPoint at : {kVideoCloseAt, kVideoReplayAt, kVideoWebSiteAt}) {
      RoundedRectPath(cr, {at.x - 3.0, at.y - 3.0, 76, 46}, 8);
      SetShade(cr, ui::kShadow, 0.55);
      cairo_fill(cr);
    }
  });
}

RgbImage InfoBackground() {
  return Draw(520, 400, [](cairo_t* cr) {
    ScreenFrame(cr, 520, 400, 1);
    FramedParchment(cr, {260, 20, 244, 300});
  });
}

RgbImage InfoPictureFrame() {
  return Draw(236, 180, [](cairo_t* cr) {
    FillWood(cr, Whole(236, 180), 1);
    BrassRim(cr, {0, 0, 236, 180}, 4, 10);
    cairo_rectangle(cr, 10, 10, 216, 160);
    SetShade(cr, ui::kShadow);
    cairo_fill(cr);
    Recess(cr, {10, 10, 216, 160});
  });
}

RgbImage PrintWaitBackground() {
  return Draw(320, 140, [](cairo_t* cr) {
    ScreenFrame(cr, 320, 140, 1);
    FramedParchment(cr, {14, 14, 292, 112});
  });
}

RgbImage PrintProgressCells() {
  return Draw(44, 88, [](cairo_t* cr) {
    for (int row = 0; row < 2; ++row) {
      const double y = row * 44.0;
      cairo_save(cr);
      cairo_rectangle(cr, 0, y, 44, 44);
      cairo_clip(cr);
      FillParchment(cr, {0, y, 44, 44}, 0);
      PiecePath(cr, TabStyle::kKnob, 22, y + 22, 24);
      if (row == 0) {
        SetShade(cr, ui::kInk, 0.5);
        cairo_set_line_width(cr, 1.5);
        cairo_stroke(cr);
      } else {
        SetShade(cr, ui::kBrass);
        cairo_fill_preserve(cr);
        SetShade(cr, ui::kInk);
        cairo_set_line_width(cr, 1.5);
        cairo_stroke(cr);
      }
      cairo_restore(cr);
    }
  });
}

RgbImage PrinterEmblem() {
  return Draw(64, 64, [](cairo_t* cr) {
    FillParchment(cr, Whole(64, 64), 0);
    DrawIcon(cr, Icon::kPrinter, {6, 6, 52, 52}, ui::kInk);
  });
}

RgbImage BoxTitleStrip() {
  return Draw(300, 24, [](cairo_t* cr) {
    FillWood(cr, Whole(300, 24), 4);
    BrassRim(cr, Whole(300, 24), 0, 2);
  });
}

RgbImage BoxSide() {
  return Draw(6, 300, [](cairo_t* cr) {
    FillWood(cr, Whole(6, 300), 4, 1.0, true);
    cairo_rectangle(cr, 0, 0, 2, 300);
    SetShade(cr, ui::kBrass);
    cairo_fill(cr);
  });
}

RgbImage BoxBottom() {
  return Draw(300, 6, [](cairo_t* cr) {
    FillWood(cr, Whole(300, 6), 4);
    cairo_rectangle(cr, 0, 4, 300, 2);
    SetShade(cr, ui::kBrass);
    cairo_fill(cr);
  });
}

RgbImage TexturePreviews() {
  Canvas canvas(1000, 100);
  for (int i = 0; i < 10; ++i) {
    canvas.Place(DrawTexture(i), i * 100, 0);
    cairo_t* cr = canvas.cr();
    BrassRim(cr, {i * 100.0, 0, 100, 100}, 0, 3);
  }
  return canvas.Pixels();
}

RgbImage PrintBanner(bool top) {
  const int w = 1496, h = top ? 243 : 228;
  return Draw(w, h, [&](cairo_t* cr) {
    // Printed on white paper: a pale ground keeps the ink low.
    cairo_set_source_rgb(cr, 1, 1, 1);
    cairo_paint(cr);
    const double band = top ? 40 : h - 60;
    cairo_rectangle(cr, 0, band, w, 20);
    SetShade(cr, ui::kWalnutDark);
    cairo_fill(cr);
    cairo_rectangle(cr, 0, band - 8, w, 4);
    cairo_rectangle(cr, 0, band + 24, w, 4);
    SetShade(cr, ui::kBrass);
    cairo_fill(cr);
    constexpr TabStyle styles[3] = {TabStyle::kKnob, TabStyle::kDovetail, TabStyle::kDoubleLobe};
    const double rowY = top ? 150 : 70;
    for (int i = 0; i < 14; ++i) {
      const double x = 64 + i * (w - 128) / 13.0;
      PiecePath(cr, styles[i % 3], x, rowY, 48);
      SetShade(cr, i % 2 == 0 ? ui::kBrass : ui::kWalnutDark, 0.85);
      cairo_fill(cr);
    }
    if (top) {
      cairo_select_font_face(cr, "DejaVu Sans", CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_BOLD);
      cairo_set_font_size(cr, 64);
      cairo_text_extents_t e;
      cairo_text_extents(cr, "Quorvex Puzzle", &e);
      const double x = (w - e.width) / 2 - e.x_bearing, y = 170 - e.height / 2 - e.y_bearing;
      cairo_rectangle(cr, x - 30, 110, e.width + 60, 92);
      cairo_set_source_rgb(cr, 1, 1, 1);
      cairo_fill(cr);
      cairo_move_to(cr, x + 3, y + 3);
      SetShade(cr, ui::kBrass, 0.7);
      cairo_show_text(cr, "Quorvex Puzzle");
      cairo_move_to(cr, x, y);
      SetShade(cr, ui::kInk);
      cairo_show_text(cr, "Quorvex Puzzle");
    }
  });
}

RgbImage FileScreenBase(bool nameField) {
  return Draw(520, 300, [nameField](cairo_t* cr) {
    ScreenFrame(cr, 520, 300, 1);
    // The name field (an edit control of 212 x 24 at (10, 61)) and the well where the saved
    // games' tiles lie (from y 108).
    if (nameField) {
      FillParchment(cr, {8, 59, 216, 28}, 0);
      Recess(cr, {8, 59, 216, 28});
    }
    cairo_rectangle(cr, 10, 108, 450, 182);
    SetShade(cr, {0.12, 0.30, 0.18});
    cairo_fill(cr);
    Recess(cr, {10, 108, 450, 182});
  });
}

}  // namespace qv::assets
