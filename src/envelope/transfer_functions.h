// Conduction transfer functions of a layered slab, cut to 12 terms that survive storage as 4-byte reals. The step is
// one hour; temperatures run straight from hour to hour. docs/transfer-functions.md has the method and its accuracy.
#pragma once

#include <array>

#include "envelope/slab_response.h"

namespace tarn {

/// Coefficients by order, element 0 first. With hourly temperatures To outside and Ti inside, the flux out of the
/// inside face at hour t is sum b(j) To(t-j) - sum c(j) Ti(t-j) - sum over j > 0 of d(j) q(t-j), that into the outside
/// face sum a(j) To(t-j) - sum b(j) Ti(t-j) - sum d(j) q(t-j), a, b, c being `outside`, `cross`, `inside` and d the
/// `denominator`. Each of a, b, c sums to u_value times the sum of d. b and d are exact in 4 bytes.
struct TransferFunctions {
  static constexpr size_t kTerms = 12;
  using Series = std::array<double, kTerms>;

  Series outside{}, cross{}, inside{};  // Btu/(hr.ft2.F)
  Series denominator{};
  double u_value = 0;  // Btu/(hr.ft2.F)
  /// How far the response through the slab is off: to a step, over its end value, or to a sunny day, over its peak;
  /// the larger.
  double error = 0;

  double inside_sum() const;
};

/// Error `InvalidCall` where no terms of finite size hold the response at all.
TransferFunctions transfer_functions(const SlabResponse& response);

/// As `TransferFunctions::error`, of any terms; infinite where they are unstable.
double response_error(const SlabResponse& slab, const TransferFunctions::Series& cross,
                      const TransferFunctions::Series& denominator);

}  // namespace tarn
