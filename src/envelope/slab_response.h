// The exact response of a layered slab to temperatures at its faces: the poles of its transfer functions, found without
// a miss, and the ramp responses that follow from them. docs/transfer-functions.md has the derivation.
#pragma once

#include <array>
#include <functional>
#include <span>
#include <vector>

namespace tarn {

/// One homogeneous layer: its resistance, and its heat capacity, 0 for a layer without thermal mass. Both are finite
/// and not negative, and a layer with mass has a resistance.
struct SlabLayer {
  double resistance;  // hr.ft2.F/Btu
  double capacity;    // Btu/(ft2.F)
  int slot = 0;       // of the construction, for messages
};

/// The transmission matrix [A, B; C, D] of a slab at s = -beta marched from the inside face (temperature 0, flux 1) to
/// the outside face, with derivatives with respect to s. Temperature and flux at the outside face are B and D.
struct SlabMarch {
  double b, d;
  double b_slope, d_slope;
};
SlabMarch march(std::span<const SlabLayer> layers, double beta);

/// Roots of the element B at s = -beta with 0 < beta < the given bound, in increasing order; beta in 1/hr.
/// Zeros of the temperature inside the slab count the roots below any beta, so that none is missed.
class RootSearch {
 public:
  explicit RootSearch(std::span<const SlabLayer> layers) : layers_(layers) {}
  /// Roots below beta.
  int count(double beta);
  std::vector<double> roots_below(double bound);
  /// Evaluations of the matrix product so far.
  long evaluations() const { return evaluations_; }

 private:
  struct Point {
    double beta, b;
    int count;
  };
  Point at(double beta);
  double refined(Point low, Point high);

  std::span<const SlabLayer> layers_;
  long evaluations_ = 0;
};

/// The flux of a face for a unit ramp of temperature that starts at time 0, at time t > 0 in hr:
/// u_value t + offset + sum of weights e^(-beta t), in Btu/(hr.ft2).
enum class Face : unsigned char { Outside, Cross, Inside };
struct SlabResponse {
  double u_value;                // Btu/(hr.ft2.F)
  std::vector<double> roots;     // 1/hr, those with e^-beta not below kSmallestFactor
  std::array<double, 3> offset;  // by Face
  std::array<std::vector<double>, 3> weights;
};

inline constexpr double kSmallestFactor = 1e-16;
inline constexpr int kMostRoots = 100;

/// Errors `InvalidCall`, with a reason a person can act on: no resistance, more than 100 roots.
SlabResponse slab_response(std::span<const SlabLayer> layers);

}  // namespace tarn
