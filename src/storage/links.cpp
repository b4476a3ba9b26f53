#include "storage/links.h"

#include "base/log.h"
#include "platform/database.h"

namespace tarn {
namespace {

std::string table_of(std::string_view owner, std::string_view kind) {
  return std::string(owner) + "_" + std::string(kind) + "_Links";
}
std::string column_of(std::string_view kind) { return std::string(kind) + "_ID"; }

/// The kinds that the owner's fields may refer to.
std::set<std::string_view> kinds_of(Object& owner) {
  std::set<std::string_view> kinds;
  for_each_field(owner, [&](Object&, const Member& field, const std::string&) {
    if (!field.refers_to.empty()) kinds.insert(field.refers_to);
  });
  return kinds;
}

std::set<int16_t> rows_of(Database& database, std::string_view owner, std::string_view kind, int16_t index) {
  std::set<int16_t> found;
  auto rows = database.OpenRecordset("SELECT * FROM " + table_of(owner, kind) + " WHERE " + column_of(owner) + " = ?",
                                     {cell(index)});
  for (; !rows.AtEof(); rows.MoveNext()) found.insert(static_cast<int16_t>(rows.Fields(column_of(kind)).integer()));
  return found;
}

}  // namespace

void for_each_reference(Object& object, const ReferenceAction& action) {
  for_each_field(object, [&](Object& owner, const Member& field, const std::string& prefix) {
    if (field.refers_to.empty()) return;
    for_each_element(field, [&](Subscripts at) {
      Value value;
      field.get(owner, at, value);
      const auto index = std::get<int16_t>(value);
      if (index == 0) return;
      const int16_t wanted = action(field.refers_to, index, prefix + element_name(field, at));
      if (wanted != index) field.let(owner, at, wanted);
    });
  });
}

Uses uses_of(Object& object) {
  Uses uses;
  for_each_reference(object, [&](std::string_view kind, int16_t index, const std::string&) {
    uses.emplace(kind, index);
    return index;
  });
  return uses;
}

void write_links(Object& owner, Database& database, std::string_view owner_kind, int16_t index) {
  const Uses uses = uses_of(owner);
  for (const std::string_view kind : kinds_of(owner)) {
    const std::set<int16_t> present = rows_of(database, owner_kind, kind, index);
    const std::string table = table_of(owner_kind, kind);
    for (const int16_t id : present) {
      if (uses.contains({kind, id})) continue;
      const Cell row[]{cell(index), cell(id)};
      database.Execute(
          "DELETE FROM " + table + " WHERE " + column_of(owner_kind) + " = ? AND " + column_of(kind) + " = ?", row);
    }
    for (auto use = uses.lower_bound({kind, INT16_MIN}); use != uses.end() && use->first == kind; ++use) {
      if (present.contains(use->second)) continue;
      const Cell row[]{cell(index), cell(use->second)};
      database.Execute(
          "INSERT INTO " + table + " (" + column_of(owner_kind) + ", " + column_of(kind) + ") VALUES (?, ?)", row);
    }
  }
}

void clear_lost_references(Object& owner, Database& database, std::string_view owner_kind, int16_t index,
                           const Uses& references) {
  Uses lost;
  std::string_view kind;
  std::set<int16_t> present;
  for (const auto& [used_kind, id] : references) {
    if (used_kind != kind) present = rows_of(database, owner_kind, kind = used_kind, index);
    if (!present.contains(id)) lost.emplace(used_kind, id);
  }
  for_each_reference(owner, [&](std::string_view used_kind, int16_t id, const std::string& place) -> int16_t {
    if (!lost.contains({used_kind, id})) return id;
    log().message(std::string(owner_kind) + " " + std::to_string(index) + ", " + place + ": " + std::string(used_kind) +
                  " " + std::to_string(id) + " was deleted; the reference is cleared.");
    return 0;
  });
}

}  // namespace tarn
