// Hourly weather files of any bytes: what is loaded can be judged, reviewed, made the simulation's weather, saved and
// loaded again. An input of 192 bytes at most is a header in front of a usual year; a longer one is the file.
#include <cmath>

#include "finding.h"
#include "mutate.h"
#include "scratch.h"
#include "tarn/weather_import.h"
#include "weather/year_review.h"

namespace tarn::fuzz {
namespace {

std::string usual_year() {
  const auto year = std::make_unique<HW1ReaderWriter>();
  for (int day = 0; day < kDays; ++day) {
    for (int hour = 0; hour < kHours; ++hour) {
      HourlyDay& of_day = year->Day.items[static_cast<size_t>(day)];
      of_day.DB.items[static_cast<size_t>(hour)] = 50 - 20 * std::cos(day * 0.0172) - 9 * std::cos(hour * 0.2618);
      of_day.SH.items[static_cast<size_t>(hour)] = 0.005;
      of_day.IDN.items[static_cast<size_t>(hour)] = hour > 6 && hour < 19 ? 200 : 0;
    }
  }
  return {reinterpret_cast<const char*>(static_cast<const HourlyWeather*>(year.get())), sizeof(HourlyWeather)};
}

std::string bytes_after_header(const HW1ReaderWriter& year) {
  return {reinterpret_cast<const char*>(&year.Day), sizeof year.Day};
}

void use(const std::string& file, size_t size) {
  const auto year = std::make_unique<HW1ReaderWriter>();
  ImportedWeather imported;
  const std::string refused = refusal([&] { imported = import_weather(*year, file); });
  require(refused.empty() || refused.find(file) != std::string::npos, "a refusal names no file: " + refused);
  int32_t code = 0;
  std::string description;
  year->ValidateHW1File(file, code, description);
  year->Load(file);
  if (size % 8 == 0) {  // it takes longer than all the rest
    WTH_Stats statistics;
    fill_statistics(statistics, *year);
    findings_of(*year);
  }
  WTH_Weather weather;
  use_as_simulation(weather, *year, imported);
  const std::string loaded = bytes_after_header(*year);
  year->Save(file);
  const auto again = std::make_unique<HW1ReaderWriter>();
  again->Load(file);
  require(bytes_after_header(*again) == loaded, "what was saved loads otherwise");
  require(tarn::fuzz::bytes_of(file).size() == std::max(size, sizeof(HourlyWeather)), "the tail is gone");
}

}  // namespace
}  // namespace tarn::fuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace tarn::fuzz;
  static const Scratch scratch;
  static const std::string usual = usual_year();
  constexpr size_t kHeader = offsetof(tarn::HourlyWeather, Day);
  std::string bytes(reinterpret_cast<const char*>(data), size);
  if (size <= kHeader) bytes += usual.substr(size);
  const std::string file = scratch / "JOB.HW1";
  write_bytes(file, bytes);
  scratch.run_as_it_is([&] { use(file, bytes.size()); });
  return 0;
}

extern "C" size_t LLVMFuzzerCustomMutator(uint8_t* data, size_t size, size_t most, unsigned seed) {
  using namespace tarn::fuzz;
  return mutated(data, size, most, seed, [](std::string& bytes, Mutator& random) {
    bytes.resize(std::max<size_t>(bytes.size(), random.below(193)));
    random.set_number(bytes, random.below(bytes.size() + 1));
  });
}
