// Our cost beside the floor, the least that the same work can cost. Too slow a result does not fail the build; the last
// line tells it.
#include <unistd.h>

#include <cstdio>
#include <exception>
#include <filesystem>
#include <functional>

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

/// tarn_bench [group] [folder for the samples; the system's temporary one by default]
int main(int count, char** arguments) {
  using namespace tarn::bench;
  const std::pair<std::string_view, std::function<void(Report&, const std::string&)>> groups[]{
      {"windows", window_cases},
      {"constructions", construction_cases},
      {"air-systems", air_system_cases},
      {"plants", plant_cases},
      {"buildings", building_cases},
      {"weather", weather_cases},
      {"results", result_cases},
      {"by-name", [](Report& report, const std::string&) { by_name_cases(report); }},
      {"staleness", staleness_cases},
      {"exchange", exchange_cases},
      {"gbxml", gbxml_cases}};
  try {
    const std::string_view wanted = count > 1 ? arguments[1] : "";
    const TemporaryFolder folder(count > 2 ? std::filesystem::path(arguments[2])
                                           : std::filesystem::temp_directory_path());
    Report report;
    for (const auto& [name, run] : groups) {
      if (wanted.empty() || wanted == name) run(report, folder.path());
    }
    report.summary();
  } catch (const std::exception& failure) {
    std::printf("The benchmarks stopped: %s\n", failure.what());
  }
  return 0;
}
