// The exact transfers of heat through a layered slab, by its transmission matrix at any complex frequency, and their
// way back into time by a contour integral. No search for poles: what judges the transfer functions is found without
// what makes them.
#pragma once

#include <cmath>
#include <complex>
#include <span>
#include <vector>

#include "tarn/slab.h"

namespace tarn {

using Complex = std::complex<double>;

class Transmission {
 public:
  explicit Transmission(std::span<const SlabLayer> layers);
  /// The flux through the slab over the outside temperature, Btu/(hr.ft2.F): 1 / B, B the upper right element of the
  /// matrix at s in 1/hr.
  Complex transfer(Complex s) const;
  /// The temperature at each border of the layers, outside to inside, over that at the outside; the last is 0.
  std::vector<Complex> temperatures(Complex s) const;
  double u_value() const { return u_value_; }

 private:
  struct Layer {
    double resistance, root_of_time;  // root of resistance times capacity, 0 without mass
  };
  std::vector<Layer> layers_;  // from inside to outside
  double u_value_;
};

/// Points of the parabola s = mu (1 + iu)^2, by which f(t) = sum of Re(weight F(s) e^(s t)) for times from `first` to
/// `ratio` times that, for F analytic but for singularities on the negative real axis and 0 (Weideman and Trefethen,
/// Math. Comp. 76 (2007) 1341): an error of about e^(-2 pi points / sqrt(8 ratio + 1)).
struct ContourPoint {
  Complex s, weight;
};
std::vector<ContourPoint> contour(double first, double ratio, int points);

/// Without the library's care for infinities, for factors that are none.
inline Complex times(Complex a, Complex b) {
  return {a.real() * b.real() - a.imag() * b.imag(), a.real() * b.imag() + a.imag() * b.real()};
}
inline Complex exponential(Complex x) {
  const double size = std::exp(x.real());
  return {size * std::cos(x.imag()), size * std::sin(x.imag())};
}

}  // namespace tarn
