// A schedule as a picture: a heat map of every hour of every day type of every month, and its profiles below.
#include <algorithm>
#include <array>
#include <map>
#include <span>
#include <vector>

#include "pictures/svg.h"
#include "tarn/base/value.h"
#include "tarn/pictures.h"
#include "tarn/schedule.h"
#include "weather/calendar.h"

namespace tarn {
namespace {

using svg::label;
using svg::number;
using svg::path;

constexpr int kMonths = 12, kDayTypes = 9, kDayHours = 24, kProfiles = 8;
constexpr double kScheduleLeft = 64, kScheduleTop = 84, kScheduleColumn = 8, kMonthGap = 4, kHourHigh = 9;
constexpr double kMonthWide = kDayTypes * kScheduleColumn + kMonthGap, kScheduleWide = kMonths * kMonthWide,
                 kScheduleHigh = kDayHours * kHourHigh, kKeyTop = kScheduleTop + kScheduleHigh + 52,
                 kProfilesTop = kKeyTop + 50;
constexpr double kProfileStep = kScheduleWide / 4, kProfileWide = kProfileStep - 30, kProfileHigh = 70,
                 kProfileRow = 120;

const svg::Ramp kShares{{255, 255, 229}, {254, 227, 145}, {254, 153, 41}, {204, 76, 2}, {102, 37, 6}};

/// The colors of a type's values where these are few, with what each means.
struct Meaning {
  int value;
  const char *color, *text;
};
constexpr Meaning kOccupancy[]{{-1, "#2b6ca3", "occupied"}, {0, "#e3ebf2", "unoccupied"}};
constexpr Meaning kPeriods[]{
    {1, "#a50026", "peak"}, {2, "#f46d43", "mid-peak"}, {3, "#fee090", "normal peak"}, {4, "#74add1", "off-peak"}};

std::span<const Meaning> meanings_of(const SCH_Schedule& schedule) {
  if (schedule.ScheduleType == SCH_ScheduleTypes::ST_FAN_TSTAT) return kOccupancy;
  if (schedule.ScheduleType == SCH_ScheduleTypes::ST_RATE) return kPeriods;
  return {};
}

/// The profile of a day, 0 where the record names none that there is.
int profile_on(const SCH_Schedule& schedule, int month, int day) {
  const int profile = schedule.Applicable(month, day);
  return profile >= 1 && profile <= kProfiles ? profile : 0;
}

std::string color_at(const SCH_Schedule& schedule, int profile, int hour) {
  const int value = schedule.HourlyValue(profile, hour);
  const auto meanings = meanings_of(schedule);
  if (meanings.empty()) return svg::color_of(kShares, value / 100.0);
  const auto found = std::ranges::find(meanings, value, &Meaning::value);
  return found == meanings.end() ? "#888" : found->color;
}

/// One path a color: a stroke for every run of hours of a day type. Hour 0 is at the bottom.
std::string cells(const SCH_Schedule& schedule) {
  std::map<std::string, std::string> ways;
  for (int month = 1; month <= kMonths; ++month) {
    for (int day = 0; day < kDayTypes; ++day) {
      const int profile = profile_on(schedule, month, day);
      const double x = kScheduleLeft + (month - 1) * kMonthWide + (day + 0.5) * kScheduleColumn;
      for (int hour = 0, end = 0; profile > 0 && hour < kDayHours; hour = end) {
        const std::string color = color_at(schedule, profile, hour);
        for (end = hour + 1; end < kDayHours && color_at(schedule, profile, end) == color;) ++end;
        ways[color] += "M" + number(x) + " " + number(kScheduleTop + kScheduleHigh - hour * kHourHigh, 0) + "v" +
                       number(-(end - hour) * kHourHigh, 0);
      }
    }
  }
  std::string out = "<g fill=\"none\" stroke-width=\"" + number(kScheduleColumn - 1) + "\">\n";
  for (const auto& [color, way] : ways) out += path(way, "stroke=\"" + color + "\"");
  return out + "</g>\n";
}

std::string axes() {
  constexpr std::string_view kDayLetters = "DMTWTFSSH";
  std::string out;
  for (int month = 1; month <= kMonths; ++month) {
    const double left = kScheduleLeft + (month - 1) * kMonthWide;
    for (int day = 0; day < kDayTypes; ++day)
      out += label(left + (day + 0.5) * kScheduleColumn, kScheduleTop + kScheduleHigh + 11,
                   std::string(1, kDayLetters[static_cast<size_t>(day)]),
                   "text-anchor=\"middle\" font-size=\"8\" fill=\"#444\"");
    out += label(left + kDayTypes * kScheduleColumn / 2, kScheduleTop + kScheduleHigh + 27,
                 std::string(kMonthNames[static_cast<size_t>(month) - 1].substr(0, 3)), "text-anchor=\"middle\"");
  }
  for (int clock = 0; clock <= kDayHours; clock += 6)
    out += label(kScheduleLeft - 8, kScheduleTop + kScheduleHigh - clock * kHourHigh + 4, std::to_string(clock) + " h",
                 "text-anchor=\"end\"");
  return out;
}

std::string swatch(double x, const std::string& color, const std::string& text) {
  return "<rect x=\"" + number(x) + "\" y=\"" + number(kKeyTop - 11) +
         "\" width=\"14\" height=\"14\" stroke=\"#999\" fill=\"" + color + "\"/>\n" + label(x + 20, kKeyTop, text);
}

std::string key(const SCH_Schedule& schedule) {
  std::string out;
  double x = kScheduleLeft;
  for (const Meaning& each : meanings_of(schedule)) {
    out += swatch(x, each.color, each.text);
    x += 110;
  }
  for (int share = 0; share <= 100 && meanings_of(schedule).empty(); share += 20) {
    out += swatch(x, svg::color_of(kShares, share / 100.0), std::to_string(share) + " %");
    x += 76;
  }
  return out + label(x + 10, kKeyTop, "columns of a month: D design day, Monday to Sunday, H holiday", "fill=\"#444\"");
}

/// A profile's 24 values as steps: shares of 100 %, or levels of few values.
std::string profile_chart(const SCH_Schedule& schedule, int profile, double left, double top) {
  const auto meanings = meanings_of(schedule);
  const double bottom = top + kProfileHigh, hour_wide = kProfileWide / kDayHours;
  const auto height = [&](int hour) {
    const int value = schedule.HourlyValue(profile, hour);
    if (meanings.empty()) return std::clamp(value / 100.0, 0.0, 1.0);
    const auto place = std::ranges::find(meanings, value, &Meaning::value) - meanings.begin();
    return 1 - static_cast<double>(place) / static_cast<double>(meanings.size());
  };
  std::string out = path("M" + number(left) + " " + number(top) + "V" + number(bottom) + "h" + number(kProfileWide),
                         "fill=\"none\" stroke=\"#999\"");
  for (int hour = 0; hour < kDayHours; ++hour) {
    const double high = height(hour) * kProfileHigh;
    if (high <= 0) continue;
    out += "<rect x=\"" + number(left + hour * hour_wide, 2) + "\" y=\"" + number(bottom - high) + "\" width=\"" +
           number(hour_wide + 0.2, 2) + "\" height=\"" + number(high) + "\" fill=\"" +
           color_at(schedule, profile, hour) + "\"><title>hour " + std::to_string(hour) + ": " +
           std::to_string(schedule.HourlyValue(profile, hour)) + (meanings.empty() ? " %" : "") + "</title></rect>\n";
  }
  for (int clock = 0; clock <= kDayHours; clock += 6)
    out += label(left + clock * hour_wide, bottom + 14, std::to_string(clock),
                 "text-anchor=\"middle\" font-size=\"10\" fill=\"#444\"");
  return out + label(left, top - 8,
                     std::to_string(profile) + "  " +
                         svg::escaped(svg::shortened(std::string(trimmed(schedule.ProfileName(profile).str())), 24)),
                     "font-weight=\"bold\"");
}

/// The profiles that apply on some day.
std::vector<int> used_profiles(const SCH_Schedule& schedule) {
  std::array<bool, kProfiles + 1> used{};
  for (int month = 1; month <= kMonths; ++month) {
    for (int day = 0; day < kDayTypes; ++day) used[static_cast<size_t>(profile_on(schedule, month, day))] = true;
  }
  std::vector<int> all;
  for (int profile = 1; profile <= kProfiles; ++profile) {
    if (used[static_cast<size_t>(profile)]) all.push_back(profile);
  }
  return all;
}

}  // namespace

std::string schedule_picture(const SCH_Schedule& schedule) {
  const std::string name = schedule.Name.trimmed();
  const auto type = text_of(labels<SCH_ScheduleTypes>, schedule.ScheduleType.raw);
  std::string content = "<rect x=\"" + number(kScheduleLeft) + "\" y=\"" + number(kScheduleTop) + "\" width=\"" +
                        number(kScheduleWide - kMonthGap) + "\" height=\"" + number(kScheduleHigh) +
                        "\" fill=\"#ddd\"/>\n" + cells(schedule) + axes() + key(schedule);
  const std::vector<int> used = used_profiles(schedule);
  for (size_t i = 0; i < used.size(); ++i)
    content += profile_chart(schedule, used[i], kScheduleLeft + static_cast<double>(i % 4) * kProfileStep,
                             kProfilesTop + static_cast<double>(i / 4) * kProfileRow);
  const double rows = static_cast<double>((used.size() + 3) / 4);
  return svg::page(kScheduleLeft + kScheduleWide + 30, kProfilesTop + rows * kProfileRow, kScheduleLeft,
                   name + ": schedule", name,
                   (type.empty() ? "type " + std::to_string(schedule.ScheduleType.raw) : std::string(type)) +
                       "; hours of the day upwards, below the profiles; grey where no profile applies",
                   content);
}

}  // namespace tarn
