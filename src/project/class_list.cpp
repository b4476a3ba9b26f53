#include "tarn/class_list.h"

#include <algorithm>
#include <vector>

#include "airsystems/defaults.h"
#include "airsystems/fan_power.h"
#include "base/nearest.h"
#include "project/kinds.h"
#include "tarn/air_system_design.h"
#include "tarn/base/error.h"
#include "tarn/hourly_file.h"
#include "tarn/preferences.h"
#include "tarn/project.h"
#include "tarn/reflect/collection.h"
#include "tarn/weather.h"

namespace tarn {
namespace {

using Classes = std::vector<ClassEntry>;

/// A class and those of its parts, once each.
void add(Classes& all, const ClassEntry& entry) {
  const bool known = std::any_of(all.begin(), all.end(), [&](const ClassEntry& e) { return e.info == entry.info; });
  if (known) return;
  all.push_back(entry);
  for (const Member& member : entry.info->members) {
    if (member.is_part() && member.owned().create) add(all, {&member.owned().info(), member.owned().create});
  }
}

template <typename... C>
void add(Classes& all) {
  const auto each = [&all](ObjectPtr (*create)()) { add(all, {&create()->info(), create}); };
  (each([]() -> ObjectPtr { return std::make_shared<C>(); }), ...);
}

template <size_t... Type>
void add_system_defaults(Classes& all, std::index_sequence<Type...>) {
  const auto each = [&all](ObjectPtr (*create)()) { add(all, {&create()->info(), create}); };
  (each([]() -> ObjectPtr { return std::make_shared<AS_SystemDefaults>(kSystemDefaults[Type]); }), ...);
}

const Classes& classes() {
  static const Classes all = [] {
    Classes list;
    add<COM_ProjectData, PRF_ProjectPrefs, RPT_ReportOptions>(list);
    for (const EntityKind& kind : entity_kinds()) add(list, {&kind.create()->info(), kind.create});
    add<AS_FanPowerAdjustments, AS_FanPowerAdjustment>(list);
    add_system_defaults(list, std::make_index_sequence<kSystemDefaults.size()>());
    add<WTH_Weather, WTH_Stats, HW1ReaderWriter>(list);
    add<ADL_AirSystemDesign, ADL_HourlyAirData, ADL_TSZone, ADL_HLZone, ADL_HourlyZoneData, ADL_DLZone,
        ADL_CoolingLoads, ADL_SpaceLoads>(list);
    add<Collection>(list);
    return list;
  }();
  return all;
}

const ClassEntry& find(std::string_view name) {
  for (const ClassEntry& entry : classes()) {
    if (same_word(entry.info->name, name)) return entry;
  }
  std::vector<std::string_view> names;
  for (const ClassEntry& entry : classes()) names.push_back(entry.info->name);
  fail(ErrorNumber::CannotCreateObject, "There is no class " + std::string(name) + "; " + did_you_mean(name, names));
}

}  // namespace

std::span<const ClassEntry> class_list() { return classes(); }

ObjectPtr create(std::string_view class_name) { return find(class_name).create(); }

const ClassInfo& class_info(std::string_view class_name) { return *find(class_name).info; }

}  // namespace tarn
