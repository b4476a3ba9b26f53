#include "component/kinds.h"

#include <algorithm>
#include <charconv>

#include "airsystems/defaults.h"
#include "base/nearest.h"
#include "envelope/construction.h"
#include "envelope/window.h"

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

void derived(Object& part) { dynamic_cast<CA_Layer&>(part).derive(); }

constexpr auto kPerformance = computed<WIN_Window, &WIN_Window::CalculatePerformance>;
constexpr auto kLayerSums = computed<CA_ConstructionAssly, &CA_ConstructionAssly::sum_layers>;
constexpr EntityKind kKinds[]{
    {"windows", "window", "WIN_Window", "WIN_Window", "NewWindow", nullptr, nullptr, kPerformance},
    {"doors", "door", "DOR_Door", "DOR_Door", "NewDoor", nullptr, nullptr, nullptr},
    {"shades", "shade", "SHD_Shade", "SHD_Shade", "NewShade", nullptr, nullptr, nullptr},
    {"walls", "wall", "CA_ConstructionAssly", "CA_ConstructionAssly.Wall", "NewWall", nullptr, derived, kLayerSums},
    {"roofs", "roof", "CA_ConstructionAssly", "CA_ConstructionAssly.Roof", "NewRoof", nullptr, derived, kLayerSums},
    {"schedules", "schedule", "SCH_Schedule", "SCH_Schedule", "NewSchedule", nullptr, nullptr, nullptr},
    {"spaces", "space", "SPC_Space", "SPC_Space", "NewSpace", nullptr, nullptr, nullptr},
    {"air-systems", "air system", "AS_AirSystem", "AS_AirSystem", "NewAirSystem", start_system, nullptr, nullptr},
};

}  // namespace

std::span<const EntityKind> entity_kinds() { return kKinds; }

Ptr<StoredEntity> make_entity(COM_ProjectData& project, const EntityKind& kind) {
  Value made;
  std::vector<Value> none;
  project.info().find(kind.factory).call(project, none, made);
  auto entity = std::dynamic_pointer_cast<StoredEntity>(std::get<ObjectPtr>(made));
  entity->select_all();
  return entity;
}

}  // namespace tarn
