// The codes of air systems: each enumeration with its members, whose names double as display texts where they are
// texts.
#pragma once

#include "base/labels.h"

namespace tarn {

enum class AS_SystemTypes : int16_t {};
inline constexpr Label kSystemTypes[]{{1, "1. Single Zone CAV", ""},
                                      {2, "2. CAV with Terminal Reheat", ""},
                                      {3, "3. 2-Deck Multizone", ""},
                                      {4, "4. 3-Deck Multizone", ""},
                                      {5, "5. Dual Duct CAV", ""},
                                      {6, "6. MakeupAir_DOAS", ""},
                                      {7, "7. Four Pipe Induction", ""},
                                      {8, "8. VAV", ""},
                                      {9, "9. 1-Fan Dual Duct VAV", ""},
                                      {10, "10. 2-Fan Dual Duct VAV", ""},
                                      {11, "11. VVT", ""},
                                      {12, "12. Packaged DX Fan Coil", ""},
                                      {13, "13. Split DX Fan Coil", ""},
                                      {14, "14. Water Source Heat Pump", ""},
                                      {15, "15. 2-Pipe Fan Coil", ""},
                                      {16, "16. 4-Pipe Fan Coil", ""},
                                      {17, "17. Convective Cooling & Heating", ""},
                                      {18, "18. Groundwater Source Heat Pump", ""},
                                      {19, "19. Ground Source Heat Pump", ""},
                                      {20, "20. Variable Refrigerant Flow (VRF)", ""},
                                      {21, "21. Induction Beam", ""},
                                      {22, "22. Active Chilled Beam", ""}};
template <>
inline constexpr std::span<const Label> labels<AS_SystemTypes> = kSystemTypes;

enum class AS_EquipmentTypes : int16_t {};
inline constexpr Label kEquipmentTypes[]{{1, "ET_GENERIC", ""},   {2, "ET_PKG_RTU", ""}, {3, "ET_PKG_VERT_UNIT", ""},
                                         {4, "ET_SPLIT_AHU", ""}, {5, "ET_CW_AHU", ""},  {6, "ET_FANCOILS", ""}};
template <>
inline constexpr std::span<const Label> labels<AS_EquipmentTypes> = kEquipmentTypes;

enum class AS_SupplyAirTempTypes : int16_t {};
inline constexpr Label kSupplyAirTempTypes[]{{0, "0. Constant Temperature - Fan Cycled", ""},
                                             {1, "1. Constant Temperature - Fan On", ""},
                                             {2, "2. Cycled or Staged Coil - Fan On", ""},
                                             {3, "3. Temperature Reset based on Greatest Zone Demand", ""},
                                             {4, "4. Temperature Reset based on Outdoor Air Schedule", ""}};
template <>
inline constexpr std::span<const Label> labels<AS_SupplyAirTempTypes> = kSupplyAirTempTypes;

enum class AS_VentilationControlTypes : int16_t {};
inline constexpr Label kVentilationControlTypes[]{{1, "1. Proportional", ""},
                                                  {2, "2. Constant Ventilation Airflow", ""},
                                                  {3, "3. Scheduled control", ""},
                                                  {4, "4. DCV Proportional control", ""}};
template <>
inline constexpr std::span<const Label> labels<AS_VentilationControlTypes> = kVentilationControlTypes;

enum class AS_AirflowSpec : int16_t {};
inline constexpr Label kAirflowSpec[]{{1, "VU_CFM", ""},
                                      {2, "VU_CFMSQFT", ""},
                                      {3, "VU_CFMPERSON", ""},
                                      {4, "VU_PERCENT_SUPPLY_AIR", ""},
                                      {5, "VU_ACH", ""}};
template <>
inline constexpr std::span<const Label> labels<AS_AirflowSpec> = kAirflowSpec;

enum class AS_VentilationReclaimTypes : int16_t {};
inline constexpr Label kVentilationReclaimTypes[]{{1, "1. Sensible heat reclaim only", ""},
                                                  {2, "2. Sensible and latent heat reclaim", ""}};
template <>
inline constexpr std::span<const Label> labels<AS_VentilationReclaimTypes> = kVentilationReclaimTypes;

enum class AS_FanTypes : int16_t {};
inline constexpr Label kFanTypes[]{{0, "0. Not used", ""},
                                   {1, "1. Forward Curved", ""},
                                   {2, "2. Forward Curved with Dampers", ""},
                                   {3, "3. Forward Curved with Variable Frequency Drive", ""},
                                   {4, "4. Forward Curved with Variable Speed Drive", ""},
                                   {5, "5. Forward Curved with Inlet Guide Vanes", ""},
                                   {6, "6. Backward Inclined or Airfoil (BI/AF)", ""},
                                   {7, "7. BI/AF with Inlet Guide Vanes", ""},
                                   {8, "8. BI/AF with Variable Frequency Drive", ""},
                                   {9, "9. BI/AF with Variable Speed Drive", ""},
                                   {10, "10. Controlled Pitch Axial", ""},
                                   {11, "11. User defined", ""},
                                   {12, "12. ASHRAE 90.1-2004 Appendix G Fan Curve", ""}};
template <>
inline constexpr std::span<const Label> labels<AS_FanTypes> = kFanTypes;

enum class AS_FanPerfUOM : int16_t {};
inline constexpr Label kFanPerfUOM[]{{0, "0. Brakehorsepower (BHP)", ""},
                                     {1, "1. Total static pressure across fan", ""},
                                     {2, "2. Fan motor input kW", ""},
                                     {3, "3. Fan motor input W/CFM", ""},
                                     {4, "4. 90.1 Appendix G Fan kW", ""}};
template <>
inline constexpr std::span<const Label> labels<AS_FanPerfUOM> = kFanPerfUOM;

enum class AS_FanConfigTypes : int16_t {};
inline constexpr Label kFanConfigTypes[]{{0, "0. Blow-thru", ""}, {1, "1. Draw-thru", ""}};
template <>
inline constexpr std::span<const Label> labels<AS_FanConfigTypes> = kFanConfigTypes;

enum class AS_EconomizerControlTypes : int16_t {};
inline constexpr Label kEconomizerControlTypes[]{{0, "0. None", ""},
                                                 {1, "1. Integrated enthalpy control", ""},
                                                 {2, "2. Integrated dry-bulb control", ""},
                                                 {3, "3. Non-integrated dry-bulb control", ""}};
template <>
inline constexpr std::span<const Label> labels<AS_EconomizerControlTypes> = kEconomizerControlTypes;

enum class AS_HumidificationDeviceTypes : int16_t {};
inline constexpr Label kHumidificationDeviceTypes[]{
    {0, "0. Self-Contained Steam - Electric", ""}, {1, "1. Self-Contained Steam - Natural Gas", ""},
    {2, "2. Self-Contained Steam - Propane", ""},  {3, "3. Direct Steam Injection", ""},
    {4, "4. Heated Pan - Steam HX", ""},           {5, "5. Heated Pan - Hot Water HX", ""}};
template <>
inline constexpr std::span<const Label> labels<AS_HumidificationDeviceTypes> = kHumidificationDeviceTypes;

enum class AS_SupplyAirSizingTypes : int16_t {};
inline constexpr Label kSupplyAirSizingTypes[]{{0, "0. Supply Temperature (F)", ""},
                                               {1, "1. Supply Airflow (CFM)", ""},
                                               {2, "2. Supply Airflow per unit floor area (CFM/sqft)", ""}};
template <>
inline constexpr std::span<const Label> labels<AS_SupplyAirSizingTypes> = kSupplyAirSizingTypes;

enum class AS_SupplementalHeatUnitTypes : int16_t {};
inline constexpr Label kSupplementalHeatUnitTypes[]{{0, "0 - Not used ", ""},
                                                    {1, "1. Baseboard unit, OAT control", ""},
                                                    {2, "2. Fan coil unit, OAT control", ""},
                                                    {3, "3. Baseboard unit, room t-stat control", ""},
                                                    {4, "4. Fan coil unit, room t-stat control", ""}};
template <>
inline constexpr std::span<const Label> labels<AS_SupplementalHeatUnitTypes> = kSupplementalHeatUnitTypes;

enum class AS_SupplyTerminalTypes : int16_t {};
inline constexpr Label kSupplyTerminalTypes[]{{1, "1. Diffuser", ""},
                                              {2, "2. Diffuser with RH", ""},
                                              {3, "3. VAV box", ""},
                                              {4, "4. VAV box with RH", ""},
                                              {5, "5. Series FPMBX with RH", ""},
                                              {6, "6. Parallel FPMBX with RH", ""},
                                              {7, "7. VAV mixing box", ""},
                                              {8, "8. CAV mixing box", ""},
                                              {9, "9. CAV mixing box with RH", ""},
                                              {10, "10. Induction terminal", ""},
                                              {11, "11. Fan Coil", ""},
                                              {12, "12. Supply Term. VVT", ""},
                                              {13, "13. Induction Beam", ""},
                                              {14, "14. Active Chilled Beam", ""}};
template <>
inline constexpr std::span<const Label> labels<AS_SupplyTerminalTypes> = kSupplyTerminalTypes;

enum class AS_ZoneAirDistribution : int16_t {};
inline constexpr Label kZoneAirDistribution[]{{1, "CEIL_SUPPLY_LOW_VELOCITY_CEIL_RETURN", ""},
                                              {2, "CEIL_SUPPLY_CEIL_RETURN", ""},
                                              {3, "CEIL_SUPPLY_FLOOR_RETURN", ""},
                                              {4, "FLOOR_SUPPLY_FLOOR_RETURN", ""},
                                              {5, "FLOOR_SUPPLY_LOW_VELOCITY_CEIL_RETURN", ""},
                                              {6, "FLOOR_SUPPLY_CEIL_RETURN", ""},
                                              {7, "SUPPLY_NEAR_EXHAUST_RETURN", ""},
                                              {8, "SUPPLY_OPPOSITE_EXHAUST_RETURN", ""}};
template <>
inline constexpr std::span<const Label> labels<AS_ZoneAirDistribution> = kZoneAirDistribution;

enum class AS_ZoneAirDistributionEffectivenessSpec : int16_t {};
inline constexpr Label kZoneAirDistributionEffectivenessSpec[]{
    {0, "ZADES_NOT_USED", ""}, {1, "ZADES_ASHRAE_62_1", ""}, {2, "ZADES_USER_SPECIFIED", ""}};
template <>
inline constexpr std::span<const Label> labels<AS_ZoneAirDistributionEffectivenessSpec> =
    kZoneAirDistributionEffectivenessSpec;

enum class AS_ZoneAirDistributionEffectiveness : int16_t {};
inline constexpr Label kZoneAirDistributionEffectiveness[]{
    {1, "ZADE_0_5", ""}, {2, "ZADE_0_7", ""}, {3, "ZADE_0_8", ""}, {4, "ZADE_1_0", ""}, {5, "ZADE_1_2", ""}};
template <>
inline constexpr std::span<const Label> labels<AS_ZoneAirDistributionEffectiveness> = kZoneAirDistributionEffectiveness;

enum class AS_SizingMethodTypes : int16_t {};
inline constexpr Label kSizingMethodTypes[]{
    {1, "1. Peak Zone Load - Spaces by Zone CFM/sqft", ""},
    {2, "2. Peak Zone Load - Spaces coincident spaces loads", ""},
    {3, "3. Peak Zone Load - Spaces by individual peak space loads", ""},
    {4, "4. Sum of Space airflows - Spaces by individual peak space loads", ""}};
template <>
inline constexpr std::span<const Label> labels<AS_SizingMethodTypes> = kSizingMethodTypes;

enum class AS_SizingSourceTypes : int16_t {};
inline constexpr Label kSizingSourceTypes[]{{1, "1. Program Calculated Original data", ""},
                                            {2, "2. User modified", ""}};
template <>
inline constexpr std::span<const Label> labels<AS_SizingSourceTypes> = kSizingSourceTypes;

enum class AS_UnmetLoadTypes : int16_t {};
inline constexpr Label kUnmetLoadTypes[]{{1, "UL_PRECOOL", ""},  {2, "UL_PREHEAT", ""},  {3, "UL_CENT_CLG", ""},
                                         {4, "UL_CENT_HTG", ""}, {5, "UL_TERM_CLG", ""}, {6, "UL_TERM_HTG", ""}};
template <>
inline constexpr std::span<const Label> labels<AS_UnmetLoadTypes> = kUnmetLoadTypes;

enum class AS_DesignPowerUOM : int16_t {};
inline constexpr Label kDesignPowerUOM[]{
    {0, "DP_COP", ""}, {1, "DP_KW", ""}, {2, "DP_EER", ""}, {3, "DP_SEER", ""}, {4, "DP_HSPF", ""}};
template <>
inline constexpr std::span<const Label> labels<AS_DesignPowerUOM> = kDesignPowerUOM;

enum class AS_PerformanceModelTypes : int16_t {};
inline constexpr Label kPerformanceModelTypes[]{{0, "PMT_COMPUTER_GENERATED", ""}, {1, "PMT_USED_DEFINED", ""}};
template <>
inline constexpr std::span<const Label> labels<AS_PerformanceModelTypes> = kPerformanceModelTypes;

enum class AS_DirectHeatTypes : int16_t {};
inline constexpr Label kDirectHeatTypes[]{
    {3, "DHT_ELEC_RESIST", ""}, {4, "DHT_NAT_GAS", ""}, {5, "DHT_FUEL_OIL", ""}, {6, "DHT_PROPANE", ""}};
template <>
inline constexpr std::span<const Label> labels<AS_DirectHeatTypes> = kDirectHeatTypes;

enum class AS_LoopConfigTypes : int16_t {};
inline constexpr Label kLoopConfigTypes[]{{0, "LC_CLOSED_IWSHP", ""}, {1, "LC_OPEN_WSHP", ""}};
template <>
inline constexpr std::span<const Label> labels<AS_LoopConfigTypes> = kLoopConfigTypes;

enum class AS_CoolingTypes : int16_t {};
inline constexpr Label kCoolingTypes[]{{0, "CT_DIRECT", ""}, {1, "CT_INDIRECT", ""}};
template <>
inline constexpr std::span<const Label> labels<AS_CoolingTypes> = kCoolingTypes;

enum class AS_PerformanceTypes : int16_t {};
inline constexpr Label kPerformanceTypes[]{
    {0, "ptCOMP_KW", ""}, {1, "ptARI_PERF", ""}, {2, "ptASHRAE_EFF", ""}, {0, "ptAVG_HEAT_EFF", ""}};
template <>
inline constexpr std::span<const Label> labels<AS_PerformanceTypes> = kPerformanceTypes;

enum class AS_SplitSystemCompressorTypes : int16_t {};
inline constexpr Label kSplitSystemCompressorTypes[]{
    {0, "VRF_Variable_Speed_Scroll", ""}, {1, "VRF_Digital_Scroll", ""}, {2, "VRF_Rotary", ""}};
template <>
inline constexpr std::span<const Label> labels<AS_SplitSystemCompressorTypes> = kSplitSystemCompressorTypes;

enum class AS_DXConfigTypes : int16_t {};
inline constexpr Label kDXConfigTypes[]{{0, "0. 1-stage compression, single circuit", ""},
                                        {1, "1. 2-stage compression, separate circuits", ""},
                                        {2, "2. 2-stage compression, single circuit", ""},
                                        {3, "3. 3-stage compression", ""},
                                        {4, "4. 4-stage compression", ""},
                                        {5, "5. 5-stage compression", ""},
                                        {6, "6. 6-stage compression", ""},
                                        {7, "7. 7-stage compression", ""},
                                        {8, "8. 8-stage compression", ""}};
template <>
inline constexpr std::span<const Label> labels<AS_DXConfigTypes> = kDXConfigTypes;

enum class AS_FanControlTypes : int16_t {};
inline constexpr Label kFanControlTypes[]{{0, "0. 1-speed, cooling and heating", ""},
                                          {1, "1. 2-speed cooling, 1-speed heating", ""},
                                          {2, "2. 2-speed cooling, 2-speed heating", ""},
                                          {3, "3. 3-speed cooling, 1-speed heating", ""}};
template <>
inline constexpr std::span<const Label> labels<AS_FanControlTypes> = kFanControlTypes;

enum class AS_COTriggers : int16_t {};
inline constexpr Label kCOTriggers[]{{10, "10. Scheduled", ""}, {20, "20. OATThreshold", ""}};
template <>
inline constexpr std::span<const Label> labels<AS_COTriggers> = kCOTriggers;

enum class AS_UnoccFanControlEnum : int16_t {};
inline constexpr Label kUnoccFanControl[]{{0, "0. Cycled on Demand", ""}, {1, "1. Continuous Operation", ""}};
template <>
inline constexpr std::span<const Label> labels<AS_UnoccFanControlEnum> = kUnoccFanControl;

enum class AS_VentSizingMethods : int16_t {};
inline constexpr Label kVentSizingMethods[]{{0, "VSM_SUM_OF_SPACE_REQS", ""},      {1, "VSM_ASHRAE_STD_62_2001", ""},
                                            {2, "VSM_ASHRAE_STD_62_2001_MAX", ""}, {3, "VSM_ASHRAE_STD_62_2004", ""},
                                            {4, "VSM_ASHRAE_STD_62_2007", ""},     {5, "VSM_ASHRAE_STD_62_2010", ""},
                                            {6, "VSM_ASHRAE_STD_62_2013", ""},     {7, "VSM_ASHRAE_STD_62_2016", ""}};
template <>
inline constexpr std::span<const Label> labels<AS_VentSizingMethods> = kVentSizingMethods;

enum class AS_AFactors : int16_t {};
inline constexpr Label kAFactors[]{{1, "AFAC_Fully_Ducted_Return_Exhaust", ""},
                                   {2, "AFAC_Return_Exhaust_Control_Device", ""},
                                   {3, "AFAC_Exhaust_Filters_Scrubbers", ""},
                                   {4, "AFAC_MERV_9_12", ""},
                                   {5, "AFAC_MERV_13_15", ""},
                                   {6, "AFAC_MERV_16", ""},
                                   {7, "AFAC_Carbon_Gas_Phase_Air_Cleaner", ""},
                                   {8, "AFAC_Heat_Recovery_Device", ""},
                                   {9, "AFAC_Evap_Humidifier", ""},
                                   {10, "AFAC_Sound_Attenuation", ""},
                                   {11, "AFAC_Fume_Hood_Exhaust_Exception", ""},
                                   {12, "AFAC_Energy_Rec_Device", ""},
                                   {13, "AFAC_Coil_Runaround_Loop", ""},
                                   {14, "AFAC_Biosafety_Cabinet", ""},
                                   {15, "AFAC_Laboratory_Vivarium_Exhaust_System", ""},
                                   {16, "AFAC_Systems_Without_Central_Cooling_Device", ""},
                                   {17, "AFAC_Systems_Without_Central_Heating_Device", ""},
                                   {18, "AFAC_Systems_With_Central_Electric_Resistance_Heat", ""},
                                   {19, "AFAC_Exhaust_System_Fume_Hoods", ""}};
template <>
inline constexpr std::span<const Label> labels<AS_AFactors> = kAFactors;

/// Heating and cooling sources share the numbers; which text is meant depends on the member that holds the code.
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
inline constexpr Label kCoolingSources[]{
    {0, "ST_IRRELEVANT", ""}, {1, "ST_AIR_COOLED_DX", ""}, {2, "ST_WATER_COOLED_DX", ""}, {3, "ST_CHILLED_WATER", ""}};
inline constexpr Label kHeatingSources[]{
    {0, "ST_IRRELEVANT", ""},      {1, "ST_AIRSOURCE_HEAT_PUMP", ""}, {2, "ST_WATERSOURCE_HEAT_PUMP", ""},
    {3, "ST_ELEC_RESIST", ""},     {4, "ST_COMBUST_NAT_GAS", ""},     {5, "ST_COMBUST_FUEL_OIL", ""},
    {6, "ST_COMBUST_PROPANE", ""}, {7, "ST_HOT_WATER", ""},           {8, "ST_STEAM", ""}};
template <>
inline constexpr std::span<const Label> labels<AS_HeatCoolSourceTypes> = kHeatingSources;

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
