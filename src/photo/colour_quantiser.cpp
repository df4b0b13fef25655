// The game's own reduction of a full-colour picture to at most 256 colours, with dithering.
#include "photo/colour_quantiser.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "photo/photo_fit.h"

namespace qv::photo {
namespace {

constexpr int kMaxColours = 256;
constexpr int kKMeansPasses = 8;

struct Colour {
  float c[3];
};

float Distance2(const float* a, const float* b) {
  const float d0 = a[0] - b[0], d1 = a[1] - b[1], d2 = a[2] - b[2];
  return d0 * d0 + d1 * d1 + d2 * d2;
}

std::uint32_t Key24(const std::uint8_t* p) { return p[0] | p[1] << 8 | static_cast<std::uint32_t>(p[2]) << 16; }

// ---- Pictures of few colours keep them exactly -----------------------------------------------

// The picture's distinct colours, in order of value, if there are at most 256 of them. A small
// open-addressed set gives up at the 257th, which a photograph reaches within its first rows.
bool FewColours(const BgrPicture& picture, std::vector<std::uint32_t>& colours) {
  constexpr std::uint32_t kSlots = 1024, kEmpty = 0xFFFFFFFFu;
  std::vector<std::uint32_t> slots(kSlots, kEmpty);
  int count = 0;
  const std::size_t pixels = static_cast<std::size_t>(picture.width) * picture.height;
  for (std::size_t i = 0; i < pixels; ++i) {
    const std::uint32_t key = Key24(&picture.bytes[i * 3]);
    std::uint32_t slot = (key * 2654435761u) >> 22;
    while (slots[slot] != kEmpty && slots[slot] != key) slot = (slot + 1) & (kSlots - 1);
    if (slots[slot] == key) continue;
    if (++count > kMaxColours) return false;
    slots[slot] = key;
  }
  colours.clear();
  for (std::uint32_t key : slots) {
    if (key != kEmpty) colours.push_back(key);
  }
  std::sort(colours.begin(), colours.end());
  return true;
}

void MapExactly(const BgrPicture& picture, const std::vector<std::uint32_t>& colours, QuantisedPicture& out) {
  for (std::size_t i = 0; i < colours.size(); ++i) {
    out.colours[i] = RgbQuad{static_cast<std::uint8_t>(colours[i]), static_cast<std::uint8_t>(colours[i] >> 8),
                             static_cast<std::uint8_t>(colours[i] >> 16), 0};
  }
  out.coloursUsed = static_cast<int>(colours.size());
  for (std::size_t i = 0; i < out.indices.size(); ++i) {
    const std::uint32_t key = Key24(&picture.bytes[i * 3]);
    out.indices[i] = static_cast<std::uint8_t>(std::lower_bound(colours.begin(), colours.end(), key) - colours.begin());
  }
}

// ---- Histogram --------------------------------------------------------------------------------

// One weighted colour: the mean of the pixels that fell into one cell of 6 bits per channel.
struct Entry {
  float c[3];
  float weight;
};

std::vector<Entry> Histogram(const BgrPicture& picture) {
  struct Cell {
    std::uint64_t sum[3];
    std::uint32_t count;
  };
  std::vector<Cell> cells(std::size_t{1} << 18, Cell{});
  const std::size_t pixels = static_cast<std::size_t>(picture.width) * picture.height;
  for (std::size_t i = 0; i < pixels; ++i) {
    const std::uint8_t* p = &picture.bytes[i * 3];
    Cell& cell = cells[static_cast<std::size_t>(p[0] >> 2 | (p[1] >> 2) << 6 | (p[2] >> 2) << 12)];
    cell.sum[0] += p[0], cell.sum[1] += p[1], cell.sum[2] += p[2];
    ++cell.count;
  }
  std::vector<Entry> entries;
  for (const Cell& cell : cells) {
    if (cell.count == 0) continue;
    const double n = cell.count;
    entries.push_back(Entry{{static_cast<float>(cell.sum[0] / n), static_cast<float>(cell.sum[1] / n),
                             static_cast<float>(cell.sum[2] / n)},
                            static_cast<float>(n)});
  }
  return entries;
}

// ---- Splitting the colour space ---------------------------------------------------------------

struct Box {
  std::size_t begin = 0, end = 0;
  double error = 0;  // sum of weighted squared distances to the box's mean
};

double BoxError(const Entry* e, std::size_t n) {
  double w = 0, s[3] = {0, 0, 0}, s2 = 0;
  for (std::size_t i = 0; i < n; ++i) {
    w += e[i].weight;
    for (int k = 0; k < 3; ++k) {
      s[k] += e[i].weight * e[i].c[k];
      s2 += e[i].weight * e[i].c[k] * e[i].c[k];
    }
  }
  return w > 0 ? std::max(0.0, s2 - (s[0] * s[0] + s[1] * s[1] + s[2] * s[2]) / w) : 0;
}

// Splits the box across its widest-spread channel where the two halves' summed error is least.
// Returns false when the box cannot be split (all its entries are one colour).
bool SplitBox(std::vector<Entry>& entries, const Box& box, Box& low, Box& high) {
  Entry* e = entries.data() + box.begin;
  const std::size_t n = box.end - box.begin;
  double w = 0, s[3] = {0, 0, 0}, s2[3] = {0, 0, 0};
  for (std::size_t i = 0; i < n; ++i) {
    w += e[i].weight;
    for (int k = 0; k < 3; ++k) s[k] += e[i].weight * e[i].c[k], s2[k] += e[i].weight * e[i].c[k] * e[i].c[k];
  }
  int axis = 0;
  double spread = -1;
  for (int k = 0; k < 3; ++k) {
    const double variance = s2[k] - s[k] * s[k] / w;
    if (variance > spread) spread = variance, axis = k;
  }
  std::sort(e, e + n, [axis](const Entry& a, const Entry& b) {
    if (a.c[axis] != b.c[axis]) return a.c[axis] < b.c[axis];
    if (a.c[(axis + 1) % 3] != b.c[(axis + 1) % 3]) return a.c[(axis + 1) % 3] < b.c[(axis + 1) % 3];
    return a.c[(axis + 2) % 3] < b.c[(axis + 2) % 3];
  });
  // Error of a part = sum w|c|^2 - |sum wc|^2 / sum w; the first term is the same for every cut.
  double lw = 0, ls[3] = {0, 0, 0};
  double best = -1;
  std::size_t cut = 0;
  for (std::size_t i = 1; i < n; ++i) {
    lw += e[i - 1].weight;
    for (int k = 0; k < 3; ++k) ls[k] += e[i - 1].weight * e[i - 1].c[k];
    if (e[i].c[axis] == e[i - 1].c[axis]) continue;
    const double rw = w - lw;
    const double r0 = s[0] - ls[0], r1 = s[1] - ls[1], r2 = s[2] - ls[2];
    const double gain = (ls[0] * ls[0] + ls[1] * ls[1] + ls[2] * ls[2]) / lw + (r0 * r0 + r1 * r1 + r2 * r2) / rw;
    if (gain > best) best = gain, cut = i;
  }
  if (cut == 0) return false;
  low = Box{box.begin, box.begin + cut, BoxError(e, cut)};
  high = Box{box.begin + cut, box.end, BoxError(e + cut, n - cut)};
  return true;
}

std::vector<Colour> SplitColourSpace(std::vector<Entry>& entries) {
  std::vector<Box> boxes{Box{0, entries.size(), BoxError(entries.data(), entries.size())}};
  while (boxes.size() < static_cast<std::size_t>(kMaxColours)) {
    std::size_t worst = boxes.size();
    for (std::size_t i = 0; i < boxes.size(); ++i) {
      if (boxes[i].error > 0 && (worst == boxes.size() || boxes[i].error > boxes[worst].error)) worst = i;
    }
    if (worst == boxes.size()) break;
    Box low, high;
    if (!SplitBox(entries, boxes[worst], low, high)) {
      boxes[worst].error = 0;
      continue;
    }
    boxes[worst] = low;
    boxes.push_back(high);
  }
  std::vector<Colour> palette;
  for (const Box& box : boxes) {
    double w = 0, s[3] = {0, 0, 0};
    for (std::size_t i = box.begin; i < box.end; ++i) {
      w += entries[i].weight;
      for (int k = 0; k < 3; ++k) s[k] += entries[i].weight * entries[i].c[k];
    }
    palette.push_back(Colour{{static_cast<float>(s[0] / w), static_cast<float>(s[1] / w), static_cast<float>(s[2] / w)}});
  }
  return palette;
}

// ---- Nearest colour ---------------------------------------------------------------------------

// Exact nearest-colour search. The colours are sorted by the sum of their channels; the squared
// difference of two sums, divided by 3, never exceeds the squared distance, so the search walks
// outwards from the query's sum and stops on each side once that bound passes the best so far.
class NearestColour {
 public:
  explicit NearestColour(const std::vector<Colour>& palette) {
    std::vector<int> order(palette.size());
    for (std::size_t i = 0; i < order.size(); ++i) order[i] = static_cast<int>(i);
    auto sum = [&](int i) { return palette[i].c[0] + palette[i].c[1] + palette[i].c[2]; };
    std::sort(order.begin(), order.end(), [&](int a, int b) { return sum(a) != sum(b) ? sum(a) < sum(b) : a < b; });
    for (int i : order) {
      keys_.push_back(sum(i));
      colours_.push_back(palette[static_cast<std::size_t>(i)]);
      indices_.push_back(i);
    }
  }

  int Find(const float* c) const {
    const float key = c[0] + c[1] + c[2];
    const int n = static_cast<int>(keys_.size());
    const int start = static_cast<int>(std::lower_bound(keys_.begin(), keys_.end(), key) - keys_.begin());
    int best = start < n ? start : n - 1;
    float bestDistance = Distance2(c, colours_[static_cast<std::size_t>(best)].c);
    for (int i = best + 1; i < n; ++i) {
      const float d = keys_[static_cast<std::size_t>(i)] - key;
      if (d * d >= 3 * bestDistance) break;
      const float distance = Distance2(c, colours_[static_cast<std::size_t>(i)].c);
      if (distance < bestDistance) bestDistance = distance, best = i;
    }
    for (int i = start - 1; i >= 0; --i) {
      const float d = key - keys_[static_cast<std::size_t>(i)];
      if (d * d >= 3 * bestDistance) break;
      const float distance = Distance2(c, colours_[static_cast<std::size_t>(i)].c);
      if (distance < bestDistance) bestDistance = distance, best = i;
    }
    return indices_[static_cast<std::size_t>(best)];
  }

 private:
  std::vector<float> keys_;
  std::vector<Colour> colours_;
  std::vector<int> indices_;
};

// ---- Refinement -------------------------------------------------------------------------------

// Lloyd's k-means over the histogram: each colour moves to the mean of the entries nearest to
// it. A colour that no entry chooses stays where it was.
void Refine(const std::vector<Entry>& entries, std::vector<Colour>& palette) {
  for (int pass = 0; pass < kKMeansPasses; ++pass) {
    const NearestColour nearest(palette);
    std::vector<double> sums(palette.size() * 4, 0.0);
    for (const Entry& e : entries) {
      double* s = &sums[static_cast<std::size_t>(nearest.Find(e.c)) * 4];
      s[0] += e.weight * e.c[0], s[1] += e.weight * e.c[1], s[2] += e.weight * e.c[2], s[3] += e.weight;
    }
    float moved = 0;
    for (std::size_t i = 0; i < palette.size(); ++i) {
      const double* s = &sums[i * 4];
      if (s[3] <= 0) continue;
      const Colour mean{{static_cast<float>(s[0] / s[3]), static_cast<float>(s[1] / s[3]), static_cast<float>(s[2] / s[3])}};
      moved = std::max(moved, Distance2(mean.c, palette[i].c));
      palette[i] = mean;
    }
    if (moved < 0.01f) break;
  }
}

// ---- Mapping with error diffusion -------------------------------------------------------------

// Local contrast (the strongest channel's Laplacian) at which diffusion falls to its least.
constexpr float kBusyContrast = 32.0f;
// The least share of the error diffused, in the busiest parts of the picture.
constexpr float kBusyShare = 0.25f;
// Errors longer than this (in RGB units) are diffused only up to this length.
constexpr float kErrorLimit = 16.0f;

// How much of a pixel's error to pass on. Diffusion is what keeps soft gradients from banding,
// so it runs in full where the picture is smooth; in edges and texture its noise hides no
// banding but costs accuracy, so it is turned down there; and a large error (a colour far from
// every palette entry, usually at a hard edge) is passed on only up to a limit, or it would
// smear along the row as streaks.
float DiffusionShare(const BgrPicture& picture, int x, int y, const float* wanted, const float* got) {
  const std::uint8_t* p = picture.pixel(x, y);
  const std::uint8_t* l = picture.pixel(std::max(x - 1, 0), y);
  const std::uint8_t* r = picture.pixel(std::min(x + 1, picture.width - 1), y);
  const std::uint8_t* u = picture.pixel(x, std::max(y - 1, 0));
  const std::uint8_t* d = picture.pixel(x, std::min(y + 1, picture.height - 1));
  int contrast = 0;
  for (int k = 0; k < 3; ++k) contrast = std::max(contrast, std::abs(4 * p[k] - l[k] - r[k] - u[k] - d[k]));
  float share = std::max(kBusyShare, 1.0f - static_cast<float>(contrast) / kBusyContrast);
  const float e2 = Distance2(wanted, got);
  if (e2 > kErrorLimit * kErrorLimit) share *= kErrorLimit / std::sqrt(e2);
  return share;
}

void Dither(const BgrPicture& picture, const std::vector<Colour>& palette, float dithering, QuantisedPicture& out) {
  const NearestColour nearest(palette);
  const int width = picture.width;
  // Errors for this row and the next, with one spare pixel at each end so no edge test is needed.
  std::vector<float> thisRow(static_cast<std::size_t>(width + 2) * 3, 0.0f), nextRow(thisRow.size(), 0.0f);
  for (int y = 0; y < picture.height; ++y) {
    std::fill(nextRow.begin(), nextRow.end(), 0.0f);
    const bool leftward = (y & 1) != 0;
    const int step = leftward ? -1 : 1;
    for (int i = 0; i < width; ++i) {
      const int x = leftward ? width - 1 - i : i;
      const std::uint8_t* p = picture.pixel(x, y);
      float* err = &thisRow[static_cast<std::size_t>(x + 1) * 3];
      float wanted[3];
      for (int k = 0; k < 3; ++k) wanted[k] = std::clamp(p[k] + err[k], 0.0f, 255.0f);
      const int index = nearest.Find(wanted);
      out.indices[static_cast<std::size_t>(y) * width + x] = static_cast<std::uint8_t>(index);
      const float* got = palette[static_cast<std::size_t>(index)].c;
      const float share = dithering * DiffusionShare(picture, x, y, wanted, got);
      float* ahead = err + step * 3;
      float* below = &nextRow[static_cast<std::size_t>(x + 1) * 3];
      for (int k = 0; k < 3; ++k) {
        const float e = (wanted[k] - got[k]) * share;
        ahead[k] += e * (7.0f / 16);
        below[k - step * 3] += e * (3.0f / 16);
        below[k] += e * (5.0f / 16);
        below[k + step * 3] += e * (1.0f / 16);
      }
    }
    std::swap(thisRow, nextRow);
  }
}

}  // namespace

bool QuantisePicture(const BgrPicture& picture, QuantisedPicture& out, float dithering) {
  if (picture.width < 1 || picture.height < 1 ||
      std::int64_t{picture.width} * picture.height > kMaxPhotoPixels ||
      picture.bytes.size() != static_cast<std::size_t>(picture.width) * picture.height * 3) {
    return false;
  }
  dithering = dithering >= 0.0f ? std::min(dithering, 1.0f) : 0.0f;  // NaN too becomes 0
  QuantisedPicture result;
  result.width = picture.width;
  result.height = picture.height;
  result.indices.resize(static_cast<std::size_t>(picture.width) * picture.height);
  std::vector<std::uint32_t> few;
  if (FewColours(picture, few)) {
    MapExactly(picture, few, result);
    out = std::move(result);
    return true;
  }
  std::vector<Entry> entries = Histogram(picture);
  std::vector<Colour> palette = SplitColourSpace(entries);
  Refine(entries, palette);
  // The table holds whole bytes, and the diffusion must measure its error against those.
  for (Colour& colour : palette) {
    for (float& v : colour.c) v = std::clamp(std::round(v), 0.0f, 255.0f);
  }
  Dither(picture, palette, dithering, result);
  for (std::size_t i = 0; i < palette.size(); ++i) {
    result.colours[i] = RgbQuad{static_cast<std::uint8_t>(palette[i].c[0]), static_cast<std::uint8_t>(palette[i].c[1]),
                                static_cast<std::uint8_t>(palette[i].c[2]), 0};
  }
  result.coloursUsed = static_cast<int>(palette.size());
  out = std::move(result);
  return true;
}

bool ToPackedDib(const QuantisedPicture& picture, PackedDib& dib) {
  if (picture.width < 1 || picture.height < 1 ||
      picture.indices.size() != static_cast<std::size_t>(picture.width) * picture.height) {
    return false;
  }
  PackedDib made;
  if (!made.Allocate(picture.width, picture.height)) return false;
  std::memcpy(DibColours(made.get()), picture.colours.data(), sizeof(RgbQuad) * kDibColourSlots);
  const std::size_t rowBytes = static_cast<std::size_t>(DibRowBytes(picture.width, 8));
  for (int y = 0; y < picture.height; ++y) {
    // DIB rows run bottom-up and are padded to four bytes; the padding is zeroed.
    std::uint8_t* row = DibPixels(made.get()) + static_cast<std::size_t>(picture.height - 1 - y) * rowBytes;
    std::memcpy(row, &picture.indices[static_cast<std::size_t>(y) * picture.width], static_cast<std::size_t>(picture.width));
    std::memset(row + picture.width, 0, rowBytes - static_cast<std::size_t>(picture.width));
  }
  dib = std::move(made);
  return true;
}

}  // namespace qv::photo
