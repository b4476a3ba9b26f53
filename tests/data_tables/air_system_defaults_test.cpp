// Every default of every system type, through the system and through the defaults class of the type.

#include "support/expected_data.h"
#include "tarn/air_system.h"
#include "tarn/class_list.h"
#include "tarn/reflect/by_name.h"

namespace tarn {
namespace {

void compare_system(test::Comparison& comparison, const std::string& title, const Json& components, Object& system) {
  for (const auto& [accessor, properties] : components.items()) {
    const ObjectPtr component = test::object_of(system, accessor);
    for (const auto& [property, expected] : properties.items()) {
      const test::Element at = test::element(property);
      comparison.compare(title + " " + accessor + "." + property, expected,
                         get_property(*component, at.name, at.subscripts));
    }
  }
}

std::string type_title(int type) { return "type " + std::to_string(type); }

/// Runs each operation of a defaults class on the component of a system that it fills.
ObjectPtr populated(Object& defaults) {
  // By the order of the operations; the table of that order is compared elsewhere.
  static const char* const accessors[]{
      "GetAirSystem",    "GetCoolSys",      "GetHeatSys",      "GetOutVent",         "GetSupplyDuct",
      "GetRetPlenum",    "GetSupplyFan",    "GetReturnFan",    "GetSupplyFan2",      "GetEconomizer",
      "GetPreheatCoil",  "GetPrecoolCoil",  "GetHumidity",     "GetDehumid",         "GetVentReclaim",
      "GetSafetyFactor", "GetZoneSchedule", "GetWCSystemData", "GetSplitSystemData", "GetChangeoverControlData",
      "GetAirSizing",    "GetCoilSize",     "GetZoneData",     "GetZoneSizing"};
  const ObjectPtr system = create("AS_AirSystem");
  const Json& operations = test::expected_table("Populate operations")["rows"];
  for (size_t i = 0; i < operations.size(); ++i) {
    test::call(defaults, operations[i][1].get<std::string>(), {test::object_of(*system, accessors[i])});
  }
  return system;
}

TEST(ExpectedData, EveryDefaultOfEverySystemType) {
  test::Comparison comparison;
  const Json& all = test::expected_data("air_system_defaults.json");
  for (const auto& [title, components] : all.items()) {
    if (!std::isdigit(static_cast<unsigned char>(title[0])) || title.find(' ') != std::string::npos) continue;
    const ObjectPtr system = create("AS_AirSystem");
    test::call(*system, "SetToDefaultsByType", {static_cast<int16_t>(std::stoi(title))});
    compare_system(comparison, type_title(std::stoi(title)), components, *system);
    compare_system(comparison, type_title(std::stoi(title)), all["every type"], *system);
  }
  const size_t types = 21, shared = 26;
  EXPECT_EQ(comparison.compared(), 7342 + types * shared);
}

TEST(ExpectedData, DefaultsClassesFillComponentsWithTheSame) {
  const Json& all = test::expected_data("air_system_defaults.json");
  test::Comparison comparison;
  for (const Json& row : test::expected_table("Defaults classes")["rows"]) {
    const ObjectPtr defaults = create(row[1].get<std::string>());
    const std::string title = row[1];
    const ObjectPtr system = populated(*defaults);
    compare_system(comparison, title, all[std::to_string(row[0].get<int>())], *system);
    const ObjectPtr general = test::object_of(*system, "GetAirSystem");
    comparison.compare(title + " Name", row[2], get_property(*general, "Name"));
    comparison.compare(title + " SystemType", row[3], get_property(*general, "SystemType"));
    comparison.compare(title + " EquipClass", row[4], get_property(*general, "EquipClass"));
  }
}

TEST(ExpectedData, ForPellNotTarnSwitchesItsValuesAndNoOthers) {
  const Json& all = test::expected_data("air_system_defaults.json");
  test::Comparison comparison;
  const ObjectPtr defaults = create("AS_Dflt_01_SZCAV");
  for (const bool switched : {true, false}) {
    let_property(*defaults, "ForPellNotTarn", switched);
    const ObjectPtr system = populated(*defaults);
    compare_system(comparison, "switched", all[switched ? "1 with ForPellNotTarn" : "1"], *system);
    for (const Json& row : test::expected_table("Values that ForPellNotTarn switches")["rows"]) {
      const std::string property = row[1];
      const ObjectPtr component = test::object_of(*system, row[0].get<std::string>());
      comparison.compare(property, row[switched ? 2 : 3], get_property(*component, property));
    }
  }
}

TEST(ExpectedData, FansAtPartLoadTakeTheirShareOfFullPower) {
  test::Comparison comparison;
  for (const Json& row : test::expected_table("Fan power at part load")["rows"]) {
    const ObjectPtr system = create("AS_AirSystem");
    test::call(*system, "SetToDefaultsByType", {row[0].get<int16_t>()});
    const std::string name = row[1];
    const std::string accessor = name == "supply fan"   ? "GetSupplyFan"
                                 : name == "return fan" ? "GetReturnFan"
                                                        : "GetSupplyFan2";
    const ObjectPtr fan = test::object_of(*system, accessor);
    for (int i = 1; i <= 11; ++i) {
      comparison.compare(type_title(row[0]) + " " + name + " KWValue(" + std::to_string(i) + ")",
                         row[2][static_cast<size_t>(i - 1)], get_property(*fan, "KWValue", std::array{i}));
    }
  }
}

}  // namespace
}  // namespace tarn
