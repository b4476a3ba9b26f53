#include "component/kinds.h"

namespace tarn {
namespace {

constexpr EntityKind kKinds[]{
    {"windows", "window", "WIN_Window", "NewWindow", "CalculatePerformance"},
    {"doors", "door", "DOR_Door", "NewDoor", ""},
    {"shades", "shade", "SHD_Shade", "NewShade", ""},
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
