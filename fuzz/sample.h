// A project with a valid air system in several shapes, and what an object holds.
#pragma once

#include <sqlite3.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <vector>

#include "platform/host.h"
#include "project/kinds.h"
#include "project/new_index.h"
#include "storage/kind.h"
#include "tarn/air_system.h"
#include "tarn/construction.h"
#include "tarn/platform/database.h"
#include "tarn/project.h"
#include "tarn/reflect/members.h"

namespace tarn::fuzz {

inline std::string bytes_of(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

/// All that an object holds, by the names of its fields.
using State = std::map<std::string, std::string>;
inline State state_of(AS_AirSystem& system) {
  State state{{"Index", std::to_string(system.Index)}, {"mask", std::to_string(system.m_lCurMask)}};
  state["DesHasChanged"] = std::to_string(system.DesHasChanged);
  state["SimHasChanged"] = std::to_string(system.SimHasChanged);
  for_each_field(system, [&](Object& owner, const Member& field, const std::string& prefix) {
    if (!field.in_place()) return;
    state[prefix + std::string(field.name)].assign(reinterpret_cast<const char*>(field.place(owner)),
                                                   field.field()->size);
  });
  for (int32_t i = 1; i <= system.GetHourlySimData()->Count(); ++i) {
    const auto hours = system.GetHourlySimData()->Item(i)->bytes();
    state["hours " + std::to_string(i)].assign(reinterpret_cast<const char*>(hours.data()), hours.size());
  }
  return state;
}

inline std::string difference(const State& before, const State& after) {
  for (const auto& [name, value] : before) {
    const auto found = after.find(name);
    if (found == after.end()) return name + " is gone";
    if (found->second != value) return name + " has changed";
  }
  for (const auto& [name, value] : after) {
    if (!before.contains(name)) return name + " is new";
  }
  return {};
}

/// A project with one system, a wall, a space and a schedule.
class Sample {
 public:
  explicit Sample(std::string folder) : folder_(std::move(folder)) {
    std::filesystem::create_directories(folder_);
    project.SetWorkPath(folder_);
    project.FilePrefix = "JOB";
    create_index(project.IndexDBName());
    sqlite3_auto_extension(reinterpret_cast<void (*)()>(&without_waiting));
    database = host().database(project.IndexDBName());
  }

  void fill() {
    for (const EntityKind& kind : entity_kinds()) {
      if (kind.one != "schedule" && kind.one != "wall" && kind.one != "space") continue;
      const auto entity = make_entity(project, kind);
      entity->CreateDefault();
      if (auto* wall = dynamic_cast<CA_ConstructionAssly*>(entity.get())) {
        CA_Layer& brick = wall->layer(1);
        brick.LayerUsed = true;
        brick.SetThicknessInches(4);
        brick.Conductivity = 0.5F;
        brick.Density = 120;
        brick.SpecificHeat = 0.2F;
      }
      entity->Save();
    }
    for (int i = 2; i <= 6; ++i) {
      const Cell number[]{cell(i)};
      database->Execute("INSERT INTO SpaceIndex (nIndex, szName) VALUES (?1, 'Space ' || ?1)", number);
    }
    for (const int zones : {0, 1, 3}) {
      for (const int32_t mask : {CCM_HEADERMASK, CCM_INPUTMASK, CCM_SIZINGMASK, CCM_MASKALL}) make(zones, mask);
    }
    reset_rows();
  }

  static void save(AS_AirSystem& system, bool after_calculations) {
    std::optional<bool> after = after_calculations;
    system.Save(after);
  }
  std::string file() const { return folder_ + "/JOBA01.DAT"; }
  void put(const std::string& bytes) const { std::ofstream(file(), std::ios::binary) << bytes; }
  const std::vector<std::string>& files() const { return files_; }

  /// The rows of system 1 as they were at first.
  void reset_rows() {
    database->Execute("UPDATE AirSystemIndex SET szName = 'System', bDesHasChanged = 0, bSimHasChanged = 0");
    database->Execute("DELETE FROM System_Space_Links");
    for (int space = 1; space <= 6; ++space) {
      const Cell number[]{cell(space)};
      database->Execute("INSERT INTO System_Space_Links VALUES (1, ?)", number);
    }
  }
  /// The number of rows of every table.
  std::string counts() {
    if (tables_.empty()) {
      auto all = database->OpenRecordset("SELECT name FROM sqlite_master WHERE type = 'table'");
      for (; !all.AtEof(); all.MoveNext()) tables_.push_back(all.Fields("name").text());
    }
    std::string text;
    for (const std::string& table : tables_) {
      auto rows = database->OpenRecordset("SELECT COUNT(*) AS n FROM " + table);
      text += table + " " + std::to_string(rows.Fields("n").integer()) + "; ";
    }
    return text;
  }
  std::string listing() const {
    std::map<std::string, uintmax_t> sizes;
    for (const auto& entry : std::filesystem::directory_iterator(folder_))
      sizes[entry.path().filename()] = entry.path().extension() == ".DAT" ? entry.file_size() : 0;
    std::string text;
    for (const auto& [name, size] : sizes) text += name + " " + std::to_string(size) + "; ";
    return text;
  }

  COM_ProjectData project;
  Ptr<Database> database;

  /// A sample need not outlive a power failure.
  static int without_waiting(sqlite3* opened, char**, const void*) {
    return sqlite3_exec(opened, "PRAGMA synchronous = OFF", nullptr, nullptr, nullptr);
  }

 private:
  /// A file with the sections of a mask, and those before them.
  void make(int zones, int32_t mask) {
    const auto system = project.NewAirSystem();
    system->SetToDefaultsByType(static_cast<int16_t>(1 + zones));
    const auto header = system->GetAirSystem();
    header->Name = "System";
    header->SetNumZones(static_cast<int16_t>(zones));
    for (int16_t zone = 1; zone <= zones; ++zone) {
      const auto data = system->GetZoneData(zone);
      data->TotalSpacesInZone = 2;
      for (int place = 1; place <= 2; ++place) {
        data->SpaceID(place) = static_cast<int16_t>(2 * zone + place - 2);
        data->SpaceMultiplier(place) = 1;
      }
    }
    system->GetZoneSchedule()->TstatSchedule = 1;
    if (zones == 1) header->SetFlags();
    system->Index = files_.empty() ? 0 : 1;
    const bool all = mask == CCM_MASKALL, sizing = mask == CCM_SIZINGMASK;
    if (!all) system->SetMask(CCM_HEADERMASK | (mask & ~CCM_HEADERMASK) | (sizing ? CCM_INPUTMASK : 0), CCM_MASKALL);
    std::filesystem::remove(file());
    save(*system, all || sizing);
    files_.push_back(bytes_of(file()));
  }

  std::string folder_;
  std::vector<std::string> files_, tables_;
};

}  // namespace tarn::fuzz
