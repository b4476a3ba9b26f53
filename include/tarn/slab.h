// What calculations make of a construction's layers, and how well transfer functions hold their response.
#pragma once

namespace tarn {

/// One homogeneous layer: its resistance, and its heat capacity, 0 for a layer without thermal mass. Both are finite
/// and not negative, and a layer with mass has a resistance.
struct SlabLayer {
  double resistance;  // hr.ft2.F/Btu
  double capacity;    // Btu/(ft2.F)
  int slot = 0;       // of the construction, for messages
};

/// Errors of a filter's response through the slab, with temperatures that run straight from hour to hour.
struct Accuracy {
  /// To a step of the outside temperature, the largest until 12 times the slowest time constant; over its end value.
  double step = 0;
  /// On a repeated day about its mean, sunny or a half sine of 12 hours; over the peak about the mean, or 1 % of what
  /// the day's swing would let through in a steady state, where the peak is less than that.
  double day = 0;

  double worst() const { return step > day ? step : day; }
};

}  // namespace tarn
