#include "component/kinds.h"

#include "envelope/construction.h"
#include "envelope/window.h"

namespace tarn {
namespace {

template <typename C, void (C::*Compute)()>
void computed(StoredEntity& entity) {
  (dynamic_cast<C&>(entity).*Compute)();
}

constexpr auto kPerformance = computed<WIN_Window, &WIN_Window::CalculatePerformance>;
constexpr auto kLayerSums = computed<CA_ConstructionAssly, &CA_ConstructionAssly::sum_layers>;
constexpr EntityKind kKinds[]{
    {"windows", "window", "WIN_Window", "WIN_Window", "NewWindow", kPerformance},
    {"doors", "door", "DOR_Door", "DOR_Door", "NewDoor", nullptr},
    {"shades", "shade", "SHD_Shade", "SHD_Shade", "NewShade", nullptr},
    {"walls", "wall", "CA_ConstructionAssly", "CA_ConstructionAssly.Wall", "NewWall", kLayerSums},
    {"roofs", "roof", "CA_ConstructionAssly", "CA_ConstructionAssly.Roof", "NewRoof", kLayerSums},
    {"schedules", "schedule", "SCH_Schedule", "SCH_Schedule", "NewSchedule", nullptr},
    {"spaces", "space", "SPC_Space", "SPC_Space", "NewSpace", nullptr},
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
