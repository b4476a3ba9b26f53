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

/// What is wrong with the project's other weather files, a sentence each: a file that is cut, values that cannot be,
/// and hours that are not those of the project's hourly file (null where there is none). A file that is empty or not
/// there has no faults.
std::vector<std::string> faults_of(const WTH_Weather& weather, const HourlyWeather* year);

}  // namespace tarn
