// The codes of what stands in an air system: fans, coils, their sources, power and stages, controls.
#pragma once

#include "tarn/base/labels.h"

namespace tarn {

enum class AS_VentilationReclaimTypes : int16_t { SensibleHeat = 1, SensibleAndLatentHeat = 2 };
template <>
inline constexpr CodeTitle<AS_VentilationReclaimTypes> code_table<AS_VentilationReclaimTypes>[] = {
    {AS_VentilationReclaimTypes::SensibleHeat, "1. Sensible heat reclaim only"},
    {AS_VentilationReclaimTypes::SensibleAndLatentHeat, "2. Sensible and latent heat reclaim"},
};

enum class AS_FanTypes : int16_t {
  NotUsed = 0,
  ForwardCurved = 1,
  ForwardCurvedWithDampers = 2,
  ForwardCurvedWithVFD = 3,
  ForwardCurvedWithVSD = 4,
  ForwardCurvedWithInletGuideVanes = 5,
  BIAF = 6,
  BIAFWithInletGuideVanes = 7,
  BIAFWithVFD = 8,
  BIAFWithVSD = 9,
  ControlledPitchAxial = 10,
  UserDefined = 11,
  AppendixGFanCurve = 12
};
template <>
inline constexpr CodeTitle<AS_FanTypes> code_table<AS_FanTypes>[] = {
    {AS_FanTypes::NotUsed, "0. Not used"},
    {AS_FanTypes::ForwardCurved, "1. Forward Curved"},
    {AS_FanTypes::ForwardCurvedWithDampers, "2. Forward Curved with Dampers"},
    {AS_FanTypes::ForwardCurvedWithVFD, "3. Forward Curved with Variable Frequency Drive"},
    {AS_FanTypes::ForwardCurvedWithVSD, "4. Forward Curved with Variable Speed Drive"},
    {AS_FanTypes::ForwardCurvedWithInletGuideVanes, "5. Forward Curved with Inlet Guide Vanes"},
    {AS_FanTypes::BIAF, "6. Backward Inclined or Airfoil (BI/AF)"},
    {AS_FanTypes::BIAFWithInletGuideVanes, "7. BI/AF with Inlet Guide Vanes"},
    {AS_FanTypes::BIAFWithVFD, "8. BI/AF with Variable Frequency Drive"},
    {AS_FanTypes::BIAFWithVSD, "9. BI/AF with Variable Speed Drive"},
    {AS_FanTypes::ControlledPitchAxial, "10. Controlled Pitch Axial"},
    {AS_FanTypes::UserDefined, "11. User defined"},
    {AS_FanTypes::AppendixGFanCurve, "12. ASHRAE 90.1-2004 Appendix G Fan Curve"},
};

enum class AS_FanPerfUOM : int16_t {
  BrakeHorsepower = 0,
  TotalStaticPressure = 1,
  InputKW = 2,
  InputWPerCFM = 3,
  AppendixGFanKW = 4
};
template <>
inline constexpr CodeTitle<AS_FanPerfUOM> code_table<AS_FanPerfUOM>[] = {
    {AS_FanPerfUOM::BrakeHorsepower, "0. Brakehorsepower (BHP)"},
    {AS_FanPerfUOM::TotalStaticPressure, "1. Total static pressure across fan"},
    {AS_FanPerfUOM::InputKW, "2. Fan motor input kW"},
    {AS_FanPerfUOM::InputWPerCFM, "3. Fan motor input W/CFM"},
    {AS_FanPerfUOM::AppendixGFanKW, "4. 90.1 Appendix G Fan kW"},
};

enum class AS_FanConfigTypes : int16_t { BlowThru = 0, DrawThru = 1 };
template <>
inline constexpr CodeTitle<AS_FanConfigTypes> code_table<AS_FanConfigTypes>[] = {
    {AS_FanConfigTypes::BlowThru, "0. Blow-thru"},
    {AS_FanConfigTypes::DrawThru, "1. Draw-thru"},
};

enum class AS_EconomizerControlTypes : int16_t {
  None = 0,
  IntegratedEnthalpy = 1,
  IntegratedDryBulb = 2,
  NonIntegratedDryBulb = 3
};
template <>
inline constexpr CodeTitle<AS_EconomizerControlTypes> code_table<AS_EconomizerControlTypes>[] = {
    {AS_EconomizerControlTypes::None, "0. None"},
    {AS_EconomizerControlTypes::IntegratedEnthalpy, "1. Integrated enthalpy control"},
    {AS_EconomizerControlTypes::IntegratedDryBulb, "2. Integrated dry-bulb control"},
    {AS_EconomizerControlTypes::NonIntegratedDryBulb, "3. Non-integrated dry-bulb control"},
};

enum class AS_HumidificationDeviceTypes : int16_t {
  SelfContainedSteamElectric = 0,
  SelfContainedSteamNaturalGas = 1,
  SelfContainedSteamPropane = 2,
  DirectSteamInjection = 3,
  HeatedPanSteamHX = 4,
  HeatedPanHotWaterHX = 5
};
template <>
inline constexpr CodeTitle<AS_HumidificationDeviceTypes> code_table<AS_HumidificationDeviceTypes>[] = {
    {AS_HumidificationDeviceTypes::SelfContainedSteamElectric, "0. Self-Contained Steam - Electric"},
    {AS_HumidificationDeviceTypes::SelfContainedSteamNaturalGas, "1. Self-Contained Steam - Natural Gas"},
    {AS_HumidificationDeviceTypes::SelfContainedSteamPropane, "2. Self-Contained Steam - Propane"},
    {AS_HumidificationDeviceTypes::DirectSteamInjection, "3. Direct Steam Injection"},
    {AS_HumidificationDeviceTypes::HeatedPanSteamHX, "4. Heated Pan - Steam HX"},
    {AS_HumidificationDeviceTypes::HeatedPanHotWaterHX, "5. Heated Pan - Hot Water HX"},
};

enum class AS_DesignPowerUOM : int16_t { DP_COP = 0, DP_KW = 1, DP_EER = 2, DP_SEER = 3, DP_HSPF = 4 };
template <>
inline constexpr auto code_table<AS_DesignPowerUOM> =
    codes_between<AS_DesignPowerUOM::DP_COP, AS_DesignPowerUOM::DP_HSPF>;

enum class AS_PerformanceModelTypes : int16_t { PMT_COMPUTER_GENERATED = 0, PMT_USED_DEFINED = 1 };
template <>
inline constexpr auto code_table<AS_PerformanceModelTypes> =
    codes_between<AS_PerformanceModelTypes::PMT_COMPUTER_GENERATED, AS_PerformanceModelTypes::PMT_USED_DEFINED>;

enum class AS_DirectHeatTypes : int16_t { DHT_ELEC_RESIST = 3, DHT_NAT_GAS = 4, DHT_FUEL_OIL = 5, DHT_PROPANE = 6 };
template <>
inline constexpr auto code_table<AS_DirectHeatTypes> =
    codes_between<AS_DirectHeatTypes::DHT_ELEC_RESIST, AS_DirectHeatTypes::DHT_PROPANE>;

enum class AS_LoopConfigTypes : int16_t { LC_CLOSED_IWSHP = 0, LC_OPEN_WSHP = 1 };
template <>
inline constexpr auto code_table<AS_LoopConfigTypes> =
    codes_between<AS_LoopConfigTypes::LC_CLOSED_IWSHP, AS_LoopConfigTypes::LC_OPEN_WSHP>;

enum class AS_CoolingTypes : int16_t { CT_DIRECT = 0, CT_INDIRECT = 1 };
template <>
inline constexpr auto code_table<AS_CoolingTypes> =
    codes_between<AS_CoolingTypes::CT_DIRECT, AS_CoolingTypes::CT_INDIRECT>;

enum class AS_PerformanceTypes : int16_t { ptCOMP_KW = 0, ptARI_PERF = 1, ptASHRAE_EFF = 2, ptAVG_HEAT_EFF = 0 };
template <>
inline constexpr CodeText<AS_PerformanceTypes> code_table<AS_PerformanceTypes>[] = {
    {AS_PerformanceTypes::ptCOMP_KW},
    {AS_PerformanceTypes::ptARI_PERF},
    {AS_PerformanceTypes::ptASHRAE_EFF},
    {AS_PerformanceTypes::ptAVG_HEAT_EFF, "", "ptAVG_HEAT_EFF"},
};

enum class AS_SplitSystemCompressorTypes : int16_t {
  VRF_Variable_Speed_Scroll = 0,
  VRF_Digital_Scroll = 1,
  VRF_Rotary = 2
};
template <>
inline constexpr auto code_table<AS_SplitSystemCompressorTypes> =
    codes_between<AS_SplitSystemCompressorTypes::VRF_Variable_Speed_Scroll, AS_SplitSystemCompressorTypes::VRF_Rotary>;

enum class AS_DXConfigTypes : int16_t {
  OneStageSingleCircuit = 0,
  TwoStagesSeparateCircuits = 1,
  TwoStagesSingleCircuit = 2,
  ThreeStages = 3,
  FourStages = 4,
  FiveStages = 5,
  SixStages = 6,
  SevenStages = 7,
  EightStages = 8
};
template <>
inline constexpr CodeTitle<AS_DXConfigTypes> code_table<AS_DXConfigTypes>[] = {
    {AS_DXConfigTypes::OneStageSingleCircuit, "0. 1-stage compression, single circuit"},
    {AS_DXConfigTypes::TwoStagesSeparateCircuits, "1. 2-stage compression, separate circuits"},
    {AS_DXConfigTypes::TwoStagesSingleCircuit, "2. 2-stage compression, single circuit"},
    {AS_DXConfigTypes::ThreeStages, "3. 3-stage compression"},
    {AS_DXConfigTypes::FourStages, "4. 4-stage compression"},
    {AS_DXConfigTypes::FiveStages, "5. 5-stage compression"},
    {AS_DXConfigTypes::SixStages, "6. 6-stage compression"},
    {AS_DXConfigTypes::SevenStages, "7. 7-stage compression"},
    {AS_DXConfigTypes::EightStages, "8. 8-stage compression"},
};

enum class AS_FanControlTypes : int16_t {
  OneSpeed = 0,
  TwoSpeedCoolingOneSpeedHeating = 1,
  TwoSpeed = 2,
  ThreeSpeedCoolingOneSpeedHeating = 3
};
template <>
inline constexpr CodeTitle<AS_FanControlTypes> code_table<AS_FanControlTypes>[] = {
    {AS_FanControlTypes::OneSpeed, "0. 1-speed, cooling and heating"},
    {AS_FanControlTypes::TwoSpeedCoolingOneSpeedHeating, "1. 2-speed cooling, 1-speed heating"},
    {AS_FanControlTypes::TwoSpeed, "2. 2-speed cooling, 2-speed heating"},
    {AS_FanControlTypes::ThreeSpeedCoolingOneSpeedHeating, "3. 3-speed cooling, 1-speed heating"},
};

enum class AS_COTriggers : int16_t { Scheduled = 10, OATThreshold = 20 };
template <>
inline constexpr CodeTitle<AS_COTriggers> code_table<AS_COTriggers>[] = {
    {AS_COTriggers::Scheduled, "10. Scheduled"},
    {AS_COTriggers::OATThreshold, "20. OATThreshold"},
};

enum class AS_UnoccFanControlEnum : int16_t { CycledOnDemand = 0, ContinuousOperation = 1 };
template <>
inline constexpr CodeTitle<AS_UnoccFanControlEnum> code_table<AS_UnoccFanControlEnum>[] = {
    {AS_UnoccFanControlEnum::CycledOnDemand, "0. Cycled on Demand"},
    {AS_UnoccFanControlEnum::ContinuousOperation, "1. Continuous Operation"},
};

enum class AS_AFactors : int16_t {
  AFAC_Fully_Ducted_Return_Exhaust = 1,
  AFAC_Return_Exhaust_Control_Device = 2,
  AFAC_Exhaust_Filters_Scrubbers = 3,
  AFAC_MERV_9_12 = 4,
  AFAC_MERV_13_15 = 5,
  AFAC_MERV_16 = 6,
  AFAC_Carbon_Gas_Phase_Air_Cleaner = 7,
  AFAC_Heat_Recovery_Device = 8,
  AFAC_Evap_Humidifier = 9,
  AFAC_Sound_Attenuation = 10,
  AFAC_Fume_Hood_Exhaust_Exception = 11,
  AFAC_Energy_Rec_Device = 12,
  AFAC_Coil_Runaround_Loop = 13,
  AFAC_Biosafety_Cabinet = 14,
  AFAC_Laboratory_Vivarium_Exhaust_System = 15,
  AFAC_Systems_Without_Central_Cooling_Device = 16,
  AFAC_Systems_Without_Central_Heating_Device = 17,
  AFAC_Systems_With_Central_Electric_Resistance_Heat = 18,
  AFAC_Exhaust_System_Fume_Hoods = 19
};
template <>
inline constexpr auto code_table<AS_AFactors> =
    codes_between<AS_AFactors::AFAC_Fully_Ducted_Return_Exhaust, AS_AFactors::AFAC_Exhaust_System_Fume_Hoods>;

/// Heating and cooling sources share the numbers; which is meant depends on the member that holds the code. The table
/// of the enumeration is that of heating.
enum class AS_HeatCoolSourceTypes : int16_t {
  ST_IRRELEVANT = 0,
  ST_AIR_COOLED_DX = 1,
  ST_WATER_COOLED_DX = 2,
  ST_CHILLED_WATER = 3,
  ST_AIRSOURCE_HEAT_PUMP = 1,
  ST_WATERSOURCE_HEAT_PUMP = 2,
  ST_ELEC_RESIST = 3,
  ST_COMBUST_NAT_GAS = 4,
  ST_COMBUST_FUEL_OIL = 5,
  ST_COMBUST_PROPANE = 6,
  ST_HOT_WATER = 7,
  ST_STEAM = 8
};
inline constexpr CodeText<AS_HeatCoolSourceTypes> kCoolingSources[] = {
    {AS_HeatCoolSourceTypes::ST_IRRELEVANT},
    {AS_HeatCoolSourceTypes::ST_AIR_COOLED_DX},
    {AS_HeatCoolSourceTypes::ST_WATER_COOLED_DX},
    {AS_HeatCoolSourceTypes::ST_CHILLED_WATER},
};
template <>
inline constexpr CodeText<AS_HeatCoolSourceTypes> code_table<AS_HeatCoolSourceTypes>[] = {
    {AS_HeatCoolSourceTypes::ST_IRRELEVANT},
    {AS_HeatCoolSourceTypes::ST_AIRSOURCE_HEAT_PUMP, "", "ST_AIRSOURCE_HEAT_PUMP"},
    {AS_HeatCoolSourceTypes::ST_WATERSOURCE_HEAT_PUMP, "", "ST_WATERSOURCE_HEAT_PUMP"},
    {AS_HeatCoolSourceTypes::ST_ELEC_RESIST, "", "ST_ELEC_RESIST"},
    {AS_HeatCoolSourceTypes::ST_COMBUST_NAT_GAS},
    {AS_HeatCoolSourceTypes::ST_COMBUST_FUEL_OIL},
    {AS_HeatCoolSourceTypes::ST_COMBUST_PROPANE},
    {AS_HeatCoolSourceTypes::ST_HOT_WATER},
    {AS_HeatCoolSourceTypes::ST_STEAM},
};

}  // namespace tarn
