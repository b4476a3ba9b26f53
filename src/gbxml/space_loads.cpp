// People, lights, equipment, infiltration and outdoor air of a space.
#include <algorithm>
#include <cmath>
#include <map>

#include "gbxml/children.h"
#include "gbxml/spaces.h"

namespace tarn {
namespace {

// Codes of the catalogue (docs/codes.md).
constexpr int16_t kCfm = 1, kCfmPerArea = 2, kCfmPerPerson = 3, kAirChanges = 5;
constexpr int16_t kWatts = 1, kWattsPerArea = 2;

/// Children of a Space that are not loads, and why they are left out.
constexpr LeftOut kLeftOut[]{
    {"PlanarGeometry", "areas are those of the surfaces"},
    {"ShellGeometry", "areas are those of the surfaces"},
    {"SpaceBoundary", "areas are those of the surfaces"},
    {"AirChangesPerHour", "a space has two requirements of outdoor air, which are by person and by area here"},
    {"OAFlowPerSpace", "it follows from what is taken by person and by area"},
    {"CADObjectId", "it is a number of the drawing program"},
    {"Description", "a space has a name alone"},
};

class Loads {
 public:
  Loads(SPC_Space& space, const DrawnSpace& drawn, SpacePart part, Filling& filling, Schedules& schedules)
      : space_(space),
        drawn_(drawn),
        element_(drawn.element),
        children_(drawn.element),
        part_(part),
        filling_(filling),
        document_(filling.document),
        schedules_(schedules),
        zone_(filling.document.by_id("Zone", drawn.zone)) {}

  void fill() {
    if (part_.is_new) empty();
    size();
    people();
    lights();
    equipment();
    infiltration();
    outdoor_air();
    if (part_.is_first) children_.count(document_, filling_.tally, kLeftOut, "a space has no place for it");
  }

 private:
  /// What the file does not tell of a new space is none, and no default that nobody entered.
  void empty() {
    space_.GetPeople()->Spec = SPC_OccupancySpec::TOTALPEOPLE;
    space_.GetPeople()->Occupancy = 0;
    SPC_Lighting& light = *space_.GetLight();
    light.OverheadSpec = light.TaskSpec = kWattsPerArea;
    light.OverheadWatt = light.TaskWatt = 0;
    SPC_OtherLoads& other = *space_.GetOtherLoads();
    other.ElecEqptSpec = kWattsPerArea;
    other.ElecEqptHeatGain = 0;
  }

  std::optional<double> value(std::string_view name, std::string_view unit) {
    const Element found = children_.first(name);
    const auto number = document_.value(found, unit);
    if (number) children_.take(name);
    if (number && *number < 0) document_.refuse(found, "it is negative");
    return number;
  }

  void size() {
    SPC_General& general = *space_.GetSpace();
    const auto area = value("Area", "ft2"), volume = value("Volume", "ft3");
    if (!area || *area <= 0) filling_.tally.note(document_, element_, "it has no floor area; its loads by area are 0");
    if (area) general.FloorArea = static_cast<float>(*area * part_.share);
    if (area && volume && *area > 0) general.AvgHeight = static_cast<float>(*volume / *area);
    children_.take("Name");
  }

  void people() {
    SPC_People& people = *space_.GetPeople();
    const Element number = children_.first("PeopleNumber");
    if (number && attribute(number, "unit") == "NumberOfPeople") {
      people.Spec = SPC_OccupancySpec::TOTALPEOPLE;
      people.Occupancy = static_cast<float>(document_.number(number) * part_.share);
      children_.take("PeopleNumber");
    } else if (const auto area = value("PeopleNumber", "ft2")) {
      people.Spec = SPC_OccupancySpec::SQFTPERPERSON;
      people.Occupancy = static_cast<float>(*area);
    }
    std::map<std::string_view, double> gains;
    each_child(element_, "PeopleHeatGain", [&](Element gain) {
      if (const auto heat = document_.value(gain, "Btu/hr")) gains[attribute(gain, "heatGainType")] = *heat;
      children_.take("PeopleHeatGain");
    });
    const auto sensible = gains.find("Sensible"), latent = gains.find("Latent"), total = gains.find("Total");
    const auto rest = [&](auto other) {
      return std::max(total->second - (other == gains.end() ? 0 : other->second), 0.0);
    };
    const bool has_total = total != gains.end();
    if (sensible != gains.end() || has_total)
      people.SensibleHeat = static_cast<float>(sensible != gains.end() ? sensible->second : rest(latent));
    if (latent != gains.end() || (has_total && sensible != gains.end()))
      people.LatentHeat = static_cast<float>(latent != gains.end() ? latent->second : rest(sensible));
    follow(people.Schedule, "peopleScheduleIdRef");
  }

  /// Where the space names no schedule of its own for a load, that of the space as a whole counts.
  void follow(I2& schedule, const char* reference) {
    const char* const own = attribute(element_, reference).empty() ? "scheduleIdRef" : reference;
    if (!attribute(element_, own).empty()) schedule = schedules_.index(element_, own);
  }

  void lights() {
    SPC_Lighting& light = *space_.GetLight();
    if (const auto density = value("LightPowerPerArea", "W/ft2")) {
      light.OverheadSpec = kWattsPerArea;
      light.OverheadWatt = static_cast<float>(*density);
    } else if (const auto watts = total("Lighting", "lightingSystemIdRef", "LightingSystem", "InputWatts")) {
      light.OverheadSpec = kWatts;
      light.OverheadWatt = static_cast<float>(*watts * part_.share);
    }
    follow(light.OverheadSchedule, "lightScheduleIdRef");
  }

  void equipment() {
    SPC_OtherLoads& other = *space_.GetOtherLoads();
    if (const auto density = value("EquipPowerPerArea", "W/ft2")) {
      other.ElecEqptSpec = kWattsPerArea;
      other.ElecEqptHeatGain = static_cast<float>(*density);
    } else if (const auto watts = total("IntEquipId", "intEquipIdRef", "IntEquip", "Power")) {
      other.ElecEqptSpec = kWatts;
      other.ElecEqptHeatGain = static_cast<float>(*watts * part_.share);
    }
    follow(other.ElecEqptSchedule, "equipmentScheduleIdRef");
  }

  /// The power of all equipment that the space refers to.
  std::optional<double> total(const char* reference, const char* id, const char* what, const char* power) {
    std::optional<double> sum;
    if (!children_.first(reference)) return sum;
    each_child(element_, reference, [&](Element refers) {
      const auto watts = document_.child_value(document_.by_id(what, attribute(refers, id)), power, "W");
      if (!watts) return;
      sum = sum.value_or(0) + *watts;
      children_.take(reference);
    });
    return sum;
  }

  /// The rate of the file is for the area of the outer walls.
  void infiltration() {
    const auto rate = value("InfiltrationFlowPerArea", "CFM/ft2");
    if (!rate) return;
    double walls = 0;
    for (const DrawnSurface& surface : drawn_.surfaces) {
      if (surface.role == Role::Wall) walls += surface.area;
    }
    SPC_Infiltration& infiltration = *space_.GetInfiltration();
    infiltration.CoolSpec = infiltration.HeatSpec = infiltration.TypeSpec = kCfm;
    infiltration.CoolCFM = infiltration.HeatCFM = infiltration.TypeCFM =
        static_cast<float>(*rate * walls * part_.share);
  }

  /// Of the space, else of its zone.
  std::optional<double> outdoor(std::string_view name, std::string_view unit) {
    if (const auto own = value(name, unit)) return own;
    return document_.child_value(zone_, name, unit);
  }

  void outdoor_air() {
    struct Requirement {
      int16_t unit;
      double value;
    };
    std::vector<Requirement> all;
    const auto add = [&](int16_t unit, std::optional<double> amount) {
      if (amount && *amount > 0) all.push_back({unit, *amount});
    };
    add(kCfmPerPerson, outdoor("OAFlowPerPerson", "CFM"));
    add(kCfmPerArea, outdoor("OAFlowPerArea", "CFM/ft2"));
    const auto whole = value("OAFlowPerSpace", "CFM");
    if (!all.empty()) children_.leave("OAFlowPerSpace");
    if (all.empty()) add(kCfm, whole ? std::optional(*whole * part_.share) : std::nullopt);
    Element changes = children_.first("AirChangesPerHour");
    if (changes) children_.take("AirChangesPerHour");
    if (!changes) changes = child(zone_, "AirChangesPerHour");
    if (changes && !text_of(changes).empty()) add(kAirChanges, document_.number(changes));
    if (all.size() > 2) {
      filling_.tally.note(document_, element_,
                          "it has outdoor air by person, by area and by air changes; a space has two of these, and its "
                          "air changes are left out");
      all.resize(2);
      children_.leave("AirChangesPerHour");
    }
    if (all.empty() && !whole) return;
    all.resize(2);
    SPC_General& general = *space_.GetSpace();
    general.OAReq1Spec = all[0].unit;
    general.OAReq1Value = all[0].value;
    general.OAReq2Spec = all[1].unit;
    general.OAReq2Value = all[1].value;
    if (attribute(element_, "outdoorAirflowMethod").starts_with("Max"))
      filling_.tally.note(
          document_, element_,
          "its outdoor air is the larger of two requirements; the air system's ventilation method decides that");
  }

  SPC_Space& space_;
  const DrawnSpace& drawn_;
  Element element_;
  Children children_;
  SpacePart part_;
  Filling& filling_;
  const GbxmlDocument& document_;
  Schedules& schedules_;
  Element zone_;
};

}  // namespace

void fill_loads(SPC_Space& space, const DrawnSpace& drawn, SpacePart part, Filling& filling, Schedules& schedules) {
  Loads(space, drawn, part, filling, schedules).fill();
}

}  // namespace tarn
