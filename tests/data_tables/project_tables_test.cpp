// Tables of the project: file names, factories, index and link tables, kinds, each as a project on disk shows them.

#include <algorithm>
#include <map>

#include "reflect/json_text.h"
#include "support/expected_data.h"
#include "support/temp_project.h"
#include "tarn/base/value.h"
#include "tarn/class_list.h"
#include "tarn/reflect/by_name.h"

namespace tarn {
namespace {

class ProjectTables : public test::ProjectTest {
 protected:
  std::string text_of(Object& object, const std::string& property) {
    return std::get<std::string>(get_property(object, property));
  }
  /// "nIndex szName ..." of a table, in order.
  std::string columns_of(const std::string& table) {
    std::string text;
    auto columns = database->OpenRecordset("SELECT name FROM pragma_table_info('" + table + "') ORDER BY cid");
    for (; !columns.AtEof(); columns.MoveNext()) text += columns.Fields("name").text() + " ";
    return text;
  }
  static std::string joined(const Json& names) {
    std::string text;
    for (const Json& name : names) text += name.get<std::string>() + " ";
    return text;
  }
  /// Those of the tables whose names end so, in alphabetical order.
  std::string tables_named(const std::string& end) {
    std::vector<std::string> names;
    auto tables = database->OpenRecordset("SELECT name FROM sqlite_master WHERE type = 'table'");
    for (; !tables.AtEof(); tables.MoveNext()) {
      const std::string name = tables.Fields("name").text();
      if (name.ends_with(end)) names.push_back(name);
    }
    return sorted(std::move(names));
  }
  static std::string sorted(std::vector<std::string> names) {
    std::sort(names.begin(), names.end());
    std::string text;
    for (const std::string& name : names) text += name + " ";
    return text;
  }
  /// A new entity of a kind, by the word of its index table: the kinds that share a class have a factory each.
  ObjectPtr entity_of(const std::string& index_table) {
    static const std::map<std::string, std::string> factories{
        {"TowerIndex", "NewCoolingTower"}, {"ElectricRateIndex", "NewElectricRate"}, {"FuelRateIndex", "NewFuelRate"}};
    const auto other = factories.find(index_table);
    const std::string word = index_table.substr(0, index_table.size() - std::string("Index").size());
    return test::object_of(project, other == factories.end() ? "New" + word : other->second);
  }
  /// Saves it whole: kinds with sections take a mask, and with results a flag.
  static void save(Object& entity) {
    constexpr int32_t kEverything = 0x7FFF;
    const Member& member = entity.info().find("Save");
    std::vector<Value> arguments;
    if (!member.parameters().empty() && !member.parameters().front().optional) arguments.push_back(kEverything);
    test::call(entity, "Save", arguments);
  }
};

TEST_F(ProjectTables, FileNames) {
  test::Comparison comparison;
  project.SetWorkPath("/work");
  for (const Json& row : test::expected_table("Names of project files")["rows"]) {
    const std::string property = row[0];
    comparison.compare(property, "/work/JOB" + row[1].get<std::string>(), text_of(project, property));
  }
}

TEST_F(ProjectTables, FilesOfObjectsAreNamedByCodeAndIndex) {
  test::Comparison comparison;
  const std::map<std::string, std::string> factories{{"AS_AirSystem", "NewAirSystem"},
                                                     {"ADL_AirSystemDesign", "NewAirSystemDesign"},
                                                     {"BLD_Building", "NewBuilding"},
                                                     {"PLT_Plant", "NewPlant"}};
  for (const Json& row : test::expected_table("Codes of objects with a file each")["rows"]) {
    const std::string code = row[0];
    const ObjectPtr object = test::object_of(project, factories.at(row[1]));
    comparison.compare(code, "JOB" + code, text_of(*object, "FilePrefix"));
    comparison.compare("CreateFilePrefix " + code, "JOB" + code, project.CreateFilePrefix(code));
  }
  for (const Json& row : test::expected_table("Digits of a file's name by index")["rows"]) {
    const ObjectPtr plant = test::object_of(project, "NewPlant");
    if (const int index = row[0]; index > 0) {  // the lowest one that is free
      database->Execute("DELETE FROM PlantIndex");
      database->Execute("WITH RECURSIVE n(i) AS (SELECT 0 UNION ALL SELECT i + 1 FROM n WHERE i + 1 < " +
                        std::to_string(index) + ") INSERT INTO PlantIndex (nIndex) SELECT i FROM n");
      save(*plant);
    }
    comparison.compare(json_text(row[0]), folder / ("JOBP" + row[1].get<std::string>() + ".DAT"),
                       text_of(*plant, "FileName"));
  }
}

TEST_F(ProjectTables, Factories) {
  test::Comparison comparison;
  for (const Json& row : test::expected_table("Factories of the project")["rows"]) {
    const std::string factory = row[0];
    const ObjectPtr object = test::object_of(project, factory);
    comparison.compare(factory, row[1].get<std::string>(), std::string(object->info().name));
    for (const Json& each : row[2]) {
      // "FileName = BoilerFilename", "WorkPath", "FilePrefix = CreateFilePrefix("A")", "RateType = TD_FUEL (1)"
      const std::string setting = each;
      const std::string property = setting.substr(0, setting.find(' '));
      const std::string value = setting.substr(std::min(setting.find(" = ") + 3, setting.size()));
      if (setting.starts_with("SetMask")) {
        comparison.compare(factory + " mask", 0x7FFFFFF, get_property(*object, "m_lCurMask"));
      } else if (const size_t number = setting.find(" ("); number != std::string::npos) {
        comparison.compare(factory + "." + property, std::stoi(setting.substr(number + 2)),
                           get_property(*object, property));
      } else {
        const size_t quote = setting.find('"');
        const std::string expected = property == "WorkPath"       ? folder.path
                                     : quote != std::string::npos ? std::string("JOB") + setting[quote + 1]
                                                                  : text_of(project, value);
        comparison.compare(factory + "." + property, expected, text_of(*object, property));
      }
    }
    const bool takes_handle = object->info().number("GetDBHandle") >= 0;
    const bool has_handle = takes_handle && std::get<ObjectPtr>(test::call(*object, "GetDBHandle")) == database;
    comparison.compare(factory + " database handle", row[3], has_handle);
  }
}

TEST_F(ProjectTables, IndexTables) {
  test::Comparison comparison;
  std::vector<std::string> names;
  for (const Json& row : test::expected_table("Index tables and their columns")["rows"]) {
    comparison.compare(row[0], joined(row[2]), columns_of(row[0]));
    names.push_back(row[0]);
  }
  comparison.compare("all index tables", sorted(std::move(names)), tables_named("Index"));
}

TEST_F(ProjectTables, LinkTables) {
  test::Comparison comparison;
  std::vector<std::string> names;
  for (const Json& row : test::expected_table("Link tables and their columns")["rows"]) {
    comparison.compare(row[0], joined(row[1]), columns_of(row[0]));
    names.push_back(row[0]);
  }
  comparison.compare("all link tables", sorted(std::move(names)), tables_named("_Links"));
}

TEST_F(ProjectTables, Kinds) {
  test::Comparison comparison;
  for (const Json& row : test::expected_table("Kinds")["rows"]) {
    const std::string class_name = row[0], table = row[2], word = row[3];
    const ObjectPtr entity = entity_of(table);
    const std::string title = class_name + " " + table;
    comparison.compare(title + " class", class_name, std::string(entity->info().name));
    if (class_name == "CA_ConstructionAssly") {  // saved with a layer that conducts alone
      const ObjectPtr layer = test::object_of(*entity, "GetLayer");
      let_property(*layer, "LayerUsed", true);
      let_property(*layer, "ThermalResistance", 5.0);
      test::call(*entity, "Save", {int16_t{0}});
    } else {
      save(*entity);
    }
    auto stored = database->OpenRecordset("SELECT szName FROM " + table + " WHERE nIndex = 1");
    comparison.compare(title + " row", true, !stored.AtEof());
    if (stored.AtEof()) continue;
    const std::string name = stored.Fields("szName").text();
    comparison.compare(title + " word", word, name.substr(0, name.find_last_not_of(" 0123456789") + 1));
    if (!row[1].is_null()) {
      const std::string path = text_of(*entity, "FileName");
      comparison.compare(title + " record length", 2 * row[1].get<size_t>(),
                         static_cast<int32_t>(test::bytes_of(path).size()));
    }
    if (row[4].is_null()) continue;
    // The message for an index without a row: logged, or raised.
    log.messages.clear();
    const bool has_file = row[1].is_null();
    if (has_file) database->Execute("DELETE FROM " + table);
    std::string said;
    try {
      const Member& load = entity->info().find("Load");
      std::vector<Value> arguments(load.parameters().size(), int32_t{has_file ? 1 : 99});
      if (class_name == "AS_AirSystem")  // is loaded by its file alone
        save(*entity);
      else
        test::call(*entity, "Load", arguments);
      said = log.messages.empty() ? "" : log.messages.front();
    } catch (const Error& error) {
      said = error.description();
    }
    const std::string message = row[4];
    comparison.compare(title + " message", message, said.substr(0, message.size()));
  }
}

}  // namespace
}  // namespace tarn
