#include "storage/staleness.h"

#include "platform/database.h"

namespace tarn {
namespace {

std::string step_query(const LinkStep& step, const std::string& condition) {
  return "SELECT " + std::string(step.gives) + " FROM " + std::string(step.table) + " WHERE " + std::string(step.by) +
         condition;
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
  const std::string spaces = stage_query(routes, Stage::Spaces, {});
  const std::string systems =
      stage_query(routes, Stage::Systems, {{{"System_Space_Links", "Space_ID", "System_ID"}, spaces}});
  const std::string plants =
      stage_query(routes, Stage::Plants, {{{"Plant_System_Links", "System_ID", "Plant_ID"}, systems}});
  const std::string buildings = stage_query(routes, Stage::Buildings,
                                            {{{"Building_Plant_Links", "Plant_ID", "Building_ID"}, plants},
                                             {{"Building_System_Links", "System_ID", "Building_ID"}, systems}});
  const std::string changed =
      results == Results::SimulationOnly ? "bSimHasChanged = -1" : "bSimHasChanged = -1, bDesHasChanged = -1";
  const auto add = [this](std::string_view table, const std::string& flags, const std::string& ids) {
    if (!ids.empty())
      statements_.push_back("UPDATE " + std::string(table) + " SET " + flags + " WHERE nIndex IN (" + ids + ")");
  };
  add("AirSystemIndex", changed, systems);
  add("PlantIndex", changed, plants);
  add("BuildingIndex", "bHasChanged = -1", buildings);
}

Reach Reach::through_spaces(std::string_view link_table, std::string_view id_column) {
  return {Results::DesignAndSimulation, {{Stage::Spaces, {{link_table, id_column, "Space_ID"}}}}};
}

void Reach::mark(Database& database, int index) const {
  const Cell parameters[]{cell(index)};
  for (const std::string& statement : statements_) database.Execute(statement, parameters);
}

}  // namespace tarn
