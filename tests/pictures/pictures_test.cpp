#include "tarn/pictures.h"

#include "support/sample_project.h"
#include "support/temp_project.h"

namespace tarn {
namespace {

class PicturesTest : public testing::Test {
 protected:
  void SetUp() override {
    project.SetWorkPath(folder.path);
    project.FilePrefix = "JOB";
    host().now = [] { return "2026-11-22 10:00:00"; };
    test::make_sample(project);
  }
  void TearDown() override { host().now = standard_host().now; }

  static bool says(const std::string& picture, const std::string& text) {
    return picture.find(text) != std::string::npos;
  }

  test::TempFolder folder;
  COM_ProjectData project;
};

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

}  // namespace
}  // namespace tarn
