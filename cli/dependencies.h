// What the verbs that change entities tell of what rests on them.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "cli/command.h"
#include "tarn/staleness.h"
#include "tarn/storage/entity.h"

namespace tarn::cli {

/// The results that are stale: `air system 3 "VAV" design`.
std::map<std::string, EntityName> stale_now(Database& database);

/// Who rests on an entity, itself or through others.
struct User {
  EntityName entity;
  std::vector<EntityName> way;  // from the entity to this one, both included: a shortest one
};
/// In the order of the graph: what is used before what uses it. Of an entity by kind and index.
std::vector<User> all_users(COM_ProjectData& project, const EntityName& of);

/// Error `UsageError` for an entity that others use, which names them, unless the call has --force.
void needs_force(const Call& call, COM_ProjectData& project, const StoredEntity& entity);

}  // namespace tarn::cli
