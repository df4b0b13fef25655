// The outlines of the three tab styles and their rasterised masks along one cell edge.
#include "assets/die_shapes.h"

#include <algorithm>
#include <cmath>

namespace qv::assets {
namespace {

// Each outline is built from circular arcs and straight lines that meet with a common tangent,
// so the edge bends smoothly into the tab. Three rules keep the pieces sturdy: the tab leaves
// the edge through a round notch (its radius is also the rounded tip the neighbouring piece
// gets), every convex turn has a radius above a twentieth of the edge, and the head is wider
// than the neck so that the pieces hold each other.
constexpr double kNotch = 0.065;  // radius of the notch on each side of the neck
constexpr int kStepsPerArc = 120;

struct Builder {
  std::vector<Point> points;

  // Arc around (cu, cv) from angle a0 to a1 (radians, counter-clockwise when a1 > a0).
  void Arc(double cu, double cv, double radius, double a0, double a1) {
    for (int i = points.empty() ? 0 : 1; i <= kStepsPerArc; ++i) {
      const double a = a0 + (a1 - a0) * i / kStepsPerArc;
      points.push_back({cu + radius * std::cos(a), cv + radius * std::sin(a)});
    }
  }
  void LineTo(double u, double v) { points.push_back({u, v}); }
};

// The notch centred at (cn, kNotch) joined to a circle of radius r at (cu, cv) that it touches
// from outside: the angle, seen from the notch, of the point where they meet.
double TouchAngle(double cn, double cu, double cv) { return std::atan2(cv - kNotch, cu - cn); }

// A round head on a narrow neck.
std::vector<Point> KnobHalf() {
  const double cn = 0.425 - kNotch, radius = 0.115;
  const double dv = std::sqrt(std::pow(kNotch + radius, 2) - std::pow(0.5 - cn, 2));
  const double cv = kNotch + dv;
  const double touch = TouchAngle(cn, 0.5, cv);
  Builder b;
  b.Arc(cn, kNotch, kNotch, -M_PI / 2, touch);
  b.Arc(0.5, cv, radius, touch + M_PI, M_PI / 2);
  return b.points;
}

// Straight flanks that widen away from the edge, with rounded corners at a flat crown.
std::vector<Point> DovetailHalf() {
  const double cn = 0.42 - kNotch, tilt = 20 * M_PI / 180, corner = 0.065, crown = 0.28;
  const double su = cn + kNotch * std::cos(tilt), sv = kNotch + kNotch * std::sin(tilt);
  const double du = -std::sin(tilt), dv = std::cos(tilt);  // up the flank
  const double nu = std::cos(tilt), nv = std::sin(tilt);   // into the tab
  const double t = (crown - corner - corner * nv - sv) / dv;
  const double fu = su + t * du, fv = sv + t * dv;
  const double cu = fu + corner * nu, cv = fv + corner * nv;
  Builder b;
  b.Arc(cn, kNotch, kNotch, -M_PI / 2, tilt);
  b.LineTo(fu, fv);
  b.Arc(cu, cv, corner, M_PI + tilt, M_PI / 2);
  b.LineTo(0.5, crown);
  return b.points;
}

// Two round lobes on one neck, with a round valley between them.
std::vector<Point> DoubleLobeHalf() {
  const double cn = 0.425 - kNotch, lobe = 0.08, lu = 0.40, valley = 0.065;
  const double lv = kNotch + std::sqrt(std::pow(kNotch + lobe, 2) - std::pow(lu - cn, 2));
  const double vv = lv + std::sqrt(std::pow(valley + lobe, 2) - std::pow(0.5 - lu, 2));
  const double touch = TouchAngle(cn, lu, lv);
  const double toValley = std::atan2(vv - lv, 0.5 - lu);
  Builder b;
  b.Arc(cn, kNotch, kNotch, -M_PI / 2, touch);
  b.Arc(lu, lv, lobe, touch + M_PI, toValley);
  b.Arc(0.5, vv, valley, toValley + M_PI, 3 * M_PI / 2);
  return b.points;
}

std::vector<Point> HalfOf(TabStyle style) {
  switch (style) {
    case TabStyle::kKnob:
      return KnobHalf();
    case TabStyle::kDovetail:
      return DovetailHalf();
    case TabStyle::kDoubleLobe:
      return DoubleLobeHalf();
  }
  return KnobHalf();
}

}  // namespace

std::vector<Point> TabOutline(TabStyle style, const TabVariation& variation) {
  const std::vector<Point> left = HalfOf(style);
  std::vector<Point> outline = left;
  for (auto it = left.rbegin() + 1; it != left.rend(); ++it) outline.push_back({1 - it->u, it->v});
  for (Point& p : outline) {
    p.u = 0.5 + variation.shift + (p.u - 0.5) * variation.width;
    p.v *= variation.height;
  }
  return outline;
}

TabMask RasteriseTab(const std::vector<Point>& outline) {
  TabMask mask{};
  // The outline and the stretch of edge under it close one polygon; fill it by scanlines at the
  // pixel centres with the even-odd rule.
  std::vector<Point> polygon;
  for (const Point& p : outline) polygon.push_back({p.u * kCellPixels, p.v * kCellPixels});
  std::vector<double> crossings;
  for (int v = 0; v < kMarginPixels; ++v) {
    const double y = v + 0.5;
    crossings.clear();
    for (std::size_t i = 0; i < polygon.size(); ++i) {
      const Point& a = polygon[i];
      const Point& b = polygon[(i + 1) % polygon.size()];
      if ((a.v <= y) != (b.v <= y)) crossings.push_back(a.u + (y - a.v) * (b.u - a.u) / (b.v - a.v));
    }
    std::sort(crossings.begin(), crossings.end());
    for (std::size_t i = 0; i + 1 < crossings.size(); i += 2) {
      const int first = std::max(0, static_cast<int>(std::ceil(crossings[i] - 0.5)));
      const int last = std::min(kCellPixels - 1, static_cast<int>(std::floor(crossings[i + 1] - 0.5)));
      for (int u = first; u <= last; ++u) mask[v][u] = true;
    }
  }
  return mask;
}

}  // namespace qv::assets
