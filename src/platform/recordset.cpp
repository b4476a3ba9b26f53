#include <sqlite3.h>

#include <algorithm>

#include "base/error.h"
#include "base/nearest.h"
#include "platform/statement.h"

namespace tarn {
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

QueryShape::QueryShape(const std::string& query) : sql(query), all(query) {
  constexpr std::string_view kHead = "SELECT * FROM ";
  if (!sql.starts_with(kHead) || sql.find_first_of("'\"();") != std::string::npos) return;
  for (const char* other : {" LIMIT ", " GROUP ", " UNION ", " JOIN "}) {
    if (sql.find(other) != std::string::npos) return;
  }
  const size_t order_at = sql.find(" ORDER BY ");
  const size_t where_at = sql.find(" WHERE ");
  const size_t end = std::min({order_at, where_at, sql.size()});
  table = sql.substr(kHead.size(), end - kHead.size());
  if (table.find_first_of(" ,") != std::string::npos) {
    table.clear();
    return;
  }
  if (where_at != std::string::npos) where = sql.substr(where_at + 7, std::min(order_at, sql.size()) - where_at - 7);
  if (order_at != std::string::npos) order = sql.substr(order_at);
  all = select({});
}

std::string QueryShape::select(std::string_view criteria) const {
  std::string text = table.empty() ? "SELECT * FROM (" + sql + ")" : "SELECT rowid, * FROM " + table;
  if (!where.empty()) text += " WHERE (" + where + ")";
  if (!criteria.empty()) ((text += where.empty() ? " WHERE (" : " AND (") += criteria) += ")";
  text += order;
  return criteria.empty() ? text : text + " LIMIT 1";
}

void QueryShape::name_columns(const Statement& statement) {
  const int first = table.empty() ? 0 : 1;
  if (columns.size() == static_cast<size_t>(statement.columns() - first)) return;
  columns.clear();
  for (int c = first; c < statement.columns(); ++c) columns.push_back(statement.column_name(c));
}

std::shared_ptr<QueryShape> Database::shape_of(const std::string& sql) {
  if (shapes_.size() > kKeptTexts) shapes_.clear();
  auto& shape = shapes_[sql];
  if (!shape) shape = std::make_shared<QueryShape>(sql);
  return shape;
}

Recordset::Recordset(Ptr<Database> database, const std::string& sql, std::vector<Cell> parameters)
    : database_(std::move(database)), shape_(database_->shape_of(sql)), parameters_(std::move(parameters)) {}

std::vector<Recordset::Row> Recordset::fetch(const std::string& sql, std::span<const Cell> parameters) {
  Statement statement(*database_, sql, parameters);
  database_->join(statement.only_reads() ? Database::Part::Reading : Database::Part::Writing);
  shape_->name_columns(statement);
  const int first = shape_->table.empty() ? 0 : 1;
  std::vector<Row> rows;
  while (statement.step()) {
    Row& row = rows.emplace_back();
    if (first > 0) row.id = statement.integer(0);
    row.cells.reserve(shape_->columns.size());
    for (int c = first; c < statement.columns(); ++c) row.cells.push_back(statement.column(c));
  }
  return rows;
}

void Recordset::walk() {
  if (walked_) return;
  rows_ = fetch(shape_->all, parameters_);
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

void Recordset::FindFirst(const std::string& criteria, std::vector<Cell> parameters) {
  editing_ = Editing::No;
  parameters.insert(parameters.begin(), parameters_.begin(), parameters_.end());
  std::string& search = shape_->searches[criteria];
  if (search.empty()) search = shape_->select(criteria);
  auto rows = fetch(search, parameters);
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
  if (shape_->columns.empty()) shape_->name_columns(Statement(*database_, shape_->all, parameters_));
  return shape_->columns;
}

Field Recordset::Fields(std::string_view column) {
  const auto& names = columns();
  const auto found =
      std::find_if(names.begin(), names.end(), [column](const std::string& name) { return same_word(name, column); });
  if (found == names.end()) {
    fail(ErrorNumber::ItemNotFound, "There is no column " + std::string(column) + " in: " + shape_->sql);
  }
  if (editing_ == Editing::No) current();
  return {*this, static_cast<size_t>(found - names.begin())};
}

void Recordset::require_table() const {
  if (shape_->table.empty()) fail(ErrorNumber::DatabaseReadOnly, "These rows cannot be changed: " + shape_->sql);
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
    ((names += comma) += shape_->columns[c]) += added ? "" : " = ?";
    (marks += comma) += "?";
    values.push_back(buffer_[c]);
  }
  if (added) {
    database_->Execute(values.empty() ? "INSERT INTO " + shape_->table + " DEFAULT VALUES"
                                      : "INSERT INTO " + shape_->table + " (" + names + ") VALUES (" + marks + ")",
                       values);
  } else if (!values.empty()) {
    values.emplace_back(current().id);
    if (database_->Execute("UPDATE " + shape_->table + " SET " + names + " WHERE rowid = ?", values) == 0) {
      fail(ErrorNumber::RecordDeleted, "The row was deleted meanwhile, in table " + shape_->table + ".");
    }
    current().cells = buffer_;
  }
  editing_ = Editing::No;
}

void Recordset::Delete() {
  require_table();
  walk();  // the position stays, so that the next move leaves the deleted row
  const Cell id[]{current().id};
  database_->Execute("DELETE FROM " + shape_->table + " WHERE rowid = ?", id);
  rows_[at_].deleted = true;
  editing_ = Editing::No;
}

}  // namespace tarn
