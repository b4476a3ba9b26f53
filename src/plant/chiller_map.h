// Reading a chiller's map between its points, and its integrated part-load value.
#pragma once

#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "tarn/chiller.h"

namespace tarn {

/// A point of an axis and its part in a value between the points.
struct Share {
  size_t at;
  double part;
};

/// The shares of a place on an ascending axis, ends included: the cubic through the four points around it, the straight
/// line where an axis has fewer than four, one point alone where the place is on it.
std::vector<Share> shares(std::span<const double> axis, double place);

/// How a chiller gives less than full load.
struct Unloading {
  bool in_steps = false;       // the map's columns are all the loads there are; else points of a smooth curve
  double cycling_loss = 0.13;  // per unit of load below the least, of AHRI 550/590
};

/// The input for a ton over the year by AHRI 550/590: efficiencies at 100, 75, 50 and 25 per cent of full load weigh
/// 0.01, 0.42, 0.45 and 0.12. Condenser water enters at 85, 75, 65 and 65 F, never colder than `least_water`; air at
/// 95, 80, 65 and 55 F. Takes the map's units: kW/ton, or MBH/ton of fuel or heat. Empty where the map does not reach
/// these temperatures, or its capacities do not ascend.
std::optional<double> integrated_part_load(const CHL_OperatingMode& cooling, CHL_SourceFluids source,
                                           double least_water, const Unloading& unloading = {});

// Units that the chiller's energy and the mode's use decide: of a mode's figures, where a chiller has the mode, and of
// a chiller's.
std::string_view capacity_unit(const Object& mode);
std::string_view power_unit(const Object& mode);
std::string_view map_power_unit(const Object& mode);
std::string_view iplv_unit(const Object& chiller);
std::string_view free_cooling_capacity_unit(const Object& chiller);
std::string_view free_cooling_power_unit(const Object& chiller);

}  // namespace tarn
