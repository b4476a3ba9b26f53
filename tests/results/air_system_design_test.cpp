#include "tarn/air_system_design.h"

#include <sys/wait.h>
#include <unistd.h>

#include "support/temp_project.h"
#include "tarn/reflect/by_name.h"

namespace tarn::test {
namespace {

class AirSystemDesignTest : public ProjectTest {
 protected:
  /// A system with as many spaces in each zone.
  Ptr<AS_AirSystem> system_of(const std::vector<int>& spaces, int16_t index = 5) {
    auto system = project.NewAirSystem();
    system->GetAirSystem()->Name = "AHU 5";
    if (count("AirSystemIndex WHERE nIndex = " + std::to_string(index)) == 0)
      system->SaveAs(index, Naming::AsItIs);
    else
      system->Load(index);
    system->GetAirSystem()->SetNumZones(static_cast<int16_t>(spaces.size()));
    for (size_t i = 0; i < spaces.size(); ++i)
      system->GetZoneData(static_cast<int16_t>(i + 1))->TotalSpacesInZone = static_cast<int16_t>(spaces[i]);
    return system;
  }
  Ptr<ADL_AirSystemDesign> design_of(const std::vector<int>& spaces, int16_t index = 5) {
    auto design = project.NewAirSystemDesign();
    design->SetAirSystem(system_of(spaces, index));
    return design;
  }
  Ptr<AS_AirSystem> stored(const std::string& name) {
    auto system = project.NewAirSystem();
    system->SetToDefaultsByType(8);
    system->GetAirSystem()->Name = name;
    system->Save();
    return system;
  }
  void make_results(const Ptr<AS_AirSystem>& system) {
    auto design = project.NewAirSystemDesign();
    design->SetAirSystem(system);
    design->SSAir.People = 7;
    design->Save(static_cast<int16_t>(system->Index()));
  }
  bool has_results(int index) { return std::filesystem::exists(folder / ("JOBD0" + std::to_string(index) + ".DAT")); }
  /// The people of the results of a system's index, or what the error says.
  std::string loaded(int16_t index) {
    auto system = project.NewAirSystem();
    system->Load(index);
    auto design = project.NewAirSystemDesign();
    design->SetAirSystem(system);
    try {
      design->Load();
    } catch (const Error& error) {
      return error.description();
    }
    return std::to_string(static_cast<int>(design->SSAir.People));
  }
  /// Calls by name, where failures are logged.
  static void call(ADL_AirSystemDesign& design, const char* name, std::vector<Value> arguments = {}) {
    Value nothing;
    call_method(design, design.info().find(name), arguments, nothing);
  }
};

TEST_F(AirSystemDesignTest, FileNames) {
  const struct {
    const char* prefix;
    int16_t index;
    const char* file;
  } cases[]{{"JOBD", 5, "JOBD05.DAT"},
            {"JOBD", 9, "JOBD09.DAT"},
            {"JOBD", 10, "JOBD0A.DAT"},
            {"JOBD", 12, "JOBD0C.DAT"},
            {"JOBD", 15, "JOBD0F.DAT"},
            {"JOBD", 16, "JOBD10.DAT"},
            {"JOBD", 300, "JOBD12C.DAT"},
            {"D", 32767, "D7FFF.DAT"},
            {"", 5, ""},
            {"", 10, ""}};
  const auto design = project.NewAirSystemDesign();
  EXPECT_EQ(design->FilePrefix, "JOBD");
  EXPECT_EQ(design->sWorkPath(), project.WorkPath());
  for (const auto& c : cases) {
    design->FilePrefix = c.prefix;
    EXPECT_EQ(design->file_of(c.index), *c.file ? folder / c.file : "") << c.prefix << c.index;
  }
}

TEST_F(AirSystemDesignTest, TheSystemMakesTheZones) {
  const auto design = design_of({1, 4, 0});
  const auto zones = design->DLZones();
  EXPECT_EQ(zones->Count(), 3);
  EXPECT_EQ(design->TSZones()->Count(), 3);
  EXPECT_EQ(design->HLZones()->Count(), 3);
  EXPECT_EQ(design->DLZone(1)->DLSpaces()->Count(), 1);
  EXPECT_EQ(design->DLZone(2)->DLSpaces()->Count(), 4);
  EXPECT_EQ(design->DLZone(3)->DLSpaces()->Count(), 0);
  EXPECT_EQ(std::get<ObjectPtr>(zones->Item(2)), design->DLZone(2));
  EXPECT_EQ(design->DXXFileHeader.SystemName.str(), "AHU 5" + std::string(27, ' '));
  EXPECT_EQ(error_number([&] { design->TSZone(4); }), number(ErrorNumber::SubscriptOutOfRange));
  EXPECT_EQ(error_number([&] { design->HLZone(0); }), number(ErrorNumber::SubscriptOutOfRange));

  const auto old = design->DLZone(1);
  const auto two = system_of({2, 2});
  two->GetAirSystem()->Name = std::string(30, 'x') + "yz";
  design->SetAirSystem(two);
  EXPECT_EQ(zones->Count(), 2) << "the list that was handed out";
  EXPECT_NE(design->DLZone(1), old);
  EXPECT_EQ(design->DXXFileHeader.SystemName.str(), std::string(30, 'x') + "  ");

  for (const auto& [zones_of_it, spaces] : {std::pair(-1, 1), std::pair(3, 1), std::pair(2, -1), std::pair(2, 51)}) {
    const auto wrong = system_of({1, 1});
    wrong->GetAirSystem()->NumZones = static_cast<int16_t>(zones_of_it);
    wrong->GetZoneData(2)->TotalSpacesInZone = static_cast<int16_t>(spaces);
    EXPECT_NE(error_number([&] { design->SetAirSystem(wrong); }), 0) << zones_of_it << " " << spaces;
    EXPECT_EQ(design->AirSystem(), two);
    EXPECT_EQ(zones->Count(), 2);
  }
  let_property(*design, "AirSystem", std::monostate());
  EXPECT_EQ(zones->Count(), 0);
  EXPECT_EQ(design->AirSystem(), nullptr);
}

TEST_F(AirSystemDesignTest, Messages) {
  const auto design = project.NewAirSystemDesign();
  call(*design, "Load");
  design->SetAirSystem(system_of({1}, 10));
  call(*design, "Load");
  design->FilePrefix = "";
  call(*design, "Load");
  call(*design, "Save", {int16_t{1}});
  EXPECT_EQ(log.messages,
            (std::vector<std::string>{"Air system object must be set before loading air system design load data.",
                                      "File does not exist: " + folder / "JOBD0A.DAT",
                                      "Air system design data filename is invalid",
                                      "Air system design data filename is invalid"}));
  EXPECT_TRUE(log.errors.empty());
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path), {}), 3)
      << "the index database, its journal, and the system";
}

TEST_F(AirSystemDesignTest, BlocksFollowEachOtherAndComeBack) {
  const auto design = design_of({1, 2});
  ResultBlock* const blocks[]{&design->DXXFileHeader,  &design->Weather,        &design->SSAir,
                              &design->DLAir,          &design->HLAir,          &design->SPAir,
                              design->TSZone(1).get(), design->TSZone(2).get(), design->HLZone(1).get(),
                              design->HLZone(2).get(), design->DLZone(1).get(), design->DLZone(2).get()};
  std::string expected;
  for (ResultBlock* block : blocks) {
    ResultBlock::Spans spans;
    block->add_spans(spans);
    for (const auto& span : spans) {
      const auto seed = static_cast<unsigned>(expected.size());
      for (size_t i = 0; i < span.size(); ++i) span[i] = static_cast<std::byte>((seed + i) * 2654435761U >> 13);
      expected.append(reinterpret_cast<const char*>(span.data()), span.size());
    }
  }
  write_bytes(folder / "JOBD05.DAT", std::string(2 * expected.size(), 'x'));
  design->Save(5);
  EXPECT_EQ(bytes_of(folder / "JOBD05.DAT"), expected) << "also over a longer file";
  EXPECT_EQ(design->size_in_file(), expected.size());

  auto again = design_of({1, 2});
  database->Execute("DELETE FROM AirSystemIndex");  // the bytes of the name are no name
  const auto view = again->HLAir.HourlyAir(Months::July, 15);
  again->Load();
  again->Save(300);
  EXPECT_EQ(bytes_of(folder / "JOBD12C.DAT"), expected);
  EXPECT_EQ(std::memcmp(&**view, &design->HLAir.at(Months::July, 15), sizeof(HourlyAirRecord)), 0)
      << "a view sees what is loaded";
  const float of_view = (*view)->AirFlow;
  const std::weak_ptr<Object> watched = again;
  again.reset();
  EXPECT_FALSE(watched.expired()) << "a view keeps the design alive";
  EXPECT_EQ(std::memcmp(&of_view, &(*view)->AirFlow, sizeof of_view), 0);
  EXPECT_TRUE(log.messages.empty() && log.errors.empty());

  const std::string text = design->Dump();
  EXPECT_EQ(text.find("ADL_AirSystemDesign\nCONTENTS OF ADL_DXXFileHeader\n"), 0);
  size_t at = 0;
  for (const char* name : {"Weather", "SSAir", "DLAir", "HLAir", "SPAir", "TSZone", "HLZone", "DLZone", "SpaceLoads"}) {
    at = text.find("CONTENTS OF ADL_" + std::string(name) + "\n", at);
    ASSERT_NE(at, std::string::npos) << name;
  }
}

TEST_F(AirSystemDesignTest, AFileOfAnotherLengthChangesNothing) {
  const auto design = design_of({1});
  design->SSAir.FloorArea = 100;
  design->DLZone(1)->DLSpace(1)->HtgTotal = 200;
  design->Save(5);
  const std::string path = folder / "JOBD05.DAT", whole = bytes_of(path);
  design->SSAir.FloorArea = 1;
  design->DLZone(1)->DLSpace(1)->HtgTotal = 2;
  const std::string name = design->DXXFileHeader.SystemName.str();
  std::vector<size_t> lengths{whole.size() - 1, whole.size() + 1, 2 * whole.size()};
  for (size_t length = 0; length < whole.size(); length += length < 3000 ? 1 : 97) lengths.push_back(length);
  write_bytes(path, whole + whole);
  std::sort(lengths.rbegin(), lengths.rend());
  for (const size_t length : lengths) {
    std::filesystem::resize_file(path, length);
    log.errors.clear();
    log.details.clear();
    call(*design, "Load");
    ASSERT_EQ(log.errors, std::vector<std::string>{"TarnDataHandler52|ADL_AirSystemDesign|Load()"}) << length;
    for (const std::string& part : {path, std::to_string(length) + " bytes", std::to_string(whole.size()),
                                    std::string("1 zones"), std::string("run the design calculation again")})
      ASSERT_NE(log.details[0].find(part), std::string::npos) << log.details[0];
    ASSERT_EQ(design->SSAir.FloorArea, 1) << length;
    ASSERT_EQ(design->DLZone(1)->DLSpace(1)->HtgTotal, 2) << length;
    ASSERT_EQ(design->DXXFileHeader.SystemName.str(), name) << length;
  }
  write_bytes(path, whole);
  const auto header_only = design_of({0});
  log.details.clear();
  call(*header_only, "Load");
  ASSERT_EQ(log.details.size(), 1U);
  EXPECT_NE(log.details[0].find("Load the zones first"), std::string::npos) << log.details[0];
  design->Load();
  EXPECT_EQ(design->SSAir.FloorArea, 100);
  EXPECT_EQ(design->DLZone(1)->DLSpace(1)->HtgTotal, 200);
}

TEST_F(AirSystemDesignTest, ResultsGoWithADeletedSystem) {
  const std::function<void()> ways[]{[&] {
                                       auto system = project.NewAirSystem();
                                       system->Load(1);
                                       system->Delete();
                                     },
                                     [&] { project.NewAirSystem()->Delete(1); },
                                     [&] {
                                       auto other = project.NewAirSystem();
                                       other->Load(2);
                                       other->DLFileName = "OWN.DAT";
                                       std::vector<Value> one{int16_t{1}};
                                       Value nothing;
                                       call_method(*other, other->info().find("Delete"), one, nothing);
                                     }};
  make_results(stored("VAV perimeter"));
  make_results(stored("B"));
  write_bytes(folder / "OWN.DAT", "x");
  for (const auto& way : ways) {
    {
      Transaction undone;
      way();
    }
    EXPECT_EQ(loaded(1), "7") << "after a rollback";
    way();
    EXPECT_FALSE(has_results(1));
    make_results(stored("VAV perimeter"));
  }
  EXPECT_TRUE(has_results(2)) << "another system's stay";
  EXPECT_TRUE(std::filesystem::exists(folder / "OWN.DAT")) << "and so does the file that it was given";
}

TEST_F(AirSystemDesignTest, ResultsMatchTheSystemWhoseNameTheyCarry) {
  const auto system = stored("VAV perimeter");
  make_results(system);
  system->GetAirSystem()->Name = "VAV core";
  system->Save();
  EXPECT_EQ(loaded(1), "7") << "they follow a new name";
  EXPECT_EQ(project.NewAirSystemDesign()->system_in_file(1), "VAV core");
  database->Execute("UPDATE AirSystemIndex SET szName = 'Brand new'");  // another program's delete and save
  EXPECT_EQ(loaded(1), folder / "JOBD01.DAT" +
                           " has the results of the air system \"VAV core\", but air system 1 is \"Brand new\". Run "
                           "the design calculation again.");
  system->GetAirSystem()->Name = "Mine";
  system->Save();
  EXPECT_NE(loaded(1), "7") << "another's do not follow";
  for (const bool as_given : {false, true}) {
    write_bytes(folder / "JOBD02.DAT", bytes_of(folder / "JOBD01.DAT"));  // another program's delete left them
    auto fresh = project.NewAirSystem();
    fresh->SetToDefaultsByType(8);
    fresh->GetAirSystem()->Name = "VAV core";
    as_given ? fresh->SaveAs(2, Naming::AsItIs) : fresh->Save();
    EXPECT_EQ(fresh->Index(), 2);
    EXPECT_FALSE(has_results(2)) << "a new system has none, even under the name that they carry";
    fresh->Delete();
  }
}

TEST_F(AirSystemDesignTest, TheNameOfAResultFileBelongsToTheLoadedSystem) {
  stored("A");
  stored("B");
  const struct {
    const char* what;
    std::function<void(AS_AirSystem&)> action;
    const char* name;
  } cases[]{
      {"the same again", [](AS_AirSystem& s) { s.Load(1); }, "OWN.DAT"},
      {"one that is not there", [](AS_AirSystem& s) { EXPECT_NE(error_number([&] { s.Load(9); }), 0); }, "OWN.DAT"},
      {"a save", [](AS_AirSystem& s) { s.Save(); }, "OWN.DAT"},
      {"a delete that is rolled back",
       [](AS_AirSystem& s) {
         Transaction undone;
         s.Delete();
       },
       "OWN.DAT"},
      {"another one", [](AS_AirSystem& s) { s.Load(2); }, ""},
      {"a new one", [](AS_AirSystem& s) { s.SetAsNew(); }, ""},
      {"none", [](AS_AirSystem& s) { s.Reset(); }, ""},
      {"the default", [](AS_AirSystem& s) { s.CreateDefault(); }, ""}};
  for (const auto& c : cases) {
    auto system = project.NewAirSystem();
    system->Load(1);
    system->DLFileName = "OWN.DAT";
    c.action(*system);
    EXPECT_EQ(system->DLFileName, c.name) << c.what;
    EXPECT_EQ(system->Clone()->DLFileName, "") << c.what;
  }
}

TEST_F(AirSystemDesignTest, ASaveThatFailsLeavesTheOldFile) {
  const auto design = design_of({1, 1});
  design->Save(5);
  const std::string before = bytes_of(folder / "JOBD05.DAT");
  design->SSAir.People = 9;
  int faults = 0;
  for (int step = 0;; ++step) {
    {
      FaultyFiles faulty(step);
      if (error_number([&] { design->Save(5); }) == 0) break;
    }
    ++faults;
    EXPECT_EQ(bytes_of(folder / "JOBD05.DAT"), before) << step;
  }
  EXPECT_GT(faults, 2);
  files().settle();  // the last fault met the file after the commit
  EXPECT_NE(bytes_of(folder / "JOBD05.DAT"), before);
  Transaction undone;
  design->SSAir.People = 10;
  design->Save(5);
  design->SSAir.People = 0;
  design->Load();
  EXPECT_EQ(design->SSAir.People, 10) << "a transaction sees its own save";
}

TEST_F(AirSystemDesignTest, AProcessThatDiesInASaveLeavesTheOldFileOrTheNew) {
  const auto design = design_of({1});
  design->Save(5);
  const std::string path = folder / "JOBD05.DAT", old_file = bytes_of(path);
  design->SSAir.People = 9;
  int died = 0, old_files = 0;
  for (int step = 0;; ++step) {
    const pid_t child = fork();
    if (child == 0) {
      FaultyFiles faulty(step, [] { _exit(7); });
      design->Save(5);
      _exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    const std::string now = bytes_of(path);
    ASSERT_EQ(now.size(), old_file.size()) << step;
    old_files += now == old_file ? 1 : 0;
    if (WEXITSTATUS(status) != 7) break;
    ++died;
  }
  EXPECT_GT(died, 2);
  EXPECT_EQ(old_files, died) << "up to the rename, and the next save is not in the way of what was left";
  EXPECT_NE(bytes_of(path), old_file);
}

}  // namespace
}  // namespace tarn::test
