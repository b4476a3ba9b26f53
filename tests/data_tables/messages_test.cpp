// Messages, to the letter: each is brought about, and looked for in what was logged or raised.

#include <map>

#include "support/expected_data.h"
#include "support/temp_project.h"
#include "tarn/class_list.h"
#include "tarn/reflect/by_name.h"

namespace tarn {
namespace {

class Messages : public test::ProjectTest {
 protected:
  using Actions = std::map<std::string, std::function<void()>>;

  ObjectPtr made(const std::string& factory) { return test::object_of(project, factory); }
  ObjectPtr loaded(const std::string& factory, std::vector<Value> arguments) {
    const ObjectPtr entity = made(factory);
    test::call(*entity, "Load", std::move(arguments));
    return entity;
  }
  void load_99(const std::string& factory) { loaded(factory, {int32_t{99}}); }

  /// Everything that an action says.
  std::string said_by(const std::function<void()>& action) {
    log.messages.clear();
    log.details.clear();
    std::string said;
    try {
      action();
    } catch (const Error& error) {
      said = error.description();
    }
    for (const auto* texts : {&log.messages, &log.details}) {
      for (const std::string& text : *texts) said += "\n" + text;
    }
    return said;
  }

  Actions of_project() {
    return {{"Invalid/blank working path", [] { get_property(*create("COM_ProjectData"), "WindowFilename"); }},
            {"Invalid/blank file prefix", [] { get_property(*create("COM_ProjectData"), "WindowFilename"); }},
            {"Invalid file prefix code: [", [this] { project.CreateFilePrefix(""); }}};
  }

  Actions of_records() {
    return {
        {"Invalid ID number for window: ", [this] { load_99("NewWindow"); }},
        {"Invalid shade ID number: ", [this] { load_99("NewShade"); }},
        {"Invalid Space ID number: ", [this] { load_99("NewSpace"); }},
        {"Invalid index value: ", [this] { load_99("NewSchedule"); }},
        {"Invalid door ID: ", [this] { load_99("NewDoor"); }},
        {"Cannot find assembly record in DB for index: ", [this] { load_99("NewWall"); }},
        {"Insertion point cannot be below the lower bound or above the upper bound of the Layer sequence. nInsertAt=",
         [this] { test::call(*made("NewWall"), "InsertLayer", {int16_t{11}}); }},
        {"Removal point cannot be below the lower bound or above the upper bound of the Layer sequence. nRemoveAt=",
         [this] { test::call(*made("NewWall"), "RemoveLayer", {int16_t{0}}); }},
        {"Cannot find tower record in database for record #", [this] { load_99("NewCoolingTower"); }},
        {"Invalid utility rate ID number: ", [this] { load_99("NewFuelRate"); }},
        {"Invalid building ID: ", [this] {
           loaded("NewBuilding", {int32_t{15}, int32_t{99}});
         }}};
  }

  Actions of_air_systems() {
    return {
        {"Cannot find air system record in index database",
         [this] {
           const ObjectPtr system = saved_system("A");
           database->Execute("DELETE FROM AirSystemIndex");
           test::call(*system, "Save");
         }},
        {"Duplicate air system name detected",
         [this] {
           saved_system("B");
           saved_system("B");
         }},
        {"Query for duplicate name checking failed: ",
         [this] {
           const ObjectPtr system = made("NewAirSystem");
           test::call(*system, "SetToDefaultsByType", {int16_t{1}});
           test::call(*system, "SetDBHandle", {index_without_names()});
           test::call(*system, "Save");
         }},
        {"Unknown system type: ", [this] { test::call(*made("NewAirSystem"), "SetToDefaultsByType", {int16_t{23}}); }},
        {"System type 17 is no longer used.",
         [this] { test::call(*made("NewAirSystem"), "SetToDefaultsByType", {int16_t{17}}); }},
        {"Air system object must be set before loading air system design load data.",
         [this] { test::call(*made("NewAirSystemDesign"), "Load"); }},
        {"Air system design data filename is invalid",
         [] { test::call(*create("ADL_AirSystemDesign"), "Save", {int16_t{1}}); }},
        {"File does not exist: ", [this] {
           const ObjectPtr design = made("NewAirSystemDesign");
           let_property(*design, "AirSystem", saved_system("D"));
           test::call(*design, "Load");
         }}};
  }
  ObjectPtr index_without_names() {
    const std::string path = folder / "nameless.db";
    Database::create(path, "CREATE TABLE AirSystemIndex (nIndex INTEGER PRIMARY KEY);");
    return host().database(path);
  }
  ObjectPtr saved_system(const std::string& name) {
    const ObjectPtr system = made("NewAirSystem");
    test::call(*system, "SetToDefaultsByType", {int16_t{1}});
    let_property(*test::object_of(*system, "GetAirSystem"), "Name", name);
    test::call(*system, "Save");
    return system;
  }

  Actions of_equipment() {
    return {{"Chiller defaults file was not specified.",
             [this] {
               test::call(*made("NewChiller"), "CreateDefaultByType", {int16_t{1}, std::string()});
             }},
            {"Chiller defaults file was not found.",
             [this] {
               test::call(*made("NewChiller"), "CreateDefaultByType", {int16_t{1}, folder / "none"});
             }},
            {"Invalid DXFC option",
             [this] {
               const std::vector<double> none;
               test::call(*made("NewChiller"), "GetDXFCDefaults", {int16_t{0}, int16_t{1}, none, none, none});
             }},
            {"Size of boiler data file does not match size of boiler data structure.",
             [this] {
               const ObjectPtr boiler = made("NewBoiler");
               test::call(*boiler, "Save");
               test::write_bytes(folder / "JOBBLR.DAT", std::string(110, ' '));
               loaded("NewBoiler", {int16_t{1}});
             }},
            {"Invalid value for FuelType: ", [this] { let_property(*made("NewBoiler"), "FuelType", int16_t{2}); }},
            {"Invalid value for PartLoadModel: ",
             [this] { let_property(*made("NewBoiler"), "PartLoadModel", int16_t{5}); }}};
  }

  Actions of_plants() {
    const auto general = [](Object& plant) { return test::object_of(plant, "General"); };
    const auto details = [](Object& plant) { return test::object_of(plant, "Details"); };
    return {
        {"Plant data file not found.  File name:  ",
         [this] {
           const ObjectPtr plant = saved_plant("A");
           test::remove_file(std::get<std::string>(get_property(*plant, "FileName")));
           loaded("NewPlant", {kEverything, get_property(*plant, "Index")});
         }},
        {"Plant not found in table (",
         [this] {
           const Value index = get_property(*saved_plant("B"), "Index");
           database->Execute("DELETE FROM PlantIndex");
           loaded("NewPlant", {kEverything, index});
         }},
        {"Could not open recordset object.",
         [this] {
           const Value index = get_property(*saved_plant("E"), "Index");
           Transaction undone;
           database->Execute("DROP TABLE PlantIndex");
           loaded("NewPlant", {kEverything, index});
         }},
        {"A plant already exists with the name [", [this] { saved_plant("C"), saved_plant("C"); }},
        {"Please specify a unique plant name and try again.", [this] { saved_plant("D"), saved_plant("D"); }},
        {"Unknown equipment library ID: ",
         [this, general] {
           const Value none = int16_t{0};
           test::call(*general(*made("NewPlant")), "GetEquipmentTypes", {int16_t{15}, int16_t{1}, none, none, none});
         }},
        {"Unknown plant type: ",
         [this, general] {
           const ObjectPtr plant = made("NewPlant");
           let_property(*general(*plant), "PlantType", int16_t{11});
           test::call(*general(*plant), "SetFlags");
         }},
        {"Too many output flags",
         [this, general, details] {
           const ObjectPtr plant = made("NewPlant");
           let_property(*general(*plant), "PlantType", int16_t{4});
           let_property(*test::object_of(*details(*plant), "CoolingEqpt"), "NumEquipment", int16_t{50});
           test::call(*general(*plant), "SetFlags");
         }},
        {"NumPumps value is out of range: [", [] { let_property(*create("PLT_PumpLoop"), "NumPumps", int16_t{14}); }},
        {"Data error: if pump loop is used, must have NumPumps >=1",
         [this, details] {
           const ObjectPtr plant = made("NewPlant");
           let_property(*test::object_of(*details(*plant), "CondenserWaterLoop"), "Used", true);
           test::call(*plant, "Save", {kEverything});
         }},
        {"Default Plant data file not found.  File name:  ",
         [this] { test::call(*made("NewPlant"), "CreateDefault"); }}};
  }
  static constexpr int32_t kEverything = 0x7FFF;
  ObjectPtr saved_plant(const std::string& name) {
    const ObjectPtr plant = made("NewPlant");
    let_property(*test::object_of(*plant, "General"), "Name", name);
    test::call(*plant, "Save", {kEverything});
    return plant;
  }

  Actions of_weather_and_rates() {
    const auto validate = [this](double summer) {
      const ObjectPtr year = create("HW1ReaderWriter");
      for (const auto& [name, value] :
           {std::pair("SummerDB", summer), {"WinterDB", -60.0}, {"DailyRange", 20.0}, {"SourceType", 1.0}})
        let_property(*year, name, value);
      test::call(*year, "Save", {folder / "CITY.HW1"});
      std::vector<Value> arguments{folder / "CITY.HW1", int32_t{0}, std::string()};
      Value passed;
      call_method(*year, year->info().find("ValidateHW1File"), arguments, passed);
      fail(ErrorNumber::UnknownFormat, std::get<std::string>(arguments[2]));
    };
    const auto style = [] {
      const ObjectPtr rate = create("URT_UtilityRate");
      let_property(*rate, "RateType", int16_t{0});
      let_property(*rate, "RateStyle", int16_t{3});
    };
    return {
        {"HW1 file contains no solar data.", [validate] { validate(90); }},
        {"HW1 file format not valid/recognizable.", [validate] { validate(200); }},
        {"Property assignment or method execution was not successful because the rate type for this object is still "
         "'Undefined'.",
         [] { let_property(*create("URT_UtilityRate"), "TaxRate", 1.0); }},
        {"Property assignment was not successful because this property is now read-only.",
         [this] { let_property(*made("NewFuelRate"), "RateType", int16_t{0}); }},
        {"Property assignment was not successful because the Rate Style you specified is not valid.", style}};
  }
};

TEST_F(Messages, ToTheLetter) {
  test::Comparison comparison(std::vector<test::Exception>{
      {"COM_ProjectData Invalid/blank file suffix", "every suffix is the layer's own, so that none is blank"}});
  Actions actions;
  for (Actions some :
       {of_project(), of_records(), of_air_systems(), of_equipment(), of_plants(), of_weather_and_rates()})
    actions.merge(some);
  for (const Json& row : test::expected_table("Messages, to the letter")["rows"]) {
    const std::string text = row[1];
    const std::string title = (row[0].is_null() ? "" : row[0].get<std::string>() + " ") + text;
    const auto action = actions.find(text);
    const std::string said = action == actions.end() ? "nothing brings it about" : said_by(action->second);
    comparison.compare(title, text, said.find(text) != std::string::npos ? text : said);
  }
}

/// The numbers that go with the messages of rates.
TEST_F(Messages, ErrorsOfRatesHaveTheirNumbers) {
  test::Comparison comparison;
  const Actions actions = of_weather_and_rates();
  for (const Json& row : test::expected_table("Errors of a utility rate")["rows"]) {
    if (row[0].is_null()) continue;  // that of a missing row has none of its own
    comparison.compare(row[1], row[0], test::error_number(actions.at(row[1])));
  }
}

}  // namespace
}  // namespace tarn
