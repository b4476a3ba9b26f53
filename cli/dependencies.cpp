// uses, used-by, project stale and graph: what rests on what.
#include "cli/dependencies.h"

#include <iostream>

#include "cli/entities.h"
#include "storage/kind.h"
#include "tarn/pictures.h"
#include "tarn/staleness.h"

namespace tarn::cli {
namespace {

using Answer = std::vector<UseOfEntity> (*)(COM_ProjectData&, const std::string&, int16_t);

int print_uses(const Call& call, Answer answer, const std::string& none) {
  Loaded on(call, Use::Reading);
  const auto found = answer(on.project, std::string(on.entity->kind().default_word), on.entity->Index());
  if (call.json) {
    std::cout << uses_json(found) << '\n';
    return kClean;
  }
  std::vector<std::vector<Json>> rows;
  for (const UseOfEntity& use : found) rows.push_back({use.entity.kind, use.entity.index, use.entity.name, use.slot});
  if (rows.empty())
    std::cout << none << '\n';
  else
    print_table({"kind", "index", "name", "by"}, rows);
  return kClean;
}

/// "Wall 3 "Brick" > Space 1 "Office" > System 2 "VAV"".
std::string way_text(const std::vector<EntityName>& way) {
  std::string text;
  for (const EntityName& step : way) text += (text.empty() ? "" : " > ") + step.text();
  return text;
}

std::string reason_text(const StaleResult& result) {
  if (!result.edited) return "not known";
  return result.since + " " +
         (result.way.empty() ? result.edited->text() + ", not used by it now" : way_text(result.way));
}

}  // namespace

int kind_uses(const Call& call) { return print_uses(call, uses, "it uses nothing"); }

namespace {

int print_all_users(const Call& call) {
  Loaded on(call, Use::Reading);
  const auto users = all_users(on.project, {on.rows().kind, on.entity->Index(), {}});
  Json all = Json::array();
  std::vector<std::vector<Json>> rows;
  for (const User& user : users) {
    const EntityName& entity = user.entity;
    rows.push_back({entity.kind, entity.index, entity.name, way_text(user.way)});
    Json way = Json::array();
    for (const EntityName& step : user.way)
      way.push_back({{"kind", step.kind}, {"index", step.index}, {"name", step.name}});
    all.push_back({{"kind", entity.kind}, {"index", entity.index}, {"name", entity.name}, {"way", way}});
  }
  if (call.json)
    print_json(all);
  else if (rows.empty())
    std::cout << "nothing uses it\n";
  else
    print_table({"kind", "index", "name", "way"}, rows);
  return kClean;
}

/// That others rest on the users, where the answer of one level leaves them out.
void tell_more_users(const Call& call) {
  Loaded on(call, Use::Reading);
  const EntityName of{on.rows().kind, on.entity->Index(), {}};
  const auto users = all_users(on.project, of);
  const auto further =
      std::ranges::count_if(users, [](const User& user) { return user.way.size() > 2; });  // through another one
  if (further > 0)
    std::cerr << further << " more " << (further == 1 ? "rests" : "rest") << " on these: tarn " << call.group
              << " used-by " << of.index << " --all\n";
}

}  // namespace

int kind_used_by(const Call& call) {
  if (call.all) return print_all_users(call);
  const int code = print_uses(call, used_by, "nothing uses it");
  if (!call.json) tell_more_users(call);
  return code;
}

int project_stale(const Call& call) {
  COM_ProjectData project;
  const auto database = open_project(project, call, Use::Reading);
  const auto stale = stale_results(project);
  if (call.json) {
    std::cout << stale_json(stale) << '\n';
    return kClean;
  }
  std::vector<std::vector<Json>> rows;
  for (const StaleResult& result : stale) {
    rows.push_back({result.of.kind, result.of.index, result.of.name,
                    result.results + (result.calculated ? "" : ", never calculated"), reason_text(result)});
  }
  if (rows.empty())
    std::cout << "no result is stale\n";
  else
    print_table({"kind", "index", "name", "stale", "since the edit (UTC), and its way"}, rows);
  return kClean;
}

namespace {

/// "Space 1, Schedule 2".
std::string used_text(const ProjectGraph& graph, const ProjectGraph::Entity& entity) {
  std::string text;
  for (const size_t used : entity.uses) {
    const EntityName& name = graph.entities[used].name;
    text += (text.empty() ? "" : ", ") + name.kind + " " + std::to_string(name.index);
  }
  return text;
}

/// "design stale, simulation up to date".
std::string results_text(const ProjectGraph& graph, const EntityName& of) {
  std::string text;
  const auto add = [&](const std::string& results, const char* state) {
    text += (text.empty() ? "" : ", ") + results + state;
  };
  for (const CurrentResult& each : graph.current) {
    if (each.of == of) add(each.results, " up to date");
  }
  for (const StaleResult& each : graph.stale) {
    if (each.of == of) add(each.results, each.calculated ? " stale" : " never calculated");
  }
  return text;
}

}  // namespace

int project_graph(const Call& call) {
  COM_ProjectData project;
  const auto database = open_project(project, call, Use::Reading);
  const ProjectGraph graph = tarn::project_graph(project);
  if (call.svg == "-") {
    if (call.json) throw UsageError("--json and --svg - both write to standard output; give the picture a file.");
    std::cout << graph_picture(graph);
    return kClean;
  }
  if (call.json) {
    std::cout << graph_json(graph) << '\n';
  } else {
    std::vector<std::vector<Json>> rows;
    for (const ProjectGraph::Entity& each : graph.entities) {
      rows.push_back(
          {each.name.kind, each.name.index, each.name.name, used_text(graph, each), results_text(graph, each.name)});
    }
    if (rows.empty())
      std::cout << "the project has no entities yet\n";
    else
      print_table({"kind", "index", "name", "uses", "results"}, rows);
  }
  if (!call.svg.empty()) save_picture(call, graph_picture(graph));
  return kClean;
}

std::vector<User> all_users(COM_ProjectData& project, const EntityName& of) {
  const ProjectGraph graph = tarn::project_graph(project);
  std::vector<std::vector<EntityName>> ways(graph.entities.size());
  std::vector<User> users;
  for (size_t i = 0; i < graph.entities.size(); ++i) {  // what it uses comes before it
    const EntityName& name = graph.entities[i].name;
    if (name.kind == of.kind && name.index == of.index) {
      ways[i] = {name};
      continue;
    }
    for (const size_t used : graph.entities[i].uses) {
      if (!ways[used].empty() && (ways[i].empty() || ways[used].size() + 1 < ways[i].size())) {
        ways[i] = ways[used];
        ways[i].push_back(name);
      }
    }
    if (!ways[i].empty()) users.push_back({name, ways[i]});
  }
  return users;
}

std::map<std::string, EntityName> stale_now(Database& database) {
  std::map<std::string, EntityName> stale;
  for (const StaleResult& result : stale_marks(database)) {
    stale.emplace(std::string(entity_kinds()[*place_of(result.of.kind)].one) + " " + std::to_string(result.of.index) +
                      " \"" + result.of.name + "\" " + result.results,
                  result.of);
  }
  return stale;
}

void needs_force(const Call& call, COM_ProjectData& project, const StoredEntity& entity) {
  constexpr size_t kMostTold = 5;
  const EntityName name{std::string(entity.kind().default_word), entity.Index(), entity.stored_name()};
  const auto users = used_by(project, name.kind, entity.Index());
  if (users.empty() || call.force) return;
  std::string told;
  for (size_t i = 0; i < std::min(users.size(), kMostTold); ++i)
    told += (i == 0 ? "" : ", ") + users[i].entity.text() + " (" + users[i].slot + ")";
  if (users.size() > kMostTold) told += " and " + std::to_string(users.size() - kMostTold) + " more";
  throw UsageError(name.text() + " is used by " + told +
                   ". Give --force to delete it; these references then become 0.");
}

}  // namespace tarn::cli
