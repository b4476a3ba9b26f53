// Self-contained pictures (SVG), as text. What shows results that are stale says so: "stale: ...".
#pragma once

#include <string>
#include <string_view>

#include "tarn/base/units.h"

namespace tarn {

class ADL_AirSystemDesign;
class BLR_Boiler;
class CA_ConstructionAssly;
class CHL_Chiller;
class HW1ReaderWriter;
class Object;
class PLT_Plant;
class SCH_Schedule;
struct ProjectGraph;

/// A wall or roof: the section to scale with the temperatures in it on a sunny day, and the heat that comes in after an
/// hour of warmth. Error `InvalidCall`, with the reason, where the layers have no response.
std::string wall_picture(CA_ConstructionAssly& construction, UnitSystem units = UnitSystem::InchPound);

/// A schedule: hours by day types by months, and the profiles that apply.
std::string schedule_picture(const SCH_Schedule& schedule);

/// A chiller: capacity and power over the entering temperature, and power over capacity, of each map that it has.
std::string chiller_picture(const CHL_Chiller& chiller, UnitSystem units = UnitSystem::InchPound);
/// A boiler: the efficiency over the load.
std::string boiler_picture(const BLR_Boiler& boiler, UnitSystem units = UnitSystem::InchPound);

/// A plant: what rejects heat, equipment, loops with their pumps and the air systems served, from left to right. Error
/// `InvalidCall` for one that has no index database, which has the names.
std::string plant_picture(PLT_Plant& plant, UnitSystem units = UnitSystem::InchPound);

/// A year of weather: 24 hours by 365 days of dry-bulb, humidity and solar, in IP and SI units.
std::string weather_picture(const HW1ReaderWriter& year);

/// Design results: loads and airflow of the peak month's day, the states of the air on a psychrometric chart. `name`
/// is the heading.
std::string result_picture(const ADL_AirSystemDesign& design, const std::string& name);

/// Who uses whom in a project: columns from inputs over spaces, systems, plants and buildings to results. Stale results
/// and the ways to them are red, the edits at their beginning orange; hints tell names, times and ways.
std::string graph_picture(const ProjectGraph& graph);

/// The picture of an object by its class, of a project its graph. Error `InvalidCall` for a class without one.
std::string picture_of(Object& object, UnitSystem units = UnitSystem::InchPound);
/// What the picture of a class shows ("a section with its temperatures"); empty for a class without one.
std::string_view picture_content(std::string_view class_name);

}  // namespace tarn
