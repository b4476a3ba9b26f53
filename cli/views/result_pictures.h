// Design results as a person reads them: a report for a terminal, a picture of two charts for a page.
#pragma once

#include <optional>
#include <string>

#include "tarn/air_system_design.h"

namespace tarn::cli {

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

/// Sizes of coils, fans and ventilation; the zones; the loads by component; the states of the air at the cooling peak.
void show_system(ADL_AirSystemDesign& design);
/// Sizes and loads of a zone, from 1, and of its spaces.
void show_zone(const ADL_AirSystemDesign& design, int zone);

/// The left and right edges of the charts on the page, and where their keys begin.
inline constexpr double kChartLeft = 118, kChartRight = kChartLeft + 660, kChartWide = kChartRight - kChartLeft;
inline constexpr double kKeyLeft = kChartRight + 128;

/// A self-contained picture (SVG): loads and airflow of the peak month's day, the states of the air on a psychrometric
/// chart.
std::string result_picture(const ADL_AirSystemDesign& design, const std::string& name);
/// The psychrometric chart alone, with its upper edge at `top`; at heating design where there is no cooling peak.
std::string process_chart(const ADL_AirSystemDesign& design, double top);
inline constexpr double kProcessChartHeight = 560;

}  // namespace tarn::cli
