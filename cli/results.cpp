// results list and show: what the design calculation found for air systems, from the result files.

#include <algorithm>
#include <iostream>

#include "cli/choose.h"
#include "cli/command.h"
#include "cli/views/result_pictures.h"
#include "platform/file_store.h"
#include "reflect/json.h"
#include "tarn/pictures.h"
#include "tarn/reflect/collection.h"

namespace tarn::cli {
namespace {

const Indexed kSystems{"AirSystemIndex", "air system", "air-systems"};

/// An air system as its row in the index table has it.
struct Row {
  int16_t index;
  std::string name;
  bool stale;  // since the design calculation
};

std::vector<Row> rows_of(Database& database) {
  std::vector<Row> all;
  auto rows = database.OpenRecordset("SELECT nIndex, szName, bDesHasChanged FROM " + kSystems.table +
                                     " WHERE nIndex BETWEEN 1 AND 32767 ORDER BY nIndex");
  for (; !rows.AtEof(); rows.MoveNext()) {
    all.push_back({static_cast<int16_t>(rows.Fields("nIndex").integer()), rows.Fields("szName").text(),
                   rows.Fields("bDesHasChanged").integer() != 0});
  }
  return all;
}

}  // namespace

int results_list(const Call& call) {
  COM_ProjectData project;
  const auto database = open_project(project, call, Use::Reading);
  const auto design = project.NewAirSystemDesign();
  Json all = Json::array();
  std::vector<std::vector<Json>> table;
  for (const Row& row : rows_of(*database)) {
    const std::string file = design->file_of(row.index);
    if (!files().exists(file) || design->system_in_file(row.index) != row.name) continue;
    all.push_back({{"index", row.index}, {"name", row.name}, {"file", file}, {"stale", row.stale}});
    table.push_back({row.index, row.name, file, row.stale ? "stale" : "current"});
  }
  if (call.json)
    print_json(all);
  else if (table.empty())
    std::cout << "no air system has design results yet\n";
  else
    print_table({"index", "name", "file", "design"}, table);
  return kClean;
}

namespace {

/// The results of the system that the call names, with its row.
struct ReadResults {
  COM_ProjectData project;
  Row row;
  Ptr<ADL_AirSystemDesign> design;
  std::string file;

  explicit ReadResults(const Call& call) {
    const auto database = open_project(project, call, Use::Reading);
    const int16_t index = index_of(call, *database, kSystems);
    for (Row& each : rows_of(*database)) {
      if (each.index == index) row = std::move(each);
    }
    design = project.NewAirSystemDesign();
    file = design->file_of(index);
    if (!files().exists(file)) {
      fail(ErrorNumber::FileNotFound, "Air system " + std::to_string(index) + ", " + row.name +
                                          ", has no design results: " + file +
                                          " is not there. Run the design calculation.");
    }
    const auto system = project.NewAirSystem();
    system->Load(index);
    design->SetAirSystem(system);
    design->Load();
  }
  std::string zone_name(int zone) const {
    return design->AirSystem()->GetZoneData(static_cast<int16_t>(zone))->Name.trimmed();
  }
};

/// The zone that the second word names.
int zone_of(const Call& call, const ReadResults& read) {
  const int zone = number_of(call.words[1]), zones = read.design->TSZones()->Count();
  if (zones == 0) throw UsageError("The air system has no zones.");
  if (zone < 1 || zone > zones) {
    throw UsageError("There is no zone " + call.words[1] + " in the air system; the nearest is " +
                     std::to_string(std::clamp(zone, 1, zones)) + ".");
  }
  return zone;
}

/// Fields and parts, and what the object's lists hold.
Json with_lists(Object& object) {
  Json json = Json::object();
  add_stored_fields(object, json);
  for (const Member& member : object.info().members) {
    if (member.kind != MemberKind::Property || member.type != ValueType::Object || member.is_part()) continue;
    Value value;
    member.get(object, {}, value);
    const auto* held = std::get_if<ObjectPtr>(&value);
    const auto list = held ? std::dynamic_pointer_cast<Collection>(*held) : nullptr;
    if (!list) continue;
    Json& all = json[std::string(member.name)] = Json::array();
    for (int32_t i = 1; i <= list->Count(); ++i) all.push_back(with_lists(*std::get<ObjectPtr>(list->Item(i))));
  }
  return json;
}

void print_as_json(const ReadResults& read, int zone) {
  Json json{{"system", read.row.index}, {"name", read.row.name}, {"file", read.file}, {"stale", read.row.stale}};
  if (zone == 0) {
    json.update(with_lists(*read.design));
  } else {
    const auto number = static_cast<int16_t>(zone);
    json.update({{"zone", zone},
                 {"zone_name", read.zone_name(zone)},
                 {"TSZone", with_lists(*read.design->TSZone(number))},
                 {"HLZone", with_lists(*read.design->HLZone(number))},
                 {"DLZone", with_lists(*read.design->DLZone(number))}});
  }
  print_json(json);
}

void print_heading(const ReadResults& read, int zone) {
  if (read.row.stale) {
    std::cout << "stale: the system, or what it uses, has changed since these results; run the design calculation "
                 "again\n";
  }
  std::cout << read.row.name << ", air system " << read.row.index;
  if (zone > 0) std::cout << ", zone " << zone << " " << read.zone_name(zone);
  std::cout << "; " << read.file << '\n';
}

}  // namespace

int results_show(const Call& call) {
  if (!call.svg.empty() && call.words.size() > 1) throw UsageError("--svg shows an air system; leave the zone out.");
  const ReadResults read(call);
  const int zone = call.words.size() > 1 ? zone_of(call, read) : 0;
  if (call.json) {
    print_as_json(read, zone);
  } else {
    print_heading(read, zone);
    if (zone > 0)
      show_zone(*read.design, zone);
    else
      show_system(*read.design);
  }
  if (!call.svg.empty())
    save_picture(call, result_picture(*read.design, read.row.name + ", air system " + std::to_string(read.row.index)));
  return kClean;
}

}  // namespace tarn::cli
