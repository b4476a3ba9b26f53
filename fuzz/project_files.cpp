// A project of which other programs, bad disks and people with intent have changed the files: everything in it is
// loaded or refused with a reason, a refused load leaves the object as it was, what was loaded can be saved and loaded
// again, check, repair and export come to an end, and nothing outside of the project's folder is touched.
#include <sqlite3.h>

#include <cmath>
#include <filesystem>

#include "finding.h"
#include "input.h"
#include "mutate.h"
#include "platform/file_store.h"
#include "project/kinds.h"
#include "scratch.h"
#include "state.h"
#include "storage/kind.h"
#include "support/sample_project.h"
#include "tarn/check.h"
#include "tarn/exchange.h"
#include "tarn/platform/workspace.h"
#include "weather/year_review.h"

namespace tarn::fuzz {
namespace {

namespace fs = std::filesystem;

const Scratch& scratch() {
  static const Scratch sample([](COM_ProjectData& project) {
    make_project(project);
    const auto reports = project.NewReportOptions();
    reports->bytes.resize(20);
    reports->Save();
    std::optional<bool> after = true;
    const auto system = project.NewAirSystem();
    system->Load(2);
    system->SetMask(CCM_MASKALL, CCM_MASKALL);
    system->Save(after);
  });
  return sample;
}

using Files = std::map<std::string, std::string>;  // by name: bytes

/// Lie in the project only where they are asked for: a check of the hours takes longer than one of all the rest.
const Files& weather_files() {
  static const Files all = [] {
    Files files = Scratch([](COM_ProjectData& project) {
                    create_index(project.IndexDBName());
                    test::make_weather(project);
                  }).files();
    files.erase("JOBINX.MDB");
    return files;
  }();
  return all;
}

/// The project's files, and some that lie beside them after a crash.
const std::vector<std::string>& names() {
  static const std::vector<std::string> all = [] {
    std::vector<std::string> found{"JOBINX.MDB-journal", "JOBINX.MDB-new", "JOBWIN.DAT-new7", "JOBA03.DAT"};
    for (const Files* each : {&scratch().files(), &weather_files()}) {
      for (const auto& [name, bytes] : *each) found.push_back(name);
    }
    return found;
  }();
  return all;
}

void run_statements(const std::string& statements) {
  sqlite3* handle = nullptr;
  if (sqlite3_open((scratch() / "JOBINX.MDB").c_str(), &handle) == SQLITE_OK) {
    sqlite3_limit(handle, SQLITE_LIMIT_ATTACHED, 0);
    sqlite3_progress_handler(
        handle, 100'000, [](void*) { return 1; }, nullptr);
    sqlite3_exec(handle, statements.c_str(), nullptr, nullptr, nullptr);
  }
  sqlite3_close(handle);
}

constexpr uint64_t kHuge = uint64_t{3} << 30;

/// One change of a file: "name\n", a letter, and what the letter needs.
void change_file(Input& input) {
  const std::string name = input.line();
  const auto& known = names();
  if (std::find(known.begin(), known.end(), name) == known.end()) return;
  const std::string path = scratch() / name;
  if (fs::is_regular_file(path) && fs::file_size(path) >= kHuge) return;
  std::string bytes = bytes_of(path);
  const char what = static_cast<char>(input.byte());
  if (what == 'P') {  // bytes at a place
    const size_t at = input.number<uint32_t>() % (bytes.size() + 1);
    const std::string given = input.text(input.byte());
    bytes.replace(at, std::min(given.size(), bytes.size() - at), given);
  } else if (what == 'W') {  // the whole file
    bytes = input.text(input.number<uint16_t>());
  } else if (what == 'T') {  // its length
    bytes.resize(input.number<uint32_t>() % (2 * bytes.size() + 2));
  } else if (what == 'S') {  // statements, of the index alone
    return name == "JOBINX.MDB" ? run_statements(input.text(input.number<uint16_t>())) : void();
  }
  if (what == 'G') {  // a hole of gigabytes at its end
    if (fs::is_regular_file(path)) fs::resize_file(path, kHuge);
    return;
  }
  fs::remove_all(path);
  if (what == 'L') fs::create_symlink("../victim.DAT", path);
  if (what == 'F') fs::create_directory(path);
  if (what == 'P' || what == 'W' || what == 'T') write_bytes(path, bytes);
}

/// What is done with the project then.
struct Task {
  enum : uint8_t { kCheck = 1, kLoad = 2, kSave = 4, kExport = 8, kRepair = 16, kRebuild = 32, kRest = 64 };
  uint8_t what;
  int32_t mask;   // of the sections of air systems that are loaded and saved
  uint8_t zones;  // that an air system has before it is saved; 0 leaves them
  uint8_t kind;   // whose entities are used, from 1; 0 for all
  bool has(uint8_t one) const { return (what & one) != 0; }
};

void select_sections(StoredEntity& entity, const Task& task) {
  if (auto* system = dynamic_cast<AS_AirSystem*>(&entity)) system->SetMask(task.mask, CCM_MASKALL);
}

bool loads(StoredEntity& entity, int16_t index, const Task& task) {
  select_sections(entity, task);
  const std::string before = state_of(entity);
  const std::string refused = refusal([&] { entity.Load(index); });
  if (refused.empty()) return true;
  const auto tells = [&](const std::string& what) { return refused.find(what) != std::string::npos; };
  const bool of_own_file = entity.file().one_for_each();
  require(!of_own_file || tells(scratch().folder()) || tells(" ID") || tells("record #") || tells("SQL: "),
          "the error of Load names no file, table or missing row: " + refused);
  const std::string change = difference(before, state_of(entity));
  require(change.empty(), "after a failed Load " + change + ": " + refused);
  return false;
}

void save(StoredEntity& entity, bool after_calculations) {
  if (auto* system = dynamic_cast<AS_AirSystem*>(&entity)) {
    std::optional<bool> after = after_calculations;
    system->Save(after);
  } else {
    entity.Save();
  }
}

std::string file_of(const StoredEntity& entity) {
  tarn::files().settle();
  const std::string path = entity.file().path_for(entity.Index());
  return fs::file_size(path) < kHuge ? bytes_of(path) : std::string();
}

void save_and_load(COM_ProjectData& project, const EntityKind& kind, StoredEntity& entity, const Task& task) {
  auto* system = dynamic_cast<AS_AirSystem*>(&entity);
  if (system && task.zones > 0) {
    system->GetAirSystem()->SetNumZones(static_cast<int16_t>(task.zones - 1));
    system->GetAirSystem()->SetFlags();
  }
  const int16_t index = entity.Index();
  const std::string before = state_of(entity);
  const std::string bytes = file_of(entity);
  const std::string refused = refusal([&] { save(entity, task.zones % 2 == 1); });
  if (!refused.empty()) {
    const std::string change = difference(before, state_of(entity));
    require(change.empty(), "after a failed Save " + change + ": " + refused);
    require(entity.Index() != index || file_of(entity) == bytes, "a failed Save has changed the file: " + refused);
    return;
  }
  const auto again = make_entity(project, kind);
  require(loads(*again, entity.Index(), task), "what was saved does not load");
  save(*again, true);
  const std::string saved = file_of(*again);
  require(loads(*again, entity.Index(), task), "what was saved again does not load");
  save(*again, true);
  require(file_of(*again) == saved, "a Save of what was loaded changes the file of " + std::string(kind.one));
}

void use_entities(COM_ProjectData& project, const Task& task) {
  for (const EntityKind& kind : entity_kinds()) {
    if (task.kind != 0 && &kind - entity_kinds().data() != task.kind - 1) continue;
    const auto entity = make_entity(project, kind);
    if (!entity->GetDBHandle()) return;  // the index cannot be opened
    refusal([&] { entity->CreateDefault(); });
    for (int16_t index = 1; index <= 2; ++index) {
      if (loads(*entity, index, task) && entity->Index() != 0 && task.has(Task::kSave))
        save_and_load(project, kind, *entity, task);
    }
  }
}

/// Weather, preferences, report options and results.
void use_the_rest(COM_ProjectData& project) {
  const auto weather = project.NewWeather();
  const auto year = std::make_unique<HW1ReaderWriter>();
  refusal([&] { weather->Load(); });
  refusal([&] { year->Load(project.SimWeatherInputsFilename()); });
  findings_of(*year);
  refusal([&] { faults_of(*weather, year.get()); });
  refusal([&] { weather->Save(); });
  const auto preferences = project.NewProjectPrefs();
  refusal([&] { preferences->Load(); });
  refusal([&] { preferences->Save(); });
  const auto reports = project.NewReportOptions();
  refusal([&] { reports->Load(); });
  refusal([&] { reports->Save(); });
  for (int16_t index = 1; index <= 2; ++index) {
    const auto system = project.NewAirSystem();
    if (!refusal([&] { system->Load(index); }).empty()) continue;
    const auto design = project.NewAirSystemDesign();
    refusal([&] {
      design->SetAirSystem(system);
      design->Load();
      design->Save(index);
    });
  }
}

bool has_hole() {
  const auto is_huge = [](const auto& entry) { return entry.is_regular_file() && entry.file_size() >= kHuge; };
  return std::any_of(fs::directory_iterator(scratch().folder()), fs::directory_iterator(), is_huge);
}

void use(const Task& task) {
  COM_ProjectData project;
  scratch().place(project);
  if (task.has(Task::kCheck)) refusal([&] { findings_json(check_project(project)); });
  if (task.has(Task::kLoad)) use_entities(project, task);
  if (task.has(Task::kRest)) use_the_rest(project);
  if (task.has(Task::kExport)) refusal([&] { export_project(project, {}, [](size_t, size_t) {}); });
  if (!task.has(Task::kRepair) || has_hole()) return;  // its copy takes the time of the copied bytes
  RepairReport report;
  const RepairOptions options{.dry_run = false, .rebuild_index = task.has(Task::kRebuild)};
  if (!refusal([&] { report = repair_project(project, options); }).empty()) return;
  report_json(report);
  const auto left = check_project(project);
  const bool repairable = std::any_of(left.begin(), left.end(), [](const auto& each) { return each.repairable; });
  require(!repairable || report.copy.empty(), "after a repair there is more to repair: " + findings_json(left));
}

}  // namespace
}  // namespace tarn::fuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace tarn::fuzz;
  constexpr int kMostChanges = 8;
  Input input(data, size);
  const Task task{input.byte(), input.number<int32_t>(), input.byte(), input.byte()};
  scratch().put_back();
  if (task.has(Task::kRest)) {
    for (const auto& [name, bytes] : weather_files()) write_bytes(scratch() / name, bytes);
  }
  for (int change = 0; change < kMostChanges && !input.empty(); ++change) change_file(input);
  scratch().run_as_it_is([&] { use(task); });
  return 0;
}

namespace tarn::fuzz {
namespace {

template <typename N>
std::string bytes_of_number(N number) {
  return {reinterpret_cast<const char*>(&number), sizeof number};
}

std::string statement(Mutator& random) {
  constexpr std::string_view kTables[]{"WindowIndex",      "WallIndex",          "SpaceIndex",
                                       "AirSystemIndex",   "PlantIndex",         "BuildingIndex",
                                       "Space_Wall_Links", "System_Space_Links", "ScheduleIndex"};
  constexpr std::string_view kValues[]{"0",   "-1",      "1",    "2",
                                       "3",   "65537",   "NULL", "'x'",
                                       "1.5", "X'00ff'", "9e99", "(SELECT group_concat(szName) FROM SpaceIndex)"};
  constexpr std::string_view kColumns[]{"nIndex", "szName", "bDesHasChanged", "bHasChanged", "nSpaceIndex"};
  const std::string table(random.one_of(kTables)), value(random.one_of(kValues)), column(random.one_of(kColumns));
  switch (random.below(6)) {
    case 0:
      return "DELETE FROM " + table + " WHERE rowid = " + value;
    case 1:
      return "INSERT INTO " + table + " DEFAULT VALUES";
    case 2:
      return "DROP TABLE " + table;
    case 3:
      return "INSERT INTO PendingWrites VALUES (" + value + ", 'JOBWIN.DAT', " + std::to_string(random.below(4)) +
             ", '', X'00000000000000000200000000000000" + "4142')";
    case 4:
      return "ALTER TABLE " + table + " RENAME COLUMN " + column + " TO x";
    default:
      return "UPDATE " + table + " SET " + column + " = " + value;
  }
}

std::string change(Mutator& random) {
  const std::string& name = random.once_in(5) ? "JOBINX.MDB" : names()[random.below(names().size())];
  constexpr size_t kUsualSize = 2000;
  const auto file = scratch().files().find(name);
  const size_t size = file == scratch().files().end() ? kUsualSize : file->second.size();
  const auto at = static_cast<uint32_t>(random.below(random.once_in(2) ? std::min<size_t>(size, 400) : size));
  std::string text = name + "\n";
  if (name == "JOBINX.MDB" && !random.once_in(4)) {
    const std::string sql = statement(random);
    return text + "S" + bytes_of_number(static_cast<uint16_t>(sql.size())) + sql;
  }
  constexpr float kReals[]{0, -1, 1, 1e38F, -1e38F, NAN, INFINITY, 1e-40F};
  switch (random.below(8)) {
    case 0:
      return text + "T" + bytes_of_number(at);
    case 1:
      return text + (random.once_in(2) ? "G" : random.once_in(2) ? "L" : random.once_in(2) ? "F" : "D");
    case 2:
    case 3:
      return text + "P" + bytes_of_number(at) + '\4' + bytes_of_number(random.one_of(kReals));
    default: {
      std::string number(2, '\0');
      random.set_number(number, 0);
      return text + "P" + bytes_of_number(at & ~1U) + '\2' + number;
    }
  }
}

}  // namespace
}  // namespace tarn::fuzz

extern "C" size_t LLVMFuzzerCustomMutator(uint8_t* data, size_t size, size_t most, unsigned seed) {
  using namespace tarn::fuzz;
  constexpr uint8_t kFast = Task::kLoad | Task::kSave;
  // Of a project that is checked, exported or repaired comes mostly one that is loaded and saved: in the same time
  // there are a hundred of those.
  if (size > 0 && data[0] > kFast && seed % 8 != 0) data[0] = kFast;
  return mutated(data, size, most, seed, [](std::string& text, Mutator& random) {
    constexpr size_t kTask = 7;  // bytes
    constexpr int32_t kMasks[]{tarn::CCM_HEADERMASK, tarn::CCM_INPUTMASK, tarn::CCM_SIZINGMASK, 0x03C00000,
                               tarn::CCM_MASKALL};
    if (text.size() < kTask || random.once_in(6)) {
      constexpr char kWhats[]{2, 2, 2, 2, 2, 6, 6, 6, 6, 6, 6, 6, 6, 1, 1, 64, 64, 8, 16, 48};  // the last are slow
      const auto zones = static_cast<char>(random.once_in(2) ? 0 : random.below(6));
      const auto kind = static_cast<char>(random.once_in(20) ? 0 : 1 + random.below(tarn::entity_kinds().size()));
      text.replace(0, kTask, random.one_of(kWhats) + bytes_of_number(random.one_of(kMasks)) + zones + kind);
      return;
    }
    if (random.once_in(4)) text.resize(kTask);
    const std::string changed = change(random);
    const auto kinds = tarn::entity_kinds();
    for (size_t i = 0; i < kinds.size(); ++i) {
      const std::string file = "JOB" + std::string(kinds[i].file.suffix);  // or one of the entities' own
      const bool own = kinds[i].letter != 0 && changed.starts_with(std::string("JOB") + kinds[i].letter + '0');
      if (changed.starts_with(file) || own) text[kTask - 1] = static_cast<char>(i + 1);
    }
    text += changed;
  });
}
