// Least squares in triangles, and series of 12 terms of which each is rounded to 4 bytes before those that are smaller.
#pragma once

#include <array>
#include <cmath>
#include <vector>

#include "envelope/exact_response.h"

namespace tarn {

/// An equation for 12 unknowns, its right side last.
template <typename Real>
using Equation = std::array<Real, kTerms + 1>;

/// Reduces equations to a triangle with the same least squares (Householder), row c beginning with unknown c; the
/// first so many unknowns count.
template <typename Real>
void triangulate(std::vector<Equation<Real>>& equations, size_t unknowns = kTerms) {
  std::vector<Real> mirror(equations.size());
  for (size_t c = 0; c < unknowns && c < equations.size(); ++c) {
    Real norm = 0;
    for (size_t r = c; r < equations.size(); ++r) norm += equations[r][c] * equations[r][c];
    norm = std::copysign(std::sqrt(norm), -equations[c][c]);
    if (norm == 0) continue;
    for (size_t r = c; r < equations.size(); ++r) mirror[r] = equations[r][c];
    mirror[c] -= norm;
    const Real half_square = -norm * mirror[c];  // of the mirror's length
    for (size_t k = c; k <= kTerms; ++k) {
      Real along = 0;
      for (size_t r = c; r < equations.size(); ++r) along += mirror[r] * equations[r][k];
      along /= half_square;
      for (size_t r = c; r < equations.size(); ++r) equations[r][k] -= along * mirror[r];
    }
  }
  if (equations.size() > unknowns) equations.resize(unknowns);
}

/// A series of z^-1 in powers of w = 1 - z^-1, its moments: of slow responses they are what counts, and far smaller
/// than the terms. Element k is (-1)^k times the sum of the terms by binomials j over k.
using Moments = std::array<long double, kTerms>;
/// Exact to the last digit, for terms of 4 bytes.
Moments moments_of(const Series& terms);
/// The first of them.
double sum_of(const Series& terms);

/// How the terms of a series are to be found.
struct Wish {
  Series terms{};                     // near which they stay where they gain nothing,
  std::array<double, kTerms> pull{};  // with this weight each
  bool first_is_one = false;
};

/// Terms that suit equations for their moments best. Each is rounded to 4 bytes while those that are smaller, and so
/// more finely spaced, are still free to take up what the rounding did: the nearest plane of the lattice (Babai,
/// Combinatorica 6 (1986) 1), with the largest of `sizes` first.
Series rounded_terms(const std::vector<Equation<long double>>& of_moments, const Wish& wish, const Series& sizes);
/// As above, in doubles.
Series real_terms(const std::vector<Equation<long double>>& of_moments, const Wish& wish);

}  // namespace tarn
