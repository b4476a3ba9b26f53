// Which results are stale, since which edit, and how it reaches them.
#include <nlohmann/json.hpp>

#include "platform/host.h"
#include "project/link_graph.h"
#include "storage/kind.h"
#include "storage/schema.h"
#include "tarn/platform/workspace.h"

namespace tarn {
namespace {

/// A changed flag of an index table: which results it says are stale, and the column that says whether there are any.
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
    const auto kind = place_of(edited.kind);
    if (!kind) return {edited, stale};  // the weather
    const Node from{*kind, edited.index}, to{*place_of(stale.kind), stale.index};
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

/// Of all rows of the flag's table, or of one.
void add_marks(Database& database, const Flag& flag, std::optional<int16_t> index, std::vector<StaleResult>& all) {
  const std::string table(flag.table), column(flag.column);
  const std::string since = has_table(database, "StaleSince")
                                ? "szKind, nEdited, StaleSince.szName AS szEdited, szTime FROM " + table +
                                      " t LEFT JOIN StaleSince ON szTable = '" + table + "' AND szFlag = '" + column +
                                      "' AND StaleSince.nIndex = t.nIndex"
                                : "NULL AS szKind, 0 AS nEdited, '' AS szEdited, '' AS szTime FROM " + table + " t";
  auto rows = database.OpenRecordset("SELECT t.nIndex AS nOf, t.szName AS szOf, " + std::string(flag.calculated) +
                                         " AS bThere, " + since + " WHERE " + column +
                                         " <> 0 AND t.nIndex = ifnull(?, t.nIndex) ORDER BY t.nIndex",
                                     {index ? cell(*index) : Cell()});
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
  }
}

}  // namespace

std::vector<StaleResult> stale_marks(Database& index) {
  std::vector<StaleResult> all;
  for (const Flag& flag : kFlags) add_marks(index, flag, {}, all);
  return all;
}

std::vector<StaleResult> stale_marks(const StoredEntity& entity) {
  std::vector<StaleResult> all;
  for (const Flag& flag : kFlags) {
    if (flag.table == entity.kind().index_table && entity.GetDBHandle())
      add_marks(*entity.GetDBHandle(), flag, entity.Index(), all);
  }
  return all;
}

std::vector<CurrentResult> current_results(Database& index) {
  std::vector<CurrentResult> all;
  for (const Flag& flag : kFlags) {
    auto rows = index.OpenRecordset("SELECT nIndex, szName FROM " + std::string(flag.table) + " WHERE " +
                                    std::string(flag.calculated) + " <> 0 AND " + std::string(flag.column) +
                                    " = 0 ORDER BY nIndex");
    for (; !rows.AtEof(); rows.MoveNext()) {
      const auto number = static_cast<int32_t>(rows.Fields("nIndex").integer());
      all.push_back({{std::string(flag.kind), number, rows.Fields("szName").text()}, std::string(flag.results)});
    }
  }
  return all;
}

std::vector<StaleResult> stale_results(COM_ProjectData& project) {
  Transaction reading(Transaction::Purpose::Reading);
  return stale_results(project, LinkGraph(project));
}

std::vector<StaleResult> stale_results(COM_ProjectData& project, const LinkGraph& links) {
  Ways ways(links);
  auto all = stale_marks(*host().database(project.IndexDBName()));
  for (StaleResult& result : all) {
    if (result.edited) result.way = ways.between(*result.edited, result.of);
  }
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
