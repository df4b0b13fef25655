// The shared look of the interface pictures: walnut, brass, parchment, bevels, glow, lettering.
#pragma once

#include <cairo.h>

#include <cstdint>
#include <string>

#include "assets/image8.h"

namespace qv::assets {

struct Shade {
  double r, g, b;
};

// The few colours every picture draws from, so that the screens look like one set.
namespace ui {
inline constexpr Shade kWalnutDark{0.25, 0.15, 0.08};
inline constexpr Shade kBrass{0.78, 0.60, 0.26};
inline constexpr Shade kBrassLight{0.99, 0.88, 0.55};
inline constexpr Shade kBrassDark{0.42, 0.29, 0.10};
inline constexpr Shade kCream{0.97, 0.92, 0.79};
inline constexpr Shade kInk{0.27, 0.15, 0.06};
inline constexpr Shade kShadow{0.07, 0.04, 0.02};
inline constexpr Shade kGlow{1.0, 0.78, 0.33};
inline constexpr Shade kFelt{0.10, 0.37, 0.22};
}  // namespace ui

// One opaque picture being drawn; the surface is freed with the object.
class Canvas {
 public:
  Canvas(int width, int height);
  ~Canvas();
  Canvas(const Canvas&) = delete;
  Canvas& operator=(const Canvas&) = delete;

  cairo_t* cr() const { return cr_; }
  int width() const { return width_; }
  int height() const { return height_; }
  RgbImage Pixels() const;
  // Puts a finished picture (a frame drawn on its own canvas) at (x, y).
  void Place(const RgbImage& picture, int x, int y);

 private:
  int width_, height_;
  cairo_surface_t* surface_;
  cairo_t* cr_;
};

struct Box {
  double x, y, w, h;
};

void SetShade(cairo_t* cr, const Shade& s, double alpha = 1.0);
void RoundedRectPath(cairo_t* cr, const Box& box, double radius);

// Seamless materials as pictures of exactly the given size (they repeat with that period).
// `alongY` turns the wood grain to run down the picture instead of across.
RgbImage WoodTile(int width, int height, std::uint32_t seed, bool alongY = false, double light = 1.0);
RgbImage ParchmentTile(int width, int height, std::uint32_t seed);

// Fills the box with a material repeated from the picture's origin.
void FillWood(cairo_t* cr, const Box& box, std::uint32_t seed = 1, double light = 1.0, bool alongY = false);
void FillParchment(cairo_t* cr, const Box& box, double radius = 6);
// The paper alone, without the darkened edges of a panel.
void FillParchmentGround(cairo_t* cr, const Box& box);

// A brass moulding `thickness` wide around the box, lit from the top left; `sunk` lights it from
// the bottom right instead, which reads as a recess.
void BrassRim(cairo_t* cr, const Box& box, double radius, double thickness, bool sunk = false);

// A wooden frame around a screen: brass outer line, wood, and an inner shadow.
void ScreenFrame(cairo_t* cr, int width, int height, std::uint32_t seed);

enum class Face { kNormal, kHover, kPressed };

// A bevelled wooden button filling the box (the corners keep what was drawn before), with a
// brass rim; hover adds a warm glow, pressed sinks it. Returns the box its symbol goes in,
// already shifted when pressed.
Box ButtonBody(cairo_t* cr, const Box& box, double radius, Face face);
// How far a pressed button's contents move down and to the right.
double ButtonSink(const Box& box);

// Lettering: bold sans, drawn at the fitted size and centred in its box.
struct FittedText {
  double size = 0;                 // font size in pixels
  double left = 0, top = 0;        // ink extents in picture coordinates (before the shadow)
  double width = 0, height = 0;
  double originX = 0, originY = 0;  // where cairo starts the text
};

// The largest size up to `maxSize` at which the text fits inside the box less `margin` on
// every side; the size is 0 when even the smallest legible size overflows.
FittedText FitText(cairo_t* cr, const std::string& text, const Box& box, double margin, double maxSize);
void DrawFittedText(cairo_t* cr, const std::string& text, const FittedText& fit, const Shade& ink,
                    bool shadow);
inline constexpr double kSmallestTextSize = 8.0;

}  // namespace qv::assets
