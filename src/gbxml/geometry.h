// Planar polygons in space: area, which way they face, how flat they are. Lengths in ft; x is east and y north of the
// drawing, z up.
#pragma once

#include <vector>

namespace tarn {

struct Point {
  double x = 0, y = 0, z = 0;
};
inline Point operator-(const Point& a, const Point& b) { return {a.x - b.x, a.y - b.y, a.z - b.z}; }
inline double dot(const Point& a, const Point& b) { return a.x * b.x + a.y * b.y + a.z * b.z; }

struct Facing {
  double area = 0;       // ft2
  Point normal;          // of length 1, by the right hand rule; 0 without area
  double azimuth = 0;    // deg clockwise from the drawing's north, 0 up to 360; 0 for what faces up or down
  double tilt = 0;       // deg from straight up: a flat roof 0, a wall 90, a floor 180
  double off_plane = 0;  // ft, the largest distance of a point from the plane through the mean point
};

/// By Newell's method: the vector area of the loop, which needs no convex loop and averages over one that is not flat
/// (Sutherland, Sproull and Schumacker, ACM Computing Surveys 6 (1974) 1).
Facing facing_of(const std::vector<Point>& loop);

/// Degrees between two directions of the compass, 0 to 180.
double between(double azimuth, double other);

}  // namespace tarn
