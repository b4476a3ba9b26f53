// Damaged weather files: EPW, TMY3, TMY2 and hourly files are read or refused with a reason, a refusal leaves the year
// as it was, and what was read can be reviewed, saved and loaded again.
#include <sanitizer/common_interface_defs.h>
#include <stdlib.h>
#include <sys/resource.h>

#include <chrono>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>

#include "finding.h"
#include "mutate.h"
#include "tarn/weather_import.h"
#include "weather/calendar.h"
#include "weather/year_review.h"

namespace tarn::fuzz {
namespace {

template <typename Row>
std::string year_text(std::string text, Row row) {
  for (int day = 1; day <= kDays; ++day) {
    for (int hour = 1; hour <= kHours; ++hour) {
      const double dry_bulb = 10 - 12 * std::cos(day * 0.0172) - 5 * std::cos(hour * 0.2618);
      char line[240];
      row(line, sizeof line, month_of(day), day_of_month(day), hour, dry_bulb, hour > 6 && hour < 19 ? 500 : 0);
      text += line;
    }
  }
  return text;
}

std::string sample_epw() {
  return year_text(
      "LOCATION,Sample,CO,USA,TMY3,724666,39.74,-105.18,-7.0,280.0\n"
      "DESIGN CONDITIONS,1,2009,,Heating,12,-18.8,-15.5,-21.6,Cooling,7,15.2,33,15.7,32,15.5,Extremes,11.1\n"
      "HOLIDAYS/DAYLIGHT SAVINGS,No,0,0,0\nDATA PERIODS,1,1,Data,Sunday, 1/ 1,12/31\n",
      [](char* line, size_t size, int month, int day, int hour, double dry_bulb, int sun) {
        std::snprintf(line, size, "1999,%d,%d,%d,0,?9,%.1f,%.1f,77,98000,0,0,261,0,%d,%d,0\n", month, day, hour,
                      dry_bulb, dry_bulb - 6, sun, sun / 5);
      });
}

std::string sample_tmy3() {
  return year_text(
      "724666,\"SAMPLE, NREL\",CO,-7.0,39.740,-105.180,280\n"
      "Date (MM/DD/YYYY),Time (HH:MM),DNI (W/m^2),DHI (W/m^2),Dry-bulb (C),Dew-point (C),RHum (%),Pressure (mbar)\n",
      [](char* line, size_t size, int month, int day, int hour, double dry_bulb, int sun) {
        std::snprintf(line, size, "%02d/%02d/1999,%02d:00,%d,%d,%.1f,%.1f,77,980\n", month, day, hour, sun, sun / 5,
                      dry_bulb, dry_bulb - 6);
      });
}

std::string sample_tmy2() {
  return year_text(" 94018 SAMPLE                 CO  -7 N 39 44 W 105 11   280\n",
                   [](char* line, size_t size, int month, int day, int hour, double dry_bulb, int sun) {
                     std::snprintf(line, size, " 79%2d%2d%2d%14s%4d?0%4d?0%32s%4d?0%4d?0%3d?0%4d?0\n", month, day, hour,
                                   "", sun, sun / 5, "", static_cast<int>(dry_bulb * 10),
                                   static_cast<int>(dry_bulb * 10) - 60, 77, 980);
                   });
}

std::string bytes_of(const HW1ReaderWriter& year) {
  return {reinterpret_cast<const char*>(static_cast<const HourlyWeather*>(&year)), sizeof(HourlyWeather)};
}

/// What readers stumble over, in place of a field or at a line's beginning.
void damage_text(std::string& text, Mutator& random) {
  constexpr const char* kWords[]{"",
                                 "-",
                                 "99.9",
                                 "9999",
                                 "-9900",
                                 "999999",
                                 "1e308",
                                 "-1e308",
                                 "nan",
                                 "inf",
                                 "0x10",
                                 "+5",
                                 "0",
                                 "24",
                                 "25",
                                 "29",
                                 "2",
                                 "12",
                                 "\"",
                                 ",",
                                 "\r",
                                 "\n",
                                 "\0",
                                 "\xFF",
                                 "Yes",
                                 "LOCATION",
                                 "DATA",
                                 "1,2,3",
                                 "00:30",
                                 "2/29/2000",
                                 "100000000000000000000"};
  const size_t from = random.below(random.once_in(3) ? std::min<size_t>(text.size(), 600) : text.size() + 1);
  const size_t start = text.find_first_of(",\n", from);
  if (start == std::string::npos) return;
  const size_t end = std::min(text.find_first_of(",\n", start + 1), text.size());
  text.replace(start + 1, end - start - 1, random.one_of(kWords));
}

/// Rows change places, go, or come twice.
void damage_rows(std::string& text, Mutator& random) {
  const auto line_at = [&text](size_t from) { return std::min(text.find('\n', from), text.size() - 1) + 1; };
  const size_t first = line_at(random.below(text.size())), second = line_at(random.below(text.size()));
  const std::string row = text.substr(first, line_at(first) - first);
  if (random.once_in(2)) text.erase(first, row.size());
  if (random.once_in(2)) text.insert(std::min(second, text.size()), row);
}

void review(const HW1ReaderWriter& year) {
  WTH_Stats statistics;
  fill_statistics(statistics, year);
  findings_of(year);
}

void text_case(const std::string& sample, const std::string& other, Mutator& random) {
  std::string text = sample;
  for (size_t changes = random.below(5); changes > 0; --changes) {
    if (random.once_in(4))
      random.change_bytes(text, other);
    else if (random.once_in(3) && !text.empty())
      damage_rows(text, random);
    else
      damage_text(text, random);
  }
  HW1ReaderWriter year;
  year.CityName = "before";
  const std::string before = bytes_of(year);
  try {
    import_weather_text(year, text);
  } catch (const Error& refused) {
    require(!refused.description().empty(), "a refusal without a reason");
    require(bytes_of(year) == before, "a refusal has changed the year: " + refused.description());
    return;
  }
  review(year);
}

void hourly_case(const std::string& sample, const std::string& file, Mutator& random) {
  std::string bytes = sample;
  for (size_t changes = random.below(5); changes > 0; --changes) random.change_bytes(bytes, sample);
  std::ofstream(file, std::ios::binary) << bytes;
  HW1ReaderWriter year;
  try {
    import_weather(year, file);
  } catch (const Error& refused) {
    require(refused.description().find(file) != std::string::npos, "a refusal without the file");
  }
  year.Load(file);
  review(year);
  const std::string loaded = bytes_of(year);
  year.Save(file);
  HW1ReaderWriter again;
  again.Load(file);
  again.Reserved = year.Reserved.str();
  require(bytes_of(again).substr(192) == loaded.substr(192), "what was saved loads otherwise");
  require(std::filesystem::file_size(file) == std::max(bytes.size(), sizeof(HourlyWeather)), "the tail is gone");
}

int run(int seconds, unsigned long long first, const std::string& what) {
  std::string folder = (std::filesystem::temp_directory_path() / "tarn-fuzz-XXXXXX").string();
  folder = mkdtemp(folder.data());
  const std::string texts[]{sample_epw(), sample_tmy3(), sample_tmy2()};
  HW1ReaderWriter year;
  import_weather_text(year, texts[0]);
  const std::string hourly = bytes_of(year);
  size_t done = 0, findings = 0;
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(seconds);
  for (seed_at_work = first; std::chrono::steady_clock::now() < end; ++seed_at_work, ++done) {
    Mutator random(seed_at_work);
    try {
      if (what == "hourly")
        hourly_case(hourly, folder + "/A.HW1", random);
      else
        text_case(texts[what == "epw" ? 0 : 1 + random.below(2)], texts[random.below(3)], random);
    } catch (const std::exception& found) {
      ++findings;
      std::printf("seed %llu: %s\n", seed_at_work, found.what());
      std::fflush(stdout);
    }
  }
  std::filesystem::remove_all(folder);
  rusage used{};
  getrusage(RUSAGE_SELF, &used);
  std::printf("%s: %zu iterations from seed %llu, %zu findings, at most %ld MB\n", what.c_str(), done, first, findings,
              used.ru_maxrss / 1024);
  return findings == 0 ? 0 : 1;
}

}  // namespace
}  // namespace tarn::fuzz

/// tarn_fuzz_weather epw|tmy|hourly [seconds] [first seed]
int main(int count, char** arguments) {
  __sanitizer_set_death_callback(tarn::fuzz::name_seed);
  const std::string what = count > 1 ? arguments[1] : "epw";
  const int seconds = count > 2 ? std::atoi(arguments[2]) : 600;
  const auto first = count > 3 ? std::strtoull(arguments[3], nullptr, 10)
                               : static_cast<unsigned long long>(std::random_device()()) << 20;
  return tarn::fuzz::run(seconds, first, what);
}
