// The ten table textures: calm, seamless 100 x 100 materials drawn from periodic noise.
#include "assets/textures.h"

#include <algorithm>
#include <cmath>
#include <functional>

#include "assets/noise.h"
#include "assets/quantize.h"

namespace qv::assets {
namespace {

struct Colour {
  double r, g, b;
};

Colour Mix(const Colour& a, const Colour& b, double t) {
  return {a.r + (b.r - a.r) * t, a.g + (b.g - a.g) * t, a.b + (b.b - a.b) * t};
}
Colour Scale(const Colour& c, double k) { return {c.r * k, c.g * k, c.b * k}; }
double Frac(double v) { return v - std::floor(v); }
double Smooth(double t) {
  t = std::clamp(t, 0.0, 1.0);
  return t * t * (3 - 2 * t);
}

// Each material is a colour at (u, v) in the unit square; every term repeats over the square,
// so the tiles meet without a seam. Amplitudes stay small: pieces must stand out on the table.
Colour Felt(double u, double v) {
  const double mottle = PeriodicFractalNoise(u, v, 4, 3, 0.5, 11);
  const double fibre = PeriodicFractalNoise(u, v, 25, 2, 0.6, 12);
  return Scale({26, 94, 56}, 1 + 0.07 * mottle + 0.07 * fibre);
}

Colour Walnut(double u, double v) {
  const double warp = PeriodicFractalNoise(u, v, 3, 3, 0.5, 21);
  const double ring = Frac(v * 3 + 0.8 * warp);
  const double band = Smooth(std::fabs(ring - 0.5) * 2.0);
  const double pores = PeriodicFractalNoise(u, Frac(v * 10), 6, 2, 0.5, 22);
  const Colour dark{80, 50, 30}, light{98, 62, 36};
  return Scale(Mix(dark, light, band), 1 + 0.05 * pores);
}

Colour Parquet(double u, double v) {
  // A basket weave of 50-pixel squares, each two planks of 25 pixels, turning a quarter each.
  // The weave is shifted so that the tile's own edges run through planks, not along joints.
  u = Frac(u + 0.13);
  v = Frac(v + 0.07);
  const int sx = static_cast<int>(u * 2), sy = static_cast<int>(v * 2);
  const bool across = (sx + sy) % 2 == 0;
  const double along = across ? u : v, acrossPos = across ? v : u;
  const int plank = static_cast<int>(acrossPos * 4);
  const double inPlank = Frac(acrossPos * 4);
  const double shade = 0.94 + 0.12 * ((plank * 7 + sx * 3 + sy * 5) % 4) / 3.0;
  const double grain = PeriodicFractalNoise(Frac(along), Frac(acrossPos * 8), 4, 2, 0.5, 31 + plank);
  const double seam = (inPlank < 0.04 || Frac(along * 2) < 0.02) ? 0.72 : 1.0;
  return Scale({190, 146, 96}, shade * seam * (1 + 0.07 * grain));
}

Colour Cork(double u, double v) {
  const CellDistances cells = PeriodicCellNoise(u, v, 16, 41);
  const double granule = PeriodicGradientNoise(u, v, 16, 42);
  const double crease = Smooth((cells.second - cells.nearest) * 8);
  const double speck = PeriodicFractalNoise(u, v, 25, 2, 0.5, 43);
  return Scale({172, 122, 76}, (0.92 + 0.08 * crease) * (1 + 0.07 * granule + 0.05 * speck));
}

Colour Slate(double u, double v) {
  const double layers = PeriodicFractalNoise(u, Frac(v * 3), 3, 4, 0.55, 51);
  const double grit = PeriodicFractalNoise(u, v, 25, 2, 0.5, 52);
  return Scale({64, 70, 80}, 1 + 0.08 * layers + 0.05 * grit);
}

Colour Linen(double u, double v) {
  const double warpThreads = 0.5 + 0.5 * std::sin(2 * M_PI * 50 * u);
  const double weftThreads = 0.5 + 0.5 * std::sin(2 * M_PI * 50 * v);
  const double slub = PeriodicFractalNoise(u, Frac(v * 10), 8, 2, 0.5, 61);
  const double weave = 0.5 * (warpThreads + weftThreads);
  return Scale({204, 190, 162}, 0.95 + 0.07 * weave + 0.04 * slub);
}

Colour Marble(double u, double v) {
  const double turbulence = PeriodicFractalNoise(u, v, 3, 5, 0.55, 71);
  const double t = u + v + 1.1 * turbulence;
  const double vein = std::pow(1 - std::fabs(std::sin(M_PI * t)), 6);
  const double cloud = PeriodicFractalNoise(u, v, 2, 3, 0.5, 72);
  return Mix(Scale({226, 222, 214}, 1 + 0.04 * cloud), {176, 174, 176}, 0.45 * vein);
}

Colour Leather(double u, double v) {
  const CellDistances cells = PeriodicCellNoise(u, v, 14, 81);
  const double crease = Smooth((cells.second - cells.nearest) * 5);
  const double dome = 1 - std::min(1.0, cells.nearest * 1.2);
  const double tone = PeriodicFractalNoise(u, v, 3, 3, 0.5, 82);
  return Scale({118, 70, 40}, (0.82 + 0.14 * crease + 0.05 * dome) * (1 + 0.05 * tone));
}

Colour Velvet(double u, double v) {
  const double sheen = PeriodicFractalNoise(u, v, 2, 3, 0.5, 91);
  const double pile = PeriodicFractalNoise(u, v, 25, 2, 0.6, 92);
  return Scale({112, 24, 44}, 1 + 0.12 * sheen + 0.04 * pile);
}

Colour Sand(double u, double v) {
  const double ripple = std::sin(2 * M_PI * (v * 4 + 0.2 * PeriodicFractalNoise(u, v, 2, 2, 0.5, 101)));
  const double grain = PeriodicFractalNoise(u, v, 25, 2, 0.7, 102);
  return Scale({214, 188, 142}, 1 + 0.035 * ripple + 0.06 * grain);
}

struct Material {
  const char* name;
  Colour (*draw)(double, double);
};

constexpr Material kMaterials[] = {
    {"green felt", Felt}, {"walnut", Walnut}, {"oak parquet", Parquet}, {"cork", Cork},
    {"slate", Slate},     {"linen", Linen},   {"marble", Marble},       {"leather", Leather},
    {"velvet", Velvet},   {"sand", Sand},
};

std::uint8_t Channel(double v) { return static_cast<std::uint8_t>(std::lround(std::clamp(v, 0.0, 255.0))); }

}  // namespace

const char* TextureName(int index) { return kMaterials[index].name; }

RgbImage DrawTexture(int index) {
  RgbImage image(kTextureSize, kTextureSize);
  for (int y = 0; y < kTextureSize; ++y) {
    for (int x = 0; x < kTextureSize; ++x) {
      const Colour c = kMaterials[index].draw((x + 0.5) / kTextureSize, (y + 0.5) / kTextureSize);
      image.at(x, y) = {Channel(c.r), Channel(c.g), Channel(c.b)};
    }
  }
  return image;
}

Image8 MakeTexture(int index) {
  Image8 out;
  std::string error;
  // A calm 100 x 100 tile holds far fewer than 256 distinct shades worth keeping, and dithering
  // would scatter noise across the tile's edges; the nearest colour is the better choice here.
  if (!ReduceTo256Colours(DrawTexture(index), 0.0, out, error)) return Image8();
  return out;
}

}  // namespace qv::assets
