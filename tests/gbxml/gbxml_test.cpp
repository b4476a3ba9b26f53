#include "tarn/gbxml.h"

#include <cmath>

#include "gbxml/geometry.h"
#include "gbxml/known_ids.h"
#include "gbxml/source_text.h"
#include "gbxml/unit_names.h"
#include "project/defaults.h"
#include "support/temp_project.h"

namespace tarn {
namespace {

TEST(GbxmlGeometry, AreaAndDirection) {
  const double far = 1e6;  // a site far from the origin loses no digits
  const struct {
    const char* what;
    std::vector<Point> loop;
    double area, azimuth, tilt, off_plane;
  } cases[]{
      {"south wall", {{0, 0, 0}, {10, 0, 0}, {10, 0, 8}, {0, 0, 8}}, 80, 180, 90, 0},
      {"north wall", {{10, 0, 0}, {0, 0, 0}, {0, 0, 8}, {10, 0, 8}}, 80, 0, 90, 0},
      {"east wall, far away", {{far, far, 0}, {far, far + 10, 0}, {far, far + 10, 8}, {far, far, 8}}, 80, 90, 90, 0},
      {"flat roof", {{0, 0, 9}, {4, 0, 9}, {4, 4, 9}, {0, 4, 9}}, 16, 0, 0, 0},
      {"floor", {{0, 4, 0}, {4, 4, 0}, {4, 0, 0}, {0, 0, 0}}, 16, 0, 180, 0},
      {"roof to the south, 45 deg", {{0, 0, 0}, {3, 0, 0}, {3, 2, 2}, {0, 2, 2}}, 6 * std::sqrt(2), 180, 45, 0},
      {"an L", {{0, 0, 0}, {4, 0, 0}, {4, 2, 0}, {2, 2, 0}, {2, 4, 0}, {0, 4, 0}}, 12, 0, 0, 0},
      {"a line", {{0, 0, 0}, {1, 0, 0}, {2, 0, 0}}, 0, 0, 0, 0},
      {"two points", {{0, 0, 0}, {1, 0, 0}}, 0, 0, 0, 0},
      {"not planar", {{0, 0, 0}, {2, 0, 1}, {2, 2, 0}, {0, 2, 1}}, 4, 0, 0, 0.5},
  };
  for (const auto& each : cases) {
    const Facing facing = facing_of(each.loop);
    EXPECT_NEAR(facing.area, each.area, 1e-6) << each.what;
    EXPECT_NEAR(between(facing.azimuth, each.azimuth), 0, 1e-6) << each.what;
    EXPECT_NEAR(facing.tilt, each.tilt, 1e-6) << each.what;
    EXPECT_NEAR(facing.off_plane, each.off_plane, 1e-6) << each.what;
  }
}

TEST(GbxmlUnits, AreThoseOfTheProduct) {
  const struct {
    const char *name, *unit;
    double value, expected;
  } cases[]{
      {"SquareYards", "ft2", 2, 18}, {"CubicMeters", "ft3", 1, 35.3146667},        {"C", "F", 20, 68},
      {"K", "F", 273.15, 32},        {"WPerCmC", "Btu/(hr.ft.F)", 1, 57.7789},     {"JPerKgK", "Btu/(lb.F)", 4186.8, 1},
      {"GPH", "CFM", 60, 0.1336806}, {"LPerSecPerSquareM", "CFM/ft2", 1, 0.19685}, {"Fraction", "%", 0.25, 25},
      {"Millimeters", "in", 25.4, 1}};
  for (const auto& each : cases)
    EXPECT_NEAR(from_gbxml_unit(each.value, each.name, each.unit).value_or(NAN) / each.expected, 1, 1e-5) << each.name;
  EXPECT_FALSE(from_gbxml_unit(1, "Cubits", "ft"));
  EXPECT_FALSE(from_gbxml_unit(1, "Meters", "ft2"));
  EXPECT_FALSE(from_gbxml_unit(1, "Meters", "F"));
}

TEST(GbxmlText, DocumentTypesAreSoughtBeforeTheRootAlone) {
  EXPECT_EQ(xml_text("<gbXML><Name><![CDATA[<!DOCTYPE]]></Name></gbXML>").size(), 49U);
  EXPECT_NE(test::what_of([] { xml_text("<!-- a -->\n<!DOCTYPE a>"); }).find("line 2: "), std::string::npos);
}

class GbxmlTest : public test::ProjectTest {
 protected:
  void SetUp() override {
    ProjectTest::SetUp();
    write_default_records(project);
  }
};

std::string house(const char* schedule_value) {
  const std::string value = schedule_value;
  return R"(<gbXML lengthUnit="Feet" areaUnit="SquareFeet" volumeUnit="CubicFeet" temperatureUnit="F">
<Campus id="c"><Building id="b"><Space id="s1" zoneIdRef="z"><Name>Room</Name><Area>100</Area><Volume>900</Volume></Space></Building></Campus>
<Schedule id="y" type="Fraction"><YearSchedule><BeginDate>2026-01-01</BeginDate><EndDate>2026-12-31</EndDate><WeekScheduleId weekScheduleIdRef="w"/></YearSchedule></Schedule>
<WeekSchedule id="w"><Day dayType="All" dayScheduleIdRef="d"/></WeekSchedule><DaySchedule id="d"><ScheduleValue>)" +
         value + R"(</ScheduleValue></DaySchedule>
<Zone id="z"><Name>Zone</Name><AirLoopId airLoopIdRef="gone"/></Zone></gbXML>)";
}

/// The zone's air system is missed last, after everything else has been saved.
TEST_F(GbxmlTest, NothingIsImportedByHalves) {
  const std::string file = folder / "house.xml", ids = folder / "JOBGBXML.JSON";
  test::write_bytes(file, house("0.5"));
  const std::string before = rows("SpaceIndex") + rows("ScheduleIndex") + test::bytes_of(project.SpaceFilename());
  EXPECT_NE(
      test::what_of([&] { import_gbxml(project, file, {}); }).find("line 5, Zone z: it refers to the AirLoop \"gone\""),
      std::string::npos);
  EXPECT_EQ(rows("SpaceIndex") + rows("ScheduleIndex") + test::bytes_of(project.SpaceFilename()), before);
  EXPECT_FALSE(std::filesystem::exists(ids));
}

TEST_F(GbxmlTest, DamagedIdsAreToldAndReplaced) {
  const std::string file = folder / "house.xml", ids = folder / "JOBGBXML.JSON";
  std::string text = house("0.5");
  text.erase(text.find("<AirLoopId"), std::string("<AirLoopId airLoopIdRef=\"gone\"/>").size());
  test::write_bytes(file, text);
  test::write_bytes(ids, "{\"c\": [");
  EXPECT_EQ(import_gbxml(project, file, {}).made, 2U);
  ASSERT_FALSE(log.messages.empty());
  EXPECT_NE(log.messages.front().find("JOBGBXML.JSON cannot be read"), std::string::npos);
  files().settle();
  EXPECT_EQ(import_gbxml(project, file, {}).unchanged, 2U);
}

}  // namespace
}  // namespace tarn
