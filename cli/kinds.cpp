// list, show, new, set, clone and delete, for every kind of entity alike, by its members table.

#include <algorithm>
#include <iostream>

#include "cli/assignments.h"
#include "cli/dependencies.h"
#include "cli/entities.h"
#include "cli/layers.h"
#include "cli/list.h"
#include "cli/units.h"
#include "cli/views/pictures.h"
#include "exchange/imports.h"
#include "storage/kind.h"
#include "tarn/exchange.h"
#include "tarn/pictures.h"
#include "tarn/platform/workspace.h"
#include "tarn/reflect/by_name.h"
#include "tarn/storage/entity.h"

namespace tarn::cli {
namespace {

/// The words after the first one.
std::vector<std::string> assignments_of(const Call& call) { return {call.words.begin() + 1, call.words.end()}; }

}  // namespace

int kind_list(const Call& call) {
  Opened on(call, Use::Reading);
  return list_entities(call, on.kind, *on.database, *on.entity);
}

int kind_show(const Call& call) {
  Opened on(call, Use::Reading);
  const Indexed rows = on.rows();
  const auto indexes = call.svg.empty() ? all_chosen(call, *on.database, rows)
                                        : std::vector<int16_t>{index_of(call, *on.database, rows)};
  if (call.json) std::cout << export_entities(on.project, on.kind.group, indexes);
  for (const int16_t index : indexes) {
    on.entity->Load(index);
    if (call.json) {
      const Json told = told_accuracy(*on.entity);
      if (!told.empty()) print_notes(rows.one + " " + std::to_string(index), {told.at("transfer_function_message")});
      continue;
    }
    std::cout << (index == indexes.front() ? "" : "\n") << on.entity->info().name << ' ' << index << '\n';
    show_entity(*on.database, *on.entity);
  }
  if (!call.svg.empty()) save_picture(call, picture_of(*on.entity, units()));
  return kClean;
}

int kind_new(const Call& call) {
  Opened on(call, Use::Writing);
  StoredEntity& entity = *on.entity;
  if (on.kind.start) {
    on.kind.start(entity, call.type);
  } else {
    entity.CreateDefault();
    entity.Reset(true);
  }
  const auto edited = edit(entity, on.kind, call.words);
  if (on.kind.letter != 0 && !entity.IsNameUnique())  // files of their own are told apart by it
    throw UsageError("Another " + std::string(on.kind.one) + " has that name; give one of its own: Name=...");
  return tell(call, on, {saved(entity, on.kind, "made", edited)});
}

int kind_set(const Call& call) {
  Opened on(call, Use::Writing);
  if (call.words.size() == 1) throw UsageError("Nothing to set; write Property=value.");
  return for_each_chosen(call, on, [&](StoredEntity& entity) {
    const auto edited = edit(entity, on.kind, assignments_of(call));
    return saved(entity, on.kind, "saved", edited);
  });
}

int kind_clone(const Call& call) {
  Loaded on(call, Use::Writing);
  Value clone;
  std::vector<Value> none(1);
  on.entity->info().find("Clone").call(*on.entity, none, clone);
  auto& copy = dynamic_cast<StoredEntity&>(*std::get<ObjectPtr>(clone));
  const auto edited = edit(copy, on.kind, assignments_of(call));
  return tell(call, on, {saved(copy, on.kind, "made from " + std::to_string(on.entity->Index()), edited)});
}

int kind_delete(const Call& call) {
  Opened on(call, Use::Writing);
  return for_each_chosen(call, on, [&](StoredEntity& entity) {
    const int16_t index = entity.Index();
    needs_force(call, on.project, entity);
    entity.Delete(index);
    return Done{{{"index", index}}, std::string(on.kind.one) + " " + std::to_string(index) + " deleted", {}};
  });
}

int kind_layer(const Call& call) {
  if (call.words == std::vector<std::string>{"materials"}) return print_materials(call);
  check_layer_words(call);
  Loaded on(call, Use::Writing, 1);
  const LayerChange change = change_layers(dynamic_cast<CA_ConstructionAssly&>(*on.entity), call);
  Edited edited;
  edited.computed = computed(*on.entity, on.kind);
  Done done =
      saved(*on.entity, on.kind, "saved: " + change.name + " " + change.what + ", slot " + std::to_string(change.slot),
            std::move(edited));
  done.json.update({{"slot", change.slot}, {"layer", change.name}});
  return tell(call, on, {done});
}

/// A new entity from a file of another program, with what a person should know of it.
int kind_import(const Call& call) {
  Opened on(call, Use::Writing);
  if (call.words.empty()) throw UsageError("Which file? tarn " + call.group + " import FILE");
  const std::vector<std::string> notes = file_import_of(on.kind)(*on.entity, call.words.front());
  const auto edited = edit(*on.entity, on.kind, assignments_of(call));
  Done done = saved(*on.entity, on.kind, "made from " + call.words.front(), edited);
  done.json["notes"] = notes;
  tell(call, on, {done});
  if (!call.json) print_notes("", notes);
  return kClean;
}

int import_chiller_file(const Call& call) {
  Call of_kind = call;
  of_kind.group = "chillers";
  of_kind.verb = "import";
  return kind_import(of_kind);
}

}  // namespace tarn::cli
