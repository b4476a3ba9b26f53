// Rows and records of a kind: each row has its record, the columns agree with it, names are unique, and indexes are
// those that an entity can have.
#include <algorithm>
#include <cmath>

#include "check/inspection.h"
#include "platform/file_store.h"
#include "tarn/platform/statement.h"
#include "tarn/storage/section_file.h"
#include "tarn/system_results.h"

namespace tarn {
namespace {

bool in_range(int64_t index) { return index >= 1 && index <= INT16_MAX; }

/// The rows of the kind; those that no entity can have are told.
void inspect_row_keys(Inspection& on, InspectedKind& kind) {
  on.database.join(Database::Part::Reading);
  const std::string table = kind.table();
  Statement rows(on.database,
                 "SELECT rowid, nIndex, typeof(nIndex), CAST(szName AS TEXT) FROM " + table + " ORDER BY rowid");
  while (rows.step()) {
    const int64_t row = rows.integer(0), index = rows.integer(1);
    const bool whole = std::get<std::string>(rows.column(2)) == "integer";
    const Cell name = rows.column(3);
    const auto* text = std::get_if<std::string>(&name);
    if (whole && in_range(index) && !kind.has(static_cast<int32_t>(index))) {
      kind.names[static_cast<int32_t>(index)] = text ? *text : std::string();
      continue;
    }
    CheckFinding told{.property = table + ".nIndex"};
    if (whole) told.kind = kind.word();
    told.name = text ? *text : std::string();
    told.what = !whole            ? "A row has no whole number as its index."
                : in_range(index) ? "A second row has the index " + std::to_string(index) + "."
                                  : "A row has the index " + std::to_string(index) + "; indexes are 1 to 32767.";
    told.index = static_cast<int32_t>(std::clamp<int64_t>(index, INT32_MIN, INT32_MAX));
    told.remedy = "Repair removes the row; no record belongs to it.";
    on.add(told, [&database = on.database, table, row] {
      const Cell id[]{cell(row)};
      database.Execute("DELETE FROM " + table + " WHERE rowid = ?", id);
    });
  }
}

bool same_cell(const Cell& one, const Cell& other) {
  if (one == other) return true;
  const auto number = [](const Cell& c) {
    if (const auto* whole = std::get_if<int64_t>(&c)) return static_cast<double>(*whole);
    const auto* real = std::get_if<double>(&c);
    return real ? *real : std::nan("");
  };
  // A thickness in inches was stored in feet: its last digit may differ.
  constexpr double kRounding = 2e-6;
  const double a = number(one), b = number(other);
  return std::abs(a - b) <= kRounding * std::max({std::abs(a), std::abs(b), 1e-6});
}

std::string text_of(const Cell& cell) {
  if (std::holds_alternative<std::monostate>(cell)) return "nothing";
  if (const auto* text = std::get_if<std::string>(&cell)) return "\"" + *text + "\"";
  char digits[32];
  if (const auto* real = std::get_if<double>(&cell))
    std::snprintf(digits, sizeof digits, "%.7g", *real);
  else
    std::snprintf(digits, sizeof digits, "%lld", static_cast<long long>(std::get<int64_t>(cell)));
  return digits;
}

/// Columns of the row that show properties of the record.
void inspect_summary(Inspection& on, InspectedKind& kind, int16_t index) {
  StoredEntity& entity = *kind.entity;
  Recordset rows = on.database.OpenRecordset("SELECT * FROM " + kind.table() + " WHERE nIndex = ?", {cell(index)});
  const auto mend = [&kind, index] {
    kind.entity->read_stored(index);
    kind.entity->write_row();
  };
  const auto compare = [&](std::string_view column, const Cell& wanted) {
    const Cell& found = rows.Fields(column).Value();
    if (same_cell(found, wanted)) return;
    CheckFinding told = on.of(kind, index, std::string(column));
    told.what = "The index row says " + text_of(found) + ", the record " + text_of(wanted) + ".";
    told.remedy = "Repair brings the row in line with the record.";
    on.add_by_record(told, mend);
  };
  if (!entity.stored_name().empty()) compare("szName", entity.stored_name());
  for (const SummaryColumn& column : kind.kind().columns) {
    const Cell wanted = column.get(entity);
    const auto* real = std::get_if<double>(&wanted);
    if (!real || std::isfinite(*real)) compare(column.name, wanted);  // the values are told of themselves
  }
  for (const ChangedFlag& flag : kind.kind().flags) {
    if (!std::holds_alternative<std::monostate>(rows.Fields(flag.column).Value())) continue;
    CheckFinding told = on.of(kind, index, std::string(flag.column));
    told.what = "The index row does not say whether the results are stale.";
    told.remedy = "Repair marks them stale.";
    on.add(told, [&database = on.database, table = kind.table(), column = std::string(flag.column), index] {
      const Cell id[]{cell(index)};
      database.Execute("UPDATE " + table + " SET " + column + " = -1 WHERE nIndex = ?", id);
    });
  }
}

/// Its inputs are whole, and what is not can be left out.
bool can_be_kept_in_part(const InspectedKind& kind, int16_t index, const std::string& path) {
  if (index == 0) return false;
  try {
    const std::vector<std::byte> whole = kind.entity->file().whole_sections(index);
    if (whole.empty() || whole.size() != files().size(path)) return !whole.empty();
    std::vector<std::byte> all(whole.size());
    files().read(path, 0, all);
    return whole != all;
  } catch (const Error&) {  // implausible counts in its header
    return false;
  }
}

/// A damaged file: what is whole of it can be kept, as long as the inputs are.
void tell_damaged_file(Inspection& on, InspectedKind& kind, int16_t index, const std::string& why) {
  const std::string path = kind.entity->file().path_for(index);
  CheckFinding told = on.of(kind, index, on.file_name(path));
  told.what = why;
  if (!can_be_kept_in_part(kind, index, path)) {
    told.remedy = "Its inputs are lost. Restore the file from a copy of the project, or delete the entity.";
    return on.add(told);
  }
  told.remedy =
      "Repair keeps its inputs and whole results, drops the rest, and marks what rests on it; calculate again.";
  on.add(told, [&kind, index, path] {
    files().replace(path, kind.entity->file().whole_sections(index), kind.entity->GetDBHandle());
    kind.entity->read_stored(index);
    kind.entity->write_row();
    mark_stale(kind, index);
  });
}

void tell_missing_record(Inspection& on, InspectedKind& kind, int16_t index) {
  const std::string path = kind.entity->file().path_for(index);
  CheckFinding told = on.of(kind, index, on.file_name(path));
  const bool one_file = !kind.entity->file().one_for_each();
  if (one_file && !files().exists(path)) {
    told.index = 0;
    told.name.clear();
    told.kind.clear();
    told.what = "The record file of the " + std::string(kind.row.group) + " is missing, but the index has " +
                std::to_string(kind.names.size()) + " of them.";
    told.remedy = "Restore the file from a copy of the project.";
    if (std::ranges::find(on.damages, told, &Damage::told) == on.damages.end()) on.add(told);
    return;
  }
  told.what = one_file ? "The row has no record: the record file has nothing at its place." : "The row has no file.";
  told.remedy = "Restore the file from a copy of the project; repair removes the row and every use of it.";
  on.add(told, [&kind, index] { kind.entity->Delete(index); });
}

void inspect_entity(Inspection& on, InspectedKind& kind, int16_t index) {
  if (!has_record(kind, index)) return tell_missing_record(on, kind, index);
  try {
    kind.entity->read_stored(index);
  } catch (const Error& error) {
    return tell_damaged_file(on, kind, index, error.description());
  }
  inspect_values(on, kind, index);
  inspect_summary(on, kind, index);
  auto& uses = kind.uses[index];
  if (kind.kind().link_owner.empty()) return;
  for_each_reference(*kind.entity, [&](const Use& use, const ReferenceName& name) {
    uses.push_back({use, name()});
    return use.index;
  });
}

/// A file that ends inside a record.
void inspect_length(Inspection& on, InspectedKind& kind) {
  const std::string path = kind.entity->file().path_for(0);
  if (kind.entity->file().one_for_each() || !files().exists(path)) return;
  const uint64_t record = size_of(kind.entity->file().blocks()), size = files().size(path), rest = size % record;
  if (rest == 0) return;
  const auto index = static_cast<int32_t>(size / record);
  CheckFinding told =
      kind.has(index) ? on.of(kind, index, on.file_name(path)) : CheckFinding{.property = on.file_name(path)};
  told.what = "The file ends in a partial record, " + std::to_string(index) + ", of " + std::to_string(rest) + " of " +
              std::to_string(record) + " bytes.";
  told.remedy = "Repair fills it up with zeros.";
  if (kind.has(index)) told.remedy += " Then set what was lost, or restore the file from a copy of the project.";
  on.add(told, [&kind, path, size, missing = record - rest] {
    files().write(path, size, std::vector<std::byte>(missing), kind.entity->GetDBHandle());
  });
}

/// The name in the results of a calculation goes with the entity's.
void rename_results(InspectedKind& kind, int16_t index) {
  const auto* sections = dynamic_cast<const SectionFile*>(&kind.entity->file());
  const std::string path = sections ? sections->results_path_of(index) : std::string();
  if (path.empty() || !files().exists(path)) return;
  decltype(ResultHeaderRecord::SystemName) name;
  name = kind.entity->stored_name();
  files().write(path, 0, record_bytes(name), kind.entity->GetDBHandle());
}

void inspect_names(Inspection& on, InspectedKind& kind) {
  std::map<std::string, int32_t> first;
  for (const auto& [index, name] : kind.names) {
    const auto [holder, is_first] = first.try_emplace(name, index);
    if (!name.empty() && is_first) continue;
    if (!kind.uses.contains(index)) continue;  // cannot be read
    CheckFinding told = on.of(kind, index, "Name");
    told.severity = Severity::Warning;
    told.what =
        name.empty() ? "It has no name." : kind.word() + " " + std::to_string(holder->second) + " has the same name.";
    told.remedy = name.empty() ? "Repair gives it the usual name of a new one."
                               : "Repair names it as a copy; its record keeps all else.";
    on.add(told, [&kind, index = static_cast<int16_t>(index)] {
      kind.entity->read_stored(index);
      kind.entity->take_valid_name();
      kind.entity->file().write(index, {.form = SaveContext::Form::AsGiven});
      kind.entity->write_row();
      rename_results(kind, index);
    });
  }
}

}  // namespace

bool has_record(const InspectedKind& kind, int32_t index) {
  const EntityFile& file = kind.entity->file();
  const std::string path = file.path_for(static_cast<int16_t>(index));
  if (path.empty() || !files().exists(path)) return false;
  if (file.one_for_each()) return true;
  std::vector<std::byte> record(size_of(file.blocks()));
  files().read(path, static_cast<uint64_t>(index) * record.size(), record);
  return std::ranges::any_of(record, [](std::byte byte) { return byte != std::byte{0}; });
}

void restore_row(InspectedKind& kind, int16_t index) {
  StoredEntity& entity = *kind.entity;
  entity.read_stored(index);
  const std::string own = entity.stored_name();
  entity.take_valid_name();
  if (entity.stored_name() != own) {
    entity.file().write(index, {.form = SaveContext::Form::AsGiven});
    rename_results(kind, index);
  }
  entity.write_row();
}

void restore_rows(const Inspection& on, InspectedKind& kind) {
  for (const int16_t index : stored_indexes(on, kind)) {
    try {
      restore_row(kind, index);
    } catch (const Error& error) {  // its file is told of afterwards
      if (!kind.entity->file().one_for_each()) throw;
    }
  }
}

void mark_stale(InspectedKind& kind, int16_t index) {
  Database& database = *kind.entity->GetDBHandle();
  const auto row = kind.names.find(index);
  const std::string name = row == kind.names.end() ? std::string() : page_from_utf8(row->second);
  const Edit edit{kind.kind().default_word, index, name};
  const Cell id[]{cell(index)};
  for (const ChangedFlag& flag : kind.kind().flags)
    FlagUpdate(kind.kind().index_table, flag.column, "nIndex = ?1").run(database, id, edit);
  kind.kind().reach.mark(database, edit);
}

void store_mended(InspectedKind& kind) {
  StoredEntity& entity = *kind.entity;
  const int16_t index = entity.Index();
  entity.file().write(index, {.form = SaveContext::Form::AsGiven});
  if (index == 0) return;
  entity.write_row();
  mark_stale(kind, index);
}

void inspect_entities(Inspection& on, InspectedKind& kind) {
  inspect_row_keys(on, kind);
  inspect_length(on, kind);
  for (const auto& [index, name] : kind.names) {
    inspect_entity(on, kind, static_cast<int16_t>(index));
    on.progress(++on.looked_at, 0);
  }
  if (has_record(kind, 0)) {
    try {
      kind.entity->read_stored(0);
      inspect_values(on, kind, 0);
    } catch (const Error& error) {
      tell_damaged_file(on, kind, 0, error.description());
    }
  }
  inspect_names(on, kind);
}

}  // namespace tarn
