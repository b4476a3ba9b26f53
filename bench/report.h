// The measurements: ours beside a floor, which is the least that the same work can cost. Times differ between machines
// and minutes, so the two run in turns and the median of their ratios is what counts.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace tarn::bench {

/// One of the two that are compared. Only `run` is timed.
struct Side {
  std::function<void()> run;
  std::function<void()> before = [] {}, after = [] {};
};

struct Case {
  std::string name;
  size_t operations = 1;  // in one run
  double allowed = 0;     // ratio
  int repeats = 0;
};

class Report {
 public:
  Report();
  /// Measures, prints the line, and returns the ratio.
  double compare(const Case& what, const Side& ours, const Side& floor);
  /// The ratio in a large table beside that in a small one: whether our part of the cost grows with the table.
  void growth(const std::string& name, double large, double small, double allowed);
  void summary() const;

 private:
  void judge(const std::string& name, double ratio, double allowed);

  std::vector<std::string> exceeded_;
  size_t lines_ = 0;
};

void air_system_cases(Report& report, const std::string& folder);
void building_cases(Report& report, const std::string& folder);
void by_name_cases(Report& report);
void construction_cases(Report& report, const std::string& folder);
void exchange_cases(Report& report, const std::string& folder);
void gbxml_cases(Report& report, const std::string& folder);
void plant_cases(Report& report, const std::string& folder);
void result_cases(Report& report, const std::string& folder);
void staleness_cases(Report& report, const std::string& folder);
void weather_cases(Report& report, const std::string& folder);
void window_cases(Report& report, const std::string& folder);

}  // namespace tarn::bench
