#include "tarn/pictures.h"

#include "support/sample_test.h"

namespace tarn {
namespace {

class PicturesTest : public test::SampleTest {};

TEST_F(PicturesTest, DesignResultsAreStaleAsTheIndexHasItNow) {
  const auto system = project.NewAirSystem();
  system->SetMask(CCM_MASKALL);
  system->Load(1);
  const auto design = project.NewAirSystemDesign();
  design->SetAirSystem(system);
  design->Load();
  EXPECT_FALSE(says(picture_of(*design), "stale"));
  test::edit_window(project);
  EXPECT_TRUE(
      says(picture_of(*design), "stale: Window 1 \"South\" changed at 2026-11-22 10:00:00 UTC, after the design"));
  host().database(project.IndexDBName())->Execute("DROP TABLE StaleSince");
  EXPECT_TRUE(says(picture_of(*design), "stale: the system, or what it uses, has changed"));
  std::optional<bool> after_calculations = true;
  system->DesHasChanged = false;
  system->Save(after_calculations);
  EXPECT_FALSE(says(picture_of(*design), "stale"));
}

TEST_F(PicturesTest, AWallIsStaleUntilItsCoefficientsAreThoseOfItsLayers) {
  const auto wall = project.NewWall();
  wall->Load(1);
  EXPECT_FALSE(says(picture_of(*wall), "stale"));
  CA_Layer& brick = wall->layer(2);
  brick.SetThicknessInches(brick.ThicknessInches() * 2);
  EXPECT_TRUE(says(picture_of(*wall), "stale: the transfer functions"));
  for (R4& term : wall->BTrans.items) term = 0;
  EXPECT_TRUE(says(picture_of(*wall), "stale: the transfer functions"));
  wall->Save();
  EXPECT_FALSE(says(picture_of(*wall), "stale"));
}

TEST_F(PicturesTest, TheGraphOfAProjectShowsUsesAndTheWaysToStaleResults) {
  const auto graph = [&] { return picture_of(project); };
  host().database(project.IndexDBName())->Execute("UPDATE AirSystemIndex SET bSized = -1");
  const std::string fresh = graph();
  EXPECT_FALSE(says(fresh, "stale") || says(fresh, "#c00"));
  EXPECT_TRUE(says(fresh, "<title>Window 1 \"South\" &gt; Space 1 \"Office\"</title>"));
  EXPECT_TRUE(says(fresh, ">VAV 1: design</text>"));
  EXPECT_TRUE(says(fresh, "<title>Window 2 \"North\"</title>")) << "without any use";
  test::edit_window(project);
  const std::string way =
      "stale since 2026-11-22 10:00:00 UTC: Window 1 \"South\" &gt; Space 1 \"Office\" &gt; System 1";
  const std::string stale = graph();
  EXPECT_TRUE(says(stale, "<title>System 1 \"VAV 1\", design: stale since")) << stale;
  EXPECT_TRUE(says(stale, "changed at 2026-11-22 10:00:00 UTC</title>"));
  EXPECT_EQ(stale, graph());
  project.NewWeather()->Save();
  EXPECT_EQ(stale, graph()) << "they were stale already";
  const auto database = host().database(project.IndexDBName());
  database->Execute("DELETE FROM StaleSince");
  database->Execute("UPDATE AirSystemIndex SET bDesHasChanged = 0, bSimHasChanged = 0");
  project.NewWeather()->Save();
  EXPECT_TRUE(says(graph(), "<title>Weather &gt; System 1 \"VAV 1\"</title>"));
}

TEST_F(PicturesTest, AScheduleIsAHeatMapOfItsProfiles) {
  const auto schedule = project.NewSchedule();
  schedule->Load(1);
  schedule->ScheduleType = SCH_ScheduleTypes::ST_FRACTIONAL;
  for (int hour = 0; hour < 24; ++hour) {
    schedule->HourlyValue(1, hour) = 0;
    schedule->HourlyValue(2, hour) = hour >= 8 && hour < 18 ? 100 : 0;
  }
  for (int month = 1; month <= 12; ++month)
    for (int day = 0; day <= 8; ++day) schedule->Applicable(month, day) = month == 1 && day == 0 ? 2 : 1;
  const std::string picture = picture_of(*schedule);
  EXPECT_TRUE(says(picture, "<path d=\"M68.0 228v-90\" stroke=\"#662506\"/>")) << "ten full hours of one column";
  EXPECT_TRUE(says(picture, "hour 8: 100 %"));
  schedule->Applicable(1, 0) = 0;
  EXPECT_FALSE(says(picture_of(*schedule), "#662506\"/>\n</g>")) << "no profile, no hours";
  schedule->ScheduleType = SCH_ScheduleTypes::ST_RATE;
  EXPECT_TRUE(says(picture_of(*schedule), ">mid-peak</text>"));
}

TEST_F(PicturesTest, AChillerHasItsMapAndABoilerItsEfficiency) {
  const auto chiller = project.NewChiller();
  chiller->Load(1);
  CHL_OperatingMode& mode = chiller->CoolingMode;
  mode.SetNumRows(2);
  mode.SetNumColumns(1);
  mode.MapColumnHeading(1) = 100;
  for (int row = 1; row <= 2; ++row) {
    mode.MapRowHeading(row) = row == 1 ? 60.0F : 80.0F;
    mode.MapCapacity(row, 1) = row == 1 ? 120.0F : 100.0F;
    mode.MapPower(row, 1) = row == 1 ? 50.0F : 60.0F;
  }
  const std::string picture = picture_of(*chiller);
  EXPECT_TRUE(says(picture, "<path d=\"M80.00 150.00L350.00 360.00\""))
      << "capacity falls from one corner to the other";
  EXPECT_TRUE(says(picture, ">100 %</text>"));
  EXPECT_TRUE(says(picture_of(*chiller, UnitSystem::SI), "entering water or air, C"));
  mode.MapCapacity(1, 1) = std::nanf("");
  mode.MapPower(2, 1) = 1e30F;
  EXPECT_FALSE(says(picture_of(*chiller), "nan"));
  mode.MapCapacity(2, 1) = INFINITY;
  EXPECT_TRUE(says(picture_of(*chiller), "Capacity: no values that can be drawn"));
  mode.SetNumRows(0);
  mode.FLCapacity = 110;
  EXPECT_TRUE(says(picture_of(*chiller), "no performance map"));
  const auto boiler = project.NewBoiler();
  boiler->Load(1);
  for (int tenth = 1; tenth <= 11; ++tenth) boiler->BoilerEff(tenth) = tenth == 1 ? 0.0F : 100.0F;
  EXPECT_TRUE(says(picture_of(*boiler), "M80.00 340.00L134.00 130.00"));
}

TEST_F(PicturesTest, APlantShowsWhatItUsesAndThatItIsStale) {
  const auto plant = project.NewPlant();
  plant->Load(1);
  const std::string picture = picture_of(*plant);
  for (const char* text : {">Chiller</text>", ">VAV 1</text>", ">air system</text>", "Cooling"})
    EXPECT_TRUE(says(picture, text)) << text;
  EXPECT_FALSE(says(picture, "stale"));
  plant->Details.CoolingEqpt.Equipment(1).TowerID = plant->Details.TowerID = 1;
  plant->Details.TowerConfig = PLT_TowerConfigTypes::CTC_ONE_TOWER_PER_CW_CHILLER;
  EXPECT_TRUE(says(picture_of(*plant), "its own tower") && !says(picture_of(*plant), "shared by the chillers"));
  plant->Details.TowerConfig = PLT_TowerConfigTypes::CTC_ONE_TOWER_SHARED_BY_CW_CHILLER_IN_PLANT;
  EXPECT_TRUE(!says(picture_of(*plant), "its own tower") && says(picture_of(*plant), "shared by the chillers"));
  PLT_Plant of_no_project;
  EXPECT_THROW(picture_of(of_no_project), Error);
  host().database(project.IndexDBName())->Execute("UPDATE PlantIndex SET bSized = -1");
  test::edit_window(project);
  EXPECT_TRUE(
      says(picture_of(*plant), "stale: Window 1 \"South\" changed at 2026-11-22 10:00:00 UTC, after the design"));
}

TEST_F(PicturesTest, AClassWithoutAPictureSaysWhichHaveOne) {
  EXPECT_EQ(picture_content("PLT_Plant"), "a schematic");
  EXPECT_EQ(picture_content("DOR_Door"), "");
  try {
    picture_of(*project.NewDoor());
    FAIL();
  } catch (const Error& error) {
    EXPECT_TRUE(
        says(error.description(), "DOR_Door has no picture; walls and roofs (CA_ConstructionAssly), schedules"));
  }
}

}  // namespace
}  // namespace tarn
