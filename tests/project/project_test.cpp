#include "tarn/project.h"

#include "support/temp_project.h"
#include "tarn/reflect/by_name.h"

namespace tarn {
namespace {

std::string text(COM_ProjectData& project, std::string_view name) {
  return std::get<std::string>(get_property(project, name));
}

TEST(Project, FileNamesArePathPrefixAndSuffix) {
  COM_ProjectData project;
  project.FilePrefix = "JOB";
  const struct {
    const char* given;
    const char* path;
    const char* window;
  } paths[]{{"/jobs/mall", "/jobs/mall", "/jobs/mall/JOBWIN.DAT"},
            {"/jobs/mall//", "/jobs/mall", "/jobs/mall/JOBWIN.DAT"},
            {"/jobs/./x/../mall/", "/jobs/mall", "/jobs/mall/JOBWIN.DAT"},
            {"/", "/", "/JOBWIN.DAT"},
            {"C:\\P\\", "C:\\P", "C:\\P\\JOBWIN.DAT"}};
  for (const auto& c : paths) {
    project.SetWorkPath(c.given);
    EXPECT_EQ(project.WorkPath(), c.path) << c.given;
    EXPECT_EQ(project.WindowFilename(), c.window) << c.given;
  }
  project.SetWorkPath("/p");
  const struct {
    const char* property;
    const char* suffix;
  } names[]{{"IndexDBName", "INX.MDB"},
            {"SimWeatherInputsFilename", "HW1.DAT"},
            {"SimWeatherFilename", "WTA.DAT"},
            {"DesWeatherFilename", "WTD.DAT"},
            {"ReportOptionsFilename", "RPT.DAT"},
            {"SpaceFilename", "SPC.DAT"},
            {"ScheduleFilename", "SCH.DAT"},
            {"ShadeFilename", "SHD.DAT"},
            {"DoorFilename", "DOR.DAT"},
            {"WallFilename", "WAL.DAT"},
            {"WindowFilename", "WIN.DAT"},
            {"RoofFilename", "ROF.DAT"},
            {"TowerFilename", "TWR.DAT"},
            {"BoilerFilename", "BLR.DAT"},
            {"ChillerFilename", "CHL.DAT"},
            {"FuelRateFilename", "FRT.DAT"},
            {"ElecRateFilename", "ERT.DAT"},
            {"ProjectPrefFilename", "PRF.DAT"},
            {"AirSystemDefaultFilename", "A00.DAT"},
            {"BuildingDefaultFileName", "B00.DAT"},
            {"PlantDefaultFilename", "P00.DAT"}};
  const auto& members = project.info().members;
  for (size_t i = 0; i < std::size(names); ++i) {
    EXPECT_EQ(members[i].name, names[i].property) << "interface order";
    EXPECT_TRUE(members[i].read_only);
    EXPECT_EQ(text(project, names[i].property), std::string("/p/JOB") + names[i].suffix);
    const bool without_blank = i >= std::size(names) - 4;
    EXPECT_EQ(members[i].get_label(),
              std::string(names[i].property) + (without_blank ? "[PropertyGet]" : " [PropertyGet]"));
  }
}

TEST(Project, BlankPiecesAreLoggedAndTheNameStillComes) {
  test::RecordingLog log;
  COM_ProjectData project;
  EXPECT_EQ(project.WindowFilename(), "WIN.DAT");
  EXPECT_EQ(log.messages, (std::vector<std::string>{"Invalid/blank working path", "Invalid/blank file prefix"}));
  log.messages.clear();
  project.SetWorkPath("/p");
  EXPECT_EQ(project.WindowFilename(), "/p/WIN.DAT");
  project.FilePrefix = "  ";
  EXPECT_EQ(project.WindowFilename(), "/p/  WIN.DAT");
  EXPECT_EQ(log.messages, std::vector<std::string>{"Invalid/blank file prefix"});
  log.messages.clear();
  project.FilePrefix = "JOB";
  EXPECT_EQ(project.CreateFilePrefix("A"), "JOBA");
  EXPECT_EQ(project.CreateFilePrefix("AB"), "JOBAB");
  EXPECT_EQ(project.CreateFilePrefix(""), "JOB");
  EXPECT_EQ(log.messages, (std::vector<std::string>{"Invalid file prefix code: [AB]", "Invalid file prefix code: []"}));
}

TEST(Project, FactoriesStandInInterfaceOrderUnderTheirLabels) {
  constexpr std::string_view names[]{"NewAirSystem", "NewAirSystemDesign", "NewBoiler",       "NewBuilding",
                                     "NewChiller",   "NewCoolingTower",    "NewDoor",         "NewElectricRate",
                                     "NewFuelRate",  "NewPlant",           "NewProjectPrefs", "NewReportOptions",
                                     "NewRoof",      "NewSchedule",        "NewShade",        "NewSpace",
                                     "NewWall",      "NewWeather",         "NewWindow"};
  COM_ProjectData project;
  const auto& members = project.info().members;
  ASSERT_EQ(members.size(), 23 + std::size(names));
  EXPECT_EQ(members[21].name, "WorkPath");
  EXPECT_EQ(members[22].name, "FilePrefix");
  for (size_t i = 0; i < std::size(names); ++i) {
    EXPECT_EQ(members[23 + i].name, names[i]);
    EXPECT_EQ(members[23 + i].call_label(), std::string(names[i]) + "()");
  }
}

TEST(Project, AWindowWithoutADatabaseIsLoggedAndStillMade) {
  test::RecordingLog log;
  test::TempFolder folder;
  COM_ProjectData project;
  project.SetWorkPath(folder.path);
  project.FilePrefix = "JOB";
  const auto window = project.NewWindow();
  ASSERT_TRUE(window);
  EXPECT_EQ(window->FileName, folder / "JOBWIN.DAT");
  EXPECT_FALSE(window->GetDBHandle());
  EXPECT_EQ(log.errors, std::vector<std::string>{"TarnDataHandler52|COM_ProjectData|SetDatabaseHandleOfDataObject"});
}

using WiredTest = test::ProjectTest;

TEST_F(WiredTest, FactoriesPassTheOneHandleOnAndOldObjectsKeepTheirFiles) {
  const auto first = project.NewWindow();
  EXPECT_EQ(first->GetDBHandle(), database);
  const std::string before = first->FileName;
  project.FilePrefix = "NEW";
  EXPECT_EQ(first->FileName, before);
  EXPECT_EQ(project.NewWindow()->FileName, folder / "NEWWIN.DAT");
}

}  // namespace
}  // namespace tarn
