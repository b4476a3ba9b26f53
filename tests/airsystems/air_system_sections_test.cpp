// Sections that were never loaded, that are loaded one after the other, or that are missing in the file.
#include "airsystems/air_system_fixture.h"
#include "tarn/base/value.h"
#include "tarn/reflect/by_name.h"

namespace tarn {
namespace {

using test::AirSystemTest;
using test::bytes_of;

TEST_F(AirSystemTest, WhatWasNeverLoadedIsNeverSaved) {
  add_space(1);
  for (const char* name : {"A", "B"}) {
    auto system = calculated(name, 2);
    system->GetZoneData(2)->SpaceID(1) = 1;
    system->GetZoneData(2)->TotalSpacesInZone = 1;
    system->GetZoneData(1)->Name = name;
    save(*system, true);
  }
  const std::string a = bytes_of(file(1)), b = bytes_of(file(2)), links = rows("System_Space_Links");
  ASSERT_NE(links, "");
  const auto unchanged = [&] {
    return bytes_of(file(1)) == a && bytes_of(file(2)) == b && rows("System_Space_Links") == links;
  };
  constexpr int32_t kResults = CCM_SIZINGMASK | 0x03C00000;  // no bit of the inputs
  const struct {
    const char* what;
    int32_t load_mask, save_mask;
    bool load_a_first, after, refused;
  } cases[]{{"simulation, whose mask has a bit of the inputs", CCM_HEADERMASK, CCM_SIMULATIONMASK, false, true, true},
            {"everything", CCM_HEADERMASK, CCM_MASKALL, false, false, true},
            {"everything, after another system's inputs", CCM_HEADERMASK, CCM_MASKALL, true, true, true},
            {"inputs alone, after another system's", CCM_HEADERMASK, CCM_INPUTMASK, true, false, true},
            {"results that are not there for the user", CCM_HEADERMASK, CCM_HEADERMASK | kResults, true, false, false},
            {"another system's header", CCM_SIZINGMASK, CCM_SIZINGMASK, true, true, false}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    auto system = project.NewAirSystem();
    if (c.load_a_first) system->Load(1);
    system->SetMask(c.load_mask, CCM_MASKALL);
    system->Load(2);
    EXPECT_EQ(system->GetZoneData(1)->Name.trimmed(), "") << "nothing of another system";
    system->SetMask(c.save_mask, CCM_MASKALL);
    std::string said;
    try {
      save(*system, c.after);
    } catch (const Error& error) {
      said = error.description();
    }
    EXPECT_EQ(said, c.refused ? "The input section is selected but was not loaded, and a save would empty it in the "
                                "file. Load it first, or leave it out of the mask."
                              : "");
    EXPECT_TRUE(unchanged());
  }
  auto system = project.NewAirSystem();
  system->SetMask(CCM_HEADERMASK, CCM_MASKALL);
  system->Load(2);
  EXPECT_EQ(test::error_number([&] { system->SaveDefault(); }), 5);
  system->SetToDefaultsByType(8);
  system->SetMask(CCM_MASKALL);
  save(*system);
  EXPECT_EQ(bytes_of(file(2)).size(), 5204U + 398 + sizing_size(1)) << "a type makes inputs of its own";
}

TEST_F(AirSystemTest, SectionsOfASystemMayBeLoadedOneAfterTheOther) {
  calculated("A", 2);
  const std::string before = bytes_of(file(1));
  auto system = project.NewAirSystem();
  for (const int32_t mask : {+CCM_INPUTMASK, +CCM_SIZINGMASK, +CCM_HEADERMASK, 0x03C00000}) {
    system->SetMask(mask, CCM_MASKALL);
    system->Load(1);
  }
  EXPECT_EQ(system->GetZoneSizing(2)->MaxCFM, 200.0F);
  system->SetMask(CCM_MASKALL);
  save(*system, true);
  EXPECT_TRUE(bytes_of(file(1)) == before);
}

/// What a user chooses for sizing, none of it as the defaults have it; they stand beside what sizing finds.
const std::vector<std::pair<const char*, double>> kChoices{
    {"SizingMethod", 2}, {"Source", 2},          {"CWDeltaT", 8.5}, {"HWDeltaT", 30}, {"CalcStartMonth", 4},
    {"CalcEndMonth", 9}, {"SDLSForPeakHour", 0}, {"SDLSMonth", 7},  {"SDLSHour", 15}};

void choose(AS_AirSystem& system) {
  for (const auto& [name, value] : kChoices) let_property(*system.GetAirSizing(), name, value);
}

void expect_chosen(AS_AirSystem& system) {
  for (const auto& [name, value] : kChoices)
    EXPECT_EQ(real_from(get_property(*system.GetAirSizing(), name)), value) << name;
}

TEST_F(AirSystemTest, TheChoicesOfSizingOutliveEverySaveAndResultsOnlyThoseThatLeaveInputs) {
  auto made = calculated("A", 2);
  choose(*made);
  made->GetAirSizing()->VentCFM = 500.0F;
  save(*made, true);
  const std::string whole = bytes_of(file(1));
  constexpr int32_t kSimulation = 0x03C00000;
  const struct {
    const char* what;
    std::vector<int32_t> load_masks;
    int32_t save_mask;
    bool after, results_stay;
  } cases[]{{"a user's, of everything", {CCM_MASKALL}, CCM_MASKALL, false, false},
            {"a user's, of inputs", {CCM_HEADERMASK | CCM_INPUTMASK}, CCM_HEADERMASK | CCM_INPUTMASK, false, false},
            {"the same after other loads",
             {CCM_INPUTMASK, CCM_HEADERMASK, kSimulation},
             CCM_HEADERMASK | CCM_INPUTMASK,
             false,
             false},
            {"a user's, of the header", {CCM_HEADERMASK}, CCM_HEADERMASK, false, true},
            {"a user's, of results", {CCM_INPUTMASK}, CCM_SIZINGMASK, false, true},
            {"after a calculation, of everything", {CCM_MASKALL}, CCM_MASKALL, true, true},
            {"after a calculation, of inputs", {CCM_INPUTMASK}, CCM_INPUTMASK, true, true},
            {"after a calculation that read the header", {CCM_HEADERMASK}, CCM_SIZINGMASK, true, false}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    test::write_bytes(file(1), whole);
    auto system = project.NewAirSystem();
    for (const int32_t mask : c.load_masks) {
      system->SetMask(mask, CCM_MASKALL);
      system->Load(1);
    }
    system->SetMask(c.save_mask, CCM_MASKALL);
    save(*system, c.after);
    auto read = project.NewAirSystem();
    read->GetAirSystem()->Sized = false;
    database->Execute("UPDATE AirSystemIndex SET bSimulated = 0");
    read->SetMask(0, kSimulation);
    read->Load(1);
    expect_chosen(*read);
    EXPECT_EQ(read->GetAirSizing()->VentCFM, c.results_stay ? 500.0F : 0.0F);
    EXPECT_EQ(read->GetZoneSizing(2)->MaxCFM, c.results_stay ? 200.0F : 0.0F);
    EXPECT_EQ(read->GetCoilSize()->CentralClgCoil(7, 16), c.results_stay ? 1234.0F : 0.0F);
  }
  EXPECT_EQ(bytes_of(file(1)).size(), whole.size()) << "a calculation's save leaves simulation alone";
}

TEST_F(AirSystemTest, ChoicesAreSetWithoutSizing) {
  // As a program that knows of no choices leaves it.
  calculated("A", 1);
  test::write_bytes(file(1), bytes_of(file(1)).substr(0, 5602).replace(36, 6, 6, '\0'));
  database->Execute("UPDATE AirSystemIndex SET bSized = 0, bSimulated = 0");
  auto system = project.NewAirSystem();
  system->SetMask(0, CCM_SIZINGMASK | 0x03C00000);
  system->Load(1);
  save(*system);
  EXPECT_EQ(bytes_of(file(1)).size(), 5602U) << "nothing was chosen";
  for (const bool after : {false, true}) {
    choose(*system);
    save(*system, after);
    auto read = project.NewAirSystem();
    read->Load(1);
    expect_chosen(*read);
    read->SetAsNew();
    expect_chosen(*read);
  }
  const auto clone = project.NewAirSystem()->Clone(int16_t{1});
  expect_chosen(*clone);
  clone->SetMask(CCM_HEADERMASK, CCM_MASKALL);
  EXPECT_NE(test::error_number([&] { clone->Load(9); }), 0);
  expect_chosen(*clone);
}

TEST_F(AirSystemTest, AnEditClearsResultsInTheObjectTooUntilItIsRolledBack) {
  auto system = calculated("A", 2);
  {
    Transaction undone;
    save(*system);
    EXPECT_EQ(system->GetZoneSizing(2)->MaxCFM, 0.0F);
    EXPECT_EQ(system->GetCoilSize()->CentralClgCoil(7, 16), 0.0F);
    EXPECT_EQ(system->GetZoneTemperature(2)->StatusHours(8), 0);
    EXPECT_EQ(system->GetHourlySimData()->Item(1)->HourlyResult(8760), 0.0F);
  }
  const std::string before = bytes_of(file(1));
  EXPECT_EQ(system->GetZoneSizing(2)->MaxCFM, 200.0F);
  system->GetAirSystem()->Sized = system->GetAirSystem()->Simulated = true;
  save(*system, true);
  EXPECT_TRUE(bytes_of(file(1)) == before);
  save(*system);
  const std::string edited = bytes_of(file(1));
  system->SetMask(CCM_SIZINGMASK, CCM_MASKALL);
  save(*system);
  EXPECT_TRUE(bytes_of(file(1)) == edited) << "results of other inputs do not come back";
}

TEST_F(AirSystemTest, AFailedLoadLeavesZonesAndTheirResults) {
  add_space(1);
  calculated("A", 3);
  auto other = calculated("B", 1);
  other->GetZoneData(1)->SpaceID(1) = 1;
  save(*other, true);
  auto system = project.NewAirSystem();
  system->Load(1);
  const Ptr<AS_ZoneData> zone = system->GetZoneData(3);
  system->SetMask(CCM_MASKALL);
  database->Execute("DROP TABLE System_Space_Links");  // link repair fails, after the inputs were read
  EXPECT_NE(test::error_number([&] { system->Load(2); }), 0);
  EXPECT_EQ(system->Index(), 1);
  EXPECT_EQ(system->GetAirSystem()->Name.trimmed(), "A");
  ASSERT_EQ(system->GetAirSystem()->NumZones, 3);
  EXPECT_EQ(system->GetZoneData(3), zone);
  EXPECT_EQ(system->GetZoneSizing(3)->MaxCFM, 300.0F);
  EXPECT_EQ(system->GetZoneTemperature(3)->StatusHours(8), 3);
  EXPECT_EQ(system->GetHourlySimData()->Item(1)->HourlyResult(8760), 7.25F);
}

TEST_F(AirSystemTest, AHeaderThatIsLoadedAgainLeavesWhatAClientHasMadeOfTheRest) {
  calculated("A", 2);
  calculated("B", 2);
  auto system = project.NewAirSystem();
  system->SetMask(CCM_HEADERMASK, CCM_MASKALL);
  system->Load(1);
  system->GetZoneData(2)->Name = "Client's";
  system->GetZoneTemperature(2)->StatusHours(8) = 9;
  system->Load(1);
  EXPECT_EQ(system->GetZoneData(2)->Name.trimmed(), "Client's");
  EXPECT_EQ(system->GetZoneTemperature(2)->StatusHours(8), 9);
  system->Load(2);
  EXPECT_EQ(system->GetZoneData(2)->Name.trimmed(), "") << "another system's header";
  EXPECT_EQ(system->GetZoneTemperature(2)->StatusHours(8), 0);
}

TEST_F(AirSystemTest, AFileThatLacksWhatFlagsOrLinksTellOfIsAnError) {
  add_space(1);
  auto system = calculated("A", 1);
  system->GetZoneData(1)->SpaceID(1) = 1;
  system->GetZoneData(1)->TotalSpacesInZone = 1;
  save(*system, true);
  const std::string whole = bytes_of(file(1));
  const size_t inputs = 5204 + 398, sizing = inputs + 54 + 70 + 3488;
  const struct {
    size_t cut;
    int32_t mask;
    const char* says;  // null: it loads
  } cases[]{{94, CCM_INPUTMASK, "ends before The input section, though System 1 has link rows of kind Space"},
            {94, CCM_HEADERMASK, nullptr},
            {inputs, CCM_SIZINGMASK, "has no results, though bSized says"},
            {inputs, CCM_INPUTMASK, nullptr},
            {sizing, CCM_MASKALL, "has no results, though bSimulated says"},
            {sizing, CCM_INPUTMASK | CCM_SIZINGMASK, nullptr}};
  for (const auto& c : cases) {
    test::write_bytes(file(1), whole.substr(0, c.cut));
    auto cut = project.NewAirSystem();
    cut->SetMask(c.mask, CCM_MASKALL);
    std::string said;
    try {
      cut->Load(1);
    } catch (const Error& error) {
      said = error.description();
    }
    EXPECT_EQ(said.empty(), !c.says) << c.cut << said;
    if (c.says) {
      EXPECT_NE(said.find(file(1) + " " + c.says), std::string::npos) << said;
    }
  }
}

}  // namespace
}  // namespace tarn
