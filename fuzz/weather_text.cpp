// Years of weather of other programs - EPW, TMY3, TMY2 - are read or refused with a reason; a refusal leaves the year
// as it was, and what was read can be reviewed. An input that begins with "epw", "tmy3" or "tmy2" and a line's end is a
// year in short: lines up to an empty one replace those of the header, and each "hour text" after it the row of an hour
// of the year (1 to 8760), "hour-" removes it, "hour+text" adds one after it. Other inputs are read as they are.
#include <charconv>
#include <cmath>
#include <cstdio>
#include <vector>

#include "finding.h"
#include "input.h"
#include "mutate.h"
#include "tarn/weather_import.h"
#include "weather/calendar.h"
#include "weather/year_review.h"

namespace tarn::fuzz {
namespace {

struct SourceForm {
  std::string_view name;
  std::vector<std::string> header;
  void (*row)(char* line, size_t size, int month, int day, int hour, double dry_bulb, int sun);
};

const SourceForm kForms[]{
    {"epw",
     {"LOCATION,Sample,CO,USA,TMY3,724666,39.74,-105.18,-7.0,280.0",
      "DESIGN CONDITIONS,1,2009,,Heating,12,-18.8,-15.5,-21.6,Cooling,7,15.2,33,15.7,32,15.5,Extremes,11.1",
      "HOLIDAYS/DAYLIGHT SAVINGS,No,0,0,0", "DATA PERIODS,1,1,Data,Sunday, 1/ 1,12/31"},
     [](char* line, size_t size, int month, int day, int hour, double dry_bulb, int sun) {
       std::snprintf(line, size, "1999,%d,%d,%d,0,?9,%.1f,%.1f,77,98000,0,0,261,0,%d,%d,0", month, day, hour, dry_bulb,
                     dry_bulb - 6, sun, sun / 5);
     }},
    {"tmy3",
     {"724666,\"SAMPLE, NREL\",CO,-7.0,39.740,-105.180,280",
      "Date (MM/DD/YYYY),Time (HH:MM),DNI (W/m^2),DHI (W/m^2),Dry-bulb (C),Dew-point (C),RHum (%),Pressure (mbar)"},
     [](char* line, size_t size, int month, int day, int hour, double dry_bulb, int sun) {
       std::snprintf(line, size, "%02d/%02d/1999,%02d:00,%d,%d,%.1f,%.1f,77,980", month, day, hour, sun, sun / 5,
                     dry_bulb, dry_bulb - 6);
     }},
    {"tmy2",
     {" 94018 SAMPLE                 CO  -7 N 39 44 W 105 11   280"},
     [](char* line, size_t size, int month, int day, int hour, double dry_bulb, int sun) {
       std::snprintf(line, size, " 79%2d%2d%2d%14s%4d?0%4d?0%32s%4d?0%4d?0%3d?0%4d?0", month, day, hour, "", sun,
                     sun / 5, "", static_cast<int>(dry_bulb * 10), static_cast<int>(dry_bulb * 10) - 60, 77, 980);
     }}};

/// Rows of a year, made once for each form.
const std::vector<std::string>& rows_of(const SourceForm& form) {
  static std::vector<std::string> made[std::size(kForms)];
  auto& rows = made[&form - kForms];
  if (!rows.empty()) return rows;
  for (int day = 1; day <= kDays; ++day) {
    for (int hour = 1; hour <= kHours; ++hour) {
      const double dry_bulb = 10 - 12 * std::cos(day * 0.0172) - 5 * std::cos(hour * 0.2618);
      char line[240];
      form.row(line, sizeof line, month_of(day), day_of_month(day), hour, dry_bulb, hour > 6 && hour < 19 ? 500 : 0);
      rows.emplace_back(line);
    }
  }
  return rows;
}

/// A year's text from what an input says of it.
std::string expanded(const SourceForm& form, Input& input) {
  std::string text;
  size_t given = 0;
  for (std::string line = input.line(); !line.empty(); line = input.line(), ++given) text += line + '\n';
  for (; given < form.header.size(); ++given) text += form.header[given] + '\n';
  std::vector<std::string> rows = rows_of(form);
  while (!input.empty()) {
    const std::string line = input.line();
    size_t hour = 0;
    const auto [end, failed] = std::from_chars(line.data(), line.data() + line.size(), hour);
    if (failed != std::errc() || end == line.data() + line.size()) continue;
    std::string& row = rows[hour % rows.size()];
    const std::string_view rest(end + 1, line.data() + line.size());
    if (*end == '+')
      (row += '\n') += rest;
    else
      row = *end == '-' ? std::string_view() : rest;
  }
  for (const std::string& row : rows) {
    if (!row.empty()) (text += row) += '\n';
  }
  return text;
}

std::string text_of(Input input) {
  Input whole = input;
  const std::string first = input.line();
  for (const SourceForm& form : kForms) {
    if (first == form.name) return expanded(form, input);
  }
  return whole.rest();
}

std::string bytes_of(const HW1ReaderWriter& year) {
  return {reinterpret_cast<const char*>(static_cast<const HourlyWeather*>(&year)), sizeof(HourlyWeather)};
}

/// What readers stumble over, in place of a field or at a line's beginning.
void damage_text(std::string& text, Mutator& random) {
  using namespace std::string_view_literals;
  constexpr std::string_view kWords[]{""sv,
                                      "-"sv,
                                      "99.9"sv,
                                      "9999"sv,
                                      "-9900"sv,
                                      "999999"sv,
                                      "1e308"sv,
                                      "-1e308"sv,
                                      "nan"sv,
                                      "inf"sv,
                                      "0x10"sv,
                                      "+5"sv,
                                      "0"sv,
                                      "24"sv,
                                      "25"sv,
                                      "29"sv,
                                      "2"sv,
                                      "12"sv,
                                      "\""sv,
                                      ","sv,
                                      "\r"sv,
                                      "\n"sv,
                                      "\0"sv,
                                      "\xFF"sv,
                                      "Yes"sv,
                                      "LOCATION"sv,
                                      "DATA"sv,
                                      "1,2,3"sv,
                                      "00:30"sv,
                                      "2/29/2000"sv,
                                      "100000000000000000000"sv};
  const size_t start = text.find_first_of(",\n", random.below(text.size() + 1));
  if (start == std::string::npos) return;
  const size_t end = std::min(text.find_first_of(",\n", start + 1), text.size());
  text.replace(start + 1, end - start - 1, random.one_of(kWords));
}

/// Another hour's row, for a year in short.
void add_row(std::string& text, Mutator& random) {
  const SourceForm& form = kForms[random.below(std::size(kForms))];
  if (text.find('\n') == std::string::npos) text = std::string(form.name) + "\n\n";
  const auto& rows = rows_of(form);
  const size_t hour = random.below(rows.size());
  constexpr std::string_view kHows[]{" ", "+", "-"};
  if (!text.ends_with('\n')) text += '\n';
  text += std::to_string(hour) + std::string(random.one_of(kHows)) +
          rows[random.once_in(3) ? random.below(rows.size()) : hour];
}

}  // namespace
}  // namespace tarn::fuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace tarn;
  using namespace tarn::fuzz;
  const auto year = std::make_unique<HW1ReaderWriter>();
  year->CityName = "before";
  const std::string before = bytes_of(*year);
  const std::string refused = refusal([&] { import_weather_text(*year, text_of(Input(data, size))); });
  if (!refused.empty()) {
    require(bytes_of(*year) == before, "a refusal has changed the year: " + refused);
    return 0;
  }
  WTH_Stats statistics;
  fill_statistics(statistics, *year);
  findings_of(*year);
  return 0;
}

extern "C" size_t LLVMFuzzerCustomMutator(uint8_t* data, size_t size, size_t most, unsigned seed) {
  using namespace tarn::fuzz;
  return mutated(data, size, most, seed, [](std::string& text, Mutator& random) {
    if (random.once_in(3))
      add_row(text, random);
    else
      damage_text(text, random);
  });
}
