#include "check/implausible.h"

#include "base/measures.h"
#include "tarn/air_system.h"
#include "tarn/platform/recordset.h"
#include "tarn/space.h"

namespace tarn {
namespace {

constexpr std::string_view kWindowArea = "SELECT fHeight * fWidth AS fArea FROM WindowIndex WHERE nIndex = ";
constexpr std::string_view kDoorArea = "SELECT fArea FROM DoorIndex WHERE nIndex = ";

/// Of so many of a type, in ft2; 0 for a type that is gone.
double area_of(Database& index, std::string_view select, int type, int quantity) {
  if (type <= 0 || quantity <= 0) return 0;
  auto rows = index.OpenRecordset(std::string(select) + std::to_string(type));
  return rows.AtEof() ? 0 : quantity * rows.Fields("fArea").real();
}

/// Sizes of openings are rounded, and a wall may be all glass.
bool is_larger(double openings, double around) { return openings > around * 1.001; }

std::string areas(std::string_view openings, double area, std::string_view around, double gross) {
  return "The " + std::string(openings) + " have " + six_digits(area) + " ft2, the " + std::string(around) + " has " +
         six_digits(gross) + " ft2.";
}

void add_openings(std::vector<Implausible>& all, SPC_Space& space, Database& index) {
  for (int16_t i = 1; i <= SPC_Space::kWalls; ++i) {
    const WallWindowRecord& wall = *space.GetWall(i);
    double area = area_of(index, kDoorArea, wall.DoorType, wall.DoorQty);
    for (int type = 1; type <= 2; ++type)
      area += area_of(index, kWindowArea, wall.WindowType(type), wall.WindowQty(type));
    if (wall.Exposure == 0 || !is_larger(area, wall.GrossArea)) continue;
    all.push_back({"Wall(" + std::to_string(i) + ").GrossArea",
                   areas("windows and doors", area, "wall", wall.GrossArea),
                   "Set the gross area of the wall, and how many windows and doors it has."});
  }
  for (int16_t i = 1; i <= SPC_Space::kRoofs; ++i) {
    const RoofRecord& roof = *space.GetRoof(i);
    const double area = area_of(index, kWindowArea, roof.SkylightType, roof.SkylightQty);
    if (roof.Exposure == 0 || !is_larger(area, roof.GrossArea)) continue;
    all.push_back({"Roof(" + std::to_string(i) + ").GrossArea", areas("skylights", area, "roof", roof.GrossArea),
                   "Set the gross area of the roof, and how many skylights it has."});
  }
}

void add_multipliers(std::vector<Implausible>& all, AS_AirSystem& system) {
  for (int16_t z = 1; z <= system.GetAirSystem()->NumZones; ++z) {
    const ZoneRecord& zone = *system.GetZoneData(z);
    for (int i = 1; i <= kZoneSpaces; ++i) {
      if (zone.SpaceID(i) == 0 || zone.SpaceMultiplier(i) != 0) continue;
      all.push_back({"ZoneData(" + std::to_string(z) + ").SpaceMultiplier(" + std::to_string(i) + ")",
                     "Space " + std::to_string(zone.SpaceID(i)) + " counts 0 times in the zone.",
                     "Set the multiplier to 1, or to how often the zone has the space."});
    }
  }
}

}  // namespace

std::vector<Implausible> implausible_inputs(StoredEntity& entity, Database& index) {
  std::vector<Implausible> all;
  if (auto* space = dynamic_cast<SPC_Space*>(&entity)) add_openings(all, *space, index);
  if (auto* system = dynamic_cast<AS_AirSystem*>(&entity)) add_multipliers(all, *system);
  return all;
}

}  // namespace tarn
