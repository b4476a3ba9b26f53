// What the tests of plants share: a project with a small library, and a plant that uses all of it.
#pragma once

#include "support/temp_project.h"
#include "tarn/boiler.h"
#include "tarn/chiller.h"
#include "tarn/cooling_tower.h"
#include "tarn/plant.h"

namespace tarn::test {

class PlantCase : public ProjectTest {
 protected:
  void SetUp() override {
    ProjectTest::SetUp();
    project.NewPlant()->WriteDefaultsFile(project.PlantDefaultFilename());
  }
  Ptr<PLT_Plant> new_plant(const std::string& name) {
    auto plant = project.NewPlant();
    plant->General.Name = name;
    plant->General.PlantType = PLT_PlantTypes::PT_CHILLER;
    return plant;
  }
  Ptr<PLT_Plant> loaded(int16_t index, int32_t mask = CCM_ALL) {
    auto plant = project.NewPlant();
    plant->Load(mask, index);
    return plant;
  }
  /// Chillers, boilers and towers 1 to 3, systems and schedules 1 to 3 as rows.
  void add_library() {
    for (int i = 1; i <= 3; ++i) {
      auto chiller = project.NewChiller();
      chiller->FunctionType = CHL_FunctionTypes::FT_Reversible;
      chiller->ChillerType = static_cast<CHL_ChillerTypes>(i);
      chiller->Save();
      auto boiler = project.NewBoiler();
      boiler->SetFuelType(static_cast<BLR_FuelTypes>(2 + i));
      boiler->Save();
      project.NewCoolingTower()->Save();
      database->Execute("INSERT INTO AirSystemIndex (nIndex, bDesHasChanged, bSimHasChanged) VALUES (" +
                        std::to_string(i) + ", 0, 0)");
      database->Execute("INSERT INTO ScheduleIndex (nIndex) VALUES (" + std::to_string(i) + ")");
    }
  }
  static void use(PLT_EquipmentList& list, COM_ProjectLibrary library, int16_t id, int16_t tower = 0) {
    const auto place = static_cast<int16_t>(list.NumEquipment() + 1);
    list.SetNumEquipment(place);
    list.Equipment(place).LibraryID = library;
    list.Equipment(place).EquipmentID = id;
    list.Equipment(place).TowerID = tower;
  }
  /// One that uses everything: systems 1 and 3, chillers 1 and 2, boiler 2, towers 1 to 3, schedules 1 to 3.
  Ptr<PLT_Plant> full_plant() {
    auto plant = new_plant("Full");
    plant->SystemSelect.SystemID(1) = 1;
    plant->SystemSelect.SystemID(3) = 3;
    plant->SystemSelect.SystemMultiplier(3) = 7;
    use(plant->Details.CoolingEqpt, COM_ProjectLibrary::LIB_CHILLERS, 1, 1);
    use(plant->Details.CoolingEqpt, COM_ProjectLibrary::LIB_CHILLERS, 2, 2);
    use(plant->Details.HeatingEqpt, COM_ProjectLibrary::LIB_BOILERS, 2);
    plant->Details.TowerID = 3;
    plant->Details.StorageSchedule = 1;
    plant->ServiceHotWaterDetails.UsageSchedule = 2;
    plant->Details.ChangeoverSchedule = 3;
    return plant;
  }
  /// The ids of a plant's link rows: "Tower 1 2".
  std::string links(int index) {
    std::string text;
    const auto add = [&](const std::string& what, const std::string& column, const std::string& from) {
      auto found = database->OpenRecordset("SELECT " + column + " AS ID FROM " + from + " ORDER BY " + column);
      text += (text.empty() ? "" : "; ") + what;
      for (; !found.AtEof(); found.MoveNext()) text += " " + std::to_string(found.Fields("ID").integer());
    };
    const std::string of = " WHERE Plant_ID = " + std::to_string(index);
    add("systems", "System_ID", "Plant_System_Links" + of);
    add("library 10", "Equipment_ID", "Plant_Equipment_Links" + of + " AND Library_ID = 10");
    add("library 20", "Equipment_ID", "Plant_Equipment_Links" + of + " AND Library_ID = 20");
    add("chillers", "Chiller_ID", "Plant_Chiller_Links" + of);
    add("boilers", "Boiler_ID", "Plant_Boiler_Links" + of);
    add("towers", "Tower_ID", "Plant_Tower_Links" + of);
    add("schedules", "Schedule_ID", "Plant_Schedule_Links" + of);
    return text;
  }
  std::string flags(int index) {
    auto row = database->OpenRecordset("SELECT * FROM PlantIndex WHERE nIndex = ?", {cell(index)});
    std::string text;
    for (const char* column : {"bSized", "bSimulated", "bDesHasChanged", "bSimHasChanged"})
      text += row.Fields(column).integer() ? "1" : "0";
    return text;
  }
};

}  // namespace tarn::test
