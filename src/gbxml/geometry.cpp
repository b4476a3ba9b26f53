#include "gbxml/geometry.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace tarn {
namespace {

constexpr double kDegrees = 180 / std::numbers::pi;
constexpr double kLevel = 1e-6;  // of the normal's length: below it, a surface faces straight up or down

}  // namespace

Facing facing_of(const std::vector<Point>& loop) {
  Facing out;
  if (loop.size() < 3) return out;
  Point sum, mean;
  const Point& origin = loop.front();  // near numbers lose fewer digits than those of a site far from the origin
  Point last = loop.back() - origin;
  for (const Point& absolute : loop) {
    const Point at = absolute - origin;
    sum.x += (last.y - at.y) * (last.z + at.z);
    sum.y += (last.z - at.z) * (last.x + at.x);
    sum.z += (last.x - at.x) * (last.y + at.y);
    mean = {mean.x + at.x, mean.y + at.y, mean.z + at.z};
    last = at;
  }
  const double twice = std::sqrt(dot(sum, sum));
  out.area = twice / 2;
  if (twice == 0) return out;
  out.normal = {sum.x / twice, sum.y / twice, sum.z / twice};
  const auto points = static_cast<double>(loop.size());
  mean = {mean.x / points, mean.y / points, mean.z / points};
  for (const Point& absolute : loop)
    out.off_plane = std::max(out.off_plane, std::abs(dot((absolute - origin) - mean, out.normal)));
  out.tilt = std::acos(std::clamp(out.normal.z, -1.0, 1.0)) * kDegrees;
  if (std::hypot(out.normal.x, out.normal.y) > kLevel) {
    out.azimuth = std::atan2(out.normal.x, out.normal.y) * kDegrees;
    if (out.azimuth < 0) out.azimuth += 360;
  }
  return out;
}

double between(double azimuth, double other) { return std::abs(std::remainder(azimuth - other, 360)); }

}  // namespace tarn
