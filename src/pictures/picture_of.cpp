#include "tarn/air_system_design.h"
#include "tarn/construction.h"
#include "tarn/hourly_file.h"
#include "tarn/pictures.h"
#include "tarn/staleness.h"

namespace tarn {

std::string picture_of(Object& object) {
  if (auto* construction = dynamic_cast<CA_ConstructionAssly*>(&object)) return wall_picture(*construction);
  if (auto* year = dynamic_cast<HW1ReaderWriter*>(&object)) return weather_picture(*year);
  if (auto* design = dynamic_cast<ADL_AirSystemDesign*>(&object)) {
    const auto system = design->AirSystem();
    if (!system) fail(ErrorNumber::InvalidCall, "The design results have no air system; set AirSystem and load them.");
    return result_picture(*design,
                          system->GetAirSystem()->Name.trimmed() + ", air system " + std::to_string(system->Index()));
  }
  if (auto* project = dynamic_cast<COM_ProjectData*>(&object)) return graph_picture(project_graph(*project));
  fail(ErrorNumber::InvalidCall, std::string(object.info().name) +
                                     " has no picture; walls and roofs (CA_ConstructionAssly), hourly weather "
                                     "(HW1ReaderWriter), design results (ADL_AirSystemDesign) and projects "
                                     "(COM_ProjectData) have one.");
}

}  // namespace tarn
