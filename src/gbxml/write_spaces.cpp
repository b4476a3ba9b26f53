// Spaces with their loads, and their surfaces as rectangles of the areas and directions that the project has.
#include <cmath>
#include <map>
#include <numbers>

#include "gbxml/writing.h"
#include "tarn/air_system.h"
#include "tarn/shade.h"
#include "tarn/space.h"
#include "tarn/window.h"

namespace tarn {
namespace {

constexpr double kRadians = std::numbers::pi / 180;
constexpr double kApart = 1000;                                       // ft, between the places of two spaces
constexpr int16_t kLevel = 17;                                        // the exposure of what faces the sky
constexpr int16_t kUnconditioned = 2, kOnGrade = 3, kBelowGrade = 4;  // kinds of floor
constexpr const char* kBeyond = "space-beyond";

double azimuth_of(int16_t exposure) { return exposure >= 1 && exposure < kLevel ? (exposure - 1) * 22.5 : 0; }

/// A rectangle with its lower left corner, seen from outside, and the directions of its sides.
struct Rectangle {
  Point corner, along, up;
  double width, height, azimuth, tilt;

  Rectangle(Point at, double azimuth_deg, double tilt_deg, double width_ft, double height_ft)
      : corner(at), width(width_ft), height(height_ft), azimuth(azimuth_deg), tilt(tilt_deg) {
    const double east = std::sin(azimuth * kRadians), north = std::cos(azimuth * kRadians);
    along = {-north, east, 0};
    up = {-east * std::cos(tilt * kRadians), -north * std::cos(tilt * kRadians), std::sin(tilt * kRadians)};
  }
  Point at(double x, double y) const {
    return {corner.x + along.x * x + up.x * y, corner.y + along.y * x + up.y * y, corner.z + along.z * x + up.z * y};
  }
  Rectangle part(double x, double y, double own_width, double own_height) const {
    return {at(x, y), azimuth, tilt, own_width, own_height};
  }
};

void add_geometry(Element parent, const Rectangle& shape) {
  Element rectangle = add(parent, "RectangularGeometry");
  add_value(rectangle, "Azimuth", shape.azimuth);
  Element point = add(rectangle, "CartesianPoint");
  for (const double coordinate : {shape.corner.x, shape.corner.y, shape.corner.z})
    add_value(point, "Coordinate", coordinate);
  add_value(rectangle, "Tilt", shape.tilt);
  add_value(rectangle, "Height", shape.height);
  add_value(rectangle, "Width", shape.width);
  add_loop(parent,
           {shape.at(0, 0), shape.at(shape.width, 0), shape.at(shape.width, shape.height), shape.at(0, shape.height)});
}

class SpaceWriter {
 public:
  SpaceWriter(Writing& writing, SPC_Space& space, Point at)
      : writing_(writing), space_(space), at_(at), id_(numbered("space", space.Index())) {
    height_ = space.GetSpace()->AvgHeight > 0 ? space.GetSpace()->AvgHeight.value : 10.0F;
  }

  void write(const std::string& zone) {
    element_ = add_named(writing_.building, "Space", id_, space_.Name());
    if (!zone.empty()) set(element_, "zoneIdRef", zone);
    set(element_, "conditionType", "HeatedAndCooled");
    const SPC_General& general = *space_.GetSpace();
    loads();
    add_value(element_, "Area", general.FloorArea, "SquareFeet");
    add_value(element_, "Volume", static_cast<double>(general.FloorArea) * general.AvgHeight, "CubicFeet");
    for (int16_t number = 1; number <= SPC_Space::kWalls; ++number) wall(*space_.GetWall(number), number);
    for (int16_t number = 1; number <= SPC_Space::kRoofs; ++number) roof(*space_.GetRoof(number), number);
    floor(*space_.GetFloor());
    for (int16_t number = 1; number <= SPC_Space::kPartitions; ++number)
      partition(*space_.GetPartition(number), number);
  }

 private:
  void follow(const char* attribute, int16_t schedule) {
    const std::string id = numbered("schedule", schedule);
    if (writing_.ids.contains(id)) set(element_, attribute, id);
  }

  void loads() {
    const SPC_General& general = *space_.GetSpace();
    const SPC_People& people = *space_.GetPeople();
    const bool by_area = people.Spec == SPC_OccupancySpec::SQFTPERPERSON;
    add_value(element_, "PeopleNumber", people.Occupancy, by_area ? "SquareFtPerPerson" : "NumberOfPeople");
    set(add_value(element_, "PeopleHeatGain", people.SensibleHeat, "BtuPerHourPerson"), "heatGainType", "Sensible");
    set(add_value(element_, "PeopleHeatGain", people.LatentHeat, "BtuPerHourPerson"), "heatGainType", "Latent");
    const SPC_Lighting& light = *space_.GetLight();
    const SPC_OtherLoads& other = *space_.GetOtherLoads();
    const auto density = [&](int16_t form, float value) {
      constexpr int16_t kWatts = 1;
      return form == kWatts ? (general.FloorArea > 0 ? value / general.FloorArea : 0) : value;
    };
    add_value(element_, "LightPowerPerArea", density(light.OverheadSpec, light.OverheadWatt), "WattPerSquareFoot");
    add_value(element_, "EquipPowerPerArea", density(other.ElecEqptSpec, other.ElecEqptHeatGain), "WattPerSquareFoot");
    constexpr int16_t kAirChanges = 5;
    if (general.OAReq1Spec == kAirChanges && general.OAReq1Value > 0)
      add_value(element_, "AirChangesPerHour", general.OAReq1Value);
    follow("peopleScheduleIdRef", people.Schedule);
    follow("lightScheduleIdRef", light.OverheadSchedule);
    follow("equipmentScheduleIdRef", other.ElecEqptSchedule);
    if (light.TaskWatt > 0 || other.MiscSensibleHeat > 0 || other.MiscLatentHeat > 0)
      writing_.note("task lighting and miscellaneous loads have no place in gbXML");
    if (space_.GetInfiltration()->CoolCFM > 0) writing_.note("infiltration by flow has no place in gbXML 6.01");
  }

  Element surface(const char* type, const std::string& name, const std::string& construction, const Rectangle& shape) {
    Element element = add(writing_.campus, "Surface");
    set(element, "id", id_ + "-" + name);
    set(element, "surfaceType", type);
    set(element, "constructionIdRef", construction);
    set(add(element, "AdjacentSpaceId"), "spaceIdRef", id_);
    add_geometry(element, shape);
    return element;
  }

  void openings(Element surface, const char* type, const std::string& reference, const char* attribute, int count,
                double width, double height, double reveal, const Rectangle& on, double& x) {
    for (int number = 1; number <= count; ++number) {
      Element opening = add(surface, "Opening");
      set(opening, "id", std::string(surface.attribute("id").value()) + "-opening-" + std::to_string(++openings_));
      set(opening, "openingType", type);
      set(opening, attribute, reference);
      if (reveal > 0) add_value(opening, "Setback", reveal, "Feet");
      add_geometry(opening, on.part(x, 0, width, height));
      x += width;
    }
  }

  /// ft, of the shade of a window.
  double reveal_of(int16_t shade_index) {
    if (shade_index <= 0) return 0;
    const auto shade = writing_.project.NewShade();
    shade->Load(shade_index);
    if (shade->OvhgExt > 0 || shade->RHFinExt > 0 || shade->LHFinExt > 0)
      writing_.note("overhangs and fins of external shades have no place at an opening in gbXML");
    return shade->RevealDepth;
  }

  void wall(SPC_WallWindow& wall, int number) {
    if (wall.GrossArea <= 0) return;
    const Rectangle shape(at_, azimuth_of(wall.Exposure), 90, wall.GrossArea / height_, height_);
    const std::string construction =
        wall.WallType > 0 ? numbered("wall", wall.WallType) : plain_construction(writing_, 0);
    Element element = surface("ExteriorWall", numbered("wall", number), construction, shape);
    double x = 0;
    for (int type = 1; type <= 2; ++type) {
      if (wall.WindowType(type) <= 0 || wall.WindowQty(type) <= 0) continue;
      const auto window = writing_.project.NewWindow();
      window->Load(wall.WindowType(type));
      openings(element, "FixedWindow", numbered("window", wall.WindowType(type)), "windowTypeIdRef",
               wall.WindowQty(type), window->Width, window->Height, reveal_of(wall.WindowShade(type)), shape, x);
    }
    if (wall.DoorType > 0 && wall.DoorQty > 0) {
      const DoorReference door = door_reference(writing_, wall.DoorType);
      openings(element, "NonSlidingDoor", door.id, door.attribute, wall.DoorQty, door.width, door.height, 0, shape, x);
    }
  }

  void roof(SPC_Roof& roof, int number) {
    if (roof.GrossArea <= 0) return;
    const double slope = roof.Exposure == kLevel ? 0 : roof.Slope, side = std::sqrt(roof.GrossArea);
    if (roof.Exposure == kLevel && roof.Slope != 0) writing_.note("horizontal roofs have no slope in gbXML");
    const Rectangle shape({at_.x, at_.y, at_.z + height_}, azimuth_of(roof.Exposure), slope, side,
                          roof.GrossArea / side);
    const std::string construction =
        roof.RoofType > 0 ? numbered("roof", roof.RoofType) : plain_construction(writing_, 0);
    Element element = surface("Roof", numbered("roof", number), construction, shape);
    if (roof.SkylightType <= 0 || roof.SkylightQty <= 0) return;
    const auto window = writing_.project.NewWindow();
    window->Load(roof.SkylightType);
    double x = 0;
    openings(element, "FixedSkylight", numbered("window", roof.SkylightType), "windowTypeIdRef", roof.SkylightQty,
             window->Width, window->Height, 0, shape, x);
  }

  void floor(const SPC_Floor& floor) {
    const bool is_over_outdoors = floor.FloorType == kUnconditioned && floor.MaxSpaceTemp == floor.MaxAmbient;
    const char* const type = floor.FloorType == kOnGrade      ? "SlabOnGrade"
                             : floor.FloorType == kBelowGrade ? "UndergroundSlab"
                             : is_over_outdoors               ? "ExposedFloor"
                                                              : "InteriorFloor";
    const double depth = floor.FloorType == kBelowGrade ? floor.Depth.value : 0;
    if (floor.Area > 0 && floor.FloorType >= kUnconditioned) {
      const double side = std::sqrt(floor.Area);
      const Rectangle shape({at_.x, at_.y, at_.z - depth}, 0, 180, side, floor.Area / side);
      Element element = surface(type, "floor", plain_construction(writing_, floor.OverallUValue), shape);
      if (!is_over_outdoors && floor.FloorType == kUnconditioned) add_beyond(element, "InteriorFloor");
    }
    if (depth > 0 && floor.ExposedPerimeter > 0)
      surface("UndergroundWall", "below-grade", plain_construction(writing_, floor.WallUValue),
              {{at_.x, at_.y, at_.z - depth}, 0, 90, floor.ExposedPerimeter, depth});
  }

  void partition(const SPC_Partition& partition, int number) {
    if (partition.Area <= 0) return;
    constexpr int16_t kCeiling = 2;
    const bool is_ceiling = partition.PartitionType == kCeiling;
    const double side = std::sqrt(partition.Area);
    const Rectangle shape({at_.x, at_.y, at_.z + (is_ceiling ? height_ : 0)}, 0, is_ceiling ? 0 : 90, side,
                          partition.Area / side);
    const char* const type = is_ceiling ? "Ceiling" : "InteriorWall";
    add_beyond(surface(type, numbered("partition", number), plain_construction(writing_, partition.UValue), shape),
               type);
  }

  /// The space that stands for whatever is unconditioned.
  void add_beyond(Element surface, const char* type) {
    if (writing_.ids.insert(kBeyond).second) {
      Element space = add_named(writing_.building, "Space", kBeyond, "Unconditioned");
      set(space, "conditionType", "Unconditioned");
      add_value(space, "Area", 0, "SquareFeet");
      add_value(space, "Volume", 0, "CubicFeet");
    }
    Element first = surface.child("AdjacentSpaceId");
    set(first, "surfaceType", type);
    set(surface.insert_child_after("AdjacentSpaceId", first), "spaceIdRef", kBeyond);
  }

  Writing& writing_;
  SPC_Space& space_;
  Point at_;
  std::string id_;
  double height_;
  Element element_;
  int openings_ = 0;
};

/// The zone that each space is in first.
std::map<int16_t, std::string> zones_of_spaces(Writing& writing) {
  std::map<int16_t, std::string> zones;
  for (const int16_t index : writing.indexes("AirSystemIndex")) {
    const auto system = writing.project.NewAirSystem();
    system->SetMask(CCM_HEADERMASK | CCM_INPUTMASK);
    system->Load(index);
    for (int16_t number = 1; number <= system->GetAirSystem()->NumZones; ++number) {
      const ZoneRecord& zone = *system->GetZoneData(number);
      for (int place = 1; place <= zone.TotalSpacesInZone; ++place) {
        const std::string id = numbered("system", index) + "-zone-" + std::to_string(number);
        if (!zones.emplace(zone.SpaceID(place), id).second)
          writing.note("a space that several zones have is in the first of them");
        if (zone.SpaceMultiplier(place) > 1)
          writing.note("multipliers of spaces have no place in gbXML; each space is there once");
      }
    }
  }
  return zones;
}

/// A gbXML file has four surfaces at least.
void pad_surfaces(Writing& writing) {
  int surfaces = 0;
  for (const Element element : writing.campus.children("Surface")) surfaces += element ? 1 : 0;
  const std::string first = writing.building.child("Space").attribute("id").value();
  for (int number = 1; surfaces < 4; ++surfaces, ++number) {
    Element element = add(writing.campus, "Surface");
    set(element, "id", numbered("air", number));
    set(element, "surfaceType", "Air");
    set(element, "constructionIdRef", plain_construction(writing, 0));
    set(add(element, "AdjacentSpaceId"), "spaceIdRef", first);
    add_geometry(element, {{0, 0, 0}, 0, 90, 1, 1});
  }
}

}  // namespace

void write_spaces(Writing& writing, const Progress& progress) {
  const auto indexes = writing.indexes("SpaceIndex");
  if (indexes.empty())
    fail(ErrorNumber::InvalidCall, "The project has no spaces, and a gbXML file needs one. Nothing was exported.");
  const auto zones = zones_of_spaces(writing);
  double area = 0;
  for (size_t done = 0; done < indexes.size(); ++done) {
    const auto space = writing.project.NewSpace();
    space->Load(indexes[done]);
    area += space->GetSpace()->FloorArea;
    const auto zone = zones.find(indexes[done]);
    SpaceWriter(writing, *space, {kApart * static_cast<double>(done), 0, 0})
        .write(zone == zones.end() ? "" : zone->second);
    if (progress) progress(done + 1, indexes.size());
  }
  add_value(writing.building, "Area", area);
  pad_surfaces(writing);
}

}  // namespace tarn
