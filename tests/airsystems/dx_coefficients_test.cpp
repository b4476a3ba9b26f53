#include "airsystems/dx_coefficients.h"

#include <gtest/gtest.h>

#include "tarn/air_system.h"

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

// Of the default machine that docs/dx-curves.md names, at its own entering temperatures, by its published form in
// kelvin.
double fit(const double (&c)[5], double air, double water) {
  const auto of = [](double fahrenheit) { return ((fahrenheit - 32) / 1.8 + 273.15) / 283.15; };
  return c[0] + c[1] * of(air) + c[2] * of(water) + c[3] + c[4];
}

TEST(DxCurves, WaterSourceTypesAreOneAtTheirDesignTemperaturesAndFollowTheirFit) {
  constexpr double cooling_capacity[]{-0.68126221, 1.99529297, -0.93611888, 0.02081177, 0.008438868},
      cooling_power[]{-3.20456384, 0.47656454, 3.16734236, 0.10244637, -0.038132556},
      heating_capacity[]{-5.50102734, -0.96688754, 7.70755007, 0.031928881, 0.028112522},
      heating_power[]{-7.47517858, 6.40876653, 1.99711665, -0.050682973, 0.011385145};
  for (const int16_t type : {int16_t{14}, int16_t{18}, int16_t{19}}) {
    SCOPED_TRACE(type);
    AS_AirSystem system;
    system.SetToDefaultsByType(type);
    const AS_CoolData& clg = *system.GetCoolSys();
    const AS_HeatData& htg = *system.GetHeatSys();
    const double warm = system.GetZoneData(1)->ClgDesignET, cold = system.GetZoneData(1)->HtgDesignET;
    for (int stage = 1; stage <= kDxStages; stage += kDxStages - 1) {
      for (const double water : {warm, 50.0, 100.0}) {
        EXPECT_NEAR(at(of_stage<6>(clg.Cap1Coeff, stage), 62, water),
                    fit(cooling_capacity, 62, water) / fit(cooling_capacity, 67, warm), 1e-6);
        EXPECT_NEAR(at(of_stage<6>(clg.Pow1Coeff, stage), 72, water),
                    fit(cooling_power, 72, water) / fit(cooling_power, 67, warm), 1e-6);
      }
      EXPECT_NEAR(at(of_stage<6>(clg.Cap1Coeff, stage), 67, warm), 1, 1e-6);
      EXPECT_NEAR(at(of_stage<6>(clg.Pow1Coeff, stage), 67, warm), 1, 1e-6);
    }
    for (const auto& curve : {htg.Cap1Coeff, htg.Pow1Coeff, htg.Cap2Coeff, htg.Pow2Coeff})
      EXPECT_NEAR(at(curve, 70, cold), 1, 1e-6);
    for (const double water : {cold, 25.0, 90.0}) {
      EXPECT_NEAR(at(htg.Cap2Coeff, 60, water), fit(heating_capacity, 60, water) / fit(heating_capacity, 70, cold),
                  1e-6);
      EXPECT_NEAR(at(htg.Pow1Coeff, 75, water), fit(heating_power, 75, water) / fit(heating_power, 70, cold), 1e-6);
      EXPECT_GT(at(htg.Cap1Coeff, 70, water), 0.4);
    }
    for (const auto& flow :
         {of_stage<2>(clg.CapCFM1Coeff, 1), of_stage<2>(clg.PowCFM1Coeff, 8), htg.CapCFM1Coeff, htg.PowCFM2Coeff})
      EXPECT_NEAR(flow(1) + flow(2), 1, 1e-6);
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
