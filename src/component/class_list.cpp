#include "component/class_list.h"

#include <vector>

#include "airsystems/defaults.h"
#include "airsystems/fan_power.h"
#include "base/collection.h"
#include "base/error.h"
#include "base/nearest.h"
#include "building/building.h"
#include "building/utility_rate.h"
#include "component/defaults.h"
#include "envelope/construction.h"
#include "envelope/door.h"
#include "envelope/shade.h"
#include "envelope/window.h"
#include "plant/boiler.h"
#include "plant/chiller.h"
#include "plant/cooling_tower.h"
#include "plant/plant.h"
#include "results/air_system_design.h"
#include "spaces/schedule.h"
#include "spaces/space.h"
#include "storage/preferences.h"
#include "storage/project.h"
#include "weather/hourly_file.h"
#include "weather/weather.h"

namespace tarn {
namespace {

template <typename C>
constexpr ClassEntry entry() {
  return {[]() -> ObjectPtr { return std::make_shared<C>(); },
          []() -> const ClassInfo& {
            static const C sample;
            return sample.info();
          }};
}

template <typename... C>
void add(std::vector<ClassEntry>& all) {
  (all.push_back(entry<C>()), ...);
}

template <size_t... Type>
void add_system_defaults(std::vector<ClassEntry>& all, std::index_sequence<Type...>) {
  (all.push_back({[]() -> ObjectPtr { return std::make_shared<AS_SystemDefaults>(kSystemDefaults[Type]); },
                  []() -> const ClassInfo& {
                    static const AS_SystemDefaults sample(kSystemDefaults[Type]);
                    return sample.info();
                  }}),
   ...);
}

const std::vector<ClassEntry>& classes() {
  static const std::vector<ClassEntry> all = [] {
    std::vector<ClassEntry> list;
    add<COM_ProjectData, PRF_ProjectPrefs, RPT_ReportOptions>(list);
    add<WIN_Window, DOR_Door, SHD_Shade, CA_ConstructionAssly, CA_Layer>(list);
    add<SCH_Schedule, SPC_Space, SPC_General, SPC_WallWindow, SPC_Roof, SPC_Partition, SPC_Floor, SPC_Infiltration,
        SPC_People, SPC_Lighting, SPC_OtherLoads>(list);
    add<AS_AirSystem, AS_General, AS_CoolData, AS_HeatData, AS_OutdoorVent, AS_SupplyDuct, AS_RetPlenum, AS_FanData,
        AS_EconomizerData, AS_CoilData, AS_HumidityData, AS_DehumidData, AS_VentReclaim, AS_SafetyFactor,
        AS_ZoneSchedule, AS_WCSystemData, AS_SplitSystemData, AS_ChangeoverControl, AS_ZoneData, AS_AirSizing,
        AS_ZoneSizingData, AS_CoilSize, AS_ZoneTemperature, AS_UnmetLoads, AS_LEEDUnmetLoads, AS_HourlySimData,
        AS_HourlyResults, AS_FanPowerAdjustments, AS_FanPowerAdjustment>(list);
    add_system_defaults(list, std::make_index_sequence<kSystemDefaults.size()>());
    add<CHL_Chiller, CHL_OperatingMode, BLR_Boiler, TWR_CoolingTower>(list);
    add<PLT_Plant, PLT_General, PLT_SystemSelect, PLT_Details, PLT_Configuration, PLT_EquipmentList, PLT_Equipment,
        PLT_PumpLoop, PLT_Pump, PLT_ServiceHotWater, PLT_SizingLoads, PLT_EqptSizingResults, PLT_DesignProfile,
        PLT_UnmetLoads, PLT_LEEDUnmetLoads, PLT_HourlySimData, PLT_HourlyResults>(list);
    add<WTH_Weather, WTH_Stats, HW1ReaderWriter>(list);
    add<URT_UtilityRate, BLD_Building, BLD_General, BLD_Inputs, BLD_Results, BLD_Profile>(list);
    add<ADL_AirSystemDesign, ADL_DXXFileHeader, ADL_Weather, ADL_SSAir, ADL_DLAir, ADL_HLAir, ADL_HourlyAirData,
        ADL_SPAir, ADL_SysPsychro, ADL_TSZone, ADL_TerminalSizing, ADL_HLZone, ADL_HourlyZoneData, ADL_DLZone,
        ADL_CoolingLoads, ADL_HeatingLoads, ADL_LoadDetails, ADL_SpaceLoads>(list);
    add<Collection>(list);
    return list;
  }();
  return all;
}

[[maybe_unused]] const bool kDefaultsAreKnown = [] {
  StoredEntity::product_default = fill_product_default;
  return true;
}();

const ClassEntry& find(std::string_view name) {
  for (const ClassEntry& entry : classes()) {
    if (same_word(entry.info().name, name)) return entry;
  }
  std::vector<std::string_view> names;
  for (const ClassEntry& entry : classes()) names.push_back(entry.info().name);
  fail(ErrorNumber::CannotCreateObject, "There is no class " + std::string(name) + "; " + did_you_mean(name, names));
}

}  // namespace

std::span<const ClassEntry> class_list() { return classes(); }

ObjectPtr create(std::string_view class_name) { return find(class_name).create(); }

const ClassInfo& class_info(std::string_view class_name) { return find(class_name).info(); }

}  // namespace tarn
