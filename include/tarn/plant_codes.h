// The codes of plants. Two enumerations have a code below and a code above the valid ones; those are not choices.
#pragma once

#include "tarn/base/labels.h"

namespace tarn {

enum class COM_ProjectLibrary : int16_t {
  BelowLibraries = 0,
  LIB_CHILLERS = 10,
  LIB_BOILERS = 20,
  AboveLibraries = 21
};
template <>
inline constexpr CodeText<COM_ProjectLibrary> code_table<COM_ProjectLibrary>[] = {
    {COM_ProjectLibrary::BelowLibraries, "", "_PL_MIN"},
    {COM_ProjectLibrary::LIB_CHILLERS, "chillers"},
    {COM_ProjectLibrary::LIB_BOILERS, "boilers"},
    {COM_ProjectLibrary::AboveLibraries, "", "_PL_MAX"},
};

enum class PLT_PlantTypes : int16_t {
  PT_GENERIC_CW = 1,
  PT_GENERIC_HW = 2,
  PT_GENERIC_STEAM = 3,
  PT_CHILLER = 4,
  PT_COOL_STORAGE = 5,
  PT_REMOTE_SOURCE_CW = 6,
  PT_HOT_WATER = 7,
  PT_STEAM_BOILER = 8,
  PT_REMOTE_SOURCE_HW = 9,
  PT_REMOTE_SOURCE_STEAM = 10,
  PT_GENERIC_CHANGEOVER = 20,
  PT_CHANGEOVER = 30,
  PT_SERVICE_HOT_WATER = 40,
  PT_GENERIC_SERVICEHW = 50,
  PT_GENERIC_HEAT_RECOVERY = 60,
  PT_HEAT_RECOVERY = 70
};
template <>
inline constexpr CodeText<PLT_PlantTypes> code_table<PLT_PlantTypes>[] = {
    {PLT_PlantTypes::PT_GENERIC_CW, "generic chilled water"},
    {PLT_PlantTypes::PT_GENERIC_HW, "generic hot water"},
    {PLT_PlantTypes::PT_GENERIC_STEAM, "generic steam"},
    {PLT_PlantTypes::PT_CHILLER, "chiller plant"},
    {PLT_PlantTypes::PT_COOL_STORAGE, "cool storage"},
    {PLT_PlantTypes::PT_REMOTE_SOURCE_CW, "remote chilled water"},
    {PLT_PlantTypes::PT_HOT_WATER, "hot water boiler plant"},
    {PLT_PlantTypes::PT_STEAM_BOILER, "steam boiler plant"},
    {PLT_PlantTypes::PT_REMOTE_SOURCE_HW, "remote hot water"},
    {PLT_PlantTypes::PT_REMOTE_SOURCE_STEAM, "remote steam"},
    {PLT_PlantTypes::PT_GENERIC_CHANGEOVER, "generic changeover"},
    {PLT_PlantTypes::PT_CHANGEOVER, "changeover"},
    {PLT_PlantTypes::PT_SERVICE_HOT_WATER, "service hot water"},
    {PLT_PlantTypes::PT_GENERIC_SERVICEHW, "generic service hot water"},
    {PLT_PlantTypes::PT_GENERIC_HEAT_RECOVERY, "generic heat recovery"},
    {PLT_PlantTypes::PT_HEAT_RECOVERY, "heat recovery"},
};

/// Sections of a plant's file; several may be joined. The header is always handled.
enum PLT_ConstituentMasks : int32_t {
  CCM_HEADER = 2,
  CCM_SYSTEM_SELECT = 4,
  CCM_DETAILS = 8,
  CCM_DESCRIPTIVE_DATA = 12,
  CCM_PLANTSIZING = 16,
  CCM_DESPROFILE = 32,
  CCM_DESIGN_DATA = 48,
  CCM_UNMETLOADS = 64,
  CCM_LEEDUNMETLOADS = 128,
  CCM_HOURLYSIMDATA = 256,
  CCM_SIMULATION_DATA = 448,
  CCM_ALL = 508
};

enum class PLT_ControlTypes : int16_t {
  BelowControls = 0,
  PCT_SEQUENCED = 1,
  PCT_SEQ_PART_LOAD_CHILLER_LOW_LOADS = 2,
  PCT_SEQ_PART_LOAD_CHILLER_HILO_LOADS = 3,
  PCT_EQUAL_UNLOADING = 4,
  AboveControls = 5
};
template <>
inline constexpr CodeText<PLT_ControlTypes> code_table<PLT_ControlTypes>[] = {
    {PLT_ControlTypes::BelowControls, "", "_PCT_MIN"},
    {PLT_ControlTypes::PCT_SEQUENCED, "sequenced"},
    {PLT_ControlTypes::PCT_SEQ_PART_LOAD_CHILLER_LOW_LOADS, "sequenced, part-load chiller at low loads"},
    {PLT_ControlTypes::PCT_SEQ_PART_LOAD_CHILLER_HILO_LOADS, "sequenced, part-load chiller at high and low loads"},
    {PLT_ControlTypes::PCT_EQUAL_UNLOADING, "equal unloading"},
    {PLT_ControlTypes::AboveControls, "", "_PCT_MAX"},
};

enum class PLT_SizingMethod : int16_t {
  pltUserDefinedCapacity = 10,
  pltAutoSizeCapacityClg = 20,
  pltAutoSizeCapacityHtg = 30,
  pltAutoSizeCapacities = 40
};
template <>
inline constexpr CodeText<PLT_SizingMethod> code_table<PLT_SizingMethod>[] = {
    {PLT_SizingMethod::pltUserDefinedCapacity, "capacity by the user"},
    {PLT_SizingMethod::pltAutoSizeCapacityClg, "cooling capacity sized"},
    {PLT_SizingMethod::pltAutoSizeCapacityHtg, "heating capacity sized"},
    {PLT_SizingMethod::pltAutoSizeCapacities, "both capacities sized"},
};

enum class PLT_UnitSizing : int16_t {
  ONE_UNIT = 1,
  TWO_UNITS_EQUAL = 2,
  TWO_UNITS_60_40 = 3,
  TWO_UNITS_75_25 = 4,
  TWO_UNITS_80_20 = 5,
  TWO_UNITS_40_60 = 6,
  TWO_UNITS_25_75 = 7,
  TWO_UNITS_20_80 = 8,
  THREE_UNITS_EQUAL = 20,
  THREE_UNITS_40_40_20 = 21,
  FOUR_UNITS_EQUAL = 30,
  FIVE_UNITS_EQUAL = 31,
  SIX_UNITS_EQUAL = 32,
  SEVEN_UNITS_EQUAL = 33,
  EIGHT_UNITS_EQUAL = 34,
  NINE_UNITS_EQUAL = 35,
  TEN_UNITS_EQUAL = 36,
  ELEVEN_UNITS_EQUAL = 37,
  TWELVE_UNITS_EQUAL = 38
};
template <>
inline constexpr CodeText<PLT_UnitSizing> code_table<PLT_UnitSizing>[] = {
    {PLT_UnitSizing::ONE_UNIT, "one unit"},
    {PLT_UnitSizing::TWO_UNITS_EQUAL, "two units, equal"},
    {PLT_UnitSizing::TWO_UNITS_60_40, "two units, 60/40"},
    {PLT_UnitSizing::TWO_UNITS_75_25, "two units, 75/25"},
    {PLT_UnitSizing::TWO_UNITS_80_20, "two units, 80/20"},
    {PLT_UnitSizing::TWO_UNITS_40_60, "two units, 40/60"},
    {PLT_UnitSizing::TWO_UNITS_25_75, "two units, 25/75"},
    {PLT_UnitSizing::TWO_UNITS_20_80, "two units, 20/80"},
    {PLT_UnitSizing::THREE_UNITS_EQUAL, "three units, equal"},
    {PLT_UnitSizing::THREE_UNITS_40_40_20, "three units, 40/40/20"},
    {PLT_UnitSizing::FOUR_UNITS_EQUAL, "four units, equal"},
    {PLT_UnitSizing::FIVE_UNITS_EQUAL, "five units, equal"},
    {PLT_UnitSizing::SIX_UNITS_EQUAL, "six units, equal"},
    {PLT_UnitSizing::SEVEN_UNITS_EQUAL, "seven units, equal"},
    {PLT_UnitSizing::EIGHT_UNITS_EQUAL, "eight units, equal"},
    {PLT_UnitSizing::NINE_UNITS_EQUAL, "nine units, equal"},
    {PLT_UnitSizing::TEN_UNITS_EQUAL, "ten units, equal"},
    {PLT_UnitSizing::ELEVEN_UNITS_EQUAL, "eleven units, equal"},
    {PLT_UnitSizing::TWELVE_UNITS_EQUAL, "twelve units, equal"},
};

enum class PLT_FluidDistSystemTypes : int16_t {
  FDS_PRIMARY_ONLY_CONSTANT_SPEED = 1,
  FDS_PRIMARY_ONLY_VARIABLE_SPEED = 2,
  FDS_PRIMARY_CONSTANT_SECONDARY_VARIABLE = 3,
  FDS_SECONDARY_ONLY_CONSTANT_SPEED = 7,
  FDS_SECONDARY_ONLY_VARIABLE_SPEED = 8
};
template <>
inline constexpr CodeText<PLT_FluidDistSystemTypes> code_table<PLT_FluidDistSystemTypes>[] = {
    {PLT_FluidDistSystemTypes::FDS_PRIMARY_ONLY_CONSTANT_SPEED, "primary only, constant speed"},
    {PLT_FluidDistSystemTypes::FDS_PRIMARY_ONLY_VARIABLE_SPEED, "primary only, variable speed"},
    {PLT_FluidDistSystemTypes::FDS_PRIMARY_CONSTANT_SECONDARY_VARIABLE, "primary constant, secondary variable speed"},
    {PLT_FluidDistSystemTypes::FDS_SECONDARY_ONLY_CONSTANT_SPEED, "secondary only, constant speed"},
    {PLT_FluidDistSystemTypes::FDS_SECONDARY_ONLY_VARIABLE_SPEED, "secondary only, variable speed"},
};

enum class PLT_PumpControls : int16_t { ConstantSpeed = 0, VariableSpeed = 1 };
template <>
inline constexpr CodeText<PLT_PumpControls> code_table<PLT_PumpControls>[] = {
    {PLT_PumpControls::ConstantSpeed, "constant speed"},
    {PLT_PumpControls::VariableSpeed, "variable speed"},
};

enum class PLT_PumpPerfUnits : int16_t { PPU_FTWG = 0, PPU_KW = 1, PPU_W_GPM = 2 };
template <>
inline constexpr CodeText<PLT_PumpPerfUnits> code_table<PLT_PumpPerfUnits>[] = {
    {PLT_PumpPerfUnits::PPU_FTWG, "ft wg"},
    {PLT_PumpPerfUnits::PPU_KW, "kW"},
    {PLT_PumpPerfUnits::PPU_W_GPM, "W/gpm"},
};

enum class PLT_TowerConfigTypes : int16_t {
  CTC_ONE_TOWER_PER_CW_CHILLER = 0,
  CTC_ONE_TOWER_SHARED_BY_CW_CHILLER_IN_PLANT = 1
};
template <>
inline constexpr CodeText<PLT_TowerConfigTypes> code_table<PLT_TowerConfigTypes>[] = {
    {PLT_TowerConfigTypes::CTC_ONE_TOWER_PER_CW_CHILLER, "one tower per water-cooled chiller"},
    {PLT_TowerConfigTypes::CTC_ONE_TOWER_SHARED_BY_CW_CHILLER_IN_PLANT,
     "one tower shared by the water-cooled chillers"},
};

enum class PLT_WaterSourceConfigTypes : int16_t { WSC_ONE_SOURCE_PER_UNIT = 0, WSC_ONE_SOURCE_SHARED_BY_ALL_UNITS = 1 };
template <>
inline constexpr CodeText<PLT_WaterSourceConfigTypes> code_table<PLT_WaterSourceConfigTypes>[] = {
    {PLT_WaterSourceConfigTypes::WSC_ONE_SOURCE_PER_UNIT, "one source per unit"},
    {PLT_WaterSourceConfigTypes::WSC_ONE_SOURCE_SHARED_BY_ALL_UNITS, "one source shared by all units"},
};

enum class PLT_LWTControlType : int16_t { ConstantLWT = 1, ResetByOAT = 2, ResetByLoad = 3 };
template <>
inline constexpr CodeText<PLT_LWTControlType> code_table<PLT_LWTControlType>[] = {
    {PLT_LWTControlType::ConstantLWT, "constant"},
    {PLT_LWTControlType::ResetByOAT, "reset by outdoor temperature"},
    {PLT_LWTControlType::ResetByLoad, "reset by load"},
};

enum class PLT_FreeCoolingTypes : int16_t {
  FCT_NOT_USED = -1,
  FCT_STRAINER_CYCLE = 0,
  FCT_NON_INTEGRATED_WATERSIDE_ECONOMIZER = 1,
  FCT_INTEGRATED_WATERSIDE_ECONOMIZER = 2
};
template <>
inline constexpr CodeText<PLT_FreeCoolingTypes> code_table<PLT_FreeCoolingTypes>[] = {
    {PLT_FreeCoolingTypes::FCT_NOT_USED, "not used"},
    {PLT_FreeCoolingTypes::FCT_STRAINER_CYCLE, "strainer cycle"},
    {PLT_FreeCoolingTypes::FCT_NON_INTEGRATED_WATERSIDE_ECONOMIZER, "non-integrated waterside economizer"},
    {PLT_FreeCoolingTypes::FCT_INTEGRATED_WATERSIDE_ECONOMIZER, "integrated waterside economizer"},
};

enum class PLT_HeatRecoveryType : int16_t {
  HX_InCondLoop = 10,
  DHRC_InCondLoop = 20,
  DHRC_InParallelWithChillers = 30,
  CHILLERS_WithHeatRecCond = 40,
  CHILLERS_WithDesuperheaters = 50,
  CHILLERS_DoubleBundle = 60
};
template <>
inline constexpr CodeText<PLT_HeatRecoveryType> code_table<PLT_HeatRecoveryType>[] = {
    {PLT_HeatRecoveryType::HX_InCondLoop, "heat exchanger in the condenser loop"},
    {PLT_HeatRecoveryType::DHRC_InCondLoop, "dedicated heat recovery chiller in the condenser loop"},
    {PLT_HeatRecoveryType::DHRC_InParallelWithChillers,
     "dedicated heat recovery chiller in parallel with the chillers"},
    {PLT_HeatRecoveryType::CHILLERS_WithHeatRecCond, "chillers with heat recovery condensers"},
    {PLT_HeatRecoveryType::CHILLERS_WithDesuperheaters, "chillers with desuperheaters"},
    {PLT_HeatRecoveryType::CHILLERS_DoubleBundle, "double-bundle chillers"},
};

enum class PLT_SHW_USAGE_RATE_UNITS : int16_t {
  USAGE_KBTU_PER_DAY = 0,
  USAGE_GPM = 10,
  USAGE_GAL_PER_PERSON_PER_DAY = 20
};
template <>
inline constexpr CodeText<PLT_SHW_USAGE_RATE_UNITS> code_table<PLT_SHW_USAGE_RATE_UNITS>[] = {
    {PLT_SHW_USAGE_RATE_UNITS::USAGE_KBTU_PER_DAY, "kBtu/day"},
    {PLT_SHW_USAGE_RATE_UNITS::USAGE_GPM, "gpm"},
    {PLT_SHW_USAGE_RATE_UNITS::USAGE_GAL_PER_PERSON_PER_DAY, "gal/person/day"},
};

enum class PLT_SHW_STORED_HEATLOSS_UNITS : int16_t { HEATLOSS_PERCENTAGE = 10, HEATLOSS_BTU_PER_HR_GAL_F = 20 };
template <>
inline constexpr CodeText<PLT_SHW_STORED_HEATLOSS_UNITS> code_table<PLT_SHW_STORED_HEATLOSS_UNITS>[] = {
    {PLT_SHW_STORED_HEATLOSS_UNITS::HEATLOSS_PERCENTAGE, "%/hr"},
    {PLT_SHW_STORED_HEATLOSS_UNITS::HEATLOSS_BTU_PER_HR_GAL_F, "Btu/(hr.gal.F)"},
};

enum class PLT_SHW_STORED_HW_PRIO_RULE : int16_t {
  PRIORITY_BY_OAT_BELOW = 10,
  PRIORITY_BY_OAT_ABOVE = 20,
  PRIORITY_BY_SCHEDULE = 30
};
template <>
inline constexpr CodeText<PLT_SHW_STORED_HW_PRIO_RULE> code_table<PLT_SHW_STORED_HW_PRIO_RULE>[] = {
    {PLT_SHW_STORED_HW_PRIO_RULE::PRIORITY_BY_OAT_BELOW, "below an outdoor temperature"},
    {PLT_SHW_STORED_HW_PRIO_RULE::PRIORITY_BY_OAT_ABOVE, "above an outdoor temperature"},
    {PLT_SHW_STORED_HW_PRIO_RULE::PRIORITY_BY_SCHEDULE, "by schedule"},
};

}  // namespace tarn
