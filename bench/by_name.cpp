#include <benchmark/benchmark.h>

#include "report.h"
#include "tarn/tarn.h"
#include "tarn/window.h"

namespace tarn::bench {
namespace {

constexpr size_t kReads = 2'000'000;

}  // namespace

void by_name_cases(Report& report) {
  tarn_object* handle = nullptr;
  tarn_create("WIN_Window", &handle);
  const int32_t height = tarn_member_number(handle, "Height");
  const auto window = std::make_unique<WIN_Window>();
  window->Height = 4.0F;
  const WindowRecord* record = window.get();
  benchmark::DoNotOptimize(record);

  const Side field{[record] {
    for (size_t i = 0; i < kReads; ++i) {
      const float value = record->Height;
      benchmark::DoNotOptimize(value);
    }
  }};
  const Side by_number{[handle, height] {
    for (size_t i = 0; i < kReads; ++i) {
      tarn_value value;
      tarn_get(handle, height, nullptr, 0, &value);
      benchmark::DoNotOptimize(value.as.r4);
    }
  }};
  const Side by_name{[handle] {
    for (size_t i = 0; i < kReads; ++i) {
      tarn_value value;
      tarn_get_by_name(handle, "Height", nullptr, 0, &value);
      benchmark::DoNotOptimize(value.as.r4);
    }
  }};
  report.compare({"read by member number, beside a plain field", kReads, 30.0, 15}, by_number, field);
  report.compare({"read by name, beside by number", kReads, 5.0, 15}, by_name, by_number);
  tarn_release(handle);
}

}  // namespace tarn::bench
