#include "storage/staleness.h"

#include <algorithm>

#include "tarn/platform/database.h"

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
  const std::string changed =
      results == Results::SimulationOnly ? "bSimHasChanged = -1" : "bSimHasChanged = -1, bDesHasChanged = -1";
  const auto add = [this](std::string_view table, const std::string& flags, const std::string& ids) {
    if (ids.empty()) return;
    updates_.push_back("UPDATE " + std::string(table) + " SET " + flags + " WHERE nIndex IN (" + ids + ")");
  };
  add("AirSystemIndex", changed, systems);
  add("PlantIndex", changed, plants);
  add("BuildingIndex", "bHasChanged = -1", buildings);
}

std::vector<std::string> Reach::statements() const {
  std::vector<std::string> all{kForgetSystems, collect_systems_};
  all.insert(all.end(), updates_.begin(), updates_.end());
  return all;
}

Reach Reach::through_spaces(std::string_view link_table, std::string_view id_column) {
  return {Results::DesignAndSimulation, {{Stage::Spaces, {{link_table, id_column, "Space_ID"}}}}};
}

void Reach::mark(Database& database, int index) const {
  const Cell entity[]{cell(index)};
  if (!collect_systems_.empty()) {
    database.memory<FoundSystems>().make();
    database.Execute(kForgetSystems);
    if (database.Execute(collect_systems_, entity) == 0 && only_through_systems_) return;
  }
  for (const std::string& update : updates_) {
    const bool from_entity = update.find("?1") != std::string::npos;
    database.Execute(update, from_entity ? std::span<const Cell>(entity) : std::span<const Cell>());
  }
}

}  // namespace tarn
