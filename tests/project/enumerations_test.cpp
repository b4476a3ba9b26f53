// Every enumeration as clients meet it, its codes, names and texts as a whole, beside a list that was made without
// this program: tests/data/enumerations.json.
#include <gtest/gtest.h>

#include <cstring>
#include <fstream>
#include <map>

#include "support/expected_data.h"
#include "tarn/air_equipment_codes.h"
#include "tarn/air_system_codes.h"
#include "tarn/base/months.h"
#include "tarn/boiler.h"
#include "tarn/building_codes.h"
#include "tarn/chiller_codes.h"
#include "tarn/construction.h"
#include "tarn/cooling_tower.h"
#include "tarn/door.h"
#include "tarn/plant_codes.h"
#include "tarn/preferences.h"
#include "tarn/schedule.h"
#include "tarn/space_parts.h"
#include "tarn/utility_rate.h"

namespace tarn {
namespace {

using Labels = std::vector<Label>;
using Product = std::map<std::string, Labels>;

template <typename E>
std::string name_of() {
  const auto spelled = [](const char* function) { return std::string(function); }(__PRETTY_FUNCTION__);
  const size_t first = spelled.find("tarn::", spelled.find("E = ")) + 6;
  return spelled.substr(first, spelled.find_first_of(";]", first) - first);
}

template <typename... E>
void add(Product& all) {
  (all.emplace(name_of<E>(), Labels(labels<E>.begin(), labels<E>.end())), ...);
}
template <typename E, const auto& Table>
void add(Product& all) {
  const auto& made = labels_of<Table>;
  all[name_of<E>()].insert(all[name_of<E>()].end(), made.begin(), made.end());
}

// No member holds a code of these, so that the product has no table of them.
constexpr CodeText<AS_ConstituentMasks> kSystemSections[]{{CCM_NOTHING},    {CCM_HEADERMASK},     {CCM_INPUTMASK},
                                                          {CCM_SIZINGMASK}, {CCM_SIMULATIONMASK}, {CCM_MASKALL}};
constexpr CodeText<PLT_ConstituentMasks> kPlantSections[]{
    {CCM_HEADER},         {CCM_SYSTEM_SELECT}, {CCM_DETAILS},         {CCM_DESCRIPTIVE_DATA},
    {CCM_PLANTSIZING},    {CCM_DESPROFILE},    {CCM_DESIGN_DATA},     {CCM_UNMETLOADS},
    {CCM_LEEDUNMETLOADS}, {CCM_HOURLYSIMDATA}, {CCM_SIMULATION_DATA}, {CCM_ALL}};
constexpr CodeText<BLD_ConstituentMasks> kBuildingSections[]{
    {FS_HEADERONLY}, {FS_STANDARD}, {FS_SIMRESULTS}, {FS_POWERPROFILE}, {FS_ALL}};
constexpr CodeText<SCH_OccupancyType> kOccupancies[]{{SCH_OccupancyType::SOTV_UNOCCUPIED},
                                                     {SCH_OccupancyType::SOTV_OCCUPIED}};
constexpr auto kPeriods = codes_between<SCH_TimeOfDayPeriod::SRTV_PEAK, SCH_TimeOfDayPeriod::SRTV_OFF_PEAK>;

Product product() {
  Product all;
  add<AS_AFactors, AS_AirflowSpec, AS_COTriggers, AS_CoolingTypes, AS_DXConfigTypes, AS_DesignPowerUOM,
      AS_DirectHeatTypes, AS_EconomizerControlTypes, AS_EquipmentTypes, AS_FanConfigTypes, AS_FanControlTypes,
      AS_FanPerfUOM, AS_FanTypes, AS_HeatCoolSourceTypes, AS_HumidificationDeviceTypes, AS_LoopConfigTypes,
      AS_PerformanceModelTypes, AS_PerformanceTypes, AS_SizingMethodTypes, AS_SizingSourceTypes,
      AS_SplitSystemCompressorTypes, AS_SupplementalHeatUnitTypes, AS_SupplyAirSizingTypes, AS_SupplyAirTempTypes,
      AS_SupplyTerminalTypes, AS_SystemTypes, AS_UnmetLoadTypes, AS_UnoccFanControlEnum, AS_VentSizingMethods,
      AS_VentilationControlTypes, AS_VentilationReclaimTypes, AS_ZoneAirDistribution,
      AS_ZoneAirDistributionEffectiveness, AS_ZoneAirDistributionEffectivenessSpec>(all);
  add<BLD_CurrencySymbols, BLD_EnergyCategories, BLD_EnergyConsumingSystems, BLD_PowerProfiles, BLD_PowerTypes,
      BLD_SystemComponents, BLD_TODPeriods, URT_RateTypes, URT_Style>(all);
  add<BLR_BoilerTypes, BLR_FuelTypes, BLR_ModelingMethods, CHL_ChillerTypes, CHL_CycleTypes, CHL_DXFCOptions,
      CHL_DXFCUOM, CHL_DataSourceTypes, CHL_EnergySources, CHL_FuelTypes, CHL_FunctionTypes, CHL_HeatRecMethods,
      CHL_InputPower, CHL_MapDataTypes, CHL_SourceFluids, TWR_ControlTypes, TWR_ModelingMethods>(all);
  add<COM_ProjectLibrary, PLT_ControlTypes, PLT_FluidDistSystemTypes, PLT_FreeCoolingTypes, PLT_HeatRecoveryType,
      PLT_LWTControlType, PLT_PlantTypes, PLT_PumpControls, PLT_PumpPerfUnits, PLT_SHW_STORED_HEATLOSS_UNITS,
      PLT_SHW_STORED_HW_PRIO_RULE, PLT_SHW_USAGE_RATE_UNITS, PLT_SizingMethod, PLT_TowerConfigTypes, PLT_UnitSizing,
      PLT_WaterSourceConfigTypes>(all);
  add<CA_Category, CA_ReturnCodes, DOR_AreaSpec, Months, PRF_EnergyStandards, PRF_LEEDversions,
      PRF_VentilationStandards, SCH_Days, SCH_ScheduleTypes, SPC_AreaInputMode, SPC_OccupancySpec>(all);
  add<AS_ConstituentMasks, kSystemSections>(all);
  add<PLT_ConstituentMasks, kPlantSections>(all);
  add<BLD_ConstituentMasks, kBuildingSections>(all);
  add<SCH_OccupancyType, kOccupancies>(all);
  add<SCH_TimeOfDayPeriod, kPeriods>(all);
  // The list has the sources of both roles, what serves neither once.
  Labels& sources = all["AS_HeatCoolSourceTypes"];
  sources.insert(sources.begin() + 1, labels_of<kCoolingSources>.begin() + 1, labels_of<kCoolingSources>.end());
  return all;
}

/// "3 ST_ELEC_RESIST" for each label, with its text where the list states one; by code, names of one code in their
/// order.
using Lines = std::vector<std::pair<int32_t, std::string>>;
Lines by_code(Lines lines) {
  std::stable_sort(lines.begin(), lines.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
  return lines;
}

TEST(Enumerations, HaveTheCodesNamesAndTextsOfTheInterface) {
  const test::Json& expected = test::expected_data("enumerations.json");
  EXPECT_EQ(expected.size(), 92u);
  const Product all = product();
  for (const auto& [name, rows] : expected.items()) {
    const auto found = all.find(name);
    if (found == all.end()) {
      ADD_FAILURE() << "the product lacks " << name;
      continue;
    }
    std::map<std::string, std::string> stated;
    Lines wanted, got;
    for (const auto& row : rows) {
      std::string line = row["name"];
      if (!row["text"].is_null()) line += " | " + (stated[row["name"]] = row["text"]);
      wanted.emplace_back(row["value"], line);
    }
    for (const Label& label : found->second) {
      std::string line(label.name);
      if (stated.contains(line)) line += " | " + std::string(label.text);
      got.emplace_back(label.code, line);
      EXPECT_EQ(std::strlen(label.name.data()), label.name.size()) << label.name;
      EXPECT_EQ(std::strlen(label.text.data()), label.text.size()) << label.name;
    }
    EXPECT_EQ(by_code(got), by_code(wanted)) << name;
  }
}

}  // namespace
}  // namespace tarn
