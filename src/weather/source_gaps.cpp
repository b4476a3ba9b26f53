// Readings that are missing or implausible: short gaps are filled, long ones refused, and every change is noted.
#include <algorithm>
#include <cmath>

#include "weather/calendar.h"
#include "weather/psychrometrics.h"
#include "weather/source_text.h"
#include "weather/source_year.h"

namespace tarn {
namespace {

constexpr size_t kLongestGap = 6;  // hours that are filled

using Reading = double SourceRow::*;
constexpr double kSolarConstant = 1415;  // W/m2, at the beginning of January

struct Limits {
  Reading reading;
  const char* what;
  const char* unit;
  double least, most;
};

/// Beyond the records of the earth's surface.
constexpr Limits kLimits[]{{&SourceRow::dry_bulb, "dry-bulb", "C", -90, 65},
                           {&SourceRow::dew_point, "dew point", "C", -99, 45},
                           {&SourceRow::relative_humidity, "relative humidity", "%", 0, 998},
                           {&SourceRow::pressure, "pressure", "Pa", 31000, 120000},
                           {&SourceRow::direct, "direct normal solar", "W/m2", -50, 2000},
                           {&SourceRow::diffuse, "diffuse solar", "W/m2", -50, 2000}};

void check_limits(const std::vector<SourceRow>& hours) {
  for (const SourceRow& row : hours) {
    for (const Limits& limits : kLimits) {
      const double value = row.*limits.reading;
      if (std::isnan(value) || (value >= limits.least && value <= limits.most)) continue;
      char text[160];
      std::snprintf(text, sizeof text,
                    "a %s of %g %s is implausible; allowed are %g to %g, or the code of a missing reading", limits.what,
                    value, limits.unit, limits.least, limits.most);
      refuse_line(row.line, text);
    }
  }
}

std::string hours_text(size_t count) { return std::to_string(count) + (count == 1 ? " hour" : " hours"); }

/// Fills each gap by a straight line, at the ends of the year by the nearest reading. Longer gaps are refused, with
/// `what` as the name of the reading.
void bridge(std::vector<SourceRow>& hours, Reading reading, const std::string& what, std::vector<std::string>& notes) {
  size_t bridged = 0;
  int line = 0;
  for (size_t first = 0; first < hours.size(); ++first) {
    if (!std::isnan(hours[first].*reading)) continue;
    size_t end = first;
    while (end < hours.size() && std::isnan(hours[end].*reading)) ++end;
    if (end - first > kLongestGap) {
      refuse_line(hours[first].line, "the " + what + " is missing from here for " + hours_text(end - first) +
                                         "; only gaps of up to " + std::to_string(kLongestGap) + " hours are filled");
    }
    const double before = first > 0 ? hours[first - 1].*reading : hours[end].*reading;
    const double after = end < hours.size() ? hours[end].*reading : before;
    const auto steps = static_cast<double>(end - first + 1);
    for (size_t i = first; i < end; ++i)
      hours[i].*reading = before + (after - before) * static_cast<double>(i - first + 1) / steps;
    if (bridged == 0) line = hours[first].line;
    bridged += end - first;
    first = end;
  }
  if (bridged > 0)
    notes.push_back("the " + what + " is missing in " + hours_text(bridged) + ", first in line " +
                    std::to_string(line) + "; the gaps are filled by a straight line");
}

/// "in 3 hours, first in line 20"; empty where no hour fits.
template <typename Test>
std::string where(const std::vector<SourceRow>& hours, Test test) {
  const auto count = static_cast<size_t>(std::count_if(hours.begin(), hours.end(), test));
  if (count == 0) return {};
  const auto first = std::find_if(hours.begin(), hours.end(), test);
  return "in " + hours_text(count) + ", first in line " + std::to_string(first->line);
}

template <typename Test>
void note_hours(const std::vector<SourceRow>& hours, Test test, const std::string& what, SourceYear& year) {
  if (const std::string place = where(hours, test); !place.empty()) year.notes.push_back(what + " " + place);
}

void complete_pressure(std::vector<SourceRow>& hours, SourceYear& year) {
  const std::string missing = where(hours, [](const SourceRow& row) { return std::isnan(row.pressure); });
  const double standard = standard_pressure(year.elevation);
  for (SourceRow& row : hours) {
    if (std::isnan(row.pressure)) row.pressure = standard;
  }
  if (!missing.empty())
    year.notes.push_back("the pressure is missing " + missing +
                         "; the pressure of the standard atmosphere at the elevation is used");
  constexpr double kFar = 0.08;  // weather changes it by about 5 per cent
  note_hours(
      hours, [=](const SourceRow& row) { return std::abs(row.pressure / standard - 1) > kFar; },
      "the pressure is more than 8 % off the standard at the elevation, and kept (is it reduced to sea level?)", year);
}

/// The dew point of a vapour pressure, C, to 0.001 K.
double dew_point_of(double vapour_pressure) {
  double low = -99, high = 70;
  while (high - low > 0.001) {
    const double middle = (low + high) / 2;
    (saturation_pressure(middle) < vapour_pressure ? low : high) = middle;
  }
  return (low + high) / 2;
}

void complete_dew_point(std::vector<SourceRow>& hours, SourceYear& year) {
  const auto follows = [](const SourceRow& row) { return std::isnan(row.dew_point) && row.relative_humidity > 0; };
  if (const std::string places = where(hours, follows); !places.empty())
    year.notes.push_back("the dew point is missing " + places +
                         "; it is computed from the relative humidity there, taken as 100 % at most");
  for (SourceRow& row : hours) {
    if (!follows(row)) continue;
    const double share = std::min(row.relative_humidity, 100.0) / 100;
    row.dew_point = dew_point_of(share * saturation_pressure(row.dry_bulb));
  }
  bridge(hours, &SourceRow::dew_point, "dew point", year.notes);
}

void complete_solar(std::vector<SourceRow>& hours, SourceYear& year) {
  for (const auto& [reading, what] :
       {std::pair{&SourceRow::direct, "direct normal solar"}, std::pair{&SourceRow::diffuse, "diffuse solar"}}) {
    const auto is_negative = [reading = reading](const SourceRow& row) { return row.*reading < 0; };
    const auto is_missing = [reading = reading](const SourceRow& row) { return std::isnan(row.*reading); };
    const auto is_beyond = [reading = reading](const SourceRow& row) { return row.*reading > kSolarConstant; };
    const std::string named = "the " + std::string(what);
    note_hours(hours, is_negative, named + " is below 0, and taken as 0,", year);
    note_hours(hours, is_missing, named + " is missing, and marked with 999,", year);
    note_hours(hours, is_beyond, named + " is above the radiation outside the atmosphere, and kept,", year);
    for (SourceRow& row : hours) {
      if (is_negative(row)) row.*reading = 0;
    }
  }
}

}  // namespace

void complete_rows(std::vector<SourceRow>& hours, SourceYear& year) {
  constexpr double kRounding = 0.1;  // K, of the values in a file
  check_limits(hours);
  note_hours(
      hours, [](const SourceRow& row) { return row.relative_humidity > 100; },
      "the relative humidity is above 100 % (humidity is computed from the dew point)", year);
  bridge(hours, &SourceRow::dry_bulb, "dry-bulb", year.notes);
  complete_dew_point(hours, year);
  complete_pressure(hours, year);
  complete_solar(hours, year);
  note_hours(
      hours, [](const SourceRow& row) { return row.dew_point > row.dry_bulb + kRounding; },
      "the dew point is above the dry-bulb, and kept", year);
}

}  // namespace tarn
