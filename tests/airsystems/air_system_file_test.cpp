// The file of an air system: where its sections lie, which of them a load or a save takes.
#include <numeric>

#include "airsystems/air_system_fixture.h"

namespace tarn {
namespace {

using test::AirSystemTest;
using test::bytes_of;

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
    test::remove_file(file(0));
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

}  // namespace
}  // namespace tarn
