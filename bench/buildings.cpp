// The largest building - 250 systems, 100 plants, ten pieces of equipment, eight rates, results and the profiles of
// eight meters - beside plain reads and writes of its file with the same statements.
#include <filesystem>

#include "plain_entity.h"
#include "platform/host.h"
#include "project/new_index.h"
#include "report.h"
#include "storage/kind.h"
#include "tarn/building.h"
#include "tarn/platform/database.h"
#include "tarn/platform/workspace.h"
#include "tarn/project.h"

namespace tarn::bench {
namespace {

Ptr<BLD_Building> sample_building(COM_ProjectData& project) {
  auto building = project.NewBuilding();
  building->GetBuildingGeneral()->Name = "Large building";
  BLD_Inputs& inputs = *building->GetBuildingInputs();
  for (int i = 1; i <= kBuildingSystems; ++i) {
    inputs.SystemID(i) = static_cast<int16_t>(i);
    inputs.SystemMult(i) = 2;
  }
  for (int i = 1; i <= kBuildingPlants; ++i) inputs.PlantID(i) = static_cast<int16_t>(i);
  for (int i = 1; i <= kMiscEquipment; ++i) inputs.MESchedule(i) = static_cast<int16_t>(i);
  for (int16_t meter = 1; meter <= kMeters; ++meter) {
    inputs.UtilityRate(meter) = meter;
    for (int hour = 1; hour <= kHoursInYear; ++hour)
      building->GetBuildingProfile(meter)->Power(hour) = static_cast<float>(hour);
  }
  building->GetBuildingResults()->TotClgLoad = 500;
  return building;
}

struct Use {
  const char *kind, *index_table;
  int count;
};
constexpr Use kUses[]{{"System", "AirSystemIndex", kBuildingSystems},
                      {"Plant", "PlantIndex", kBuildingPlants},
                      {"Schedule", "ScheduleIndex", kMiscEquipment},
                      {"ElectricRate", "ElectricRateIndex", kMeters},
                      {"FuelRate", "FuelRateIndex", kMeters}};

std::string index_rows() {
  std::string script = "BEGIN;";
  for (const Use& use : kUses) {
    for (int i = 1; i <= use.count; ++i)
      script += std::string("INSERT INTO ") + use.index_table + " (nIndex) VALUES (" + std::to_string(i) + ");";
  }
  return script + "COMMIT;";
}

std::vector<std::string> link_queries() {
  std::vector<std::string> queries;
  for (const Use& use : kUses) {
    const std::string id = std::string(use.kind) + "_ID";
    queries.push_back("SELECT " + id + ", nIndex FROM Building_" + use.kind + "_Links LEFT JOIN " + use.index_table +
                      " ON nIndex = " + id + " WHERE Building_ID = ? ORDER BY " + id);
  }
  return queries;
}

}  // namespace

void building_cases(Report& report, const std::string& folder) {
  const std::string at = folder + "/buildings";
  std::filesystem::create_directories(at + "/ours");
  COM_ProjectData project;
  project.SetWorkPath(at + "/ours");
  project.FilePrefix = "JOB";
  create_index(project.IndexDBName());
  run_script(project.IndexDBName(), index_rows());
  const Ptr<BLD_Building> building = sample_building(project);
  building->Save(FS_ALL);
  std::filesystem::copy(at + "/ours", at + "/floor");

  PlainEntity plain(at + "/floor", "JOBB01.DAT", "BuildingIndex", link_queries(), building->kind().reach,
                    "bHasChanged");
  const auto load = [&] { building->Load(FS_ALL, 1); };
  report.compare({"load a building of 250 systems with profiles", 1, 1.3, 301}, {load}, {[&] { plain.load(); }});
  const auto load_inputs = [&] { building->Load(FS_STANDARD, 1); };
  const auto plain_inputs = [&] { plain.load(sizeof(BuildingGeneralRecord) + sizeof(BuildingInputsRecord), true); };
  report.compare({"load its general data and inputs", 1, 1.3, 301}, {load_inputs}, {plain_inputs});
  building->Load(FS_ALL, 1);
  const auto save = [&] {
    Transaction transaction;
    building->HasChanged = !building->HasChanged;
    building->Save(FS_ALL, true);
    transaction.commit();
  };
  int64_t changed = 0;
  report.compare({"save a building of 250 systems with profiles", 1, 1.3, 101}, {save}, {[&] {
                   changed = -1 - changed;
                   plain.save({}, changed);
                 }});
}

}  // namespace tarn::bench
