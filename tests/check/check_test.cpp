#include "tarn/check.h"

#include <cmath>

#include "check/sound_project.h"
#include "tarn/system_results.h"

namespace tarn::test {
namespace {

constexpr size_t kWindow = sizeof(WindowRecord), kWall = sizeof(ConstructionRecord) + 10 * sizeof(LayerRecord);
const float kNaN = std::nanf("");

/// Made once; every case has a copy.
const SoundProject& sound() {
  static const SoundProject made;
  return made;
}

std::string told(const std::vector<CheckFinding>& findings) {
  std::string text;
  for (const CheckFinding& each : findings)
    text += each.place() + ": " + each.what + " " + each.remedy + (each.repairable ? "\n" : " (left)\n");
  return text;
}

struct Damaged {
  const char* name;
  void (*damage)(const SoundProject&);
  const char* place;  // the finding begins with it
  const char* words;  // and has these
  bool repairable = true;
};

const Damaged kOfRows[]{
    {"row_index_negative",
     [](const SoundProject& p) { p.sql("INSERT INTO WindowIndex (nIndex, szName) VALUES (-5, 'x')"); },
     "Window -5 \"x\", WindowIndex.nIndex", "A row has the index -5; indexes are 1 to 32767."},
    {"row_index_beyond_16_bits",
     [](const SoundProject& p) { p.sql("INSERT INTO WindowIndex (nIndex, szName) VALUES (65537, 'x')"); },
     "Window 65537", "indexes are 1 to 32767"},
    {"row_index_not_whole",
     [](const SoundProject& p) {
       p.sql(
           "CREATE TABLE d AS SELECT * FROM DoorIndex; DROP TABLE DoorIndex; ALTER TABLE d RENAME TO DoorIndex;"
           "INSERT INTO DoorIndex (nIndex, szName) VALUES ('two', 'x')");
     },
     " \"x\", DoorIndex.nIndex", "no whole number"},
    {"row_index_twice",
     [](const SoundProject& p) {
       p.sql(
           "CREATE TABLE d AS SELECT * FROM DoorIndex; DROP TABLE DoorIndex; ALTER TABLE d RENAME TO DoorIndex;"
           "INSERT INTO DoorIndex (nIndex, szName) VALUES (1, 'x')");
     },
     "Door 1 \"x\"", "A second row has the index 1."},
    {"row_without_record",
     [](const SoundProject& p) { p.sql("INSERT INTO WindowIndex (nIndex, szName) VALUES (9, 'lost')"); },
     "Window 9 \"lost\", JOBWIN.DAT", "The row has no record"},
    {"record_of_zeros", [](const SoundProject& p) { p.poke("WIN.DAT", 2 * kWindow, std::string(kWindow, '\0')); },
     "Window 2 \"North\", JOBWIN.DAT", "The row has no record"},
    {"row_without_file", [](const SoundProject& p) { remove_file(p.path("A02.DAT")); },
     "System 2 \"VAV 2\", JOBA02.DAT", "The row has no file."},
    {"record_file_missing", [](const SoundProject& p) { remove_file(p.path("DOR.DAT")); }, "",
     "The record file of the doors is missing, but the index has 1 of them.", false},
    {"row_of_a_used_wall_lost", [](const SoundProject& p) { p.sql("DELETE FROM WallIndex WHERE nIndex = 1"); },
     "Wall 1, Space_Wall_Links", "A link row says that Space 1 uses it, but its own row is missing in WallIndex."},
    {"row_of_a_user_lost", [](const SoundProject& p) { p.sql("DELETE FROM SpaceIndex WHERE nIndex = 2"); },
     "Space 2, Space_Wall_Links", "its own row is missing in SpaceIndex. Its record is there."},
    {"file_without_row", [](const SoundProject& p) { std::filesystem::copy(p.path("P01.DAT"), p.path("P0A.DAT")); },
     "Plant 10 \"Chilled water\", JOBP0A.DAT", "The file belongs to no row of PlantIndex."},
    {"name_of_the_row", [](const SoundProject& p) { p.sql("UPDATE DoorIndex SET szName = 'Gate'"); },
     "Door 1 \"Gate\", szName", "The index row says \"Gate\", the record \"Door\"."},
    {"summary_of_the_row",
     [](const SoundProject& p) { p.sql("UPDATE WindowIndex SET fOverallUValue = 9 WHERE nIndex = 2"); },
     "Window 2 \"North\", fOverallUValue", "The index row says 9, the record "},
    {"changed_flag_without_value", [](const SoundProject& p) { p.sql("UPDATE PlantIndex SET bSimHasChanged = NULL"); },
     "Plant 1 \"Chilled water\", bSimHasChanged", "does not say whether the results are stale"},
    {"two_of_a_name",
     [](const SoundProject& p) {
       p.poke("WIN.DAT", 2 * kWindow, "South");
       p.sql("UPDATE WindowIndex SET szName = 'South'");
     },
     "Window 2 \"South\", Name", "Window 1 has the same name."},
    {"partial_record", [](const SoundProject& p) { p.resize("WIN.DAT", 3 * kWindow - 100); },
     "Window 2 \"North\", JOBWIN.DAT", "The file ends in a partial record, 2, of 455 of 555 bytes."},
};

const Damaged kOfFiles[]{
    {"cut_in_its_results", [](const SoundProject& p) { p.resize("A01.DAT", p.size("A01.DAT") - 3); },
     "System 1 \"VAV 1\", JOBA01.DAT", "Repair keeps its inputs and whole results"},
    {"cut_in_its_inputs", [](const SoundProject& p) { p.resize("A01.DAT", 2000); }, "System 1 \"VAV 1\", JOBA01.DAT",
     "Its inputs are lost.", false},
    {"implausible_counts",
     [](const SoundProject& p) { p.poke("A01.DAT", offsetof(SystemHeaderRecord, NumZones), int16_t{-3}); },
     "System 1 \"VAV 1\", JOBA01.DAT", "-3 zones", false},
    {"longer_than_its_sections", [](const SoundProject& p) { p.resize("B01.DAT", p.size("B01.DAT") + 7); },
     "Building 1", "ends inside a section"},
    {"results_of_another_system", [](const SoundProject& p) { p.poke("D01.DAT", 0, std::string("Other system")); },
     "System 1 \"VAV 1\", JOBD01.DAT", "The design results are not this system's"},
    {"results_of_other_zones", [](const SoundProject& p) { p.resize("D01.DAT", p.size("D01.DAT") - 8); },
     "System 1 \"VAV 1\", JOBD01.DAT", "run the design calculation again"},
    {"results_without_a_number",
     [](const SoundProject& p) { p.poke("D01.DAT", p.size("D01.DAT") - sizeof(float), kNaN); },
     "System 1 \"VAV 1\", JOBD01.DAT", "hold a value that is no number: ADL_"},
    {"results_of_nobody", [](const SoundProject& p) { std::filesystem::copy(p.path("D01.DAT"), p.path("D0B.DAT")); },
     "System 11, JOBD0B.DAT", "results of an entity that is not there"},
};

const Damaged kOfValues[]{
    {"not_a_number",
     [](const SoundProject& p) { p.poke("WIN.DAT", kWindow + offsetof(WindowRecord, GlassTrans) + 4, kNaN); },
     "Window 1 \"South\", GlassTrans(2)", "found NaN"},
    {"infinite_in_a_default",
     [](const SoundProject& p) { p.poke("WIN.DAT", offsetof(WindowRecord, Height), HUGE_VALF); },
     "The default Window, Height", "found Infinity"},
    {"negative_height",
     [](const SoundProject& p) { p.poke("WIN.DAT", kWindow + offsetof(WindowRecord, Height), -4.0F); },
     "Window 1 \"South\", Height", "found -4 ft; allowed are 0 ft and above", false},
    {"unknown_code",
     [](const SoundProject& p) { p.poke("ERT.DAT", 900 + offsetof(UtilityRateRecord, RateStyle), int16_t{77}); },
     "ElectricRate 1 \"Day\", RateStyle", "code 77", false},
    {"rate_of_another_type",
     [](const SoundProject& p) { p.poke("ERT.DAT", 900 + offsetof(UtilityRateRecord, RateType), int16_t{1}); },
     "ElectricRate 1 \"Day\", RateType", "The record says rate type 1"},
    {"coefficients_of_other_layers",
     [](const SoundProject& p) {
       for (size_t i = 0; i < 12; ++i) p.poke("WAL.DAT", kWall + offsetof(ConstructionRecord, BTrans) + 4 * i, 0.05F);
     },
     "Wall 1 \"Brick\", BTrans, DTrans, CTrans", "The transfer functions are not those of the layers"},
    {"u_value_of_other_layers",
     [](const SoundProject& p) {
       p.poke("WAL.DAT", kWall + offsetof(ConstructionRecord, OverallUValue), 3.0F);
       p.sql("UPDATE WallIndex SET fOverallUValue = 3 WHERE nIndex = 1");
     },
     "Wall 1 \"Brick\", OverallUValue", "The U-value is 3 Btu/(hr.ft2.F); that of the layers is"},
    {"openings_larger_than_their_wall",
     [](const SoundProject& p) {
       const auto space = p.project.NewSpace();
       space->Load(1);
       space->GetWall(1)->GrossArea = 10;
       space->Save();
     },
     "Space 1 \"Office\", Wall(1).GrossArea", "ft2, the wall has 10 ft2.", false},
    {"skylights_without_a_roof",
     [](const SoundProject& p) {
       const auto space = p.project.NewSpace();
       space->Load(2);
       const auto roof = space->GetRoof(2);
       roof->Exposure = 17;
       roof->SkylightType = roof->SkylightQty = 1;
       space->Save();
     },
     "Space 2 \"Hall\", Roof(2).GrossArea", "the roof has 0 ft2.", false},
    {"a_space_that_counts_no_time",
     [](const SoundProject& p) {
       const auto system = p.project.NewAirSystem();
       system->SetMask(CCM_INPUTMASK, 0);
       system->Load(1);
       system->GetZoneData(1)->SpaceMultiplier(1) = 0;
       system->Save();
     },
     "System 1 \"VAV 1\", ZoneData(1).SpaceMultiplier(1)", "Space 1 counts 0 times in the zone.", false},
};

const Damaged kOfLinks[]{
    {"link_row_lost", [](const SoundProject& p) { p.sql("DELETE FROM Space_Window_Links WHERE Space_ID = 1"); },
     "Space 1 \"Office\", Wall(1).WindowType(1)", "the link row is missing in Space_Window_Links"},
    {"link_row_of_the_older_table_lost", [](const SoundProject& p) { p.sql("DELETE FROM Plant_Chiller_Links"); },
     "Plant 1 \"Chilled water\"", "the link row is missing in Plant_Chiller_Links."},
    {"link_row_without_use", [](const SoundProject& p) { p.sql("INSERT INTO Space_Wall_Links VALUES (1, 2)"); },
     "Space 1 \"Office\", Space_Wall_Links", "uses Wall 2, but its record does not refer to it"},
    {"link_row_of_a_missing_owner", [](const SoundProject& p) { p.sql("INSERT INTO Space_Wall_Links VALUES (40, 1)"); },
     "Space 40, Space_Wall_Links", "but there is no such Space"},
    {"link_row_twice", [](const SoundProject& p) { p.sql("INSERT INTO Space_Wall_Links VALUES (1, 1)"); },
     "Space 1 \"Office\", Space_Wall_Links", "It has 2 link rows for Wall 1."},
    {"used_entity_gone",
     [](const SoundProject& p) {
       p.sql("DELETE FROM ShadeIndex");
       p.resize("SHD.DAT", p.size("SHD.DAT") / 2);
     },
     "Shade 1, Space_Shade_Links", "but there is no such Shade"},
    {"library_that_is_none",
     [](const SoundProject& p) { p.sql("INSERT INTO Plant_Equipment_Links VALUES (1, 33, 1)"); },
     "Plant 1, Plant_Equipment_Links", "equipment of library 33"},
    {"mark_not_set",
     [](const SoundProject& p) { p.sql("UPDATE AirSystemIndex SET bSimHasChanged = -1 WHERE nIndex = 1"); },
     "Plant 1 \"Chilled water\", bSimHasChanged", "System 1, which it rests on, is to be simulated again"},
};

const Damaged kOfWeather[]{
    {"weather_row_missing", [](const SoundProject& p) { p.sql("DELETE FROM DesWeatherIndex"); }, "DesWeatherIndex",
     "0 rows instead of one"},
    {"weather_row_of_another_city",
     [](const SoundProject& p) { p.sql("UPDATE SimWeatherIndex SET szSimCityName = 'Oslo'"); }, "SimWeatherIndex",
     "The row says \"Oslo\", the weather file \"Golden\""},
    {"weather_cut", [](const SoundProject& p) { p.resize("WTA.DAT", 5000); }, "JOBWTA.DAT",
     "is cut short: 5000 of 2595219 bytes", false},
    {"hourly_file_cut", [](const SoundProject& p) { p.resize("HW1.DAT", 5000); }, "JOBHW1.DAT", "5000 of 70272 bytes",
     false},
    {"preferences_of_no_code", [](const SoundProject& p) { p.poke("PRF.DAT", 0, int16_t{99}); }, "JOBPRF.DAT",
     "VentStandardCode is 99"},
};

const Damaged kOfIndex[]{
    {"table_missing", [](const SoundProject& p) { p.sql("DROP TABLE WindowIndex"); }, "WindowIndex",
     "has no table WindowIndex"},
    {"link_table_missing", [](const SoundProject& p) { p.sql("DROP TABLE Space_Wall_Links"); }, "Space_Wall_Links",
     "has no table Space_Wall_Links"},
    {"column_missing", [](const SoundProject& p) { p.sql("ALTER TABLE WindowIndex DROP COLUMN fOverallUValue"); },
     "WindowIndex", "has no column fOverallUValue"},
    {"search_index_missing", [](const SoundProject& p) { p.sql("DROP INDEX Space_Wall_Links_Owner"); },
     "Space_Wall_Links_Owner", "has no search index Space_Wall_Links_Owner"},
    {"endless_view_in_place_of_a_table",
     [](const SoundProject& p) {
       p.sql(
           "DROP TABLE DoorIndex; CREATE VIEW DoorIndex AS WITH RECURSIVE r(nIndex) AS (SELECT 1 UNION ALL SELECT "
           "nIndex + 1 "
           "FROM r) SELECT nIndex, 'x' AS szName FROM r");
     },
     "DoorIndex", "a view in the place of the table"},
    {"trigger",
     [](const SoundProject& p) {
       p.sql(
           "CREATE TRIGGER t AFTER UPDATE ON WindowIndex BEGIN DELETE FROM DoorIndex; END;"
           "UPDATE WindowIndex SET fOverallUValue = 9");
       p.sql(
           "DROP TRIGGER t; INSERT INTO DoorIndex (nIndex, szName) VALUES (1, 'Door');"
           "CREATE TRIGGER t AFTER UPDATE ON WindowIndex BEGIN DELETE FROM DoorIndex; END");
     },
     "t", "has a trigger t"},
    {"foreign_view", [](const SoundProject& p) { p.sql("CREATE VIEW v AS SELECT 1"); }, "v", "has a view v"},
    {"foreign_table", [](const SoundProject& p) { p.sql("CREATE TABLE notes (a)"); }, "notes", "has a table notes",
     false},
    {"pending_bytes_of_no_save",
     [](const SoundProject& p) { p.sql("INSERT INTO PendingWrites VALUES (99, '../x.DAT', 0, '', x'00')"); },
     "PendingWrites", "Row 99 of the pending record bytes was written by no save"},
    {"index_that_is_none", [](const SoundProject& p) { write_bytes(p.path("INX.MDB"), "not a database at all"); },
     "JOBINX.MDB", "is not an index database"},
    {"index_with_torn_pages",
     [](const SoundProject& p) {
       for (size_t page = 2; page < 20; page += 3) p.poke("INX.MDB", page * 4096, std::string(2000, '\x5a'));
     },
     "JOBINX.MDB", "The index database is damaged"},
    {"index_missing", [](const SoundProject& p) { remove_file(p.path("INX.MDB")); }, "JOBINX.MDB", "is missing"},
    {"journal_of_other_files",
     [](const SoundProject& p) {
       std::string journal("\xd9\xd5\x05\xf9\x20\xa1\x63\xd7", 8);
       journal += std::string("\0\0\0\0\0\0\0\1\0\0\0\5\0\0\2\0\0\0\x10\0", 20) + std::string(484, '\0');
       const std::string victim = p.folder / "victim";
       uint32_t sum = 0;
       for (const char c : victim) sum += static_cast<unsigned char>(c);
       const auto big = [](uint32_t n) { return std::string{char(n >> 24), char(n >> 16), char(n >> 8), char(n)}; };
       journal += big(0x40000000 / 4096 + 1) + victim + big(static_cast<uint32_t>(victim.size())) + big(sum) +
                  journal.substr(0, 8);
       write_bytes(p.path("INX.MDB-journal"), journal);
     },
     "JOBINX.MDB", "names another file"},
};

bool has(const std::vector<CheckFinding>& findings, const Damaged& d) {
  return std::ranges::any_of(findings, [&](const CheckFinding& each) {
    const std::string text = each.what + " " + each.remedy;
    return each.place().starts_with(d.place) && text.find(d.words) != std::string::npos &&
           each.repairable == d.repairable;
  });
}

/// Damage is told in the right words, and repaired or left.
void check_and_repair(const Damaged& d) {
  SCOPED_TRACE(d.name);
  const SoundProject p(sound());
  d.damage(p);
  const auto damaged = p.bytes();
  const auto found = check_project(p.project);
  EXPECT_TRUE(has(found, d)) << told(found);
  const RepairReport dry = repair_project(p.project, {.dry_run = true});
  EXPECT_EQ(dry.found, found);
  EXPECT_EQ(p.bytes(), damaged) << "check and a dry run change nothing";

  const RepairReport report = repair_project(p.project);
  EXPECT_EQ(report.copy.empty(), std::ranges::none_of(found, &CheckFinding::repairable));
  EXPECT_TRUE(std::ranges::none_of(report.left, &CheckFinding::repairable)) << told(report.left);
  const auto left = check_project(p.project);
  EXPECT_EQ(told(left), told(report.left));
  EXPECT_EQ(has(left, d), !d.repairable) << told(left);
  if (report.copy.empty()) return;
  for (const auto& [path, bytes] : damaged) {  // the copy has every record file as it was
    const std::string name = path.substr(path.rfind('/') + 1);
    if (name.find("INX.MDB") == std::string::npos) {
      EXPECT_TRUE(SoundProject::contents(report.copy + "/" + name) == bytes) << name;
    }
  }
  EXPECT_EQ(std::filesystem::exists(report.copy + "/JOBINX.MDB"), damaged.contains(p.path("INX.MDB")));
}

TEST(Check, DamagedRows) { std::ranges::for_each(kOfRows, check_and_repair); }
TEST(Check, DamagedFiles) { std::ranges::for_each(kOfFiles, check_and_repair); }
TEST(Check, DamagedValues) { std::ranges::for_each(kOfValues, check_and_repair); }
TEST(Check, DamagedLinks) { std::ranges::for_each(kOfLinks, check_and_repair); }
TEST(Check, DamagedWeatherAndPreferences) { std::ranges::for_each(kOfWeather, check_and_repair); }
TEST(Check, DamagedIndex) { std::ranges::for_each(kOfIndex, check_and_repair); }

TEST(Check, ASoundProjectHasNoFindingAndIsNotTouched) {
  const SoundProject p(sound());
  const auto before = p.bytes();
  EXPECT_EQ(told(check_project(p.project)), "");
  const RepairReport report = repair_project(p.project);
  EXPECT_EQ(told(report.found) + report.copy, "");
  EXPECT_EQ(p.bytes(), before);
}

TEST(Check, DeletedEntitiesAreNoDamage) {
  const SoundProject p(sound());
  p.project.NewWindow()->Delete(1);
  p.project.NewWall()->Delete(1);
  p.project.NewAirSystem()->Delete(1);
  EXPECT_EQ(told(check_project(p.project)), "");
}

TEST(Check, TheIndexFromTheRecordsAloneIsThatOfTheSaves) {
  const SoundProject p(sound());
  const auto state = [&] {
    std::string all;
    const auto database = host().database(p.project.IndexDBName());
    for (const char* query :
         {"SELECT * FROM WindowIndex", "SELECT * FROM WallIndex", "SELECT szName, bSized FROM AirSystemIndex",
          "SELECT * FROM Space_Wall_Links", "SELECT * FROM Plant_Equipment_Links", "SELECT * FROM SimWeatherIndex",
          "SELECT * FROM Building_System_Links"}) {
      auto rows = database->OpenRecordset(query);
      for (; !rows.AtEof(); rows.MoveNext()) {
        for (const std::string& column : rows.columns())
          all += rows.Fields(column).text() + std::to_string(rows.Fields(column).real()) + " ";
      }
    }
    return all;
  };
  const std::string before = state();
  const RepairReport report = repair_project(p.project, {.rebuild_index = true});
  EXPECT_FALSE(report.copy.empty());
  EXPECT_EQ(state(), before);
  EXPECT_EQ(told(report.left), "");
}

TEST(Check, AFailedRepairChangesNothing) {
  const SoundProject p(sound());
  p.poke("WIN.DAT", kWindow + offsetof(WindowRecord, Height), kNaN);
  p.sql("DELETE FROM Space_Window_Links");
  const auto before = p.bytes();
  {
    Transaction open;
    EXPECT_NE(what_of([&] { repair_project(p.project); }).find("A transaction is open"), std::string::npos);
  }
  host().copy_name = [](const std::string&) -> std::string { throw Error(ErrorNumber::InvalidCall, "no name"); };
  p.sql("UPDATE WindowIndex SET szName = 'South'");
  p.poke("WIN.DAT", 2 * kWindow, std::string("South"));
  const auto damaged = p.bytes();
  EXPECT_EQ(what_of([&] { repair_project(p.project); }), "no name");
  host() = standard_host();
  EXPECT_EQ(p.bytes() == damaged, true);
  EXPECT_NE(before, damaged);
}

}  // namespace
}  // namespace tarn::test
