// The list of a kind's entities.
#pragma once

#include "cli/command.h"
#include "project/kinds.h"
#include "tarn/storage/entity.h"

namespace tarn::cli {

/// Prints the index rows or, with --columns, properties by name; those that --where holds of, by --sort.
int list_entities(const Call& call, const EntityKind& kind, Database& database, StoredEntity& entity);

}  // namespace tarn::cli
