#include "tarn/entity_copy.h"

#include "support/sample_project.h"
#include "support/temp_project.h"
#include "tarn/compare.h"

namespace tarn {
namespace {

class EntityCopyTest : public testing::Test {
 protected:
  void SetUp() override {
    for (auto& [project, name] : {std::pair(&other, "other"), std::pair(&empty, "empty")}) {
      std::filesystem::create_directory(folder / name);
      project->SetWorkPath(folder / name);
      project->FilePrefix = "JOB";
    }
    test::make_sample(other);
    create_index(empty.IndexDBName());
    write_default_records(empty);
  }
  /// "Wall 1 "Brick" -> Wall 2 "Copy of Brick"", a line each, with "=" for what is reused.
  static std::string told(const std::vector<EntityCopy>& copies) {
    std::string text;
    for (const EntityCopy& copy : copies)
      text += copy.from.text() + (copy.reused ? " = " : " -> ") + copy.to.text() + "\n";
    return text;
  }
  std::string copied(const std::string& kind, int16_t index) { return told(copy_entity(other, kind, index, empty)); }
  /// What differs, but for what one project alone has.
  std::string differences() {
    const auto first = comparable_project(other), second = comparable_project(empty);
    std::string text;
    for (const Difference& each : compare(*first, *second)) {
      if (!each.property.empty()) text += each.kind + " " + each.name + " " + each.property + "\n";
    }
    return text;
  }
  int64_t rows(const std::string& from) {
    return host()
        .database(empty.IndexDBName())
        ->OpenRecordset("SELECT COUNT(*) AS N FROM " + from)
        .Fields("N")
        .integer();
  }
  static std::string failure(const std::function<void()>& action) {
    try {
      action();
    } catch (const Error& error) {
      return error.description();
    }
    return {};
  }

  test::TempFolder folder;
  COM_ProjectData other, empty;
};

TEST_F(EntityCopyTest, AnEntityComesWithAllThatItUsesOnce) {
  EXPECT_EQ(copied("air-systems", 1),
            "Wall 1 \"Brick\" -> Wall 1 \"Brick\"\n"
            "Window 1 \"South\" -> Window 1 \"South\"\n"
            "Shade 1 \"Overhang\" -> Shade 1 \"Overhang\"\n"
            "Door 1 \"Door\" -> Door 1 \"Door\"\n"
            "Roof 1 \"Deck\" -> Roof 1 \"Deck\"\n"
            "Space 1 \"Office\" -> Space 1 \"Office\"\n"
            "System 1 \"VAV 1\" -> System 1 \"VAV 1\"\n");
  EXPECT_EQ(differences(), "");
  EXPECT_EQ(rows("Space_Wall_Links WHERE Space_ID = 1 AND Wall_ID = 1"), 1);
  EXPECT_EQ(rows("AirSystemIndex WHERE bDesHasChanged <> 0 AND bSimHasChanged <> 0"), 1) << "results of another place";
  EXPECT_FALSE(std::filesystem::exists(folder / "empty/JOBD01.DAT"));

  const std::string again = copied("System", 1);
  EXPECT_EQ(again.find("->"), std::string::npos) << again;
}

TEST_F(EntityCopyTest, EveryKindIsCopied) {
  copied("Building", 1);
  copied("Plant", 1);
  for (const char* kind : {"Boiler", "Tower", "FuelRate"}) copied(kind, 1);
  EXPECT_EQ(differences(), "");
  for (const char* kind : {"Building", "Plant", "ElectricRate", "Boiler", "Tower", "FuelRate"}) {
    const std::string again = copied(kind, 1);
    EXPECT_EQ(again.find("->"), std::string::npos) << again;
  }
}

TEST_F(EntityCopyTest, ReferencesLeadToTheCopies) {
  const auto window = empty.NewWindow();  // takes index 1
  window->CreateDefault();
  window->Name = "Mine";
  window->Save();
  copied("Space", 2);
  const auto space = empty.NewSpace();
  space->Load(1);
  EXPECT_EQ(space->GetWall(1)->WindowType(1), 2);
  EXPECT_EQ(differences(), "");
}

TEST_F(EntityCopyTest, AnotherOfTheNameStaysAndTheCopyHasOneOfItsOwn) {
  const auto wall = empty.NewWall();
  wall->CreateDefault();
  wall->Name = "Brick";
  wall->Absorptivity = 0.123F;
  wall->Save();
  EXPECT_EQ(copied("walls", 1), "Wall 1 \"Brick\" -> Wall 2 \"Copy of Brick\"\n");
  EXPECT_EQ(copied("walls", 1), "Wall 1 \"Brick\" = Wall 2 \"Copy of Brick\"\n");
  const std::string space = copied("Space", 1);
  EXPECT_NE(space.find("Wall 1 \"Brick\" = Wall 2"), std::string::npos) << space;
  wall->Load(2);
  wall->Absorptivity = 0.321F;
  wall->Save();
  EXPECT_EQ(copied("walls", 1), "Wall 1 \"Brick\" -> Wall 3 \"Copy of Brick 2\"\n");
}

TEST_F(EntityCopyTest, WhatIsNotThereIsRefused) {
  EXPECT_EQ(failure([&] { copied("Wall", 9); }), "The other project has no Wall 9.");
  EXPECT_NE(failure([&] { copied("Wal", 1); }).find("There is no kind Wal"), std::string::npos);
  EXPECT_NE(failure([&] { copy_entity(other, "Wall", 1, other); }).find("Both projects are the same"),
            std::string::npos);
  const auto space = other.NewSpace();
  space->Load(1);
  space->GetWall(1)->DoorType = 7;  // never there
  space->Save();
  EXPECT_EQ(failure([&] { copied("System", 1); }),
            "The other project has no Door 7, to which Wall(1).DoorType of Space 1 \"Office\" refers. Set that to 0 "
            "there, or to another one.");
  EXPECT_EQ(rows("WallIndex"), 0);
}

TEST_F(EntityCopyTest, AFailureLeavesNothing) {
  std::filesystem::remove(folder / "empty/JOBSPC.DAT");
  std::filesystem::create_directory(folder / "empty/JOBSPC.DAT");
  const std::string why = failure([&] { copied("System", 1); });
  EXPECT_NE(why.find("Space 1 \"Office\" of the other project: "), std::string::npos) << why;
  EXPECT_NE(why.find("Nothing was copied."), std::string::npos) << why;
  EXPECT_EQ(rows("WallIndex"), 0);
}

}  // namespace
}  // namespace tarn
