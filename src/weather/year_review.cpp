#include "weather/year_review.h"

#include <algorithm>
#include <cmath>
#include <memory>

#include "base/decimals.h"
#include "platform/file_store.h"
#include "weather/calendar.h"
#include "weather/psychrometrics.h"
#include "weather/sun.h"

namespace tarn {
namespace {

SunSite site_of(const HourlyWeather& year) { return {year.Latitude, year.Longitude, year.TZMeridian}; }

// ---- statistics

/// Of a day's hours, each with its hour.
struct DryBulbs {
  double most = -1e9, least = 1e9, sum = 0;
  int most_hour = 0, least_hour = 0;

  explicit DryBulbs(const HourlyDay& day) {
    for (int hour = 1; hour <= kHours; ++hour) {
      const double value = day.DB(hour);
      if (value > most) {
        most = value;
        most_hour = hour;
      }
      if (value < least) {
        least = value;
        least_hour = hour;
      }
      sum += value;
    }
  }
};

/// Totals of a day on the horizontal, Btu/ft2; negative where a reading is missing.
struct DaySolar {
  double total = 0, outside = 0;

  DaySolar(const HourlyWeather& year, int day) {
    const SunSite site = site_of(year);
    const double normal = solar_outside_air(day);
    for (int hour = 1; hour <= kHours; ++hour) {
      const double sine = mean_sine(site, day, hour), direct = year.Day(day).IDN(hour),
                   diffuse = year.Day(day).IDIFF(hour);
      outside += normal * sine;
      total += direct * sine + diffuse;
      if (direct == kMissingSolar || diffuse == kMissingSolar) {
        total = -1;
        return;
      }
    }
  }
  bool is_known() const { return total >= 0; }
};

void fill_dry_bulbs(WTH_Stats& out, const HourlyWeather& year, int month) {
  double most = -1e9, least = 1e9, sum = 0, sum_most = 0, sum_least = 0;
  for (int day = 1; day <= days_in(month); ++day) {
    const DryBulbs of(year.Day(day_of_year(month, day)));
    if (of.most > most) {
      most = of.most;
      out.MaxDBDay(month) = static_cast<int16_t>(day);
      out.MaxDBHour(month) = static_cast<int16_t>(of.most_hour);
    }
    if (of.least < least) {
      least = of.least;
      out.MinDBDay(month) = static_cast<int16_t>(day);
      out.MinDBHour(month) = static_cast<int16_t>(of.least_hour);
    }
    sum += of.sum;
    sum_most += of.most;
    sum_least += of.least;
  }
  const double days = days_in(month);
  out.MaxDB(month) = static_cast<float>(most);
  out.MinDB(month) = static_cast<float>(least);
  out.AvgDB(month) = static_cast<float>(sum / days / kHours);
  out.AvgMaxDB(month) = static_cast<float>(sum_most / days);
  out.AvgMinDB(month) = static_cast<float>(sum_least / days);
}

void fill_solar(WTH_Stats& out, const HourlyWeather& year, int month) {
  constexpr double kDarkness = 10;  // Btu/ft2 outside the air, below which a day has no clearness
  double most = -1, least = 1e9, sum = 0, most_kt = 0, least_kt = 1e9, sum_kt = 0;
  int days = 0, bright = 0;
  for (int day = 1; day <= days_in(month); ++day) {
    const DaySolar of(year, day_of_year(month, day));
    if (!of.is_known()) continue;
    ++days;
    sum += of.total;
    if (of.total > most) {
      most = of.total;
      out.MaxItotDay(month) = static_cast<int16_t>(day);
    }
    if (of.total < least) {
      least = of.total;
      out.MinItotDay(month) = static_cast<int16_t>(day);
    }
    if (of.outside < kDarkness) continue;
    ++bright;
    const double kt = of.total / of.outside;
    sum_kt += kt;
    most_kt = std::max(most_kt, kt);
    least_kt = std::min(least_kt, kt);
  }
  if (days > 0) {
    out.MaxItot(month) = static_cast<float>(most);
    out.AvgItot(month) = static_cast<float>(sum / days);
    out.MinItot(month) = static_cast<float>(least);
  }
  if (bright > 0) {
    out.MaxKt(month) = static_cast<float>(most_kt);
    out.AvgKt(month) = static_cast<float>(sum_kt / bright);
    out.MinKt(month) = static_cast<float>(least_kt);
  }
}

// ---- findings

constexpr double kColdest = -90, kHottest = 135;         // F, about the records at the earth's surface
constexpr double kMostHumid = 0.04;                      // lb/lb, a dew point of 99 F at sea level
constexpr double kJump = 27;                             // F in an hour
constexpr double kHumidityJump = 0.008;                  // lb/lb in an hour
constexpr double kMostDirect = 450, kMostDiffuse = 270;  // Btu/(hr.ft2); the first is the sun's outside the air
constexpr double kSunDown = -0.02;                       // sine of the altitude, 1.1 degrees below the horizon
constexpr double kDarkSolar = 2;                         // Btu/(hr.ft2), possible in twilight
constexpr int kStandstill = 24;                          // hours

/// One hour with its neighbour before.
struct Hour {
  const HourlyWeather& year;
  int day, hour;
  double db, sh, idn, idiff, db_before, sh_before;
};

std::string degrees(double value) { return decimal_text(value, 1) + " F"; }
std::string humidity(double value) { return decimal_text(value, 5) + " lb/lb"; }
std::string solar(double value) { return decimal_text(value, 1) + " Btu/(hr.ft2)"; }

double saturated(const Hour& h) {
  constexpr double kTolerance = 1.05, kSteps = 0.00005;
  const double pressure = standard_pressure(h.year.Elevation / kFeetPerMetre);
  return specific_humidity(saturation_pressure(celsius(h.db)), pressure) * kTolerance + kSteps;
}

bool is_solar(double value) { return value != kMissingSolar; }
bool is_dark(const Hour& h) { return greatest_sine(site_of(h.year), h.day, h.hour) < kSunDown; }

struct Test {
  const char* what;
  bool (*fails)(const Hour&);
  std::string (*value)(const Hour&);
};

constexpr Test kTests[]{
    {"hours are missing: dry-bulb and humidity are 0", [](const Hour& h) { return h.db == 0 && h.sh == 0; }, nullptr},
    {"direct normal solar is marked as missing", [](const Hour& h) { return !is_solar(h.idn); }, nullptr},
    {"diffuse solar is marked as missing", [](const Hour& h) { return !is_solar(h.idiff); }, nullptr},
    {"the dry-bulb is outside -90 to 135 F", [](const Hour& h) { return h.db < kColdest || h.db > kHottest; },
     [](const Hour& h) { return degrees(h.db); }},
    {"the humidity is outside 0 to 0.04 lb/lb",
     [](const Hour& h) { return h.sh < 0 || h.sh > kMostHumid || (h.sh == 0 && h.db > 0); },
     [](const Hour& h) { return humidity(h.sh); }},
    {"the air is more than saturated", [](const Hour& h) { return h.db < kHottest && h.sh > saturated(h); },
     [](const Hour& h) { return humidity(h.sh) + " at " + degrees(h.db); }},
    {"direct normal solar is outside 0 to 450 Btu/(hr.ft2)",
     [](const Hour& h) { return h.idn < 0 || (h.idn > kMostDirect && is_solar(h.idn)); },
     [](const Hour& h) { return solar(h.idn); }},
    {"diffuse solar is outside 0 to 270 Btu/(hr.ft2)",
     [](const Hour& h) { return h.idiff < 0 || (h.idiff > kMostDiffuse && is_solar(h.idiff)); },
     [](const Hour& h) { return solar(h.idiff); }},
    {"the dry-bulb jumps by more than 27 F in an hour",
     [](const Hour& h) { return std::abs(h.db - h.db_before) > kJump; },
     [](const Hour& h) { return degrees(h.db_before) + " to " + degrees(h.db); }},
    {"the humidity jumps by more than 0.008 lb/lb in an hour",
     [](const Hour& h) { return std::abs(h.sh - h.sh_before) > kHumidityJump; },
     [](const Hour& h) { return humidity(h.sh_before) + " to " + humidity(h.sh); }},
    {"the sun shines at night",
     [](const Hour& h) {
       const bool direct = h.idn > 0 && is_solar(h.idn), diffuse = h.idiff > kDarkSolar && is_solar(h.idiff);
       return (direct || diffuse) && is_dark(h);
     },
     [](const Hour& h) { return "direct " + solar(h.idn) + ", diffuse " + solar(h.idiff); }},
};

void add(Finding& finding, const Test& test, const Hour& hour) {
  if (finding.count++ > 0) return;
  finding.what = test.what;
  finding.day = hour.day;
  finding.hour = hour.hour;
  if (test.value) finding.value = test.value(hour);
}

/// Runs of hours in which neither dry-bulb nor humidity moves: what a broken sensor or a filled gap looks like.
Finding standstill(const HourlyWeather& year) {
  Finding finding;
  const auto at = [&year](int i) -> std::pair<int16_t, int16_t> {
    const HourlyDay& day = year.Day.items[static_cast<size_t>(i / kHours)];
    const auto hour = static_cast<size_t>(i % kHours);
    return {day.DB.items[hour].steps.value, day.SH.items[hour].steps.value};
  };
  for (int first = 0; first < kDays * kHours;) {
    int end = first + 1;
    while (end < kDays * kHours && at(end) == at(first)) ++end;
    if (end - first >= kStandstill && at(first) != std::pair<int16_t, int16_t>()) {
      if (finding.count == 0) {
        finding = {"dry-bulb and humidity stand still for a day and more", 0, first / kHours + 1, first % kHours + 1,
                   degrees(at(first).first / 10.0)};
      }
      finding.count += end - first;
    }
    first = end;
  }
  return finding;
}

}  // namespace

void fill_statistics(WTH_Stats& statistics, const HourlyWeather& year) {
  using S = WTH_Stats;
  for (const auto field : {&S::MaxItot, &S::AvgItot, &S::MinItot, &S::MaxKt, &S::AvgKt, &S::MinKt})
    (statistics.*field).items.fill({});
  for (const auto field : {&S::MaxItotDay, &S::MinItotDay}) (statistics.*field).items.fill({});
  for (int month = 1; month <= 12; ++month) {
    fill_dry_bulbs(statistics, year, month);
    fill_solar(statistics, year, month);
  }
}

std::vector<Finding> findings_of(const HourlyWeather& year) {
  std::vector<Finding> findings(std::size(kTests));
  double db_before = year.Day(1).DB(1), sh_before = year.Day(1).SH(1);
  for (int day = 1; day <= kDays; ++day) {
    const HourlyDay& hours = year.Day(day);
    for (int hour = 1; hour <= kHours; ++hour) {
      const Hour at{year,      day,      hour, hours.DB(hour), hours.SH(hour), hours.IDN(hour), hours.IDIFF(hour),
                    db_before, sh_before};
      for (size_t i = 0; i < findings.size(); ++i) {
        if (kTests[i].fails(at)) add(findings[i], kTests[i], at);
      }
      db_before = at.db;
      sh_before = at.sh;
    }
  }
  findings.push_back(standstill(year));
  std::erase_if(findings, [](const Finding& finding) { return finding.count == 0; });
  return findings;
}

// ---- the project's other weather files

namespace {

/// A weather file: a header, then blocks of reals, of which each begins with 24 dry-bulbs.
struct Blocks {
  const std::string& path;
  size_t header, block, whole;
  std::string (*block_name)(int number);
  const char* remedy;
};

bool can_be(float value, bool dry_bulb) {
  constexpr float kBeyondAll = 1e6F;  // in any unit
  return dry_bulb ? value >= kColdest && value <= kHottest : std::abs(value) < kBeyondAll;
}

void add_faults(std::vector<std::string>& faults, const Blocks& file) {
  const uint64_t size = files().exists(file.path) ? files().size(file.path) : 0;
  if (size == 0) return;
  if (size < file.whole) {
    faults.push_back(file.path + " is cut short: " + std::to_string(size) + " of " + std::to_string(file.whole) +
                     " bytes; the rest reads as zeros. " + file.remedy);
  }
  std::vector<float> reals((file.whole - file.header) / sizeof(float));
  files().read(file.path, file.header, std::as_writable_bytes(std::span(reals)));
  const size_t reals_of_block = file.block / sizeof(float);
  int count = 0, first = 0;
  for (size_t i = 0; i < reals.size(); ++i) {
    if (can_be(reals[i], i % reals_of_block < kHours)) continue;
    if (count++ == 0) first = static_cast<int>(i / reals_of_block) + 1;
  }
  if (count > 0) {
    faults.push_back(file.path + ": " + std::to_string(count) + (count == 1 ? " value" : " values") +
                     " that cannot be, the first in " + file.block_name(first) + ". " + file.remedy);
  }
}

void add_differences(std::vector<std::string>& faults, const SimulationWeather& weather, const HourlyWeather& year,
                     const std::string& path) {
  constexpr double kDryBulbStep = 0.1, kHumidityStep = 1e-5;  // of the hourly file
  int count = 0, first = 0;
  for (int i = 0; i < kDays * kHours; ++i) {
    const auto day = static_cast<size_t>(i / kHours), hour = static_cast<size_t>(i % kHours);
    const WeatherDay& here = weather.SimDay.items[day];
    const HourlyDay& there = year.Day.items[day];
    const bool same = std::abs(here.DB.items[hour] - static_cast<double>(there.DB.items[hour])) < kDryBulbStep &&
                      std::abs(here.SH.items[hour] - static_cast<double>(there.SH.items[hour])) < kHumidityStep;
    if (!same && count++ == 0) first = static_cast<int>(day) + 1;
  }
  if (count > 0) {
    faults.push_back(path + ": dry-bulb or humidity of " + std::to_string(count) + (count == 1 ? " hour" : " hours") +
                     " differs from the project's hourly file, first on " + date_text(first) + ". " +
                     "To take the hourly file's values again, import the year: tarn weather import FILE.");
  }
}

}  // namespace

std::vector<std::string> faults_of(const WTH_Weather& weather, const HourlyWeather* year) {
  std::vector<std::string> faults;
  add_faults(faults,
             {weather.DesFileName, sizeof(DesignWeather) - sizeof(DesignWeather::DesDay), sizeof(DesignDay),
              sizeof(DesignWeather), [](int month) { return std::string(kMonthNames[static_cast<size_t>(month) - 1]); },
              "Set the design weather again and save it."});
  add_faults(faults,
             {weather.SimFileName, sizeof(SimulationWeather) - sizeof(SimulationWeather::SimDay), sizeof(WeatherDay),
              sizeof(SimulationWeather), date_text, "Import the year again: tarn weather import FILE."});
  if (!year || !faults.empty() || !files().exists(weather.SimFileName)) return faults;
  const auto stored = std::make_unique<SimulationWeather>();
  const size_t got = files().read(weather.SimFileName, 0, record_bytes(*stored));
  const bool same_place = stored->SimCityName.bytes() == year->CityName.bytes() &&
                          stored->SimStateName.bytes() == year->LocationName.bytes();
  if (got > 0 && same_place) add_differences(faults, *stored, *year, weather.SimFileName);
  return faults;
}

}  // namespace tarn
