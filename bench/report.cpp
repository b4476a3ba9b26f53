#include "report.h"

#include <algorithm>
#include <chrono>
#include <cstdio>

namespace tarn::bench {
namespace {

double timed_ns(const Side& side, size_t operations) {
  side.before();
  const auto start = std::chrono::steady_clock::now();
  side.run();
  const std::chrono::duration<double, std::nano> took = std::chrono::steady_clock::now() - start;
  side.after();
  return took.count() / static_cast<double>(operations);
}

double median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

std::string readable(double ns) {
  const bool micro = ns >= 1000;
  char text[32];
  std::snprintf(text, sizeof text, "%.2f %s", micro ? ns / 1000 : ns, micro ? "us" : "ns");
  return text;
}

}  // namespace

Report::Report() { std::printf("%-52s %12s %12s %7s %8s\n", "case", "ours", "floor", "ratio", "allowed"); }

double Report::compare(const Case& what, const Side& ours, const Side& floor) {
  timed_ns(floor, what.operations);  // caches warm, statements prepared
  timed_ns(ours, what.operations);
  std::vector<double> ours_ns, floor_ns, ratios;
  for (int i = 0; i < what.repeats; ++i) {
    const bool ours_first = i % 2 == 0;
    const double first = timed_ns(ours_first ? ours : floor, what.operations);
    const double second = timed_ns(ours_first ? floor : ours, what.operations);
    ours_ns.push_back(ours_first ? first : second);
    floor_ns.push_back(ours_first ? second : first);
    ratios.push_back(ours_ns.back() / floor_ns.back());
  }
  const double ratio = median(ratios);
  std::printf("%-52s %12s %12s", what.name.c_str(), readable(median(ours_ns)).c_str(),
              readable(median(floor_ns)).c_str());
  judge(what.name, ratio, what.allowed);
  return ratio;
}

void Report::growth(const std::string& name, double large, double small, double allowed) {
  std::printf("%-52s %12.2f %12.2f", name.c_str(), large, small);
  judge(name, large / small, allowed);
}

void Report::judge(const std::string& name, double ratio, double allowed) {
  const bool over = ratio > allowed;
  std::printf(" %7.2f %8.2f%s\n", ratio, allowed, over ? "  exceeded" : "");
  std::fflush(stdout);
  ++lines_;
  if (over) exceeded_.push_back(name);
}

void Report::summary() const {
  std::printf("%zu of %zu cases exceed their allowed ratio", exceeded_.size(), lines_);
  for (size_t i = 0; i < exceeded_.size(); ++i) std::printf("%s %s", i == 0 ? ":" : ";", exceeded_[i].c_str());
  std::printf("\n");
}

}  // namespace tarn::bench
