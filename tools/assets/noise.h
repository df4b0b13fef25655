// Periodic noise for textures that tile without seams: every function repeats with period 1.
#pragma once

#include <cstdint>

namespace qv::assets {

// Gradient noise over the unit square, repeating across it, on a lattice of `cells` x `cells`
// (cells >= 1). Values lie roughly in [-1, 1].
double PeriodicGradientNoise(double x, double y, int cells, std::uint32_t seed);

// Sum of `octaves` gradient noises, each with twice the cells and `gain` times the amplitude of
// the one before, scaled back to roughly [-1, 1].
double PeriodicFractalNoise(double x, double y, int cells, int octaves, double gain,
                            std::uint32_t seed);

// Distance to the nearest of one random point per lattice cell, and to the second nearest, in
// lattice cells: the look of pebbles, cells and granules.
struct CellDistances {
  double nearest = 0;
  double second = 0;
};
CellDistances PeriodicCellNoise(double x, double y, int cells, std::uint32_t seed);

}  // namespace qv::assets
