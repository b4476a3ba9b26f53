// Cooling towers: TWR.DAT, table TowerIndex. Plants and water loops of air systems refer to them.
#pragma once

#include "tarn/base/flow_units.h"
#include "tarn/storage/entity.h"

namespace tarn {

enum class TWR_ModelingMethods : int16_t {
  TM_ECWT_TURNDOWN = 0,
  TM_TOWER_APPROACH = 1,
  TM_DETAILED_CLGTWR_MODEL = 2,
  TM_SEAWATER_RIVERWATER = 3,
  TM_DRY_COOLER = 4
};
template <>
inline constexpr CodeText<TWR_ModelingMethods> code_table<TWR_ModelingMethods>[] = {
    {TWR_ModelingMethods::TM_ECWT_TURNDOWN, "entering condenser water turned down"},
    {TWR_ModelingMethods::TM_TOWER_APPROACH, "approach"},
    {TWR_ModelingMethods::TM_DETAILED_CLGTWR_MODEL, "detailed cooling tower"},
    {TWR_ModelingMethods::TM_SEAWATER_RIVERWATER, "sea, river or lake water"},
    {TWR_ModelingMethods::TM_DRY_COOLER, "dry cooler"},
};

enum class TWR_ControlTypes : int16_t {
  TC_FAN_CYCLING = 0,
  TC_WATER_BYPASS = 1,
  TC_2SPEED_FAN = 2,
  TC_VARIABLE_FAN = 3
};
template <>
inline constexpr CodeText<TWR_ControlTypes> code_table<TWR_ControlTypes>[] = {
    {TWR_ControlTypes::TC_FAN_CYCLING, "fan cycling"},
    {TWR_ControlTypes::TC_WATER_BYPASS, "water bypass"},
    {TWR_ControlTypes::TC_2SPEED_FAN, "two-speed fan"},
    {TWR_ControlTypes::TC_VARIABLE_FAN, "variable-speed fan"},
};

enum class TWR_AirFlowUOM : int16_t { TAF_CFM = 0, TAF_CFM_PER_TON = 1 };
template <>
inline constexpr CodeText<TWR_AirFlowUOM> code_table<TWR_AirFlowUOM>[] = {
    {TWR_AirFlowUOM::TAF_CFM, "cfm"},
    {TWR_AirFlowUOM::TAF_CFM_PER_TON, "cfm/ton"},
};

enum class TWR_FanPowerUOM : int16_t { TFP_KW = 0, TFP_BHP = 1, TFP_KW_PER_TON = 2 };
template <>
inline constexpr CodeText<TWR_FanPowerUOM> code_table<TWR_FanPowerUOM>[] = {
    {TWR_FanPowerUOM::TFP_KW, "kW"},
    {TWR_FanPowerUOM::TFP_BHP, "hp"},
    {TWR_FanPowerUOM::TFP_KW_PER_TON, "kW/ton"},
};

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
