// All link rows of a project at once: who uses whom.
#pragma once

#include <map>
#include <utility>
#include <vector>

#include "project/kinds.h"
#include "reflect/json_text.h"
#include "tarn/staleness.h"

namespace tarn {

/// An entity by the place of its kind in `entity_kinds()` and its index.
using Node = std::pair<size_t, int32_t>;

class LinkGraph {
 public:
  explicit LinkGraph(COM_ProjectData& project);

  /// The kinds' entities, one object each, open to load.
  const std::vector<Ptr<StoredEntity>>& entities() const { return entities_; }
  /// Those that use an entity, each once, by kind and index.
  const std::vector<Node>& users_of(const Node& node) const;
  const std::map<Node, std::vector<Node>>& users() const { return users_; }
  /// The shortest ways from an entity outward: for each entity that rests on it, the one before it.
  std::map<Node, Node> ways_from(const Node& start) const;
  EntityName named(const Node& node) const;

 private:
  std::vector<Ptr<StoredEntity>> entities_;
  std::map<Node, std::vector<Node>> users_;
};

/// The place of a kind by its word, or "walls". Error `InvalidCall` names the nearest.
size_t kind_in(const std::string& word);

/// With the ways by links that are read already.
std::vector<StaleResult> stale_results(COM_ProjectData& project, const LinkGraph& links);
std::vector<CurrentResult> current_results(Database& index);

Json json_of(const EntityName& entity);

}  // namespace tarn
