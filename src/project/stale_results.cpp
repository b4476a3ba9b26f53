// Which results are stale, since which edit, and how it reaches them.
#include <nlohmann/json.hpp>

#include "platform/host.h"
#include "project/link_graph.h"
#include "storage/schema.h"
#include "tarn/platform/workspace.h"

namespace tarn {
namespace {

struct Flag {
  std::string_view kind, table, column, results, calculated;
};
constexpr Flag kFlags[]{{"System", "AirSystemIndex", "bDesHasChanged", "design", "bSized"},
                        {"System", "AirSystemIndex", "bSimHasChanged", "simulation", "bSimulated"},
                        {"Plant", "PlantIndex", "bDesHasChanged", "design", "bSized"},
                        {"Plant", "PlantIndex", "bSimHasChanged", "simulation", "bSimulated"},
                        {"Building", "BuildingIndex", "bHasChanged", "simulation", "bSimulated"}};

/// The ways from each edited entity are found once.
class Ways {
 public:
  explicit Ways(const LinkGraph& graph) : graph_(graph) {}
  std::vector<EntityName> between(const EntityName& edited, const EntityName& stale) {
    const auto kind = graph_.kind_of(edited.kind);
    if (!kind) return {edited, stale};  // the weather
    const Node from{*kind, edited.index}, to{*graph_.kind_of(stale.kind), stale.index};
    const auto [known, added] = known_.try_emplace(from);
    if (added) known->second = graph_.ways_from(from);
    const auto& before = known->second;
    std::vector<EntityName> way;
    for (auto at = before.find(to); at != before.end(); at = before.find(at->second)) {
      way.insert(way.begin(), graph_.named(at->first));
      if (at->first == from) break;
    }
    return way;
  }

 private:
  const LinkGraph& graph_;
  std::map<Node, std::map<Node, Node>> known_;
};

void add_stale(COM_ProjectData& project, const Flag& flag, Ways& ways, std::vector<StaleResult>& all) {
  const Ptr<Database> database = host().database(project.IndexDBName());
  const std::string since =
      has_table(*database, "StaleSince")
          ? "szKind, nEdited, StaleSince.szName AS szEdited, szTime FROM " + std::string(flag.table) +
                " t LEFT JOIN StaleSince ON szTable = '" + std::string(flag.table) + "' AND szFlag = '" +
                std::string(flag.column) + "' AND StaleSince.nIndex = t.nIndex"
          : "NULL AS szKind, 0 AS nEdited, '' AS szEdited, '' AS szTime FROM " + std::string(flag.table) + " t";
  auto rows = database->OpenRecordset("SELECT t.nIndex AS nOf, t.szName AS szOf, " + std::string(flag.calculated) +
                                      " AS bThere, " + since + " WHERE " + std::string(flag.column) +
                                      " <> 0 ORDER BY t.nIndex");
  for (; !rows.AtEof(); rows.MoveNext()) {
    StaleResult& result = all.emplace_back();
    result.of = {std::string(flag.kind), static_cast<int32_t>(rows.Fields("nOf").integer()),
                 rows.Fields("szOf").text()};
    result.results = flag.results;
    result.calculated = rows.Fields("bThere").integer() != 0;
    const std::string kind = rows.Fields("szKind").text();
    if (kind.empty()) continue;
    result.edited = {kind, static_cast<int32_t>(rows.Fields("nEdited").integer()), rows.Fields("szEdited").text()};
    result.since = rows.Fields("szTime").text();
    result.way = ways.between(*result.edited, result.of);
  }
}

}  // namespace

std::vector<StaleResult> stale_results(COM_ProjectData& project) {
  Transaction reading(Transaction::Purpose::Reading);
  const LinkGraph graph(project);
  Ways ways(graph);
  std::vector<StaleResult> all;
  for (const Flag& flag : kFlags) add_stale(project, flag, ways, all);
  return all;
}

std::string stale_json(const std::vector<StaleResult>& results) {
  Json all = Json::array();
  for (const StaleResult& result : results) {
    Json json = json_of(result.of);
    json["results"] = result.results;
    json["calculated"] = result.calculated;
    json["edited"] = result.edited ? json_of(*result.edited) : Json();
    json["since"] = result.since;
    json["way"] = Json::array();
    for (const EntityName& step : result.way) json["way"].push_back(json_of(step));
    all.push_back(std::move(json));
  }
  return json_text(all, 2);
}

}  // namespace tarn
