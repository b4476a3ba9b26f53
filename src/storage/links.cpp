#include "storage/links.h"

#include <map>
#include <set>

#include "base/log.h"
#include "base/value.h"
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

std::set<int32_t> rows_of(Database& database, std::string_view owner, std::string_view kind, int16_t index) {
  std::set<int32_t> found;
  auto rows = database.OpenRecordset("SELECT * FROM " + table_of(owner, kind) + " WHERE " + column_of(owner) + " = ?",
                                     {cell(index)});
  for (; !rows.AtEof(); rows.MoveNext()) found.insert(static_cast<int32_t>(rows.Fields(column_of(kind)).integer()));
  return found;
}

}  // namespace

void for_each_reference(Object& object, const ReferenceAction& action) {
  for_each_field(object, [&](Object& owner, const Member& field, const std::string& prefix) {
    if (field.refers_to.empty() || (field.refers_when && !field.refers_when(owner))) return;
    for_each_element(field, [&](Subscripts at) {
      Value value;
      field.get(owner, at, value);
      const auto index = static_cast<int32_t>(integer_from(value, INT32_MIN, INT32_MAX));
      if (index == 0) return;
      const int32_t wanted = action(field.refers_to, index, prefix + element_name(field, at));
      if (wanted != index) field.let(owner, at, wanted);
    });
  });
}

std::string index_table_of(std::string_view kind) {
  return (kind == "System" ? "AirSystem" : std::string(kind)) + "Index";
}

std::vector<Use> uses_of(Object& object) {
  std::vector<Use> uses;
  for_each_reference(object, [&](std::string_view kind, int32_t index, const std::string& place) {
    uses.push_back({place, kind, index});
    return index;
  });
  return uses;
}

bool is_there(Database& database, const Use& use) {
  return !database
              .OpenRecordset("SELECT nIndex FROM " + index_table_of(use.kind) + " WHERE nIndex = ?", {cell(use.index)})
              .AtEof();
}

bool has_link(Database& database, std::string_view owner_kind, int16_t owner, const Use& use) {
  return rows_of(database, owner_kind, use.kind, owner).contains(use.index);
}

void write_links(Object& owner, Database& database, std::string_view owner_kind, int16_t index) {
  std::map<std::string_view, std::map<int32_t, Use>> uses;
  for (const Use& use : uses_of(owner)) uses[use.kind].emplace(use.index, use);
  for (const std::string_view kind : kinds_of(owner)) {
    const std::set<int32_t> present = rows_of(database, owner_kind, kind, index);
    const auto& wanted = uses[kind];
    const std::string table = table_of(owner_kind, kind);
    for (const int32_t id : present) {
      if (wanted.contains(id)) continue;
      const Cell row[]{cell(index), cell(id)};
      database.Execute(
          "DELETE FROM " + table + " WHERE " + column_of(owner_kind) + " = ? AND " + column_of(kind) + " = ?", row);
    }
    for (const auto& [id, use] : wanted) {
      if (present.contains(id)) continue;
      const Cell row[]{cell(index), cell(id)};
      database.Execute(
          "INSERT INTO " + table + " (" + column_of(owner_kind) + ", " + column_of(kind) + ") VALUES (?, ?)", row);
      if (!is_there(database, use)) {
        log().message(std::string(owner_kind) + " " + std::to_string(index) + ", " + use.place + " refers to " +
                      std::string(kind) + " " + std::to_string(id) + ", which is not there.");
      }
    }
  }
}

void clear_lost_references(Object& owner, const std::string& title, const std::function<bool(const Use&)>& lost) {
  for_each_reference(owner, [&](std::string_view kind, int32_t index, const std::string& place) -> int32_t {
    if (!lost({place, kind, index})) return index;
    log().message(title + ", " + place + ": " + std::string(kind) + " " + std::to_string(index) +
                  " was deleted; the reference is cleared.");
    return 0;
  });
}

}  // namespace tarn
