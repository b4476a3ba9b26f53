#include "project/link_graph.h"

#include <algorithm>
#include <deque>

#include "platform/host.h"
#include "storage/kind.h"
#include "storage/links.h"
#include "tarn/platform/statement.h"

namespace tarn {

LinkGraph::LinkGraph(COM_ProjectData& project) {
  const auto opened = host().database(project.IndexDBName());  // the error says why it cannot be opened
  for (const EntityKind& row : entity_kinds()) {
    entities_.push_back(make_entity(project, row));
    entities_.back()->SetDBHandle(opened);
  }
  for (size_t owner = 0; owner < entities_.size(); ++owner) {
    const std::string_view word = entities_[owner]->kind().link_owner;
    if (word.empty()) continue;
    for (const std::string_view used : kinds_referred_to(entities_[owner]->info(), [](auto) { return true; })) {
      const LinkColumn column = link_tables_of(word, used).front();
      const auto kind = place_of(used);
      if (!kind) continue;
      opened->join(Database::Part::Reading);
      const std::string library = column.library == 0 ? "" : " WHERE Library_ID = " + std::to_string(column.library);
      Statement rows(*opened, "SELECT DISTINCT " + column.column + ", " + std::string(word) + "_ID FROM " +
                                  column.table + library + " ORDER BY 1, 2");
      while (rows.step()) {
        users_[{*kind, static_cast<int32_t>(rows.integer(0))}].emplace_back(owner,
                                                                            static_cast<int32_t>(rows.integer(1)));
      }
    }
  }
  for (auto& [node, users] : users_) std::ranges::sort(users);
}

const std::vector<Node>& LinkGraph::users_of(const Node& node) const {
  static const std::vector<Node> kNobody;
  const auto found = users_.find(node);
  return found == users_.end() ? kNobody : found->second;
}

std::map<Node, Node> LinkGraph::ways_from(const Node& start) const {
  std::map<Node, Node> before{{start, start}};
  for (std::deque<Node> next{start}; !next.empty(); next.pop_front()) {
    for (const Node& user : users_of(next.front())) {
      if (before.emplace(user, next.front()).second) next.push_back(user);
    }
  }
  return before;
}

EntityName LinkGraph::named(const Node& node) const {
  const StoredEntity& entity = *entities_[node.first];
  const std::string table(entity.kind().index_table);
  auto row =
      entity.GetDBHandle()->OpenRecordset("SELECT szName FROM " + table + " WHERE nIndex = ?", {cell(node.second)});
  return {std::string(word_of(node.first)), node.second, row.AtEof() ? std::string() : row.Fields("szName").text()};
}

}  // namespace tarn
