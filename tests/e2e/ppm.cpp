// Binary PPM (P6, maxval 255) in and out, and the pixel comparison.
#include "e2e/ppm.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>

namespace qv::e2e {
namespace {

// The next header number, skipping white space and comments.
bool ReadNumber(std::istream& in, int& value) {
  int c = in.get();
  while (c != EOF && (c == ' ' || c == '\n' || c == '\r' || c == '\t' || c == '#')) {
    if (c == '#') {
      while (c != EOF && c != '\n') c = in.get();
    }
    c = in.get();
  }
  if (c < '0' || c > '9') return false;
  long long v = 0;
  while (c >= '0' && c <= '9') {
    v = v * 10 + (c - '0');
    if (v > 100000) return false;
    c = in.get();
  }
  value = static_cast<int>(v);
  return true;  // the one white-space byte after maxval has been read
}

}  // namespace

bool ReadPpm(const std::string& path, Rgb24& out) {
  std::ifstream in(path, std::ios::binary);
  char magic[2] = {};
  if (!in.read(magic, 2) || magic[0] != 'P' || magic[1] != '6') return false;
  int width = 0, height = 0, maxval = 0;
  if (!ReadNumber(in, width) || !ReadNumber(in, height) || !ReadNumber(in, maxval)) return false;
  if (width <= 0 || height <= 0 || maxval != 255) return false;
  out.width = width;
  out.height = height;
  out.pixels.resize(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 3);
  return static_cast<bool>(in.read(reinterpret_cast<char*>(out.pixels.data()),
                                   static_cast<std::streamsize>(out.pixels.size())));
}

bool WritePpm(const std::string& path, const Rgb24& image) {
  std::ofstream out(path, std::ios::binary);
  out << "P6\n" << image.width << ' ' << image.height << "\n255\n";
  out.write(reinterpret_cast<const char*>(image.pixels.data()),
            static_cast<std::streamsize>(image.pixels.size()));
  return static_cast<bool>(out);
}

Difference CompareImages(const Rgb24& a, const Rgb24& b, int tolerance) {
  Difference d;
  if (a.width != b.width || a.height != b.height || a.pixels.size() != b.pixels.size()) return d;
  for (std::size_t i = 0; i + 2 < a.pixels.size(); i += 3) {
    if (a.pixels[i] == kUnchecked[0] && a.pixels[i + 1] == kUnchecked[1] &&
        a.pixels[i + 2] == kUnchecked[2]) {
      continue;
    }
    int worst = 0;
    for (int c = 0; c < 3; ++c) {
      worst = std::max(worst, std::abs(int{a.pixels[i + c]} - int{b.pixels[i + c]}));
    }
    ++d.compared;
    if (worst > tolerance) ++d.differing;
    d.largest = std::max(d.largest, worst);
  }
  return d;
}

}  // namespace qv::e2e
