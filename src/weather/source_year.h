// A year of hourly weather as a file of another program tells it, in SI units, before it becomes an hourly weather
// file.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tarn/hourly_file.h"

namespace tarn {

/// A line of the file. A reading that is missing is `kNoValue`.
struct SourceRow {
  int line = 0;
  int year = 0, month = 0, day = 0, hour = 0, minute = 0;  // as the file gives them
  double dry_bulb = 0, dew_point = 0;                      // C
  double relative_humidity = 0;                            // per cent
  double pressure = 0;                                     // Pa
  double direct = 0, diffuse = 0;                          // W/m2: direct normal, diffuse on the horizontal
};

struct DesignConditions {
  double summer_dry_bulb, summer_wet_bulb, winter_dry_bulb;  // C
  double daily_range;                                        // K
};

struct SourceYear {
  std::string city, region;            // UTF-8
  std::string source, station;         // "TMY3", "724666"
  double latitude = 0, longitude = 0;  // deg, north and east positive
  double time_zone = 0;                // hours ahead of Greenwich
  double elevation = 0;                // m
  std::optional<DesignConditions> design;
  std::optional<bool> says_leap;         // that a 29 February is in the file
  std::optional<int16_t> first_weekday;  // 1 Monday to 7 Sunday
  std::vector<SourceRow> rows;           // in the file's order
  std::vector<std::string> notes;        // what a person should know, a line each
};

// The formats. Error `UnknownFormat` with line and reason for a text that cannot be read.
SourceYear read_epw(std::string_view text);
SourceYear read_tmy3(std::string_view text);
SourceYear read_tmy2(std::string_view text);
bool is_epw(std::string_view text);
bool is_tmy3(std::string_view text);
bool is_tmy2(std::string_view text);

/// Years of two digits are of 1950 to 2049.
inline constexpr int kFirstOfCentury = 50;

/// Error `UnknownFormat` for far more rows than a year has hours.
void add_row(SourceYear& year, const SourceRow& row);
/// Site values that must be numbers inside their limits.
void check_site(SourceYear& year, int line);
/// A name in the code page, with a note where it had to be changed.
std::string name_in_page(std::string_view bytes, const char* what, std::vector<std::string>& notes);

/// Puts the rows into the order of the year, however the file numbers its hours, without 29 February. Refuses an hour
/// that is there twice or not at all.
std::vector<SourceRow> rows_in_order(SourceYear& year);
/// Gives every hour its temperatures, humidity and pressure, or refuses a long gap. Solar readings stay missing.
void complete_rows(std::vector<SourceRow>& hours, SourceYear& year);

}  // namespace tarn
