#include "tarn/exchange.h"

#include <cmath>
#include <limits>
#include <nlohmann/json.hpp>

#include "exchange/json_lines.h"
#include "project/defaults.h"
#include "reflect/json.h"
#include "reflect/json_text.h"
#include "support/temp_project.h"
#include "tarn/air_system.h"
#include "tarn/building.h"
#include "tarn/construction.h"
#include "tarn/door.h"
#include "tarn/preferences.h"
#include "tarn/schedule.h"
#include "tarn/shade.h"
#include "tarn/space.h"
#include "tarn/utility_rate.h"

namespace tarn {
namespace {

const Progress quiet = [](size_t, size_t) {};

class ExchangeTest : public test::ProjectTest {
 protected:
  void SetUp() override {
    ProjectTest::SetUp();
    write_default_records(project);
  }
  std::string text() { return export_project(project, {}, quiet); }
  std::string state() {
    std::string all = rows("WindowIndex") + rows("DoorIndex") + rows("SpaceIndex") + rows("WallIndex");
    for (const auto& entry : std::filesystem::directory_iterator(folder.path)) {
      const std::string name = entry.path().filename().string();
      if (!name.ends_with("-journal")) all += name + test::bytes_of(entry.path().string());
    }
    return all;
  }
  void fill() {
    for (const char* name : {"A", "gap", "O'Hara \xE2\x82\xAC", "gap"}) saved_window(name);
    auto window = project.NewWindow();
    window->Name = std::string(255, 'x');
    window->ShadeType = 77;
    window->GlassTrans(2) = 0.78F;
    window->GlassNameMetric(3) = "6 mm \xC3\xA9t\xC3\xA9";
    window->WindowType = true;
    window->Save();
    window->Delete(2);
    window->Delete(4);
    auto door = project.NewDoor();
    door->GlassShaded = true;
    door->Save();
    auto shade = project.NewShade();
    shade->RHFinExt = 0.1F;
    shade->Save();
    auto wall = project.NewWall();
    wall->CreateDefault();
    wall->layer(2).SetThicknessInches(0.3F);
    wall->Save();
    auto roof = project.NewRoof();
    roof->CreateDefault();
    roof->layer(9).Name = "";
    roof->Save();
    auto schedule = project.NewSchedule();
    schedule->CreateDefault();
    schedule->HourlyValue(8, 23) = -1;
    schedule->Applicable(12, 8) = 2;
    schedule->Save();
    auto space = project.NewSpace();
    space->CreateDefault();
    space->GetSpace()->Reserved = 77;
    space->GetWall(8)->WallType = 1;
    space->GetWall(8)->WindowType(2) = 3;
    space->GetRoof(1)->RoofType = 1;
    space->GetOtherLoads()->ElecEqptSchedule = 1;
    space->Save();
    auto system = project.NewAirSystem();
    system->SetToDefaultsByType(8);
    system->GetAirSystem()->SetNumZones(2);
    system->GetZoneData(2)->SpaceID(1) = 1;
    system->GetZoneData(2)->TotalSpacesInZone = 1;
    system->GetZoneSchedule()->TstatSchedule = 1;
    system->Save();
    std::optional<bool> after = true;
    system->GetZoneSizing(2)->Reserved = 5;
    system->GetPreheatCoil()->Source.raw = 7;
    system->SetMask(0, CCM_SIMULATIONMASK);
    system->DesHasChanged = false;
    system->Save(after);
    auto electric = project.NewElectricRate();
    electric->CreateDefault();
    (*electric)->TimeOfDaySched = true;
    (*electric)->TODSchedule = 1;
    (*electric)->ECRate(14) = 0.125;
    electric->Save();
    auto fuel = project.NewFuelRate();
    fuel->CreateDefault();
    (*fuel)->TODSchedule = 9;  // of no use
    fuel->Save();
    auto building = project.NewBuilding();
    building->CreateDefault();
    building->GetBuildingInputs()->SystemID(250) = 1;
    building->GetBuildingInputs()->UtilityRate(2) = 1;
    building->GetBuildingInputs()->UtilityRate(8) = 1;
    building->GetBuildingProfile(8)->Power(8760) = 1.5F;
    building->Save(FS_ALL, true);
    auto preferences = project.NewProjectPrefs();
    preferences->EnergyStandardCode = PRF_EnergyStandards{5};
    preferences->CurrencyUnits = "\xE2\x82\xAC";
    preferences->Save();
    test::write_bytes(project.ReportOptionsFilename(), std::string("\0\1\xFF report", 10));
  }
};

TEST_F(ExchangeTest, TheSameProjectGivesTheSameBytesAfterARoundTrip) {
  fill();
  const std::string before = text();
  EXPECT_NE(before.find("0.78,"), std::string::npos) << "shortest numbers";
  const std::string records = test::bytes_of(project.WindowFilename());
  test::TempFolder other;
  COM_ProjectData fresh;
  fresh.SetWorkPath(other.path);
  fresh.FilePrefix = "NEW";
  create_index(fresh.IndexDBName());
  EXPECT_EQ(import_project(fresh, before, quiet).all(), 28U);
  EXPECT_EQ(export_project(fresh, {}, quiet), before);
  const std::string copied = test::bytes_of(fresh.WindowFilename());
  for (const size_t index : {1, 3, 5})
    EXPECT_EQ(copied.substr(index * 555, 555), records.substr(index * 555, 555)) << index;
  EXPECT_EQ(test::bytes_of(fresh.ReportOptionsFilename()), test::bytes_of(project.ReportOptionsFilename()));
  EXPECT_EQ(test::bytes_of(fresh.WallFilename()), test::bytes_of(project.WallFilename()));
  EXPECT_EQ(test::bytes_of(fresh.ScheduleFilename()), test::bytes_of(project.ScheduleFilename()));
  EXPECT_EQ(test::bytes_of(fresh.SpaceFilename()), test::bytes_of(project.SpaceFilename()));
  EXPECT_EQ(test::bytes_of(fresh.ElecRateFilename()), test::bytes_of(project.ElecRateFilename()));
  EXPECT_EQ(test::bytes_of(fresh.FuelRateFilename()), test::bytes_of(project.FuelRateFilename()));
  EXPECT_EQ(test::bytes_of(other / "NEWB01.DAT"), test::bytes_of(folder / "JOBB01.DAT")) << "with its profiles";
  EXPECT_EQ(test::bytes_of(other / "NEWA01.DAT"), test::bytes_of(folder / "JOBA01.DAT")) << "sizing, and no simulation";
  EXPECT_NE(before.find("\"Source\": {\"code\":7,\"text\":\"ST_HOT_WATER\"}"), std::string::npos);
}

TEST_F(ExchangeTest, ReferencesFollowTheirEntitiesIntoAFilledProject) {
  fill();
  const std::string all = text();
  import_project(project, all, quiet);
  auto space = project.NewSpace();
  space->Load(2);
  EXPECT_EQ(space->GetWall(8)->WallType, 2);
  EXPECT_EQ(space->GetWall(8)->WindowType(2), 4) << "windows 1, 3, 5 of the text came as 2, 4, 6";
  EXPECT_EQ(space->GetOtherLoads()->ElecEqptSchedule, 2);
  EXPECT_EQ(count("Space_Wall_Links WHERE Space_ID = 2 AND Wall_ID = 2"), 1);
  auto system = project.NewAirSystem();
  system->Load(2);
  EXPECT_EQ(system->GetZoneData(2)->SpaceID(1) * 10 + system->GetZoneSchedule()->TstatSchedule, 22);
  EXPECT_EQ(count("AirSystemIndex WHERE nIndex = 2 AND bDesHasChanged = 0 AND bSimHasChanged = -1"), 1);
  // Spaces alone keep to the project's own entities.
  import_project(project, export_project(project, {"spaces"}, quiet), quiet);
  space->Load(4);
  EXPECT_EQ(space->GetWall(8)->WallType, 2);
}

TEST_F(ExchangeTest, AFilledProjectRenumbersAndKeepsItsOwn) {
  fill();
  const std::string own_default = test::bytes_of(project.WindowFilename()).substr(0, 555);
  EXPECT_EQ(
      import_project(project, R"({"tarn": 1, "WIN_Window": [{"index": 0, "Height": 9}, {"index": 1, "Name": "new"}]})",
                     quiet)
          .entities,
      1U);
  auto window = project.NewWindow();
  window->Load(1);
  EXPECT_EQ(window->Name.trimmed(), "A");
  window->Load(2);
  EXPECT_EQ(window->Name.trimmed(), "new");
  EXPECT_EQ(window->Height, 4.0F) << "what the text leaves out is the default's";
  EXPECT_EQ(test::bytes_of(project.WindowFilename()).substr(0, 555), own_default);
}

TEST_F(ExchangeTest, AirSystemsComeWithTheSectionsThatTheyHave) {
  for (const int zones : {2, 0, 1}) {
    auto system = project.NewAirSystem();
    system->SetToDefaultsByType(8);
    system->GetAirSystem()->Name = "With " + std::to_string(zones);
    system->GetAirSystem()->SetNumZones(static_cast<int16_t>(zones));
    system->GetAirSystem()->SetFlags();
    system->Save();
    std::optional<bool> after = true;
    if (zones != 2) continue;
    system->GetAirSizing()->VentCFM = 7.0F;
    system->GetZoneTemperature(2)->OccMaxTemp = 75.5F;
    system->Save(after);
    system->GetHourlySimData()->Item(3)->HourlyResult(8760) = 0.1F;
    system->Save(after);
  }
  const std::string before = export_project(project, {"air-systems"}, quiet);
  test::TempFolder other;
  COM_ProjectData fresh;
  fresh.SetWorkPath(other.path);
  fresh.FilePrefix = "NEW";
  create_index(fresh.IndexDBName());
  import_project(fresh, before, quiet);
  EXPECT_TRUE(export_project(fresh, {"air-systems"}, quiet) == before);
  for (const char* name : {"A01.DAT", "A02.DAT", "A03.DAT"})
    EXPECT_TRUE(test::bytes_of(other / (std::string("NEW") + name)) ==
                test::bytes_of(folder / (std::string("JOB") + name)))
        << name;
  import_project(fresh, before, quiet);
  EXPECT_EQ(log.messages.back(), "AirSystemIndex has With 1 already; the other one comes as Copy of With 1.");
}

TEST_F(ExchangeTest, ConstructionsComeAsTheyAreUnlessTheirCoefficientsBelongToOtherLayers) {
  fill();
  // One whose layers have no transfer functions, one with coefficients of a coarser maker, one edited in the text.
  const std::string all = export_project(project, {"walls"}, quiet);
  auto json = parse_json(all);
  auto& walls = json["CA_ConstructionAssly.Wall"];
  auto coarse = walls[1], edited = walls[1];
  for (auto& layer : walls[1]["Layer"]) layer["LayerUsed"] = false;
  coarse["index"] = 2;
  ASSERT_NEAR(coarse["BTrans"][0].get<double>(), 0.00625, 1e-5);
  coarse["BTrans"][0] = 0.00625;  // a decimal that comes back from 4 bytes as it went in
  edited["index"] = 3;
  edited["Layer"][2]["Thickness"] = 1.0;
  walls.push_back(coarse);
  walls.push_back(edited);
  test::TempFolder other;
  COM_ProjectData fresh;
  fresh.SetWorkPath(other.path);
  fresh.FilePrefix = "NEW";
  create_index(fresh.IndexDBName());
  import_project(fresh, json_text(json), quiet);
  const auto again = parse_json(export_project(fresh, {"walls"}, quiet))["CA_ConstructionAssly.Wall"];
  walls[1]["BTrans"] = walls[1]["DTrans"] = std::vector<double>(12);
  walls[1]["CTrans"] = 0.0;
  EXPECT_EQ(again[1], walls[1]) << "and none of the coefficients that its layers had";
  EXPECT_EQ(again[2], walls[2]);
  EXPECT_NE(again[3]["BTrans"], walls[3]["BTrans"]);
  ASSERT_EQ(log.messages.size(), 2U);
  EXPECT_EQ(log.messages[0],
            "Wall 1 (Default Wall) has no transfer functions: no layer is used. Its coefficients are 0.");
  EXPECT_NE(log.messages[1].find("off the response of its layers, and are computed anew"), std::string::npos);
}

TEST_F(ExchangeTest, AProjectWhoseIndexCannotBeOpenedIsRefusedWithTheReason) {
  const std::string sound = text();
  project.FilePrefix = "NONE";
  for (const auto& said :
       {test::what_of([&] { text(); }), test::what_of([&] { import_project(project, sound, quiet); })})
    EXPECT_NE(said.find("NONEINX.MDB does not exist"), std::string::npos) << said;
}

TEST_F(ExchangeTest, BadTextsAreRefusedWholeWithTheirLine) {
  fill();
  const std::string good = R"({"tarn": 1,
"DOR_Door": [{"index": 3, "Name": "first"},
{"index": 4,
)";
  const struct {
    std::string text;
    std::string says;
  } cases[]{
      {"{\"tarn\": 1,\n\"DOR_Door\": [", "line 2: the text is not JSON"},
      {"[]", "not a project"},
      {"{\"tarn\": " + std::string(100000, '[') + std::string(100000, ']') + "}",
       "line 1: the text nests deeper than 32 levels"},
      {"{\"tarn\": 1,\n\"DOR_Door\": [{\"index\": 1,\n\"Width\": 1e999}]}", "line 3: a number is too large"},
      {"{\"tarn\": 1,\n\"DOR_Door\": [],\n\"DOR_Door\": []}", "line 3: the key \"DOR_Door\" appears twice"},
      {good + "\"Name\": \"x\", \"name\": \"y\"}]}", "line 4: the key \"name\" appears twice"},
      {"{\"tarn\": 1, \"DOR_Door\": [{\"index\": 0, \"GrosArea\": 1}]}", "did you mean GrossArea?"},
      {"{\"tarn\": 1,\n\"DOR_Door\": [{\"index\": 50000\n}]}", "line 2, /DOR_Door/0/index"},
      {good + "\"AreaSpec\": {\"code\": 1, \"text\": \"DAS_AREA\"}}]}",
       "found code 1 beside \"DAS_AREA\", which is code 0"},
      {"{\"tarn\": 1, \"RPT_ReportOptions\": {\"record\": \"00\"}}", "remove it first to shorten it"},
      {"{\"tarn\": 1, \"RPT_ReportOptions\": {\"record\": \"00\", \"x\": 1}}", "wanted \"record\" only"},
      {"{\"tarn\": 2}", "wanted an object with \"tarn\": 1"},
      {"{\"tarn\": 1,\n\"DOR_Dor\": []}", "line 2, /DOR_Dor: there is no kind \"DOR_Dor\"; did you mean DOR_Door?"},
      {"{\"tarn\": 1, \"DOR_Door\": {}}", "/DOR_Door: found object, wanted an array"},
      {"{\"tarn\": 1, \"DOR_Door\": [5]}", "/DOR_Door/0: found number, wanted an object"},
      {"{\"tarn\": 1, \"DOR_Door\": [{}]}", "no \"index\""},
      {"{\"tarn\": 1, \"DOR_Door\": [{\"index\": 40000}]}",
       "/DOR_Door/0/index: found 40000, wanted a whole number from 0 to 32767"},
      {"{\"tarn\": 1, \"DOR_Door\": [{\"index\": 1},\n{\"index\": 1}]}",
       "line 2, /DOR_Door/1/index: the index 1 appears twice"},
      {good + "\"Heigth\": 2}]}", "line 4, /DOR_Door/1/Heigth: DOR_Door has no field Heigth; did you mean Height?"},
      {good + "\"Height\": \"tall\"}]}",
       "line 4, /DOR_Door/1/Height: DOR_Door.Height: found the text \"tall\", wanted a number"},
      {good + "\"Height\": 1e39}]}", "Overflow"},
      {good + "\"Height\": -0.5}]}",
       "line 4, /DOR_Door/1/Height: DOR_Door.Height: found -0.5 ft; allowed are 0 ft and above"},
      {good + "\"Height\": \"NaN\"}]}", "DOR_Door.Height: found NaN; allowed are finite numbers"},
      {good + "\"GlassShadeCo\": \"-Infinity\"}]}", "found -Infinity; allowed are finite numbers"},
      {good + "\"AreaSpec\": {\"code\": 9, \"text\": \"\"}}]}",
       "DOR_Door.AreaSpec: found code 9; the codes are 0 DAS_AREA, 1 DAS_HEIGHT_AND_WIDTH"},
      {"{\"tarn\": 1, \"WIN_Window\": [{\"index\": 9, \"FrameType\": 5}]}",
       "WIN_Window.FrameType: found 5; allowed are 0 to 4"},
      {"{\"tarn\": 1, \"BLR_Boiler\": [{\"index\": 9, \"FuelType\": 99}]}",
       "BLR_Boiler.FuelType: found code 99; the codes are 3 "},
      {good + "\"AreaSpec\": 1.5}]}", "found number, wanted a whole number"},
      {good + "\"AreaSpec\": 18446744073709551615}]}", "too large"},
      {good + "\"AreaSpec\": \"DAS_HEIGT\"}]}", "did you mean DAS_HEIGHT_AND_WIDTH?"},
      {good + "\"GlassShaded\": 1}]}", "found number, wanted true or false"},
      {good + "\"Name\": 7}]}", "found number, wanted a text"},
      {good + "\"Name\": \"" + std::string(256, 'n') + "\"}]}", "256 characters, allowed are 255"},
      {good + "\"Name\": \"\xE6\x97\xA5\"}]}", "U+65E5"},
      {good + "\"Index\": 7}]}", "appears twice"},
      {"{\"tarn\": 1, \"WIN_Window\": [{\"index\": 9, \"GlassTrans\": [1, 2]}]}",
       "found array of 2, wanted an array of 3"},
      {"{\"tarn\": 1, \"WIN_Window\": [{\"index\": 9, \"GlassTrans\": 1}]}", "found number, wanted an array of 3"},
      {"{\"tarn\": 1,\n\"SPC_Space\": [{\"index\": 9,\n\"Wall\": [{}]}]}",
       "line 3, /SPC_Space/0/Wall: found array of 1, wanted an array of 8"},
      {"{\"tarn\": 1,\n\"SPC_Space\": [{\"index\": 9, \"Floor\": {\n\"Aera\": 1}}]}",
       "line 3, /SPC_Space/0/Floor/Aera: SPC_Floor has no field Aera; did you mean Area?"},
      {"{\"tarn\": 1, \"SPC_Space\": [{\"index\": 9, \"Flor\": {}}]}", "did you mean Floor?"},
      {"{\"tarn\": 1, \"SPC_Space\": [{\"index\": 9, \"People\": {\"Schedule\": 5}}],\"SCH_Schedule\": []}",
       "/SPC_Space/0/People/Schedule: refers to Schedule 5, which the text does not have"},
      {"{\"tarn\": 1, \"DOR_Door\": [{\"index\": 9, \"AreaSpec\": {\"code\": 0, \"text\": 5}}]}",
       "found number as \"text\", wanted a text"},
      {"{\"tarn\": 1, \"RPT_ReportOptions\": {\"record\": \"0g\"}}", "found \"g\", wanted hexadecimal digits"},
      {"{\"tarn\": 1, \"PRF_ProjectPrefs\": {\"CurrencyUnits\": \"too long\"}}", "8 characters, allowed are 5"},
  };
  const std::string before = state();
  for (const auto& c : cases) {
    try {
      import_project(project, c.text, quiet);
      ADD_FAILURE() << c.text;
    } catch (const Error& error) {
      EXPECT_NE(error.description().find(c.says), std::string::npos) << error.what() << "\nfor " << c.text;
    }
    EXPECT_TRUE(state() == before) << c.text;
  }
}

TEST(WriteJson, IsWhatTheValuesOfToJsonAre) {
  WIN_Window window;
  window.Name = "a \"quoted\" \\ \xC3\xA9\t\x7F";
  window.Height = std::numeric_limits<float>::infinity();
  const float reals[]{1e-45F, 3.4028235e38F, -0.0F};
  for (int i = 1; i <= 3; ++i) window.GlassTrans(i) = reals[i - 1];
  window.GlassReflect(1) = 100.0F;
  window.GlassReflect(2) = 1e20F;
  window.GlassReflect(3) = 0.1F;
  for (const Member& member : window.info().members) {
    if (!member.stored()) continue;
    std::string text;
    write_json(text, window, member);
    EXPECT_EQ(parse_json(text), to_json(window, member)) << text;
  }
}

TEST(JsonLines, AreThoseOfTheValue) {
  const std::string text = "{\n\"a\": [1,\n{\"b\": 2,\n\"c\": \"x\"}],\n\"d\": null}";
  EXPECT_EQ(line_of(text, "/a/0"), 2U);
  EXPECT_EQ(line_of(text, "/a/1/b"), 3U);
  EXPECT_EQ(line_of(text, "/a/1/c"), 4U);
  EXPECT_EQ(line_of(text, "/d"), 5U);
}

}  // namespace
}  // namespace tarn
