#include "cli/entities.h"

#include <algorithm>
#include <iostream>

#include "base/sentence.h"
#include "cli/dependencies.h"
#include "storage/kind.h"
#include "tarn/platform/workspace.h"

namespace tarn::cli {

Done saved(StoredEntity& entity, const EntityKind& kind, std::string_view what, Edited edited) {
  entity.Save();
  const int16_t index = entity.Index();
  return {{{"index", index}},
          std::string(kind.one) + " " + std::to_string(index) + " " + std::string(what),
          std::move(edited)};
}

std::set<std::string> shared_names(Database& database, const EntityKind& kind) {
  std::set<std::string> names;
  auto rows = database.OpenRecordset(
      "SELECT szName, group_concat(nIndex, ', ') AS Indexes FROM (SELECT szName, nIndex FROM " +
      rows_of(kind.group).table + " WHERE nIndex > 0 ORDER BY nIndex) GROUP BY szName HAVING COUNT(*) > 1");
  for (; !rows.AtEof(); rows.MoveNext())
    names.insert("the " + std::string(kind.group) + " " + rows.Fields("Indexes").text() + " have the same name, \"" +
                 rows.Fields("szName").text() + "\"; they are told apart by their numbers");
  return names;
}

void tell_shared(const std::set<std::string>& now, const std::set<std::string>& before) {
  for (const std::string& name : now) {
    if (!before.contains(name)) std::cerr << "note: " << name << '\n';
  }
}

namespace {

/// What an edit reaches and would make stale, were it not so already.
void tell_stale_before(Opened& on, const std::vector<Done>& all) {
  if (on.stale.empty()) return;
  std::vector<EntityName> reached;
  for (const Done& done : all) {
    if (done.edited.only_name) continue;
    const EntityName edited{on.rows().kind, done.json.at("index").get<int16_t>(), {}};
    reached.push_back(edited);
    for (const User& user : all_users(on.project, edited)) reached.push_back(user.entity);
  }
  const auto now = stale_now(*on.database);
  for (const auto& [result, of] : on.stale) {
    const auto same = [&](const EntityName& each) { return each.kind == of.kind && each.index == of.index; };
    if (now.contains(result) && std::ranges::any_of(reached, same)) std::cerr << "already stale: " << result << '\n';
  }
}

}  // namespace

int tell(const Call& call, Opened& on, const std::vector<Done>& all) {
  Json list = Json::array();
  for (const Done& done : all) {
    print_notes("set", done.edited.converted);
    print_notes("computed", done.edited.computed);
    print_notes("note", done.edited.notes);
    list.push_back(done.json);
    if (!call.json) std::cout << done.text << '\n';
  }
  for (const auto& [result, of] : stale_now(*on.database)) {
    if (!on.stale.contains(result)) std::cerr << "stale now: " << result << '\n';
  }
  tell_stale_before(on, all);
  tell_shared(shared_names(*on.database, on.kind), on.shared);
  if (call.json) print_json(call.all ? list : list.front());
  return kClean;
}

Opened::Opened(const Call& call, Use use)
    : kind(*std::ranges::find(entity_kinds(), call.group, &EntityKind::group)),
      database(open_project(project, call, use)),
      entity(make_entity(project, kind)) {
  if (use == Use::Reading) return;
  stale = stale_now(*database);
  shared = shared_names(*database, kind);
}

Indexed Opened::rows() const { return rows_of(entity->kind().default_word); }

Loaded::Loaded(const Call& call, Use use, size_t place) : Opened(call, use) {
  entity->Load(index_of(call, *database, rows(), place));
}

int for_each_chosen(const Call& call, Opened& on, const std::function<Done(StoredEntity&)>& action) {
  const auto indexes = chosen(call, *on.database, on.rows());
  std::vector<Done> done;
  Transaction transaction;
  for (const int16_t index : indexes) {
    on.entity->Load(index);
    try {
      done.push_back(action(*on.entity));
    } catch (const Error& error) {
      if (indexes.size() == 1) throw;
      throw Error(error.number(), error.source(),
                  std::string(on.kind.one) + " " + std::to_string(index) + ": " + sentence(error.description()) +
                      " None of the " + std::to_string(indexes.size()) + " was changed.");
    }
  }
  transaction.commit();
  return tell(call, on, done);
}

}  // namespace tarn::cli
