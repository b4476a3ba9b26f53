// Design results as a person reads them on a terminal.
#pragma once

#include "tarn/air_system_design.h"

namespace tarn::cli {

/// Sizes of coils, fans and ventilation; the zones; the loads by component; the states of the air at the cooling peak.
void show_system(ADL_AirSystemDesign& design);
/// Sizes and loads of a zone, from 1, and of its spaces.
void show_zone(const ADL_AirSystemDesign& design, int zone);

}  // namespace tarn::cli
