#include "storage/links.h"

#include <algorithm>
#include <set>

#include "base/log.h"
#include "base/value.h"
#include "platform/statement.h"

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

}  // namespace

void for_each_reference(Object& object, const ReferenceAction& action) {
  for_each_field(object, [&](Object& owner, const Member& field, const std::string& prefix) {
    if (field.refers_to.empty() || (field.refers_when && !field.refers_when(owner))) return;
    const uint64_t place = std::hash<std::string>()(prefix) ^ std::hash<const Member*>()(&field);
    uint64_t element = 0;
    const auto visit = [&](Subscripts at) {
      ++element;
      Value value;
      field.get(owner, at, value);
      const auto index = static_cast<int32_t>(integer_from(value, INT32_MIN, INT32_MAX));
      if (index == 0) return;
      const Use use{place + element * 0x9E3779B97F4A7C15ULL, field.refers_to, index};
      const int32_t wanted = action(use, ReferenceName{prefix, field, at});
      if (wanted != index) field.let(owner, at, wanted);
    };
    for_each_element(field, visit);
  });
}

std::string index_table_of(std::string_view kind) {
  return (kind == "System" ? "AirSystem" : std::string(kind)) + "Index";
}

std::vector<Use> uses_of(Object& object) {
  std::vector<Use> uses;
  for_each_reference(object, [&](const Use& use, const ReferenceName&) {
    uses.push_back(use);
    return use.index;
  });
  return uses;
}

const std::vector<LinkRows::Row>& LinkRows::of(std::string_view kind) {
  const auto [place, added] = rows_.try_emplace(kind);
  if (!added) return place->second;
  const std::string id = column_of(kind);
  const std::string sql = "SELECT " + id + ", nIndex FROM " + table_of(owner_kind_, kind) + " LEFT JOIN " +
                          index_table_of(kind) + " ON nIndex = " + id + " WHERE " + column_of(owner_kind_) +
                          " = ? ORDER BY " + id;
  const Cell owner[]{cell(owner_)};
  database_.join(Database::Part::Reading);
  Statement rows(database_, sql, owner);
  while (rows.step()) {
    const auto index = static_cast<int32_t>(rows.integer(0));
    place->second.push_back({index, rows.integer(1) == index});
  }
  return place->second;
}

const LinkRows::Row* LinkRows::find(const Use& use) {
  if (!last_ || use.kind != last_kind_) {
    last_ = &of(use.kind);
    last_kind_ = use.kind;
  }
  const auto& rows = *last_;
  const auto row = std::lower_bound(rows.begin(), rows.end(), use.index,
                                    [](const Row& r, int32_t index) { return r.index < index; });
  return row != rows.end() && row->index == use.index ? &*row : nullptr;
}

bool LinkRows::is_there(const Use& use) {
  if (const Row* row = find(use)) return row->there;
  return !database_
              .OpenRecordset("SELECT nIndex FROM " + index_table_of(use.kind) + " WHERE nIndex = ?", {cell(use.index)})
              .AtEof();
}

std::vector<Use> write_links(Object& owner, LinkRows& present) {
  Database& database = present.database();
  const std::string_view owner_kind = present.owner_kind();
  const int16_t index = present.owner();
  std::vector<Use> uses;
  std::set<std::pair<std::string_view, int32_t>> wanted, lacking;
  std::map<std::pair<std::string_view, int32_t>, std::pair<Use, std::string>> added;  // with the first place's name
  for_each_reference(owner, [&](const Use& use, const ReferenceName& name) {
    uses.push_back(use);
    if (wanted.emplace(use.kind, use.index).second && !present.has(use))
      added.emplace(std::pair(use.kind, use.index), std::pair(use, name()));
    return use.index;
  });
  for (const auto& [id, place] : added) {
    const auto& [use, name] = place;
    const Cell row[]{cell(index), cell(use.index)};
    database.Execute("INSERT INTO " + table_of(owner_kind, use.kind) + " (" + column_of(owner_kind) + ", " +
                         column_of(use.kind) + ") VALUES (?, ?)",
                     row);
    if (present.is_there(use)) continue;
    lacking.insert(id);
    log().message(std::string(owner_kind) + " " + std::to_string(index) + ", " + name + " refers to " +
                  std::string(use.kind) + " " + std::to_string(use.index) + ", which is not there.");
  }
  for (const std::string_view kind : kinds_of(owner)) {
    for (const auto& [id, there] : present.of(kind)) {
      if (!there) lacking.emplace(kind, id);
      if (wanted.contains({kind, id})) continue;
      const Cell row[]{cell(index), cell(id)};
      database.Execute("DELETE FROM " + table_of(owner_kind, kind) + " WHERE " + column_of(owner_kind) + " = ? AND " +
                           column_of(kind) + " = ?",
                       row);
    }
  }
  if (!lacking.empty()) std::erase_if(uses, [&](const Use& use) { return lacking.contains({use.kind, use.index}); });
  return uses;
}

void clear_lost_references(Object& owner, const std::string& title, const std::function<bool(const Use&)>& lost) {
  for_each_reference(owner, [&](const Use& use, const ReferenceName& name) -> int32_t {
    if (!lost(use)) return use.index;
    log().message(title + ", " + name() + ": " + std::string(use.kind) + " " + std::to_string(use.index) +
                  " was deleted; the reference is cleared.");
    return 0;
  });
}

}  // namespace tarn
