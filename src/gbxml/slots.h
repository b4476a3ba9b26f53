// The surfaces of a space, gathered as the record of a space has them: walls and roofs of one direction and
// construction together, openings of one type as a quantity, one kind of floor, two kinds of partition.
#pragma once

#include "gbxml/library.h"

namespace tarn {

struct Counted {
  OpeningType type;
  int count = 0;
};

/// A wall, or a roof, of a space.
struct Slot {
  int16_t exposure = 0;  // 1 N, clockwise in steps of 22.5 deg; 17 horizontal
  int16_t slope = 0;     // deg, of a roof
  std::string_view construction;
  double area = 0;   // ft2, gross
  size_t count = 0;  // surfaces
  std::vector<Counted> windows;
  std::optional<Counted> door;
};

struct FloorSlot {
  int16_t type = 0;  // 1 above a conditioned, 2 above an unconditioned space, 3 slab on grade, 4 below grade
  bool over_outdoors = false;
  size_t count = 0;
  double area = 0, conductance = 0;  // ft2, Btu/(hr.F)
  double perimeter = 0;              // ft, of its outer walls
  size_t walls = 0;                  // below grade
  double wall_area = 0, wall_conductance = 0;
  double depth = 0;  // ft
};

struct PartitionSlot {
  size_t count = 0;
  double area = 0, conductance = 0;
};

struct SpaceSlots {
  std::vector<Slot> walls, roofs;
  std::vector<FloorSlot> floors;
  PartitionSlot wall, ceiling;  // to unconditioned spaces
  bool has_mean_sizes = false;  // openings of other sizes became one type, as there were too many

  /// Spaces that it takes to hold them: 8 walls, 4 roofs and one floor each.
  size_t parts() const;
};

/// Openings keep their sizes unless walls or roofs would not fit then: openings of one construction become as many of
/// their mean width. Areas and conductances are the same either way.
SpaceSlots slots_of(const DrawnSpace& space, const Library& library);

/// "N", "NNE", ... "horizontal".
std::string exposure_name(int16_t exposure);

}  // namespace tarn
