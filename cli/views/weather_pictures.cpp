#include "cli/views/weather_pictures.h"

#include <cmath>
#include <cstdio>
#include <iostream>

#include "base/decimals.h"
#include "cli/command.h"
#include "cli/units.h"
#include "weather/calendar.h"
#include "weather/psychrometrics.h"

namespace tarn::cli {
namespace {

std::string tenths(double value) { return decimal_text(value, 1); }
std::string hundredths(double value) { return decimal_text(value, 2); }
std::string whole(double value) { return decimal_text(value, 0); }
/// In a table, whose texts begin at the left.
std::string in_column(const std::string& number) {
  return std::string(number.size() < 6 ? 6 - number.size() : 0, ' ') + number;
}

std::string years(const HW1ReaderWriter& year) {
  std::string out;
  for (int month = 1; month <= 12; ++month) {
    if (month > 1 && year.DataYear(month) == year.DataYear(month - 1)) continue;
    int last = month;
    while (last < 12 && year.DataYear(last + 1) == year.DataYear(month)) ++last;
    const auto name = [](int m) { return std::string(kMonthNames[static_cast<size_t>(m) - 1].substr(0, 3)); };
    out += (out.empty() ? "" : ", ") + name(month) + (last > month ? "-" + name(last) : "") + " " +
           std::to_string(year.DataYear(month));
  }
  return out;
}

std::string short_month(int month) { return std::string(kMonthNames[static_cast<size_t>(month) - 1].substr(0, 3)); }

}  // namespace

void show_site(const HW1ReaderWriter& year, bool has_known_design) {
  const auto exceeded = [&](const char* part) {
    return has_known_design ? ", exceeded in " + std::string(part) + " of the hours" : "";
  };
  const auto line = [](const char* name, const std::string& value) { std::printf("%-18s %s\n", name, value.c_str()); };
  std::cout.flush();
  line("city", year.CityName.trimmed() + ", " + year.LocationName.trimmed());
  line("source", year.DataSource.trimmed() + " (type " + std::to_string(year.SourceType) + "), of " +
                     year.ModDate.trimmed() + "; " + years(year));
  line("site", "latitude " + hundredths(year.Latitude) + ", longitude " + hundredths(year.Longitude) +
                   " deg, time-zone meridian " + tenths(year.TZMeridian) + " deg, elevation " +
                   measure(year.Elevation, "ft"));
  line("summer", measure(year.SummerDB, "F") + " dry-bulb, " + measure(year.SummerWB, "F") + " wet-bulb, daily range " +
                     measure(year.DailyRange, "delta F") + exceeded("0.4 %"));
  line("winter", measure(year.WinterDB, "F") + " dry-bulb" + exceeded("99.6 %"));
  std::fflush(stdout);
}

void show_statistics(const WTH_Stats& s) {
  std::vector<std::vector<Json>> dry_bulbs, solar;
  for (int month = 1; month <= 12; ++month) {
    const auto at = [month](int day, int hour) {
      return std::string(day < 10 ? " " : "") + std::to_string(day) + " " + short_month(month) + " " +
             std::to_string(hour) + "h";
    };
    const auto degrees = [&](const auto& values) { return in_column(figure(values(month), "F")); };
    const auto day = [&](const auto& values) { return in_column(std::to_string(values(month))); };
    const auto index = [&](const auto& values) { return in_column(hundredths(values(month))); };
    const auto total = [&](const auto& values) {
      return in_column(whole(shown_value(values(month), "Btu/(ft2.day)")));
    };
    dry_bulbs.push_back({short_month(month), degrees(s.MaxDB), at(s.MaxDBDay(month), s.MaxDBHour(month)),
                         degrees(s.AvgMaxDB), degrees(s.AvgDB), degrees(s.AvgMinDB), degrees(s.MinDB),
                         at(s.MinDBDay(month), s.MinDBHour(month))});
    solar.push_back({short_month(month), total(s.MaxItot), day(s.MaxItotDay), total(s.AvgItot), total(s.MinItot),
                     day(s.MinItotDay), index(s.MaxKt), index(s.AvgKt), index(s.MinKt)});
  }
  std::cout << "\ndry-bulb, " << shown_unit("F") << " (averages of the days' extremes and of all hours)\n";
  print_table({"", "  most", "on", "avg most", "average", "avg least", " least", "on"}, dry_bulbs);
  std::cout << "\ntotal solar on the horizontal, " << shown_unit("Btu/(ft2.day)")
            << ", and clearness index of the days\n";
  print_table({"", "  most", "on day", "average", " least", "on day", "most Kt", "avg Kt", "least Kt"}, solar);
}

void show_month_chart(const WTH_Stats& s) {
  double most = s.MaxDB(1), least = s.MinDB(1);
  for (int month = 1; month <= 12; ++month) {
    most = std::max<double>(most, s.MaxDB(month));
    least = std::min<double>(least, s.MinDB(month));
  }
  const double step = most - least > 80 ? 10 : 5;
  const int top = static_cast<int>(std::floor(most / step)), bottom = static_cast<int>(std::floor(least / step));
  std::cout << "\ndry-bulb by month, F (C):  + most, = average of the days' extremes, o average, - least\n";
  std::cout.flush();
  for (int row = top; row >= bottom; --row) {
    std::printf("%5.0f (%5.1f) |", row * step, celsius(row * step));
    for (int month = 1; month <= 12; ++month) {
      const auto is_at = [&](double value) { return static_cast<int>(std::floor(value / step)) == row; };
      const bool between = (row + 1) * step > s.AvgMinDB(month) && row * step < s.AvgMaxDB(month);
      const bool reached = (row + 1) * step > s.MinDB(month) && row * step < s.MaxDB(month);
      const char* mark = is_at(s.AvgDB(month))                                  ? " ooo"
                         : is_at(s.AvgMaxDB(month)) || is_at(s.AvgMinDB(month)) ? " ==="
                         : is_at(s.MaxDB(month))                                ? "  + "
                         : is_at(s.MinDB(month))                                ? "  - "
                         : between                                              ? " | |"
                         : reached                                              ? "  : "
                                                                                : "    ";
      std::printf("%s", mark);
    }
    std::printf("\n");
  }
  std::printf("%14s", "");
  for (int month = 1; month <= 12; ++month) std::printf(" %s", short_month(month).c_str());
  std::printf("\n");
  std::fflush(stdout);
}

}  // namespace tarn::cli
