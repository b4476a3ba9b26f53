// Conduction transfer functions of a layered slab, cut to 12 terms that survive storage as 4-byte reals. The step is
// one hour; temperatures run straight from hour to hour. docs/transfer-functions.md has the method and its accuracy.
#pragma once

#include <span>

#include "envelope/exact_response.h"

namespace tarn {

/// Coefficients by order. With hourly temperatures To outside and Ti inside, the flux out of the inside face at hour t
/// is sum b(j) To(t-j) - sum c(j) Ti(t-j) - sum over j > 0 of d(j) q(t-j). Of c the sum is kept, as that of b: both are
/// u_value times the sum of d. All are exact in 4 bytes, but for `c_sum`.
struct TransferFunctions {
  Series b{};  // Btu/(hr.ft2.F)
  Series d{};
  double c_sum = 0;    // Btu/(hr.ft2.F)
  double u_value = 0;  // Btu/(hr.ft2.F)
  Accuracy accuracy;   // of b and d
};

/// Error `InvalidCall`, with a reason a person can act on: no resistance, more than 100 roots, or no terms that hold
/// the response to kWorstError.
TransferFunctions transfer_functions(std::span<const SlabLayer> layers);
inline constexpr double kWorstError = 0.1;

/// Of any terms of b and d. Error `InvalidCall` for a slab without transfer functions.
Accuracy response_accuracy(std::span<const SlabLayer> layers, const Series& b, const Series& d);

}  // namespace tarn
