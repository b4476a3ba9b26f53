#include "tarn/air_system.h"

#include <numeric>

#include "airsystems/default_values.h"
#include "airsystems/defaults.h"
#include "support/temp_project.h"
#include "tarn/base/value.h"
#include "tarn/reflect/by_name.h"
#include "tarn/space.h"

namespace tarn {
namespace {

using test::bytes_of;

class AirSystemTest : public test::ProjectTest {
 protected:
  Ptr<AS_AirSystem> new_system(const std::string& name, int zones = 1) {
    auto system = project.NewAirSystem();
    system->SetToDefaultsByType(8);
    system->GetAirSystem()->Name = name;
    system->GetAirSystem()->SetNumZones(static_cast<int16_t>(zones));
    return system;
  }
  static void save(AS_AirSystem& system, bool after_calculations = false) {
    std::optional<bool> after = after_calculations;
    system.Save(after);
  }
  /// With results, and every byte of them its own.
  Ptr<AS_AirSystem> calculated(const std::string& name, int zones) {
    auto system = new_system(name, zones);
    system->GetAirSystem()->SetFlags();
    save(*system);
    for (int16_t i = 1; i <= zones; ++i) {
      system->GetZoneSizing(i)->MaxCFM = 100.0F * i;
      system->GetZoneTemperature(i)->StatusHours(8) = static_cast<int16_t>(i);
    }
    system->GetCoilSize()->CentralClgCoil(7, 16) = 1234.0F;
    system->GetUnmetLoads()->CapSufficient(6, 12) = 3.5F;
    system->GetAirSystem()->Sized = true;
    system->GetAirSystem()->Simulated = true;
    system->DesHasChanged = system->SimHasChanged = false;
    save(*system, true);
    system->GetHourlySimData()->Item(1)->HourlyResult(8760) = 7.25F;
    save(*system, true);
    return system;
  }
  static size_t sizing_size(size_t zones) { return 54 + 70 * zones + 3488; }
  void add_space(int index) {
    database->Execute("INSERT INTO SpaceIndex (nIndex) VALUES (" + std::to_string(index) + ")");
  }
  std::string file(int index) {
    char number[8];
    std::snprintf(number, sizeof number, "%02X", index);
    return folder / ("JOBA" + std::string(number) + ".DAT");
  }
};

TEST_F(AirSystemTest, SectionsLieAtTheirPlaces) {
  EXPECT_EQ(AS_General().info().record_size, 94U);
  EXPECT_EQ(sizeof(ZoneRecord), 398U);
  auto system = calculated("A", 3);
  const std::string bytes = bytes_of(file(1));
  const size_t inputs = 5204 + 3 * 398, sizing = inputs + 54 + 3 * 70 + 3488;
  const auto outputs = static_cast<size_t>(system->GetAirSystem()->NumOutputs);
  EXPECT_EQ(bytes.size(),
            sizing + 3 * sizeof(ZoneTemperatureRecord) + sizeof(UnmetLoadsRecord) + 35040 + outputs * 35040);
  EXPECT_EQ(bytes.substr(0, 3), "A  ");
  EXPECT_EQ(bytes.substr(5204 - 36, 10), "STARTCO   ");
  EXPECT_EQ(bytes.substr(5204 - 10, 10), "ENDCO     ");
  EXPECT_EQ(bytes.substr(5204, 6), "Zone 1");
  const float second = 200.0F;
  EXPECT_EQ(bytes.substr(inputs + 54 + 70, 4), std::string(reinterpret_cast<const char*>(&second), 4));
}

TEST_F(AirSystemTest, FilesAreNamedByTheIndexInHexadecimal) {
  const struct {
    int index;
    const char* name;
  } cases[]{{5, "JOBA05.DAT"}, {10, "JOBA0A.DAT"}, {255, "JOBAFF.DAT"}, {256, "JOBA100.DAT"}};
  for (const auto& c : cases) {
    database->Execute("DELETE FROM AirSystemIndex");
    database->Execute("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i + 1 < " +
                      std::to_string(c.index) + ") INSERT INTO AirSystemIndex (nIndex) SELECT i FROM n");
    save(*new_system("S"));
    EXPECT_TRUE(std::filesystem::exists(folder / c.name)) << c.name;
  }
  AS_AirSystem nameless;
  EXPECT_EQ(nameless.file().default_path(), "");
}

/// Counts the bytes that are read.
struct CountingFiles final : FileService {
  CountingFiles() { host().files = this; }
  ~CountingFiles() override { host().files = &system_files(); }
  struct Counted final : File {
    Counted(CountingFiles& files, std::unique_ptr<File> file) : owner(files), real(std::move(file)) {}
    size_t read(uint64_t offset, std::span<std::byte> into) override {
      const size_t got = real->read(offset, into);
      owner.read_bytes += got;
      return got;
    }
    void write(uint64_t offset, std::span<const std::byte> bytes) override { real->write(offset, bytes); }
    uint64_t size() override { return real->size(); }
    void truncate(uint64_t size) override { real->truncate(size); }
    void sync() override { real->sync(); }
    CountingFiles& owner;
    std::unique_ptr<File> real;
  };
  bool exists(const std::string& path) override { return system_files().exists(path); }
  std::unique_ptr<File> open(const std::string& path, OpenMode mode) override {
    auto file = system_files().open(path, mode);
    return file ? std::make_unique<Counted>(*this, std::move(file)) : nullptr;
  }
  void remove(const std::string& path) override { system_files().remove(path); }
  void rename(const std::string& from, const std::string& to) override { system_files().rename(from, to); }
  void sync_folder(const std::string& path) override { system_files().sync_folder(path); }
  size_t read_bytes = 0;
};

TEST_F(AirSystemTest, TheMaskSaysWhatIsRead) {
  calculated("A", 40);
  AS_AirSystem header;
  header.WorkPath = project.WorkPath();
  header.FilePrefix = "JOBA";
  header.SetDBHandle(database);
  {
    CountingFiles files;
    header.Load(1);
    EXPECT_EQ(files.read_bytes, 94U);
  }
  EXPECT_EQ(header.GetAirSystem()->Name.trimmed(), "A");
  EXPECT_EQ(header.GetAirSystem()->NumZones, 40);
  EXPECT_FALSE(header.GetCoolSys()->Used) << "not selected";
  header.SetMask(CCM_SIZINGMASK);
  header.Load(1);
  EXPECT_EQ(header.GetZoneSizing(40)->MaxCFM, 4000.0F) << "found without the sections before it";
  EXPECT_EQ(header.GetCoilSize()->CentralClgCoil(7, 16), 1234.0F);
  header.SetMask(0, CCM_SIZINGMASK);
  EXPECT_EQ(header.m_lCurMask, 1);
  header.SetMask(-1, -1);
  EXPECT_EQ(header.m_lCurMask, CCM_MASKALL);
  header.Load(1);
  EXPECT_EQ(header.GetHourlySimData()->Item(1)->HourlyResult(8760), 7.25F);
  EXPECT_EQ(header.GetUnmetLoads()->CapSufficient(6, 12), 3.5F);
}

TEST_F(AirSystemTest, ALoadAndASaveAfterCalculationsKeepEveryByte) {
  add_space(1);
  auto system = calculated("A", 2);
  system->GetZoneData(2)->SpaceID(1) = 1;
  system->GetZoneData(2)->TotalSpacesInZone = 1;
  save(*system, true);
  std::string odd = bytes_of(file(1));
  odd[94] = 7;              // a Boolean that is neither 0 nor -1
  odd[96] = odd[97] = 'x';  // a code outside its enumeration
  odd.replace(5204 - 36, 10, "STARTXX   ");
  test::write_bytes(file(1), odd);
  auto read = project.NewAirSystem();
  read->Load(1);
  save(*read, true);
  odd.replace(5204 - 36, 10, "STARTCO   ");
  EXPECT_EQ(bytes_of(file(1)), odd);
}

TEST_F(AirSystemTest, SectionsOutsideTheMaskAreCarriedOver) {
  calculated("A", 2);
  const std::string before = bytes_of(file(1));
  const size_t results = 5204 + 2 * 398;
  auto system = project.NewAirSystem();
  system->SetMask(CCM_HEADERMASK, CCM_MASKALL);
  system->Load(1);
  system->GetAirSystem()->Name = "B";
  save(*system);
  std::string expected = before;
  expected[0] = 'B';
  EXPECT_EQ(bytes_of(file(1)), expected) << "a header alone";
  EXPECT_TRUE(system->GetAirSystem()->Sized);
  system->GetAirSystem()->SetNumZones(3);
  EXPECT_EQ(test::error_number([&] { save(*system); }), 5) << "zones that the other sections have not";
  EXPECT_EQ(bytes_of(file(1)), expected);
  system->Load(1);
  system->SetMask(CCM_SIMULATIONMASK & CCM_MASKALL, CCM_MASKALL);
  system->Load(1);
  system->GetHourlySimData()->Item(1)->HourlyResult(1) = 1.0F;
  save(*system, true);
  EXPECT_EQ(bytes_of(file(1)).substr(0, results + 3000), expected.substr(0, results + 3000));
  EXPECT_NE(bytes_of(file(1)), expected);
  // A user's save of inputs drops the results, and marks.
  system->SetMask(CCM_MASKALL);
  system->Load(1);
  EXPECT_EQ(rows("AirSystemIndex").find("-1.000000 /-1.000000 /0.000000 /0.000000"), std::string::npos);
  save(*system);
  EXPECT_EQ(bytes_of(file(1)).size(), results + sizing_size(2)) << "with what the user chose for sizing";
  EXPECT_FALSE(system->GetAirSystem()->Sized);
  EXPECT_EQ(count("AirSystemIndex WHERE bDesHasChanged = -1 AND bSimHasChanged = -1 AND bSized = 0"), 1);
  // Only a calculation takes a changed flag away.
  system->SetMask(CCM_HEADERMASK, CCM_MASKALL);
  system->DesHasChanged = system->SimHasChanged = false;
  save(*system);
  EXPECT_EQ(count("AirSystemIndex WHERE bDesHasChanged = -1 AND bSimHasChanged = -1"), 1);
  system->DesHasChanged = false;
  save(*system, true);
  EXPECT_EQ(count("AirSystemIndex WHERE bDesHasChanged = 0 AND bSimHasChanged = -1"), 1);
}

TEST_F(AirSystemTest, ASaveWithoutInputsOrHeaderTouchesNeitherLinksNorTheRestOfTheRow) {
  add_space(1);
  auto system = new_system("A", 2);
  system->GetZoneData(1)->SpaceID(7) = 1;  // a count that does not fit is set right
  system->GetAirSystem()->SetFlags();
  save(*system);
  EXPECT_EQ(system->GetZoneData(1)->SpaceID(1) * 10 + system->GetZoneData(1)->TotalSpacesInZone, 11);
  system->GetAirSystem()->Sized = true;
  system->DesHasChanged = system->SimHasChanged = false;
  save(*system, true);
  const std::string row = rows("AirSystemIndex"), links = rows("System_Space_Links"), whole = bytes_of(file(1));
  ASSERT_NE(links, "");
  for (const int32_t mask : {1, 3670016, 0x03C00000, 1 | 3670016, 3670016 | 0x03C00000}) {
    auto part = project.NewAirSystem();
    part->SetMask(mask, CCM_MASKALL);
    part->Load(1);
    for (const bool after : {true, false}) {
      save(*part, after);
      EXPECT_EQ(rows("System_Space_Links"), links) << mask;
      EXPECT_EQ(rows("AirSystemIndex"), row) << mask;
      EXPECT_EQ(bytes_of(file(1)), whole) << mask;
    }
  }
  auto inputs = project.NewAirSystem();
  inputs->SetMask(CCM_INPUTMASK, CCM_MASKALL);
  inputs->Load(1);
  save(*inputs);
  EXPECT_EQ(bytes_of(file(1)).size(), 5204U + 2 * 398 + sizing_size(2));
  system->Load(1);
  EXPECT_EQ(system->GetAirSystem()->Name.trimmed(), "A");
  EXPECT_FALSE(system->GetAirSystem()->Sized) << "also in a header that was not selected";
}

TEST_F(AirSystemTest, AFailedSaveLeavesTheFlags) {
  auto system = calculated("A", 1);
  database->Execute("DROP TABLE System_Boiler_Links");
  EXPECT_NE(test::error_number([&] { save(*system); }), 0);
  EXPECT_FALSE(system->DesHasChanged || system->SimHasChanged);
  EXPECT_TRUE(system->GetAirSystem()->Sized);
}

TEST_F(AirSystemTest, TheFileOfIndexZeroIsTheDefault) {
  auto system = new_system("Usual", 3);
  system->SaveDefault();
  auto fresh = project.NewAirSystem();
  fresh->Delete();
  EXPECT_TRUE(std::filesystem::exists(file(0))) << "a system that was never stored has no file";
  fresh->CreateDefault();
  EXPECT_EQ(fresh->GetAirSystem()->NumZones, 3);
  EXPECT_EQ(fresh->Index(), 0);
}

TEST_F(AirSystemTest, AFileCutAtAnyByteIsAnErrorOrWholeSections) {
  calculated("A", 2);
  // A system that no flag calls sized or simulated.
  const std::string flagged = bytes_of(file(1)), whole = std::string(flagged).replace(36, 6, 6, '\0');
  database->Execute("UPDATE AirSystemIndex SET bSized = 0, bCoilDataValid = 0, bSimulated = 0");
  const size_t inputs = 5204 + 2 * 398, sizing = inputs + 54 + 2 * 70 + 3488;
  auto system = project.NewAirSystem();
  system->SetToDefaultsByType(1);
  std::vector<size_t> cuts(sizing + 40);
  std::iota(cuts.begin(), cuts.end(), size_t{0});
  for (size_t cut = sizing; cut < whole.size(); cut += 7001) cuts.push_back(cut);
  for (const size_t cut : cuts) {
    test::write_bytes(file(1), whole.substr(0, cut));
    const bool good = cut == 94 || cut == inputs || cut == sizing;
    const int number = test::error_number([&] { system->Load(1); });
    ASSERT_EQ(number == 0, good) << cut;
    if (good) {
      EXPECT_EQ(system->GetCoilSize()->CentralClgCoil(7, 16), cut >= sizing ? 1234.0F : 0.0F);
      system->SetToDefaultsByType(1);
      system->Reset();
    } else {
      ASSERT_EQ(number, 3343) << cut;
      ASSERT_EQ(system->GetAirSystem()->Name.trimmed(), "SZCAV Defaults") << cut;
      ASSERT_EQ(system->Index(), 0);
    }
  }
  for (const auto& [at, value] :
       {std::pair<size_t, int16_t>{34, -1}, {34, 32767}, {34, 3}, {48, -1}, {48, 23}, {48, 22}}) {
    std::string bad = whole;
    bad.replace(at, 2, reinterpret_cast<const char*>(&value), 2);
    test::write_bytes(file(1), bad);
    EXPECT_EQ(test::error_number([&] { system->Load(1); }), 3343) << at << " " << value;
  }
  EXPECT_EQ(test::error_number([&] { system->Load(9); }), 53);
}

TEST_F(AirSystemTest, TheDefaultHasInputsAndTheChoicesOfSizing) {
  const auto defaults_of = [&](bool stored_before) {
    std::filesystem::remove(file(0));
    auto system = project.NewAirSystem();
    system->Load(1);
    if (stored_before) {
      system->GetAirSystem()->Name = "A twin";
      system->SaveAs(0, Naming::AsItIs);
    }
    system->SaveDefault();
    auto fresh = project.NewAirSystem();
    fresh->CreateDefault();
    EXPECT_FALSE(fresh->GetAirSystem()->Sized || fresh->GetAirSystem()->Simulated);
    EXPECT_EQ(fresh->GetCoilSize()->CentralClgCoil(7, 16), 0.0F);
    EXPECT_EQ(fresh->GetAirSizing()->VentCFM, 0.0F);
    EXPECT_EQ(fresh->GetAirSizing()->CWDeltaT, 8.5F);
    return bytes_of(file(0)).size();
  };
  auto system = calculated("A", 1);
  system->GetAirSizing()->VentCFM = 500.0F;
  system->GetAirSizing()->CWDeltaT = 8.5F;
  save(*system, true);
  EXPECT_EQ(defaults_of(false), 5602U + sizing_size(1));
  EXPECT_EQ(defaults_of(true), 5602U + sizing_size(1));
}

TEST_F(AirSystemTest, WhatWasNeverLoadedIsNeverSaved) {
  add_space(1);
  for (const char* name : {"A", "B"}) {
    auto system = calculated(name, 2);
    system->GetZoneData(2)->SpaceID(1) = 1;
    system->GetZoneData(2)->TotalSpacesInZone = 1;
    system->GetZoneData(1)->Name = name;
    save(*system, true);
  }
  const std::string a = bytes_of(file(1)), b = bytes_of(file(2)), links = rows("System_Space_Links");
  ASSERT_NE(links, "");
  const auto unchanged = [&] {
    return bytes_of(file(1)) == a && bytes_of(file(2)) == b && rows("System_Space_Links") == links;
  };
  constexpr int32_t kResults = CCM_SIZINGMASK | 0x03C00000;  // no bit of the inputs
  const struct {
    const char* what;
    int32_t load_mask, save_mask;
    bool load_a_first, after, refused;
  } cases[]{{"simulation, whose mask has a bit of the inputs", CCM_HEADERMASK, CCM_SIMULATIONMASK, false, true, true},
            {"everything", CCM_HEADERMASK, CCM_MASKALL, false, false, true},
            {"everything, after another system's inputs", CCM_HEADERMASK, CCM_MASKALL, true, true, true},
            {"inputs alone, after another system's", CCM_HEADERMASK, CCM_INPUTMASK, true, false, true},
            {"results that are not there for the user", CCM_HEADERMASK, CCM_HEADERMASK | kResults, true, false, false},
            {"another system's header", CCM_SIZINGMASK, CCM_SIZINGMASK, true, true, false}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    auto system = project.NewAirSystem();
    if (c.load_a_first) system->Load(1);
    system->SetMask(c.load_mask, CCM_MASKALL);
    system->Load(2);
    EXPECT_EQ(system->GetZoneData(1)->Name.trimmed(), "") << "nothing of another system";
    system->SetMask(c.save_mask, CCM_MASKALL);
    std::string said;
    try {
      save(*system, c.after);
    } catch (const Error& error) {
      said = error.description();
    }
    EXPECT_EQ(said, c.refused ? "The input section is selected but was not loaded, and a save would empty it in the "
                                "file. Load it first, or leave it out of the mask."
                              : "");
    EXPECT_TRUE(unchanged());
  }
  auto system = project.NewAirSystem();
  system->SetMask(CCM_HEADERMASK, CCM_MASKALL);
  system->Load(2);
  EXPECT_EQ(test::error_number([&] { system->SaveDefault(); }), 5);
  system->SetToDefaultsByType(8);
  system->SetMask(CCM_MASKALL);
  save(*system);
  EXPECT_EQ(bytes_of(file(2)).size(), 5204U + 398 + sizing_size(1)) << "a type makes inputs of its own";
}

TEST_F(AirSystemTest, SectionsOfASystemMayBeLoadedOneAfterTheOther) {
  calculated("A", 2);
  const std::string before = bytes_of(file(1));
  auto system = project.NewAirSystem();
  for (const int32_t mask : {+CCM_INPUTMASK, +CCM_SIZINGMASK, +CCM_HEADERMASK, 0x03C00000}) {
    system->SetMask(mask, CCM_MASKALL);
    system->Load(1);
  }
  EXPECT_EQ(system->GetZoneSizing(2)->MaxCFM, 200.0F);
  system->SetMask(CCM_MASKALL);
  save(*system, true);
  EXPECT_TRUE(bytes_of(file(1)) == before);
}

/// What a user chooses for sizing, none of it as the defaults have it; they stand beside what sizing finds.
const std::vector<std::pair<const char*, double>> kChoices{
    {"SizingMethod", 2}, {"Source", 2},          {"CWDeltaT", 8.5}, {"HWDeltaT", 30}, {"CalcStartMonth", 4},
    {"CalcEndMonth", 9}, {"SDLSForPeakHour", 0}, {"SDLSMonth", 7},  {"SDLSHour", 15}};

void choose(AS_AirSystem& system) {
  for (const auto& [name, value] : kChoices) let_property(*system.GetAirSizing(), name, value);
}

void expect_chosen(AS_AirSystem& system) {
  for (const auto& [name, value] : kChoices)
    EXPECT_EQ(real_from(get_property(*system.GetAirSizing(), name)), value) << name;
}

TEST_F(AirSystemTest, TheChoicesOfSizingOutliveEverySaveAndResultsOnlyThoseThatLeaveInputs) {
  auto made = calculated("A", 2);
  choose(*made);
  made->GetAirSizing()->VentCFM = 500.0F;
  save(*made, true);
  const std::string whole = bytes_of(file(1));
  constexpr int32_t kSimulation = 0x03C00000;
  const struct {
    const char* what;
    std::vector<int32_t> load_masks;
    int32_t save_mask;
    bool after, results_stay;
  } cases[]{{"a user's, of everything", {CCM_MASKALL}, CCM_MASKALL, false, false},
            {"a user's, of inputs", {CCM_HEADERMASK | CCM_INPUTMASK}, CCM_HEADERMASK | CCM_INPUTMASK, false, false},
            {"the same after other loads",
             {CCM_INPUTMASK, CCM_HEADERMASK, kSimulation},
             CCM_HEADERMASK | CCM_INPUTMASK,
             false,
             false},
            {"a user's, of the header", {CCM_HEADERMASK}, CCM_HEADERMASK, false, true},
            {"a user's, of results", {CCM_INPUTMASK}, CCM_SIZINGMASK, false, true},
            {"after a calculation, of everything", {CCM_MASKALL}, CCM_MASKALL, true, true},
            {"after a calculation, of inputs", {CCM_INPUTMASK}, CCM_INPUTMASK, true, true},
            {"after a calculation that read the header", {CCM_HEADERMASK}, CCM_SIZINGMASK, true, false}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    test::write_bytes(file(1), whole);
    auto system = project.NewAirSystem();
    for (const int32_t mask : c.load_masks) {
      system->SetMask(mask, CCM_MASKALL);
      system->Load(1);
    }
    system->SetMask(c.save_mask, CCM_MASKALL);
    save(*system, c.after);
    auto read = project.NewAirSystem();
    read->GetAirSystem()->Sized = false;
    database->Execute("UPDATE AirSystemIndex SET bSimulated = 0");
    read->SetMask(0, kSimulation);
    read->Load(1);
    expect_chosen(*read);
    EXPECT_EQ(read->GetAirSizing()->VentCFM, c.results_stay ? 500.0F : 0.0F);
    EXPECT_EQ(read->GetZoneSizing(2)->MaxCFM, c.results_stay ? 200.0F : 0.0F);
    EXPECT_EQ(read->GetCoilSize()->CentralClgCoil(7, 16), c.results_stay ? 1234.0F : 0.0F);
  }
  EXPECT_EQ(bytes_of(file(1)).size(), whole.size()) << "a calculation's save leaves simulation alone";
}

TEST_F(AirSystemTest, ChoicesAreSetWithoutSizing) {
  // As a program that knows of no choices leaves it.
  calculated("A", 1);
  test::write_bytes(file(1), bytes_of(file(1)).substr(0, 5602).replace(36, 6, 6, '\0'));
  database->Execute("UPDATE AirSystemIndex SET bSized = 0, bSimulated = 0");
  auto system = project.NewAirSystem();
  system->SetMask(0, CCM_SIZINGMASK | 0x03C00000);
  system->Load(1);
  save(*system);
  EXPECT_EQ(bytes_of(file(1)).size(), 5602U) << "nothing was chosen";
  for (const bool after : {false, true}) {
    choose(*system);
    save(*system, after);
    auto read = project.NewAirSystem();
    read->Load(1);
    expect_chosen(*read);
    read->SetAsNew();
    expect_chosen(*read);
  }
  const auto clone = project.NewAirSystem()->Clone(int16_t{1});
  expect_chosen(*clone);
  clone->SetMask(CCM_HEADERMASK, CCM_MASKALL);
  EXPECT_NE(test::error_number([&] { clone->Load(9); }), 0);
  expect_chosen(*clone);
}

TEST_F(AirSystemTest, AnEditClearsResultsInTheObjectTooUntilItIsRolledBack) {
  auto system = calculated("A", 2);
  {
    Transaction undone;
    save(*system);
    EXPECT_EQ(system->GetZoneSizing(2)->MaxCFM, 0.0F);
    EXPECT_EQ(system->GetCoilSize()->CentralClgCoil(7, 16), 0.0F);
    EXPECT_EQ(system->GetZoneTemperature(2)->StatusHours(8), 0);
    EXPECT_EQ(system->GetHourlySimData()->Item(1)->HourlyResult(8760), 0.0F);
  }
  const std::string before = bytes_of(file(1));
  EXPECT_EQ(system->GetZoneSizing(2)->MaxCFM, 200.0F);
  system->GetAirSystem()->Sized = system->GetAirSystem()->Simulated = true;
  save(*system, true);
  EXPECT_TRUE(bytes_of(file(1)) == before);
  save(*system);
  const std::string edited = bytes_of(file(1));
  system->SetMask(CCM_SIZINGMASK, CCM_MASKALL);
  save(*system);
  EXPECT_TRUE(bytes_of(file(1)) == edited) << "results of other inputs do not come back";
}

TEST_F(AirSystemTest, AFailedLoadLeavesZonesAndTheirResults) {
  add_space(1);
  calculated("A", 3);
  auto other = calculated("B", 1);
  other->GetZoneData(1)->SpaceID(1) = 1;
  save(*other, true);
  auto system = project.NewAirSystem();
  system->Load(1);
  const Ptr<AS_ZoneData> zone = system->GetZoneData(3);
  system->SetMask(CCM_MASKALL);
  database->Execute("DROP TABLE System_Space_Links");  // link repair fails, after the inputs were read
  EXPECT_NE(test::error_number([&] { system->Load(2); }), 0);
  EXPECT_EQ(system->Index(), 1);
  EXPECT_EQ(system->GetAirSystem()->Name.trimmed(), "A");
  ASSERT_EQ(system->GetAirSystem()->NumZones, 3);
  EXPECT_EQ(system->GetZoneData(3), zone);
  EXPECT_EQ(system->GetZoneSizing(3)->MaxCFM, 300.0F);
  EXPECT_EQ(system->GetZoneTemperature(3)->StatusHours(8), 3);
  EXPECT_EQ(system->GetHourlySimData()->Item(1)->HourlyResult(8760), 7.25F);
}

TEST_F(AirSystemTest, AFileThatLacksWhatFlagsOrLinksTellOfIsAnError) {
  add_space(1);
  auto system = calculated("A", 1);
  system->GetZoneData(1)->SpaceID(1) = 1;
  system->GetZoneData(1)->TotalSpacesInZone = 1;
  save(*system, true);
  const std::string whole = bytes_of(file(1));
  const size_t inputs = 5204 + 398, sizing = inputs + 54 + 70 + 3488;
  const struct {
    size_t cut;
    int32_t mask;
    const char* says;  // null: it loads
  } cases[]{{94, CCM_INPUTMASK, "ends before The input section, though System 1 has link rows of kind Space"},
            {94, CCM_HEADERMASK, nullptr},
            {inputs, CCM_SIZINGMASK, "has no results, though bSized says"},
            {inputs, CCM_INPUTMASK, nullptr},
            {sizing, CCM_MASKALL, "has no results, though bSimulated says"},
            {sizing, CCM_INPUTMASK | CCM_SIZINGMASK, nullptr}};
  for (const auto& c : cases) {
    test::write_bytes(file(1), whole.substr(0, c.cut));
    auto cut = project.NewAirSystem();
    cut->SetMask(c.mask, CCM_MASKALL);
    std::string said;
    try {
      cut->Load(1);
    } catch (const Error& error) {
      said = error.description();
    }
    EXPECT_EQ(said.empty(), !c.says) << c.cut << said;
    if (c.says) {
      EXPECT_NE(said.find(file(1) + " " + c.says), std::string::npos) << said;
    }
  }
}

TEST_F(AirSystemTest, ZonesThatLoseSpacesCloseUp) {
  for (int i = 1; i <= 60; ++i) add_space(i);
  auto system = new_system("A", 3);
  for (int i = 1; i <= 50; ++i) {
    system->GetZoneData(1)->SpaceID(i) = static_cast<int16_t>(i);
    system->GetZoneData(1)->SpaceMultiplier(i) = static_cast<int16_t>(i * 10);
  }
  system->GetZoneData(1)->TotalSpacesInZone = 50;
  system->GetZoneData(2)->SpaceID(1) = 60;
  system->GetZoneData(2)->TotalSpacesInZone = 1;
  save(*system);
  EXPECT_EQ(count("System_Space_Links WHERE System_ID = 1"), 51);
  database->Execute("DELETE FROM System_Space_Links WHERE Space_ID IN (1, 3, 50, 60)");
  auto read = project.NewAirSystem();
  read->Load(1);
  const ZoneRecord& zone = *read->GetZoneData(1);
  EXPECT_EQ(zone.TotalSpacesInZone, 47);
  EXPECT_EQ(zone.SpaceID(1) * 100 + zone.SpaceID(2), 204);
  EXPECT_EQ(zone.SpaceMultiplier(2), 40);
  EXPECT_EQ(zone.SpaceID(47), 49);
  EXPECT_EQ(zone.SpaceID(48) + zone.SpaceMultiplier(48), 0);
  EXPECT_EQ(read->GetZoneData(2)->TotalSpacesInZone, 0);
  EXPECT_EQ(read->GetZoneData(3)->TotalSpacesInZone, 0);
  EXPECT_EQ(log.messages.size(), 4U);
}

TEST_F(AirSystemTest, LinksAreWhatTheInputsReferTo) {
  auto system = new_system("A", 1);
  system->GetZoneSchedule()->TstatSchedule = 4;
  system->GetOutVent()->Schedule = 5;
  system->GetWCSystemData()->TowerID = 6;
  system->GetWCSystemData()->BoilerID = 7;
  save(*system);
  const auto links = [&] {
    return std::to_string(count("System_Schedule_Links")) + std::to_string(count("System_Tower_Links")) +
           std::to_string(count("System_Boiler_Links")) + std::to_string(count("System_Space_Links"));
  };
  EXPECT_EQ(links(), "1110") << "a ventilation that is not scheduled has no schedule";
  system->GetOutVent()->VentType.raw = 3;
  save(*system);
  EXPECT_EQ(links(), "2110");
  add_space(1);
  system->GetZoneData(1)->SpaceID(3) = 1;
  save(*system);
  EXPECT_EQ(links(), "2111");
  system->GetAirSystem()->SetNumZones(0);
  save(*system);
  EXPECT_EQ(links(), "2110") << "the links of zones that are gone go";
  database->Execute("DELETE FROM System_Schedule_Links");
  database->Execute("DELETE FROM System_Boiler_Links");
  system->Load(1);
  EXPECT_EQ(system->GetZoneSchedule()->TstatSchedule + system->GetOutVent()->Schedule, 0);
  EXPECT_EQ(system->GetWCSystemData()->BoilerID, 0);
  EXPECT_EQ(system->GetWCSystemData()->TowerID, 6);
}

TEST_F(AirSystemTest, NamesAreUniqueAndDeletesTakeRowsLinksAndFiles) {
  auto system = new_system("O'Hara");
  save(*system);
  EXPECT_TRUE(system->IsNameUnique());
  auto other = new_system("O'Hara");
  EXPECT_FALSE(other->IsNameUnique());
  EXPECT_EQ(test::error_number([&] { save(*other); }), 5);
  EXPECT_FALSE(std::filesystem::exists(file(2)));
  other->GetAirSystem()->Name = "B";
  save(*other);
  database->Execute("DELETE FROM AirSystemIndex WHERE nIndex = 2");
  try {
    save(*other);
    ADD_FAILURE();
  } catch (const Error& error) {
    EXPECT_EQ(error.description(), "Cannot find air system record in index database");
  }
  link(
      "Plant_System_Links (5, 1); Building_System_Links (6, 1); System_Tower_Links (1, 3); System_Boiler_Links (1, 3); "
      "System_Space_Links (1, 3); System_Schedule_Links (1, 3); Plant_System_Links (5, 2)");
  test::write_bytes(folder / "LOADS.DAT", "x");
  system->DLFileName = "LOADS.DAT";
  system->Delete();
  EXPECT_EQ(count("Plant_System_Links") + count("Building_System_Links") + count("System_Tower_Links") +
                count("System_Boiler_Links") + count("System_Space_Links") + count("System_Schedule_Links"),
            1);
  EXPECT_FALSE(std::filesystem::exists(file(1)));
  EXPECT_FALSE(std::filesystem::exists(folder / "LOADS.DAT"));
  EXPECT_EQ(system->Index(), 0);
}

TEST_F(AirSystemTest, ChangesReachPlantsAndBuildings) {
  auto system = new_system("A");
  save(*system);
  database->Execute("INSERT INTO PlantIndex (nIndex, bDesHasChanged, bSimHasChanged) VALUES (5, 0, 0)");
  database->Execute("INSERT INTO BuildingIndex (nIndex, bHasChanged) VALUES (6, 0)");
  const struct {
    const char* links;
    int plants, buildings;
  } cases[]{{"Plant_System_Links (5, 1)", 1, 0},
            {"Plant_System_Links (5, 1); Building_Plant_Links (6, 5)", 1, 1},
            {"Building_System_Links (6, 1)", 0, 1},
            {"Plant_System_Links (5, 2); Building_System_Links (6, 2)", 0, 0}};
  for (const auto& c : cases) {
    Transaction undone;
    link(c.links);
    save(*system);
    EXPECT_EQ(count("PlantIndex WHERE bDesHasChanged = -1 AND bSimHasChanged = -1"), c.plants) << c.links;
    EXPECT_EQ(count("BuildingIndex WHERE bHasChanged = -1"), c.buildings) << c.links;
  }
}

TEST_F(AirSystemTest, ARollbackBringsFileAndIndexBack) {
  auto system = calculated("A", 1);
  const std::string before = bytes_of(file(1));
  {
    Transaction undone;
    save(*system);
    auto other = new_system("B");
    save(*other);
    EXPECT_EQ(other->Index(), 2);
    project.NewAirSystem()->Delete(1);
  }
  EXPECT_EQ(bytes_of(file(1)), before);
  EXPECT_FALSE(std::filesystem::exists(file(2)));
  const auto clone = system->Clone(int16_t{1});
  EXPECT_EQ(clone->Index(), 0);
  EXPECT_EQ(clone->GetAirSystem()->Name.trimmed(), "Copy of A");
  EXPECT_EQ(clone->GetCoilSize()->CentralClgCoil(7, 16), 1234.0F);
  clone->SetAsNew();
  EXPECT_EQ(clone->GetCoilSize()->CentralClgCoil(7, 16), 0.0F);
  EXPECT_EQ(clone->GetHourlySimData()->Count(), 0);
  EXPECT_TRUE(clone->GetCoolSys()->Used) << "inputs stay";
}

// ---- queries

TEST_F(AirSystemTest, CoilsAreFoundWhereTheyAreUsed) {
  using Source = AS_HeatCoolSourceTypes;
  const struct {
    const char* query;
    void (*use)(AS_AirSystem&, Source);
    bool cools;
  } cases[]{
      {"IsHWUsedCentralHeating",
       [](AS_AirSystem& s, Source x) { s.GetHeatSys()->Used = true, s.GetHeatSys()->Source = x; }, false},
      {"IsHWUsedPreheating",
       [](AS_AirSystem& s, Source x) { s.GetPreheatCoil()->Used = true, s.GetPreheatCoil()->Source = x; }, false},
      {"IsHWUsedHumidification",
       [](AS_AirSystem& s, Source x) { s.GetHumidity()->Used = true, s.GetHumidity()->HeatSource = x; }, false},
      {"IsHWUsedTerminalReheating",
       [](AS_AirSystem& s, Source x) { s.GetZoneData(1)->ReheatCoil = true, s.GetZoneSchedule()->ReheatSource = x; },
       false},
      {"IsHWUsedZoneHeating",
       [](AS_AirSystem& s, Source x) {
         s.GetZoneData(1)->HeatUnitType.raw = 1, s.GetZoneSchedule()->HeatingSource = x;
       },
       false},
      {"IsCWUsedCentralCooling",
       [](AS_AirSystem& s, Source x) { s.GetCoolSys()->Used = true, s.GetCoolSys()->Source = x; }, true},
      {"IsCWUsedPrecooling",
       [](AS_AirSystem& s, Source x) { s.GetPrecoolCoil()->Used = true, s.GetPrecoolCoil()->Source = x; }, true},
      {"IsCWUsedTerminalCooling",
       [](AS_AirSystem& s, Source x) { s.GetZoneData(1)->TermType.raw = 14, s.GetZoneSchedule()->TermClgSource = x; },
       true}};
  const auto holds = [](AS_AirSystem& system, std::string_view query) {
    std::vector<Value> none;
    Value result;
    call_method(system, system.info().find(query), none, result);
    return std::get<bool>(result);
  };
  for (const auto& c : cases) {
    AS_AirSystem system;
    system.GetAirSystem()->SetNumZones(1);
    EXPECT_FALSE(holds(system, "IsHWCoilUsed") || holds(system, "IsCWCoilUsed") || holds(system, "IsStmCoilUsed"));
    c.use(system, c.cools ? Source::ST_CHILLED_WATER : Source::ST_HOT_WATER);
    for (const auto& other : cases)
      EXPECT_EQ(holds(system, other.query), other.query == c.query) << c.query << " " << other.query;
    EXPECT_EQ(holds(system, c.cools ? "IsCWCoilUsed" : "IsHWCoilUsed"), true) << c.query;
    if (!c.cools) c.use(system, Source::ST_STEAM);
    EXPECT_EQ(holds(system, "IsStmCoilUsed"), !c.cools) << c.query;
    EXPECT_EQ(holds(system, "IsHWCoilUsed"), false) << c.query;
  }
  AS_AirSystem system;
  system.SetToDefaultsByType(15);
  EXPECT_TRUE(system.IsChangeoverApplicable());
  system.SetToDefaultsByType(16);
  EXPECT_FALSE(system.IsChangeoverApplicable());
}

TEST_F(AirSystemTest, DehumidifiedAirIsReheatedAtTheTerminalsOrCentrally) {
  AS_AirSystem system;
  system.SetToDefaultsByType(8);
  system.GetDehumid()->Used = true;
  system.GetZoneSchedule()->ReheatSource = AS_HeatCoolSourceTypes::ST_HOT_WATER;
  system.GetHeatSys()->Source = AS_HeatCoolSourceTypes::ST_STEAM;
  EXPECT_TRUE(system.IsHWUsedDehumidification());
  system.GetZoneData(1)->ReheatCoil = false;
  EXPECT_EQ(system.GetDehumid()->GetReheatSource(), AS_HeatCoolSourceTypes::ST_IRRELEVANT)
      << "no central heating in use";
  system.GetHeatSys()->Used = true;
  EXPECT_EQ(system.GetDehumid()->GetReheatSource(), AS_HeatCoolSourceTypes::ST_STEAM);
  EXPECT_EQ(AS_DehumidData().GetReheatSource(), AS_HeatCoolSourceTypes::ST_IRRELEVANT);
}

TEST_F(AirSystemTest, OutputsFollowTheComponentsInUse) {
  auto system = new_system("A");
  system->GetAirSystem()->SetFlags();
  const auto flags = [&] {
    std::string text;
    for (int i = 1; i <= 22; ++i) text += std::to_string(int{system->GetAirSystem()->OutputFlags(i)});
    return text;
  };
  EXPECT_EQ(flags(), "1100011000110001000000");
  EXPECT_EQ(system->GetAirSystem()->NumOutputs, 7);
  system->SetToDefaultsByType(14);
  database->Execute("INSERT INTO BoilerIndex (nIndex, nFuelType) VALUES (3, 2)");
  system->GetWCSystemData()->BoilerID = 3;
  system->GetAirSystem()->SetFlags();
  EXPECT_EQ(flags(), "1111100000000000000113");
  EXPECT_EQ(test::error_number([] { AS_General().SetFlags(); }), 91);
}

TEST_F(AirSystemTest, HourlyBlocksAreAList) {
  AS_HourlySimData list;
  list.Resize(3);
  list.Item(2)->HourlyResult(1) = 2.0F;
  list.Remove(1);
  list.Add();
  EXPECT_EQ(list.Count(), 3);
  EXPECT_EQ(list.Item(1)->HourlyResult(1), 2.0F);
  list.ResetData();
  EXPECT_EQ(list.Item(1)->HourlyResult(1), 0.0F);
  for (const int bad : {0, 4}) EXPECT_EQ(test::error_number([&] { list.Item(bad); }), 9);
  AS_UnmetLoads unmet;
  unmet.CapDeficientOver10(1, 12) = 4.0F;
  unmet.ResetData();
  EXPECT_EQ(unmet.CapDeficientOver10(1, 12), 0.0F);
}

// ---- defaults

TEST_F(AirSystemTest, EveryTypeHasItsDefaults) {
  const struct {
    int16_t type, system_type, equipment;
    const char* name;
    float supply_temperature;
    int16_t terminal;
  } cases[]{{1, 1, 1, "SZCAV Defaults", 58, 1},   {2, 2, 1, "CAVRH Defaults", 55, 2},
            {6, 6, 2, "TEMPER Defaults", 55, 1},  {8, 8, 1, "VAV Defaults", 55, 4},
            {14, 14, 6, "WSHP Defaults", 58, 11}, {20, 13, 6, "VRF Defaults", 58, 11},
            {22, 22, 6, "ACB Defaults", 58, 14}};
  AS_AirSystem system;
  for (const auto& c : cases) {
    system.SetToDefaultsByType(c.type);
    const SystemHeaderRecord& header = *system.GetAirSystem();
    EXPECT_EQ(header.Name.trimmed(), c.name);
    EXPECT_EQ(header.SystemType.raw, c.system_type) << c.name;
    EXPECT_EQ(header.EquipClass.raw, c.equipment) << c.name;
    EXPECT_EQ(system.GetCoolSys()->SupAirVal, c.supply_temperature) << c.name;
    EXPECT_EQ(system.GetZoneData(1)->TermType.raw, c.terminal) << c.name;
    EXPECT_EQ(system.GetZoneData(1)->Name.trimmed(), "Zone 1");
    EXPECT_EQ(header.NumZones, 1);
    EXPECT_FALSE(header.Sized || header.Simulated || header.HWCoilsExists);
    EXPECT_TRUE(system.GetHeatSys()->Schedule(12));
    const bool direct = system.GetCoolSys()->Source.raw == 1 || system.GetCoolSys()->Source.raw == 2;
    EXPECT_EQ(system.GetCoolSys()->PLR1Coeff(1) != 0, direct) << c.name;
  }
  for (const auto& [type, says] : {std::pair{0, "Unknown system type: 0"},
                                   {23, "Unknown system type: 23"},
                                   {17, "System type 17 is no longer used."}}) {
    try {
      system.SetToDefaultsByType(static_cast<int16_t>(type));
      ADD_FAILURE() << type;
    } catch (const Error& error) {
      EXPECT_EQ(error.description(), says);
    }
    EXPECT_EQ(system.GetAirSystem()->Name.trimmed(), "ACB Defaults");
  }
  system.SetToDefaults();
  EXPECT_EQ(system.GetAirSystem()->Name.trimmed(), "Default System");
}

TEST_F(AirSystemTest, ASecondTypeLeavesNothingOfTheFirst) {
  AS_AirSystem fresh, used;
  for (const SystemDefaults& first : kSystemDefaults) {
    used.SetToDefaultsByType(first.type);
    used.GetAirSystem()->SetNumZones(5);
    used.GetZoneData(1)->SpaceID(50) = 9;
    used.GetCoolSys()->Cap1Coeff(6, 8) = 1.0;
    used.GetCoilSize()->MaxPrecool = 3.0F;
    used.SetToDefaultsByType(22);
    fresh.SetToDefaultsByType(22);
    std::string one, other;
    const auto dump = [](Object& object, std::string& out) {
      for_each_field(object, [&](Object& owner, const Member& field, const std::string& prefix) {
        (out += prefix) += field.name;
        out.append(reinterpret_cast<const char*>(field.place(owner)), field.field()->size);
      });
    };
    dump(fresh, one);
    dump(used, other);
    EXPECT_TRUE(one == other) << first.class_name;
  }
}

TEST_F(AirSystemTest, DefaultsClassesFillTheirComponentsByName) {
  for (const SystemDefaults& row : kSystemDefaults) {
    AS_SystemDefaults defaults(row);
    EXPECT_EQ(defaults.info().name, row.class_name);
    EXPECT_EQ(defaults.info().members.size(), row.type == 1 ? 25U : 24U);
  }
  AS_SystemDefaults single(kSystemDefaults[0]);
  let_property(single, "ForPellNotTarn", true);
  auto header = std::make_shared<AS_General>();
  std::vector<Value> arguments{std::static_pointer_cast<Object>(header)};
  Value nothing;
  call_method(single, single.info().find("PopulateAirSystem"), arguments, nothing);
  EXPECT_EQ(header->Name.trimmed(), "Default System");
  EXPECT_EQ(header->EquipClass.raw, 2);
  EXPECT_THROW(call_method(single, single.info().find("PopulateCoolSys"), arguments, nothing), Error);
  AS_AirSystem system;
  create_defaults(system, 1, true);
  EXPECT_EQ(system.GetCoolSys()->Source.raw, 1);
  EXPECT_FALSE(system.GetCoolSys()->AutoSize || system.GetHeatSys()->AutoSize);
  EXPECT_EQ(system.GetSupplyFan()->PerfUnits.raw, 0);
  EXPECT_EQ(system.GetSupplyFan()->Efficiency, 0.84F);
  EXPECT_EQ(system.GetZoneData(1)->OccCoolSetpt, 80.0F);
  EXPECT_EQ(system.GetAirSizing()->CoolingSupplyTemp, 58.0F);
}

TEST_F(AirSystemTest, WrongDefaultsAreErrorsThatNameTheirPlace) {
  const struct {
    std::string right, wrong, says;
  } cases[]{
      {"\"AS_Dflt_05_DDCAV\"", "\"AS_Dflt_05_DDVAC\"", "AS_Dflt_05_DDVAC; did you mean AS_Dflt_05_DDCAV?"},
      {"\"AS_Dflt_05_DDCAV\": {", "\"AS_Dflt_05_DDCAV\": {\"CoolSis\": {},",
       "AS_Dflt_05_DDCAV, CoolSis: there is no such component; did you mean CoolSys?"},
      {"\"EconomizerType\"", "\"EconomiserType\"", "common, Economizer: AS_EconomizerData has no field EconomiserType"},
      {"\"KWValue\": [", "\"KWValue\": [1.0, ", "common, SupplyFan: AS_FanData.KWValue: found array of 12"},
      {"\"CompressorType\": \"VRF_Rotary\"", "\"CompressorType\": \"VRF_Rotor\"",
       "AS_Dflt_20_VRF, SplitSystem: AS_SplitSystemData.CompressorType: found \"VRF_Rotor\"; did you mean "
       "VRF_Rotary?"}};
  for (const auto& c : cases) {
    std::string json = system_default_values;
    json.replace(json.find(c.right), c.right.size(), c.wrong);
    try {
      read_system_defaults(json);
      ADD_FAILURE() << c.wrong;
    } catch (const Error& error) {
      EXPECT_NE(error.description().find(c.says), std::string::npos) << error.description();
    }
  }
}

}  // namespace
}  // namespace tarn
