// The blocks of a result file for the air system as a whole: its name, the weather it was sized for, a summary, loads
// by component, and by month and hour its loads and the states of its air.
#pragma once

#include "tarn/load_components.h"
#include "tarn/result_block.h"

namespace tarn {

struct ResultHeaderRecord {
  Text<32> SystemName;
};
static_assert(sizeof(ResultHeaderRecord) == 32);

struct ResultWeatherRecord {
  Array<R4, 12, Bounds{0, 23}> DB, WB;  // F, by month and hour
  R4 WinterDB, WinterWB;                // F
  R4 RhoCpK;                            // Btu/(hr.cfm.F), of the air at the altitude
  R4 RhoHfgK;                           // Btu/(hr.cfm) for each lb/lb
  R4 Altitude;                          // ft
};
static_assert(sizeof(ResultWeatherRecord) == 2324);

/// Loads in Btu/hr, temperatures in F, airflows in CFM, water flows in gpm.
struct SystemSummaryRecord {
  // Cooling, at the peak of the central coil
  Code<Months> ClgPeakMonth;
  I2 ClgPeakHour;
  R4 ClgOutdoorDB, ClgOutdoorWB;
  R4 ClgCoilTotal, ClgCoilSensible;
  R4 ClgCoilAirflow;
  R4 ClgEnteringDB, ClgEnteringWB, ClgLeavingDB, ClgLeavingWB;
  R4 ClgSensibleHeatRatio, ClgBypassFactor;
  R4 ClgResultingRH;              // %
  R4 ClgWaterFlow, ClgWaterRise;  // the rise in F
  R4 ClgAreaPerTon;               // ft2/ton
  R4 ClgLoadPerArea;              // Btu/(hr.ft2)
  R4 ClgAirflowPerArea;           // CFM/ft2
  R4 ClgAirflowPerTon;            // CFM/ton
  // Heating, at the design hour
  R4 HtgOutdoorDB, HtgOutdoorWB;
  R4 HtgCoilLoad;
  R4 HtgCoilAirflow;
  R4 HtgEnteringDB, HtgLeavingDB;
  R4 HtgWaterFlow, HtgWaterDrop;
  R4 HtgLoadPerArea;
  // The other central coils
  R4 PrecoolTotal, PrecoolSensible, PrecoolAirflow, PrecoolEnteringDB, PrecoolLeavingDB, PrecoolWaterFlow;
  R4 PreheatLoad, PreheatAirflow, PreheatEnteringDB, PreheatLeavingDB, PreheatWaterFlow;
  R4 HumidifierLoad;  // Btu/hr
  R4 HumidifierFlow;  // lb/hr of water
  // Fans
  R4 SupplyFanAirflow, SupplyFanStandardAirflow;
  R4 SupplyFanBHP, SupplyFanPower, SupplyFanStatic;  // bhp, kW, in. wg
  R4 ReturnFanAirflow, ReturnFanStandardAirflow;
  R4 ReturnFanBHP, ReturnFanPower, ReturnFanStatic;
  // Outdoor air, and what is served
  R4 VentAirflow, VentPerArea, VentPerPerson;  // CFM, CFM/ft2, CFM/person
  R4 FloorArea;                                // ft2
  R4 People;
};
static_assert(sizeof(SystemSummaryRecord) == 4 + 55 * 4);

/// Loads in Btu/hr. Details are what a component has: ft2 of surfaces, W of lights and equipment, people, CFM.
struct SystemLoadsRecord {
  Code<Months> ClgPeakMonth;
  I2 ClgPeakHour;
  R4 ClgOutdoorDB, ClgOutdoorWB;  // F
  ByComponent ClgDetail, ClgSensible, ClgLatent;
  R4 ClgTotalSensible, ClgTotalLatent;
  R4 ClgCoilSensible, ClgCoilLatent;  // of the central coil
  R4 HtgOutdoorDB, HtgOutdoorWB;
  ByComponent HtgDetail, HtgSensible, HtgLatent;
  R4 HtgTotalSensible, HtgTotalLatent;
  R4 HtgCoilSensible, HtgCoilLatent;
};
static_assert(sizeof(SystemLoadsRecord) == 4 + 6 * 88 + 12 * 4);

struct HourlyAirRecord {
  R4 CentCoolTot, CentCoolSens, CentHeat;  // Btu/hr, and so the next
  R4 PreCool, PreHeat;
  R4 TermCool, TermHeat;
  R4 ZoneHeat;
  R4 AirFlow;  // CFM
};
static_assert(sizeof(HourlyAirRecord) == 36);

struct HourlyAirTable {
  HourTable<HourlyAirRecord> Hours;
};
static_assert(sizeof(HourlyAirTable) == 10'368);

/// The points at which the air's state is given, in the order of the air's path.
enum class ADL_AirPoints : int16_t {
  Outdoor = 1,
  ReclaimLeaving,
  PreconditionerLeaving,
  Mixed,
  CoolingCoilLeaving,
  HeatingCoilLeaving,
  HumidifierLeaving,
  SupplyFanLeaving,
  SupplyToZones,
  Room,
  PlenumLeaving,
  ReturnFanLeaving,
  Exhaust
};
template <>
inline constexpr CodeText<ADL_AirPoints> code_table<ADL_AirPoints>[] = {
    {ADL_AirPoints::Outdoor, "Outdoor air"},
    {ADL_AirPoints::ReclaimLeaving, "Leaving ventilation reclaim"},
    {ADL_AirPoints::PreconditionerLeaving, "Leaving precool or preheat coil"},
    {ADL_AirPoints::Mixed, "Mixed air"},
    {ADL_AirPoints::CoolingCoilLeaving, "Leaving central cooling coil"},
    {ADL_AirPoints::HeatingCoilLeaving, "Leaving central heating coil"},
    {ADL_AirPoints::HumidifierLeaving, "Leaving humidifier"},
    {ADL_AirPoints::SupplyFanLeaving, "Leaving supply fan"},
    {ADL_AirPoints::SupplyToZones, "Supply air at the zones"},
    {ADL_AirPoints::Room, "Room air"},
    {ADL_AirPoints::PlenumLeaving, "Leaving return plenum"},
    {ADL_AirPoints::ReturnFanLeaving, "Leaving return fan"},
    {ADL_AirPoints::Exhaust, "Exhaust air"},
};
inline constexpr int kAirPoints = static_cast<int>(std::size(code_table<ADL_AirPoints>));

/// By `ADL_AirPoints`; the changes are those since the point before.
struct PsychroRecord {
  Array<R4, kAirPoints> DryBulb;                       // F
  Array<R4, kAirPoints> HumidityRatio;                 // lb/lb
  Array<R4, kAirPoints> Airflow;                       // CFM
  Array<R4, kAirPoints> SensibleChange, LatentChange;  // Btu/hr
};
static_assert(sizeof(PsychroRecord) == 260);

struct PsychroTable {
  HourTable<PsychroRecord> Hours;
};
static_assert(sizeof(PsychroTable) == 74'880);

class ADL_DXXFileHeader final : public RecordBlock<ResultHeaderRecord> {
 public:
  ADL_DXXFileHeader() { SystemName = ""; }
  const ClassInfo& info() const override;
};

class ADL_Weather final : public RecordBlock<ResultWeatherRecord> {
 public:
  const ClassInfo& info() const override;
};

class ADL_SSAir final : public RecordBlock<SystemSummaryRecord> {
 public:
  const ClassInfo& info() const override;
};

class ADL_DLAir final : public RecordBlock<SystemLoadsRecord>, public WithComponents {
 public:
  const ClassInfo& info() const override;
};

class ADL_HourlyAirData final : public RecordView<HourlyAirRecord> {
 public:
  using RecordView::RecordView;
  const ClassInfo& info() const override;
};

class ADL_HLAir final : public TableBlock<HourlyAirTable, ADL_HourlyAirData> {
 public:
  const ClassInfo& info() const override;
  Ptr<ADL_HourlyAirData> HourlyAir(Months nMonth, int16_t nHour) { return view(nMonth, nHour); }
  /// Of the months (1) and the hours (2). Error `SubscriptOutOfRange`.
  int16_t LowerBound(int16_t nDimension) const;
  int16_t UpperBound(int16_t nDimension) const;
};

class ADL_SysPsychro final : public RecordView<PsychroRecord> {
 public:
  using RecordView::RecordView;
  const ClassInfo& info() const override;
  /// The text of a point, 1 to 13. Error `SubscriptOutOfRange`.
  std::string PointName(int nPoint) const;
};

class ADL_SPAir final : public TableBlock<PsychroTable, ADL_SysPsychro> {
 public:
  const ClassInfo& info() const override;
  Ptr<ADL_SysPsychro> SPAirClg(Months nMonth, int16_t nHour) { return view(nMonth, nHour); }
  ADL_SysPsychro SPAirHtg;
  void add_spans(Spans& all) override;
};

}  // namespace tarn
