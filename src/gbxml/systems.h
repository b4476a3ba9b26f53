// Air systems with their zones, and plants from hydronic loops.
#pragma once

#include "gbxml/spaces.h"

namespace tarn {

/// What becomes one air system.
struct DrawnSystem {
  Element element;  // AirSystem, AirLoop, or the first ZoneHVACEquipment of those that are alike
  std::string id, name;
  int16_t type = 0;  // AS_SystemTypes
  struct Zone {
    Element element, equipment;  // the equipment is null where there is none
    std::vector<int16_t> spaces;
  };
  std::vector<Zone> zones;
  std::set<std::string_view> loops;  // ids of hydronic loops that it uses
};

class Systems {
 public:
  Systems(Filling& filling, Spaces& spaces) : filling_(filling), spaces_(spaces) {}

  void fill_all();

 private:
  void plan_zone(Element zone);
  DrawnSystem* system_of(Element zone, Element equipment);
  DrawnSystem& planned(std::string id, Element element, std::string_view name);
  void count_children(Element zone);
  void choose_type(DrawnSystem& system);
  void fill(DrawnSystem& system);
  void fill_plants();
  void leave(Element element, const std::string& reason);

  Filling& filling_;
  Spaces& spaces_;
  std::vector<DrawnSystem> systems_;
  std::map<std::string_view, std::vector<int16_t>> users_of_loop_;  // air systems, by id of a hydronic loop
};

}  // namespace tarn
