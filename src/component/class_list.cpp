#include "component/class_list.h"

#include <vector>

#include "base/collection.h"
#include "base/error.h"
#include "base/nearest.h"
#include "envelope/construction.h"
#include "envelope/door.h"
#include "envelope/shade.h"
#include "envelope/window.h"
#include "spaces/schedule.h"
#include "spaces/space.h"
#include "storage/preferences.h"
#include "storage/project.h"

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

constexpr ClassEntry kClasses[]{
    entry<COM_ProjectData>(),
    entry<PRF_ProjectPrefs>(),
    entry<RPT_ReportOptions>(),
    entry<WIN_Window>(),
    entry<DOR_Door>(),
    entry<SHD_Shade>(),
    entry<CA_ConstructionAssly>(),
    entry<CA_Layer>(),
    entry<SCH_Schedule>(),
    entry<SPC_Space>(),
    entry<SPC_General>(),
    entry<SPC_WallWindow>(),
    entry<SPC_Roof>(),
    entry<SPC_Partition>(),
    entry<SPC_Floor>(),
    entry<SPC_Infiltration>(),
    entry<SPC_People>(),
    entry<SPC_Lighting>(),
    entry<SPC_OtherLoads>(),
    entry<Collection>(),
};

const ClassEntry& find(std::string_view name) {
  std::vector<std::string_view> names;
  for (const ClassEntry& entry : kClasses) {
    names.push_back(entry.info().name);
    if (same_word(names.back(), name)) return entry;
  }
  fail(ErrorNumber::CannotCreateObject, "There is no class " + std::string(name) + "; " + did_you_mean(name, names));
}

}  // namespace

std::span<const ClassEntry> class_list() { return kClasses; }

ObjectPtr create(std::string_view class_name) { return find(class_name).create(); }

const ClassInfo& class_info(std::string_view class_name) { return find(class_name).info(); }

}  // namespace tarn
