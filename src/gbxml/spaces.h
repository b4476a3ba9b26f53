// Spaces with their envelope and loads.
#pragma once

#include "gbxml/schedules.h"
#include "gbxml/slots.h"
#include "tarn/space.h"

namespace tarn {

class Spaces {
 public:
  Spaces(Filling& filling, Library& library, Schedules& schedules)
      : filling_(filling), library_(library), schedules_(schedules), object_(filling.project.NewSpace()) {}

  void fill_all(const std::function<void()>& done);
  /// Of a zone, in the order of the file.
  const std::vector<int16_t>& of_zone(std::string_view zone) { return of_zone_[zone]; }

 private:
  void fill(const DrawnSpace& drawn);
  void delete_other_parts(const DrawnSpace& drawn, size_t parts);
  void fill_walls(SPC_Space& space, std::span<const Slot> slots);
  void fill_roofs(SPC_Space& space, std::span<const Slot> slots);
  void fill_floor(SPC_Space& space, const FloorSlot& floor);
  void fill_partition(SPC_Partition& partition, const PartitionSlot& slot, int16_t type, const char* name);
  /// Returns the area of the openings.
  double count_openings(const Slot& slot, const char* kind);

  Filling& filling_;
  Library& library_;
  Schedules& schedules_;
  Ptr<SPC_Space> object_;  // becomes one space after the other
  std::map<std::string_view, std::vector<int16_t>> of_zone_;
  double summer_ = 0, winter_ = 0;  // F, design dry-bulbs
};

/// Which part of a drawn space an entity is.
struct SpacePart {
  double share = 1;  // of its floor and of what the file states as a total
  bool is_first = true;
  bool is_new = true;  // the entity
};

/// Area, height, people, lights, equipment, infiltration and outdoor air of an element `Space`.
void fill_loads(SPC_Space& space, const DrawnSpace& drawn, SpacePart part, Filling& filling, Schedules& schedules);

}  // namespace tarn
