// project new, info, export and import; describe.

#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>
#include <set>

#include "base/nearest.h"
#include "cli/command.h"
#include "cli/units.h"
#include "cli/words.h"
#include "platform/file_store.h"
#include "project/defaults.h"
#include "project/enumerations.h"
#include "project/kinds.h"
#include "tarn/base/value.h"
#include "tarn/class_list.h"
#include "tarn/code_names.h"
#include "tarn/exchange.h"
#include "tarn/platform/workspace.h"
#include "tarn/preferences.h"

namespace tarn::cli {
namespace {

namespace fs = std::filesystem;

constexpr std::pair<std::string_view, std::string_view> kCounted[]{{"windows", "WindowIndex"},
                                                                   {"doors", "DoorIndex"},
                                                                   {"shades", "ShadeIndex"},
                                                                   {"walls", "WallIndex"},
                                                                   {"roofs", "RoofIndex"},
                                                                   {"schedules", "ScheduleIndex"},
                                                                   {"spaces", "SpaceIndex"},
                                                                   {"air systems", "AirSystemIndex"},
                                                                   {"chillers", "ChillerIndex"},
                                                                   {"boilers", "BoilerIndex"},
                                                                   {"towers", "TowerIndex"},
                                                                   {"plants", "PlantIndex"},
                                                                   {"electric rates", "ElectricRateIndex"},
                                                                   {"fuel rates", "FuelRateIndex"},
                                                                   {"buildings", "BuildingIndex"}};

/// Results that no longer rest on their inputs.
constexpr std::pair<std::string_view, std::string_view> kStale[]{
    {"air systems to size again", "AirSystemIndex WHERE bDesHasChanged <> 0"},
    {"air systems to simulate again", "AirSystemIndex WHERE bSimHasChanged <> 0"},
    {"plants to size again", "PlantIndex WHERE bDesHasChanged <> 0"},
    {"plants to simulate again", "PlantIndex WHERE bSimHasChanged <> 0"},
    {"buildings to simulate again", "BuildingIndex WHERE bHasChanged <> 0"}};

template <typename Table>
Json counts(Database& database, const Table& table) {
  Json out = Json::object();
  for (const auto& [name, from] : table) {
    auto rows = database.OpenRecordset("SELECT COUNT(*) AS CNT FROM " + std::string(from));
    if (const int64_t count = rows.Fields("CNT").integer(); count > 0) out[std::string(name)] = count;
  }
  return out;
}

}  // namespace

int project_new(const Call& call) {
  const fs::path path(call.project);
  std::error_code unreadable;
  if (call.project.empty() || fs::is_directory(path, unreadable)) {
    throw UsageError("Name the project to make: tarn -p FOLDER/PREFIX project new");
  }
  COM_ProjectData project;
  project.SetWorkPath(path.has_parent_path() ? path.parent_path().string() : ".");
  project.FilePrefix = path.filename().string();
  create_project(project);
  if (call.json)
    print_json({{"index_database", project.IndexDBName()}});
  else
    std::cout << "made " << project.IndexDBName() << '\n';
  return kClean;
}

int project_info(const Call& call) {
  COM_ProjectData project;
  const auto database = open_project(project, call, Use::Reading);
  std::map<std::string, uint64_t> files;
  for (const auto& entry : fs::directory_iterator(project.WorkPath())) {
    const std::string name = entry.path().filename().string();
    if (name.starts_with(project.FilePrefix) && entry.is_regular_file()) files[name] = entry.file_size();
  }
  Json preferences = Json::object();
  if (const auto prefs = project.NewProjectPrefs(); fs::exists(prefs->FileName)) {
    prefs->Load();
    preferences = {{"ventilation standard", prefs->VentilationStandardText(prefs->VentStandardCode)},
                   {"energy standard", prefs->EnergyStandardText(prefs->EnergyStandardCode)},
                   {"rating version", prefs->LeedVersionText(prefs->LeedVersionCode)},
                   {"currency", prefs->CurrencyUnits.trimmed()}};
  }
  const Json info{
      {"folder", project.WorkPath()},       {"prefix", project.FilePrefix}, {"entities", counts(*database, kCounted)},
      {"stale", counts(*database, kStale)}, {"preferences", preferences},   {"files", files}};
  if (call.json) {
    print_json(info);
    return kClean;
  }
  std::cout << "project " << project.FilePrefix << " in " << project.WorkPath() << '\n';
  for (const char* section : {"entities", "stale", "preferences", "files"}) {
    std::cout << section << (info[section].empty() ? ": none\n" : ":\n");
    for (const auto& [name, value] : info[section].items()) {
      std::cout << "  " << name << ": " << shown(value) << (section == std::string("files") ? " bytes" : "") << '\n';
    }
  }
  return kClean;
}

namespace {

Json member_json(const Member& member) {
  constexpr std::string_view kinds[]{"property", "method", "event"};
  Json json{{"name", member.name}, {"kind", kinds[static_cast<size_t>(member.kind)]}, {"type", type_name(member.type)}};
  if (!member.unit.empty()) json["unit"] = member.unit;
  if (!member.unit_beside.empty()) json["unit_by"] = member.unit_beside;
  if (member.width() > 0) json["width"] = member.width();
  for (const Bounds& b : member.bounds) json["bounds"].push_back({b.first, b.last});
  if (member.kind == MemberKind::Property) json["read_only"] = member.read_only;
  if (member.by_reference) json["by_reference"] = true;
  for (const Parameter& p : member.parameters()) {
    json["parameters"].push_back(
        {{"name", p.name}, {"type", type_name(p.type)}, {"optional", p.optional}, {"by_reference", p.by_reference}});
  }
  const auto catalogued = catalogued_codes(member);
  for (const Label& label : catalogued.empty() ? member.labels : catalogued)
    json["codes"].push_back({{"code", label.code}, {"name", label.name}, {"text", label.text}});
  return json;
}

}  // namespace

namespace {

/// A bar on a terminal's standard error; nothing elsewhere.
Progress progress_bar() {
  if (isatty(STDERR_FILENO) == 0) return [](size_t, size_t) {};
  return [](size_t done, size_t total) {
    constexpr size_t kWidth = 40;
    if (done % 100 != 0 && done != total) return;
    const size_t filled = total == 0 ? 0 : kWidth * done / total;
    std::cerr << '\r' << (total == 0 ? "" : "[" + std::string(filled, '#') + std::string(kWidth - filled, ' ') + "] ")
              << done;
    if (done == total) std::cerr << '\n';
  };
}

}  // namespace

int project_export(const Call& call) {
  std::set<std::string> groups;
  for (const std::string& word : call.words) {
    std::vector<std::string_view> known;
    for (const EntityKind& kind : entity_kinds()) known.push_back(kind.group);
    if (std::find(known.begin(), known.end(), word) == known.end()) {
      throw UsageError("There is no kind \"" + word + "\"; " + did_you_mean(word, known));
    }
    groups.insert(word);
  }
  COM_ProjectData project;
  open_project(project, call, Use::Reading);
  const std::string text = export_project(project, groups, progress_bar());
  if (call.output.empty()) {
    std::cout << text;
    return kClean;
  }
  if (!fs::exists(call.output) || fs::is_regular_file(call.output)) {
    Transaction whole;
    const auto bytes = std::as_bytes(std::span(text));
    files().replace(call.output, {bytes.begin(), bytes.end()}, nullptr);
    whole.commit();
  } else if (!(std::ofstream(call.output, std::ios::binary) << text).flush()) {  // a pipe, or a device
    fail(ErrorNumber::DeviceError, "Cannot write " + call.output + ".");
  }
  return kClean;
}

int project_import(const Call& call) {
  if (call.words.size() != 1) throw UsageError("Which file? tarn project import FILE (- for standard input)");
  const std::string& file = call.words.front();
  if (fs::is_directory(file)) fail(ErrorNumber::PermissionDenied, file + " is a folder; give a file.");
  std::ifstream in;
  if (file != "-") in.open(file, std::ios::binary);
  if (file != "-" && !in) fail(ErrorNumber::FileNotFound, "Cannot read " + file + ".");
  const std::string text{std::istreambuf_iterator<char>(file == "-" ? std::cin : in), {}};
  COM_ProjectData project;
  open_project(project, call, Use::Writing);
  size_t count = 0;
  try {
    count = import_project(project, text, progress_bar());
  } catch (const Error& error) {
    throw Error(error.number(), error.source(), file + ", " + error.what());
  }
  if (call.json)
    print_json({{"imported", count}});
  else
    std::cout << "imported " << count << (count == 1 ? " entity" : " entities") << '\n';
  return kClean;
}

namespace {

Json codes_json(const Enumeration& enumeration) {
  Json codes = Json::array();
  for (const Label& label : enumeration.codes)
    codes.push_back({{"value", label.code}, {"name", label.name}, {"text", label.text}});
  return {{"enumeration", enumeration.name}, {"codes", codes}};
}

void show_codes(const Enumeration& enumeration) {
  std::cout << enumeration.name << '\n';
  std::vector<std::vector<Json>> rows;
  for (const Label& label : enumeration.codes) rows.push_back({label.code, label.name, label.text});
  print_table({"code", "name", "text"}, rows);
}

Json class_json(const ClassInfo& info) {
  Json members = Json::array();
  for (const Member& member : info.members) members.push_back(member_json(member));
  return {{"class", info.name}, {"record_bytes", record_length(*create(info.name))}, {"members", members}};
}

std::string notes_of(const Member& member) {
  if (member.read_only) return "read-only";
  if (member.by_reference) return "set by reference";
  return member.unit_beside.empty() ? "" : "unit by " + std::string(member.unit_beside);
}

/// Names that the code catalogue has for the codes of a property.
void show_catalogued(const Member& member) {
  std::string codes;
  for (const Label& label : catalogued_codes(member))
    codes += (codes.empty() ? "" : ", ") + std::to_string(label.code) + " " + std::string(label.name);
  if (!codes.empty()) std::cout << "\n" << member.name << ": " << codes << '\n';
}

void show_class(const ClassInfo& info) {
  const size_t length = record_length(*create(info.name));
  std::cout << info.name << (length > 0 ? ", record of " + std::to_string(length) + " bytes" : "") << '\n';
  std::vector<std::vector<Json>> rows;
  for (const Member& m : info.members) {
    constexpr std::string_view kinds[]{"property", "method", "event"};
    const std::string notes = notes_of(m);
    rows.push_back({kinds[static_cast<size_t>(m.kind)], signature(m), std::string(type_name(m.type)),
                    std::string(shown_unit(m.unit)), notes});
  }
  print_table({"kind", "member", "type", "unit", ""}, rows);
  for (const Member& m : info.members) show_catalogued(m);
}

/// Error `UsageError` for a word that names neither.
void check_described(const std::string& word) {
  std::vector<std::string_view> names;
  for (const ClassEntry& entry : class_list()) names.push_back(entry.info->name);
  for (const Enumeration& each : enumeration_list()) names.push_back(each.name);
  const auto named = [&](std::string_view name) { return same_word(name, word); };
  if (std::none_of(names.begin(), names.end(), named))
    throw UsageError("There is no class or enumeration " + word + "; " + did_you_mean(word, names));
}

}  // namespace

int describe_classes(const Call& call) {
  if (!call.words.empty()) check_described(call.words.front());
  const auto wanted = [&](std::string_view name) { return call.words.empty() || same_word(name, call.words.front()); };
  Json all = Json::array();
  for (const ClassEntry& entry : class_list()) {
    if (!wanted(entry.info->name)) continue;
    if (call.json)
      all.push_back(class_json(*entry.info));
    else
      show_class(*entry.info);
  }
  for (const Enumeration& each : enumeration_list()) {
    if (!wanted(each.name)) continue;
    if (call.json)
      all.push_back(codes_json(each));
    else
      show_codes(each);
  }
  if (call.json) print_json(call.words.empty() ? all : all[0]);
  return kClean;
}

}  // namespace tarn::cli
