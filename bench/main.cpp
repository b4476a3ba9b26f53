// Our cost beside the floor, the least that the same work can cost. Too slow a result does not fail the build; the last
// line tells it.
#include <unistd.h>

#include <cstdio>
#include <exception>
#include <filesystem>

#include "report.h"

namespace {

/// Gone with everything in it at the end.
class TemporaryFolder {
 public:
  explicit TemporaryFolder(const std::filesystem::path& parent)
      : path_(std::filesystem::absolute(parent) / ("tarn_bench." + std::to_string(::getpid()))) {
    std::filesystem::create_directory(path_);
  }
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  std::string path() const { return path_.string(); }

 private:
  std::filesystem::path path_;
};

}  // namespace

/// tarn_bench [folder for the samples; the system's temporary one by default]
int main(int count, char** arguments) {
  try {
    const TemporaryFolder folder(count > 1 ? std::filesystem::path(arguments[1])
                                           : std::filesystem::temp_directory_path());
    tarn::bench::Report report;
    tarn::bench::window_cases(report, folder.path());
    tarn::bench::construction_cases(report, folder.path());
    tarn::bench::air_system_cases(report, folder.path());
    tarn::bench::plant_cases(report, folder.path());
    tarn::bench::building_cases(report, folder.path());
    tarn::bench::weather_cases(report, folder.path());
    tarn::bench::result_cases(report, folder.path());
    tarn::bench::by_name_cases(report);
    tarn::bench::staleness_cases(report, folder.path());
    tarn::bench::exchange_cases(report, folder.path());
    report.summary();
  } catch (const std::exception& failure) {
    std::printf("The benchmarks stopped: %s\n", failure.what());
  }
  return 0;
}
