#include "weather/source_year.h"

#include <algorithm>
#include <cmath>

#include "weather/calendar.h"
#include "weather/psychrometrics.h"
#include "weather/source_text.h"

namespace tarn {

void add_row(SourceYear& year, const SourceRow& row) {
  constexpr size_t kMostRows = 20'000;
  if (year.rows.size() == kMostRows) refuse_line(row.line, "there are many more rows than a year has hours");
  year.rows.push_back(row);
}

void check_site(SourceYear& year, int line) {
  const struct {
    const char* what;
    double value, least, most;
  } limits[]{{"the latitude", year.latitude, -90, 90},
             {"the longitude", year.longitude, -180, 180},
             {"the time zone", year.time_zone, -14, 14},
             {"the elevation, m,", year.elevation, -304, 4572}};  // what an hourly file may have
  for (const auto& [what, value, least, most] : limits) {
    if (value >= least && value <= most) continue;
    char text[160];
    if (std::isnan(value))
      std::snprintf(text, sizeof text, "%s is empty", what);
    else
      std::snprintf(text, sizeof text, "%s is %g, outside %g to %g", what, value, least, most);
    refuse_line(line, text);
  }
  constexpr double kDegreesPerHour = 15, kFar = 45;
  if (std::abs(std::remainder(year.longitude - kDegreesPerHour * year.time_zone, 360)) > kFar)
    year.notes.push_back(
        "longitude and time zone are more than 45 degrees apart; check their signs, as the sun's position depends on "
        "them");
}

std::string name_in_page(std::string_view bytes, const char* what, std::vector<std::string>& notes) {
  ForeignText name = foreign_text(bytes);
  const auto is_control = [](char c) { return static_cast<unsigned char>(c) < ' '; };
  if (std::any_of(name.text.begin(), name.text.end(), is_control)) {
    std::replace_if(name.text.begin(), name.text.end(), is_control, '?');
    name.has_replaced = true;
  }
  if (name.by_page) notes.push_back("the " + std::string(what) + "'s name is read as code page 1252: " + name.text);
  if (name.has_replaced)
    notes.push_back("the " + std::string(what) +
                    "'s name has characters that code page 1252 lacks; they are \"?\": " + name.text);
  return name.text;
}

namespace {

// ---- stamps

/// How the file stamps the hours of a day.
enum class Stamps : uint8_t {
  Ends,            // 1 to 24, the hour that ends then
  Starts,          // 0 to 23, the hour that begins then
  MidnightOfDay,   // 1 to 23, and 0 for the last hour of the same day
  MidnightOfNext,  // 1 to 23, and 0 of the next day for the last hour
};

bool is_inside(const SourceRow& row) { return row.minute > 0 && row.minute < 60; }
bool same_day(const SourceRow& a, const SourceRow& b) { return a.month == b.month && a.day == b.day; }

/// Whether rows are stamped inside their hours; all are, or none.
bool are_inside(const std::vector<SourceRow>& rows) {
  const auto other = std::find_if(rows.begin(), rows.end(),
                                  [&rows](const SourceRow& row) { return is_inside(row) != is_inside(rows.front()); });
  if (other != rows.end())
    refuse_line(other->line, "the minute is " + std::to_string(other->minute) + ", but in the row before it is " +
                                 std::to_string((other - 1)->minute) + "; all rows must be stamped alike");
  return is_inside(rows.front());
}

/// Decided by the rows before and after those of hour 0, and by the first and the last row.
Stamps stamps_of_zeros(const std::vector<SourceRow>& rows) {
  size_t zeros = 0, behind_23 = 0, before_1 = 0;
  for (size_t i = 0; i < rows.size(); ++i) {
    if (rows[i].hour != 0) continue;
    ++zeros;
    behind_23 += i > 0 && rows[i - 1].hour == 23 && same_day(rows[i - 1], rows[i]);
    before_1 += i + 1 < rows.size() && rows[i + 1].hour == 1 && same_day(rows[i], rows[i + 1]);
  }
  const int first = rows.front().hour, last = rows.back().hour;
  if (behind_23 + 1 >= zeros && before_1 == 0) return Stamps::MidnightOfDay;
  if (before_1 + 1 >= zeros && behind_23 == 0) {
    if (first == 0 && last == 23) return Stamps::Starts;
    if (first == 1 && last == 0) return Stamps::MidnightOfNext;
  }
  refuse_line(std::find_if(rows.begin(), rows.end(), [](const SourceRow& row) { return row.hour == 0; })->line,
              "hours are stamped with 0, but the rows' order does not tell whether that is the day's first hour or the "
              "last one of the day before; stamp them 1 to 24, or sort them from the year's first hour on");
}

Stamps stamps_of(const std::vector<SourceRow>& rows) {
  const auto first_of = [&rows](int hour) {
    return std::find_if(rows.begin(), rows.end(), [hour](const SourceRow& row) { return row.hour == hour; });
  };
  const bool inside = are_inside(rows);
  if (first_of(0) == rows.end()) return Stamps::Ends;
  if (first_of(24) != rows.end())
    refuse_line(first_of(0)->line,
                "the hour is 0 in a file that has hour 24 as well, in line " + std::to_string(first_of(24)->line));
  return inside ? Stamps::Starts : stamps_of_zeros(rows);
}

void note_stamps(Stamps stamps, SourceYear& year) {
  if (stamps == Stamps::Starts)
    year.notes.emplace_back("hours are stamped 0 to 23; each is taken as the hour that begins then");
  if (stamps == Stamps::MidnightOfDay || stamps == Stamps::MidnightOfNext)
    year.notes.emplace_back("midnight is stamped as hour 0; it is taken as hour 24 of the day that ends");
  if (is_inside(year.rows.front()))
    year.notes.emplace_back("rows are stamped inside their hours, the first at minute " +
                            std::to_string(year.rows.front().minute) + "; each is taken as the hour that it lies in");
}

void check_stamp(const SourceRow& row) {
  const auto require = [&row](const char* what, int value, int least, int most) {
    if (value >= least && value <= most) return;
    refuse_line(row.line, std::string(what) + " is " + std::to_string(value) + ", outside " + std::to_string(least) +
                              " to " + std::to_string(most));
  };
  require("the month", row.month, 1, 12);
  require("the day", row.day, 1, row.month == 2 ? 29 : days_in(row.month));
  require("the hour", row.hour, 0, 24);
  require("the minute", row.minute, 0, 60);
  require("the year", row.year, 0, 9999);
}

bool is_leap_day(const SourceRow& row) { return row.month == 2 && row.day == 29; }

/// The place of a row in the year, hour 1 of 1 January at 0; -1 for 29 February.
int place_of(const SourceRow& row, Stamps stamps, bool leap_rows) {
  const auto in_year = [](int month, int day, int hour) { return (day_of_year(month, day) - 1) * kHours + hour - 1; };
  int hour = row.hour;
  if (hour == 0 && stamps == Stamps::MidnightOfNext) {
    if (is_leap_day(row)) return in_year(2, 28, 24);
    if (row.month == 3 && row.day == 1 && leap_rows) return -1;
    return (in_year(row.month, row.day, 0) + kDays * kHours) % (kDays * kHours);
  }
  if (hour == 0 && stamps == Stamps::MidnightOfDay) hour = 24;
  if (stamps == Stamps::Starts) ++hour;
  return is_leap_day(row) ? -1 : in_year(row.month, row.day, hour);
}

std::string hour_name(int place) {
  return date_text(place / kHours + 1) + " hour " + std::to_string(place % kHours + 1);
}

void note_leap_day(size_t dropped, SourceYear& year) {
  if (dropped > 0)
    year.notes.push_back("29 February is left out, " + std::to_string(dropped) + " rows" +
                         (year.says_leap == false ? ", though the header says that the year has none" : ""));
  else if (year.says_leap == true)
    year.notes.emplace_back("the header says that the year has a 29 February; there are no rows of it");
}

}  // namespace

std::vector<SourceRow> rows_in_order(SourceYear& year) {
  const auto& rows = year.rows;
  if (rows.empty()) {
    fail(ErrorNumber::UnknownFormat,
         "there are no rows of hourly data" + (year.notes.empty() ? "." : "; " + year.notes.back() + "."));
  }
  for (const SourceRow& row : rows) check_stamp(row);
  const Stamps stamps = stamps_of(rows);
  note_stamps(stamps, year);
  const bool leap_rows = std::any_of(rows.begin(), rows.end(), is_leap_day);
  std::vector<SourceRow> hours(size_t{kDays} * kHours);
  size_t dropped = 0;
  int last = -1;
  int first_misplaced = 0;
  for (size_t i = 0; i < rows.size(); ++i) {
    const int place = place_of(rows[i], stamps, leap_rows);
    if (place < 0) {
      ++dropped;
      continue;
    }
    SourceRow& hour = hours[static_cast<size_t>(place)];
    if (hour.line > 0)
      refuse_line(rows[i].line, "a second row for " + hour_name(place) + "; line " + std::to_string(hour.line) +
                                    " has that hour already");
    hour = rows[i];
    if (place < last && first_misplaced == 0) first_misplaced = rows[i].line;
    last = place;
  }
  const auto missing = std::count_if(hours.begin(), hours.end(), [](const SourceRow& row) { return row.line == 0; });
  if (missing > 0) {
    const auto first = std::find_if(hours.begin(), hours.end(), [](const SourceRow& row) { return row.line == 0; });
    const auto place = static_cast<int>(first - hours.begin());
    const int before = place > 0 ? hours[static_cast<size_t>(place) - 1].line : 0;
    refuse_line(before > 0 ? before : rows.front().line,
                std::to_string(missing) + " of 8760 hours" + (missing == 1 ? " is" : " are") + " missing; the first" +
                    (before > 0 ? ", after this line," : "") + " is " + hour_name(place));
  }
  if (first_misplaced > 0)
    year.notes.push_back("rows are out of order, the first in line " + std::to_string(first_misplaced) +
                         "; each is put in its place");
  note_leap_day(dropped, year);
  return hours;
}

}  // namespace tarn
