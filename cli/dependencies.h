// What the verbs that change entities tell of what rests on them.
#pragma once

#include <set>
#include <string>

#include "cli/command.h"
#include "tarn/storage/entity.h"

namespace tarn::cli {

/// The results that are stale: `air system 3 "VAV" design`.
std::set<std::string> stale_now(Database& database);

/// Error `UsageError` for an entity that others use, which names them, unless the call has --force.
void needs_force(const Call& call, COM_ProjectData& project, const StoredEntity& entity);

}  // namespace tarn::cli
