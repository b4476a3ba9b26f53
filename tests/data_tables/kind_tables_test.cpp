// Tables of single kinds, each against what the product does: defaults classes, fan power adjustments, sections and
// masks of air systems, chillers of a type, towers, hourly weather, rates and meters of buildings, limits of the
// transfer functions.

#include <cmath>
#include <map>
#include <set>

#include "envelope/root_search.h"
#include "reflect/json_text.h"
#include "support/expected_data.h"
#include "support/temp_project.h"
#include "tarn/base/value.h"
#include "tarn/class_list.h"
#include "tarn/reflect/by_name.h"

namespace tarn {
namespace {

/// The description of the error that an action throws; empty for none.
std::string said_by(const std::function<void()>& action) {
  try {
    action();
    return "";
  } catch (const Error& error) {
    return error.description();
  }
}

class KindTables : public test::ProjectTest {
 protected:
  ObjectPtr made(const std::string& factory) { return test::object_of(project, factory); }
  std::string file(const std::string& suffix) { return test::bytes_of(folder / ("JOB" + suffix)); }

  /// A system with zones, calculated: its sizing and its simulation are there, and each has a mark.
  ObjectPtr calculated_system(int zones) {
    const ObjectPtr system = made("NewAirSystem");
    test::call(*system, "SetToDefaultsByType", {int16_t{8}});
    const ObjectPtr general = test::object_of(*system, "GetAirSystem");
    let_property(*general, "Name", "System of " + std::to_string(zones));
    test::call(*general, "SetNumZones", {static_cast<int16_t>(zones)});
    test::call(*system, "Save");
    let_property(*general, "Sized", true);
    let_property(*general, "Simulated", true);
    let_property(*test::object_of(*system, "GetAirSizing"), "VentCFM", 12.0);
    let_property(*test::object_of(*system, "GetZoneTemperature"), "StatusHours", int16_t{7}, std::array{1});
    test::call(*system, "Save", {true});
    return system;
  }
};

TEST_F(KindTables, DefaultsClassesHaveTheirOperationsInOrder) {
  test::Comparison comparison;
  const Json& operations = test::expected_table("Populate operations")["rows"];
  for (const Json& row : test::expected_table("Defaults classes")["rows"]) {
    const ClassInfo& info = class_info(row[1].get<std::string>());
    for (size_t i = 0; i < operations.size(); ++i) {
      comparison.compare(row[1].get<std::string>() + " " + json_text(operations[i][0]),
                         operations[i][1].get<std::string>(), std::string(info.members.at(i).name));
    }
  }
}

TEST_F(KindTables, FanPowerAdjustments) {
  test::Comparison comparison;
  const Json& table = test::expected_table("Fan power adjustments");
  const ObjectPtr all = create("AS_FanPowerAdjustments");
  std::map<int, std::set<std::string>> descriptions;
  for (const int standard : {0, 1, 2, 3, 4, 5, 999}) {
    test::call(*all, "Setup", {int32_t{standard}});
    const ObjectPtr list = std::get<ObjectPtr>(get_property(*all, "NewEnum"));
    comparison.compare("count", table["rows"].size(), get_property(*all, "Count"));
    for (const Json& row : table["rows"]) {
      const ObjectPtr item = test::object_of(*list, "Item", row[0]);
      const std::string title = "adjustment " + json_text(row[0]);
      comparison.compare(title, row[1], get_property(*item, "ID"));
      descriptions[row[0]].insert(std::get<std::string>(get_property(*item, "Description")));
      const bool credit = std::get<bool>(get_property(*item, "IsCredit"));
      const Json& limits = table["limits"][credit ? "credit" : "deduction"];
      comparison.compare(title + " least", limits[0], get_property(*item, "MinLimit"));
      comparison.compare(title + " most", limits[1], get_property(*item, "MaxLimit"));
    }
  }
  for (const Json& row : table["rows"]) {
    std::set<std::string> expected{row[3].get<std::string>()};
    if (!row[4].is_null()) expected.insert(row[4]);
    comparison.compare("descriptions " + json_text(row[0]), json_text(Json(expected)),
                       json_text(Json(descriptions[row[0]])));
  }
}

TEST_F(KindTables, SectionsOfAnAirSystemsFile) {
  test::Comparison comparison;
  const Json& rows = test::expected_table("Sections of an air system's file")["rows"];
  const auto begins = [&](size_t section, int zones) {
    return rows[section][1].get<size_t>() - 1 + rows[section][2].get<size_t>() * static_cast<size_t>(zones);
  };
  int index = 0;
  for (const int zones : {1, 3}) {
    const ObjectPtr system = calculated_system(zones);
    const std::string bytes = file("A0" + std::to_string(++index) + ".DAT");
    const std::string title = std::to_string(zones) + " zones ";
    comparison.compare(title + "zones", std::string("Zone 1"), bytes.substr(begins(1, zones), 6));
    constexpr size_t kVentCFM = 20;
    float vent = 0;
    std::memcpy(&vent, bytes.data() + begins(2, zones) + kVentCFM, 4);
    comparison.compare(title + "sizing", 12.0, vent);
    constexpr size_t kStatusHours = 32;
    comparison.compare(title + "simulation", std::string("\7\0", 2), bytes.substr(begins(3, zones) + kStatusHours, 2));
    let_property(*system, "m_lCurMask", int32_t{0x7FFFFFF});
    test::call(*system, "Save");  // by a user: the results go, what he chose for sizing stays
    const std::string edited = file("A0" + std::to_string(index) + ".DAT");
    comparison.compare(title + "without simulation", begins(3, zones), static_cast<int32_t>(edited.size()));
    constexpr size_t kChoices = 32;
    comparison.compare(title + "without results", std::string(kChoices, '\0'),
                       edited.substr(begins(2, zones), kChoices));
  }
}

/// Each bit alone loads the section that it belongs to.
TEST_F(KindTables, MasksOfAnAirSystem) {
  test::Comparison comparison(std::vector<test::Exception>{
      {"bit 26 loads simulation",
       "26 stands in both masks, for inputs made later; a load reads results for 22 to 25"}});
  calculated_system(1);
  std::map<std::string, uint32_t> masks;
  for (const Json& row : test::expected_table("Masks of an air system")["rows"])
    masks[row[0]] = static_cast<uint32_t>(row[1].get<int64_t>());
  const uint32_t settable = masks.at("CCM_MASKALL");
  for (int bit = 0; bit < 32; ++bit) {
    const ObjectPtr system = made("NewAirSystem");
    const auto mask = static_cast<int32_t>(1U << bit);
    test::call(*system, "SetMask", {mask, static_cast<int32_t>(settable)});
    comparison.compare("bit " + std::to_string(bit), static_cast<int32_t>(settable & (1U << bit)),
                       get_property(*system, "m_lCurMask"));
    test::call(*system, "Load", {int16_t{1}});
    const auto loads = [&](const char* what, const std::string& mask_name, bool found) {
      const bool expected = ((masks.at(mask_name) & settable) >> bit & 1U) != 0;
      comparison.compare("bit " + std::to_string(bit) + " loads " + what, expected, found);
    };
    const auto is_true = [&](const char* part) {
      return std::get<bool>(get_property(*test::object_of(*system, part), "Used"));
    };
    loads("inputs", "CCM_INPUTMASK", is_true("GetSupplyFan"));
    loads("sizing", "CCM_SIZINGMASK",
          real_from(get_property(*test::object_of(*system, "GetAirSizing"), "VentCFM")) == 12);
    loads("simulation", "CCM_SIMULATIONMASK",
          real_from(get_property(*test::object_of(*system, "GetZoneTemperature"), "StatusHours", std::array{1})) == 7);
  }
}

TEST_F(KindTables, ChillersOfATypeComeFromTheirPlaceInTheDefaultsFile) {
  test::Comparison comparison;
  const Json& rows = test::expected_table("Chiller defaults file")["rows"];
  std::string bytes(rows.back()[1].get<size_t>() + 5464, '\0');
  for (const Json& row : rows) {
    std::string name = "Type " + json_text(row[0]);
    name.resize(30, ' ');
    bytes.replace(row[1].get<size_t>(), name.size(), name);
  }
  test::write_bytes(folder / "chillers.dat", bytes);
  for (const Json& row : rows) {
    const ObjectPtr chiller = create("CHL_Chiller");
    test::call(*chiller, "CreateDefaultByType", {row[0].get<int16_t>(), folder / "chillers.dat"});
    comparison.compare(json_text(row[0]), "Type " + json_text(row[0]), get_property(*chiller, "Name"));
  }
}

TEST_F(KindTables, SettersTakeTheirRangeAndRefuseTheRest) {
  test::Comparison comparison;
  for (const Json& row : test::expected_table("Values that setters accept")["rows"]) {
    const std::string class_name = row[0], property = row[1], message = row[4];
    const auto least = row[2].get<int16_t>(), most = row[3].get<int16_t>();
    for (int value = least - 1; value <= most + 1; ++value) {
      const ObjectPtr object = create(class_name);
      if (class_name == "URT_UtilityRate") let_property(*object, "RateType", int16_t{0});
      const std::string said = said_by([&] { let_property(*object, property, static_cast<int16_t>(value)); });
      const bool right = value >= least && value <= most;
      comparison.compare(class_name + "." + property + " = " + std::to_string(value), right ? "" : message,
                         said.substr(0, message.size()));
      if (right) comparison.compare(class_name + "." + property, value, get_property(*object, property));
    }
  }
}

TEST_F(KindTables, PartsOfPlantsKnowTheirNames) {
  test::Comparison comparison;
  const ObjectPtr plant = create("PLT_Plant");
  for (const Json& row : test::expected_table("Named parts of a plant")["rows"]) {
    const bool details = row[0] == "PLT_Details";
    const ObjectPtr owner = test::object_of(*plant, details ? "Details" : "ServiceHotWaterDetails");
    const ObjectPtr part = test::object_of(*owner, details ? row[1].get<std::string>() : "Pump");
    comparison.compare(row[1], row[1], get_property(*part, "Name"));
  }
}

TEST_F(KindTables, TowersThatCountAsModelledInDetail) {
  test::Comparison comparison;
  int16_t index = 0;
  for (const Json& row : test::expected_table("Towers that count")["rows"]) {
    const ObjectPtr tower = made("NewCoolingTower");
    let_property(*tower, "ECWTModel", row[0].get<int16_t>());
    test::call(*tower, "Save");
    const ObjectPtr plant = made("NewPlant");
    let_property(*test::object_of(*plant, "Details"), "TowerID", ++index);
    test::call(*plant, "Save", {int32_t{0x7FFF}});
    comparison.compare("model " + json_text(row[0]), row[1].get<bool>() ? 1 : 0,
                       test::call(*test::object_of(*plant, "General"), "GetDetailedTowerCount"));
  }
}

TEST_F(KindTables, MetersArePricedByTheirKindOfRate) {
  test::Comparison comparison;
  for (const char* factory : {"NewElectricRate", "NewFuelRate"}) test::call(*made(factory), "Save");
  int index = 0;
  for (const Json& row : test::expected_table("Meters and the rates")["rows"]) {
    const ObjectPtr building = made("NewBuilding");
    let_property(*test::object_of(*building, "GetBuildingInputs"), "UtilityRate", int16_t{1},
                 std::array{row[0].get<int>()});
    test::call(*building, "Save", {int32_t{0x7FFF}});
    const std::string where = "Rate_Links WHERE Building_ID = " + std::to_string(++index);
    const std::string found = (count("Building_Electric" + where) > 0 ? "electric" : "") +
                              std::string(count("Building_Fuel" + where) > 0 ? "fuel" : "");
    comparison.compare("meter " + json_text(row[0]), row[1].get<std::string>(), found);
  }
}

TEST_F(KindTables, SectionsOfABuilding) {
  test::Comparison comparison;
  for (const Json& row : test::expected_table("Sections of a building")["rows"])
    comparison.compare(row[0], row[1], test::call(*create(row[0].get<std::string>()), "GetDataLen"));
}

/// The generator's own limits, where a wall or its exact response shows them. How roots are bracketed and refined is
/// the product's own way.
TEST_F(KindTables, LimitsOfTransferFunctions) {
  std::map<std::string, double> limits;
  for (const Json& row : test::expected_table("Constants of the transfer function generator")["rows"])
    limits[row[0]] = row[1];
  const ClassInfo& wall = class_info("CA_ConstructionAssly");
  EXPECT_EQ(wall.find("BTrans").elements(), static_cast<size_t>(limits.at("coefficients stored")));
  const ObjectPtr assembly = create("CA_ConstructionAssly");
  const auto layers = static_cast<int>(limits.at("layers of an assembly"));
  EXPECT_TRUE(test::object_of(*assembly, "GetLayer", layers));
  EXPECT_FALSE(test::object_of(*assembly, "GetLayer", layers + 1));

  // One layer has its roots at (n pi)^2 / (R C): as many are kept as stay below the bound, and no wall has more.
  const double bound = -std::log(limits.at("least exponential of a root"));
  const auto most = static_cast<size_t>(limits.at("roots at most"));
  const auto slab = [&](double roots) { return SlabLayer{1, std::pow(roots * M_PI, 2) / bound}; };
  for (const size_t roots : {size_t{1}, size_t{7}, most}) {
    for (const double more : {0.02, 0.98}) {
      const SlabLayer layer = slab(static_cast<double>(roots) + more);
      EXPECT_EQ(RootSearch(std::span(&layer, 1)).roots_below(bound).size(), roots) << more;
      EXPECT_NO_THROW(check_slab(std::span(&layer, 1))) << roots << " and " << more;
    }
  }
  const SlabLayer heavy = slab(static_cast<double>(most) + 1.02);
  EXPECT_NE(said_by([&] { check_slab(std::span(&heavy, 1)); }).find("has " + std::to_string(most + 1) + " roots"),
            std::string::npos);
}

class HourlyTables : public testing::Test {
 protected:
  /// One that passes.
  static ObjectPtr valid_year() {
    const ObjectPtr year = create("HW1ReaderWriter");
    for (const auto& [name, value] : {std::pair("SummerDB", 91.0),
                                      {"SummerWB", 60.0},
                                      {"DailyRange", 27.0},
                                      {"WinterDB", -60.0},
                                      {"SourceType", 1.0}})
      let_property(*year, name, value);
    let_property(*year, "IDN", 100.0, std::array{1, 12});
    return year;
  }
  std::pair<int, std::string> verdict(Object& year) {
    const std::string path = folder / "CITY.HW1";
    test::call(year, "Save", {path});
    std::vector<Value> arguments{path, int32_t{-1}, std::string()};
    Value passed;
    const ObjectPtr judge = create("HW1ReaderWriter");
    call_method(*judge, judge->info().find("ValidateHW1File"), arguments, passed);
    return {std::get<int32_t>(arguments[1]), std::get<std::string>(arguments[2])};
  }
  test::TempFolder folder;
  test::Comparison comparison;
};

TEST_F(HourlyTables, HeaderLimits) {
  for (const Json& row : test::expected_table("Hourly weather file: header limits")["rows"]) {
    const std::string property = row[0];
    const double least = row[1], most = row[2];
    for (const auto& [value, valid] :
         {std::pair(least, true), {most, true}, {least - 0.5, false}, {most + 0.5, false}}) {
      if (property == "SourceType" && value != std::floor(value)) continue;
      const ObjectPtr year = valid_year();
      let_property(*year, property, value);
      if (property == "SummerDB") let_property(*year, "SummerWB", value - 1);
      comparison.compare(property + " = " + std::to_string(value), valid ? 0 : 3001, int32_t{verdict(*year).first});
    }
  }
  const std::vector<std::tuple<std::string, double, int>> others{
      {"SummerWB", 91, 0},   {"SummerWB", 91.5, 3001}, {"WinterDB", 90.5, 0},  {"WinterDB", 91, 3001},
      {"SourceType", 99, 0}, {"SourceType", 0, 3001},  {"SourceType", 8, 3001}};
  for (const auto& [property, value, code] : others) {
    const ObjectPtr year = valid_year();
    let_property(*year, property, value);
    comparison.compare(property + " = " + std::to_string(value), code, int32_t{verdict(*year).first});
  }
}

TEST_F(HourlyTables, Outcomes) {
  for (const Json& row : test::expected_table("Hourly weather file: outcomes")["rows"]) {
    const int code = row[0];
    const ObjectPtr year = valid_year();
    if (code == 3001) let_property(*year, "SummerDB", 200.0);
    if (code == 3002) let_property(*year, "IDN", 0.0, std::array{1, 12});
    const auto [found, text] = verdict(*year);
    comparison.compare("code", code, int32_t{found});
    comparison.compare("text", row[1].get<std::string>(), text);
  }
}

/// A reading that is missing is no sun.
TEST_F(HourlyTables, ScalesAndMissingReadings) {
  const Json& table = test::expected_table("Hourly weather file: scale");
  for (const Json& row : table["rows"]) {
    const std::string property = row[0];
    const double step = 1 / row[1].get<double>();
    const ObjectPtr year = create("HW1ReaderWriter");
    for (const double steps : {1.0, 2.4, 3.6, -7.0}) {
      let_property(*year, property, steps * step, std::array{1, 1});
      comparison.compare_near(property + " " + std::to_string(steps), std::round(steps) * step,
                              real_from(get_property(*year, property, std::array{1, 1})), 1e-9);
    }
  }
  for (const auto& [property, missing] : table["missing"].items()) {
    const ObjectPtr year = valid_year();
    let_property(*year, "IDN", 0.0, std::array{1, 12});
    let_property(*year, property, missing.get<double>(), std::array{1, 12});
    comparison.compare(property + " missing", 3002, int32_t{verdict(*year).first});
  }
}

TEST_F(HourlyTables, SizesOfWeatherFiles) {
  COM_ProjectData project;
  project.SetWorkPath(folder.path);
  create_index(folder / "INX.MDB");
  const ObjectPtr weather = create("WTH_Weather");
  let_property(*weather, "DesFileName", folder / "WTD.DAT");
  let_property(*weather, "SimFileName", folder / "WTA.DAT");
  test::call(*weather, "SetDBHandle", {std::static_pointer_cast<Object>(host().database(folder / "INX.MDB"))});
  test::call(*weather, "Save");
  test::call(*create("HW1ReaderWriter"), "Save", {folder / "HW1.DAT"});
  for (const Json& row : test::expected_table("Weather files: sizes")["rows"]) {
    const std::string name = row[0];
    comparison.compare(name, row[4], static_cast<int32_t>(test::bytes_of(folder / name).size()));
    EXPECT_EQ(row[1].get<int>() + row[2].get<int>() * row[3].get<int>(), row[4].get<int>());
  }
}

}  // namespace
}  // namespace tarn
