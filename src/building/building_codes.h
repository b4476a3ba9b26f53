// What a building's arrays count: meters, kinds of power, consumers, components, categories, periods of the day.
#pragma once

#include "base/labels.h"

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
inline constexpr Label kMeterLabels[]{{0, "PP_NONE", "none"},
                                      {1, "PP_ELEC_METER1", "electric meter 1"},
                                      {2, "PP_ELEC_METER2", "electric meter 2"},
                                      {3, "PP_NATURAL_GAS_METER", "natural gas"},
                                      {4, "PP_FUEL_OIL_METER", "fuel oil"},
                                      {5, "PP_PROPANE_METER", "propane"},
                                      {6, "PP_REMOTE_SOURCE_HW_METER", "remote hot water"},
                                      {7, "PP_REMOTE_SOURCE_STEAM_METER", "remote steam"},
                                      {8, "PP_REMOTE_SOURCE_CW_METER", "remote chilled water"}};
template <>
inline constexpr std::span<const Label> labels<BLD_PowerProfiles> = kMeterLabels;

enum class BLD_PowerTypes : int16_t {
  PT_ELECTRIC = 1,
  PT_NATURAL_GAS = 2,
  PT_FUEL_OIL = 3,
  PT_PROPANE = 4,
  PT_REMOTE_HOT_WATER = 5,
  PT_REMOTE_STEAM = 6,
  PT_REMOTE_CHILLED_WATER = 7
};
inline constexpr Label kPowerTypeLabels[]{{1, "PT_ELECTRIC", "electric"},
                                          {2, "PT_NATURAL_GAS", "natural gas"},
                                          {3, "PT_FUEL_OIL", "fuel oil"},
                                          {4, "PT_PROPANE", "propane"},
                                          {5, "PT_REMOTE_HOT_WATER", "remote hot water"},
                                          {6, "PT_REMOTE_STEAM", "remote steam"},
                                          {7, "PT_REMOTE_CHILLED_WATER", "remote chilled water"}};
template <>
inline constexpr std::span<const Label> labels<BLD_PowerTypes> = kPowerTypeLabels;

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
inline constexpr Label kConsumerLabels[]{
    {1, "EC_COOLING_EQUIPMENT", "cooling equipment"},
    {2, "EC_HEAT_PUMPS", "heat pumps"},
    {3, "EC_ELEC_RESISTANCE_HEATING", "electric resistance heating"},
    {4, "EC_BOILER_WATERHEATERS_HUMIDIFIERS", "boilers, water heaters, humidifiers"},
    {5, "EC_OTHER_HVAC_ELECTRIC", "other HVAC electric"},
    {6, "EC_LIGHTING", "lighting"},
    {7, "EC_OTHER_NONHVAC_ELECTRIC", "other non-HVAC electric"}};
template <>
inline constexpr std::span<const Label> labels<BLD_EnergyConsumingSystems> = kConsumerLabels;

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
inline constexpr Label kComponentLabels[]{
    {1, "SC_AIRSYSTEM_FAN", "air system fans"},     {2, "SC_COOLING_PLANT", "cooling"},
    {3, "SC_HEATING_PLANT_NO_ABSORP", "heating"},   {4, "SC_PUMPS", "pumps"},
    {5, "SC_COOLING_TOWERS", "cooling towers"},     {6, "SC_LIGHTING", "lighting"},
    {7, "SC_ELEC_EQUIPMENT", "electric equipment"}, {8, "SC_MISC_ELEC_EQUIPMENT", "miscellaneous electric"},
    {9, "SC_MISC_FUEL_USE", "miscellaneous fuel"}};
template <>
inline constexpr std::span<const Label> labels<BLD_SystemComponents> = kComponentLabels;

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
inline constexpr Label kCategoryLabels[]{{1, "EC_HVAC_ELECTRIC", "HVAC electric"},
                                         {2, "EC_HVAC_NATURAL_GAS", "HVAC natural gas"},
                                         {3, "EC_HVAC_FUEL_OIL", "HVAC fuel oil"},
                                         {4, "EC_HVAC_PROPANE", "HVAC propane"},
                                         {5, "EC_HVAC_REMOTE_HOTWATER", "HVAC remote hot water"},
                                         {6, "EC_HVAC_REMOTE_STEAM", "HVAC remote steam"},
                                         {7, "EC_HVAC_REMOTE_CHILLEDWATER", "HVAC remote chilled water"},
                                         {8, "EC_NONHVAC_ELECTRIC", "non-HVAC electric"},
                                         {9, "EC_NONHVAC_NATURAL_GAS", "non-HVAC natural gas"},
                                         {10, "EC_NONHVAC_FUEL_OIL", "non-HVAC fuel oil"},
                                         {11, "EC_NONHVAC_PROPANE", "non-HVAC propane"},
                                         {12, "EC_NONHVAC_REMOTE_HOTWATER", "non-HVAC remote hot water"},
                                         {13, "EC_NONHVAC_REMOTE_STEAM", "non-HVAC remote steam"}};
template <>
inline constexpr std::span<const Label> labels<BLD_EnergyCategories> = kCategoryLabels;

enum class BLD_TODPeriods : int16_t { TOD_PEAK = 1, TOD_MIDPEAK = 2, TOD_NORMAL = 3, TOD_OFFPEAK = 4, TOD_ALL = 5 };
inline constexpr Label kPeriodLabels[]{{1, "TOD_PEAK", "peak"},
                                       {2, "TOD_MIDPEAK", "mid-peak"},
                                       {3, "TOD_NORMAL", "normal"},
                                       {4, "TOD_OFFPEAK", "off-peak"},
                                       {5, "TOD_ALL", "all periods"}};
template <>
inline constexpr std::span<const Label> labels<BLD_TODPeriods> = kPeriodLabels;

/// The character codes of the symbols, in code page 1252.
enum class BLD_CurrencySymbols : int16_t { CUR_USDOLLAR = 36, CUR_EURO = 128, CUR_POUND_STERLING = 163, CUR_YEN = 165 };
inline constexpr Label kCurrencyLabels[]{
    {36, "CUR_USDOLLAR", "$"}, {128, "CUR_EURO", "€"}, {163, "CUR_POUND_STERLING", "£"}, {165, "CUR_YEN", "¥"}};
template <>
inline constexpr std::span<const Label> labels<BLD_CurrencySymbols> = kCurrencyLabels;

}  // namespace tarn
