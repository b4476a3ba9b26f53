#include "gbxml/schedules.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <optional>
#include <set>

#include "tarn/schedule.h"

namespace tarn {
namespace {

constexpr int kMonths = 12, kDayTypes = 9, kDayHours = 24, kProfiles = 8, kYearDays = 365;
constexpr std::array<int, kMonths + 1> kFirstDay{0, 31, 59, 90, 120, 151, 181, 212, 243, 273, 304, 334, 365};

using Profile = std::array<int16_t, kDayHours>;
/// A day schedule for each `SCH_Days`; null where the file tells none.
using Week = std::array<Element, kDayTypes>;

/// Which days a `dayType` is; later rows are more special and win.
constexpr unsigned bits(std::initializer_list<int> days) {
  unsigned all = 0;
  for (const int day : days) all |= 1U << day;
  return all;
}
constexpr struct {
  std::string_view type;
  unsigned days;
} kDayRows[]{{"All", bits({0, 1, 2, 3, 4, 5, 6, 7, 8})},
             {"Weekday", bits({1, 2, 3, 4, 5})},
             {"WeekendOrHoliday", bits({6, 7, 8})},
             {"Weekend", bits({6, 7})},
             {"Holiday", bits({8})},
             {"Mon", bits({1})},
             {"Tue", bits({2})},
             {"Wed", bits({3})},
             {"Thu", bits({4})},
             {"Fri", bits({5})},
             {"Sat", bits({6})},
             {"Sun", bits({7})},
             {"CoolingDesignDay", bits({0})}};
/// For a day that a week leaves out, another of the week that is most like it.
constexpr std::array<int, kDayTypes> kLike{1, 2, 1, 2, 3, 4, 7, 6, 7};

/// The day of a year of 365, from 0, of "2019-06-30"; nothing for another text.
std::optional<int> day_of(std::string_view date) {
  int parts[3]{};
  size_t part = 0;
  for (const char c : date) {
    if (c == '-' && part < 2)
      ++part;
    else if (c >= '0' && c <= '9' && parts[part] < 100'000)
      parts[part] = parts[part] * 10 + (c - '0');
    else
      return {};
  }
  if (part != 2 || parts[1] < 1 || parts[1] > kMonths || parts[2] < 1 || parts[2] > 31) return {};
  const auto month = static_cast<size_t>(parts[1]);
  return std::min(kFirstDay[month - 1] + parts[2] - 1, kFirstDay[month] - 1);
}

class ScheduleFiller {
 public:
  ScheduleFiller(Filling& filling, Element element, bool is_on_off)
      : filling_(filling), document_(filling.document), element_(element), is_on_off_(is_on_off) {}

  void fill(SCH_Schedule& schedule) {
    schedule.ScheduleType = is_on_off_ ? SCH_ScheduleTypes::ST_FAN_TSTAT : SCH_ScheduleTypes::ST_FRACTIONAL;
    const auto weeks = weeks_of_months();
    for (int month = 1; month <= kMonths; ++month) {
      const Week week = days_of(weeks[static_cast<size_t>(month) - 1]);
      for (int day = 0; day < kDayTypes; ++day)
        days_[static_cast<size_t>(month) - 1][static_cast<size_t>(day)] = profile(week[static_cast<size_t>(day)]);
    }
    merge_to_fit();
    write(schedule);
  }

 private:
  void note(Element at, const std::string& text) { filling_.tally.note(document_, at, text); }

  /// The week schedule that most days of each month have.
  std::array<Element, kMonths> weeks_of_months() {
    std::array<Element, kYearDays> of_day;
    bool whole_months = true;
    each_child(element_, "YearSchedule", [&](Element year) {
      const auto first = day_of(child_text(year, "BeginDate")), last = day_of(child_text(year, "EndDate"));
      if (!first || !last) document_.refuse(year, "BeginDate or EndDate is no date such as 2026-06-30");
      const Element reference = child(year, "WeekScheduleId");
      const std::string_view id = attribute(reference, "weekScheduleIdRef");
      const Element week = document_.by_id("WeekSchedule", id);
      if (!week)
        document_.refuse(year, "it refers to the week \"" + std::string(id) + "\", which the file does not have");
      for (int day = *first;; day = (day + 1) % kYearDays) {
        of_day[static_cast<size_t>(day)] = week;
        if (day == *last) break;
      }
      const auto begins = [](int day) { return std::ranges::find(kFirstDay, day) != kFirstDay.end(); };
      whole_months = whole_months && begins(*first) && begins(*last + 1);
    });
    if (!whole_months)
      note(element_, "a week of it begins or ends within a month; the month has the week of most of its days");
    std::array<Element, kMonths> weeks;
    for (size_t month = 0; month < kMonths; ++month) {
      std::map<std::string_view, std::pair<int, Element>> days;
      for (int day = kFirstDay[month]; day < kFirstDay[month + 1]; ++day) {
        const Element week = of_day[static_cast<size_t>(day)];
        if (week) days[attribute(week, "id")] = {days[attribute(week, "id")].first + 1, week};
      }
      int most = 0;
      for (const auto& [id, row] : days) {
        if (row.first > most) std::tie(most, weeks[month]) = row;
      }
      if (most == 0) note(element_, "it tells nothing for some months; they have 0 %");
    }
    return weeks;
  }

  Week days_of(Element week) {
    Week days;
    for (const auto& row : kDayRows) {
      each_child(week, "Day", [&](Element day) {
        if (attribute(day, "dayType") != row.type) return;
        const std::string_view id = attribute(day, "dayScheduleIdRef");
        const Element schedule = document_.by_id("DaySchedule", id);
        if (!schedule)
          document_.refuse(day, "it refers to the day \"" + std::string(id) + "\", which the file does not have");
        for (size_t type = 0; type < kDayTypes; ++type) {
          if ((row.days >> type & 1) != 0) days[type] = schedule;
        }
      });
    }
    each_child(week, "Day", [&](Element day) {
      const std::string_view type = attribute(day, "dayType");
      if (std::ranges::find(kDayRows, type, [](const auto& row) { return row.type; }) == std::end(kDayRows))
        note(day, "a schedule has no day of the type " + std::string(type) + "; it is left out");
    });
    for (int round = 0; round < kDayTypes; ++round) {
      for (size_t type = 0; type < kDayTypes; ++type) {
        if (!days[type]) days[type] = days[static_cast<size_t>(kLike[type])];
      }
    }
    for (size_t type = 0; type < kDayTypes; ++type) {  // whatever there is
      for (size_t other = 0; other < kDayTypes && !days[type]; ++other) days[type] = days[other];
    }
    return days;
  }

  /// Per cent of the peak by the hour; the values of a file divide the day evenly.
  size_t profile(Element day) {
    if (!day) return profile_of(Profile{}, "Nothing");
    const auto known = of_day_.find(day.internal_object());
    if (known != of_day_.end()) return known->second;
    std::vector<double> values;
    each_child(day, "ScheduleValue", [&](Element value) { values.push_back(document_.number(value)); });
    if (values.empty()) document_.refuse(day, "it has no ScheduleValue");
    Profile hours{};
    const double step = static_cast<double>(values.size()) / kDayHours;
    for (int hour = 0; hour < kDayHours; ++hour) {  // the mean over the hour
      double sum = 0;
      const double begin = hour * step, end = begin + step;
      for (auto at = static_cast<size_t>(begin); at < values.size() && static_cast<double>(at) < end; ++at) {
        const double part = std::min(end, static_cast<double>(at + 1)) - std::max(begin, static_cast<double>(at));
        sum += values[at] * part;
      }
      const double percent = std::round(100 * sum / step);
      if (percent < 0 || percent > 100) note(day, "it has values outside 0 to 1");
      constexpr auto kOn = static_cast<int16_t>(SCH_OccupancyType::SOTV_OCCUPIED);
      int16_t& of_hour = hours[static_cast<size_t>(hour)];
      if (is_on_off_)
        of_hour = percent >= 50 ? kOn : int16_t{0};
      else
        of_hour = static_cast<int16_t>(std::clamp(percent, -32'000.0, 32'000.0));
    }
    std::string_view name = child_text(day, "Name");
    if (name.empty()) name = attribute(day, "id");
    return of_day_[day.internal_object()] = profile_of(hours, name);
  }

  size_t profile_of(const Profile& hours, std::string_view name) {
    const auto found = std::ranges::find(profiles_, hours);
    if (found != profiles_.end()) return static_cast<size_t>(found - profiles_.begin());
    profiles_.push_back(hours);
    names_.push_back(fitted(name, 20).text);
    return profiles_.size() - 1;
  }

  /// Where there are more than 8 profiles, the one that the fewest days have becomes the nearest of the others.
  void merge_to_fit() {
    if (profiles_.size() <= kProfiles) return;
    note(element_, "it has " + std::to_string(profiles_.size()) +
                       " different days; those of the fewest days become the most like of 8");
    while (profiles_.size() > kProfiles) {
      std::vector<int> uses(profiles_.size());
      for (const auto& month : days_) {
        for (const size_t day : month) ++uses[day];
      }
      const auto rare = static_cast<size_t>(std::ranges::min_element(uses) - uses.begin());
      const auto distance = [&](size_t other) {
        double sum = 0;
        for (size_t hour = 0; hour < kDayHours; ++hour) {
          const double off = profiles_[rare][hour] - profiles_[other][hour];
          sum += off * off;
        }
        return sum;
      };
      size_t nearest = rare == 0 ? 1 : 0;
      for (size_t other = 0; other < profiles_.size(); ++other) {
        if (other != rare && distance(other) < distance(nearest)) nearest = other;
      }
      for (auto& month : days_) {
        for (size_t& day : month) {
          if (day == rare) day = nearest;
          if (day > rare) --day;
        }
      }
      profiles_.erase(profiles_.begin() + static_cast<ptrdiff_t>(rare));
      names_.erase(names_.begin() + static_cast<ptrdiff_t>(rare));
    }
  }

  void write(SCH_Schedule& schedule) {
    for (int number = 1; number <= kProfiles; ++number) {
      const auto at = static_cast<size_t>(number) - 1;
      schedule.ProfileName(number) = at < names_.size() ? names_[at] : "Profile " + std::to_string(number);
      for (int hour = 0; hour < kDayHours; ++hour)
        schedule.HourlyValue(number, hour) =
            at < profiles_.size() ? profiles_[at][static_cast<size_t>(hour)] : int16_t{0};
    }
    for (int month = 1; month <= kMonths; ++month) {
      for (int day = 0; day < kDayTypes; ++day) {
        const size_t profile = days_[static_cast<size_t>(month) - 1][static_cast<size_t>(day)];
        schedule.Applicable(month, day) = static_cast<int16_t>(profile + 1);
      }
    }
  }

  Filling& filling_;
  const GbxmlDocument& document_;
  Element element_;
  bool is_on_off_;
  std::vector<Profile> profiles_;
  std::vector<std::string> names_;
  std::map<void*, size_t> of_day_;
  std::array<std::array<size_t, kDayTypes>, kMonths> days_{};  // places in profiles_
};

}  // namespace

void Schedules::fill_all() {
  std::set<std::string_view> of_spaces;  // loads go by per cent, also where they are on or off
  for (const DrawnSpace& space : filling_.drawing.spaces) {
    for (const char* reference :
         {"scheduleIdRef", "peopleScheduleIdRef", "lightScheduleIdRef", "equipmentScheduleIdRef"})
      of_spaces.insert(attribute(space.element, reference));
  }
  for (const Element element : filling_.document.all("Schedule")) {
    filling_.tally.found("Schedule");
    const std::string_view id = attribute(element, "id"), type = attribute(element, "type");
    if (type != "Fraction" && type != "OnOff") {
      filling_.tally.left(filling_.document, element, "Schedule",
                          "a schedule of a project has fractions, and no values of the type " + std::string(type));
      continue;
    }
    indexes_[id] = filling_.entity(filling_.project.NewSchedule(), std::string(id), [&](SCH_Schedule& schedule, bool) {
      schedule.Name = filling_.name_for(schedule, child_text(element, "Name"), id, 30, element);
      ScheduleFiller(filling_, element, type == "OnOff" && !of_spaces.contains(id)).fill(schedule);
    });
    filling_.tally.taken("Schedule");
  }
}

int16_t Schedules::index(Element user, const char* reference) {
  const std::string_view id = attribute(user, reference);
  if (id.empty()) return 0;
  const auto found = indexes_.find(id);
  if (found != indexes_.end()) return found->second;
  if (!filling_.document.by_id("Schedule", id))
    filling_.tally.note(filling_.document, user,
                        std::string(reference) + " refers to a schedule that the file does not have");
  return 0;
}

}  // namespace tarn
