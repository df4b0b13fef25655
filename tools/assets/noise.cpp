// Periodic noise for textures that tile without seams: every function repeats with period 1.
#include "assets/noise.h"

#include <cmath>

namespace qv::assets {
namespace {

std::uint32_t Hash(std::uint32_t x, std::uint32_t y, std::uint32_t seed) {
  std::uint32_t h = seed * 0x9E3779B9u ^ x * 0x85EBCA6Bu ^ y * 0xC2B2AE35u;
  h ^= h >> 16;
  h *= 0x7FEB352Du;
  h ^= h >> 15;
  h *= 0x846CA68Bu;
  h ^= h >> 16;
  return h;
}

double Unit(std::uint32_t h) { return (h & 0xFFFFFF) / double{0x1000000}; }

int Wrap(int v, int period) { return ((v % period) + period) % period; }

double Fade(double t) { return t * t * t * (t * (t * 6 - 15) + 10); }

double Corner(int ix, int iy, int cells, std::uint32_t seed, double dx, double dy) {
  const double angle = 2 * M_PI * Unit(Hash(Wrap(ix, cells), Wrap(iy, cells), seed));
  return std::cos(angle) * dx + std::sin(angle) * dy;
}

}  // namespace

double PeriodicGradientNoise(double x, double y, int cells, std::uint32_t seed) {
  const double fx = x * cells, fy = y * cells;
  const int ix = static_cast<int>(std::floor(fx)), iy = static_cast<int>(std::floor(fy));
  const double dx = fx - ix, dy = fy - iy;
  const double n00 = Corner(ix, iy, cells, seed, dx, dy);
  const double n10 = Corner(ix + 1, iy, cells, seed, dx - 1, dy);
  const double n01 = Corner(ix, iy + 1, cells, seed, dx, dy - 1);
  const double n11 = Corner(ix + 1, iy + 1, cells, seed, dx - 1, dy - 1);
  const double u = Fade(dx), v = Fade(dy);
  const double top = n00 + (n10 - n00) * u;
  const double bottom = n01 + (n11 - n01) * u;
  return 1.4 * (top + (bottom - top) * v);
}

double PeriodicFractalNoise(double x, double y, int cells, int octaves, double gain,
                            std::uint32_t seed) {
  double sum = 0, amplitude = 1, total = 0;
  for (int i = 0; i < octaves; ++i) {
    sum += amplitude * PeriodicGradientNoise(x, y, cells << i, seed + 101u * i);
    total += amplitude;
    amplitude *= gain;
  }
  return sum / total;
}

CellDistances PeriodicCellNoise(double x, double y, int cells, std::uint32_t seed) {
  const double fx = x * cells, fy = y * cells;
  const int ix = static_cast<int>(std::floor(fx)), iy = static_cast<int>(std::floor(fy));
  CellDistances d{1e9, 1e9};
  for (int oy = -1; oy <= 1; ++oy) {
    for (int ox = -1; ox <= 1; ++ox) {
      const int cx = ix + ox, cy = iy + oy;
      const std::uint32_t h = Hash(Wrap(cx, cells), Wrap(cy, cells), seed);
      const double px = cx + Unit(h), py = cy + Unit(Hash(h, 7, seed));
      const double dist = std::hypot(px - fx, py - fy);
      if (dist < d.nearest) {
        d.second = d.nearest;
        d.nearest = dist;
      } else if (dist < d.second) {
        d.second = dist;
      }
    }
  }
  return d;
}

}  // namespace qv::assets
