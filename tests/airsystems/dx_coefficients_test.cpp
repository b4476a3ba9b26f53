#include "airsystems/dx_coefficients.h"

#include <gtest/gtest.h>

namespace tarn {
namespace {

template <typename C>
double at(const C& c, double x, double y) {
  return c(1) + c(2) * x + c(3) * x * x + c(4) * y + c(5) * y * y + c(6) * x * y;
}

template <size_t N, typename Stages>
auto of_stage(const Stages& stages, int stage) {
  Array<R8, static_cast<int>(N)> curve;
  for (int i = 1; i <= static_cast<int>(N); ++i) curve(i) = stages(i, stage);
  return curve;
}

const ACDX_Coeff_Holder_Clg cooling;
const ACDX_Coeff_Holder_Htg heating;

TEST(DxCurves, CoolingIsOneAtItsRatingAndLosesWithOutdoorTemperature) {
  for (int stage = 1; stage <= kDxStages; ++stage) {
    const auto capacity = of_stage<6>(cooling.Cap1Coeff, stage), power = of_stage<6>(cooling.Pow1Coeff, stage);
    EXPECT_NEAR(at(capacity, 67, 95), 1, 1e-6) << stage;
    EXPECT_NEAR(at(power, 67, 95), 1, 1e-6) << stage;
    for (double wet = 57; wet <= 77; ++wet) {
      for (double outdoor = 55; outdoor < 115; ++outdoor) {
        EXPECT_GT(at(capacity, wet, outdoor), at(capacity, wet, outdoor + 1)) << wet << " " << outdoor;
        EXPECT_LT(at(power, wet, outdoor), at(power, wet, outdoor + 1)) << wet << " " << outdoor;
      }
    }
    EXPECT_EQ(cooling.LowTempCapMult(stage), 1);
    EXPECT_EQ(cooling.LowTempPowMult(stage), 1);
  }
}

// MBtuh and kW of the tables that docs/dx-curves.md names.
TEST(DxCurves, CoolingFollowsItsTable) {
  const struct {
    double wet, outdoor, capacity, power;
  } states[]{{72, 75, 44.8, 2.99}, {72, 115, 35.7, 3.84}, {67, 105, 34.3, 3.49}, {62, 75, 37.0, 2.78}};
  for (const auto& s : states) {
    EXPECT_NEAR(at(of_stage<6>(cooling.Cap1Coeff, 1), s.wet, s.outdoor), s.capacity / 36.6, 0.003) << s.outdoor;
    EXPECT_NEAR(at(of_stage<6>(cooling.Pow1Coeff, 8), s.wet, s.outdoor), s.power / 3.29, 0.003) << s.outdoor;
  }
}

TEST(DxCurves, HeatingIsOneAtItsRatingAndGainsWithOutdoorTemperature) {
  const struct {
    const char* name;
    const DxTemperatures& curve;
    bool is_capacity;
  } curves[]{{"Cap1", heating.Cap1Coeff, true},
             {"Pow1", heating.Pow1Coeff, false},
             {"Cap2", heating.Cap2Coeff, true},
             {"Pow2", heating.Pow2Coeff, false}};
  for (const auto& c : curves) {
    EXPECT_NEAR(at(c.curve, 70, 47), 1, 1e-6) << c.name;
    EXPECT_GT(at(c.curve, 70, -10), 0.25) << c.name;
    for (double outdoor = -10; c.is_capacity && outdoor < 60; ++outdoor)
      EXPECT_LT(at(c.curve, 70, outdoor), at(c.curve, 70, outdoor + 1)) << c.name << outdoor;
  }
  EXPECT_NEAR(at(heating.Cap1Coeff, 70, 17), at(heating.Cap2Coeff, 70, 17), 1e-3);
  EXPECT_NEAR(at(heating.Pow1Coeff, 70, 17), at(heating.Pow2Coeff, 70, 17), 1e-3);
}

TEST(DxCurves, HeatingFollowsItsTable) {
  const struct {
    double outdoor, capacity, power;
  } states[]{{65, 36.5, 2.40}, {40, 26.1, 2.19}, {20, 19.2, 2.11}, {15, 17.5, 2.06}, {-10, 8.5, 1.83}};
  for (const auto& s : states) {
    const bool cold = s.outdoor < 17;
    EXPECT_NEAR(at(cold ? heating.Cap2Coeff : heating.Cap1Coeff, 70, s.outdoor), s.capacity / 29.0, 0.01) << s.outdoor;
    EXPECT_NEAR(at(cold ? heating.Pow2Coeff : heating.Pow1Coeff, 70, s.outdoor), s.power / 2.25, cold ? 0.006 : 0.026)
        << s.outdoor;
  }
}

TEST(DxCurves, RatedAirflowAndFullLoadChangeNothing) {
  for (const auto& c : {of_stage<2>(cooling.CapCFM1Coeff, 1), of_stage<2>(cooling.PowCFM1Coeff, kDxStages),
                        heating.CapCFM1Coeff, heating.PowCFM1Coeff, heating.CapCFM2Coeff, heating.PowCFM2Coeff}) {
    EXPECT_NEAR(c(1) + c(2), 1, 1e-6);
    EXPECT_GE(c(2), 0);
  }
  EXPECT_NEAR(cooling.CapCFM1Coeff(1, 1) + 1.25 * cooling.CapCFM1Coeff(2, 1), 37.6 / 36.6, 0.012);
  for (const auto& c : {cooling.PLR1Coeff, heating.PLR1Coeff}) {
    const auto efficiency = [&](double r) { return c(1) + c(2) * r + c(3) * r * r + c(4) * r * r * r; };
    EXPECT_NEAR(efficiency(1), 1, 1e-6);
    for (double r = 0; r < 1; r += 0.05) EXPECT_LT(efficiency(r), efficiency(r + 0.05)) << r;
    EXPECT_EQ(efficiency(0), 0.75);
  }
}

}  // namespace
}  // namespace tarn
