// The codes of chillers. Those of energy sources and cycle types are for calculation engines; no record has them.
#pragma once

#include "tarn/base/labels.h"

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
template <>
inline constexpr CodeText<CHL_ChillerTypes> code_table<CHL_ChillerTypes>[] = {
    {CHL_ChillerTypes::CT_WATER_COOLED_CENTRIFUGAL, "water-cooled centrifugal"},
    {CHL_ChillerTypes::CT_WATER_COOLED_ROTARY_SCREW, "water-cooled rotary screw"},
    {CHL_ChillerTypes::CT_WATER_COOLED_PACKAGED_SCREW, "water-cooled packaged screw"},
    {CHL_ChillerTypes::CT_WATER_COOLED_PACKAGED_RECIPROCATING, "water-cooled packaged reciprocating"},
    {CHL_ChillerTypes::CT_WATER_COOLED_PACKAGED_SCROLL, "water-cooled packaged scroll"},
    {CHL_ChillerTypes::CT_WATER_COOLED_SINGLEEFFECT_ABSORPTION, "water-cooled single-effect absorption"},
    {CHL_ChillerTypes::CT_WATER_COOLED_DOUBLEEFFECT_ABSORPTION, "water-cooled double-effect absorption"},
    {CHL_ChillerTypes::CT_WATER_COOLED_DIRECTFIRED_ABSORPTION, "water-cooled direct-fired absorption"},
    {CHL_ChillerTypes::CT_WATER_COOLED_ENGINE_CHILLER, "water-cooled engine chiller"},
    {CHL_ChillerTypes::CT_AIR_COOLED_PACKAGED_SCREW, "air-cooled packaged screw"},
    {CHL_ChillerTypes::CT_AIR_COOLED_PACKAGED_RECIPROCATING, "air-cooled packaged reciprocating"},
    {CHL_ChillerTypes::CT_AIR_COOLED_PACKAGED_SCROLL, "air-cooled packaged scroll"},
};

enum class CHL_FunctionTypes : int16_t { FT_CoolingOnly = 10, FT_Reversible = 20, FT_HeatingOnly = 30 };
template <>
inline constexpr CodeText<CHL_FunctionTypes> code_table<CHL_FunctionTypes>[] = {
    {CHL_FunctionTypes::FT_CoolingOnly, "cooling only"},
    {CHL_FunctionTypes::FT_Reversible, "reversible"},
    {CHL_FunctionTypes::FT_HeatingOnly, "heating only"},
};

enum class CHL_FuelTypes : int16_t {
  CFT_ELECTRIC = 3,
  CFT_NATURAL_GAS = 4,
  CFT_FUEL_OIL = 5,
  CFT_PROPANE = 6,
  CFT_REMOTE_SOURCE_HOT_WATER = 7,
  CFT_REMOTE_SOURCE_STEAM = 8
};
template <>
inline constexpr CodeText<CHL_FuelTypes> code_table<CHL_FuelTypes>[] = {
    {CHL_FuelTypes::CFT_ELECTRIC, "electric"},
    {CHL_FuelTypes::CFT_NATURAL_GAS, "natural gas"},
    {CHL_FuelTypes::CFT_FUEL_OIL, "fuel oil"},
    {CHL_FuelTypes::CFT_PROPANE, "propane"},
    {CHL_FuelTypes::CFT_REMOTE_SOURCE_HOT_WATER, "remote source hot water"},
    {CHL_FuelTypes::CFT_REMOTE_SOURCE_STEAM, "remote source steam"},
};

enum class CHL_DataSourceTypes : int16_t {
  IS_USER_DEFINED = 0,
  IS_AUTO_GENERATED = 1,
  IS_PUBLIC_IMPORTED_DATA = 2,
  IS_PRIVATE_IMPORTED_DATA = 3
};
template <>
inline constexpr CodeText<CHL_DataSourceTypes> code_table<CHL_DataSourceTypes>[] = {
    {CHL_DataSourceTypes::IS_USER_DEFINED, "user defined"},
    {CHL_DataSourceTypes::IS_AUTO_GENERATED, "generated"},
    {CHL_DataSourceTypes::IS_PUBLIC_IMPORTED_DATA, "imported, public"},
    {CHL_DataSourceTypes::IS_PRIVATE_IMPORTED_DATA, "imported, private"},
};

enum class CHL_MapDataTypes : int16_t { DT_LOAD_LEVELS_PERCENT = 0, DT_CHILLER_UNLOADING_STAGES = 1 };
template <>
inline constexpr CodeText<CHL_MapDataTypes> code_table<CHL_MapDataTypes>[] = {
    {CHL_MapDataTypes::DT_LOAD_LEVELS_PERCENT, "load levels, %"},
    {CHL_MapDataTypes::DT_CHILLER_UNLOADING_STAGES, "unloading stages"},
};

enum class CHL_SourceFluids : int16_t { AirSource = 1, WaterSource = 2 };
template <>
inline constexpr CodeText<CHL_SourceFluids> code_table<CHL_SourceFluids>[] = {
    {CHL_SourceFluids::AirSource, "air"},
    {CHL_SourceFluids::WaterSource, "water"},
};

enum class CHL_CycleTypes : int16_t { VaporCompression = 1, Absorption = 2 };
template <>
inline constexpr CodeText<CHL_CycleTypes> code_table<CHL_CycleTypes>[] = {
    {CHL_CycleTypes::VaporCompression, "vapor compression"},
    {CHL_CycleTypes::Absorption, "absorption"},
};

enum class CHL_EnergySources : int16_t { EL = 1, GA = 2, ST = 3 };
template <>
inline constexpr CodeText<CHL_EnergySources> code_table<CHL_EnergySources>[] = {
    {CHL_EnergySources::EL, "electricity"},
    {CHL_EnergySources::GA, "gas"},
    {CHL_EnergySources::ST, "steam"},
};

enum class CHL_DXFCOptions : int16_t { DXFC_NotUsed = 0, DXFC_NonIntegrated = 1, DXFC_Integrated = 2 };
template <>
inline constexpr CodeText<CHL_DXFCOptions> code_table<CHL_DXFCOptions>[] = {
    {CHL_DXFCOptions::DXFC_NotUsed, "not used"},
    {CHL_DXFCOptions::DXFC_NonIntegrated, "non-integrated"},
    {CHL_DXFCOptions::DXFC_Integrated, "integrated"},
};

enum class CHL_DXFCUOM : int16_t { DXFC_UOM_Absolute = 10, DXFC_UOM_Relative = 20 };
template <>
inline constexpr CodeText<CHL_DXFCUOM> code_table<CHL_DXFCUOM>[] = {
    {CHL_DXFCUOM::DXFC_UOM_Absolute, "tons and kW"},
    {CHL_DXFCUOM::DXFC_UOM_Relative, "fractions of full load"},
};

enum class CHL_HeatRecMethods : int16_t {
  CHL_HR_NotUsed = 0,
  CHL_HR_HeatRecoveryCondenser = 10,
  CHL_HR_DoubleBundleCondenser = 20,
  CHL_HR_Desuperheater = 30
};
template <>
inline constexpr CodeText<CHL_HeatRecMethods> code_table<CHL_HeatRecMethods>[] = {
    {CHL_HeatRecMethods::CHL_HR_NotUsed, "not used"},
    {CHL_HeatRecMethods::CHL_HR_HeatRecoveryCondenser, "heat recovery condenser"},
    {CHL_HeatRecMethods::CHL_HR_DoubleBundleCondenser, "double-bundle condenser"},
    {CHL_HeatRecMethods::CHL_HR_Desuperheater, "desuperheater"},
};

enum class CHL_InputPower : int16_t { InputPower_Relative = 0, InputPower_Absolute = 1 };
template <>
inline constexpr CodeText<CHL_InputPower> code_table<CHL_InputPower>[] = {
    {CHL_InputPower::InputPower_Relative, "per ton"},
    {CHL_InputPower::InputPower_Absolute, "absolute"},
};

}  // namespace tarn
