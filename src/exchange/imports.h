// Files of other programs from which a new entity can be made: one row a kind.
#pragma once

#include <string>
#include <vector>

#include "project/kinds.h"

namespace tarn {

/// Fills a new entity from a file, and returns what was not carried over, a line each.
using ImportFile = std::vector<std::string> (*)(StoredEntity& entity, const std::string& path);

/// Null for a kind that none is known for.
ImportFile file_import_of(const EntityKind& kind);

}  // namespace tarn
