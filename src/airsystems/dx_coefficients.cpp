#include "airsystems/dx_coefficients.h"

namespace tarn {

namespace {

struct RatingPoint {
  double entering, outdoor;  // F
};
constexpr RatingPoint kCooling{67, 95};
constexpr RatingPoint kHeating{70, 47};

/// A bi-quadratic in the distances from the rating point, u = x - entering and v = y - outdoor, that is 1 there.
struct Slopes {
  double u, uu, v, vv, uv;  // per F, per F^2
};

// Least squares over a manufacturer's table of 15 states: within 0.3 % of it.
constexpr Slopes kCoolingCapacity{0.02011, 9.589e-05, -0.005911, -9.254e-06, -5.738e-05};
constexpr Slopes kCoolingPower{0.007781, 1.49e-05, 0.00612, -4.902e-06, 6.991e-05};
constexpr double kCoolingCapacityPerFlow = 0.1475, kCoolingPowerPerFlow = 0.0851;

// The same for heating, 70 F entering only: no slope in u. Both sets meet the table at 17 F, where one follows the
// other; capacity is within 1 % of it, power within 2.6 % where the coil begins to frost and 0.6 % below 17 F.
constexpr Slopes kHeatingCapacity{0, 0, 0.01387, 4.837e-05, 0};
constexpr Slopes kHeatingPower{0, 0, 0.003191, 2.243e-05, 0};
constexpr Slopes kColdHeatingCapacity{0, 0, 0.01243, 6.403e-07, 0};
constexpr Slopes kColdHeatingPower{0, 0, 0.001578, -3.135e-05, 0};

// A unit that cycles loses a quarter of its efficiency towards no load.
constexpr double kCyclingLoss = 0.25;

template <size_t N>
Array<R8, int(N)> row(const double (&values)[N]) {
  Array<R8, int(N)> array;
  std::copy_n(values, N, array.items.begin());
  return array;
}

DxTemperatures around(RatingPoint at, const Slopes& s) {
  const auto [x, y] = at;
  return row({1 - s.u * x + s.uu * x * x - s.v * y + s.vv * y * y + s.uv * x * y, s.u - 2 * s.uu * x - s.uv * y, s.uu,
              s.v - 2 * s.vv * y - s.uv * x, s.vv, s.uv});
}

DxFlow flow(double slope) { return row({1 - slope, slope}); }

DxPartLoad cycling() { return row({1 - kCyclingLoss, kCyclingLoss, 0, 0}); }

/// The curves give fractions of each stage's own rating, so that all stages share them.
template <typename Stages, typename Curve>
void fill(Stages& stages, const Curve& curve) {
  for (int stage = 1; stage <= kDxStages; ++stage) {
    for (int i = 1; i <= static_cast<int>(Curve::size); ++i) stages(i, stage) = curve(i);
  }
}

/// Linear in the absolute temperatures of entering air and water over 283.15 K, and in flows over the rated ones.
struct WaterFit {
  double constant, air, water, airflow, waterflow;

  double at(double x, double y) const { return constant + air * of(x) + water * of(y) + airflow + waterflow; }
  /// Made 1 at its rating, in F.
  Slopes slopes(RatingPoint rated) const {
    const double per_degree = 1 / (kReference * at(rated.entering, rated.outdoor));
    return {air * per_degree, 0, water * per_degree, 0, 0};
  }
  DxFlow flow_at(RatingPoint rated) const { return flow(airflow / at(rated.entering, rated.outdoor)); }

 private:
  static constexpr double kReference = 283.15 * 1.8;  // R
  static double of(double fahrenheit) { return (fahrenheit + 459.67) / kReference; }
};

// The default water-to-air heat pump of a public building energy library; docs/dx-curves.md names it.
constexpr WaterFit kWaterCoolingCapacity{-0.68126221, 1.99529297, -0.93611888, 0.02081177, 0.008438868},
    kWaterCoolingPower{-3.20456384, 0.47656454, 3.16734236, 0.10244637, -0.038132556},
    kWaterHeatingCapacity{-5.50102734, -0.96688754, 7.70755007, 0.031928881, 0.028112522},
    kWaterHeatingPower{-7.47517858, 6.40876653, 1.99711665, -0.050682973, 0.011385145};

}  // namespace

std::optional<WaterRating> water_rating(int16_t system_type) {
  if (system_type == 14) return WaterRating{86, 68};
  if (system_type == 18) return WaterRating{59, 50};
  if (system_type == 19) return WaterRating{77, 32};
  return {};
}

ACDX_Coeff_Holder_Clg::ACDX_Coeff_Holder_Clg(WaterRating rating) : ACDX_Coeff_Holder_Clg() {
  const RatingPoint rated{kCooling.entering, rating.cooling};
  fill(Cap1Coeff, around(rated, kWaterCoolingCapacity.slopes(rated)));
  fill(Pow1Coeff, around(rated, kWaterCoolingPower.slopes(rated)));
  fill(CapCFM1Coeff, kWaterCoolingCapacity.flow_at(rated));
  fill(PowCFM1Coeff, kWaterCoolingPower.flow_at(rated));
}

ACDX_Coeff_Holder_Htg::ACDX_Coeff_Holder_Htg(WaterRating rating) : ACDX_Coeff_Holder_Htg() {
  const RatingPoint rated{kHeating.entering, rating.heating};
  Cap1Coeff = Cap2Coeff = around(rated, kWaterHeatingCapacity.slopes(rated));
  Pow1Coeff = Pow2Coeff = around(rated, kWaterHeatingPower.slopes(rated));
  CapCFM1Coeff = CapCFM2Coeff = kWaterHeatingCapacity.flow_at(rated);
  PowCFM1Coeff = PowCFM2Coeff = kWaterHeatingPower.flow_at(rated);
}

ACDX_Coeff_Holder_Clg::ACDX_Coeff_Holder_Clg() : PLR1Coeff(cycling()) {
  fill(Cap1Coeff, around(kCooling, kCoolingCapacity));
  fill(Pow1Coeff, around(kCooling, kCoolingPower));
  fill(CapCFM1Coeff, flow(kCoolingCapacityPerFlow));
  fill(PowCFM1Coeff, flow(kCoolingPowerPerFlow));
  // Head pressure control holds the condensing temperature below the cut-off.
  LowTempCapMult.items.fill({1});
  LowTempPowMult.items.fill({1});
}

// The heating table has one airflow: no slope in flow.
ACDX_Coeff_Holder_Htg::ACDX_Coeff_Holder_Htg()
    : PLR1Coeff(cycling()),
      Cap1Coeff(around(kHeating, kHeatingCapacity)),
      Pow1Coeff(around(kHeating, kHeatingPower)),
      Cap2Coeff(around(kHeating, kColdHeatingCapacity)),
      Pow2Coeff(around(kHeating, kColdHeatingPower)),
      CapCFM1Coeff(flow(0)),
      PowCFM1Coeff(flow(0)),
      CapCFM2Coeff(flow(0)),
      PowCFM2Coeff(flow(0)) {}

}  // namespace tarn
