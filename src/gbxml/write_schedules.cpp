// Schedules as years of weeks of days.
#include <array>
#include <set>

#include "gbxml/writing.h"
#include "tarn/schedule.h"

namespace tarn {
namespace {

constexpr const char* kTypesOfDay[]{"CoolingDesignDay", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat", "Sun", "Holiday"};
constexpr int kDaysOfMonth[]{31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
using WeekOfProfiles = std::array<int16_t, 9>;

std::string date(int month, int day) {
  char text[16];
  std::snprintf(text, sizeof text, "2026-%02d-%02d", month, day);
  return text;
}

bool applies(const WeekOfProfiles& week) {
  return std::ranges::all_of(week, [](int16_t profile) { return profile >= 1 && profile <= 8; });
}

void write_schedule(Writing& writing, const SCH_Schedule& schedule, const std::string& id) {
  const bool is_on_off = schedule.ScheduleType == SCH_ScheduleTypes::ST_FAN_TSTAT;
  const char* const type = is_on_off ? "OnOff" : "Fraction";
  Element year = add_named(writing.root, "Schedule", id, schedule.Name.trimmed());
  set(year, "type", type);
  writing.ids.insert(id);
  std::array<WeekOfProfiles, 12> weeks{};
  std::set<int16_t> used;
  for (int month = 1; month <= 12; ++month) {
    for (int day = 0; day < 9; ++day)
      used.insert(weeks[static_cast<size_t>(month) - 1][static_cast<size_t>(day)] = schedule.Applicable(month, day));
  }
  for (int first = 1; first <= 12;) {
    int last = first;
    const WeekOfProfiles& week = weeks[static_cast<size_t>(first) - 1];
    while (last < 12 && weeks[static_cast<size_t>(last)] == week) ++last;
    const std::string name = id + "-week-" + std::to_string(first);
    Element part = add(year, "YearSchedule");
    set(part, "id", id + "-year-" + std::to_string(first));
    add_text(part, "BeginDate", date(first, 1));
    add_text(part, "EndDate", date(last, kDaysOfMonth[last - 1]));
    set(add(part, "WeekScheduleId"), "weekScheduleIdRef", name);
    Element days = add(writing.root, "WeekSchedule");
    set(days, "id", name);
    set(days, "scheduleType", type);
    for (size_t day = 0; day < week.size(); ++day) {
      Element of_type = add(days, "Day");
      set(of_type, "dayScheduleIdRef", id + "-day-" + std::to_string(week[day]));
      set(of_type, "dayType", kTypesOfDay[day]);
    }
    first = last + 1;
  }
  for (const int16_t profile : used) {
    Element day = add_named(writing.root, "DaySchedule", id + "-day-" + std::to_string(profile),
                            schedule.ProfileName(profile).trimmed());
    set(day, "scheduleType", type);
    for (int hour = 0; hour < 24; ++hour) {
      const int16_t value = schedule.HourlyValue(profile, hour);
      add_text(day, "ScheduleValue", is_on_off ? (value == 0 ? "0" : "1") : decimal(value / 100.0));
    }
  }
}

bool is_whole(const SCH_Schedule& schedule) {
  for (int month = 1; month <= 12; ++month) {
    WeekOfProfiles week{};
    for (int day = 0; day < 9; ++day) week[static_cast<size_t>(day)] = schedule.Applicable(month, day);
    if (!applies(week)) return false;
  }
  return true;
}

}  // namespace

void write_schedules(Writing& writing) {
  for (const int16_t index : writing.indexes("ScheduleIndex")) {
    const auto schedule = writing.project.NewSchedule();
    schedule->Load(index);
    if (schedule->ScheduleType == SCH_ScheduleTypes::ST_RATE)
      writing.note("schedules of utility rates have no place in gbXML");
    else if (!is_whole(*schedule))
      writing.note("the schedule \"" + schedule->Name.trimmed() + "\" has days without a profile and is left out");
    else
      write_schedule(writing, *schedule, numbered("schedule", index));
  }
}

}  // namespace tarn
