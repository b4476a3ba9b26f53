// What a modeller wants to know of a year of hourly weather: its statistics by month, and which hours are implausible.
#pragma once

#include <string>
#include <vector>

#include "tarn/hourly_file.h"
#include "tarn/weather.h"

namespace tarn {

/// Dry-bulbs by the hours. Solar by the total of each day on the horizontal, from direct, diffuse and the sun's
/// altitude; days with missing readings are left out, and a month without others has 0.
void fill_statistics(WTH_Stats& statistics, const HourlyWeather& year);

struct Finding {
  std::string what;       // "the dry-bulb jumps by more than 27 F"
  int count = 0;          // of hours
  int day = 0, hour = 0;  // the first
  std::string value;      // of the first, with its unit
};

/// Missing hours and readings, jumps, values outside physical limits, solar while the sun is down.
std::vector<Finding> findings_of(const HourlyWeather& year);

}  // namespace tarn
