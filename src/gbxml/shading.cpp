#include "gbxml/shading.h"

#include <algorithm>
#include <cmath>

namespace tarn {
namespace {

constexpr double kCell = 50, kReach = 10, kLargest = 500;  // ft; a larger body is no part of a window
constexpr double kLeastProjection = 0.25, kFromWall = 1;   // ft
constexpr double kTouching = 0.1;                          // ft
constexpr double kUpright = 30;                            // deg, that a wall may lean

int cell_of(double at) { return static_cast<int>(std::floor(at / kCell)); }
double hundredths(double feet) { return std::round(std::max(feet, 0.0) * 100) / 100; }

struct Span {
  double low = 1e300, high = -1e300;
  void take(double at) {
    low = std::min(low, at);
    high = std::max(high, at);
  }
  bool meets(const Span& other) const { return high > other.low && low < other.high; }
};

/// Extents as one sees them from before the wall: to the right, up, and out of it.
struct Extents {
  Span right, up, out;
};

Extents extents_of(const std::vector<Point>& loop, const Point& normal) {
  const double level = std::hypot(normal.x, normal.y);
  const Point out{normal.x / level, normal.y / level, 0}, right{-out.y, out.x, 0};
  Extents all;
  for (const Point& at : loop) {
    all.right.take(dot(at, right));
    all.up.take(at.z);
    all.out.take(dot(at, out));
  }
  return all;
}

void take_overhang(Shading& shading, const Extents& window, const Extents& body, double projection, double& nearest) {
  const double height = body.up.low - window.up.high;
  if (height < -kTouching || height > kReach || height >= nearest || !body.right.meets(window.right)) return;
  nearest = height;
  shading.overhang = hundredths(projection);
  shading.overhang_height = hundredths(height);
  shading.overhang_right = hundredths(body.right.high - window.right.high);
  shading.overhang_left = hundredths(window.right.low - body.right.low);
}

void take_fin(double separation, double projection, double height, double& nearest, double& its_separation, double& fin,
              double& its_height) {
  if (separation < -kTouching || separation > kReach || separation >= nearest) return;
  nearest = separation;
  its_separation = hundredths(separation);
  fin = hundredths(projection);
  its_height = hundredths(height);
}

}  // namespace

void ShadingBodies::add(Element element, std::vector<Point> loop) {
  Span east, north;
  for (const Point& at : loop) {
    east.take(at.x);
    north.take(at.y);
  }
  const Facing facing = facing_of(loop);
  bodies_.push_back({element, std::move(loop), facing});
  if (facing.area <= 0 || east.high - east.low > kLargest || north.high - north.low > kLargest) return;
  for (int x = cell_of(east.low - kReach); x <= cell_of(east.high + kReach); ++x) {
    for (int y = cell_of(north.low - kReach); y <= cell_of(north.high + kReach); ++y)
      cells_[{x, y}].push_back(bodies_.size() - 1);
  }
}

Shading ShadingBodies::shading_of(const std::vector<Point>& window, const Facing& facing) {
  Shading shading;
  const auto cell = cells_.find({cell_of(window.front().x), cell_of(window.front().y)});
  if (cell == cells_.end() || std::abs(facing.tilt - 90) > kUpright) return shading;
  const Extents own = extents_of(window, facing.normal);
  double above = 1e300, right = 1e300, left = 1e300;  // the nearest so far
  for (const size_t place : cell->second) {
    Body& body = bodies_[place];
    const Extents other = extents_of(body.loop, facing.normal);
    const double projection = other.out.high - own.out.high;
    if (projection < kLeastProjection || std::abs(other.out.low - own.out.high) > kFromWall) continue;
    const Shading before = shading;
    if (std::abs(body.facing.tilt - 90) > 45) {
      take_overhang(shading, own, other, projection, above);
    } else if (between(body.facing.azimuth, facing.azimuth) > 45 &&
               between(body.facing.azimuth, facing.azimuth) < 135 && other.up.meets(own.up)) {
      const double height = other.up.high - other.up.low;
      take_fin(other.right.low - own.right.high, projection, height, right, shading.right_separation, shading.right_fin,
               shading.right_height);
      take_fin(own.right.low - other.right.high, projection, height, left, shading.left_separation, shading.left_fin,
               shading.left_height);
    }
    body.is_used = body.is_used || shading != before;
  }
  return shading;
}

}  // namespace tarn
