#include "project/new_index.h"

#include "project/kinds.h"
#include "storage/schema.h"
#include "tarn/platform/database.h"

namespace tarn {

std::string index_schema() {
  std::vector<Ptr<StoredEntity>> kinds;
  for (const EntityKind& kind : entity_kinds()) kinds.push_back(blank_entity(kind));
  return index_schema(kinds);
}

void create_index(const std::string& path) { Database::create(path, index_schema()); }

}  // namespace tarn
