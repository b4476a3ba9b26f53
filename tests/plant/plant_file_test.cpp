#include "plant/plant_case.h"
#include "project/defaults.h"
#include "tarn/shipped.h"

namespace tarn {
namespace {

constexpr size_t kEnds[]{178, 1180, 5604, 10260, 14868, 15316, 50356};  // of the sections before the hourly one

using test::what_of;
using PlantFileTest = test::PlantCase;

TEST_F(PlantFileTest, TheFileHasItsSectionsInOrder) {
  auto plant = new_plant("P");
  plant->General.SetFlags();  // four outputs
  plant->SystemSelect.SystemMultiplier(1) = 2;
  plant->Details.RemoteHXEff = 1;
  plant->Details.HeatRecEqpt.SetNumEquipment(50);
  for (int i = 1; i <= 50; ++i) {
    plant->Details.HeatRecEqpt.Equipment(i).LibraryID = COM_ProjectLibrary::LIB_BOILERS;
    plant->Details.HeatRecEqpt.Equipment(i).EquipmentID = 9;
  }
  plant->Details.HeatRecEqpt.Equipment(50).SizingShare = 2;
  plant->Details.SourceWaterLoop.PipeHeatGainFactor2 = 3;
  plant->Details.SourceWaterLoop.Pumps(13).ElectricalEff = 4;
  plant->ServiceHotWaterDetails.RecirculationLoss = 5;
  plant->ServiceHotWaterDetails.Pump.ElectricalEff = 6;
  plant->SizingLoadsHtg.SystemLoad(250) = 7;
  plant->EqptSizingResults.PumpPower(13, 8) = 8;
  plant->DesignProfile.OutdoorWetBulb(12, 24) = 9;
  plant->UnmetLoadsHtg.CapDeficientOver10(12) = 10;
  plant->LEEDUnmetLoadsHtg.Status(8760) = true;
  plant->HourlySimData.Resize(4);
  plant->HourlySimData.Item(4)->HourlyResult(8760) = 11;
  plant->Save(CCM_ALL);
  const std::string bytes = test::bytes_of(folder / "JOBP01.DAT");
  ASSERT_EQ(bytes.size(), kEnds[6] + 4 * 35040);
  const auto real_before = [&](size_t end) {
    float value;
    std::memcpy(&value, bytes.data() + end - 4, 4);
    return value;
  };
  const struct {
    size_t end;
    float value;
  } cases[]{{1180 + 66, 1},                 // details
            {1180 + 66 + 88 + 3 * 602, 2},  // configurations, lists
            {5604 - 20 - 92 - 260, 3},      // the last loop
            {5604 - 20 - 92, 4},            // its pumps
            {5604 - 20, 5},                 // service hot water
            {5604, 6},
            {10260 - 2432, 7},
            {10260, 8},
            {14868, 9},
            {15316, 10},
            {50356 + 4 * 35040, 11}};
  for (const auto& c : cases) EXPECT_EQ(real_before(c.end), c.value) << c.end;
  EXPECT_EQ(bytes.substr(50354, 2), "\xFF\xFF");
  EXPECT_EQ(bytes.substr(0, 6) + bytes[30] + bytes[36], "P     \x04\x04");
  EXPECT_EQ(plant->Details.SourceWaterLoop.Pumps(13).Name(), "SourceWaterLoop Pump 13");
}

TEST_F(PlantFileTest, ResultsThatHoldNothingTakeNoRoom) {
  auto plant = new_plant("P");
  plant->Save(CCM_ALL);
  EXPECT_EQ(std::filesystem::file_size(plant->FileName()), kEnds[2]);
  plant->UnmetLoadsClg.CapSufficient(1) = 744;
  plant->Save(CCM_UNMETLOADS);
  EXPECT_EQ(std::filesystem::file_size(plant->FileName()), kEnds[5]) << "what lies before has its place";
  EXPECT_EQ(loaded(1)->UnmetLoadsClg.CapSufficient(1), 744);
  std::optional<bool> after = true;
  plant->Save(CCM_ALL, after);
  EXPECT_EQ(std::filesystem::file_size(plant->FileName()), kEnds[6]);
}

TEST_F(PlantFileTest, SectionsThatTheMaskLeavesOutAreCarriedOver) {
  add_library();
  auto plant = full_plant();
  plant->DesignProfile.CoolingLoad(1, 1) = 5;
  plant->Save(CCM_ALL);
  auto part = loaded(1, CCM_HEADER);
  EXPECT_EQ(part->Details.TowerID, 0);
  part->General.Name = "Renamed";
  part->UnmetLoadsClg.CapSufficient(2) = 1;
  part->Save(CCM_UNMETLOADS);
  EXPECT_EQ(links(1),
            "systems 1 3; library 10 1 2; library 20 2; chillers 1 2; boilers 2; towers 1 2 3; schedules 1 2 3");
  auto whole = loaded(1);
  EXPECT_EQ(whole->General.Name.trimmed(), "Renamed") << "the header is always handled";
  EXPECT_EQ(whole->Details.TowerID, 3);
  EXPECT_EQ(whole->DesignProfile.CoolingLoad(1, 1), 5);
  EXPECT_EQ(whole->UnmetLoadsClg.CapSufficient(2), 1);
  whole->Details.TowerID = 0;
  whole->SystemSelect.SystemID(1) = 2;
  whole->Save(CCM_DETAILS);
  EXPECT_EQ(links(1),
            "systems 1 3; library 10 1 2; library 20 2; chillers 1 2; boilers 2; towers 1 2; schedules 1 2 3");
  EXPECT_EQ(loaded(1)->SystemSelect.SystemID(1), 1);
}

TEST_F(PlantFileTest, AUsersSaveLeavesResultsThatItNeverLoaded) {
  auto plant = new_plant("P");
  plant->UnmetLoadsClg.CapSufficient(1) = 5;
  plant->DesignProfile.CoolingLoad(1, 1) = 6;
  plant->Save(CCM_ALL);
  auto part = loaded(1, CCM_DESCRIPTIVE_DATA);
  part->DesignProfile.CoolingLoad(1, 1) = 7;
  part->Save(CCM_ALL);
  auto whole = loaded(1);
  EXPECT_EQ(whole->UnmetLoadsClg.CapSufficient(1), 5);
  EXPECT_EQ(whole->DesignProfile.CoolingLoad(1, 1), 7);
  part->Load(CCM_HEADER, 1);
  std::optional<bool> after = true;
  part->Save(CCM_UNMETLOADS, after);
  EXPECT_EQ(loaded(1)->UnmetLoadsClg.CapSufficient(1), 0) << "an engine's results are what it has";
}

TEST_F(PlantFileTest, HourlyResultsStayWithTheirOutputs) {
  auto plant = new_plant("P");
  plant->General.SetFlags();
  plant->HourlySimData.Resize(plant->General.NumOutputs);
  plant->Save(CCM_ALL);
  std::optional<bool> after = true;
  plant->Save(CCM_ALL, after);
  plant->Save(CCM_DETAILS);
  EXPECT_EQ(std::filesystem::file_size(plant->FileName()), kEnds[6] + 4 * 35040);
  plant->Details.FreeCoolingType = PLT_FreeCoolingTypes::FCT_STRAINER_CYCLE;
  plant->General.SetFlags();
  EXPECT_NE(what_of([&] { plant->Save(CCM_DETAILS, after); }).find("not selected by the mask"), std::string::npos);
  plant->Save(CCM_DETAILS);
  EXPECT_EQ(std::filesystem::file_size(plant->FileName()), kEnds[6]);
  EXPECT_EQ(loaded(1)->General.NumOutputs, 5);
  auto other = new_plant("Q");
  other->Save(CCM_ALL);
  plant->Load(CCM_HEADER, 2);
  EXPECT_EQ(plant->Details.FreeCoolingType.raw, 0) << "nothing of another plant stays";
  EXPECT_EQ(what_of([&] { plant->General.SetFlags(); }),
            "The outputs depend on Details, which were not loaded. Load them first.");
}

TEST_F(PlantFileTest, AFailedLoadKeepsTheResultsToo) {
  for (const char* name : {"A", "B"}) {
    auto plant = new_plant(name);
    plant->UnmetLoadsClg.CapSufficient(1) = *name;
    plant->Save(CCM_ALL);
  }
  std::string bytes = test::bytes_of(folder / "JOBP02.DAT");
  bytes[178] = '\x7F', bytes[179] = '\x7F';
  test::write_bytes(folder / "JOBP02.DAT", bytes);
  auto plant = loaded(1);
  EXPECT_NE(what_of([&] { plant->Load(CCM_ALL, 2); }), "no error");
  EXPECT_EQ(plant->UnmetLoadsClg.CapSufficient(1), 'A');
  EXPECT_EQ(plant->Index(), 1);
}

TEST_F(PlantFileTest, OnlyACalculationTakesAChangedFlagAway) {
  auto plant = new_plant("P");
  plant->Save(CCM_ALL);
  EXPECT_EQ(flags(1), "0011");
  std::optional<bool> after = true;
  plant->General.Sized = true;
  plant->DesHasChanged = false;
  plant->Save(CCM_PLANTSIZING, after);
  EXPECT_EQ(flags(1), "1001");
  auto other = loaded(1);
  EXPECT_EQ(other->SimHasChanged && !other->DesHasChanged && other->General.Sized, true);
  other->SimHasChanged = false;
  other->General.Simulated = true;
  other->Save(CCM_UNMETLOADS, after);
  EXPECT_EQ(flags(1), "1100");
  other->Save(CCM_DETAILS);
  EXPECT_EQ(flags(1), "0011") << "a user's edit";
  EXPECT_EQ(std::filesystem::file_size(other->FileName()), kEnds[5]) << "the results stay, stale";
}

TEST_F(PlantFileTest, AFileCutAtAnyByteIsWholeOrAnError) {
  auto plant = new_plant("P");
  plant->General.PlantType = PLT_PlantTypes::PT_GENERIC_SERVICEHW;  // two outputs
  plant->General.SetFlags();
  plant->HourlySimData.Resize(plant->General.NumOutputs);
  plant->HourlySimData.Item(2)->HourlyResult(8760) = 1;
  plant->Save(CCM_ALL);
  std::vector<size_t> whole;
  const auto target = project.NewPlant();
  for (size_t size = std::filesystem::file_size(plant->FileName()); size-- > 0;) {
    std::filesystem::resize_file(plant->FileName(), size);
    const std::string said = what_of([&] { target->Load(CCM_ALL, 1); });
    if (said == "no error")
      whole.push_back(size);
    else if (said.find(size < kEnds[0] ? " is cut inside its header: " : " ends inside a section, at byte ") ==
             std::string::npos)
      ADD_FAILURE() << size << ": " << said;
  }
  EXPECT_EQ(whole, std::vector<size_t>(std::rbegin(kEnds), std::rend(kEnds)));
}

TEST_F(PlantFileTest, AFileThatLacksWhatFlagsOrLinksTellOfIsAnError) {
  add_library();
  auto plant = full_plant();
  std::optional<bool> after = true;
  plant->General.Sized = plant->General.Simulated = true;
  plant->Save(CCM_ALL, after);
  const std::string path = plant->FileName(), whole = test::bytes_of(path), linked = links(1);
  const struct {
    size_t cut;
    int32_t mask;
    const char* says;
  } cases[]{{kEnds[0], CCM_SYSTEM_SELECT, " ends before SystemSelect, though Plant 1 has link rows of kind System."},
            {kEnds[0], CCM_DETAILS, " ends before Details, though Plant 1 has link rows of kind "},
            {kEnds[0], CCM_HEADER, nullptr},
            {kEnds[1], CCM_SYSTEM_SELECT, nullptr},
            {kEnds[2], CCM_ALL, " has no results, though bSized says"},
            {kEnds[3], CCM_ALL, " has no results, though bSimulated says"},
            {kEnds[3], CCM_PLANTSIZING, nullptr},
            {kEnds[5], CCM_ALL, nullptr}};
  for (const auto& c : cases) {
    test::write_bytes(path, whole.substr(0, c.cut));
    const std::string said = what_of([&] { loaded(1, c.mask); });
    EXPECT_EQ(said.find(c.says ? path + c.says : "no error"), 0U) << c.cut << " " << c.mask << " " << said;
    EXPECT_EQ(links(1), linked);
  }
}

TEST_F(PlantFileTest, CountsOutOfSenseAreRefused) {
  auto plant = new_plant("P");
  plant->Save(CCM_ALL);
  const std::string good = test::bytes_of(plant->FileName());
  const size_t lists = 1180 + 66 + 88, loops = lists + 3 * 602;
  const struct {
    size_t at;
    int16_t value;
    const char* says;
  } cases[]{{36, 71, "71 outputs; allowed are 0 to 70"},
            {36, -1, "-1 outputs"},
            {178, 251, "251 systems; allowed are 0 to 250"},
            {178, -1, "-1 systems"},
            {lists, 51, "51 pieces in CoolingEqpt; allowed are 0 to 50"},
            {lists + 2 * 602, -1, "-1 pieces in HeatRecEqpt"},
            {loops + 2, 14, "14 pumps in ChilledWaterPrimaryLoop; allowed are 0 to 13"},
            {loops + 7 * 294 + 2, -1, "-1 pumps in SourceWaterLoop"}};
  for (const auto& c : cases) {
    std::string bytes = good;
    std::memcpy(bytes.data() + c.at, &c.value, 2);
    test::write_bytes(plant->FileName(), bytes);
    EXPECT_NE(what_of([&] { plant->Load(CCM_ALL, 1); }).find(plant->FileName() + " says that it has " + c.says),
              std::string::npos)
        << c.says;
    EXPECT_EQ(plant->General.Name.trimmed() + std::to_string(plant->General.NumOutputs), "P0");
    EXPECT_EQ(plant->Details.CoolingEqpt.NumEquipment(), 0);
  }
}

TEST_F(PlantFileTest, DefaultsAreFilesOfTheirOwn) {
  write_default_records(project);
  EXPECT_EQ(test::bytes_of(project.PlantDefaultFilename()), test::bytes_of(shipped_file("plant.dat")));
  auto plant = project.NewPlant();
  plant->UnmetLoadsClg.CapSufficient(1) = 1;
  plant->CreateDefault();
  EXPECT_EQ(plant->General.Name.trimmed(), "Default Plant");
  EXPECT_EQ(plant->Details.ConfigCooling.DesignLWT, 44);
  EXPECT_EQ(plant->Details.CondenserWaterLoop.NumPumps(), 1);
  EXPECT_EQ(plant->UnmetLoadsClg.CapSufficient(1), 0);
  plant->SetType(PLT_PlantTypes::PT_HOT_WATER);
  std::string used;
  for (const PLT_PumpLoop* loop : plant->Details.loops()) used += loop->Used ? "1" : "0";
  EXPECT_EQ(used, "00100000");
  const auto side = [](const ConfigurationRecord& c) {
    return std::to_string(c.SizingMethod.raw) + " " + std::to_string(int{c.SizingFactor}) + " " +
           std::to_string(static_cast<int>(float{c.DesignLWT})) + " " + std::to_string(int{c.LWTControl.raw});
  };
  EXPECT_EQ(side(plant->Details.ConfigCooling) + ", " + side(plant->Details.ConfigHeating), "10 0 0 1, 30 100 180 2");
  EXPECT_FALSE(plant->Details.HeatRecoveryUsed);
  plant->CreateDefault();
  plant->SetType(PLT_PlantTypes::PT_STEAM_BOILER);
  EXPECT_EQ(side(plant->Details.ConfigCooling) + ", " + side(plant->Details.ConfigHeating), "10 0 0 1, 30 100 0 1");
  plant->CreateDefault();
  plant->SetType(PLT_PlantTypes::PT_HEAT_RECOVERY);
  EXPECT_EQ(side(plant->Details.ConfigCooling) + ", " + side(plant->Details.ConfigHeating),
            "20 100 44 1, 30 100 180 2");
  EXPECT_TRUE(plant->Details.HeatRecoveryUsed);
  plant->SetType(PLT_PlantTypes::PT_HOT_WATER);
  plant->Reset(true);
  plant->Save(CCM_ALL);
  EXPECT_EQ(plant->General.Name.trimmed(), "Plant  1");
  plant->WriteDefaultsFile(folder / "own.dat");
  auto other = project.NewPlant();
  other->DefFileName = folder / "own.dat";
  other->CreateDefault();
  EXPECT_EQ(other->General.PlantType.raw, 7);
  EXPECT_EQ(other->Index(), 0);
}

}  // namespace
}  // namespace tarn
