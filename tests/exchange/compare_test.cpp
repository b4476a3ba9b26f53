#include "tarn/compare.h"

#include <nlohmann/json.hpp>

#include "reflect/json.h"
#include "support/sample_project.h"
#include "support/temp_project.h"
#include "tarn/exchange.h"

namespace tarn {
namespace {

class CompareTest : public testing::Test {
 protected:
  void SetUp() override {
    for (auto& [project, name] : {std::pair(&one, "one"), std::pair(&other, "other")}) {
      std::filesystem::create_directory(folder / name);
      project->SetWorkPath(folder / name);
      project->FilePrefix = "JOB";
      test::make_sample(*project);
    }
  }
  /// "Wall Brick Layer(2).Thickness [ft]: 0.33 -> 0.5", a line each.
  std::string told(double tolerance = 1e-6) {
    const auto first = comparable_project(one), second = comparable_project(other);
    std::string text;
    for (const Difference& each : compare(*first, *second, {tolerance})) {
      text += each.kind + " " + each.name + " " + each.property + (each.unit.empty() ? "" : " [" + each.unit + "]") +
              ": " + json_text(to_json(each.first)) + " -> " + json_text(to_json(each.second)) + "\n";
    }
    return text;
  }
  template <typename E>
  static void change(const Ptr<E>& entity, int16_t index, const std::function<void(E&)>& how) {
    entity->Load(index);
    how(*entity);
    entity->Save();
  }

  test::TempFolder folder;
  COM_ProjectData one, other;
};

TEST_F(CompareTest, ProjectsMadeAlikeHaveNoDifference) { EXPECT_EQ(told(), ""); }

TEST_F(CompareTest, FieldsDifferByPlaceAndUnit) {
  change<WIN_Window>(other.NewWindow(), 1, [](WIN_Window& window) {
    window.Height = window.Height + 1;
    window.GlassTrans(2) = 0.25F;
  });
  const std::string text = told();
  EXPECT_NE(text.find("Window South Height [ft]: "), std::string::npos) << text;
  EXPECT_NE(text.find("Window South GlassTrans(2): "), std::string::npos) << text;
  EXPECT_EQ(text.find("Window North"), std::string::npos) << text;
}

TEST_F(CompareTest, ToleranceIsRelative) {
  change<WIN_Window>(one.NewWindow(), 1, [](WIN_Window& window) { window.Height = 1000; });
  change<WIN_Window>(other.NewWindow(), 1, [](WIN_Window& window) { window.Height = 1001; });
  EXPECT_NE(told(0.0005).find("Height"), std::string::npos);
  EXPECT_EQ(told(0.002), "");
}

TEST_F(CompareTest, EntitiesAreMatchedByNameAndReferencesByWhatTheyLeadTo) {
  // The other project has the two walls under each other's index.
  const auto wall = other.NewWall();
  change<CA_ConstructionAssly>(wall, 1, [](auto& w) { w.Name = "Another"; });
  change<CA_ConstructionAssly>(wall, 2, [](auto& w) { w.Name = "Brick"; });
  change<CA_ConstructionAssly>(wall, 1, [](auto& w) { w.Name = "Block"; });
  EXPECT_EQ(
      told(),
      "Space Office Wall(1).WallType: \"Brick\" -> \"Block\"\nSpace Hall Wall(1).WallType: \"Brick\" -> \"Block\"\n");
}

TEST_F(CompareTest, OneSideAlone) {
  change<WIN_Window>(other.NewWindow(), 2, [](WIN_Window& window) { window.Name = "West"; });
  EXPECT_EQ(told(), "Window North : true -> null\nWindow West : null -> true\n");
}

TEST_F(CompareTest, AnExportIsTheProjectThatItWasMadeOf) {
  const std::string text = export_project(one, {}, [](size_t, size_t) {});
  const auto project = comparable_project(one), exported = comparable_text(text);
  EXPECT_EQ(differences_json(compare(*project, *exported)), "[]");
  EXPECT_THROW(comparable_text("{}"), Error);
  EXPECT_THROW(comparable_text(R"({"tarn": 1, "WIN_Window": [{"index": 1, "Name": "A"}]})"), Error);
}

}  // namespace
}  // namespace tarn
