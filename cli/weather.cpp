// weather import, check and show: hourly weather files, and years of other programs.

#include <filesystem>
#include <iostream>

#include "cli/command.h"
#include "cli/views/weather_pictures.h"
#include "platform/file_store.h"
#include "reflect/json.h"
#include "tarn/pictures.h"
#include "tarn/weather_import.h"
#include "weather/calendar.h"
#include "weather/year_review.h"

namespace tarn::cli {
namespace {

/// The file after the verb, or the project's own.
std::string file_of(const Call& call) {
  if (!call.words.empty()) return call.words.front();
  COM_ProjectData project;
  open_project(project, call, Use::Reading);
  const std::string file = project.SimWeatherInputsFilename();
  if (!std::filesystem::exists(file))
    throw UsageError("The project has no hourly weather yet; tarn weather import FILE brings one in.");
  return file;
}

struct ReadWeather {
  HW1ReaderWriter year;
  ImportedWeather imported;
  std::string file;

  explicit ReadWeather(const Call& call) : file(file_of(call)) {
    if (std::error_code none; std::filesystem::is_directory(file, none))
      fail(ErrorNumber::PermissionDenied, file + " is a folder; give a file.");
    imported = import_weather(year, file);
  }
  void say_notes(const Call& call) const {
    if (!call.json) print_notes(file, imported.notes);
  }
  bool is_hourly() const { return imported.format == "HW1"; }
};

/// Every property of an object, as the members table has them.
Json properties_json(Object& object) {
  Json json;
  for (const Member& member : object.info().members) {
    if (member.kind == MemberKind::Property && !(member.field() && member.field()->stride > 0))
      json[std::string(member.name)] = to_json(object, member);
  }
  return json;
}

/// An existing file is replaced only if it is empty or an hourly weather file.
void check_output(const std::string& file) {
  std::error_code ignored;
  if (!std::filesystem::exists(file, ignored) || std::filesystem::file_size(file, ignored) == 0) return;
  HW1ReaderWriter there;
  there.Load(file);
  if (!there.has_valid_header())
    fail(ErrorNumber::FileExists,
         file + " exists and is not an hourly weather file; remove it first, or give another name.");
}

}  // namespace

int weather_import(const Call& call) {
  if (call.words.empty()) throw UsageError("Which file? tarn weather import FILE [--output CITY.HW1]");
  ReadWeather read(call);
  check_hourly(read.year, read.imported, read.file);
  std::string made = call.output;
  if (made.empty()) {
    COM_ProjectData project;
    open_project(project, call, Use::Writing);
    made = project.SimWeatherInputsFilename();
    save_as_simulation(*project.NewWeather(), read.year, read.imported, made);
  } else {
    check_output(made);
    read.year.Save(made);
  }
  read.say_notes(call);
  const std::string city = read.year.CityName.trimmed() + ", " + read.year.LocationName.trimmed();
  if (call.json) {
    print_json({{"made", made}, {"format", read.imported.format}, {"city", city}, {"notes", read.imported.notes}});
    return kClean;
  }
  std::cout << "made " << made << " from " << read.file << " (" << read.imported.format << "): " << city << '\n';
  if (call.output.empty())
    std::cout << "it is the project's simulation weather now; every system, plant and building is stale\n";
  if (call.output.empty() && read.imported.first_weekday == 0)
    std::cout << "the file does not tell the weekday of 1 January; JanOne is as it was\n";
  return kClean;
}

namespace {

Json finding_json(const Finding& finding) {
  return {{"what", finding.what},
          {"hours", finding.count},
          {"first", {{"date", date_text(finding.day)}, {"day", finding.day}, {"hour", finding.hour}}},
          {"value", finding.value}};
}

/// Of the project's design and simulation weather.
std::vector<std::string> project_faults(const Call& call) {
  COM_ProjectData project;
  open_project(project, call, Use::Reading);
  const std::string file = project.SimWeatherInputsFilename();
  if (!files().exists(file)) return faults_of(*project.NewWeather(), nullptr);
  HW1ReaderWriter year;
  year.Load(file);
  return faults_of(*project.NewWeather(), &year);
}

}  // namespace

int weather_check(const Call& call) {
  const std::vector<std::string> faults = call.words.empty() ? project_faults(call) : std::vector<std::string>();
  const ReadWeather read(call);
  read.say_notes(call);
  const HourlyVerdict verdict = verdict_of(read.year);
  const bool named = !read.is_hourly() || call.words.empty() || HW1ReaderWriter::is_hourly_name(read.file);
  const auto findings = findings_of(read.year);
  const bool clean =
      verdict.code == 0 && findings.empty() && faults.empty() && (!read.is_hourly() || read.imported.notes.empty());
  if (call.json) {
    Json list = Json::array();
    for (const Finding& finding : findings) list.push_back(finding_json(finding));
    print_json({{"file", read.file},
                {"format", read.imported.format},
                {"code", verdict.code},
                {"text", verdict.text},
                {"name_ends_in_hw1", named},
                {"notes", read.imported.notes},
                {"findings", list},
                {"project_files", faults}});
    return clean ? kClean : kFindings;
  }
  std::cout << "content: " << verdict.code << " " << verdict.text << '\n';
  if (!named)
    std::cout << "name: does not end in .HW1; ValidateHW1File refuses it with " << kHourlyInvalid.code
              << " whatever its content\n";
  for (const Finding& finding : findings) {
    std::cout << finding.what << ": " << finding.count << (finding.count == 1 ? " hour" : " hours") << ", first "
              << date_text(finding.day) << " hour " << finding.hour
              << (finding.value.empty() ? "" : ", " + finding.value) << '\n';
  }
  for (const std::string& fault : faults) std::cout << fault << '\n';
  if (clean) std::cout << "nothing found in 8760 hours\n";
  return clean ? kClean : kFindings;
}

int weather_show(const Call& call) {
  ReadWeather read(call);
  read.say_notes(call);
  WTH_Stats statistics;
  fill_statistics(statistics, read.year);
  if (call.json) {
    print_json({{"file", read.file},
                {"format", read.imported.format},
                {"header", properties_json(read.year)},
                {"statistics", properties_json(statistics)},
                {"notes", read.imported.notes}});
  } else {
    show_site(read.year, !read.is_hourly());
    show_statistics(statistics);
    show_month_chart(statistics);
  }
  if (!call.svg.empty()) save_picture(call, weather_picture(read.year));
  return kClean;
}

}  // namespace tarn::cli
