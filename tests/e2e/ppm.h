// Plain 24-bit pictures for the end-to-end checks, read from and written to binary PPM.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace qv::e2e {

struct Rgb24 {
  int width = 0;
  int height = 0;
  std::vector<std::uint8_t> pixels;  // red, green, blue; rows from the top
};

bool ReadPpm(const std::string& path, Rgb24& out);
bool WritePpm(const std::string& path, const Rgb24& image);

struct Difference {
  long compared = 0;
  long differing = 0;
  int largest = 0;
};
// Expected pixels of this colour are not compared: a window of the program lies over them.
constexpr std::uint8_t kUnchecked[3] = {255, 0, 255};

// Pixels whose any channel differs by more than the tolerance; sizes must agree.
Difference CompareImages(const Rgb24& a, const Rgb24& b, int tolerance);

}  // namespace qv::e2e
