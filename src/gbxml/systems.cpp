#include "gbxml/systems.h"

#include <algorithm>

#include "gbxml/air_system_zones.h"
#include "gbxml/children.h"
#include "gbxml/system_types.h"
#include "tarn/plant.h"

namespace tarn {
namespace {

/// Plants that tell what a loop carries, without equipment, which gbXML files of drawing programs have not.
constexpr struct {
  std::string_view loop;
  PLT_PlantTypes plant;
} kPlants[]{
    {"PrimaryChilledWater", PLT_PlantTypes::PT_GENERIC_CW}, {"SecondaryChilledWater", PLT_PlantTypes::PT_GENERIC_CW},
    {"ChilledWater", PLT_PlantTypes::PT_GENERIC_CW},        {"HotWater", PLT_PlantTypes::PT_GENERIC_HW},
    {"TwoPipe", PLT_PlantTypes::PT_GENERIC_CHANGEOVER},     {"DomesticHotWater", PLT_PlantTypes::PT_GENERIC_SERVICEHW}};

std::string_view loop_of(Element element) { return attribute(child(element, "HydronicLoopId"), "hydronicLoopIdRef"); }

}  // namespace

void Systems::leave(Element element, const std::string& reason) {
  filling_.tally.left(filling_.document, element, name_of(element), reason);
}

DrawnSystem& Systems::planned(std::string id, Element element, std::string_view name) {
  const auto found = std::ranges::find(systems_, id, &DrawnSystem::id);
  if (found != systems_.end()) return *found;
  return systems_.emplace_back(DrawnSystem{element, std::move(id), std::string(name), 0, {}, {}});
}

/// The air system that feeds a zone; else all zones with alike equipment of their own are one.
DrawnSystem* Systems::system_of(Element zone, Element equipment) {
  const GbxmlDocument& document = filling_.document;
  for (const Element user : {equipment, zone}) {
    for (const auto& [reference, attribute_name, kind] : {std::tuple("AirSystemId", "airSystemIdRef", "AirSystem"),
                                                          std::tuple("AirLoopId", "airLoopIdRef", "AirLoop")}) {
      const std::string_view id = attribute(child(user, reference), attribute_name);
      if (id.empty()) continue;
      const Element system = document.by_id(kind, id);
      if (!system)
        document.refuse(user, "it refers to the " + std::string(kind) + " \"" + std::string(id) +
                                  "\", which the file does not have");
      return &planned(std::string(id), system, child_text(system, "Name"));
    }
  }
  const std::string_view type = attribute(equipment, "zoneHVACEquipmentType");
  if (type_of_zone_equipment(type) == 0) return nullptr;
  const Element loop = document.by_id("HydronicLoop", loop_of(equipment));
  const std::string_view name = loop ? child_text(loop, "Name") : type;
  return &planned(std::string(type) + " " + std::string(loop_of(equipment)), equipment, name);
}

void Systems::plan_zone(Element zone) {
  filling_.tally.found("Zone");
  const auto& spaces = spaces_.of_zone(attribute(zone, "id"));
  if (spaces.empty()) return leave(zone, "no conditioned space is in it");
  Element equipment;
  each_child(zone, "ZoneHVACEquipmentId", [&](Element reference) {
    const Element found = filling_.document.by_id("ZoneHVACEquipment", attribute(reference, "zoneHVACEquipmentIdRef"));
    if (!found) filling_.document.refuse(reference, "it refers to equipment that the file does not have");
    if (equipment) return leave(found, "a zone has one terminal; it has that of the first equipment");
    equipment = found;
  });
  DrawnSystem* const system = system_of(zone, equipment);
  if (!system)
    return leave(zone, equipment ? "its equipment, " + std::string(attribute(equipment, "zoneHVACEquipmentType")) +
                                       ", supplies no air"
                                 : "the file has no air system for it; its spaces are in the project");
  filling_.tally.taken("Zone");
  count_children(zone);
  if (equipment) filling_.tally.taken("ZoneHVACEquipment");
  for (const Element user : {equipment, system->element}) {
    each_child(user, "HydronicLoopId",
               [&](Element loop) { system->loops.insert(attribute(loop, "hydronicLoopIdRef")); });
    each_child(user, "AirLoopEquipment", [&](Element part) {
      if (const auto loop = loop_of(part); !loop.empty()) system->loops.insert(loop);
    });
  }
  system->zones.push_back({zone, equipment, spaces});
}

void Systems::count_children(Element zone) {
  Children children(zone);
  for (const char* const name : {"Name", "DesignCoolT", "DesignHeatT", "AirSystemId", "AirLoopId",
                                 "ZoneHVACEquipmentId", "OAFlowPerPerson", "OAFlowPerArea", "AirChangesPerHour"})
    children.take(name);
  constexpr LeftOut kLeftOut[]{
      {"OAFlowPerZone", "outdoor air is by person, by area or by air changes, of each space"},
      {"OAFlowPerSpace", "outdoor air is by person, by area or by air changes, of each space"},
      {"Description", "a zone has a name alone"},
      {"CADObjectId", "it is a number of the drawing program"},
  };
  children.count(filling_.document, filling_.tally, kLeftOut, "a zone has no place for it");
}

void Systems::choose_type(DrawnSystem& system) {
  const std::string_view equipment = attribute(system.zones.front().equipment, "zoneHVACEquipmentType");
  const int16_t alone = type_of_zone_equipment(equipment);
  if (name_of(system.element) == "AirLoop") {
    system.type = type_of_air_loop(attribute(system.element, "systemType"));
    if (system.type == 0)
      filling_.tally.note(filling_.document, system.element,
                          "no type of air system is like its systemType; it is one of constant volume");
  } else if (alone != 0) {
    system.type = alone;
  } else {
    const Element fan = child(system.element, "Fan");
    const bool varies = attribute(fan, "FanType") == "VariableVolume" || attribute(fan, "fanType") == "VariableVolume";
    constexpr int16_t kConstantVolume = 1, kReheat = 2, kVariableVolume = 8;
    system.type = varies ? kVariableVolume : system.zones.size() == 1 ? kConstantVolume : kReheat;
  }
  if (system.type == 0) system.type = 1;
}

void Systems::fill(DrawnSystem& drawn) {
  choose_type(drawn);
  const auto object = filling_.project.NewAirSystem();
  object->SetMask(CCM_HEADERMASK | CCM_INPUTMASK);
  const int16_t index = filling_.entity(object, drawn.id, [&](AS_AirSystem& system, bool is_new) {
    constexpr int16_t kVrf = 20, kSplit = 13;  // the first is stored as the second
    const auto is_type = static_cast<int16_t>(system.SystemType());
    if (is_new || (is_type != drawn.type && !(drawn.type == kVrf && is_type == kSplit)))
      system.SetToDefaultsByType(drawn.type);
    system.GetAirSystem()->Name = filling_.name_for(system, drawn.name, drawn.id, 30, drawn.element);
    fill_coils(system, drawn, filling_);
    fill_zones(system, drawn, filling_);
  });
  if (name_of(drawn.element) != "ZoneHVACEquipment") filling_.tally.taken(name_of(drawn.element));
  for (const std::string_view loop : drawn.loops) users_of_loop_[loop].push_back(index);
}

void Systems::fill_plants() {
  for (const Element loop : filling_.document.all("HydronicLoop")) {
    filling_.tally.found("HydronicLoop");
    const std::string_view type = attribute(loop, "loopType"), id = attribute(loop, "id");
    const auto* const row = std::ranges::find(kPlants, type, [](const auto& r) { return r.loop; });
    if (row == std::end(kPlants)) {
      leave(loop, "a loop of the type " + std::string(type) +
                      " is part of the air system or of the chillers, and is no plant of its own");
      continue;
    }
    const auto object = filling_.project.NewPlant();
    filling_.entity(object, std::string(id), [&](PLT_Plant& plant, bool is_new) {
      if (is_new || static_cast<PLT_PlantTypes>(plant.General.PlantType) != row->plant) plant.SetType(row->plant);
      plant.General.Name = filling_.name_for(plant, child_text(loop, "Name"), id, 30, loop);
      const auto& users = users_of_loop_[id];
      const auto count = static_cast<int16_t>(std::min<size_t>(users.size(), kPlantSystems));
      plant.SystemSelect.SetNumSystems(count);
      for (int16_t number = 1; number <= count; ++number) {
        plant.SystemSelect.SystemID(number) = users[static_cast<size_t>(number) - 1];
        plant.SystemSelect.SystemMultiplier(number) = 1;
      }
      plant.General.SetFlags();
    });
    filling_.tally.taken("HydronicLoop");
  }
}

void Systems::fill_all() {
  const GbxmlDocument& document = filling_.document;
  for (const char* const name : {"AirSystem", "AirLoop", "ZoneHVACEquipment"})
    for (size_t i = 0; i < document.all(name).size(); ++i) filling_.tally.found(name);
  for (const Element zone : document.all("Zone")) plan_zone(zone);
  for (DrawnSystem& system : systems_) fill(system);
  for (const char* const name : {"AirSystem", "AirLoop"}) {
    for (const Element element : document.all(name)) {
      const auto used = std::ranges::find(systems_, attribute(element, "id"), &DrawnSystem::id);
      if (used == systems_.end()) leave(element, "no zone that is taken uses it");
    }
  }
  fill_plants();
}

}  // namespace tarn
