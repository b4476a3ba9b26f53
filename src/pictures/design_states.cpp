#include "pictures/design_states.h"

#include "weather/calendar.h"
#include "weather/psychrometrics.h"

namespace tarn {

std::optional<PeakHour> peak_hour(Months month, int hour) {
  if (month < Months::January || month > Months::December || hour < 0 || hour > 23) return std::nullopt;
  return PeakHour{month, hour};
}

std::string hour_text(const std::optional<PeakHour>& peak) {
  if (!peak) return "none";
  return std::string(kMonthNames[static_cast<size_t>(peak->month) - 1]) + " hour " + std::to_string(peak->hour);
}

std::optional<PeakHour> cooling_peak(const ADL_AirSystemDesign& design) {
  return peak_hour(design.SSAir.ClgPeakMonth, design.SSAir.ClgPeakHour);
}

double pressure_of(const ADL_AirSystemDesign& design) {
  constexpr double kMetresPerFoot = 0.3048;
  const double altitude = design.Weather.Altitude * kMetresPerFoot;
  return standard_pressure(altitude > -1000 && altitude < 10000 ? altitude : 0);
}

bool is_passed(const PsychroRecord& air, int point) {
  return air.DryBulb(point) != 0.0F || air.HumidityRatio(point) != 0.0F || air.Airflow(point) != 0.0F;
}

}  // namespace tarn
