#include "storage/staleness.h"

#include "support/temp_project.h"

namespace tarn {
namespace {

class StalenessTest : public test::ProjectTest {
 protected:
  void SetUp() override {
    ProjectTest::SetUp();
    window = saved_window("A");
    database->Execute(
        "INSERT INTO AirSystemIndex (nIndex, bDesHasChanged, bSimHasChanged) VALUES (1,0,0), (2,0,0), (3,0,0)");
    database->Execute("INSERT INTO PlantIndex (nIndex, bDesHasChanged, bSimHasChanged) VALUES (1,0,0), (2,0,0)");
    database->Execute("INSERT INTO BuildingIndex (nIndex, bHasChanged) VALUES (1,0), (2,0), (3,0)");
  }
  /// What is marked: "S1 P2 B3".
  std::string marked() {
    std::string text;
    const auto add = [&](const char* letter, const std::string& query) {
      auto found = database->OpenRecordset(query);
      for (; !found.AtEof(); found.MoveNext()) text += letter + std::to_string(found.Fields("nIndex").integer()) + " ";
    };
    add("S", "SELECT nIndex FROM AirSystemIndex WHERE bDesHasChanged = -1 AND bSimHasChanged = -1");
    add("P", "SELECT nIndex FROM PlantIndex WHERE bDesHasChanged = -1 AND bSimHasChanged = -1");
    add("B", "SELECT nIndex FROM BuildingIndex WHERE bHasChanged = -1");
    return text;
  }
  Ptr<WIN_Window> window;
};

TEST_F(StalenessTest, EachWayMarksWhenItIsTheOnlyOne) {
  const struct {
    const char* links;
    const char* marked;
  } cases[]{{"", ""},
            {"Space_Window_Links VALUES (9, 1)", ""},
            {"Space_Window_Links VALUES (9, 2); System_Space_Links VALUES (1, 9)", ""},
            {"Space_Window_Links VALUES (9, 1); System_Space_Links VALUES (2, 9)", "S2 "},
            {"Space_Window_Links VALUES (9, 1); System_Space_Links VALUES (2, 9); Plant_System_Links VALUES (1, 2)",
             "S2 P1 "},
            {"Space_Window_Links VALUES (9, 1); System_Space_Links VALUES (2, 9); Building_System_Links VALUES (3, 2)",
             "S2 B3 "},
            {"Space_Window_Links VALUES (9, 1); System_Space_Links VALUES (2, 9); Plant_System_Links VALUES (1, 2); "
             "Building_Plant_Links VALUES (2, 1)",
             "S2 P1 B2 "}};
  for (const auto& c : cases) {
    Transaction undone;
    std::string links = c.links;
    for (size_t at = 0; at < links.size();) {
      const size_t end = std::min(links.find("; ", at), links.size());
      database->Execute("INSERT INTO " + links.substr(at, end - at));
      at = end + 2;
    }
    window->Save();
    EXPECT_EQ(marked(), c.marked) << c.links;
  }
}

TEST_F(StalenessTest, AListenerIsAskedJustBeforeAndMayOverride) {
  database->Execute("INSERT INTO Space_Window_Links VALUES (9, 1)");
  database->Execute("INSERT INTO System_Space_Links VALUES (1, 9)");
  int asked = 0;
  window->OnUpdateDependencies.listener = [&](bool& override_default) {
    ++asked;
    EXPECT_EQ(marked(), "");
    override_default = true;
  };
  window->Save();
  EXPECT_EQ(asked, 1);
  EXPECT_EQ(marked(), "");
  window->OnUpdateDependencies.listener = nullptr;
  window->Delete();
  EXPECT_EQ(marked(), "S1 ") << "a delete marks before its links go";
  EXPECT_EQ(count("Space_Window_Links"), 0);
}

TEST_F(StalenessTest, ReachesTakeWaysOfTwoStepsAndSimulationAlone) {
  const Reach plants(Results::SimulationOnly, {{Stage::Plants, {{"Plant_Chiller_Links", "Chiller_ID", "Plant_ID"}}}});
  database->Execute("INSERT INTO Plant_Chiller_Links VALUES (2, 7)");
  plants.mark(*database, {"Entity", 7, "edited"});
  EXPECT_EQ(count("PlantIndex WHERE bSimHasChanged = -1 AND bDesHasChanged = 0"), 1);
  const Reach rates(Results::DesignAndSimulation, {{Stage::Buildings,
                                                    {{"FuelRate_Schedule_Links", "Schedule_ID", "FuelRate_ID"},
                                                     {"Building_FuelRate_Links", "FuelRate_ID", "Building_ID"}}}});
  database->Execute("INSERT INTO FuelRate_Schedule_Links VALUES (4, 5)");
  database->Execute("INSERT INTO Building_FuelRate_Links VALUES (3, 4)");
  rates.mark(*database, {"Entity", 5, "edited"});
  EXPECT_EQ(marked(), "B3 ");
}

}  // namespace
}  // namespace tarn
