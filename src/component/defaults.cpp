#include "component/defaults.h"

#include <nlohmann/json.hpp>

#include "base/by_name.h"
#include "component/json.h"
#include "platform/workspace.h"
#include "storage/entity.h"

namespace tarn {

extern const char* const default_records;

void write_default_records(COM_ProjectData& project) {
  const auto table = nlohmann::ordered_json::parse(default_records);
  Transaction transaction;
  for (const auto& [class_name, entry] : table.items()) {
    Value made;
    std::vector<Value> nothing;
    call_method(project, project.info().find(entry.at("factory").get<std::string>()), nothing, made);
    const auto object = std::get<ObjectPtr>(made);
    for (const auto& [name, value] : entry.at("values").items())
      set_from_json(*object, object->info().find(name), value);
    if (entry.contains("then"))
      call_method(*object, object->info().find(entry["then"].get<std::string>()), nothing, made);
    std::dynamic_pointer_cast<StoredEntity>(object)->SaveDefault();
  }
  transaction.commit();
}

}  // namespace tarn
