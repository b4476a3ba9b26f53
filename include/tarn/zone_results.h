// The blocks of a result file for each zone: the sizing of its terminal, its loads by month and hour, and the loads by
// component, for the zone and for each of its spaces.
#pragma once

#include "tarn/air_system_codes.h"
#include "tarn/load_components.h"
#include "tarn/reflect/collection.h"
#include "tarn/result_block.h"

namespace tarn {

/// Loads in Btu/hr, temperatures in F, airflows in CFM, water flows in gpm.
struct TerminalSizingRecord {
  Code<Months> PeakMonth;  // of the sensible cooling load
  I2 PeakHour;
  R4 PeakSensible, PeakTotal;
  R4 HeatingLoad;
  R4 DesignAirflow, MinAirflow;
  R4 AirflowPerArea;  // CFM/ft2
  R4 VentAirflow;
  R4 FloorArea;  // ft2
  R4 People;
  Code<AS_SupplyTerminalTypes> TermType;
  R4 ReheatCoilLoad, ReheatCoilFlow;
  R4 CoolCoilTotal, CoolCoilSensible, CoolCoilFlow;
  R4 CoolCoilEnteringDB, CoolCoilEnteringWB, CoolCoilLeavingDB, CoolCoilLeavingWB;
  R4 HeatCoilLoad, HeatCoilFlow;
  R4 HeatCoilEnteringDB, HeatCoilLeavingDB;
  R4 TermFanAirflow, TermFanBHP, TermFanPower;  // CFM, bhp, kW
  Code<AS_SupplementalHeatUnitTypes> HeatUnitType;
  R4 HeatUnitLoad, HeatUnitFlow;
  R4 HeatUnitFanAirflow;
};
static_assert(sizeof(TerminalSizingRecord) == 8 + 28 * 4);

/// Loads in Btu/hr.
struct ZoneHourRecord {
  R4 OutdoorDB, ZoneDB;   // F
  R4 ZoneRH;              // %
  R4 ZoneSensible;        // the load
  R4 ZoneConditioning;    // what is taken from the zone, or given to it
  R4 TermCool, TermHeat;  // of the terminal's coils
  R4 ZoneHeat;            // of the heating unit
  R4 AirFlow;             // CFM
};
static_assert(sizeof(ZoneHourRecord) == 36);

struct ZoneHourTable {
  HourTable<ZoneHourRecord> Hours;
};
static_assert(sizeof(ZoneHourTable) == 10368);

/// Btu/hr.
struct ZoneLoadsRecord {
  ByComponent Sensible, Latent;
  R4 TotalSensible, TotalLatent;
};
static_assert(sizeof(ZoneLoadsRecord) == 184);

struct ZoneLoadsTable {
  HourTable<ZoneLoadsRecord> Hours;
};
static_assert(sizeof(ZoneLoadsTable) == 52'992);

/// The conditions of a zone's loads.
struct LoadDetailsRecord {
  Code<Months> PeakMonth;  // of the cooling load
  I2 PeakHour;
  R4 ClgOutdoorDB, ClgOutdoorWB, ClgThermostat;  // F, at that hour
  R4 HtgOutdoorDB, HtgOutdoorWB, HtgThermostat;  // F
  R4 FloorArea;                                  // ft2
  R4 People;
  ByComponent ClgDetail, HtgDetail;  // ft2 of surfaces, W of lights and equipment, people, CFM
};
static_assert(sizeof(LoadDetailsRecord) == 4 + 8 * 4 + 2 * 88);

/// Loads in Btu/hr of one space; the multiplier says how many equal ones there are.
struct SpaceLoadsRecord {
  I2 SpaceID;
  Text<24> Name;
  I2 Multiplier;
  R4 FloorArea;  // ft2
  R4 People;
  R4 Airflow;              // CFM
  Code<Months> PeakMonth;  // of the cooling load
  I2 PeakHour;
  ByComponent ClgDetail, ClgSensible, ClgLatent, HtgDetail, HtgLoad;
  R4 ClgTotalSensible, ClgTotalLatent, HtgTotal;
};
static_assert(sizeof(SpaceLoadsRecord) == 28 + 3 * 4 + 4 + 5 * 88 + 3 * 4);

class ADL_TerminalSizing final : public RecordBlock<TerminalSizingRecord> {
 public:
  const ClassInfo& info() const override;
};

class ADL_TSZone final : public ResultBlock {
 public:
  const ClassInfo& info() const override;
  ADL_TerminalSizing TerminalSizing;
  void add_spans(Spans& all) override { TerminalSizing.add_spans(all); }
};

class ADL_HourlyZoneData final : public RecordView<ZoneHourRecord> {
 public:
  using RecordView::RecordView;
  const ClassInfo& info() const override;
};

class ADL_HLZone final : public TableBlock<ZoneHourTable, ADL_HourlyZoneData> {
 public:
  const ClassInfo& info() const override;
  Ptr<ADL_HourlyZoneData> HLZoneClg(Months nMonth, int16_t nHour) { return view(nMonth, nHour); }
  ADL_HourlyZoneData HLZoneHtg;
  void add_spans(Spans& all) override;
};

class ADL_CoolingLoads final : public RecordView<ZoneLoadsRecord>, public WithComponents {
 public:
  using RecordView::RecordView;
  const ClassInfo& info() const override;
};

class ADL_HeatingLoads final : public RecordBlock<ZoneLoadsRecord>, public WithComponents {
 public:
  const ClassInfo& info() const override;
};

class ADL_LoadDetails final : public RecordBlock<LoadDetailsRecord>, public WithComponents {
 public:
  const ClassInfo& info() const override;
};

class ADL_SpaceLoads final : public RecordBlock<SpaceLoadsRecord>, public WithComponents {
 public:
  ADL_SpaceLoads() { Name = ""; }
  const ClassInfo& info() const override;
};

class ADL_DLZone final : public TableBlock<ZoneLoadsTable, ADL_CoolingLoads> {
 public:
  const ClassInfo& info() const override;
  Ptr<ADL_CoolingLoads> CoolingLoads(Months nMonth, int16_t nHour) { return view(nMonth, nHour); }
  ADL_HeatingLoads HeatingLoads;
  ADL_LoadDetails LoadDetails;
  /// The zone's own list, not a copy.
  Ptr<Collection> DLSpaces() const { return list_; }
  /// From 1. Error `SubscriptOutOfRange`.
  Ptr<ADL_SpaceLoads> DLSpace(int16_t nIndex) const;
  const std::vector<Ptr<ADL_SpaceLoads>>& spaces() const { return spaces_; }
  /// New objects are empty.
  void resize_spaces(int count);
  void add_spans(Spans& all) override;
  std::vector<std::pair<std::string, ResultBlock*>> rest() const override;

 private:
  void fit(const ResultBlock& other) override;

  std::vector<Ptr<ADL_SpaceLoads>> spaces_;
  Ptr<Collection> list_ = std::make_shared<Collection>();
};

}  // namespace tarn
