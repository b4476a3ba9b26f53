// The results of an air system: sizing, which has fixed records, and simulation, whose widths are this layer's own:
// eight counts of hours a zone, unmet loads by load type and month, and one element for each hour of the year in what
// is hourly. A real whose unit no comment gives has the unit of the calculation engines; nothing is converted here.
#pragma once

#include "tarn/air_system_codes.h"
#include "tarn/base/months.h"
#include "tarn/storage/hourly_results.h"

namespace tarn {

struct AirSizingRecord {
  R4 CoolingSupplyTemp, CoolingTermTemp, HeatingSupplyTemp;  // F
  R4 SupplyFan1CFM, SupplyFan2CFM, VentCFM, ExhaustCFM;
  R4 FloorArea;  // ft2
  // From here on what the user chooses, which is an input.
  Code<AS_SizingMethodTypes> SizingMethod;
  Code<AS_SizingSourceTypes> Source;
  R4 CWDeltaT, HWDeltaT;  // F
  Code<Months> CalcStartMonth, CalcEndMonth;
  Bool SDLSForPeakHour;
  Code<Months> SDLSMonth;
  I2 SDLSHour;
};
static_assert(sizeof(AirSizingRecord) == 54);

struct ZoneSizingRecord {
  R4 MaxCFM, MinCFM, TermCFM;
  R4 ReheatCapacity, SpaceHeatCapacity;
  R4 FloorArea;  // ft2
  R4 CoolingCoilTot, HeatingCoilTot, MaxCooling, MaxHeating;
  R4 MaxPeople;
  R4 CoolingSupplyTemp, HeatingSupplyTemp;  // F
  R4 G0, G1, G2, P1;
  I2 Reserved;
};
static_assert(sizeof(ZoneSizingRecord) == 70);

struct CoilSizingRecord {
  Array<R4, 12, 24> CentralClgCoil, PrecoolCoil, TermClgCoil;
  R4 MaxCentralClg, MaxPrecool, MaxTermClg, CentralHeatCoil, PreheatCoil, TerminalHeatCoil, SpaceHeatCoil,
      HumidifierLoad;
};
static_assert(sizeof(CoilSizingRecord) == 3488);

struct ZoneTemperatureRecord {
  R4 OccMaxTemp, OccMinTemp, UnoccMaxTemp, UnoccMinTemp, OccClgLimitTemp, OccHtgLimitTemp, UnoccClgLimitTemp,
      UnoccHtgLimitTemp;     // F
  Array<I2, 8> StatusHours;  // counts of hours
};
static_assert(sizeof(ZoneTemperatureRecord) == 48);

struct UnmetLoadsRecord {
  Array<Bool, 6> StatsProvided;
  Array<Text<30>, 6> EqptType;
  Array<R4, 6, 12> CapSufficient, CapDeficientBy5, CapDeficientBy10, CapDeficientOver10;
};
static_assert(sizeof(UnmetLoadsRecord) == 1344);

struct LeedUnmetLoadsRecord {
  Array<Bool, kHoursInYear> ClgStatus, HtgStatus;
};
static_assert(sizeof(LeedUnmetLoadsRecord) == 35040);

struct AS_AirSizing final : Part<AirSizingRecord> {
  const ClassInfo& info() const override;
};

struct AS_ZoneSizingData final : Part<ZoneSizingRecord> {
  const ClassInfo& info() const override;
};

struct AS_CoilSize final : Part<CoilSizingRecord> {
  const ClassInfo& info() const override;
};

struct AS_ZoneTemperature final : Part<ZoneTemperatureRecord> {
  const ClassInfo& info() const override;
  void ResetData() { static_cast<Record&>(*this) = {}; }
};

struct AS_UnmetLoads final : Part<UnmetLoadsRecord> {
  const ClassInfo& info() const override;
  void ResetData() { static_cast<Record&>(*this) = {}; }
};

struct AS_LEEDUnmetLoads final : Part<LeedUnmetLoadsRecord> {
  const ClassInfo& info() const override;
};

struct AS_HourlyResults final : HourlyResults {
  const ClassInfo& info() const override;
};

struct AS_HourlySimData final : HourlyList<AS_HourlyResults> {
  const ClassInfo& info() const override;
};

}  // namespace tarn
