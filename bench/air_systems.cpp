// A large air system - 40 zones of 50 spaces, sizing and simulation - beside plain reads and writes of its file with
// the same statements.
#include <filesystem>

#include "plain_entity.h"
#include "platform/host.h"
#include "project/new_index.h"
#include "report.h"
#include "storage/kind.h"
#include "tarn/air_system.h"
#include "tarn/platform/database.h"
#include "tarn/platform/workspace.h"
#include "tarn/project.h"

namespace tarn::bench {
namespace {

constexpr int kZones = 40, kSpaces = 50;  // a zone

Ptr<AS_AirSystem> sample_system(COM_ProjectData& project) {
  auto system = project.NewAirSystem();
  system->SetToDefaultsByType(1);
  const auto header = system->GetAirSystem();
  header->Name = "Large system";
  header->SetNumZones(kZones);
  int16_t space = 0;
  for (int16_t zone = 1; zone <= kZones; ++zone) {
    const auto data = system->GetZoneData(zone);
    data->TotalSpacesInZone = kSpaces;
    for (int place = 1; place <= kSpaces; ++place) {
      data->SpaceID(place) = ++space;
      data->SpaceMultiplier(place) = 1;
    }
  }
  system->GetZoneSchedule()->TstatSchedule = 1;
  system->GetCoolSys()->Used = system->GetHeatSys()->Used = true;
  system->GetPreheatCoil()->Used = system->GetPrecoolCoil()->Used = true;
  system->GetHumidity()->Used = system->GetVentReclaim()->Used = true;
  system->GetSupplyFan()->Used = system->GetReturnFan()->Used = true;
  header->SetFlags();
  return system;
}

std::string index_rows() {
  std::string script = "BEGIN; INSERT INTO ScheduleIndex (nIndex, szName) VALUES (1, 'Always');";
  for (int space = 1; space <= kZones * kSpaces; ++space) {
    const std::string number = std::to_string(space);
    script += "INSERT INTO SpaceIndex (nIndex, szName) VALUES (" + number + ", 'Space " + number + "');";
  }
  return script +
         "INSERT INTO PlantIndex (nIndex, szName) VALUES (1, 'Plant'); INSERT INTO Plant_System_Links VALUES (1, 1);"
         "INSERT INTO BuildingIndex (nIndex, szName) VALUES (1, 'Building');"
         "INSERT INTO Building_System_Links VALUES (1, 1); COMMIT;";
}

/// A project with the system, and a copy of it for the floor.
struct SystemSample {
  explicit SystemSample(const std::string& at) : folder(at) {
    std::filesystem::create_directories(folder + "/ours");
    project.SetWorkPath(folder + "/ours");
    project.FilePrefix = "JOB";
    create_index(project.IndexDBName());
    run_script(project.IndexDBName(), index_rows());
    system = sample_system(project);
    save(*system);
    std::filesystem::copy(folder + "/ours", folder + "/floor");
  }
  static void save(AS_AirSystem& system) {
    std::optional<bool> after_calculations = true;
    system.Save(after_calculations);
  }
  std::string folder;
  COM_ProjectData project;
  Ptr<AS_AirSystem> system;
};

std::vector<std::string> link_queries() {
  std::vector<std::string> queries;
  for (const std::string kind : {"Space", "Schedule", "Tower", "Boiler"}) {
    queries.push_back("SELECT " + kind + "_ID, nIndex FROM System_" + kind + "_Links LEFT JOIN " + kind +
                      "Index ON nIndex = " + kind + "_ID WHERE System_ID = ? ORDER BY " + kind + "_ID");
  }
  return queries;
}

}  // namespace

void air_system_cases(Report& report, const std::string& folder) {
  SystemSample sample(folder + "/systems");
  PlainEntity plain(folder + "/systems/floor", "JOBA01.DAT", "AirSystemIndex", link_queries(),
                    sample.system->kind().reach);
  const Ptr<AS_AirSystem> system = sample.project.NewAirSystem();
  const auto load = [&] { system->Load(1); };
  report.compare({"load a system of 2,000 spaces, all sections", 1, 1.3, 101}, {load}, {[&] { plain.load(); }});
  const Side ours{[&] {
    Transaction transaction;
    system->DesHasChanged = !system->DesHasChanged;
    SystemSample::save(*system);
    transaction.commit();
  }};
  int64_t changed = 0;
  report.compare({"save a system of 2,000 spaces after calculations", 1, 1.3, 51}, ours, {[&] {
                   changed = -1 - changed;
                   plain.save("Large system", changed);
                 }});
  const auto header = sample.project.NewAirSystem();
  header->SetMask(CCM_HEADERMASK, CCM_MASKALL);
  const Side ours_header{[&] { header->Load(1); }};
  // Fifteen microseconds of the floor are ten system calls; what ours asks beside: is the file another one, who has
  // saved.
  report.compare({"load the header of a system alone", 1, 1.45, 1001}, ours_header,
                 {[&] { plain.load(sizeof(SystemHeaderRecord), false); }});
}

}  // namespace tarn::bench
