#include "tarn/schedule.h"

#include <set>

#include "storage/kind.h"

namespace tarn {

const Kind& SCH_Schedule::kind() const {
  static const Kind kind{.class_name = "SCH_Schedule",
                         .index_table = "ScheduleIndex",
                         .default_word = "Schedule",
                         .missing_row_message = "Invalid index value: ",
                         .columns = {summary<SCH_Schedule, &ScheduleRecord::ScheduleType>("nScheduleType")},
                         .reach = {Results::DesignAndSimulation,
                                   {{Stage::Spaces, {{"Space_Schedule_Links", "Schedule_ID", "Space_ID"}}},
                                    {Stage::Systems, {{"System_Schedule_Links", "Schedule_ID", "System_ID"}}},
                                    {Stage::Plants, {{"Plant_Schedule_Links", "Schedule_ID", "Plant_ID"}}},
                                    {Stage::Buildings, {{"Building_Schedule_Links", "Schedule_ID", "Building_ID"}}},
                                    {Stage::Buildings,
                                     {{"ElectricRate_Schedule_Links", "Schedule_ID", "ElectricRate_ID"},
                                      {"Building_ElectricRate_Links", "ElectricRate_ID", "Building_ID"}}},
                                    {Stage::Buildings,
                                     {{"FuelRate_Schedule_Links", "Schedule_ID", "FuelRate_ID"},
                                      {"Building_FuelRate_Links", "FuelRate_ID", "Building_ID"}}}}},
                         .numbered_names = false};
  return kind;
}

const ClassInfo& SCH_Schedule::info() const {
  using R = ScheduleRecord;
  using C = SCH_Schedule;
  static constexpr auto members = describe<C>(
      Failures::Trapped, property<&C::m_bCloning>, method<&C::Reset>("bResetAll"), property<&R::Applicable>,
      method<&C::Clone>("nIndex"), method<&C::CopyInstance>, property<&R::ProfileName>, property<&R::HourlyValue>,
      method<&C::GetFreeIndex>, method<&C::Delete>("nRecNum"), method<&C::GetDBHandle>, method<&C::SetDBHandle>("DB"),
      property<&C::Index>.read_only(), method<&C::Load>("nRecNum"), property<&C::FileName>, method<&C::Save>,
      method<&C::CreateDefault>, property<&R::Name>, property<&R::ScheduleType>,
      method<&C::GetUsedProfiles>("bDesignOnly"), method<&C::GetValue>("M", "d", "h"),
      method<&C::IsNameUnique>("sName"), event<&C::OnUpdateDependencies>("OverrideDefault"));
  static const ClassInfo info(members);
  return info;
}

Ptr<Collection> SCH_Schedule::GetUsedProfiles(bool bDesignOnly) const {
  std::set<int16_t> used;
  for (int month = 1; month <= 12; ++month) {
    for (int day = 0; day <= (bDesignOnly ? 0 : 8); ++day) used.insert(Applicable(month, day));
  }
  used.erase(0);
  auto collection = std::make_shared<Collection>();
  for (const int16_t profile : used) collection->add(profile);
  return collection;
}

int16_t SCH_Schedule::GetValue(Months M, SCH_Days d, int16_t h) const {
  const int16_t profile = Applicable(M, d);
  if (profile == 0) {
    fail(ErrorNumber::SubscriptOutOfRange, "Subscript out of range: no profile applies in month " +
                                               std::to_string(static_cast<int>(M)) + " on day type " +
                                               std::to_string(static_cast<int>(d)) + ".");
  }
  return HourlyValue(profile, h);
}

}  // namespace tarn
