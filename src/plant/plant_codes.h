// The codes of plants. Two enumerations have a code below and a code above the valid ones; those are not choices.
#pragma once

#include "base/labels.h"

namespace tarn {

enum class COM_ProjectLibrary : int16_t {
  BelowLibraries = 0,
  LIB_CHILLERS = 10,
  LIB_BOILERS = 20,
  AboveLibraries = 21
};
inline constexpr Label kProjectLibraryLabels[]{
    {0, "_PL_MIN", ""}, {10, "LIB_CHILLERS", "chillers"}, {20, "LIB_BOILERS", "boilers"}, {21, "_PL_MAX", ""}};
template <>
inline constexpr std::span<const Label> labels<COM_ProjectLibrary> = kProjectLibraryLabels;

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
inline constexpr Label kPlantTypesLabels[]{{1, "PT_GENERIC_CW", "generic chilled water"},
                                           {2, "PT_GENERIC_HW", "generic hot water"},
                                           {3, "PT_GENERIC_STEAM", "generic steam"},
                                           {4, "PT_CHILLER", "chiller plant"},
                                           {5, "PT_COOL_STORAGE", "cool storage"},
                                           {6, "PT_REMOTE_SOURCE_CW", "remote chilled water"},
                                           {7, "PT_HOT_WATER", "hot water boiler plant"},
                                           {8, "PT_STEAM_BOILER", "steam boiler plant"},
                                           {9, "PT_REMOTE_SOURCE_HW", "remote hot water"},
                                           {10, "PT_REMOTE_SOURCE_STEAM", "remote steam"},
                                           {20, "PT_GENERIC_CHANGEOVER", "generic changeover"},
                                           {30, "PT_CHANGEOVER", "changeover"},
                                           {40, "PT_SERVICE_HOT_WATER", "service hot water"},
                                           {50, "PT_GENERIC_SERVICEHW", "generic service hot water"},
                                           {60, "PT_GENERIC_HEAT_RECOVERY", "generic heat recovery"},
                                           {70, "PT_HEAT_RECOVERY", "heat recovery"}};
template <>
inline constexpr std::span<const Label> labels<PLT_PlantTypes> = kPlantTypesLabels;

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
inline constexpr Label kControlTypesLabels[]{
    {0, "_PCT_MIN", ""},
    {1, "PCT_SEQUENCED", "sequenced"},
    {2, "PCT_SEQ_PART_LOAD_CHILLER_LOW_LOADS", "sequenced, part-load chiller at low loads"},
    {3, "PCT_SEQ_PART_LOAD_CHILLER_HILO_LOADS", "sequenced, part-load chiller at high and low loads"},
    {4, "PCT_EQUAL_UNLOADING", "equal unloading"},
    {5, "_PCT_MAX", ""}};
template <>
inline constexpr std::span<const Label> labels<PLT_ControlTypes> = kControlTypesLabels;

enum class PLT_SizingMethod : int16_t {
  pltUserDefinedCapacity = 10,
  pltAutoSizeCapacityClg = 20,
  pltAutoSizeCapacityHtg = 30,
  pltAutoSizeCapacities = 40
};
inline constexpr Label kSizingMethodLabels[]{{10, "pltUserDefinedCapacity", "capacity by the user"},
                                             {20, "pltAutoSizeCapacityClg", "cooling capacity sized"},
                                             {30, "pltAutoSizeCapacityHtg", "heating capacity sized"},
                                             {40, "pltAutoSizeCapacities", "both capacities sized"}};
template <>
inline constexpr std::span<const Label> labels<PLT_SizingMethod> = kSizingMethodLabels;

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
inline constexpr Label kUnitSizingLabels[]{{1, "ONE_UNIT", "one unit"},
                                           {2, "TWO_UNITS_EQUAL", "two units, equal"},
                                           {3, "TWO_UNITS_60_40", "two units, 60/40"},
                                           {4, "TWO_UNITS_75_25", "two units, 75/25"},
                                           {5, "TWO_UNITS_80_20", "two units, 80/20"},
                                           {6, "TWO_UNITS_40_60", "two units, 40/60"},
                                           {7, "TWO_UNITS_25_75", "two units, 25/75"},
                                           {8, "TWO_UNITS_20_80", "two units, 20/80"},
                                           {20, "THREE_UNITS_EQUAL", "three units, equal"},
                                           {21, "THREE_UNITS_40_40_20", "three units, 40/40/20"},
                                           {30, "FOUR_UNITS_EQUAL", "four units, equal"},
                                           {31, "FIVE_UNITS_EQUAL", "five units, equal"},
                                           {32, "SIX_UNITS_EQUAL", "six units, equal"},
                                           {33, "SEVEN_UNITS_EQUAL", "seven units, equal"},
                                           {34, "EIGHT_UNITS_EQUAL", "eight units, equal"},
                                           {35, "NINE_UNITS_EQUAL", "nine units, equal"},
                                           {36, "TEN_UNITS_EQUAL", "ten units, equal"},
                                           {37, "ELEVEN_UNITS_EQUAL", "eleven units, equal"},
                                           {38, "TWELVE_UNITS_EQUAL", "twelve units, equal"}};
template <>
inline constexpr std::span<const Label> labels<PLT_UnitSizing> = kUnitSizingLabels;

enum class PLT_FluidDistSystemTypes : int16_t {
  FDS_PRIMARY_ONLY_CONSTANT_SPEED = 1,
  FDS_PRIMARY_ONLY_VARIABLE_SPEED = 2,
  FDS_PRIMARY_CONSTANT_SECONDARY_VARIABLE = 3,
  FDS_SECONDARY_ONLY_CONSTANT_SPEED = 7,
  FDS_SECONDARY_ONLY_VARIABLE_SPEED = 8
};
inline constexpr Label kFluidDistSystemTypesLabels[]{
    {1, "FDS_PRIMARY_ONLY_CONSTANT_SPEED", "primary only, constant speed"},
    {2, "FDS_PRIMARY_ONLY_VARIABLE_SPEED", "primary only, variable speed"},
    {3, "FDS_PRIMARY_CONSTANT_SECONDARY_VARIABLE", "primary constant, secondary variable speed"},
    {7, "FDS_SECONDARY_ONLY_CONSTANT_SPEED", "secondary only, constant speed"},
    {8, "FDS_SECONDARY_ONLY_VARIABLE_SPEED", "secondary only, variable speed"}};
template <>
inline constexpr std::span<const Label> labels<PLT_FluidDistSystemTypes> = kFluidDistSystemTypesLabels;

enum class PLT_PumpControls : int16_t { ConstantSpeed = 0, VariableSpeed = 1 };
inline constexpr Label kPumpControlsLabels[]{{0, "ConstantSpeed", "constant speed"},
                                             {1, "VariableSpeed", "variable speed"}};
template <>
inline constexpr std::span<const Label> labels<PLT_PumpControls> = kPumpControlsLabels;

enum class PLT_PumpPerfUnits : int16_t { PPU_FTWG = 0, PPU_KW = 1, PPU_W_GPM = 2 };
inline constexpr Label kPumpPerfUnitsLabels[]{{0, "PPU_FTWG", "ft wg"}, {1, "PPU_KW", "kW"}, {2, "PPU_W_GPM", "W/gpm"}};
template <>
inline constexpr std::span<const Label> labels<PLT_PumpPerfUnits> = kPumpPerfUnitsLabels;

enum class PLT_TowerConfigTypes : int16_t {
  CTC_ONE_TOWER_PER_CW_CHILLER = 0,
  CTC_ONE_TOWER_SHARED_BY_CW_CHILLER_IN_PLANT = 1
};
inline constexpr Label kTowerConfigTypesLabels[]{
    {0, "CTC_ONE_TOWER_PER_CW_CHILLER", "one tower per water-cooled chiller"},
    {1, "CTC_ONE_TOWER_SHARED_BY_CW_CHILLER_IN_PLANT", "one tower shared by the water-cooled chillers"}};
template <>
inline constexpr std::span<const Label> labels<PLT_TowerConfigTypes> = kTowerConfigTypesLabels;

enum class PLT_WaterSourceConfigTypes : int16_t { WSC_ONE_SOURCE_PER_UNIT = 0, WSC_ONE_SOURCE_SHARED_BY_ALL_UNITS = 1 };
inline constexpr Label kWaterSourceConfigTypesLabels[]{
    {0, "WSC_ONE_SOURCE_PER_UNIT", "one source per unit"},
    {1, "WSC_ONE_SOURCE_SHARED_BY_ALL_UNITS", "one source shared by all units"}};
template <>
inline constexpr std::span<const Label> labels<PLT_WaterSourceConfigTypes> = kWaterSourceConfigTypesLabels;

enum class PLT_LWTControlType : int16_t { ConstantLWT = 1, ResetByOAT = 2, ResetByLoad = 3 };
inline constexpr Label kLWTControlTypeLabels[]{{1, "ConstantLWT", "constant"},
                                               {2, "ResetByOAT", "reset by outdoor temperature"},
                                               {3, "ResetByLoad", "reset by load"}};
template <>
inline constexpr std::span<const Label> labels<PLT_LWTControlType> = kLWTControlTypeLabels;

enum class PLT_FreeCoolingTypes : int16_t {
  FCT_NOT_USED = -1,
  FCT_STRAINER_CYCLE = 0,
  FCT_NON_INTEGRATED_WATERSIDE_ECONOMIZER = 1,
  FCT_INTEGRATED_WATERSIDE_ECONOMIZER = 2
};
inline constexpr Label kFreeCoolingTypesLabels[]{
    {-1, "FCT_NOT_USED", "not used"},
    {0, "FCT_STRAINER_CYCLE", "strainer cycle"},
    {1, "FCT_NON_INTEGRATED_WATERSIDE_ECONOMIZER", "non-integrated waterside economizer"},
    {2, "FCT_INTEGRATED_WATERSIDE_ECONOMIZER", "integrated waterside economizer"}};
template <>
inline constexpr std::span<const Label> labels<PLT_FreeCoolingTypes> = kFreeCoolingTypesLabels;

enum class PLT_HeatRecoveryType : int16_t {
  HX_InCondLoop = 10,
  DHRC_InCondLoop = 20,
  DHRC_InParallelWithChillers = 30,
  CHILLERS_WithHeatRecCond = 40,
  CHILLERS_WithDesuperheaters = 50,
  CHILLERS_DoubleBundle = 60
};
inline constexpr Label kHeatRecoveryTypeLabels[]{
    {10, "HX_InCondLoop", "heat exchanger in the condenser loop"},
    {20, "DHRC_InCondLoop", "dedicated heat recovery chiller in the condenser loop"},
    {30, "DHRC_InParallelWithChillers", "dedicated heat recovery chiller in parallel with the chillers"},
    {40, "CHILLERS_WithHeatRecCond", "chillers with heat recovery condensers"},
    {50, "CHILLERS_WithDesuperheaters", "chillers with desuperheaters"},
    {60, "CHILLERS_DoubleBundle", "double-bundle chillers"}};
template <>
inline constexpr std::span<const Label> labels<PLT_HeatRecoveryType> = kHeatRecoveryTypeLabels;

enum class PLT_SHW_USAGE_RATE_UNITS : int16_t {
  USAGE_KBTU_PER_DAY = 0,
  USAGE_GPM = 10,
  USAGE_GAL_PER_PERSON_PER_DAY = 20
};
inline constexpr Label kShwUsageRateUnitsLabels[]{{0, "USAGE_KBTU_PER_DAY", "kBtu/day"},
                                                  {10, "USAGE_GPM", "gpm"},
                                                  {20, "USAGE_GAL_PER_PERSON_PER_DAY", "gal/person/day"}};
template <>
inline constexpr std::span<const Label> labels<PLT_SHW_USAGE_RATE_UNITS> = kShwUsageRateUnitsLabels;

enum class PLT_SHW_STORED_HEATLOSS_UNITS : int16_t { HEATLOSS_PERCENTAGE = 10, HEATLOSS_BTU_PER_HR_GAL_F = 20 };
inline constexpr Label kShwStoredHeatlossUnitsLabels[]{{10, "HEATLOSS_PERCENTAGE", "%/hr"},
                                                       {20, "HEATLOSS_BTU_PER_HR_GAL_F", "Btu/(hr.gal.F)"}};
template <>
inline constexpr std::span<const Label> labels<PLT_SHW_STORED_HEATLOSS_UNITS> = kShwStoredHeatlossUnitsLabels;

enum class PLT_SHW_STORED_HW_PRIO_RULE : int16_t {
  PRIORITY_BY_OAT_BELOW = 10,
  PRIORITY_BY_OAT_ABOVE = 20,
  PRIORITY_BY_SCHEDULE = 30
};
inline constexpr Label kShwStoredHwPrioRuleLabels[]{{10, "PRIORITY_BY_OAT_BELOW", "below an outdoor temperature"},
                                                    {20, "PRIORITY_BY_OAT_ABOVE", "above an outdoor temperature"},
                                                    {30, "PRIORITY_BY_SCHEDULE", "by schedule"}};
template <>
inline constexpr std::span<const Label> labels<PLT_SHW_STORED_HW_PRIO_RULE> = kShwStoredHwPrioRuleLabels;

}  // namespace tarn
