#include "gbxml/air_system_zones.h"

#include <algorithm>
#include <array>
#include <map>

#include "gbxml/system_types.h"

namespace tarn {
namespace {

using Source = AS_HeatCoolSourceTypes;

constexpr size_t kSpacesOfZone = 50;
constexpr double kSetback = 5;  // F, from the occupied setpoints to the others, as in the defaults of every system type

/// Of `heatingCoilType` and its like; irrelevant for "None" and what is missing.
Source heating_source(std::string_view coil) {
  if (coil == "HotWater") return Source::ST_HOT_WATER;
  if (coil == "ElectricResistance" || coil == "Electric") return Source::ST_ELEC_RESIST;
  if (coil == "Furnace" || coil == "Gas") return Source::ST_COMBUST_NAT_GAS;
  return Source::ST_IRRELEVANT;
}

Source cooling_source(std::string_view coil) {
  if (coil.starts_with("ChilledWater")) return Source::ST_CHILLED_WATER;
  return coil == "DirectExpansion" ? Source::ST_AIR_COOLED_DX : Source::ST_IRRELEVANT;
}

/// A piece of a drawn zone that a zone of the system can hold.
struct ZonePart {
  const DrawnSystem::Zone* zone;
  size_t number, first;  // of its spaces
};

std::vector<ZonePart> parts_of(const DrawnSystem& drawn) {
  std::vector<ZonePart> parts;
  for (const DrawnSystem::Zone& zone : drawn.zones) {
    for (size_t first = 0, number = 0; number == 0 || first < zone.spaces.size(); first += kSpacesOfZone, ++number)
      parts.push_back({&zone, number, first});
  }
  return parts;
}

bool heats(Element equipment) {
  return heating_source(attribute(equipment, "heatingCoilType")) != Source::ST_IRRELEVANT;
}

void fill_thermostat(ZoneRecord& record, Element zone, const GbxmlDocument& document) {
  if (const auto cooling = document.child_value(zone, "DesignCoolT", "F")) {
    record.OccCoolSetpt = static_cast<float>(*cooling);
    record.UnoccCoolSetpt = static_cast<float>(*cooling + kSetback);
  }
  if (const auto heating = document.child_value(zone, "DesignHeatT", "F")) {
    record.OccHeatSetpt = static_cast<float>(*heating);
    record.UnoccHeatSetpt = static_cast<float>(*heating - kSetback);
  }
}

void fill_terminal(ZoneRecord& record, Element equipment) {
  const int16_t terminal = terminal_of(attribute(equipment, "zoneHVACEquipmentType"), heats(equipment));
  if (terminal == 0) return;
  record.TermType = static_cast<AS_SupplyTerminalTypes>(terminal);
  record.ReheatCoil = heats(equipment) && terminal < 11;
}

/// The zones' one source of heat: that of most of them.
void fill_reheat(AS_AirSystem& system, const DrawnSystem& drawn, Filling& filling) {
  std::map<Source, int> zones;
  for (const auto& zone : drawn.zones) {
    if (heats(zone.equipment)) ++zones[heating_source(attribute(zone.equipment, "heatingCoilType"))];
  }
  if (zones.empty()) return;
  const auto most = std::ranges::max_element(zones, {}, [](const auto& row) { return row.second; })->first;
  const bool is_fan_coil = system.GetZoneData(1)->TermType == AS_SupplyTerminalTypes::FanCoil;
  if (is_fan_coil)
    system.GetHeatSys()->Source = most;
  else
    system.GetZoneSchedule()->ReheatSource = most;
  if (zones.size() > 1)
    filling.tally.note(
        filling.document, drawn.element,
        "its terminals have coils of different sources; all get that of most of them, as an air system has one");
}

template <typename Field>
bool is_same_for_all(AS_AirSystem& system, Field field) {
  const int16_t zones = system.GetAirSystem()->NumZones;
  for (int16_t zone = 2; zone <= zones; ++zone) {
    if (field(*system.GetZoneData(zone)) != field(*system.GetZoneData(1))) return false;
  }
  return true;
}

/// A part of an AirLoop, as gbXML 6.01 has them. A coil is known by the loop that feeds it.
void fill_loop_part(AS_AirSystem& system, Element part, Filling& filling) {
  const std::string_view type = attribute(part, "equipmentType");
  const Element loop =
      filling.document.by_id("HydronicLoop", attribute(child(part, "HydronicLoopId"), "hydronicLoopIdRef"));
  const std::string_view water = attribute(loop, "loopType");
  const auto use = [](auto& coil, Source source) {
    coil.Used = true;
    coil.Source = source;
  };
  if (type == "Economizer") {
    system.GetEconomizer()->Used = true;
    system.GetEconomizer()->EconomizerType = AS_EconomizerControlTypes::IntegratedDryBulb;
  } else if (type == "HeatExchanger") {
    system.GetVentReclaim()->Used = true;
    system.GetVentReclaim()->ReclaimType = child(part, "LatentHeatRecoveryEffectiveness")
                                               ? AS_VentilationReclaimTypes::SensibleAndLatentHeat
                                               : AS_VentilationReclaimTypes::SensibleHeat;
  } else if (type == "Humidifier") {
    system.GetHumidity()->Used = true;
  } else if (type == "Furnace") {
    use(*system.GetHeatSys(), Source::ST_COMBUST_NAT_GAS);
  } else if (type == "UnitaryAC" || type == "SplitAC" || type == "UnitaryHP" || type == "SplitHP") {
    use(*system.GetCoolSys(), Source::ST_AIR_COOLED_DX);
    if (type.ends_with("HP")) use(*system.GetHeatSys(), Source::ST_AIRSOURCE_HEAT_PUMP);
  } else if (type == "PreheatCoil" && water == "HotWater") {
    use(*system.GetPreheatCoil(), Source::ST_HOT_WATER);
  } else if (type == "Coil" && water == "HotWater") {
    use(*system.GetHeatSys(), Source::ST_HOT_WATER);
  } else if (type == "Coil" && water.ends_with("ChilledWater")) {
    use(*system.GetCoolSys(), Source::ST_CHILLED_WATER);
  } else {
    filling.tally.left(filling.document, part, "AirLoopEquipment", "an air system has no place for it");
    return;
  }
  filling.tally.taken("AirLoopEquipment");
}

}  // namespace

void fill_coils(AS_AirSystem& system, const DrawnSystem& drawn, Filling& filling) {
  const Element element = drawn.element;
  each_child(element, "AirLoopEquipment", [&](Element part) {
    filling.tally.found("AirLoopEquipment");
    fill_loop_part(system, part, filling);
  });
  if (!is_named(element, "AirSystem")) return;
  const auto cooling = cooling_source(attribute(element, "coolingCoilType"));
  system.GetCoolSys()->Used = cooling != Source::ST_IRRELEVANT;
  system.GetCoolSys()->Source = cooling;
  const auto heating = heating_source(attribute(element, "heatingCoilType"));
  system.GetHeatSys()->Used = heating != Source::ST_IRRELEVANT;
  system.GetHeatSys()->Source = heating;
  const auto preheat = heating_source(attribute(element, "preheatCoilType"));
  system.GetPreheatCoil()->Used = preheat != Source::ST_IRRELEVANT;
  system.GetPreheatCoil()->Source = preheat;
  const std::string_view exchanger = attribute(child(element, "HeatExchanger"), "heatExchangerType");
  AS_VentReclaim& reclaim = *system.GetVentReclaim();
  reclaim.Used = exchanger == "Enthalpy" || exchanger == "Sensible";
  if (reclaim.Used)
    reclaim.ReclaimType = exchanger == "Enthalpy" ? AS_VentilationReclaimTypes::SensibleAndLatentHeat
                                                  : AS_VentilationReclaimTypes::SensibleHeat;
  if (child(element, "HeatExchanger") && exchanger.empty())
    filling.tally.note(filling.document, element, "its HeatExchanger has no type; there is none");
}

void fill_zones(AS_AirSystem& system, const DrawnSystem& drawn, Filling& filling) {
  const auto parts = parts_of(drawn);
  const ZoneRecord standard = *system.GetZoneData(1);
  const auto before = static_cast<size_t>(system.GetAirSystem()->NumZones);
  system.GetAirSystem()->SetNumZones(static_cast<int16_t>(parts.size()));
  for (size_t i = 0; i < parts.size(); ++i) {
    const ZonePart& part = parts[i];
    const Element zone = part.zone->element;
    ZoneRecord& record = *system.GetZoneData(static_cast<int16_t>(i + 1));
    if (i >= before) record = standard;
    std::string_view name = child_text(zone, "Name");
    if (name.empty()) name = attribute(zone, "id");
    const FittedText title = fitted(name, part.number == 0 ? 30 : 26);
    record.Name = title.has_replaced ? std::string(attribute(zone, "id"))
                                     : title.text + (part.number == 0 ? "" : " " + std::to_string(part.number + 1));
    record.SpaceID = {};
    record.SpaceMultiplier = {};
    const size_t count = std::min(kSpacesOfZone, part.zone->spaces.size() - part.first);
    for (size_t space = 0; space < count; ++space) {
      record.SpaceID.items[space] = part.zone->spaces[part.first + space];
      record.SpaceMultiplier.items[space] = 1;
    }
    record.TotalSpacesInZone = static_cast<int16_t>(count);
    fill_thermostat(record, zone, filling.document);
    fill_terminal(record, part.zone->equipment);
    if (part.number == 1)
      filling.tally.note(filling.document, zone, "it has more than 50 spaces and becomes several zones");
  }
  fill_reheat(system, drawn, filling);
  const bool same_setpoints = is_same_for_all(system, [](const ZoneRecord& zone) {
    return std::array{float{zone.OccCoolSetpt.value}, float{zone.OccHeatSetpt.value}};
  });
  const bool same_terminals = is_same_for_all(system, [](const ZoneRecord& zone) { return zone.TermType.raw.value; });
  for (size_t i = 1; i <= parts.size(); ++i) {
    system.GetZoneData(static_cast<int16_t>(i))->AllZoneTstatSame = same_setpoints;
    system.GetZoneData(static_cast<int16_t>(i))->AllZoneTermsSame = same_terminals;
  }
}

}  // namespace tarn
