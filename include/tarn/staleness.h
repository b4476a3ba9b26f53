// What depends on what in a project: what an entity rests on, who uses it, which results are stale, and since when.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tarn/project.h"

namespace tarn {

class Database;
class StoredEntity;

struct EntityName {
  std::string kind;   // "Wall", "System", "Weather"
  int32_t index = 0;  // 0 for the weather
  std::string name;

  bool operator==(const EntityName&) const = default;
  /// `Wall 3 "Brick"`.
  std::string text() const;
};

/// A reference between two entities, and the field of the user that makes it: "Wall(2).WindowType(1)".
struct UseOfEntity {
  EntityName entity;  // the other one
  std::string slot;
};

/// What an entity refers to, in the order of its fields. `kind` is the word of `EntityName`, or "walls". Errors
/// `InvalidCall` for a kind that there is not, `NoCurrentRecord` for an index without a row.
std::vector<UseOfEntity> uses(COM_ProjectData& project, const std::string& kind, int16_t index);
/// Who refers to an entity, by kind and index, through which field of theirs.
std::vector<UseOfEntity> used_by(COM_ProjectData& project, const std::string& kind, int16_t index);

/// A result that does not show the inputs as they are.
struct StaleResult {
  EntityName of;
  std::string results;               // "design" or "simulation"
  bool calculated = false;           // there are results; without, they were never calculated
  std::optional<EntityName> edited;  // whose edit made them stale; none where it is not known
  std::string since;                 // when, UTC: "2026-11-22 13:30:05"; empty where it is not known
  std::vector<EntityName> way;       // from the edited entity to this one, both included; empty where there is none now
};

/// Systems, plants and buildings, each by index, design before simulation.
std::vector<StaleResult> stale_results(COM_ProjectData& project);
/// The same without the ways, which take all links of the project to find.
std::vector<StaleResult> stale_marks(Database& index);
/// Those of one entity, as its row has them now.
std::vector<StaleResult> stale_marks(const StoredEntity& entity);

/// Results that are calculated and show the inputs as they are.
struct CurrentResult {
  EntityName of;
  std::string results;  // "design" or "simulation"
};

/// Who uses whom in a whole project, and what became of its results.
struct ProjectGraph {
  struct Entity {
    EntityName name;
    std::vector<size_t> uses;  // places in `entities`, ascending
  };
  std::vector<Entity> entities;  // what is used before what uses it, by index
  std::vector<StaleResult> stale;
  std::vector<CurrentResult> current;
};
ProjectGraph project_graph(COM_ProjectData& project);

/// As JSON, for the faces: arrays, and of the graph an object of its three lists.
std::string uses_json(const std::vector<UseOfEntity>& uses);
std::string stale_json(const std::vector<StaleResult>& results);
std::string graph_json(const ProjectGraph& graph);

}  // namespace tarn
