#include "tarn/building.h"

#include <cstring>

#include "project/defaults.h"
#include "support/temp_project.h"
#include "tarn/air_system.h"
#include "tarn/plant.h"
#include "tarn/reflect/by_name.h"
#include "tarn/schedule.h"
#include "tarn/utility_rate.h"

namespace tarn {
namespace {

using test::what_of;

constexpr size_t kEnds[]{65, 1707, 32'975, 313'295};

class BuildingTest : public test::ProjectTest {
 protected:
  Ptr<BLD_Building> loaded(int16_t index, int32_t mask = FS_ALL) {
    auto building = project.NewBuilding();
    building->Load(mask, index);
    return building;
  }
  /// One of each of what a building may use, under index 1.
  void add_library() {
    database->Execute("INSERT INTO AirSystemIndex (nIndex, bDesHasChanged, bSimHasChanged) VALUES (1, 0, 0)");
    database->Execute("INSERT INTO PlantIndex (nIndex, bDesHasChanged, bSimHasChanged) VALUES (1, 0, 0)");
    project.NewSchedule()->Save();
    project.NewElectricRate()->Save();
    project.NewFuelRate()->Save();
  }
  Ptr<BLD_Building> full_building(const std::string& name) {
    auto building = project.NewBuilding();
    building->GetBuildingGeneral()->Name = name;
    auto inputs = building->GetBuildingInputs();
    inputs->SystemID(250) = 1;
    inputs->SystemMult(250) = 7;
    inputs->SystemMult(3) = 2;
    inputs->PlantID(100) = 1;
    inputs->MESchedule(10) = 1;
    inputs->UtilityRate(2) = 1;
    inputs->UtilityRate(8) = 1;
    building->GetBuildingResults()->TotClgLoad = 5;
    building->GetBuildingProfile(8)->Power(8760) = 1.5F;
    return building;
  }
  static std::string uses(BLD_Building& building) {
    auto in = building.GetBuildingInputs();
    std::string text;
    for (const int id : {+in->SystemID(250), +in->SystemMult(250), +in->SystemMult(3), +in->PlantID(100),
                         +in->MESchedule(10), +in->UtilityRate(2), +in->UtilityRate(8)})
      text += std::to_string(id);
    return text;
  }
  std::string file(int index = 1) { return test::bytes_of(folder / ("JOBB0" + std::to_string(index) + ".DAT")); }
  std::string flags() {
    auto row = database->OpenRecordset("SELECT * FROM BuildingIndex WHERE nIndex = 1");
    return std::to_string(row.Fields("bSimulated").integer()) + std::to_string(row.Fields("bHasChanged").integer());
  }
  std::string links(int building) {
    std::string text;
    for (const std::string kind : {"System", "Plant", "Schedule", "ElectricRate", "FuelRate"}) {
      auto found = database->OpenRecordset("SELECT " + kind + "_ID AS ID FROM Building_" + kind +
                                           "_Links WHERE Building_ID = " + std::to_string(building));
      text += (text.empty() ? "" : " ") + kind;
      for (; !found.AtEof(); found.MoveNext()) text += std::to_string(found.Fields("ID").integer());
    }
    return text;
  }
};

TEST_F(BuildingTest, RecordsLieAsTheFileHasThem) {
  auto building = full_building("B");
  EXPECT_EQ(test::layout(building->GetBuildingInputs()->info()),
            "SystemID@0+500 SystemMult@500+500 PlantID@1000+200 MEProcess@1200+20 MEName@1220+300 METype@1520+20 "
            "MEMaxPower@1540+40 MESchedule@1580+20 UtilityRate@1600+16 ElecCompMeter@1616+14 BldgPowerFactor@1630+4 "
            "AddBldgFloorArea@1634+4 ElecGenEfficiency@1638+4 ");
  EXPECT_EQ(building->GetBuildingGeneral()->GetDataLen(), 65);
  EXPECT_EQ(building->GetBuildingInputs()->GetDataLen(), 1642);
  EXPECT_EQ(building->GetBuildingProfile(1)->GetDataLen(), 35'040);
  auto inputs = building->GetBuildingInputs();
  inputs->MEName(10) = "Lift";
  inputs->MEProcess(10) = true;
  inputs->METype(10) = BLD_PowerTypes::PT_PROPANE;
  inputs->MEMaxPower(10) = 0.5F;
  inputs->ElecCompMeter(7) = BLD_PowerProfiles::PP_ELEC_METER2;
  inputs->ElecGenEfficiency = 0.5F;
  building->Save(FS_ALL, true);
  const std::string bytes = file(), half("\0\0\0\x3F", 4);
  ASSERT_EQ(bytes.size(), kEnds[3]);
  EXPECT_EQ(bytes.substr(0, 47), "B" + std::string(44, ' ') + std::string(2, '\0'));
  const struct {
    size_t at;
    std::string bytes;
  } cases[]{{498, std::string("\1\0", 2)},
            {998, std::string("\7\0", 2)},
            {1198, std::string("\1\0\0\0", 4)},
            {1218, "\xFF\xFF"},
            {1490, "Lift" + std::string(26, ' ') + std::string(2, '\0')},
            {1538, std::string("\4\0", 2)},
            {1576, half},
            {1598, std::string("\1\0\0\0\1\0", 6)},
            {1614, std::string("\1\0", 2)},
            {1628, std::string("\2\0", 2)},
            {1638, half}};
  for (const auto& c : cases) EXPECT_EQ(bytes.substr(65 + c.at, c.bytes.size()), c.bytes) << c.at;
  EXPECT_EQ(bytes.substr(kEnds[3] - 4), std::string("\0\0\xC0\x3F", 4));
  for (const auto& [name, at] :
       {std::pair("SystemID", 251), {"SystemMult", 0}, {"PlantID", 0}, {"MEName", 11}, {"UtilityRate", 9}})
    EXPECT_EQ(test::error_number([&, n = name, a = at] { get_property(*inputs, n, std::array{a}); }), 9) << name;
  EXPECT_EQ(test::error_number([&] { get_property(*building->GetBuildingProfile(8), "Power", std::array{8761}); }), 9);
  for (const int meter : {0, 9})
    EXPECT_EQ(test::error_number([&] { building->GetBuildingProfile(static_cast<int16_t>(meter)); }), 9) << meter;
}

TEST_F(BuildingTest, FilesAreNamedByTheIndex) {
  for (const auto& [index, name] : {std::pair(1, "01"), {10, "0A"}, {11, "0B"}, {255, "FF"}, {256, "100"}}) {
    project.NewBuilding()->SaveAs(static_cast<int16_t>(index), Naming::Valid);
    EXPECT_TRUE(std::filesystem::exists(folder / (std::string("JOBB") + name + ".DAT"))) << index;
    EXPECT_EQ(loaded(static_cast<int16_t>(index))->GetBuildingGeneral()->Name.trimmed(),
              "Building  " + std::to_string(index));
  }
  auto nowhere = project.NewBuilding();
  nowhere->FilePrefix.clear();
  EXPECT_EQ(what_of([&] { nowhere->Save(FS_ALL); }), "The building has no file name; set its WorkPath and FilePrefix.");
  EXPECT_EQ(nowhere->Index(), 0);
  EXPECT_EQ(count("BuildingIndex"), 5);
}

TEST_F(BuildingTest, WithoutGeneralDataNameAndSimulatedAreThoseOfTheRow) {
  add_library();
  const auto simulated = full_building("File");
  simulated->GetBuildingGeneral()->Simulated = true;
  simulated->Save(FS_ALL, true);
  database->Execute("UPDATE BuildingIndex SET szName = 'Row', bSimulated = 0 WHERE nIndex = 1");
  for (int32_t mask = 0; mask <= FS_ALL; ++mask) {
    const auto building = loaded(1, mask);
    const bool from_file = (mask & FS_STANDARD) != 0;
    EXPECT_EQ(building->GetBuildingGeneral()->Name.trimmed(), from_file ? "File" : "Row") << mask;
    EXPECT_EQ(bool{building->GetBuildingGeneral()->Simulated}, from_file) << mask;
  }
}

TEST_F(BuildingTest, TheMaskSaysWhichSectionsAreReadAndWritten) {
  add_library();
  for (int32_t mask = 0; mask <= FS_ALL; ++mask) {
    full_building("B")->Save(FS_ALL);
    const std::string before = file();
    auto part = loaded(1, mask);
    EXPECT_EQ(part->GetBuildingGeneral()->Name.trimmed(), "B") << mask;
    EXPECT_EQ(uses(*part), (mask & 2) != 0 ? "1721111" : "0000000") << mask;
    EXPECT_EQ(part->GetBuildingResults()->TotClgLoad, (mask & FS_SIMRESULTS) != 0 ? 5 : 0) << mask;
    EXPECT_EQ(part->GetBuildingProfile(8)->Power(8760), (mask & FS_POWERPROFILE) != 0 ? 1.5F : 0) << mask;

    auto whole = loaded(1);
    whole->GetBuildingGeneral()->Name = "C";
    whole->GetBuildingInputs()->SystemMult(1) = 9;
    whole->GetBuildingInputs()->PlantID(100) = 0;
    whole->GetBuildingResults()->TotHtgLoad = 9;
    whole->GetBuildingProfile(1)->Power(1) = 9;
    whole->Save(mask, (mask & 1) != 0);
    const std::string after = file();
    ASSERT_EQ(after.size(), kEnds[3]) << mask;
    EXPECT_NE(after[0], before[0]);
    const int bits[]{1, 2, FS_SIMRESULTS, FS_POWERPROFILE};
    for (size_t section = 1; section < 4; ++section) {
      const size_t at = kEnds[section - 1], size = kEnds[section] - at;
      EXPECT_EQ(after.substr(at, size) != before.substr(at, size), (mask & bits[section]) != 0) << mask << section;
    }
    EXPECT_EQ(links(1), (mask & 2) != 0 ? "System1 Plant Schedule1 ElectricRate1 FuelRate1"
                                        : "System1 Plant1 Schedule1 ElectricRate1 FuelRate1")
        << mask;
    whole->Delete();
  }
}

TEST_F(BuildingTest, SectionsMayBeLoadedOneAfterTheOther) {
  add_library();
  full_building("B")->Save(FS_ALL);
  full_building("C")->Save(FS_STANDARD);
  auto building = loaded(1, FS_STANDARD);
  building->Load(FS_SIMRESULTS, 1);
  building->Load(FS_POWERPROFILE, 1);
  building->Load(FS_HEADERONLY, 1);
  EXPECT_EQ(uses(*building), "1721111");
  EXPECT_EQ(building->GetBuildingResults()->TotClgLoad, 5);
  EXPECT_EQ(building->GetBuildingProfile(8)->Power(8760), 1.5F);
  const std::string before = file();
  building->Save(FS_ALL);
  EXPECT_TRUE(file() == before);
  building->Load(FS_HEADERONLY, 2);
  EXPECT_EQ(uses(*building) + std::to_string(building->GetBuildingResults()->TotClgLoad), "00000000.000000")
      << "nothing of another building";
  const std::string other = file(2);
  EXPECT_EQ(what_of([&] { building->Save(FS_STANDARD); }),
            "BuildingInputs is selected but was not loaded, and a save would empty it in the file. Load it first, or "
            "leave it out of the mask.");
  EXPECT_TRUE(file(2) == other && links(2) == links(1));
  building->Save(FS_HEADERONLY | FS_SIMRESULTS);
  EXPECT_TRUE(file(2) == other) << "results that are not there take no room";
}

TEST_F(BuildingTest, EachReferenceIsClearedWhenItsLinkIsGone) {
  add_library();
  full_building("B")->Save(FS_ALL);
  const struct {
    const char *kind, *left, *of_inputs;
    std::function<void()> remove;
  } cases[]{{"System", "0021111", "SystemID(250)", [&] { project.NewAirSystem()->Delete(1); }},
            {"Plant", "1720111", "PlantID(100)", [&] { project.NewPlant()->Delete(1); }},
            {"Schedule", "1721011", "MESchedule(10)", [&] { project.NewSchedule()->Delete(1); }},
            {"ElectricRate", "1721101", "UtilityRate(2)", [&] { project.NewElectricRate()->Delete(1); }},
            {"FuelRate", "1721110", "UtilityRate(8)", [&] { project.NewFuelRate()->Delete(1); }}};
  for (const auto& c : cases) {
    const auto open = loaded(1);
    {
      Transaction undone;
      database->Execute("DELETE FROM Building_" + std::string(c.kind) + "_Links");
      log.messages.clear();
      const auto lost = loaded(1);
      EXPECT_EQ(uses(*lost), c.left) << c.kind;
      EXPECT_EQ(log.messages,
                std::vector<std::string>{
                    "Building 1, BuildingInputs." + std::string(c.of_inputs) + ": " + c.kind +
                    " 1 exists, but the link row that leads to it is missing. The reference reads "
                    "as 0; the record still has it, and the next save, or 'tarn project repair', puts both back."});
      EXPECT_EQ(uses(*loaded(1, FS_HEADERONLY)), "0000000") << "not read, not looked up";
      const std::string linked = uses(*open);
      lost->Save(FS_ALL);
      EXPECT_EQ(uses(*lost) + uses(*loaded(1)), linked + linked) << "lists that closed up too";
    }
    Transaction undone;
    c.remove();
    open->Save(FS_ALL);
    EXPECT_EQ(uses(*open), c.left) << "loaded before " << c.kind << " was deleted";
    EXPECT_EQ(count("Building_" + std::string(c.kind) + "_Links"), 0);
  }
}

TEST_F(BuildingTest, MetersWithoutARateAreNotLookedUp) {
  add_library();
  auto building = full_building("B");
  building->Save(FS_ALL);
  for (const bool fuel : {false, true}) {
    Transaction undone;
    building->GetBuildingInputs()->UtilityRate(2) = fuel ? 1 : 0;
    building->GetBuildingInputs()->UtilityRate(8) = fuel ? 0 : 1;
    building->Save(FS_ALL);
    full_building("C")->Save(FS_ALL);
    database->Execute(std::string("DROP TABLE ") + (fuel ? "Building_FuelRate_Links" : "Building_ElectricRate_Links"));
    EXPECT_EQ(uses(*loaded(1)), fuel ? "1721110" : "1721101");
    EXPECT_NE(what_of([&] { loaded(2); }), "no error");
  }
}

TEST_F(BuildingTest, LinkRowsFollowTheInputs) {
  add_library();
  auto building = full_building("B");
  building->Save(FS_ALL);
  link(
      "Building_System_Links (1, 8); Building_System_Links (1, 1); Building_FuelRate_Links (1, 9); "
      "Building_Plant_Links (2, 1)");
  auto inputs = building->GetBuildingInputs();
  inputs->SystemID(1) = inputs->SystemID(2) = 1;
  inputs->UtilityRate(1) = 1;
  inputs->UtilityRate(8) = 0;
  inputs->MESchedule(10) = 0;
  building->Save(FS_ALL);
  EXPECT_EQ(links(1), "System1 Plant1 Schedule ElectricRate1 FuelRate");
  EXPECT_EQ(links(2), "System Plant1 Schedule ElectricRate FuelRate");
  inputs->PlantID(100) = 0;
  building->Save(FS_HEADERONLY);
  EXPECT_EQ(links(1), "System1 Plant1 Schedule ElectricRate1 FuelRate") << "the file's inputs still name it";
}

TEST_F(BuildingTest, OnlyACalculationTakesTheChangedFlagAway) {
  auto building = project.NewBuilding();
  const auto save = [&](bool simulated, bool changed, std::optional<bool> after) {
    building->GetBuildingGeneral()->Simulated = simulated;
    building->HasChanged = changed;
    building->Save(FS_ALL, after);
    return flags();
  };
  EXPECT_EQ(save(true, false, {}), "0-1");
  EXPECT_EQ(save(true, false, true), "-10");
  EXPECT_TRUE(loaded(1)->GetBuildingGeneral()->Simulated && !loaded(1)->HasChanged);
  EXPECT_EQ(save(true, true, true), "-1-1");
  EXPECT_EQ(save(true, false, false), "0-1");
  EXPECT_TRUE(!loaded(1)->GetBuildingGeneral()->Simulated && loaded(1)->HasChanged);
  EXPECT_EQ(save(true, false, true), "-10");
  database->Execute("UPDATE BuildingIndex SET bHasChanged = -1");
  EXPECT_TRUE(loaded(1, FS_HEADERONLY)->HasChanged) << "the row alone keeps it";
}

TEST_F(BuildingTest, ASaveTellsAndMarksNothingElse) {
  add_library();
  add_dependants();
  link("Building_System_Links (6, 4); Plant_System_Links (5, 4)");
  auto building = full_building("B");
  int told = 0;
  building->OnUpdateDependencies.listener = [&](bool&) { ++told; };
  building->Save(FS_ALL);
  building->Save(FS_HEADERONLY, true);
  building->Delete();
  EXPECT_EQ(told, 3);
  EXPECT_EQ(marked(), "");
  EXPECT_EQ(count("AirSystemIndex WHERE bSimHasChanged = -1 OR bDesHasChanged = -1"), 0);
}

TEST_F(BuildingTest, ADeleteTakesItsRowsAndItsFile) {
  add_library();
  full_building("B")->Save(FS_ALL);
  full_building("C")->Save(FS_ALL);
  auto building = project.NewBuilding();
  building->Delete(1);
  EXPECT_EQ(building->Index(), 0);
  EXPECT_EQ(links(1), "System Plant Schedule ElectricRate FuelRate");
  EXPECT_EQ(links(2), "System1 Plant1 Schedule1 ElectricRate1 FuelRate1");
  EXPECT_EQ(count("BuildingIndex WHERE nIndex = 2") + 2 * count("BuildingIndex WHERE nIndex = 1"), 1);
  EXPECT_FALSE(std::filesystem::exists(folder / "JOBB01.DAT"));
  EXPECT_TRUE(std::filesystem::exists(folder / "JOBB02.DAT"));
  EXPECT_EQ(building->GetFreeIndex(), 1);
  EXPECT_TRUE(building->IsNameUnique("B") && !building->IsNameUnique("C"));
  building->Load(FS_ALL, 2);
  for (const int32_t missing : {1, 0, -1, 65538}) {
    EXPECT_EQ(what_of([&] { building->Load(FS_ALL, missing); }), "Invalid building ID: " + std::to_string(missing));
    EXPECT_EQ(building->GetBuildingGeneral()->Name.trimmed() + uses(*building), "C1721111");
  }
  test::remove_file(folder / "JOBB02.DAT");
  EXPECT_EQ(what_of([&] { loaded(2); }), "Building file not found: " + project.WorkPath() + "/JOBB02.DAT.");
}

TEST_F(BuildingTest, AFileCutAtAnyByteIsWholeOrAnError) {
  add_library();
  full_building("B")->Save(FS_ALL);
  const std::string path = folder / "JOBB01.DAT", bytes = file();
  auto other = full_building("Other");
  const std::string state = uses(*other);
  std::vector<size_t> whole;
  for (size_t size = 0; size <= kEnds[2];
       size += size < 2000 || size == kEnds[2] - 1 ? 1 : std::min<size_t>(101, kEnds[2] - 1 - size)) {
    test::write_bytes(path, bytes.substr(0, size));
    const std::string said = what_of([&] { other->Load(FS_ALL, 1); });
    if (said == "no error") {
      whole.push_back(size);
      other = full_building("Other");
      continue;
    }
    const char* says = size < kEnds[0]    ? " is cut inside its header: "
                       : size == kEnds[0] ? " ends before BuildingInputs, though "
                                          : " ends inside a section, at byte ";
    if (said.find(says) == std::string::npos) ADD_FAILURE() << size << ": " << said;
    if (uses(*other) != state || other->Index() != 0 || other->GetBuildingGeneral()->Name.trimmed() != "Other" ||
        other->GetBuildingResults()->TotClgLoad != 5)
      ADD_FAILURE() << size << " changed the object";
  }
  EXPECT_EQ(whole, std::vector<size_t>(kEnds + 1, kEnds + 3));
}

TEST_F(BuildingTest, AFailedSaveLeavesRowsLinksAndFile) {
  add_library();
  full_building("B")->Save(FS_ALL);
  for (const bool adds : {false, true}) {
    const std::string before = file(), table = rows("BuildingIndex"), linked = links(1);
    for (int operation = 0;; ++operation) {
      auto building = adds ? full_building("New") : loaded(1);
      building->GetBuildingGeneral()->Name = "Changed";
      building->GetBuildingInputs()->PlantID(100) = 0;
      const int16_t index = building->Index();
      bool done;
      {
        test::FaultyFiles faulty(operation);
        done = test::error_number([&] { building->Save(FS_ALL); }) == 0;
      }
      if (done) break;
      EXPECT_TRUE(file() == before && rows("BuildingIndex") == table && links(1) == linked) << adds << operation;
      EXPECT_FALSE(std::filesystem::exists(folder / "JOBB02.DAT")) << operation;
      EXPECT_EQ(building->Index(), index) << operation;
      ASSERT_LT(operation, 100);
    }
    EXPECT_EQ(loaded(adds ? 2 : 1)->GetBuildingGeneral()->Name.trimmed(), "Changed");
  }
}

TEST_F(BuildingTest, AFileThatLacksWhatFlagsOrLinksTellOfIsAnError) {
  add_library();
  auto building = full_building("B");
  building->GetBuildingGeneral()->Simulated = true;
  building->Save(FS_ALL, true);
  const std::string path = folder / "JOBB01.DAT", whole = file(), linked = links(1);
  const struct {
    size_t cut;
    int32_t mask;
    bool flagged;
    const char* says;  // null: it loads
  } cases[]{{kEnds[0], FS_STANDARD, true, " ends before BuildingInputs, though Building 1 has link rows of kind "},
            {kEnds[0], FS_HEADERONLY, true, nullptr},
            {kEnds[1], FS_ALL, true, " has no results, though bSimulated says that they are there."},
            {kEnds[1], FS_ALL, false, " has no results, though bSimulated says that they are there."},
            {kEnds[1], FS_STANDARD, true, nullptr},
            {kEnds[2], FS_ALL, true, nullptr}};
  for (const auto& c : cases) {
    std::string bytes = whole.substr(0, c.cut);
    if (!c.flagged) bytes.replace(45, 2, 2, '\0');  // the row tells it as well
    test::write_bytes(path, bytes);
    const std::string said = what_of([&] { loaded(1, c.mask); });
    EXPECT_EQ(said.find(c.says ? path + c.says : "no error"), 0U) << said;
    EXPECT_EQ(links(1), linked);
  }
  test::write_bytes(path, whole.substr(0, kEnds[1]));
  auto inputs = loaded(1, FS_STANDARD);
  inputs->Save(FS_STANDARD);
  EXPECT_EQ(uses(*loaded(1)), "1721111") << "not simulated any more, it loads";
  auto fresh = project.NewBuilding();
  fresh->Save(FS_HEADERONLY);
  EXPECT_EQ(file(2).size(), kEnds[0]);
  EXPECT_EQ(uses(*loaded(2)), "0000000") << "made so, it is whole";
}

TEST_F(BuildingTest, DefaultsAreAFileOfTheirOwn) {
  write_default_records(project);
  auto building = project.NewBuilding();
  building->CreateDefault();
  EXPECT_EQ(building->GetBuildingGeneral()->Name.trimmed(), "Default Building");
  building->GetBuildingInputs()->SystemID(4) = 9;
  building->GetBuildingInputs()->SystemMult(4) = 3;
  building->SaveDefault();
  auto other = full_building("B");
  other->CreateDefault();
  EXPECT_EQ(other->GetBuildingInputs()->SystemID(4) + other->GetBuildingInputs()->SystemMult(4), 0)
      << "of no system that is there";
  EXPECT_EQ(other->GetBuildingResults()->TotClgLoad + other->GetBuildingProfile(8)->Power(8760), 0);
  EXPECT_EQ(other->Index(), 0);
  other->DefFileName = "/nowhere/B00.DAT";
  EXPECT_EQ(what_of([&] { other->CreateDefault(); }), "Default building file not found: /nowhere/B00.DAT.");
}

}  // namespace
}  // namespace tarn
