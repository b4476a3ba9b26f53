// The results of a large system - 100 zones of 50 spaces each - beside the same records in plain structs, which are
// filled by vectored reads of the whole file, and written by vectored writes to a new file that takes the old one's
// place once it is on the disk, and its name too.
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

#include <filesystem>
#include <stdexcept>

#include "project/new_index.h"
#include "report.h"
#include "storage/kind.h"
#include "tarn/air_system_design.h"
#include "tarn/platform/database.h"
#include "tarn/project.h"

namespace tarn::bench {
namespace {

constexpr int kZones = 100, kSpaces = 50;

void require(bool holds) {
  if (!holds) throw std::runtime_error("The floor of the results failed");
}

class PlainResults {
 public:
  explicit PlainResults(std::string path) : path_(std::move(path)), zones_(kZones) {
    add(system_);
    for (Zone& zone : zones_) add(zone.sizing);
    for (Zone& zone : zones_) add(zone.hours);
    for (Zone& zone : zones_) add(zone.loads);
  }

  void load() {
    const int file = ::open(path_.c_str(), O_RDONLY | O_CLOEXEC);
    struct stat status {};
    require(::fstat(file, &status) == 0 && static_cast<size_t>(status.st_size) == size_);
    require(::readv(file, pieces_.data(), static_cast<int>(pieces_.size())) == static_cast<ssize_t>(size_));
    ::close(file);
  }
  void save() {
    const std::string fresh = path_ + "-new";
    const int file = ::open(fresh.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    require(::writev(file, pieces_.data(), static_cast<int>(pieces_.size())) == static_cast<ssize_t>(size_));
    require(::fsync(file) == 0);
    ::close(file);
    require(::rename(fresh.c_str(), path_.c_str()) == 0);
    const int folder = ::open(std::filesystem::path(path_).parent_path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    require(::fsync(folder) == 0);
    ::close(folder);
  }

 private:
  struct System {
    ResultHeaderRecord header;
    ResultWeatherRecord weather;
    SystemSummaryRecord summary;
    SystemLoadsRecord loads;
    HourlyAirTable hours;
    PsychroTable psychro;
    PsychroRecord heating;
  };
  struct ZoneHours {
    ZoneHourTable cooling;
    ZoneHourRecord heating;
  };
  struct ZoneLoads {
    ZoneLoadsTable cooling;
    ZoneLoadsRecord heating;
    LoadDetailsRecord details;
    std::array<SpaceLoadsRecord, kSpaces> spaces;
  };
  struct Zone {
    TerminalSizingRecord sizing;
    ZoneHours hours;
    ZoneLoads loads;
  };

  template <typename R>
  void add(R& record) {
    pieces_.push_back({&record, sizeof record});
    size_ += sizeof record;
  }

  std::string path_;
  System system_;
  std::vector<Zone> zones_;
  std::vector<iovec> pieces_;
  size_t size_ = 0;
};

}  // namespace

void result_cases(Report& report, const std::string& folder) {
  const std::string at = folder + "/results";
  std::filesystem::create_directories(at + "/floor");
  COM_ProjectData project;
  project.SetWorkPath(at);
  project.FilePrefix = "JOB";
  create_index(project.IndexDBName());
  const auto system = project.NewAirSystem();
  system->SaveAs(1, Naming::Valid);
  system->GetAirSystem()->SetNumZones(kZones);
  for (int16_t zone = 1; zone <= kZones; ++zone) system->GetZoneData(zone)->TotalSpacesInZone = kSpaces;
  const auto design = project.NewAirSystemDesign();
  design->SetAirSystem(system);
  design->Save(1);
  std::filesystem::copy(at + "/JOBD01.DAT", at + "/floor/JOBD01.DAT");

  PlainResults plain(at + "/floor/JOBD01.DAT");
  report.compare({"load results of 100 zones, 5000 spaces", 1, 1.3, 201}, {[&] { design->Load(); }},
                 {[&] { plain.load(); }});
  report.compare({"save results of 100 zones, 5000 spaces", 1, 1.3, 51}, {[&] {
                   design->SSAir.FloorArea = design->SSAir.FloorArea + 1;
                   design->Save(1);
                 }},
                 {[&] { plain.save(); }});
}

}  // namespace tarn::bench
