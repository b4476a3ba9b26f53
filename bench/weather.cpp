// The project's weather beside plain reads and writes of its two files with the same statements, and a year of another
// program's beside a bare parse of its columns.
#include "tarn/weather.h"

#include <fcntl.h>
#include <unistd.h>

#include <charconv>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <stdexcept>

#include "plain_project.h"
#include "project/new_index.h"
#include "report.h"
#include "storage/kind.h"
#include "tarn/platform/database.h"
#include "tarn/project.h"
#include "tarn/weather_import.h"
#include "weather/calendar.h"

namespace tarn::bench {
namespace {

void require(bool holds) {
  if (!holds) throw std::runtime_error("The floor of the weather failed");
}

/// One of the two halves: a table of one row, and a file.
class PlainHalf {
 public:
  PlainHalf(sqlite3* database, const std::string& table, const std::string& columns, std::string path, size_t size)
      : select_(database, ("SELECT rowid, * FROM " + table).c_str()),
        remove_(database, ("DELETE FROM " + table + " WHERE rowid = ?").c_str()),
        insert_(database, ("INSERT INTO " + table + columns).c_str()),
        path_(std::move(path)),
        bytes_(size, '\0') {}

  void load() {
    find();
    const int file = ::open(path_.c_str(), O_RDONLY | O_CLOEXEC);
    require(::pread(file, bytes_.data(), bytes_.size(), 0) == static_cast<ssize_t>(bytes_.size()));
    ::close(file);
  }
  void save() {
    write_row();
    write(path_, O_RDWR);
  }
  /// By a new file that takes the old one's place: the least after which a crash leaves one of the two.
  void save_anew() {
    write_row();
    const std::string fresh = path_ + "-new";
    write(fresh, O_RDWR | O_CREAT | O_TRUNC);
    require(::rename(fresh.c_str(), path_.c_str()) == 0);
  }

 private:
  void write_row() {
    remove_.bind(1, find());
    remove_.run();
    insert_.bind(1, std::string_view("Golden, CO"));
    insert_.run();
  }
  void write(const std::string& path, int how) const {
    const int file = ::open(path.c_str(), how | O_CLOEXEC, 0666);
    require(::pwrite(file, bytes_.data(), bytes_.size(), 0) == static_cast<ssize_t>(bytes_.size()));
    require(::fsync(file) == 0);
    ::close(file);
  }
  int64_t find() {
    require(select_.step());
    const int64_t row = sqlite3_column_int64(select_.get(), 0);
    select_.reset();
    return row;
  }

  PlainStatement select_, remove_, insert_;
  std::string path_, bytes_;
};

/// A year as these files have it: 35 fields a row, most of them of no interest.
std::string sample_year() {
  std::string text =
      "LOCATION,Sample,CO,USA,TMY3,724666,39.74,-105.18,-7.0,1829.0\nDESIGN CONDITIONS,0\n"
      "HOLIDAYS/DAYLIGHT SAVINGS,No,0,0,0\nDATA PERIODS,1,1,Data,Sunday, 1/ 1,12/31\n";
  for (int day = 1; day <= kDays; ++day) {
    for (int hour = 1; hour <= kHours; ++hour) {
      const double dry_bulb = 10 - 12 * std::cos(day * 0.0172) - 5 * std::cos(hour * 0.2618);
      const int sun = hour > 6 && hour < 19 ? 500 : 0;
      char row[300];
      std::snprintf(
          row, sizeof row,
          "1999,%d,%d,%d,0,?9?9?9?9E0?9?9?9?9?9?9?9?9?9?9?9?9?9?9?9*9*9?9*9*9,%.1f,%.1f,77,%d,0,0,261,%d,%d,%d,0,"
          "0,0,0,170,2.1,10,9,16.1,3000,9,999999999,89,0.0310,0,88,0.330,999.0,99.0\n",
          month_of(day), day_of_month(day), hour, dry_bulb, dry_bulb - 6, 80600 + 10 * hour, sun, sun, sun / 5);
      text += row;
    }
  }
  return text;
}

/// Splits every line at its commas and parses the columns that an import needs.
double parsed(const std::string& text) {
  constexpr size_t kColumns[]{0, 1, 2, 3, 4, 6, 7, 8, 9, 14, 15};
  std::vector<std::string_view> fields;
  double sum = 0;
  for (const char* line = text.data(); line < text.data() + text.size();) {
    const char* const end = static_cast<const char*>(std::memchr(line, '\n', text.data() + text.size() - line));
    fields.clear();
    for (const char* field = line; field <= end;) {
      const void* found = std::memchr(field, ',', end - field);
      const char* const stop = found ? static_cast<const char*>(found) : end;
      fields.emplace_back(field, stop - field);
      field = stop + 1;
    }
    if (fields.size() == 35) {
      for (const size_t column : kColumns) {
        double value = 0;
        std::from_chars(fields[column].data(), fields[column].data() + fields[column].size(), value);
        sum += value;
      }
    }
    line = end + 1;
  }
  return sum;
}

}  // namespace

void weather_cases(Report& report, const std::string& folder) {
  const std::string at = folder + "/weather";
  std::filesystem::create_directories(at + "/ours");
  COM_ProjectData project;
  project.SetWorkPath(at + "/ours");
  project.FilePrefix = "JOB";
  create_index(project.IndexDBName());
  run_script(project.IndexDBName(), "INSERT INTO AirSystemIndex (nIndex) VALUES (1), (2)");
  const Ptr<WTH_Weather> weather = project.NewWeather();
  weather->DesCityName = "Golden";
  weather->Save();
  std::filesystem::copy(at + "/ours", at + "/floor");

  const std::unique_ptr<sqlite3, int (*)(sqlite3*)> database(opened(at + "/floor/JOBINX.MDB"), &sqlite3_close);
  PlainStatement begin(database.get(), "BEGIN"), commit(database.get(), "COMMIT");
  PlainHalf design(database.get(), "DesWeatherIndex", " (szDesCityName) VALUES (?)", at + "/floor/JOBWTD.DAT",
                   sizeof(DesignWeather));
  PlainHalf simulation(database.get(), "SimWeatherIndex", " (szSimCityName) VALUES (?)", at + "/floor/JOBWTA.DAT",
                       sizeof(SimulationWeather));
  std::vector<PlainStatement> marks;
  for (const char* mark :
       {"UPDATE AirSystemIndex SET bDesHasChanged = -1, bSimHasChanged = -1",
        "UPDATE PlantIndex SET bDesHasChanged = -1, bSimHasChanged = -1", "UPDATE BuildingIndex SET bHasChanged = -1"})
    marks.emplace_back(database.get(), mark);
  report.compare({"load the project's weather", 1, 1.3, 201}, {[&] { weather->Load(); }}, {[&] {
                   begin.run();
                   design.load();
                   simulation.load();
                   commit.run();
                 }});
  const auto plain_save = [&](void (PlainHalf::*simulation_save)()) {
    begin.run();
    design.save();
    commit.run();
    begin.run();
    (simulation.*simulation_save)();
    commit.run();
    begin.run();
    for (PlainStatement& mark : marks) mark.run();
    commit.run();
  };
  report.compare({"save the project's weather after an edit", 1, 1.3, 101}, {[&] {
                   weather->SummerDB = weather->SummerDB + 1;
                   weather->SimDay(200).DB(15) = weather->SimDay(200).DB(15) + 1;
                   weather->Save();
                 }},
                 {[&] { plain_save(&PlainHalf::save); }});
  report.compare({"save the project's weather, another year", 1, 1.3, 101},
                 {.run = [&] { weather->Save(); },
                  .before =
                      [&] {
                        for (WeatherDay& day : weather->SimDay.items) {
                          for (R4& value : day.ITOT.items) value = value + 1;
                        }
                      }},
                 {[&] { plain_save(&PlainHalf::save_anew); }});

  const std::string text = sample_year();
  HW1ReaderWriter year;
  volatile double sum = 0;
  report.compare({"convert a year of EPW", 1, 1.3, 201}, {[&] { import_weather_text(year, text); }},
                 {[&] { sum = parsed(text); }});
}

}  // namespace tarn::bench
