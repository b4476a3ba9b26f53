// What a building's arrays count: meters, kinds of power, consumers, components, categories, periods of the day.
#pragma once

#include "tarn/base/labels.h"

namespace tarn {

/// Sections of a building's file, and what stands in them.
enum BLD_ConstituentMasks : int32_t {
  FS_HEADERONLY = 1,
  FS_STANDARD = 3,
  FS_SIMRESULTS = 4,
  FS_POWERPROFILE = 8,
  FS_ALL = 15
};

/// Meters.
enum class BLD_PowerProfiles : int16_t {
  PP_NONE = 0,
  PP_ELEC_METER1 = 1,
  PP_ELEC_METER2 = 2,
  PP_NATURAL_GAS_METER = 3,
  PP_FUEL_OIL_METER = 4,
  PP_PROPANE_METER = 5,
  PP_REMOTE_SOURCE_HW_METER = 6,
  PP_REMOTE_SOURCE_STEAM_METER = 7,
  PP_REMOTE_SOURCE_CW_METER = 8
};
template <>
inline constexpr CodeText<BLD_PowerProfiles> code_table<BLD_PowerProfiles>[] = {
    {BLD_PowerProfiles::PP_NONE, "none"},
    {BLD_PowerProfiles::PP_ELEC_METER1, "electric meter 1"},
    {BLD_PowerProfiles::PP_ELEC_METER2, "electric meter 2"},
    {BLD_PowerProfiles::PP_NATURAL_GAS_METER, "natural gas"},
    {BLD_PowerProfiles::PP_FUEL_OIL_METER, "fuel oil"},
    {BLD_PowerProfiles::PP_PROPANE_METER, "propane"},
    {BLD_PowerProfiles::PP_REMOTE_SOURCE_HW_METER, "remote hot water"},
    {BLD_PowerProfiles::PP_REMOTE_SOURCE_STEAM_METER, "remote steam"},
    {BLD_PowerProfiles::PP_REMOTE_SOURCE_CW_METER, "remote chilled water"},
};

enum class BLD_PowerTypes : int16_t {
  PT_ELECTRIC = 1,
  PT_NATURAL_GAS = 2,
  PT_FUEL_OIL = 3,
  PT_PROPANE = 4,
  PT_REMOTE_HOT_WATER = 5,
  PT_REMOTE_STEAM = 6,
  PT_REMOTE_CHILLED_WATER = 7
};
template <>
inline constexpr CodeText<BLD_PowerTypes> code_table<BLD_PowerTypes>[] = {
    {BLD_PowerTypes::PT_ELECTRIC, "electric"},
    {BLD_PowerTypes::PT_NATURAL_GAS, "natural gas"},
    {BLD_PowerTypes::PT_FUEL_OIL, "fuel oil"},
    {BLD_PowerTypes::PT_PROPANE, "propane"},
    {BLD_PowerTypes::PT_REMOTE_HOT_WATER, "remote hot water"},
    {BLD_PowerTypes::PT_REMOTE_STEAM, "remote steam"},
    {BLD_PowerTypes::PT_REMOTE_CHILLED_WATER, "remote chilled water"},
};

/// Consumers that are put on one of the electric meters.
enum class BLD_EnergyConsumingSystems : int16_t {
  EC_COOLING_EQUIPMENT = 1,
  EC_HEAT_PUMPS = 2,
  EC_ELEC_RESISTANCE_HEATING = 3,
  EC_BOILER_WATERHEATERS_HUMIDIFIERS = 4,
  EC_OTHER_HVAC_ELECTRIC = 5,
  EC_LIGHTING = 6,
  EC_OTHER_NONHVAC_ELECTRIC = 7
};
template <>
inline constexpr CodeText<BLD_EnergyConsumingSystems> code_table<BLD_EnergyConsumingSystems>[] = {
    {BLD_EnergyConsumingSystems::EC_COOLING_EQUIPMENT, "cooling equipment"},
    {BLD_EnergyConsumingSystems::EC_HEAT_PUMPS, "heat pumps"},
    {BLD_EnergyConsumingSystems::EC_ELEC_RESISTANCE_HEATING, "electric resistance heating"},
    {BLD_EnergyConsumingSystems::EC_BOILER_WATERHEATERS_HUMIDIFIERS, "boilers, water heaters, humidifiers"},
    {BLD_EnergyConsumingSystems::EC_OTHER_HVAC_ELECTRIC, "other HVAC electric"},
    {BLD_EnergyConsumingSystems::EC_LIGHTING, "lighting"},
    {BLD_EnergyConsumingSystems::EC_OTHER_NONHVAC_ELECTRIC, "other non-HVAC electric"},
};

enum class BLD_SystemComponents : int16_t {
  SC_AIRSYSTEM_FAN = 1,
  SC_COOLING_PLANT = 2,
  SC_HEATING_PLANT_NO_ABSORP = 3,
  SC_PUMPS = 4,
  SC_COOLING_TOWERS = 5,
  SC_LIGHTING = 6,
  SC_ELEC_EQUIPMENT = 7,
  SC_MISC_ELEC_EQUIPMENT = 8,
  SC_MISC_FUEL_USE = 9
};
template <>
inline constexpr CodeText<BLD_SystemComponents> code_table<BLD_SystemComponents>[] = {
    {BLD_SystemComponents::SC_AIRSYSTEM_FAN, "air system fans"},
    {BLD_SystemComponents::SC_COOLING_PLANT, "cooling"},
    {BLD_SystemComponents::SC_HEATING_PLANT_NO_ABSORP, "heating"},
    {BLD_SystemComponents::SC_PUMPS, "pumps"},
    {BLD_SystemComponents::SC_COOLING_TOWERS, "cooling towers"},
    {BLD_SystemComponents::SC_LIGHTING, "lighting"},
    {BLD_SystemComponents::SC_ELEC_EQUIPMENT, "electric equipment"},
    {BLD_SystemComponents::SC_MISC_ELEC_EQUIPMENT, "miscellaneous electric"},
    {BLD_SystemComponents::SC_MISC_FUEL_USE, "miscellaneous fuel"},
};

enum class BLD_EnergyCategories : int16_t {
  EC_HVAC_ELECTRIC = 1,
  EC_HVAC_NATURAL_GAS = 2,
  EC_HVAC_FUEL_OIL = 3,
  EC_HVAC_PROPANE = 4,
  EC_HVAC_REMOTE_HOTWATER = 5,
  EC_HVAC_REMOTE_STEAM = 6,
  EC_HVAC_REMOTE_CHILLEDWATER = 7,
  EC_NONHVAC_ELECTRIC = 8,
  EC_NONHVAC_NATURAL_GAS = 9,
  EC_NONHVAC_FUEL_OIL = 10,
  EC_NONHVAC_PROPANE = 11,
  EC_NONHVAC_REMOTE_HOTWATER = 12,
  EC_NONHVAC_REMOTE_STEAM = 13
};
template <>
inline constexpr CodeText<BLD_EnergyCategories> code_table<BLD_EnergyCategories>[] = {
    {BLD_EnergyCategories::EC_HVAC_ELECTRIC, "HVAC electric"},
    {BLD_EnergyCategories::EC_HVAC_NATURAL_GAS, "HVAC natural gas"},
    {BLD_EnergyCategories::EC_HVAC_FUEL_OIL, "HVAC fuel oil"},
    {BLD_EnergyCategories::EC_HVAC_PROPANE, "HVAC propane"},
    {BLD_EnergyCategories::EC_HVAC_REMOTE_HOTWATER, "HVAC remote hot water"},
    {BLD_EnergyCategories::EC_HVAC_REMOTE_STEAM, "HVAC remote steam"},
    {BLD_EnergyCategories::EC_HVAC_REMOTE_CHILLEDWATER, "HVAC remote chilled water"},
    {BLD_EnergyCategories::EC_NONHVAC_ELECTRIC, "non-HVAC electric"},
    {BLD_EnergyCategories::EC_NONHVAC_NATURAL_GAS, "non-HVAC natural gas"},
    {BLD_EnergyCategories::EC_NONHVAC_FUEL_OIL, "non-HVAC fuel oil"},
    {BLD_EnergyCategories::EC_NONHVAC_PROPANE, "non-HVAC propane"},
    {BLD_EnergyCategories::EC_NONHVAC_REMOTE_HOTWATER, "non-HVAC remote hot water"},
    {BLD_EnergyCategories::EC_NONHVAC_REMOTE_STEAM, "non-HVAC remote steam"},
};

enum class BLD_TODPeriods : int16_t { TOD_PEAK = 1, TOD_MIDPEAK = 2, TOD_NORMAL = 3, TOD_OFFPEAK = 4, TOD_ALL = 5 };
template <>
inline constexpr CodeText<BLD_TODPeriods> code_table<BLD_TODPeriods>[] = {
    {BLD_TODPeriods::TOD_PEAK, "peak"},       {BLD_TODPeriods::TOD_MIDPEAK, "mid-peak"},
    {BLD_TODPeriods::TOD_NORMAL, "normal"},   {BLD_TODPeriods::TOD_OFFPEAK, "off-peak"},
    {BLD_TODPeriods::TOD_ALL, "all periods"},
};

/// The character codes of the symbols, in code page 1252.
enum class BLD_CurrencySymbols : int16_t { CUR_USDOLLAR = 36, CUR_EURO = 128, CUR_POUND_STERLING = 163, CUR_YEN = 165 };
template <>
inline constexpr CodeText<BLD_CurrencySymbols> code_table<BLD_CurrencySymbols>[] = {
    {BLD_CurrencySymbols::CUR_USDOLLAR, "$"},
    {BLD_CurrencySymbols::CUR_EURO, "€"},
    {BLD_CurrencySymbols::CUR_POUND_STERLING, "£"},
    {BLD_CurrencySymbols::CUR_YEN, "¥"},
};

}  // namespace tarn
