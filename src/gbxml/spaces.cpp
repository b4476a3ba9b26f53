#include "gbxml/spaces.h"

#include <algorithm>
#include <cmath>

#include "tarn/weather.h"

namespace tarn {
namespace {

constexpr double kIndoorSummer = 75, kIndoorWinter = 70;    // F
constexpr double kOutdoorSummer = 95, kOutdoorWinter = 20;  // F, where the project has no design weather

const char* floor_name(const FloorSlot& floor) {
  switch (floor.type) {
    case 1:
      return "above conditioned space";
    case 2:
      return floor.over_outdoors ? "above outdoor air" : "above unconditioned space";
    case 3:
      return "slab on grade";
    default:
      return "slab below grade";
  }
}

std::string part_id(std::string_view id, size_t part) {
  return part == 0 ? std::string(id) : std::string(id) + "#" + std::to_string(part + 1);
}

/// Temperatures beyond a floor or a partition, at the outdoor extremes of design.
template <typename Part>
void set_temperatures(Part& part, double summer, double winter, bool is_outdoors) {
  part.MaxAmbient = static_cast<float>(summer);
  part.MinAmbient = static_cast<float>(winter);
  part.MaxSpaceTemp = static_cast<float>(is_outdoors ? summer : (summer + kIndoorSummer) / 2);
  part.MinSpaceTemp = static_cast<float>(is_outdoors ? winter : (winter + kIndoorWinter) / 2);
}

/// The n-th `most` of a list.
std::span<const Slot> piece(const std::vector<Slot>& all, size_t part, size_t most) {
  const size_t begin = std::min(part * most, all.size());
  return std::span(all).subspan(begin, std::min(most, all.size() - begin));
}

double area_of(std::span<const Slot> slots) {
  double sum = 0;
  for (const Slot& slot : slots) sum += slot.area;
  return sum;
}

}  // namespace

void Spaces::fill_all(const std::function<void()>& done) {
  const auto weather = filling_.project.NewWeather();
  weather->Load();
  const bool has_design = weather->SummerDB > weather->WinterDB;
  summer_ = has_design ? weather->SummerDB : kOutdoorSummer;
  winter_ = has_design ? weather->WinterDB : kOutdoorWinter;
  for (const DrawnSpace& drawn : filling_.drawing.spaces) {
    const bool has_area = filling_.document.child_value(drawn.element, "Area", "ft2").value_or(0) > 0;
    if (drawn.conditioned || has_area || !drawn.surfaces.empty())
      fill(drawn);
    else
      filling_.tally.left(filling_.document, drawn.element, "Space",
                          "it has no area and only stands for what lies beyond partitions");
    done();
  }
}

void Spaces::fill(const DrawnSpace& drawn) {
  const SpaceSlots slots = slots_of(drawn, library_);
  const size_t parts = slots.parts();
  const auto note = [&](const std::string& text) { filling_.tally.note(filling_.document, drawn.element, text); };
  if (slots.has_mean_sizes)
    note(
        "it has more walls or roofs than a space can have, so that its openings of other sizes became as many of their "
        "mean size");
  if (parts > 1)
    note("it has more walls, roofs or kinds of floor than a space can have; it is split in " + std::to_string(parts) +
         ", with its floor and its loads by the area of their walls");
  if (!drawn.conditioned) note("it is unconditioned; no zone has it");
  const double walls = area_of(slots.walls);
  for (size_t part = 0; part < parts; ++part) {
    const auto own_walls = piece(slots.walls, part, SPC_Space::kWalls);
    const double share = parts == 1 ? 1 : walls > 0 ? area_of(own_walls) / walls : 1 / static_cast<double>(parts);
    const int16_t index = filling_.entity(object_, part_id(drawn.id, part), [&](SPC_Space& space, bool is_new) {
      space.SetName(filling_.name_for(space, drawn.name, drawn.id, 24, drawn.element));
      fill_loads(space, drawn, {share, part == 0, is_new}, filling_, schedules_);
      fill_walls(space, own_walls);
      fill_roofs(space, piece(slots.roofs, part, SPC_Space::kRoofs));
      fill_floor(space, part < slots.floors.size() ? slots.floors[part] : FloorSlot{});
      const PartitionSlot none;
      fill_partition(*space.GetPartition(1), part == 0 ? slots.wall : none, 1, "wall");
      fill_partition(*space.GetPartition(2), part == 0 ? slots.ceiling : none, 2, "ceiling");
    });
    filling_.tally.account.floor_area += object_->GetSpace()->FloorArea;
    if (drawn.conditioned) of_zone_[drawn.zone].push_back(index);
  }
  delete_other_parts(drawn, parts);
  filling_.tally.taken("Space");
}

/// A space that was split more often when it was imported before has fewer parts now.
void Spaces::delete_other_parts(const DrawnSpace& drawn, size_t parts) {
  const std::string table = "SpaceIndex";
  for (size_t part = parts;; ++part) {
    const std::string id = part_id(drawn.id, part);
    const int16_t index = filling_.ids.index(table, id);
    if (part == 0 || index == 0) return;
    filling_.project.NewSpace()->Delete(index);
    filling_.ids.forget(table, id);
  }
}

double Spaces::count_openings(const Slot& slot, const char* kind) {
  Tally& tally = filling_.tally;
  const std::string exposure = exposure_name(slot.exposure);
  double open = 0;
  for (const Counted& window : slot.windows) {
    const LibraryType type = library_.window(window.type);
    const double area = window.type.width * window.type.height * window.count;
    tally.areas(kind, exposure, static_cast<size_t>(window.count), area, area * type.u_value);
    tally.account.conductance += area * type.u_value;
    open += area;
  }
  if (!slot.door) return open;
  const LibraryType type = library_.door(slot.door->type);
  const double area = slot.door->type.width * slot.door->type.height * slot.door->count;
  tally.areas("door", exposure, static_cast<size_t>(slot.door->count), area, area * type.u_value);
  tally.account.conductance += area * type.u_value;
  return open + area;
}

void Spaces::fill_walls(SPC_Space& space, std::span<const Slot> slots) {
  for (int16_t number = 1; number <= SPC_Space::kWalls; ++number) {
    SPC_WallWindow& wall = *space.GetWall(number);
    static_cast<WallWindowRecord&>(wall) = {};
    if (static_cast<size_t>(number) > slots.size()) continue;
    const Slot& slot = slots[static_cast<size_t>(number) - 1];
    const LibraryType type = library_.wall(slot.construction);
    wall.Exposure = slot.exposure;
    wall.GrossArea = static_cast<float>(slot.area);
    wall.WallType = type.index;
    int place = 0;
    for (const Counted& window : slot.windows) {
      ++place;
      wall.WindowType(place) = library_.window(window.type).index;
      wall.WindowQty(place) = static_cast<int16_t>(window.count);
      wall.WindowShade(place) = library_.shade(window.type);
    }
    if (slot.door) {
      wall.DoorType = library_.door(slot.door->type).index;
      wall.DoorQty = static_cast<int16_t>(slot.door->count);
    }
    const double net = slot.area - count_openings(slot, "window");
    filling_.tally.areas("wall", exposure_name(slot.exposure), slot.count, slot.area, net * type.u_value);
    filling_.tally.account.conductance += net * type.u_value;
  }
}

void Spaces::fill_roofs(SPC_Space& space, std::span<const Slot> slots) {
  for (int16_t number = 1; number <= SPC_Space::kRoofs; ++number) {
    SPC_Roof& roof = *space.GetRoof(number);
    static_cast<RoofRecord&>(roof) = {};
    if (static_cast<size_t>(number) > slots.size()) continue;
    const Slot& slot = slots[static_cast<size_t>(number) - 1];
    const LibraryType type = library_.roof(slot.construction);
    roof.Exposure = slot.exposure;
    roof.Slope = slot.slope;
    roof.GrossArea = static_cast<float>(slot.area);
    roof.RoofType = type.index;
    if (!slot.windows.empty()) {
      roof.SkylightType = library_.window(slot.windows.front().type).index;
      roof.SkylightQty = static_cast<int16_t>(slot.windows.front().count);
    }
    const double net = slot.area - count_openings(slot, "skylight");
    filling_.tally.areas("roof", exposure_name(slot.exposure), slot.count, slot.area, net * type.u_value);
    filling_.tally.account.conductance += net * type.u_value;
  }
}

void Spaces::fill_floor(SPC_Space& space, const FloorSlot& slot) {
  SPC_Floor& floor = *space.GetFloor();
  static_cast<FloorRecord&>(floor) = {};
  if (slot.type == 0) return;
  const auto mean = [](double conductance, double area) {
    return static_cast<float>(area > 0 ? conductance / area : 0);
  };
  floor.FloorType = slot.type;
  floor.Area = static_cast<float>(slot.area);
  floor.OverallUValue = mean(slot.conductance, slot.area);
  floor.ExposedPerimeter = static_cast<float>(slot.perimeter);
  floor.Depth = static_cast<float>(slot.depth);
  floor.WallUValue = mean(slot.wall_conductance, slot.wall_area);
  if (slot.type == 2) set_temperatures(floor, summer_, winter_, slot.over_outdoors);
  filling_.tally.areas("floor", floor_name(slot), slot.count, slot.area, slot.conductance);
  if (slot.wall_area > 0)
    filling_.tally.areas("below-grade wall", floor_name(slot), slot.walls, slot.wall_area, slot.wall_conductance);
  if (slot.over_outdoors) filling_.tally.account.conductance += slot.conductance;
}

void Spaces::fill_partition(SPC_Partition& partition, const PartitionSlot& slot, int16_t type, const char* name) {
  static_cast<PartitionRecord&>(partition) = {};
  if (slot.count == 0) return;
  partition.PartitionType = type;
  partition.Area = static_cast<float>(slot.area);
  partition.UValue = static_cast<float>(slot.conductance / slot.area);
  set_temperatures(partition, summer_, winter_, false);
  filling_.tally.areas("partition", name, slot.count, slot.area, slot.conductance);
}

}  // namespace tarn
