#include "component/defaults.h"

#include <nlohmann/json.hpp>

#include "component/json.h"
#include "component/kinds.h"
#include "platform/workspace.h"

namespace tarn {

extern const char* const default_records;

void write_default_records(COM_ProjectData& project) {
  const auto table = nlohmann::ordered_json::parse(default_records);
  Transaction transaction;
  for (const EntityKind& kind : entity_kinds()) {
    const auto entity = make_entity(project, kind);
    const ClassInfo& info = entity->info();
    for (const auto& [name, value] : table.at(std::string(kind.class_name)).at("values").items()) {
      set_from_json(*entity, info.find(name), value);
    }
    if (!kind.computation.empty()) {
      Value nothing;
      std::vector<Value> none;
      info.find(kind.computation).call(*entity, none, nothing);
    }
    entity->SaveDefault();
  }
  transaction.commit();
}

}  // namespace tarn
