// What of a drawn air system goes into the record: sources, fan, heat recovery, and zones with their terminals.
#pragma once

#include "gbxml/systems.h"
#include "tarn/air_system.h"

namespace tarn {

void fill_coils(AS_AirSystem& system, const DrawnSystem& drawn, Filling& filling);
/// Zones of more than 50 spaces become several.
void fill_zones(AS_AirSystem& system, const DrawnSystem& drawn, Filling& filling);

}  // namespace tarn
