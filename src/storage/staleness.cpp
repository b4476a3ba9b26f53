#include "storage/staleness.h"

#include <algorithm>

#include "platform/host.h"
#include "storage/schema.h"
#include "tarn/platform/database.h"
#include "tarn/platform/statement.h"

namespace tarn {
namespace {

// The systems that rest on the entity are found once, as the ways to plants and buildings lead through them. Their
// table is made with the first change, and again when a rollback took it back.
class FoundSystems final : public DatabaseMemory {
 public:
  explicit FoundSystems(Database& database) : database_(database) {}
  void make() {
    if (!made_) database_.Execute(kScratchList);
    made_ = true;
  }
  void rows_unknown() override { made_ = false; }

 private:
  Database& database_;
  bool made_ = false;
};

const std::string kForgetSystems = "DELETE FROM temp.Found";

std::string step_query(const LinkStep& step, const std::string& condition) {
  const std::string library = step.library == 0 ? "" : "Library_ID = " + std::to_string(step.library) + " AND ";
  return "SELECT " + std::string(step.gives) + " FROM " + std::string(step.table) + " WHERE " + library +
         std::string(step.by) + condition;
}

std::string route_query(const Route& route) {
  std::string query;
  for (const LinkStep& step : route.steps) query = step_query(step, query.empty() ? " = ?1" : " IN (" + query + ")");
  return query;
}

/// The ids of one stage: those that the entity's own routes give, and those reached from the stages before.
std::string stage_query(std::initializer_list<Route> routes, Stage stage,
                        std::initializer_list<std::pair<LinkStep, std::string>> before) {
  std::string query;
  const auto add = [&query](const std::string& part) { query += (query.empty() ? "" : " UNION ") + part; };
  for (const Route& route : routes) {
    if (route.stage == stage) add(route_query(route));
  }
  for (const auto& [step, from] : before) {
    if (!from.empty()) add(step_query(step, " IN (" + from + ")"));
  }
  return query;
}

}  // namespace

Reach::Reach(Results results, std::initializer_list<Route> routes) {
  for (const Route& route : routes) uses_.push_back(route.steps.front());
  const std::string spaces = stage_query(routes, Stage::Spaces, {});
  const std::string found_systems =
      stage_query(routes, Stage::Systems, {{{"System_Space_Links", "Space_ID", "System_ID"}, spaces}});
  if (!found_systems.empty()) collect_systems_ = "INSERT OR IGNORE INTO temp.Found " + found_systems;
  const std::string systems = found_systems.empty() ? "" : "SELECT nIndex FROM temp.Found";
  const std::string plants =
      stage_query(routes, Stage::Plants, {{{"Plant_System_Links", "System_ID", "Plant_ID"}, systems}});
  const std::string buildings = stage_query(routes, Stage::Buildings,
                                            {{{"Building_Plant_Links", "Plant_ID", "Building_ID"}, plants},
                                             {{"Building_System_Links", "System_ID", "Building_ID"}, systems}});
  only_through_systems_ =
      std::none_of(routes.begin(), routes.end(), [](const Route& route) { return route.stage > Stage::Systems; });
  const auto add = [this](std::string_view table, std::string_view flag, const std::string& ids) {
    if (!ids.empty()) updates_.emplace_back(table, flag, "nIndex IN (" + ids + ")");
  };
  for (const auto& [table, ids] : {std::pair("AirSystemIndex", systems), std::pair("PlantIndex", plants)}) {
    add(table, "bSimHasChanged", ids);
    if (results == Results::DesignAndSimulation) add(table, "bDesHasChanged", ids);
  }
  add("BuildingIndex", "bHasChanged", buildings);
}

std::vector<std::string> Reach::statements() const {
  std::vector<std::string> all{kForgetSystems, collect_systems_};
  for (const FlagUpdate& update : updates_) all.push_back(update.statement);
  return all;
}

Reach Reach::through_spaces(std::string_view link_table, std::string_view id_column) {
  return {Results::DesignAndSimulation, {{Stage::Spaces, {{link_table, id_column, "Space_ID"}}}}};
}

void Reach::mark(Database& database, const Edit& edit) const {
  const Cell entity[]{cell(edit.index)};
  if (!collect_systems_.empty()) {
    database.memory<FoundSystems>().make();
    database.Execute(kForgetSystems);
    if (database.Execute(collect_systems_, entity) == 0 && only_through_systems_) return;
  }
  for (const FlagUpdate& update : updates_) {
    const bool from_entity = update.statement.find("?1") != std::string::npos;
    update.run(database, from_entity ? std::span<const Cell>(entity) : std::span<const Cell>(), edit);
  }
}

// ---- since when

FlagUpdate::FlagUpdate(std::string_view of_table, std::string_view of_flag, const std::string& condition)
    : table(of_table),
      flag(of_flag),
      statement("UPDATE " + std::string(table) + " SET " + std::string(flag) + " = -1 WHERE " +
                (condition.empty() ? "" : condition + " AND ") + std::string(flag) + " IS NOT -1 RETURNING nIndex") {}

void FlagUpdate::run(Database& database, std::span<const Cell> parameters, const Edit& edit) const {
  std::vector<int64_t> indexes;
  database.join();
  {
    Statement update(database, statement, parameters);
    while (update.step()) indexes.push_back(update.integer(0));
  }
  if (!indexes.empty()) note_stale_since(database, table, flag, indexes, edit);
}

void note_stale_since(Database& database, std::string_view table, std::string_view flag,
                      std::span<const int64_t> indexes, const Edit& edit) {
  if (!has_table(database, "StaleSince")) {
    for (const std::string_view statement : kStaleSince) database.Execute(std::string(statement));
  }
  const std::string statement = "INSERT OR REPLACE INTO StaleSince VALUES (?, ?, ?, ?, ?, ?, ?)";
  const std::string now = host().now();
  for (const int64_t index : indexes) {
    const Cell row[]{std::string(table),      index, std::string(flag), std::string(edit.kind), cell(edit.index),
                     trimmed_text(edit.name), now};
    database.Execute(statement, row);
  }
}

void forget_stale_since(Database& database, std::string_view table, int index, std::string_view flag) {
  if (!has_table(database, "StaleSince")) return;
  const Cell of[]{std::string(table), cell(index), std::string(flag)};
  database.Execute("DELETE FROM StaleSince WHERE szTable = ?1 AND nIndex = ?2 AND (?3 = '' OR szFlag = ?3)", of);
}

}  // namespace tarn
