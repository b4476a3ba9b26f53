// Design results as a picture: the loads of the peak month's day, above the states of the air on a psychrometric chart.
#include <algorithm>
#include <array>
#include <cmath>

#include "pictures/design_states.h"
#include "pictures/process_chart.h"
#include "pictures/svg.h"
#include "tarn/pictures.h"
#include "tarn/staleness.h"
#include "weather/calendar.h"

namespace tarn {
namespace {

using svg::label;
using svg::number;
using svg::path;
using svg::Scale;

constexpr double kTop = 112, kHigh = 270, kBottom = kTop + kHigh;
constexpr double kProcessTop = kBottom + 74, kResultWidth = 1190;
constexpr double kBtuPerMBH = 1000;

const svg::Unit kLoad{"MBH", "kW", 0.29307107, 1, 1}, kFlow{"CFM", "L/s", 0.47194745, 0, 0};

struct Series {
  const char* name;
  const R4 HourlyAirRecord::*field;
  const svg::Unit& unit;
  double divisor;
  const char *color, *dash;
};
const std::array kSeries{
    Series{"Cooling, total", &HourlyAirRecord::CentCoolTot, kLoad, kBtuPerMBH, "#1f6fb2", ""},
    Series{"Cooling, sensible", &HourlyAirRecord::CentCoolSens, kLoad, kBtuPerMBH, "#5ab4e5", ""},
    Series{"Central heating", &HourlyAirRecord::CentHeat, kLoad, kBtuPerMBH, "#d1493b", ""},
    Series{"Airflow, right axis", &HourlyAirRecord::AirFlow, kFlow, 1, "#5a7d3a", "stroke-dasharray=\"6 4\""}};

using Day = std::array<double, 24>;

/// A day's values; infinite and implausibly large ones count as 0.
Day day_of(const ADL_AirSystemDesign& design, Months month, const Series& series) {
  Day day{};
  for (int hour = 0; hour < 24; ++hour) {
    const double value = design.HLAir.at(month, hour).*series.field / series.divisor;
    day[static_cast<size_t>(hour)] = std::abs(value) < 1e9 ? value : 0;
  }
  return day;
}

/// The month of the cooling peak, or without one the month with the most heating.
Months profile_month(const ADL_AirSystemDesign& design) {
  if (const auto peak = cooling_peak(design)) return peak->month;
  Months most = Months::January;
  double highest = 0;
  for (int month = 1; month <= 12; ++month) {
    for (const double load : day_of(design, Months{static_cast<int16_t>(month)}, kSeries[2])) {
      if (load <= highest) continue;
      highest = load;
      most = Months{static_cast<int16_t>(month)};
    }
  }
  return most;
}

std::string curve(const Day& day, const Scale& hours, const Scale& values) {
  std::string way;
  for (size_t hour = 0; hour < day.size(); ++hour) {
    way += (hour == 0 ? "M" : "L") + number(hours.at(static_cast<double>(hour))) + " " + number(values.at(day[hour]));
  }
  return way;
}

std::string key(const Series& series, const Day& day, double y) {
  const auto most = std::ranges::max_element(day);
  const svg::Unit& unit = series.unit;
  return path("M" + number(kKeyLeft) + " " + number(y - 4) + "h26",
              std::string("stroke-width=\"2.5\" stroke=\"") + series.color + "\" " + series.dash) +
         label(kKeyLeft + 34, y, series.name) +
         label(kKeyLeft + 34, y + 16,
               *most <= 0 ? std::string("none")
                          : "most " + number(*most, unit.decimals) + " " + unit.name + " (" +
                                number(*most * unit.factor, unit.si_decimals) + " " + unit.si_name + ") at hour " +
                                std::to_string(most - day.begin()),
               "fill=\"#666\"");
}

std::string grid(const Scale& hours, const Scale& loads) {
  std::string out;
  loads.each_mark([&](double load) {
    out +=
        path("M" + number(kChartLeft) + " " + number(loads.at(load)) + "h" + number(kChartWide), "stroke=\"#e4e4e4\"");
  });
  for (int hour = 0; hour < 24; hour += 3) {
    const double x = hours.at(hour);
    out += path("M" + number(x) + " " + number(kTop) + "v" + number(kHigh), "stroke=\"#e4e4e4\"") +
           label(x, kBottom + 17, std::to_string(hour), "text-anchor=\"middle\"");
  }
  return out +
         label(kChartLeft + kChartWide / 2, kBottom + 36, "hour of the day", "text-anchor=\"middle\" fill=\"#666\"");
}

std::string load_profile(const ADL_AirSystemDesign& design) {
  const Months month = profile_month(design);
  std::array<Day, kSeries.size()> days;
  double load = 1, flow = 10, least = 0;
  for (size_t i = 0; i < days.size(); ++i) {
    days[i] = day_of(design, month, kSeries[i]);
    double& most = &kSeries[i].unit == &kFlow ? flow : load;
    most = std::max(most, std::ranges::max(days[i]));
    if (&most == &load) least = std::min(least, std::ranges::min(days[i]));
  }
  const Scale hours{0, 23, 1, kChartLeft, kChartRight};
  const Scale loads = svg::scale_around(least, load * 1.04, 6, kBottom, kTop);
  const Scale flows = svg::scale_around(0, flow * 1.04, 6, loads.at(0), kTop);
  std::string out = label(
      kChartLeft, kTop - 30,
      "Design day of " + std::string(kMonthNames[static_cast<size_t>(month) - 1]) + ": loads of the central coils",
      "font-weight=\"bold\" font-size=\"14\"");
  out += grid(hours, loads);
  out += path(curve(days[0], hours, loads) + "V" + number(loads.at(0)) + "H" + number(kChartLeft) + "Z",
              "fill=\"#1f6fb2\" fill-opacity=\".08\"");
  if (const auto peak = cooling_peak(design)) {
    const double x = hours.at(peak->hour);
    out +=
        path("M" + number(x) + " " + number(kTop) + "V" + number(kBottom), "stroke=\"#888\" stroke-dasharray=\"2 3\"") +
        label(x, kTop - 6, "peak of the coil", "text-anchor=\"middle\" fill=\"#666\"");
  }
  for (size_t i = 0; i < days.size(); ++i) {
    const Scale& scale = &kSeries[i].unit == &kFlow ? flows : loads;
    if (std::ranges::any_of(days[i], [](double value) { return value > 0; }))
      out += path(curve(days[i], hours, scale),
                  std::string("fill=\"none\" stroke-width=\"2.5\" stroke-linejoin=\"round\" stroke=\"") +
                      kSeries[i].color + "\" " + kSeries[i].dash) +
             key(kSeries[i], days[i], kTop + 24 + 48 * static_cast<double>(i));
  }
  out += path("M" + number(kChartLeft) + " " + number(kTop) + "V" + number(kBottom) + "H" + number(kChartRight) + "V" +
                  number(kTop),
              "fill=\"none\" stroke=\"#333\"");
  return out + svg::upright_axis(loads, kChartLeft, -1, kLoad) + svg::upright_axis(flows, kChartRight, 1, kFlow);
}

}  // namespace

namespace {

/// Why the design results of the system are stale, as the index has it now; empty where they are not.
std::string why_stale(const ADL_AirSystemDesign& design) {
  const auto marks = design.AirSystem() ? stale_marks(*design.AirSystem()) : std::vector<StaleResult>();
  const auto mark = std::ranges::find(marks, "design", &StaleResult::results);
  if (mark == marks.end()) return {};
  return (mark->edited ? mark->edited->text() + " changed at " + mark->since + " UTC, after the design calculation"
                       : std::string("the system, or what it uses, has changed since the design calculation")) +
         "; run it again";
}

}  // namespace

std::string result_picture(const ADL_AirSystemDesign& design, const std::string& name) {
  const double altitude = design.Weather.Altitude;
  return svg::page(kResultWidth, kProcessTop + kProcessChartHeight, kChartLeft, name + ": design results", name,
                   "design results; cooling peak: " + hour_text(cooling_peak(design)) + "; altitude " +
                       number(altitude, 0) + " ft (" + number(altitude * 0.3048, 0) + " m)",
                   load_profile(design) + process_chart(design, kProcessTop), why_stale(design));
}

}  // namespace tarn
