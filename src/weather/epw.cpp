// Hourly weather of the EPW form: header lines that begin with a word, then rows of 35 comma-separated fields.
// Source of the fields, their units and the values that stand for missing ones: the form's public data dictionary.
#include <algorithm>
#include <cctype>
#include <cmath>

#include "base/nearest.h"
#include "weather/source_text.h"
#include "weather/source_year.h"

namespace tarn {
namespace {

constexpr size_t kFieldsRead = 16;  // up to diffuse solar
constexpr int kMostHeaderLines = 100;

constexpr std::string_view kHeaderWords[]{"LOCATION",
                                          "DESIGN CONDITIONS",
                                          "TYPICAL/EXTREME PERIODS",
                                          "GROUND TEMPERATURES",
                                          "HOLIDAYS/DAYLIGHT SAVINGS",
                                          "COMMENTS 1",
                                          "COMMENTS 2",
                                          "DATA PERIODS"};

bool is_data(std::string_view line) {
  line = stripped(line);
  return !line.empty() && (std::isdigit(static_cast<unsigned char>(line.front())) != 0);
}

/// Header words are spelled in many ways; their first letters tell them apart.
std::string_view header_word(std::string_view field) {
  constexpr size_t kTelling = 4;
  field = stripped(field);
  if (field.starts_with('"')) field.remove_prefix(1);
  for (const std::string_view word : kHeaderWords) {
    if (same_word(field, word)) return word;
  }
  for (const std::string_view word : kHeaderWords) {
    if (same_word(field.substr(0, kTelling), word.substr(0, kTelling))) return word;
  }
  return {};
}

/// Latitude, longitude, time zone, elevation.
void set_site(SourceYear& year, const std::string_view* fields, int line) {
  year.latitude = number_in(fields[0], "the latitude", line);
  year.longitude = number_in(fields[1], "the longitude", line);
  year.time_zone = number_in(fields[2], "the time zone", line);
  year.elevation = number_in(fields[3], "the elevation", line);
}

struct Header {
  std::string_view word;
  std::vector<std::string_view> fields;  // after the word
  int line;
};

Header header_of(std::string_view line, int number) {
  std::vector<std::string_view> fields(200);
  fields.resize(split(line, fields));
  Header header{header_word(fields.front()), {fields.begin() + 1, fields.end()}, number};
  while (!header.fields.empty() && stripped(header.fields.back()).empty()) header.fields.pop_back();
  return header;
}

/// Where the site's four numbers begin: commas in the city's name shift them, and fields may follow.
size_t numbers_at(const std::vector<std::string_view>& fields, int line) {
  constexpr size_t kUsual = 5, kNumbers = 4;
  for (size_t at = kUsual; at + kNumbers <= fields.size(); ++at) {
    try {
      SourceYear site;
      set_site(site, fields.data() + at, line);
      check_site(site, line);
      const double quarters = site.time_zone * 4;  // another number may look like a zone
      if (quarters == std::floor(quarters)) return at;
    } catch (const Error&) {
    }
  }
  return kUsual;
}

void read_location(const Header& header, SourceYear& year) {
  constexpr size_t kFields = 9;
  const auto& fields = header.fields;
  if (!year.city.empty()) refuse_line(header.line, "a second location");
  if (fields.size() < kFields) {
    refuse_line(header.line, "the location has " + std::to_string(fields.size()) + " of its 9 fields");
  }
  const size_t at = numbers_at(fields, header.line);
  const auto before = [&](size_t places) { return stripped(fields[at - places]); };
  const std::string_view last = fields[at - 5];
  const std::string_view city(fields[0].data(), static_cast<size_t>(last.data() + last.size() - fields[0].data()));
  year.city = name_in_page(stripped(city), "city", year.notes);
  const std::string_view state = before(4);
  const bool has_state = !state.empty() && state != "-" && !same_word(state, "NA") && !same_word(state, "N/A");
  year.region = name_in_page(has_state ? state : before(3), "region", year.notes);
  year.source = name_in_page(before(2), "source", year.notes);
  year.station = name_in_page(before(1), "station", year.notes);
  set_site(year, fields.data() + at, header.line);
  check_site(year, header.line);
  if (at + 4 < fields.size())
    year.notes.push_back("line " + std::to_string(header.line) + ": the fields after the elevation are ignored");
}

/// The field after a word of the design conditions.
size_t behind(const std::vector<std::string_view>& fields, std::string_view word) {
  const auto found =
      std::find_if(fields.begin(), fields.end(), [word](std::string_view f) { return same_word(stripped(f), word); });
  return static_cast<size_t>(found - fields.begin()) + 1;
}

/// After "Heating" stand the coldest month and the dry-bulb that 99.6 % of the hours exceed; after "Cooling" the
/// hottest month, its daily range, and the dry-bulb that 0.4 % exceed with its coincident wet-bulb (ASHRAE Handbook of
/// Fundamentals, chapter Climatic Design Information, since 2005).
void read_design(const Header& header, SourceYear& year) {
  if (!header.fields.empty() && header.fields.front().find_first_not_of(" 01") != std::string_view::npos)
    year.notes.push_back("line " + std::to_string(header.line) + ": of the " +
                         foreign_text(stripped(header.fields.front()).substr(0, 20)).text +
                         " sets of design conditions the first is used");
  const size_t heating = behind(header.fields, "Heating");
  const size_t cooling = behind(header.fields, "Cooling");
  if (heating + 1 >= header.fields.size() || cooling + 3 >= header.fields.size()) return;
  const auto at = [&](size_t place) { return number_in(header.fields[place], "a design condition", header.line); };
  const auto is_month = [](double value) { return value >= 1 && value <= 12 && value == std::floor(value); };
  DesignConditions design{};
  try {
    if (!is_month(at(heating)) || !is_month(at(cooling))) return;
    design = {at(cooling + 2), at(cooling + 3), at(heating + 1), at(cooling + 1)};
  } catch (const Error&) {
    return;
  }
  const bool sensible = design.summer_dry_bulb < 65 && design.winter_dry_bulb < design.summer_dry_bulb &&
                        design.winter_dry_bulb > -90 && design.summer_wet_bulb <= design.summer_dry_bulb &&
                        design.daily_range > 0 && design.daily_range < 50;
  if (sensible) year.design = design;
}

void read_holidays(const Header& header, SourceYear& year) {
  const std::string_view leap = header.fields.empty() ? std::string_view() : stripped(header.fields.front());
  if (same_word(leap, "Yes") || same_word(leap, "No"))
    year.says_leap = same_word(leap, "Yes");
  else
    year.notes.push_back("line " + std::to_string(header.line) + ": the leap year flag is " +
                         (leap.empty() ? "empty" : quoted(leap)) + "; the rows tell whether there is a 29 February");
}

/// "1,1,Data,Sunday, 1/ 1,12/31": periods, rows an hour, name, weekday of the first day, first day.
void read_periods(const Header& header, SourceYear& year) {
  const auto& fields = header.fields;
  if (fields.size() > 1 && number_in(fields[1], "the number of rows an hour", header.line) > 1) {
    refuse_line(header.line, "there are " + std::string(stripped(fields[1])) +
                                 " rows an hour; only files of one row an hour can be taken, so average them first");
  }
  if (fields.size() < 5) return;
  std::string first_day(fields[4]);
  std::erase(first_day, ' ');
  if (first_day != "1/1" && first_day != "01/01") return;
  constexpr std::string_view kDays[]{"Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday", "Sunday"};
  for (size_t i = 0; i < std::size(kDays); ++i) {
    if (same_word(stripped(fields[3]), kDays[i])) year.first_weekday = static_cast<int16_t>(i + 1);
  }
}

void read_header(std::string_view line, int number, SourceYear& year) {
  const Header header = header_of(line, number);
  const std::string_view written = stripped(line.substr(0, line.find(',')));
  if (header.word.empty()) {
    year.notes.push_back("line " + std::to_string(number) + ": " + quoted(written) +
                         " is not a header word of an EPW file; the line is ignored");
    return;
  }
  if (written != header.word && !header.word.starts_with("COMMENTS")) {
    year.notes.push_back("line " + std::to_string(number) + ": " + quoted(written) + " is taken for " +
                         std::string(header.word));
  }
  if (header.word == "LOCATION") read_location(header, year);
  if (header.word == "DESIGN CONDITIONS") read_design(header, year);
  if (header.word == "HOLIDAYS/DAYLIGHT SAVINGS") read_holidays(header, year);
  if (header.word == "DATA PERIODS") read_periods(header, year);
}

SourceRow row_of(std::string_view line, int number) {
  std::array<std::string_view, kFieldsRead> fields;
  if (const size_t count = split(line, fields); count < kFieldsRead) {
    refuse_line(number, "the row has " + std::to_string(count) + " fields; up to diffuse solar there are " +
                            std::to_string(kFieldsRead));
  }
  SourceRow row;
  row.line = number;
  row.year = whole_in(fields[0], "the year", number);
  row.month = whole_in(fields[1], "the month", number);
  row.day = whole_in(fields[2], "the day", number);
  row.hour = whole_in(fields[3], "the hour", number);
  row.minute = stripped(fields[4]).empty() ? 0 : whole_in(fields[4], "the minute", number);
  row.dry_bulb = reading_in(fields[6], "the dry-bulb", number, 99.9);
  row.dew_point = reading_in(fields[7], "the dew point", number, 99.9);
  row.relative_humidity = reading_in(fields[8], "the relative humidity", number, 999);
  row.pressure = reading_in(fields[9], "the pressure", number, 999999);
  row.direct = reading_in(fields[14], "the direct normal solar", number, 9999);
  row.diffuse = reading_in(fields[15], "the diffuse solar", number, 9999);
  return row;
}

}  // namespace

bool is_epw(std::string_view text) {
  const std::string_view line = text.substr(0, text.find('\n'));
  return line.find(',') != std::string_view::npos && header_word(line.substr(0, line.find(','))) == "LOCATION";
}

SourceYear read_epw(std::string_view text) {
  SourceYear year;
  year.rows.reserve(size_t{kDays + 1} * kHours);
  for (Lines lines(text); lines.next();) {
    if (is_data(lines.line()))
      add_row(year, row_of(lines.line(), lines.number()));
    else if (stripped(lines.line()).empty())
      continue;
    else if (!year.rows.empty())
      refuse_line(lines.number(), quoted(lines.line()) + " is not a row of hourly data");
    else if (lines.number() > kMostHeaderLines)
      refuse_line(lines.number(), "there is no row of hourly data up to this line");
    else
      read_header(lines.line(), lines.number(), year);
  }
  return year;
}

}  // namespace tarn
