#include "sample.h"

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <map>

#include "platform/file_store.h"
#include "platform/host.h"
#include "project/defaults.h"
#include "project/kinds.h"
#include "storage/kind.h"
#include "tarn/air_system.h"
#include "tarn/air_system_design.h"
#include "tarn/exchange.h"
#include "tarn/hourly_file.h"
#include "tarn/platform/database.h"
#include "tarn/platform/workspace.h"
#include "tarn/preferences.h"
#include "tarn/weather.h"
#include "tarn/window.h"

namespace tarn::faults {
namespace {

namespace fs = std::filesystem;

std::string made_folder() {
  std::string shape = (fs::temp_directory_path() / "tarn-faults-XXXXXX").string();
  return mkdtemp(shape.data());
}

/// The first letter of the name, which is where the inputs begin.
void rename_entity(StoredEntity& entity, char letter) { entity.file().inputs().front()[0] = std::byte(letter); }

Ptr<StoredEntity> new_entity(COM_ProjectData& project, const EntityKind& kind) {
  auto entity = make_entity(project, kind);
  kind.start ? kind.start(*entity, {}) : entity->CreateDefault();
  entity->Reset(true);
  return entity;
}

Ptr<StoredEntity> stored_entity(COM_ProjectData& project, const EntityKind& kind) {
  auto entity = make_entity(project, kind);
  entity->Load(1);
  return entity;
}

Ptr<ADL_AirSystemDesign> design_of(COM_ProjectData& project) {
  auto system = project.NewAirSystem();
  system->Load(1);
  auto design = project.NewAirSystemDesign();
  design->SetAirSystem(system);
  return design;
}

void add_operations_of(const EntityKind& kind, std::vector<Operation>& all) {
  const std::string one(kind.one);
  const auto add = [&](const std::string& what, auto get, auto act) {
    all.push_back({what + " " + one, [&kind, get, act](COM_ProjectData& project) {
                     return [entity = get(project, kind), act] { act(*entity); };
                   }});
  };
  add("save a new", new_entity, [](StoredEntity& entity) { entity.Save(); });
  add("save an edited", stored_entity, [](StoredEntity& entity) {
    rename_entity(entity, 'e');
    entity.Save();
  });
  add("save under an index a", stored_entity, [](StoredEntity& entity) { entity.SaveAs(9, Naming::AsItIs); });
  add("delete a", stored_entity, [](StoredEntity& entity) { entity.Delete(1); });
  add("save as default a", stored_entity, [](StoredEntity& entity) { entity.SaveDefault(); });
}

void save_many(COM_ProjectData& project) {
  Transaction all;
  for (const EntityKind& kind : entity_kinds()) {
    auto entity = stored_entity(project, kind);
    rename_entity(*entity, 'm');
    entity->Save();
    make_entity(project, kind)->Delete(2);
    new_entity(project, kind)->Save();
  }
  all.commit();
}

void save_weather(WTH_Weather& weather, float temperature) {
  Transaction whole;
  weather.SummerDB = temperature;
  weather.DesCityName = "City " + std::to_string(static_cast<int>(temperature));
  for (WeatherDay& day : weather.SimDay.items) day.DB(1) = temperature;
  weather.Save();
  whole.commit();
}

void save_hourly_file(COM_ProjectData& project) {
  HW1ReaderWriter hours;
  hours.CityName = "hours";
  hours.Save(project.SimWeatherInputsFilename());
}

}  // namespace

Folder::Folder() : path(made_folder()) {}
Folder::~Folder() { fs::remove_all(path); }
void Folder::copy(const std::string& from) const {
  for (const auto& entry : fs::directory_iterator(path)) fs::remove(entry.path());
  fs::copy(from, path);
}

void place(COM_ProjectData& project, const std::string& folder) {
  project.SetWorkPath(folder);
  project.FilePrefix = "JOB";
}

void make_sample(const std::string& folder, Weather weather) {
  COM_ProjectData project;
  place(project, folder);
  create_project(project);
  const auto database = host().database(project.IndexDBName());
  for (const EntityKind& kind : entity_kinds()) {
    for (const char letter : {'a', 'b'}) {
      auto entity = new_entity(project, kind);
      entity->Save();
      rename_entity(*entity, letter);
      entity->Save();
    }
  }
  project.NewProjectPrefs()->Save();
  database->Execute(
      "INSERT INTO DesWeatherIndex (szDesCityName) SELECT 'x' WHERE NOT EXISTS (SELECT * FROM DesWeatherIndex)");
  database->Execute(
      "INSERT INTO SimWeatherIndex (szSimCityName) SELECT 'x' WHERE NOT EXISTS (SELECT * FROM SimWeatherIndex)");
  if (weather == Weather::Year) save_weather(*project.NewWeather(), 80);
  design_of(project)->Save(1);
}

std::vector<Operation> all_operations() {
  std::vector<Operation> all;
  for (const EntityKind& kind : entity_kinds()) add_operations_of(kind, all);
  all.push_back(
      {"save many of all kinds", [](COM_ProjectData& project) { return [&project] { save_many(project); }; }});
  all.push_back({"save the weather",
                 [](COM_ProjectData& project) {
                   auto weather = project.NewWeather();
                   weather->Load();
                   return [weather] { save_weather(*weather, 99); };
                 },
                 false, Weather::Year});
  all.push_back({"save design results", [](COM_ProjectData& project) {
                   auto design = design_of(project);
                   return [design] {
                     design->Weather.Altitude = 500;
                     design->Save(1);
                   };
                 }});
  all.push_back({"save hours of the weather",
                 [](COM_ProjectData& project) { return [&project] { save_hourly_file(project); }; }});
  all.push_back({"import a project", [](COM_ProjectData& project) {
                   return [&project, text = export_project(project, {}, [](size_t, size_t) {})] {
                     import_project(project, text, [](size_t, size_t) {});
                   };
                 }});
  all.push_back(
      {"make a project", [](COM_ProjectData& project) { return [&project] { create_project(project); }; }, true});
  return all;
}

namespace {

std::string hashed(const std::string& text) {
  return std::to_string(text.size()) + " " + std::to_string(std::hash<std::string>()(text)) + "\n";
}

std::string rows_of(Database& database, const std::string& table) {
  std::string text;
  auto rows = database.OpenRecordset("SELECT * FROM " + table);
  for (; !rows.AtEof(); rows.MoveNext()) {
    for (const std::string& column : rows.columns()) {
      if (column == "szTime") continue;  // differs from run to run
      text += rows.Fields(column).text() + "/" + std::to_string(rows.Fields(column).real()) + " ";
    }
    text += "\n";
  }
  return text;
}

std::string bytes_of(const std::string& path) {
  std::string bytes(files().size(path), '\0');
  files().read(path, 0, std::as_writable_bytes(std::span(bytes)));
  return bytes;
}

/// Every record file that the project can have with indexes up to 9.
std::vector<std::string> record_files(COM_ProjectData& project) {
  std::vector<std::string> all{project.SimWeatherInputsFilename(), project.SimWeatherFilename(),
                               project.DesWeatherFilename(), project.ReportOptionsFilename(),
                               project.ProjectPrefFilename()};
  const std::string start = project.WorkPath() + "/" + project.FilePrefix;
  for (const EntityKind& kind : entity_kinds()) {
    all.push_back(start + std::string(kind.file.suffix));
    for (const char letter : {kind.letter, kind.results_letter}) {
      for (int index = 0; letter != 0 && index < 10; ++index)
        all.push_back(start + letter + "0" + std::to_string(index) + ".DAT");
    }
  }
  return all;
}

}  // namespace

std::string state_of(COM_ProjectData& project) {
  if (!fs::exists(project.IndexDBName())) return "none";
  const auto database = host().database(project.IndexDBName());
  Transaction one_moment(Transaction::Purpose::Reading);
  std::string state;
  auto tables = database->OpenRecordset(
      "SELECT name FROM sqlite_master WHERE type = 'table' AND name NOT LIKE 'sqlite_%' AND name <> 'PendingWrites'");
  for (; !tables.AtEof(); tables.MoveNext()) {
    const std::string table = tables.Fields("name").text();
    state += table + " " + hashed(rows_of(*database, table));
  }
  state += "exchange " + hashed(export_project(project, {}, [](size_t, size_t) {}));
  std::map<std::string, std::string> by_name;
  for (const std::string& file : record_files(project)) {
    if (files().exists(file)) by_name[fs::path(file).filename()] = hashed(bytes_of(file));
  }
  for (const auto& [name, text] : by_name) state += name + " " + text;
  return state;
}

std::string files_of(const std::string& folder) {
  std::map<std::string, std::string> by_name;
  for (const auto& entry : fs::directory_iterator(folder)) {
    std::ifstream in(entry.path(), std::ios::binary);
    const std::string name = entry.path().filename();
    if (name != "JOBINX.MDB") by_name[name] = hashed({std::istreambuf_iterator<char>(in), {}});
  }
  std::string state;
  for (const auto& [name, text] : by_name) state += name + " " + text;
  return state;
}

}  // namespace tarn::faults
