// A large plant - 13 pumps in each of 8 loops, 100 systems, 40 pieces of equipment, sizing results - beside plain reads
// and writes of its file with the same statements.
#include <filesystem>

#include "plain_entity.h"
#include "platform/host.h"
#include "project/new_index.h"
#include "report.h"
#include "storage/kind.h"
#include "tarn/plant.h"
#include "tarn/platform/database.h"
#include "tarn/platform/workspace.h"
#include "tarn/project.h"

namespace tarn::bench {
namespace {

constexpr int kSystems = 100, kPieces = 20;  // of chillers, and as many boilers

Ptr<PLT_Plant> sample_plant(COM_ProjectData& project) {
  auto plant = project.NewPlant();
  plant->General.Name = "Large plant";
  plant->General.PlantType = PLT_PlantTypes::PT_CHILLER;
  for (int i = 1; i <= kSystems; ++i) plant->SystemSelect.SystemID(i) = static_cast<int16_t>(i);
  PLT_Details& details = plant->Details;
  for (PLT_EquipmentList* list : {&details.CoolingEqpt, &details.HeatingEqpt}) {
    list->SetNumEquipment(kPieces);
    const bool cools = list == &details.CoolingEqpt;
    for (int i = 1; i <= kPieces; ++i) {
      list->Equipment(i).LibraryID = cools ? COM_ProjectLibrary::LIB_CHILLERS : COM_ProjectLibrary::LIB_BOILERS;
      list->Equipment(i).EquipmentID = static_cast<int16_t>(i);
      if (cools) list->Equipment(i).TowerID = static_cast<int16_t>(i);
    }
  }
  for (PLT_PumpLoop* loop : details.loops()) {
    loop->Used = true;
    loop->SetNumPumps(kPumps);
    for (int i = 1; i <= kPumps; ++i) loop->Pumps(i).Flow = 100;
  }
  plant->ServiceHotWaterDetails.UsageSchedule = 1;
  plant->SizingLoadsClg.PeakLoad = plant->DesignProfile.CoolingLoad(7, 15) = 500;
  return plant;
}

std::string index_rows() {
  std::string script = "BEGIN; INSERT INTO ScheduleIndex (nIndex) VALUES (1);";
  const auto add = [&script](const std::string& table, int count) {
    for (int i = 1; i <= count; ++i) script += "INSERT INTO " + table + " (nIndex) VALUES (" + std::to_string(i) + ");";
  };
  add("AirSystemIndex", kSystems);
  for (const char* table : {"ChillerIndex", "BoilerIndex", "TowerIndex"}) add(table, kPieces);
  add("BuildingIndex", 1);
  return script + "INSERT INTO Building_Plant_Links (Building_ID, Plant_ID) VALUES (1, 1); COMMIT;";
}

std::vector<std::string> link_queries() {
  std::vector<std::string> queries;
  const auto add = [&](const std::string& table, const std::string& id, const std::string& index,
                       const std::string& more = "") {
    queries.push_back("SELECT " + id + ", nIndex FROM " + table + " LEFT JOIN " + index + " ON nIndex = " + id +
                      " WHERE Plant_ID = ?" + more + " ORDER BY " + id);
  };
  add("Plant_System_Links", "System_ID", "AirSystemIndex");
  add("Plant_Equipment_Links", "Equipment_ID", "ChillerIndex", " AND Library_ID = 10");
  add("Plant_Equipment_Links", "Equipment_ID", "BoilerIndex", " AND Library_ID = 20");
  add("Plant_Tower_Links", "Tower_ID", "TowerIndex");
  add("Plant_Schedule_Links", "Schedule_ID", "ScheduleIndex");
  return queries;
}

/// A save also writes the older tables of equipment.
std::vector<std::string> link_queries_of_save() {
  std::vector<std::string> queries = link_queries();
  for (const std::string kind : {"Chiller", "Boiler"}) {
    queries.push_back("SELECT " + kind + "_ID, nIndex FROM Plant_" + kind + "_Links LEFT JOIN " + kind +
                      "Index ON nIndex = " + kind + "_ID WHERE Plant_ID = ? ORDER BY " + kind + "_ID");
  }
  queries.push_back(
      "DELETE FROM Plant_Equipment_Links WHERE Plant_ID = ? AND (Library_ID IS NULL OR Library_ID NOT IN (10, 20))");
  return queries;
}

}  // namespace

void plant_cases(Report& report, const std::string& folder) {
  const std::string at = folder + "/plants";
  std::filesystem::create_directories(at + "/ours");
  COM_ProjectData project;
  project.SetWorkPath(at + "/ours");
  project.FilePrefix = "JOB";
  create_index(project.IndexDBName());
  run_script(project.IndexDBName(), index_rows());
  const Ptr<PLT_Plant> plant = sample_plant(project);
  plant->Save(CCM_ALL);
  std::filesystem::copy(at + "/ours", at + "/floor");

  const Reach& reach = plant->kind().reach;
  PlainEntity loaded(at + "/floor", "JOBP01.DAT", "PlantIndex", link_queries(), reach);
  PlainEntity saved(at + "/floor", "JOBP01.DAT", "PlantIndex", link_queries_of_save(), reach);
  const auto load = [&] { plant->Load(CCM_ALL, 1); };
  report.compare({"load a plant of 100 systems and 40 pieces", 1, 1.3, 301}, {load}, {[&] { loaded.load(); }});
  const Side save{[&] {
    Transaction transaction;
    plant->DesHasChanged = !plant->DesHasChanged;
    std::optional<bool> after_calculations = true;
    plant->Save(CCM_DESCRIPTIVE_DATA | CCM_DESIGN_DATA, after_calculations);
    transaction.commit();
  }};
  int64_t changed = 0;
  report.compare({"save a plant of 100 systems after sizing", 1, 1.3, 101}, save, {[&] {
                   changed = -1 - changed;
                   saved.save("Large plant", changed);
                 }});
}

}  // namespace tarn::bench
