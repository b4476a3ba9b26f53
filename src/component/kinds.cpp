#include "component/kinds.h"

#include <algorithm>
#include <charconv>
#include <utility>

#include "airsystems/defaults.h"
#include "base/members.h"
#include "base/nearest.h"
#include "component/chiller_import.h"
#include "component/shipped.h"
#include "envelope/construction.h"
#include "envelope/window.h"
#include "plant/chiller.h"
#include "plant/plant.h"

namespace tarn {
namespace {

template <typename C, void (C::*Compute)()>
void computed(StoredEntity& entity) {
  (dynamic_cast<C&>(entity).*Compute)();
}

/// "VAV" of AS_Dflt_08_VAV.
std::string_view short_name(const SystemDefaults& defaults) {
  return defaults.class_name.substr(std::string_view("AS_Dflt_00_").size());
}

/// By number or short name; single-zone constant volume is the usual.
void start_system(StoredEntity& entity, std::string_view type) {
  auto& system = dynamic_cast<AS_AirSystem&>(entity);
  if (type.empty()) return system.SetToDefaults();
  int number = 0;
  const auto [end, failed] = std::from_chars(type.data(), type.data() + type.size(), number);
  if (failed == std::errc() && end == type.data() + type.size())
    return system.SetToDefaultsByType(static_cast<int16_t>(std::clamp(number, -1, 99)));
  std::vector<std::string_view> names;
  for (const SystemDefaults& each : kSystemDefaults) {
    names.push_back(short_name(each));
    if (same_word(names.back(), type) || std::to_string(each.type) == type)
      return system.SetToDefaultsByType(each.type);
  }
  fail(ErrorNumber::InvalidCall, "There is no system type " + std::string(type) + "; " + did_you_mean(type, names));
}

/// The code of an enumeration by its number, its name with or without the first word, or its text.
template <typename E>
E code_of(std::string_view word, const std::string& what) {
  std::vector<std::string_view> names;
  for (const Label& label : labels<E>) {
    const std::string_view short_form = label.name.substr(label.name.find('_') + 1);
    if (word == std::to_string(label.code) || same_word(label.name, word) || same_word(short_form, word) ||
        same_word(label.text, word))
      return static_cast<E>(label.code);
    names.push_back(short_form);
  }
  fail(ErrorNumber::InvalidCall,
       "There is no " + what + " type " + std::string(word) + "; " + did_you_mean(word, names));
}

void start_chiller(StoredEntity& entity, std::string_view type) {
  auto& chiller = dynamic_cast<CHL_Chiller&>(entity);
  if (!type.empty()) {
    const auto code = code_of<CHL_ChillerTypes>(type, "chiller");
    return chiller.CreateDefaultByType(static_cast<int16_t>(code), shipped_file("chillers.dat"));
  }
  chiller.CreateDefault();
  chiller.Reset(true);
}

void standard_chiller(StoredEntity& entity) {
  dynamic_cast<CHL_Chiller&>(entity).CreateDefaultByType(1, shipped_file("chillers.dat"));
}

template <typename C, std::vector<std::string> (*Import)(C&, const std::string&)>
std::vector<std::string> import_of(StoredEntity& entity, const std::string& path) {
  return Import(dynamic_cast<C&>(entity), path);
}

void start_plant(StoredEntity& entity, std::string_view type) {
  auto& plant = dynamic_cast<PLT_Plant&>(entity);
  plant.CreateDefault();
  plant.Reset(true);
  if (!type.empty()) plant.SetType(code_of<PLT_PlantTypes>(type, "plant"));
}

void standard_plant(StoredEntity& entity) {
  auto& plant = dynamic_cast<PLT_Plant&>(entity);
  const std::string own = std::exchange(plant.DefFileName, shipped_file("plant.dat"));
  plant.CreateDefault();
  plant.DefFileName = own;
}

void derived(Object& part) { dynamic_cast<CA_Layer&>(part).derive(); }

constexpr auto kPerformance = computed<WIN_Window, &WIN_Window::CalculatePerformance>;
constexpr auto kLayerSums = computed<CA_ConstructionAssly, &CA_ConstructionAssly::sum_layers>;
constexpr EntityKind kKinds[]{
    {.group = "windows", .one = "window", .class_name = "WIN_Window", .factory = "NewWindow", .compute = kPerformance},
    {.group = "doors", .one = "door", .class_name = "DOR_Door", .factory = "NewDoor"},
    {.group = "shades", .one = "shade", .class_name = "SHD_Shade", .factory = "NewShade"},
    {.group = "walls",
     .one = "wall",
     .class_name = "CA_ConstructionAssly",
     .factory = "NewWall",
     .section = "CA_ConstructionAssly.Wall",
     .derive = derived,
     .compute = kLayerSums},
    {.group = "roofs",
     .one = "roof",
     .class_name = "CA_ConstructionAssly",
     .factory = "NewRoof",
     .section = "CA_ConstructionAssly.Roof",
     .derive = derived,
     .compute = kLayerSums},
    {.group = "schedules", .one = "schedule", .class_name = "SCH_Schedule", .factory = "NewSchedule"},
    {.group = "spaces", .one = "space", .class_name = "SPC_Space", .factory = "NewSpace"},
    {.group = "chillers",
     .one = "chiller",
     .class_name = "CHL_Chiller",
     .factory = "NewChiller",
     .start = start_chiller,
     .standard = standard_chiller,
     .import_file = import_of<CHL_Chiller, import_chiller>},
    {.group = "boilers", .one = "boiler", .class_name = "BLR_Boiler", .factory = "NewBoiler"},
    {.group = "towers", .one = "tower", .class_name = "TWR_CoolingTower", .factory = "NewCoolingTower"},
    {.group = "air-systems",
     .one = "air system",
     .class_name = "AS_AirSystem",
     .factory = "NewAirSystem",
     .start = start_system},
    {.group = "plants",
     .one = "plant",
     .class_name = "PLT_Plant",
     .factory = "NewPlant",
     .start = start_plant,
     .standard = standard_plant},
    {.group = "electric-rates",
     .one = "electric rate",
     .class_name = "URT_UtilityRate",
     .factory = "NewElectricRate",
     .section = "URT_UtilityRate.ElectricRate"},
    {.group = "fuel-rates",
     .one = "fuel rate",
     .class_name = "URT_UtilityRate",
     .factory = "NewFuelRate",
     .section = "URT_UtilityRate.FuelRate"},
    {.group = "buildings", .one = "building", .class_name = "BLD_Building", .factory = "NewBuilding"},
};

}  // namespace

std::span<const EntityKind> entity_kinds() { return kKinds; }

Ptr<StoredEntity> make_entity(COM_ProjectData& project, const EntityKind& kind) {
  Value made;
  std::vector<Value> none;
  project.info().find(kind.factory).call(project, none, made);
  return std::dynamic_pointer_cast<StoredEntity>(std::get<ObjectPtr>(made));
}

}  // namespace tarn
