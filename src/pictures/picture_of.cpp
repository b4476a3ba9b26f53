#include <algorithm>

#include "tarn/air_system_design.h"
#include "tarn/boiler.h"
#include "tarn/chiller.h"
#include "tarn/construction.h"
#include "tarn/hourly_file.h"
#include "tarn/pictures.h"
#include "tarn/plant.h"
#include "tarn/schedule.h"
#include "tarn/staleness.h"

namespace tarn {
namespace {

template <typename C>
C& as(Object& object) {
  return dynamic_cast<C&>(object);
}

struct Pictured {
  std::string_view class_name, what, shows;
  std::string (*draw)(Object&, UnitSystem);
};

std::string design_picture(ADL_AirSystemDesign& design) {
  const auto system = design.AirSystem();
  if (!system) fail(ErrorNumber::InvalidCall, "The design results have no air system; set AirSystem and load them.");
  return result_picture(design,
                        system->GetAirSystem()->Name.trimmed() + ", air system " + std::to_string(system->Index()));
}

constexpr Pictured kPictured[]{
    {"CA_ConstructionAssly", "walls and roofs", "a section with its temperatures",
     [](Object& o, UnitSystem u) { return wall_picture(as<CA_ConstructionAssly>(o), u); }},
    {"SCH_Schedule", "schedules", "a heat map of the year",
     [](Object& o, UnitSystem) { return schedule_picture(as<SCH_Schedule>(o)); }},
    {"CHL_Chiller", "chillers", "capacity and power over temperature and load",
     [](Object& o, UnitSystem u) { return chiller_picture(as<CHL_Chiller>(o), u); }},
    {"BLR_Boiler", "boilers", "the efficiency over the load",
     [](Object& o, UnitSystem u) { return boiler_picture(as<BLR_Boiler>(o), u); }},
    {"PLT_Plant", "plants", "a schematic", [](Object& o, UnitSystem u) { return plant_picture(as<PLT_Plant>(o), u); }},
    {"HW1ReaderWriter", "hourly weather", "a year of hours",
     [](Object& o, UnitSystem) { return weather_picture(as<HW1ReaderWriter>(o)); }},
    {"ADL_AirSystemDesign", "design results", "loads and states of the peak day",
     [](Object& o, UnitSystem) { return design_picture(as<ADL_AirSystemDesign>(o)); }},
    {"COM_ProjectData", "projects", "who uses whom",
     [](Object& o, UnitSystem) { return graph_picture(project_graph(as<COM_ProjectData>(o))); }}};

const Pictured* pictured(std::string_view class_name) {
  const auto* found = std::ranges::find(kPictured, class_name, &Pictured::class_name);
  return found == std::end(kPictured) ? nullptr : found;
}

}  // namespace

std::string_view picture_content(std::string_view class_name) {
  const Pictured* found = pictured(class_name);
  return found ? found->shows : std::string_view();
}

std::string picture_of(Object& object, UnitSystem units) {
  if (const Pictured* found = pictured(object.info().name)) return found->draw(object, units);
  std::string known;
  for (const Pictured& each : kPictured)
    known += (known.empty()                      ? ""
              : &each == std::end(kPictured) - 1 ? " and "
                                                 : ", ") +
             std::string(each.what) + " (" + std::string(each.class_name) + ")";
  fail(ErrorNumber::InvalidCall, std::string(object.info().name) + " has no picture; " + known + " have one.");
}

}  // namespace tarn
