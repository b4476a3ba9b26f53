// The project's weather, with its index rows, and the preferences.
#include "check/inspection.h"
#include "platform/file_store.h"
#include "tarn/hourly_file.h"
#include "tarn/preferences.h"
#include "tarn/weather.h"
#include "weather/record_file.h"
#include "weather/year_review.h"

namespace tarn {
namespace {

/// A sentence that ends in what a person can do.
void tell_fault(Inspection& on, const std::string& path, Severity severity, const std::string& fault) {
  CheckFinding told{.severity = severity, .property = on.file_name(path)};
  size_t remedy = std::string::npos;
  for (const char* begin : {" Import the year", " Set the design", " To take"})
    remedy = std::min(remedy, fault.find(begin));
  told.what = fault.substr(0, remedy);
  told.remedy =
      remedy == std::string::npos ? "Import the year again: tarn weather import FILE." : fault.substr(remedy + 1);
  on.add(told);
}

/// The index row of a weather table: one, and by the file where there is one.
struct WeatherRow {
  std::string table, column;
  std::string statement;    // makes the row
  std::string wanted = {};  // by the file; empty where there is none
  std::string city = {};    // a row of this alone will do
  std::vector<Cell> values = {};
};

void inspect_row(Inspection& on, const WeatherRow& row) {
  auto rows = on.database.OpenRecordset("SELECT " + row.column + " FROM " + row.table);
  int count = 0;
  std::string first;
  for (; !rows.AtEof(); rows.MoveNext()) {
    if (count++ == 0) first = rows.Fields(row.column).text();
  }
  const bool agrees = row.wanted.empty() || first == row.wanted || first.starts_with(row.city);
  if (count == 1 && agrees) return;
  CheckFinding told{.property = row.table};
  told.what = count != 1 ? "The table has " + std::to_string(count) + " rows instead of one."
                         : "The row says \"" + first + "\", the weather file \"" + row.wanted + "\".";
  told.remedy = "Repair makes the row by the weather file.";
  on.add(told, [&database = on.database, row] {
    database.Execute("DELETE FROM " + row.table);
    database.Execute(row.statement, row.values);
  });
}

void inspect_rows(Inspection& on, const WTH_Weather& weather) {
  const auto design = std::make_unique<DesignWeather>();
  const auto year = std::make_unique<SimulationWeather>();
  WeatherRow row{.table = "DesWeatherIndex",
                 .column = "szDesCityName",
                 .statement = "INSERT INTO DesWeatherIndex (szDesCityName) VALUES (?)"};
  if (read_record(*design, weather.DesFileName)) {
    row.city = design->DesCityName.trimmed();
    row.wanted = row.city + ", " + design->DesStateName.trimmed();
  }
  row.values = {row.wanted};
  inspect_row(on, row);
  row = {.table = "SimWeatherIndex",
         .column = "szSimCityName",
         .statement = "INSERT INTO SimWeatherIndex (szSimCityName, nJanOne) VALUES (?, ?)"};
  if (read_record(*year, weather.SimFileName)) {
    row.city = year->SimCityName.trimmed();
    row.wanted = trimmed(row.city + " " + year->SourceTypeLabel.trimmed());
  }
  row.values = {row.wanted, cell(int{year->JanOne})};
  inspect_row(on, row);
}

}  // namespace

void inspect_weather(Inspection& on) {
  const auto weather = on.project.NewWeather();
  inspect_rows(on, *weather);
  const std::string hourly = on.project.SimWeatherInputsFilename();
  const auto year = std::make_unique<HW1ReaderWriter>();
  const bool has_year = files().exists(hourly);
  bool whole = has_year;
  if (has_year) {
    year->Load(hourly);
    const uint64_t size = files().size(hourly);
    whole = size == sizeof(HourlyWeather) && year->has_valid_header();
    if (size != sizeof(HourlyWeather))
      tell_fault(on, hourly, Severity::Error,
                 "The hourly weather file has " + std::to_string(size) + " of " +
                     std::to_string(sizeof(HourlyWeather)) + " bytes.");
    else if (!whole)
      tell_fault(on, hourly, Severity::Error, std::string(kHourlyInvalid.text));
  }
  for (const std::string& fault : faults_of(*weather, whole ? year.get() : nullptr)) {
    const std::string& path = fault.starts_with(weather->DesFileName) ? weather->DesFileName : weather->SimFileName;
    const bool differs = fault.find("differs from") != std::string::npos;  // a client may have edited the year
    tell_fault(on, path, differs ? Severity::Warning : Severity::Error, fault);
  }
}

void inspect_preferences(Inspection& on) {
  const auto preferences = on.project.NewProjectPrefs();
  if (!files().exists(preferences->FileName) || files().size(preferences->FileName) == 0) return;
  PreferencesRecord stored;
  const size_t got = files().read(preferences->FileName, 0, record_bytes(stored));
  preferences->Load();
  const auto& read = static_cast<const PreferencesRecord&>(*preferences);
  CheckFinding told{.severity = Severity::Warning, .property = on.file_name(preferences->FileName)};
  const auto tell = [&](const std::string& what) {
    told.what = what;
    told.remedy = "Repair sets what is lost or unknown to 0; then set the preferences.";
    on.add(told, [&on] {
      const auto mended = on.project.NewProjectPrefs();
      mended->Load();
      mended->Save();
    });
  };
  if (got < sizeof stored)
    tell("The preferences are cut short: " + std::to_string(got) + " of " + std::to_string(sizeof stored) + " bytes.");
  const auto code = [&](std::string_view name, int found, int known) {
    if (found != known) tell(std::string(name) + " is " + std::to_string(found) + ", which is not a known code.");
  };
  code("VentStandardCode", stored.VentStandardCode.raw, read.VentStandardCode.raw);
  code("EnergyStandardCode", stored.EnergyStandardCode.raw, read.EnergyStandardCode.raw);
  code("LeedVersionCode", stored.LeedVersionCode.raw, read.LeedVersionCode.raw);
}

}  // namespace tarn
