#include "project/new_index.h"

#include "project/kinds.h"
#include "storage/schema.h"
#include "tarn/platform/database.h"
#include "tarn/reflect/by_name.h"

namespace tarn {

std::string index_schema() {
  std::vector<Ptr<StoredEntity>> kinds;
  for (const EntityKind& kind : entity_kinds()) {
    auto entity = std::static_pointer_cast<StoredEntity>(kind.create());
    if (kind.letter == 0) let_property(*entity, "FileName", std::string(kind.file.suffix));  // tells roofs from walls
    if (kind.prepare) kind.prepare(*entity);
    kinds.push_back(std::move(entity));
  }
  return index_schema(kinds);
}

void create_index(const std::string& path) { Database::create(path, index_schema()); }

}  // namespace tarn
