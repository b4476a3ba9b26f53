#include "storage/links.h"

#include <algorithm>
#include <set>

#include "storage/kind.h"
#include "storage/schema.h"
#include "tarn/base/log.h"
#include "tarn/base/wire.h"
#include "tarn/platform/database.h"

namespace tarn {
namespace {

std::string column_of(std::string_view kind) { return std::string(kind) + "_ID"; }

/// A link table: which entities of a kind an owner uses.
struct LinkTable {
  std::string name, owner, other;
  int library;       // only rows of this library count; 0 where all rows do
  std::string rows;  // the query of an owner's rows, by index; nIndex is null where the entity is gone

  LinkTable(std::string table, std::string_view owner_kind, std::string other_column, std::string_view kind,
            int of_library = 0)
      : name(std::move(table)), owner(column_of(owner_kind)), other(std::move(other_column)), library(of_library) {
    rows = "SELECT " + other + ", nIndex FROM " + name + " LEFT JOIN " + index_table_of(kind) +
           " ON nIndex = " + other + " WHERE " + owner + " = ?" + condition() + " ORDER BY " + other;
  }
  std::string condition() const { return library == 0 ? "" : " AND Library_ID = " + std::to_string(library); }
};

/// References are checked against the first table. A plant's equipment has rows in a table by library, and also in the
/// older tables by kind.
const std::vector<LinkTable>& tables_of(std::string_view owner, std::string_view kind) {
  static thread_local std::map<std::pair<std::string_view, std::string_view>, std::vector<LinkTable>> known;
  auto [tables, added] = known.try_emplace({owner, kind});
  if (!added) return tables->second;
  if (const int library = library_of(kind); library != 0 && owner == "Plant")
    tables->second.emplace_back("Plant_Equipment_Links", owner, "Equipment_ID", kind, library);
  tables->second.emplace_back(std::string(owner) + "_" + std::string(kind) + "_Links", owner, column_of(kind), kind);
  return tables->second;
}

/// What refers in a class: its reference fields, the parts that have such fields, and the kinds that they may refer to,
/// for any number of parts.
struct References {
  std::vector<const Member*> members;  // in interface order
  std::set<std::string_view> kinds;
};

const References& references_of(const ClassInfo& info) {
  static thread_local std::map<const ClassInfo*, References> known;
  if (const auto found = known.find(&info); found != known.end()) return found->second;
  References references;
  for (const Member& member : info.members) {
    for (std::string_view rest = member.refers_to; !rest.empty();) {
      const size_t end = std::min(rest.find(' '), rest.size());
      references.kinds.insert(rest.substr(0, end));
      rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    if (!member.is_part()) {
      if (member.stored() && !member.refers_to.empty()) references.members.push_back(&member);
      continue;
    }
    const References& part = references_of(member.owned().info());
    references.kinds.insert(part.kinds.begin(), part.kinds.end());
    if (!part.members.empty()) references.members.push_back(&member);
  }
  return known.emplace(&info, std::move(references)).first->second;
}

}  // namespace

std::string ReferenceName::operator()() const {
  std::vector<int> at;
  size_t rest = element;
  for (const Bounds& b : field.bounds) {
    at.push_back(b.first + static_cast<int>(rest % static_cast<size_t>(b.size())));
    rest /= static_cast<size_t>(b.size());
  }
  return (path ? path->prefix() : std::string()) + element_name(field, at);
}

namespace {

constexpr uint64_t kSpread = 0x9E3779B97F4A7C15ULL;  // 2^64 over the golden ratio

uint64_t place_in(uint64_t owner, const Member& member, uint64_t number) {
  return (owner ^ reinterpret_cast<uintptr_t>(&member)) * kSpread + number * kSpread;
}

/// `place` tells the object from the others inside the one that is walked.
void visit_references(Object& owner, const ReferenceAction& action, const PartPath* path, uint64_t place) {
  for (const Member* member : references_of(owner.info()).members) {
    const Member& field = *member;
    if (field.is_part()) {
      for (int number = 1; number <= field.part_count(owner); ++number) {
        const PartPath deeper{path, &field, number};
        visit_references(field.part(owner, number), action, &deeper,
                         place_in(place, field, static_cast<uint64_t>(number)));
      }
      continue;
    }
    std::string_view target = field.target_of(owner, 0);
    const RecordField& stored = *field.field();
    const size_t elements = field.elements(), width = stored.size / elements;
    std::byte* at = field.place(owner);
    for (size_t element = 0; element < elements; ++element, at += width) {
      int32_t index = 0;
      with_number(stored.wire, at, [&index](auto number) { index = static_cast<int32_t>(number); });
      if (index <= 0) continue;
      if (field.refers_by) target = field.target_of(owner, element);
      if (target.empty()) continue;
      const Use use{place_in(place, field, element + 1), target, index};
      const int32_t wanted = action(use, ReferenceName{path, field, element});
      if (wanted != index) write(stored, at, wanted);
    }
  }
}

}  // namespace

void for_each_reference(Object& object, const ReferenceAction& action) { visit_references(object, action, nullptr, 0); }

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

LinkRows::OfKind& LinkRows::of_kind(std::string_view kind) {
  for (OfKind& each : kinds_) {
    if (same_kind(each.kind, kind)) return each;
  }
  return kinds_.emplace_back(OfKind{kind, rows(kind, 0)});
}

std::vector<LinkRows::Row> LinkRows::rows(std::string_view kind, size_t number) const {
  const Cell owner[]{cell(owner_)};
  database_.join(Database::Part::Reading);
  Statement found(database_, tables_of(owner_kind_, kind)[number].rows, owner);
  std::vector<Row> all;
  while (found.step()) {
    const auto index = static_cast<int32_t>(found.integer(0));
    all.push_back({index, found.integer(1) == index});
  }
  return all;
}

const LinkRows::Row* LinkRows::find(const Use& use) {
  auto& [kind, rows, next] = of_kind(use.kind);
  if (next < rows.size() && rows[next].index == use.index) return &rows[next++];
  const auto row = std::lower_bound(rows.begin(), rows.end(), use.index,
                                    [](const Row& r, int32_t index) { return r.index < index; });
  if (row == rows.end() || row->index != use.index) return nullptr;
  next = static_cast<size_t>(row - rows.begin()) + 1;
  return &*row;
}

bool LinkRows::is_there(const Use& use) {
  if (const Row* row = find(use)) return row->there;
  return !database_
              .OpenRecordset("SELECT nIndex FROM " + index_table_of(use.kind) + " WHERE nIndex = ?", {cell(use.index)})
              .AtEof();
}

bool LinkRows::was_deleted(const Use& use) {
  if (!has_table(database_, "DeletedUses")) return false;
  const std::string query =
      "SELECT nOwner FROM DeletedUses WHERE szOwner = ? AND nOwner = ? AND szKind = ? AND nIndex = ?";
  return !database_
              .OpenRecordset(query, {std::string(owner_kind_), cell(owner_), std::string(use.kind), cell(use.index)})
              .AtEof();
}

void LinkRows::forget_deleted_uses(std::span<const std::string_view> kinds) {
  if (!has_table(database_, "DeletedUses")) return;
  for (const std::string_view kind : kinds) {
    const Cell of[]{std::string(owner_kind_), cell(owner_), std::string(kind)};
    database_.Execute("DELETE FROM DeletedUses WHERE szOwner = ? AND nOwner = ? AND szKind = ?", of);
  }
}

void note_deleted_uses(Database& database, const Kind& kind, int16_t index) {
  if (!has_table(database, "DeletedUses")) database.Execute(std::string(kDeletedUses));
  const Cell of[]{std::string(kind.link_owner), cell(index)};
  database.Execute("DELETE FROM DeletedUses WHERE szOwner = ? AND nOwner = ?", of);
  for (const LinkStep& step : kind.reach.uses()) {
    const std::string table(step.table), owner = table.substr(0, table.find('_'));
    const LinkColumn column{table, std::string(step.by), step.library};
    const Cell id[]{owner, std::string(kind.default_word), cell(index), cell(index)};
    database.Execute("INSERT INTO DeletedUses (szOwner, nOwner, szKind, nIndex) SELECT ?, " + owner +
                         "_ID, ?, ? FROM " + table + " WHERE " + column.condition(),
                     id);
  }
}

int library_of(std::string_view kind) { return kind == "Chiller" ? 10 : kind == "Boiler" ? 20 : 0; }

std::string LinkColumn::condition() const {
  return column + " = ?" + (library == 0 ? "" : " AND Library_ID = " + std::to_string(library));
}

std::vector<LinkColumn> link_columns_of(const Kind& kind, const ClassInfo& info) {
  std::vector<LinkColumn> columns;
  const auto add = [&columns](LinkColumn column) {
    const bool known = std::ranges::any_of(columns, [&](const LinkColumn& each) {
      return each.table == column.table && each.column == column.column && each.library == column.library;
    });
    if (!known) columns.push_back(std::move(column));
  };
  for (const LinkStep& step : kind.reach.uses()) add({std::string(step.table), std::string(step.by), step.library});
  if (kind.link_owner.empty()) return columns;
  for (const std::string_view used : references_of(info).kinds) {
    for (const LinkTable& table : tables_of(kind.link_owner, used)) add({table.name, table.owner});
  }
  return columns;
}

std::vector<LinkColumn> link_tables_of(std::string_view owner, std::string_view kind) {
  std::vector<LinkColumn> all;
  for (const LinkTable& table : tables_of(owner, kind)) all.push_back({table.name, table.other, table.library});
  return all;
}

std::vector<std::string_view> kinds_referred_to(const ClassInfo& info, const KindTest& counts) {
  std::vector<std::string_view> kinds;
  const auto& all = references_of(info).kinds;
  std::copy_if(all.begin(), all.end(), std::back_inserter(kinds), counts);
  return kinds;
}

namespace {

/// Makes the rows of one table those that are wanted, which are sorted. Returns whether any row, old or wanted, refers
/// to an entity that does not exist.
bool merge(LinkRows& links, std::string_view kind, const LinkTable& table, const std::vector<LinkRows::Row>& rows,
           const std::vector<int32_t>& wanted) {
  bool lacking = false;
  const auto change = [&](const std::string& statement, int32_t id) {
    const Cell row[]{cell(links.owner()), cell(id)};
    links.database().Execute(statement, row);
  };
  auto next = wanted.begin();
  const auto add = [&](int32_t id) {
    const bool library = table.library != 0;
    change("INSERT INTO " + table.name + " (" + table.owner + ", " + table.other + (library ? ", Library_ID" : "") +
               ") VALUES (?, ?" + (library ? ", " + std::to_string(table.library) : "") + ")",
           id);
    lacking |= !links.is_there({0, kind, id});
  };
  const auto add_before = [&](int64_t end) {
    for (; next != wanted.end() && *next < end; ++next) add(*next);
  };
  for (const auto& [id, there] : rows) {
    lacking |= !there;
    add_before(id);
    if (next != wanted.end() && *next == id) {
      ++next;
      continue;
    }
    change(
        "DELETE FROM " + table.name + " WHERE " + table.owner + " = ? AND " + table.other + " = ?" + table.condition(),
        id);
    if (next != wanted.begin() && *std::prev(next) == id) add(id);  // a second row of one that stays
  }
  add_before(INT64_MAX);
  return lacking;
}

}  // namespace

std::vector<Use> write_links(Object& owner, LinkRows& links, std::span<const std::string_view> kinds) {
  std::vector<Use> uses = uses_of(owner);
  const auto counts = [&](const Use& use) { return std::find(kinds.begin(), kinds.end(), use.kind) != kinds.end(); };
  std::erase_if(uses, [&](const Use& use) { return !counts(use); });
  bool lacking = false;
  const LinkTable* shared = nullptr;
  std::string libraries;
  for (const std::string_view kind : kinds) {
    std::vector<int32_t> wanted;
    for (const Use& use : uses) {
      if (use.kind == kind) wanted.push_back(use.index);
    }
    std::sort(wanted.begin(), wanted.end());
    wanted.erase(std::unique(wanted.begin(), wanted.end()), wanted.end());
    const std::vector<LinkTable>& tables = tables_of(links.owner_kind(), kind);
    lacking |= merge(links, kind, tables[0], links.of(kind), wanted);
    for (size_t older = 1; older < tables.size(); ++older)
      merge(links, kind, tables[older], links.rows(kind, older), wanted);
    if (tables[0].library == 0) continue;
    shared = &tables[0];
    libraries += (libraries.empty() ? "" : ", ") + std::to_string(shared->library);
  }
  if (shared) {  // rows of an unknown library
    const Cell id[]{cell(links.owner())};
    links.database().Execute("DELETE FROM " + shared->name + " WHERE " + shared->owner +
                                 " = ? AND (Library_ID IS NULL OR Library_ID NOT IN (" + libraries + "))",
                             id);
  }
  if (!lacking) return uses;
  uses.clear();
  for_each_reference(owner, [&](const Use& use, const ReferenceName& name) {
    if (!counts(use)) return use.index;
    if (links.is_there(use)) {
      uses.push_back(use);
    } else if (!links.has(use)) {  // logged once, when its row is new
      log().message(std::string(links.owner_kind()) + " " + std::to_string(links.owner()) + ", " + name() +
                    " refers to " + std::string(use.kind) + " " + std::to_string(use.index) + ", which is not there.");
    }
    return use.index;
  });
  return uses;
}

std::vector<ClearedReference> clear_lost_references(Object& owner, const std::string& title, std::string_view reason,
                                                    const std::function<bool(const Use&)>& lost) {
  std::vector<ClearedReference> cleared;
  for_each_reference(owner, [&](const Use& use, const ReferenceName& name) -> int32_t {
    if (!lost(use)) return use.index;
    log().message(title + ", " + name() + ": " + std::string(use.kind) + " " + std::to_string(use.index) +
                  std::string(reason));
    cleared.push_back({name.field.name, name.element});
    return 0;
  });
  return cleared;
}

}  // namespace tarn
