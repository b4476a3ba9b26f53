// What a slab's response is, in 60 digits: residues at roots that are counted and refined here. Nothing is shared with
// the library but the description of a layer: not the road, not the digits, not the search for roots.
#pragma once

#include <array>
#include <boost/multiprecision/cpp_bin_float.hpp>
#include <complex>
#include <span>
#include <vector>

#include "tarn/slab.h"

namespace tarn::test {

using Digits = boost::multiprecision::number<boost::multiprecision::cpp_bin_float<60>, boost::multiprecision::et_off>;
using Slab = std::vector<SlabLayer>;

/// Roots of the transmission matrix at s = -beta below a bound, 1/hr, by the zeros of the temperature in the slab.
int roots_counted(const Slab& slab, double bound);

/// A unit ramp outside gives inside u t + offset + sum of weights e^(-root t).
class ExactSlab {
 public:
  explicit ExactSlab(const Slab& slab);
  double u_value() const { return static_cast<double>(u_); }
  /// 1/hr; 0 without mass.
  double slowest_root() const { return roots_.empty() ? 0 : static_cast<double>(roots_.front()); }
  /// The flux at an hour for an outside temperature of 0 until hour -1 and 1 from hour 0 on.
  double step(int hour) const;
  /// The z-transform of the hourly pulse response, at harmonic k of a day.
  std::complex<double> daily(int k) const;

 private:
  Digits u_, offset_;
  std::vector<Digits> roots_, weights_, factors_;  // factors: e^-root
};

/// How far the terms, in 4 bytes, are off the slab's response.
Accuracy judged(const ExactSlab& exact, std::span<const double> b, std::span<const double> d);

}  // namespace tarn::test
