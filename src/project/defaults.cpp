#include "project/defaults.h"

#include <nlohmann/json.hpp>

#include "platform/host.h"
#include "project/kinds.h"
#include "project/new_index.h"
#include "reflect/json.h"
#include "reflect/json_text.h"
#include "storage/kind.h"
#include "tarn/base/error.h"
#include "tarn/base/log.h"
#include "tarn/platform/database.h"
#include "tarn/platform/workspace.h"
#include "tarn/utility_rate.h"

namespace tarn {

extern const char* const default_records;

namespace {

const Json& table() {
  static const Json records = parse_json(default_records);
  return records;
}

/// False for a kind that keeps no default.
bool fill(StoredEntity& entity, const EntityKind& kind) {
  const bool in_table = table().contains(kind.section);
  if (!in_table && !kind.standard) return false;
  if (kind.standard) kind.standard(entity);
  if (in_table) set_fields_from_json(entity, table().at(std::string(kind.section)).at("values"));
  if (kind.compute) kind.compute(entity);
  return true;
}

/// Whether the entity is of the kind; a class of two kinds has the word of one.
bool is_of(const StoredEntity& entity, const EntityKind& kind) {
  const Kind& own = entity.kind();
  return kind.class_name == own.class_name &&
         (kind.section == kind.class_name || kind.section.ends_with("." + std::string(own.default_word)));
}

}  // namespace

void create_project(COM_ProjectData& project) {
  const std::string path = project.IndexDBName();
  Database::create(path, index_schema(), [&](const Ptr<Database>& made) {
    const auto before = std::exchange(host().database, [made](const std::string&) { return made; });
    try {
      write_default_records(project);
    } catch (...) {
      host().database = before;
      throw;
    }
    host().database = before;
  });
  try {
    host().database(path);  // and its end bring the record files to the disk
  } catch (const Error& later) {
    log().message(later.description() + " The project is complete in " + path + "; its record files follow.");
  }
}

void write_default_records(COM_ProjectData& project) {
  Transaction transaction;
  for (const EntityKind& kind : entity_kinds()) {
    const auto entity = make_entity(project, kind);
    if (fill(*entity, kind)) entity->SaveDefault();
  }
  transaction.commit();
}

bool fill_product_default(StoredEntity& entity) {
  const auto* rate = dynamic_cast<const URT_UtilityRate*>(&entity);
  if (rate && rate->RateType() == URT_RateTypes::TD_UNDEFINED) return false;  // of neither kind yet
  for (const EntityKind& kind : entity_kinds()) {
    if (!is_of(entity, kind)) continue;
    fill(entity, kind);
    return true;
  }
  return false;
}

}  // namespace tarn
