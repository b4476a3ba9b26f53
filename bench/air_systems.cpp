// A large air system - 40 zones of 50 spaces, sizing and simulation - beside plain reads and writes of its file with
// the same statements.
#include <fcntl.h>
#include <unistd.h>

#include <filesystem>

#include "airsystems/air_system.h"
#include "plain_project.h"
#include "platform/host.h"
#include "platform/workspace.h"
#include "report.h"
#include "storage/project.h"
#include "storage/schema.h"

namespace tarn::bench {
namespace {

constexpr int kZones = 40, kSpaces = 50;  // a zone
constexpr const char* kUsedKinds[]{"Space", "Schedule", "Tower", "Boiler"};

Ptr<AS_AirSystem> sample_system(COM_ProjectData& project) {
  auto system = project.NewAirSystem();
  system->SetToDefaultsByType(1);
  const auto header = system->GetAirSystem();
  header->Name = "Large system";
  header->SetNumZones(kZones);
  int16_t space = 0;
  for (int16_t zone = 1; zone <= kZones; ++zone) {
    const auto data = system->GetZoneData(zone);
    data->TotalSpacesInZone = kSpaces;
    for (int place = 1; place <= kSpaces; ++place) {
      data->SpaceID(place) = ++space;
      data->SpaceMultiplier(place) = 1;
    }
  }
  system->GetZoneSchedule()->TstatSchedule = 1;
  system->GetCoolSys()->Used = system->GetHeatSys()->Used = true;
  system->GetPreheatCoil()->Used = system->GetPrecoolCoil()->Used = true;
  system->GetHumidity()->Used = system->GetVentReclaim()->Used = true;
  system->GetSupplyFan()->Used = system->GetReturnFan()->Used = true;
  header->SetFlags();
  return system;
}

std::string index_rows() {
  std::string script = "BEGIN; INSERT INTO ScheduleIndex (nIndex, szName) VALUES (1, 'Always');";
  for (int space = 1; space <= kZones * kSpaces; ++space) {
    const std::string number = std::to_string(space);
    script += "INSERT INTO SpaceIndex (nIndex, szName) VALUES (" + number + ", 'Space " + number + "');";
  }
  return script +
         "INSERT INTO PlantIndex (nIndex, szName) VALUES (1, 'Plant'); INSERT INTO Plant_System_Links VALUES (1, 1);"
         "INSERT INTO BuildingIndex (nIndex, szName) VALUES (1, 'Building');"
         "INSERT INTO Building_System_Links VALUES (1, 1); COMMIT;";
}

/// A project with the system, and a copy of it for the floor.
struct SystemSample {
  explicit SystemSample(const std::string& at) : folder(at) {
    std::filesystem::create_directories(folder + "/ours");
    project.SetWorkPath(folder + "/ours");
    project.FilePrefix = "JOB";
    create_index(project.IndexDBName());
    run_script(project.IndexDBName(), index_rows());
    system = sample_system(project);
    save(*system);
    std::filesystem::copy(folder + "/ours", folder + "/floor");
  }
  static void save(AS_AirSystem& system) {
    std::optional<bool> after_calculations = true;
    system.Save(after_calculations);
  }
  std::string folder;
  COM_ProjectData project;
  Ptr<AS_AirSystem> system;
};

/// The same system by hand, with the same statements.
class PlainSystem {
 public:
  explicit PlainSystem(const std::string& folder)
      : database_(opened(folder + "/JOBINX.MDB"), &sqlite3_close),
        path_(folder + "/JOBA01.DAT"),
        bytes_(std::filesystem::file_size(path_), '\0'),
        begin_(database_.get(), "BEGIN"),
        commit_(database_.get(), "COMMIT"),
        find_(database_.get(), "SELECT rowid, * FROM AirSystemIndex WHERE nIndex = ?"),
        same_name_(database_.get(), "SELECT rowid, * FROM AirSystemIndex WHERE (szName = ? AND nIndex <> ?)"),
        update_(database_.get(), "UPDATE AirSystemIndex SET bDesHasChanged = ? WHERE rowid = ?") {
    for (const std::string kind : kUsedKinds) {
      const std::string id = kind + "_ID";
      links_.emplace_back(database_.get(), ("SELECT " + id + ", nIndex FROM System_" + kind + "_Links LEFT JOIN " +
                                            kind + "Index ON nIndex = " + id + " WHERE System_ID = ? ORDER BY " + id)
                                               .c_str());
    }
    for (const std::string& statement : AS_AirSystem().kind().reach.statements()) {
      if (!statement.empty() && statement.find("temp.") == std::string::npos)
        marks_.emplace_back(database_.get(), statement.c_str());
    }
  }

  void load() {
    begin_.run();
    find();
    read(bytes_.size());
    walk(links_);
    commit_.run();
  }
  void load_header() {
    begin_.run();
    find();
    read(sizeof(SystemHeaderRecord));
    commit_.run();
  }
  void save(int64_t changed) {
    begin_.run();
    find();
    same_name_.bind(1, std::string_view("Large system"));
    same_name_.bind(2, int64_t{1});
    same_name_.run();
    update_.bind(1, changed);
    update_.bind(2, int64_t{1});
    update_.run();
    walk(links_);
    for (PlainStatement& mark : marks_) {
      mark.bind(1, int64_t{1});
      mark.run();
    }
    const int file = ::open(path_.c_str(), O_RDWR | O_TRUNC | O_CLOEXEC);
    const bool written = ::pwrite(file, bytes_.data(), bytes_.size(), 0) == static_cast<ssize_t>(bytes_.size());
    if (!written || ::fsync(file) != 0) throw std::runtime_error("The floor failed: " + path_);
    ::close(file);
    commit_.run();
  }

 private:
  static sqlite3* opened(const std::string& path) {
    sqlite3* database = nullptr;
    sqlite3_open_v2(path.c_str(), &database, SQLITE_OPEN_READWRITE, nullptr);
    return database;
  }
  void find() {
    find_.bind(1, int64_t{1});
    if (!find_.step()) throw std::runtime_error("The floor failed: no system");
    find_.reset();
  }
  void read(size_t length) {
    const int file = ::open(path_.c_str(), O_RDONLY | O_CLOEXEC);
    if (::pread(file, bytes_.data(), length, 0) != static_cast<ssize_t>(length))
      throw std::runtime_error("The floor failed: " + path_);
    ::close(file);
  }
  void walk(std::vector<PlainStatement>& statements) {
    for (PlainStatement& statement : statements) {
      statement.bind(1, int64_t{1});
      while (statement.step()) last_ = sqlite3_column_int64(statement.get(), 0);
      statement.reset();
    }
  }

  std::unique_ptr<sqlite3, decltype(&sqlite3_close)> database_;
  std::string path_;
  std::string bytes_;
  PlainStatement begin_, commit_, find_, same_name_, update_;
  std::vector<PlainStatement> links_, marks_;
  volatile int64_t last_ = 0;
};

}  // namespace

void air_system_cases(Report& report, const std::string& folder) {
  SystemSample sample(folder + "/systems");
  PlainSystem plain(folder + "/systems/floor");
  const Ptr<AS_AirSystem> system = sample.project.NewAirSystem();
  const auto load = [&] {
    Transaction transaction;
    system->Load(1);
    transaction.commit();
  };
  report.compare({"load a system of 2,000 spaces, all sections", 1, 1.5, 101}, {load}, {[&] { plain.load(); }});
  const Side ours{[&] {
    Transaction transaction;
    system->DesHasChanged = !system->DesHasChanged;
    SystemSample::save(*system);
    transaction.commit();
  }};
  int64_t changed = 0;
  report.compare({"save a system of 2,000 spaces after calculations", 1, 1.5, 51}, ours, {[&] {
                   changed = -1 - changed;
                   plain.save(changed);
                 }});
  const auto header = sample.project.NewAirSystem();
  header->SetMask(CCM_HEADERMASK, CCM_MASKALL);
  const Side ours_header{[&] {
    Transaction transaction;
    header->Load(1);
    transaction.commit();
  }};
  report.compare({"load the header of a system alone", 1, 2.5, 1001}, ours_header, {[&] { plain.load_header(); }});
}

}  // namespace tarn::bench
