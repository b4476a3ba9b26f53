#include "tarn/schedule.h"

#include "support/temp_project.h"
#include "tarn/reflect/by_name.h"

namespace tarn {
namespace {

using ScheduleTest = test::ProjectTest;

TEST_F(ScheduleTest, RecordsLieAsTheirFileHasThem) {
  EXPECT_EQ(test::layout(SCH_Schedule().info()),
            "Applicable@576+216 ProfileName@32+160 HourlyValue@192+384 Name@0+30 ScheduleType@30+2 ");
  auto schedule = project.NewSchedule();
  schedule->ScheduleType = SCH_ScheduleTypes::ST_RATE;
  schedule->ProfileName(8) = std::string(25, 'p');
  schedule->HourlyValue(3, 5) = 258;
  schedule->Applicable(12, 8) = 7;
  schedule->Save();
  EXPECT_EQ(schedule->Name.trimmed(), "Schedule");
  const std::string bytes = test::bytes_of(project.ScheduleFilename()).substr(792);
  EXPECT_EQ(bytes.size(), 792U);
  EXPECT_EQ(bytes[30], 2);
  EXPECT_EQ(bytes.substr(32 + 7 * 20, 20), std::string(20, 'p'));
  EXPECT_EQ(bytes.substr(192 + 2 * (2 + 8 * 5), 2), "\2\1");
  EXPECT_EQ(bytes.substr(576 + 2 * (11 + 12 * 8), 2), std::string("\7\0", 2));
  EXPECT_EQ(rows("ScheduleIndex"), "/1.000000 Schedule/0.000000 /2.000000 \n");
  schedule->Load(9);
  EXPECT_EQ(log.messages, std::vector<std::string>{"Invalid index value: 9"});
}

TEST_F(ScheduleTest, SubscriptsAreChecked) {
  SCH_Schedule schedule;
  const struct {
    const char* name;
    std::vector<int> at;
    bool good;
  } cases[]{{"HourlyValue", {1, 0}, true},  {"HourlyValue", {8, 23}, true}, {"HourlyValue", {1, 24}, false},
            {"HourlyValue", {0, 0}, false}, {"HourlyValue", {9, 0}, false}, {"Applicable", {1, 8}, true},
            {"Applicable", {12, 0}, true},  {"Applicable", {13, 0}, false}, {"Applicable", {1, 9}, false},
            {"ProfileName", {1}, true},     {"ProfileName", {9}, false},    {"ProfileName", {0}, false}};
  for (const auto& c : cases) {
    log.errors.clear();
    const Value before = get_property(schedule, c.name, c.at);
    let_property(schedule, c.name, before, c.at);
    EXPECT_EQ(log.errors.size(), c.good ? 0U : 2U) << c.name << c.at.back();
  }
}

std::vector<int16_t> numbers(const Collection& collection) {
  std::vector<int16_t> all;
  for (int32_t i = 1; i <= collection.Count(); ++i) all.push_back(std::get<int16_t>(collection.Item(i)));
  return all;
}

TEST_F(ScheduleTest, ValuesComeFromTheProfileOfTheDay) {
  SCH_Schedule schedule;
  schedule.Applicable(2, 0) = 3;
  schedule.Applicable(7, 5) = 1;
  schedule.Applicable(8, 8) = 3;
  schedule.HourlyValue(3, 23) = 45;
  EXPECT_EQ(schedule.GetValue(Months{2}, SCH_Days::Design_Day, 23), 45);
  EXPECT_EQ(numbers(*schedule.GetUsedProfiles(false)), (std::vector<int16_t>{1, 3}));
  EXPECT_EQ(numbers(*schedule.GetUsedProfiles(true)), std::vector<int16_t>{3});
  for (const auto& [month, hour] : {std::pair{1, 0}, {2, 24}, {0, 0}}) {
    EXPECT_EQ(test::error_number([&, m = month, h = hour] {
                schedule.GetValue(Months{static_cast<int16_t>(m)}, SCH_Days::Design_Day, static_cast<int16_t>(h));
              }),
              9)
        << month << " " << hour;
  }
  EXPECT_EQ(test::error_number([&] { schedule.GetUsedProfiles(true)->Item(2); }), 9);
}

TEST_F(ScheduleTest, EachWayReachesWhenItIsTheOnlyOneAndGoesWithTheSchedule) {
  auto schedule = project.NewSchedule();
  schedule->Save();
  const struct {
    const char* links;
    const char* marked;
  } cases[]{
      {"System_Space_Links (4, 9)", ""},
      {"Space_Schedule_Links (9, 1); System_Space_Links (4, 9)", "S"},
      {"Space_Schedule_Links (9, 1); System_Space_Links (4, 9); Plant_System_Links (5, 4); Building_Plant_Links (6, 5)",
       "SPB"},
      {"Space_Schedule_Links (9, 1); System_Space_Links (4, 9); Building_System_Links (6, 4)", "SB"},
      {"System_Schedule_Links (4, 1)", "S"},
      {"System_Schedule_Links (4, 1); Plant_System_Links (5, 4)", "SP"},
      {"System_Schedule_Links (4, 1); Building_System_Links (6, 4)", "SB"},
      {"Plant_Schedule_Links (5, 1)", "P"},
      {"Plant_Schedule_Links (5, 1); Building_Plant_Links (6, 5)", "PB"},
      {"Building_Schedule_Links (6, 1)", "B"},
      {"ElectricRate_Schedule_Links (8, 1); Building_ElectricRate_Links (6, 8)", "B"},
      {"FuelRate_Schedule_Links (8, 1); Building_FuelRate_Links (6, 8)", "B"},
      {"ElectricRate_Schedule_Links (8, 1); Building_FuelRate_Links (6, 8)", ""},
      {"Space_Schedule_Links (9, 2); System_Space_Links (4, 9); Building_Schedule_Links (6, 2)", ""}};
  for (const auto& c : cases) EXPECT_EQ(marks(*schedule, c.links), std::string(c.marked) + " " + c.marked) << c.links;
  for (const char* owner : {"Space", "System", "Plant", "Building", "ElectricRate", "FuelRate"})
    link(std::string(owner) + "_Schedule_Links (3, 1); " + owner + "_Schedule_Links (3, 2)");
  schedule->Delete();
  for (const char* owner : {"Space", "System", "Plant", "Building", "ElectricRate", "FuelRate"})
    EXPECT_EQ(rows(std::string(owner) + "_Schedule_Links"), "/3.000000 /2.000000 \n") << owner;
}

}  // namespace
}  // namespace tarn
