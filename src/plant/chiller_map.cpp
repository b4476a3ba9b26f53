#include "plant/chiller_map.h"

#include <algorithm>

namespace tarn {
namespace {

/// A column of the map at one entering temperature.
struct Load {
  double capacity, power;
};

std::vector<Load> loads_at(const CHL_OperatingMode& mode, const std::vector<Share>& rows) {
  std::vector<Load> loads;
  for (int column = 1; column <= mode.NumColumns(); ++column) {
    double capacity = 0, input_per_ton = 0;
    for (const auto& [at, part] : rows) {
      const int row = static_cast<int>(at) + 1;
      capacity += part * mode.MapCapacity(row, column);
      input_per_ton += part * mode.MapPower(row, column) / mode.MapCapacity(row, column);
    }
    loads.push_back({capacity, capacity * input_per_ton});
  }
  return loads;
}

/// Tons per unit of input at a load in tons; loads ascend.
double efficiency_at(const std::vector<Load>& loads, double tons, const Unloading& unloading) {
  const auto efficiency = [](const Load& load) { return load.capacity / load.power; };
  const Load &least = loads.front(), &most = loads.back();
  if (tons >= most.capacity) return efficiency(most);
  if (tons <= least.capacity) return efficiency(least) / (1 + unloading.cycling_loss * (1 - tons / least.capacity));
  if (unloading.in_steps) {
    const auto above = std::find_if(loads.begin(), loads.end(), [tons](const Load& l) { return l.capacity >= tons; });
    const double weight = (tons - above[-1].capacity) / (above->capacity - above[-1].capacity);
    return efficiency(above[-1]) * (1 - weight) + efficiency(*above) * weight;
  }
  std::vector<double> capacities;
  for (const Load& load : loads) capacities.push_back(load.capacity);
  double power = 0;
  for (const auto& [at, part] : shares(capacities, tons)) power += part * loads[at].power;
  return tons / power;
}

bool burns(const CHL_Chiller& chiller) { return CHL_FuelTypes{chiller.FuelType} != CHL_FuelTypes::CFT_ELECTRIC; }

}  // namespace

std::vector<Share> shares(std::span<const double> axis, double place) {
  const auto above = static_cast<size_t>(std::lower_bound(axis.begin(), axis.end(), place) - axis.begin());
  if (above == axis.size()) return {{axis.size() - 1, 1}};
  if (axis[above] == place || above == 0) return {{above, 1}};
  const size_t count = axis.size() < 4 ? 2 : 4;
  const size_t first = count == 2 ? above - 1 : std::min(above < 2 ? 0 : above - 2, axis.size() - 4);
  std::vector<Share> all;
  for (size_t at = first; at < first + count; ++at) {
    double part = 1;
    for (size_t other = first; other < first + count; ++other) {
      if (other != at) part *= (place - axis[other]) / (axis[at] - axis[other]);
    }
    all.push_back({at, part});
  }
  return all;
}

std::optional<double> integrated_part_load(const CHL_OperatingMode& cooling, CHL_SourceFluids source,
                                           double least_water, const Unloading& unloading) {
  struct Point {
    double load, weight, water, air;  // of full load, F
  };
  static constexpr Point kPoints[]{{1, 0.01, 85, 95}, {0.75, 0.42, 75, 80}, {0.5, 0.45, 65, 65}, {0.25, 0.12, 65, 55}};
  std::vector<double> temperatures;
  for (int row = 1; row <= cooling.NumRows(); ++row) temperatures.push_back(cooling.MapRowHeading(row));
  if (temperatures.empty() || cooling.NumColumns() == 0) return {};
  double tons_per_input = 0;
  for (const Point& point : kPoints) {
    const double entering = source == CHL_SourceFluids::AirSource ? point.air : std::max(point.water, least_water);
    if (entering < temperatures.front() || entering > temperatures.back()) return {};
    const auto loads = loads_at(cooling, shares(temperatures, entering));
    const auto falls = [](const Load& one, const Load& next) { return next.capacity <= one.capacity; };
    if (loads.front().capacity <= 0 || std::adjacent_find(loads.begin(), loads.end(), falls) != loads.end()) return {};
    tons_per_input += point.weight * efficiency_at(loads, point.load * cooling.FLCapacity, unloading);
  }
  return 1 / tons_per_input;
}

namespace {

struct ModeUnits {
  std::string_view capacity, power, map_power;
};

/// Without units for a mode that no chiller has.
ModeUnits units_of(const Object& object) {
  const auto& mode = dynamic_cast<const CHL_OperatingMode&>(object);
  const auto* chiller = dynamic_cast<const CHL_Chiller*>(mode.owner());
  if (!chiller) return {};
  const bool heats = &mode == &chiller->HeatingMode, fuel = burns(*chiller);
  const bool relative = CHL_InputPower{mode.FLPowerUnits} == CHL_InputPower::InputPower_Relative;
  const std::string_view power = fuel ? "MBH" : "kW";
  if (heats && relative) return {"MBH", fuel ? "MBH/MBH" : "kW/MBH", power};
  return {heats ? "MBH" : "tons", !relative ? power : fuel ? "MBH/ton" : "kW/ton", power};
}

bool has_relative_free_cooling(const Object& chiller) {
  return CHL_DXFCUOM{dynamic_cast<const CHL_Chiller&>(chiller).DXFCUOM} != CHL_DXFCUOM::DXFC_UOM_Absolute;
}

}  // namespace

std::string_view capacity_unit(const Object& mode) { return units_of(mode).capacity; }
std::string_view power_unit(const Object& mode) { return units_of(mode).power; }
std::string_view map_power_unit(const Object& mode) { return units_of(mode).map_power; }
std::string_view iplv_unit(const Object& chiller) {
  return burns(dynamic_cast<const CHL_Chiller&>(chiller)) ? "MBH/ton" : "kW/ton";
}
std::string_view free_cooling_capacity_unit(const Object& chiller) {
  return has_relative_free_cooling(chiller) ? "" : "tons";
}
std::string_view free_cooling_power_unit(const Object& chiller) {
  return has_relative_free_cooling(chiller) ? "" : "kW";
}

}  // namespace tarn
