#include "tarn/platform/statement.h"

#include <sqlite3.h>

#include "tarn/base/error.h"
#include "tarn/platform/database.h"

namespace tarn {

Statement::Statement(Database& database, const std::string& sql, std::span<const Cell> parameters)
    : database_(database), home_(*database.prepared_.try_emplace(sql).first) {
  auto& idle = home_.second.idle;
  if (idle.empty()) idle.push_back(database.prepare(sql));
  statement_ = idle.back();
  if (const int wanted = sqlite3_bind_parameter_count(statement_); wanted != static_cast<int>(parameters.size())) {
    fail(ErrorNumber::StatementRejected, "A statement takes " + std::to_string(wanted) + " parameters, not " +
                                             std::to_string(parameters.size()) + ". SQL: " + sql);
  }
  idle.pop_back();
  database_.progress_ = 0;
  ++home_.second.borrowed;
  for (size_t i = 0; i < parameters.size(); ++i) {
    const int place = static_cast<int>(i) + 1;
    const Cell& value = parameters[i];
    if (const auto* number = std::get_if<int64_t>(&value))
      sqlite3_bind_int64(statement_, place, *number);
    else if (const auto* real = std::get_if<double>(&value))
      sqlite3_bind_double(statement_, place, *real);
    else if (const auto* text = std::get_if<std::string>(&value))
      sqlite3_bind_text(statement_, place, text->data(), static_cast<int>(text->size()), SQLITE_TRANSIENT);
    else
      sqlite3_bind_null(statement_, place);
  }
}

Statement::~Statement() {
  sqlite3_reset(statement_);
  sqlite3_clear_bindings(statement_);
  home_.second.idle.push_back(statement_);
  --home_.second.borrowed;
  if (database_.prepared_.size() > Database::kKeptTexts) database_.forget_idle();
}

bool Statement::step() {
  const int result = sqlite3_step(statement_);
  if (result == SQLITE_ROW) return true;
  if (result != SQLITE_DONE) database_.fail_on(home_.first);
  return false;
}

bool Statement::only_reads() const { return sqlite3_stmt_readonly(statement_) != 0; }

int Statement::columns() const { return sqlite3_column_count(statement_); }

std::string_view Statement::column_name(int column) const { return sqlite3_column_name(statement_, column); }

int64_t Statement::integer(int column) const { return sqlite3_column_int64(statement_, column); }

Cell Statement::column(int column) const {
  sqlite3_value* const value = sqlite3_column_value(statement_, column);  // this thread's alone
  switch (sqlite3_value_type(value)) {
    case SQLITE_INTEGER:
      return sqlite3_value_int64(value);
    case SQLITE_FLOAT:
      return sqlite3_value_double(value);
    case SQLITE_NULL:
      return {};
    default: {
      const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(value));
      return text ? std::string(text, static_cast<size_t>(sqlite3_value_bytes(value))) : std::string();
    }
  }
}

}  // namespace tarn
