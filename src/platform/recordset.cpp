#include "tarn/platform/recordset.h"

#include <algorithm>
#include <utility>

#include "base/nearest.h"
#include "platform/query_shape.h"
#include "tarn/base/error.h"
#include "tarn/platform/database.h"
#include "tarn/platform/statement.h"

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

Recordset::Recordset(Ptr<Database> database, const std::string& sql, std::vector<Cell> parameters)
    : database_(std::move(database)), shape_(database_->shape_of(sql)), parameters_(std::move(parameters)) {}

Database& Recordset::database() const {
  if (!database_) fail(ErrorNumber::ObjectNotSet, "The recordset is closed.");
  return *database_;
}

std::vector<Recordset::Row> Recordset::fetch(const std::string& sql, std::span<const Cell> parameters) {
  Statement statement(database(), sql, parameters);
  database_->join(statement.only_reads() ? Database::Part::Reading : Database::Part::Writing);
  shape_->name_columns(statement);
  const int first = shape_->key_columns();
  constexpr size_t kMostRows = 1'000'000;     // thirty times what an index table can have
  constexpr size_t kMostBytes = 256'000'000;  // of texts
  std::vector<Row> rows;
  size_t bytes = 0;
  while (statement.step()) {
    if (rows.size() == kMostRows || bytes > kMostBytes)
      fail(ErrorNumber::DatabaseFailure, "More than " +
                                             std::to_string(rows.size() == kMostRows ? kMostRows : kMostBytes) +
                                             (rows.size() == kMostRows ? " rows" : " bytes of text") +
                                             "; the database may hold a view in the place of a table. SQL: " + sql);
    Row& row = rows.emplace_back();
    if (first > 0) row.id = statement.integer(0);
    row.cells.reserve(shape_->columns.size());
    for (int c = first; c < statement.columns(); ++c) {
      row.cells.push_back(statement.column(c));
      if (const auto* text = std::get_if<std::string>(&row.cells.back())) bytes += text->size();
    }
  }
  return rows;
}

/// Rows of a table are looked for from the current one on, as searches often go down the rows; a row without a key is
/// the first that is like it.
size_t Recordset::place_of(const Row& row) const {
  const bool keyed = !shape_->table.empty();
  const size_t count = rows_.size();
  for (size_t i = 0; i < count; ++i) {
    const size_t place = (keyed ? at_ + i : i) % count;
    const Row& other = rows_[place];
    if (!other.deleted && (keyed ? other.id == row.id : other.cells == row.cells)) return place;
  }
  return count;
}

void Recordset::append_added(int64_t id) {
  const Cell key[]{id};
  for (Row& row : fetch(shape_->by_key(), key)) {
    if (const size_t place = place_of(row); place == rows_.size())
      rows_.push_back(std::move(row));
    else
      rows_[place] = std::move(row);
  }
}

void Recordset::walk() {
  if (walked_) return;
  rows_ = fetch(shape_->all, parameters_);
  walked_ = true;
  at_ = 0;
  for (const int64_t id : std::exchange(added_, {})) append_added(id);
  if (!found_) return;
  at_ = place_of(*found_);
  if (at_ == rows_.size()) rows_.push_back(std::move(*found_));
  found_.reset();
}

bool Recordset::AtEof() {
  if (found_) return false;
  walk();
  return at_ >= rows_.size();
}

void Recordset::MoveNext() {
  editing_ = Editing::No;
  walk();
  if (at_ >= rows_.size()) fail(ErrorNumber::NoCurrentRecord, "No current record.");
  ++at_;
}

void Recordset::FindFirst(const std::string& criteria, std::vector<Cell> parameters) {
  editing_ = Editing::No;
  parameters.insert(parameters.begin(), parameters_.begin(), parameters_.end());
  auto rows = fetch(shape_->search(criteria), parameters);
  no_match_ = rows.empty();
  if (no_match_) return;
  if (!walked_) {
    found_ = std::move(rows.front());
    return;
  }
  at_ = place_of(rows.front());
  if (at_ == rows_.size()) rows_.emplace_back();
  rows_[at_] = std::move(rows.front());
}

Recordset::Row& Recordset::current() {
  if (found_) return *found_;
  if (AtEof()) fail(ErrorNumber::NoCurrentRecord, "No current record.");
  if (rows_[at_].deleted) fail(ErrorNumber::RecordDeleted, "The current record is deleted; move to another.");
  return rows_[at_];
}

const std::vector<std::string>& Recordset::columns() {
  if (shape_->columns.empty()) shape_->name_columns(Statement(database(), shape_->all, parameters_));
  return shape_->columns;
}

Field Recordset::Fields(std::string_view column) {
  const auto& names = columns();
  auto found = std::find(names.begin(), names.end(), column);
  if (found == names.end())
    found = std::find_if(names.begin(), names.end(), [&](const std::string& name) { return same_word(name, column); });
  if (found == names.end()) {
    fail(ErrorNumber::ItemNotFound, "There is no column " + std::string(column) + " in: " + shape_->sql);
  }
  if (editing_ == Editing::No) current();
  return {*this, static_cast<size_t>(found - names.begin())};
}

void Recordset::require_table() const {
  database();
  if (shape_->table.empty()) fail(ErrorNumber::DatabaseReadOnly, "These rows cannot be changed: " + shape_->sql);
}

void Recordset::AddNew() {
  editing_ = Editing::No;
  require_table();
  buffer_.assign(columns().size(), Cell());
  editing_ = Editing::Added;
}

void Recordset::Edit() {
  editing_ = Editing::No;
  require_table();
  buffer_ = current().cells;
  editing_ = Editing::Changed;
}

void Recordset::Update() {
  if (editing_ == Editing::No) fail(ErrorNumber::EditNotStarted, "Update without AddNew or Edit.");
  const bool added = editing_ == Editing::Added;
  std::string set(buffer_.size(), '0');
  std::vector<Cell> values;
  for (size_t c = 0; c < buffer_.size(); ++c) {
    if (added ? buffer_[c].index() == 0 : buffer_[c] == current().cells[c]) continue;
    set[c] = '1';
    values.push_back(buffer_[c]);
  }
  if (added) {
    database_->Execute(shape_->insert(set), values);
    editing_ = Editing::No;
    const int64_t id = database_->last_key();
    if (walked_)
      append_added(id);
    else
      added_.push_back(id);
    return;
  }
  if (!values.empty()) {
    values.emplace_back(current().id);
    if (database_->Execute(shape_->update(set), values) == 0) {
      fail(ErrorNumber::RecordDeleted, "The row was deleted meanwhile, in table " + shape_->table + ".");
    }
    current().cells = buffer_;
  }
  editing_ = Editing::No;
}

void Recordset::Delete() {
  editing_ = Editing::No;
  require_table();
  walk();  // the position stays, so that the next move leaves the deleted row
  const Cell id[]{current().id};
  database_->Execute(shape_->delete_by_key(), id);
  rows_[at_].deleted = true;
}

void Recordset::Close() {
  editing_ = Editing::No;
  database_.reset();
  found_.reset();
  added_.clear();
  rows_.clear();
  walked_ = false;
}

}  // namespace tarn
