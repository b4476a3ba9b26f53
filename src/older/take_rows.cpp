#include "older/take_rows.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <set>

#include "base/nearest.h"
#include "tarn/base/error.h"
#include "tarn/platform/statement.h"

namespace tarn::older {
namespace {

constexpr size_t kNowhere = SIZE_MAX;

/// What a column has where the old index says nothing: results are stale rather than wrongly fresh.
Cell unknown(const std::string& column) {
  if (column.starts_with("sz")) return std::string();
  return column.ends_with("HasChanged") ? cell(true) : cell(0);
}

std::string text_of(const Cell& cell) {
  if (const auto* text = std::get_if<std::string>(&cell)) return *text;
  char digits[32];
  std::to_chars_result end{digits, {}};
  if (const auto* whole = std::get_if<int64_t>(&cell)) end = std::to_chars(digits, std::end(digits), *whole);
  if (const auto* real = std::get_if<double>(&cell)) {
    const auto single = static_cast<float>(*real);
    end = static_cast<double>(single) == *real ? std::to_chars(digits, std::end(digits), single)
                                               : std::to_chars(digits, std::end(digits), *real);
  }
  return {digits, end.ptr};
}

/// A value in the form of a column, by the first letters of its name; nothing where it cannot be.
Cell in_column(const std::string& column, const Cell& value) {
  if (column.starts_with("sz")) return std::holds_alternative<std::monostate>(value) ? value : Cell(text_of(value));
  if (std::holds_alternative<std::string>(value)) return {};
  const auto* real = std::get_if<double>(&value);
  const auto* whole = std::get_if<int64_t>(&value);
  if (column.starts_with("f")) return whole ? cell(static_cast<double>(*whole)) : value;
  constexpr double kMost = 2147483648.0;
  if (real) return std::trunc(*real) == *real && std::abs(*real) < kMost ? cell(static_cast<int64_t>(*real)) : Cell{};
  if (whole && column.starts_with("b")) return cell(*whole != 0);
  return value;
}

/// Takes the rows of one table.
class RowTaker {
 public:
  RowTaker(const Table& old, const ProjectTable& own, Database& database, Adoption& adoption)
      : old_(old), own_(own), database_(database), adoption_(adoption) {
    std::string names, marks;
    for (const std::string& column : own.columns) {
      const auto found = std::ranges::find_if(old.columns, [&](const Column& c) { return same_word(c.name, column); });
      places_.push_back(found == old.columns.end() ? kNowhere : static_cast<size_t>(found - old.columns.begin()));
      if (places_.back() == kNowhere) adoption.notes.push_back(own.name + " had no column " + column + ".");
      names += (names.empty() ? "" : ", ") + column;
      marks += marks.empty() ? "?" : ", ?";
    }
    insert_ = "INSERT INTO " + own.name + " (" + names + ") VALUES (" + marks + ")";
  }

  void take_all() {
    const bool lone_row = !own_.lists_entities() && own_.name.ends_with("WeatherIndex");
    if (lone_row && !old_.rows.empty()) database_.Execute("DELETE FROM " + own_.name);
    size_t taken = 0;
    for (const std::vector<Cell>& row : old_.rows) {
      if (lone_row && taken == 1)
        leave(row, "the table has one row");
      else if (take(row))
        ++taken;
    }
    ++adoption_.tables;
    adoption_.rows += taken;
    if (empty_ > 0)
      adoption_.notes.push_back(own_.name + ": " + std::to_string(empty_) + " values that were not set became " +
                                "empty texts and zeros, and results without a mark are stale.");
  }

 private:
  bool take(const std::vector<Cell>& row) {
    std::vector<Cell> cells;
    for (size_t i = 0; i < places_.size(); ++i) {
      const Cell old = places_[i] == kNowhere ? Cell{} : row[places_[i]];
      Cell value = in_column(own_.columns[i], old);
      if (std::holds_alternative<std::monostate>(value)) {
        if (places_[i] != kNowhere) ++empty_;
        const bool is_key = own_.lists_entities() && i == 0;
        if (!is_key) value = unknown(own_.columns[i]);
      }
      cells.push_back(std::move(value));
    }
    if (own_.lists_entities()) {
      const auto* index = std::get_if<int64_t>(&cells.front());
      if (!index || *index < 1 || *index > INT16_MAX) return leave(row, "indexes are 1 to 32767");
      if (!indexes_.insert(*index).second) return leave(row, "another row has this index");
    }
    database_.Execute(insert_, cells);
    return true;
  }
  bool leave(const std::vector<Cell>& row, const std::string& why) {
    std::string texts;
    for (const Cell& value : row) texts += (texts.empty() ? "" : ", ") + text_of(value);
    adoption_.notes.push_back(own_.name + ": the row (" + shortened(texts) + ") is left out; " + why + ".");
    return false;
  }

  const Table& old_;
  const ProjectTable& own_;
  Database& database_;
  Adoption& adoption_;
  std::vector<size_t> places_;  // of its columns in the old rows
  std::string insert_;
  std::set<int64_t> indexes_;
  size_t empty_ = 0;
};

/// The columns of a project's table that the project does not have, with what tells the row.
void take_extra_columns(const Table& old, const ProjectTable& own, std::vector<Extra>& extras) {
  std::vector<size_t> places;
  bool any = false;
  for (size_t i = 0; i < old.columns.size(); ++i) {
    const bool known =
        std::ranges::any_of(own.columns, [&](const auto& c) { return same_word(c, old.columns[i].name); });
    any |= !known;
    if (!known || same_word(old.columns[i].name, "nIndex")) places.push_back(i);
  }
  if (!any) return;
  Extra extra{old.name, {}, {}};
  for (const size_t place : places) extra.columns.push_back(old.columns[place].name);
  for (const auto& row : old.rows) {
    auto& kept = extra.rows.emplace_back();
    for (const size_t place : places) kept.push_back(row[place]);
  }
  extras.push_back(std::move(extra));
}

std::string quoted(const std::string& text) {
  if (text.find_first_of(",\"\r\n") == std::string::npos) return text;
  std::string out = "\"";
  for (const char c : text) {
    if (c == '"') out += '"';
    out += c;
  }
  return out + '"';
}

}  // namespace

ProjectTables::ProjectTables(Database& database) {
  database.join(Database::Part::Reading);
  Statement names(database, "SELECT name FROM sqlite_master WHERE type = 'table' ORDER BY rowid");
  while (names.step()) {
    const auto name = std::get<std::string>(names.column(0));
    if (!name.ends_with("Index") && !name.ends_with("_Links")) continue;
    ProjectTable& table = tables_.emplace_back(ProjectTable{name, {}});
    const Cell of[]{name};
    Statement columns(database, "SELECT name FROM pragma_table_info(?)", of);
    while (columns.step()) table.columns.push_back(std::get<std::string>(columns.column(0)));
  }
}

const ProjectTable* ProjectTables::find(std::string_view name) const {
  const auto found =
      std::ranges::find_if(tables_, [&](const ProjectTable& table) { return same_word(table.name, name); });
  return found == tables_.end() ? nullptr : &*found;
}

void take_rows(const Index& old, const ProjectTables& own, Database& database, Adoption& adoption,
               std::vector<Extra>& extras) {
  for (const Table& table : old.tables) {
    const ProjectTable* project = own.find(table.name);
    if (!project) {
      extras.push_back({table.name, {}, table.rows});
      for (const Column& column : table.columns) extras.back().columns.push_back(column.name);
      continue;
    }
    RowTaker(table, *project, database, adoption).take_all();
    take_extra_columns(table, *project, extras);
  }
  for (const ProjectTable& table : own.all()) {
    const bool there = std::ranges::any_of(old.tables, [&](const Table& t) { return same_word(t.name, table.name); });
    if (!there) adoption.notes.push_back("The old index has no table " + table.name + "; the new one is empty.");
  }
}

std::string csv_name(const std::string& index, const std::string& table) {
  std::string name = table;
  for (char& c : name) {
    if (static_cast<unsigned char>(c) < ' ' || std::string_view("/\\:*?\"<>|").find(c) != std::string_view::npos)
      c = '_';
  }
  return index.substr(0, index.rfind('.')) + "-" + name + ".csv";
}

std::string csv_text(const Extra& extra) {
  std::string out;
  const auto line = [&out](const auto& cells, const auto& text) {
    bool first = true;
    for (const auto& cell : cells) {
      if (!std::exchange(first, false)) out += ',';
      out += quoted(text(cell));
    }
    out += "\r\n";
  };
  line(extra.columns, [](const std::string& name) { return name; });
  for (const auto& row : extra.rows) line(row, text_of);
  return out;
}

}  // namespace tarn::older
