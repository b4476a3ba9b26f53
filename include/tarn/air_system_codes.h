// The codes of air systems as a whole, of their air, zones and sizing.
#pragma once

#include "tarn/base/labels.h"

namespace tarn {

enum class AS_SystemTypes : int16_t {
  SingleZoneCAV = 1,
  CAVWithTerminalReheat = 2,
  TwoDeckMultizone = 3,
  ThreeDeckMultizone = 4,
  DualDuctCAV = 5,
  MakeupAir_DOAS = 6,
  FourPipeInduction = 7,
  VAV = 8,
  OneFanDualDuctVAV = 9,
  TwoFanDualDuctVAV = 10,
  VVT = 11,
  PackagedDXFanCoil = 12,
  SplitDXFanCoil = 13,
  WaterSourceHeatPump = 14,
  TwoPipeFanCoil = 15,
  FourPipeFanCoil = 16,
  ConvectiveCoolingAndHeating = 17,
  GroundwaterSourceHeatPump = 18,
  GroundSourceHeatPump = 19,
  VariableRefrigerantFlow = 20,
  InductionBeam = 21,
  ActiveChilledBeam = 22
};
template <>
inline constexpr CodeTitle<AS_SystemTypes> code_table<AS_SystemTypes>[] = {
    {AS_SystemTypes::SingleZoneCAV, "1. Single Zone CAV"},
    {AS_SystemTypes::CAVWithTerminalReheat, "2. CAV with Terminal Reheat"},
    {AS_SystemTypes::TwoDeckMultizone, "3. 2-Deck Multizone"},
    {AS_SystemTypes::ThreeDeckMultizone, "4. 3-Deck Multizone"},
    {AS_SystemTypes::DualDuctCAV, "5. Dual Duct CAV"},
    {AS_SystemTypes::MakeupAir_DOAS, "6. MakeupAir_DOAS"},
    {AS_SystemTypes::FourPipeInduction, "7. Four Pipe Induction"},
    {AS_SystemTypes::VAV, "8. VAV"},
    {AS_SystemTypes::OneFanDualDuctVAV, "9. 1-Fan Dual Duct VAV"},
    {AS_SystemTypes::TwoFanDualDuctVAV, "10. 2-Fan Dual Duct VAV"},
    {AS_SystemTypes::VVT, "11. VVT"},
    {AS_SystemTypes::PackagedDXFanCoil, "12. Packaged DX Fan Coil"},
    {AS_SystemTypes::SplitDXFanCoil, "13. Split DX Fan Coil"},
    {AS_SystemTypes::WaterSourceHeatPump, "14. Water Source Heat Pump"},
    {AS_SystemTypes::TwoPipeFanCoil, "15. 2-Pipe Fan Coil"},
    {AS_SystemTypes::FourPipeFanCoil, "16. 4-Pipe Fan Coil"},
    {AS_SystemTypes::ConvectiveCoolingAndHeating, "17. Convective Cooling & Heating"},
    {AS_SystemTypes::GroundwaterSourceHeatPump, "18. Groundwater Source Heat Pump"},
    {AS_SystemTypes::GroundSourceHeatPump, "19. Ground Source Heat Pump"},
    {AS_SystemTypes::VariableRefrigerantFlow, "20. Variable Refrigerant Flow (VRF)"},
    {AS_SystemTypes::InductionBeam, "21. Induction Beam"},
    {AS_SystemTypes::ActiveChilledBeam, "22. Active Chilled Beam"},
};

enum class AS_EquipmentTypes : int16_t {
  ET_GENERIC = 1,
  ET_PKG_RTU = 2,
  ET_PKG_VERT_UNIT = 3,
  ET_SPLIT_AHU = 4,
  ET_CW_AHU = 5,
  ET_FANCOILS = 6
};
template <>
inline constexpr auto code_table<AS_EquipmentTypes> =
    codes_between<AS_EquipmentTypes::ET_GENERIC, AS_EquipmentTypes::ET_FANCOILS>;

enum class AS_SupplyAirTempTypes : int16_t {
  ConstantFanCycled = 0,
  ConstantFanOn = 1,
  CycledOrStagedCoilFanOn = 2,
  ResetByGreatestZoneDemand = 3,
  ResetByOutdoorAirSchedule = 4
};
template <>
inline constexpr CodeTitle<AS_SupplyAirTempTypes> code_table<AS_SupplyAirTempTypes>[] = {
    {AS_SupplyAirTempTypes::ConstantFanCycled, "0. Constant Temperature - Fan Cycled"},
    {AS_SupplyAirTempTypes::ConstantFanOn, "1. Constant Temperature - Fan On"},
    {AS_SupplyAirTempTypes::CycledOrStagedCoilFanOn, "2. Cycled or Staged Coil - Fan On"},
    {AS_SupplyAirTempTypes::ResetByGreatestZoneDemand, "3. Temperature Reset based on Greatest Zone Demand"},
    {AS_SupplyAirTempTypes::ResetByOutdoorAirSchedule, "4. Temperature Reset based on Outdoor Air Schedule"},
};

enum class AS_VentilationControlTypes : int16_t {
  Proportional = 1,
  ConstantAirflow = 2,
  Scheduled = 3,
  DCVProportional = 4
};
template <>
inline constexpr CodeTitle<AS_VentilationControlTypes> code_table<AS_VentilationControlTypes>[] = {
    {AS_VentilationControlTypes::Proportional, "1. Proportional"},
    {AS_VentilationControlTypes::ConstantAirflow, "2. Constant Ventilation Airflow"},
    {AS_VentilationControlTypes::Scheduled, "3. Scheduled control"},
    {AS_VentilationControlTypes::DCVProportional, "4. DCV Proportional control"},
};

enum class AS_AirflowSpec : int16_t {
  VU_CFM = 1,
  VU_CFMSQFT = 2,
  VU_CFMPERSON = 3,
  VU_PERCENT_SUPPLY_AIR = 4,
  VU_ACH = 5
};
template <>
inline constexpr auto code_table<AS_AirflowSpec> = codes_between<AS_AirflowSpec::VU_CFM, AS_AirflowSpec::VU_ACH>;

enum class AS_SupplyAirSizingTypes : int16_t {
  SupplyTemperature = 0,
  SupplyAirflow = 1,
  SupplyAirflowPerFloorArea = 2
};
template <>
inline constexpr CodeTitle<AS_SupplyAirSizingTypes> code_table<AS_SupplyAirSizingTypes>[] = {
    {AS_SupplyAirSizingTypes::SupplyTemperature, "0. Supply Temperature (F)"},
    {AS_SupplyAirSizingTypes::SupplyAirflow, "1. Supply Airflow (CFM)"},
    {AS_SupplyAirSizingTypes::SupplyAirflowPerFloorArea, "2. Supply Airflow per unit floor area (CFM/sqft)"},
};

enum class AS_SupplementalHeatUnitTypes : int16_t {
  NotUsed = 0,
  BaseboardByOAT = 1,
  FanCoilByOAT = 2,
  BaseboardByRoomThermostat = 3,
  FanCoilByRoomThermostat = 4
};
template <>
inline constexpr CodeTitle<AS_SupplementalHeatUnitTypes> code_table<AS_SupplementalHeatUnitTypes>[] = {
    {AS_SupplementalHeatUnitTypes::NotUsed, "0 - Not used "},
    {AS_SupplementalHeatUnitTypes::BaseboardByOAT, "1. Baseboard unit, OAT control"},
    {AS_SupplementalHeatUnitTypes::FanCoilByOAT, "2. Fan coil unit, OAT control"},
    {AS_SupplementalHeatUnitTypes::BaseboardByRoomThermostat, "3. Baseboard unit, room t-stat control"},
    {AS_SupplementalHeatUnitTypes::FanCoilByRoomThermostat, "4. Fan coil unit, room t-stat control"},
};

enum class AS_SupplyTerminalTypes : int16_t {
  Diffuser = 1,
  DiffuserWithRH = 2,
  VAVBox = 3,
  VAVBoxWithRH = 4,
  SeriesFPMBXWithRH = 5,
  ParallelFPMBXWithRH = 6,
  VAVMixingBox = 7,
  CAVMixingBox = 8,
  CAVMixingBoxWithRH = 9,
  InductionTerminal = 10,
  FanCoil = 11,
  VVT = 12,
  InductionBeam = 13,
  ActiveChilledBeam = 14
};
template <>
inline constexpr CodeTitle<AS_SupplyTerminalTypes> code_table<AS_SupplyTerminalTypes>[] = {
    {AS_SupplyTerminalTypes::Diffuser, "1. Diffuser"},
    {AS_SupplyTerminalTypes::DiffuserWithRH, "2. Diffuser with RH"},
    {AS_SupplyTerminalTypes::VAVBox, "3. VAV box"},
    {AS_SupplyTerminalTypes::VAVBoxWithRH, "4. VAV box with RH"},
    {AS_SupplyTerminalTypes::SeriesFPMBXWithRH, "5. Series FPMBX with RH"},
    {AS_SupplyTerminalTypes::ParallelFPMBXWithRH, "6. Parallel FPMBX with RH"},
    {AS_SupplyTerminalTypes::VAVMixingBox, "7. VAV mixing box"},
    {AS_SupplyTerminalTypes::CAVMixingBox, "8. CAV mixing box"},
    {AS_SupplyTerminalTypes::CAVMixingBoxWithRH, "9. CAV mixing box with RH"},
    {AS_SupplyTerminalTypes::InductionTerminal, "10. Induction terminal"},
    {AS_SupplyTerminalTypes::FanCoil, "11. Fan Coil"},
    {AS_SupplyTerminalTypes::VVT, "12. Supply Term. VVT"},
    {AS_SupplyTerminalTypes::InductionBeam, "13. Induction Beam"},
    {AS_SupplyTerminalTypes::ActiveChilledBeam, "14. Active Chilled Beam"},
};

enum class AS_ZoneAirDistribution : int16_t {
  CEIL_SUPPLY_LOW_VELOCITY_CEIL_RETURN = 1,
  CEIL_SUPPLY_CEIL_RETURN = 2,
  CEIL_SUPPLY_FLOOR_RETURN = 3,
  FLOOR_SUPPLY_FLOOR_RETURN = 4,
  FLOOR_SUPPLY_LOW_VELOCITY_CEIL_RETURN = 5,
  FLOOR_SUPPLY_CEIL_RETURN = 6,
  SUPPLY_NEAR_EXHAUST_RETURN = 7,
  SUPPLY_OPPOSITE_EXHAUST_RETURN = 8
};
template <>
inline constexpr auto code_table<AS_ZoneAirDistribution> =
    codes_between<AS_ZoneAirDistribution::CEIL_SUPPLY_LOW_VELOCITY_CEIL_RETURN,
                  AS_ZoneAirDistribution::SUPPLY_OPPOSITE_EXHAUST_RETURN>;

enum class AS_ZoneAirDistributionEffectivenessSpec : int16_t {
  ZADES_NOT_USED = 0,
  ZADES_ASHRAE_62_1 = 1,
  ZADES_USER_SPECIFIED = 2
};
template <>
inline constexpr auto code_table<AS_ZoneAirDistributionEffectivenessSpec> =
    codes_between<AS_ZoneAirDistributionEffectivenessSpec::ZADES_NOT_USED,
                  AS_ZoneAirDistributionEffectivenessSpec::ZADES_USER_SPECIFIED>;

enum class AS_ZoneAirDistributionEffectiveness : int16_t {
  ZADE_0_5 = 1,
  ZADE_0_7 = 2,
  ZADE_0_8 = 3,
  ZADE_1_0 = 4,
  ZADE_1_2 = 5
};
template <>
inline constexpr auto code_table<AS_ZoneAirDistributionEffectiveness> =
    codes_between<AS_ZoneAirDistributionEffectiveness::ZADE_0_5, AS_ZoneAirDistributionEffectiveness::ZADE_1_2>;

enum class AS_SizingMethodTypes : int16_t {
  PeakZoneLoadSpacesByZoneCFM = 1,
  PeakZoneLoadSpacesByCoincidentLoads = 2,
  PeakZoneLoadSpacesByPeakLoads = 3,
  SumOfSpaceAirflowsByPeakLoads = 4
};
template <>
inline constexpr CodeTitle<AS_SizingMethodTypes> code_table<AS_SizingMethodTypes>[] = {
    {AS_SizingMethodTypes::PeakZoneLoadSpacesByZoneCFM, "1. Peak Zone Load - Spaces by Zone CFM/sqft"},
    {AS_SizingMethodTypes::PeakZoneLoadSpacesByCoincidentLoads, "2. Peak Zone Load - Spaces coincident spaces loads"},
    {AS_SizingMethodTypes::PeakZoneLoadSpacesByPeakLoads, "3. Peak Zone Load - Spaces by individual peak space loads"},
    {AS_SizingMethodTypes::SumOfSpaceAirflowsByPeakLoads,
     "4. Sum of Space airflows - Spaces by individual peak space loads"},
};

enum class AS_SizingSourceTypes : int16_t { ProgramCalculated = 1, UserModified = 2 };
template <>
inline constexpr CodeTitle<AS_SizingSourceTypes> code_table<AS_SizingSourceTypes>[] = {
    {AS_SizingSourceTypes::ProgramCalculated, "1. Program Calculated Original data"},
    {AS_SizingSourceTypes::UserModified, "2. User modified"},
};

enum class AS_UnmetLoadTypes : int16_t {
  UL_PRECOOL = 1,
  UL_PREHEAT = 2,
  UL_CENT_CLG = 3,
  UL_CENT_HTG = 4,
  UL_TERM_CLG = 5,
  UL_TERM_HTG = 6
};
template <>
inline constexpr auto code_table<AS_UnmetLoadTypes> =
    codes_between<AS_UnmetLoadTypes::UL_PRECOOL, AS_UnmetLoadTypes::UL_TERM_HTG>;

enum class AS_VentSizingMethods : int16_t {
  VSM_SUM_OF_SPACE_REQS = 0,
  VSM_ASHRAE_STD_62_2001 = 1,
  VSM_ASHRAE_STD_62_2001_MAX = 2,
  VSM_ASHRAE_STD_62_2004 = 3,
  VSM_ASHRAE_STD_62_2007 = 4,
  VSM_ASHRAE_STD_62_2010 = 5,
  VSM_ASHRAE_STD_62_2013 = 6,
  VSM_ASHRAE_STD_62_2016 = 7
};
template <>
inline constexpr auto code_table<AS_VentSizingMethods> =
    codes_between<AS_VentSizingMethods::VSM_SUM_OF_SPACE_REQS, AS_VentSizingMethods::VSM_ASHRAE_STD_62_2016>;

/// Sections of an air system's file, by bit.
enum AS_ConstituentMasks : int32_t {
  CCM_NOTHING = 0,
  CCM_HEADERMASK = 1,
  CCM_INPUTMASK = 67633150,
  CCM_SIZINGMASK = 3670016,
  CCM_SIMULATIONMASK = -4194304,
  CCM_MASKALL = 134217727
};

}  // namespace tarn
