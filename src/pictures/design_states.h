// What design results tell of the air: when a system peaks, and the states it passes then.
#pragma once

#include <optional>
#include <string>

#include "tarn/air_system_design.h"

namespace tarn {

struct PeakHour {
  Months month;
  int hour;
};
/// None where the file's month or hour is not one, as for a system that does not cool.
std::optional<PeakHour> peak_hour(Months month, int hour);
/// "July hour 15"; "none" without one.
std::string hour_text(const std::optional<PeakHour>& peak);
std::optional<PeakHour> cooling_peak(const ADL_AirSystemDesign& design);

/// Pressure of the standard atmosphere at the altitude of the weather, Pa; that at sea level for an implausible
/// altitude.
double pressure_of(const ADL_AirSystemDesign& design);
/// Whether air flows through a point at that hour.
bool is_passed(const PsychroRecord& air, int point);

}  // namespace tarn
