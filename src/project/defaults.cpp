#include "project/defaults.h"

#include <nlohmann/json.hpp>

#include "platform/workspace.h"
#include "project/kinds.h"
#include "reflect/json.h"

namespace tarn {

extern const char* const default_records;

void write_default_records(COM_ProjectData& project) {
  const auto table = nlohmann::ordered_json::parse(default_records);
  Transaction transaction;
  for (const EntityKind& kind : entity_kinds()) {
    const bool in_table = table.contains(kind.section);
    if (!in_table && !kind.standard) continue;  // it keeps no default
    const auto entity = make_entity(project, kind);
    if (kind.standard) kind.standard(*entity);
    if (in_table) set_fields_from_json(*entity, table.at(std::string(kind.section)).at("values"));
    if (kind.compute) kind.compute(*entity);
    entity->SaveDefault();
  }
  transaction.commit();
}

}  // namespace tarn
