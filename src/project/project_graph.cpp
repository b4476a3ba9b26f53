// Who uses whom in a whole project, with its results.
#include <nlohmann/json.hpp>

#include "platform/host.h"
#include "project/link_graph.h"
#include "storage/kind.h"
#include "tarn/platform/workspace.h"

namespace tarn {

ProjectGraph project_graph(COM_ProjectData& project) {
  Transaction reading(Transaction::Purpose::Reading);
  const auto database = host().database(project.IndexDBName());
  const LinkGraph links(project);
  ProjectGraph graph;
  std::map<Node, size_t> places;
  for (size_t kind = 0; kind < entity_kinds().size(); ++kind) {
    auto rows = database->OpenRecordset("SELECT nIndex, szName FROM " +
                                        std::string(links.entities()[kind]->kind().index_table) + " ORDER BY nIndex");
    for (; !rows.AtEof(); rows.MoveNext()) {
      const auto index = static_cast<int32_t>(rows.Fields("nIndex").integer());
      places[{kind, index}] = graph.entities.size();
      graph.entities.push_back({{std::string(word_of(kind)), index, rows.Fields("szName").text()}, {}});
    }
  }
  for (const auto& [used, users] : links.users()) {
    const auto place = places.find(used);
    if (place == places.end()) continue;
    for (const Node& user : users) {
      if (const auto found = places.find(user); found != places.end())
        graph.entities[found->second].uses.push_back(place->second);
    }
  }
  graph.stale = stale_results(project, links);
  graph.current = current_results(*database);
  return graph;
}

std::string graph_json(const ProjectGraph& graph) {
  Json entities = Json::array(), current = Json::array();
  for (const auto& [name, uses] : graph.entities) {
    Json& entity = entities.emplace_back(json_of(name));
    entity["uses"] = Json::array();
    for (const size_t used : uses) entity["uses"].push_back(json_of(graph.entities[used].name));
  }
  for (const auto& [of, results] : graph.current) current.emplace_back(json_of(of))["results"] = results;
  return json_text({{"entities", entities}, {"stale", Json::parse(stale_json(graph.stale))}, {"current", current}}, 2);
}

}  // namespace tarn
