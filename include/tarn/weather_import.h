// Weather of other programs as an hourly weather file: EPW, TMY3 in commas, TMY2, and files that are one already.
#pragma once

#include <string>
#include <vector>

#include "tarn/hourly_file.h"

namespace tarn {

/// What the hourly file has no place for.
struct ImportedWeather {
  std::string format;              // "EPW", "TMY3", "TMY2" or "HW1"
  std::string source;              // "TMY3", as the file calls it; of an hourly one its `DataSource`
  double pressure = 0;             // psia, the mean of the year at the station; of an hourly file the standard one
  int16_t first_weekday = 0;       // of 1 January, 1 Monday to 7 Sunday; 0 where the file does not tell
  std::vector<std::string> notes;  // what was changed, chosen or left out, a line each
};

/// Fills a year from a file. Errors `FileNotFound`, and `UnknownFormat` with file, reason and, where one is to blame,
/// line; the year stays as it was.
ImportedWeather import_weather(HW1ReaderWriter& year, const std::string& path);

/// The same for a text; errors name no file. Temperatures to F, solar to Btu/(hr.ft2), humidity from dew point and
/// pressure; design conditions are those of the file, or come from its hours.
ImportedWeather import_weather_text(HW1ReaderWriter& year, std::string_view text);

/// Error `UnknownFormat`, with the reason, where what was imported from a file is a damaged hourly one.
void check_hourly(const HW1ReaderWriter& year, const ImportedWeather& imported, const std::string& file);

class WTH_Weather;
/// Makes a year the simulation weather: its site and its hours. What engines compute from them is set to zero.
void use_as_simulation(WTH_Weather& weather, const HW1ReaderWriter& year, const ImportedWeather& imported);
/// The same to the project's weather, saved with the year's hours in a file, both or neither.
void save_as_simulation(WTH_Weather& weather, HW1ReaderWriter& year, const ImportedWeather& imported,
                        const std::string& file);

}  // namespace tarn
