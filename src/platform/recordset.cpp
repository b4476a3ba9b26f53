#include <sqlite3.h>

#include <algorithm>
#include <cctype>

#include "base/error.h"
#include "platform/statement.h"

namespace tarn {
namespace {

bool same_column(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) {
    return std::tolower(static_cast<unsigned char>(x)) == std::tolower(static_cast<unsigned char>(y));
  });
}

}  // namespace

const Cell& Field::Value() const {
  return rows_.editing_ != Recordset::Editing::No ? rows_.buffer_[column_] : rows_.current().cells[column_];
}

int64_t Field::integer() const {
  const Cell& value = Value();
  if (const auto* real = std::get_if<double>(&value)) return static_cast<int64_t>(*real);
  const auto* number = std::get_if<int64_t>(&value);
  return number ? *number : 0;
}

double Field::real() const {
  const auto* real = std::get_if<double>(&Value());
  return real ? *real : static_cast<double>(integer());
}

std::string Field::text() const {
  const auto* text = std::get_if<std::string>(&Value());
  return text ? *text : std::string();
}

void Field::operator=(Cell value) {
  if (rows_.editing_ == Recordset::Editing::No)
    fail(ErrorNumber::EditNotStarted, "A column is set without AddNew or Edit.");
  rows_.buffer_[column_] = std::move(value);
}

Recordset::Recordset(Ptr<Database> database, const std::string& sql, std::vector<Cell> parameters)
    : database_(std::move(database)), sql_(sql), parameters_(std::move(parameters)) {
  parse(sql);
}

/// Takes "SELECT * FROM table [WHERE ...] [ORDER BY ...]" apart; anything else is run as it is, and can be read only.
void Recordset::parse(const std::string& sql) {
  constexpr std::string_view kHead = "SELECT * FROM ";
  if (!sql.starts_with(kHead) || sql.find_first_of("'\"();") != std::string::npos) return;
  for (const char* other : {" LIMIT ", " GROUP ", " UNION ", " JOIN "}) {
    if (sql.find(other) != std::string::npos) return;
  }
  const size_t order = sql.find(" ORDER BY ");
  const size_t where = sql.find(" WHERE ");
  const size_t end = std::min({order, where, sql.size()});
  std::string table = sql.substr(kHead.size(), end - kHead.size());
  if (table.find_first_of(" ,") != std::string::npos) return;
  table_ = std::move(table);
  if (where != std::string::npos) where_ = sql.substr(where + 7, std::min(order, sql.size()) - where - 7);
  if (order != std::string::npos) order_ = sql.substr(order);
}

std::string Recordset::select(std::string_view criteria) const {
  if (table_.empty() && criteria.empty()) return sql_;
  std::string sql = table_.empty() ? "SELECT * FROM (" + sql_ + ")" : "SELECT rowid, * FROM " + table_;
  if (!where_.empty()) sql += " WHERE (" + where_ + ")";
  if (!criteria.empty()) ((sql += where_.empty() ? " WHERE (" : " AND (") += criteria) += ")";
  sql += order_;
  return criteria.empty() ? sql : sql + " LIMIT 1";
}

std::vector<Recordset::Row> Recordset::fetch(const std::string& sql, std::span<const Cell> parameters) {
  database_->join();
  Statement statement(*database_, sql, parameters);
  const int first = table_.empty() ? 0 : 1;  // behind the row's key
  name_columns(statement);
  std::vector<Row> rows;
  while (statement.step()) {
    Row& row = rows.emplace_back();
    if (first > 0) row.id = statement.integer(0);
    row.cells.reserve(columns_.size());
    for (int c = first; c < statement.columns(); ++c) row.cells.push_back(statement.column(c));
  }
  return rows;
}

void Recordset::name_columns(const Statement& statement) {
  if (!columns_.empty()) return;
  for (int c = table_.empty() ? 0 : 1; c < statement.columns(); ++c) columns_.push_back(statement.column_name(c));
}

void Recordset::walk() {
  if (walked_) return;
  rows_ = fetch(select({}), parameters_);
  walked_ = true;
  at_ = 0;
  if (!found_) return;
  while (at_ < rows_.size() && rows_[at_].id != found_->id) ++at_;
  found_.reset();
}

bool Recordset::AtEof() {
  if (found_) return false;
  walk();
  return at_ >= rows_.size();
}

void Recordset::MoveNext() {
  walk();
  if (at_ >= rows_.size()) fail(ErrorNumber::NoCurrentRecord, "No current record.");
  ++at_;
}

void Recordset::FindFirst(std::string_view criteria, std::vector<Cell> parameters) {
  editing_ = Editing::No;
  parameters.insert(parameters.begin(), parameters_.begin(), parameters_.end());
  auto rows = fetch(select(criteria), parameters);
  no_match_ = rows.empty();
  walked_ = false;
  found_.reset();
  if (!no_match_) found_ = std::move(rows.front());
}

Recordset::Row& Recordset::current() {
  if (found_) return *found_;
  if (no_match_ || AtEof()) fail(ErrorNumber::NoCurrentRecord, "No current record.");
  if (rows_[at_].deleted) fail(ErrorNumber::RecordDeleted, "The current record is deleted; move to another.");
  return rows_[at_];
}

const std::vector<std::string>& Recordset::columns() {
  if (columns_.empty()) {
    const std::string sql = select({});
    database_->join();
    Statement statement(*database_, sql, parameters_);
    name_columns(statement);
  }
  return columns_;
}

Field Recordset::Fields(std::string_view column) {
  const auto& names = columns();
  const auto found =
      std::find_if(names.begin(), names.end(), [column](const std::string& name) { return same_column(name, column); });
  if (found == names.end()) {
    fail(ErrorNumber::ItemNotFound, "There is no column " + std::string(column) + " in: " + sql_);
  }
  if (editing_ == Editing::No) current();
  return {*this, static_cast<size_t>(found - names.begin())};
}

void Recordset::require_table() const {
  if (table_.empty()) fail(ErrorNumber::DatabaseReadOnly, "These rows cannot be changed: " + sql_);
}

void Recordset::AddNew() {
  require_table();
  buffer_.assign(columns().size(), Cell());
  editing_ = Editing::Added;
}

void Recordset::Edit() {
  require_table();
  buffer_ = current().cells;
  editing_ = Editing::Changed;
}

void Recordset::Update() {
  if (editing_ == Editing::No) fail(ErrorNumber::EditNotStarted, "Update without AddNew or Edit.");
  const bool added = editing_ == Editing::Added;
  std::string names;
  std::string marks;
  std::vector<Cell> values;
  for (size_t c = 0; c < buffer_.size(); ++c) {
    if (added ? buffer_[c].index() == 0 : buffer_[c] == current().cells[c]) continue;
    const std::string_view comma = values.empty() ? "" : ",";
    ((names += comma) += columns_[c]) += added ? "" : " = ?";
    (marks += comma) += "?";
    values.push_back(buffer_[c]);
  }
  if (added) {
    database_->Execute(values.empty() ? "INSERT INTO " + table_ + " DEFAULT VALUES"
                                      : "INSERT INTO " + table_ + " (" + names + ") VALUES (" + marks + ")",
                       values);
  } else if (!values.empty()) {
    values.emplace_back(current().id);
    if (database_->Execute("UPDATE " + table_ + " SET " + names + " WHERE rowid = ?", values) == 0) {
      fail(ErrorNumber::RecordDeleted, "The row was deleted meanwhile, in table " + table_ + ".");
    }
    current().cells = buffer_;
  }
  editing_ = Editing::No;
}

void Recordset::Delete() {
  require_table();
  walk();  // the place among the rows stays, so that the next move steps off the deleted one
  const Cell id[]{current().id};
  database_->Execute("DELETE FROM " + table_ + " WHERE rowid = ?", id);
  rows_[at_].deleted = true;
  editing_ = Editing::No;
}

}  // namespace tarn
