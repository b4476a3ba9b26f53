#include "tarn/air_system.h"

#include "airsystems/air_system_fixture.h"
#include "tarn/base/value.h"
#include "tarn/reflect/by_name.h"

namespace tarn {
namespace {

using test::AirSystemTest;
using test::bytes_of;

TEST_F(AirSystemTest, ZonesThatLoseSpacesCloseUp) {
  for (int i = 1; i <= 60; ++i) add_space(i);
  auto system = new_system("A", 3);
  for (int i = 1; i <= 50; ++i) {
    system->GetZoneData(1)->SpaceID(i) = static_cast<int16_t>(i);
    system->GetZoneData(1)->SpaceMultiplier(i) = static_cast<int16_t>(i * 10);
  }
  system->GetZoneData(1)->TotalSpacesInZone = 50;
  system->GetZoneData(2)->SpaceID(1) = 60;
  system->GetZoneData(2)->TotalSpacesInZone = 1;
  save(*system);
  EXPECT_EQ(count("System_Space_Links WHERE System_ID = 1"), 51);
  database->Execute("DELETE FROM System_Space_Links WHERE Space_ID IN (1, 3, 50, 60)");
  auto read = project.NewAirSystem();
  read->Load(1);
  const ZoneRecord& zone = *read->GetZoneData(1);
  EXPECT_EQ(zone.TotalSpacesInZone, 47);
  EXPECT_EQ(zone.SpaceID(1) * 100 + zone.SpaceID(2), 204);
  EXPECT_EQ(zone.SpaceMultiplier(2), 40);
  EXPECT_EQ(zone.SpaceID(47), 49);
  EXPECT_EQ(zone.SpaceID(48) + zone.SpaceMultiplier(48), 0);
  EXPECT_EQ(read->GetZoneData(2)->TotalSpacesInZone, 0);
  EXPECT_EQ(read->GetZoneData(3)->TotalSpacesInZone, 0);
  EXPECT_EQ(log.messages.size(), 4U);
}

TEST_F(AirSystemTest, LinksAreWhatTheInputsReferTo) {
  auto system = new_system("A", 1);
  system->GetZoneSchedule()->TstatSchedule = 4;
  system->GetOutVent()->Schedule = 5;
  system->GetWCSystemData()->TowerID = 6;
  system->GetWCSystemData()->BoilerID = 7;
  save(*system);
  const auto links = [&] {
    return std::to_string(count("System_Schedule_Links")) + std::to_string(count("System_Tower_Links")) +
           std::to_string(count("System_Boiler_Links")) + std::to_string(count("System_Space_Links"));
  };
  EXPECT_EQ(links(), "1110") << "a ventilation that is not scheduled has no schedule";
  system->GetOutVent()->VentType.raw = 3;
  save(*system);
  EXPECT_EQ(links(), "2110");
  add_space(1);
  system->GetZoneData(1)->SpaceID(3) = 1;
  save(*system);
  EXPECT_EQ(links(), "2111");
  system->GetAirSystem()->SetNumZones(0);
  save(*system);
  EXPECT_EQ(links(), "2110") << "the links of zones that are gone go";
  database->Execute("DELETE FROM System_Schedule_Links");
  database->Execute("DELETE FROM System_Boiler_Links");
  system->Load(1);
  EXPECT_EQ(system->GetZoneSchedule()->TstatSchedule + system->GetOutVent()->Schedule, 0);
  EXPECT_EQ(system->GetWCSystemData()->BoilerID, 0);
  EXPECT_EQ(system->GetWCSystemData()->TowerID, 6);
}

TEST_F(AirSystemTest, NamesAreUniqueAndDeletesTakeRowsLinksAndFiles) {
  auto system = new_system("O'Hara");
  save(*system);
  EXPECT_TRUE(system->IsNameUnique());
  auto other = new_system("O'Hara");
  EXPECT_FALSE(other->IsNameUnique());
  EXPECT_EQ(test::error_number([&] { save(*other); }), 5);
  EXPECT_FALSE(std::filesystem::exists(file(2)));
  other->GetAirSystem()->Name = "B";
  save(*other);
  database->Execute("DELETE FROM AirSystemIndex WHERE nIndex = 2");
  try {
    save(*other);
    ADD_FAILURE();
  } catch (const Error& error) {
    EXPECT_EQ(error.description(), "Cannot find air system record in index database");
  }
  link(
      "Plant_System_Links (5, 1); Building_System_Links (6, 1); System_Tower_Links (1, 3); System_Boiler_Links (1, 3); "
      "System_Space_Links (1, 3); System_Schedule_Links (1, 3); Plant_System_Links (5, 2)");
  test::write_bytes(folder / "LOADS.DAT", "x");
  system->DLFileName = "LOADS.DAT";
  system->Delete();
  EXPECT_EQ(count("Plant_System_Links") + count("Building_System_Links") + count("System_Tower_Links") +
                count("System_Boiler_Links") + count("System_Space_Links") + count("System_Schedule_Links"),
            1);
  EXPECT_FALSE(std::filesystem::exists(file(1)));
  EXPECT_FALSE(std::filesystem::exists(folder / "LOADS.DAT"));
  EXPECT_EQ(system->Index(), 0);
}

TEST_F(AirSystemTest, ChangesReachPlantsAndBuildings) {
  auto system = new_system("A");
  save(*system);
  database->Execute("INSERT INTO PlantIndex (nIndex, bDesHasChanged, bSimHasChanged) VALUES (5, 0, 0)");
  database->Execute("INSERT INTO BuildingIndex (nIndex, bHasChanged) VALUES (6, 0)");
  const struct {
    const char* links;
    int plants, buildings;
  } cases[]{{"Plant_System_Links (5, 1)", 1, 0},
            {"Plant_System_Links (5, 1); Building_Plant_Links (6, 5)", 1, 1},
            {"Building_System_Links (6, 1)", 0, 1},
            {"Plant_System_Links (5, 2); Building_System_Links (6, 2)", 0, 0}};
  for (const auto& c : cases) {
    Transaction undone;
    link(c.links);
    save(*system);
    EXPECT_EQ(count("PlantIndex WHERE bDesHasChanged = -1 AND bSimHasChanged = -1"), c.plants) << c.links;
    EXPECT_EQ(count("BuildingIndex WHERE bHasChanged = -1"), c.buildings) << c.links;
  }
}

TEST_F(AirSystemTest, ARollbackBringsFileAndIndexBack) {
  auto system = calculated("A", 1);
  const std::string before = bytes_of(file(1));
  {
    Transaction undone;
    save(*system);
    auto other = new_system("B");
    save(*other);
    EXPECT_EQ(other->Index(), 2);
    project.NewAirSystem()->Delete(1);
  }
  EXPECT_EQ(bytes_of(file(1)), before);
  EXPECT_FALSE(std::filesystem::exists(file(2)));
  const auto clone = system->Clone(int16_t{1});
  EXPECT_EQ(clone->Index(), 0);
  EXPECT_EQ(clone->GetAirSystem()->Name.trimmed(), "Copy of A");
  EXPECT_EQ(clone->GetCoilSize()->CentralClgCoil(7, 16), 1234.0F);
  clone->SetAsNew();
  EXPECT_EQ(clone->GetCoilSize()->CentralClgCoil(7, 16), 0.0F);
  EXPECT_EQ(clone->GetHourlySimData()->Count(), 0);
  EXPECT_TRUE(clone->GetCoolSys()->Used) << "inputs stay";
}

// ---- queries

TEST_F(AirSystemTest, CoilsAreFoundWhereTheyAreUsed) {
  using Source = AS_HeatCoolSourceTypes;
  const struct {
    const char* query;
    void (*use)(AS_AirSystem&, Source);
    bool cools;
  } cases[]{
      {"IsHWUsedCentralHeating",
       [](AS_AirSystem& s, Source x) { s.GetHeatSys()->Used = true, s.GetHeatSys()->Source = x; }, false},
      {"IsHWUsedPreheating",
       [](AS_AirSystem& s, Source x) { s.GetPreheatCoil()->Used = true, s.GetPreheatCoil()->Source = x; }, false},
      {"IsHWUsedHumidification",
       [](AS_AirSystem& s, Source x) { s.GetHumidity()->Used = true, s.GetHumidity()->HeatSource = x; }, false},
      {"IsHWUsedTerminalReheating",
       [](AS_AirSystem& s, Source x) { s.GetZoneData(1)->ReheatCoil = true, s.GetZoneSchedule()->ReheatSource = x; },
       false},
      {"IsHWUsedZoneHeating",
       [](AS_AirSystem& s, Source x) {
         s.GetZoneData(1)->HeatUnitType.raw = 1, s.GetZoneSchedule()->HeatingSource = x;
       },
       false},
      {"IsCWUsedCentralCooling",
       [](AS_AirSystem& s, Source x) { s.GetCoolSys()->Used = true, s.GetCoolSys()->Source = x; }, true},
      {"IsCWUsedPrecooling",
       [](AS_AirSystem& s, Source x) { s.GetPrecoolCoil()->Used = true, s.GetPrecoolCoil()->Source = x; }, true},
      {"IsCWUsedTerminalCooling",
       [](AS_AirSystem& s, Source x) { s.GetZoneData(1)->TermType.raw = 14, s.GetZoneSchedule()->TermClgSource = x; },
       true}};
  const auto holds = [](AS_AirSystem& system, std::string_view query) {
    std::vector<Value> none;
    Value result;
    call_method(system, system.info().find(query), none, result);
    return std::get<bool>(result);
  };
  for (const auto& c : cases) {
    AS_AirSystem system;
    system.GetAirSystem()->SetNumZones(1);
    EXPECT_FALSE(holds(system, "IsHWCoilUsed") || holds(system, "IsCWCoilUsed") || holds(system, "IsStmCoilUsed"));
    c.use(system, c.cools ? Source::ST_CHILLED_WATER : Source::ST_HOT_WATER);
    for (const auto& other : cases)
      EXPECT_EQ(holds(system, other.query), other.query == c.query) << c.query << " " << other.query;
    EXPECT_EQ(holds(system, c.cools ? "IsCWCoilUsed" : "IsHWCoilUsed"), true) << c.query;
    if (!c.cools) c.use(system, Source::ST_STEAM);
    EXPECT_EQ(holds(system, "IsStmCoilUsed"), !c.cools) << c.query;
    EXPECT_EQ(holds(system, "IsHWCoilUsed"), false) << c.query;
  }
  AS_AirSystem system;
  system.SetToDefaultsByType(15);
  EXPECT_TRUE(system.IsChangeoverApplicable());
  system.SetToDefaultsByType(16);
  EXPECT_FALSE(system.IsChangeoverApplicable());
}

TEST_F(AirSystemTest, DehumidifiedAirIsReheatedAtTheTerminalsOrCentrally) {
  AS_AirSystem system;
  system.SetToDefaultsByType(8);
  system.GetDehumid()->Used = true;
  system.GetZoneSchedule()->ReheatSource = AS_HeatCoolSourceTypes::ST_HOT_WATER;
  system.GetHeatSys()->Source = AS_HeatCoolSourceTypes::ST_STEAM;
  EXPECT_TRUE(system.IsHWUsedDehumidification());
  system.GetZoneData(1)->ReheatCoil = false;
  EXPECT_EQ(system.GetDehumid()->GetReheatSource(), AS_HeatCoolSourceTypes::ST_IRRELEVANT)
      << "no central heating in use";
  system.GetHeatSys()->Used = true;
  EXPECT_EQ(system.GetDehumid()->GetReheatSource(), AS_HeatCoolSourceTypes::ST_STEAM);
  EXPECT_EQ(AS_DehumidData().GetReheatSource(), AS_HeatCoolSourceTypes::ST_IRRELEVANT);
}

TEST_F(AirSystemTest, OutputsFollowTheComponentsInUse) {
  auto system = new_system("A");
  system->GetAirSystem()->SetFlags();
  const auto flags = [&] {
    std::string text;
    for (int i = 1; i <= 22; ++i) text += std::to_string(int{system->GetAirSystem()->OutputFlags(i)});
    return text;
  };
  EXPECT_EQ(flags(), "1100011000110001000000");
  EXPECT_EQ(system->GetAirSystem()->NumOutputs, 7);
  system->SetToDefaultsByType(14);
  database->Execute("INSERT INTO BoilerIndex (nIndex, nFuelType) VALUES (3, 2)");
  system->GetWCSystemData()->BoilerID = 3;
  system->GetAirSystem()->SetFlags();
  EXPECT_EQ(flags(), "1111100000000000000113");
  EXPECT_EQ(test::error_number([] { AS_General().SetFlags(); }), 91);
}

TEST_F(AirSystemTest, HourlyBlocksAreAList) {
  AS_HourlySimData list;
  list.Resize(3);
  list.Item(2)->HourlyResult(1) = 2.0F;
  list.Remove(1);
  list.Add();
  EXPECT_EQ(list.Count(), 3);
  EXPECT_EQ(list.Item(1)->HourlyResult(1), 2.0F);
  list.ResetData();
  EXPECT_EQ(list.Item(1)->HourlyResult(1), 0.0F);
  for (const int bad : {0, 4}) EXPECT_EQ(test::error_number([&] { list.Item(bad); }), 9);
  AS_UnmetLoads unmet;
  unmet.CapDeficientOver10(1, 12) = 4.0F;
  unmet.ResetData();
  EXPECT_EQ(unmet.CapDeficientOver10(1, 12), 0.0F);
}

}  // namespace
}  // namespace tarn
