// The codes of chillers. Those of energy sources and cycle types are for calculation engines; no record has them.
#pragma once

#include "base/labels.h"

namespace tarn {

enum class CHL_ChillerTypes : int16_t {
  CT_WATER_COOLED_CENTRIFUGAL = 1,
  CT_WATER_COOLED_ROTARY_SCREW = 2,
  CT_WATER_COOLED_PACKAGED_SCREW = 3,
  CT_WATER_COOLED_PACKAGED_RECIPROCATING = 4,
  CT_WATER_COOLED_PACKAGED_SCROLL = 5,
  CT_WATER_COOLED_SINGLEEFFECT_ABSORPTION = 6,
  CT_WATER_COOLED_DOUBLEEFFECT_ABSORPTION = 7,
  CT_WATER_COOLED_DIRECTFIRED_ABSORPTION = 8,
  CT_WATER_COOLED_ENGINE_CHILLER = 9,
  CT_AIR_COOLED_PACKAGED_SCREW = 10,
  CT_AIR_COOLED_PACKAGED_RECIPROCATING = 11,
  CT_AIR_COOLED_PACKAGED_SCROLL = 12
};
inline constexpr Label kChillerTypesLabels[]{
    {1, "CT_WATER_COOLED_CENTRIFUGAL", "water-cooled centrifugal"},
    {2, "CT_WATER_COOLED_ROTARY_SCREW", "water-cooled rotary screw"},
    {3, "CT_WATER_COOLED_PACKAGED_SCREW", "water-cooled packaged screw"},
    {4, "CT_WATER_COOLED_PACKAGED_RECIPROCATING", "water-cooled packaged reciprocating"},
    {5, "CT_WATER_COOLED_PACKAGED_SCROLL", "water-cooled packaged scroll"},
    {6, "CT_WATER_COOLED_SINGLEEFFECT_ABSORPTION", "water-cooled single-effect absorption"},
    {7, "CT_WATER_COOLED_DOUBLEEFFECT_ABSORPTION", "water-cooled double-effect absorption"},
    {8, "CT_WATER_COOLED_DIRECTFIRED_ABSORPTION", "water-cooled direct-fired absorption"},
    {9, "CT_WATER_COOLED_ENGINE_CHILLER", "water-cooled engine chiller"},
    {10, "CT_AIR_COOLED_PACKAGED_SCREW", "air-cooled packaged screw"},
    {11, "CT_AIR_COOLED_PACKAGED_RECIPROCATING", "air-cooled packaged reciprocating"},
    {12, "CT_AIR_COOLED_PACKAGED_SCROLL", "air-cooled packaged scroll"}};
template <>
inline constexpr std::span<const Label> labels<CHL_ChillerTypes> = kChillerTypesLabels;

enum class CHL_FunctionTypes : int16_t { FT_CoolingOnly = 10, FT_Reversible = 20, FT_HeatingOnly = 30 };
inline constexpr Label kFunctionTypesLabels[]{{10, "FT_CoolingOnly", "cooling only"},
                                              {20, "FT_Reversible", "reversible"},
                                              {30, "FT_HeatingOnly", "heating only"}};
template <>
inline constexpr std::span<const Label> labels<CHL_FunctionTypes> = kFunctionTypesLabels;

enum class CHL_FuelTypes : int16_t {
  CFT_ELECTRIC = 3,
  CFT_NATURAL_GAS = 4,
  CFT_FUEL_OIL = 5,
  CFT_PROPANE = 6,
  CFT_REMOTE_SOURCE_HOT_WATER = 7,
  CFT_REMOTE_SOURCE_STEAM = 8
};
inline constexpr Label kFuelTypesLabels[]{{3, "CFT_ELECTRIC", "electric"},
                                          {4, "CFT_NATURAL_GAS", "natural gas"},
                                          {5, "CFT_FUEL_OIL", "fuel oil"},
                                          {6, "CFT_PROPANE", "propane"},
                                          {7, "CFT_REMOTE_SOURCE_HOT_WATER", "remote source hot water"},
                                          {8, "CFT_REMOTE_SOURCE_STEAM", "remote source steam"}};
template <>
inline constexpr std::span<const Label> labels<CHL_FuelTypes> = kFuelTypesLabels;

enum class CHL_DataSourceTypes : int16_t {
  IS_USER_DEFINED = 0,
  IS_AUTO_GENERATED = 1,
  IS_PUBLIC_IMPORTED_DATA = 2,
  IS_PRIVATE_IMPORTED_DATA = 3
};
inline constexpr Label kDataSourceTypesLabels[]{{0, "IS_USER_DEFINED", "user defined"},
                                                {1, "IS_AUTO_GENERATED", "generated"},
                                                {2, "IS_PUBLIC_IMPORTED_DATA", "imported, public"},
                                                {3, "IS_PRIVATE_IMPORTED_DATA", "imported, private"}};
template <>
inline constexpr std::span<const Label> labels<CHL_DataSourceTypes> = kDataSourceTypesLabels;

enum class CHL_MapDataTypes : int16_t { DT_LOAD_LEVELS_PERCENT = 0, DT_CHILLER_UNLOADING_STAGES = 1 };
inline constexpr Label kMapDataTypesLabels[]{{0, "DT_LOAD_LEVELS_PERCENT", "load levels, %"},
                                             {1, "DT_CHILLER_UNLOADING_STAGES", "unloading stages"}};
template <>
inline constexpr std::span<const Label> labels<CHL_MapDataTypes> = kMapDataTypesLabels;

enum class CHL_SourceFluids : int16_t { AirSource = 1, WaterSource = 2 };
inline constexpr Label kSourceFluidsLabels[]{{1, "AirSource", "air"}, {2, "WaterSource", "water"}};
template <>
inline constexpr std::span<const Label> labels<CHL_SourceFluids> = kSourceFluidsLabels;

enum class CHL_CycleTypes : int16_t { VaporCompression = 1, Absorption = 2 };
inline constexpr Label kCycleTypesLabels[]{{1, "VaporCompression", "vapor compression"},
                                           {2, "Absorption", "absorption"}};
template <>
inline constexpr std::span<const Label> labels<CHL_CycleTypes> = kCycleTypesLabels;

enum class CHL_EnergySources : int16_t { EL = 1, GA = 2, ST = 3 };
inline constexpr Label kEnergySourcesLabels[]{{1, "EL", "electricity"}, {2, "GA", "gas"}, {3, "ST", "steam"}};
template <>
inline constexpr std::span<const Label> labels<CHL_EnergySources> = kEnergySourcesLabels;

enum class CHL_DXFCOptions : int16_t { DXFC_NotUsed = 0, DXFC_NonIntegrated = 1, DXFC_Integrated = 2 };
inline constexpr Label kDXFCOptionsLabels[]{
    {0, "DXFC_NotUsed", "not used"}, {1, "DXFC_NonIntegrated", "non-integrated"}, {2, "DXFC_Integrated", "integrated"}};
template <>
inline constexpr std::span<const Label> labels<CHL_DXFCOptions> = kDXFCOptionsLabels;

enum class CHL_DXFCUOM : int16_t { DXFC_UOM_Absolute = 10, DXFC_UOM_Relative = 20 };
inline constexpr Label kDxfcuomLabels[]{{10, "DXFC_UOM_Absolute", "tons and kW"},
                                        {20, "DXFC_UOM_Relative", "fractions of full load"}};
template <>
inline constexpr std::span<const Label> labels<CHL_DXFCUOM> = kDxfcuomLabels;

enum class CHL_HeatRecMethods : int16_t {
  CHL_HR_NotUsed = 0,
  CHL_HR_HeatRecoveryCondenser = 10,
  CHL_HR_DoubleBundleCondenser = 20,
  CHL_HR_Desuperheater = 30
};
inline constexpr Label kHeatRecMethodsLabels[]{{0, "CHL_HR_NotUsed", "not used"},
                                               {10, "CHL_HR_HeatRecoveryCondenser", "heat recovery condenser"},
                                               {20, "CHL_HR_DoubleBundleCondenser", "double-bundle condenser"},
                                               {30, "CHL_HR_Desuperheater", "desuperheater"}};
template <>
inline constexpr std::span<const Label> labels<CHL_HeatRecMethods> = kHeatRecMethodsLabels;

enum class CHL_InputPower : int16_t { InputPower_Relative = 0, InputPower_Absolute = 1 };
inline constexpr Label kInputPowerLabels[]{{0, "InputPower_Relative", "per ton"},
                                           {1, "InputPower_Absolute", "absolute"}};
template <>
inline constexpr std::span<const Label> labels<CHL_InputPower> = kInputPowerLabels;

}  // namespace tarn
