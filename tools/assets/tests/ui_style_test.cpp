// The drawing helpers behind the interface pictures: fitted lettering, strip layouts, sprite
// masks and seamless materials.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>

#include "assets/ui_previews.h"
#include "assets/ui_strips.h"
#include "assets/ui_style.h"

namespace qv::assets {
namespace {

Rgb Flat(int index) {
  return {static_cast<std::uint8_t>(20 + index * 23), static_cast<std::uint8_t>(200 - index * 11),
          static_cast<std::uint8_t>((index * 57) % 256)};
}

// Fills the whole frame with one colour per frame index, so positions can be checked.
void PaintFlat(cairo_t* cr, int, int, int frame) {
  const Rgb c = Flat(frame);
  cairo_set_source_rgb(cr, c.r / 255.0, c.g / 255.0, c.b / 255.0);
  cairo_paint(cr);
}

bool Uniform(const RgbImage& image, int x0, int y0, int w, int h, const Rgb& colour) {
  for (int y = y0; y < y0 + h; ++y) {
    for (int x = x0; x < x0 + w; ++x) {
      if (!(image.at(x, y) == colour)) return false;
    }
  }
  return true;
}

TEST(Lettering, ShortWordsTakeTheLargestSizeAndLongOnesShrinkInsideTheBox) {
  Canvas canvas(1, 1);
  const Box box{10, 5, 200, 40};
  const FittedText shortWord = FitText(canvas.cr(), "Bild", box, 0, 24);
  EXPECT_DOUBLE_EQ(shortWord.size, 24);
  const FittedText longWord = FitText(canvas.cr(), "Dimensione dell'immagine", box, 0, 24);
  EXPECT_LT(longWord.size, 24);
  EXPECT_GE(longWord.size, kSmallestTextSize);
  for (const FittedText& fit : {shortWord, longWord}) {
    EXPECT_GE(fit.left, box.x);
    EXPECT_LE(fit.left + fit.width, box.x + box.w);
    EXPECT_GE(fit.top, box.y);
    EXPECT_LE(fit.top + fit.height, box.y + box.h);
    // Centred: the room left over is shared, less the shadow's offset on the right and below.
    EXPECT_NEAR(fit.left - box.x, box.x + box.w - (fit.left + fit.width), 4);
  }
}

TEST(Lettering, AWordThatCannotFitAtALegibleSizeGetsNoSize) {
  Canvas canvas(1, 1);
  const FittedText fit = FitText(canvas.cr(), "Tischoberflächenstruktur", {0, 0, 40, 20}, 2, 16);
  EXPECT_EQ(fit.size, 0);
}

TEST(Lettering, DrawnTextStaysInsideItsFittedExtentsPlusTheShadow) {
  Canvas canvas(220, 50);
  const FittedText fit = FitText(canvas.cr(), "Anzahl der Teile", {10, 6, 200, 38}, 0, 30);
  ASSERT_GT(fit.size, 0);
  DrawFittedText(canvas.cr(), "Anzahl der Teile", fit, {1, 1, 1}, true);
  const RgbImage drawn = canvas.Pixels();
  int inked = 0;
  for (int y = 0; y < drawn.height; ++y) {
    for (int x = 0; x < drawn.width; ++x) {
      if (drawn.at(x, y).r < 8) continue;
      ++inked;
      EXPECT_GE(x, std::floor(fit.left) - 1);
      EXPECT_LE(x, std::ceil(fit.left + fit.width) + 3);
      EXPECT_GE(y, std::floor(fit.top) - 1);
      EXPECT_LE(y, std::ceil(fit.top + fit.height) + 3);
    }
  }
  EXPECT_GT(inked, 100);
}

TEST(Strips, ColumnsStackFramesDownAndRowsSetThemSideBySide) {
  const RgbImage column = ColumnStrip(7, 5, 4, PaintFlat);
  ASSERT_EQ(column.width, 7);
  ASSERT_EQ(column.height, 20);
  const RgbImage row = RowStrip(7, 5, 10, PaintFlat);
  ASSERT_EQ(row.width, 70);
  ASSERT_EQ(row.height, 5);
  for (int f = 0; f < 4; ++f) EXPECT_TRUE(Uniform(column, 0, f * 5, 7, 5, Flat(f))) << f;
  for (int f = 0; f < 10; ++f) EXPECT_TRUE(Uniform(row, f * 7, 0, 7, 5, Flat(f))) << f;
}

TEST(Strips, AScrollBarHoldsEachPartsThreeVersionsInItsOwnBlock) {
  const std::array<int, 3> parts = {4, 9, 6};
  const RgbImage strip = ScrollStrip(5, parts, PaintFlat);
  ASSERT_EQ(strip.height, 3 * (4 + 9 + 6));
  int y = 0;
  for (int part = 0; part < 3; ++part) {
    for (int version = 0; version < 3; ++version) {
      EXPECT_TRUE(Uniform(strip, 0, y, 5, parts[part], Flat(part * 3 + version))) << part << "/" << version;
      y += parts[part];
    }
  }
  // The contact sheet puts each version back together from its three parts.
  const UiPicture picture{1, StripKind::kScroll, Screen::kTexture, 5, 19, 3, parts, false, nullptr};
  const std::vector<RgbImage> versions = FramesOf(picture, strip);
  ASSERT_EQ(versions.size(), 3u);
  for (int version = 0; version < 3; ++version) {
    EXPECT_TRUE(Uniform(versions[version], 0, 0, 5, 4, Flat(version)));
    EXPECT_TRUE(Uniform(versions[version], 0, 4, 5, 9, Flat(3 + version)));
    EXPECT_TRUE(Uniform(versions[version], 0, 13, 5, 6, Flat(6 + version)));
  }
}

TEST(Strips, SpriteMasksFollowTheShapeAndFramesAreBlackOutsideIt) {
  const FrameDraw disc = [](cairo_t* cr, int w, int h, int) {
    cairo_arc(cr, w / 2.0, h / 2.0, h / 2.0 - 1, 0, 2 * M_PI);
    cairo_fill(cr);
  };
  const RgbImage strip = SpriteStrip(20, 20, 2, PaintFlat, disc);
  ASSERT_EQ(strip.width, 40);
  ASSERT_EQ(strip.height, 40);
  const Rgb black{0, 0, 0}, white{255, 255, 255};
  for (int f = 0; f < 2; ++f) {
    // The middle is opaque and shows the frame; the corners are transparent.
    EXPECT_EQ(strip.at(f * 20 + 10, 10), Flat(f));
    EXPECT_EQ(strip.at(f * 20 + 10, 30), black);
    EXPECT_EQ(strip.at(f * 20, 0), black);
    EXPECT_EQ(strip.at(f * 20, 20), white);
    for (int y = 0; y < 20; ++y) {
      for (int x = 0; x < 20; ++x) {
        const Rgb mask = strip.at(f * 20 + x, 20 + y);
        ASSERT_TRUE(mask == black || mask == white);
        if (mask == white) {
          EXPECT_EQ(strip.at(f * 20 + x, y), black);
        }
      }
    }
  }
}

double MeanStep(const RgbImage& t, bool acrossTheWrap) {
  double sum = 0;
  int count = 0;
  for (int y = 0; y < t.height; ++y) {
    for (int x = 0; x < t.width; ++x) {
      const int right = (x + 1) % t.width, below = (y + 1) % t.height;
      const auto diff = [](const Rgb& a, const Rgb& b) {
        return std::abs(a.r - b.r) + std::abs(a.g - b.g) + std::abs(a.b - b.b);
      };
      if ((right == 0) == acrossTheWrap) sum += diff(t.at(x, y), t.at(right, y)), ++count;
      if ((below == 0) == acrossTheWrap) sum += diff(t.at(x, y), t.at(x, below)), ++count;
    }
  }
  return sum / count;
}

TEST(Materials, WoodAndParchmentRepeatWithoutASeamAtAnySize) {
  for (const auto& [w, h] : {std::pair{37, 53}, std::pair{25, 139}, std::pair{103, 25}, std::pair{128, 128}}) {
    SCOPED_TRACE(std::to_string(w) + " x " + std::to_string(h));
    for (const RgbImage& tile : {WoodTile(w, h, 9), WoodTile(w, h, 9, true), ParchmentTile(w, h, 4)}) {
      EXPECT_LE(MeanStep(tile, true), MeanStep(tile, false) * 1.6 + 2);
    }
  }
}

TEST(Materials, WoodShowsItsGrainAndTheLightSettingLightensIt) {
  const RgbImage dim = WoodTile(64, 64, 3, false, 0.8), bright = WoodTile(64, 64, 3, false, 1.2);
  double sumDim = 0, sumBright = 0;
  for (std::size_t i = 0; i < dim.pixels.size(); ++i) {
    sumDim += dim.pixels[i].r;
    sumBright += bright.pixels[i].r;
  }
  EXPECT_GT(sumBright, sumDim * 1.3);
  EXPECT_GT(MeanStep(dim, false), 1.0) << "flat colour, no grain";
}

}  // namespace
}  // namespace qv::assets
