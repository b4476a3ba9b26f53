// Cooling towers: TWR.DAT, table TowerIndex. Plants and water loops of air systems refer to them.
#pragma once

#include "base/flow_units.h"
#include "storage/entity.h"

namespace tarn {

enum class TWR_ModelingMethods : int16_t {
  TM_ECWT_TURNDOWN = 0,
  TM_TOWER_APPROACH = 1,
  TM_DETAILED_CLGTWR_MODEL = 2,
  TM_SEAWATER_RIVERWATER = 3,
  TM_DRY_COOLER = 4
};
inline constexpr Label kTowerModelLabels[]{{0, "TM_ECWT_TURNDOWN", "entering condenser water turned down"},
                                           {1, "TM_TOWER_APPROACH", "approach"},
                                           {2, "TM_DETAILED_CLGTWR_MODEL", "detailed cooling tower"},
                                           {3, "TM_SEAWATER_RIVERWATER", "sea, river or lake water"},
                                           {4, "TM_DRY_COOLER", "dry cooler"}};
template <>
inline constexpr std::span<const Label> labels<TWR_ModelingMethods> = kTowerModelLabels;

enum class TWR_ControlTypes : int16_t {
  TC_FAN_CYCLING = 0,
  TC_WATER_BYPASS = 1,
  TC_2SPEED_FAN = 2,
  TC_VARIABLE_FAN = 3
};
inline constexpr Label kTowerControlLabels[]{{0, "TC_FAN_CYCLING", "fan cycling"},
                                             {1, "TC_WATER_BYPASS", "water bypass"},
                                             {2, "TC_2SPEED_FAN", "two-speed fan"},
                                             {3, "TC_VARIABLE_FAN", "variable-speed fan"}};
template <>
inline constexpr std::span<const Label> labels<TWR_ControlTypes> = kTowerControlLabels;

enum class TWR_AirFlowUOM : int16_t { TAF_CFM = 0, TAF_CFM_PER_TON = 1 };
inline constexpr Label kTowerAirFlowLabels[]{{0, "TAF_CFM", "cfm"}, {1, "TAF_CFM_PER_TON", "cfm/ton"}};
template <>
inline constexpr std::span<const Label> labels<TWR_AirFlowUOM> = kTowerAirFlowLabels;

enum class TWR_FanPowerUOM : int16_t { TFP_KW = 0, TFP_BHP = 1, TFP_KW_PER_TON = 2 };
inline constexpr Label kTowerFanPowerLabels[]{
    {0, "TFP_KW", "kW"}, {1, "TFP_BHP", "hp"}, {2, "TFP_KW_PER_TON", "kW/ton"}};
template <>
inline constexpr std::span<const Label> labels<TWR_FanPowerUOM> = kTowerFanPowerLabels;

struct TowerRecord {
  Text<35> Name;
  Code<TWR_ModelingMethods> ECWTModel;
  R4 DesignWetBulb, DesignRange, DesignApproach;  // F
  R4 AirFlow;
  Code<TWR_AirFlowUOM> AirFlowUnits;
  R4 FanPower;
  Code<TWR_FanPowerUOM> FanPowerUnits;
  Code<TWR_ControlTypes> TowerControl;
  I2 LowSpdAirflow;       // per cent
  R4 FanElecEff;          // per cent
  Array<R4, 13> AvgECWT;  // F, of the months, and at design
  R4 CondPumpFlow;
  Code<COM_FlowUOM> CondPumpFlowUnits;
};
static_assert(sizeof(TowerRecord) == 127);

class TWR_CoolingTower final : public Entity<TWR_CoolingTower, TowerRecord> {
 public:
  const ClassInfo& info() const override;
  const Kind& kind() const override;

  using Entity::Load;
  void Load(int32_t RecordNumber) { load(RecordNumber, kAllSections); }
};

}  // namespace tarn
