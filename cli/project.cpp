// project new, project info, describe.

#include <filesystem>
#include <iostream>

#include "base/value.h"
#include "cli/command.h"
#include "component/class_list.h"
#include "component/defaults.h"
#include "storage/schema.h"

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

int make_project(const Call& call) {
  const fs::path path(call.project);
  if (call.project.empty() || fs::is_directory(path)) {
    throw UsageError("Name the project to make: tarn -p FOLDER/PREFIX project new");
  }
  COM_ProjectData project;
  project.SetWorkPath(path.has_parent_path() ? path.parent_path().string() : ".");
  project.FilePrefix = path.filename().string();
  create_index(project.IndexDBName());
  write_default_records(project);
  if (call.json)
    print_json({{"index_database", project.IndexDBName()}});
  else
    std::cout << "made " << project.IndexDBName() << '\n';
  return kClean;
}

int project_info(const Call& call) {
  COM_ProjectData project;
  const auto database = open_project(project, call, Use::Reading);
  Json files = Json::object();
  for (const auto& entry : fs::directory_iterator(project.WorkPath())) {
    const std::string name = entry.path().filename().string();
    if (name.starts_with(project.FilePrefix) && entry.is_regular_file()) files[name] = entry.file_size();
  }
  const Json info{{"folder", project.WorkPath()},
                  {"prefix", project.FilePrefix},
                  {"entities", counts(*database, kCounted)},
                  {"stale", counts(*database, kStale)},
                  {"files", files}};
  if (call.json) {
    print_json(info);
    return kClean;
  }
  std::cout << "project " << project.FilePrefix << " in " << project.WorkPath() << '\n';
  for (const char* section : {"entities", "stale", "files"}) {
    std::cout << section << (info[section].empty() ? ": none\n" : ":\n");
    for (const auto& [name, value] : info[section].items()) {
      std::cout << "  " << name << ": " << value << (section == std::string("files") ? " bytes" : "") << '\n';
    }
  }
  return kClean;
}

Json member_json(const Member& member) {
  constexpr std::string_view kinds[]{"property", "method", "event"};
  Json json{{"name", member.name}, {"kind", kinds[static_cast<size_t>(member.kind)]}, {"type", type_name(member.type)}};
  if (!member.unit.empty()) json["unit"] = member.unit;
  if (member.width > 0) json["width"] = member.width;
  for (const Bounds& b : member.bounds) json["bounds"].push_back({b.first, b.last});
  if (member.kind == MemberKind::Property) json["read_only"] = member.read_only;
  if (member.by_reference) json["by_reference"] = true;
  for (const Parameter& p : member.parameters) {
    json["parameters"].push_back(
        {{"name", p.name}, {"type", type_name(p.type)}, {"optional", p.optional}, {"by_reference", p.by_reference}});
  }
  for (const Label& label : member.labels)
    json["codes"].push_back({{"code", label.code}, {"name", label.name}, {"text", label.text}});
  return json;
}

std::string signature(const Member& member) {
  std::string text(member.name);
  for (size_t i = 0; i < member.bounds.size(); ++i) {
    const Bounds& b = member.bounds[i];
    text += (i == 0 ? "(" : ", ") + std::to_string(b.first) + " to " + std::to_string(b.last);
  }
  if (!member.bounds.empty()) text += ")";
  if (member.kind == MemberKind::Property) return text;
  text += "(";
  for (size_t i = 0; i < member.parameters.size(); ++i) {
    const Parameter& p = member.parameters[i];
    if (i > 0) text += ", ";
    text += (p.optional ? "[" : "") + std::string(p.by_reference ? "ByRef " : "") + std::string(p.name) + " " +
            std::string(type_name(p.type)) + (p.optional ? "]" : "");
  }
  return text + ")";
}

}  // namespace

int run_project(const Call& call) { return call.verb == "new" ? make_project(call) : project_info(call); }

int run_describe(const Call& call) {
  Json all = Json::array();
  for (const ClassEntry& entry : class_list()) {
    const ClassInfo& info = call.verb.empty() ? entry.info() : class_info(call.verb);
    Json members = Json::array();
    for (const Member& member : info.members) members.push_back(member_json(member));
    all.push_back({{"class", info.name}, {"record_bytes", info.record_size}, {"members", members}});
    if (!call.json) {
      std::cout << info.name
                << (info.record_size > 0 ? ", record of " + std::to_string(info.record_size) + " bytes" : "") << '\n';
      std::vector<std::vector<Json>> rows;
      for (const Member& m : info.members) {
        constexpr std::string_view kinds[]{"property", "method", "event"};
        std::string notes(m.read_only ? "read-only" : m.by_reference ? "set by reference" : "");
        rows.push_back({kinds[static_cast<size_t>(m.kind)], signature(m), std::string(type_name(m.type)),
                        std::string(m.unit), notes});
      }
      print_table({"kind", "member", "type", "unit", ""}, rows);
    }
    if (!call.verb.empty()) break;
  }
  if (call.json) print_json(call.verb.empty() ? all : all[0]);
  return kClean;
}

}  // namespace tarn::cli
