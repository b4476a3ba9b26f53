#include "tarn/plant.h"

#include "plant/plant_case.h"
#include "project/defaults.h"
#include "tarn/air_system.h"
#include "tarn/exchange.h"

namespace tarn {
namespace {

using test::what_of;
using PlantTest = test::PlantCase;

TEST_F(PlantTest, BadCallsSayWhyAndChangeNothing) {
  add_library();
  full_plant()->Save(CCM_ALL);
  new_plant("Other")->Save(CCM_ALL);
  auto plant = loaded(1);
  database->Execute("INSERT INTO PlantIndex (nIndex, szName) VALUES (8, 'no file')");
  test::write_bytes(folder / "JOBP07.DAT", test::bytes_of(folder / "JOBP01.DAT"));
  const std::string work = project.WorkPath();
  auto& loop = plant->Details.CondenserWaterLoop;
  int16_t i = 0;
  const struct {
    std::function<void()> call;
    std::string says;
  } cases[]{
      {[&] { plant->Load(CCM_ALL, 8); }, "Plant data file not found.  File name:  " + work + "/JOBP08.DAT"},
      {[&] { plant->Load(CCM_ALL, 7); }, "Plant not found in table (PlantIndex) where index = 7"},
      {[&] {
         auto clone = plant->Clone();
         clone->General.Name = "Other";
         clone->Save(CCM_ALL);
       },
       "A plant already exists with the name [Other]\nPlease specify a unique plant name and try again."},
      {[&] { loop.SetNumPumps(14); }, "NumPumps value is out of range: [14 > 13]"},
      {[&] { loop.SetNumPumps(-1); }, "NumPumps value is out of range: [-1 < 0]"},
      {[&] {
         auto twin = plant->CopyInstance();
         twin->Details.CondenserWaterLoop.Used = true;
         twin->Save(CCM_ALL);
       },
       "Data error: if pump loop is used, must have NumPumps >=1"},
      {[&] { plant->Details.CoolingEqpt.SetNumEquipment(51); }, "Subscript out of range: 51, allowed are 0 to 50."},
      {[&] {
         plant->DefFileName = "/nowhere/P00.DAT";
         plant->CreateDefault();
       },
       "Default Plant data file not found.  File name:  /nowhere/P00.DAT"},
      {[&] { plant->General.GetEquipmentTypes(15, 1, i, i, i); }, "Unknown equipment library ID: 15"},
      {[&] {
         PLT_General lone;
         lone.PlantType = static_cast<PLT_PlantTypes>(11);
         lone.SetFlags();
       },
       "Unknown plant type: 11"},
      {[&] {
         auto twin = plant->CopyInstance();
         twin->Details.CoolingEqpt.SetNumEquipment(34);
         twin->General.SetFlags();
       },
       "Too many output flags"},
      {[&] { loaded(1, CCM_HEADER)->Save(CCM_ALL); },
       "SystemSelect is selected but was not loaded, and a save would empty it in the file. Load it first, or leave it "
       "out of the mask."},
      {[&] { plant->SystemSelect.SetNumSystems(251); }, "Subscript out of range: 251, allowed are 0 to 250."},
      {[&] {
         auto twin = plant->CopyInstance();
         twin->Details.HeatingEqpt.Equipment(1).LibraryID = static_cast<COM_ProjectLibrary>(99);
         twin->Save(CCM_DETAILS);
       },
       "Unknown equipment library ID: 99"},
  };
  const std::string file = test::bytes_of(folder / "JOBP01.DAT"), table = rows("PlantIndex"), linked = links(1);
  for (const auto& c : cases) {
    const auto twin = plant->CopyInstance();
    EXPECT_EQ(what_of(c.call), c.says);
    plant->DefFileName = twin->DefFileName;
    EXPECT_EQ(test::bytes_of(folder / "JOBP01.DAT") == file && rows("PlantIndex") == table && links(1) == linked, true)
        << c.says;
    EXPECT_EQ(plant->Index(), 1) << c.says;
    EXPECT_EQ(std::memcmp(plant->General.bytes().data(), twin->General.bytes().data(), 178), 0) << c.says;
    EXPECT_EQ(std::memcmp(plant->Details.bytes().data(), twin->Details.bytes().data(), 66), 0) << c.says;
    EXPECT_EQ(loop.NumPumps(), 0) << c.says;
  }
  loop.SetNumPumps(13);
  EXPECT_EQ(loop.NumPumps(), 13);
  database->Execute("DROP TABLE PlantIndex");
  EXPECT_EQ(what_of([&] { plant->Load(CCM_ALL, 1); }).substr(0, 83),
            "Could not open recordset object.\nSQL:  SELECT * FROM PlantIndex ORDER BY nIndex ASC");
}

TEST_F(PlantTest, WhatWasDeletedIsKnownAlsoAfterSavesInParts) {
  add_library();
  auto plant = full_plant();
  plant->Save(CCM_ALL);
  plant->Load(CCM_SYSTEM_SELECT, 1);
  plant->Save(CCM_SYSTEM_SELECT);
  project.NewChiller()->Delete(2);
  project.NewChiller()->Save();  // under index 2 again
  database->Execute("INSERT INTO Plant_Equipment_Links VALUES (1, 7, 30)");
  database->Execute("INSERT INTO Plant_Equipment_Links VALUES (1, 1, 10)");
  plant->Save(CCM_ALL);
  EXPECT_EQ(links(1), "systems 1 3; library 10 1; library 20 2; chillers 1; boilers 2; towers 1 3; schedules 1 2 3");
  EXPECT_EQ(count("Plant_Equipment_Links WHERE Plant_ID = 1"), 2) << "strays and doubles are gone";
  EXPECT_EQ(plant->Details.CoolingEqpt.NumEquipment(), 1);
}

TEST_F(PlantTest, ASaveInPartsSettlesOnlyItsOwnDeletions) {
  add_library();
  full_plant()->Save(CCM_ALL);
  project.NewAirSystem()->Delete(1);
  project.NewChiller()->Delete(2);
  project.NewChiller()->Save();  // under index 2 again
  auto plant = project.NewPlant();
  plant->Load(CCM_SYSTEM_SELECT, 1);
  plant->Save(CCM_SYSTEM_SELECT);
  EXPECT_EQ(loaded(1)->Details.CoolingEqpt.NumEquipment(), 1) << "the new chiller is not the old one";
  EXPECT_NE(log.messages.back().find("Chiller 2 was deleted"), std::string::npos) << log.messages.back();
}

TEST_F(PlantTest, ReferencesWithoutALinkRowAreDroppedAndListsCloseUp) {
  add_library();
  full_plant()->Save(CCM_ALL);
  project.NewChiller()->Delete(1);
  EXPECT_EQ(links(1), "systems 1 3; library 10 2; library 20 2; chillers 2; boilers 2; towers 1 2 3; schedules 1 2 3");
  database->Execute("DELETE FROM Plant_System_Links WHERE System_ID = 1");
  database->Execute("DELETE FROM Plant_Tower_Links WHERE Tower_ID = 3");
  database->Execute("DELETE FROM Plant_Schedule_Links WHERE Schedule_ID = 2");
  auto plant = loaded(1);
  EXPECT_EQ(plant->SystemSelect.NumSystems(), 1);
  EXPECT_EQ(plant->SystemSelect.SystemID(1), 3);
  EXPECT_EQ(plant->SystemSelect.SystemMultiplier(1), 7);
  EXPECT_EQ(plant->Details.CoolingEqpt.NumEquipment(), 1);
  EXPECT_EQ(plant->Details.CoolingEqpt.Equipment(1).EquipmentID, 2);
  EXPECT_EQ(plant->Details.CoolingEqpt.Equipment(1).TowerID, 2);
  EXPECT_EQ(plant->Details.HeatingEqpt.Equipment(1).EquipmentID, 2);
  EXPECT_EQ(plant->Details.TowerID, 0);
  EXPECT_EQ(plant->ServiceHotWaterDetails.UsageSchedule, 0);
  EXPECT_EQ(plant->Details.StorageSchedule, 1);
  plant->Delete(1);
  EXPECT_EQ(links(1), "systems; library 10; library 20; chillers; boilers; towers; schedules");
  EXPECT_FALSE(std::filesystem::exists(folder / "JOBP01.DAT"));
}

TEST_F(PlantTest, WhatASavedPlantUsesMarksIt) {
  add_library();
  auto plant = full_plant();
  plant->Save(CCM_ALL);
  database->Execute("INSERT INTO BuildingIndex (nIndex, bHasChanged) VALUES (6, 0)");
  link("Building_Plant_Links (6, 1)");
  const auto entity = [&](auto made, int16_t index) -> Ptr<StoredEntity> {
    made->Load(index);
    return made;
  };
  const struct {
    Ptr<StoredEntity> entity;
    const char* flags;
  } cases[]{{entity(project.NewChiller(), 2), "0001"},      {entity(project.NewChiller(), 3), "0000"},
            {entity(project.NewBoiler(), 2), "0001"},       {entity(project.NewBoiler(), 1), "0000"},
            {entity(project.NewCoolingTower(), 2), "0001"}, {entity(project.NewCoolingTower(), 3), "0001"}};
  for (const auto& c : cases) {
    for (const bool deletes : {false, true}) {
      Transaction undone;
      database->Execute("UPDATE PlantIndex SET bDesHasChanged = 0, bSimHasChanged = 0");
      if (deletes)
        c.entity->Delete(c.entity->Index());
      else
        c.entity->Save();
      const std::string name = std::string(c.entity->info().name) + " " + std::to_string(c.entity->Index());
      EXPECT_EQ(flags(1), c.flags) << name;
      EXPECT_EQ(count("BuildingIndex WHERE bHasChanged = -1"), c.flags == std::string("0000") ? 0 : 1) << name;
    }
  }
  for (const bool deletes : {false, true}) {
    Transaction undone;
    if (deletes)
      plant->Delete();
    else
      plant->Save(CCM_HEADER);
    EXPECT_EQ(count("BuildingIndex WHERE bHasChanged = -1"), 1) << deletes;
    EXPECT_EQ(count("Building_Plant_Links"), deletes ? 0 : 1);
  }
}

TEST_F(PlantTest, TheHeaderLooksUpEquipmentAndTowers) {
  add_library();
  for (int model = 0; model <= 4; ++model) {
    auto tower = project.NewCoolingTower();
    tower->ECWTModel = static_cast<TWR_ModelingMethods>(model);
    tower->Save();  // 4 to 8
  }
  for (int model = 0; model <= 4; ++model) {
    auto plant = new_plant("Tower model " + std::to_string(model));
    plant->Details.TowerID = static_cast<int16_t>(4 + model);
    plant->Save(CCM_ALL);
    EXPECT_EQ(plant->General.GetDetailedTowerCount(), model == 2 || model == 4 ? 1 : 0) << model;
  }
  auto plant = full_plant();
  plant->Save(CCM_ALL);
  int16_t function = -1, type = -1, fuel = -1;
  plant->General.GetEquipmentTypes(10, 2, function, type, fuel);
  EXPECT_EQ(std::tie(function, type, fuel), std::make_tuple(20, 2, 0));
  plant->General.GetEquipmentTypes(20, 3, function, type, fuel);
  EXPECT_EQ(std::tie(function, type, fuel), std::make_tuple(0, 0, 5));
  plant->General.GetEquipmentTypes(10, 99, function, type, fuel);
  EXPECT_EQ(std::tie(function, type, fuel), std::make_tuple(0, 0, 0));
  EXPECT_EQ(plant->General.GetEquipmentLinkCount(10), 2);
  EXPECT_EQ(plant->General.GetEquipmentLinkCount(10, 2), 1);
  EXPECT_EQ(plant->General.GetEquipmentLinkCount(20, 1), 0);
}

TEST_F(PlantTest, OutputFlagsFollowTheType) {
  add_library();
  const struct {
    int type;
    std::vector<int> flags;
  } cases[]{{1, {1, 2, 3, 7, 11}},
            {2, {4, 5, 6, 8}},
            {3, {4, 8}},
            {4, {1, 2, 3, 7, 11, 17, 121, 122, 221, 222, 131, 231, 31}},
            {5, {1, 2, 3, 7, 43, 44, 11, 17, 121, 122, 221, 222, 131, 231, 31}},
            {6, {1, 2, 3, 7, 61, 11}},
            {7, {4, 5, 6, 8, 123, 124}},
            {8, {4, 8, 123, 124}},
            {9, {4, 5, 6, 8, 62}},
            {10, {4, 8, 62}},
            {20, {1, 2, 3, 7, 4, 5, 6, 8}},
            {30, {1, 2, 3, 7, 4, 5, 6, 8, 17, 121, 122, 221, 222, 131, 231, 31, 123, 124}},
            {40, {51, 52, 53, 123, 124}},
            {50, {51, 52}},
            {60, {1, 2, 3, 7, 4, 5, 6, 8, 42}},
            {70, {1, 2, 3, 7, 4, 5, 6, 8, 42, 11, 17, 121, 122, 221, 222, 131, 231, 31, 123, 124}}};
  auto plant = full_plant();
  plant->Details.ChilledWaterPrimaryLoop.Used = plant->Details.CondenserWaterLoop.Used = true;
  for (const auto& c : cases) {
    plant->General.PlantType = static_cast<PLT_PlantTypes>(c.type);
    plant->General.SetFlags();
    std::vector<int> found;
    for (int i = 1; i <= 70; ++i) {
      if (plant->General.OutputFlags(i) != 0) found.push_back(plant->General.OutputFlags(i));
    }
    EXPECT_EQ(found, c.flags) << c.type;
    EXPECT_EQ(plant->General.NumOutputs, static_cast<int>(c.flags.size())) << c.type;
  }
}

TEST_F(PlantTest, AnExchangeBringsPlantsWithWhatTheyUse) {
  write_default_records(project);
  add_library();
  auto plant = full_plant();
  plant->DesignProfile.CoolingLoad(3, 4) = 0.1F;
  plant->Save(CCM_ALL);
  const auto quiet = [](size_t, size_t) {};
  database->Execute("DELETE FROM AirSystemIndex");
  database->Execute("DELETE FROM ScheduleIndex");
  const std::string text = export_project(project, {}, quiet);
  for (int i = 0; i < 2; ++i) project.NewChiller()->Save();  // the library is fuller by two
  import_project(project, text, quiet);
  auto copy = loaded(2);
  EXPECT_EQ(copy->General.Name.trimmed(), "Copy of Full");
  EXPECT_EQ(copy->Details.CoolingEqpt.Equipment(1).EquipmentID, 6);
  EXPECT_EQ(copy->Details.HeatingEqpt.Equipment(1).EquipmentID, 5);
  EXPECT_EQ(copy->Details.CoolingEqpt.Equipment(2).TowerID, 5);
  EXPECT_EQ(copy->DesignProfile.CoolingLoad(3, 4), 0.1F);
  EXPECT_TRUE(copy->DesHasChanged && copy->SimHasChanged);
  EXPECT_EQ(links(2).substr(0, 63), "systems 1 3; library 10 6 7; library 20 5; chillers 6 7; boiler");
}

TEST_F(PlantTest, ARollbackTakesEverythingBack) {
  add_library();
  auto plant = full_plant();
  const std::string table = rows("PlantIndex");
  {
    Transaction undone;
    plant->General.Sized = true;
    plant->Save(CCM_ALL);
  }
  EXPECT_EQ(plant->Index(), 0);
  EXPECT_EQ(plant->General.Sized && !plant->DesHasChanged, true);
  EXPECT_EQ(rows("PlantIndex"), table);
  EXPECT_FALSE(std::filesystem::exists(folder / "JOBP01.DAT"));
  plant->Save(CCM_ALL);
  {
    Transaction undone;
    project.NewChiller()->Delete(1);
    plant->Save(CCM_ALL);
    EXPECT_EQ(plant->Details.CoolingEqpt.NumEquipment(), 1);
  }
  EXPECT_EQ(plant->Details.CoolingEqpt.NumEquipment(), 2) << "what the save cleared is back";
  auto twin = plant->CopyInstance();
  auto clone = plant->Clone(1);
  EXPECT_EQ(twin->Index(), 1);
  EXPECT_EQ(clone->Index(), 0);
  EXPECT_EQ(clone->General.Name.trimmed(), "Copy of Full");
  EXPECT_EQ(clone->Details.CoolingEqpt.Equipment(2).EquipmentID, 2);
  clone->Save(CCM_ALL);
  EXPECT_EQ(links(2).substr(0, 11), "systems 1 3");
}

}  // namespace
}  // namespace tarn
