#include "tarn/weather.h"

#include <cmath>

#include "support/temp_project.h"
#include "tarn/reflect/by_name.h"

namespace tarn::test {
namespace {

class WeatherTest : public ProjectTest {
 protected:
  Ptr<WTH_Weather> weather() { return project.NewWeather(); }
};

template <typename T>
T at(const std::string& bytes, size_t offset) {
  T value{};
  std::memcpy(&value, bytes.data() + offset, sizeof value);
  return value;
}

struct Corner {
  const char* member;
  std::vector<int> subscripts;
  size_t offset;
};

/// A number of its own at each place, saved, found in the file.
void check_reals(WTH_Weather& weather, const std::string& file, const std::vector<Corner>& corners) {
  float number = 1000;
  for (const Corner& corner : corners) let_property(weather, corner.member, number += 0.5F, corner.subscripts);
  weather.Save();
  const std::string bytes = bytes_of(file);
  number = 1000;
  for (const Corner& corner : corners) {
    EXPECT_EQ(at<float>(bytes, corner.offset), number += 0.5F) << corner.member << " at " << corner.offset;
  }
}

TEST_F(WeatherTest, DesignFileHasEachValueAtItsPlace) {
  const auto w = weather();
  let_property(*w, "Region", int32_t{7});
  let_property(*w, "DesCityName", std::string("Golden"));
  let_property(*w, "DesStateName", std::string("A name of more than twenty characters"));
  let_property(*w, "DayLightSavings", true);
  constexpr std::pair<const char*, size_t> kShorts[]{
      {"FirstDesMonth", 98}, {"FirstMonthDST", 100}, {"FirstDayDST", 102},  {"LastDesMonth", 104},
      {"LastMonthDST", 106}, {"LastDayDST", 108},    {"DesSourceCode", 110}};
  for (const auto& [name, offset] : kShorts) let_property(*w, name, static_cast<int16_t>(offset));
  let_property(*w, "DesSourceCodeString", std::string("handbook"));
  std::vector<Corner> corners{
      {"DesLatitude", {}, 44},   {"DesLongitude", {}, 48},  {"DesElevation", {}, 52}, {"SummerDB", {}, 56},
      {"SummerWB", {}, 60},      {"DailyRange", {}, 64},    {"WinterDB", {}, 68},     {"WinterWB", {}, 72},
      {"AtmosClear", {}, 76},    {"DesBaromPress", {}, 80}, {"GrdReflect", {}, 84},   {"SoilConductivity", {}, 88},
      {"DesTZMeridian", {}, 92}, {"MaximumDB", {1}, 142},   {"MaximumDB", {12}, 186}, {"MinimumDB", {1}, 190},
      {"MaximumWB", {12}, 282},  {"MinimumWB", {1}, 286},   {"MinimumWB", {12}, 330}};
  for (const int month : {1, 12}) {
    const size_t block = 334 + static_cast<size_t>(month - 1) * 7180;
    const auto hours = [&](const char* name, size_t first) {
      for (const int hour : {1, 24}) corners.push_back({name, {month, hour}, block + 4 * (first + hour - 1)});
    };
    const auto exposures = [&](const char* name, size_t first) {
      for (const auto& [hour, exposure] : {std::pair(1, 1), std::pair(24, 1), std::pair(1, 17), std::pair(24, 17)})
        corners.push_back({name, {month, hour, exposure}, block + 4 * (first + (exposure - 1) * 24 + hour - 1)});
    };
    hours("DesDB", 0);
    hours("DesSH", 24);
    hours("DesIDN", 48);
    exposures("DesIDIFF", 72);
    exposures("DesITOT", 480);
    exposures("DesSBeamTrn", 888);
    exposures("DesSBeamAbs", 1296);
    hours("DesAltAngle", 1704);
    hours("DesAziAngle", 1728);
    hours("DesHrAngle", 1752);
    corners.push_back({"DesDecAngle", {month}, block + 4 * 1776});
    for (const int exposure : {1, 17})
      corners.push_back({"DesMaxSol", {month, exposure}, block + 4 * (1776 + exposure)});
    corners.push_back({"DesSolarMult", {month}, block + 4 * 1794});
  }
  check_reals(*w, w->DesFileName, corners);
  const std::string bytes = bytes_of(folder / "JOBWTD.DAT");
  EXPECT_EQ(bytes.size(), 86'494U);
  EXPECT_EQ(at<int32_t>(bytes, 0), 7);
  EXPECT_EQ(bytes.substr(4, 40), "Golden              A name of more than ");
  EXPECT_EQ(at<int16_t>(bytes, 96), -1);
  for (const auto& [name, offset] : kShorts)
    EXPECT_EQ(at<int16_t>(bytes, offset), static_cast<int16_t>(offset)) << name;
  EXPECT_EQ(bytes.substr(112, 30), "handbook                      ");
}

TEST_F(WeatherTest, SimulationFileHasEachValueAtItsPlace) {
  const auto w = weather();
  let_property(*w, "SimCityName", std::string("Golden"));
  let_property(*w, "SimStateName", std::string("CO"));
  let_property(*w, "SimCitySelected", true);
  let_property(*w, "SourceTypeLabel", std::string("TMY3 and more"));
  let_property(*w, "JanOne", int16_t{6});
  for (const int day : {1, 365}) let_property(*w, "Holiday", true, std::array{day});
  std::vector<Corner> corners{{"SimLatitude", {}, 42},
                              {"SimLongitude", {}, 46},
                              {"SimTZMeridian", {}, 50},
                              {"SimElevation", {}, 54},
                              {"SimBaromPress", {}, 58}};
  for (const int day : {1, 365}) {
    const size_t block = 799 + static_cast<size_t>(day - 1) * 7108;
    for (const auto& [name, first] :
         {std::pair("SimDB", 0), std::pair("SimSH", 24), std::pair("SimIDN", 48), std::pair("SimAltAngle", 1704),
          std::pair("SimAziAngle", 1728), std::pair("SimHrAngle", 1752)}) {
      for (const int hour : {1, 24}) corners.push_back({name, {day, hour}, block + 4 * (first + hour - 1)});
    }
    for (const auto& [name, first] : {std::pair("SimIDIFF", 72), std::pair("SimITOT", 480),
                                      std::pair("SimSBeamTrn", 888), std::pair("SimSBeamAbs", 1296)}) {
      for (const auto& [hour, exposure] : {std::pair(1, 1), std::pair(24, 1), std::pair(1, 17), std::pair(24, 17)})
        corners.push_back({name, {day, hour, exposure}, block + 4 * (first + (exposure - 1) * 24 + hour - 1)});
    }
    corners.push_back({"SimDecAngle", {day}, block + 4 * 1776});
  }
  check_reals(*w, w->SimFileName, corners);
  const std::string bytes = bytes_of(folder / "JOBWTA.DAT");
  EXPECT_EQ(bytes.size(), 2'595'219U);
  EXPECT_EQ(bytes.substr(0, 40), "Golden              CO                  ");
  EXPECT_EQ(at<int16_t>(bytes, 40), -1);
  EXPECT_EQ(bytes.substr(62, 5), "TMY3 ");
  EXPECT_EQ(at<int16_t>(bytes, 67), 6);
  EXPECT_EQ(at<int16_t>(bytes, 69), -1);
  EXPECT_EQ(at<int16_t>(bytes, 71), 0);
  EXPECT_EQ(at<int16_t>(bytes, 797), -1);
}

TEST_F(WeatherTest, SubscriptsAreChecked) {
  const auto w = weather();
  const Corner outside[]{{"DesDB", {13, 1}, 0},        {"DesIDIFF", {1, 25, 1}, 0}, {"DesIDIFF", {1, 1, 18}, 0},
                         {"DesDecAngle", {0}, 0},      {"Holiday", {366}, 0},       {"SimDB", {0, 1}, 0},
                         {"SimITOT", {366, 24, 17}, 0}};
  for (const Corner& c : outside) {
    const auto subscript_error = number(ErrorNumber::SubscriptOutOfRange);
    EXPECT_EQ(error_number([&] { get_property(*w, c.member, c.subscripts); }), subscript_error) << c.member;
    EXPECT_EQ(error_number([&] { let_property(*w, c.member, 1.0F, c.subscripts); }), subscript_error) << c.member;
  }
}

TEST_F(WeatherTest, SaveWritesRowsFilesAndMarksEverything) {
  database->Execute("INSERT INTO AirSystemIndex (nIndex) VALUES (3)");
  add_dependants();
  database->Execute("UPDATE AirSystemIndex SET bDesHasChanged = 0, bSimHasChanged = 0");
  const auto w = weather();
  w->DesCityName = "  Golden";
  w->DesStateName = "CO";
  w->SimCityName = "Boulder";
  w->SourceTypeLabel = "TMY2";
  w->JanOne = 3;
  w->Save();
  EXPECT_EQ(rows("DesWeatherIndex"), "Golden, CO/0.000000 \n");
  EXPECT_EQ(rows("SimWeatherIndex"), "Boulder TMY2/0.000000 /3.000000 \n");
  EXPECT_EQ(count("AirSystemIndex WHERE bDesHasChanged = -1 AND bSimHasChanged = -1"), 2);
  EXPECT_EQ(count("PlantIndex WHERE bDesHasChanged = -1 AND bSimHasChanged = -1"), 1);
  EXPECT_EQ(count("BuildingIndex WHERE bHasChanged = -1"), 1);

  const auto loaded = weather();
  loaded->Load();
  EXPECT_EQ(loaded->DesCityName.str(), "  Golden            ");
  EXPECT_EQ(loaded->SimCityName.str(), "Boulder             ");
  EXPECT_EQ(loaded->JanOne, 3);
}

TEST_F(WeatherTest, EachStepOfASaveStandsAlone) {
  const auto w = weather();
  w->DesCityName = "First";
  w->SimCityName = "First";
  w->Save();
  add_dependants();
  const std::string simulation = bytes_of(w->SimFileName);
  w->DesCityName = "Second";
  w->SimCityName = "Second";
  database->Execute("DELETE FROM SimWeatherIndex");
  EXPECT_EQ(error_number([&] { w->Save(); }), number(ErrorNumber::NoCurrentRecord));
  EXPECT_EQ(rows("DesWeatherIndex"), "Second, /0.000000 \n") << "the design step is done";
  EXPECT_EQ(bytes_of(w->DesFileName).substr(4, 6), "Second");
  EXPECT_EQ(bytes_of(w->SimFileName), simulation);
  EXPECT_EQ(marked(), "") << "nothing is marked after a failed step";

  database->Execute("DELETE FROM DesWeatherIndex");
  w->DesCityName = "Third";
  EXPECT_EQ(error_number([&] { w->Save(); }), number(ErrorNumber::NoCurrentRecord));
  EXPECT_EQ(bytes_of(w->DesFileName).substr(4, 6), "Second");
}

TEST_F(WeatherTest, FailuresOfTheDiskLeaveWholeFiles) {
  const auto w = weather();
  w->SimCityName = "First";
  w->Save();
  const std::string design = bytes_of(w->DesFileName), simulation = bytes_of(w->SimFileName);
  for (int operation = 0;; ++operation) {
    w->SimCityName = "Second";
    w->DesCityName = "Second";
    bool done = false;
    {
      FaultyFiles faulty(operation);
      done = error_number([&] { w->Save(); }) == 0;
    }
    if (done) break;
    const bool simulation_is_new = bytes_of(w->SimFileName).starts_with("Second");
    EXPECT_EQ(bytes_of(w->DesFileName).size(), 86'494U) << operation;
    EXPECT_EQ(bytes_of(w->SimFileName).size(), 2'595'219U) << operation;
    EXPECT_EQ(rows("SimWeatherIndex").starts_with("Second"), simulation_is_new) << operation;
    write_bytes(w->DesFileName, design);
    write_bytes(w->SimFileName, simulation);
    database->Execute("UPDATE SimWeatherIndex SET szSimCityName = 'First'");
    ASSERT_LT(operation, 100);
  }
}

TEST_F(WeatherTest, LoadTakesWhatIsThere) {
  database->Execute("UPDATE DesWeatherIndex SET szDesCityName = 'A city of many letters, CO'");
  const auto w = weather();
  w->SimDay(365).DB(24) = 50;
  w->Load();
  EXPECT_EQ(w->DesCityName.str(), "A city of many lette") << "its file is empty";
  EXPECT_EQ(w->SimDay(365).DB(24), 0);
  EXPECT_TRUE(log.messages.empty());
  w->DesCityName = "Golden";
  w->DesStateName = "";
  for (const char* times : {"once", "twice"}) {
    w->Save();
    test::remove_file(w->DesFileName);
    w->Load();
    EXPECT_EQ(w->DesCityName.trimmed(), "Golden") << times;
    EXPECT_TRUE(rows("DesWeatherIndex").starts_with("Golden, /")) << times;
    EXPECT_FALSE(std::filesystem::exists(w->DesFileName)) << times;
  }
  w->DesCityName = "City";
  w->DesDay(12).SolarMult = 2;
  w->Save();

  // A file that is cut in its last day, and one with bytes after its end.
  std::filesystem::resize_file(w->SimFileName, 2'595'000);
  write_bytes(w->DesFileName, bytes_of(w->DesFileName) + "tail");
  const auto again = weather();
  again->Load();
  EXPECT_EQ(again->DesDay(12).SolarMult, 2);
  ASSERT_EQ(log.messages.size(), 1U);
  EXPECT_EQ(log.messages[0], w->SimFileName + " is cut short: 2595000 of 2595219 bytes; the rest reads as zeros.");
  again->Save();
  EXPECT_EQ(bytes_of(w->DesFileName).substr(86'494), "tail");
}

TEST_F(WeatherTest, CloneCopiesTheWeatherButNotItsFiles) {
  const auto w = weather();
  w->DesDay(6).MaxSol(17) = 250;
  w->SimDay(200).IDIFF(24, 17) = 33;
  w->Holiday(365) = true;
  const auto clone = w->Clone();
  EXPECT_EQ(clone->DesDay(6).MaxSol(17), 250);
  EXPECT_EQ(clone->SimDay(200).IDIFF(24, 17), 33);
  EXPECT_TRUE(clone->Holiday(365));
  EXPECT_EQ(clone->GetDBHandle(), database);
  EXPECT_EQ(clone->DesFileName + clone->SimFileName + clone->SimInputFileName, "");
  EXPECT_EQ(error_number([&] { clone->Save(); }), number(ErrorNumber::FileNotFound));
  EXPECT_EQ(error_number([&] { WTH_Weather().Clone(); }), number(ErrorNumber::ObjectNotSet));
}

TEST_F(WeatherTest, SourceCodesComeFromAnyDatabaseInTheOrderOfTheirIds) {
  Database::create(folder / "codes.mdb",
                   "CREATE TABLE Codes (ID INTEGER, Description TEXT);"
                   "INSERT INTO Codes VALUES (20, 'second'), (3, 'first'), (40, NULL);");
  WTH_Weather w;
  EXPECT_EQ(w.SourceCode(1), "");
  EXPECT_TRUE(w.LoadSourceCodes(folder / "codes.mdb", "Codes"));
  EXPECT_EQ(error_number([&] { w.LoadSourceCodes(folder / "codes.mdb", "Other"); }),
            number(ErrorNumber::StatementRejected));
  EXPECT_TRUE(w.LoadSourceCodes(folder / "codes.mdb", "Codes"));
  constexpr std::pair<int, const char*> kCodes[]{{1, "first"}, {2, "second"}, {3, ""},  {4, "first"}, {6, ""},
                                                 {7, ""},      {0, ""},       {-1, ""}, {32767, ""}};
  for (const auto& [index, text] : kCodes) EXPECT_EQ(w.SourceCode(index), text) << index;
  EXPECT_EQ(std::get<std::string>(get_property(w, "SourceCode", std::array{2})), "second");
}

TEST_F(WeatherTest, ANewObjectHasZerosAndBlanks) {
  const WTH_Weather w;
  EXPECT_EQ(w.DesCityName.str(), std::string(20, ' '));
  EXPECT_EQ(w.SourceTypeLabel.str(), "     ");
  EXPECT_EQ(w.SimDay(1).DB(1), 0);
}

}  // namespace
}  // namespace tarn::test
