#include "sample.h"

#include <filesystem>
#include <fstream>

#include "plain_project.h"
#include "project/new_index.h"
#include "storage/kind.h"
#include "tarn/platform/database.h"

namespace tarn::bench {
namespace {

/// "INSERT INTO <into> SELECT <row> FROM the numbers i = 1..count".
std::string rows(const std::string& into, const std::string& row, int count) {
  return "INSERT INTO " + into + " SELECT " + row +
         " FROM (WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n " + "WHERE i < " +
         std::to_string(count) + ") SELECT i FROM n) WHERE i <= " + std::to_string(count) + ";";
}

std::string in_turn(int among) { return "(i - 1) % " + std::to_string(std::max(among, 1)) + " + 1"; }

std::string script(const Shape& shape) {
  const auto link = [](const std::string& owner, const std::string& member, const std::string& owner_id,
                       const std::string& member_id, int count) {
    return rows(owner + "_" + member + "_Links (" + owner + "_ID, " + member + "_ID)", owner_id + ", " + member_id,
                count);
  };
  return "BEGIN;" +
         rows("WindowIndex (nIndex, szName, fOverallUValue, fOverallShadeCo, fHeight, fWidth)",
              "i, 'Sample window ' || i, 0.5, 0.75, 4, 3", shape.windows) +
         rows("AirSystemIndex (nIndex, szName, bDesHasChanged, bSimHasChanged)", "i, 'System ' || i, 0, 0",
              shape.systems) +
         rows("PlantIndex (nIndex, szName, bDesHasChanged, bSimHasChanged)", "i, 'Plant ' || i, 0, 0", shape.plants) +
         rows("BuildingIndex (nIndex, szName, bHasChanged)", "i, 'Building ' || i, 0", shape.buildings) +
         link("Space", "Window", "i", in_turn(shape.windows), shape.spaces) +
         link("System", "Space", in_turn(shape.systems), "i", shape.spaces) +
         link("Plant", "System", in_turn(shape.plants), "i", shape.systems) +
         link("Building", "Plant", in_turn(shape.buildings), "i", shape.plants) +
         link("Building", "System", in_turn(shape.buildings), "i", shape.systems) + "COMMIT;";
}

Paths paths_in(const std::string& folder) { return {folder + "/JOBINX.MDB", folder + "/JOBWIN.DAT"}; }

}  // namespace

WindowRecord sample_window(int number) {
  WindowRecord record{};
  record.Name = "Sample window " + std::to_string(number);
  record.OverallUValue = 0.5F;
  record.OverallShadeCo = 0.75F;
  record.Height = 4.0F;
  record.Width = 3.0F;
  return record;
}

Sample make_sample(const std::string& folder, const Shape& shape) {
  const Sample sample{paths_in(folder + "/ours"), paths_in(folder + "/floor")};
  std::filesystem::create_directories(folder + "/floor");
  create_index(sample.floor.index);
  run_script(sample.floor.index, script(shape));
  std::ofstream file(sample.floor.windows, std::ios::binary);
  for (int number = 0; number <= shape.windows; ++number) {
    const WindowRecord record = sample_window(number);
    file.write(reinterpret_cast<const char*>(&record), sizeof record);
  }
  file.close();
  std::filesystem::copy(folder + "/floor", folder + "/ours");
  return sample;
}

}  // namespace tarn::bench
