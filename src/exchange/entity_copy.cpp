#include "tarn/entity_copy.h"

#include <map>
#include <nlohmann/json.hpp>
#include <set>

#include "exchange/comparison.h"
#include "platform/host.h"
#include "project/link_graph.h"
#include "reflect/json.h"
#include "storage/kind.h"
#include "storage/links.h"
#include "tarn/platform/workspace.h"

namespace tarn {
namespace {

struct Loaded {
  Node node;
  Ptr<StoredEntity> entity;

  EntityName name() const { return {std::string(word_of(node.first)), node.second, entity->stored_name()}; }
};

bool has_row(const StoredEntity& entity, int32_t index) {
  return !entity.GetDBHandle()
              ->OpenRecordset("SELECT nIndex FROM " + std::string(entity.kind().index_table) + " WHERE nIndex = ?",
                              {cell(index)})
              .AtEof();
}

/// An entity and all that it uses, as they are stored.
class Closure {
 public:
  Closure(COM_ProjectData& project, const Node& root) : project_(project) { add(root, {}); }
  /// What is used before what uses it.
  const std::vector<Loaded>& all() const { return all_; }

 private:
  void add(const Node& node, const std::string& user) {
    if (!seen_.insert(node).second) return;
    const Loaded loaded{node, make_entity(project_, entity_kinds()[node.first])};
    if (!has_row(*loaded.entity, node.second)) {
      const std::string missing =
          "The other project has no " + std::string(word_of(node.first)) + " " + std::to_string(node.second);
      fail(ErrorNumber::NoCurrentRecord,
           missing + (user.empty() ? "." : ", to which " + user + " refers. Set that to 0 there, or to another one."));
    }
    loaded.entity->Load(static_cast<int16_t>(node.second));
    for_each_reference(*loaded.entity, [&](const Use& use, const ReferenceName& slot) {
      if (const auto used = place_of(use.kind)) add({*used, use.index}, slot() + " of " + loaded.name().text());
      return use.index;
    });
    all_.push_back(loaded);
  }

  COM_ProjectData& project_;
  std::set<Node> seen_;
  std::vector<Loaded> all_;
};

/// The project that the copies go to.
class Target {
 public:
  explicit Target(COM_ProjectData& project) : project_(project) {}

  EntityCopy take(const Loaded& source) {
    const auto copy = filled(source);
    const std::string name = copy->stored_name();
    const auto there = equal_one(source.node.first, *copy);
    if (!there) {
      copy->store_name(name);
      if (!name.empty()) copy->take_valid_name();
      copy->SaveAs(0, Naming::AsItIs);
    }
    const StoredEntity& known = there ? *there : *copy;
    given_[source.node] = known.Index();
    return {
        source.name(), {std::string(word_of(source.node.first)), known.Index(), known.stored_name()}, there != nullptr};
  }

 private:
  /// The content of an entity, with the references that it has here. Results that come along are stale.
  Ptr<StoredEntity> filled(const Loaded& source) const {
    auto copy = make_entity(project_, entity_kinds()[source.node.first]);
    copy->renew();
    Json json = Json::object();
    add_stored_fields(*source.entity, json);
    set_fields_from_json(*copy, json);
    for_each_reference(*copy, [&](const Use& use, const ReferenceName&) {
      const auto used = place_of(use.kind);
      return used ? int32_t{given_.at({*used, use.index})} : use.index;
    });
    copy->set_changed();
    copy->Reset();
    return copy;
  }

  /// The one here with the same content, under the same name or one that an earlier copy was given; null for none.
  /// The entity has its name afterwards.
  Ptr<StoredEntity> equal_one(size_t kind, StoredEntity& entity) const {
    const std::string name = entity.stored_name(), copied = host().copy_name(name);
    const auto here = make_entity(project_, entity_kinds()[kind]);
    auto rows = here->GetDBHandle()->OpenRecordset(
        "SELECT nIndex, szName FROM " + std::string(here->kind().index_table) + " ORDER BY szName <> ?, nIndex",
        {name});
    for (; !rows.AtEof(); rows.MoveNext()) {
      const std::string other = rows.Fields("szName").text();
      if (other != name && other != copied && !other.starts_with(copied + " ")) continue;
      here->Load(static_cast<int16_t>(rows.Fields("nIndex").integer()));
      entity.store_name(here->stored_name());
      if (same_content(entity, *here)) return here;
    }
    return nullptr;
  }

  COM_ProjectData& project_;
  std::map<Node, int16_t> given_;
};

}  // namespace

std::vector<EntityCopy> copy_entity(COM_ProjectData& from, const std::string& kind, int16_t index,
                                    COM_ProjectData& to) {
  const size_t place = kind_in(kind);
  if (from.IndexDBName() == to.IndexDBName())
    fail(ErrorNumber::InvalidCall, "Both projects are the same; clone the entity to have another one.");
  const auto source = host().database(from.IndexDBName()), target = host().database(to.IndexDBName());
  std::optional<Closure> closure;
  {
    Transaction reading(Transaction::Purpose::Reading);
    closure.emplace(from, Node{place, index});
  }
  std::vector<EntityCopy> all;
  Target into(to);
  Transaction writing;
  for (const Loaded& each : closure->all()) {
    try {
      all.push_back(into.take(each));
    } catch (const Error& error) {
      throw Error(error.number(), error.source(),
                  each.name().text() + " of the other project: " + error.description() + " Nothing was copied.");
    }
  }
  writing.commit();
  return all;
}

std::string copies_json(const std::vector<EntityCopy>& copies) {
  Json all = Json::array();
  for (const auto& [from, to, reused] : copies)
    all.push_back(
        {{"kind", to.kind}, {"index", to.index}, {"name", to.name}, {"reused", reused}, {"from", json_of(from)}});
  return json_text(all, 2);
}

}  // namespace tarn
