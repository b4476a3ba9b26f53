// What an entity rests on, and who uses it, field by field.
#include <nlohmann/json.hpp>

#include "base/nearest.h"
#include "project/link_graph.h"
#include "reflect/json_text.h"
#include "storage/kind.h"
#include "storage/links.h"
#include "tarn/platform/workspace.h"

namespace tarn {
namespace {

StoredEntity& loaded(const LinkGraph& graph, const Node& node) {
  StoredEntity& entity = *graph.entities()[node.first];
  Database& database = *entity.GetDBHandle();
  const std::string table(entity.kind().index_table);
  if (database.OpenRecordset("SELECT nIndex FROM " + table + " WHERE nIndex = ?", {cell(node.second)}).AtEof()) {
    fail(ErrorNumber::NoCurrentRecord,
         "There is no " + std::string(word_of(node.first)) + " " + std::to_string(node.second) + ".");
  }
  entity.Load(static_cast<int16_t>(node.second));
  return entity;
}

}  // namespace

size_t kind_in(const std::string& word) {
  if (const auto kind = place_of(word)) return *kind;
  std::vector<std::string_view> words;
  for (size_t kind = 0; kind < entity_kinds().size(); ++kind) words.push_back(word_of(kind));
  fail(ErrorNumber::InvalidCall, "There is no kind " + word + "; " + did_you_mean(word, words));
}

std::string EntityName::text() const {
  return kind + (index == 0 ? "" : " " + std::to_string(index)) + (name.empty() ? "" : " \"" + name + "\"");
}

Json json_of(const EntityName& entity) {
  return {{"kind", entity.kind}, {"index", entity.index}, {"name", entity.name}};
}

std::vector<UseOfEntity> uses(COM_ProjectData& project, const std::string& kind, int16_t index) {
  Transaction reading(Transaction::Purpose::Reading);
  const LinkGraph graph(project);
  std::vector<UseOfEntity> all;
  for_each_reference(loaded(graph, {kind_in(kind), index}), [&](const Use& use, const ReferenceName& slot) {
    if (const auto used = place_of(use.kind)) all.push_back({graph.named({*used, use.index}), slot()});
    return use.index;
  });
  return all;
}

std::vector<UseOfEntity> used_by(COM_ProjectData& project, const std::string& kind, int16_t index) {
  Transaction reading(Transaction::Purpose::Reading);
  const LinkGraph graph(project);
  const Node node{kind_in(kind), index};
  loaded(graph, node);
  std::vector<UseOfEntity> all;
  for (const Node& user : graph.users_of(node)) {
    for_each_reference(loaded(graph, user), [&](const Use& use, const ReferenceName& slot) {
      if (use.index == index && place_of(use.kind) == node.first) all.push_back({graph.named(user), slot()});
      return use.index;
    });
  }
  return all;
}

std::string uses_json(const std::vector<UseOfEntity>& uses) {
  Json all = Json::array();
  for (const UseOfEntity& use : uses) {
    Json json = json_of(use.entity);
    json["slot"] = use.slot;
    all.push_back(std::move(json));
  }
  return json_text(all, 2);
}

}  // namespace tarn
