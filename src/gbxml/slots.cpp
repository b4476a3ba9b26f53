#include "gbxml/slots.h"

#include <algorithm>
#include <cmath>
#include <map>

#include "tarn/space.h"

namespace tarn {
namespace {

constexpr size_t kWindowTypes = 2;   // of a wall
constexpr double kHorizontal = 2.5;  // deg, of slope: a roof that drains still faces the sky
constexpr double kSameLevel = 1.5;   // ft, between a slab and the foot of a wall that stands on its edge

constexpr std::string_view kExposureNames[]{"N",   "NNE", "NE",  "ENE", "E",   "ESE", "SE",  "SSE",       "S",
                                            "SSW", "SW",  "WSW", "W",   "WNW", "NW",  "NNW", "horizontal"};

int16_t exposure_of(double azimuth) {
  constexpr double kStep = 22.5;
  return static_cast<int16_t>(1 + static_cast<int>(std::lround(azimuth / kStep)) % 16);
}

double thousandths(double feet) { return std::round(feet * 1000) / 1000; }

OpeningType type_of(const DrawnOpening& opening) {
  return {opening.is_door,
          opening.glazing,
          opening.construction,
          opening.u_value,
          opening.shade_coefficient,
          thousandths(opening.width),
          thousandths(opening.height),
          opening.shading};
}

/// All surfaces of one direction and construction.
struct Group {
  Slot slot;  // without openings
  std::map<OpeningType, int> openings;
};

/// Openings that differ in size alone become one type of their mean size.
std::map<OpeningType, int> with_mean_sizes(const std::map<OpeningType, int>& openings) {
  struct Sum {
    double area = 0, height = 0;
    int count = 0;
  };
  std::map<OpeningType, Sum> sums;
  for (const auto& [type, count] : openings) {
    OpeningType sizeless = type;
    sizeless.width = sizeless.height = 0;
    Sum& sum = sums[sizeless];
    sum.area += type.width * type.height * count;
    sum.height += type.height * count;
    sum.count += count;
  }
  std::map<OpeningType, int> mean;
  for (const auto& [sizeless, sum] : sums) {
    OpeningType type = sizeless;
    type.height = sum.height / sum.count;
    type.width = sum.area / sum.count / type.height;
    mean[type] += sum.count;
  }
  return mean;
}

/// As many slots as the types of openings need; the area goes with the openings, so that each holds its own.
void add_slots(std::vector<Slot>& slots, const Group& group, size_t window_types) {
  std::vector<Counted> windows, doors;
  double open = 0;
  for (const auto& [type, count] : group.openings) {
    (type.is_door ? doors : windows).push_back({type, count});
    open += type.width * type.height * count;
  }
  const size_t needed = std::max({size_t{1}, (windows.size() + window_types - 1) / window_types, doors.size()});
  for (size_t number = 0; number < needed; ++number) {
    Slot slot = group.slot;
    double own = 0;
    for (size_t i = number * window_types; i < std::min((number + 1) * window_types, windows.size()); ++i) {
      slot.windows.push_back(windows[i]);
      own += windows[i].type.width * windows[i].type.height * windows[i].count;
    }
    if (number < doors.size()) {
      slot.door = doors[number];
      own += doors[number].type.width * doors[number].type.height * doors[number].count;
    }
    slot.area *= needed == 1 ? 1 : own / open;
    if (number > 0) slot.count = 0;  // counted once
    slots.push_back(std::move(slot));
  }
}

using Groups = std::map<std::tuple<int16_t, int16_t, std::string_view>, Group>;

void add_to(Groups& groups, const DrawnSurface& surface, int16_t exposure, int16_t slope) {
  Group& group = groups[{exposure, slope, surface.construction}];
  group.slot.exposure = exposure;
  group.slot.slope = slope;
  group.slot.construction = surface.construction;
  group.slot.area += surface.area;
  ++group.slot.count;
  for (const DrawnOpening& opening : surface.openings) ++group.openings[type_of(opening)];
}

std::vector<Slot> slots_in(const Groups& groups, size_t window_types, size_t most, bool& has_mean_sizes) {
  std::vector<Slot> slots;
  for (const auto& [key, group] : groups) add_slots(slots, group, window_types);
  if (slots.size() <= most) return slots;
  std::vector<Slot> fewer;
  for (const auto& [key, group] : groups) add_slots(fewer, {group.slot, with_mean_sizes(group.openings)}, window_types);
  if (fewer.size() == slots.size()) return slots;
  has_mean_sizes = true;
  return fewer;
}

FloorSlot& floor_of(SpaceSlots& slots, int16_t type, bool over_outdoors = false) {
  for (FloorSlot& floor : slots.floors) {
    if (floor.type == type && floor.over_outdoors == over_outdoors) return floor;
  }
  return slots.floors.emplace_back(FloorSlot{type, over_outdoors});
}

/// Length of the outer walls that stand on a slab.
double perimeter_at(const DrawnSpace& space, double level) {
  double length = 0;
  for (const DrawnSurface& wall : space.surfaces) {
    if (wall.role == Role::Wall && std::abs(wall.low - level) < kSameLevel) length += wall.width;
  }
  return length;
}

void add_floor(SpaceSlots& slots, const DrawnSpace& space, const DrawnSurface& surface, double u_value) {
  const Role role = surface.role;
  const int16_t type = role == Role::FloorOverConditioned ? 1
                       : role == Role::SlabOnGrade        ? 3
                       : role == Role::SlabBelowGrade     ? 4
                                                          : 2;
  FloorSlot& floor = floor_of(slots, type, role == Role::FloorOverOutdoors);
  if (role == Role::SlabOnGrade && floor.count == 0) floor.perimeter = perimeter_at(space, surface.low);
  ++floor.count;
  floor.area += surface.area;
  floor.conductance += surface.area * u_value;
}

void add_underground_wall(SpaceSlots& slots, const DrawnSurface& surface, double u_value) {
  FloorSlot& floor = floor_of(slots, 4);
  ++floor.walls;
  floor.wall_area += surface.area;
  floor.wall_conductance += surface.area * u_value;
  floor.depth = std::max(floor.depth, surface.high - surface.low);
}

}  // namespace

size_t SpaceSlots::parts() const {
  const auto needed = [](size_t count, int most) {
    return (count + static_cast<size_t>(most) - 1) / static_cast<size_t>(most);
  };
  return std::max(
      {size_t{1}, needed(walls.size(), SPC_Space::kWalls), needed(roofs.size(), SPC_Space::kRoofs), floors.size()});
}

SpaceSlots slots_of(const DrawnSpace& space, const Library& library) {
  SpaceSlots slots;
  Groups walls, roofs;
  for (const DrawnSurface& surface : space.surfaces) {
    const auto conductance = [&](double films) { return library.u_value(surface.construction, films); };
    switch (surface.role) {
      case Role::Wall:
        add_to(walls, surface, exposure_of(surface.azimuth), 0);
        break;
      case Role::Roof: {
        const bool is_level = surface.tilt < kHorizontal;
        const int16_t slope = is_level ? int16_t{0} : static_cast<int16_t>(std::lround(surface.tilt));
        add_to(roofs, surface, is_level ? int16_t{17} : exposure_of(surface.azimuth), slope);
        break;
      }
      case Role::UndergroundWall:
        add_underground_wall(slots, surface, conductance(kInsideFilm));
        break;
      case Role::WallToUnconditioned:
      case Role::CeilingToUnconditioned: {
        PartitionSlot& slot = surface.role == Role::WallToUnconditioned ? slots.wall : slots.ceiling;
        ++slot.count;
        slot.area += surface.area;
        slot.conductance += surface.area * conductance(2 * kInsideFilm);
        break;
      }
      case Role::FloorOverOutdoors:
        add_floor(slots, space, surface, conductance(kInsideFilm + kOutsideFilm));
        break;
      case Role::FloorOverUnconditioned:
      case Role::FloorOverConditioned:
        add_floor(slots, space, surface, conductance(2 * kInsideFilm));
        break;
      default:
        add_floor(slots, space, surface, conductance(kInsideFilm));
    }
  }
  if (slots.floors.size() > 1)  // no heat flows there, so that it needs no space of its own
    std::erase_if(slots.floors, [](const FloorSlot& floor) { return floor.type == 1; });
  for (FloorSlot& floor : slots.floors) {
    if (floor.wall_area > 0) floor.perimeter = floor.wall_area / floor.depth;
  }
  slots.walls = slots_in(walls, kWindowTypes, SPC_Space::kWalls, slots.has_mean_sizes);
  slots.roofs = slots_in(roofs, 1, SPC_Space::kRoofs, slots.has_mean_sizes);
  return slots;
}

std::string exposure_name(int16_t exposure) { return std::string(kExposureNames[static_cast<size_t>(exposure) - 1]); }

}  // namespace tarn
