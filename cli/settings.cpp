// preferences and report-options: show and set.

#include <algorithm>
#include <fstream>
#include <iostream>
#include <iterator>

#include "base/nearest.h"
#include "cli/command.h"
#include "cli/views/form.h"
#include "reflect/json.h"
#include "tarn/exchange.h"
#include "tarn/preferences.h"

namespace tarn::cli {
namespace {

/// The property and the text of "CurrencyUnits=EUR".
std::pair<const Member*, std::string> assignment(const ClassInfo& info, const std::string& word) {
  const size_t equals = word.find('=');
  if (equals == std::string::npos) throw UsageError("\"" + word + "\" is not an assignment; write Property=value.");
  const std::string name = word.substr(0, equals);
  std::vector<std::string_view> names;
  for (const Member& member : info.members) {
    if (member.stored()) names.push_back(member.name);
  }
  const int number = info.number(name);
  if (number < 0 || !info.members[static_cast<size_t>(number)].stored())
    throw UsageError("There is no preference " + name + " to set; " + did_you_mean(name, names));
  return {&info.members[static_cast<size_t>(number)], word.substr(equals + 1)};
}

/// A number where the text is one; a code's name or a text otherwise.
Json json_of(const Member& member, const std::string& text) {
  if (member.type == ValueType::Text) return text;
  try {
    return parse_json(text);
  } catch (const Json::exception&) {
    return text;
  }
}

}  // namespace

int preferences_show(const Call& call) {
  COM_ProjectData project;
  const auto database = open_project(project, call, Use::Reading);
  if (call.json) {
    std::cout << export_settings(project, Settings::Preferences);
    return kClean;
  }
  const auto preferences = project.NewProjectPrefs();
  preferences->Read();
  show_fields(*database, *preferences);
  return kClean;
}

int preferences_set(const Call& call) {
  if (call.words.empty()) throw UsageError("Nothing to set; write Property=value.");
  COM_ProjectData project;
  open_project(project, call, Use::Writing);
  const auto preferences = project.NewProjectPrefs();
  preferences->Read();
  for (const std::string& word : call.words) {
    const auto [member, text] = assignment(preferences->info(), word);
    set_from_json(*preferences, *member, {}, json_of(*member, text));
  }
  preferences->Save();
  if (call.json)
    std::cout << export_settings(project, Settings::Preferences);
  else
    std::cout << "preferences saved\n";
  return kClean;
}

int report_options_show(const Call& call) {
  COM_ProjectData project;
  open_project(project, call, Use::Reading);
  if (call.json) {
    std::cout << export_settings(project, Settings::ReportOptions);
    return kClean;
  }
  const auto options = project.NewReportOptions();
  options->Load();
  if (call.output.empty()) {
    std::cout << options->bytes.size() << " bytes in " << options->FileName
              << "; what they mean is the report program's own\n";
    return kClean;
  }
  std::ofstream out(call.output, std::ios::binary);
  out.write(reinterpret_cast<const char*>(options->bytes.data()), static_cast<std::streamsize>(options->bytes.size()));
  if (!out.flush()) fail(ErrorNumber::DeviceError, "Cannot write " + call.output + ".");
  return kClean;
}

int report_options_set(const Call& call) {
  if (call.words.empty()) throw UsageError("Which file? tarn report-options set FILE");
  std::ifstream in(call.words.front(), std::ios::binary);
  if (!in) fail(ErrorNumber::FileNotFound, "Cannot read " + call.words.front() + ".");
  const std::string read{std::istreambuf_iterator<char>(in), {}};
  COM_ProjectData project;
  open_project(project, call, Use::Writing);
  const auto options = project.NewReportOptions();
  const auto bytes = std::as_bytes(std::span(read));
  options->bytes.assign(bytes.begin(), bytes.end());
  options->Save();
  if (call.json)
    print_json({{"bytes", read.size()}});
  else
    std::cout << "report options saved, " << read.size() << " bytes\n";
  return kClean;
}

}  // namespace tarn::cli
