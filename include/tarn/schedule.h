// A schedule: up to eight profiles of 24 hourly values, and which of them applies on each day type of each month.
#pragma once

#include "tarn/base/months.h"
#include "tarn/reflect/collection.h"
#include "tarn/storage/entity.h"

namespace tarn {

enum class SCH_Days : int16_t { Design_Day, Monday, Tuesday, Wednesday, Thursday, Friday, Saturday, Sunday, Holiday };
template <>
inline constexpr CodeText<SCH_Days> code_table<SCH_Days>[] = {
    {SCH_Days::Design_Day, "Design day"},
    {SCH_Days::Monday},
    {SCH_Days::Tuesday},
    {SCH_Days::Wednesday},
    {SCH_Days::Thursday},
    {SCH_Days::Friday},
    {SCH_Days::Saturday},
    {SCH_Days::Sunday},
    {SCH_Days::Holiday},
};

/// What the hourly values mean: per cent of the peak, `SCH_OccupancyType`, or `SCH_TimeOfDayPeriod`.
enum class SCH_ScheduleTypes : int16_t { ST_FRACTIONAL, ST_FAN_TSTAT, ST_RATE };
template <>
inline constexpr CodeText<SCH_ScheduleTypes> code_table<SCH_ScheduleTypes>[] = {
    {SCH_ScheduleTypes::ST_FRACTIONAL, "Fractional"},
    {SCH_ScheduleTypes::ST_FAN_TSTAT, "Fan and thermostat"},
    {SCH_ScheduleTypes::ST_RATE, "Utility rate time of day"},
};

enum class SCH_OccupancyType : int16_t { SOTV_UNOCCUPIED = 0, SOTV_OCCUPIED = -1 };
enum class SCH_TimeOfDayPeriod : int16_t { SRTV_PEAK = 1, SRTV_MID_PEAK, SRTV_NORMAL_PEAK, SRTV_OFF_PEAK };

/// A record of the schedule file.
struct ScheduleRecord {
  Text<30> Name;
  Code<SCH_ScheduleTypes> ScheduleType;
  Array<Text<20>, 8> ProfileName;
  Array<I2, 8, Bounds{0, 23}> HourlyValue;  // profile, hour; hour 0 is the first of the day
  Array<I2, 12, Bounds{0, 8}> Applicable;   // month, day type: a profile's number
};
static_assert(sizeof(ScheduleRecord) == 792);

class SCH_Schedule final : public Entity<SCH_Schedule, ScheduleRecord> {
 public:
  const ClassInfo& info() const override;
  const Kind& kind() const override;

  /// The numbers of the profiles that apply on some day, each once, in increasing order; on design days only, or on
  /// all.
  Ptr<Collection> GetUsedProfiles(bool bDesignOnly) const;
  /// The value at hour 0 to 23. Error `SubscriptOutOfRange` also where no profile applies.
  int16_t GetValue(Months M, SCH_Days d, int16_t h) const;
};

}  // namespace tarn
