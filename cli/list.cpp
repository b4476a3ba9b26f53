#include "cli/list.h"

#include <algorithm>
#include <iostream>

#include "cli/choose.h"
#include "cli/columns.h"
#include "cli/condition.h"
#include "cli/layers.h"
#include "cli/units.h"
#include "storage/kind.h"

namespace tarn::cli {
namespace {

/// An entity that is listed: what is shown, and what it is sorted by.
struct Line {
  std::vector<Listed> shown, keys;
};

/// Numbers by size, texts without regard to case; what is not there comes last.
bool comes_before(const Listed& a, const Listed& b) {
  if (a.json.is_null() || b.json.is_null()) return b.json.is_null() && !a.json.is_null();
  if (a.number && b.number) return *a.number < *b.number;
  return folded(a.text) < folded(b.text);
}

std::vector<Line> lines_of(const Call& call, const EntityKind& kind, Database& database, StoredEntity& entity,
                           const std::vector<Column>& columns) {
  const std::optional<Condition> where =
      call.where.empty() ? std::nullopt : std::optional<Condition>({kind, database, call.where});
  const auto keys = call.sort.empty() ? std::vector<Column>() : columns_named(kind, call.sort);
  std::vector<std::map<std::string, Cell>> cells;
  auto rows = database.OpenRecordset(entity.kind().all_rows);
  for (const auto names = rows.columns(); !rows.AtEof(); rows.MoveNext()) {
    auto& row = cells.emplace_back();
    for (const std::string& name : names) row[name] = rows.Fields(name).Value();
  }
  std::vector<Line> lines;
  for (auto& row : cells) {
    ListedEntity listed(entity, std::move(row));
    if (where && !where->holds(listed)) continue;
    Line& line = lines.emplace_back();
    for (const Column& column : columns) line.shown.push_back(listed.value(column));
    for (const Column& key : keys) line.keys.push_back(listed.value(key));
  }
  std::ranges::stable_sort(lines, [](const Line& a, const Line& b) {
    return std::ranges::lexicographical_compare(a.keys, b.keys, comes_before);
  });
  if (call.reverse) std::ranges::reverse(lines);
  return lines;
}

/// "Height [ft]", in the unit that is shown. A column of the index table keeps its own name, unless it is converted.
std::string heading(const Column& column) {
  const std::string_view unit = shown_unit(column.unit());
  const bool tells = !unit.empty() && (column.member() || unit != column.unit());
  return column.title() + (tells ? " [" + std::string(unit) + "]" : "");
}

/// A value in the unit that is shown; with its unit, where that differs from entity to entity.
Json shown_cell(const Column& column, const Listed& listed) {
  if (!listed.json.is_number()) return listed.text;
  if (!listed.json.is_number_float() || listed.unit.empty()) return listed.json;
  if (column.unit().empty()) return quantity(*listed.number, listed.unit);
  const bool as_stored = shown_unit(listed.unit) == listed.unit;
  return as_stored ? listed.json : Json(shown_value(*listed.number, listed.unit));
}

/// A field of a CSV line, in quotes where it needs them.
std::string csv_field(const std::string& text) {
  if (text.find_first_of(",\"\r\n") == std::string::npos) return text;
  std::string out = "\"";
  for (const char c : text) out += c == '"' ? "\"\"" : std::string(1, c);
  return out + "\"";
}

/// With all of its digits.
std::string csv_number(const Json& number) {
  const std::string text = json_text(number);
  return text.ends_with(".0") ? text.substr(0, text.size() - 2) : text;
}

void print_csv(const std::vector<Column>& columns, const std::vector<Line>& lines) {
  const auto print = [](const std::vector<std::string>& fields) {
    for (size_t i = 0; i < fields.size(); ++i) std::cout << (i == 0 ? "" : ",") << csv_field(fields[i]);
    std::cout << '\n';
  };
  std::vector<std::string> fields;
  for (const Column& column : columns) fields.push_back(heading(column));
  print(fields);
  for (const Line& line : lines) {
    fields.clear();
    for (size_t i = 0; i < columns.size(); ++i) {
      const Json cell = shown_cell(columns[i], line.shown[i]);
      fields.push_back(cell.is_number() ? csv_number(cell) : cell.get<std::string>());
    }
    print(fields);
  }
}

void print_lines(const std::vector<Column>& columns, const std::vector<Line>& lines) {
  std::vector<std::string> heads;
  for (const Column& column : columns) heads.push_back(heading(column));
  std::vector<std::vector<Json>> table;
  for (const Line& line : lines) {
    auto& cells = table.emplace_back();
    for (size_t i = 0; i < columns.size(); ++i) cells.push_back(shown_cell(columns[i], line.shown[i]));
  }
  print_table(heads, table);
}

Json json_of(const std::vector<Column>& columns, const std::vector<Line>& lines) {
  Json all = Json::array();
  for (const Line& line : lines) {
    Json row = Json::object();
    for (size_t i = 0; i < columns.size(); ++i) row[columns[i].title()] = line.shown[i].json;
    all.push_back(std::move(row));
  }
  return all;
}

}  // namespace

int list_entities(const Call& call, const EntityKind& kind, Database& database, StoredEntity& entity) {
  if (call.csv && call.json) throw UsageError("Give --csv or --json, not both.");
  std::vector<Column> columns;
  if (call.columns.empty()) {
    for (const std::string& name : database.OpenRecordset(entity.kind().all_rows).columns())
      columns.push_back(Column::of_table(entity, name));
  } else {
    columns = columns_named(kind, call.columns);
  }
  const auto lines = lines_of(call, kind, database, entity, columns);
  if (call.csv) {
    print_csv(columns, lines);
    return kClean;
  }
  Json all = json_of(columns, lines);
  const std::string told = call.columns.empty() ? told_accuracies(entity, all) : std::string();
  if (call.json)
    print_json(all);
  else
    print_lines(columns, lines);
  if (!call.json) std::cout << told;
  return kClean;
}

}  // namespace tarn::cli
