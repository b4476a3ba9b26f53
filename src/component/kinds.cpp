#include "component/kinds.h"

#include "envelope/construction.h"
#include "envelope/window.h"

namespace tarn {
namespace {

template <typename C, void (C::*Compute)()>
void computed(StoredEntity& entity) {
  (dynamic_cast<C&>(entity).*Compute)();
}

void derived(Object& part) { dynamic_cast<CA_Layer&>(part).derive(); }

constexpr auto kPerformance = computed<WIN_Window, &WIN_Window::CalculatePerformance>;
constexpr auto kLayerSums = computed<CA_ConstructionAssly, &CA_ConstructionAssly::sum_layers>;
constexpr EntityKind kKinds[]{
    {"windows", "window", "WIN_Window", "WIN_Window", "NewWindow", nullptr, kPerformance},
    {"doors", "door", "DOR_Door", "DOR_Door", "NewDoor", nullptr, nullptr},
    {"shades", "shade", "SHD_Shade", "SHD_Shade", "NewShade", nullptr, nullptr},
    {"walls", "wall", "CA_ConstructionAssly", "CA_ConstructionAssly.Wall", "NewWall", derived, kLayerSums},
    {"roofs", "roof", "CA_ConstructionAssly", "CA_ConstructionAssly.Roof", "NewRoof", derived, kLayerSums},
    {"schedules", "schedule", "SCH_Schedule", "SCH_Schedule", "NewSchedule", nullptr, nullptr},
    {"spaces", "space", "SPC_Space", "SPC_Space", "NewSpace", nullptr, nullptr},
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
