// The poles of a layered slab's transfer functions, found without a miss. docs/transfer-functions.md has the method.
#pragma once

#include <span>
#include <vector>

#include "envelope/transmission.h"

namespace tarn {

/// Roots of the element B of the transmission matrix at s = -beta with 0 < beta < the given bound, in increasing order;
/// beta in 1/hr. Zeros of the temperature inside the slab count the roots below any beta, so that none is missed.
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

/// Roots with a smaller e^-beta leave nothing behind in an hour.
inline constexpr double kSmallestFactor = 1e-16;
inline constexpr int kMostRoots = 100;

/// Error `InvalidCall`, with a reason a person can act on, where a slab has no resistance or needs more than 100 roots.
void check_slab(std::span<const SlabLayer> layers);

}  // namespace tarn
