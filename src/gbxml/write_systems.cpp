// Air systems with their zones, and plants as hydronic loops.
#include <map>
#include <set>

#include "gbxml/system_types.h"
#include "gbxml/writing.h"
#include "tarn/air_system.h"
#include "tarn/plant.h"
#include "tarn/space.h"

namespace tarn {
namespace {

const char* loop_of_plant(PLT_PlantTypes type) {
  switch (type) {
    case PLT_PlantTypes::PT_GENERIC_CW:
    case PLT_PlantTypes::PT_CHILLER:
    case PLT_PlantTypes::PT_COOL_STORAGE:
    case PLT_PlantTypes::PT_REMOTE_SOURCE_CW:
      return "PrimaryChilledWater";
    case PLT_PlantTypes::PT_GENERIC_HW:
    case PLT_PlantTypes::PT_HOT_WATER:
    case PLT_PlantTypes::PT_REMOTE_SOURCE_HW:
      return "HotWater";
    case PLT_PlantTypes::PT_GENERIC_CHANGEOVER:
    case PLT_PlantTypes::PT_CHANGEOVER:
      return "TwoPipe";
    case PLT_PlantTypes::PT_SERVICE_HOT_WATER:
    case PLT_PlantTypes::PT_GENERIC_SERVICEHW:
      return "DomesticHotWater";
    default:
      return nullptr;
  }
}

struct LoopOfSystem {
  std::string id;
  const char* type;
};

/// Loops by air system.
std::multimap<int16_t, LoopOfSystem> write_plants(Writing& writing) {
  std::multimap<int16_t, LoopOfSystem> loops;
  for (const int16_t index : writing.indexes("PlantIndex")) {
    const auto plant = writing.project.NewPlant();
    plant->Load(index);
    const char* const type = loop_of_plant(plant->General.PlantType);
    if (!type) {
      writing.note("steam and heat recovery plants have no loop in gbXML");
      continue;
    }
    const std::string id = numbered("plant", index);
    Element loop = add_named(writing.root, "HydronicLoop", id, plant->General.Name.trimmed());
    set(loop, "loopType", type);
    set(loop, "fluidType", "Water");
    for (int number = 1; number <= plant->SystemSelect.NumSystems(); ++number)
      loops.emplace(plant->SystemSelect.SystemID(number), LoopOfSystem{id, type});
  }
  return loops;
}

/// gbXML has outdoor air by zone; spaces of one zone have it alike as a rule.
void write_outdoor_air(Writing& writing, Element zone, const ZoneRecord& record) {
  std::set<std::pair<int16_t, double>> requirements;
  std::set<int16_t> units;
  for (int place = 1; place <= record.TotalSpacesInZone; ++place) {
    const auto space = writing.project.NewSpace();
    space->Load(record.SpaceID(place));
    const SPC_General& general = *space->GetSpace();
    for (const auto& one : {std::pair<int16_t, double>(general.OAReq1Spec, general.OAReq1Value),
                            {general.OAReq2Spec, general.OAReq2Value}}) {
      if (one.second > 0) requirements.insert(one);
    }
  }
  constexpr int16_t kPerArea = 2, kPerPerson = 3, kAirChanges = 5;
  for (const auto& [unit, value] : requirements) {
    if (unit == kAirChanges) continue;  // the space has it
    const bool is_first = units.insert(unit).second;
    if (is_first && unit == kPerArea) add_value(zone, "OAFlowPerArea", value, "CFMPerSquareFoot");
    if (is_first && unit == kPerPerson) add_value(zone, "OAFlowPerPerson", value, "CFM");
    if (!is_first) writing.note("outdoor air that differs between the spaces of a zone is that of the first");
    if (unit != kPerArea && unit != kPerPerson)
      writing.note("outdoor air of a space as a whole has no place in gbXML 6.01");
  }
}

void write_zone(Writing& writing, const ZoneRecord& record, const std::string& id, const std::string& system) {
  Element zone = add_named(writing.root, "Zone", id, record.Name.trimmed());
  write_outdoor_air(writing, zone, record);
  add_value(zone, "DesignHeatT", record.OccHeatSetpt, "F");
  add_value(zone, "DesignCoolT", record.OccCoolSetpt, "F");
  set(add(zone, "AirLoopId"), "airLoopIdRef", system);
}

}  // namespace

void write_systems(Writing& writing) {
  const auto loops = write_plants(writing);
  for (const int16_t index : writing.indexes("AirSystemIndex")) {
    const auto system = writing.project.NewAirSystem();
    system->SetMask(CCM_HEADERMASK | CCM_INPUTMASK);
    system->Load(index);
    const std::string id = numbered("system", index);
    Element loop = add_named(writing.root, "AirLoop", id, system->GetAirSystem()->Name.trimmed());
    const std::string_view type = air_loop_of_type(static_cast<int16_t>(system->SystemType()));
    if (!type.empty()) set(loop, "systemType", std::string(type));
    const auto add_part = [&](const char* equipment_type, const std::string& part) {
      Element equipment = add(loop, "AirLoopEquipment");
      set(equipment, "id", id + "-" + part);
      set(equipment, "equipmentType", equipment_type);
      return equipment;
    };
    if (system->GetEconomizer()->Used) add_part("Economizer", "economizer");
    if (system->GetHumidity()->Used) add_part("Humidifier", "humidifier");
    if (system->GetVentReclaim()->Used) {
      Element exchanger = add_part("HeatExchanger", "reclaim");
      if (system->GetVentReclaim()->ReclaimType == AS_VentilationReclaimTypes::SensibleAndLatentHeat)
        add_value(exchanger, "LatentHeatRecoveryEffectiveness", system->GetVentReclaim()->ThermEff);
    }
    const auto [first, last] = loops.equal_range(index);
    for (auto at = first; at != last; ++at) {
      Element reference = add(add_part("Coil", "coil-" + at->second.id), "HydronicLoopId");
      set(reference, "hydronicLoopIdRef", at->second.id);
      set(reference, "hydronicLoopType", at->second.type);
    }
    for (int16_t number = 1; number <= system->GetAirSystem()->NumZones; ++number)
      write_zone(writing, *system->GetZoneData(number), id + "-zone-" + std::to_string(number), id);
    writing.note(
        "of air systems, gbXML 6.01 has the type, the zones with their setpoints, economizer, humidifier, heat reclaim "
        "and loops");
  }
}

}  // namespace tarn
