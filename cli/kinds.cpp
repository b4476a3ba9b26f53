// list, show, new, set, clone and delete, for every kind of entity alike, by its members table.

#include <algorithm>
#include <iostream>

#include "cli/assignments.h"
#include "cli/command.h"
#include "cli/layers.h"
#include "cli/views/pictures.h"
#include "exchange/imports.h"
#include "reflect/json.h"
#include "reflect/json_text.h"
#include "storage/kind.h"
#include "tarn/pictures.h"
#include "tarn/platform/workspace.h"
#include "tarn/reflect/by_name.h"
#include "tarn/storage/entity.h"

namespace tarn::cli {
namespace {

const EntityKind& kind_of(const Call& call) {
  const auto kinds = entity_kinds();
  return *std::find_if(kinds.begin(), kinds.end(), [&](const EntityKind& k) { return k.group == call.group; });
}

Json rows_json(Recordset rows) {
  Json all = Json::array();
  for (; !rows.AtEof(); rows.MoveNext()) {
    Json row;
    for (const std::string& column : rows.columns()) row[column] = to_json(value_of(rows.Fields(column).Value()));
    all.push_back(std::move(row));
  }
  return all;
}

int list(const Call& call, Database& database, StoredEntity& entity) {
  auto rows =
      database.OpenRecordset("SELECT * FROM " + std::string(entity.kind().index_table) + " ORDER BY nIndex ASC");
  const auto columns = rows.columns();
  Json all = rows_json(std::move(rows));
  const std::string told = told_accuracies(entity, all);
  if (call.json) {
    print_json(all);
    return kClean;
  }
  std::vector<std::vector<Json>> table;
  for (const Json& row : all) {
    auto& cells = table.emplace_back();
    for (const std::string& column : columns) cells.push_back(row.at(column).is_null() ? Json("") : row.at(column));
  }
  print_table(columns, table);
  std::cout << told;
  return kClean;
}

int show(const Call& call, Database& database, StoredEntity& entity) {
  if (call.json) {
    Json json{{"class", std::string(entity.info().name)}, {"index", entity.Index()}};
    add_stored_fields(entity, json);
    json.update(told_accuracy(entity));
    print_json(json);
  } else {
    std::cout << entity.info().name << ' ' << entity.Index() << '\n';
    show_entity(database, entity);
  }
  if (!call.svg.empty()) save_picture(call, wall_picture(dynamic_cast<CA_ConstructionAssly&>(entity)));
  return kClean;
}

int saved(const Call& call, StoredEntity& entity, const EntityKind& kind, std::string_view what,
          const std::vector<std::string>& computed, const Json& rest = Json::object()) {
  entity.Save();
  print_notes("computed", computed);
  if (call.json) {
    Json json{{"index", entity.Index()}};
    json.update(rest);
    print_json(json);
  }
  if (!call.json) std::cout << kind.one << ' ' << entity.Index() << ' ' << what << '\n';
  return kClean;
}

/// What a verb of a kind works on: the open project, and an entity that is not loaded yet.
struct Opened {
  const EntityKind& kind;
  COM_ProjectData project;
  Ptr<Database> database;
  Ptr<StoredEntity> entity;

  Opened(const Call& call, Use use)
      : kind(kind_of(call)), database(open_project(project, call, use)), entity(make_entity(project, kind)) {}
};

/// The same with the entity that the first word names.
struct Loaded : Opened {
  Loaded(const Call& call, Use use) : Opened(call, use) {
    entity->Load(index_of(call, *database,
                          {std::string(entity->kind().index_table), std::string(kind.one), std::string(kind.group)}));
  }
};

/// The words after the first one.
std::vector<std::string> assignments_of(const Call& call) { return {call.words.begin() + 1, call.words.end()}; }

}  // namespace

int kind_list(const Call& call) {
  const Opened on(call, Use::Reading);
  return list(call, *on.database, *on.entity);
}

int kind_show(const Call& call) {
  const Loaded on(call, Use::Reading);
  return show(call, *on.database, *on.entity);
}

int kind_new(const Call& call) {
  const Opened on(call, Use::Writing);
  StoredEntity& entity = *on.entity;
  if (on.kind.start) {
    on.kind.start(entity, call.type);
  } else {
    entity.CreateDefault();
    entity.Reset(true);
  }
  const auto computed = edit(entity, on.kind, call.words);
  if (on.kind.letter != 0 && !entity.IsNameUnique())  // files of their own are told apart by it
    throw UsageError("Another " + std::string(on.kind.one) + " has that name; give one of its own: Name=...");
  return saved(call, entity, on.kind, "made", computed);
}

int kind_set(const Call& call) {
  const Loaded on(call, Use::Writing);
  if (call.words.size() == 1) throw UsageError("Nothing to set; write Property=value.");
  const auto computed = edit(*on.entity, on.kind, assignments_of(call));
  return saved(call, *on.entity, on.kind, "saved", computed);
}

int kind_clone(const Call& call) {
  const Loaded on(call, Use::Writing);
  Value clone;
  std::vector<Value> none(1);
  on.entity->info().find("Clone").call(*on.entity, none, clone);
  auto& copy = dynamic_cast<StoredEntity&>(*std::get<ObjectPtr>(clone));
  const auto computed = edit(copy, on.kind, assignments_of(call));
  return saved(call, copy, on.kind, "made from " + std::to_string(on.entity->Index()), computed);
}

int kind_delete(const Call& call) {
  const Loaded on(call, Use::Writing);
  const int16_t index = on.entity->Index();
  on.entity->Delete(index);
  if (call.json)
    print_json({{"index", index}});
  else
    std::cout << on.kind.one << ' ' << index << " deleted\n";
  return kClean;
}

int kind_layer(const Call& call) {
  if (call.words == std::vector<std::string>{"materials"}) return print_materials(call);
  check_layer_words(call);
  Call of_one = call;
  of_one.words = {call.words[1]};
  const Loaded on(of_one, Use::Writing);
  const LayerChange change = change_layers(dynamic_cast<CA_ConstructionAssly&>(*on.entity), call);
  on.kind.compute(*on.entity);
  return saved(call, *on.entity, on.kind,
               "saved: " + change.name + " " + change.what + ", slot " + std::to_string(change.slot), {},
               {{"slot", change.slot}, {"layer", change.name}});
}

/// A new entity from a file of another program, with what a person should know of it.
int kind_import(const Call& call) {
  const Opened on(call, Use::Writing);
  if (call.words.empty()) throw UsageError("Which file? tarn " + call.group + " import FILE");
  const std::vector<std::string> notes = file_import_of(on.kind)(*on.entity, call.words.front());
  const auto computed = edit(*on.entity, on.kind, assignments_of(call));
  const int code = saved(call, *on.entity, on.kind, "made from " + call.words.front(), computed, {{"notes", notes}});
  if (!call.json) print_notes("", notes);
  return code;
}

}  // namespace tarn::cli
