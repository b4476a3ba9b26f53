// Performance curves of direct-expansion equipment as the defaults give them to an air system. Capacity and power are 1
// at the rating point; docs/dx-curves.md has the sources and the ranges.
//
//   bi-quadratic   c1 + c2 x + c3 x^2 + c4 y + c5 y^2 + c6 x y, x: air entering the coil, y: outdoor air dry bulb or
//   entering
//                  water, F
//   flow           c1 + c2 (airflow / rated airflow)
//   part load      c1 + c2 r + c3 r^2 + c4 r^3, the efficiency at part load r over that at full load
#pragma once

#include <optional>

#include "tarn/base/wire.h"

namespace tarn {

inline constexpr int kDxStages = 8;
using DxPartLoad = Array<R8, 4>;
using DxTemperatures = Array<R8, 6>;
using DxFlow = Array<R8, 2>;

/// The entering water at which a water-source heat pump is rated, F.
struct WaterRating {
  double cooling, heating;
};
/// That of a system type with water-source heat pumps: 14 on a water loop, 18 on ground water, 19 on a ground loop (ISO
/// 13256-1); empty for other types.
std::optional<WaterRating> water_rating(int16_t system_type);

/// Cooling, x the wet bulb. Rated at 67 F entering and 95 F outdoor; good for x 57 to 77 and y 55 to 115.
struct ACDX_Coeff_Holder_Clg {
  ACDX_Coeff_Holder_Clg();
  /// Of a water-source unit rated at this entering water: y is the water's temperature. Good for y 45 to 110.
  explicit ACDX_Coeff_Holder_Clg(WaterRating rating);

  DxPartLoad PLR1Coeff;
  Array<R8, 6, kDxStages> Cap1Coeff, Pow1Coeff;
  Array<R8, 2, kDxStages> CapCFM1Coeff, PowCFM1Coeff;
  /// Under low-temperature control, times what the curves give at the upper cut-off.
  Array<R8, kDxStages> LowTempCapMult, LowTempPowMult;
};

/// Heating, x the dry bulb. Rated at 70 F entering and 47 F outdoor; the second set is for y below 17, down to -10.
struct ACDX_Coeff_Holder_Htg {
  ACDX_Coeff_Holder_Htg();
  /// Of a water-source unit: y is the temperature of the entering water, 25 to 90 F, and both sets are the same.
  explicit ACDX_Coeff_Holder_Htg(WaterRating rating);

  DxPartLoad PLR1Coeff;
  DxTemperatures Cap1Coeff, Pow1Coeff, Cap2Coeff, Pow2Coeff;
  DxFlow CapCFM1Coeff, PowCFM1Coeff, CapCFM2Coeff, PowCFM2Coeff;
};

}  // namespace tarn
