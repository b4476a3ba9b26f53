// Typical meteorological years: TMY3 in comma-separated columns named in the second line, TMY2 in fixed columns.
// Sources: Users Manual for TMY3 Data Sets (NREL/TP-581-43156), tables 1-1 to 1-3; User's Manual for TMY2s
// (NREL/SP-463-7668), tables 3-1 and 3-2.
#include <algorithm>
#include <cctype>

#include "weather/source_text.h"
#include "weather/source_year.h"

namespace tarn {
namespace {

constexpr double kPascalsPerMillibar = 100;

// ---- TMY3

/// Small letters alone: names of columns differ in case and punctuation.
std::string letters_of(std::string_view field) {
  std::string out;
  for (const char c : field) {
    if (std::isalpha(static_cast<unsigned char>(c)) != 0)
      out += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  }
  return out;
}

/// A column that is needed, found by its name in the second line. The unit follows the name in parentheses, or is not
/// given.
struct Column {
  const char* what;
  std::vector<std::string_view> names, units;  // in letters alone
  size_t place = SIZE_MAX;

  void find(std::span<const std::string_view> heads) {
    for (size_t i = 0; i < heads.size(); ++i) {
      const size_t open = std::min(heads[i].find('('), heads[i].size());
      const std::string name = letters_of(heads[i].substr(0, open)), unit = letters_of(heads[i].substr(open));
      if (std::find(names.begin(), names.end(), name) == names.end()) continue;
      if (place != SIZE_MAX) refuse_line(2, std::string("there are two columns ") + what);
      place = i;
      if (!unit.empty() && !units.empty() && std::find(units.begin(), units.end(), unit) == units.end())
        refuse_line(2, std::string("the column ") + what + " is headed " + quoted(heads[i]) +
                           "; its unit must be that of TMY3");
    }
    if (place == SIZE_MAX) refuse_line(2, std::string("there is no column ") + what + ", which is needed");
  }
};

struct Tmy3Columns {
  Column date{"Date", {"date", "datemmddyyyy"}, {}}, time{"Time", {"time", "timehhmm"}, {}};
  Column direct{"DNI", {"dni", "directnormalirradiance"}, {"wm", "whm"}};
  Column diffuse{"DHI", {"dhi", "diffusehorizontalirradiance"}, {"wm", "whm"}};
  Column dry_bulb{"Dry-bulb", {"drybulb", "drybulbtemperature", "drybulbtemp"}, {"c", "degc"}};
  Column dew_point{"Dew-point", {"dewpoint", "dewpointtemperature", "dewpointtemp"}, {"c", "degc"}};
  Column humidity{"RHum", {"rhum", "relativehumidity", "relhum", "rh"}, {"percent"}};
  Column pressure{"Pressure", {"pressure", "stationpressure"}, {"mbar", "hpa", "mb"}};
  size_t last = 0;

  explicit Tmy3Columns(std::string_view line) {
    std::vector<std::string_view> heads(200);
    heads.resize(split(line, heads));
    for (Column* column : {&date, &time, &direct, &diffuse, &dry_bulb, &dew_point, &humidity, &pressure}) {
      column->find(heads);
      last = std::max(last, column->place);
    }
  }
};

/// "01/31/1988"
void read_date(std::string_view field, int line, SourceRow& row) {
  const size_t first = field.find('/');
  const size_t second = std::min(field.find('/', first + 1), field.size());
  if (first >= field.size() || second == field.size())
    refuse_line(line, "the date is " + quoted(field) + ", wanted MM/DD/YYYY");
  row.month = whole_in(field.substr(0, first), "the month", line);
  row.day = whole_in(field.substr(first + 1, second - first - 1), "the day", line);
  row.year = whole_in(field.substr(second + 1), "the year", line);
}

/// "24:00"
void read_time(std::string_view field, int line, SourceRow& row) {
  const size_t colon = std::min(field.find(':'), field.size());
  row.hour = whole_in(field.substr(0, colon), "the hour", line);
  if (colon < field.size()) row.minute = whole_in(field.substr(colon + 1), "the minute", line);
}

SourceRow tmy3_row(std::string_view line, int number, const Tmy3Columns& columns) {
  std::array<std::string_view, 200> fields;
  const std::span<std::string_view> used(fields.data(), std::min(fields.size(), columns.last + 1));
  if (const size_t count = split(line, used); count < used.size()) {
    refuse_line(number, "the row has " + std::to_string(count) +
                            " fields; the columns that are needed end with field " + std::to_string(used.size()));
  }
  constexpr double kNever = 1e9;  // missing ones are below -990
  const auto at = [&](const Column& column) { return reading_in(fields[column.place], column.what, number, kNever); };
  SourceRow row;
  row.line = number;
  read_date(fields[columns.date.place], number, row);
  read_time(fields[columns.time.place], number, row);
  row.dry_bulb = at(columns.dry_bulb);
  row.dew_point = at(columns.dew_point);
  row.relative_humidity = at(columns.humidity);
  row.pressure = at(columns.pressure) * kPascalsPerMillibar;
  row.direct = at(columns.direct);
  row.diffuse = at(columns.diffuse);
  return row;
}

void read_tmy3_site(std::string_view line, SourceYear& year) {
  constexpr size_t kFields = 7;
  std::array<std::string_view, kFields> fields;
  if (split(line, fields) < kFields) refuse_line(1, "the station's line does not have its 7 fields");
  year.source = "TMY3";
  year.station = name_in_page(stripped(fields[0]), "station", year.notes);
  year.city = name_in_page(stripped(fields[1]), "city", year.notes);
  year.region = name_in_page(stripped(fields[2]), "region", year.notes);
  year.time_zone = number_in(fields[3], "the time zone", 1);
  year.latitude = number_in(fields[4], "the latitude", 1);
  year.longitude = number_in(fields[5], "the longitude", 1);
  year.elevation = number_in(fields[6], "the elevation", 1);
  check_site(year, 1);
}

// ---- TMY2

constexpr size_t kTmy2Width = 88;  // to the end of the pressure

/// Columns are counted from 1, as in the manual.
std::string_view columns(std::string_view line, size_t first, size_t last) {
  return line.substr(first - 1, last - first + 1);
}

/// " 94018 BOULDER                CO  -7 N 40  1 W 105 15  1634": read from its end, as places differ by a column or
/// two.
void read_tmy2_site(std::string_view line, SourceYear& year) {
  std::vector<std::string_view> words;
  for (size_t at = 0; at < line.size();) {
    const size_t start = line.find_first_not_of(" \t", at);
    if (start == std::string_view::npos) break;
    at = std::min(line.find_first_of(" \t", start), line.size());
    words.push_back(line.substr(start, at - start));
  }
  constexpr size_t kBehindCity = 9;  // state, zone, N, degrees, minutes, W, degrees, minutes, elevation
  if (words.size() < kBehindCity + 2) refuse_line(1, "the station's line does not have all of its fields");
  const size_t state = words.size() - kBehindCity;
  const auto angle = [&](size_t at, char negative, char positive, const char* what) {
    const char side = words[at].size() == 1 ? words[at].front() : '?';
    if (side != negative && side != positive)
      refuse_line(1,
                  std::string(what) + " begins with " + quoted(words[at]) + ", wanted " + positive + " or " + negative);
    const int degrees = whole_in(words[at + 1], what, 1), minutes = whole_in(words[at + 2], what, 1);
    if (degrees < 0 || minutes < 0 || minutes > 59)
      refuse_line(1, std::string(what) + " has minutes outside 0 to 59 or degrees below 0");
    return (side == negative ? -1 : 1) * (degrees + minutes / 60.0);
  };
  year.source = "TMY2";
  year.station = name_in_page(words[0], "station", year.notes);
  const std::string_view last = words[state - 1];
  std::string city(words[1].data(), last.data() + last.size());
  std::replace(city.begin(), city.end(), '_', ' ');
  year.city = name_in_page(city, "city", year.notes);
  year.region = name_in_page(words[state], "region", year.notes);
  year.time_zone = number_in(words[state + 1], "the time zone", 1);
  year.latitude = angle(state + 2, 'S', 'N', "the latitude");
  year.longitude = angle(state + 5, 'W', 'E', "the longitude");
  year.elevation = number_in(words[state + 8], "the elevation", 1);
  check_site(year, 1);
}

SourceRow tmy2_row(std::string_view line, int number) {
  if (line.size() < kTmy2Width) {
    refuse_line(number, "the row has " + std::to_string(line.size()) + " characters; up to the pressure there are " +
                            std::to_string(kTmy2Width));
  }
  constexpr double kMissing = 9999;
  SourceRow row;
  row.line = number;
  const int year = whole_in(columns(line, 2, 3), "the year", number);
  row.year = year + (year < kFirstOfCentury ? 2000 : 1900);
  row.month = whole_in(columns(line, 4, 5), "the month", number);
  row.day = whole_in(columns(line, 6, 7), "the day", number);
  row.hour = whole_in(columns(line, 8, 9), "the hour", number);
  row.direct = reading_in(columns(line, 24, 27), "the direct normal solar", number, kMissing);
  row.diffuse = reading_in(columns(line, 30, 33), "the diffuse solar", number, kMissing);
  row.dry_bulb = reading_in(columns(line, 68, 71), "the dry-bulb", number, kMissing) / 10;
  row.dew_point = reading_in(columns(line, 74, 77), "the dew point", number, kMissing) / 10;
  row.relative_humidity = reading_in(columns(line, 80, 82), "the relative humidity", number, 999);
  row.pressure = reading_in(columns(line, 85, 88), "the pressure", number, kMissing) * kPascalsPerMillibar;
  return row;
}

std::string_view line_at(std::string_view text, int number) {
  Lines lines(text);
  while (lines.next() && lines.number() < number) {
  }
  return lines.number() == number ? lines.line() : std::string_view();
}

}  // namespace

bool is_tmy3(std::string_view text) {
  const std::string_view heads = line_at(text, 2);
  return heads.find(',') != std::string_view::npos && letters_of(heads.substr(0, heads.find(','))).starts_with("date");
}

SourceYear read_tmy3(std::string_view text) {
  SourceYear year;
  Lines lines(text);
  lines.next();
  read_tmy3_site(lines.line(), year);
  lines.next();
  const Tmy3Columns columns(lines.line());
  while (lines.next()) {
    if (!stripped(lines.line()).empty()) add_row(year, tmy3_row(lines.line(), lines.number(), columns));
  }
  return year;
}

bool is_tmy2(std::string_view text) {
  const std::string_view row = line_at(text, 2);
  return row.size() >= kTmy2Width && row.find(',') == std::string_view::npos &&
         std::isdigit(static_cast<unsigned char>(row[2])) != 0;
}

SourceYear read_tmy2(std::string_view text) {
  SourceYear year;
  Lines lines(text);
  lines.next();
  read_tmy2_site(lines.line(), year);
  while (lines.next()) {
    if (!stripped(lines.line()).empty()) add_row(year, tmy2_row(lines.line(), lines.number()));
  }
  return year;
}

}  // namespace tarn
