#include "airsystems/default_values.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "airsystems/defaults.h"
#include "airsystems/dx_coefficients.h"
#include "base/nearest.h"
#include "reflect/json.h"
#include "reflect/json_text.h"
#include "tarn/base/error.h"

namespace tarn {
namespace {

template <auto Get>
ObjectPtr component(AS_AirSystem& system) {
  return (system.*Get)();
}
template <auto Get>
ObjectPtr of_zone_1(AS_AirSystem& system) {
  return (system.*Get)(1);
}
using S = AS_AirSystem;

}  // namespace

const std::array<DefaultComponent, 24> kDefaultComponents{{
    {"PopulateAirSystem", "AS_General", component<&S::GetAirSystem>},
    {"PopulateCoolSys", "AS_CoolData", component<&S::GetCoolSys>},
    {"PopulateHeatSys", "AS_HeatData", component<&S::GetHeatSys>},
    {"PopulateOutVent", "AS_OutdoorVent", component<&S::GetOutVent>},
    {"PopulateSupplyDuct", "AS_SupplyDuct", component<&S::GetSupplyDuct>},
    {"PopulateRetPlenum", "AS_RetPlenum", component<&S::GetRetPlenum>},
    {"PopulateSupplyFan", "AS_FanData", component<&S::GetSupplyFan>},
    {"PopulateReturnFan", "AS_FanData", component<&S::GetReturnFan>},
    {"PopulateSupplyFan2", "AS_FanData", component<&S::GetSupplyFan2>},
    {"PopulateEconomizer", "AS_EconomizerData", component<&S::GetEconomizer>},
    {"PopulatePreHeat", "AS_CoilData", component<&S::GetPreheatCoil>},
    {"PopulatePreCool", "AS_CoilData", component<&S::GetPrecoolCoil>},
    {"PopulateHumidity", "AS_HumidityData", component<&S::GetHumidity>},
    {"PopulateDehumid", "AS_DehumidData", component<&S::GetDehumid>},
    {"PopulateVentRec", "AS_VentReclaim", component<&S::GetVentReclaim>},
    {"PopulateSafetyFac", "AS_SafetyFactor", component<&S::GetSafetyFactor>},
    {"PopulateZoneSched", "AS_ZoneSchedule", component<&S::GetZoneSchedule>},
    {"PopulateWCSystemData", "AS_WCSystemData", component<&S::GetWCSystemData>},
    {"PopulateSplitSystem", "AS_SplitSystemData", component<&S::GetSplitSystemData>},
    {"PopulateChangeover", "AS_ChangeoverControl", component<&S::GetChangeoverControlData>},
    {"PopulateASD", "AS_AirSizing", component<&S::GetAirSizing>},
    {"PopulateCSD", "AS_CoilSize", component<&S::GetCoilSize>},
    {"PopulateZoneData", "AS_ZoneData", of_zone_1<&S::GetZoneData>},
    {"PopulateZSD", "AS_ZoneSizingData", of_zone_1<&S::GetZoneSizing>},
}};

namespace {

constexpr std::string_view kCommon = "common";
constexpr std::string_view kForPell = "AS_Dflt_01_SZCAV.ForPellNotTarn";

void check_keys(const Json& table) {
  std::vector<std::string_view> keys{kCommon, kForPell};
  for (const SystemDefaults& type : kSystemDefaults) keys.push_back(type.class_name);
  for (const auto& [key, components] : table.items()) {
    if (std::find(keys.begin(), keys.end(), key) == keys.end())
      fail(ErrorNumber::NoSuchMember, "There are no air system defaults " + key + "; " + did_you_mean(key, keys));
  }
  for (const std::string_view key : keys) {
    if (!table.contains(key))
      fail(ErrorNumber::NoSuchMember, "The air system defaults " + std::string(key) + " are missing.");
  }
}

Object& component_of(AS_AirSystem& system, std::string_view name) {
  std::vector<std::string_view> names;
  for (const DefaultComponent& each : kDefaultComponents) {
    if (each.name() == name) return *each.of(system);
    names.push_back(each.name());
  }
  fail(ErrorNumber::NoSuchMember, "there is no such component; " + did_you_mean(name, names));
}

/// Sets what a key of the table states.
void fill(AS_AirSystem& system, const Json& table, std::string_view key) {
  for (const auto& [name, values] : table.at(std::string(key)).items()) {
    try {
      set_fields_from_json(component_of(system, name), values);
    } catch (const Error& error) {
      throw Error(error.number(), error.source(),
                  "Air system defaults " + std::string(key) + ", " + name + ": " + error.what());
    }
  }
}

template <typename Component, typename Holder>
void set_curves(Component& to, const Holder& from) {
  to.PLR1Coeff = from.PLR1Coeff;
  to.Cap1Coeff = from.Cap1Coeff;
  to.CapCFM1Coeff = from.CapCFM1Coeff;
  to.Pow1Coeff = from.Pow1Coeff;
  to.PowCFM1Coeff = from.PowCFM1Coeff;
}

/// Elsewhere the coefficients stay zero. The codes are those of heat pumps where the source heats.
bool is_direct_expansion(AS_HeatCoolSourceTypes source) {
  return source == AS_HeatCoolSourceTypes::ST_AIR_COOLED_DX || source == AS_HeatCoolSourceTypes::ST_WATER_COOLED_DX;
}

/// The curves of an air-source unit, or of the type's water-source one.
template <typename Holder>
Holder curves_of(AS_HeatCoolSourceTypes source, AS_SystemTypes type) {
  const auto rating = water_rating(static_cast<int16_t>(type));
  return source == AS_HeatCoolSourceTypes::ST_WATER_COOLED_DX && rating ? Holder(*rating) : Holder();
}

template <typename Component>
void set_cooling_curves(Component& to, AS_SystemTypes type) {
  if (!is_direct_expansion(to.Source)) return;
  const auto from = curves_of<ACDX_Coeff_Holder_Clg>(to.Source, type);
  set_curves(to, from);
  to.LowTempCapMult = from.LowTempCapMult;
  to.LowTempPowMult = from.LowTempPowMult;
}

void set_heating_curves(AS_HeatData& to, AS_SystemTypes type) {
  if (!is_direct_expansion(to.Source)) return;
  const auto from = curves_of<ACDX_Coeff_Holder_Htg>(to.Source, type);
  set_curves(to, from);
  to.Cap2Coeff = from.Cap2Coeff;
  to.CapCFM2Coeff = from.CapCFM2Coeff;
  to.Pow2Coeff = from.Pow2Coeff;
  to.PowCFM2Coeff = from.PowCFM2Coeff;
}

ComponentRecords records_of(AS_AirSystem& system) {
  ComponentRecords records;
  for (size_t i = 0; i < records.size(); ++i) {
    const auto bytes = kDefaultComponents[i].of(system)->part_record();
    records[i].assign(bytes.begin(), bytes.end());
  }
  return records;
}

void put(const ComponentRecords& records, AS_AirSystem& system) {
  for (size_t i = 0; i < records.size(); ++i)
    std::copy(records[i].begin(), records[i].end(), kDefaultComponents[i].of(system)->part_record().begin());
}

}  // namespace

SystemDefaultRecords read_system_defaults(std::string_view json) {
  const Json table = parse_json(json);
  check_keys(table);
  AS_AirSystem system;
  system.resize_zones(1);
  fill(system, table, kCommon);
  const ComponentRecords common = records_of(system);
  const auto read = [&](std::initializer_list<std::string_view> keys) {
    put(common, system);
    for (const std::string_view key : keys) fill(system, table, key);
    set_cooling_curves(*system.GetCoolSys(), system.SystemType());
    set_cooling_curves(*system.GetPrecoolCoil(), system.SystemType());
    set_heating_curves(*system.GetHeatSys(), system.SystemType());
    return records_of(system);
  };
  SystemDefaultRecords all;
  for (const SystemDefaults& type : kSystemDefaults) all.of_type.push_back(read({type.class_name}));
  all.for_pell = read({kForPell.substr(0, kForPell.find('.')), kForPell});
  return all;
}

const SystemDefaultRecords& system_default_records() {
  static const SystemDefaultRecords all = read_system_defaults(system_default_values);
  return all;
}

const ComponentRecords& SystemDefaultRecords::of(const SystemDefaults& type, bool ForPellNotTarn) const {
  return ForPellNotTarn && type.type == 1 ? for_pell : of_type[static_cast<size_t>(&type - kSystemDefaults.data())];
}

}  // namespace tarn
