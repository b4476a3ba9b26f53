#include "project/kinds.h"

#include <algorithm>
#include <charconv>
#include <utility>

#include "airsystems/defaults.h"
#include "base/nearest.h"
#include "project/defaults.h"
#include "storage/kind.h"
#include "tarn/boiler.h"
#include "tarn/building.h"
#include "tarn/chiller.h"
#include "tarn/construction.h"
#include "tarn/cooling_tower.h"
#include "tarn/door.h"
#include "tarn/plant.h"
#include "tarn/platform/recordset.h"
#include "tarn/reflect/by_name.h"
#include "tarn/reflect/names.h"
#include "tarn/schedule.h"
#include "tarn/shade.h"
#include "tarn/shipped.h"
#include "tarn/space.h"
#include "tarn/utility_rate.h"
#include "tarn/window.h"

namespace tarn {
namespace {

template <typename C, void (C::*Compute)()>
void computed(StoredEntity& entity) {
  (dynamic_cast<C&>(entity).*Compute)();
}

/// "VAV" of AS_Dflt_08_VAV.
std::string_view short_name(const SystemDefaults& defaults) {
  return defaults.class_name.substr(std::string_view("AS_Dflt_00_").size());
}

std::vector<std::string_view> system_types() {
  std::vector<std::string_view> names;
  for (const SystemDefaults& each : kSystemDefaults) names.push_back(short_name(each));
  return names;
}

void fill_system(AS_AirSystem& system, std::string_view type) {
  if (type.empty()) return system.SetToDefaults();
  int number = 0;
  const auto [end, failed] = std::from_chars(type.data(), type.data() + type.size(), number);
  if (failed == std::errc() && end == type.data() + type.size())
    return system.SetToDefaultsByType(static_cast<int16_t>(std::clamp(number, -1, 99)));
  for (const SystemDefaults& each : kSystemDefaults) {
    if (same_word(short_name(each), type) || std::to_string(each.type) == type)
      return system.SetToDefaultsByType(each.type);
  }
  fail(ErrorNumber::InvalidCall,
       "There is no system type " + std::string(type) + "; " + did_you_mean(type, system_types()));
}

/// By number or short name; single-zone constant volume is the usual. The name is left to the save.
void start_system(StoredEntity& entity, std::string_view type) {
  fill_system(dynamic_cast<AS_AirSystem&>(entity), type);
  entity.Reset(true);
}

/// "SCREW" of CT_SCREW.
std::string_view short_name(const Label& label) { return label.name.substr(label.name.find('_') + 1); }

template <typename E>
std::vector<std::string_view> types_of() {
  std::vector<std::string_view> names;
  for (const Label& label : labels<E>) names.push_back(short_name(label));
  return names;
}

/// The code of an enumeration by its number, its name with or without the first word, or its text.
template <typename E>
E code_of(std::string_view word, const std::string& what) {
  for (const Label& label : labels<E>) {
    if (word == std::to_string(label.code) || same_word(label.name, word) || same_word(short_name(label), word) ||
        same_word(label.text, word))
      return static_cast<E>(label.code);
  }
  fail(ErrorNumber::InvalidCall,
       "There is no " + what + " type " + std::string(word) + "; " + did_you_mean(word, types_of<E>()));
}

void start_chiller(StoredEntity& entity, std::string_view type) {
  auto& chiller = dynamic_cast<CHL_Chiller&>(entity);
  if (!type.empty()) {
    const auto code = code_of<CHL_ChillerTypes>(type, "chiller");
    return chiller.CreateDefaultByType(static_cast<int16_t>(code), shipped_file("chillers.dat"));
  }
  chiller.CreateDefault();
  chiller.Reset(true);
}

void standard_chiller(StoredEntity& entity) {
  constexpr auto kType = static_cast<int16_t>(CHL_ChillerTypes::CT_WATER_COOLED_CENTRIFUGAL);
  dynamic_cast<CHL_Chiller&>(entity).CreateDefaultByType(kType, shipped_file("chillers.dat"));
}

void start_plant(StoredEntity& entity, std::string_view type) {
  auto& plant = dynamic_cast<PLT_Plant&>(entity);
  plant.CreateDefault();
  plant.Reset(true);
  if (!type.empty()) plant.SetType(code_of<PLT_PlantTypes>(type, "plant"));
  plant.General.SetFlags();
}

/// A space that a zone is given counts once, unless it is said how often.
void count_spaces(StoredEntity& entity) {
  auto& system = dynamic_cast<AS_AirSystem&>(entity);
  for (int16_t number = 1; number <= system.GetAirSystem()->NumZones; ++number) {
    ZoneRecord& zone = *system.GetZoneData(number);
    for (int i = 1; i <= kZoneSpaces; ++i) {
      if (zone.SpaceID(i) != 0 && zone.SpaceMultiplier(i) == 0) zone.SpaceMultiplier(i) = 1;
    }
  }
}

void set_outputs(StoredEntity& entity) { dynamic_cast<PLT_Plant&>(entity).General.SetFlags(); }

void standard_system(StoredEntity& entity) { dynamic_cast<AS_AirSystem&>(entity).SetToDefaults(); }

void standard_plant(StoredEntity& entity) {
  auto& plant = dynamic_cast<PLT_Plant&>(entity);
  const std::string own = std::exchange(plant.DefFileName, shipped_file("plant.dat"));
  plant.CreateDefault();
  plant.DefFileName = own;
}

/// All sections of an air system count from the start.
void select_all(Object& system) {
  constexpr int32_t kAll = 0x7FFFFFF;
  dynamic_cast<AS_AirSystem&>(system).SetMask(kAll, 0);
}

template <URT_RateTypes Type>
void set_rate_type(Object& rate) {
  dynamic_cast<URT_UtilityRate&>(rate).SetRateType(Type);
}

template <typename C>
constexpr EntityKind kind_of(EntityKind row) {
  row.class_name = class_name<C>();
  if (row.section.empty()) row.section = row.class_name;
  row.create = []() -> ObjectPtr { return std::make_shared<C>(); };
  return row;
}

constexpr auto kPerformance = computed<WIN_Window, &WIN_Window::CalculatePerformance>;
constexpr auto kLayerSummary = computed<CA_ConstructionAssly, &CA_ConstructionAssly::ComputeSummary>;
constexpr EntityKind kKinds[]{
    kind_of<WIN_Window>({.subject = "Envelope",
                         .group = "windows",
                         .one = "window",
                         .factory = "NewWindow",
                         .file = {"WindowFilename", "WIN.DAT"},
                         .compute = kPerformance}),
    kind_of<DOR_Door>({.subject = "Envelope",
                       .group = "doors",
                       .one = "door",
                       .factory = "NewDoor",
                       .file = {"DoorFilename", "DOR.DAT"}}),
    kind_of<SHD_Shade>({.subject = "Envelope",
                        .group = "shades",
                        .one = "shade",
                        .factory = "NewShade",
                        .file = {"ShadeFilename", "SHD.DAT"}}),
    kind_of<CA_ConstructionAssly>({.subject = "Envelope",
                                   .group = "walls",
                                   .one = "wall",
                                   .factory = "NewWall",
                                   .file = {"WallFilename", "WAL.DAT"},
                                   .section = "CA_ConstructionAssly.Wall",
                                   .compute = kLayerSummary}),
    kind_of<CA_ConstructionAssly>({.subject = "Envelope",
                                   .group = "roofs",
                                   .one = "roof",
                                   .factory = "NewRoof",
                                   .file = {"RoofFilename", "ROF.DAT"},
                                   .section = "CA_ConstructionAssly.Roof",
                                   .compute = kLayerSummary}),
    kind_of<SCH_Schedule>({.subject = "Loads",
                           .group = "schedules",
                           .one = "schedule",
                           .factory = "NewSchedule",
                           .file = {"ScheduleFilename", "SCH.DAT"}}),
    kind_of<SPC_Space>({.subject = "Loads",
                        .group = "spaces",
                        .one = "space",
                        .factory = "NewSpace",
                        .file = {"SpaceFilename", "SPC.DAT"}}),
    kind_of<CHL_Chiller>({.subject = "Plant",
                          .group = "chillers",
                          .one = "chiller",
                          .factory = "NewChiller",
                          .file = {"ChillerFilename", "CHL.DAT"},
                          .start = start_chiller,
                          .types = types_of<CHL_ChillerTypes>,
                          .standard = standard_chiller}),
    kind_of<BLR_Boiler>({.subject = "Plant",
                         .group = "boilers",
                         .one = "boiler",
                         .factory = "NewBoiler",
                         .file = {"BoilerFilename", "BLR.DAT"}}),
    kind_of<TWR_CoolingTower>({.subject = "Plant",
                               .group = "towers",
                               .one = "tower",
                               .factory = "NewCoolingTower",
                               .file = {"TowerFilename", "TWR.DAT"}}),
    kind_of<AS_AirSystem>({.subject = "Air systems",
                           .group = "air-systems",
                           .one = "air system",
                           .factory = "NewAirSystem",
                           .file = {"AirSystemDefaultFilename", "A00.DAT"},
                           .letter = 'A',
                           .results_letter = 'D',
                           .prepare = select_all,
                           .start = start_system,
                           .types = system_types,
                           .standard = standard_system,
                           .compute = count_spaces}),
    kind_of<PLT_Plant>({.subject = "Plant",
                        .group = "plants",
                        .one = "plant",
                        .factory = "NewPlant",
                        .file = {"PlantDefaultFilename", "P00.DAT"},
                        .letter = 'P',
                        .start = start_plant,
                        .types = types_of<PLT_PlantTypes>,
                        .standard = standard_plant,
                        .compute = set_outputs}),
    kind_of<URT_UtilityRate>({.subject = "Building",
                              .group = "electric-rates",
                              .one = "electric rate",
                              .factory = "NewElectricRate",
                              .file = {"ElecRateFilename", "ERT.DAT"},
                              .section = "URT_UtilityRate.ElectricRate",
                              .prepare = set_rate_type<URT_RateTypes::TD_ELECTRIC>}),
    kind_of<URT_UtilityRate>({.subject = "Building",
                              .group = "fuel-rates",
                              .one = "fuel rate",
                              .factory = "NewFuelRate",
                              .file = {"FuelRateFilename", "FRT.DAT"},
                              .section = "URT_UtilityRate.FuelRate",
                              .prepare = set_rate_type<URT_RateTypes::TD_FUEL>}),
    kind_of<BLD_Building>({.subject = "Building",
                           .group = "buildings",
                           .one = "building",
                           .factory = "NewBuilding",
                           .file = {"BuildingDefaultFileName", "B00.DAT"},
                           .letter = 'B'}),
};

[[maybe_unused]] const bool kDefaultsAreKnown = [] {
  StoredEntity::product_default = fill_product_default;
  return true;
}();

}  // namespace

std::span<const EntityKind> entity_kinds() { return kKinds; }

std::string_view word_of(size_t kind) {
  static const std::vector<std::string_view> words = [] {
    std::vector<std::string_view> all;
    for (const EntityKind& each : kKinds) all.push_back(blank_entity(each)->kind().default_word);
    return all;
  }();
  return words[kind];
}

std::optional<size_t> place_of(std::string_view word) {
  for (size_t kind = 0; kind < std::size(kKinds); ++kind) {
    if (same_word(word_of(kind), word) || same_word(kKinds[kind].group, word)) return kind;
  }
  return std::nullopt;
}

std::string spoken(const EntityKind& kind) {
  std::string words(kind.group);
  std::ranges::replace(words, '-', ' ');
  return words;
}

std::vector<std::pair<std::string, int64_t>> entity_counts(Database& index) {
  std::vector<std::pair<std::string, int64_t>> counts;
  for (const EntityKind& kind : entity_kinds()) {
    auto rows = index.OpenRecordset("SELECT COUNT(*) AS n FROM " + std::string(blank_entity(kind)->kind().index_table));
    if (const int64_t count = rows.Fields("n").integer(); count > 0) counts.emplace_back(spoken(kind), count);
  }
  return counts;
}

Ptr<StoredEntity> blank_entity(const EntityKind& kind) {
  auto entity = std::static_pointer_cast<StoredEntity>(kind.create());
  if (kind.letter == 0) let_property(*entity, "FileName", std::string(kind.file.suffix));  // tells roofs from walls
  if (kind.prepare) kind.prepare(*entity);
  return entity;
}

Ptr<StoredEntity> make_entity(COM_ProjectData& project, const EntityKind& kind) {
  return std::static_pointer_cast<StoredEntity>(project.make(kind));
}

}  // namespace tarn
