#include "project/enumerations.h"

#include <algorithm>
#include <vector>

#include "base/nearest.h"
#include "tarn/air_equipment_codes.h"
#include "tarn/air_system_codes.h"
#include "tarn/base/flow_units.h"
#include "tarn/base/months.h"
#include "tarn/boiler.h"
#include "tarn/building_codes.h"
#include "tarn/chiller_codes.h"
#include "tarn/construction.h"
#include "tarn/cooling_tower.h"
#include "tarn/door.h"
#include "tarn/plant_codes.h"
#include "tarn/preferences.h"
#include "tarn/reflect/names.h"
#include "tarn/schedule.h"
#include "tarn/space_parts.h"
#include "tarn/utility_rate.h"

namespace tarn {
namespace {

using Enumerations = std::vector<Enumeration>;

template <typename... E>
void add(Enumerations& all) {
  (all.push_back({class_name<E>(), labels<E>, labels<E>.data()}), ...);
}

/// Heating and cooling share the enumeration; each lists those that serve it, and "irrelevant".
std::span<const Label> all_sources() {
  static const std::vector<Label> sources = [] {
    const std::span<const Label> cooling = labels_of<kCoolingSources>, heating = labels<AS_HeatCoolSourceTypes>;
    std::vector<Label> both(cooling.begin(), cooling.end());
    both.insert(both.end(), heating.begin() + 1, heating.end());
    std::stable_sort(both.begin(), both.end(), [](const Label& a, const Label& b) { return a.code < b.code; });
    return both;
  }();
  return sources;
}

Enumerations made() {
  Enumerations all;
  add<AS_AFactors, AS_AirflowSpec, AS_COTriggers, AS_ConstituentMasks, AS_CoolingTypes, AS_DXConfigTypes,
      AS_DesignPowerUOM, AS_DirectHeatTypes, AS_EconomizerControlTypes, AS_EquipmentTypes, AS_FanConfigTypes,
      AS_FanControlTypes, AS_FanPerfUOM, AS_FanTypes, AS_HumidificationDeviceTypes, AS_LoopConfigTypes,
      AS_PerformanceModelTypes, AS_PerformanceTypes, AS_SizingMethodTypes, AS_SizingSourceTypes,
      AS_SplitSystemCompressorTypes, AS_SupplementalHeatUnitTypes, AS_SupplyAirSizingTypes, AS_SupplyAirTempTypes,
      AS_SupplyTerminalTypes, AS_SystemTypes, AS_UnmetLoadTypes, AS_UnoccFanControlEnum, AS_VentSizingMethods,
      AS_VentilationControlTypes, AS_VentilationReclaimTypes, AS_ZoneAirDistribution,
      AS_ZoneAirDistributionEffectiveness, AS_ZoneAirDistributionEffectivenessSpec>(all);
  all.push_back({class_name<AS_HeatCoolSourceTypes>(), all_sources(), labels<AS_HeatCoolSourceTypes>.data()});
  add<BLD_ConstituentMasks, BLD_CurrencySymbols, BLD_EnergyCategories, BLD_EnergyConsumingSystems, BLD_PowerProfiles,
      BLD_PowerTypes, BLD_SystemComponents, BLD_TODPeriods, URT_RateTypes, URT_Style>(all);
  add<BLR_BoilerTypes, BLR_FuelTypes, BLR_ModelingMethods, CHL_ChillerTypes, CHL_CycleTypes, CHL_DXFCOptions,
      CHL_DXFCUOM, CHL_DataSourceTypes, CHL_EnergySources, CHL_FuelTypes, CHL_FunctionTypes, CHL_HeatRecMethods,
      CHL_InputPower, CHL_MapDataTypes, CHL_SourceFluids, COM_FlowUOM, TWR_AirFlowUOM, TWR_ControlTypes,
      TWR_FanPowerUOM, TWR_ModelingMethods>(all);
  add<COM_ProjectLibrary, PLT_ConstituentMasks, PLT_ControlTypes, PLT_FluidDistSystemTypes, PLT_FreeCoolingTypes,
      PLT_HeatRecoveryType, PLT_LWTControlType, PLT_PlantTypes, PLT_PumpControls, PLT_PumpPerfUnits,
      PLT_SHW_STORED_HEATLOSS_UNITS, PLT_SHW_STORED_HW_PRIO_RULE, PLT_SHW_USAGE_RATE_UNITS, PLT_SizingMethod,
      PLT_TowerConfigTypes, PLT_UnitSizing, PLT_WaterSourceConfigTypes>(all);
  add<CA_Category, CA_ReturnCodes, DOR_AreaSpec, Months, PRF_EnergyStandards, PRF_LEEDversions,
      PRF_VentilationStandards, SCH_Days, SCH_OccupancyType, SCH_ScheduleTypes, SCH_TimeOfDayPeriod, SPC_AreaInputMode,
      SPC_OccupancySpec>(all);
  std::sort(all.begin(), all.end(), [](const Enumeration& a, const Enumeration& b) { return a.name < b.name; });
  return all;
}

}  // namespace

std::span<const Enumeration> enumeration_list() {
  static const Enumerations all = made();
  return all;
}

const Enumeration* find_enumeration(std::string_view name) {
  const auto all = enumeration_list();
  const auto found =
      std::find_if(all.begin(), all.end(), [name](const Enumeration& each) { return same_word(each.name, name); });
  return found == all.end() ? nullptr : &*found;
}

const Enumeration* enumeration_of(std::span<const Label> codes_of_member) {
  if (codes_of_member.empty()) return nullptr;
  const auto all = enumeration_list();
  const auto found = std::find_if(all.begin(), all.end(),
                                  [&](const Enumeration& each) { return each.of_members == codes_of_member.data(); });
  return found == all.end() ? nullptr : &*found;
}

}  // namespace tarn
