#include "tarn/weather_import.h"

#include <algorithm>
#include <cmath>
#include <ctime>
#include <map>

#include "platform/file_store.h"
#include "tarn/platform/workspace.h"
#include "weather/calendar.h"
#include "weather/psychrometrics.h"
#include "weather/source_text.h"
#include "weather/source_year.h"

namespace tarn {
namespace {

constexpr double kBtuPerHourSquareFoot = 3.412141633 * 0.3048 * 0.3048;  // of 1 W/m2, Btu of the International Table
constexpr uint64_t kLargestFile = 64 << 20;

struct Format {
  const char* name;
  bool (*is)(std::string_view);
  SourceYear (*read)(std::string_view);
};
constexpr Format kFormats[]{{"EPW", is_epw, read_epw}, {"TMY3", is_tmy3, read_tmy3}, {"TMY2", is_tmy2, read_tmy2}};

std::string_view without_mark(std::string_view text) {
  constexpr std::string_view kMark = "\xEF\xBB\xBF";
  if (text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF"))
    refuse_line(1, "this is text in UTF-16; save it as UTF-8");
  if (text.find('\n') == std::string_view::npos && text.find('\r') != std::string_view::npos)
    refuse_line(1, "lines end with CR alone; save the text with LF or CR LF");
  constexpr std::string_view kEndMarks("\x1A\0\r\n", 4);  // of old systems, with a line end or without
  text = text.substr(0, text.find_last_not_of(kEndMarks) + 1);
  return text.starts_with(kMark) ? text.substr(kMark.size()) : text;
}

const Format& format_of(std::string_view text) {
  for (const Format& format : kFormats) {
    if (format.is(text)) return format;
  }
  refuse_line(1,
              "this is neither an EPW file (first line LOCATION,...), nor TMY3 (second line Date, Time, ...), nor "
              "TMY2 (rows of 142 characters), nor an hourly weather file (.HW1, or of 70,272 bytes)");
}

// ---- design conditions

/// Design conditions computed from the hours: the dry-bulbs that 0.4 and 99.6 per cent of them exceed, the mean
/// wet-bulb at the first, the mean daily range of the warmest month.
DesignConditions design_of(const std::vector<SourceRow>& hours) {
  std::vector<double> sorted;
  for (const SourceRow& row : hours) sorted.push_back(row.dry_bulb);
  std::sort(sorted.begin(), sorted.end());
  const auto rare = static_cast<size_t>(0.004 * static_cast<double>(sorted.size()));
  DesignConditions design{sorted[sorted.size() - 1 - rare], 0, sorted[rare], 0};

  double wet_bulbs = 0;
  int coincident = 0;
  for (const SourceRow& row : hours) {
    if (std::abs(row.dry_bulb - design.summer_dry_bulb) > 0.5) continue;
    const double ratio = humidity_ratio(saturation_pressure(std::min(row.dew_point, row.dry_bulb)), row.pressure);
    wet_bulbs += wet_bulb(row.dry_bulb, ratio, row.pressure);
    ++coincident;
  }
  design.summer_wet_bulb = std::min(wet_bulbs / coincident, design.summer_dry_bulb);

  std::array<double, 12> sums{}, ranges{};
  for (int day = 1; day <= kDays; ++day) {
    const auto first = hours.begin() + static_cast<ptrdiff_t>(day - 1) * kHours;
    const auto cooler = [](const SourceRow& a, const SourceRow& b) { return a.dry_bulb < b.dry_bulb; };
    const auto [least, most] = std::minmax_element(first, first + kHours, cooler);
    const auto month = static_cast<size_t>(month_of(day)) - 1;
    ranges[month] += most->dry_bulb - least->dry_bulb;
    for (auto hour = first; hour != first + kHours; ++hour) sums[month] += hour->dry_bulb;
  }
  for (int month = 1; month <= 12; ++month) {
    sums[static_cast<size_t>(month) - 1] /= days_in(month);
    ranges[static_cast<size_t>(month) - 1] /= days_in(month);
  }
  design.daily_range = ranges[static_cast<size_t>(std::max_element(sums.begin(), sums.end()) - sums.begin())];
  return design;
}

// ---- the hourly file

/// A text of the file, cut with a note.
template <size_t N>
void fit(Text<N>& field, const std::string& text, const char* what, std::vector<std::string>& notes) {
  field = text;
  if (page_from_utf8(text).size() > N)
    notes.push_back("the " + std::string(what) + " is cut to " + std::to_string(N) + " characters: " + field.trimmed());
}

std::string today() {
  const std::time_t now = std::time(nullptr);
  std::tm parts{};
  gmtime_r(&now, &parts);
  char text[16];
  std::strftime(text, sizeof text, "%Y-%m-%d", &parts);
  return text;
}

void fill_site(HourlyWeather& out, SourceYear& year) {
  constexpr double kDegreesPerHour = 15;
  fit(out.CityName, year.city, "city's name", year.notes);
  fit(out.LocationName, year.region, "region's name", year.notes);
  fit(out.DataSource, year.source + (year.station.empty() ? "" : " " + year.station), "source's name", year.notes);
  out.Latitude = static_cast<float>(year.latitude);
  out.Longitude = static_cast<float>(year.longitude);
  out.Elevation = static_cast<float>(year.elevation * kFeetPerMetre);
  out.TZMeridian = static_cast<float>(std::remainder(year.time_zone * kDegreesPerHour, 360));
  out.AtmosClear = 1;
  out.SourceType = 99;
  out.ModDate = today();
}

void fill_design(HourlyWeather& out, const std::vector<SourceRow>& hours, SourceYear& year) {
  if (!year.design) {
    year.design = design_of(hours);
    year.notes.emplace_back("the file has no readable design conditions; they are computed from its hours");
  }
  const DesignConditions& design = *year.design;
  out.SummerDB = static_cast<float>(fahrenheit(design.summer_dry_bulb));
  out.SummerWB = static_cast<float>(fahrenheit(design.summer_wet_bulb));
  out.WinterDB = static_cast<float>(fahrenheit(design.winter_dry_bulb));
  out.DailyRange = static_cast<float>(design.daily_range * 1.8);
}

/// A note about the first of several months.
void note_months(const std::string& first, int months, std::vector<std::string>& notes) {
  if (months == 0) return;
  const std::string others = months == 2 ? "another month" : std::to_string(months - 1) + " other months";
  notes.push_back(first + (months == 1 ? "" : "; so it is in " + others));
}

/// Each month's year is that of most of its rows.
void fill_years(HourlyWeather& out, const std::vector<SourceRow>& hours, std::vector<std::string>& notes) {
  std::string first_short, first_mixed;
  int short_years = 0, mixed_years = 0;
  for (int month = 1; month <= 12; ++month) {
    std::map<int, int> rows_of;
    const int first = (day_of_year(month, 1) - 1) * kHours;
    for (int i = first; i < first + days_in(month) * kHours; ++i) ++rows_of[hours[static_cast<size_t>(i)].year];
    const auto fewer = [](const auto& a, const auto& b) { return a.second < b.second; };
    const std::string name(kMonthNames[static_cast<size_t>(month) - 1]);
    int year = std::max_element(rows_of.begin(), rows_of.end(), fewer)->first;
    if (year > 0 && year < 100) {
      year += year < kFirstOfCentury ? 2000 : 1900;
      if (short_years++ == 0) first_short = name + " has a year of two digits; it is read as " + std::to_string(year);
    }
    out.DataYear(month) = static_cast<int16_t>(year);
    if (rows_of.size() > 1 && mixed_years++ == 0)
      first_mixed =
          name + " has rows of " + std::to_string(rows_of.size()) + " years; most are of " + std::to_string(year);
  }
  note_months(first_short, short_years, notes);
  note_months(first_mixed, mixed_years, notes);
}

void fill_hours(HourlyWeather& out, const std::vector<SourceRow>& hours) {
  const auto solar = [](double reading) {
    return std::isnan(reading) ? kMissingSolar : reading * kBtuPerHourSquareFoot;
  };
  const SourceRow* row = hours.data();
  for (HourlyDay& day : out.Day.items) {
    for (size_t hour = 0; hour < kHours; ++hour, ++row) {
      day.DB.items[hour] = fahrenheit(row->dry_bulb);
      day.SH.items[hour] = specific_humidity(saturation_pressure(row->dew_point), row->pressure);
      day.IDN.items[hour] = solar(row->direct);
      day.IDIFF.items[hour] = solar(row->diffuse);
    }
  }
}

double mean_pressure(const std::vector<SourceRow>& hours) {
  double sum = 0;
  for (const SourceRow& row : hours) sum += row.pressure;
  return sum / static_cast<double>(hours.size()) / kPascalsPerPsi;
}

ImportedWeather loaded(HW1ReaderWriter& year, const std::string& path, uint64_t size) {
  files().read(path, 0, record_bytes<HourlyWeather>(year));
  ImportedWeather out{"HW1", year.DataSource.trimmed(), 0, 0, {}};
  out.pressure = standard_pressure(year.Elevation / kFeetPerMetre) / kPascalsPerPsi;
  if (size < sizeof(HourlyWeather))
    out.notes.push_back("the file ends after " + std::to_string(size) +
                        " of its 70,272 bytes; the hours after that are 0");
  return out;
}

}  // namespace

ImportedWeather import_weather_text(HW1ReaderWriter& out, std::string_view text) {
  text = without_mark(text);
  const Format& format = format_of(text);
  SourceYear year = format.read(text);
  auto hours = rows_in_order(year);
  complete_rows(hours, year);
  HW1ReaderWriter made;
  fill_site(made, year);
  fill_design(made, hours, year);
  fill_years(made, hours, year.notes);
  fill_hours(made, hours);
  if (!made.has_valid_header())
    year.notes.emplace_back("the header's values are outside what an hourly weather file may have; see weather check");
  static_cast<HourlyWeather&>(out) = made;
  return {format.name, year.source, mean_pressure(hours), year.first_weekday.value_or(0), std::move(year.notes)};
}

ImportedWeather import_weather(HW1ReaderWriter& year, const std::string& path) {
  if (!files().exists(path)) fail(ErrorNumber::FileNotFound, "There is no weather file " + path + ".");
  const uint64_t size = files().size(path);
  if (size > kLargestFile) fail(ErrorNumber::UnknownFormat, path + " is too large for a year of hourly weather.");
  std::string text(size, '\0');
  text.resize(files().read(path, 0, std::as_writable_bytes(std::span(text))));
  const bool hourly = size == sizeof(HourlyWeather) || (path.size() > 4 && HW1ReaderWriter::is_hourly_name(path));
  if (hourly && !is_epw(text) && !is_tmy3(text)) return loaded(year, path, size);
  try {
    return import_weather_text(year, text);
  } catch (const Error& error) {
    throw Error(error.number(), error.source(), path + ", " + error.what());
  }
}

void use_as_simulation(WTH_Weather& weather, const HW1ReaderWriter& year, const ImportedWeather& imported) {
  weather.SimCityName = year.CityName.str();
  weather.SimStateName = year.LocationName.str();
  weather.SimCitySelected = true;
  weather.SimLatitude = year.Latitude;
  weather.SimLongitude = year.Longitude;
  weather.SimTZMeridian = year.TZMeridian;
  weather.SimElevation = year.Elevation;
  weather.SimBaromPress = static_cast<float>(imported.pressure);
  weather.SourceTypeLabel = imported.source.substr(0, imported.source.find(' '));
  if (imported.first_weekday != 0) weather.JanOne = imported.first_weekday;
  for (size_t day = 0; day < kDays; ++day) {
    WeatherDay& to = weather.SimDay.items[day] = {};
    const HourlyDay& from = year.Day.items[day];
    for (size_t hour = 0; hour < kHours; ++hour) {
      to.DB.items[hour] = static_cast<float>(from.DB.items[hour]);
      to.SH.items[hour] = static_cast<float>(from.SH.items[hour]);
      const double direct = from.IDN.items[hour];
      to.IDN.items[hour] = direct == kMissingSolar ? 0 : static_cast<float>(direct);
    }
  }
}

void check_hourly(const HW1ReaderWriter& year, const ImportedWeather& imported, const std::string& file) {
  if (imported.format != "HW1") return;
  const auto refuse = [&](const std::string& reason) {
    fail(ErrorNumber::UnknownFormat, file + ": " + reason + " Nothing was imported.");
  };
  const HourlyVerdict verdict = verdict_of(year);
  if (verdict.code == kHourlyInvalid.code) refuse(std::string(verdict.text));
  if (!imported.notes.empty()) refuse(imported.notes.front() + ".");
}

void save_as_simulation(WTH_Weather& weather, HW1ReaderWriter& year, const ImportedWeather& imported,
                        const std::string& file) {
  weather.Load();
  use_as_simulation(weather, year, imported);
  Transaction whole;
  year.Save(file);
  weather.Save();
  whole.commit();
}

}  // namespace tarn
