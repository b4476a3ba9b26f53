#include "weather/source_year.h"

#include <algorithm>
#include <cmath>

#include "weather/calendar.h"
#include "weather/psychrometrics.h"
#include "weather/source_text.h"

namespace tarn {

void check_site(SourceYear& year, int line) {
  const struct {
    const char* what;
    double value, least, most;
  } limits[]{{"the latitude", year.latitude, -90, 90},
             {"the longitude", year.longitude, -180, 180},
             {"the time zone", year.time_zone, -14, 14},
             {"the elevation", year.elevation, -450, 5000}};
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
    year.notes.push_back("longitude and time zone lie far apart; if a sign is wrong, so is the sun's time");
}

std::string name_in_page(std::string_view bytes, const char* what, std::vector<std::string>& notes) {
  ForeignText name = foreign_text(bytes);
  if (name.by_page) notes.push_back("the " + std::string(what) + "'s name is read by code page 1252: " + name.text);
  if (name.has_replaced)
    notes.push_back("the " + std::string(what) +
                    "'s name has characters that code page 1252 lacks; they are \"?\": " + name.text);
  return name.text;
}

namespace {

// ---- stamps

/// How the file stamps the hours of a day.
enum class Stamps : uint8_t {
  Ends,    // 1 to 24, the hour that ends then
  Starts,  // 0 to 23, the hour that begins then
  Clock,   // 1 to 23 and midnight as 0, the hour that ends then
};

bool is_inside(const SourceRow& row) { return row.minute > 0 && row.minute < 60; }

Stamps stamps_of(const std::vector<SourceRow>& rows) {
  const auto any = [&rows](int hour) {
    return std::any_of(rows.begin(), rows.end(), [hour](const SourceRow& row) { return row.hour == hour; });
  };
  if (!any(0)) return Stamps::Ends;
  if (any(24)) return Stamps::Clock;
  if (std::any_of(rows.begin(), rows.end(), is_inside)) return Stamps::Starts;
  // A year by the clock begins at 1 o'clock, and the midnight that is its last hour comes behind.
  const auto first = std::find_if(rows.begin(), rows.end(),
                                  [](const SourceRow& row) { return row.month == 1 && row.day == 1 && row.hour <= 1; });
  const bool midnight_first = first != rows.end() && first->hour == 0;
  return midnight_first && rows.front().hour != 1 ? Stamps::Starts : Stamps::Clock;
}

void note_stamps(Stamps stamps, SourceYear& year) {
  if (stamps == Stamps::Starts)
    year.notes.emplace_back("hours are stamped 0 to 23; each is taken as the hour that begins then");
  if (stamps == Stamps::Clock)
    year.notes.emplace_back("midnight is stamped as hour 0; it is taken as hour 24 of the day that ends");
  const auto& rows = year.rows;
  if (std::any_of(rows.begin(), rows.end(), is_inside))
    year.notes.emplace_back("rows are stamped inside their hours, at minute " +
                            std::to_string(std::find_if(rows.begin(), rows.end(), is_inside)->minute) +
                            "; each is taken as the hour that it lies in");
}

void check_stamp(const SourceRow& row) {
  const auto outside = [&row](const char* what, int value, int most) {
    refuse_line(row.line,
                std::string(what) + " is " + std::to_string(value) + ", outside 1 to " + std::to_string(most));
  };
  if (row.month < 1 || row.month > 12) outside("the month", row.month, 12);
  const int days = row.month == 2 ? 29 : days_in(row.month);
  if (row.day < 1 || row.day > days) outside("the day", row.day, days);
  if (row.hour < 0 || row.hour > 24)
    refuse_line(row.line, "the hour is " + std::to_string(row.hour) + ", outside 0 to 24");
  if (row.minute < 0 || row.minute > 60)
    refuse_line(row.line, "the minute is " + std::to_string(row.minute) + ", outside 0 to 60");
}

bool is_leap_day(const SourceRow& row) { return row.month == 2 && row.day == 29; }

/// The place of a row in the year, hour 1 of 1 January at 0; -1 for 29 February.
class Places {
 public:
  Places(Stamps stamps, bool leap_rows) : stamps_(stamps), leap_rows_(leap_rows) {}

  int of(const SourceRow& row, const SourceRow* before) const {
    if (stamps_ == Stamps::Clock && row.hour == 0) {
      const bool same_day = before && before->hour == 23 && before->month == row.month && before->day == row.day;
      if (same_day) return in_year(row, 24);
      if (row.month == 3 && row.day == 1 && leap_rows_) return -1;  // 24 o'clock of 29 February
      if (is_leap_day(row)) return in_year(row, 0) + kHours;        // 24 o'clock of the 28th
      return (in_year(row, 0) + kDays * kHours) % (kDays * kHours);
    }
    if (is_leap_day(row)) return -1;
    return in_year(row, row.hour + (stamps_ == Stamps::Starts ? 1 : 0));
  }

 private:
  static int in_year(const SourceRow& row, int hour) {
    const int day = is_leap_day(row) ? 28 : row.day;
    return (day_of_year(row.month, day) - 1) * kHours + hour - 1;
  }

  Stamps stamps_;
  bool leap_rows_;
};

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
  if (rows.empty()) fail(ErrorNumber::UnknownFormat, "there are no rows of hourly data.");
  for (const SourceRow& row : rows) check_stamp(row);
  const Stamps stamps = stamps_of(rows);
  note_stamps(stamps, year);
  const Places places(stamps, std::any_of(rows.begin(), rows.end(), is_leap_day));
  std::vector<SourceRow> hours(size_t{kDays} * kHours);
  size_t dropped = 0;
  int last = -1;
  int first_misplaced = 0;
  for (size_t i = 0; i < rows.size(); ++i) {
    const int place = places.of(rows[i], i > 0 ? &rows[i - 1] : nullptr);
    if (place < 0) {
      ++dropped;
      continue;
    }
    SourceRow& hour = hours[static_cast<size_t>(place)];
    if (hour.line > 0)
      refuse_line(rows[i].line, "a second row for " + hour_name(place) + ", which is in line " +
                                    std::to_string(hour.line) + " already");
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
                "of 8760 hours " + std::to_string(missing) + (missing == 1 ? " is" : " are") + " missing, " +
                    (before > 0 ? "behind this line " : "") + "the first is " + hour_name(place));
  }
  if (first_misplaced > 0)
    year.notes.push_back("rows are out of order, the first in line " + std::to_string(first_misplaced) +
                         "; each is put in its place");
  note_leap_day(dropped, year);
  return hours;
}

}  // namespace tarn
