#include "cli/entities.h"

#include <algorithm>
#include <iostream>

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

int tell(const Call& call, const Opened& on, const std::vector<Done>& all) {
  Json list = Json::array();
  for (const Done& done : all) {
    print_notes("set", done.edited.converted);
    print_notes("computed", done.edited.computed);
    list.push_back(done.json);
    if (!call.json) std::cout << done.text << '\n';
  }
  for (const std::string& result : stale_now(*on.database)) {
    if (!on.stale.contains(result)) std::cerr << "stale now: " << result << '\n';
  }
  if (call.json) print_json(call.all ? list : list.front());
  return kClean;
}

Opened::Opened(const Call& call, Use use)
    : kind(*std::ranges::find(entity_kinds(), call.group, &EntityKind::group)),
      database(open_project(project, call, use)),
      entity(make_entity(project, kind)) {
  if (use == Use::Writing) stale = stale_now(*database);
}

Indexed Opened::rows() const {
  return {std::string(entity->kind().index_table), std::string(kind.one), std::string(kind.group)};
}

Loaded::Loaded(const Call& call, Use use, size_t place) : Opened(call, use) {
  entity->Load(index_of(call, *database, rows(), place));
}

int for_each_chosen(const Call& call, const Opened& on, const std::function<Done(StoredEntity&)>& action) {
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
                  std::string(on.kind.one) + " " + std::to_string(index) + ": " + error.description() +
                      " None of the " + std::to_string(indexes.size()) + " was changed.");
    }
  }
  transaction.commit();
  return tell(call, on, done);
}

}  // namespace tarn::cli
