// The year of weather data: 365 days, no 29 February.
#pragma once

#include <array>
#include <string>
#include <string_view>

namespace tarn {

inline constexpr std::array<int, 13> kDaysBefore{0, 31, 59, 90, 120, 151, 181, 212, 243, 273, 304, 334, 365};
inline constexpr std::array<std::string_view, 12> kMonthNames{"January",   "February", "March",    "April",
                                                              "May",       "June",     "July",     "August",
                                                              "September", "October",  "November", "December"};

/// Of a month from 1 to 12.
constexpr int days_in(int month) {
  const auto m = static_cast<size_t>(month);
  return kDaysBefore[m] - kDaysBefore[m - 1];
}
/// Counts from 1, as month and day do.
constexpr int day_of_year(int month, int day) { return kDaysBefore[static_cast<size_t>(month) - 1] + day; }
constexpr int month_of(int day_of_year) {
  int month = 1;
  while (kDaysBefore[static_cast<size_t>(month)] < day_of_year) ++month;
  return month;
}
constexpr int day_of_month(int day_of_year) {
  return day_of_year - kDaysBefore[static_cast<size_t>(month_of(day_of_year)) - 1];
}
/// "12 March" of a day of the year.
inline std::string date_text(int day_of_year) {
  return std::to_string(day_of_month(day_of_year)) + " " +
         std::string(kMonthNames[static_cast<size_t>(month_of(day_of_year)) - 1]);
}

}  // namespace tarn
