// The index database: whether the engine finds it whole, its tables and columns, what others put into it, and pending
// record bytes that no save has written.
#include <algorithm>

#include "check/inspection.h"
#include "project/new_index.h"
#include "tarn/platform/statement.h"

namespace tarn {
namespace {

constexpr std::string_view kTable = "CREATE TABLE ";
/// Tables that a save makes where they are missing.
constexpr std::string_view kMadeLater[]{"PendingWrites", "DeletedUses", "StaleSince"};

struct ExpectedTable {
  std::string name, statement;
  std::vector<std::string> columns;
};

ExpectedTable expected_table(const std::string& statement) {
  std::string_view rest = std::string_view(statement).substr(kTable.size());
  constexpr std::string_view kIfNot = "IF NOT EXISTS ";
  if (rest.starts_with(kIfNot)) rest.remove_prefix(kIfNot.size());
  ExpectedTable table{std::string(rest.substr(0, rest.find(' '))), statement, {}};
  rest = rest.substr(rest.find('(') + 1);
  for (;;) {
    table.columns.emplace_back(rest.substr(0, rest.find(' ')));
    const size_t comma = rest.find(", ");
    if (comma == std::string_view::npos) return table;
    rest.remove_prefix(comma + 2);
  }
}

std::vector<ExpectedTable> expected_tables() {
  std::vector<ExpectedTable> tables;
  for (const std::string& statement : schema_statements()) {
    if (statement.starts_with(kTable)) tables.push_back(expected_table(statement));
  }
  return tables;
}

/// Makes a table with its indexes and first rows; the rows of entities come from their records.
void make_table(Inspection& on, const std::string& name) {
  for (const std::string& statement : schema_statements()) {
    const bool own =
        statement.find(" " + name + " (") != std::string::npos || statement.starts_with("INSERT INTO " + name + " ");
    if (own) on.database.Execute(statement);
  }
  for (InspectedKind& kind : on.kinds) {
    if (kind.table() == name) restore_rows(on, kind);
  }
}

/// What the database has, by name: "table", "view", "trigger", "index".
std::map<std::string, std::string> things_in(Database& database) {
  std::map<std::string, std::string> things;
  database.join(Database::Part::Reading);
  Statement all(database, "SELECT name, type FROM sqlite_master WHERE name NOT LIKE 'sqlite!_%' ESCAPE '!'");
  while (all.step()) things[std::get<std::string>(all.column(0))] = std::get<std::string>(all.column(1));
  return things;
}

std::string quoted(const std::string& name) {
  std::string text = "\"";
  for (const char c : name) text += c == '"' ? std::string("\"\"") : std::string(1, c);
  return text + "\"";
}

std::vector<std::string> columns_of(Database& database, const std::string& table) {
  std::vector<std::string> columns;
  database.join(Database::Part::Reading);
  Statement info(database, "SELECT name FROM pragma_table_info('" + table + "')");
  while (info.step()) columns.push_back(std::get<std::string>(info.column(0)));
  return columns;
}

/// Triggers change rows unseen, and views stand where a search may look; a table is only told.
void inspect_foreign_things(Inspection& on, const std::map<std::string, std::string>& things,
                            const std::vector<ExpectedTable>& expected) {
  for (const auto& [name, type] : things) {
    if (type == "index") continue;  // whoever made it: rows are found by it, and no row depends on it
    if (std::ranges::find(expected, name, &ExpectedTable::name) != expected.end()) continue;
    CheckFinding told{.severity = Severity::Warning, .property = name};
    told.what = "The index database has a " + type + " " + name + " that is not this system's.";
    if (type == "table") {
      told.remedy = "Repair leaves it. If no program of yours needs it, remove it with a database tool.";
      on.add(told);
      continue;
    }
    told.remedy = "Repair removes it.";
    on.add(told, [&database = on.database, name = name, type = type] {
      database.Execute("DROP " + std::string(type == "view" ? "VIEW " : "TRIGGER ") + quoted(name));
    });
  }
}

void inspect_table(Inspection& on, const ExpectedTable& table, const std::string& type) {
  CheckFinding told{.property = table.name};
  Database& database = on.database;
  const bool later = std::ranges::find(kMadeLater, table.name) != std::end(kMadeLater);
  if (type == "view") {
    told.what = "The index database has a view in the place of the table " + table.name + ".";
    told.remedy = "Repair removes the view and makes the table from the record files.";
    on.add(told, [&on, name = table.name] {
      on.database.Execute("DROP VIEW " + name);
      make_table(on, name);
    });
  } else if (type.empty() && !later) {
    told.what = "The index database has no table " + table.name + ".";
    told.remedy = "Repair makes it, and its rows from the record files.";
    on.add(told, [&on, name = table.name] { make_table(on, name); });
  } else if (!type.empty()) {
    const std::vector<std::string> there = columns_of(database, table.name);
    for (const std::string& column : table.columns) {
      if (std::ranges::find(there, column) != there.end()) continue;
      told.what = "The table " + table.name + " has no column " + column + ".";
      told.remedy = "Repair adds it, and fills it from the records.";
      on.add(told, [&database, name = table.name, column] {
        database.Execute("ALTER TABLE " + name + " ADD COLUMN " + column);
      });
    }
  }
}

/// Without them rows are found all the same, but slowly.
void inspect_sql_indexes(Inspection& on, const std::map<std::string, std::string>& things) {
  constexpr std::string_view kIndex = "CREATE INDEX ", kOn = " ON ";
  for (const std::string& statement : schema_statements()) {
    if (!statement.starts_with(kIndex)) continue;
    const size_t end = statement.find(' ', kIndex.size()), table = end + kOn.size();
    const std::string name = statement.substr(kIndex.size(), end - kIndex.size());
    const auto of = things.find(statement.substr(table, statement.find(' ', table) - table));
    if (things.contains(name) || of == things.end() || of->second != "table") continue;  // comes with its table
    CheckFinding told{.severity = Severity::Warning, .property = name};
    told.what = "The table " + of->first + " has no search index " + name + "; large projects get slow.";
    told.remedy = "Repair makes it.";
    on.add(told, [&on, statement] { on.database.Execute(statement); });
  }
}

void inspect_pending(Inspection& on) {
  for (const int64_t row : on.database.foreign_pending_rows()) {
    CheckFinding told{.property = "PendingWrites"};
    told.what = "Row " + std::to_string(row) +
                " of the pending record bytes was written by no save; because of it, no record file can be read.";
    told.remedy = "Repair removes the row.";
    on.add(told, [&database = on.database, row] {
      const Cell id[]{cell(row)};
      database.Execute("DELETE FROM PendingWrites WHERE nOrder = ?", id);
    });
  }
}

}  // namespace

std::vector<std::string> schema_statements() {
  std::vector<std::string> all;
  const std::string script = index_schema();
  for (size_t at = 0; at < script.size();) {
    const size_t end = script.find(";\n", at);
    all.push_back(script.substr(at, end - at));
    at = end + 2;
  }
  return all;
}

bool inspect_database(Inspection& on) {
  for (const std::string& damage : on.database.damage()) {
    CheckFinding told{.property = on.file_name(on.database.Name())};
    told.what = "The index database is damaged: " + damage + ".";
    told.remedy = "Repair makes it anew from the record files.";
    on.add(told, [] {});  // what makes it anew is `repair_project`
  }
  if (!on.damages.empty()) return false;
  const auto things = things_in(on.database);
  const auto expected = expected_tables();
  inspect_foreign_things(on, things, expected);
  const size_t before_tables = on.damages.size();
  for (const ExpectedTable& table : expected) {
    const auto found = things.find(table.name);
    inspect_table(on, table, found == things.end() ? std::string() : found->second);
  }
  inspect_pending(on);
  const bool readable = on.damages.size() == before_tables;
  inspect_sql_indexes(on, things);
  return readable;
}

}  // namespace tarn
