#include "support/sample_test.h"
#include "tarn/platform/workspace.h"
#include "tarn/staleness.h"

namespace tarn {
namespace {

std::string told(const std::vector<UseOfEntity>& uses) {
  std::string text;
  for (const UseOfEntity& use : uses) text += use.entity.text() + " " + use.slot + "\n";
  return text;
}

class DependenciesTest : public test::SampleTest {
 protected:
  DependenciesTest() { now = "10:00"; }
  void SetUp() override {
    SampleTest::SetUp();
    database = host().database(project.IndexDBName());
  }

  /// "System 1 design: Window 1 at 10:00 by Window 1, Space 1, System 1", a line each; "?" where it is not known.
  std::string stale() {
    std::string text;
    for (const StaleResult& result : stale_results(project)) {
      text += result.of.kind + " " + std::to_string(result.of.index) + " " + result.results + ": ";
      text += result.edited ? result.edited->text() + " at " + result.since + " by" : "?";
      for (const EntityName& step : result.way) text += " " + step.kind + std::to_string(step.index);
      text += "\n";
    }
    return text;
  }

  Ptr<Database> database;
};

TEST_F(DependenciesTest, EachUseIsToldWithItsField) {
  EXPECT_EQ(told(uses(project, "Space", 1)),
            "Wall 1 \"Brick\" Wall(1).WallType\n"
            "Window 1 \"South\" Wall(1).WindowType(1)\n"
            "Shade 1 \"Overhang\" Wall(1).WindowShade(1)\n"
            "Door 1 \"Door\" Wall(1).DoorType\n"
            "Roof 1 \"Deck\" Roof(1).RoofType\n");
  EXPECT_EQ(told(uses(project, "window", 1)), "");
  EXPECT_EQ(told(used_by(project, "Wall", 1)),
            "Space 1 \"Office\" Wall(1).WallType\nSpace 2 \"Hall\" Wall(1).WallType\n");
  EXPECT_EQ(told(used_by(project, "Chiller", 1)),
            "Plant 1 \"Chilled water\" Details.CoolingEqpt.Equipment(1).EquipmentID\n");
  EXPECT_EQ(told(used_by(project, "Schedule", 2)), "ElectricRate 1 \"Day\" TODSchedule\n");
  EXPECT_EQ(told(used_by(project, "Wall", 2)), "");
}

TEST_F(DependenciesTest, WhatIsNotThereIsRefused) {
  EXPECT_THROW(uses(project, "Wll", 1), Error);
  EXPECT_THROW(uses(project, "Wall", 3), Error);
  EXPECT_THROW(used_by(project, "Wall", 0), Error);
}

TEST_F(DependenciesTest, StaleSinceTheFirstEditThatReachedIt) {
  EXPECT_EQ(stale(), "");
  test::edit_window(project);
  const std::string first =
      "System 1 design: Window 1 \"South\" at 10:00 by Window1 Space1 System1\n"
      "System 2 design: Window 1 \"South\" at 10:00 by Window1 Space1 System2\n"
      "System 1 simulation: Window 1 \"South\" at 10:00 by Window1 Space1 System1\n"
      "System 2 simulation: Window 1 \"South\" at 10:00 by Window1 Space1 System2\n"
      "Plant 1 design: Window 1 \"South\" at 10:00 by Window1 Space1 System1 Plant1\n"
      "Plant 1 simulation: Window 1 \"South\" at 10:00 by Window1 Space1 System1 Plant1\n"
      "Building 1 simulation: Window 1 \"South\" at 10:00 by Window1 Space1 System1 Building1\n";
  EXPECT_EQ(stale(), first);

  now = "11:00";
  const auto boiler = project.NewBoiler();  // nothing uses it
  boiler->Load(1);
  boiler->Save();
  test::edit_window(project);
  EXPECT_EQ(stale(), first) << "they were stale already";
}

TEST_F(DependenciesTest, ACalculationEndsIt) {
  test::edit_window(project);
  const auto system = project.NewAirSystem();
  system->SetMask(CCM_MASKALL);
  system->Load(2);
  system->DesHasChanged = false;
  std::optional<bool> after_calculations = true;
  system->Save(after_calculations);
  EXPECT_EQ(stale().find("System 2 design"), std::string::npos);
  EXPECT_NE(stale().find("System 2 simulation: Window 1"), std::string::npos);
  // Set by a program that keeps no account of it.
  database->Execute("UPDATE AirSystemIndex SET bDesHasChanged = -1 WHERE nIndex = 2");
  EXPECT_NE(stale().find("System 2 design: ?"), std::string::npos);
}

TEST_F(DependenciesTest, ItsOwnEditTheWeatherAndARollback) {
  const auto plant = project.NewPlant();
  plant->Load(1);
  plant->SimHasChanged = true;
  plant->Save();
  EXPECT_NE(stale().find("Plant 1 simulation: Plant 1 \"Chilled water\" at 10:00 by Plant1\n"), std::string::npos);
  const std::string before = stale();
  {
    Transaction dropped;
    test::edit_window(project);
  }
  EXPECT_EQ(stale(), before);
  project.NewWeather()->Save();
  EXPECT_NE(stale().find("System 2 design: Weather"), std::string::npos);
  project.NewAirSystem()->Delete(2);
  EXPECT_EQ(
      database->OpenRecordset("SELECT nIndex FROM StaleSince WHERE szTable = 'AirSystemIndex' AND nIndex = 2").AtEof(),
      true);
}

TEST_F(DependenciesTest, AProjectMadeBeforeKeepsAccountFromTheNextEditOn) {
  database->Execute("DROP TABLE StaleSince");
  database->Execute("UPDATE PlantIndex SET bSimHasChanged = -1");
  EXPECT_EQ(stale(), "Plant 1 simulation: ?\n");
  test::edit_window(project);
  EXPECT_NE(stale().find("Plant 1 design: Window 1"), std::string::npos);
  EXPECT_NE(stale().find("Plant 1 simulation: ?"), std::string::npos);
}

}  // namespace
}  // namespace tarn
