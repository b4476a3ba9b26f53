// What a slab's response is, and how far a filter of 12 terms is off it. Both are found from the transmission matrix
// alone: a step by inverse Laplace transforms, a repeated day by its harmonics. docs/transfer-functions.md has the
// definitions.
#pragma once

#include <array>
#include <vector>

#include "envelope/transmission.h"

namespace tarn {

inline constexpr size_t kTerms = 12;
/// Coefficients by order, element 0 first.
using Series = std::array<double, kTerms>;

class ExactResponse {
 public:
  static constexpr int kHarmonics = 12;  // of a day of hourly temperatures

  /// The slowest root of the slab, in 1/hr; 0 where it has none.
  ExactResponse(const Transmission& slab, double slowest_root);

  double u_value() const { return u_value_; }
  /// The flux through the slab at hours 0 to 12, in Btu/(hr.ft2.F), for an outside temperature of 0 until hour -1 and 1
  /// from hour 0 on; to 2e-9 of U.
  const std::vector<double>& early_steps() const { return early_steps_; }
  /// The z-transform of the hourly pulse response through the slab at harmonics 1 to 12 of a day, element 0 first.
  const std::array<Complex, kHarmonics>& daily() const { return daily_; }
  /// What the error of a day is in proportion to, at most, for one of the harmonics 1 to 12.
  double weight_of_day(int harmonic) const;

  /// Of the terms of b and d; infinite where their response grows without end.
  Accuracy accuracy(const Series& b, const Series& d) const;

 private:
  void find_steps(const Transmission& slab, double last_hour, bool every_hour);
  void find_days(const Transmission& slab, bool quick);
  template <typename Real>
  double step_error(const Series& b, const Series& d) const;

  double u_value_;
  std::vector<int> hours_;  // at which the step is known; all of them where the slab is quick
  std::vector<double> step_;
  std::vector<double> early_steps_;
  std::array<Complex, kHarmonics> daily_{};
  std::array<double, 2> peaks_{};  // that errors of the days are put over
};

/// The z-transform of the hourly pulse response through the slab, at z = e^(i frequency), 0 < frequency <= pi.
Complex hourly_transfer(const Transmission& slab, double frequency);

}  // namespace tarn
